// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

namespace ravlo
{

// Which of the listed rows a grid shows, and in which order: all of them in schedule order, unless the view
// is sorted or narrowed. Both at once show the rows that are left, in sorted order. Rows count from 0. Costs
// nothing while all rows are shown in schedule order.
class ViewOrder
{
public:
    // Other rows are listed: all of them are shown, in schedule order.
    void Reset(std::size_t listed);
    // Precondition: a permutation of the listed rows, or none for schedule order.
    void Sort(std::vector<std::size_t> colSorted);
    // Shows only some rows. Precondition: one value per listed row.
    void Narrow(std::vector<bool> bKept);
    void Widen() { Narrow({}); }

    bool IsSorted() const noexcept { return !m_colSorted.empty(); }
    bool IsNarrowed() const noexcept { return m_bNarrowed; }
    // Whether a row's number is its place in the schedule.
    bool IsSchedule() const noexcept { return !IsSorted() && !IsNarrowed(); }

    std::size_t ListedCount() const noexcept { return m_listed; }
    std::size_t Count() const noexcept { return IsSchedule() ? m_listed : m_colShown.size(); }
    // Precondition: row < Count().
    std::size_t Listed(std::size_t row) const { return IsSchedule() ? row : m_colShown[row]; }

private:
    void Combine();

    std::size_t m_listed = 0;
    std::vector<std::size_t> m_colSorted;
    std::vector<bool> m_bKept;
    bool m_bNarrowed = false;
    std::vector<std::size_t> m_colShown; // the listed rows in the order shown; not used in schedule order
};

} // namespace ravlo

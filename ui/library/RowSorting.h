// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/ListColumns.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Sorts rows by one value each. Texts compare as people expect: without regard to case and accents. Equal
// values keep the order in which they were added, in both directions. Each value is prepared once, when it is
// added.
class RowSorting
{
public:
    void Reserve(std::size_t rows);
    void Add(const SortValue& value);
    // Adds the value that a row of another sorting has.
    void Add(const RowSorting& cOther, std::size_t row);
    // Gives a row another value. False when it has that one already.
    bool Replace(std::size_t row, const SortValue& value);
    std::size_t Count() const noexcept { return m_colRows.size(); }
    // The rows, counted from 0 as they were added, in their order.
    std::vector<std::size_t> Sorted(bool bDescending) const;

private:
    struct Row
    {
        std::uint64_t beginning; // of the value; decides most comparisons without looking further
        std::size_t row;
    };
    std::vector<Row> m_colRows;
    std::vector<std::string> m_colTexts; // prepared; empty for a number
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

// A cell of a table: its text, and by what a column of numbers is sorted.
struct TableCell
{
    std::wstring sText;
    double dValue = 0;
};

struct TableColumn
{
    std::wstring sHeader;
    int lWidth = 0;       // at 96 dpi
    bool bNumber = false; // aligned right, and sorted by value; otherwise by text
    std::function<TableCell(std::size_t item)> cell;
    bool bMostFirst = false; // the first click on the heading sorts the greatest to the top
};

// A table of items, whose rows are in the order of the items or sorted by a column. Texts are asked for when
// they are shown. Items and rows count from 0.
class SortedTable
{
public:
    struct Sorting
    {
        std::size_t column = 0;
        bool bDescending = false;

        friend bool operator==(const Sorting&, const Sorting&) = default;
    };

    explicit SortedTable(std::vector<TableColumn> columns, std::optional<Sorting> sorting = std::nullopt)
        : m_columns(std::move(columns)), m_sorting(sorting)
    {
    }

    const std::vector<TableColumn>& Columns() const noexcept { return m_columns; }
    // Shows other items, sorted as those before.
    void SetItems(std::size_t items);
    // Sorts by a column; by the same one again the other way round.
    void SortBy(std::size_t column);
    const std::optional<Sorting>& SortedBy() const noexcept { return m_sorting; }

    std::size_t Rows() const noexcept { return m_order.size(); }
    // Precondition for these: the row or item exists.
    std::size_t ItemAt(std::size_t row) const { return m_order[row]; }
    std::size_t RowOf(std::size_t item) const;
    std::wstring Text(std::size_t row, std::size_t column) const
    {
        return m_columns[column].cell(m_order[row]).sText;
    }
    // The first row from start on, and then from the top, of which a column of text begins with the given
    // one, without regard to case; earlier columns count first.
    std::optional<std::size_t> Find(const std::wstring& sBeginning, std::size_t start) const;

private:
    void Sort();

    std::vector<TableColumn> m_columns;
    std::optional<Sorting> m_sorting;
    std::vector<std::size_t> m_order; // items, by row
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/health/SortedTable.h"

#include "base/CaseFolding.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace ravlo
{

namespace
{

// Sorts items by keys that are computed once for each; equal ones keep the order of the items.
template <class Key, class KeyOf>
void SortByKey(std::vector<std::size_t>& order, bool bDescending, KeyOf keyOf)
{
    std::vector<Key> keys(order.size());
    for (std::size_t item = 0; item < keys.size(); ++item)
        keys[item] = keyOf(item);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return bDescending ? keys[b] < keys[a] : keys[a] < keys[b];
    });
}

} // namespace

void SortedTable::SetItems(std::size_t items)
{
    m_order.resize(items);
    Sort();
}

void SortedTable::SortBy(std::size_t column)
{
    const bool bAgain = m_sorting && m_sorting->column == column;
    m_sorting = Sorting{column, bAgain ? !m_sorting->bDescending : m_columns[column].bMostFirst};
    Sort();
}

void SortedTable::Sort()
{
    std::iota(m_order.begin(), m_order.end(), std::size_t{0});
    if (!m_sorting)
        return;
    const TableColumn& column = m_columns[m_sorting->column];
    if (column.bNumber)
        SortByKey<double>(m_order, m_sorting->bDescending,
                          [&](std::size_t item) { return column.cell(item).dValue; });
    else
        SortByKey<std::wstring>(m_order, m_sorting->bDescending,
                                [&](std::size_t item) { return FoldCase(column.cell(item).sText); });
}

std::size_t SortedTable::RowOf(std::size_t item) const
{
    return static_cast<std::size_t>(std::find(m_order.begin(), m_order.end(), item) - m_order.begin());
}

std::optional<std::size_t> SortedTable::Find(const std::wstring& sBeginning, std::size_t start) const
{
    const std::wstring sFolded = FoldCase(std::wstring_view(sBeginning));
    for (const TableColumn& column : m_columns)
    {
        if (column.bNumber)
            continue;
        for (std::size_t step = 0; step < Rows(); ++step)
        {
            const std::size_t row = (start + step) % Rows();
            const std::wstring sText = column.cell(m_order[row]).sText.substr(0, sFolded.size());
            if (FoldCase(std::wstring_view(sText)) == sFolded)
                return row;
        }
    }
    return std::nullopt;
}

} // namespace ravlo

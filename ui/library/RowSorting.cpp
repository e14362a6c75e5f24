// SPDX-License-Identifier: MIT
#include "ui/library/RowSorting.h"

#include "base/SearchText.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t beginningBytes = 8;

// Bits that compare as the numbers do: inverts the sign bit, and in a negative number all others, too.
std::uint64_t BeginningOf(double dValue)
{
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(dValue == 0 ? 0.0 : dValue); // one zero
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

std::uint64_t BeginningOf(const std::string& sFolded)
{
    std::uint64_t beginning = 0;
    for (std::size_t i = 0; i < beginningBytes; ++i)
        beginning = beginning << 8 | (i < sFolded.size() ? static_cast<unsigned char>(sFolded[i]) : 0u);
    return beginning;
}

} // namespace

void RowSorting::Reserve(std::size_t rows)
{
    m_colRows.reserve(rows);
    m_colTexts.reserve(rows);
}

void RowSorting::Add(const SortValue& value)
{
    m_colTexts.emplace_back();
    m_colRows.push_back({0, m_colRows.size()});
    Replace(m_colRows.size() - 1, value);
}

void RowSorting::Add(const RowSorting& cOther, std::size_t row)
{
    m_colTexts.push_back(cOther.m_colTexts[row]);
    m_colRows.push_back({cOther.m_colRows[row].beginning, m_colRows.size()});
}

bool RowSorting::Replace(std::size_t row, const SortValue& value)
{
    const std::wstring* pText = std::get_if<std::wstring>(&value);
    std::string sText = pText ? FoldForSearch(*pText) : std::string();
    const std::uint64_t beginning = pText ? BeginningOf(sText) : BeginningOf(std::get<double>(value));
    if (beginning == m_colRows[row].beginning && sText == m_colTexts[row])
        return false;
    m_colRows[row].beginning = beginning;
    m_colTexts[row] = std::move(sText);
    return true;
}

std::vector<std::size_t> RowSorting::Sorted(bool bDescending) const
{
    std::vector<Row> colRows = m_colRows;
    std::sort(colRows.begin(), colRows.end(), [&](const Row& left, const Row& right) {
        if (left.beginning != right.beginning)
            return (left.beginning < right.beginning) != bDescending;
        const int order = m_colTexts[left.row].compare(m_colTexts[right.row]);
        return order != 0 ? (order < 0) != bDescending : left.row < right.row;
    });
    std::vector<std::size_t> colSorted;
    colSorted.reserve(colRows.size());
    for (const Row& row : colRows)
        colSorted.push_back(row.row);
    return colSorted;
}

} // namespace ravlo

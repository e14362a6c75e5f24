// SPDX-License-Identifier: MIT
#include "ui/library/ColumnLayout.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t known = colGridColumns.size();
// The default places of the further columns, where they are read best: the next to play after the position,
// the album after the title, the plays before the path.
constexpr std::array<int, furtherColumnCount> colFurtherPlaces = {6, 12, 2, 13};
constexpr int lShownAgain = 60; // pixels: a column that had no width

std::optional<int> WholeNumber(const std::wstring& sText)
{
    const std::optional<double> dValue = NumericValue(sText);
    return dValue ? ToLong(*dValue) : std::nullopt;
}

} // namespace

ColumnLayout::ColumnLayout() : ColumnLayout(std::wstring_view()) {}

ColumnLayout::ColumnLayout(std::wstring_view sLayout, std::wstring_view sFurther)
{
    for (std::size_t column = 0; column < listColumnCount; ++column)
    {
        const int lOrder = column < known ? static_cast<int>(column + 1) : colFurtherPlaces[column - known];
        m_colColumns[column] = {ListColumnAt(column).lWidth, lOrder, ListColumnAt(column).bShown};
    }
    Read(sLayout, 0, known);
    Read(sFurther, known, listColumnCount);
    std::vector<std::size_t> colShown = Sorted(0, known);
    for (const std::size_t column : Sorted(known, listColumnCount))
    {
        const auto place = static_cast<std::size_t>(std::max(m_colColumns[column].lOrder, 1) - 1);
        colShown.insert(colShown.begin() + static_cast<std::ptrdiff_t>(std::min(place, colShown.size())),
                        column);
    }
    Place(colShown);
}

void ColumnLayout::Read(std::wstring_view sLayout, std::size_t first, std::size_t end)
{
    const std::vector<std::wstring> colFields = Split(sLayout, L"|");
    for (std::size_t field = 0; field + 2 < colFields.size(); field += 3)
    {
        const std::optional<int> number = WholeNumber(colFields[field]);
        const std::optional<int> value = WholeNumber(colFields[field + 2]);
        if (!number || !value || *number <= static_cast<int>(first) || *number > static_cast<int>(end))
            continue;
        Column& column = m_colColumns[static_cast<std::size_t>(*number - 1)];
        if (EqualIgnoringCase(colFields[field + 1], L"Width"))
            column.lWidth = std::clamp(*value, 0, lMaxWidth);
        else if (EqualIgnoringCase(colFields[field + 1], L"Order"))
            column.lOrder = *value;
        else if (EqualIgnoringCase(colFields[field + 1], L"Visible"))
            column.bVisible = *value != 0;
    }
}

std::vector<std::size_t> ColumnLayout::Sorted(std::size_t first, std::size_t end) const
{
    std::vector<std::size_t> colSorted(end - first);
    std::iota(colSorted.begin(), colSorted.end(), first);
    std::stable_sort(colSorted.begin(), colSorted.end(), [this](std::size_t left, std::size_t right) {
        return m_colColumns[left].lOrder < m_colColumns[right].lOrder;
    });
    return colSorted;
}

void ColumnLayout::Place(const std::vector<std::size_t>& colShown)
{
    for (std::size_t place = 0; place < colShown.size(); ++place)
        m_colColumns[colShown[place]].lOrder = static_cast<int>(place + 1);
}

std::vector<std::size_t> ColumnLayout::Shown() const { return Sorted(0, listColumnCount); }

void ColumnLayout::SetWidth(std::size_t column, int lWidth)
{
    m_colColumns[column].lWidth = std::clamp(lWidth, 0, lMaxWidth);
}

bool ColumnLayout::IsShown(std::size_t column) const
{
    return m_colColumns[column].bVisible && m_colColumns[column].lWidth > 0;
}

void ColumnLayout::Show(std::size_t column, bool bShow)
{
    m_colColumns[column].bVisible = bShow;
    if (bShow && m_colColumns[column].lWidth == 0)
        m_colColumns[column].lWidth = lShownAgain;
}

void ColumnLayout::SetOrder(const std::vector<std::size_t>& colShown)
{
    std::vector<std::size_t> colGiven;
    std::array<bool, listColumnCount> bGiven{};
    for (const std::size_t column : colShown)
        if (column < listColumnCount && !std::exchange(bGiven[column], true))
            colGiven.push_back(column);
    auto next = colGiven.begin();
    std::vector<std::size_t> colAll = Shown();
    for (std::size_t& column : colAll)
        if (bGiven[column])
            column = *next++;
    Place(colAll);
}

std::wstring ColumnLayout::TextOf(std::size_t column, std::size_t place) const
{
    const Column& values = m_colColumns[column];
    const std::wstring sNumber = CountText(column + 1);
    return sNumber + L"|Width|" + DecimalText(values.lWidth) + L"|" + sNumber + L"|Order|" +
           CountText(place) + L"|" + sNumber + L"|Visible|" + (values.bVisible ? L"1" : L"0") + L"|";
}

std::wstring ColumnLayout::Text() const
{
    const std::vector<std::size_t> colPlaces = Sorted(0, known);
    std::wstring sText;
    for (std::size_t column = 0; column < known; ++column)
    {
        const auto place = std::find(colPlaces.begin(), colPlaces.end(), column) - colPlaces.begin();
        sText += TextOf(column, static_cast<std::size_t>(place + 1));
    }
    return sText;
}

std::wstring ColumnLayout::FurtherText() const
{
    std::wstring sText;
    for (std::size_t column = known; column < listColumnCount; ++column)
        sText += TextOf(column, static_cast<std::size_t>(m_colColumns[column].lOrder));
    return sText;
}

} // namespace ravlo

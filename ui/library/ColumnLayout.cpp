// SPDX-License-Identifier: MIT
#include "ui/library/ColumnLayout.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <numeric>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sDefaultLayout =
    L"1|Width|44|1|Order|1|1|Visible|1|2|Width|31|2|Order|2|2|Visible|1|3|Width|130|3|Order|3|3|Visible|1|"
    L"4|Width|143|4|Order|4|4|Visible|1|5|Width|43|5|Order|5|5|Visible|1|6|Width|154|6|Order|6|6|Visible|1|"
    L"7|Width|26|7|Order|7|7|Visible|1|8|Width|34|8|Order|8|8|Visible|1|9|Width|0|9|Order|9|9|Visible|1|";
constexpr int pathWidth = 200;

std::optional<int> WholeNumber(const std::wstring& sText)
{
    const std::optional<double> dValue = NumericValue(sText);
    return dValue ? ToLong(*dValue) : std::nullopt;
}

} // namespace

ColumnLayout::ColumnLayout()
{
    m_colColumns.back() = {pathWidth, static_cast<int>(m_colColumns.size()), true};
    Read(sDefaultLayout);
}

ColumnLayout::ColumnLayout(std::wstring_view sLayout) : ColumnLayout() { Read(sLayout); }

void ColumnLayout::Read(std::wstring_view sLayout)
{
    const std::vector<std::wstring> colFields = Split(sLayout, L"|");
    for (std::size_t field = 0; field + 2 < colFields.size(); field += 3)
    {
        const std::optional<int> number = WholeNumber(colFields[field]);
        const std::optional<int> value = WholeNumber(colFields[field + 2]);
        if (!number || !value || *number < 1 || *number > static_cast<int>(m_colColumns.size()))
            continue;
        Column& column = m_colColumns[static_cast<std::size_t>(*number - 1)];
        if (EqualIgnoringCase(colFields[field + 1], L"Width"))
            column.lWidth = std::clamp(*value, 0, lMaxWidth);
        else if (EqualIgnoringCase(colFields[field + 1], L"Order"))
            column.lOrder = *value;
        else if (EqualIgnoringCase(colFields[field + 1], L"Visible"))
            column.bVisible = *value != 0;
    }
    SortOrders();
}

void ColumnLayout::SortOrders()
{
    const auto colShown = Shown();
    for (std::size_t place = 0; place < colShown.size(); ++place)
        m_colColumns[colShown[place]].lOrder = static_cast<int>(place + 1);
}

std::array<std::size_t, colGridColumns.size()> ColumnLayout::Shown() const
{
    std::array<std::size_t, colGridColumns.size()> colShown{};
    std::iota(colShown.begin(), colShown.end(), std::size_t{0});
    std::stable_sort(colShown.begin(), colShown.end(), [this](std::size_t left, std::size_t right) {
        return m_colColumns[left].lOrder < m_colColumns[right].lOrder;
    });
    return colShown;
}

void ColumnLayout::SetWidth(std::size_t column, int lWidth)
{
    m_colColumns[column].lWidth = std::clamp(lWidth, 0, lMaxWidth);
}

void ColumnLayout::SetOrder(const std::array<std::size_t, colGridColumns.size()>& colShown)
{
    for (Column& column : m_colColumns)
        column.lOrder += static_cast<int>(m_colColumns.size()); // after all that are named
    for (std::size_t place = 0; place < colShown.size(); ++place)
        if (colShown[place] < m_colColumns.size())
            m_colColumns[colShown[place]].lOrder = static_cast<int>(place + 1);
    SortOrders();
}

std::wstring ColumnLayout::Text() const
{
    std::wstring sText;
    for (std::size_t position = 0; position < m_colColumns.size(); ++position)
    {
        const Column& column = m_colColumns[position];
        const std::wstring sNumber = DecimalText(static_cast<std::int64_t>(position + 1));
        sText += sNumber + L"|Width|" + DecimalText(column.lWidth) + L"|" + sNumber + L"|Order|" +
                 DecimalText(column.lOrder) + L"|" + sNumber + L"|Visible|" +
                 (column.bVisible ? L"1" : L"0") + L"|";
    }
    return sText;
}

} // namespace ravlo

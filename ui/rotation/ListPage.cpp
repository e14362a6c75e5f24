// SPDX-License-Identifier: MIT
#include "ui/rotation/ListPage.h"

#include "base/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// A TAB or a line's end inside a text would break the table.
void AddCell(std::wstring& sText, std::wstring sCell, bool bFirst)
{
    std::replace_if(
        sCell.begin(), sCell.end(), [](wchar_t c) { return c == L'\t' || c == L'\r' || c == L'\n'; }, L' ');
    sText += (bFirst ? L"" : L"\t") + sCell;
}

} // namespace

std::wstring ListPage::Text() const
{
    std::wstring sText = sHeading + sCrLf;
    if (rows.empty())
        return sText;
    sText += sCrLf;
    for (std::size_t i = 0; i < columns.size(); ++i)
        AddCell(sText, columns[i].sHeading, i == 0);
    for (const Row& row : rows)
    {
        sText += sCrLf;
        for (std::size_t i = 0; i < row.cells.size(); ++i)
            AddCell(sText, row.cells[i], i == 0);
    }
    return sText + sCrLf;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "host/day/TextTable.h"

#include <algorithm>

namespace ravlo
{

std::wstring TextTable::Text() const
{
    std::vector<std::size_t> widths(m_sides.size());
    for (const std::vector<std::wstring>& row : m_rows)
        for (std::size_t l = 0; l < widths.size(); ++l)
            widths[l] = std::max(widths[l], row[l].size());
    std::wstring sText;
    for (const std::vector<std::wstring>& row : m_rows)
    {
        std::wstring sLine;
        for (std::size_t l = 0; l < widths.size(); ++l)
        {
            const std::wstring sBlanks(widths[l] - row[l].size(), L' ');
            sLine += l == 0 ? L"" : L"  ";
            sLine += m_sides[l] == Side::Left ? row[l] + sBlanks : sBlanks + row[l];
        }
        sLine.erase(sLine.find_last_not_of(L' ') + 1);
        sText += sLine + L"\n";
    }
    return sText;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "scheduler/CutNames.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace ravlo
{

namespace
{

bool HasSlash(const std::vector<std::wstring>& colNames)
{
    return std::any_of(colNames.begin(), colNames.end(),
                       [](const std::wstring& sName) { return sName.find(L'/') != std::wstring::npos; });
}

} // namespace

std::wstring NamesTextOf(const Cut& cCut)
{
    std::wstring sText = cCut.CategoryText();
    if (sText.find(L'/') == std::wstring::npos)
        return sText;
    const std::vector<std::wstring> colNames = cCut.CategoryNames();
    return HasSlash(colNames) ? NamesText(colNames) : sText;
}

std::wstring NamesText(const std::vector<std::wstring>& colNames)
{
    const bool bSeparated = HasSlash(colNames);
    std::wstring sText;
    for (const std::wstring& sName : colNames)
    {
        if (bSeparated)
            sText += cNameSeparator;
        else if (!sText.empty())
            sText += L'/';
        sText += sName;
    }
    return sText;
}

namespace
{

std::vector<std::wstring> FoldedNames(const std::wstring& sText)
{
    const bool bSeparated = sText.starts_with(cNameSeparator);
    const wchar_t cBetween = bSeparated ? cNameSeparator : L'/';
    std::vector<std::wstring> colNames;
    for (const std::wstring& sName :
         Split(std::wstring_view(sText).substr(bSeparated ? 1 : 0), std::wstring_view(&cBetween, 1)))
        colNames.push_back(FoldCase(sName));
    std::sort(colNames.begin(), colNames.end());
    colNames.erase(std::unique(colNames.begin(), colNames.end()), colNames.end());
    return colNames;
}

} // namespace

bool HaveSameNames(const std::wstring& sLeft, const std::wstring& sRight)
{
    return sLeft == sRight || FoldedNames(sLeft) == FoldedNames(sRight);
}

void SetNamesText(Cut& cCut, const std::wstring& sText)
{
    if (sText.empty() || sText.front() != cNameSeparator)
    {
        cCut.SetCategoryText(sText);
        return;
    }
    cCut.SetCategoryText({});
    for (const std::wstring& sName :
         Split(std::wstring_view(sText).substr(1), std::wstring_view(&cNameSeparator, 1)))
        cCut.AddCategoryName(sName);
}

} // namespace ravlo

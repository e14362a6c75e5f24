// SPDX-License-Identifier: MIT
#include "ui/category/CategoryNames.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

void CategoryNames::Set(std::vector<std::wstring> colNames)
{
    m_colOwnOrder = std::move(colNames);
    Arrange();
}

void CategoryNames::SortByName(bool bSort)
{
    m_bSorted = bSort;
    Arrange();
}

void CategoryNames::Narrow(const std::wstring& sQuery)
{
    m_words = SearchWords(sQuery);
    Arrange();
}

void CategoryNames::Arrange()
{
    std::vector<std::pair<std::string, std::wstring>> colFolded;
    for (const std::wstring& sName : m_colOwnOrder)
        colFolded.emplace_back(FoldForSearch(sName), sName);
    if (m_bSorted)
        std::sort(colFolded.begin(), colFolded.end());
    m_colAll.clear();
    m_colShown.clear();
    for (const auto& [sFolded, sName] : colFolded)
    {
        m_colAll.push_back(sName);
        if (m_words.FoundIn(sFolded))
            m_colShown.push_back(sName);
    }
}

} // namespace ravlo

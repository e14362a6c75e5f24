// SPDX-License-Identifier: MIT
#include "scheduler/FiledCuts.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sBetweenNames = L"\n";

std::wstring Joined(const std::vector<std::wstring>& colNames)
{
    std::wstring sText;
    for (const std::wstring& sName : colNames)
    {
        if (!sText.empty())
            sText += sBetweenNames;
        sText += sName;
    }
    return sText;
}

} // namespace

std::vector<std::wstring> AssignedNames(const Cut& cCut)
{
    std::vector<std::wstring> colNames;
    for (const std::wstring& sAssignment : cCut.CategoryNames())
    {
        std::wstring sName = sAssignment.substr(0, sAssignment.find(cTab));
        if (std::none_of(colNames.begin(), colNames.end(),
                         [&](const std::wstring& sSeen) { return EqualIgnoringCase(sSeen, sName); }))
            colNames.push_back(std::move(sName));
    }
    return colNames;
}

void FiledCuts::Remember(const Cut& cCut)
{
    const std::wstring sNames = Joined(AssignedNames(cCut));
    const auto lNew = static_cast<std::uint32_t>(m_colNames.size());
    const auto [found, bNew] = m_colNamesIndex.try_emplace(FoldCase(sNames), lNew);
    if (bNew)
        m_colNames.push_back(sNames);
    m_colCuts[cCut.Key()] = {found->second, cCut.CatLevel()};
}

bool FiledCuts::IsUnchanged(const Cut& cCut) const
{
    const auto found = m_colCuts.find(cCut.Key());
    return found != m_colCuts.end() && found->second.lLevel == cCut.CatLevel() &&
           EqualIgnoringCase(m_colNames[found->second.lNames], Joined(AssignedNames(cCut)));
}

std::vector<std::wstring> FiledCuts::NamesOf(const TextKey& cKey) const
{
    const auto found = m_colCuts.find(cKey);
    if (found == m_colCuts.end() || m_colNames[found->second.lNames].empty())
        return {};
    return Split(m_colNames[found->second.lNames], sBetweenNames);
}

std::int32_t FiledCuts::LevelOf(const TextKey& cKey) const noexcept
{
    const auto found = m_colCuts.find(cKey);
    return found == m_colCuts.end() ? 0 : found->second.lLevel;
}

} // namespace ravlo

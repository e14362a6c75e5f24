// SPDX-License-Identifier: MIT
#include "scheduler/FiledCuts.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// A cut's names as one text that is the same for the same names in the same order, however they are spelled.
std::wstring FoldedNames(const Cut& cCut)
{
    std::wstring sText;
    for (const std::wstring& sName : AssignedNames(cCut))
        sText += FoldCase(sName) + L'/';
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
    const auto lNext = static_cast<std::uint32_t>(m_colNames.size());
    const auto names = m_colNames.try_emplace(FoldedNames(cCut), lNext).first;
    m_colCuts[cCut.Key()] = {names->second, cCut.CatLevel()};
}

bool FiledCuts::IsUnchanged(const Cut& cCut) const
{
    const auto found = m_colCuts.find(cCut.Key());
    if (found == m_colCuts.end() || found->second.lLevel != cCut.CatLevel())
        return false;
    const auto names = m_colNames.find(FoldedNames(cCut));
    return names != m_colNames.end() && names->second == found->second.lNames;
}

FiledCuts::OwnChange::~OwnChange()
{
    // An unknown cut is compared with the tree when it is next announced: to forget is always right.
    if (std::uncaught_exceptions() > m_lExceptions)
        m_cFiledCuts.Forget(m_cKey);
    else if (m_bInStep)
        try
        {
            m_cFiledCuts.Remember(m_cCut);
        }
        catch (...)
        {
            m_cFiledCuts.Forget(m_cKey);
        }
}

} // namespace ravlo

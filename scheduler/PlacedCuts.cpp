// SPDX-License-Identifier: MIT
#include "scheduler/PlacedCuts.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// The names as one text, equal for equal names in the same order regardless of case.
std::wstring FoldedNames(const std::vector<std::wstring>& colNames)
{
    std::wstring sText;
    for (const std::wstring& sName : colNames)
        sText += FoldCase(sName) + L'/';
    return sText;
}

} // namespace

std::vector<std::wstring> AssignedNames(const Cut& cCut)
{
    std::vector<std::wstring> colNames = cCut.CategoryNames();
    auto kept = colNames.begin();
    for (std::wstring& sName : colNames)
    {
        sName.resize(SplitCategoryKey(sName).sName.size());
        const bool bSeen = std::any_of(colNames.begin(), kept, [&](const std::wstring& sSeen) {
            return EqualIgnoringCase(sSeen, sName);
        });
        if (bSeen)
            continue;
        if (&*kept != &sName)
            *kept = std::move(sName);
        ++kept;
    }
    colNames.erase(kept, colNames.end());
    return colNames;
}

std::int32_t DataBaseNumber(const Cut& cCut) noexcept
{
    try
    {
        return cCut.ID();
    }
    catch (...)
    {
        return 0; // the number only helps to find a cut again; cuts are placed by key
    }
}

void PlacedCuts::Reserve(std::size_t cuts)
{
    m_colCuts.reserve(cuts);
    m_colKeys.reserve(cuts);
}

void PlacedCuts::Remember(const Cut& cCut)
{
    Remember(cCut.Key(), NumberOf(AssignedNames(cCut)), cCut.CatLevel(), DataBaseNumber(cCut));
}

void PlacedCuts::Remember(const TextKey& cKey, std::uint32_t lNames, std::int32_t lLevel, std::int32_t lID)
{
    Restore(cKey, Entry{lNames, lLevel, lID});
}

void PlacedCuts::Removed(const TextKey& cKey) noexcept
{
    const auto found = m_colCuts.find(cKey);
    if (found == m_colCuts.end())
        return;
    const auto number = m_colKeys.find(found->second.lID);
    if (number != m_colKeys.end() && number->second == cKey)
        m_colKeys.erase(number);
    m_colCuts.erase(found);
}

std::optional<TextKey> PlacedCuts::KeyOf(std::int32_t lID) const
{
    const auto found = m_colKeys.find(lID);
    return found == m_colKeys.end() ? std::nullopt : std::optional(found->second);
}

std::uint32_t PlacedCuts::NumberOf(const std::vector<std::wstring>& colNames)
{
    const auto next = static_cast<std::uint32_t>(m_colNames.size());
    return m_colNames.try_emplace(FoldedNames(colNames), next).first->second;
}

bool PlacedCuts::IsUnchanged(const Cut& cCut) const
{
    const auto found = m_colCuts.find(cCut.Key());
    if (found == m_colCuts.end() || found->second.lLevel != cCut.CatLevel())
        return false;
    const auto names = m_colNames.find(FoldedNames(AssignedNames(cCut)));
    return names != m_colNames.end() && names->second == found->second.lNames;
}

std::optional<PlacedCuts::Entry> PlacedCuts::Recall(const TextKey& cKey) const
{
    const auto found = m_colCuts.find(cKey);
    return found == m_colCuts.end() ? std::nullopt : std::optional(found->second);
}

void PlacedCuts::Restore(const TextKey& cKey, const std::optional<Entry>& entry)
{
    if (!entry)
    {
        Forget(cKey);
        return;
    }
    m_colCuts[cKey] = *entry;
    if (entry->lID != 0)
        m_colKeys.insert_or_assign(entry->lID, cKey);
}

PlacedCuts::OwnChange::~OwnChange()
{
    // Forgetting is always safe: an unknown cut is compared with the tree when it is next announced.
    if (std::uncaught_exceptions() > m_lExceptions)
        m_cPlacedCuts.Forget(m_cKey);
    else if (m_bInStep)
        try
        {
            if (m_cCut.Key() == m_cKey)
                m_cPlacedCuts.Remember(m_cCut);
            else
                m_cPlacedCuts.Forget(m_cKey); // the tree still has it under its old key
        }
        catch (...)
        {
            m_cPlacedCuts.Forget(m_cKey);
        }
}

} // namespace ravlo

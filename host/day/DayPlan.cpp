// SPDX-License-Identifier: MIT
#include "host/day/DayPlan.h"

#include "base/CaseFolding.h"
#include "host/day/HostError.h"

namespace ravlo
{

void LevelsInUse::Add(const std::wstring& sCategory, std::int32_t lLevel)
{
    m_levels.insert({FoldCase(sCategory), lLevel, sCategory});
}

bool LevelsInUse::Contains(const std::wstring& sCategory, std::int32_t lLevel) const
{
    return m_levels.contains({FoldCase(sCategory), lLevel, {}});
}

std::vector<Slot> LevelsInUse::RoundOfAll() const
{
    std::vector<Slot> slots;
    for (const LevelsInUse::Level& level : m_levels)
        slots.push_back({level.sCategory, level.lLevel, false, 0});
    return slots;
}

void CheckLevels(const std::vector<Slot>& slots, const LevelsInUse& levels, const std::wstring& sName)
{
    for (const Slot& slot : slots)
    {
        if (!levels.Contains(slot.sCategory, slot.lLevel))
            throw HostError(sName + L", line " + std::to_wstring(slot.line) + L": no cut is in " +
                            LevelText(slot));
    }
}

} // namespace ravlo

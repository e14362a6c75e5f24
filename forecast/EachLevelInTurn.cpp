// SPDX-License-Identifier: MIT
#include "forecast/EachLevelInTurn.h"

#include "plan/SlotTimes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace ravlo
{

namespace
{

struct Turn
{
    Slot slot;
    std::int64_t milliseconds;
};

std::int64_t MeanLength(const StationSnapshot& station, const std::vector<CutNumber>& order)
{
    std::int64_t milliseconds = 0;
    for (const CutNumber number : order)
    {
        const std::int32_t lDurationmS = station.cuts[number].values.lDurationmS;
        milliseconds += lDurationmS > 0 ? lDurationmS : lEmptySlotmS;
    }
    return milliseconds / static_cast<std::int64_t>(order.size());
}

} // namespace

Plan EachLevelInTurn(const StationSnapshot& station, DateTime dtStart, double dDays)
{
    constexpr double dDaymS = 86'400'000;
    constexpr std::int64_t shortest = 1000; // a slot file has whole seconds
    std::vector<Turn> turns;
    for (const SnapshotLevel& level : station.levels)
        if (!level.order.empty())
            turns.push_back(
                {{level.sCategory, level.lLevel}, std::max(shortest, MeanLength(station, level.order))});
    Plan plan;
    plan.SetSource(Plan::Source::EachLevelInTurn);
    if (turns.empty())
        return plan;
    const std::int64_t all = std::llround(dDays * dDaymS);
    std::size_t turn = 0;
    for (std::int64_t passed = 0; passed < all; passed += turns[turn++ % turns.size()].milliseconds)
        plan.AddSlotAt(Later(dtStart, passed), turns[turn % turns.size()].slot);
    return plan;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "forecast/Troubles.h"

#include <algorithm>

namespace ravlo
{

Starvation StarvationOf(const SimulationResult& result, std::size_t level)
{
    const LevelOutcome& outcome = result.levels[level];
    const std::vector<CutNumber>& order = result.cStation->levels[level].order;
    Starvation starvation;
    for (std::size_t cut = 0; cut < order.size(); ++cut)
    {
        const bool bOpener = result.cStation->cuts[order[cut]].values.bOpener;
        const Due due{outcome.asked - (bOpener ? 0 : outcome.askedOpener), order.size()};
        const std::uint64_t plays = outcome.cuts[cut].plays;
        if (plays == 0 && due.IsEnoughForNeverPlayed())
            starvation.neverPlayed.push_back(cut);
        if (due.IsEnoughForUnderHalf() && plays * 2 * due.cuts < due.slots)
            starvation.underHalf.push_back(cut);
    }
    return starvation;
}

Troubles& Troubles::operator+=(const Troubles& other) noexcept
{
    neverPlayed += other.neverPlayed;
    underHalf += other.underHalf;
    starved += other.starved;
    rulesBroken += other.rulesBroken;
    return *this;
}

Troubles TroublesOf(const SimulationResult& result, std::size_t level)
{
    const auto [never, half] = StarvationOf(result, level);
    const auto both = std::count_if(never.begin(), never.end(), [&half = half](std::size_t cut) {
        return std::binary_search(half.begin(), half.end(), cut);
    });
    return {never.size(), half.size(), never.size() + half.size() - static_cast<std::size_t>(both),
            result.levels[level].rulesBroken};
}

bool Improves(const Troubles& before, const Troubles& after) noexcept
{
    const bool bBetter = after.neverPlayed < before.neverPlayed || after.underHalf < before.underHalf ||
                         after.rulesBroken < before.rulesBroken;
    const bool bWorse = after.neverPlayed > before.neverPlayed || after.underHalf > before.underHalf ||
                        after.rulesBroken > before.rulesBroken;
    return bBetter && !bWorse;
}

} // namespace ravlo

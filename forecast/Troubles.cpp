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
    unfilled += other.unfilled;
    picks += other.picks;
    return *this;
}

namespace
{

Troubles With(const Starvation& starvation, const LevelOutcome& outcome)
{
    const auto& [never, half] = starvation;
    const auto both = std::count_if(never.begin(), never.end(), [&colHalf = half](std::size_t cut) {
        return std::binary_search(colHalf.begin(), colHalf.end(), cut);
    });
    return {
        never.size(),        half.size(),      never.size() + half.size() - static_cast<std::size_t>(both),
        outcome.rulesBroken, outcome.unfilled, outcome.asked};
}

} // namespace

Troubles TroublesOf(const SimulationResult& result, std::size_t level)
{
    return With(StarvationOf(result, level), result.levels[level]);
}

std::vector<Troubles> TroublesOf(const SimulationResult& result)
{
    std::vector<Troubles> colTroubles;
    for (std::size_t level = 0; level < result.levels.size(); ++level)
        colTroubles.push_back(TroublesOf(result, level));
    return colTroubles;
}

Troubles TroublesAmong(const SimulationResult& result, std::size_t level,
                       const std::unordered_set<CutNumber>& cuts)
{
    Starvation starvation = StarvationOf(result, level);
    const std::vector<CutNumber>& order = result.cStation->levels[level].order;
    const auto isOther = [&](std::size_t cut) { return !cuts.contains(order[cut]); };
    std::erase_if(starvation.neverPlayed, isOther);
    std::erase_if(starvation.underHalf, isOther);
    return With(starvation, result.levels[level]);
}

bool IsWorse(const Troubles& before, const Troubles& after) noexcept
{
    return after.neverPlayed > before.neverPlayed || after.underHalf > before.underHalf ||
           after.rulesBroken > before.rulesBroken || after.unfilled > before.unfilled;
}

bool Improves(const Troubles& before, const Troubles& after) noexcept
{
    const bool bBetter = after.neverPlayed < before.neverPlayed || after.underHalf < before.underHalf ||
                         after.rulesBroken < before.rulesBroken;
    return bBetter && !IsWorse(before, after);
}

} // namespace ravlo

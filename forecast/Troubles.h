// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Simulation.h"

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// How many plays are due to a cut: the slots asked for its level by the level's cuts. Slots that ask for an
// opener count for openers only.
struct Due
{
    std::uint64_t slots = 0;
    std::uint64_t cuts = 0;

    // Whether so much is due that a cut without a play is starved, or one with less than half of it.
    bool IsEnoughForNeverPlayed() const noexcept { return slots * 2 >= cuts * 3; }
    bool IsEnoughForUnderHalf() const noexcept { return slots >= cuts * 3; }
};

// The cuts of a level that play too seldom, as positions in its order.
struct Starvation
{
    std::vector<std::size_t> neverPlayed; // no play although 1.5 or more are due
    std::vector<std::size_t> underHalf;   // below half of its due of 3 or more; never played ones included
};
Starvation StarvationOf(const SimulationResult& result, std::size_t level);

// How much is wrong with a level, or with several together.
struct Troubles
{
    std::size_t neverPlayed = 0;
    std::size_t underHalf = 0;
    std::size_t starved = 0; // cuts that are one or the other
    std::size_t rulesBroken = 0;
    std::size_t unfilled = 0; // slots that stay empty
    std::size_t picks = 0;    // slots asked

    Troubles& operator+=(const Troubles& other) noexcept;
};
Troubles TroublesOf(const SimulationResult& result, std::size_t level);
std::vector<Troubles> TroublesOf(const SimulationResult& result); // of each level
// Of a level, with only these of its cuts counted.
Troubles TroublesAmong(const SimulationResult& result, std::size_t level,
                       const std::unordered_set<CutNumber>& cuts);

// Whether there are more cuts never played, more under half, more rules broken or more empty slots.
bool IsWorse(const Troubles& before, const Troubles& after) noexcept;
// Whether there are fewer cuts never played, fewer under half or fewer rules broken, and nothing is worse.
bool Improves(const Troubles& before, const Troubles& after) noexcept;

} // namespace ravlo

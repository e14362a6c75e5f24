// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/Remedies.h"
#include "forecast/Simulation.h"
#include "forecast/Troubles.h"

#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Finds what helps each level that is not green: makes each remedy by itself on a copy of the station and
// simulates that as result was. Writes the remedies that improve the level into health, in the order fair
// rotation, spread, artist separation, more cuts, fewer cuts, and the three most useful ones of the station.
// Returns the orders of the spreads that are advised: a spread that is carried out with the same order, while
// nothing else has changed, does what was predicted. Progress and errors as in Simulate, over all simulations
// together. Precondition: health is that of result.
std::vector<SpreadTrial> Advise(const SimulationResult& result, StationHealth& health,
                                const SimulationProgress& progress = {});

// A simulation, what it shows and what would help.
struct Forecast
{
    SimulationResult result;
    StationHealth health;
    std::vector<SpreadTrial> spreads;
};

// As Simulate, HealthOf and Advise in turn, as one piece of work.
Forecast MakeForecast(std::shared_ptr<const StationSnapshot> cStation, const Plan& plan, DateTime dtStart,
                      double dDays, const SimulationOptions& options = {},
                      const SimulationProgress& progress = {});

// "never played 3 -> 0, under half 4 -> 1, no rule broken", or "..., rules broken 2 -> 1".
std::wstring EffectText(const Troubles& before, const Troubles& after);

} // namespace ravlo

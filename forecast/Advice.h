// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/LevelAdvice.h"

#include <cstddef>
#include <vector>

namespace ravlo
{

// Looks for what helps every level that is not green, and writes it into health: for each level, and the
// three most useful ones of the station. Progress and errors as in Simulate, over all simulations together;
// health is complete or unchanged. Precondition: health is that of the adviser's result.
void Advise(LevelAdviser& adviser, const SimulationResult& result, StationHealth& health,
            const SimulationProgress& progress = {});

// Looks for what helps one level, and writes it into health. A green level needs nothing.
void AdviseLevel(LevelAdviser& adviser, std::size_t level, StationHealth& health,
                 const SimulationProgress& progress = {});

} // namespace ravlo

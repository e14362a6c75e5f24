// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/LevelAdvice.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace ravlo
{

// Looks for what helps every level that is not green, and writes it into health: for each level, and the
// three most useful ones of the station. Progress and errors as in Simulate, over all simulations together;
// after an error health has the advice of the levels that were finished. advised, which may be empty, is
// called for each level once its advice is in health. Precondition: health is that of the adviser's result.
void Advise(LevelAdviser& adviser, const SimulationResult& result, StationHealth& health,
            const SimulationProgress& progress = {},
            const std::function<void(std::size_t level)>& advised = {});

// Looks for what helps one level, and writes it into health. A green level needs nothing.
void AdviseLevel(LevelAdviser& adviser, std::size_t level, StationHealth& health,
                 const SimulationProgress& progress = {});

} // namespace ravlo

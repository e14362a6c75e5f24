// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/LevelAdvice.h"
#include "forecast/Simulation.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ravlo
{

// A simulation, what it shows, and what has been found to help.
struct HealthForecast
{
    // letHostRun as in HealthOf. Precondition: cMod outlives this.
    HealthForecast(ModScheduler& cMod, SimulationResult simulated, const LetHostRun& letHostRun)
        : result(std::move(simulated)), health(HealthOf(result, letHostRun)), adviser(cMod, result)
    {
    }
    HealthForecast(const HealthForecast&) = delete;
    HealthForecast& operator=(const HealthForecast&) = delete;

    // The position of a level by its key, without regard to case.
    std::optional<std::size_t> LevelOf(const std::wstring& sKey) const;

    const SimulationResult result;
    StationHealth health; // without advice, unless a report was made of it
    LevelAdviser adviser;
    bool bReported = false; // whether it has the advice that a report shows
};

} // namespace ravlo

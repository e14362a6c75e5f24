// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/LevelRemedy.h"
#include "forecast/Remedies.h"
#include "forecast/Simulation.h"
#include "forecast/Troubles.h"

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// Finds what helps the levels of a simulation, each when it is asked for: all levels of a large station
// together take minutes. Makes each remedy by itself on a copy of the station, simulates that as the result
// was, and keeps those that help the level, in the order of RemedyKind.
class LevelAdviser
{
public:
    // Precondition: both outlive this.
    LevelAdviser(ModScheduler& cMod, const SimulationResult& result) : m_cMod(cMod), m_result(result) {}

    // What is known to help a level; null until Find has looked for it.
    const std::vector<LevelRemedy>* Of(std::size_t level) const;
    // Looks once for what helps a level that was asked. Progress and errors as in Simulate; after an error
    // nothing is known.
    void Find(std::size_t level, const SimulationProgress& progress = {});
    // The troubles of every level with fair rotation; nothing where that is on already, or until Find was
    // called.
    const std::optional<std::vector<Troubles>>& Fair() const noexcept { return m_fair; }

private:
    class Search;
    std::vector<Troubles> TroublesWithFairRotation(const SimulationProgress& progress) const;

    ModScheduler& m_cMod;
    const SimulationResult& m_result;
    std::optional<std::vector<Troubles>> m_fair;
    std::unordered_map<std::size_t, std::vector<LevelRemedy>> m_colFound; // by level
};

} // namespace ravlo

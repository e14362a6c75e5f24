// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Remedies.h"
#include "forecast/Simulation.h"
#include "forecast/Troubles.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

enum class RemedyKind
{
    FairRotation,
    Spread,
    ArtistSeparation,
    MoreCuts,
    FewerCuts,
};

// A remedy that improves a level, as its own simulation has shown.
struct LevelRemedy
{
    RemedyKind eKind = RemedyKind::FairRotation;
    std::wstring sName; // as in the advice
    Troubles before;    // of the level
    Troubles after;
    std::int32_t lArtistSepMins = 0;   // of an artist separation
    std::optional<SpreadTrial> spread; // of a spread

    std::wstring Text() const; // "spread: never played 1 -> 0, ...", see EffectText
};

// Finds what helps the levels of a simulation, each when it is asked for: all levels of a large station
// together take minutes. Makes each remedy by itself on a copy of the station, simulates that as the result
// was, and keeps those that improve the level, in the order of RemedyKind.
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

// "never played 3 -> 0, under half 4 -> 1, no rule broken", or "..., rules broken 2 -> 1".
std::wstring EffectText(const Troubles& before, const Troubles& after);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/MakeUp.h"
#include "forecast/Simulation.h"
#include "platform/Random.h"
#include "scheduler/SpreadOrders.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// A change that may help a level, made on a copy of the station.
struct Remedy
{
    std::wstring sName; // as in the advice
    std::shared_ptr<const StationSnapshot> cStation;
    std::optional<SpreadTrial> spread = {};
};

// Makes the remedies for one level of a simulated station. Each is nothing where it does not apply; none
// applies to a level without cuts.
class Remedies
{
public:
    // Precondition: the result outlives this, and the level was asked.
    Remedies(const SimulationResult& result, std::size_t level);

    // The level's cuts in spread order. Nothing when that is the present order.
    std::optional<Remedy> Spread(Random& cRandom) const;
    // The longest comfortable artist or title separation, if that is shorter than the one set.
    std::optional<Remedy> ShorterArtistSeparation() const;
    std::optional<Remedy> ShorterTitleSeparation() const;
    // Adds as many cuts of other artists as make the artist separation comfortable: cuts of the level's mean
    // duration, each with an artist and title of its own, dealt evenly into the order. Nothing when the level
    // would have to grow more than tenfold, or so much that the plays due to a cut no longer show which cuts
    // are starved: that would hide them, not help them. Nothing when it is comfortable.
    std::optional<Remedy> MoreCuts() const;
    // Removes as many cuts of the commonest artist as do so; the last ones in rotation order. Nothing when it
    // is comfortable.
    std::optional<Remedy> FewerCuts() const;

private:
    std::shared_ptr<StationSnapshot> Copy() const { return std::make_shared<StationSnapshot>(Station()); }
    const StationSnapshot& Station() const noexcept { return *m_result.cStation; }
    const SnapshotLevel& Level() const noexcept { return Station().levels[m_level]; }
    std::optional<Remedy> Shorter(const wchar_t* sName, std::int32_t SeparationRules::*pSeparation,
                                  std::int32_t lSetMins, std::size_t most) const;
    bool IsComfortable(std::size_t cuts, std::size_t most) const;
    bool IsComfortable() const { return IsComfortable(m_makeUp.cuts, m_makeUp.mostOfArtist); }
    bool IsJudgedAlike(std::size_t cuts) const;
    std::optional<std::size_t> CutsToAdd() const;
    std::vector<CutNumber> OrderWithoutCommonest() const;
    std::int32_t MeanDuration() const; // in milliseconds

    const SimulationResult& m_result;
    std::size_t m_level;
    ArtistNames m_names; // in force in the simulation
    MakeUp m_makeUp;
    AskingRate m_rate;
};

} // namespace ravlo

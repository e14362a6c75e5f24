// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Advice.h"
#include "forecast/CutPlaces.h"
#include "forecast/Health.h"
#include "forecast/Simulation.h"
#include "media/DataBase.h"
#include "scheduler/clsSchedMan.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

// What a plan would play, and how the station fares with it. Values of the moment of the simulation; only
// cuts are looked up in the station's database.
class clsSimulation
{
public:
    // The station's. What is advised is remembered by its manager as long as that lives.
    struct Station
    {
        ModScheduler& cMod; // outlives the simulation
        std::shared_ptr<DataBase> cDataBase;
        std::weak_ptr<clsSchedMan> cScheduler;
    };
    // Precondition: health is of that result, without advice.
    clsSimulation(SimulationResult result, StationHealth health, Station station);
    clsSimulation(const clsSimulation&) = delete;
    clsSimulation& operator=(const clsSimulation&) = delete;

    DateTime Start() const noexcept { return m_result.dtStart; }
    double Days() const noexcept { return m_result.dDays; }
    // The slots asked, unfilled ones too.
    std::int32_t Picks() const noexcept { return static_cast<std::int32_t>(m_result.rows.size()); }
    // How many of them were answered with this kind.
    std::int32_t KindCount(std::int32_t lKind) const noexcept;
    // The plays of a cut in one level, or without a category key in all; 0 for an unknown cut. Throws error 5
    // when the category key names no level of the simulation.
    std::int32_t Plays(const std::wstring& sCutKey, const std::wstring& strSubCatKey) const;
    // Writes the log, see LogCsv, in one step.
    void SaveLog(const std::wstring& sFile) const;

    const SimulationResult& Result() const noexcept { return m_result; }
    // With the advice that was asked for so far.
    const StationHealth& Health() const noexcept { return m_health; }
    // Looks for what helps a level, or all levels, unless that is known already. Each remedy is simulated,
    // which takes as long as the simulation did; the next spread of a level gives the order that is advised.
    // Messages are pumped before each call of progress. A level whose search is cancelled is searched again
    // when it is asked for. Throws as Simulate does, and error 70 when it is
    // called from there. Precondition: the caller keeps this object alive.
    void FindAdvice(std::size_t level, const SimulationProgress& progress = {}) const;
    void FindAllAdvice(const SimulationProgress& progress = {}) const;
    // What helps a level, looked for when it is not known. For a level with empty slots, begins with why they
    // are empty.
    std::vector<std::wstring> Advice(std::size_t level, const SimulationProgress& progress = {}) const;
    // "Abba: 1.25 of 1", for each artist whose separations cannot all be kept.
    std::vector<std::wstring> ArtistsOverAsked() const;

    // The database's own cut of that key; a copy of the simulation's when there is none any more. Null for a
    // key of neither. Throws the database's errors.
    std::shared_ptr<Cut> CutOf(const std::wstring& sKey) const;

private:
    std::optional<CutNumber> NumberOf(const TextKey& cKey) const;
    std::optional<std::size_t> LevelOf(const std::wstring& strSubCatKey) const;

    template <class Work> void LookForAdvice(const SimulationProgress& progress, const Work& work) const;
    void RememberSpread(std::size_t level) const;

    const SimulationResult m_result;
    const Station m_station;
    mutable StationHealth m_health; // complete but for the advice, which is found when it is asked for
    mutable LevelAdviser m_adviser;
    mutable bool m_bAdvising = false;
    mutable bool m_bAllAdvised = false;
    const CutPlaces m_places;
    std::vector<std::pair<std::size_t, CutNumber>> m_colNumbers; // by the hash of the cut's key, ascending
};

} // namespace ravlo

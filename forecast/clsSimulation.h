// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/Simulation.h"
#include "media/DataBase.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// What a plan would play, and how the station fares with it. Values of the moment of the simulation; only
// cuts are looked up in the station's database.
class clsSimulation
{
public:
    // Precondition: health is of that result. cDataBase is the station's.
    clsSimulation(SimulationResult result, StationHealth health, std::shared_ptr<DataBase> cDataBase);

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

    const StationHealth& Health() const noexcept { return m_health; }
    // "Abba: 1.25 of 1", for each artist whose separations cannot all be kept.
    std::vector<std::wstring> ArtistsOverAsked() const;

    // The database's own cut of that key; a copy of the simulation's when there is none any more. Null for a
    // key of neither. Throws the database's errors.
    std::shared_ptr<Cut> CutOf(const std::wstring& sKey) const;

private:
    std::optional<CutNumber> NumberOf(const TextKey& cKey) const;
    std::int32_t PlaysIn(std::size_t level, CutNumber number) const;

    SimulationResult m_result;
    StationHealth m_health;
    std::shared_ptr<DataBase> m_cDataBase;
    std::unordered_map<TextKey, CutNumber> m_colNumbers; // of the cuts
};

} // namespace ravlo

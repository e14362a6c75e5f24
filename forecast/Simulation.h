// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "forecast/Snapshot.h"
#include "model/clsRuleViolation.h"
#include "plan/DayLog.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ravlo
{

// Options that differ from the station's.
using SimulationOptions = OptionOverrides;

// A slot of the plan and what filled it.
struct SimulatedRow
{
    DateTime dtStart = 0;
    std::uint32_t slot = 0; // position in the plan
    std::int32_t lKind = 0;
    std::optional<CutNumber> cut;         // nothing: a placeholder
    std::optional<double> dArtistGapMins; // as in LogRow: by credit
    std::optional<double> dTitleGapMins;
};

// How a cut of a level fared.
struct CutOutcome
{
    std::uint32_t plays = 0;
    std::uint32_t passedOver = 0; // picks in which it broke a rule and another was taken
    std::uint32_t noOpener = 0;   // picks that asked for an opener, which it is not, and examined it
    eRuleViolation eRule = eNone; // the most frequent rule, of several the first of title, artist and album
    std::optional<CutNumber> blockedBy; // whose play was most often in its way then, of several the latest
};

struct LevelOutcome
{
    std::uint32_t asked = 0;       // slots
    std::uint32_t askedOpener = 0; // of these
    std::uint32_t rulesBroken = 0; // plays of a cut that broke a rule
    std::uint32_t unfilled = 0;    // slots that stayed empty
    std::vector<CutOutcome> cuts;  // as in SnapshotLevel::order
};

struct SimulationResult
{
    LogRow RowAt(std::size_t row) const;
    std::vector<LogRow> Rows() const; // the day's log, see LogCsv
    // The days that were played: dDays, or for slots with times those from the first slot to the end of the
    // last, dDays at most.
    double PlayedDays() const noexcept;

    std::shared_ptr<const StationSnapshot> cStation;
    Plan plan;
    std::vector<std::optional<std::size_t>> levelOfSlot; // as a position in the snapshot's; nothing: no level
    RotationOptions options;                             // in force
    DateTime dtStart = 0;
    double dDays = 0;
    DateTime dtEnd = 0; // when the last slot's cut ends
    std::vector<SimulatedRow> rows;
    std::vector<LevelOutcome> levels; // as the snapshot's
};

inline constexpr double dFewestDays = 1;
inline constexpr double dMostDays = 3660;

// Plays a plan on a copy of a station, row for row as RavloHost's day would air it: picks on air, each cut
// reported as played when its slot starts. A clock runs from dtStart for dDays, whole or not; of slots with
// times, those from dtStart on and before that end are played. Throws error 5 for a plan without slots, or
// without any in that time, for a start that is no time, and for days outside 1 to 3660; error 18 when it is
// cancelled; and what progress throws.
// Precondition: cMod outlives the call.
SimulationResult Simulate(ModScheduler& cMod, std::shared_ptr<const StationSnapshot> cStation,
                          const Plan& plan, DateTime dtStart, double dDays,
                          const SimulationOptions& options = {}, const SimulationProgress& progress = {});

// Throws error 5 as Simulate does, as far as that shows without playing.
void MustBePlayable(const Plan& plan, DateTime dtStart, double dDays);

} // namespace ravlo

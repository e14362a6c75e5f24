// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"
#include "forecast/Pace.h"
#include "model/clsRuleViolation.h"
#include "rotation/RotationOptions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

struct SimulationResult;

enum class Light
{
    Green, // no slot empty, no cut starved, no rule broken, the separations well within what is attainable
    Yellow,
    Red, // an empty slot, a starved cut, a rule broken in more than 1 % of the picks, or a separation that
         // cannot be kept
};

// The distances between the plays of an artist or title, start to start, in minutes.
struct PlayDistances
{
    double dSmallest = 0;
    double dMedian = 0;
    double dLargest = 0;
};

// A cut of a level in a simulation.
struct CutUse
{
    TextKey cKey;
    TextKey cArtist;
    TextKey cTitle;
    std::int32_t lPlays = 0;
    std::array<std::int32_t, 24> colByHour{};    // plays that began in each hour of the day
    std::optional<PlayDistances> titleDistances; // of its title, in any level; nothing before a second play
    bool bLockStep = false;                      // mostly in the same hour, see IsLockStep
};

// An artist of a level in a simulation.
struct ArtistUse
{
    TextKey cName;
    std::int32_t lCuts = 0; // of the level
    std::int32_t lPlays = 0;
    double dShareOfCuts = 0; // 0 to 1
    double dShareOfPicks = 0;
    std::optional<PlayDistances> distances; // in any level; nothing before a second play
};

// A cut that plays too seldom.
struct StarvedCut
{
    std::size_t cut = 0; // position in LevelHealth::cuts
    std::int32_t lPlays = 0;
    std::int32_t lTimesPassedOver = 0; // picks that examined it and took another
    eRuleViolation eRule = eNone;      // why, most often; eNone when it was never examined, or is no opener
    std::optional<std::size_t> blockedBy; // in StationHealth::blockers: most often under that rule
};

// What is attainable when nothing limits a separation: no cut has an artist, or a title.
inline constexpr std::int32_t lAnyMins = 2'000'000'000;

// How a level fares in a simulation. Minutes where not stated.
struct LevelHealth
{
    std::wstring sKey; // <name> TAB <level>
    Light eLight = Light::Green;
    std::vector<std::wstring>
        why; // reasons for not being green: sentences without a full stop, the worst first
    std::int32_t lArtists = 0;
    std::wstring sTopArtist; // with the most cuts; of several the first in rotation order
    std::int32_t lTopArtistCuts = 0;
    float sngSlotMins = 0; // simulated minutes divided by slots asked; 0 when it was never asked
    std::int32_t lAttainableArtistMins = 0; // lAnyMins at most
    std::int32_t lAttainableTitleMins = 0;
    std::int32_t lArtistSepMins = 0;
    std::int32_t lTitleSepMins = 0;
    std::int32_t lPicks = 0;    // slots asked
    std::int32_t lUnfilled = 0; // of these, those that stay empty
    std::int32_t lOpeners = 0;  // cuts that are openers
    std::int32_t lFewestPlays = 0;
    double dMeanPlays = 0; // plays divided by cuts
    std::int32_t lMostPlays = 0;
    std::int32_t lRulesBroken = 0;
    std::vector<CutUse> cuts;       // in rotation order
    std::vector<ArtistUse> artists; // in rotation order
    std::vector<StarvedCut> neverPlayed;
    std::vector<StarvedCut> underHalf;
    std::vector<std::wstring> advice; // the remedies that help, each simulated; see Advice.h
};

// An artist whose separations cannot all be kept: the sum over the levels of picks an hour x share of the
// cuts x artist separation / 60 is above 1.
struct OverAskedArtist
{
    std::wstring sName;
    double dLoad = 0;
};

// A cut in the way of others.
struct BlockingCut
{
    TextKey cKey;
    TextKey cArtist;
    TextKey cTitle;
};

// How a station fares in a simulation.
struct StationHealth
{
    DateTime dtStart = 0;
    double dDays = 0;
    std::wstring sPlan;      // see Plan::Name
    std::wstring sPlanFile;  // empty for a plan of no file
    RotationOptions options; // in force
    std::int32_t lPicks = 0;
    std::vector<std::wstring> warnings; // why it may be different on air, in sentences
    std::vector<LevelHealth> levels;    // in the station's order
    std::vector<BlockingCut> blockers;
    std::vector<OverAskedArtist> overAsked; // the worst first
    std::vector<std::wstring> remedies;     // the most useful first, at most three; most begin with a level
};

// The figures of a simulation, without advice.
StationHealth HealthOf(const SimulationResult& result, const LetHostRun& letHostRun = {});

} // namespace ravlo

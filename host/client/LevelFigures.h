// SPDX-License-Identifier: MIT
#pragma once

#include <RavloScheduler.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// Lights of a level.
inline constexpr std::int32_t lGreen = 0;
inline constexpr std::int32_t lRed = 2;

// How a level fares in a simulation, as the scheduler reports it.
struct LevelFigures
{
    std::wstring sKey; // <name> TAB <level>
    std::int32_t lLight = 0;
    std::int32_t lCuts = 0;
    std::int32_t lPicks = 0;
    std::int32_t lArtistSepMins = 0;
    std::int32_t lAttainableArtistMins = 0;
    std::int32_t lFewestPlays = 0;
    double dMeanPlays = 0;
    std::int32_t lMostPlays = 0;
    std::int32_t lNeverPlayed = 0; // cuts
    std::int32_t lUnderHalf = 0;
    std::int32_t lRulesBroken = 0;
    std::vector<std::wstring> advice; // see AddAdvice
};

// Throw the simulation's errors.
std::vector<LevelFigures> FiguresOf(_clsSimulation& cSimulation); // without advice
// Looks for what helps each level that is not green, which takes several simulations a level. begin is called
// before each, with the share of the whole work that it takes: from dFrom to dTo, 0 to 1.
void AddAdvice(_clsSimulation& cSimulation, std::vector<LevelFigures>& levels,
               const std::function<void(double dFrom, double dTo)>& begin);
std::vector<std::wstring> OverAsked(_clsSimulation& cSimulation);

// A table with a heading, a line each.
std::wstring HealthTable(const std::vector<LevelFigures>& levels);
// The advice for each level that has any: the level's name, and a line for each remedy below it.
std::wstring AdviceLines(const std::vector<LevelFigures>& levels);

} // namespace ravlo

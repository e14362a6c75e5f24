// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/LevelAdvice.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ravlo
{

// What the rotation health window says in words.

// Whether a light says anything about a level: it has cuts, and the plan asks for it.
enum class LevelState
{
    Asked,
    Unasked,
    Empty,
};
LevelState StateOf(const LevelHealth& level) noexcept;

// The light's name; "not asked", "empty".
std::wstring LightText(const LevelHealth& level);
// Grows with what is wrong: the light first, then the cuts that play too seldom, then the rules broken.
double SeverityOf(const LevelHealth& level) noexcept;
// Cuts that never play or less than half as often as is due, each once; the never played first.
std::vector<StarvedCut> SeldomPlayed(const LevelHealth& level);

// "28 days from 2026-11-22 06:00, 13 412 slots. 3 levels red, 2 yellow, 12 green."
std::wstring SummaryText(const StationHealth& health);
// "Abba is asked for more often than its separations allow (1.25 of 1)."; empty when none is.
std::wstring OverAskedText(const StationHealth& health);
// Why a level has its light, one sentence each.
std::vector<std::wstring> ReasonsOf(const LevelHealth& level);

// "1 cut never plays", "3 cuts never play".
std::wstring Counted(std::size_t count, const std::wstring& sOne, const std::wstring& sMany);
// With an upper-case first letter.
std::wstring Capitalised(std::wstring sText);

} // namespace ravlo

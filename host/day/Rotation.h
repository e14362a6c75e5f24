// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "plan/DayLog.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// Texts, each once, ignoring case.
using Keys = std::unordered_set<TextKey>;

// A category level and its cuts in rotation order; the first one is examined next.
struct LevelOrder
{
    std::wstring sCategory;
    std::int32_t lLevel = 0; // 0: a main category without levels, and so without cuts
    std::int32_t lAverageRunTimemS = 0;
    std::vector<PlayedCut> cuts;
};

// A snapshot of every level of a station, in the scheduler's order.
using Rotation = std::vector<LevelOrder>;

// The change of one level between two snapshots.
struct LevelChange
{
    std::wstring sCategory;
    std::int32_t lLevel = 0;
    std::size_t before = 0; // cuts
    std::size_t after = 0;
    std::vector<std::size_t> newAt; // the positions, from 1, of the cuts that are new in it
};

// The change of all levels.
struct RotationChange
{
    std::vector<LevelChange> levels; // existing ones in their order
    std::size_t added = 0;           // cuts in a level that were in none before
    std::size_t moved = 0;           // cuts in other levels than before
    std::size_t gone = 0;            // cuts in no level any more
};

RotationChange ChangeBetween(const Rotation& before, const Rotation& after);

// Without the levels that have as many cuts as before and no new one.
RotationChange OnlyChanged(RotationChange change);

// The level whose first new cut has the fewest cuts before it; null when no level has a new cut.
const LevelChange* SoonestNew(const RotationChange& change);

// A table of the levels: cuts before and after, positions of the new ones. With a heading; each line ended
// with LF.
std::wstring ChangeTable(const RotationChange& change);

// "3, 5-9, 12": ascending places, neighbours joined.
std::wstring PlacesText(const std::vector<std::size_t>& places);

// The rotation from its first cut on, at most `most` cuts (0: all), one line each; "new" ends the line of a
// new one.
std::wstring OrderLines(const LevelOrder& order, const std::vector<std::size_t>& newAt, std::size_t most);

// A table of the levels with their numbers of cuts and average run times, with a heading and a line that
// counts them.
std::wstring LevelTable(const Rotation& rotation);

// "1 cut", "2 cuts".
std::wstring CountOf(std::size_t count, const wchar_t* sOne, const wchar_t* sMany);

} // namespace ravlo

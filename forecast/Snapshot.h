// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Pace.h"
#include "media/PlainCut.h"
#include "model/clsCat.h"
#include "rotation/ArtistNames.h"
#include "rotation/PlayHistory.h"
#include "rotation/RotationOptions.h"
#include "rotation/SeparationRules.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

inline constexpr double dMinutemS = 60'000;

// The position of a cut in a snapshot. The ID of a copy is one more, since 0 is that of no cut.
using CutNumber = std::uint32_t;

struct SnapshotCut
{
    PlainCutValues values;
    std::wstring sPath;
};

struct SnapshotLevel
{
    std::wstring sCategory;
    std::int32_t lLevel = 0;
    SeparationRules rules;
    std::vector<CutNumber> order; // from the head
};

// What decides which cuts a station plays, as values. Nothing in it belongs to the station, so a copy can be
// changed to see what a change would do.
struct StationSnapshot
{
    // Adds a cut and returns its number. Keys are not compared.
    CutNumber Add(SnapshotCut cut);

    std::vector<std::wstring> mainCats; // names; a main category may have no level
    std::vector<SnapshotLevel> levels;  // in the tree's order
    std::vector<SnapshotCut> cuts;      // of the levels and of the history
    PlayLists<CutNumber> history;       // under the names in force
    std::vector<CutNumber> played;      // cuts of the history in the order of their plays
    RotationOptions options;
    ArtistNames names;
    std::vector<std::wstring> warnings; // what could not be read and may differ on air
};

// Reads a station once. Throws what the cuts of its levels throw, naming the cut. A play of the history that
// cannot be read is left out: on air it breaks no rule either. Precondition: the caller keeps the station's
// objects alive during the call, because letHostRun may release the host's own references.
std::shared_ptr<StationSnapshot> TakeSnapshot(ModScheduler& cMod, const CatCollection& colMainCats,
                                              const PlayHistory& cHistory,
                                              const RotationOptions& options = {},
                                              const ArtistNames& names = {},
                                              const LetHostRun& letHostRun = {});

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Snapshot.h"
#include "rotation/Explanation.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// What one slot of a forecast gets.
struct ForecastCut
{
    DateTime dtStart = 0;
    bool bChosen = false; // otherwise nothing can be chosen, and sReason says why
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sReason;       // the rule that the cut breaks, as a sentence; empty when it breaks none
    std::size_t passedOver = 0; // cuts that were examined before it
};

// A snapshot of one level, with the plays and options of its station. Throws what its cuts throw.
// Precondition: cSubCat is a level.
std::shared_ptr<StationSnapshot>
TakeSnapshotOfLevel(ModScheduler& cMod, const std::shared_ptr<clsCat>& cSubCat, const PlayHistory& cHistory,
                    const RotationOptions& options, const ArtistNames& names);

// Plays so many slots of the snapshot's only level on a copy, from dtStart on: dSlotMins apart, or one cut
// after the other when that is 0. Empty for a level without cuts.
std::vector<ForecastCut> ForecastLevel(ModScheduler& cMod, const StationSnapshot& snapshot, std::size_t slots,
                                       DateTime dtStart, double dSlotMins);

} // namespace ravlo

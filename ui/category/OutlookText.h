// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/LevelOutlook.h"

#include <cstdint>
#include <string>

namespace ravlo
{

// Says what a level can keep: in minutes where its last plays tell how often it is asked, else in plays.
// Names a separation (minutes, 0 for none) that it cannot keep.
std::wstring OutlookText(const LevelOutlook& level, std::int32_t lArtistMins, std::int32_t lTitleMins);

} // namespace ravlo

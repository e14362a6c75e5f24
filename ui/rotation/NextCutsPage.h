// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/LevelForecast.h"
#include "forecast/LevelOutlook.h"
#include "ui/rotation/ListPage.h"

#include <string>
#include <vector>

namespace ravlo
{

// What a level will play next: how that was worked out above, a row for each slot below. sLevel: "rock 2".
// rate: as the forecast used it; one cut after the other when asked is 0.
ListPage NextCutsPage(const std::vector<ForecastCut>& forecast, const std::wstring& sLevel, DateTime dtNow,
                      const AskingRate& rate);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "forecast/Snapshot.h"

namespace ravlo
{

// A plan for a station whose clock is not known: asks every level that has cuts, one after the other, all as
// often, from dtStart on for so many days. A slot is as long as the level's cuts are on average. An hour that
// repeats would not do: a station with many levels would never come to the last ones. Empty when no level has
// cuts. Precondition: days as in Simulate.
Plan EachLevelInTurn(const StationSnapshot& station, DateTime dtStart, double dDays);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Plan.h"
#include "forecast/Snapshot.h"

namespace ravlo
{

// A plan for a station whose clock is not known: asks every level that has cuts in turn, equally often, for
// dDays days from dtStart. A slot has the average length of the level's cuts. Its slots have times: a
// repeating hour would never reach the last of many levels. Empty when no level has cuts. Precondition: days
// as in Simulate.
Plan EachLevelInTurn(const StationSnapshot& station, DateTime dtStart, double dDays);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerState.h"

namespace ravlo
{

// Gives a tree that was read from the station's own files, while its present tree went on serving picks, the
// orders that are newer than those files were when they were read: picks and saves since, changes that were
// not or could not be saved, and all of a category whose file could not be read in full. Level by level, cuts
// that the present tree lacks come first, as those do that a file does not name. Levels that only the present
// tree has are made; empty ones that it lacks are removed, since they were deleted here.
void CarryNewerOrders(const SchedulerState& cState, const CatCollection& colNew);

// Gives such a tree the main categories that were created since the list of categories was last saved, with
// their levels, and takes out those without cuts that were deleted since: the list could not be saved.
// Precondition: there is a present tree, and its list is the one that was read.
void CarryUnsavedCats(const SchedulerState& cState, CatCollection& colNew);

} // namespace ravlo

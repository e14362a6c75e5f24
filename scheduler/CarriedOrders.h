// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerState.h"

namespace ravlo
{

// While a new tree is read from the station's files, the present one still serves picks. Copies from the
// present tree to the new one each order that is newer than the file was when it was read: changed by picks
// and saves since, not saved, or of a file that could not be read in full. In each level, cuts that the
// present tree lacks come first, as do cuts that a file does not name. Creates the levels that only the
// present tree has and removes empty ones that it lacks, since they were deleted here.
void CarryNewerOrders(const SchedulerState& cState, const CatCollection& colNew);

// For the case that the list of categories could not be saved: adds to such a tree the main categories
// created since the last save, with their levels, and removes those without cuts that were deleted since.
// Precondition: there is a present tree, and its list is the one that was read.
void CarryUnsavedCats(const SchedulerState& cState, CatCollection& colNew);

} // namespace ravlo

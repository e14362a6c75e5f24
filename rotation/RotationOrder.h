// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "rotation/Selection.h"

#include <memory>

namespace ravlo
{

// A level's rotation order is the order of its SchedCuts: the head is considered next and then moves to the
// end. Only the order changes here: no run times, no category names, no files.

// Moves the database's own cut for cCut from its position in the level to the end, replaces the object under
// its key by it, and traces the outcome. Returns false without a trace when there is no level, cut or
// database or the database has no such cut; false when the level does not contain it. An error is logged
// without a box and returns false; nothing has moved then.
bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionContext& context);

} // namespace ravlo

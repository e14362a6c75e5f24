// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "rotation/Selection.h"

#include <memory>

namespace ravlo
{

// A level's rotation order is the order of its SchedCuts: the head is considered next, and what was
// considered goes to the end. Only the order changes here: no run times, no category names, no files.

// The database's own cut for a cut or a copy of one: by its unique key, else by its artist and title. Null
// when there is none. Errors of the database are thrown.
std::shared_ptr<Cut> DataBaseCutOf(const Cut& cCut, const DataBase& cDataBase);

// Moves the database's own cut for cCut from its place in the level to the end, where it takes the place of
// the object that was placed under its key, and notes what became of it. False, and nothing is noted, without
// a level, a cut or a database, or when the database knows no such cut; false when the level does not hold
// it. An error is logged, without a box, and gives false: nothing has moved then.
bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionContext& context);

} // namespace ravlo

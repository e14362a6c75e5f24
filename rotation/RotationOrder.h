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

enum class SentToBack
{
    Unknown, // no level, no cut, no database, or the database knows no such cut: nothing happened
    No,      // the level does not hold the database's cut
    Yes,     // the database's cut stands at the end, in place of whatever object stood there under its key
};

// Moves the database's own cut for cCut from its place in the level to the end. Errors of the database are
// thrown, and nothing has moved then.
SentToBack SendToBack(clsCat* cSubCat, const Cut* cCut, const DataBase* cDataBase);

// The same in a world: notes what became of the cut, except when it is unknown. True when it was sent to the
// back. An error is logged, without a box, and gives false.
bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionWorld& world);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "rotation/Selection.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace ravlo
{

// A level's rotation order is the order of its SchedCuts: the head is examined next and then moves to the
// end. These functions change only the order: no run times, category names or files.

// Moves the database's own cut for cCut from its position in the level to the end, makes it the level's
// object for its key, and traces the outcome. Returns false without a trace when there is no level, cut or
// database or the database has no such cut; false when the level does not contain it. On an error returns
// false, moves nothing and logs without a box.
bool SendToBackOfCategory(clsCat* cSubCat, const Cut* cCut, const SelectionContext& context);

// Returns the keys of an order, to put it back later. Items without a key are left out.
std::vector<TextKey> OrderOf(const CutCollection& colOrder);
// Returns the present positions of the items in the order that PutInOrder makes.
std::vector<std::size_t> PositionsInOrder(const CutCollection& colOrder, const std::vector<TextKey>& colKeys);
// Puts the items of these keys first, in this order. Keys that are not there are passed over; items that the
// keys do not name follow in their present order.
void PutInOrder(CutCollection& colOrder, const std::vector<TextKey>& colKeys);

} // namespace ravlo

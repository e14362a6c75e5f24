// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Cuts that are dragged, or kept by a Copy for later, and the levels they were taken from. By keys: objects
// go with the next population.
struct DraggedCuts
{
    std::vector<TextKey> colKeys;
    std::vector<std::wstring> colFromKeys; // of the levels' nodes
};
// The cuts of the selected rows.
DraggedCuts TakeDragged(const clsSchedLibGridPresenter& cGrid);

// What is left of them at present: cuts the database still has, and the levels to take them out of. Those are
// the levels they were dragged from, as far as these still hold them; a cut that none of them holds any more
// comes from every level it is in now. A free-standing level of number 0 is added for cuts that are in none.
struct PresentCuts
{
    Cuts colCuts;
    Cats colFrom;
};
PresentCuts PresentOf(const clsSchedMan& cSchedMan, const DraggedCuts& dragged);

// Whether copying would bring none of them into a level of another number than their own: a cut has one level
// number for all its categories. lLevel is the target's, 0 for a main category, which takes all.
bool MayCopyInto(std::int32_t lLevel, const PresentCuts& present);

} // namespace ravlo

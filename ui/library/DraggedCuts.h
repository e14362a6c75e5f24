// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Cuts that are dragged, or kept by a Copy for later, and the levels they come from; by keys, since the next
// population replaces the objects.
struct DraggedCuts
{
    std::vector<TextKey> colKeys;
    std::vector<std::wstring> colFromKeys; // of the levels' nodes
};
// Takes the cuts of the selected rows.
DraggedCuts TakeDragged(const clsSchedLibGridPresenter& cGrid, const clsSchedMan& cSchedMan);

// What still exists of them: cuts the database has, and the levels to take them out of. Those are the levels
// they were dragged from that still contain any of them; a cut that none of these contains comes from every
// level that does. A level of number 0 in no category is added for cuts that no level contains.
struct PresentCuts
{
    Cuts colCuts;
    Cats colFrom;
};
PresentCuts PresentOf(const clsSchedMan& cSchedMan, const DraggedCuts& dragged);

// Whether copying brings none of them into a level of another number than their own: a cut has one level
// number for all its categories. lLevel is the target's, 0 for a main category, which takes all.
bool MayCopyInto(std::int32_t lLevel, const PresentCuts& present);

} // namespace ravlo

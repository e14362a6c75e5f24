// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Cuts that are dragged, or copied for a later Paste, and the levels they come from. By keys, since the next
// population replaces the objects.
struct DraggedCuts
{
    std::vector<TextKey> colKeys;
    std::vector<std::wstring> colFromKeys; // of the levels' nodes
};
// Takes the cuts of the selected rows.
DraggedCuts TakeDragged(const clsSchedLibGridPresenter& cGrid, const clsSchedMan& cSchedMan);

// The part of them that still exists: cuts of the database, and the levels to take them from. Those are the
// original levels that still contain any of the cuts; for a cut in none of these, every level that contains
// it. For cuts that no level contains, a level of number 0 in no category is added.
struct PresentCuts
{
    Cuts colCuts;
    Cats colFrom;
};
PresentCuts PresentOf(const clsSchedMan& cSchedMan, const DraggedCuts& dragged);

// Whether each of them may be copied into that level: a cut has one level number for all its categories, so
// it must be the cut's own. lLevel 0, a main category, accepts all.
bool MayCopyInto(std::int32_t lLevel, const PresentCuts& present);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/CatDragOptions.h"
#include "scheduler/CutChanges.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// The level in which a main category places a cut: the cut's own number, or 1 when that is not a level
// number.
std::int32_t OwnLevelOf(const Cut& cCut);

// Shows that a cut cannot be copied into a level of another number than its own.
void ShowCopyRefused(ModScheduler& cMod);

// Copies or moves many cuts into a category. A cut has one level number for all its categories. So moving it
// into a level changes that number and moves the cut to the new level in every main category it stays in;
// moving it into a main category keeps the number. Copying into a level of another number is refused: the cut
// would leave it at the next start.
class MassChange
{
public:
    // cSubCatTo: a level, or a main category for "keeping levels the same". It and colSubCatsFrom, the levels
    // the cuts are dragged from, may be from before a reload: they are looked up by name and number.
    MassChange(SchedulerState& cState, Synchronisation& cSync, eCatDragOptions eCatDragOption,
               const Cats& colSubCatsFrom, const std::shared_ptr<clsCat>& cSubCatTo);

    // Changes the cuts, saves each main category concerned once and reports which cuts could not be changed;
    // cuts that may not be copied are refused with one box. Sets bCreatedNewSubCats when it created a level.
    // Does nothing without cuts. Throws error 5 when the tree has no such target; when the target is deleted
    // during the work, only after saving what was done.
    void Run(const Cuts& colCutsToChange, bool& bCreatedNewSubCats);

private:
    struct Plan // the steps of moving one cut
    {
        std::int32_t lLevel;
        std::vector<SchedulerState::Place> colLeaves;
        Cats colStays; // main categories where it is already in that level
        Cats colJoins; // main categories where it moves to the end of that level
        std::vector<std::wstring> colNamesLost;
    };

    std::size_t RunChanges(const Cuts& colCuts, bool& bCreatedNewSubCats);
    std::size_t Copy(CutChanges& cChanges, const Cuts& colCuts);
    std::size_t Move(CutChanges& cChanges, const Cuts& colCuts);
    void CopyCut(CutChanges& cChanges, const std::shared_ptr<Cut>& cCut);
    void MoveCut(CutChanges& cChanges, const std::shared_ptr<Cut>& cCut);
    bool LeavesCategory(const SchedulerState::Place& place) const;
    bool MayLeave(const SchedulerState::Place& place) const;
    Plan PlanFor(CutChanges& cChanges, const Cut& cCut) const;
    void PlanNames(CutChanges& cChanges, const Cut& cCut, const std::vector<SchedulerState::Place>& colPlaces,
                   Plan& plan) const;
    static void ChangeCut(Cut& cCut, const Plan& plan);
    bool MayCopy(const Cut& cCut) const;
    bool IsRefused(const std::shared_ptr<Cut>& cCut) const noexcept;
    // Whether the target is still in the tree.
    bool TargetExists() const;

    SchedulerState& m_cState;
    Synchronisation& m_cSync;
    eCatDragOptions m_eOption;
    Cats m_colFrom;
    std::shared_ptr<clsCat> m_cTo;
    std::shared_ptr<clsCat> m_cMainCatTo;
    bool m_bRefused = false; // a copy was refused
};

} // namespace ravlo

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

// The level under which a cut is placed in a main category: its own number, or 1 when that is no level's.
std::int32_t OwnLevelOf(const Cut& cCut);

// Says that a cut cannot be copied into a level of another number than its own.
void ShowCopyRefused(ModScheduler& cMod);

// Copies or moves many cuts into a category. A cut has one level number for all its categories, so moving it
// into a level changes the number and moves it under the new one in every main category it stays in; into
// a main category it keeps its number. For the same reason a cut is not copied into a level of another
// number: it would be in that level only until the next start.
class MassChange
{
public:
    // cSubCatTo is a level, or a main category for "keeping levels the same". It and the levels the cuts are
    // dragged from may be from before a reload: they are looked up by name and number.
    MassChange(SchedulerState& cState, Synchronisation& cSync, eCatDragOptions eCatDragOption,
               const Cats& colSubCatsFrom, const std::shared_ptr<clsCat>& cSubCatTo);

    // Changes the cuts, saves every main category concerned once and reports what could not be changed; cuts
    // that may not be copied are refused with one box. bCreatedNewSubCats is set when any level was made.
    // Without cuts nothing happens and nothing is said. Error 5 when the tree has no such target; when it
    // goes while the change runs, the error comes after all that was done until then is saved.
    void Run(const Cuts& colCutsToChange, bool& bCreatedNewSubCats);

private:
    struct Plan // what a move does to one cut
    {
        std::int32_t lLevel;
        std::vector<SchedulerState::Place> colLeaves;
        Cats colStays; // main categories in which it is at that level already
        Cats colJoins; // main categories in which it moves to the end of that level
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
    // Whether the target is still one of the tree's.
    bool TargetExists() const;

    SchedulerState& m_cState;
    Synchronisation& m_cSync;
    eCatDragOptions m_eOption;
    Cats m_colFrom;
    std::shared_ptr<clsCat> m_cTo;
    std::shared_ptr<clsCat> m_cMainCatTo;
    bool m_bRefused = false; // a cut that may not be copied
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/BatchedChanges.h"
#include "scheduler/CatDragOptions.h"
#include "scheduler/Station.h"
#include "scheduler/Synchronisation.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace ravlo
{

// Copies or moves many cuts into a category. A cut has one level number for all its categories, so moving it
// into a level changes the number and re-files it under the new one in every main category it stays in; into
// a main category it keeps its number. Each cut is changed whole or not at all, so whoever is called
// meanwhile finds every cut in one place or the other.
class MassChange
{
public:
    // cSubCatTo is a level, or a main category for "keeping levels the same".
    MassChange(Station& cStation, Synchronisation& cSync, eCatDragOptions eCatDragOption, Cats colSubCatsFrom,
               std::shared_ptr<clsCat> cSubCatTo);

    // Changes the cuts, saves every main category concerned once and reports what could not be changed.
    // bCreatedNewSubCats is set when any level was made. Without cuts nothing happens and nothing is said.
    // Error 5 when the target is none of the tree's; when it goes meanwhile, the error comes after all that
    // was done until then is saved.
    void Run(const Cuts& colCutsToChange, bool& bCreatedNewSubCats);

private:
    struct Plan // what a move does to one cut
    {
        std::int32_t lLevel;
        std::vector<Station::Place> colLeaves;
        Cats colStays; // main categories in which it stands at that level already
        Cats colJoins; // main categories in which it is filed at the end of that level
    };

    void Copy(const Cuts& colCuts, bool& bCreatedNewSubCats);
    void Move(const Cuts& colCuts, bool& bCreatedNewSubCats);
    void CopyCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats);
    void MoveCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCats);
    Plan PlanFor(const Cut& cCut) const;
    void MoveCut(const std::shared_ptr<Cut>& cCut, const Plan& plan, bool& bCreatedNewSubCats);
    void ChangeCut(Cut& cCut, const Plan& plan) const;
    void PutBack(Cut& cCut, const Plan& plan, const std::wstring& sCategoryText, std::int32_t lCatLevel);
    BatchedChanges Batch();
    // Whether the target is still one of the tree's.
    bool TargetStands() const;

    Station& m_cStation;
    Synchronisation& m_cSync;
    eCatDragOptions m_eOption;
    Cats m_colFrom;
    std::shared_ptr<clsCat> m_cTo;
    std::shared_ptr<clsCat> m_cMainCatTo;
    AffectedCats m_cAffected;
    Filing m_cFiling;
    std::size_t m_lDone = 0; // cuts that were tried
};

} // namespace ravlo

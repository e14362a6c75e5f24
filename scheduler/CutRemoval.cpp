// SPDX-License-Identifier: MIT
#include "scheduler/CutRemoval.h"

#include "base/CaseFolding.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/CutChanges.h"
#include "scheduler/UndoTexts.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t cutsPerReport = 50;

// Whether a removal may remove its cut from that level, as far as can be told without reading the cut.
bool MayLeave(const CutRemoval& removal, const SchedulerState::Place& place)
{
    return removal.cCut &&
           (!removal.cMainCat || EqualIgnoringCase(removal.cMainCat->CatName(), place.cMainCat->CatName())) &&
           (removal.lLevel == 0 || removal.lLevel == place.cSubCat->CatLevel());
}

// Records the removal to be undone, under the levels that the cuts have left.
void AddStep(SchedulerState& cState, const ChangeRecord& record)
{
    Cats colLeft;
    for (const ChangeRecord::Order& order : record.colOrders)
        colLeft.push_back(
            std::make_shared<clsCat>(cState.cMod, order.category.sCatName, order.category.lLevel));
    cState.cUndo.Add(L"removal of " + CountedCuts(record.colCuts.size()) + L" from " +
                         ListCats(colLeft, mostInUndoText),
                     record);
}

// The end of a removal; saves only when save is set.
CutChanges::Ending EndingOf(SchedulerState& cState, std::optional<SaveMode> save)
{
    CutChanges::Ending ending;
    ending.save = save;
    ending.changed = [&cState](const ChangeRecord& record) { AddStep(cState, record); };
    ending.show = [&cState](const RuntimeError& cError) {
        cState.cMod.ShowCriticalError(L"Error in RemoveCutFromCategory [cSchedMan]", cError);
    };
    return ending;
}

} // namespace

Cats TakeOutOfCategories(const SchedulerState& cState, CutChanges& cChanges, const std::shared_ptr<Cut>& cCut,
                         const CutRemoval& removal)
{
    const std::int32_t lLevel = removal.lLevel != 0 ? removal.lLevel : cCut->CatLevel();
    std::vector<std::wstring> colNames; // read before removing, which takes names off the cut
    if (!removal.cMainCat)
        colNames = AssignedNames(*cCut);
    else if (removal.cMainCat->CatLevel() == 0)
        colNames = {removal.cMainCat->CatName()};
    Cats colFrom;
    for (const std::wstring& sName : colNames)
    {
        const std::shared_ptr<clsCat> cFrom = cState.MainCat(sName);
        const std::shared_ptr<clsCat> cSubCat = cFrom ? cFrom->SubCat(lLevel) : nullptr;
        if (cSubCat && cChanges.TakeOut(cCut, {cFrom, cSubCat}))
            colFrom.push_back(cFrom);
    }
    return colFrom;
}

void RemoveCut(SchedulerState& cState, Synchronisation& cSync, const CutRemoval& removal,
               CatCollection& colMainCatsIN)
{
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
    CutChanges::Rhythm rhythm;
    rhythm.mayLeave = [&](const SchedulerState::Place& place) { return MayLeave(removal, place); };
    Cats colFrom;
    cChanges.RunOne(
        removal.cCut,
        [&](const std::shared_ptr<Cut>& cCut, std::size_t) {
        colFrom = TakeOutOfCategories(cState, cChanges, cCut, removal);
        },
        rhythm);
    cChanges.Finish(EndingOf(cState, std::nullopt));
    if (cChanges.CutsDone() == 0)
        return; // nothing was removed
    for (const std::shared_ptr<clsCat>& cMainCat : colFrom)
        colMainCatsIN.Add(TextKey(cMainCat->CatName()), cMainCat);
}

void RemoveCuts(SchedulerState& cState, Synchronisation& cSync, const std::vector<CutRemoval>& colRemovals,
                const std::function<void(std::size_t done)>& progress)
{
    Cuts colCuts;
    for (const CutRemoval& removal : colRemovals)
        colCuts.push_back(removal.cCut);
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own);
    CutChanges::Rhythm rhythm;
    rhythm.cuts = cutsPerReport;
    rhythm.tell = progress;
    rhythm.mayLeave = [&](const SchedulerState::Place& place) {
        return std::any_of(colRemovals.begin(), colRemovals.end(),
                           [&](const CutRemoval& removal) { return MayLeave(removal, place); });
    };
    cChanges.Run(
        colCuts,
        [&](const std::shared_ptr<Cut>& cCut, std::size_t at) {
        TakeOutOfCategories(cState, cChanges, cCut, colRemovals[at]);
        },
        rhythm);
    cChanges.Finish(EndingOf(cState, SaveMode{}));
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "scheduler/CutRemoval.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
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

// What an undo calls the removal: it names the levels that the cuts have left.
std::wstring TextOf(ModScheduler& cMod, const ChangeRecord& record, std::size_t cuts)
{
    Cats colLeft;
    for (const ChangeRecord::Order& order : record.colOrders)
        colLeft.push_back(std::make_shared<clsCat>(cMod, order.category.sCatName, order.category.lLevel));
    return L"removal of " + CountedCuts(cuts) + L" from " + ListCats(colLeft, mostInUndoText);
}

// Removals of one cut each from the same levels are one series.
UndoSteps::Series SeriesOf(const SchedulerState& cState, const ChangeRecord& record)
{
    UndoSteps::Series series;
    series.sName = L"removal";
    for (const ChangeRecord::Order& order : record.colOrders)
        if (const std::shared_ptr<clsCat> cMainCat = cState.MainCat(order.category.sCatName))
            if (const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(order.category.lLevel))
                series.colAfter.push_back(PresentOrder(*cSubCat));
    series.textOf = [&cMod = cState.cMod](const ChangeRecord& whole) {
        return TextOf(cMod, whole, whole.colCuts.size());
    };
    return series;
}

// The end of a removal; saves only when save is set.
CutChanges::Ending EndingOf(SchedulerState& cState, std::optional<SaveMode> save)
{
    CutChanges::Ending ending;
    ending.save = save;
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
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own, [&](const ChangeRecord& record, std::size_t) {
        cState.cUndo.AddToSeries(SeriesOf(cState, record), record);
    });
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
    CutChanges cChanges(cState, cSync, CutChanges::Origin::Own,
                        [&](const ChangeRecord& record, std::size_t cuts) {
        cState.cUndo.Add(TextOf(cState.cMod, record, cuts), record);
    });
    if (colCuts.size() > cutsPerReport)
        cChanges.WorkInParts(L"removal of " + CountedCuts(colCuts.size()));
    CutChanges::Rhythm rhythm;
    rhythm.cuts = cutsPerReport;
    rhythm.tell = progress;
    rhythm.goOn = [&, population = cState.populations] { return cState.populations == population; };
    rhythm.mayLeave = [&](const SchedulerState::Place& place) {
        return std::any_of(colRemovals.begin(), colRemovals.end(),
                           [&](const CutRemoval& removal) { return MayLeave(removal, place); });
    };
    const std::size_t tried = cChanges.Run(
        colCuts,
        [&](const std::shared_ptr<Cut>& cCut, std::size_t at) {
        TakeOutOfCategories(cState, cChanges, cCut, colRemovals[at]);
        },
        rhythm);
    cChanges.Finish(EndingOf(cState, SaveMode{}));
    if (tried < colCuts.size())
        throw RuntimeError(error::PermissionDenied, L"The categories were read from the database again; " +
                                                        CountedCuts(colCuts.size() - tried) +
                                                        L" left as before");
}

} // namespace ravlo

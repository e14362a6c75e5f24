// SPDX-License-Identifier: MIT
#include "scheduler/CutRemoval.h"

#include "scheduler/BatchedChanges.h"
#include "scheduler/Synchronisation.h"

namespace ravlo
{

namespace
{

constexpr std::size_t lCutsPerReport = 50;

} // namespace

void RemoveCuts(Station& cStation, Synchronisation& cSync, const std::vector<CutRemoval>& colRemovals,
                const std::function<void(std::size_t lDone)>& progress)
{
    const Synchronisation::Hold cHold(cSync);
    Filing cFiling(cStation.cMod);
    AffectedCats cAffected;
    CatCollection colRemovedFrom;
    BatchedChanges cBatch(cStation, cFiling,
                          [&](const std::shared_ptr<Cut>& cCut) { cSync.Refile(cCut, cAffected, cFiling); });
    std::size_t lCount = 0;
    for (const CutRemoval& removal : colRemovals)
    {
        try
        {
            cBatch.Changing(removal.cCut);
            cSync.RemoveCutFromCategory(removal.cMainCat, removal.cCut, colRemovedFrom, removal.lLevel,
                                        cFiling);
        }
        catch (...)
        {
            cFiling.Failed(*removal.cCut);
        }
        if (++lCount % lCutsPerReport != 0)
            continue;
        cBatch.Commit();
        progress(lCount);
        cStation.cMod.Pump();
        cBatch.Begin();
    }
    cBatch.Commit();
    cFiling.RecalcTouched();
    for (const std::shared_ptr<clsCat>& cMainCat : colRemovedFrom)
        cAffected.Touch(cMainCat->CatName());
    cSync.SaveAffected(cAffected);
    cFiling.Report(
        [&](const RuntimeError& cError)
        { cStation.cMod.ShowCriticalError(L"Error in RemoveCutFromCategory [cSchedMan]", cError); });
}

} // namespace ravlo

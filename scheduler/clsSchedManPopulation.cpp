// SPDX-License-Identifier: MIT
// Population: how a manager builds its tree.

#include "base/CaseFolding.h"
#include "base/ScopedFlag.h"
#include "scheduler/CarriedOrders.h"
#include "scheduler/Population.h"
#include "scheduler/SchedManParts.h"
#include "scheduler/StationFolder.h"

#include <utility>

namespace ravlo
{

void clsSchedMan::PopulateFromDataBase(std::shared_ptr<ravlo::DataBase> cDataBase,
                                       const std::wstring& strAppPath)
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    if (strAppPath.empty())
    {
        my.cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                    L"'strAppPath' Must be the 'app.path' of the calling app!");
        return;
    }
    if (my.bPopulating)
    {
        my.cMod.WriteDebugLog(L"PopulateFromDataBase was called while it is running; ignored.");
        return;
    }
    TrapCritical(my.cMod, L"Error in PopulateFromDataBase [cSchedMan]", [&] {
        my.WritePendingPlayTimes();
        // Queued notifications run when this goes out of scope; edits are allowed again by then.
        const Synchronisation::Hold cHold(my.cSync);
        PlacedCuts cPlacedCuts;
        Population cPopulation(my.cMod, my.cEvents, my.cCategoryList, my.cHistoryFiles, cPlacedCuts);
        if (!ReplaceTree(cDataBase, strAppPath, cPopulation, cPlacedCuts))
            return;
        RecordNotedPlays();
        cPopulation.ReportProblems();
    });
}

bool clsSchedMan::ReplaceTree(const std::shared_ptr<ravlo::DataBase>& cDataBase,
                              const std::wstring& strAppPath, Population& cPopulation,
                              PlacedCuts& cPlacedCuts)
{
    Parts& my = *m_cParts;
    const ScopedFlag cPopulating(my.bPopulating);
    // The files will be read again, so they must contain the newest orders.
    if (const std::shared_ptr<CatCollection> colPresent = my.colMainCats)
    {
        my.cHistoryFiles.SavePending(*colPresent);
        my.cCategoryList.SaveBeforeReading(*colPresent, my.AppPath());
    }
    // cMove remembers the folder: another manager may move the library while messages are pumped.
    FolderMove cMove(my.cMod, strAppPath);
    const std::wstring& sAppPath = cMove.AppPath();
    CreateFolders(my.cMod, sAppPath);
    if (!cMove.IsMoving())
        my.cMod.LoadSettings();
    if (!cDataBase)
    {
        my.cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                    L"PopulateFromDatabase in clsSchedMan actually does need a database!");
        return false;
    }
    DeleteOldTemporaryFiles(my.cMod.Ports().cFiles, sAppPath);
    const bool bSameFolder = EqualIgnoringCase(sAppPath, my.AppPath());
    const bool bMarked = bSameFolder && my.cMark;
    if (const std::shared_ptr<CatCollection> colPresent = my.colMainCats;
        colPresent && !bSameFolder && my.cCategoryList.IsUnsaved(*colPresent))
        my.cCategoryList.SaveCatNames(colPresent.get(),
                                      my.AppPath()); // the last chance to save it; a failure is shown
    std::unique_ptr<HeldFile> cMark = bMarked ? nullptr : MarkStationOrLog(my.cMod, sAppPath);
    std::shared_ptr<CatCollection> colNew = BuildTree(cDataBase, cPopulation, sAppPath, bSameFolder);
    // From here on nothing else runs until the new tree is in use.
    const std::shared_ptr<CatCollection> colOld = std::exchange(my.colMainCats, std::move(colNew));
    if (my.cDataBase && my.cDataBase != cDataBase)
        my.cPlayHistory.Leave(my.cDataBase);
    my.cDataBase = cDataBase;
    my.cPlacedCuts = std::move(cPlacedCuts);
    ++my.populations;
    my.Serve(sAppPath);
    my.cPicks.EndIncident();
    if (colOld)
        Trap(my.cMod, L"LastExplanation", [&] { my.cPicks.MoveExplanations(*colOld, *my.colMainCats); });
    if (!bMarked)
        my.cMark = std::move(cMark);
    my.cUndo.SetMayWrite(my.cMark != nullptr); // the program that has marked the folder writes it
    // A failure must not leave the new tree without its settings; it is tried again before the next pick.
    Trap(my.cMod, L"Rotation options", [&] { my.ServeRotation(sAppPath); });
    cMove.Settle();
    return true;
}

// Builds the new tree while picks and plays still use the present tree and its database: a pick must not use
// another database's cuts, and plays must not depend on a database that may fail. On an error follows the
// present database again.
std::shared_ptr<CatCollection> clsSchedMan::BuildTree(const std::shared_ptr<ravlo::DataBase>& cDataBase,
                                                      Population& cPopulation, const std::wstring& sAppPath,
                                                      bool bSameFolder)
{
    Parts& my = *m_cParts;
    struct Next
    {
        std::shared_ptr<ravlo::DataBase>& cNext;
        Next(std::shared_ptr<ravlo::DataBase>& c, const std::shared_ptr<ravlo::DataBase>& cDataBase)
            : cNext(c)
        {
            cNext = cDataBase;
        }
        ~Next() { cNext.reset(); }
    } const cNext(my.cNextDataBase, cDataBase);
    my.colPlayed.clear();
    Synchronisation::Waiting colWaiting = my.cSync.TakeWaiting();
    try
    {
        my.cSync.Follow(cDataBase, weak_from_this());
        std::shared_ptr<CatCollection> colNew = cPopulation.Build(*cDataBase, sAppPath);
        if (bSameFolder)
        {
            CarryNewerOrders(my, *colNew);
            CarryUnsavedCats(my, *colNew);
        }
        else if (my.colMainCats)
            my.cHistoryFiles.LeaveFolder(*my.colMainCats);
        return colNew;
    }
    catch (...)
    {
        my.cSync.FollowAgain(my.cDataBase, weak_from_this(), std::move(colWaiting));
        throw;
    }
}

void clsSchedMan::RecordNotedPlays()
{
    Parts& my = *m_cParts;
    const std::shared_ptr<ravlo::DataBase> cDataBase = my.cDataBase;
    for (const std::shared_ptr<Cut>& cCut : std::exchange(my.colPlayed, {}))
        Trap(my.cMod, Parts::sUpdateHistoryWhere, [&] { my.cPlayHistory.Record(*cCut, *cDataBase); });
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "scheduler/clsSchedMan.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "rotation/RandomOrder.h"
#include "scheduler/CategoryRename.h"
#include "scheduler/CutAssignment.h"
#include "scheduler/MassChange.h"
#include "scheduler/SchedManParts.h"

#include <utility>

namespace ravlo
{

clsSchedMan::clsSchedMan(ModScheduler& cMod) : m_cParts(std::make_unique<Parts>(cMod)) {}

clsSchedMan::~clsSchedMan()
{
    try
    {
        Parts& my = *m_cParts;
        const ModScheduler::LogScope cScope(my.cMod);
        my.cSync.Stop();
        my.cEvents.Listen(nullptr);
        my.cEvents.Follow(nullptr);
        my.WritePendingPlayTimes();
        if (!my.colMainCats)
            return;
        my.cCategoryList.SaveChangedCatNames(*my.colMainCats, my.AppPath());
        my.cUndo.SaveAtEnd(); // first: it does not throw
        my.cHistoryFiles.RetryAll(*my.colMainCats);
        // The settings belong to the library: after another manager has moved it to another folder, they are
        // that folder's.
        if (EqualIgnoringCase(my.AppPath(), my.cMod.ServedPath()))
            my.cMod.SaveSettings();
    }
    catch (...)
    {
        // Ignored at the end: nobody is left to report to.
    }
}

void clsSchedMan::SetEvents(SchedulerEvents* cEvents) noexcept { m_cParts->cEvents.Listen(cEvents); }
void clsSchedMan::SetWindows(SchedulerWindows* cWindows) noexcept { m_cParts->cWindows = cWindows; }
void clsSchedMan::SetProgressFollower(ProgressEvents* cWindow) noexcept { m_cParts->cEvents.Follow(cWindow); }
ProgressEvents* clsSchedMan::ProgressFollower() const noexcept { return m_cParts->cEvents.Follower(); }
ModScheduler& clsSchedMan::Mod() const noexcept { return m_cParts->cMod; }

const std::shared_ptr<NameCollection>& clsSchedMan::colIllegalChars() const noexcept
{
    return m_cParts->colIllegalChars;
}

std::shared_ptr<DataBase> clsSchedMan::DataBase() const noexcept
{
    return m_cParts->cNextDataBase ? m_cParts->cNextDataBase : m_cParts->cDataBase;
}
std::wstring clsSchedMan::AppPath() const { return m_cParts->cMod.AppPath(); }
std::shared_ptr<CatCollection> clsSchedMan::colMainCats() const noexcept { return m_cParts->colMainCats; }

std::shared_ptr<CutCollection> clsSchedMan::colCuts(const std::wstring& sCatName,
                                                    std::int32_t lCatLevel) const noexcept
try
{
    if (sCatName.empty())
        return nullptr;
    const std::shared_ptr<clsCat> cMainCat = MainCatByName(m_cParts->colMainCats.get(), sCatName);
    if (!cMainCat || lCatLevel == 0)
        return cMainCat ? cMainCat->SchedCuts() : nullptr;
    const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(lCatLevel);
    return cSubCat ? cSubCat->SchedCuts() : nullptr;
}
catch (...)
{
    return nullptr; // errors are ignored: for hosts null means "not there"
}

// ---- files ----

std::shared_ptr<NameCollection> clsSchedMan::colSavedCatNames()
{
    const Call cCall(*this);
    return m_cParts->cCategoryList.GetSavedCatNames();
}

bool clsSchedMan::SaveCatNames()
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    return my.cCategoryList.SaveCatNames(my.colMainCats.get(), my.AppPath());
}

bool clsSchedMan::SaveHistoryAndOrdering(const std::shared_ptr<clsCat>& cMainCat)
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    if (!cMainCat)
    {
        my.WritePendingPlayTimes();
        return my.colMainCats && my.cHistoryFiles.SaveAll(my.colMainCats);
    }
    // A category that was deleted, or is from before a population, has an old order.
    if (cMainCat->CatLevel() == 0 && !my.Contains(cMainCat))
    {
        my.cMod.WriteDebugLog(L"Not saved, it is no longer one of the categories: " + cMainCat->CatName());
        return false;
    }
    const bool bSaved = my.cHistoryFiles.Save(cMainCat) == HistoryFiles::Saved::Yes;
    my.RetrySaves();
    return bSaved;
}

// ---- editing ----

// Runs an edit of the tree. Refuses it during a population, since the present tree, and with it the edit,
// would be replaced.
template <class Result, class Body>
Result clsSchedMan::Edit(const wchar_t* sTitle, Result failure, Body&& body)
{
    const Call cCall(*this);
    const Result result = TrapCritical(Mod(), sTitle, failure, [&] {
        RefuseWhilePopulating();
        return body();
    });
    Mod().ShowWaiting();
    return result;
}

void clsSchedMan::RefuseWhilePopulating() const
{
    if (m_cParts->bPopulating)
        throw RuntimeError(error::PermissionDenied,
                           L"The categories are being read from the database just now");
}

template <class Body> void clsSchedMan::Edit(const wchar_t* sTitle, Body&& body)
{
    Edit(sTitle, false, [&] {
        body();
        return true;
    });
}

void clsSchedMan::RemoveCutFromCategory(const std::shared_ptr<clsCat>& cMainCat,
                                        const std::shared_ptr<Cut>& cCut, CatCollection& colMainCatsIN,
                                        std::int32_t LevelToRemoveFrom)
{
    if (cCut)
        Edit(L"Error in RemoveCutFromCategory [cSchedMan]", [&] {
            RemoveCut(*m_cParts, m_cParts->cSync, {cCut, cMainCat, LevelToRemoveFrom}, colMainCatsIN);
        });
}

void clsSchedMan::RemoveCutsFromCategories(const std::vector<CutRemoval>& colRemovals,
                                           const std::function<void(std::size_t done)>& progress)
{
    Edit(L"Error in RemoveCutFromCategory [cSchedMan]",
         [&] { RemoveCuts(*m_cParts, m_cParts->cSync, colRemovals, progress); });
}

void clsSchedMan::AssignCut(const std::shared_ptr<Cut>& cCut, std::int32_t lCatLevel,
                            const std::vector<std::wstring>& colCatNames)
{
    const Call cCall(*this);
    RefuseWhilePopulating();
    ravlo::AssignCut(*m_cParts, m_cParts->cSync, cCut, lCatLevel, colCatNames);
}

bool clsSchedMan::CreateMainCat(std::wstring& sName)
{
    return Edit(L"Error in CreateMainCat [cSchedMan]", false,
                [&] { return m_cParts->cCreation.CreateMainCat(sName); });
}

bool clsSchedMan::RenameMainCat(const std::wstring& sCatName, const std::wstring& sNewName)
{
    return Edit(L"Error in RenameMainCat [cSchedMan]", false, [&] {
        Parts& my = *m_cParts;
        // The record of the change that runs has the old name.
        if (my.openChanges != 0 || my.cUndo.IsUnitOpen())
            throw RuntimeError(error::PermissionDenied, L"Cuts are being changed just now");
        const std::wstring sNew = Trim(sNewName);
        if (const std::wstring sWhyNot = WhyNotRename(my, sCatName, sNew); !sWhyNot.empty())
        {
            my.cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Rename Category", sWhyNot);
            return false;
        }
        const std::wstring sFrom = my.MainCat(sCatName)->CatName();
        return sFrom != sNew &&
               ravlo::RenameMainCat(my, my.cSync, sFrom, sNew, [&](const ChangeRecord& record) {
                   my.cUndo.Add(L"renaming of " + sFrom + L" to " + sNew, record);
               });
    });
}

bool clsSchedMan::CreateCatLevel(const std::shared_ptr<clsCat>& cMainCatIn)
{
    return Edit(L"Error in CreateCatLevel [cSchedMan]", false,
                [&] { return m_cParts->cCreation.CreateCatLevel(cMainCatIn); });
}

std::vector<std::size_t> clsSchedMan::RandomOrderOf(std::size_t count)
{
    Random& cRandom = m_cParts->cMod.Ports().cRandom;
    cRandom.Randomize();
    return RandomOrder(cRandom, count);
}

void clsSchedMan::ShuffleCategories(const Cats& colCats, bool bConfirmFirst)
{
    Edit(L"Error in ShuffleCategories [cSchedMan]",
         [&] { m_cParts->cEditing.ShuffleCategories(colCats, bConfirmFirst); });
}

void clsSchedMan::SpreadCategories(const Cats& colCats, bool bConfirmFirst)
{
    Parts& my = *m_cParts;
    Random& cRandom = my.cMod.Ports().cRandom;
    const auto orderOf = [&](const clsCat& cSubCat) {
        my.RefreshRotation();
        const ArtistNames cNames = my.cRotationFiles.Names(); // kept while cuts are asked: others may be set
        const SpreadOrders::ItemOf itemOf = [&](const Cut& cCut) {
            const TextKey cTitle = cCut.TitleKey();
            return SpreadItem{cNames.NamesOf(cCut.ArtistKey(), cTitle), cTitle, cCut.AlbumKey(),
                              my.cPlayHistory.TimeOf(cCut)};
        };
        return my.cSpreadOrders.Find(cSubCat, my.cRotationFiles.Options(), itemOf, cRandom);
    };
    Edit(L"Error in SpreadCategories [cSchedMan]", [&] {
        cRandom.Randomize();
        my.cEditing.SpreadCategories(colCats, bConfirmFirst, orderOf);
    });
}

void clsSchedMan::RememberSpread(SpreadTrial trial) { m_cParts->cSpreadOrders.Remember(std::move(trial)); }

bool clsSchedMan::DeleteCats(const Cats& colCats)
{
    return Edit(L"Error in DeleteCats [cSchedMan]", false,
                [&] { return m_cParts->cEditing.DeleteCats(colCats); });
}

void clsSchedMan::MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                                     std::int32_t PosInto)
{
    Edit(L"Error in InsertCuts [cSchedMan]",
         [&] { m_cParts->cEditing.MoveCutsInCategory(cCat, colCutsInsert, PosInto); });
}

std::wstring clsSchedMan::ListCats(const Cats& colCats) const { return ravlo::ListCats(colCats); }

void clsSchedMan::DoMassCatChange(eCatDragOptions eCatDragOption, const Cats& colSubCatsFrom,
                                  const std::shared_ptr<clsCat>& cSubCatTo, const Cuts& colCutsToChange,
                                  bool& bCreatedNewSubCats)
{
    const bool bKnown =
        eCatDragOption == eCopyHere || eCatDragOption == eMoveHere || eCatDragOption == eMoveExclusiveHere;
    if (!bKnown || colSubCatsFrom.empty() || !cSubCatTo || colCutsToChange.empty())
        return;
    Edit(L"Error in DoMassCatChange [cSchedMan]", [&] {
        MassChange(*m_cParts, m_cParts->cSync, eCatDragOption, colSubCatsFrom, cSubCatTo)
            .Run(colCutsToChange, bCreatedNewSubCats);
    });
}

// ---- host and windows ----

// No Call in members that show something: they may run for hours, and lines logged in that time must be
// written at once. They keep the manager alive themselves.

void clsSchedMan::ShowHelp()
{
    const std::shared_ptr<clsSchedMan> cKeepAlive = weak_from_this().lock();
    m_cParts->cEvents.ShowHelpEvent();
}

std::optional<std::int32_t> clsSchedMan::RaiseEditRequestCutEvent(const std::shared_ptr<Cut>& cCut)
{
    const std::shared_ptr<clsSchedMan> cKeepAlive = weak_from_this().lock();
    return m_cParts->cEvents.RequestEditCut(cCut);
}

void clsSchedMan::ShowLibraryUI()
{
    const std::shared_ptr<clsSchedMan> cKeepAlive = weak_from_this().lock();
    Parts& my = *m_cParts;
    my.cMod.FlushDebugLog();
    my.cMod.ShowWaiting();
    TrapCritical(my.cMod, L"Error in ShowLibraryUI [cSchedMan]", [&] {
        if (my.cWindows)
            my.cWindows->ShowLibrary();
    });
}

std::int32_t clsSchedMan::ShowCatUI(CategoryRequest& request)
{
    const std::shared_ptr<clsSchedMan> cKeepAlive = weak_from_this().lock();
    Parts& my = *m_cParts;
    my.cMod.FlushDebugLog();
    my.cMod.ShowWaiting();
    return TrapCritical(my.cMod, L"Error in ShowCatUI [cSchedMan]", lNotChosen,
                        [&] { return my.cWindows ? my.cWindows->ShowCategory(request) : lNotChosen; });
}

bool clsSchedMan::UIShowing() const noexcept
{
    return m_cParts->cWindows && m_cParts->cWindows->LibraryShowing();
}

void clsSchedMan::ReloadAll()
{
    const Call cCall(*this);
    try
    {
        if (m_cParts->cWindows)
            m_cParts->cWindows->ReloadLibrary();
    }
    catch (...)
    {
        m_cParts->cMod.LogError(L"ReloadAll", CurrentError()); // not shown, only logged
    }
}

} // namespace ravlo

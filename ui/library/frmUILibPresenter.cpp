// SPDX-License-Identifier: MIT
#include "ui/library/frmUILibPresenter.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/StepParts.h"
#include "ui/library/NodeKey.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ravlo
{

frmUILibPresenter::frmUILibPresenter(frmUILibView& cView, CategoryTreeView& cTreeView,
                                     clsSchedLibGridView& cGridView, const LibraryFindBars& bars,
                                     ModScheduler& cMod)
    : m_cView(cView), m_cMod(cMod),
      m_cWork(cView, cMod, [this](clsSchedMan& cSchedMan) { Refresh(cSchedMan); }),
      m_cPanes(cView, cTreeView, cGridView, bars, m_cWork, cMod),
      m_cResults(cView, m_cPanes.Grid(), m_cWork, cMod), m_cCuts(cView, m_cPanes, m_cWork, m_cResults, cMod),
      m_cRotation(m_cPanes, m_cWork, m_cResults, cMod), m_cRename(m_cPanes, m_cWork, m_cResults),
      m_cHeadings(m_cPanes.Grid(), cGridView, cView, m_cWork, cMod),
      m_cCutMenu(m_cPanes, m_cCuts, m_cRotation, m_cHeadings, m_cResults, m_cWork, cGridView)
{
    m_cWork.UserActs = [this] { m_cResults.UserActs(); };
    m_cWork.Ended = [this] { m_cResults.WorkEnded(); };
    const auto dataBase = [this] {
        const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
        return cSchedMan ? cSchedMan->DataBase() : nullptr;
    };
    Grid().Plays().Source = dataBase;
    Grid().Plays().Recorded = [dataBase](DateTime dtFrom, DateTime dtTo) {
        const std::shared_ptr<DataBase> cDataBase = dataBase();
        return cDataBase ? cDataBase->RecordedPlays(dtFrom, dtTo) : std::nullopt;
    };
}

frmUILibPresenter::~frmUILibPresenter()
{
    if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan())
        cSchedMan->SetProgressFollower(nullptr);
}

void frmUILibPresenter::SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan)
{
    if (const std::shared_ptr<clsSchedMan> cBefore = m_cWork.SchedMan())
        cBefore->SetProgressFollower(nullptr);
    m_cWork.SetSchedMan(cSchedMan);
    if (cSchedMan)
        cSchedMan->SetProgressFollower(this);
}

// ---- opening, loading ----

void frmUILibPresenter::ShowModalUI()
{
    if (m_bShowing)
        return m_cView.BringToFront();
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    if (!cSchedMan)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"Scheduler Library needs a scheduler manager!");
        return;
    }
    const ScopedFlag cShowing(m_bShowing);
    m_bLookedForParts = false;
    m_cWork.Opened();
    m_cWork.Try(L"frmUILib.Form_Load", [&] {
        m_cPanes.Load(*cSchedMan);
        GoToTarget(*cSchedMan);
    });
    m_cView.ShowModal();
}

void frmUILibPresenter::Tick() noexcept
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    if (!cSchedMan || m_cWork.Running())
        return;
    // First: saving may delete what is left. Not while the window opens, since the steps may be many.
    if (!std::exchange(m_bLookedForParts, true) && PartsAreLeft(m_cMod.Ports().cFiles, cSchedMan->AppPath()))
        m_cWork.GoOn(L"frmUILib.Tick", [this](clsSchedMan& cMan) { m_cResults.SayInterrupted(cMan); });
    cSchedMan->SavePostponedSteps();
}

void frmUILibPresenter::GoTo(const std::wstring& sLevelKey, const TextKey& cCutKey)
{
    m_GoTo = [=, this](clsSchedMan& cSchedMan) { m_cPanes.GoToCut(cSchedMan, sLevelKey, cCutKey); };
    if (m_bShowing)
        m_cWork.RequestRefresh();
}

void frmUILibPresenter::Refresh(clsSchedMan& cSchedMan)
{
    m_cPanes.ShowChanges(cSchedMan);
    GoToTarget(cSchedMan);
}

void frmUILibPresenter::GoToTarget(clsSchedMan& cSchedMan)
{
    if (const std::function<void(clsSchedMan&)> goTo = std::exchange(m_GoTo, nullptr))
        goTo(cSchedMan);
}

void frmUILibPresenter::ReloadAll()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cWork.SchedMan();
    if (m_cWork.Running())
        m_cWork.RequestRefresh();
    else if (cSchedMan)
        try
        {
            m_cPanes.RefreshAll(*cSchedMan);
        }
        catch (...)
        {
            m_cView.HideProgress();
            throw;
        }
}

// ---- commands ----

// Every command but mnuExit, with its handler's name for error texts.
struct frmUILibPresenter::Command
{
    LibraryCommand eCommand;
    const wchar_t* sHandler;
    void (*Run)(frmUILibPresenter& self, clsSchedMan& cSchedMan);
};

void frmUILibPresenter::Do(LibraryCommand eCommand)
{
    static constexpr Command commands[] = {
        {LibraryCommand::mnuSelectAllTree, L"mnuSelectAllTree_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.m_cPanes.CheckAll(true); }},
        {LibraryCommand::mnuSelectNoneTree, L"mnuSelectNoneTree_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.m_cPanes.CheckAll(false); }},
        {LibraryCommand::mnuSelectInvertTree, L"mnuSelectInvertTree_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.m_cPanes.InvertChecks(); }},
        {LibraryCommand::mnuSelectAllGrid, L"mnuSelectAllGrid_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.Grid().SelectAll(); }},
        {LibraryCommand::mnuSelectNoneGrid, L"mnuSelectNoneGrid_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.Grid().SelectNone(); }},
        {LibraryCommand::mnuInvertSelectionGrid, L"mnuInvertSelectionGrid_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.Grid().InvertSelection(); }},
        {LibraryCommand::mnuReloadAll, L"mnuReloadAll_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.Reload(cSchedMan); }},
        {LibraryCommand::mnuSave, L"mnuSave_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.SaveAll(cSchedMan); }},
        {LibraryCommand::mnuCatUI, L"mnuCatUI_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.ShowCategoryWindow(cSchedMan); }},
        {LibraryCommand::mnuCatNew, L"mnuCatNew_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.NewCategory(cSchedMan); }},
        {LibraryCommand::mnuCatLevelNew, L"mnuCatLevelNew_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.NewLevel(cSchedMan); }},
        {LibraryCommand::mnuShuffle, L"mnuShuffle_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.Shuffle(cSchedMan); }},
        {LibraryCommand::mnuCatDelete, L"mnuCatDelete_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.Delete(cSchedMan); }},
        {LibraryCommand::mnuUndo, L"mnuUndo_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.Undo(cSchedMan); }},
        {LibraryCommand::mnuRedo, L"mnuRedo_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.Redo(cSchedMan); }},
        {LibraryCommand::mnuSpread, L"mnuSpread_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.Spread(cSchedMan); }},
        {LibraryCommand::mnuFairRotation, L"mnuFairRotation_Click",
         [](frmUILibPresenter& self,
            clsSchedMan& cSchedMan) { self.m_cRotation.SwitchFairRotation(cSchedMan); }},
        {LibraryCommand::mnuExplainNext, L"mnuExplainNext_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.ExplainNext(cSchedMan); }},
        {LibraryCommand::mnuNextCuts, L"mnuNextCuts_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.ShowNextCuts(cSchedMan); }},
        {LibraryCommand::mnuHealth, L"mnuHealth_Click",
         [](frmUILibPresenter& self, clsSchedMan& cSchedMan) { self.m_cRotation.ShowHealth(cSchedMan); }},
        {LibraryCommand::mnuRename, L"mnuRename_Click",
         [](frmUILibPresenter& self, clsSchedMan&) { self.m_cRename.Begin(); }},
        {LibraryCommand::mnuHelp, L"mnuHelp_Click",
         [](frmUILibPresenter&, clsSchedMan& cSchedMan) { cSchedMan.ShowHelp(); }},
    };
    // Closing is delayed while something runs, not ignored.
    if (eCommand == LibraryCommand::mnuExit)
        return RequestClose();
    const Command& command = *std::find_if(std::begin(commands), std::end(commands),
                                           [&](const Command& each) { return each.eCommand == eCommand; });
    m_cWork.Handle(command.sHandler, [&](clsSchedMan& cSchedMan) { command.Run(*this, cSchedMan); });
}

void frmUILibPresenter::ShowCategoryWindow(clsSchedMan& cSchedMan)
{
    CategoryRequest request;
    request.sCaption = L"Category Selector";
    const std::wstring sBefore = cSchedMan.UndoText();
    cSchedMan.ShowCatUI(request);
    m_cResults.SayLastStep(cSchedMan, sBefore);
    m_cPanes.ShowChangedTree(cSchedMan);
}

void frmUILibPresenter::NewCategory(clsSchedMan& cSchedMan)
{
    std::wstring sName;
    if (!cSchedMan.CreateMainCat(sName))
        return;
    m_cResults.Say(L"New category: " + sName);
    m_cPanes.ShowChanges(cSchedMan);
    m_cPanes.BringIntoView(CategoryKey(sName, 0));
}

void frmUILibPresenter::NewLevel(clsSchedMan& cSchedMan)
{
    const std::wstring sKey = m_cPanes.SelectedKey();
    if (sKey.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Nothing Selected",
                   L"First Select a category in the tree under which to create the new Category Level");
        return;
    }
    if (sKey == RootKey())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Choose Another Category In The Tree",
                   L"'ALL AUDIO' is not a valid category selection for this operation");
        return;
    }
    const std::wstring sMainKey = MainKeyOf(sKey);
    const std::vector<std::wstring> colBefore = m_cPanes.LevelKeys(sMainKey);
    if (!cSchedMan.CreateCatLevel(CatOf(cSchedMan, sMainKey)))
        return;
    m_cPanes.ShowChanges(cSchedMan);
    const std::wstring sNew = m_cPanes.NewLevelKey(sMainKey, colBefore);
    m_cPanes.BringIntoView(sNew);
    m_cResults.Say(L"New level: " + NodeText(sNew));
}

void frmUILibPresenter::Delete(clsSchedMan& cSchedMan)
{
    const Cats colCats = m_cPanes.CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok,
                   L"First Select Some Categories To Delete In The Tree!",
                   L"There are no categories checked in the tree to delete!");
        return;
    }
    const std::wstring sText = L"Really delete the checked categories: \r\n" + ListCats(colCats, mostListed) +
                               L"\r\n\r\nAny items in these categories will be removed from the categories.";
    const Cats colGrouped = Grouped(colCats, false);
    const std::wstring sWhat = CatsText(colGrouped);
    m_cResults.Concern(CutsIn(colGrouped));
    m_cPanes.FindCategories().SayHiddenTicks();
    if (m_cMod.Box(BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Confirm Category Deletion", sText) !=
        BoxAnswer::Yes)
        return;
    const LibraryWork::Busy cBusy(m_cWork);
    const bool bAll = cSchedMan.DeleteCats(colCats);
    m_cResults.Say(bAll ? L"Deleted " + sWhat : L"Not everything could be deleted");
    m_cPanes.RefreshAll(cSchedMan);
}

void frmUILibPresenter::Reload(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
    m_cResults.Say(L"Read everything again");
    m_cPanes.RefreshAll(cSchedMan);
}

// By key: saving processes messages, during which a host may populate again, from another folder.
void frmUILibPresenter::SaveAll(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    std::vector<std::wstring> colKeys;
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats())
        for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
            colKeys.push_back(CategoryKey(cMainCat->CatName(), 0));
    std::size_t saved = 0;
    for (const std::wstring& sKey : colKeys)
        if (const std::shared_ptr<clsCat> cMainCat = CatByKey(cSchedMan.colMainCats().get(), sKey))
            saved += cSchedMan.SaveHistoryAndOrdering(cMainCat) ? 1 : 0;
    m_cResults.Say(L"Saved " + CountText(saved) + L" of " + CountText(colKeys.size()) + L" categories");
    m_cView.HideProgress(); // a failed save leaves it visible
}

// ---- progress ----

void frmUILibPresenter::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    m_cWork.ProgressStarted();
    m_cView.SetStatus(sReason, L"");
    m_cView.ShowProgress(lMax);
}

void frmUILibPresenter::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t)
{
    m_cView.SetStatus(strProgress, L"");
    m_cView.MoveProgress(lCount);
}

void frmUILibPresenter::ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail)
{
    m_cView.SetStatus(sStatus, sDetail);
    m_cView.HideProgress();
}

} // namespace ravlo

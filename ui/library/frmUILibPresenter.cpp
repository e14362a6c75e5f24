// SPDX-License-Identifier: MIT
#include "ui/library/frmUILibPresenter.h"

#include "base/ScopedFlag.h"
#include "scheduler/CategoryEditing.h"
#include "ui/library/NodeKey.h"

#include <utility>

namespace ravlo
{

namespace
{

// While it exists, calls something once, at the next start of progress.
class Began
{
public:
    Began(std::function<void()>& OnProgressStart, std::function<void()> begun)
        : m_OnProgressStart(OnProgressStart)
    {
        m_OnProgressStart = [this, begun = std::move(begun)] {
            if (!std::exchange(m_bBegan, true))
                begun();
        };
    }
    ~Began() { m_OnProgressStart = nullptr; }
    Began(const Began&) = delete;
    Began& operator=(const Began&) = delete;

private:
    std::function<void()>& m_OnProgressStart;
    bool m_bBegan = false;
};

const wchar_t* HandlerOf(LibraryCommand eCommand)
{
    using enum LibraryCommand;
    switch (eCommand)
    {
    case mnuSelectAllTree:
        return L"mnuSelectAllTree_Click";
    case mnuSelectNoneTree:
        return L"mnuSelectNoneTree_Click";
    case mnuSelectInvertTree:
        return L"mnuSelectInvertTree_Click";
    case mnuSelectAllGrid:
        return L"mnuSelectAllGrid_Click";
    case mnuSelectNoneGrid:
        return L"mnuSelectNoneGrid_Click";
    case mnuInvertSelectionGrid:
        return L"mnuInvertSelectionGrid_Click";
    case mnuReloadAll:
        return L"mnuReloadAll_Click";
    case mnuSave:
        return L"mnuSave_Click";
    case mnuExit:
        return L"mnuExit_Click";
    case mnuCatUI:
        return L"mnuCatUI_Click";
    case mnuCatNew:
        return L"mnuCatNew_Click";
    case mnuCatLevelNew:
        return L"mnuCatLevelNew_Click";
    case mnuShuffle:
        return L"mnuShuffle_Click";
    case mnuCatDelete:
        return L"mnuCatDelete_Click";
    case mnuHelp:
        return L"mnuHelp_Click";
    }
    return L"frmUILib";
}

} // namespace

frmUILibPresenter::frmUILibPresenter(frmUILibView& cView, CategoryTreeView& cTreeView,
                                     clsSchedLibGridView& cGridView, ModScheduler& cMod)
    : m_cView(cView), m_cMod(cMod),
      m_cWork(cView, cMod, [this](clsSchedMan& cSchedMan) { m_cPanes.ShowChanges(cSchedMan); }),
      m_cPanes(cView, cTreeView, cGridView, m_cWork, cMod), m_cCuts(cView, m_cPanes, m_cWork, cMod)
{
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
    m_cWork.Opened();
    m_cWork.Try(L"frmUILib.Form_Load", [&] { m_cPanes.Load(*cSchedMan); });
    m_cView.ShowModal();
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

void frmUILibPresenter::Do(LibraryCommand eCommand)
{
    if (eCommand == LibraryCommand::mnuExit)
        return RequestClose();
    m_cWork.Handle(HandlerOf(eCommand), [&](clsSchedMan& cSchedMan) { Run(eCommand, cSchedMan); });
}

void frmUILibPresenter::Run(LibraryCommand eCommand, clsSchedMan& cSchedMan)
{
    using enum LibraryCommand;
    switch (eCommand)
    {
    case mnuSelectAllTree:
        return m_cPanes.CheckAll(true);
    case mnuSelectNoneTree:
        return m_cPanes.CheckAll(false);
    case mnuSelectInvertTree:
        return m_cPanes.InvertChecks();
    case mnuSelectAllGrid:
        return Grid().SelectAll();
    case mnuSelectNoneGrid:
        return Grid().SelectNone();
    case mnuInvertSelectionGrid:
        return Grid().InvertSelection();
    case mnuReloadAll:
        return Reload(cSchedMan);
    case mnuSave:
        return SaveAll(cSchedMan);
    case mnuExit:
        return; // not handled here: while something runs, closing is delayed, not ignored
    case mnuCatUI:
        return ShowCategoryWindow(cSchedMan);
    case mnuCatNew:
        return NewCategory(cSchedMan);
    case mnuCatLevelNew:
        return NewLevel(cSchedMan);
    case mnuShuffle:
        return Shuffle(cSchedMan);
    case mnuCatDelete:
        return Delete(cSchedMan);
    case mnuHelp:
        return cSchedMan.ShowHelp();
    }
}

void frmUILibPresenter::ShowCategoryWindow(clsSchedMan& cSchedMan)
{
    CategoryRequest request;
    request.sCaption = L"Category Selector";
    cSchedMan.ShowCatUI(request);
    m_cPanes.ShowChangedTree(cSchedMan);
}

void frmUILibPresenter::NewCategory(clsSchedMan& cSchedMan)
{
    std::wstring sName;
    if (!cSchedMan.CreateMainCat(sName))
        return;
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
    m_cPanes.ShowNewLevel(sMainKey, colBefore);
}

void frmUILibPresenter::Shuffle(clsSchedMan& cSchedMan)
{
    const Cats colCats = m_cPanes.CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"You Need to Check (tick) Them In The Tree.",
                   L"First, select some categories to shuffle");
        return;
    }
    {
        // Busy from the manager's first report on, not during its question.
        std::unique_ptr<LibraryWork::Busy> cBusy;
        const Began cBegan(m_OnProgressStart, [&] { cBusy = std::make_unique<LibraryWork::Busy>(m_cWork); });
        cSchedMan.ShuffleCategories(colCats, true);
    }
    m_cPanes.ShowAgain(cSchedMan);
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
    if (m_cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Confirm Category Deletion", sText) !=
        BoxAnswer::Yes)
        return;
    const LibraryWork::Busy cBusy(m_cWork);
    cSchedMan.DeleteCats(colCats);
    m_cPanes.RefreshAll(cSchedMan);
}

void frmUILibPresenter::Reload(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
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
    for (const std::wstring& sKey : colKeys)
        if (const std::shared_ptr<clsCat> cMainCat = CatByKey(cSchedMan.colMainCats().get(), sKey))
            cSchedMan.SaveHistoryAndOrdering(cMainCat);
    m_cView.HideProgress(); // a failed save leaves it visible
}

// ---- progress ----

void frmUILibPresenter::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    if (const auto began = m_OnProgressStart)
        began();
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

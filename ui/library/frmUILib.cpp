// SPDX-License-Identifier: MIT
#include "ui/library/frmUILib.h"

#include "collections/Text.h"
#include "scheduler/CategoryEditing.h"
#include "ui/controls/Raised.h"
#include "ui/library/LibraryFilling.h"

#include <algorithm>
#include <set>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::int32_t lEditCancelled = 2;

std::wstring RootKey() { return CategoryKey(sAllAudio, 0); }

struct KeyParts
{
    std::wstring sName;
    std::int32_t lLevel;
};
KeyParts PartsOf(const std::wstring& sKey)
{
    const std::vector<std::wstring> colPieces = Split(sKey, std::wstring(1, cTab));
    const std::optional<double> dLevel = colPieces.size() > 1 ? NumericValue(colPieces[1]) : std::nullopt;
    return {colPieces[0], dLevel ? ToLong(*dLevel).value_or(0) : 0};
}
std::wstring MainKeyOf(const std::wstring& sKey) { return CategoryKey(PartsOf(sKey).sName, 0); }

} // namespace

class frmUILib::Working
{
public:
    explicit Working(frmUILib& cForm) : m_cForm(cForm) { ++m_cForm.m_lWorking; }
    ~Working()
    {
        if (m_cForm.m_lWorking == 1)
            m_cForm.Settle();
        --m_cForm.m_lWorking;
    }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

private:
    frmUILib& m_cForm;
};

class frmUILib::Busy
{
public:
    explicit Busy(frmUILib& cForm) : m_cWorking(cForm), m_cForm(cForm)
    {
        if (m_cForm.m_lBusy++ == 0)
            m_cForm.SetBusy(true);
    }
    ~Busy()
    {
        if (--m_cForm.m_lBusy == 0)
            m_cForm.SetBusy(false);
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    Working m_cWorking;
    frmUILib& m_cForm;
};

frmUILib::frmUILib(frmUILibView& cView, CategoryTreeView& cTreeView, SchedLibGridView& cGridView,
                   ModScheduler& cMod)
    : m_cView(cView), m_cTreeView(cTreeView), m_cMod(cMod), m_cGrid(cGridView, cMod)
{
    m_cGrid.OLEDragDropOperationStarted = [this] { m_cReordering = std::make_unique<Busy>(*this); };
    m_cGrid.OLEDragCompleted = [this]
    {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
            ShowAgain(*cSchedMan);
        m_cReordering.reset();
    };
    m_cGrid.RemovalRequested = [this](const std::vector<std::size_t>& colRows)
    {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
            Remove(*cSchedMan, colRows);
    };
}

frmUILib::~frmUILib()
{
    if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
        cSchedMan->SetProgressFollower(nullptr);
}

void frmUILib::SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan)
{
    if (const std::shared_ptr<clsSchedMan> cBefore = m_cSchedMan.lock())
        cBefore->SetProgressFollower(nullptr);
    m_cSchedMan = cSchedMan;
    m_cGrid.SetSchedMan(cSchedMan);
    if (cSchedMan)
        cSchedMan->SetProgressFollower(this);
}

// ---- what runs ----

// Disabling and enabling let waiting messages run, in which anything may happen. In a window that was never
// shown there is nothing to disable, and whoever had it filled expects no messages.
void frmUILib::SetBusy(bool bBusy) noexcept
{
    if (!m_bShown)
        return;
    try
    {
        m_cView.SetBusy(bBusy);
        m_cMod.Pump();
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib.SetBusy", CurrentError());
    }
}

// What was put off while something ran. Called while the last Working still counts, so that what comes
// meanwhile is put off in its turn instead of nesting. A window that is to close shows no more news.
void frmUILib::Settle() noexcept
{
    while (!m_bCloseOwed && std::exchange(m_bRefreshOwed, false))
        Try(L"frmUILib.RefreshAll",
            [this]
            {
                if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
                    RefreshAll(*cSchedMan);
            });
    if (std::exchange(m_bCloseOwed, false))
        m_cView.Close();
}

// An unexpected failure is shown, and leaves no progress bar behind.
template <class Body> void frmUILib::Try(const wchar_t* sWhere, Body&& body)
{
    const bool bDone = Trap(m_cMod, sWhere, false,
                            [&]
                            {
                                body();
                                return true;
                            });
    if (!bDone)
        m_cView.HideProgress();
}

// What every handler of the user's doings runs under: nothing while something else runs, and an unexpected
// failure is shown. The busy state is cleared by then.
template <class Body> void frmUILib::Handle(const wchar_t* sWhere, Body&& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (m_lWorking > 0 || !cSchedMan)
        return;
    const Working cWorking(*this);
    Try(sWhere, [&] { body(*cSchedMan); });
}

template <class Body> void frmUILib::HandleDrop(Body&& body)
{
    if (m_lWorking == 0)
        RunDrop(std::forward<Body>(body));
}

template <class Body> void frmUILib::RunDrop(Body&& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
        return;
    const Working cWorking(*this);
    try
    {
        body(*cSchedMan);
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib drop", CurrentError());
        m_cReordering.reset();
        m_cView.HideProgress();
        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle, L"An Error occurred.");
    }
}

// ---- opening, loading, closing ----

void frmUILib::ShowModalUI()
{
    if (m_bShowing)
        return m_cView.BringToFront();
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"Scheduler Library needs a scheduler manager!");
        return;
    }
    const Raised cShowing(m_bShowing);
    m_bShown = true;
    m_bCloseOwed = false;
    Try(L"frmUILib.Form_Load", [&] { Load(*cSchedMan); });
    m_cView.ShowModal();
}

void frmUILib::Load(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    Populate(cSchedMan);
    if (m_cTree.Count() == 0)
        return ClearGrid();
    m_cTreeView.Select(0);
    ShowItems(cSchedMan);
}

void frmUILib::ReloadAll()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (m_lWorking > 0)
        m_bRefreshOwed = true;
    else if (cSchedMan)
        try
        {
            RefreshAll(*cSchedMan);
        }
        catch (...)
        {
            m_cView.HideProgress();
            throw;
        }
}

void frmUILib::RequestRefresh()
{
    if (m_lWorking > 0)
        m_bRefreshOwed = true;
    else
        Handle(L"frmUILib.RefreshAll", [this](clsSchedMan& cSchedMan) { RefreshAll(cSchedMan); });
}

void frmUILib::RequestClose()
{
    if (m_lWorking > 0)
        m_bCloseOwed = true;
    else
        m_cView.Close();
}

// ---- tree and grid ----

void frmUILib::Populate(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    PopulateTreeView(colMainCats.get(), m_cTree);
    m_cTreeView.ShowTree(m_cTree);
}

void frmUILib::ShowSelectedNode()
{
    Handle(L"TvCats_DblClick", [this](clsSchedMan& cSchedMan) { ShowItems(cSchedMan); });
}

// Shows the selected node's items. A station without categories is read anew first: the database may have
// been filled meanwhile.
void frmUILib::ShowItems(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTree::Node> lNode = m_cTreeView.Selected();
    if (!lNode)
        return;
    const Busy cBusy(*this);
    const std::wstring sKey = m_cTree.At(*lNode).sKey;
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
        !colMainCats || colMainCats->Empty())
    {
        cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
        Populate(cSchedMan);
        if (const std::optional<CategoryTree::Node> lAgain = m_cTree.Find(sKey))
            m_cTreeView.Select(*lAgain);
    }
    ShowNode(cSchedMan, sKey);
}

void frmUILib::ShowNode(clsSchedMan& cSchedMan, const std::wstring& sKey)
{
    const Busy cBusy(*this);
    const bool bAgain = EqualIgnoringCase(sKey, m_sShownKey);
    const clsSchedLibGrid::Place place = bAgain ? m_cGrid.CurrentPlace() : clsSchedLibGrid::Place();
    const std::optional<ShownCuts> shown = ShowGridCuts(cSchedMan, m_cGrid, sKey, &m_cTree, this);
    m_cTreeView.ShowImages();
    if (!shown)
        return ClearGrid();
    m_sShownKey = shown->strCatKey;
    m_cGrid.SetCurrentCatViewing(shown->cCatShown);
    m_cGrid.SetBanOLEDrop(shown->bShowingAllAudio || shown->bShowingMoreThanOneLevel);
    m_cGrid.ReturnTo(place);
}

void frmUILib::ClearGrid()
{
    m_sShownKey.clear();
    m_cGrid.SetCurrentCatViewing(nullptr);
    m_cGrid.SetBanOLEDrop(true);
    m_cGrid.Clear();
    ProgressEnd(L"", L"");
}

// A node that is gone is stood in for by its main category, else by the root.
std::wstring frmUILib::NodeOrStandIn(const std::wstring& sKey) const
{
    for (const std::wstring& sTried : {sKey, MainKeyOf(sKey)})
        if (m_cTree.Find(sTried))
            return sTried;
    return RootKey();
}

void frmUILib::ShowAgain(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return ClearGrid();
    const std::wstring sKey = NodeOrStandIn(m_sShownKey);
    // The tree on the screen may be older than the manager's.
    if (sKey != RootKey() && !CatOf(cSchedMan, sKey))
        return RefreshAll(cSchedMan);
    ShowNode(cSchedMan, sKey);
}

void frmUILib::RefreshAll(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    const std::optional<CategoryTree::Node> lSelected = m_cTreeView.Selected();
    const std::wstring sSelected = lSelected ? m_cTree.At(*lSelected).sKey : RootKey();
    const std::vector<std::wstring> colExpanded = m_cTree.ExpandedKeys();
    Populate(cSchedMan);
    for (const std::wstring& sKey : colExpanded)
        if (const std::optional<CategoryTree::Node> lNode = m_cTree.Find(sKey))
        {
            m_cTree.SetExpanded(*lNode, true);
            m_cTreeView.Expand(*lNode);
        }
    const std::wstring sKey = NodeOrStandIn(sSelected);
    if (const std::optional<CategoryTree::Node> lNode = m_cTree.Find(sKey))
        m_cTreeView.Select(*lNode);
    ShowNode(cSchedMan, sKey);
}

void frmUILib::Reload(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
    RefreshAll(cSchedMan);
}

void frmUILib::SaveAll(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats)
        return;
    // A copy: saving lets messages run.
    for (const std::shared_ptr<clsCat>& cMainCat : Cats(colMainCats->begin(), colMainCats->end()))
        cSchedMan.SaveHistoryAndOrdering(cMainCat);
    m_cView.HideProgress(); // one that failed has left it
}

// The category a node stands for at present; null for the root and for one that is gone.
std::shared_ptr<clsCat> frmUILib::CatOf(const clsSchedMan& cSchedMan, const std::wstring& sKey) const
{
    const KeyParts parts = PartsOf(sKey);
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    const std::shared_ptr<clsCat>* cMainCat =
        colMainCats && sKey != RootKey() ? colMainCats->Find(CategoryKey(parts.sName, 0)) : nullptr;
    if (!cMainCat)
        return nullptr;
    return parts.lLevel == 0 ? *cMainCat : (*cMainCat)->SubCat(parts.lLevel);
}

Cats frmUILib::CheckedCats(const clsSchedMan& cSchedMan) const
{
    Cats colCats;
    for (const CategoryTree::Node lNode : m_cTree.Checked())
        if (std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, m_cTree.At(lNode).sKey))
            colCats.push_back(std::move(cCat));
    return colCats;
}

// ---- ticks ----

void frmUILib::NodeCheck(CategoryTree::Node lNode, bool bCheck)
{
    if (lNode >= m_cTree.Count())
        return;
    if (m_lWorking > 0)
        return m_cTreeView.ShowChecks(m_cTree, {lNode});
    const std::vector<CategoryTree::Node> colNodes = m_cTree.Check(lNode, bCheck);
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

void frmUILib::NodeExpanded(CategoryTree::Node lNode, bool bExpanded)
{
    if (lNode < m_cTree.Count())
        m_cTree.SetExpanded(lNode, bExpanded);
}

void frmUILib::CheckAll(bool bCheck)
{
    if (m_cTree.Count() != 0)
        m_cTreeView.ShowChecks(m_cTree, m_cTree.Check(0, bCheck));
}

void frmUILib::InvertChecks()
{
    m_cTree.InvertChecks();
    std::vector<CategoryTree::Node> colNodes;
    for (CategoryTree::Node lNode = 0; lNode < m_cTree.Count(); ++lNode)
        colNodes.push_back(lNode);
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

// ---- commands ----

void frmUILib::Do(LibraryCommand eCommand)
{
    if (eCommand == LibraryCommand::mnuExit)
        return RequestClose();
    Handle(L"frmUILib command", [&](clsSchedMan& cSchedMan) { Run(eCommand, cSchedMan); });
}

void frmUILib::Run(LibraryCommand eCommand, clsSchedMan& cSchedMan)
{
    using enum LibraryCommand;
    switch (eCommand)
    {
    case mnuSelectAllTree:
        return CheckAll(true);
    case mnuSelectNoneTree:
        return CheckAll(false);
    case mnuSelectInvertTree:
        return InvertChecks();
    case mnuSelectAllGrid:
        return m_cGrid.SelectAll();
    case mnuSelectNoneGrid:
        return m_cGrid.SelectNone();
    case mnuInvertSelectionGrid:
        return m_cGrid.InvertSelection();
    case mnuReloadAll:
        return Reload(cSchedMan);
    case mnuSave:
        return SaveAll(cSchedMan);
    case mnuExit:
        return; // never run here: it is put off while something runs, not ignored
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

void frmUILib::ShowCategoryWindow(clsSchedMan& cSchedMan)
{
    CategoryRequest request;
    request.sCaption = L"Category Selector";
    cSchedMan.ShowCatUI(request);
    CategoryTree cNow;
    PopulateTreeView(cSchedMan.colMainCats().get(), cNow);
    if (!m_cTree.HasSameNodes(cNow))
        RefreshAll(cSchedMan);
}

void frmUILib::NewCategory(clsSchedMan& cSchedMan)
{
    std::wstring sName;
    if (cSchedMan.CreateMainCat(sName))
        RefreshAll(cSchedMan);
}

void frmUILib::NewLevel(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTree::Node> lNode = m_cTreeView.Selected();
    if (!lNode)
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Nothing Selected",
                   L"First Select a category in the tree under which to create the new Category Level");
        return;
    }
    if (CategoryTree::IsRoot(*lNode))
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Choose Another Category In The Tree",
                   L"'ALL AUDIO' is not a valid category selection for this operation");
        return;
    }
    const std::wstring sMainKey = MainKeyOf(m_cTree.At(*lNode).sKey);
    if (!cSchedMan.CreateCatLevel(CatOf(cSchedMan, sMainKey)))
        return;
    RefreshAll(cSchedMan);
    if (const std::optional<CategoryTree::Node> lMain = m_cTree.Find(sMainKey))
    {
        m_cTree.SetExpanded(*lMain, true);
        m_cTreeView.Expand(*lMain);
    }
}

void frmUILib::Shuffle(clsSchedMan& cSchedMan)
{
    const Cats colCats = CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"You Need to Check (tick) Them In The Tree.",
                   L"First, select some categories to shuffle");
        return;
    }
    const Busy cBusy(*this);
    cSchedMan.ShuffleCategories(colCats, true);
    ShowAgain(cSchedMan);
}

void frmUILib::Delete(clsSchedMan& cSchedMan)
{
    const Cats colCats = CheckedCats(cSchedMan);
    if (colCats.empty())
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok,
                   L"First Select Some Categories To Delete In The Tree!",
                   L"There are no categories checked in the tree to delete!");
        return;
    }
    const std::wstring sText = L"Really delete the checked categories: \r\n" +
                               ListCats(colCats, lMostListed) +
                               L"\r\n\r\nAny items in these categories will be removed from the categories.";
    if (m_cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Confirm Category Deletion", sText) !=
        BoxAnswer::Yes)
        return;
    const Busy cBusy(*this);
    cSchedMan.DeleteCats(colCats);
    RefreshAll(cSchedMan);
}

// ---- the grid's keys and clicks ----

void frmUILib::CellDblClick(std::size_t lRow, std::size_t lCol)
{
    if (lRow >= 1 && lCol >= 1 && lRow <= m_cGrid.RowCount())
        Handle(L"iGridLib_CellDblClick", [&](clsSchedMan& cSchedMan) { Edit(cSchedMan, lRow - 1); });
}

void frmUILib::Edit(clsSchedMan& cSchedMan, std::size_t lRow)
{
    const std::shared_ptr<DataBase> cDataBase = cSchedMan.DataBase();
    const std::shared_ptr<Cut> cCut = cDataBase ? cDataBase->CutByKey(m_cGrid.CutAt(lRow)->Key()) : nullptr;
    const bool bEdited = cCut && cSchedMan.RaiseEditRequestCutEvent(cCut) != lEditCancelled;
    if (bEdited && !m_bRefreshOwed) // the database's news of the edit show the node again by themselves
        ShowAgain(cSchedMan);
}

void frmUILib::GridDelete()
{
    Handle(L"iGridLib_KeyDown", [this](clsSchedMan&) { m_cGrid.RemoveSelectedFromCategory(); });
}

void frmUILib::Remove(clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows)
{
    const bool bFromAll = !m_cGrid.CurrentCatViewing();
    if (bFromAll && m_cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?") != BoxAnswer::Yes)
        return;
    const Busy cBusy(*this);
    std::vector<CutRemoval> colRemovals;
    for (const std::size_t lRow : colRows)
    {
        const std::shared_ptr<clsCat> cLevel = m_cGrid.LevelAt(lRow);
        const std::shared_ptr<clsCat> cMainCat = cLevel ? cLevel->MainCat() : nullptr;
        if (bFromAll)
            colRemovals.push_back({m_cGrid.CutAt(lRow), nullptr, 0});
        else if (cMainCat) // else the category is gone, and the cut with it
            colRemovals.push_back({m_cGrid.CutAt(lRow), cMainCat, cLevel->CatLevel()});
    }
    const auto lCount = static_cast<std::int32_t>(colRemovals.size());
    ProgressStart(L"Removing from category...", lCount);
    cSchedMan.RemoveCutsFromCategories(
        colRemovals,
        [&](std::size_t lDone)
        {
            const auto lDoneLong = static_cast<std::int32_t>(lDone);
            Progress(L"Removed " + DecimalText(lDoneLong) + L" of " + DecimalText(lCount), lDoneLong);
        });
    ShowAgain(cSchedMan);
}

void frmUILib::MoveSelected(bool bUp)
{
    HandleDrop([&](clsSchedMan& cSchedMan) { DropOnGrid(cSchedMan, [&] { m_cGrid.MoveSelected(bUp); }); });
}

void frmUILib::CopySelection()
{
    HandleDrop(
        [this](clsSchedMan&)
        {
            if (std::optional<Dragged> dragged = TakeDragged())
                m_copied = std::move(*dragged);
        });
}

void frmUILib::Paste()
{
    HandleDrop(
        [this](clsSchedMan& cSchedMan)
        {
            const std::optional<CategoryTree::Node> lNode = m_cTreeView.Selected();
            if (lNode && !m_copied.colCuts.empty())
                DropOnNode(cSchedMan, std::wstring(m_cTree.At(*lNode).sKey), m_copied);
        });
}

// ---- drag and drop ----

bool frmUILib::DragStarted()
{
    if (m_lWorking > 0 || !m_cGrid.StartDrag())
        return false;
    m_cDrag = std::make_unique<Working>(*this);
    return true;
}

// The drop comes before what was put off during the drag: the rows are still those that were dragged.
void frmUILib::DragCompleted(const std::optional<Drop>& drop)
{
    const std::unique_ptr<Working> cDrag = std::move(m_cDrag);
    m_cGrid.EndDrag();
    if (cDrag && drop)
        RunDrop([&](clsSchedMan& cSchedMan) { Perform(cSchedMan, *drop); });
}

void frmUILib::Dropped(const Drop& drop)
{
    HandleDrop([&](clsSchedMan& cSchedMan) { Perform(cSchedMan, drop); });
}

void frmUILib::Perform(clsSchedMan& cSchedMan, const Drop& drop)
{
    if (!drop.bOnTree)
        return DropOnGrid(cSchedMan, [&] { m_cGrid.Drop(drop.sPayload, drop.lRow); });
    if (drop.sPayload != sGridPayload || drop.sNodeKey.empty())
        return;
    if (const std::optional<Dragged> dragged = TakeDragged())
        DropOnNode(cSchedMan, drop.sNodeKey, *dragged);
}

// Re-orders what is shown, unless that has been deleted or reloaded since: nothing may be filed into a level
// that is gone.
void frmUILib::DropOnGrid(clsSchedMan& cSchedMan, const std::function<void()>& reorder)
{
    const std::shared_ptr<clsCat>& cShown = m_cGrid.CurrentCatViewing();
    if (cShown && CatOf(cSchedMan, m_sShownKey) != cShown)
        return RefreshAll(cSchedMan);
    reorder();
}

std::optional<frmUILib::Dragged> frmUILib::TakeDragged()
{
    try
    {
        Dragged dragged;
        dragged.colCuts = m_cGrid.colSelCuts();
        for (const std::shared_ptr<clsCat>& cFrom : m_cGrid.colSubCatsDraggedFrom())
            if (cFrom->CatLevel() == 0)
                dragged.bNowhere = true;
            else
                dragged.colFromKeys.push_back(CategoryKey(cFrom->CatName(), cFrom->CatLevel()));
        return dragged;
    }
    catch (...)
    {
        m_cMod.DISPLAYERROR(L"Error occurred in dragdrop", true, CurrentError());
        return std::nullopt;
    }
}

// What was taken may have gone from the database, been deleted or reloaded since: while a pop-up was open, or
// before it was pasted.
frmUILib::Present frmUILib::PresentOf(const clsSchedMan& cSchedMan, const Dragged& dragged) const
{
    Present present;
    if (const std::shared_ptr<DataBase> cDataBase = cSchedMan.DataBase())
        for (const std::shared_ptr<Cut>& cCut : dragged.colCuts)
            if (std::shared_ptr<Cut> cNow = cDataBase->CutByKey(cCut->Key()))
                present.colCuts.push_back(std::move(cNow));
    for (const std::wstring& sKey : dragged.colFromKeys)
        if (std::shared_ptr<clsCat> cFrom = CatOf(cSchedMan, sKey))
            present.colFrom.push_back(std::move(cFrom));
    // Cuts whose levels are all gone stand nowhere now.
    if (dragged.bNowhere || present.colFrom.empty())
        present.colFrom.push_back(std::make_shared<clsCat>(m_cMod, sNoCat, 0));
    return present;
}

void frmUILib::DropOnNode(clsSchedMan& cSchedMan, const std::wstring& sKey, const Dragged& dragged)
{
    if (EqualIgnoringCase(PartsOf(sKey).sName, sAllAudio))
    {
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"Invalid Drop!",
                   L"It's not valid to drop into 'ALL AUDIO'");
        return;
    }
    const std::optional<Target> target = ChooseTarget(cSchedMan, sKey);
    if (!target)
        return;
    const eCatDragOptions eOption = ChooseOption(target->sText);
    if (eOption == eCancel)
        return;
    const Present present = PresentOf(cSchedMan, dragged);
    if (eOption == eCopyHere && !MayCopy(present, *target))
        return;
    const Busy cBusy(*this);
    bool bCreatedNewSubCats = false;
    cSchedMan.DoMassCatChange(eOption, present.colFrom, target->cCat, present.colCuts, bCreatedNewSubCats);
    if (bCreatedNewSubCats)
        RefreshAll(cSchedMan);
    else
        ShowAgain(cSchedMan);
}

std::optional<frmUILib::Target> frmUILib::ChooseTarget(const clsSchedMan& cSchedMan, const std::wstring& sKey)
{
    const std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, sKey);
    if (!cCat)
        return std::nullopt;
    const auto LevelTarget = [](const std::shared_ptr<clsCat>& cLevel) {
        return Target{cLevel, cLevel->CatLevel(), cLevel->CatName() + L" " + DecimalText(cLevel->CatLevel())};
    };
    if (cCat->CatLevel() != 0)
        return LevelTarget(cCat);
    const std::wstring& sName = cCat->CatName();
    const Cats colLevels(cCat->SubCats()->begin(), cCat->SubCats()->end());
    std::vector<std::wstring> mnuCatChooseLevel{L"Drop Into: " + sName + L", keeping levels the same"};
    for (const std::shared_ptr<clsCat>& cLevel : colLevels) // mnuCatChooseLevelDrop
        mnuCatChooseLevel.push_back(L"Drop Into " + sName + L" Level " + DecimalText(cLevel->CatLevel()));
    const std::optional<std::size_t> lItem = m_cView.PopUp(mnuCatChooseLevel);
    if (!lItem || *lItem > colLevels.size())
        return std::nullopt;
    return *lItem == 0 ? Target{cCat, 0, sName} : LevelTarget(colLevels[*lItem - 1]);
}

eCatDragOptions frmUILib::ChooseOption(const std::wstring& sTarget)
{
    struct Item
    {
        std::wstring sCaption;
        eCatDragOptions eOption;
    };
    const Item mnuCatChooseDrop[] = {
        {L"Copy Into " + sTarget, eCopyHere},                    // mnuCatCopyHere
        {L"Move Into " + sTarget, eMoveHere},                    // mnuCatMoveHere
        {L"Move Exclusive Into " + sTarget, eMoveExclusiveHere}, // mnuCatMoveOnlyHere
        {L"Cancel", eCancel},                                    // mnuCatMoveCopyCancel
    };
    std::vector<std::wstring> colCaptions;
    for (const Item& item : mnuCatChooseDrop)
        colCaptions.push_back(item.sCaption);
    const std::optional<std::size_t> lItem = m_cView.PopUp(colCaptions);
    return lItem && *lItem < std::size(mnuCatChooseDrop) ? mnuCatChooseDrop[*lItem].eOption : eCancel;
}

// A cut has one level number for all its categories, so copying must not bring it into a level of another.
bool frmUILib::MayCopy(const Present& dragged, const Target& target) const
{
    std::set<std::int32_t> colLevels;
    for (const std::shared_ptr<clsCat>& cFrom : dragged.colFrom)
        if (cFrom->CatLevel() != 0)
            colLevels.insert(cFrom->CatLevel());
    const bool bStrays =
        std::any_of(dragged.colFrom.begin(), dragged.colFrom.end(),
                    [](const std::shared_ptr<clsCat>& cFrom) { return cFrom->CatLevel() == 0; });
    if (bStrays) // they stand nowhere; filed they would bear their own number, 1 when they have none
        for (const std::shared_ptr<Cut>& cCut : dragged.colCuts)
            colLevels.insert(std::max(cCut->CatLevel(), 1));
    const bool bMultiLevel = colLevels.size() > 1 || colLevels.count(target.lLevel) == 0;
    if (target.lLevel == 0 || !bMultiLevel)
        return true;
    m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Multiple Category Levels Not Allowed!",
               L"Items can only be in one category level,"
               L"even though they may be in multiple categories.\r\n\r\n"
               L"Copying the items to this level is therefore not permitted.\r\n\r\n"
               L"You DO have the option to move the items to this level,\r\n"
               L"in which case this will change the level for EVERY category the items are in.");
    return false;
}

// ---- progress ----

void frmUILib::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    m_cView.SetStatus(sReason, L"");
    m_cView.ShowProgress(lMax);
}

void frmUILib::Progress(const std::wstring& sText, std::int32_t lValue)
{
    m_cView.SetStatus(sText, L"");
    m_cView.MoveProgress(lValue);
}

void frmUILib::ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond)
{
    m_cView.SetStatus(sFirst, sSecond);
    m_cView.HideProgress();
}

void frmUILib::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t)
{
    Progress(strProgress, lCount);
}

void frmUILib::ProgressDone(const std::wstring& sStatus) { ProgressEnd(sStatus, L""); }

} // namespace ravlo

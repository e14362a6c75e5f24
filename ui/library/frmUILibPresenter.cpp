// SPDX-License-Identifier: MIT
#include "ui/library/frmUILibPresenter.h"

#include "base/CaseFolding.h"
#include "base/ScopedFlag.h"
#include "ui/library/LibraryFilling.h"
#include "ui/library/NodeKey.h"
#include "ui/library/frmUILibWork.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

frmUILibPresenter::frmUILibPresenter(frmUILibView& cView, CategoryTreeView& cTreeView,
                                     clsSchedLibGridView& cGridView, ModScheduler& cMod)
    : m_cView(cView), m_cTreeView(cTreeView), m_cMod(cMod), m_cGrid(cGridView, cMod)
{
    m_cGrid.OLEDragDropOperationStarted = [this] { m_cReordering = std::make_unique<Busy>(*this); };
    m_cGrid.OLEDragCompleted = [this] {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
            ShowAgain(*cSchedMan);
        m_cReordering.reset();
    };
    m_cGrid.RemovalRequested = [this](const std::vector<std::size_t>& colRows) {
        if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
            Remove(*cSchedMan, colRows);
    };
}

frmUILibPresenter::~frmUILibPresenter()
{
    if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
        cSchedMan->SetProgressFollower(nullptr);
}

void frmUILibPresenter::SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan)
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
void frmUILibPresenter::SetBusy(bool bBusy) noexcept
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
// meanwhile is put off in its turn instead of nesting. News that come while news are shown wait for the
// user's turn, or a database that keeps talking would never let him in. A window that is to close shows none.
void frmUILibPresenter::Settle() noexcept
{
    if (!m_bCloseOwed && std::exchange(m_bRefreshOwed, false))
        Try(L"frmUILib.RefreshAll", [this] {
            if (const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock())
                ShowChanges(*cSchedMan);
        });
    if (std::exchange(m_bCloseOwed, false))
        m_cView.Close();
    else if (std::exchange(m_bRefreshOwed, false))
        m_cView.AskForRefresh();
}

// ---- opening, loading, closing ----

void frmUILibPresenter::ShowModalUI()
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
    const ScopedFlag cShowing(m_bShowing);
    m_bShown = true;
    m_bCloseOwed = false;
    Try(L"frmUILib.Form_Load", [&] { Load(*cSchedMan); });
    m_cView.ShowModal();
}

void frmUILibPresenter::Load(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    Populate(cSchedMan);
    if (m_cTree.Count() == 0)
        return ClearGrid();
    m_cTreeView.Select(0);
    ShowItems(cSchedMan);
}

void frmUILibPresenter::ReloadAll()
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

void frmUILibPresenter::RequestRefresh()
{
    if (m_lWorking > 0)
        m_bRefreshOwed = true;
    else
        Handle(L"frmUILib.RefreshAll", [this](clsSchedMan& cSchedMan) { ShowChanges(cSchedMan); });
}

void frmUILibPresenter::RequestClose()
{
    if (m_lWorking > 0)
        m_bCloseOwed = true;
    else
        m_cView.Close();
}

// ---- tree and grid ----

void frmUILibPresenter::Populate(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    PopulateTreeView(colMainCats.get(), m_cTree);
    m_cTreeView.ShowTree(m_cTree);
}

void frmUILibPresenter::ShowSelectedNode()
{
    Handle(L"TvCats_DblClick", [this](clsSchedMan& cSchedMan) { ShowItems(cSchedMan); });
}

// Shows the selected node's items. A station without categories is read anew first: the database may have
// been filled meanwhile.
void frmUILibPresenter::ShowItems(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTreePresenter::Node> lNode = m_cTreeView.Selected();
    if (!lNode)
        return;
    const Busy cBusy(*this);
    const std::wstring sKey = m_cTree.At(*lNode).sKey;
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
        !colMainCats || colMainCats->Empty())
    {
        cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
        Populate(cSchedMan);
        if (const std::optional<CategoryTreePresenter::Node> lAgain = m_cTree.Find(sKey))
            m_cTreeView.Select(*lAgain);
    }
    ShowNode(cSchedMan, sKey);
}

void frmUILibPresenter::ShowNode(clsSchedMan& cSchedMan, const std::wstring& sKey)
{
    const Busy cBusy(*this);
    const bool bAgain = EqualIgnoringCase(sKey, m_sShownKey);
    const clsSchedLibGridPresenter::Place place =
        bAgain ? m_cGrid.CurrentPlace() : clsSchedLibGridPresenter::Place();
    const std::optional<ShownCuts> shown = ShowGridCuts(cSchedMan, m_cGrid, sKey, &m_cTree, this);
    m_cTreeView.ShowImages();
    if (!shown)
        return ClearGrid();
    m_sShownKey = shown->strCatKey;
    m_cGrid.SetCurrentCatViewing(shown->cCatShown);
    m_cGrid.SetBanOLEDrop(shown->bShowingAllAudio || shown->bShowingMoreThanOneLevel);
    m_cGrid.ReturnTo(place);
}

void frmUILibPresenter::ClearGrid()
{
    m_sShownKey.clear();
    m_cGrid.SetCurrentCatViewing(nullptr);
    m_cGrid.SetBanOLEDrop(true);
    m_cGrid.Clear();
    ProgressEnd(L"", L"");
}

// A node that is gone is stood in for by its main category, else by the root.
std::wstring frmUILibPresenter::NodeOrStandIn(const std::wstring& sKey) const
{
    for (const std::wstring& sTried : {sKey, MainKeyOf(sKey)})
        if (m_cTree.Find(sTried))
            return sTried;
    return RootKey();
}

// After a command that leaves the categories as they are.
void frmUILibPresenter::ShowAgain(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return ClearGrid();
    const std::wstring sKey = NodeOrStandIn(m_sShownKey);
    // The tree on the screen may be older than the manager's.
    if (sKey != RootKey() && !CatOf(cSchedMan, sKey))
        return ShowChanges(cSchedMan);
    ShowNode(cSchedMan, sKey);
}

// The tree anew, with its expanded nodes; the selected node is selected again, or what stands in for it.
// Ticks go. Returns the selected node's key.
std::wstring frmUILibPresenter::RebuildTree(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTreePresenter::Node> lSelected = m_cTreeView.Selected();
    const std::wstring sSelected = lSelected ? m_cTree.At(*lSelected).sKey : RootKey();
    const std::vector<std::wstring> colExpanded = m_cTree.ExpandedKeys();
    Populate(cSchedMan);
    for (const std::wstring& sKey : colExpanded)
        if (const std::optional<CategoryTreePresenter::Node> lNode = m_cTree.Find(sKey))
        {
            m_cTree.SetExpanded(*lNode, true);
            m_cTreeView.Expand(*lNode);
        }
    const std::wstring sKey = NodeOrStandIn(sSelected);
    if (const std::optional<CategoryTreePresenter::Node> lNode = m_cTree.Find(sKey))
        m_cTreeView.Select(*lNode);
    return sKey;
}

void frmUILibPresenter::RefreshAll(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    const std::wstring sSelected = RebuildTree(cSchedMan);
    ShowNode(cSchedMan, sSelected);
}

bool frmUILibPresenter::TreeIsUpToDate(const clsSchedMan& cSchedMan) const
{
    CategoryTreePresenter cNow;
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    PopulateTreeView(colMainCats.get(), cNow);
    return m_cTree.HasSameNodes(cNow);
}

// After news and commands that add categories: what is shown stays shown and what is selected stays selected.
// A tree with the same nodes is not touched; one with others keeps the ticks of those that are left.
void frmUILibPresenter::ShowChanges(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    if (!TreeIsUpToDate(cSchedMan))
    {
        std::vector<std::wstring> colChecked;
        for (const CategoryTreePresenter::Node lNode : m_cTree.Checked())
            colChecked.push_back(m_cTree.At(lNode).sKey);
        RebuildTree(cSchedMan);
        std::vector<CategoryTreePresenter::Node> colNodes;
        for (const std::wstring& sKey : colChecked)
            if (const std::optional<CategoryTreePresenter::Node> lNode = m_cTree.Find(sKey))
            {
                m_cTree.SetChecked(*lNode, true);
                colNodes.push_back(*lNode);
            }
        m_cTreeView.ShowChecks(m_cTree, colNodes);
    }
    ShowNode(cSchedMan, NodeOrStandIn(m_sShownKey));
}

// Of the levels in the tree on the screen.
std::vector<std::wstring> frmUILibPresenter::LevelKeys(const std::wstring& sMainKey) const
{
    std::vector<std::wstring> colKeys;
    if (const std::optional<CategoryTreePresenter::Node> lMain = m_cTree.Find(sMainKey))
        for (const CategoryTreePresenter::Node lLevel : m_cTree.At(*lMain).colChildren)
            colKeys.push_back(m_cTree.At(lLevel).sKey);
    return colKeys;
}

// Opens the main category when it has a level that it did not have before, and brings that one into view.
void frmUILibPresenter::ShowNewLevel(const std::wstring& sMainKey, const std::vector<std::wstring>& colBefore)
{
    for (const std::wstring& sKey : LevelKeys(sMainKey))
    {
        if (std::find(colBefore.begin(), colBefore.end(), sKey) != colBefore.end())
            continue;
        const CategoryTreePresenter::Node lMain = *m_cTree.Find(sMainKey);
        m_cTree.SetExpanded(lMain, true);
        m_cTreeView.Expand(lMain);
        m_cTreeView.BringIntoView(*m_cTree.Find(sKey));
        return;
    }
}

void frmUILibPresenter::Reload(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
    RefreshAll(cSchedMan);
}

// By key: saving lets messages run, in which a host may populate anew, in another folder.
void frmUILibPresenter::SaveAll(clsSchedMan& cSchedMan)
{
    const Busy cBusy(*this);
    std::vector<std::wstring> colKeys;
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats())
        for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
            colKeys.push_back(CategoryKey(cMainCat->CatName(), 0));
    for (const std::wstring& sKey : colKeys)
        if (const std::shared_ptr<clsCat> cMainCat = CatByKey(cSchedMan.colMainCats().get(), sKey))
            cSchedMan.SaveHistoryAndOrdering(cMainCat);
    m_cView.HideProgress(); // one that failed has left it
}

Cats frmUILibPresenter::CheckedCats(const clsSchedMan& cSchedMan) const
{
    Cats colCats;
    for (const CategoryTreePresenter::Node lNode : m_cTree.Checked())
        if (std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, m_cTree.At(lNode).sKey))
            colCats.push_back(std::move(cCat));
    return colCats;
}

// ---- ticks ----

void frmUILibPresenter::NodeCheck(CategoryTreePresenter::Node lNode, bool bCheck)
{
    if (lNode >= m_cTree.Count())
        return;
    if (m_lWorking > 0)
        return m_cTreeView.ShowChecks(m_cTree, {lNode});
    const std::vector<CategoryTreePresenter::Node> colNodes = m_cTree.Check(lNode, bCheck);
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

void frmUILibPresenter::NodeExpanded(CategoryTreePresenter::Node lNode, bool bExpanded)
{
    if (lNode < m_cTree.Count())
        m_cTree.SetExpanded(lNode, bExpanded);
}

bool frmUILibPresenter::TypeInTree(wchar_t cTyped)
{
    constexpr std::uint32_t lSearchMs = 1000;
    const std::uint32_t lNow = m_cMod.Ports().cClock.TickCount();
    const bool bGoesOn = !m_sTyped.empty() && lNow - m_lTyped < lSearchMs;
    if (cTyped < L' ' || (cTyped == L' ' && !bGoesOn))
        return false;
    if (!bGoesOn)
        m_sTyped.clear();
    m_sTyped += cTyped;
    m_lTyped = lNow;
    if (m_lWorking > 0 || m_cTree.Count() == 0)
        return true;
    const CategoryTreePresenter::Node lFrom = m_cTreeView.Selected().value_or(0);
    // A first letter looks behind the selected node, the next ones make sure of it. The same letter again and
    // again goes through all that begin with it.
    std::optional<CategoryTreePresenter::Node> lFound =
        m_cTree.FindText(m_sTyped, lFrom, m_sTyped.size() == 1);
    const bool bOneLetter = m_sTyped.find_first_not_of(m_sTyped[0]) == std::wstring::npos;
    if (!lFound && bOneLetter)
        lFound = m_cTree.FindText(m_sTyped.substr(0, 1), lFrom, true);
    if (lFound)
        m_cTreeView.Select(*lFound);
    return true;
}

void frmUILibPresenter::CheckAll(bool bCheck)
{
    if (m_cTree.Count() != 0)
        m_cTreeView.ShowChecks(m_cTree, m_cTree.Check(0, bCheck));
}

void frmUILibPresenter::InvertChecks()
{
    m_cTree.InvertChecks();
    std::vector<CategoryTreePresenter::Node> colNodes;
    for (CategoryTreePresenter::Node lNode = 0; lNode < m_cTree.Count(); ++lNode)
        colNodes.push_back(lNode);
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

// ---- progress ----

void frmUILibPresenter::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    if (const auto began = m_OnProgressStart)
        began();
    m_cView.SetStatus(sReason, L"");
    m_cView.ShowProgress(lMax);
}

void frmUILibPresenter::Progress(const std::wstring& sText, std::int32_t lValue)
{
    m_cView.SetStatus(sText, L"");
    m_cView.MoveProgress(lValue);
}

void frmUILibPresenter::ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond)
{
    m_cView.SetStatus(sFirst, sSecond);
    m_cView.HideProgress();
}

void frmUILibPresenter::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t)
{
    Progress(strProgress, lCount);
}

void frmUILibPresenter::ProgressDone(const std::wstring& sStatus) { ProgressEnd(sStatus, L""); }

} // namespace ravlo

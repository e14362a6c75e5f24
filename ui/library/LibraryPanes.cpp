// SPDX-License-Identifier: MIT
#include "ui/library/LibraryPanes.h"

#include "base/CaseFolding.h"
#include "ui/library/NodeKey.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace ravlo
{

LibraryPanes::LibraryPanes(frmUILibView& cView, CategoryTreeView& cTreeView, clsSchedLibGridView& cGridView,
                           const LibraryFindBars& bars, LibraryWork& cWork, ModScheduler& cMod)
    : m_cView(cView), m_cTreeView(cTreeView), m_cWork(cWork), m_cMod(cMod), m_cGrid(cGridView, cMod),
      m_cFindCuts(m_cGrid, bars.cCuts, cWork, cMod),
      m_cFindCategories(m_cTree, cTreeView, bars.cCategories, cView, cWork)
{
}

std::wstring LibraryPanes::SelectedKey() const
{
    const std::optional<CategoryTreePresenter::Node> node = m_cTreeView.Selected();
    return node ? m_cTree.At(*node).sKey : std::wstring();
}

std::shared_ptr<clsCat> LibraryPanes::ShownCat(const clsSchedMan& cSchedMan) const
{
    return CatOf(cSchedMan, m_sShownKey);
}

Cats LibraryPanes::CheckedCats(const clsSchedMan& cSchedMan) const
{
    Cats colCats;
    for (const CategoryTreePresenter::Node node : m_cTree.Checked())
        if (std::shared_ptr<clsCat> cCat = CatOf(cSchedMan, m_cTree.At(node).sKey))
            colCats.push_back(std::move(cCat));
    return colCats;
}

// ---- showing ----

void LibraryPanes::Populate(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    m_cTree.Fill(NodesOf(colMainCats.get()));
    m_cTreeView.ShowTree(m_cTree);
    m_cFindCategories.TreeFilled();
}

void LibraryPanes::Load(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    Populate(cSchedMan);
    if (m_cTree.Count() == 0)
        return ClearGrid();
    m_cTreeView.Select(0);
    ShowItems(cSchedMan);
}

void LibraryPanes::ShowSelectedNode()
{
    m_cWork.Handle(L"TvCats_DblClick", [this](clsSchedMan& cSchedMan) { ShowItems(cSchedMan); });
}

// Shows the selected node's cuts. A station without categories is populated again first: the database may
// have been filled since.
void LibraryPanes::ShowItems(clsSchedMan& cSchedMan)
{
    const std::optional<CategoryTreePresenter::Node> node = m_cTreeView.Selected();
    if (!node)
        return;
    const LibraryWork::Busy cBusy(m_cWork);
    const std::wstring sKey = m_cTree.At(*node).sKey;
    if (const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
        !colMainCats || colMainCats->Empty())
    {
        cSchedMan.PopulateFromDataBase(cSchedMan.DataBase(), cSchedMan.AppPath());
        Populate(cSchedMan);
        if (const std::optional<CategoryTreePresenter::Node> again = m_cTree.Find(sKey))
            m_cTreeView.Select(*again);
    }
    ShowNode(cSchedMan, sKey);
}

void LibraryPanes::ShowNode(clsSchedMan& cSchedMan, const std::wstring& sKey)
{
    const LibraryWork::Busy cBusy(m_cWork);
    const bool bAgain = EqualIgnoringCase(sKey, m_sShownKey);
    const clsSchedLibGridPresenter::Place place =
        bAgain ? m_cGrid.CurrentPlace() : clsSchedLibGridPresenter::Place();
    std::optional<ListedCuts> listed = ListCuts(cSchedMan, sKey);
    if (!listed)
    {
        m_cTreeView.ShowImages();
        return ClearGrid();
    }
    m_sShownKey = listed->strCatKey;
    m_cGrid.SetCurrentCatViewing(listed->cCatShown);
    m_cGrid.SetBanOLEDrop(listed->bShowingAllAudio || listed->bShowingMoreThanOneLevel);
    if (listed->bShowingAllAudio)
        m_audioCuts = listed->colCuts.size();
    FillingReport report(cSchedMan, *listed);
    m_cGrid.Show(std::move(*listed));
    report.Done();
    m_cTree.ShowAsOpen(m_sShownKey);
    m_cTreeView.ShowImages();
    ShowCounts(cSchedMan);
    m_cGrid.ReturnTo(place);
}

// The number of all cuts is known from the last listing of them; counting them again would read a host's
// whole database.
void LibraryPanes::ShowCounts(const clsSchedMan& cSchedMan)
{
    if (m_cTree.Count() == 0)
        return;
    bool bChanged = m_cTree.SetCuts(0, m_audioCuts);
    const auto Set = [&](const std::wstring& sKey, std::size_t cuts) {
        if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey))
            bChanged = m_cTree.SetCuts(*node, cuts) || bChanged;
    };
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
    {
        std::size_t cuts = 0;
        for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
        {
            cuts += cLevel->SchedCuts()->Count();
            Set(CategoryKey(cMainCat->CatName(), cLevel->CatLevel()), cLevel->SchedCuts()->Count());
        }
        Set(CategoryKey(cMainCat->CatName(), 0), cuts);
    }
    if (bChanged)
        m_cTreeView.ShowCounts();
}

void LibraryPanes::ClearGrid()
{
    m_sShownKey.clear();
    m_cGrid.SetCurrentCatViewing(nullptr);
    m_cGrid.SetBanOLEDrop(true);
    m_cGrid.Clear();
    m_cView.SetStatus(L"", L"");
    m_cView.HideProgress();
}

// Returns the key; when its node is gone, its main category's key, else the root's.
std::wstring LibraryPanes::PresentKey(const std::wstring& sKey) const
{
    for (const std::wstring& sTried : {sKey, MainKeyOf(sKey)})
        if (m_cTree.Find(sTried))
            return sTried;
    return RootKey();
}

void LibraryPanes::ShowAgain(clsSchedMan& cSchedMan)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return ClearGrid();
    const std::wstring sKey = PresentKey(m_sShownKey);
    // The tree on the screen may be older than the manager's.
    if (sKey != RootKey() && !CatOf(cSchedMan, sKey))
        return ShowChanges(cSchedMan);
    ShowNode(cSchedMan, sKey);
}

// Fills the tree, with the ticks and the expansion of the nodes that still exist, and selects the selected
// node or what replaces it. Returns the selected node's key.
std::wstring LibraryPanes::RebuildTree(clsSchedMan& cSchedMan)
{
    const std::wstring sBefore = SelectedKey();
    const std::wstring sSelected = sBefore.empty() ? m_sShownKey : sBefore; // none while it is hidden
    const std::vector<std::wstring> colChecked = m_cTree.CheckedKeys();
    const std::vector<std::wstring> colExpanded = m_cTree.ExpandedKeys();
    Populate(cSchedMan);
    RestoreChecks(colChecked);
    for (const std::wstring& sKey : colExpanded)
        if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey))
        {
            m_cTree.SetExpanded(*node, true);
            m_cTreeView.Expand(*node);
        }
    const std::wstring sKey = PresentKey(sSelected);
    if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey))
        m_cTreeView.Select(*node);
    return sKey;
}

void LibraryPanes::ShowRenamed(clsSchedMan& cSchedMan, const std::wstring& sFrom, const std::wstring& sTo)
{
    const LibraryWork::Busy cBusy(m_cWork);
    m_cTree.Rename(sFrom, sTo); // so that what is kept by key stays
    if (const NodeKey shown = ParseNodeKey(m_sShownKey); EqualIgnoringCase(shown.sName, sFrom))
        m_sShownKey = CategoryKey(sTo, shown.lLevel.value_or(0));
    RebuildTree(cSchedMan);
    SelectNode(CategoryKey(sTo, 0));
    ShowNode(cSchedMan, PresentKey(m_sShownKey));
}

void LibraryPanes::RefreshAll(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    m_audioCuts.reset();
    const std::wstring sSelected = RebuildTree(cSchedMan);
    ShowNode(cSchedMan, sSelected);
}

bool LibraryPanes::TreeIsUpToDate(const clsSchedMan& cSchedMan) const
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    return m_cTree.HasSameNodes(NodesOf(colMainCats.get()));
}

void LibraryPanes::ShowChanges(clsSchedMan& cSchedMan)
{
    const LibraryWork::Busy cBusy(m_cWork);
    m_audioCuts.reset(); // cuts may have come or gone
    if (!TreeIsUpToDate(cSchedMan))
        RebuildTree(cSchedMan);
    ShowNode(cSchedMan, PresentKey(m_sShownKey));
}

void LibraryPanes::RestoreChecks(const std::vector<std::wstring>& colKeys)
{
    std::vector<CategoryTreePresenter::Node> colNodes;
    for (const std::wstring& sKey : colKeys)
        if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey))
        {
            m_cTree.SetChecked(*node, true);
            colNodes.push_back(*node);
        }
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

void LibraryPanes::ShowChangedTree(clsSchedMan& cSchedMan)
{
    if (!TreeIsUpToDate(cSchedMan))
        ShowChanges(cSchedMan);
}

void LibraryPanes::BringIntoView(const std::wstring& sKey)
{
    const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey);
    if (!node)
        return;
    m_cFindCategories.Reveal(*node);
    if (const std::optional<CategoryTreePresenter::Node> parent = m_cTree.At(*node).parent)
    {
        m_cTree.SetExpanded(*parent, true);
        m_cTreeView.Expand(*parent);
    }
    m_cTreeView.BringIntoView(*node);
}

void LibraryPanes::SelectNode(const std::wstring& sKey)
{
    BringIntoView(sKey);
    if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(sKey))
        m_cTreeView.Select(*node);
}

void LibraryPanes::GoToCut(clsSchedMan& cSchedMan, const std::wstring& sLevelKey, const TextKey& cCutKey)
{
    if (!m_cTree.Find(sLevelKey))
        return;
    SelectNode(sLevelKey);
    ShowNode(cSchedMan, sLevelKey);
    if (!m_cGrid.GoToCut(cCutKey) && m_cGrid.Order().IsNarrowed())
    {
        m_cFindCuts.Leave();
        m_cGrid.GoToCut(cCutKey);
    }
    m_cView.FocusCuts();
}

std::vector<std::wstring> LibraryPanes::LevelKeys(const std::wstring& sMainKey) const
{
    std::vector<std::wstring> colKeys;
    if (const std::optional<CategoryTreePresenter::Node> mainNode = m_cTree.Find(sMainKey))
        for (const CategoryTreePresenter::Node levelNode : m_cTree.At(*mainNode).colChildren)
            colKeys.push_back(m_cTree.At(levelNode).sKey);
    return colKeys;
}

std::wstring LibraryPanes::NewLevelKey(const std::wstring& sMainKey,
                                       const std::vector<std::wstring>& colBefore) const
{
    for (const std::wstring& sKey : LevelKeys(sMainKey))
        if (std::find(colBefore.begin(), colBefore.end(), sKey) == colBefore.end())
            return sKey;
    return {};
}

// ---- ticks, expansion, search ----

bool LibraryPanes::EditSelectedName()
{
    const std::optional<CategoryTreePresenter::Node> node = m_cTreeView.Selected();
    return node && m_cTreeView.EditText(*node);
}

void LibraryPanes::NodeCheck(CategoryTreePresenter::Node node, bool bCheck)
{
    if (node >= m_cTree.Count())
        return;
    if (m_cWork.Running())
        return m_cTreeView.ShowChecks(m_cTree, {node});
    const std::vector<CategoryTreePresenter::Node> colNodes = m_cTree.Check(node, bCheck);
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

void LibraryPanes::NodeExpanded(CategoryTreePresenter::Node node, bool bExpanded)
{
    if (node < m_cTree.Count())
        m_cTree.SetExpanded(node, bExpanded);
}

void LibraryPanes::CheckAll(bool bCheck)
{
    if (m_cTree.Count() != 0)
        m_cTreeView.ShowChecks(m_cTree, m_cTree.Check(0, bCheck));
}

void LibraryPanes::InvertChecks()
{
    m_cTree.InvertChecks();
    std::vector<CategoryTreePresenter::Node> colNodes(m_cTree.Count());
    std::iota(colNodes.begin(), colNodes.end(), CategoryTreePresenter::Node{0});
    m_cTreeView.ShowChecks(m_cTree, colNodes);
}

bool LibraryPanes::TypeInTree(wchar_t cTyped)
{
    if (!m_typed.Type(cTyped, m_cMod.Ports().cClock.TickCount()))
        return false;
    if (m_cWork.Running() || m_cTree.Count() == 0)
        return true;
    const CategoryTreePresenter::Node from = m_cTreeView.Selected().value_or(0);
    const std::optional<CategoryTreePresenter::Node> found =
        m_typed.Find([&](const std::string& sBeginning, bool bBehind) {
            return m_cTree.FindText(sBeginning, from, bBehind);
        });
    if (found)
        m_cTreeView.Select(*found);
    return true;
}

} // namespace ravlo

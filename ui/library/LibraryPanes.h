// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/controls/TypeAhead.h"
#include "ui/library/CategoryTreePresenter.h"
#include "ui/library/GridFind.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/TreeFind.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The bars above grid and tree.
struct LibraryFindBars
{
    FindBarView& cCuts;
    FindBarView& cCategories;
};

// The library window's tree and grid: the grid shows the cuts of one node of the tree. After changes, what
// the user had selected, expanded and ticked is kept as far as it still exists.
class LibraryPanes
{
public:
    // Owns none of them.
    LibraryPanes(frmUILibView& cView, CategoryTreeView& cTreeView, clsSchedLibGridView& cGridView,
                 const LibraryFindBars& bars, LibraryWork& cWork, ModScheduler& cMod);

    const CategoryTreePresenter& Tree() const noexcept { return m_cTree; }
    clsSchedLibGridPresenter& Grid() noexcept { return m_cGrid; }
    const clsSchedLibGridPresenter& Grid() const noexcept { return m_cGrid; }
    GridFind& FindCuts() noexcept { return m_cFindCuts; }
    TreeFind& FindCategories() noexcept { return m_cFindCategories; }
    // The selected node's key; empty for none.
    std::wstring SelectedKey() const;
    // The key of the node whose cuts the grid shows; empty for none.
    const std::wstring& ShownKey() const noexcept { return m_sShownKey; }
    // The present category of the cuts in the grid; null for the root, for none, and when it no longer
    // exists.
    std::shared_ptr<clsCat> ShownCat(const clsSchedMan& cSchedMan) const;
    // The ticked categories and levels, in the tree's order.
    Cats CheckedCats(const clsSchedMan& cSchedMan) const;

    // ---- showing

    // Fills the tree and shows the root's cuts.
    void Load(clsSchedMan& cSchedMan);
    // Fills the tree, and shows the selected node's cuts.
    void RefreshAll(clsSchedMan& cSchedMan);
    // Shows the shown node's cuts again. Use it after commands that do not change categories.
    void ShowAgain(clsSchedMan& cSchedMan);
    // Shows changes, also of categories. Does not touch the tree when its nodes are the same.
    void ShowChanges(clsSchedMan& cSchedMan);
    // ShowChanges, unless the tree is up to date.
    void ShowChangedTree(clsSchedMan& cSchedMan);
    // Shows a level with one of its cuts in sight and gives it the focus; find bars that hide them are
    // closed. Nothing happens when the level is gone.
    void GoToCut(clsSchedMan& cSchedMan, const std::wstring& sLevelKey, const TextKey& cCutKey);
    // Shows a category under its new name, and selects it.
    void ShowRenamed(clsSchedMan& cSchedMan, const std::wstring& sFrom, const std::wstring& sTo);
    // The keys of a main category's levels in the tree.
    std::vector<std::wstring> LevelKeys(const std::wstring& sMainKey) const;
    // The key of the first level that the main category did not have before; empty when there is none.
    std::wstring NewLevelKey(const std::wstring& sMainKey, const std::vector<std::wstring>& colBefore) const;
    // Expands the node's parent and brings the node into view.
    void BringIntoView(const std::wstring& sKey);
    // As BringIntoView, and selects it. For an empty key does nothing.
    void SelectNode(const std::wstring& sKey);

    // ---- what the user does

    // Lets the user edit the selected node's text; see CategoryTreeView.
    bool EditSelectedName();
    void ShowSelectedNode(); // double-click and Enter in the tree
    // Accepts the user's tick of a box, or undoes it while something runs.
    void NodeCheck(CategoryTreePresenter::Node node, bool bCheck);
    void NodeExpanded(CategoryTreePresenter::Node node, bool bExpanded);
    void CheckAll(bool bCheck);
    void InvertChecks();
    // Selects the next visible node whose text begins with the typed characters; a pause of more than a
    // second starts a new text. Returns false for a character that is not part of a search, such as a blank
    // after no letter.
    bool TypeInTree(wchar_t cTyped);

private:
    void Populate(clsSchedMan& cSchedMan);
    void ShowItems(clsSchedMan& cSchedMan);
    void ShowNode(clsSchedMan& cSchedMan, const std::wstring& sKey);
    std::wstring RebuildTree(clsSchedMan& cSchedMan);
    void RestoreChecks(const std::vector<std::wstring>& colKeys);
    bool TreeIsUpToDate(const clsSchedMan& cSchedMan) const;
    void ClearGrid();
    void ShowCounts(const clsSchedMan& cSchedMan);
    std::wstring PresentKey(const std::wstring& sKey) const;

    frmUILibView& m_cView;
    CategoryTreeView& m_cTreeView;
    LibraryWork& m_cWork;
    ModScheduler& m_cMod;
    CategoryTreePresenter m_cTree;
    clsSchedLibGridPresenter m_cGrid;
    GridFind m_cFindCuts;
    TreeFind m_cFindCategories;
    std::wstring m_sShownKey;               // of the node whose cuts the grid shows; empty for none
    std::optional<std::size_t> m_audioCuts; // as last listed
    TypeAhead m_typed;                      // in the tree
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/CategoryTreePresenter.h"
#include "ui/library/DraggedCuts.h"
#include "ui/library/clsSchedLibGridPresenter.h"
#include "ui/library/frmUILibView.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The commands of the library window's menus.
enum class LibraryCommand
{
    mnuSelectAllTree,
    mnuSelectNoneTree,
    mnuSelectInvertTree,
    mnuSelectAllGrid,
    mnuSelectNoneGrid,
    mnuInvertSelectionGrid,
    mnuReloadAll,
    mnuSave,
    mnuExit,
    mnuCatUI,
    mnuCatNew,
    mnuCatLevelNew,
    mnuShuffle,
    mnuCatDelete,
    mnuHelp,
};

// The library window: the category tree beside the grid of cuts, and what the user does to them. Every change
// of categories is the manager's work; the window gathers the choice, confirms it and shows the result.
//
// While something runs, is dragged or is edited, what the user does is ignored, a refresh that is asked for
// runs once at the end, and closing waits. Only the keys that move rows are gathered. The manager is held
// weakly, so that it can end while the window exists hidden.
class frmUILibPresenter final : private ProgressTarget, private ProgressEvents
{
public:
    // Owns none of them.
    frmUILibPresenter(frmUILibView& cView, CategoryTreeView& cTreeView, clsSchedLibGridView& cGridView,
                      ModScheduler& cMod);
    ~frmUILibPresenter() override;
    frmUILibPresenter(const frmUILibPresenter&) = delete;
    frmUILibPresenter& operator=(const frmUILibPresenter&) = delete;

    // Hands the manager over; from then on its progress is shown.
    void SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan);

    // Loads the window and shows it until it is closed; without a manager a box says so. One that is showing
    // comes to the front.
    void ShowModalUI();
    bool Showing() const noexcept { return m_bShowing; }
    // Fills tree and grid anew from the manager's present objects, with the selected node's items.
    void ReloadAll();
    // Shows the database's news, which may come at any moment: at once, or when what runs has ended. The node
    // that is shown is shown again, and a tree whose nodes are the same is not touched.
    void RequestRefresh();
    // The window is about to be shown for the first time, or to go.
    void Opened() { m_cGrid.TakeGrid(); }
    void Closing() { m_cGrid.LetGoOfGrid(); }
    // Closes the window, after what runs.
    void RequestClose();

    clsSchedLibGridPresenter& Grid() noexcept { return m_cGrid; }
    // Where progress is shown.
    ProgressTarget& Shown() noexcept { return *this; }
    const CategoryTreePresenter& Tree() const noexcept { return m_cTree; }

    // ---- what the user does

    void Do(LibraryCommand eCommand);
    void ShowSelectedNode(); // double-click and Enter in the tree
    // A tick the user has changed. While something runs it is taken back.
    void NodeCheck(CategoryTreePresenter::Node lNode, bool bCheck);
    void NodeExpanded(CategoryTreePresenter::Node lNode, bool bExpanded);
    // A character typed in the tree: selects the next node on the screen whose text begins with what has been
    // typed within a second of each other. False for a key that is none of a search, as a blank is that
    // follows no letter.
    bool TypeInTree(wchar_t cTyped);
    // Row and column from 1, 0 for none. Asks the host to edit the cut.
    void CellDblClick(std::size_t lRow, std::size_t col);
    void GridDelete();
    // By one place. What is asked for while rows are being moved is done in one go afterwards.
    void MoveSelected(bool bUp);
    // Keeps the selected cuts for a Paste into a node, which asks what to do with them as a drop does.
    void CopySelection();
    void Paste();

    // A drag of the selected rows begins: false when it may not. It ends with where it was dropped, if it was
    // dropped here; the drop is handled then.
    bool DragStarted();
    struct Drop
    {
        bool bOnTree = false;
        std::wstring sNodeKey;           // on the tree; empty beside the nodes
        std::optional<std::size_t> lRow; // on the grid, from 0; nothing behind the last row
        std::wstring sPayload;
    };
    void DragCompleted(const std::optional<Drop>& drop);
    // Something that was dragged from elsewhere has been dropped here: it is refused, whatever it says it is.
    void Dropped(const Drop& drop);

private:
    // While one exists something runs.
    class Working;
    // While one exists something runs and the window's controls are disabled.
    class Busy;
    struct Target
    {
        std::shared_ptr<clsCat> cCat; // a level, or the main category for level 0
        std::int32_t lLevel = 0;
        std::wstring sText;
    };

    template <class Body> void Try(const wchar_t* sWhere, Body&& body);
    template <class Body> void Handle(const wchar_t* sWhere, Body&& body);
    template <class Body> void HandleDrop(Body&& body);
    template <class Body> void RunDrop(Body&& body);
    void SetBusy(bool bBusy) noexcept;
    void Settle() noexcept;

    void Load(clsSchedMan& cSchedMan);
    void Populate(clsSchedMan& cSchedMan);
    void ShowItems(clsSchedMan& cSchedMan);
    void ShowNode(clsSchedMan& cSchedMan, const std::wstring& sKey);
    void ShowAgain(clsSchedMan& cSchedMan);
    std::wstring RebuildTree(clsSchedMan& cSchedMan);
    void RefreshAll(clsSchedMan& cSchedMan);
    bool TreeIsUpToDate(const clsSchedMan& cSchedMan) const;
    void ShowChanges(clsSchedMan& cSchedMan);
    std::vector<std::wstring> LevelKeys(const std::wstring& sMainKey) const;
    void ShowNewLevel(const std::wstring& sMainKey, const std::vector<std::wstring>& colBefore);
    void Reload(clsSchedMan& cSchedMan);
    void SaveAll(clsSchedMan& cSchedMan);
    void ClearGrid();
    std::wstring NodeOrStandIn(const std::wstring& sKey) const;
    Cats CheckedCats(const clsSchedMan& cSchedMan) const;

    void Run(LibraryCommand eCommand, clsSchedMan& cSchedMan);
    void CheckAll(bool bCheck);
    void InvertChecks();
    void ShowCategoryWindow(clsSchedMan& cSchedMan);
    void NewCategory(clsSchedMan& cSchedMan);
    void NewLevel(clsSchedMan& cSchedMan);
    void Shuffle(clsSchedMan& cSchedMan);
    void Delete(clsSchedMan& cSchedMan);
    void Edit(clsSchedMan& cSchedMan, std::size_t lRow);
    void Remove(clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows);
    std::vector<CutRemoval> RemovalsOf(const clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows,
                                       bool bFromAll) const;

    void Perform(clsSchedMan& cSchedMan, const Drop& drop);
    void DropOnGrid(clsSchedMan& cSchedMan, const std::function<void()>& reorder);
    std::optional<DraggedCuts> TakeDraggedCuts();
    void DropOnNode(clsSchedMan& cSchedMan, const std::wstring& sKey, const DraggedCuts& dragged);
    std::optional<Target> ChooseTarget(const clsSchedMan& cSchedMan, const std::wstring& sKey);
    eCatDragOptions ChooseOption(const std::wstring& sTarget);
    bool MayCopy(const PresentCuts& present, const Target& target) const;

    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& sText, std::int32_t lValue) override;
    void ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus) override;

    frmUILibView& m_cView;
    CategoryTreeView& m_cTreeView;
    ModScheduler& m_cMod;
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    CategoryTreePresenter m_cTree;
    clsSchedLibGridPresenter m_cGrid;
    std::wstring m_sShownKey; // of the node whose items the grid shows; empty for none
    DraggedCuts m_copied;
    int m_lWorking = 0;
    int m_lBusy = 0;
    std::unique_ptr<Working> m_cDrag;
    std::unique_ptr<Busy> m_cReordering;
    std::function<void()> m_OnProgressStart; // while a command waits for the manager to begin
    std::wstring m_sTyped;                   // in the tree
    std::uint32_t m_lTyped = 0;              // when, by the clock's tick count
    std::ptrdiff_t m_steps = 0;              // places the selected rows are yet to be moved by keys
    bool m_bMovingByKeys = false;
    bool m_bRefreshOwed = false;
    bool m_bCloseOwed = false;
    bool m_bShown = false; // has been, or is
    bool m_bShowing = false;
};

} // namespace ravlo

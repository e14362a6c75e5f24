// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/DraggedCuts.h"
#include "ui/library/LibraryPanes.h"
#include "ui/library/LibraryResults.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/RecentTargets.h"
#include "ui/library/frmUILibView.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// What the user does to cuts in the library window: edit, remove, move, copy and paste, drag and drop.
// Collects and confirms the choice and shows the result; the manager changes the categories.
class LibraryCuts
{
public:
    // Owns none of them.
    LibraryCuts(frmUILibView& cView, LibraryPanes& cPanes, LibraryWork& cWork, LibraryResults& cResults,
                ModScheduler& cMod);

    // Row and column from 1, 0 for none. Asks the host to edit the cut.
    void CellDblClick(std::size_t row, std::size_t col);
    // The two halves of a double-click: Pressed remembers the cut in that cell, and EditPressed asks the host
    // to edit it, although its row may be another one by then.
    void Pressed(std::size_t row, std::size_t col);
    void EditPressed();
    void GridDelete();
    // Moves the selected rows by one. Calls during a move are combined into one further move.
    void MoveSelected(bool bUp);
    // CopySelection and CutSelection remember the selected cuts; those that were cut are shown pale until
    // they are pasted. Paste puts them into the selected node and asks how, as a drop does.
    void CopySelection() { TakeSelection(false); }
    void CutSelection() { TakeSelection(true); }
    void Paste();
    // Forgets the cuts that were cut; false when there are none.
    bool CancelCut();

    // Moves the selected cuts, in the order of their rows, to a position of the shown level, from 1. A
    // position past the last one means the end. The rows need not be adjacent.
    void MoveSelectedTo(std::size_t position);
    void MoveSelectedToTop() { MoveSelectedTo(1); }
    void MoveSelectedToBottom() { MoveSelectedTo(std::numeric_limits<std::size_t>::max()); }
    void AskForPosition();
    // Moves or copies the selected cuts as a drop there does, without asking how. A main category keeps the
    // cuts' levels.
    void SendTo(eCatDragOptions eOption, const std::wstring& sNodeKey);
    // As SendTo, into what the user chooses in the category window.
    void SendToChosen(eCatDragOptions eOption);
    const RecentTargets& Recent() const noexcept { return m_cRecent; }

    struct Drop
    {
        bool bOnTree = false;
        std::wstring sNodeKey;          // on the tree; empty next to the nodes
        std::optional<std::size_t> row; // on the grid, from 0; nothing below the last row
        std::wstring sPayload;
    };
    // Begins a drag of the selected rows; false when it may not begin.
    bool DragStarted();
    // Ends it and handles its drop, if there was one here.
    void DragCompleted(const std::optional<Drop>& drop);
    // Refuses, with any payload, what was dragged from elsewhere and dropped here.
    void Dropped(const Drop& drop);

private:
    struct Target
    {
        std::shared_ptr<clsCat> cCat; // a level, or the main category for level 0
        std::int32_t lLevel = 0;
        std::wstring sText;
    };

    clsSchedLibGridPresenter& Grid() const noexcept { return m_cPanes.Grid(); }
    void Edit(clsSchedMan& cSchedMan, const TextKey& cKey);
    void Remove(clsSchedMan& cSchedMan, const std::vector<std::size_t>& colRows);
    std::vector<CutRemoval> RemovalsFromListed(const clsSchedMan& cSchedMan,
                                               const std::vector<std::size_t>& colRows) const;
    std::vector<CutRemoval> RemovalsFromAll(const clsSchedMan& cSchedMan,
                                            const std::vector<std::size_t>& colRows) const;
    void Move(clsSchedMan& cSchedMan, std::optional<std::size_t> row);
    void Perform(clsSchedMan& cSchedMan, const Drop& drop);
    bool MayReorder(clsSchedMan& cSchedMan);
    std::optional<DraggedCuts> TakeDraggedCuts(const clsSchedMan& cSchedMan);
    // False when the user chose to do nothing.
    bool DropOnNode(clsSchedMan& cSchedMan, const std::wstring& sKey, const DraggedCuts& dragged);
    void Change(clsSchedMan& cSchedMan, eCatDragOptions eOption, Target target, const DraggedCuts& dragged);
    static Target TargetOf(const std::shared_ptr<clsCat>& cCat);
    void TakeSelection(bool bCut);
    void MoveTogether(clsSchedMan& cSchedMan, std::size_t position);
    void Send(clsSchedMan& cSchedMan, eCatDragOptions eOption, const std::wstring& sNodeKey,
              const DraggedCuts& dragged);
    void SayMoved(const clsCat& cLevel, const TextKey& cFirst, std::size_t cuts);
    void SayChanged(const clsSchedMan& cSchedMan, eCatDragOptions eOption, const Target& target,
                    const DraggedCuts& dragged);
    std::optional<Target> ChooseTarget(const clsSchedMan& cSchedMan, const std::wstring& sKey);
    eCatDragOptions ChooseOption(const std::wstring& sTarget);

    frmUILibView& m_cView;
    LibraryPanes& m_cPanes;
    LibraryWork& m_cWork;
    LibraryResults& m_cResults;
    ModScheduler& m_cMod;
    RecentTargets m_cRecent;
    std::optional<TextKey> m_cPressed; // by a double-click that is not handled yet
    DraggedCuts m_copied;              // or cut, which the grid shows
    std::unique_ptr<LibraryWork::Working> m_cDrag;
    std::ptrdiff_t m_steps = 0; // rows the selected ones are yet to be moved by keys
    bool m_bMovingByKeys = false;
};

} // namespace ravlo

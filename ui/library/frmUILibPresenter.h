// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/CutMenu.h"
#include "ui/library/GridHeadings.h"
#include "ui/library/LibraryCommand.h"
#include "ui/library/LibraryCuts.h"
#include "ui/library/LibraryPanes.h"
#include "ui/library/LibraryRename.h"
#include "ui/library/LibraryResults.h"
#include "ui/library/LibraryRotation.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/frmUILibView.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

// The library window: the category tree next to the grid of cuts, the commands of its menus, and its
// progress.
class frmUILibPresenter final : private ProgressEvents
{
public:
    // Owns none of them.
    frmUILibPresenter(frmUILibView& cView, CategoryTreeView& cTreeView, clsSchedLibGridView& cGridView,
                      const LibraryFindBars& bars, ModScheduler& cMod);
    ~frmUILibPresenter() override;
    frmUILibPresenter(const frmUILibPresenter&) = delete;
    frmUILibPresenter& operator=(const frmUILibPresenter&) = delete;

    // Sets the manager, or null for none, and follows its progress.
    void SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan);

    // Loads the window and shows it until it is closed; without a manager shows a box. If it is already
    // showing, brings it to the front.
    void ShowModalUI();
    bool Showing() const noexcept { return m_bShowing; }
    // Fills tree and grid from the manager's present objects, with the selected node's cuts.
    void ReloadAll();
    // Shows the database's changes: at once, or when the present work has ended.
    void RequestRefresh() { m_cWork.RequestRefresh(); }
    // Shows a level with one of its cuts in sight: when the present work has ended, or as soon as the window
    // is shown.
    void GoTo(const std::wstring& sLevelKey, const TextKey& cCutKey);
    // Call before the window is shown for the first time, and before it ends.
    void Opened() { m_cPanes.Grid().TakeGrid(); }
    void Closing() { m_cPanes.Grid().LetGoOfGrid(); }
    // Call now and then while the window is there.
    void Tick() noexcept;
    // Closes the window, after the present work.
    void RequestClose() { m_cWork.RequestClose(); }

    LibraryPanes& Panes() noexcept { return m_cPanes; }
    LibraryCuts& Cuts() noexcept { return m_cCuts; }
    LibraryRotation& Rotation() noexcept { return m_cRotation; }
    GridHeadings& Headings() noexcept { return m_cHeadings; }
    CutMenu& CutItems() noexcept { return m_cCutMenu; }
    LibraryRename& Renaming() noexcept { return m_cRename; }
    LibraryResults& Results() noexcept { return m_cResults; }
    const CategoryTreePresenter& Tree() const noexcept { return m_cPanes.Tree(); }
    clsSchedLibGridPresenter& Grid() noexcept { return m_cPanes.Grid(); }

    void Do(LibraryCommand eCommand);
    // Call before a menu is shown.
    MenuItem ItemOf(LibraryCommand eCommand) const
    {
        return eCommand == LibraryCommand::mnuRename ? m_cRename.Item() : m_cRotation.ItemOf(eCommand);
    }

private:
    struct Command;
    void Reload(clsSchedMan& cSchedMan);
    void SaveAll(clsSchedMan& cSchedMan);
    void ShowCategoryWindow(clsSchedMan& cSchedMan);
    void NewCategory(clsSchedMan& cSchedMan);
    void NewLevel(clsSchedMan& cSchedMan);
    void Delete(clsSchedMan& cSchedMan);
    void Refresh(clsSchedMan& cSchedMan);
    void GoToTarget(clsSchedMan& cSchedMan);

    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail) override;

    frmUILibView& m_cView;
    ModScheduler& m_cMod;
    LibraryWork m_cWork;
    LibraryPanes m_cPanes;
    LibraryResults m_cResults;
    LibraryCuts m_cCuts;
    LibraryRotation m_cRotation;
    LibraryRename m_cRename;
    GridHeadings m_cHeadings;
    CutMenu m_cCutMenu;
    std::function<void(clsSchedMan& cSchedMan)> m_GoTo; // to do with the next refresh; empty for nothing
    bool m_bShowing = false;
    bool m_bLookedForParts = false; // of a killed program's step
};

} // namespace ravlo

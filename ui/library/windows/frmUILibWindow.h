// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/FindBar.h"
#include "ui/controls/windows/Handles.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/controls/windows/SplitPanelWindow.h"
#include "ui/controls/windows/Window.h"
#include "ui/library/frmUILibPresenter.h"
#include "ui/library/windows/CategoryTreeWindow.h"
#include "ui/library/windows/DragAndDrop.h"
#include "ui/library/windows/FolderImages.h"
#include "ui/library/windows/StatusWindow.h"
#include "ui/library/windows/clsSchedLibGridWindow.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The library window. Made hidden; shown by its presenter, once.
class frmUILibWindow final : public Window, private frmUILibView
{
public:
    // hOwner: the window it stays in front of; null for none. CategoryShowing returns whether the category
    // window is open. Precondition: OLE is initialised.
    frmUILibWindow(HWND hOwner, ModScheduler& cMod, std::function<bool()> CategoryShowing);
    ~frmUILibWindow() override;

    frmUILibPresenter& Form() noexcept { return *m_cForm; }

private:
    class Site;
    class TreeSite;
    class GridSite;
    // Posted instead of done directly: these may refill a control, which must not happen inside the control's
    // own message.
    enum PostedMessage : UINT
    {
        ePostedChecks = WM_APP + 1, // ticks may have changed
        ePostedShowNode,
        ePostedExpandRoot,
        ePostedEdit,
        ePostedHeading,
        ePostedDrag,
        ePostedDropped,
        ePostedRepaint,
        ePostedRenamed,
    };
    enum TimerId : UINT_PTR
    {
        eTimerGrey = 1,
        eTimerDrag,
        eTimerRefresh,
        eTimerSelection,
        eTimerSorting,
        eTimerTick,
    };
    static bool Down(int lKey) { return ::GetKeyState(lKey) < 0; }

    void SetBusy(bool bBusy) override;
    void SetStatus(const std::wstring& sFirst, const std::wstring& sSecond) override;
    void SetResult(const std::wstring& sResult) override;
    void ShowProgress(std::int32_t lMax) override;
    void MoveProgress(std::int32_t lValue) override;
    void HideProgress() override;
    std::optional<std::size_t> PopUp(const std::vector<std::wstring>& colItems) override;
    void ShowModal() override;
    void BringToFront() override;
    void FocusCuts() override;
    void Close() override;
    void AskForRefresh() override;
    void AskForSelection() override;
    void AskForSorting() override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnPosted(UINT lMessage, WPARAM wParam, LPARAM lParam);
    void OnException() noexcept override;
    void OnCommand(int lId);
    LRESULT OnNotify(const NMHDR& header, LPARAM lParam);
    LRESULT OnTreeNotify(const NMHDR& header, LPARAM lParam);
    LRESULT OnGridNotify(const NMHDR& header, LPARAM lParam);
    LRESULT OnLabelEdited(const NMTVDISPINFOW& info);
    LRESULT OnExpanded(const NMTREEVIEWW& change);
    void OnTreeDblClick();
    void OnContextMenu(HWND hControl, POINT onScreen);
    void OnTimer(UINT_PTR lTimer);
    void OnActivate(bool bActive);
    bool OnKey(const MSG& message);
    bool OnTreeKey(WPARAM lKey, bool bControl);
    bool OnGridKey(WPARAM lKey, bool bControl);
    std::unique_ptr<FindBar> MakeFindBar(int lId, const FindBar::Texts& texts);
    void ListenToFindBars();
    bool OnFindKey(const MSG& message);
    void OpenFindBar(bool bCategories);
    void CompareChecks();
    void TakeDrops();
    void RunDrag();
    void OnDropped(LibraryCuts::Drop drop);
    void OnDragTick();
    void LetGo();
    void Grey(bool bGrey);
    POINT PopUpPoint() const;

    void MakeControls();
    void SetLook(int lDpi);
    void LayOut();

    ModScheduler& m_cMod;
    std::function<bool()> m_CategoryShowing;
    UniqueAccelerators m_hAccelerators;
    UniqueFont m_hFont;
    UniqueIcon m_hBigIcon;
    UniqueIcon m_hSmallIcon;
    int m_lDpi = 96;
    HWND m_hTopLeft = nullptr; // lblTopLeft
    std::unique_ptr<FindBar> m_cCategoriesBar;
    std::unique_ptr<CategoryTreeWindow> m_cTree;
    std::unique_ptr<SplitPanelWindow> m_cSplit; // sp1
    std::unique_ptr<FindBar> m_cCutsBar;
    std::unique_ptr<clsSchedLibGridWindow> m_cGrid;
    std::unique_ptr<StatusWindow> m_cStatus;
    std::unique_ptr<frmUILibPresenter> m_cForm;
    std::unique_ptr<DropSite> m_cTreeSite;
    std::unique_ptr<DropSite> m_cGridSite;
    std::vector<std::unique_ptr<DropRegistration>> m_cRegistrations;
    std::unique_ptr<ModalLoop> m_cLoop;
    HWND m_hFocus = nullptr;   // what had it when the window was left or greyed
    bool m_bCutsFirst = false; // get the focus when the window is shown
    bool m_bPlaced = false;    // placed on the screen: before and after that its size is not the user's
    int m_lShow = SW_SHOWNORMAL;
    bool m_bBusy = false;
    bool m_bGreyed = false;
    bool m_bDragging = false;
    bool m_bByKeyboard = false;              // a pop-up belongs to the selected node, not to the pointer
    std::optional<std::wstring> m_sRenamed;  // what was typed for the edited category; nothing: given up
    std::optional<LibraryCuts::Drop> m_drop; // dropped, and not handled yet
};

} // namespace ravlo

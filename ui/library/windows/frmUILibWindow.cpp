// SPDX-License-Identifier: MIT
#include "ui/library/windows/frmUILibWindow.h"

#include "base/ScopedFlag.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PlaceMemory.h"
#include "ui/library/windows/ControlIds.h"
#include "ui/library/windows/LibraryMenus.h"

#include <utility>
#include <windowsx.h>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lMargin = 6;
constexpr int lFirstWidth = 1180;
constexpr int lFirstHeight = 700;
constexpr int lLeastWidth = 420;
constexpr int lLeastHeight = 260;
constexpr int lBigIcon = 32;
constexpr int lSmallIcon = 16;

constexpr const wchar_t* sPlaceKey = L"frmUILibPlace";
constexpr std::int32_t lFirstTree = 4500; // twips: 300 pixels at 96 dpi
constexpr const wchar_t* sSplitId = L"SplitPanelSchedLib";

constexpr UINT lGreyDelay = 150;     // milliseconds: short commands do not flicker
constexpr UINT lSelectionDelay = 30; // many rows may change at once
constexpr UINT lTick = 1'000;
constexpr UINT lRefreshDelay = 50; // a timer's message comes after all that the user does

} // namespace

// ---- making ----

frmUILibWindow::frmUILibWindow(HWND hOwner, ModScheduler& cMod, std::function<bool()> CategoryShowing)
    : Window(sfrmUILibClass), m_cMod(cMod), m_CategoryShowing(std::move(CategoryShowing)),
      m_hAccelerators(LibraryAccelerators())
{
    UniqueMenu hMenu = LibraryMenuBar();
    WindowStart start;
    start.sTitle = sfrmUILibCaption;
    start.lStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hOwner;
    start.hMenu = hMenu.get();
    Create(start);
    hMenu.release(); // the window's own now
    MakeControls();
    m_cForm = std::make_unique<frmUILibPresenter>(static_cast<frmUILibView&>(*this), *m_cTree, *m_cGrid,
                                                  LibraryFindBars{*m_cCutsBar, *m_cCategoriesBar}, m_cMod);
    ListenToFindBars();
    m_cGrid->SetRows(m_cForm->Grid());
    TakeDrops();
    SetLook(DpiOf(Handle()));
    const SIZE first = {Scaled(lFirstWidth, m_lDpi), Scaled(lFirstHeight, m_lDpi)};
    m_lShow = RestorePlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey, first);
    m_cForm->Opened();
    ::SetTimer(Handle(), eTimerTick, lTick, nullptr);
}

frmUILibWindow::~frmUILibWindow()
{
    m_cLoop.reset();
    m_cRegistrations.clear();
    m_cSplit.reset();
    Destroy();
}

// In the order of the Tab key.
void frmUILibWindow::MakeControls()
{
    m_hTopLeft = MakeControl(Handle(), WC_STATICW, L"Double-click any node to display items",
                             SS_LEFT | SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS, eIdlblTopLeft);
    m_cCategoriesBar = MakeFindBar(eIdFindCategories, {L"Find categories", L"Find categories"});
    m_cTree = std::make_unique<CategoryTreeWindow>(Handle(), eIdTvCats);
    m_cSplit = std::make_unique<SplitPanelWindow>(Handle(), eIdsp1, m_cMod.Ports().cUserSettings,
                                                  [this] { m_cMod.LogError(L"sp1", CurrentError()); });
    m_cCutsBar = MakeFindBar(eIdFindCuts, {L"Find cuts", L"Find cuts by artist, title, album or path"});
    m_cGrid = std::make_unique<clsSchedLibGridWindow>(Handle(), eIdiGridLib);
    m_cStatus = std::make_unique<StatusWindow>(Handle(), eIdStatus, eIdProgressBar1);
    m_cSplit->Panel().SetRegistryID(sSplitId);
    m_cSplit->Panel().SetPosition(lFirstTree);
    m_cSplit->SetControls(m_cTree->Handle(), m_cGrid->Handle());
    m_cSplit->SetHeaders(m_cCategoriesBar->Handle(), m_cCutsBar->Handle());
}

void frmUILibWindow::SetLook(int lDpi)
{
    m_lDpi = lDpi;
    // Swapped in at the end: the controls use the old font until then.
    UniqueFont hFont = MessageFont(lDpi);
    SetFont(m_hTopLeft, hFont.get());
    m_cCategoriesBar->SetLook(hFont.get(), lDpi);
    m_cCutsBar->SetLook(hFont.get(), lDpi);
    m_cTree->SetLook(hFont.get(), lDpi);
    m_cGrid->SetLook(hFont.get(), lDpi);
    m_cStatus->SetLook(hFont.get(), lDpi);
    m_hFont.swap(hFont);
    // Likewise for the window's icons.
    UniqueIcon hBig = FolderIcon(Scaled(lBigIcon, lDpi));
    UniqueIcon hSmall = FolderIcon(Scaled(lSmallIcon, lDpi));
    ::SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(hBig.get()));
    ::SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(hSmall.get()));
    m_hBigIcon.swap(hBig);
    m_hSmallIcon.swap(hSmall);
    LayOut();
}

void frmUILibWindow::LayOut()
{
    if (!m_bPlaced || ::IsIconic(Handle()))
        return;
    m_cStatus->LayOut();
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const FontContext cContext(Handle(), m_hFont.get());
    const int lEdge = Scaled(lMargin, m_lDpi);
    const int lLine = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy) + lEdge;
    const auto lRight = static_cast<int>(client.right) - lEdge;
    ::MoveWindow(m_hTopLeft, lEdge, 0, lRight - lEdge, lLine, TRUE);
    ::InvalidateRect(m_hTopLeft, nullptr, TRUE); // its text is in the middle, which has moved
    m_cSplit->SetHeaderHeights(m_cCategoriesBar->Height(), m_cCutsBar->Height());
    m_cSplit->Place({lEdge, lLine, lRight, client.bottom - m_cStatus->Height()}, m_lDpi);
}

// ---- messages ----

LRESULT frmUILibWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (!m_cForm)
        return Default(lMessage, wParam, lParam); // still being created
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return 0;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), lParam);
    case WM_CONTEXTMENU:
        OnContextMenu(reinterpret_cast<HWND>(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    case WM_CLOSE:
        m_cForm->RequestClose();
        return 0;
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    case WM_INITMENUPOPUP:
        UpdateMenu(reinterpret_cast<HMENU>(wParam), [this](LibraryCommand eCommand) {
            // The category window can be open only once: not from a library window that it has opened.
            return eCommand == LibraryCommand::mnuCatUI ? MenuItem{.bEnabled = !m_CategoryShowing()}
                                                        : m_cForm->ItemOf(eCommand);
        });
        return 0;
    case WM_DESTROY:
        LetGo(); // the controls are destroyed with the window
        return 0;
    case WM_SETCURSOR:
        if (m_bBusy && !m_bDragging)
        {
            ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
            return TRUE;
        }
        return m_cSplit->SetsCursor() ? TRUE : Default(lMessage, wParam, lParam);
    case WM_ACTIVATE:
        OnActivate(LOWORD(wParam) != WA_INACTIVE);
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scaled(lLeastWidth, m_lDpi),
                                                                 Scaled(lLeastHeight, m_lDpi)};
        return 0;
    case WM_DPICHANGED:
        SetLook(HIWORD(wParam));
        TakeSuggestedPlace(Handle(), lParam);
        return 0;
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
    case WM_SYSCOLORCHANGE:
        SetLook(m_lDpi); // font and colours may be other ones now
        return 0;
    default:
        return lMessage > WM_APP ? OnPosted(lMessage, wParam, lParam) : Default(lMessage, wParam, lParam);
    }
}

LRESULT frmUILibWindow::OnPosted(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case ePostedChecks:
        CompareChecks();
        return 0;
    case ePostedShowNode:
        m_cForm->Panes().ShowSelectedNode();
        return 0;
    case ePostedExpandRoot:
        if (m_cForm->Tree().Count() != 0)
            m_cTree->Expand(0);
        return 0;
    case ePostedEdit:
        m_cForm->Cuts().EditPressed();
        return 0;
    case ePostedHeading:
        m_cForm->Headings().Click(wParam);
        return 0;
    case ePostedDrag:
        RunDrag();
        return 0;
    case ePostedDropped:
        if (const std::optional<LibraryCuts::Drop> drop = std::exchange(m_drop, std::nullopt))
            m_cForm->Cuts().Dropped(*drop);
        return 0;
    case ePostedRenamed:
        m_cForm->Renaming().Edited(std::exchange(m_sRenamed, std::nullopt));
        return 0;
    case ePostedRepaint:
        ::RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ERASE | RDW_ALLCHILDREN);
        return 0;
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void frmUILibWindow::OnException() noexcept { m_cMod.DISPLAYERROR(L"frmUILib", true, CurrentError()); }

void frmUILibWindow::OnCommand(int lId)
{
    if (const std::optional<LibraryCommand> eCommand = CommandOf(lId))
        m_cForm->Do(*eCommand);
}

LRESULT frmUILibWindow::OnNotify(const NMHDR& header, LPARAM lParam)
{
    if (header.hwndFrom == m_cTree->Handle())
        return OnTreeNotify(header, lParam);
    if (header.hwndFrom == m_cGrid->Handle())
        return OnGridNotify(header, lParam);
    if (header.code == HDN_ENDDRAG) // the dragged header may leave traces of itself
        ::PostMessageW(Handle(), ePostedRepaint, 0, 0);
    return 0;
}

LRESULT frmUILibWindow::OnGridNotify(const NMHDR& header, LPARAM lParam)
{
    switch (header.code)
    {
    case LVN_GETDISPINFOW:
        return m_cGrid->OnGetDispInfo(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
    case LVN_ODFINDITEMW:
        return m_cGrid->OnFindItem(*reinterpret_cast<const NMLVFINDITEMW*>(lParam));
    case NM_CUSTOMDRAW:
        return m_cGrid->OnCustomDraw(*reinterpret_cast<NMLVCUSTOMDRAW*>(lParam));
    case NM_SETFOCUS:
        m_cGrid->OnFocus();
        return 0;
    case LVN_COLUMNCLICK:
        ::PostMessageW(Handle(), ePostedHeading,
                       m_cGrid->GridColumnOf(reinterpret_cast<const NMLISTVIEW*>(lParam)->iSubItem), 0);
        return 0;
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        m_cForm->Results().SelectionChanged();
        return 0;
    case LVN_BEGINDRAG:
        m_cGrid->OnBeginDrag();
        ::PostMessageW(Handle(), ePostedDrag, 0, 0);
        return 0;
    case NM_DBLCLK:
    {
        const auto& click = *reinterpret_cast<const NMITEMACTIVATE*>(lParam);
        m_cForm->Cuts().Pressed(static_cast<std::size_t>(click.iItem + 1),
                                static_cast<std::size_t>(click.iSubItem + 1));
        ::PostMessageW(Handle(), ePostedEdit, 0, 0);
        return 0;
    }
    default:
        return 0;
    }
}

// The pop-up of the grid or its headings, or the tree's: at the pointer, or with the keyboard below the
// selected node.
void frmUILibWindow::OnContextMenu(HWND hControl, POINT onScreen)
{
    if (hControl == m_cGrid->Handle() || ::IsChild(m_cGrid->Handle(), hControl))
    {
        if (m_bBusy)
            return;
        if (m_cGrid->TakeMenuPoint(hControl, onScreen))
            m_cForm->Headings().ShowMenu();
        else
            m_cForm->CutItems().ShowMenu();
        return;
    }
    const std::optional<CategoryTreePresenter::Node> selected = m_cTree->Selected();
    if (hControl != m_cTree->Handle() || m_bBusy)
        return;
    const bool bByKeyboard = onScreen.x == -1 && onScreen.y == -1;
    if (bByKeyboard && selected)
    {
        m_cTree->BringIntoView(*selected);
        onScreen = {m_cTree->LabelOf(*selected).left, m_cTree->LabelOf(*selected).bottom};
    }
    const TreePopUp cPopUp(CategoriesMenu(::GetMenu(Handle())));
    ::TrackPopupMenuEx(cPopUp.Menu(), TPM_RIGHTBUTTON, static_cast<int>(onScreen.x),
                       static_cast<int>(onScreen.y), Handle(), nullptr);
}

// Restores the focus when the window becomes active again. While greyed, no control has the focus, so the
// earlier one is kept.
void frmUILibWindow::OnActivate(bool bActive)
{
    if (!bActive && !m_bGreyed)
        m_hFocus = ::GetFocus();
    else if (bActive && m_hFocus && ::IsChild(Handle(), m_hFocus))
        ::SetFocus(m_hFocus);
}

// ---- timers ----

void frmUILibWindow::OnTimer(UINT_PTR lTimer)
{
    if (lTimer == eTimerGrey)
    {
        ::KillTimer(Handle(), eTimerGrey);
        Grey(m_bBusy);
        return;
    }
    if (lTimer == eTimerRefresh)
    {
        ::KillTimer(Handle(), eTimerRefresh);
        m_cForm->RequestRefresh();
        return;
    }
    if (lTimer == eTimerSelection)
    {
        ::KillTimer(Handle(), eTimerSelection);
        m_cForm->Results().ShowSelection();
        return;
    }
    if (lTimer == eTimerSorting)
    {
        ::KillTimer(Handle(), eTimerSorting);
        m_cForm->Headings().Step();
        return;
    }
    if (lTimer == eTimerTick)
        return m_cForm->Tick();
    OnDragTick();
}

// ---- what the presenter asks of the window ----

void frmUILibWindow::SetBusy(bool bBusy)
{
    m_bBusy = bBusy;
    if (bBusy)
    {
        ::SetTimer(Handle(), eTimerGrey, lGreyDelay, nullptr);
        ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
        return;
    }
    ::KillTimer(Handle(), eTimerGrey);
    Grey(false);
    AskForPointer();
}

void frmUILibWindow::Grey(bool bGrey)
{
    if (bGrey == m_bGreyed)
        return;
    m_bGreyed = bGrey;
    const HWND hFocus = ::GetFocus();
    if (bGrey && hFocus && ::IsChild(Handle(), hFocus))
        m_hFocus = hFocus;
    for (const HWND hControl :
         {m_hTopLeft, m_cTree->Handle(), m_cGrid->Handle(), m_cCategoriesBar->Handle(), m_cCutsBar->Handle()})
        ::EnableWindow(hControl, !bGrey);
    m_cStatus->Enable(!bGrey);
    EnableMenuBar(Handle(), !bGrey);
    if (!bGrey && m_hFocus && ::GetActiveWindow() == Handle())
        ::SetFocus(m_hFocus);
}

void frmUILibWindow::SetStatus(const std::wstring& sFirst, const std::wstring& sSecond)
{
    m_cStatus->SetTexts(sFirst, sSecond);
}
void frmUILibWindow::SetResult(const std::wstring& sResult) { m_cStatus->SetResult(sResult); }
void frmUILibWindow::ShowProgress(std::int32_t lMax) { m_cStatus->ShowProgress(lMax); }
void frmUILibWindow::MoveProgress(std::int32_t lValue) { m_cStatus->MoveProgress(lValue); }
void frmUILibWindow::HideProgress() { m_cStatus->HideProgress(); }

POINT frmUILibWindow::PopUpPoint() const
{
    const std::optional<CategoryTreePresenter::Node> selected = m_cTree->Selected();
    if (m_bByKeyboard && selected)
        return {m_cTree->LabelOf(*selected).left, m_cTree->LabelOf(*selected).bottom};
    POINT pointer{};
    ::GetCursorPos(&pointer);
    return pointer;
}

std::optional<std::size_t> frmUILibWindow::PopUp(const std::vector<std::wstring>& colItems)
{
    return ChooseFromPopUp(Handle(), PopUpPoint(), colItems);
}

void frmUILibWindow::ShowModal()
{
    m_cLoop = std::make_unique<ModalLoop>(Handle());
    m_cLoop->SetAccelerators(m_hAccelerators.get());
    m_cLoop->OnMessage = [this](MSG& message) { return OnKey(message); };
    ::ShowWindow(Handle(), m_lShow);
    // Only now: before the window is maximised, the remembered split would be limited to the smaller size and
    // stay so.
    m_bPlaced = true;
    LayOut();
    m_cTree->ScrollToLeft(); // nodes selected before there was any width have been scrolled to
    ::SetForegroundWindow(Handle());
    ::SetFocus(std::exchange(m_bCutsFirst, false) ? m_cGrid->Handle() : m_cTree->Handle());
    m_cLoop->Run();
    LetGo();
}

// Saves the window's layout before it ends, once, if it was shown.
void frmUILibWindow::LetGo()
{
    m_cRegistrations.clear();
    if (!std::exchange(m_bPlaced, false) || !Handle())
        return;
    m_cForm->Closing();
    m_cSplit->Panel().GoOutOfView();
    RememberPlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey);
}

void frmUILibWindow::BringToFront()
{
    if (::IsIconic(Handle()))
        ::ShowWindow(Handle(), SW_RESTORE);
    ::SetForegroundWindow(Handle());
}

void frmUILibWindow::FocusCuts()
{
    m_hFocus = m_cGrid->Handle();
    m_bCutsFirst = !m_bPlaced;
    if (m_bPlaced && !m_bGreyed && ::GetActiveWindow() == Handle())
        ::SetFocus(m_hFocus);
}

void frmUILibWindow::Close()
{
    if (m_cLoop)
        m_cLoop->End();
}

void frmUILibWindow::AskForRefresh() { ::SetTimer(Handle(), eTimerRefresh, lRefreshDelay, nullptr); }
void frmUILibWindow::AskForSelection() { ::SetTimer(Handle(), eTimerSelection, lSelectionDelay, nullptr); }
void frmUILibWindow::AskForSorting() { ::SetTimer(Handle(), eTimerSorting, USER_TIMER_MINIMUM, nullptr); }

} // namespace ravlo

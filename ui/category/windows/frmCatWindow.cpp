// SPDX-License-Identifier: MIT
#include "ui/category/windows/frmCatWindow.h"

#include "ui/category/windows/ControlIds.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PlaceMemory.h"
#include "ui/controls/windows/VisualStyles.h"

#include <commctrl.h>
#include <cstddef>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sPlaceKey = L"frmCatPlace";
// In the symbol font: the arrows that point out of the window, where the rules will come, and back into it;
// and what they are called.
constexpr const wchar_t* sArrowRight = L"4";
constexpr const wchar_t* sArrowLeft = L"3";
constexpr const wchar_t* sShowRules = L"Show Rules";
constexpr const wchar_t* sHideRules = L"Hide Rules";

constexpr int lBoxesPerPane = 3;
std::size_t PaneOf(RuleBox eBox) { return static_cast<std::size_t>(eBox) / lBoxesPerPane; }
int BoxInPane(RuleBox eBox) { return static_cast<int>(eBox) % lBoxesPerPane; }

HMENU MenuBar()
{
    const HMENU hBar = ::CreateMenu();
    const HMENU hScheduler = ::CreatePopupMenu();
    ::AppendMenuW(hScheduler, MF_STRING, eIdmnuSchedLib, L"Show Scheduler Library");
    ::AppendMenuW(hBar, MF_POPUP, reinterpret_cast<UINT_PTR>(hScheduler), L"Scheduler");
    return hBar;
}

HACCEL Accelerators()
{
    ACCEL keys[] = {{FVIRTKEY | FCONTROL, VK_TAB, eIdNextTab},
                    {FVIRTKEY | FCONTROL | FSHIFT, VK_TAB, eIdNextTab}};
    return ::CreateAcceleratorTableW(keys, ARRAYSIZE(keys));
}

// Gives the focus back at the end.
class FocusKept
{
public:
    FocusKept() noexcept : m_hBefore(::GetFocus()) {}
    ~FocusKept()
    {
        if (::IsWindow(m_hBefore))
            ::SetFocus(m_hBefore);
    }
    FocusKept(const FocusKept&) = delete;
    FocusKept& operator=(const FocusKept&) = delete;

private:
    HWND m_hBefore;
};

} // namespace

// ---- making ----

frmCatWindow::frmCatWindow(HWND hOwner, ModScheduler& cMod)
    : Window(sfrmCatClass), m_cMod(cMod), m_hMenu(MenuBar()), m_hAccelerators(Accelerators())
{
    WindowStart start;
    start.sTitle = L"Category";
    start.lStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME; // as dialogs: without an icon
    start.hParent = hOwner;
    start.hMenu = m_hMenu.get();
    Create(start);
    m_hMenu.release(); // the window's own now
    MakeControls();
    m_cPresenter =
        std::make_unique<frmCatPresenter>(static_cast<frmCatView&>(*this), m_cSelector->Selector(), m_cMod);
    m_cPanes[0]->BoxChanged = [this](int lBox) { m_cPresenter->BoxChanged(static_cast<RuleBox>(lBox)); };
    m_cPanes[1]->BoxChanged = [this](int lBox) {
        m_cPresenter->BoxChanged(static_cast<RuleBox>(lBoxesPerPane + lBox));
    };
    m_cPanes[1]->InheritClick = [this](int lBox) {
        m_cPresenter->InheritClick(static_cast<RuleBox>(lBoxesPerPane + lBox));
    };
    m_cPanes[1]->IgnoreClick = [this] { m_cPresenter->IgnoreClick(); };
    SetLook(DpiOf(Handle()));
}

frmCatWindow::~frmCatWindow()
{
    m_cLoop.reset();
    m_cSelector.reset();
    m_cPanes = {};
    Destroy();
}

void frmCatWindow::MakeControls()
{
    const auto button = [&](const wchar_t* sText, int lId, DWORD lStyle = BS_PUSHBUTTON) {
        return MakeControl(Handle(), WC_BUTTONW, sText, lStyle | WS_TABSTOP, lId);
    };
    m_cSelector = std::make_unique<CatSelectorWindow>(Handle(), eIdCatSelector1, m_cMod);
    m_hNew = button(L"&New Category", eIdcmdNew);
    m_hNewLevel = button(L"New &Level", eIdcmdNewLevel);
    constexpr DWORD lArrow = SS_OWNERDRAW | SS_NOTIFY;
    m_hStrip[0] = MakeControl(Handle(), WC_STATICW, sShowRules, lArrow, eIdLabel1);
    m_hStrip[1] = button(sShowRules, eIdLabel2);
    m_hStrip[2] = MakeControl(Handle(), WC_STATICW, sShowRules, lArrow, eIdLabel3);
    MakeRulesArea();
    m_hOK = button(L"OK", IDOK, BS_DEFPUSHBUTTON);
    m_hCancel = button(L"&Cancel", IDCANCEL);
}

void frmCatWindow::MakeRulesArea()
{
    m_hTitle =
        MakeControl(Handle(), WC_STATICW, L"", SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, eIdlblRulesTitle);
    m_hTabs = MakeControl(Handle(), WC_TABCONTROLW, L"Rules", WS_TABSTOP | WS_CLIPSIBLINGS, eIdTabStrip1);
    std::wstring sTabs[] = {L"Global Rules", L"Category Rules"};
    for (int i = 0; i < 2; ++i)
    {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = sTabs[i].data();
        ::SendMessageW(m_hTabs, TCM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
    m_cPanes[0] = std::make_unique<RulesPaneWindow>(Handle(), RulesPane::Global, m_cMod);
    m_cPanes[1] = std::make_unique<RulesPaneWindow>(Handle(), RulesPane::Category, m_cMod);
    m_hApply = MakeControl(Handle(), WC_BUTTONW, L"&Apply Changes", BS_PUSHBUTTON | WS_TABSTOP, eIdcmdApply);
}

// ---- messages ----

LRESULT frmCatWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_NOTIFY:
        if (const auto* pHeader = reinterpret_cast<const NMHDR*>(lParam);
            pHeader->hwndFrom == m_hTabs && pHeader->code == TCN_SELCHANGE)
            m_cPresenter->TabClick(static_cast<RulesPane>(::SendMessageW(m_hTabs, TCM_GETCURSEL, 0, 0)));
        return 0;
    case WM_DRAWITEM:
        DrawArrow(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_INITMENUPOPUP:
        m_cPresenter->MenuOpening();
        return 0;
    case WM_CLOSE:
        m_cPresenter->CancelClick();
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_GETMINMAXINFO:
        if (m_hFont)
        {
            const SIZE size = WindowSizeFor(Handle(), SmallestClient(), m_lDpi);
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {size.cx, size.cy};
        }
        return 0;
    case WM_SETCURSOR:
        // Not while a box or another window is open in front of this one.
        if (!m_cSelector || !m_cSelector->ShowsHourglass() || !::IsWindowEnabled(Handle()))
            return Default(lMessage, wParam, lParam);
        ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    case WM_ACTIVATE:
        OnActivate(LOWORD(wParam) != WA_INACTIVE);
        return 0;
    case WM_DPICHANGED:
        SetLook(HIWORD(wParam));
        TakeSuggestedPlace(Handle(), lParam);
        return 0;
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
        SetLook(m_lDpi); // the message font may have changed
        return 0;
    case WM_NEXTDLGCTL:
        ::SetFocus(LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                       : ::GetNextDlgTabItem(Handle(), ::GetFocus(), wParam != 0));
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(IDOK, DC_HASDEFID);
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void frmCatWindow::OnException() noexcept { m_cMod.ShowCriticalError(L"Error in frmCat", CurrentError()); }

void frmCatWindow::OnCommand(int lId, int lCode)
{
    switch (lId)
    {
    case IDOK:
        return m_cPresenter->OKClick();
    case IDCANCEL:
        return m_cPresenter->CancelClick();
    case eIdcmdNew:
        return m_cPresenter->NewClick();
    case eIdcmdNewLevel:
        return m_cPresenter->NewLevelClick();
    case eIdcmdApply:
        return m_cPresenter->ApplyClick();
    case eIdmnuSchedLib:
        return m_cPresenter->SchedLibClick();
    case eIdLabel1:
    case eIdLabel2:
    case eIdLabel3:
        if (lCode == STN_CLICKED || lCode == STN_DBLCLK) // a button sends BN_CLICKED, the same number
            m_cPresenter->StripClick(true);
        return;
    case eIdNextTab:
        return NextTab();
    default:
        return;
    }
}

// Restores the focus when the window becomes active again.
void frmCatWindow::OnActivate(bool bActive)
{
    if (m_bBusy)
    {
        if (bActive)
            ::SetFocus(Handle()); // its controls are disabled
        return;
    }
    if (!bActive)
        m_hFocus = ::GetFocus();
    else if (m_hFocus && ::IsChild(Handle(), m_hFocus))
        ::SetFocus(m_hFocus);
}

// Restores the focus after a busy time, unless that control is gone.
void frmCatWindow::ReturnFocus()
{
    if (m_hFocus && ::IsChild(Handle(), m_hFocus) && ::IsWindowVisible(m_hFocus) &&
        ::IsWindowEnabled(m_hFocus))
        ::SetFocus(m_hFocus);
    else
        m_cSelector->FocusFirst();
}

// A hidden control must not keep the focus: nothing would receive the keyboard.
void frmCatWindow::PassFocus(HWND hFrom, HWND hTo)
{
    const HWND hFocus = ::GetFocus();
    if (hFocus && (hFocus == hFrom || ::IsChild(hFrom, hFocus)))
        ::SetFocus(hTo);
}

// Drawn here, so that their text can be words: a screen reader would read the symbol font's "3" and "4".
void frmCatWindow::DrawArrow(const DRAWITEMSTRUCT& item) const
{
    const HGDIOBJ hBefore = ::SelectObject(item.hDC, m_hSymbols.get());
    RECT place = item.rcItem;
    ::FillRect(item.hDC, &place, ::GetSysColorBrush(COLOR_BTNFACE));
    ::SetBkMode(item.hDC, TRANSPARENT);
    ::SetTextColor(item.hDC, ::GetSysColor(COLOR_BTNTEXT));
    ::DrawTextW(item.hDC, m_bRulesShown ? sArrowLeft : sArrowRight, 1, &place,
                DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    ::SelectObject(item.hDC, hBefore);
}

bool frmCatWindow::OnKey(MSG& message) { return m_cSelector->OnKey(message); }

void frmCatWindow::NextTab()
{
    if (!m_bRulesShown)
        return;
    const bool bGlobal = ::SendMessageW(m_hTabs, TCM_GETCURSEL, 0, 0) == 0;
    m_cPresenter->TabClick(bGlobal ? RulesPane::Category : RulesPane::Global);
}

// ---- what the presenter asks of the window ----

void frmCatWindow::SetCaption(const std::wstring& sCaption) { ::SetWindowTextW(Handle(), sCaption.c_str()); }

void frmCatWindow::ShowNewButtons(bool bShow)
{
    ::ShowWindow(m_hNew, bShow ? SW_SHOWNA : SW_HIDE);
    ::ShowWindow(m_hNewLevel, bShow ? SW_SHOWNA : SW_HIDE);
}

void frmCatWindow::ChoosePane(RulesPane ePane)
{
    ::SendMessageW(m_hTabs, TCM_SETCURSEL, static_cast<WPARAM>(ePane), 0);
    for (std::size_t i = 0; i < m_cPanes.size(); ++i)
    {
        const bool bShow = m_bRulesShown && i == static_cast<std::size_t>(ePane);
        if (!bShow)
            PassFocus(m_cPanes[i]->Handle(), m_bRulesShown ? m_hTabs : m_hStrip[1]);
        ::ShowWindow(m_cPanes[i]->Handle(), bShow ? SW_SHOWNA : SW_HIDE);
    }
}

void frmCatWindow::SetRulesTitle(const std::wstring& sTitle)
{
    const int lBefore = TitleHeight();
    ::SetWindowTextW(m_hTitle, sTitle.c_str());
    if (TitleHeight() == lBefore)
        return;
    MakeRoom();
    LayOut();
}

std::wstring frmCatWindow::BoxText(RuleBox eBox) const
{
    return m_cPanes[PaneOf(eBox)]->BoxText(BoxInPane(eBox));
}

void frmCatWindow::SetBoxText(RuleBox eBox, const std::wstring& sText)
{
    m_cPanes[PaneOf(eBox)]->SetBoxText(BoxInPane(eBox), sText);
}

void frmCatWindow::EnableBox(RuleBox eBox, bool bEnable)
{
    m_cPanes[PaneOf(eBox)]->EnableBox(BoxInPane(eBox), bEnable);
}

bool frmCatWindow::IgnoreChecked() const { return m_cPanes[1]->IgnoreChecked(); }
void frmCatWindow::CheckIgnore(bool bCheck) { m_cPanes[1]->CheckIgnore(bCheck); }

bool frmCatWindow::InheritChecked(RuleBox eBox) const { return m_cPanes[1]->InheritChecked(BoxInPane(eBox)); }

void frmCatWindow::CheckInherit(RuleBox eBox, bool bCheck)
{
    m_cPanes[1]->CheckInherit(BoxInPane(eBox), bCheck);
}

void frmCatWindow::EnableInherit(RuleBox eBox, bool bEnable)
{
    m_cPanes[1]->EnableInherit(BoxInPane(eBox), bEnable);
}

void frmCatWindow::SetOutlook(const std::wstring& sText)
{
    const int lBefore = PaneHeight();
    m_cPanes[1]->SetOutlook(sText);
    if (PaneHeight() == lBefore)
        return;
    MakeRoom();
    LayOut();
}

void frmCatWindow::EnableApply(bool bEnable)
{
    m_bApply = bEnable;
    if (!bEnable)
        PassFocus(m_hApply, m_hOK);
    ::EnableWindow(m_hApply, bEnable && !m_bBusy);
}

void frmCatWindow::SetBusy(bool bBusy)
{
    if (bBusy)
    {
        const HWND hFocus = ::GetFocus();
        if (hFocus && ::IsChild(Handle(), hFocus))
            m_hFocus = hFocus;
    }
    m_bBusy = bBusy;
    if (bBusy && ::GetActiveWindow() == Handle())
        ::SetFocus(Handle()); // a disabled control must not keep it
    for (const HWND hControl : {m_hNew, m_hNewLevel, m_hTabs, m_cPanes[0]->Handle(), m_cPanes[1]->Handle(),
                                m_hOK, m_hCancel, m_hStrip[0], m_hStrip[1], m_hStrip[2]})
        ::EnableWindow(hControl, !bBusy);
    ::EnableWindow(m_hApply, m_bApply && !bBusy);
    constexpr UINT lScheduler = 0; // the only menu
    ::EnableMenuItem(::GetMenu(Handle()), lScheduler, MF_BYPOSITION | (bBusy ? MF_GRAYED : MF_ENABLED));
    ::DrawMenuBar(Handle());
    if (!bBusy && ::GetActiveWindow() == Handle())
        ReturnFocus();
}

void frmCatWindow::ShowRulesArea(bool bShow)
{
    m_bRulesShown = bShow;
    for (const HWND hArrow : {m_hStrip[0], m_hStrip[2]})
    {
        ::SetWindowTextW(hArrow, bShow ? sHideRules : sShowRules);
        ::InvalidateRect(hArrow, nullptr, TRUE);
    }
    for (const HWND hControl : {m_hTitle, m_hTabs, m_hApply})
    {
        if (!bShow)
            PassFocus(hControl, m_hStrip[1]);
        ::ShowWindow(hControl, bShow ? SW_SHOWNA : SW_HIDE);
    }
    ChoosePane(static_cast<RulesPane>(::SendMessageW(m_hTabs, TCM_GETCURSEL, 0, 0)));
    if (::IsWindowVisible(Handle()) && !::IsZoomed(Handle()))
    {
        // The selector keeps its size: the window grows or shrinks by the rules area.
        RECT window{};
        ::GetWindowRect(Handle(), &window);
        const int lArea = RulesAreaWidth();
        ResizeOnScreen(Handle(),
                       {window.right - window.left + (bShow ? lArea : -lArea), window.bottom - window.top});
    }
    LayOut();
}

void frmCatWindow::EnableLibraryMenu(bool bEnable)
{
    ::EnableMenuItem(::GetMenu(Handle()), eIdmnuSchedLib, bEnable ? MF_ENABLED : MF_GRAYED);
}

void frmCatWindow::ShowModal()
{
    const int lShow = RestorePlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey, FirstSize());
    m_cLoop = std::make_unique<ModalLoop>(Handle());
    m_cLoop->SetAccelerators(m_hAccelerators.get());
    m_cLoop->OnMessage = [this](MSG& message) { return OnKey(message); };
    ::ShowWindow(Handle(), lShow);
    ::SetForegroundWindow(Handle());
    m_cSelector->FocusFirst();
    m_cLoop->Run();
    if (!Handle())
        return;
    RememberPlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey);
    ::ShowWindow(Handle(),
                 SW_HIDE); // hidden now: storing the choice may take time, and without its loop the window
                           // does not react
}

void frmCatWindow::Close() { m_cLoop->End(); }

std::int32_t ShowCategoryWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, CategoryRequest& request)
{
    const VisualStyles cStyles;
    const DpiAwareness cAwareness;
    const FocusKept cFocus;
    frmCatWindow cWindow(::GetActiveWindow(), cSchedMan->Mod());
    return cWindow.Presenter().ShowUI(cSchedMan, request);
}

} // namespace ravlo

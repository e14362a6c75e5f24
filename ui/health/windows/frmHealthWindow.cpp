// SPDX-License-Identifier: MIT
#include "ui/health/windows/frmHealthWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PlaceMemory.h"
#include "ui/health/windows/ControlIds.h"

#include <array>
#include <commctrl.h>
#include <commdlg.h>
#include <utility>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lFirstWidth = 1120;
constexpr int lFirstHeight = 740;
constexpr int lLeastWidth = 800;
constexpr int lLeastHeight = 480;

constexpr const wchar_t* sPlaceKey = L"frmHealthPlace";
constexpr UINT_PTR lWorkTimer = 1;

HACCEL Accelerators()
{
    ACCEL keys[] = {{FVIRTKEY, VK_F5, eIdcmdSimulate},
                    {FVIRTKEY, VK_F6, eIdHealthOtherPane},
                    {FVIRTKEY | FCONTROL, 'S', eIdcmdReport},
                    {FVIRTKEY | FCONTROL, VK_TAB, eIdHealthNextTab},
                    {FVIRTKEY | FCONTROL | FSHIFT, VK_TAB, eIdHealthPreviousTab}};
    return ::CreateAcceleratorTableW(keys, ARRAYSIZE(keys));
}

// Asks for a file by the system's own box. Nothing when the user cancels.
std::optional<std::wstring> AskFile(HWND hOwner, const std::wstring& sProposed, const wchar_t* sTitle,
                                    const wchar_t* sFilter, const wchar_t* sExtension, bool bOpen)
{
    std::array<wchar_t, 4096> sPath{};
    if (sProposed.size() < sPath.size())
        sProposed.copy(sPath.data(), sProposed.size());
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = hOwner;
    request.lpstrFilter = sFilter;
    request.lpstrFile = sPath.data();
    request.nMaxFile = static_cast<DWORD>(sPath.size());
    request.lpstrTitle = sTitle;
    request.lpstrDefExt = sExtension;
    constexpr DWORD lBoth = OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_EXPLORER;
    request.Flags = lBoth | (bOpen ? OFN_FILEMUSTEXIST : OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
    if (!(bOpen ? ::GetOpenFileNameW(&request) : ::GetSaveFileNameW(&request)))
        return std::nullopt;
    return std::wstring(sPath.data());
}

} // namespace

// ---- making ----

frmHealthWindow::frmHealthWindow(HWND hOwner, ModScheduler& cMod, std::weak_ptr<clsSchedMan> cSchedMan,
                                 HealthMemory& memory)
    : Window(sfrmHealthClass), m_cMod(cMod), m_hAccelerators(Accelerators())
{
    m_cForm = std::make_unique<frmHealthPresenter>(static_cast<frmHealthView&>(*this), m_cMod,
                                                   std::move(cSchedMan), memory);
    WindowStart start;
    start.sTitle = L"Rotation Health";
    start.lStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hOwner;
    Create(start);
    MakeControls();
    ShowPage(Page::Advice);
    ShowRunning(false);
    ::SendMessageW(m_hProgress, PBM_SETRANGE32, 0, 1000);
    EnableCarryOut(false);
    SetLook(DpiOf(Handle()));
}

frmHealthWindow::~frmHealthWindow()
{
    m_cLoop.reset();
    m_cSplit.reset();
    for (std::unique_ptr<PictureWindow>& cPicture : m_cPictures)
        cPicture.reset();
    m_cPane.reset();
    Destroy();
}

// ---- messages ----

LRESULT frmHealthWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (!m_hFont)
        return Default(lMessage, wParam, lParam); // still being made
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), lParam);
    case WM_CLOSE:
        m_cForm->RequestClose();
        return 0;
    case WM_TIMER:
        OnTimer();
        return 0;
    case WM_DESTROY:
        LetGo(); // the controls are destroyed with the window
        return 0;
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
        SetLook(m_lDpi); // the message font and the colours may have changed
        return 0;
    case DM_GETDEFID:
        return MAKELRESULT(eIdcmdSimulate, DC_HASDEFID);
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void frmHealthWindow::OnException() noexcept { m_cMod.DISPLAYERROR(L"frmHealth", true, CurrentError()); }

void frmHealthWindow::OnCommand(int lId, int lCode)
{
    switch (lId)
    {
    case eIdcmdSimulate:
        return m_cForm->SimulateClick();
    case eIdcmdBrowse:
        return m_cForm->BrowseClick();
    case eIdcmdReport:
        return m_cForm->SaveReportClick();
    case eIdcmdCarryOut:
        return m_cForm->CarryOutClick();
    case eIdcmdCancelRun:
        return m_cForm->CancelClick();
    case eIdcmdGoTo:
        if (const std::optional<std::size_t> row = List(HealthTable::Seldom).Selected())
            m_cForm->GoTo(*row);
        else
            ShowStatus(L"Select a cut first.");
        return;
    case eIdcboClock:
        if (lCode == CBN_SELENDOK)
            ::PostMessageW(Handle(), WM_COMMAND, eIdcmdSimulate, 0); // its text is the choice only then
        return;
    case eIdHealthNextTab:
        return NextPage(1);
    case eIdHealthPreviousTab:
        return NextPage(-1);
    case eIdHealthOtherPane:
        ::SetFocus(::IsChild(m_cPane->Handle(), ::GetFocus())
                       ? List(HealthTable::Levels).Handle()
                       : m_cLists[static_cast<std::size_t>(ShownPage()) + 1]->Handle());
        return;
    case IDCANCEL:
        return OnEscape();
    default:
        return;
    }
}

void frmHealthWindow::OnEscape()
{
    if (m_cForm->Running())
        m_cForm->CancelClick();
    else
        m_cForm->RequestClose();
}

LRESULT frmHealthWindow::OnNotify(const NMHDR& header, LPARAM lParam)
{
    if (header.hwndFrom == m_hTabs && header.code == TCN_SELCHANGE)
        ShowPage(ShownPage());
    for (std::size_t table = 0; table < healthTables; ++table)
    {
        TableWindow& cList = *m_cLists[table];
        if (header.hwndFrom != cList.Handle())
            continue;
        const auto eTable = static_cast<HealthTable>(table);
        if (const std::optional<LRESULT> lResult = cList.OnNotify(header, lParam))
            return *lResult;
        if (const std::optional<std::size_t> row = cList.RowSelectedIn(header, lParam))
        {
            m_cForm->RowSelected(eTable, *row);
            for (const std::unique_ptr<PictureWindow>& cPicture : m_cPictures)
                cPicture->Refresh();
        }
        if (header.code == LVN_COLUMNCLICK)
            m_cForm->HeadingClick(
                eTable, static_cast<std::size_t>(reinterpret_cast<const NMLISTVIEW*>(lParam)->iSubItem));
        if (header.code == NM_DBLCLK && eTable == HealthTable::Seldom && cList.Selected())
            m_cForm->GoTo(*cList.Selected());
        return 0;
    }
    return 0;
}

bool frmHealthWindow::OnKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN || message.wParam != VK_RETURN)
        return false;
    if (message.hwnd == List(HealthTable::Seldom).Handle())
    {
        OnCommand(eIdcmdGoTo, 0);
        return true;
    }
    // Otherwise Enter in a list would press the default button.
    for (const std::unique_ptr<TableWindow>& cList : m_cLists)
        if (message.hwnd == cList->Handle())
            return true;
    return false;
}

// Restores the focus when the window becomes active again.
void frmHealthWindow::OnActivate(bool bActive)
{
    if (!bActive)
        m_hFocus = ::GetFocus();
    else if (m_hFocus && ::IsChild(Handle(), m_hFocus))
        ::SetFocus(m_hFocus);
}

void frmHealthWindow::OnTimer()
{
    ::KillTimer(Handle(), lWorkTimer);
    m_cForm->Work();
}

// ---- what the presenter asks of the window ----

std::optional<std::wstring> frmHealthWindow::AskClockFile(const std::wstring& sPresent)
{
    return AskFile(Handle(), sPresent, L"Clock File",
                   L"Clock files (*.txt;*.csv)\0*.txt;*.csv\0All files\0*.*\0", L"txt", true);
}

std::optional<std::wstring> frmHealthWindow::AskReportFile(const std::wstring& sProposed)
{
    return AskFile(Handle(), sProposed, L"Save Report",
                   L"Web page (*.html)\0*.html\0Figures for programs (*.json)\0*.json\0All files\0*.*\0",
                   L"html", false);
}

// A timer's message comes after all that the user does.
void frmHealthWindow::AskForWork() { ::SetTimer(Handle(), lWorkTimer, USER_TIMER_MINIMUM, nullptr); }

void frmHealthWindow::ShowModal()
{
    const int lShow = RestorePlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey,
                                   {Scaled(lFirstWidth, m_lDpi), Scaled(lFirstHeight, m_lDpi)});
    m_cLoop = std::make_unique<ModalLoop>(Handle());
    m_cLoop->SetAccelerators(m_hAccelerators.get());
    m_cLoop->OnMessage = [this](MSG& message) { return OnKey(message); };
    ::ShowWindow(Handle(), lShow);
    // Only now: before the window is maximised, the remembered split would be limited to the smaller size and
    // stay so.
    m_bPlaced = true;
    LayOut();
    ::SetForegroundWindow(Handle());
    ::SetFocus(List(HealthTable::Levels).Handle());
    m_cLoop->Run();
    LetGo();
}

// Saves the window's layout before it ends, once, if it was shown.
void frmHealthWindow::LetGo()
{
    if (!std::exchange(m_bPlaced, false) || !Handle())
        return;
    ::KillTimer(Handle(), lWorkTimer);
    m_cSplit->Panel().GoOutOfView();
    RememberPlace(Handle(), m_cMod.Ports().cUserSettings, sPlaceKey);
    ::ShowWindow(Handle(), SW_HIDE);
}

void frmHealthWindow::BringToFront()
{
    if (::IsIconic(Handle()))
        ::ShowWindow(Handle(), SW_RESTORE);
    ::SetForegroundWindow(Handle());
}

void frmHealthWindow::Close()
{
    if (m_cLoop)
        m_cLoop->End();
}

} // namespace ravlo

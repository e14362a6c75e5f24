// SPDX-License-Identifier: MIT
#include "ui/controls/windows/SplitPanelWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <windowsx.h>

namespace ravlo
{

namespace
{

constexpr std::int32_t lStep = 150; // twips, for an arrow key
constexpr std::int32_t lSmallStep = 15;

// The running program's name without folder and extension.
std::wstring HostName()
{
    std::array<wchar_t, MAX_PATH * 4> sPath{};
    ::GetModuleFileNameW(nullptr, sPath.data(), static_cast<DWORD>(sPath.size()));
    std::wstring sName(sPath.data());
    sName.erase(0, sName.find_last_of(L'\\') + 1);
    return sName.substr(0, sName.rfind(L'.'));
}

COLORREF Resolved(std::uint32_t lOleColor)
{
    return (lOleColor & 0x80000000u) != 0 ? ::GetSysColor(static_cast<int>(lOleColor & 0xFFu)) : lOleColor;
}

bool KeyDown(int lKey) { return ::GetKeyState(lKey) < 0; }

} // namespace

SplitPanelWindow::SplitPanelWindow(HWND hContainer, int lId, UserSettings& cUserSettings,
                                   std::function<void()> OnTrouble)
    : Window(L"RavloSplitBar"), m_OnTrouble(std::move(OnTrouble)), m_hContainer(hContainer),
      m_lColor(0x8000000F), m_cPanel(*this, cUserSettings, HostName())
{
    WindowStart start;
    start.sTitle = L"Splitter";
    start.lStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP;
    start.hParent = hContainer;
    start.lId = lId;
    Create(start);
}

SplitPanelWindow::~SplitPanelWindow()
{
    if (Handle())
        m_cPanel.GoOutOfView();
    Destroy();
}

void SplitPanelWindow::SetControls(HWND hControl1, HWND hControl2)
{
    m_hControl1 = hControl1;
    m_hControl2 = hControl2;
    // The dragged bar passes over them.
    for (const HWND hControl : {hControl1, hControl2})
        if (hControl)
            ::SetWindowLongPtrW(hControl, GWL_STYLE,
                                ::GetWindowLongPtrW(hControl, GWL_STYLE) | WS_CLIPSIBLINGS);
    m_cPanel.Resize(TwipsOf(static_cast<int>(m_area.right - m_area.left), m_lDpi),
                    TwipsOf(static_cast<int>(m_area.bottom - m_area.top), m_lDpi));
}

void SplitPanelWindow::SetHeaders(HWND hHeader1, HWND hHeader2)
{
    m_header1.hWindow = hHeader1;
    m_header2.hWindow = hHeader2;
}

void SplitPanelWindow::SetHeaderHeights(int lHeight1, int lHeight2)
{
    m_header1.lHeight = lHeight1;
    m_header2.lHeight = lHeight2;
    ShowHeader(m_header1, ::IsWindowVisible(m_hControl1) != FALSE);
    ShowHeader(m_header2, ::IsWindowVisible(m_hControl2) != FALSE);
}

void SplitPanelWindow::ShowHeader(const Header& header, bool bPane) const
{
    if (header.hWindow)
        ::ShowWindow(header.hWindow, bPane && header.lHeight > 0 ? SW_SHOWNA : SW_HIDE);
}

void SplitPanelWindow::Place(const RECT& area, int lDpi)
{
    m_area = area;
    m_lDpi = lDpi;
    m_cPanel.Resize(TwipsOf(static_cast<int>(area.right - area.left), lDpi),
                    TwipsOf(static_cast<int>(area.bottom - area.top), lDpi));
}

bool SplitPanelWindow::SetsCursor() const
{
    POINT point{};
    ::GetCursorPos(&point);
    ::ScreenToClient(m_hContainer, &point);
    if (!m_bHourglass || !::PtInRect(&m_area, point))
        return false;
    ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
    return true;
}

// ---- messages ----

LRESULT SplitPanelWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_LBUTTONDOWN:
        OnButtonDown();
        return 0;
    case WM_MOUSEMOVE:
        m_cPanel.MouseMove(PointerInTwips());
        return 0;
    case WM_LBUTTONUP:
        m_cPanel.ButtonUp();
        ::ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        OnCaptureLost();
        return 0;
    case WM_SETCURSOR:
        ::SetCursor(::LoadCursorW(nullptr, m_cPanel.Horizontal() ? IDC_SIZENS : IDC_SIZEWE));
        return TRUE;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | (m_cPanel.Dragging() ? DLGC_WANTALLKEYS : 0);
    case WM_KEYDOWN:
        return OnKey(wParam) ? 0 : Default(lMessage, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        ::InvalidateRect(Handle(), nullptr, TRUE);
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // all of it is painted
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_DESTROY:
        m_cPanel.GoOutOfView();
        break;
    default:
        break;
    }
    return Default(lMessage, wParam, lParam);
}

void SplitPanelWindow::OnException() noexcept
{
    if (m_OnTrouble)
        m_OnTrouble();
}

void SplitPanelWindow::OnPaint()
{
    PAINTSTRUCT paint{};
    const HDC hDC = ::BeginPaint(Handle(), &paint);
    RECT client{};
    ::GetClientRect(Handle(), &client);
    ::SetDCBrushColor(hDC, Resolved(m_lColor));
    ::FillRect(hDC, &client, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
    if (::GetFocus() == Handle() && !m_cPanel.Dragging())
        ::DrawFocusRect(hDC, &client);
    ::EndPaint(Handle(), &paint);
}

void SplitPanelWindow::OnButtonDown()
{
    m_cPanel.ButtonDown();
    if (!m_cPanel.Dragging())
        return;
    ::SetCapture(Handle());
    m_hFocusBefore = ::SetFocus(Handle()); // so that Esc comes here
    m_hBefore = ::GetWindow(Handle(), GW_HWNDPREV);
    ::SetWindowPos(Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// After a drop, or because something else took the mouse: then the drag is cancelled.
void SplitPanelWindow::OnCaptureLost()
{
    m_cPanel.CancelDrag();
    // A pane that has just collapsed cannot take it back.
    if (::IsWindowVisible(m_hFocusBefore))
        ::SetFocus(m_hFocusBefore);
    ::SetWindowPos(Handle(), m_hBefore ? m_hBefore : HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

bool SplitPanelWindow::OnKey(WPARAM lKey)
{
    const std::int32_t lDistance = KeyDown(VK_CONTROL) ? lSmallStep : lStep;
    const bool bHorizontal = m_cPanel.Horizontal();
    if (lKey == VK_ESCAPE)
        ::ReleaseCapture();
    else if (lKey == static_cast<WPARAM>(bHorizontal ? VK_UP : VK_LEFT))
        m_cPanel.MoveBy(-lDistance);
    else if (lKey == static_cast<WPARAM>(bHorizontal ? VK_DOWN : VK_RIGHT))
        m_cPanel.MoveBy(lDistance);
    else if (lKey == VK_HOME || lKey == VK_END)
        m_cPanel.MoveToEdge(lKey == VK_END);
    else
        return false;
    return true;
}

// ---- what the panel asks of the screen ----

// From edge to edge, so that neighbours meet at every resolution.
RECT SplitPanelWindow::InPixels(const TwipsRect& rect) const
{
    const auto x = [&](std::int32_t lTwips) { return m_area.left + PixelsOf(lTwips, m_lDpi); };
    const auto y = [&](std::int32_t lTwips) { return m_area.top + PixelsOf(lTwips, m_lDpi); };
    return {x(rect.lLeft), y(rect.lTop), x(rect.lLeft + rect.lWidth), y(rect.lTop + rect.lHeight)};
}

std::int32_t SplitPanelWindow::PointerInTwips() const
{
    POINT point{};
    const DWORD lAt = ::GetMessagePos();
    point = {GET_X_LPARAM(lAt), GET_Y_LPARAM(lAt)};
    ::ScreenToClient(m_hContainer, &point);
    const LONG lPixels = m_cPanel.Horizontal() ? point.y - m_area.top : point.x - m_area.left;
    return TwipsOf(static_cast<int>(lPixels), m_lDpi);
}

void SplitPanelWindow::ShowPanes(bool bControl1, bool bControl2)
{
    // Nothing would receive the keyboard if a pane vanished with the focus.
    const HWND hFocus = ::GetFocus();
    const auto goes = [&](HWND hPane, bool bShow) {
        return !bShow && hPane && hFocus && (hFocus == hPane || ::IsChild(hPane, hFocus));
    };
    if (goes(m_hControl1, bControl1) || goes(m_hControl2, bControl2) || goes(m_header1.hWindow, bControl1) ||
        goes(m_header2.hWindow, bControl2))
        ::SetFocus(Handle());
    if (m_hControl1)
        ::ShowWindow(m_hControl1, bControl1 ? SW_SHOWNA : SW_HIDE);
    if (m_hControl2)
        ::ShowWindow(m_hControl2, bControl2 ? SW_SHOWNA : SW_HIDE);
    ShowHeader(m_header1, bControl1);
    ShowHeader(m_header2, bControl2);
}

void SplitPanelWindow::PlaceAll(const SplitPlaces& places)
{
    Mover cMover(5);
    const auto move = [&](HWND hWindow, const TwipsRect& rect, const Header& header) {
        const RECT at = InPixels(rect);
        const auto lWidth = static_cast<int>(at.right - at.left);
        const auto lHeight = static_cast<int>(at.bottom - at.top);
        const int lHeader = header.hWindow ? std::min(header.lHeight, lHeight) : 0;
        if (header.hWindow)
            cMover.Move(header.hWindow, static_cast<int>(at.left), static_cast<int>(at.top), lWidth, lHeader);
        if (hWindow)
            cMover.Move(hWindow, static_cast<int>(at.left), static_cast<int>(at.top) + lHeader, lWidth,
                        lHeight - lHeader);
    };
    move(m_hControl1, places.control1, m_header1);
    move(Handle(), places.bar, {});
    move(m_hControl2, places.control2, m_header2);
}

void SplitPanelWindow::PlaceBar(const TwipsRect& bar)
{
    const RECT at = InPixels(bar);
    ::MoveWindow(Handle(), static_cast<int>(at.left), static_cast<int>(at.top),
                 static_cast<int>(at.right - at.left), static_cast<int>(at.bottom - at.top), TRUE);
}

void SplitPanelWindow::PaintBar(std::uint32_t lColor)
{
    m_lColor = lColor;
    ::InvalidateRect(Handle(), nullptr, TRUE);
}

void SplitPanelWindow::ShowBar(bool bShow) { ::ShowWindow(Handle(), bShow ? SW_SHOWNA : SW_HIDE); }

void SplitPanelWindow::EnableAll(bool bEnable)
{
    for (const HWND hWindow : {m_hControl1, m_hControl2, Handle()})
        if (hWindow)
            ::EnableWindow(hWindow, bEnable);
}

void SplitPanelWindow::Hourglass(bool bOn)
{
    m_bHourglass = bOn;
    if (!SetsCursor())
        AskForPointer();
}

} // namespace ravlo

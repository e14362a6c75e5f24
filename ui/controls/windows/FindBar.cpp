// SPDX-License-Identifier: MIT
#include "ui/controls/windows/FindBar.h"

#include "base/ScopedFlag.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <commctrl.h>
#include <utility>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lGap = 4;
// Pixels at every resolution: an edit field puts its text at its upper edge, and the count next to it is
// centred.
constexpr int lFieldPadding = 3;
constexpr int lGlass = 18;
constexpr int lCross = 18;
constexpr int lNarrowestField = 60;

constexpr const wchar_t* sCross = L"r"; // in the symbol font
constexpr const wchar_t* sClose = L"Close Find";
constexpr UINT_PTR lStepTimer = 1;

} // namespace

FindBar::FindBar(HWND hParent, int lId, const Texts& texts, std::function<void()> OnTrouble)
    : Window(L"RavloFindBar"), m_OnTrouble(std::move(OnTrouble))
{
    WindowStart start;
    start.sTitle = texts.sName;
    start.lStyle = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hParent;
    start.lId = lId;
    Create(start);
    m_hLabel = MakeControl(Handle(), WC_STATICW, texts.sName, SS_OWNERDRAW, eIdFindLabel);
    m_hQuery =
        MakeControl(Handle(), WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, eIdFindQuery, WS_EX_CLIENTEDGE);
    ::SendMessageW(m_hQuery, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(texts.sCue));
    m_hCount = MakeControl(Handle(), WC_STATICW, L"", SS_RIGHT | SS_NOPREFIX | SS_CENTERIMAGE, eIdFindCount);
    m_hClose = MakeControl(Handle(), WC_BUTTONW, sClose, WS_TABSTOP | BS_OWNERDRAW, eIdFindClose);
}

FindBar::~FindBar() { Destroy(); }

// ---- messages ----

LRESULT FindBar::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_ENABLE: // else the field keeps the focus, looks usable and takes keys
        for (const HWND hControl : {m_hLabel, m_hQuery, m_hCount, m_hClose})
            ::EnableWindow(hControl, wParam != FALSE);
        return 0;
    case WM_DRAWITEM:
        Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_CTLCOLORSTATIC:
        ::SetTextColor(reinterpret_cast<HDC>(wParam), ::GetSysColor(COLOR_BTNTEXT));
        ::SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
        return reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_BTNFACE));
    case WM_TIMER:
        ::KillTimer(Handle(), lStepTimer);
        if (m_cListener)
            m_cListener->Step();
        return 0;
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void FindBar::OnException() noexcept { m_OnTrouble(); }

void FindBar::OnCommand(int lId, int lCode)
{
    if (!m_cListener)
        return;
    if (lId == eIdFindQuery && lCode == EN_CHANGE && !m_bSetting)
        m_cListener->QueryChanged(WindowText(m_hQuery));
    else if (lId == eIdFindClose && lCode == BN_CLICKED)
        m_cListener->CloseBar();
}

bool FindBar::OnKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN || !m_cListener)
        return false;
    if (message.hwnd == m_hClose && (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE))
    {
        m_cListener->CloseBar();
        return true;
    }
    if (message.hwnd != m_hQuery)
        return false;
    const bool bControl = ::GetKeyState(VK_CONTROL) < 0;
    if (message.wParam == VK_ESCAPE)
        m_cListener->CloseBar();
    else if (message.wParam == VK_RETURN || message.wParam == VK_DOWN)
    {
        if (::IsWindowEnabled(m_hList)) // not while something runs
            m_cListener->GoToList();
    }
    else if (message.wParam == 'A' && bControl)
        ::SendMessageW(m_hQuery, EM_SETSEL, 0, -1);
    else
        return false;
    return true;
}

bool FindBar::HasFocus() const { return ::IsChild(Handle(), ::GetFocus()) != FALSE; }

// ---- looks ----

void FindBar::SetLook(HFONT hFont, int lDpi)
{
    m_hFont = hFont;
    m_lDpi = lDpi;
    UniqueFont hSymbols = SymbolFont(lDpi);
    SetFont(m_hQuery, hFont);
    SetFont(m_hCount, hFont);
    m_hSymbols.swap(hSymbols);
    LayOut();
}

int FindBar::Height() const
{
    if (!m_bShown || !m_hFont)
        return 0;
    const FontContext cContext(Handle(), m_hFont);
    return static_cast<int>(TextSize(cContext.Get(), L"Ag").cy) + 2 * ::GetSystemMetrics(SM_CYEDGE) +
           2 * lFieldPadding + Scaled(lGap, m_lDpi);
}

void FindBar::LayOut()
{
    if (!m_hFont)
        return;
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const auto px = [&](int lAt96) { return Scaled(lAt96, m_lDpi); };
    const auto lHeight = static_cast<int>(client.bottom) - px(lGap);
    const auto lWidth = static_cast<int>(client.right);
    const FontContext cContext(Handle(), m_hFont);
    const std::wstring sCount = WindowText(m_hCount);
    const int lText =
        sCount.empty() ? 0 : static_cast<int>(TextSize(cContext.Get(), sCount, 0, DT_NOPREFIX).cx) + px(lGap);
    const int lField = px(lGlass);
    const int lCrossAt = std::max(lWidth - px(lCross), lField);
    // The count gives way in a very narrow pane.
    const int lCount = lCrossAt - lField - lText - px(lGap) >= px(lNarrowestField) ? lText : 0;
    Mover cMover(4);
    cMover.Move(m_hLabel, 0, 0, px(lGlass), lHeight);
    cMover.Move(m_hQuery, lField, 0, lCrossAt - lField - lCount - px(lGap), lHeight);
    cMover.Move(m_hCount, lCrossAt - lCount, 0, lCount, lHeight);
    cMover.Move(m_hClose, lCrossAt, 0, lWidth - lCrossAt, lHeight);
    ::ShowWindow(m_hCount, lCount > 0 ? SW_SHOWNA : SW_HIDE);
}

void FindBar::Draw(const DRAWITEMSTRUCT& item) const
{
    RECT place = item.rcItem;
    ::FillRect(item.hDC, &place, ::GetSysColorBrush(COLOR_BTNFACE));
    if (item.hwndItem == m_hLabel)
        return DrawGlass(item.hDC, place);
    const HGDIOBJ hBefore = ::SelectObject(item.hDC, m_hSymbols.get());
    ::SetBkMode(item.hDC, TRANSPARENT);
    ::SetTextColor(item.hDC, ::GetSysColor(item.itemState & ODS_DISABLED ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    ::DrawTextW(item.hDC, sCross, 1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    ::SelectObject(item.hDC, hBefore);
    if (item.itemState & ODS_SELECTED)
        ::DrawEdge(item.hDC, &place, BDR_SUNKENOUTER, BF_RECT);
    else if (item.itemState & ODS_FOCUS)
        ::DrawFocusRect(item.hDC, &place);
}

void FindBar::DrawGlass(HDC hDC, const RECT& place) const
{
    const auto px = [&](int lAt96) { return Scaled(lAt96, m_lDpi); };
    const HPEN hPen = ::CreatePen(PS_SOLID, std::max(px(3) / 2, 1), ::GetSysColor(COLOR_BTNTEXT));
    const HGDIOBJ hPenBefore = ::SelectObject(hDC, hPen);
    const HGDIOBJ hBrushBefore = ::SelectObject(hDC, ::GetStockObject(NULL_BRUSH));
    const int lLens = px(8);
    const int x = px(2);
    const int y = (static_cast<int>(place.bottom) - px(12)) / 2;
    ::Ellipse(hDC, x, y, x + lLens + 1, y + lLens + 1);
    ::MoveToEx(hDC, x + lLens - px(1), y + lLens - px(1), nullptr);
    ::LineTo(hDC, x + px(12), y + px(12));
    ::SelectObject(hDC, hBrushBefore);
    ::SelectObject(hDC, hPenBefore);
    ::DeleteObject(hPen);
}

// ---- what the presenter asks of the bar ----

void FindBar::ShowBar(bool bShow)
{
    m_bShown = bShow;
    if (!bShow && HasFocus())
        FocusList();
    ::ShowWindow(Handle(), bShow ? SW_SHOWNA : SW_HIDE);
    if (ShownChanged)
        ShownChanged();
}

void FindBar::SetQuery(const std::wstring& sQuery)
{
    const ScopedFlag cSetting(m_bSetting);
    ::SetWindowTextW(m_hQuery, sQuery.c_str());
}

void FindBar::SetCount(const std::wstring& sCount)
{
    if (WindowText(m_hCount) == sCount)
        return;
    ::SetWindowTextW(m_hCount, sCount.c_str());
    LayOut();
}

void FindBar::FocusQuery()
{
    ::SetFocus(m_hQuery);
    ::SendMessageW(m_hQuery, EM_SETSEL, 0, -1);
}

void FindBar::FocusList() { ::SetFocus(m_hList); }

void FindBar::AskForStep() { ::SetTimer(Handle(), lStepTimer, USER_TIMER_MINIMUM, nullptr); }

} // namespace ravlo

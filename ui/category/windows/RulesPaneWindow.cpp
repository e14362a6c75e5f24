// SPDX-License-Identifier: MIT
#include "ui/category/windows/RulesPaneWindow.h"

#include "ui/category/windows/ControlIds.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <commctrl.h>
#include <cstddef>
#include <optional>
#include <uxtheme.h>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lMargin = 10;
constexpr int lRowGap = 7;
constexpr int lBoxWidth = 64;
constexpr int lBoxPadding = 4; // height of a box beyond its text and edges
constexpr int lCheckBox = 22;

// The colour of tab pages: of a window with visual styles, of a button's face without.
int PageColour() { return ::IsAppThemed() ? COLOR_WINDOW : COLOR_BTNFACE; }

} // namespace

RulesPaneWindow::RulesPaneWindow(HWND hParent, RulesPane ePane, ModScheduler& cMod)
    : Window(sRulesPaneClass, PageColour()), m_cMod(cMod)
{
    const bool bGlobal = ePane == RulesPane::Global;
    WindowStart start;
    start.sTitle = bGlobal ? L"Global Rules" : L"Category Rules";
    start.lStyle = WS_CHILD | WS_CLIPCHILDREN;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hParent;
    start.lId = bGlobal ? eIdpicRules0 : eIdpicRules1;
    Create(start);
    const wchar_t* const sLabels[] = {L"Artist Separation (Mins):", L"Title Separation (Mins):",
                                      L"Album Separation (Mins):"};
    for (int i = 0; i < 3; ++i)
    {
        const auto at = static_cast<std::size_t>(i);
        m_hLabels[at] =
            MakeControl(Handle(), WC_STATICW, sLabels[i], SS_LEFTNOWORDWRAP, eIdArtistLabel + 2 * i);
        m_hBoxes[at] = MakeControl(Handle(), WC_EDITW, L"", ES_AUTOHSCROLL | WS_TABSTOP,
                                   eIdtxtArtistSepMins + 2 * i, WS_EX_CLIENTEDGE);
    }
    if (!bGlobal)
        m_hIgnore = MakeControl(Handle(), WC_BUTTONW, L"Category &Ignores Rules",
                                BS_AUTOCHECKBOX | WS_TABSTOP, eIdchkIgnore);
    m_hNote = MakeControl(
        Handle(), WC_STATICW,
        bGlobal ? L"Setting a rule to zero means NO rule is set (no separation will be maintained)"
                : L"Setting a rule to zero (or less) means NO rule is set (Global Rule will be applied).",
        SS_LEFT, eIdNote);
}

RulesPaneWindow::~RulesPaneWindow() { Destroy(); }

LRESULT RulesPaneWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
        if (HIWORD(wParam) == EN_CHANGE && BoxChanged)
            BoxChanged((LOWORD(wParam) - eIdtxtArtistSepMins) / 2);
        else if (LOWORD(wParam) == eIdchkIgnore && HIWORD(wParam) == BN_CLICKED && IgnoreClick)
            IgnoreClick();
        return 0;
    case WM_ENABLE:
        EnableContents(wParam != FALSE);
        return 0;
    case WM_SIZE:
        Arrange(LOWORD(lParam), true);
        return 0;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return OnColour(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam), lMessage);
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void RulesPaneWindow::OnException() noexcept { m_cMod.ShowCriticalError(L"Error in frmCat", CurrentError()); }

// Labels and the check box have the page's colour behind them; a disabled box keeps its own.
LRESULT RulesPaneWindow::OnColour(HDC hDC, HWND hControl, UINT lMessage)
{
    if (std::find(m_hBoxes.begin(), m_hBoxes.end(), hControl) != m_hBoxes.end())
        return Default(lMessage, reinterpret_cast<WPARAM>(hDC), reinterpret_cast<LPARAM>(hControl));
    ::SetBkMode(hDC, TRANSPARENT);
    ::SetTextColor(hDC, ::GetSysColor(COLOR_WINDOWTEXT));
    return reinterpret_cast<LRESULT>(::GetSysColorBrush(PageColour()));
}

void RulesPaneWindow::SetLook(HFONT hFont, int lDpi)
{
    m_hFont = hFont;
    m_lDpi = lDpi;
    for (const HWND hLabel : m_hLabels)
        SetFont(hLabel, hFont);
    for (const HWND hBox : m_hBoxes)
        SetFont(hBox, hFont);
    if (m_hIgnore)
        SetFont(m_hIgnore, hFont);
    SetFont(m_hNote, hFont);
    RECT client{};
    ::GetClientRect(Handle(), &client);
    Arrange(static_cast<int>(client.right), true);
}

int RulesPaneWindow::HeightAt(int lWidth) const { return Arrange(lWidth, false); }

// From top to bottom; returns the height it takes.
int RulesPaneWindow::Arrange(int lWidth, bool bMove) const
{
    if (!m_hFont)
        return 0;
    const FontContext cContext(Handle(), m_hFont);
    const auto px = [&](int lAt96) { return Scaled(lAt96, m_lDpi); };
    const int lLine = static_cast<int>(TextSize(cContext.Get(), L"Ag").cy);
    const int lBoxHeight = lLine + 2 * ::GetSystemMetrics(SM_CYEDGE) + px(lBoxPadding);
    const int lInner = lWidth - 2 * px(lMargin);
    std::optional<Mover> cMover;
    if (bMove)
        cMover.emplace(8);
    const auto move = [&](HWND hControl, int x, int y, int cx, int cy) {
        if (cMover)
            cMover->Move(hControl, x, y, cx, cy);
    };
    int lTop = px(lMargin);
    for (std::size_t i = 0; i < m_hBoxes.size(); ++i, lTop += lBoxHeight + px(lRowGap))
    {
        const int lBoxLeft = lWidth - px(lMargin + lBoxWidth);
        move(m_hLabels[i], px(lMargin), lTop + (lBoxHeight - lLine) / 2, lBoxLeft - px(lMargin + 4), lLine);
        move(m_hBoxes[i], lBoxLeft, lTop, px(lBoxWidth), lBoxHeight);
    }
    if (m_hIgnore)
    {
        const int lText = static_cast<int>(TextSize(cContext.Get(), WindowText(m_hIgnore)).cx);
        const int lHeight = std::max(lLine, px(17));
        move(m_hIgnore, px(lMargin), lTop, std::min(lInner, lText + px(lCheckBox)), lHeight);
        lTop += lHeight + px(lRowGap);
    }
    lTop += px(lRowGap);
    const int lNote = static_cast<int>(TextSize(cContext.Get(), WindowText(m_hNote), lInner).cy);
    move(m_hNote, px(lMargin), lTop, lInner, lNote);
    return lTop + lNote + px(lMargin);
}

std::wstring RulesPaneWindow::BoxText(int lBox) const
{
    return WindowText(m_hBoxes[static_cast<std::size_t>(lBox)]);
}

void RulesPaneWindow::SetBoxText(int lBox, const std::wstring& sText)
{
    ::SetWindowTextW(m_hBoxes[static_cast<std::size_t>(lBox)], sText.c_str());
}

void RulesPaneWindow::EnableBox(int lBox, bool bEnable)
{
    m_bBoxes[static_cast<std::size_t>(lBox)] = bEnable;
    ::EnableWindow(m_hBoxes[static_cast<std::size_t>(lBox)], bEnable && ::IsWindowEnabled(Handle()));
}

// With the pane itself: else they would look as if they could be used.
void RulesPaneWindow::EnableContents(bool bEnable)
{
    for (std::size_t i = 0; i < m_hBoxes.size(); ++i)
    {
        ::EnableWindow(m_hLabels[i], bEnable);
        ::EnableWindow(m_hBoxes[i], bEnable && m_bBoxes[i]);
    }
    if (m_hIgnore)
        ::EnableWindow(m_hIgnore, bEnable);
    ::EnableWindow(m_hNote, bEnable);
}

bool RulesPaneWindow::IgnoreChecked() const
{
    return ::SendMessageW(m_hIgnore, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void RulesPaneWindow::CheckIgnore(bool bCheck)
{
    ::SendMessageW(m_hIgnore, BM_SETCHECK, bCheck ? BST_CHECKED : BST_UNCHECKED, 0);
}

} // namespace ravlo

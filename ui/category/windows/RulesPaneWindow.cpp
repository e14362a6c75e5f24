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
#include <vector>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lRulesMargin = 10;
constexpr int lRowGap = 7;
constexpr int lRulesGap = 8;
constexpr int lBoxWidth = 52;
constexpr int lBoxPadding = 4; // height of a box beyond its text and edges
constexpr int lCheckBox = 22;
constexpr int lOutlookLines = 5; // kept free, so that the window does not change its size with the texts

// An album separation is never inherited: without one of its own a level has none.
constexpr const wchar_t* sInherit[] = {L"Inheri&t artist", L"Inherit titl&e", L"No al&bum rule"};

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
        if (!bGlobal)
            m_hInherits[at] = MakeControl(Handle(), WC_BUTTONW, sInherit[at], BS_AUTOCHECKBOX | WS_TABSTOP,
                                          eIdInheritArtist + i);
    }
    if (!bGlobal)
    {
        m_hIgnore = MakeControl(Handle(), WC_BUTTONW, L"Category &Ignores Rules",
                                BS_AUTOCHECKBOX | WS_TABSTOP, eIdchkIgnore);
        m_hOutlook =
            MakeControl(Handle(), WC_STATICW, L"", SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, eIdOutlook);
    }
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
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_ENABLE:
        EnableContents(wParam != FALSE);
        return 0;
    case WM_SIZE:
        Arrange(LOWORD(lParam), true);
        return 0;
    case WM_CTLCOLOREDIT:
        return OnBoxColour(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return OnColour(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam), lMessage);
    default:
        return Default(lMessage, wParam, lParam);
    }
}

void RulesPaneWindow::OnCommand(int lId, int lCode)
{
    if (lCode == EN_CHANGE && BoxChanged)
        BoxChanged((lId - eIdtxtArtistSepMins) / 2);
    else if (lCode == BN_CLICKED && lId == eIdchkIgnore && IgnoreClick)
        IgnoreClick();
    else if (lCode == BN_CLICKED && lId >= eIdInheritArtist && lId <= eIdInheritAlbum && InheritClick)
        InheritClick(lId - eIdInheritArtist);
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

LRESULT RulesPaneWindow::OnBoxColour(HDC hDC, HWND hBox)
{
    const LRESULT lBrush =
        Default(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(hDC), reinterpret_cast<LPARAM>(hBox));
    const auto it = std::find(m_hBoxes.begin(), m_hBoxes.end(), hBox);
    if (it != m_hBoxes.end() && InheritChecked(static_cast<int>(it - m_hBoxes.begin())))
        ::SetTextColor(hDC, ::GetSysColor(COLOR_GRAYTEXT));
    return lBrush;
}

void RulesPaneWindow::SetLook(HFONT hFont, int lDpi)
{
    m_hFont = hFont;
    m_lDpi = lDpi;
    for (const HWND hControl : Controls())
        SetFont(hControl, hFont);
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
    const int lInner = lWidth - 2 * px(lRulesMargin);
    std::optional<Mover> cMover;
    if (bMove)
        cMover.emplace(static_cast<int>(Controls().size()));
    const auto move = [&](HWND hControl, int x, int y, int cx, int cy) {
        if (cMover)
            cMover->Move(hControl, x, y, cx, cy);
    };
    int lTop = px(lRulesMargin);
    const int lLabel = LabelWidth(cContext.Get());
    const int lBoxLeft = px(lRulesMargin + 4) + lLabel;
    const int lTickLeft = lBoxLeft + px(lBoxWidth + lRulesGap);
    const int lTick = std::max(lLine, px(17)); // height of a check box
    for (std::size_t i = 0; i < m_hBoxes.size(); ++i, lTop += lBoxHeight + px(lRowGap))
    {
        move(m_hLabels[i], px(lRulesMargin), lTop + (lBoxHeight - lLine) / 2, lLabel, lLine);
        move(m_hBoxes[i], lBoxLeft, lTop, px(lBoxWidth), lBoxHeight);
        if (m_hInherits[i])
            move(m_hInherits[i], lTickLeft, lTop + (lBoxHeight - lTick) / 2, lWidth - px(2) - lTickLeft,
                 lTick);
    }
    if (m_hIgnore)
    {
        const int lText = static_cast<int>(TextSize(cContext.Get(), WindowText(m_hIgnore)).cx);
        move(m_hIgnore, px(lRulesMargin), lTop, std::min(lInner, lText + px(lCheckBox)), lTick);
        lTop += lTick + 2 * px(lRowGap);
        const SIZE outlook =
            TextSize(cContext.Get(), WindowText(m_hOutlook), lInner, DT_NOPREFIX | DT_EDITCONTROL);
        const int lOutlook = std::max(lOutlookLines * lLine, static_cast<int>(outlook.cy));
        move(m_hOutlook, px(lRulesMargin), lTop, lInner, lOutlook);
        lTop += lOutlook;
    }
    lTop += px(lRowGap);
    const int lNote = static_cast<int>(TextSize(cContext.Get(), WindowText(m_hNote), lInner).cy);
    move(m_hNote, px(lRulesMargin), lTop, lInner, lNote);
    return lTop + lNote + px(lRulesMargin);
}

int RulesPaneWindow::LabelWidth(HDC hDC) const
{
    LONG lWidth = 0;
    for (const HWND hLabel : m_hLabels)
        lWidth = std::max(lWidth, TextSize(hDC, WindowText(hLabel)).cx);
    return static_cast<int>(lWidth);
}

std::vector<HWND> RulesPaneWindow::Controls() const
{
    std::vector<HWND> hAll{m_hIgnore, m_hOutlook, m_hNote};
    for (const std::array<HWND, 3>& hControls : {m_hLabels, m_hBoxes, m_hInherits})
        hAll.insert(hAll.end(), hControls.begin(), hControls.end());
    std::erase(hAll, nullptr);
    return hAll;
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
    for (const HWND hControl : Controls())
        ::EnableWindow(hControl, bEnable);
    for (std::size_t i = 0; i < m_hBoxes.size(); ++i)
    {
        ::EnableWindow(m_hBoxes[i], bEnable && m_bBoxes[i]);
        if (m_hInherits[i])
            ::EnableWindow(m_hInherits[i], bEnable && m_bInherits[i]);
    }
}

bool RulesPaneWindow::InheritChecked(int lBox) const
{
    const HWND hInherit = m_hInherits[static_cast<std::size_t>(lBox)];
    return hInherit && ::SendMessageW(hInherit, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void RulesPaneWindow::CheckInherit(int lBox, bool bCheck)
{
    if (InheritChecked(lBox) == bCheck)
        return;
    const auto at = static_cast<std::size_t>(lBox);
    ::SendMessageW(m_hInherits[at], BM_SETCHECK, bCheck ? BST_CHECKED : BST_UNCHECKED, 0);
    ::InvalidateRect(m_hBoxes[at], nullptr, TRUE);
}

void RulesPaneWindow::EnableInherit(int lBox, bool bEnable)
{
    m_bInherits[static_cast<std::size_t>(lBox)] = bEnable;
    ::EnableWindow(m_hInherits[static_cast<std::size_t>(lBox)], bEnable && ::IsWindowEnabled(Handle()));
}

void RulesPaneWindow::SetOutlook(const std::wstring& sText)
{
    if (WindowText(m_hOutlook) == sText)
        return;
    ::SetWindowTextW(m_hOutlook, sText.c_str());
    RECT client{};
    ::GetClientRect(Handle(), &client);
    Arrange(static_cast<int>(client.right), true);
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

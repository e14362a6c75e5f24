// SPDX-License-Identifier: MIT
// Sizes and places of the category window's controls.
#include "ui/category/windows/frmCatWindow.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PlaceMemory.h"

#include <algorithm>
#include <commctrl.h>

namespace ravlo
{

namespace
{

// Lengths at 96 dpi.
constexpr int lMargin = 11;
constexpr int lGap = 8;
constexpr int lWideGap = 14;
constexpr int lRulesWidth = 332;
constexpr int lTabs = 28; // about the height of the tabs themselves
constexpr int lButtonWidth = 76;
constexpr int lButtonPadding = 22;
constexpr int lLowestButton = 24;
constexpr int lArrowWidth = 18;
constexpr int lFirstWidth = 880;
constexpr int lFirstHeight = 470;

} // namespace

int frmCatWindow::px(int lAt96) const { return Scaled(lAt96, m_lDpi); }

void frmCatWindow::SetLook(int lDpi)
{
    m_lDpi = lDpi;
    // Swapped in at the end: the controls use the old fonts until then.
    UniqueFont hFont = MessageFont(lDpi);
    UniqueFont hSymbols = SymbolFont(lDpi);
    for (const HWND hControl :
         {m_hNew, m_hNewLevel, m_hTitle, m_hTabs, m_hApply, m_hOK, m_hCancel, m_hStrip[1]})
        SetFont(hControl, hFont.get());
    m_cSelector->SetLook(hFont.get(), lDpi);
    for (const std::unique_ptr<RulesPaneWindow>& cPane : m_cPanes)
        cPane->SetLook(hFont.get(), lDpi);
    m_hFont.swap(hFont);
    m_hSymbols.swap(hSymbols);
    LayOut();
    ::RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE frmCatWindow::ButtonSize(HWND hButton) const
{
    const FontContext cContext(Handle(), m_hFont.get());
    const SIZE text = TextSize(cContext.Get(), WindowText(hButton));
    return {std::max<LONG>(px(lButtonWidth), text.cx + px(lButtonPadding)),
            std::max<LONG>(px(lLowestButton), text.cy + px(8))};
}

// Two lines, and more where a category's name is very long.
int frmCatWindow::TitleHeight() const
{
    const FontContext cContext(Handle(), m_hFont.get());
    const SIZE text =
        TextSize(cContext.Get(), WindowText(m_hTitle), px(lRulesWidth), DT_NOPREFIX | DT_EDITCONTROL);
    return std::max(2 * static_cast<int>(TextSize(cContext.Get(), L"Ag").cy), static_cast<int>(text.cy));
}

int frmCatWindow::StripWidth() const
{
    return static_cast<int>(ButtonSize(m_hStrip[1]).cx) + 2 * px(lArrowWidth);
}

int frmCatWindow::ButtonsWidth() const
{
    const auto width = [&](HWND hButton) { return static_cast<int>(ButtonSize(hButton).cx); };
    return width(m_hNew) + width(m_hNewLevel) + StripWidth() + width(m_hOK) + width(m_hCancel) +
           2 * px(lGap) + 2 * px(lWideGap);
}

SIZE frmCatWindow::FirstSize() const
{
    return {px(lFirstWidth) - (m_bRulesShown ? 0 : RulesAreaWidth()), px(lFirstHeight)};
}

int frmCatWindow::RulesAreaWidth() const { return px(lRulesWidth + lWideGap); }

// Of the taller pane.
int frmCatWindow::PaneHeight() const
{
    return std::max(m_cPanes[0]->HeightAt(px(lRulesWidth - 8)), m_cPanes[1]->HeightAt(px(lRulesWidth - 8)));
}

SIZE frmCatWindow::SmallestClient() const
{
    const SIZE selector = m_cSelector->SmallestSize();
    const int lRules = m_bRulesShown ? px(lWideGap + lRulesWidth) : 0;
    const int lWidth = std::max(static_cast<int>(selector.cx) + lRules, ButtonsWidth());
    const int lButton = static_cast<int>(ButtonSize(m_hOK).cy);
    // Title, tabs, the taller pane and the button below it.
    const int lRulesHeight =
        m_bRulesShown ? TitleHeight() + px(lTabs + 3 * lGap) + PaneHeight() + lButton : 0;
    const int lHeight = std::max(static_cast<int>(selector.cy), lRulesHeight);
    return {lWidth + 2 * px(lMargin), lHeight + px(2 * lMargin + lWideGap) + lButton};
}

void frmCatWindow::LayOut()
{
    if (!m_hFont || ::IsIconic(Handle()))
        return;
    RECT client{};
    ::GetClientRect(Handle(), &client);
    const int lRight = static_cast<int>(client.right) - px(lMargin);
    const int lButtonTop =
        static_cast<int>(client.bottom) - px(lMargin) - static_cast<int>(ButtonSize(m_hOK).cy);
    const int lBottom = lButtonTop - px(lWideGap);
    const int lRulesLeft = lRight - px(lRulesWidth);
    const int lSelectorRight = m_bRulesShown ? lRulesLeft - px(lWideGap) : lRight;
    ::SetWindowPos(m_cSelector->Handle(), nullptr, px(lMargin), px(lMargin), lSelectorRight - px(lMargin),
                   lBottom - px(lMargin), SWP_NOZORDER | SWP_NOACTIVATE);
    LayOutRulesArea(lRulesLeft, px(lMargin), px(lRulesWidth), lBottom);
    LayOutButtons(lButtonTop, lRight);
}

// The buttons for new categories on the left; the strip, OK and Cancel on the right.
void frmCatWindow::LayOutButtons(int lTop, int lRight)
{
    const int lHeight = static_cast<int>(ButtonSize(m_hOK).cy);
    const auto width = [&](HWND hButton) { return static_cast<int>(ButtonSize(hButton).cx); };
    Mover cMover(7);
    const int lNewWidth = width(m_hNew);
    cMover.Move(m_hNew, px(lMargin), lTop, lNewWidth, lHeight);
    cMover.Move(m_hNewLevel, px(lMargin + lGap) + lNewWidth, lTop, width(m_hNewLevel), lHeight);
    const int lCancel = lRight - width(m_hCancel);
    const int lOK = lCancel - px(lGap) - width(m_hOK);
    cMover.Move(m_hCancel, lCancel, lTop, width(m_hCancel), lHeight);
    cMover.Move(m_hOK, lOK, lTop, width(m_hOK), lHeight);
    const int lStrip = lOK - px(lWideGap) - StripWidth();
    cMover.Move(m_hStrip[0], lStrip, lTop, px(lArrowWidth), lHeight);
    cMover.Move(m_hStrip[1], lStrip + px(lArrowWidth), lTop, width(m_hStrip[1]), lHeight);
    cMover.Move(m_hStrip[2], lStrip + StripWidth() - px(lArrowWidth), lTop, px(lArrowWidth), lHeight);
}

void frmCatWindow::LayOutRulesArea(int lLeft, int lTop, int lWidth, int lBottom)
{
    const int lTitle = TitleHeight();
    const SIZE apply = ButtonSize(m_hApply);
    const int lApplyTop = lBottom - static_cast<int>(apply.cy);
    const int lTabsTop = lTop + lTitle + px(lGap);
    const int lTabsHeight = lApplyTop - px(lGap) - lTabsTop;
    RECT page{0, 0, lWidth, lTabsHeight};
    ::SendMessageW(m_hTabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
    {
        Mover cMover(5);
        cMover.Move(m_hTitle, lLeft, lTop, lWidth, lTitle);
        cMover.Move(m_hTabs, lLeft, lTabsTop, lWidth, lTabsHeight);
        cMover.Move(m_hApply, lLeft + lWidth - static_cast<int>(apply.cx), lApplyTop,
                    static_cast<int>(apply.cx), static_cast<int>(apply.cy));
        for (const std::unique_ptr<RulesPaneWindow>& cPane : m_cPanes)
            cMover.Move(cPane->Handle(), lLeft + static_cast<int>(page.left),
                        lTabsTop + static_cast<int>(page.top), static_cast<int>(page.right - page.left),
                        static_cast<int>(page.bottom - page.top));
    }
    // The panes come after the tabs in the tab order and so lie below them: the tabs get a hole there.
    const HRGN hShape = ::CreateRectRgn(0, 0, lWidth, lTabsHeight);
    const HRGN hHole = ::CreateRectRgnIndirect(&page);
    ::CombineRgn(hShape, hShape, hHole, RGN_DIFF);
    ::DeleteObject(hHole);
    ::SetWindowRgn(m_hTabs, hShape, TRUE);
}

// Grows a window that is too small for its contents.
void frmCatWindow::MakeRoom()
{
    if (!m_bRulesShown || !::IsWindowVisible(Handle()) || ::IsZoomed(Handle()) || ::IsIconic(Handle()))
        return;
    RECT window{};
    ::GetWindowRect(Handle(), &window);
    const SIZE size = {window.right - window.left, window.bottom - window.top};
    const SIZE smallest = WindowSizeFor(Handle(), SmallestClient(), m_lDpi);
    if (size.cx < smallest.cx || size.cy < smallest.cy)
        ResizeOnScreen(Handle(), {std::max(size.cx, smallest.cx), std::max(size.cy, smallest.cy)});
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
// The category tree's rows: the selected one without the focus, and the numbers of cuts.
#include "base/Text.h"
#include "scheduler/UndoTexts.h"
#include "ui/controls/windows/Colours.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/library/windows/CategoryTreeWindow.h"

#include <cstring>

namespace ravlo
{

namespace
{

// At 96 dpi: the room to the right of a number, and between it and the label.
constexpr int lRightEdge = 6;
constexpr int lGap = 8;
constexpr int lPercent = 55; // of the text's colour: the system's grey is too pale to read a number

} // namespace

LRESULT CategoryTreeWindow::OnCustomDraw(NMTVCUSTOMDRAW& draw)
{
    switch (draw.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        RepaintMoved();
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        if (::GetFocus() != m_hTree && (draw.nmcd.uItemState & CDIS_SELECTED) != 0)
        {
            draw.clrText = ::GetSysColor(COLOR_WINDOWTEXT);
            draw.clrTextBk = UnfocusedSelection();
        }
        return CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPOSTPAINT:
        if (const auto node = NodeOf(reinterpret_cast<HTREEITEM>(draw.nmcd.dwItemSpec)))
            DrawCount(draw.nmcd, *node);
        return CDRF_DODEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

// The numbers are at the right edge of the window, but scrolling and sizing move what is painted.
void CategoryTreeWindow::RepaintMoved()
{
    RECT client{};
    ::GetClientRect(m_hTree, &client);
    const POINT now = {::GetScrollPos(m_hTree, SB_HORZ), client.right};
    if (now.x != m_painted.x || now.y != m_painted.y)
        ::InvalidateRect(m_hTree, nullptr, TRUE);
    m_painted = now;
}

// What is drawn of an item, in words.
std::wstring CategoryTreeWindow::Described(HTREEITEM hItem) const
{
    const std::optional<CategoryTreePresenter::Node> node = NodeOf(hItem);
    if (!m_cTree || !node)
        return {};
    std::wstring sText = m_cTree->At(*node).cuts ? CountedCuts(*m_cTree->At(*node).cuts) : L"";
    if (m_cTree->TicksOf(*node) == CategoryTreePresenter::Ticks::Some)
        sText += sText.empty() ? L"some levels ticked" : L", some levels ticked";
    return sText;
}

// Nothing when there is no room next to the label.
void CategoryTreeWindow::DrawCount(const NMCUSTOMDRAW& draw, CategoryTreePresenter::Node node) const
{
    RECT place{};
    HTREEITEM hItem = m_hItems[node];
    std::memcpy(&place, &hItem, sizeof hItem);
    if (!m_cTree->At(node).cuts ||
        !::SendMessageW(m_hTree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place)))
        return;
    RECT client{};
    ::GetClientRect(m_hTree, &client);
    const std::wstring sCuts = CountText(*m_cTree->At(node).cuts);
    const int lSaved = ::SaveDC(draw.hdc);
    // Not every tree view hands its font on.
    ::SelectObject(draw.hdc, reinterpret_cast<HFONT>(::SendMessageW(m_hTree, WM_GETFONT, 0, 0)));
    const LONG lLabelEnd = place.right;
    place.right = client.right - Scaled(lRightEdge, m_lDpi);
    place.left = place.right - TextSize(draw.hdc, sCuts).cx;
    if (place.left >= lLabelEnd + Scaled(lGap, m_lDpi))
    {
        const bool bOnSelection =
            (draw.uItemState & CDIS_SELECTED) != 0 && ::GetFocus() == m_hTree && ShowsWholeRow();
        ::SetTextColor(draw.hdc, bOnSelection ? ::GetSysColor(COLOR_HIGHLIGHTTEXT)
                                              : Mixed(::GetSysColor(COLOR_WINDOWTEXT),
                                                      ::GetSysColor(COLOR_WINDOW), lPercent));
        ::SetBkMode(draw.hdc, TRANSPARENT);
        ::DrawTextW(draw.hdc, sCuts.c_str(), -1, &place, DT_SINGLELINE | DT_VCENTER | DT_RIGHT | DT_NOPREFIX);
    }
    ::RestoreDC(draw.hdc, lSaved);
}

// Whether the selection is painted as wide as the window.
bool CategoryTreeWindow::ShowsWholeRow() const
{
    return (::GetWindowLongPtrW(m_hTree, GWL_STYLE) & TVS_FULLROWSELECT) != 0;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Dpi.h"
#include "ui/library/windows/clsSchedLibGridWindow.h"

#include <utility>
#include <windowsx.h>

namespace ravlo
{

namespace
{

// At 96 dpi: the smallest width of a column that the user has sized, since one of 0 could not be found again.
constexpr int lLeastWidth = 12;
// From this many selected rows on, the list's own row-by-row handling is noticeably slow.
constexpr LRESULT lManyRows = 500;
constexpr UINT lMendColumn = WM_APP + 1; // posted to the list, with its number of the column

bool Down(int lKey) { return ::GetKeyState(lKey) < 0; }

bool MovesCurrentRow(WPARAM lKey)
{
    switch (lKey)
    {
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_HOME:
    case VK_END:
    case VK_SPACE:
        return true;
    default:
        return false;
    }
}

} // namespace

// ---- clicks and keys in a list with very many selected rows ----

// When the selection changes, the list deselects row by row, with a notification and a repaint each. So a
// large selection is cleared in one step before the list receives the click or key, and a large range is
// selected with painting off.

LRESULT clsSchedLibGridWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    const bool bShift = (wParam & MK_SHIFT) != 0;
    switch (lMessage)
    {
    case WM_KEYDOWN:
        return OnKey(wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        BeforePress(wParam, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return bShift ? WithoutPainting(lMessage, wParam, lParam)
                      : ::DefSubclassProc(m_hList, lMessage, wParam, lParam);
    case WM_LBUTTONUP:
        BeforeRelease(wParam);
        return ::DefSubclassProc(m_hList, lMessage, wParam, lParam);
    case WM_NOTIFY:
    {
        const LRESULT lResult = ::DefSubclassProc(m_hList, lMessage, wParam, lParam);
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        if (header.code == HDN_ENDTRACKW || header.code == HDN_ENDTRACKA)
            KeepColumnVisible(reinterpret_cast<const NMHEADERW*>(lParam)->iItem);
        return lResult;
    }
    default:
        if (lMessage == lMendColumn)
        {
            const int lLeast = Scaled(lLeastWidth, m_lDpi);
            if (Send(LVM_GETCOLUMNWIDTH, wParam) < lLeast)
                Send(LVM_SETCOLUMNWIDTH, wParam, lLeast);
            return 0;
        }
        return ::DefSubclassProc(m_hList, lMessage, wParam, lParam);
    }
}

bool clsSchedLibGridWindow::ManySelected() const { return Send(LVM_GETSELECTEDCOUNT) >= lManyRows; }

LRESULT clsSchedLibGridWindow::WithoutPainting(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    const RedrawOff cOff(*this);
    return ::DefSubclassProc(m_hList, lMessage, wParam, lParam);
}

LRESULT clsSchedLibGridWindow::OnKey(WPARAM wParam, LPARAM lParam)
{
    if (!MovesCurrentRow(wParam) || Down(VK_CONTROL) || Down(VK_MENU))
        return ::DefSubclassProc(m_hList, WM_KEYDOWN, wParam, lParam);
    if (Down(VK_SHIFT))
    {
        const bool bFar = wParam == VK_HOME || wParam == VK_END;
        return bFar || ManySelected() ? WithoutPainting(WM_KEYDOWN, wParam, lParam)
                                      : ::DefSubclassProc(m_hList, WM_KEYDOWN, wParam, lParam);
    }
    const bool bMany = ManySelected();
    if (bMany)
        SelectAll(false);
    const LRESULT lResult = ::DefSubclassProc(m_hList, WM_KEYDOWN, wParam, lParam);
    // At the first or last row the list does not move, but that row must be selected.
    if (const std::optional<std::size_t> current = CurrentRow();
        bMany && current && Send(LVM_GETSELECTEDCOUNT) == 0)
        SetState(AsRow(*current), LVIS_SELECTED, LVIS_SELECTED);
    return lResult;
}

void clsSchedLibGridWindow::BeforePress(WPARAM lKeys, POINT at)
{
    m_lPressed.reset();
    if ((lKeys & (MK_SHIFT | MK_CONTROL)) != 0 || !ManySelected())
        return;
    LVHITTESTINFO hit{};
    hit.pt = at;
    const auto row = static_cast<int>(Send(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    const bool bSelected =
        row >= 0 && Send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) == LVIS_SELECTED;
    if (!bSelected)
        SelectAll(false);
    else if ((lKeys & MK_LBUTTON) != 0)
        m_lPressed = row; // a drag may begin: the selection stays until the button is released
}

void clsSchedLibGridWindow::BeforeRelease(WPARAM lKeys)
{
    const std::optional<int> row = std::exchange(m_lPressed, std::nullopt);
    if (!row || (lKeys & (MK_SHIFT | MK_CONTROL)) != 0)
        return;
    const RedrawOff cOff(*this);
    SelectAll(false);
    SetState(*row, LVIS_SELECTED, LVIS_SELECTED);
}

// Posted: the header sets the width only after its notification.
void clsSchedLibGridWindow::KeepColumnVisible(int listColumn)
{
    ::PostMessageW(m_hList, lMendColumn, static_cast<WPARAM>(listColumn), 0);
}

void clsSchedLibGridWindow::OnFocus()
{
    if (!CurrentRow() && RowCount() != 0)
        SetState(AsRow(TopRow()), LVIS_FOCUSED, LVIS_FOCUSED);
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/library/windows/clsSchedLibGridWindow.h"

#include "ui/controls/windows/Colours.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/PopUpMenu.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <utility>
#include <uxtheme.h>

namespace ravlo
{

namespace
{

constexpr int lScrollZone = 18; // at 96 dpi, along the upper and lower edge
constexpr int lLineWidth = 2;

} // namespace

clsSchedLibGridWindow::clsSchedLibGridWindow(HWND hParent, int lId)
    : m_hList(MakeControl(hParent, WC_LISTVIEWW, L"Cuts",
                          WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
                          lId, WS_EX_CLIENTEDGE)),
      m_cSubclass(m_hList, [this](UINT lMessage, WPARAM wParam, LPARAM lParam) {
          return OnMessage(lMessage, wParam, lParam);
      })
{
    constexpr DWORD lStyle = LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | LVS_EX_DOUBLEBUFFER;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, lStyle, lStyle);
}

LRESULT clsSchedLibGridWindow::Send(UINT lMessage, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessageW(m_hList, lMessage, wParam, lParam);
}

void clsSchedLibGridWindow::SetLook(HFONT hFont, int lDpi)
{
    const ColumnLayout layout = Layout(); // as the user has left it at the old resolution
    m_lDpi = lDpi;
    m_bPlainHeadings = !::GetWindowTheme(reinterpret_cast<HWND>(Send(LVM_GETHEADER)));
    SetFont(m_hList, hFont);
    if (ColCount() != 0)
        ShowLayout(layout);
}

void clsSchedLibGridWindow::SetRedraw(bool bRedraw)
{
    m_lRedrawOff += bRedraw ? -1 : 1;
    if (bRedraw ? m_lRedrawOff > 0 : m_lRedrawOff > 1)
        return;
    Send(WM_SETREDRAW, bRedraw);
    if (!bRedraw)
        return;
    if (const std::optional<std::size_t> topRow = std::exchange(m_toTop, std::nullopt))
        SetTopRow(*topRow); // a list that paints nothing does not scroll either
    ::InvalidateRect(m_hList, nullptr, TRUE);
}

// ---- rows and selection ----

std::size_t clsSchedLibGridWindow::RowCount() const
{
    return static_cast<std::size_t>(Send(LVM_GETITEMCOUNT));
}

void clsSchedLibGridWindow::SetRowCount(std::size_t rows)
{
    const RedrawOff cOff(*this);
    if (rows > m_mostRows)
    {
        const ColumnLayout layout = Layout(); // as the user has left it
        m_mostRows = rows;
        if (ColCount() != 0)
            ShowLayout(layout);
    }
    // Setting 0 rows first clears selection, current row and scroll position, without a notification. One row
    // tells of it: to deselect all of them may take as long as there are rows, even when none is selected.
    if (const LRESULT row = Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED); row >= 0)
        SetState(static_cast<int>(row), 0, LVIS_SELECTED);
    Send(LVM_SETITEMCOUNT, 0);
    Send(LVM_SETITEMCOUNT, rows);
    if (Send(LVM_GETSELECTEDCOUNT) != 0 || CurrentRow()) // not every list view clears them
        SetState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    m_toTop = 0; // not every list view forgets where it was scrolled to
}

void clsSchedLibGridWindow::SetState(int row, UINT lState, UINT lMask)
{
    LVITEMW item{};
    item.state = lState;
    item.stateMask = lMask;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(static_cast<INT_PTR>(row)), reinterpret_cast<LPARAM>(&item));
}

void clsSchedLibGridWindow::SelectAll(bool bSelect)
{
    const RedrawOff cOff(*this);
    if (!bSelect && ManySelected())
        ForgetSelection();
    else
        SetState(-1, bSelect ? LVIS_SELECTED : 0u, LVIS_SELECTED);
}

// Sets 0 rows, as above: deselecting 100 000 rows takes 60 ms, this takes 3.
void clsSchedLibGridWindow::ForgetSelection()
{
    const std::size_t rows = RowCount();
    const std::optional<std::size_t> current = CurrentRow();
    const LRESULT lMark = Send(LVM_GETSELECTIONMARK);
    if (!m_toTop)
        m_toTop = TopRow();
    constexpr LPARAM lQuietly = LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL;
    Send(LVM_SETITEMCOUNT, 0, lQuietly);
    Send(LVM_SETITEMCOUNT, rows, lQuietly);
    if (current)
        SetState(AsRow(*current), LVIS_FOCUSED, LVIS_FOCUSED);
    Send(LVM_SETSELECTIONMARK, 0, lMark);
}

// The list keeps its selection as ranges: all rows at once are quick, and then only the fewer rows are set
// one by one.
void clsSchedLibGridWindow::SetSelection(const std::vector<bool>& bSelected)
{
    const RedrawOff cOff(*this);
    const auto selected = static_cast<std::size_t>(std::count(bSelected.begin(), bSelected.end(), true));
    const bool bMost = selected > bSelected.size() / 2;
    SelectAll(bMost);
    for (std::size_t row = 0; row < bSelected.size(); ++row)
        if (bSelected[row] != bMost)
            SetState(AsRow(row), bMost ? 0u : LVIS_SELECTED, LVIS_SELECTED);
}

std::vector<std::size_t> clsSchedLibGridWindow::SelectedRows() const
{
    std::vector<std::size_t> colRows;
    colRows.reserve(static_cast<std::size_t>(Send(LVM_GETSELECTEDCOUNT)));
    for (INT_PTR row = -1;;)
    {
        row = m_cSubclass.Direct(LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED);
        if (row < 0)
            return colRows;
        colRows.push_back(static_cast<std::size_t>(row));
    }
}

std::optional<std::size_t> clsSchedLibGridWindow::CurrentRow() const
{
    const auto row = static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

void clsSchedLibGridWindow::SetCurrentRow(std::size_t row)
{
    SetState(AsRow(row), LVIS_FOCUSED, LVIS_FOCUSED);
    Send(LVM_SETSELECTIONMARK, 0, AsRow(row)); // where a range by Shift begins
}

std::size_t clsSchedLibGridWindow::TopRow() const { return static_cast<std::size_t>(Send(LVM_GETTOPINDEX)); }

void clsSchedLibGridWindow::SetTopRow(std::size_t row)
{
    if (RowCount() == 0)
        return;
    RECT area{};
    area.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, TopRow(), reinterpret_cast<LPARAM>(&area));
    const auto rows = static_cast<std::ptrdiff_t>(row) - static_cast<std::ptrdiff_t>(TopRow());
    Send(LVM_SCROLL, 0, static_cast<LPARAM>(rows) * (area.bottom - area.top));
}

void clsSchedLibGridWindow::EnsureVisible(std::size_t row) { Send(LVM_ENSUREVISIBLE, row, FALSE); }

// ---- menus ----

bool clsSchedLibGridWindow::TakeMenuPoint(HWND hControl, POINT onScreen)
{
    const auto hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    const bool bByKeyboard = onScreen.x == -1 && onScreen.y == -1;
    m_menuAt = onScreen;
    if (!bByKeyboard)
        return hControl == hHeader || ::WindowFromPoint(onScreen) == hHeader;
    RECT area{};
    ::GetClientRect(hHeader, &area);
    POINT below = {area.left, area.bottom};
    if (const std::optional<std::size_t> current = CurrentRow())
    {
        EnsureVisible(*current);
        area.left = LVIR_BOUNDS;
        Send(LVM_GETITEMRECT, *current, reinterpret_cast<LPARAM>(&area));
        below = {std::max<LONG>(area.left, 0), area.bottom};
    }
    ::ClientToScreen(m_hList, &below);
    m_menuAt = below;
    return false;
}

const PopUpItem* clsSchedLibGridWindow::ChooseFromMenu(const PopUpMenu& menu)
{
    return ravlo::ChooseFromMenu(::GetAncestor(m_hList, GA_ROOT), m_menuAt, menu);
}

// ---- what the list asks ----

LRESULT clsSchedLibGridWindow::OnGetDispInfo(NMLVDISPINFOW& info) const
{
    if ((info.item.mask & LVIF_TEXT) != 0 && info.item.iItem >= 0)
    {
        m_sCell =
            m_cRows->CellText(static_cast<std::size_t>(info.item.iItem), GridColumnOf(info.item.iSubItem));
        if (info.item.cchTextMax > 0)
        {
            const std::size_t length =
                std::min(m_sCell.size(), static_cast<std::size_t>(info.item.cchTextMax) - 1);
            std::wmemcpy(info.item.pszText, m_sCell.c_str(), length);
            info.item.pszText[length] = L'\0';
        }
    }
    return 0;
}

LRESULT clsSchedLibGridWindow::OnFindItem(const NMLVFINDITEMW& find)
{
    if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || !find.lvfi.psz)
        return -1;
    const std::optional<std::size_t> row =
        m_cRows->FindRow(find.lvfi.psz, static_cast<std::size_t>(std::max(find.iStart, 0)));
    if (row && ManySelected()) // the list selects that row alone then
        SelectAll(false);
    return row ? AsRow(*row) : -1;
}

// The list itself colours a row that is selected while it has the focus, unless the row is pale.
void clsSchedLibGridWindow::ColourRow(NMLVCUSTOMDRAW& draw) const
{
    const bool bFocused = ::GetFocus() == m_hList;
    const bool bPale = m_cRows->IsPale(static_cast<std::size_t>(draw.nmcd.dwItemSpec));
    const bool bSelected = Send(LVM_GETITEMSTATE, draw.nmcd.dwItemSpec, LVIS_SELECTED) == LVIS_SELECTED;
    if (bSelected && (!bFocused || bPale))
    {
        draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED};
        draw.clrText = ::GetSysColor(bFocused ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
        draw.clrTextBk = bFocused ? ::GetSysColor(COLOR_HIGHLIGHT) : UnfocusedSelection();
    }
    else if (bPale)
    {
        draw.clrText = ::GetSysColor(COLOR_WINDOWTEXT);
        draw.clrTextBk = ::GetSysColor(COLOR_WINDOW);
    }
    if (bPale)
        draw.clrText = Mixed(draw.clrText, draw.clrTextBk, 50);
}

LRESULT clsSchedLibGridWindow::OnCustomDraw(NMLVCUSTOMDRAW& draw) const
{
    switch (draw.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        return (m_insertBefore ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT) |
               (::GetFocus() != m_hList || m_cRows->ShowsPale() ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT);
    case CDDS_ITEMPREPAINT:
        ColourRow(draw);
        return CDRF_DODEFAULT;
    case CDDS_POSTPAINT:
        if (m_insertBefore)
            if (const std::optional<RECT> line = LineAt(*m_insertBefore))
                ::FillRect(draw.nmcd.hdc, &*line, ::GetSysColorBrush(COLOR_HIGHLIGHT));
        return CDRF_DODEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

// ---- during a drag ----

std::optional<std::size_t> clsSchedLibGridWindow::DropRow(POINT onScreen) const
{
    POINT point = onScreen;
    ::ScreenToClient(m_hList, &point);
    if (RowCount() == 0)
        return std::nullopt;
    // By height alone: right of the columns is as good as on them.
    RECT top{};
    top.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, TopRow(), reinterpret_cast<LPARAM>(&top));
    const LONG lHeight = std::max<LONG>(top.bottom - top.top, 1);
    if (point.y < top.top)
        return 0;
    const std::size_t row = TopRow() + static_cast<std::size_t>((point.y - top.top) / lHeight);
    return row < RowCount() ? std::optional(row) : std::nullopt;
}

std::optional<RECT> clsSchedLibGridWindow::LineAt(std::size_t before) const
{
    if (RowCount() == 0)
        return std::nullopt;
    const bool bBelow = before >= RowCount();
    RECT area{};
    area.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, bBelow ? RowCount() - 1 : before, reinterpret_cast<LPARAM>(&area));
    RECT client{};
    ::GetClientRect(m_hList, &client);
    const LONG lWidth = Scaled(lLineWidth, m_lDpi);
    const LONG lY = bBelow ? area.bottom : area.top;
    return RECT{0, lY - lWidth / 2, client.right, lY - lWidth / 2 + lWidth};
}

void clsSchedLibGridWindow::InvalidateLine() const
{
    if (m_insertBefore)
        if (const std::optional<RECT> line = LineAt(*m_insertBefore))
            ::InvalidateRect(m_hList, &*line, TRUE);
}

void clsSchedLibGridWindow::ShowInsertionLine(std::optional<std::size_t> before)
{
    if (before == m_insertBefore)
        return;
    InvalidateLine();
    m_insertBefore = before;
    InvalidateLine();
}

bool clsSchedLibGridWindow::DragTick(POINT onScreen)
{
    POINT point = onScreen;
    ::ScreenToClient(m_hList, &point);
    RECT client{};
    ::GetClientRect(m_hList, &client);
    if (!::PtInRect(&client, point) || RowCount() == 0)
        return false;
    RECT top{};
    top.left = LVIR_BOUNDS;
    const std::size_t topRow = TopRow();
    Send(LVM_GETITEMRECT, topRow, reinterpret_cast<LPARAM>(&top));
    const LONG lHeight = top.bottom - top.top;
    const int lZone = Scaled(lScrollZone, m_lDpi);
    if (point.y < top.top + lZone && topRow > 0)
        Send(LVM_SCROLL, 0, -lHeight);
    else if (point.y > client.bottom - lZone)
        Send(LVM_SCROLL, 0, lHeight);
    if (TopRow() == topRow)
        return false;
    ::InvalidateRect(m_hList, nullptr, TRUE); // the line has scrolled along
    return true;
}

} // namespace ravlo

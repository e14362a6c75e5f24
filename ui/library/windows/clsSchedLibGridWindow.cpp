// SPDX-License-Identifier: MIT
#include "ui/library/windows/clsSchedLibGridWindow.h"

#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwchar>
#include <utility>

namespace ravlo
{

namespace
{

constexpr int lScrollZone = 18;           // at 96 dpi, along the upper and lower edge
constexpr std::size_t countedColumns = 2; // position and identifier
constexpr int lLineWidth = 2;
constexpr int lCellMargins = 14; // at 96 dpi, left and right of a text together

// The list always aligns its first column left, and screen readers name a row by it: so that one is the
// artist, which is shown third.
constexpr std::array<std::size_t, colGridColumns.size()> lListColumns = {1, 2, 0, 3, 4, 5, 6, 7, 8, 9};
constexpr std::size_t ListColumn(std::size_t lColumn) { return lListColumns[lColumn]; }
std::size_t GridColumnOf(int lListColumn)
{
    const auto at =
        std::find(lListColumns.begin(), lListColumns.end(), static_cast<std::size_t>(lListColumn));
    return static_cast<std::size_t>(at - lListColumns.begin());
}

} // namespace

clsSchedLibGridWindow::clsSchedLibGridWindow(HWND hParent, int lId)
    : m_hList(MakeControl(hParent, WC_LISTVIEWW, L"Cuts",
                          WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
                          lId, WS_EX_CLIENTEDGE))
{
    constexpr DWORD lStyle = LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | LVS_EX_DOUBLEBUFFER;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, lStyle, lStyle);
    Subclass();
}

LRESULT clsSchedLibGridWindow::Send(UINT lMessage, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessageW(m_hList, lMessage, wParam, lParam);
}

void clsSchedLibGridWindow::SetLook(HFONT hFont, int lDpi)
{
    const ColumnLayout layout = Layout(); // as the user has left it at the old resolution
    m_lDpi = lDpi;
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
    if (const std::optional<std::size_t> lTop = std::exchange(m_toTop, std::nullopt))
        SetTopRow(*lTop); // a list that paints nothing does not scroll either
    ::InvalidateRect(m_hList, nullptr, TRUE);
}

// ---- columns ----

std::size_t clsSchedLibGridWindow::ColCount() const
{
    const auto hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    return static_cast<std::size_t>(::SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0));
}

void clsSchedLibGridWindow::AddCol(const std::wstring& sHeader)
{
    std::wstring sText = sHeader;
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = sText.data();
    const std::size_t added = ColCount();
    Send(LVM_INSERTCOLUMNW, std::min(ListColumn(added), added), reinterpret_cast<LPARAM>(&column));
    if (added + 1 != colGridColumns.size())
        return;
    for (std::size_t lColumn = 0; lColumn < colGridColumns.size(); ++lColumn)
    {
        column.mask = LVCF_FMT | LVCF_SUBITEM;
        column.fmt = colGridColumns[lColumn].sWidest ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.iSubItem = AsRow(ListColumn(lColumn));
        Send(LVM_SETCOLUMNW, ListColumn(lColumn), reinterpret_cast<LPARAM>(&column));
    }
}

int clsSchedLibGridWindow::ShownWidth(std::size_t lColumn) const
{
    const ColumnLayout::Column& column = m_layout.At(lColumn);
    if (!column.bVisible)
        return 0;
    const bool bSized = column.lWidth != ColumnLayout().At(lColumn).lWidth;
    return std::max(Scaled(column.lWidth, m_lDpi), bSized ? 0 : WidthOfNumbers(lColumn));
}

int clsSchedLibGridWindow::WidthOfNumbers(std::size_t lColumn) const
{
    const GridColumn& column = colGridColumns[lColumn];
    if (!column.sWidest)
        return 0;
    const FontContext cContext(m_hList, reinterpret_cast<HFONT>(Send(WM_GETFONT)));
    LONG lWidest = 0;
    for (const std::wstring& sText : {std::wstring(column.sHeader), std::wstring(column.sWidest)})
        lWidest = std::max(lWidest, TextSize(cContext.Get(), sText).cx);
    if (lColumn < countedColumns)
        lWidest = std::max(lWidest, TextSize(cContext.Get(), std::to_wstring(m_mostRows)).cx);
    return static_cast<int>(lWidest) + Scaled(lCellMargins, m_lDpi);
}

void clsSchedLibGridWindow::ShowLayout(const ColumnLayout& layout)
{
    m_layout = layout;
    for (std::size_t lColumn = 0; lColumn < colGridColumns.size(); ++lColumn)
        Send(LVM_SETCOLUMNWIDTH, ListColumn(lColumn), ShownWidth(lColumn));
    std::array<int, colGridColumns.size()> lOrder{};
    const auto colShown = layout.Shown();
    std::transform(colShown.begin(), colShown.end(), lOrder.begin(),
                   [](std::size_t lColumn) { return AsRow(ListColumn(lColumn)); });
    Send(LVM_SETCOLUMNORDERARRAY, lOrder.size(), reinterpret_cast<LPARAM>(lOrder.data()));
    ::InvalidateRect(m_hList, nullptr, TRUE);
}

ColumnLayout clsSchedLibGridWindow::Layout() const
{
    ColumnLayout layout = m_layout;
    if (ColCount() != colGridColumns.size())
        return layout;
    for (std::size_t lColumn = 0; lColumn < colGridColumns.size(); ++lColumn)
    {
        const auto lWidth = static_cast<int>(Send(LVM_GETCOLUMNWIDTH, ListColumn(lColumn)));
        if (lWidth == ShownWidth(lColumn))
            continue;
        layout.SetWidth(lColumn, Unscaled(lWidth, m_lDpi));
        layout.SetVisible(lColumn, true);
    }
    std::array<int, colGridColumns.size()> lOrder{};
    if (Send(LVM_GETCOLUMNORDERARRAY, lOrder.size(), reinterpret_cast<LPARAM>(lOrder.data())))
    {
        std::array<std::size_t, colGridColumns.size()> colShown{};
        std::transform(lOrder.begin(), lOrder.end(), colShown.begin(), GridColumnOf);
        layout.SetOrder(colShown);
    }
    return layout;
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
    SetState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    // Setting 0 rows first clears selection, current row and scroll position.
    Send(LVM_SETITEMCOUNT, 0);
    Send(LVM_SETITEMCOUNT, rows);
    m_toTop = 0; // not every list view forgets where it was scrolled to
}

void clsSchedLibGridWindow::SetState(int lRow, UINT lState, UINT lMask)
{
    LVITEMW item{};
    item.state = lState;
    item.stateMask = lMask;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(static_cast<INT_PTR>(lRow)), reinterpret_cast<LPARAM>(&item));
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
    const auto lSelected = static_cast<std::size_t>(std::count(bSelected.begin(), bSelected.end(), true));
    const bool bMost = lSelected > bSelected.size() / 2;
    SelectAll(bMost);
    for (std::size_t lRow = 0; lRow < bSelected.size(); ++lRow)
        if (bSelected[lRow] != bMost)
            SetState(AsRow(lRow), bMost ? 0u : LVIS_SELECTED, LVIS_SELECTED);
}

std::vector<std::size_t> clsSchedLibGridWindow::SelectedRows() const
{
    std::vector<std::size_t> colRows;
    colRows.reserve(static_cast<std::size_t>(Send(LVM_GETSELECTEDCOUNT)));
    for (INT_PTR lRow = -1;;)
    {
        lRow = Send(LVM_GETNEXTITEM, static_cast<WPARAM>(lRow), LVNI_SELECTED);
        if (lRow < 0)
            return colRows;
        colRows.push_back(static_cast<std::size_t>(lRow));
    }
}

std::optional<std::size_t> clsSchedLibGridWindow::CurrentRow() const
{
    const auto lRow = static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    return lRow < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(lRow));
}

void clsSchedLibGridWindow::SetCurrentRow(std::size_t lRow)
{
    SetState(AsRow(lRow), LVIS_FOCUSED, LVIS_FOCUSED);
    Send(LVM_SETSELECTIONMARK, 0, AsRow(lRow)); // where a range by Shift begins
}

std::size_t clsSchedLibGridWindow::TopRow() const { return static_cast<std::size_t>(Send(LVM_GETTOPINDEX)); }

void clsSchedLibGridWindow::SetTopRow(std::size_t lRow)
{
    if (RowCount() == 0)
        return;
    RECT row{};
    row.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, TopRow(), reinterpret_cast<LPARAM>(&row));
    const auto rows = static_cast<std::ptrdiff_t>(lRow) - static_cast<std::ptrdiff_t>(TopRow());
    Send(LVM_SCROLL, 0, static_cast<LPARAM>(rows) * (row.bottom - row.top));
}

void clsSchedLibGridWindow::EnsureVisible(std::size_t lRow) { Send(LVM_ENSUREVISIBLE, lRow, FALSE); }

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
    const std::optional<std::size_t> lRow =
        m_cRows->FindRow(find.lvfi.psz, static_cast<std::size_t>(std::max(find.iStart, 0)));
    if (lRow && ManySelected()) // the list selects that row alone then
        SelectAll(false);
    return lRow ? AsRow(*lRow) : -1;
}

LRESULT clsSchedLibGridWindow::OnCustomDraw(NMLVCUSTOMDRAW& draw) const
{
    switch (draw.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        return (m_insertBefore ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT) |
               (::GetFocus() != m_hList ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT);
    case CDDS_ITEMPREPAINT:
        if (Send(LVM_GETITEMSTATE, draw.nmcd.dwItemSpec, LVIS_SELECTED) == LVIS_SELECTED)
        {
            draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED};
            draw.clrText = ::GetSysColor(COLOR_WINDOWTEXT);
            draw.clrTextBk = UnfocusedSelection();
        }
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
    const std::size_t lRow = TopRow() + static_cast<std::size_t>((point.y - top.top) / lHeight);
    return lRow < RowCount() ? std::optional(lRow) : std::nullopt;
}

std::optional<RECT> clsSchedLibGridWindow::LineAt(std::size_t before) const
{
    if (RowCount() == 0)
        return std::nullopt;
    const bool bBelow = before >= RowCount();
    RECT row{};
    row.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, bBelow ? RowCount() - 1 : before, reinterpret_cast<LPARAM>(&row));
    RECT client{};
    ::GetClientRect(m_hList, &client);
    const LONG lWidth = Scaled(lLineWidth, m_lDpi);
    const LONG lY = bBelow ? row.bottom : row.top;
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
    const std::size_t lTop = TopRow();
    Send(LVM_GETITEMRECT, lTop, reinterpret_cast<LPARAM>(&top));
    const LONG lHeight = top.bottom - top.top;
    const int lZone = Scaled(lScrollZone, m_lDpi);
    if (point.y < top.top + lZone && lTop > 0)
        Send(LVM_SCROLL, 0, -lHeight);
    else if (point.y > client.bottom - lZone)
        Send(LVM_SCROLL, 0, lHeight);
    if (TopRow() == lTop)
        return false;
    ::InvalidateRect(m_hList, nullptr, TRUE); // the line has scrolled along
    return true;
}

} // namespace ravlo

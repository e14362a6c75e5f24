// SPDX-License-Identifier: MIT
#include "ui/health/windows/TableWindow.h"

#include "base/ScopedFlag.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace ravlo
{

namespace
{

int AsInt(std::size_t number) { return static_cast<int>(number); }

} // namespace

TableWindow::TableWindow(HWND hParent, int lId, const std::wstring& sName, const SortedTable& table)
    : m_table(table), m_hList(MakeControl(hParent, WC_LISTVIEWW, sName,
                                          WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL |
                                              LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
                                          lId, WS_EX_CLIENTEDGE))
{
    // A sentence that is cut off is shown whole under the pointer.
    constexpr DWORD lStyle =
        LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, lStyle, lStyle);
    for (std::size_t position = 0; position < m_table.Columns().size(); ++position)
    {
        const TableColumn& from = m_table.Columns()[position];
        std::wstring sHeader = from.sHeader;
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_FMT;
        column.fmt = from.bNumber && position > 0 ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.pszText = sHeader.data();
        Send(LVM_INSERTCOLUMNW, position, reinterpret_cast<LPARAM>(&column));
    }
}

// Columns keep the widths that the user gave them, at the new resolution.
void TableWindow::SetLook(HFONT hFont, int lDpi)
{
    SetFont(m_hList, hFont);
    for (std::size_t position = 0; position < m_table.Columns().size(); ++position)
    {
        const int lWidth = WidthOf(position);
        const int lAt96 = m_lDpi == 0 ? m_table.Columns()[position].lWidth : Unscaled(lWidth, m_lDpi);
        Send(LVM_SETCOLUMNWIDTH, position, Scaled(lAt96, lDpi));
        if (lWidth == m_lFilled)
            m_lFilled = WidthOf(position);
    }
    m_lDpi = lDpi;
}

void TableWindow::FillRoom(std::size_t position)
{
    if (m_lFilled != 0 && WidthOf(position) != m_lFilled)
        return;
    RECT client{};
    ::GetClientRect(m_hList, &client);
    auto lRoom = static_cast<int>(client.right);
    for (std::size_t other = 0; other < m_table.Columns().size(); ++other)
        lRoom -= other == position ? 0 : WidthOf(other);
    Send(LVM_SETCOLUMNWIDTH, position, std::max(lRoom, Scaled(m_table.Columns()[position].lWidth, m_lDpi)));
    m_lFilled = WidthOf(position);
}

void TableWindow::SetSymbols(HIMAGELIST hSymbols, std::function<int(std::size_t item)> SymbolOf)
{
    m_SymbolOf = std::move(SymbolOf);
    Send(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(hSymbols));
}

void TableWindow::ShowRows()
{
    const ScopedFlag cSelecting(m_bSelecting);
    SetState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    Send(LVM_SETITEMCOUNT, 0); // clears selection, current row and scroll position
    Send(LVM_SETITEMCOUNT, m_table.Rows());
    ShowSortMark();
    ::InvalidateRect(m_hList, nullptr, TRUE);
}

void TableWindow::ShowSortMark() const
{
    const auto hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    for (std::size_t position = 0; position < m_table.Columns().size(); ++position)
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        ::SendMessageW(hHeader, HDM_GETITEMW, position, reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (m_table.SortedBy() && m_table.SortedBy()->column == position)
            item.fmt |= m_table.SortedBy()->bDescending ? HDF_SORTDOWN : HDF_SORTUP;
        ::SendMessageW(hHeader, HDM_SETITEMW, position, reinterpret_cast<LPARAM>(&item));
    }
}

void TableWindow::SetState(int row, UINT lState, UINT lMask) const
{
    LVITEMW item{};
    item.state = lState;
    item.stateMask = lMask;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(static_cast<INT_PTR>(row)), reinterpret_cast<LPARAM>(&item));
}

void TableWindow::Select(std::optional<std::size_t> row)
{
    const ScopedFlag cSelecting(m_bSelecting);
    constexpr UINT lBoth = LVIS_SELECTED | LVIS_FOCUSED;
    SetState(-1, 0, lBoth);
    if (!row)
        return;
    SetState(AsInt(*row), lBoth, lBoth);
    Send(LVM_ENSUREVISIBLE, *row, FALSE);
}

std::optional<std::size_t> TableWindow::Selected() const
{
    const auto row = static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

std::optional<std::size_t> TableWindow::RowSelectedIn(const NMHDR& header, LPARAM lParam) const
{
    if (header.code != LVN_ITEMCHANGED || m_bSelecting)
        return std::nullopt;
    const auto& change = *reinterpret_cast<const NMLISTVIEW*>(lParam);
    const bool bNow = (change.uNewState & LVIS_SELECTED) != 0 && (change.uOldState & LVIS_SELECTED) == 0;
    return bNow && change.iItem >= 0 ? std::optional(static_cast<std::size_t>(change.iItem)) : std::nullopt;
}

std::optional<LRESULT> TableWindow::OnNotify(const NMHDR& header, LPARAM lParam)
{
    switch (header.code)
    {
    case LVN_GETDISPINFOW:
        OnGetDispInfo(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
        return 0;
    case LVN_ODFINDITEMW:
        return OnFind(*reinterpret_cast<const NMLVFINDITEMW*>(lParam));
    case NM_CUSTOMDRAW:
        return OnCustomDraw(*reinterpret_cast<NMLVCUSTOMDRAW*>(lParam));
    default:
        return std::nullopt;
    }
}

void TableWindow::OnGetDispInfo(NMLVDISPINFOW& info) const
{
    if (info.item.iItem < 0 || static_cast<std::size_t>(info.item.iItem) >= m_table.Rows())
        return;
    const auto row = static_cast<std::size_t>(info.item.iItem);
    if ((info.item.mask & LVIF_IMAGE) != 0 && m_SymbolOf)
        info.item.iImage = m_SymbolOf(m_table.ItemAt(row));
    if ((info.item.mask & LVIF_TEXT) == 0 || info.item.cchTextMax <= 0)
        return;
    const std::wstring sText = m_table.Text(row, static_cast<std::size_t>(info.item.iSubItem));
    const std::size_t length = std::min(sText.size(), static_cast<std::size_t>(info.item.cchTextMax) - 1);
    std::wmemcpy(info.item.pszText, sText.c_str(), length);
    info.item.pszText[length] = L'\0';
}

LRESULT TableWindow::OnFind(const NMLVFINDITEMW& find) const
{
    if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || !find.lvfi.psz)
        return -1;
    const std::optional<std::size_t> row =
        m_table.Find(find.lvfi.psz, static_cast<std::size_t>(std::max(find.iStart, 0)));
    return row ? AsInt(*row) : -1;
}

LRESULT TableWindow::OnCustomDraw(NMLVCUSTOMDRAW& draw) const
{
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return ::GetFocus() != m_hList ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT &&
        Send(LVM_GETITEMSTATE, draw.nmcd.dwItemSpec, LVIS_SELECTED) == LVIS_SELECTED)
    {
        draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED};
        draw.clrText = ::GetSysColor(COLOR_WINDOWTEXT);
        draw.clrTextBk = UnfocusedSelection();
    }
    return CDRF_DODEFAULT;
}

} // namespace ravlo

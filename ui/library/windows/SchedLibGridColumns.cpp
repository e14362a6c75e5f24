// SPDX-License-Identifier: MIT
// The columns of the cut grid. The list always has the ten that hosts know, hidden ones without width, and
// after them the further ones that are shown.
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/library/windows/clsSchedLibGridWindow.h"

#include <algorithm>
#include <array>

namespace ravlo
{

namespace
{

constexpr std::size_t known = colGridColumns.size();
constexpr std::size_t countedColumns = 2; // position and identifier
// At 96 dpi, left and right of a text together. A heading without a theme has edges, too.
constexpr int lCellMargins = 14;
constexpr int lPlainHeadingMargins = 16;

// The list always aligns its first column left, and screen readers name a row by it: so that one is the
// artist, which is shown third.
constexpr std::array<std::size_t, known> knownColumns = {1, 2, 0, 3, 4, 5, 6, 7, 8, 9};

template <class Columns> std::size_t PlaceIn(const Columns& columns, std::size_t column)
{
    return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), column) - columns.begin());
}

} // namespace

// ---- the list's numbers of the columns ----

std::size_t clsSchedLibGridWindow::NumberInList(std::size_t column) const
{
    return column < known ? knownColumns[column] : known + PlaceIn(m_colFurther, column);
}

std::size_t clsSchedLibGridWindow::GridColumnOf(int listColumn) const
{
    const auto column = static_cast<std::size_t>(listColumn);
    return column < known ? PlaceIn(knownColumns, column) : m_colFurther.at(column - known);
}

std::vector<std::size_t> clsSchedLibGridWindow::PresentColumns() const
{
    std::vector<std::size_t> colPresent;
    for (std::size_t column = 0; column < known; ++column)
        colPresent.push_back(column);
    colPresent.insert(colPresent.end(), m_colFurther.begin(), m_colFurther.end());
    return colPresent;
}

// ---- making ----

std::size_t clsSchedLibGridWindow::ColCount() const
{
    const auto hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    return static_cast<std::size_t>(::SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0)) - m_colFurther.size();
}

void clsSchedLibGridWindow::InsertColumn(std::size_t listColumn, const std::wstring& sHeader) const
{
    std::wstring sText = sHeader;
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = sText.data();
    Send(LVM_INSERTCOLUMNW, listColumn, reinterpret_cast<LPARAM>(&column));
}

void clsSchedLibGridWindow::AlignColumn(std::size_t gridColumn) const
{
    LVCOLUMNW column{};
    column.mask = LVCF_FMT | LVCF_SUBITEM;
    column.fmt = ListColumnAt(gridColumn).sWidest ? LVCFMT_RIGHT : LVCFMT_LEFT;
    column.iSubItem = AsRow(NumberInList(gridColumn));
    Send(LVM_SETCOLUMNW, NumberInList(gridColumn), reinterpret_cast<LPARAM>(&column));
}

// The list draws no sort arrow, so the headings' control does.
void clsSchedLibGridWindow::MarkHeading(std::size_t gridColumn) const
{
    const auto hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    ::SendMessageW(hHeader, HDM_GETITEMW, NumberInList(gridColumn), reinterpret_cast<LPARAM>(&item));
    const int lMark = m_sortedBy != gridColumn ? 0 : m_bDescending ? HDF_SORTDOWN : HDF_SORTUP;
    item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | lMark;
    ::SendMessageW(hHeader, HDM_SETITEMW, NumberInList(gridColumn), reinterpret_cast<LPARAM>(&item));
}

void clsSchedLibGridWindow::ShowSortMark(std::optional<std::size_t> column, bool bDescending)
{
    m_sortedBy = column;
    m_bDescending = bDescending;
    for (const std::size_t present : PresentColumns())
        MarkHeading(present);
}

void clsSchedLibGridWindow::AddCol(const std::wstring& sHeader)
{
    const std::size_t added = ColCount();
    InsertColumn(std::min(knownColumns[added], added), sHeader);
    if (added + 1 == known)
        for (std::size_t column = 0; column < known; ++column)
            AlignColumn(column);
}

// Those that are shown, and no other.
void clsSchedLibGridWindow::MakeFurtherColumns()
{
    std::vector<std::size_t> colShown;
    for (std::size_t column = known; column < listColumnCount; ++column)
        if (m_layout.At(column).bVisible)
            colShown.push_back(column);
    if (colShown == m_colFurther)
        return;
    for (std::size_t further = m_colFurther.size(); further-- > 0;)
        Send(LVM_DELETECOLUMN, known + further);
    m_colFurther = std::move(colShown);
    for (std::size_t further = 0; further < m_colFurther.size(); ++further)
    {
        InsertColumn(known + further, ListColumnAt(m_colFurther[further]).sHeader);
        AlignColumn(m_colFurther[further]);
        MarkHeading(m_colFurther[further]);
    }
}

// ---- layout ----

int clsSchedLibGridWindow::ShownWidth(std::size_t column) const
{
    const ColumnLayout::Column& layout = m_layout.At(column);
    if (!layout.bVisible)
        return 0;
    const bool bSized = layout.lWidth != ListColumnAt(column).lWidth;
    return std::max(Scaled(layout.lWidth, m_lDpi), bSized ? 0 : WidthOfNumbers(column));
}

int clsSchedLibGridWindow::WidthOfNumbers(std::size_t gridColumn) const
{
    const ListColumn& column = ListColumnAt(gridColumn);
    if (!column.sWidest)
        return 0;
    const FontContext cContext(m_hList, reinterpret_cast<HFONT>(Send(WM_GETFONT)));
    const auto Width = [&](const std::wstring& sText, int lMargins) {
        return static_cast<int>(TextSize(cContext.Get(), sText).cx) + Scaled(lMargins, m_lDpi);
    };
    int lWidest = std::max(Width(column.sHeader, m_bPlainHeadings ? lPlainHeadingMargins : lCellMargins),
                           Width(column.sWidest, lCellMargins));
    if (gridColumn < countedColumns)
        lWidest = std::max(lWidest, Width(std::to_wstring(m_mostRows), lCellMargins));
    return lWidest;
}

void clsSchedLibGridWindow::ShowLayout(const ColumnLayout& layout)
{
    m_layout = layout;
    MakeFurtherColumns();
    for (const std::size_t column : PresentColumns())
        Send(LVM_SETCOLUMNWIDTH, NumberInList(column), ShownWidth(column));
    std::vector<int> colOrder;
    for (const std::size_t column : layout.Shown())
        if (column < known || PlaceIn(m_colFurther, column) < m_colFurther.size())
            colOrder.push_back(AsRow(NumberInList(column)));
    Send(LVM_SETCOLUMNORDERARRAY, colOrder.size(), reinterpret_cast<LPARAM>(colOrder.data()));
    ::InvalidateRect(m_hList, nullptr, TRUE);
}

ColumnLayout clsSchedLibGridWindow::Layout() const
{
    ColumnLayout layout = m_layout;
    if (ColCount() != known)
        return layout;
    for (const std::size_t column : PresentColumns())
    {
        const auto lWidth = static_cast<int>(Send(LVM_GETCOLUMNWIDTH, NumberInList(column)));
        if (lWidth == ShownWidth(column))
            continue;
        layout.SetWidth(column, Unscaled(lWidth, m_lDpi));
        layout.SetVisible(column, true);
    }
    std::vector<int> colOrder(PresentColumns().size());
    if (Send(LVM_GETCOLUMNORDERARRAY, colOrder.size(), reinterpret_cast<LPARAM>(colOrder.data())))
    {
        std::vector<std::size_t> colShown(colOrder.size());
        std::transform(colOrder.begin(), colOrder.end(), colShown.begin(),
                       [this](int listColumn) { return GridColumnOf(listColumn); });
        layout.SetOrder(colShown);
    }
    return layout;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/library/GridHeadings.h"

#include "base/CaseFolding.h"
#include "ui/library/RowSorting.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

GridHeadings::GridHeadings(clsSchedLibGridPresenter& cGrid, clsSchedLibGridView& cGridView,
                           frmUILibView& cView, LibraryWork& cWork)
    : m_cGrid(cGrid), m_cGridView(cGridView), m_cView(cView), m_cWork(cWork)
{
    m_cGrid.Arrangers.push_back([this](ViewOrder& cOrder) {
        if (m_sorting && !EqualIgnoringCase(m_sorting->sNode, m_cGrid.Listing().strCatKey))
            m_sorting.reset();
        Arrange(cOrder);
    });
}

// ---- columns ----

void GridHeadings::ShowMenu()
{
    const PopUpMenu menu{ScheduleOrder(), Columns()};
    if (const PopUpItem* pItem = m_cGridView.ChooseFromMenu(menu))
        pItem->chosen();
}

PopUpItem GridHeadings::Columns()
{
    const ColumnLayout layout = m_cGridView.Layout();
    const std::vector<std::size_t> colOrder = layout.Shown();
    const auto shown = std::count_if(colOrder.begin(), colOrder.end(),
                                     [&](std::size_t column) { return layout.IsShown(column); });
    PopUpItem columns{L"Co&lumns...", {}};
    for (const std::size_t column : colOrder)
    {
        const bool bShown = layout.IsShown(column);
        columns.colItems.push_back({PlainCaption(ListColumnAt(column).sHeader),
                                    [this, column] { Toggle(column); }, !bShown || shown > 1, bShown});
    }
    columns.colItems.push_back({});
    columns.colItems.push_back({L"&Reset columns", [this] { m_cGridView.ShowLayout(ColumnLayout()); }});
    return columns;
}

void GridHeadings::Toggle(std::size_t column)
{
    ColumnLayout layout = m_cGridView.Layout();
    layout.Show(column, !layout.IsShown(column));
    m_cGridView.ShowLayout(layout);
}

// ---- sorting ----

PopUpItem GridHeadings::ScheduleOrder()
{
    return {L"&Schedule order", [this] { Sort(std::nullopt); }, true, !m_sorting};
}

PopUpItem GridHeadings::SortBy()
{
    const ColumnLayout layout = m_cGridView.Layout();
    PopUpItem sortBy{L"&Sort by", {}};
    sortBy.colItems = {ScheduleOrder(), {}};
    for (const std::size_t column : layout.Shown())
        if (layout.IsShown(column))
            sortBy.colItems.push_back({PlainCaption(ListColumnAt(column).sHeader),
                                       [this, column] { Click(column); }, true,
                                       m_sorting && m_sorting->column == column});
    return sortBy;
}

void GridHeadings::Click(std::size_t column)
{
    if (!m_sorting || m_sorting->column != column)
    {
        // Ascending positions are the schedule order itself.
        const bool bPosition = column == positionColumn;
        if (bPosition && m_sorting)
            Sort(std::nullopt);
        else
            Sort(Sorting{column, bPosition, m_cGrid.Listing().strCatKey});
    }
    else if (!m_sorting->bDescending)
        Sort(Sorting{column, true, m_sorting->sNode});
    else
        Sort(std::nullopt);
}

// Sorting reads the cuts, which may run a host's code: what that asks of the window waits until it is done.
void GridHeadings::Sort(std::optional<Sorting> sorting)
{
    m_cWork.Handle(L"iGridLib_ColHeaderClick", [&](clsSchedMan&) {
        m_sorting = std::move(sorting);
        m_cGrid.Rearrange([this](ViewOrder& cOrder) { Arrange(cOrder); });
        if (!m_sorting)
            return m_cView.SetStatus(L"In schedule order", L"");
        const std::wstring sColumn = ListColumnAt(m_sorting->column).sHeader;
        m_cView.SetStatus(L"Sorted by " + sColumn + (m_sorting->bDescending ? L", descending" : L""), L"");
    });
}

void GridHeadings::Arrange(ViewOrder& cOrder)
{
    m_cGridView.ShowSortMark(m_sorting ? std::optional(m_sorting->column) : std::nullopt,
                             m_sorting && m_sorting->bDescending);
    cOrder.Sort(m_sorting ? SortedRows() : std::vector<std::size_t>());
}

std::vector<std::size_t> GridHeadings::SortedRows() const
{
    RowSorting cSorting;
    cSorting.Reserve(m_cGrid.ListedCount());
    for (std::size_t listed = 0; listed < m_cGrid.ListedCount(); ++listed)
        cSorting.Add(m_cGrid.SortValueOf(listed, m_sorting->column));
    return cSorting.Sorted(m_sorting->bDescending);
}

} // namespace ravlo

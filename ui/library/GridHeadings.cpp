// SPDX-License-Identifier: MIT
#include "ui/library/GridHeadings.h"

#include "base/CaseFolding.h"
#include <algorithm>
#include <cstdint>
#include <utility>

namespace ravlo
{

namespace
{

} // namespace

GridHeadings::GridHeadings(clsSchedLibGridPresenter& cGrid, clsSchedLibGridView& cGridView,
                           frmUILibView& cView, LibraryWork& cWork, ModScheduler& cMod)
    : m_cGrid(cGrid), m_cGridView(cGridView), m_cView(cView), m_cWork(cWork), m_cMod(cMod)
{
    m_cGrid.Arrangers.emplace_back([this](ViewOrder& cOrder, const EarlierRows& cEarlier) {
        if (m_sorting && !EqualIgnoringCase(m_sorting->sNode, m_cGrid.Listing().strCatKey))
            m_sorting.reset();
        List(&cEarlier);
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
    columns.colItems.push_back({L"&Reset columns", [this] { ShowLayout(ColumnLayout()); }});
    return columns;
}

void GridHeadings::Toggle(std::size_t column)
{
    ColumnLayout layout = m_cGridView.Layout();
    layout.Show(column, !layout.IsShown(column));
    ShowLayout(layout);
}

// Without its column, nothing would show that the list is sorted.
void GridHeadings::ShowLayout(const ColumnLayout& layout)
{
    m_cGridView.ShowLayout(layout);
    if (m_sorting && !layout.IsShown(m_sorting->column))
        Sort(std::nullopt);
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
        const bool bOtherValues = !m_sorting || !sorting || m_sorting->column != sorting->column;
        m_sorting = std::move(sorting);
        if (bOtherValues)
            List(nullptr);
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
    cOrder.Sort(m_sorting ? m_cValues.Sorted(m_sorting->bDescending) : std::vector<std::size_t>());
    m_bDiffering = false;
}

// Takes over what was read of the same cuts before, but not what depends on their places.
void GridHeadings::List(const EarlierRows* pEarlier)
{
    const RowSorting cBefore = std::exchange(m_cValues, RowSorting());
    m_read = 0;
    if (!m_sorting)
        return;
    const std::size_t column = m_sorting->column;
    if (column == positionColumn || column == nextToPlayColumn)
        pEarlier = nullptr;
    bool bAllRead = true;
    RowSorting cValues;
    cValues.Reserve(m_cGrid.ListedCount());
    for (std::size_t listed = 0; listed < m_cGrid.ListedCount(); ++listed)
    {
        const std::optional<std::size_t> before = pEarlier ? pEarlier->Of(listed) : std::nullopt;
        const bool bKnown = before && *before < cBefore.Count();
        bAllRead = bAllRead && !bKnown;
        if (bKnown)
            cValues.Add(cBefore, *before);
        else
            cValues.Add(m_cGrid.SortValueOf(listed, column));
    }
    m_cValues = std::move(cValues);
    if (bAllRead)
        m_read = m_cValues.Count();
    else
        m_cView.AskForSorting();
}

void GridHeadings::Step()
{
    if (m_read == m_cValues.Count())
        return;
    if (m_cWork.Running())
        return m_cView.AskForSorting();
    m_cWork.GoOn(L"iGridLib_Sort", [this](clsSchedMan&) {
        ReadOn();
        if (m_read < m_cValues.Count())
            m_cView.AskForSorting();
        else if (m_bDiffering)
            m_cGrid.Rearrange([this](ViewOrder& cOrder) { Arrange(cOrder); });
    });
}

void GridHeadings::ReadOn()
{
    const Clock& cClock = m_cMod.Ports().cClock;
    const std::uint32_t lStart = cClock.TickCount();
    while (m_read < m_cValues.Count() && cClock.TickCount() - lStart < lStepMs)
    {
        const std::size_t listed = m_read++;
        m_bDiffering |= m_cValues.Replace(listed, m_cGrid.SortValueOf(listed, m_sorting->column));
    }
}

} // namespace ravlo

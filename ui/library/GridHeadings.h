// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/PopUpItem.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/RowSorting.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstddef>
#include <optional>
#include <string>

namespace ravlo
{

// The headings of the cut grid: which columns are shown, and by which of them the view is sorted. A node that
// is shown again stays sorted; another one is shown in schedule order.
//
// Sorting reads a value of every cut. Cuts that are listed again are sorted by what was read before, and then
// read again in short steps, since any of them may have been edited.
class GridHeadings
{
public:
    // Owns none of them.
    GridHeadings(clsSchedLibGridPresenter& cGrid, clsSchedLibGridView& cGridView, frmUILibView& cView,
                 LibraryWork& cWork, ModScheduler& cMod);

    // Sorts by the column; a second click reverses that, a third one returns to schedule order. By position
    // the rows are sorted in reverse only, since otherwise that is the schedule order.
    void Click(std::size_t column);
    // The headings' own menu.
    void ShowMenu();
    // One item per column, ticked when it is shown, and one that brings the default layout back. The last
    // column that is shown cannot be hidden.
    PopUpItem Columns();
    // Schedule order and the columns that are shown; ticked is what the view is sorted by. Choosing a column
    // does what a click on its heading does.
    PopUpItem SortBy();
    // Reads on; when a value has changed, sorts again at the end.
    void Step();

private:
    struct Sorting
    {
        std::size_t column;
        bool bDescending;
        std::wstring sNode; // key of the node that is sorted
    };

    PopUpItem ScheduleOrder();
    void Toggle(std::size_t column);
    void ShowLayout(const ColumnLayout& layout);
    void Sort(std::optional<Sorting> sorting);
    void Arrange(ViewOrder& cOrder);
    void List(const EarlierRows* pEarlier);
    void ReadOn();

    clsSchedLibGridPresenter& m_cGrid;
    clsSchedLibGridView& m_cGridView;
    frmUILibView& m_cView;
    LibraryWork& m_cWork;
    ModScheduler& m_cMod;
    std::optional<Sorting> m_sorting;
    RowSorting m_cValues;      // by listed row; none in schedule order
    std::size_t m_read = 0;    // of them, from the first one on, since they were listed
    bool m_bDiffering = false; // from what the view is sorted by
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/PopUpItem.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstddef>
#include <optional>
#include <string>

namespace ravlo
{

// The headings of the cut grid: which columns are shown, and by which of them the view is sorted. A node that
// is shown again stays sorted; another one is shown in schedule order.
class GridHeadings
{
public:
    // Owns none of them.
    GridHeadings(clsSchedLibGridPresenter& cGrid, clsSchedLibGridView& cGridView, frmUILibView& cView,
                 LibraryWork& cWork);

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

private:
    struct Sorting
    {
        std::size_t column;
        bool bDescending;
        std::wstring sNode; // key of the node that is sorted
    };

    PopUpItem ScheduleOrder();
    void Toggle(std::size_t column);
    void Sort(std::optional<Sorting> sorting);
    void Arrange(ViewOrder& cOrder);
    std::vector<std::size_t> SortedRows() const;

    clsSchedLibGridPresenter& m_cGrid;
    clsSchedLibGridView& m_cGridView;
    frmUILibView& m_cView;
    LibraryWork& m_cWork;
    std::optional<Sorting> m_sorting;
};

} // namespace ravlo

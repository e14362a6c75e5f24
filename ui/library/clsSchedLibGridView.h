// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/PopUpItem.h"
#include "ui/library/ColumnLayout.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The cut grid on the screen: a list that stores no rows and asks for texts when it paints. Rows count from
// 0. Does not report changes made by its presenter.
class clsSchedLibGridView
{
public:
    virtual ~clsSchedLibGridView() = default;
    virtual void SetRedraw(bool bRedraw) = 0;
    virtual void Repaint() = 0;
    // Of the columns that hosts know.
    virtual std::size_t ColCount() const = 0;
    virtual void AddCol(const std::wstring& sHeader) = 0;
    virtual void ShowLayout(const ColumnLayout& layout) = 0;
    // The layout with the user's changes.
    virtual ColumnLayout Layout() const = 0;
    // Marks the heading of the column by which the rows are sorted; none for schedule order.
    virtual void ShowSortMark(std::optional<std::size_t> column, bool bDescending) = 0;

    // No row is selected or current afterwards, and the first one is at the top.
    virtual void SetRowCount(std::size_t rows) = 0;
    virtual void SelectAll(bool bSelect) = 0;
    // One value per row.
    virtual void SetSelection(const std::vector<bool>& bSelected) = 0;
    virtual std::vector<std::size_t> SelectedRows() const = 0; // ascending
    virtual std::optional<std::size_t> CurrentRow() const = 0;
    virtual void SetCurrentRow(std::size_t row) = 0;
    virtual std::size_t TopRow() const = 0;
    virtual void SetTopRow(std::size_t row) = 0;
    virtual void EnsureVisible(std::size_t row) = 0;

    // Lets the user choose from a menu where it was asked for. Null when it is dismissed.
    virtual const PopUpItem* ChooseFromMenu(const PopUpMenu& menu) = 0;
};

// The grid paints nothing while one exists: changing many rows would repaint at each.
class RedrawOff
{
public:
    explicit RedrawOff(clsSchedLibGridView& cView) : m_cView(cView) { m_cView.SetRedraw(false); }
    ~RedrawOff() { m_cView.SetRedraw(true); }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    clsSchedLibGridView& m_cView;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/ColumnLayout.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The cut grid on the screen: a list without rows of its own, which asks for texts when it paints. Rows count
// from 0. It does not report what its presenter makes it do.
class clsSchedLibGridView
{
public:
    virtual ~clsSchedLibGridView() = default;
    virtual void SetRedraw(bool bRedraw) = 0;
    virtual std::size_t ColCount() const = 0;
    virtual void AddCol(const std::wstring& sHeader) = 0;
    virtual void ShowLayout(const ColumnLayout& layout) = 0;
    // The layout as the user has left it; what they did not change is as it was shown.
    virtual ColumnLayout Layout() const = 0;

    // No row is selected or current afterwards, and the first one is at the top.
    virtual void SetRowCount(std::size_t rows) = 0;
    virtual void SelectAll(bool bSelect) = 0;
    // Row by row; as long as there are rows.
    virtual void SetSelection(const std::vector<bool>& bSelected) = 0;
    virtual std::vector<std::size_t> SelectedRows() const = 0; // ascending
    virtual std::optional<std::size_t> CurrentRow() const = 0;
    virtual void SetCurrentRow(std::size_t row) = 0;
    virtual std::size_t TopRow() const = 0;
    virtual void SetTopRow(std::size_t row) = 0;
    virtual void EnsureVisible(std::size_t row) = 0;
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

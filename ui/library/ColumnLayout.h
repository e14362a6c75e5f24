// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/GridColumns.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace ravlo
{

// Width, place and visibility of the columns, as the layout string holds them: fields ended by "|", in groups
// of three: column number from 1, property name (Width, Order, Visible), value.
class ColumnLayout
{
public:
    static constexpr int lMaxWidth = 2000; // pixels; a wider column could not be grasped again

    struct Column
    {
        int lWidth = 0; // pixels at 96 dpi, 0 to lMaxWidth
        int lOrder = 0; // place from 1; all ten are different
        bool bVisible = true;
    };

    // The default: column 9 has no width, column 10, which the default string does not name, has 200 pixels.
    ColumnLayout();
    // Reads a layout string. Ignores a group that is unknown, incomplete or not numeric, limits widths to
    // their range, and makes places unique, keeping their order. A string without a usable group gives the
    // default.
    explicit ColumnLayout(std::wstring_view sLayout);

    // All ten columns, in the same form.
    std::wstring Text() const;

    const Column& At(std::size_t column) const { return m_colColumns[column]; } // from 0
    void SetWidth(std::size_t column, int lWidth);
    void SetVisible(std::size_t column, bool bVisible) { m_colColumns[column].bVisible = bVisible; }
    // Sets the order in which columns are shown; a column given twice or not at all keeps its place after the
    // others.
    void SetOrder(const std::array<std::size_t, colGridColumns.size()>& colShown);
    // The columns, counted from 0, in the order in which they are shown.
    std::array<std::size_t, colGridColumns.size()> Shown() const;

private:
    void Read(std::wstring_view sLayout);
    void SortOrders();

    std::array<Column, colGridColumns.size()> m_colColumns;
};

} // namespace ravlo

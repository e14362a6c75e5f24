// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/ListColumns.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// Width, place and visibility of the list's columns, as two layout strings hold them: fields ended by "|", in
// groups of three: column number from 1, property name (Width, Order, Visible), value. One string has the ten
// columns that hosts know, as programs without further columns write and read it; its orders are places among
// these ten. The other has the further columns, numbered on; its orders are places among all.
class ColumnLayout
{
public:
    static constexpr int lMaxWidth = 2000; // pixels; a wider column could not be grasped again

    struct Column
    {
        int lWidth = 0; // pixels at 96 dpi, 0 to lMaxWidth
        int lOrder = 0; // place from 1 among all columns; all are different
        bool bVisible = true;
    };

    // The default: column 9 has no width, column 10, which the default string does not name, has 200 pixels,
    // and the further ones are hidden.
    ColumnLayout();
    // Reads the layout strings. Ignores a group that is unknown, incomplete or not numeric, limits widths to
    // their range, and makes places unique, keeping their order. A string without a usable group gives the
    // default.
    explicit ColumnLayout(std::wstring_view sLayout, std::wstring_view sFurther = {});

    // The ten columns, in the same form.
    std::wstring Text() const;
    // The further ones, likewise.
    std::wstring FurtherText() const;

    const Column& At(std::size_t column) const { return m_colColumns[column]; } // from 0
    void SetWidth(std::size_t column, int lWidth);
    void SetVisible(std::size_t column, bool bVisible) { m_colColumns[column].bVisible = bVisible; }
    // Whether a user sees it: a visible column may have no width.
    bool IsShown(std::size_t column) const;
    // Hides a column, or shows it with a width.
    void Show(std::size_t column, bool bShow);
    // Puts these columns, in this order, into the places that they have together; the others keep theirs.
    // Ignores a column that is given twice.
    void SetOrder(const std::vector<std::size_t>& colShown);
    // The columns, counted from 0, in the order in which they are shown.
    std::vector<std::size_t> Shown() const;

private:
    void Read(std::wstring_view sLayout, std::size_t first, std::size_t end);
    std::vector<std::size_t> Sorted(std::size_t first, std::size_t end) const;
    void Place(const std::vector<std::size_t>& colShown);
    std::wstring TextOf(std::size_t column, std::size_t place) const;

    std::array<Column, listColumnCount> m_colColumns;
};

} // namespace ravlo

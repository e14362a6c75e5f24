// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ravlo
{

// Rows of cells in columns that are as wide as their widest cell, two blanks apart.
class TextTable
{
public:
    enum class Side
    {
        Left,
        Right
    };
    // One side for each column; every row has as many cells.
    explicit TextTable(std::vector<Side> sides) : m_sides(std::move(sides)) {}

    void Row(std::vector<std::wstring> cells) { m_rows.push_back(std::move(cells)); }
    // Each row in a line ended with LF, without blanks at its end.
    std::wstring Text() const;

private:
    std::vector<Side> m_sides;
    std::vector<std::vector<std::wstring>> m_rows;
};

} // namespace ravlo

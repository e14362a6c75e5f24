// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ravlo
{

// What a list window shows: sentences above, and a row for each cut with a sentence that is shown below the
// list while the row is chosen.
struct ListPage
{
    struct Column
    {
        std::wstring sHeading;
        int lWidth = 0; // pixels at 96 dpi
        bool bRight = false;
    };
    struct Row
    {
        std::vector<std::wstring> cells; // one for each column
        std::wstring sSentence;
        bool bMarked = false; // drawn bold
    };

    std::wstring sHeading; // lines are separated by CR LF
    std::vector<Column> columns;
    std::size_t nameColumn = 0; // by which a screen reader names a row
    std::vector<Row> rows;
    std::size_t first = 0; // the row to choose

    // For other programs: the heading, an empty line, and a table whose cells are separated by TAB.
    std::wstring Text() const;
};

} // namespace ravlo

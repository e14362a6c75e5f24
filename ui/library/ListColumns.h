// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "ui/library/GridColumns.h"
#include "ui/library/RecentPlays.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace ravlo
{

// The columns of the library window's own list: the ten that hosts know, in their order, then further ones,
// which are hidden until the user wants them.
inline constexpr std::size_t furtherColumnCount = 4;
inline constexpr std::size_t positionColumn = 0;
inline constexpr std::size_t nextToPlayColumn = colGridColumns.size() + 2;
inline constexpr std::size_t playsColumn = colGridColumns.size() + 3;
inline constexpr std::size_t listColumnCount = colGridColumns.size() + furtherColumnCount;

// A cut as it is listed.
struct CutInList
{
    const Cut& cCut;
    std::int32_t lPos = 0; // in the listing, from 1
    // How many cuts of its level are before it; nothing for a cut in no level. In several levels: the
    // smallest of its numbers.
    std::optional<std::size_t> before;
    DateTime dtNow = 0;
    std::optional<RecentPlays::Number> plays = {}; // nothing when the database keeps no record of them
};

// What rows are sorted by.
using SortValue = std::variant<std::wstring, double>;

struct ListColumn
{
    const wchar_t* sHeader;
    const wchar_t* sWidest; // see GridColumn
    int lWidth;             // the default, in pixels at 96 dpi
    bool bShown;            // unless the user hides it
    CellValue (*ValueOf)(const CutInList& cut);
    // Null: rows are sorted by what the cells show.
    SortValue (*SortedBy)(const CutInList& cut);
};

const ListColumn& ListColumnAt(std::size_t column);
std::wstring CellTextOf(std::size_t column, const CutInList& cut);
SortValue SortValueOf(std::size_t column, const CutInList& cut);

} // namespace ravlo

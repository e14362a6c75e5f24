// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <array>
#include <cstdint>
#include <string>
#include <variant>

namespace ravlo
{

using CellValue = std::variant<std::int32_t, std::wstring>;

// A column of the cut grid. Hosts and saved layouts know the key and the header.
struct GridColumn
{
    const wchar_t* sKey;
    const wchar_t* sHeader;
    // The widest number that the column usually shows, since numbers are never truncated; null for texts.
    const wchar_t* sWidest;
    // The cell of a cut in the row at that position, counted from 1.
    CellValue (*ValueOf)(const Cut& cCut, std::int32_t lPos);
};

// The columns, in their order.
inline constexpr std::array<GridColumn, 10> colGridColumns = {{
    {L"Pos", L"Pos", L"0000", [](const Cut&, std::int32_t lPos) { return CellValue(lPos); }},
    {L"ID", L"ID", L"0000", [](const Cut& cCut, std::int32_t) { return CellValue(cCut.ID()); }},
    {L"Artist", L"Artist", nullptr, [](const Cut& cCut, std::int32_t) { return CellValue(cCut.Artist()); }},
    {L"Title", L"Title", nullptr, [](const Cut& cCut, std::int32_t) { return CellValue(cCut.Title()); }},
    {L"Dur", L"Dur", L"000:00", [](const Cut& cCut, std::int32_t) { return CellValue(cCut.DurationText()); }},
    {L"Cat", L"Categories", nullptr,
     [](const Cut& cCut, std::int32_t) { return CellValue(cCut.CategoryText()); }},
    {L"Lvl", L"Lvl", L"00", [](const Cut& cCut, std::int32_t) { return CellValue(cCut.CatLevel()); }},
    {L"Year", L"Year", L"0000", [](const Cut& cCut, std::int32_t) { return CellValue(cCut.Year()); }},
    {L"Opener", L"Opener", nullptr,
     [](const Cut& cCut, std::int32_t) { return CellValue(std::wstring(cCut.Opener() ? L"Y" : L"N")); }},
    {L"Path", L"Path", nullptr, [](const Cut& cCut, std::int32_t) { return CellValue(cCut.Path()); }},
}};

} // namespace ravlo

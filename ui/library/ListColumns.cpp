// SPDX-License-Identifier: MIT
#include "ui/library/ListColumns.h"

#include "base/Text.h"

#include <array>
#include <limits>

namespace ravlo
{

namespace
{

constexpr std::size_t dateAndMinutes = 16; // characters of "yyyy-mm-ddThh:nn"

CellValue AlbumOf(const CutInList& cut) { return cut.cCut.Album(); }

CellValue LastPlayedOf(const CutInList& cut)
{
    const DateTime dtPlayed = cut.cCut.LastPlayed();
    if (dtPlayed == 0)
        return std::wstring(L"never");
    std::wstring sText = IsoText(dtPlayed).substr(0, dateAndMinutes);
    if (const std::size_t middle = sText.find(L'T'); middle != std::wstring::npos)
        sText[middle] = L' ';
    return sText;
}

// In picks of its level. A pick passes over cuts that would break a rule, so it may be fewer.
CellValue NextToPlayOf(const CutInList& cut)
{
    if (!cut.before)
        return std::wstring();
    return *cut.before == 0 ? std::wstring(L"next") : L"in " + CountText(*cut.before);
}

// A cut itself knows only its last play: none within the days, or at least one. The record may know less than
// that, as of plays before it began or under another key.
RecentPlays::Number PlaysKnownOf(const CutInList& cut)
{
    const DateTime dtPlayed = cut.cCut.LastPlayed();
    if (dtPlayed == 0 || dtPlayed < cut.dtNow - RecentPlays::dDays)
        return {cut.plays ? cut.plays->plays : 0, false};
    if (!cut.plays || cut.plays->plays == 0)
        return {1, true};
    return *cut.plays;
}

CellValue PlaysOf(const CutInList& cut)
{
    const RecentPlays::Number number = PlaysKnownOf(cut);
    return CountText(number.plays) + (number.bAtLeast ? L"+" : L"");
}

template <std::size_t column> CellValue GridValueOf(const CutInList& cut)
{
    return colGridColumns[column].ValueOf(cut.cCut, cut.lPos);
}

template <std::size_t column>
constexpr ListColumn FromGrid(int lWidth, SortValue (*SortedBy)(const CutInList&) = nullptr)
{
    return {colGridColumns[column].sHeader,
            colGridColumns[column].sWidest,
            lWidth,
            true,
            &GridValueOf<column>,
            SortedBy};
}

SortValue LengthOf(const CutInList& cut) { return static_cast<double>(cut.cCut.DurationmS()); }
SortValue TimePlayedOf(const CutInList& cut) { return cut.cCut.LastPlayed(); }
SortValue NumberOfPlaysOf(const CutInList& cut)
{
    const RecentPlays::Number number = PlaysKnownOf(cut);
    return static_cast<double>(number.plays) + (number.bAtLeast ? 0.5 : 0.0);
}
SortValue PicksBeforeOf(const CutInList& cut)
{
    return cut.before ? static_cast<double>(*cut.before) : std::numeric_limits<double>::infinity();
}

// The widths of the first nine are those of the known default layout.
constexpr std::array<ListColumn, listColumnCount> colListColumns = {{
    FromGrid<0>(44),
    FromGrid<1>(31),
    FromGrid<2>(130),
    FromGrid<3>(143),
    FromGrid<4>(43, &LengthOf),
    FromGrid<5>(154),
    FromGrid<6>(26),
    FromGrid<7>(34),
    FromGrid<8>(0),
    FromGrid<9>(200),
    {L"Album", nullptr, 130, false, &AlbumOf, nullptr},
    {L"Last played", L"0000-00-00 00:00", 110, false, &LastPlayedOf, &TimePlayedOf},
    {L"Next to play", L"in 0000", 80, false, &NextToPlayOf, &PicksBeforeOf},
    {L"Plays (28 days)", L"000+", 90, false, &PlaysOf, &NumberOfPlaysOf},
}};

} // namespace

const ListColumn& ListColumnAt(std::size_t column) { return colListColumns[column]; }

std::wstring CellTextOf(std::size_t column, const CutInList& cut)
{
    const CellValue value = colListColumns[column].ValueOf(cut);
    const std::wstring* pText = std::get_if<std::wstring>(&value);
    return pText ? *pText : DecimalText(std::get<std::int32_t>(value));
}

SortValue SortValueOf(std::size_t column, const CutInList& cut)
{
    const ListColumn& listed = colListColumns[column];
    if (listed.SortedBy)
        return listed.SortedBy(cut);
    const CellValue value = listed.ValueOf(cut);
    if (const std::wstring* pText = std::get_if<std::wstring>(&value))
        return *pText;
    return static_cast<double>(std::get<std::int32_t>(value));
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/health/HealthPictures.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

using Ink = Picture::Ink;
using Anchor = Picture::Anchor;

constexpr std::size_t hours = 24;
constexpr int lShades = 4;

int Rounded(double dValue) { return static_cast<int>(std::lround(dValue)); }

// The area of a picture between its margins.
struct Area
{
    int lLeft;
    int lTop;
    int lRight;
    int lBottom;

    int Width() const { return lRight - lLeft; }
    int Height() const { return lBottom - lTop; }
    bool IsTooSmall(const PictureRoom& room) const
    {
        return Width() < 4 * room.lLine || Height() < room.lLine;
    }
};

void DashedAcross(Picture& picture, Ink eInk, const Area& area, int lY, const PictureRoom& room)
{
    for (int lX = area.lLeft; lX < area.lRight; lX += room.Scaled(9))
        picture.colBoxes.push_back(
            {eInk, lX, lY, std::min(room.Scaled(6), area.lRight - lX), room.Scaled(2)});
}

void DashedDown(Picture& picture, Ink eInk, const Area& area, int lX, const PictureRoom& room)
{
    for (int lY = area.lTop; lY < area.lBottom; lY += room.Scaled(9))
        picture.colBoxes.push_back(
            {eInk, lX - room.Scaled(1), lY, room.Scaled(2), std::min(room.Scaled(6), area.lBottom - lY)});
}

// The cuts by their plays, the fewest first.
std::vector<std::size_t> ByPlays(const LevelHealth& level)
{
    std::vector<std::size_t> colCuts(level.cuts.size());
    std::iota(colCuts.begin(), colCuts.end(), std::size_t{0});
    std::stable_sort(colCuts.begin(), colCuts.end(), [&](std::size_t a, std::size_t b) {
        return level.cuts[a].lPlays < level.cuts[b].lPlays;
    });
    return colCuts;
}

// The artists with the smallest gaps, which are the ones that matter.
std::vector<std::size_t> SoonestBack(const LevelHealth& level, std::size_t most)
{
    std::vector<std::size_t> colArtists;
    for (std::size_t artist = 0; artist < level.artists.size(); ++artist)
        if (level.artists[artist].distances)
            colArtists.push_back(artist);
    std::stable_sort(colArtists.begin(), colArtists.end(), [&](std::size_t a, std::size_t b) {
        return level.artists[a].distances->dSmallest < level.artists[b].distances->dSmallest;
    });
    colArtists.resize(std::min(most, colArtists.size()));
    return colArtists;
}

using Row = std::array<std::int32_t, hours>;

std::vector<Row> SharedRows(const LevelHealth& level, std::size_t cutsPerRow)
{
    std::vector<Row> colRows((level.cuts.size() + cutsPerRow - 1) / cutsPerRow);
    for (std::size_t cut = 0; cut < level.cuts.size(); ++cut)
        for (std::size_t hour = 0; hour < hours; ++hour)
            colRows[cut / cutsPerRow][hour] += level.cuts[cut].colByHour[hour];
    return colRows;
}

std::wstring Shortened(const std::wstring& sText, std::size_t most)
{
    return sText.size() <= most ? sText : sText.substr(0, most - 1) + L'\x2026';
}

class GapsDrawing
{
public:
    GapsDrawing(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen)
        : m_level(level), m_room(room), m_chosen(chosen), m_lRow(room.lLine + room.Scaled(4)),
          m_lNames(std::min(room.lWidth / 3, room.lCharacter * 26)), m_area{m_lNames + room.Scaled(8),
                                                                            room.lLine + room.Scaled(6),
                                                                            room.lWidth - room.Scaled(8),
                                                                            room.lHeight - room.lLine -
                                                                                room.Scaled(6)}
    {
    }

    Picture Take()
    {
        if (m_area.IsTooSmall(m_room))
            return {};
        m_colArtists = SoonestBack(m_level, static_cast<std::size_t>(m_area.Height() / m_lRow));
        if (m_colArtists.empty())
            return {};
        m_area.lBottom = m_area.lTop + static_cast<int>(m_colArtists.size()) * m_lRow;
        m_dMost = std::max({1, m_level.lArtistSepMins, m_level.lAttainableArtistMins});
        for (const std::size_t artist : m_colArtists)
            m_dMost = std::max(m_dMost, m_level.artists[artist].distances->dMedian);
        int lTop = m_area.lTop;
        for (const std::size_t artist : m_colArtists)
        {
            AddArtist(artist, lTop);
            lTop += m_lRow;
        }
        if (m_level.lArtistSepMins > 0)
            AddLimit(Ink::Set, m_level.lArtistSepMins, 0, L"set ");
        AddLimit(Ink::Attainable, m_level.lAttainableArtistMins, m_area.lBottom + m_room.Scaled(4),
                 L"attainable ");
        return std::move(m_picture);
    }

private:
    int At(double dMins) const
    {
        return m_area.lLeft + Rounded(std::min(1.0, dMins / (1.1 * m_dMost)) * m_area.Width());
    }

    void AddArtist(std::size_t artist, int lTop)
    {
        const ArtistUse& use = m_level.artists[artist];
        const PlayDistances& gaps = *use.distances;
        const int lMiddle = lTop + m_lRow / 2;
        if (artist == m_chosen)
            m_picture.colBoxes.push_back({Ink::Chosen, 0, lTop, m_room.lWidth, m_lRow});
        const auto most = static_cast<std::size_t>(std::max(4, m_lNames / std::max(1, m_room.lCharacter)));
        m_picture.colTexts.push_back({Ink::Text, Anchor::Right, m_lNames, lMiddle - m_room.lLine / 2,
                                      Shortened(use.cName.Text(), most)});
        const int lThin = m_room.Scaled(2);
        m_picture.colBoxes.push_back({Ink::Bar, At(gaps.dSmallest), lMiddle - lThin / 2,
                                      std::max(1, At(gaps.dLargest) - At(gaps.dSmallest)), lThin});
        m_picture.colBoxes.push_back(
            {Ink::Bar, At(gaps.dMedian) - lThin / 2, lMiddle - m_room.Scaled(5), lThin, m_room.Scaled(10)});
        const Ink eInk = gaps.dSmallest < m_level.lArtistSepMins ? Ink::Bad : Ink::Bar;
        m_picture.colDots.push_back({eInk, At(gaps.dSmallest), lMiddle, m_room.Scaled(4)});
    }

    void AddLimit(Ink eInk, std::int32_t lMins, int lTextTop, const wchar_t* sWhat)
    {
        const int lX = At(lMins);
        DashedDown(m_picture, eInk, m_area, lX, m_room);
        const std::wstring sText = sWhat + DecimalText(lMins) + L" min";
        const int lHalf = static_cast<int>(sText.size()) * m_room.lCharacter / 2;
        const Anchor eAnchor = lX + lHalf > m_room.lWidth ? Anchor::Right : Anchor::Middle;
        m_picture.colTexts.push_back(
            {eInk, eAnchor, eAnchor == Anchor::Right ? m_room.lWidth : lX, lTextTop, sText});
    }

    const LevelHealth& m_level;
    const PictureRoom& m_room;
    std::optional<std::size_t> m_chosen;
    int m_lRow;
    int m_lNames;
    Area m_area;
    double m_dMost = 1;
    std::vector<std::size_t> m_colArtists;
    Picture m_picture;
};

} // namespace

Picture PlaysPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen)
{
    const Area area{0, room.lLine + room.Scaled(4), room.lWidth, room.lHeight - room.lLine - room.Scaled(6)};
    if (level.cuts.empty() || area.IsTooSmall(room))
        return {};
    Picture picture;
    const std::vector<std::size_t> colCuts = ByPlays(level);
    const double dScale = area.Height() / static_cast<double>(std::max(1, level.lMostPlays));
    const double dStep = area.Width() / static_cast<double>(colCuts.size());
    const int lGap = dStep >= room.Scaled(5) ? room.Scaled(1) : 0;
    for (std::size_t place = 0; place < colCuts.size();)
    {
        // As many cuts as begin in one column of pixels share a bar, the one with the fewest plays its
        // height.
        const int lFrom = area.lLeft + static_cast<int>(static_cast<double>(place) * dStep);
        const std::size_t cut = colCuts[place];
        bool bChosen = false;
        int lTo = lFrom;
        for (; place < colCuts.size() && lTo <= lFrom; ++place)
        {
            bChosen |= colCuts[place] == chosen;
            lTo = area.lLeft + static_cast<int>(static_cast<double>(place + 1) * dStep);
        }
        const int lPlays = level.cuts[cut].lPlays;
        const int lWidth = std::max(1, lTo - lFrom - lGap);
        if (bChosen)
            picture.colBoxes.push_back({Ink::Chosen, lFrom, area.lTop, std::max(lWidth, room.Scaled(2)),
                                        area.Height() + room.Scaled(4)});
        const int lHeight = std::max(lPlays > 0 ? 1 : 0, Rounded(lPlays * dScale));
        const Ink eInk = lPlays * 2 < level.dMeanPlays ? Ink::Bad : Ink::Bar;
        // A cut that never plays has a stub below the axis.
        picture.colBoxes.push_back(lPlays > 0
                                       ? Picture::Box{eInk, lFrom, area.lBottom - lHeight, lWidth, lHeight}
                                       : Picture::Box{eInk, lFrom, area.lBottom, lWidth, room.Scaled(4)});
    }
    picture.colBoxes.push_back({Ink::Faint, area.lLeft, area.lBottom, area.Width(), room.Scaled(1)});
    const int lMean = area.lBottom - Rounded(level.dMeanPlays * dScale);
    DashedAcross(picture, Ink::Set, area, lMean, room);
    picture.colTexts.push_back({Ink::Set, Anchor::Left, 0, lMean - room.lLine - room.Scaled(1),
                                L"mean " + TextFromStore(NumberText(level.dMeanPlays, 1))});
    const int lBelow = area.lBottom + room.Scaled(6);
    picture.colTexts.push_back(
        {Ink::Text, Anchor::Left, 0, lBelow, L"fewest: " + DecimalText(level.lFewestPlays)});
    picture.colTexts.push_back(
        {Ink::Text, Anchor::Right, room.lWidth, lBelow, L"most: " + DecimalText(level.lMostPlays)});
    return picture;
}

Picture GapsPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen)
{
    return GapsDrawing(level, room, chosen).Take();
}

Picture HoursPicture(const LevelHealth& level, const PictureRoom& room, std::optional<std::size_t> chosen)
{
    const Area area{room.Scaled(6), room.lLine + room.Scaled(2), room.lWidth,
                    room.lHeight - room.lLine - room.Scaled(6)};
    if (level.cuts.empty() || area.IsTooSmall(room))
        return {};
    Picture picture;
    const auto mostRows = static_cast<std::size_t>(std::max(1, area.Height() / room.Scaled(2)));
    const std::size_t cutsPerRow = (level.cuts.size() + mostRows - 1) / mostRows;
    const std::vector<Row> colRows = SharedRows(level, cutsPerRow);
    std::int32_t lMost = 1;
    for (const Row& row : colRows)
        lMost = std::max(lMost, *std::max_element(row.begin(), row.end()));
    const double dCell = area.Width() / static_cast<double>(hours);
    const double dRow = std::min(static_cast<double>(room.lLine + room.Scaled(4)),
                                 area.Height() / static_cast<double>(colRows.size()));
    const int lSpace = room.Scaled(1);
    for (std::size_t hour = 0; hour < hours; ++hour)
        picture.colTexts.push_back({Ink::Text, Anchor::Middle,
                                    area.lLeft + Rounded((static_cast<double>(hour) + 0.5) * dCell), 0,
                                    CountText(hour)});
    for (std::size_t row = 0; row < colRows.size(); ++row)
    {
        const int lTop = area.lTop + Rounded(static_cast<double>(row) * dRow);
        const int lHeight = std::max(1, area.lTop + Rounded(static_cast<double>(row + 1) * dRow) - lTop -
                                            (dRow >= 4 ? lSpace : 0));
        if (chosen && *chosen / cutsPerRow == row)
            picture.colBoxes.push_back({Ink::Chosen, 0, lTop - lSpace, room.lWidth, lHeight + 2 * lSpace});
        for (std::size_t hour = 0; hour < hours; ++hour)
        {
            const std::int32_t lPlays = colRows[row][hour];
            if (lPlays == 0)
                continue;
            const int lShade = (lPlays * lShades + lMost - 1) / lMost; // 1 to 4
            const int lLeft = area.lLeft + Rounded(static_cast<double>(hour) * dCell);
            const int lRight = area.lLeft + Rounded(static_cast<double>(hour + 1) * dCell);
            picture.colBoxes.push_back({static_cast<Ink>(static_cast<int>(Ink::Heat1) + lShade - 1), lLeft,
                                        lTop, lRight - lLeft - lSpace, lHeight});
        }
    }
    int lX = area.lLeft;
    const int lBelow = room.lHeight - room.lLine;
    const std::wstring sLegend = L"plays in the hour: 1";
    picture.colTexts.push_back({Ink::Text, Anchor::Left, lX, lBelow, sLegend});
    lX += static_cast<int>(sLegend.size() + 1) * room.lCharacter;
    for (int lShade = 0; lShade < lShades; ++lShade, lX += room.lLine + lSpace)
        picture.colBoxes.push_back({static_cast<Ink>(static_cast<int>(Ink::Heat1) + lShade), lX,
                                    lBelow + room.lLine / 4, room.lLine, room.lLine / 2});
    picture.colTexts.push_back(
        {Ink::Text, Anchor::Left, lX + room.lCharacter / 2, lBelow, DecimalText(lMost)});
    return picture;
}

} // namespace ravlo

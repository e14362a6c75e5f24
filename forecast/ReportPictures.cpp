// SPDX-License-Identifier: MIT
#include "forecast/ReportPictures.h"

#include "forecast/ReportText.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr double dWidth = 720; // of every picture, in SVG units; the page scales it
constexpr std::size_t mostArtists = 30;
constexpr std::size_t mostRows = 400;
constexpr std::size_t hours = 24;

// A picture that is built up from its elements.
class SvgPicture
{
public:
    SvgPicture(const std::string& sId, const std::string& sTitle, double dHeight)
        : m_sSvg("<svg role=\"img\" aria-labelledby=\"" + sId + "\" viewBox=\"0 0 " + NumberText(dWidth) +
                 ' ' + NumberText(dHeight) + "\"><title id=\"" + sId + "\">" + sTitle + "</title>")
    {
    }
    void Text(double dX, double dY, const std::string& sText, const char* sAnchor = "start")
    {
        m_sSvg += "<text x=\"" + NumberText(dX) + "\" y=\"" + NumberText(dY) + "\" text-anchor=\"" + sAnchor +
                  "\">" + sText + "</text>";
    }
    void Line(const char* sClass, double dX1, double dY1, double dX2, double dY2)
    {
        Path(sClass, 'M' + Point(dX1, dY1) + 'L' + Point(dX2, dY2));
    }
    void Path(const std::string& sClass, const std::string& sPath)
    {
        m_sSvg += "<path class=\"" + sClass + "\" d=\"" + sPath + "\"/>";
    }
    void Strokes(const std::string& sClass, double dStroke, const std::string& sPath)
    {
        m_sSvg += "<path class=\"" + sClass + "\" stroke-width=\"" + NumberText(dStroke) + "\" d=\"" + sPath +
                  "\"/>";
    }
    void Dot(const char* sClass, double dX, double dY)
    {
        m_sSvg += std::string("<circle class=\"") + sClass + "\" cx=\"" + NumberText(dX) + "\" cy=\"" +
                  NumberText(dY) + "\" r=\"3\"/>";
    }
    static std::string Point(double dX, double dY) { return NumberText(dX) + ' ' + NumberText(dY); }
    std::string Done() { return std::move(m_sSvg) + "</svg>"; }

private:
    std::string m_sSvg;
};

std::vector<std::int32_t> PlaysAscending(const LevelHealth& level)
{
    std::vector<std::int32_t> colPlays;
    for (const CutUse& cut : level.cuts)
        colPlays.push_back(cut.lPlays);
    std::sort(colPlays.begin(), colPlays.end());
    return colPlays;
}

// The artists with the smallest distances, which are the ones that matter.
std::vector<const ArtistUse*> SoonestBack(const LevelHealth& level)
{
    std::vector<const ArtistUse*> colArtists;
    for (const ArtistUse& artist : level.artists)
        if (artist.distances)
            colArtists.push_back(&artist);
    std::stable_sort(colArtists.begin(), colArtists.end(), [](const ArtistUse* left, const ArtistUse* right) {
        return left->distances->dSmallest < right->distances->dSmallest;
    });
    if (colArtists.size() > mostArtists)
        colArtists.resize(mostArtists);
    return colArtists;
}

// The plays by hour of as many neighbouring cuts as share a row.
using Row = std::array<std::int32_t, hours>;
std::vector<Row> Rows(const LevelHealth& level, std::size_t cutsPerRow)
{
    std::vector<Row> colRows((level.cuts.size() + cutsPerRow - 1) / cutsPerRow);
    for (std::size_t cut = 0; cut < level.cuts.size(); ++cut)
        for (std::size_t hour = 0; hour < hours; ++hour)
            colRows[cut / cutsPerRow][hour] += level.cuts[cut].colByHour[hour];
    return colRows;
}

// The cells of one shade as one path: a short horizontal stroke each.
std::string CellsOf(const std::vector<Row>& colRows, int lShade, std::int32_t lMost, double dCell,
                    double dRow, double dTop)
{
    constexpr int lShades = 4;
    std::string sPath;
    for (std::size_t row = 0; row < colRows.size(); ++row)
        for (std::size_t hour = 0; hour < hours; ++hour)
        {
            const std::int32_t lPlays = colRows[row][hour];
            if (lPlays == 0 || (lPlays * lShades + lMost - 1) / lMost != lShade)
                continue;
            sPath += 'M' +
                     SvgPicture::Point(static_cast<double>(hour) * dCell,
                                       dTop + (static_cast<double>(row) + 0.5) * dRow) +
                     'h' + NumberText(dCell - 1);
        }
    return sPath;
}

} // namespace

std::string PlaysPicture(const LevelHealth& level, const std::string& sId)
{
    constexpr double dTop = 16;
    constexpr double dBottom = 150;
    const std::vector<std::int32_t> colPlays = PlaysAscending(level);
    SvgPicture picture(sId, "Plays of every cut, fewest first", 172);
    if (colPlays.empty())
        return picture.Done();
    const double dScale = (dBottom - dTop) / std::max(1, colPlays.back());
    const double dStep = dWidth / static_cast<double>(colPlays.size());
    std::string sPath = 'M' + SvgPicture::Point(0, dBottom);
    for (std::size_t first = 0; first < colPlays.size();)
    {
        const auto next = std::upper_bound(colPlays.begin(), colPlays.end(), colPlays[first]);
        const auto end = static_cast<std::size_t>(next - colPlays.begin());
        sPath += 'V' + NumberText(dBottom - colPlays[first] * dScale) + 'H' +
                 NumberText(static_cast<double>(end) * dStep);
        first = end;
    }
    picture.Path("bar", sPath + 'V' + NumberText(dBottom) + 'Z');
    picture.Line("axis", 0, dBottom, dWidth, dBottom);
    const double dMean = dBottom - level.dMeanPlays * dScale;
    picture.Line("set", 0, dMean, dWidth, dMean);
    picture.Text(0, dMean - 4, "mean " + NumberText(level.dMeanPlays, 1));
    picture.Text(0, dBottom + 16, "fewest: " + NumberText(colPlays.front()));
    picture.Text(dWidth, dBottom + 16, "most: " + NumberText(colPlays.back()), "end");
    return picture.Done();
}

std::string DistancesPicture(const LevelHealth& level, const std::string& sId)
{
    constexpr double dLabels = 210;
    constexpr double dRow = 18;
    constexpr double dTop = 24;
    const std::vector<const ArtistUse*> colArtists = SoonestBack(level);
    const double dBottom = dTop + dRow * static_cast<double>(colArtists.size());
    SvgPicture picture(sId, "Minutes between plays of an artist: smallest, median, largest", dBottom + 20);
    double dMost = std::max({1, level.lArtistSepMins, level.lAttainableArtistMins});
    for (const ArtistUse* artist : colArtists)
        dMost = std::max(dMost, artist->distances->dMedian);
    const auto at = [&](double dMins) {
        return dLabels + std::min(1.0, dMins / (1.1 * dMost)) * (dWidth - dLabels);
    };
    double dY = dTop + dRow / 2;
    for (const ArtistUse* artist : colArtists)
    {
        const PlayDistances& distances = *artist->distances;
        picture.Text(dLabels - 8, dY + 4, HtmlText(Shortened(artist->cName.Text(), 32)), "end");
        picture.Line("range", at(distances.dSmallest), dY, at(distances.dLargest), dY);
        picture.Dot(distances.dSmallest < level.lArtistSepMins ? "bad" : "good", at(distances.dSmallest), dY);
        picture.Line("median", at(distances.dMedian), dY - 5, at(distances.dMedian), dY + 5);
        dY += dRow;
    }
    const auto limit = [&](const char* sClass, std::int32_t lMins, double dTextY, const char* sWhat) {
        picture.Line(sClass, at(lMins), dTop, at(lMins), dBottom);
        picture.Text(at(lMins), dTextY, sWhat + NumberText(lMins),
                     at(lMins) > dWidth - 80 ? "end" : "middle");
    };
    limit("set", level.lArtistSepMins, dTop - 8, "set ");
    limit("attainable", level.lAttainableArtistMins, dBottom + 14, "attainable ");
    return picture.Done();
}

std::string HoursPicture(const LevelHealth& level, const std::string& sId)
{
    constexpr double dTop = 18;
    constexpr double dCell = dWidth / hours;
    constexpr double dMostHeight = 800;
    const std::size_t cutsPerRow = std::max<std::size_t>(1, (level.cuts.size() + mostRows - 1) / mostRows);
    const std::vector<Row> colRows = Rows(level, cutsPerRow);
    std::int32_t lMost = 1;
    for (const Row& row : colRows)
        lMost = std::max(lMost, *std::max_element(row.begin(), row.end()));
    const double dRow =
        std::min(12.0, dMostHeight / static_cast<double>(std::max<std::size_t>(1, colRows.size())));
    SvgPicture picture(sId, "Hours of the day in which each cut played, in rotation order",
                       dTop + dRow * static_cast<double>(colRows.size()));
    for (std::size_t hour = 0; hour < hours; ++hour)
        picture.Text((static_cast<double>(hour) + 0.5) * dCell, 12, std::to_string(hour), "middle");
    for (int lShade = 1; lShade <= 4; ++lShade)
        picture.Strokes("heat" + std::to_string(lShade), dRow * 0.9,
                        CellsOf(colRows, lShade, lMost, dCell, dRow, dTop));
    return picture.Done();
}

} // namespace ravlo

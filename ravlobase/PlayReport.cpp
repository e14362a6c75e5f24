// SPDX-License-Identifier: MIT
#include "ravlobase/PlayReport.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "base/csv/CsvWriter.h"

#include <algorithm>
#include <vector>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sPlayHeading = L"start,artist,title,album,duration,key,categories,level\n";
constexpr const wchar_t* sCutHeading = L"artist,title,album,key,plays,duration,first,last\n";
constexpr const wchar_t* sArtistHeading = L"artist,plays,duration,first,last\n";

std::wstring TwoDigits(std::int64_t number) { return (number < 10 ? L"0" : L"") + DecimalText(number); }

std::wstring PlayLine(const RecordedPlay& play)
{
    const std::wstring fields[] = {
        IsoText(play.dtPlayed),           play.sArtist, play.sTitle,      play.sAlbum,
        PlayLengthText(play.lDurationmS), play.sKey,    play.sCategories, DecimalText(play.lCatLevel)};
    return CsvLine(fields);
}

} // namespace

std::optional<PlaysBy> PlaysByNamed(std::wstring_view sBy)
{
    if (sBy.empty())
        return PlaysBy::Play;
    if (EqualIgnoringCase(sBy, L"cut"))
        return PlaysBy::Cut;
    if (EqualIgnoringCase(sBy, L"artist"))
        return PlaysBy::Artist;
    return std::nullopt;
}

std::wstring PlayLengthText(std::int64_t lengthmS)
{
    const std::int64_t seconds = (lengthmS + 500) / 1000;
    return DecimalText(seconds / 3600) + L":" + TwoDigits(seconds / 60 % 60) + L":" + TwoDigits(seconds % 60);
}

PlayReport::PlayReport(PlaysBy eBy)
    : m_eBy(eBy), m_sText(eBy == PlaysBy::Play  ? sPlayHeading
                          : eBy == PlaysBy::Cut ? sCutHeading
                                                : sArtistHeading)
{
}

void PlayReport::Add(const RecordedPlay& play)
{
    if (m_eBy == PlaysBy::Play)
    {
        m_sText += PlayLine(play);
        return;
    }
    const bool bCut = m_eBy == PlaysBy::Cut;
    Sum& sum = m_sums[{FoldCase(play.sArtist), bCut ? FoldCase(play.sTitle) : L"",
                       bCut ? FoldCase(play.sAlbum) : L"", bCut ? FoldCase(play.sKey) : L""}];
    if (sum.plays++ == 0)
        sum.first = play;
    sum.dtLast = play.dtPlayed;
    sum.lengthmS += play.lDurationmS;
}

std::wstring PlayReport::SumLine(const Sum& sum) const
{
    const RecordedPlay& cut = sum.first;
    std::vector<std::wstring> fields{cut.sArtist};
    if (m_eBy == PlaysBy::Cut)
        fields.insert(fields.end(), {cut.sTitle, cut.sAlbum, cut.sKey});
    fields.insert(fields.end(), {DecimalText(sum.plays), PlayLengthText(sum.lengthmS), IsoText(cut.dtPlayed),
                                 IsoText(sum.dtLast)});
    return CsvLine(fields);
}

std::wstring PlayReport::Text()
{
    std::vector<const Sum*> sums;
    for (const auto& [key, sum] : m_sums)
        sums.push_back(&sum);
    std::stable_sort(sums.begin(), sums.end(),
                     [](const Sum* left, const Sum* right) { return left->plays > right->plays; });
    for (const Sum* sum : sums)
        m_sText += SumLine(*sum);
    return std::move(m_sText);
}

} // namespace ravlo

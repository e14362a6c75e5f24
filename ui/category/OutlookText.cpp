// SPDX-License-Identifier: MIT
#include "ui/category/OutlookText.h"

#include "base/Text.h"

namespace ravlo
{

namespace
{

std::wstring Every(std::size_t places)
{
    return places <= 1 ? L"every cut" : L"every " + std::to_wstring(places) + L" cuts";
}

// Empty when no artist has several cuts.
std::wstring CommonestText(const MakeUp& makeUp)
{
    if (makeUp.commonest.cuts < 2)
        return {};
    return L" " + makeUp.commonest.cName.Text() + L" has " + std::to_wstring(makeUp.commonest.cuts) +
           L" of its " + std::to_wstring(makeUp.cuts) + L" cuts.";
}

std::wstring TooLongText(const LevelOutlook& level, std::int32_t lArtistMins, std::int32_t lTitleMins)
{
    const bool bArtist = lArtistMins > level.AttainableArtistMins();
    const bool bTitle = lTitleMins > level.AttainableTitleMins();
    if (!bArtist && !bTitle)
        return {};
    const std::wstring sArtist = bArtist ? L"Artist " + DecimalText(lArtistMins) : L"";
    const std::wstring sTitle =
        bTitle ? (bArtist ? L" and title " : L"Title ") + DecimalText(lTitleMins) : L"";
    return L" " + sArtist + sTitle + L" cannot be kept.";
}

} // namespace

std::wstring OutlookText(const LevelOutlook& level, std::int32_t lArtistMins, std::int32_t lTitleMins)
{
    if (level.makeUp.cuts == 0)
        return L"This level has no cuts.";
    const std::wstring sLabel = L"Attainable for this level: ";
    if (level.rate.asked == 0)
        return sLabel + L"artist " + Every(level.ArtistPlaces()) + L", title " + Every(level.TitlePlaces()) +
               L"." + CommonestText(level.makeUp) +
               L" How many minutes that is cannot be told: too few of its cuts have played of late.";
    return sLabel + L"artist " + DecimalText(level.AttainableArtistMins()) + L" min, title " +
           DecimalText(level.AttainableTitleMins()) + L" min." + TooLongText(level, lArtistMins, lTitleMins) +
           L" By its last plays it is asked about every " + SlotText(level.rate) + L"." +
           CommonestText(level.makeUp);
}

} // namespace ravlo

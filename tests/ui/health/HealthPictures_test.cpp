// SPDX-License-Identifier: MIT
#include "ui/health/HealthPictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ravlo::test
{
namespace
{

using Ink = Picture::Ink;

LevelHealth LevelOf(std::size_t cuts)
{
    LevelHealth level;
    level.lArtistSepMins = 60;
    level.lAttainableArtistMins = 90;
    for (std::size_t cut = 0; cut < cuts; ++cut)
    {
        CutUse use;
        use.lPlays = static_cast<std::int32_t>(cut % 7);
        use.colByHour[cut % 24] = use.lPlays;
        level.lMostPlays = std::max(level.lMostPlays, use.lPlays);
        level.dMeanPlays += use.lPlays / static_cast<double>(cuts);
        level.cuts.push_back(use);
        ArtistUse artist;
        artist.cName = TextKey(L"An artist with a name that is long, number " + std::to_wstring(cut));
        artist.distances = PlayDistances{40.0 + static_cast<double>(cut), 100, 5000};
        level.artists.push_back(artist);
    }
    return level;
}

std::size_t CountOf(const Picture& picture, Ink eInk)
{
    return static_cast<std::size_t>(std::count_if(picture.colBoxes.begin(), picture.colBoxes.end(),
                                                  [&](const Picture::Box& box) { return box.eInk == eInk; }));
}

// Every picture at every size and resolution: nothing reaches out of its room.
TEST(HealthPicturesTest, StayInTheirRoom)
{
    for (const std::size_t cuts : {0u, 1u, 12u, 500u, 30'000u})
    {
        const LevelHealth level = LevelOf(cuts);
        for (const auto& [lWidth, lHeight, dScale] : {std::tuple(500, 300, 1.0), std::tuple(1000, 500, 2.0),
                                                      std::tuple(90, 60, 1.5), std::tuple(0, 0, 1.0)})
        {
            const int lLine = static_cast<int>(16 * dScale);
            const PictureRoom room{lWidth, lHeight, lLine, static_cast<int>(7 * dScale), dScale};
            for (const Picture& picture :
                 {PlaysPicture(level, room, 0), GapsPicture(level, room, 0), HoursPicture(level, room, 0)})
            {
                for (const Picture::Box& box : picture.colBoxes)
                {
                    EXPECT_GE(box.lLeft, 0);
                    EXPECT_LE(box.lLeft + box.lWidth, lWidth + room.Scaled(2));
                    EXPECT_LE(box.lTop + box.lHeight, lHeight);
                    EXPECT_GE(box.lWidth, 0);
                }
                for (const Picture::Text& text : picture.colTexts)
                    EXPECT_LE(text.lTop + lLine, lHeight + 1);
            }
        }
    }
}

TEST(HealthPicturesTest, PlaysMarkWhatIsBelowHalfTheMean)
{
    LevelHealth level = LevelOf(0);
    for (const std::int32_t lPlays : {10, 0, 4, 10})
        level.cuts.emplace_back().lPlays = lPlays;
    level.lMostPlays = 10;
    level.dMeanPlays = 6;
    const Picture picture = PlaysPicture(level, {400, 200}, 3);
    EXPECT_EQ(CountOf(picture, Ink::Bad), 1u);
    EXPECT_EQ(CountOf(picture, Ink::Bar), 3u);
    EXPECT_EQ(CountOf(picture, Ink::Chosen), 1u);
    EXPECT_EQ(picture.colTexts[0].sText, L"mean 6");
}

TEST(HealthPicturesTest, GapsBelowTheSetSeparationAreMarked)
{
    const Picture picture = GapsPicture(LevelOf(30), {600, 900}, 2);
    ASSERT_GT(picture.colDots.size(), 25u);
    EXPECT_EQ(picture.colDots[0].eInk, Ink::Bad) << "40 minutes";
    EXPECT_EQ(picture.colDots[25].eInk, Ink::Bar) << "65 minutes";
    EXPECT_EQ(CountOf(picture, Ink::Chosen), 1u);
    const auto last = picture.colTexts.rbegin();
    EXPECT_EQ(last->sText, L"attainable 90 min");
    EXPECT_EQ((last + 1)->sText, L"set 60 min");
}

TEST(HealthPicturesTest, HoursShareRowsWhenThereAreManyCuts)
{
    LevelHealth level = LevelOf(0);
    level.cuts.resize(3000);
    level.cuts[0].colByHour[5] = 1;
    level.cuts[2999].colByHour[5] = 4;
    const Picture picture = HoursPicture(level, {600, 400}, 2999);
    EXPECT_EQ(CountOf(picture, Ink::Heat1), 2u) << "a cell and its shade in the legend";
    EXPECT_EQ(CountOf(picture, Ink::Heat4), 2u);
    EXPECT_EQ(CountOf(picture, Ink::Chosen), 1u);
    EXPECT_EQ(picture.colTexts.back().sText, L"4");
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "rotation/PlayHistory.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

constexpr DateTime dtNoon = 46000.5;

class PlayHistoryTest : public testing::Test
{
protected:
    std::shared_ptr<FakeCut> AddCut(const std::wstring& sKey, const std::wstring& sArtist,
                                    const std::wstring& sTitle, const std::wstring& sAlbum = {})
    {
        auto cCut = std::make_shared<FakeCut>();
        cCut->SetKey(sKey);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        cCut->SetAlbum(sAlbum);
        cDataBase.colCuts.push_back(cCut);
        return cCut;
    }

    // What a host reports: a copy of its own with a play time.
    static std::shared_ptr<Cut> PlayOf(const Cut& cCut, DateTime dtWhen)
    {
        std::shared_ptr<Cut> cPlay = PlainCopyOf(cCut);
        cPlay->SetLastPlayed(dtWhen);
        return cPlay;
    }

    FakeDataBase cDataBase;
    PlayHistory cHistory;
};

TEST_F(PlayHistoryTest, APlayIsEnteredUnderArtistTitleAndAlbumAsTheDatabasesOwnCutWithThePlayTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), cCut);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"Sun"), cCut);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"Sky"), cCut);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
}

TEST_F(PlayHistoryTest, SpellingsThatDifferOnlyInCaseAreOneEntryThatTheLaterReportTakes)
{
    const auto cFirst = AddCut(L"a.mp3", L"elan \u00e9t\u00e9", L"One");
    const auto cSecond = AddCut(L"b.mp3", L"ELAN \u00c9T\u00c9", L"Two");
    cHistory.Record(*PlayOf(*cFirst, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cSecond, dtNoon), cDataBase);
    for (const wchar_t* sSpelling : {L"elan \u00e9t\u00e9", L"ELAN \u00c9T\u00c9", L"Elan \u00c9t\u00e9"})
        EXPECT_EQ(cHistory.ArtistHistoryCut(sSpelling), cSecond);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"one"), cFirst);
}

TEST_F(PlayHistoryTest, BlanksTellKeysApart)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L" Ash"), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"Sun "), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"S ky"), nullptr);
}

TEST_F(PlayHistoryTest, TheThreeHistoriesDoNotMix)
{
    cHistory.Record(*PlayOf(*AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky"), dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Sun"), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"Sky"), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"Ash"), nullptr);
}

TEST_F(PlayHistoryTest, AnEarlierPlayReportedLaterReplacesTheEntry)
{
    const auto cLater = AddCut(L"a.mp3", L"Ash", L"One");
    const auto cEarlier = AddCut(L"b.mp3", L"Ash", L"Two");
    cHistory.Record(*PlayOf(*cLater, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cEarlier, dtNoon - 1), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), cEarlier);
}

TEST_F(PlayHistoryTest, ACutWithoutAnAlbumLeavesTheAlbumHistoryAlone)
{
    const auto cWith = AddCut(L"a.mp3", L"Ash", L"One", L"Sky");
    const auto cWithout = AddCut(L"b.mp3", L"Ash", L"Two");
    cHistory.Record(*PlayOf(*cWith, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cWithout, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"Sky"), cWith);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), cWithout);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"Two"), cWithout);
}

TEST_F(PlayHistoryTest, AnEmptyTextNeverFindsAPlayAndDoesNotHinderTheOthers)
{
    const auto cNoArtist = AddCut(L"a.mp3", L"", L"Sun");
    const auto cNoTitle = AddCut(L"b.mp3", L"Ash", L"");
    cHistory.Record(*PlayOf(*cNoArtist, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cNoTitle, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L""), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(L""), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L""), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(L"Sun"), cNoArtist);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), cNoTitle);
}

TEST_F(PlayHistoryTest, ACutThatNeverPlayedChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cCut->SetLastPlayed(dtNoon);
    for (const DateTime dtWhen : {0.0, -1.0})
    {
        cHistory.Record(*PlayOf(*cCut, dtWhen), cDataBase);
        EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), nullptr);
        EXPECT_EQ(cHistory.TitleHistoryCut(L"Sun"), nullptr);
        EXPECT_EQ(cHistory.AlbumHistoryCut(L"Sky"), nullptr);
        EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    }
}

TEST_F(PlayHistoryTest, ACutUnknownByKeyIsFoundByArtistAndTitle)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cPlay->SetKey(L"moved.mp3");
    cPlay->SetAlbum(L"Other");
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), cCut);
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"Sky"), cCut) << "texts are the database cut's";
    EXPECT_EQ(cHistory.AlbumHistoryCut(L"Other"), nullptr);
}

TEST_F(PlayHistoryTest, TheKeyGoesBeforeArtistAndTitle)
{
    AddCut(L"a.mp3", L"Ash", L"Sun");
    const auto cByKey = AddCut(L"b.mp3", L"Elm", L"Rain");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cByKey, dtNoon);
    cPlay->SetArtist(L"Ash");
    cPlay->SetTitle(L"Sun");
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Elm"), cByKey);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), nullptr);
}

TEST_F(PlayHistoryTest, ACutTheDatabaseDoesNotKnowChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cDataBase.Remove(*cCut);
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), nullptr);
}

TEST_F(PlayHistoryTest, WhatWasUpdatedBeforeAnErrorStays)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cCut->failing.insert("Title");
    EXPECT_THROW(cHistory.Record(*cPlay, cDataBase), RuntimeError);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash"), nullptr);
}

TEST_F(PlayHistoryTest, TheHistoryHoldsARemovedCutWithItsPlayTime)
{
    auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    cDataBase.Remove(*cCut);
    cCut.reset();
    ASSERT_NE(cHistory.ArtistHistoryCut(L"Ash"), nullptr);
    EXPECT_EQ(cHistory.ArtistHistoryCut(L"Ash")->LastPlayed(), dtNoon);
}

} // namespace
} // namespace ravlo::test

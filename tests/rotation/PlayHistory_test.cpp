// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryWorld.h"
#include "rotation/PlayHistory.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

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

    // Refusals as they are told: the error's number, and "first" for the first of an incident.
    std::vector<std::string> colRefusals;
    MemoryClock cClock;
    FakeDataBase cDataBase;
    PlayHistory cHistory{
        cClock, [this](const RuntimeError& cError, bool bFirst)
        { colRefusals.push_back(std::to_string(cError.Number()) + (bFirst ? " first" : "")); }};
};

TEST_F(PlayHistoryTest, APlayIsEnteredUnderArtistTitleAndAlbumAsTheDatabasesOwnCutWithThePlayTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), cCut);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Sun")), cCut);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Sky")), cCut);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
}

TEST_F(PlayHistoryTest, SpellingsThatDifferOnlyInCaseAreOneEntryThatTheLaterReportTakes)
{
    const auto cFirst = AddCut(L"a.mp3", L"elan \u00e9t\u00e9", L"One");
    const auto cSecond = AddCut(L"b.mp3", L"ELAN \u00c9T\u00c9", L"Two");
    cHistory.Record(*PlayOf(*cFirst, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cSecond, dtNoon), cDataBase);
    for (const wchar_t* sSpelling : {L"elan \u00e9t\u00e9", L"ELAN \u00c9T\u00c9", L"Elan \u00c9t\u00e9"})
        EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(sSpelling)), cSecond);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"one")), cFirst);
}

TEST_F(PlayHistoryTest, BlanksTellKeysApart)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L" Ash")), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Sun ")), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"S ky")), nullptr);
}

TEST_F(PlayHistoryTest, TheThreeHistoriesDoNotMix)
{
    cHistory.Record(*PlayOf(*AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky"), dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Sun")), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Sky")), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Ash")), nullptr);
}

TEST_F(PlayHistoryTest, AnEarlierPlayReportedLaterReplacesTheEntry)
{
    const auto cLater = AddCut(L"a.mp3", L"Ash", L"One");
    const auto cEarlier = AddCut(L"b.mp3", L"Ash", L"Two");
    cHistory.Record(*PlayOf(*cLater, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cEarlier, dtNoon - 1), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), cEarlier);
}

TEST_F(PlayHistoryTest, ACutWithoutAnAlbumLeavesTheAlbumHistoryAlone)
{
    const auto cWith = AddCut(L"a.mp3", L"Ash", L"One", L"Sky");
    const auto cWithout = AddCut(L"b.mp3", L"Ash", L"Two");
    cHistory.Record(*PlayOf(*cWith, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cWithout, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Sky")), cWith);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), cWithout);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Two")), cWithout);
}

TEST_F(PlayHistoryTest, AnEmptyTextNeverFindsAPlayAndDoesNotHinderTheOthers)
{
    const auto cNoArtist = AddCut(L"a.mp3", L"", L"Sun");
    const auto cNoTitle = AddCut(L"b.mp3", L"Ash", L"");
    cHistory.Record(*PlayOf(*cNoArtist, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cNoTitle, dtNoon), cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"")), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"")), nullptr);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"")), nullptr);
    EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Sun")), cNoArtist);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), cNoTitle);
}

TEST_F(PlayHistoryTest, ACutThatNeverPlayedChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cCut->SetLastPlayed(dtNoon);
    for (const DateTime dtWhen : {0.0, -1.0})
    {
        cHistory.Record(*PlayOf(*cCut, dtWhen), cDataBase);
        EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
        EXPECT_EQ(cHistory.TitleHistoryCut(TextKey(L"Sun")), nullptr);
        EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Sky")), nullptr);
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
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), cCut);
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Sky")), cCut) << "texts are the database cut's";
    EXPECT_EQ(cHistory.AlbumHistoryCut(TextKey(L"Other")), nullptr);
}

TEST_F(PlayHistoryTest, TheKeyGoesBeforeArtistAndTitle)
{
    AddCut(L"a.mp3", L"Ash", L"Sun");
    const auto cByKey = AddCut(L"b.mp3", L"Elm", L"Rain");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cByKey, dtNoon);
    cPlay->SetArtist(L"Ash");
    cPlay->SetTitle(L"Sun");
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Elm")), cByKey);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
}

TEST_F(PlayHistoryTest, ACutTheDatabaseDoesNotKnowChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cDataBase.Remove(*cCut);
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
}

TEST_F(PlayHistoryTest, WhatWasUpdatedBeforeAnErrorStays)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cCut->failing.insert("Title");
    EXPECT_THROW(cHistory.Record(*cPlay, cDataBase), RuntimeError);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
}

TEST_F(PlayHistoryTest, TheHistoryHoldsARemovedCutWithItsPlayTime)
{
    auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    cDataBase.Remove(*cCut);
    cCut.reset();
    ASSERT_NE(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash"))->LastPlayed(), dtNoon);
}

TEST_F(PlayHistoryTest, ATimeBeyondTheCalendarChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    for (const DateTime dtWhen : {1e9, std::numeric_limits<double>::infinity()})
        EXPECT_THROW(cHistory.Record(*PlayOf(*cCut, dtWhen), cDataBase), RuntimeError);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
    EXPECT_EQ(cCut->LastPlayed(), 0);
}

// ---- a database that refuses the times of plays

using PendingTimesTest = PlayHistoryTest;
using Refusals = std::vector<std::string>;
constexpr std::uint32_t lSecond = 1'000;

TEST_F(PendingTimesTest, RefusedPlayIsEnteredWithItsTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cCut->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    for (const auto& cPlay :
         {cHistory.ArtistHistoryCut(TextKey(L"Ash")), cHistory.TitleHistoryCut(TextKey(L"Sun")),
          cHistory.AlbumHistoryCut(TextKey(L"Sky"))})
    {
        ASSERT_EQ(cPlay, cCut);
        EXPECT_EQ(cHistory.TimeOf(*cPlay), dtNoon);
    }
    EXPECT_EQ(cCut->LastPlayed(), 0) << "a host sees by this that the time is pending";
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
    EXPECT_EQ(colRefusals, Refusals{"91 first"});
}

TEST_F(PendingTimesTest, NextPlayWritesWhatIsPending)
{
    const auto cFirst = AddCut(L"a.mp3", L"Ash", L"Sun");
    const auto cSecond = AddCut(L"b.mp3", L"Elm", L"Rain");
    cFirst->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cFirst, dtNoon), cDataBase);
    cFirst->failing.clear();
    cClock.Advance(lSecond);
    cHistory.Record(*PlayOf(*cSecond, dtNoon + 1), cDataBase);
    EXPECT_EQ(cFirst->LastPlayed(), dtNoon);
    EXPECT_EQ(cSecond->LastPlayed(), dtNoon + 1);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, WhileTimesArePendingOneTryASecond)
{
    std::vector<std::shared_ptr<FakeCut>> colCuts;
    int lTries = 0;
    for (int i = 0; i < 8; ++i)
    {
        colCuts.push_back(AddCut(std::to_wstring(i), std::to_wstring(i), std::to_wstring(i)));
        colCuts.back()->failing.insert("SetLastPlayed");
        colCuts.back()->OnCall = [&](const std::string& sMember)
        {
            if (sMember == "SetLastPlayed")
                ++lTries;
        };
        cHistory.Record(*PlayOf(*colCuts.back(), dtNoon + i), cDataBase);
        cClock.Advance(lSecond / 4);
    }
    EXPECT_EQ(lTries, 2) << "at the start and after a second";
    EXPECT_EQ(cHistory.PendingTimes(), 8u);
    EXPECT_EQ(colRefusals, (Refusals{"91 first", "91"}));
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(cHistory.TimeOf(*colCuts[static_cast<std::size_t>(i)]), dtNoon + i);
}

TEST_F(PendingTimesTest, ACutThatAlwaysRefusesHindersNoOther)
{
    const auto cBad = AddCut(L"a.mp3", L"Ash", L"Sun");
    cBad->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cBad, dtNoon), cDataBase);
    for (int i = 1; i <= 5; ++i)
    {
        const auto cCut = AddCut(std::to_wstring(i), std::to_wstring(i), std::to_wstring(i));
        cClock.Advance(i % 2 == 0 ? lSecond : 0);
        cHistory.Record(*PlayOf(*cCut, dtNoon + i), cDataBase);
    }
    cHistory.WritePendingTimes(cDataBase);
    for (int i = 1; i <= 5; ++i)
        EXPECT_EQ(cDataBase.CutByKey(TextKey(std::to_wstring(i)))->LastPlayed(), dtNoon + i);
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
}

TEST_F(PendingTimesTest, WritingAllGivesUpAfterTwoRefusals)
{
    std::vector<std::shared_ptr<FakeCut>> colCuts;
    for (int i = 0; i < 6; ++i)
    {
        colCuts.push_back(AddCut(std::to_wstring(i), std::to_wstring(i), std::to_wstring(i)));
        colCuts.back()->failing.insert("SetLastPlayed");
        cHistory.Record(*PlayOf(*colCuts.back(), dtNoon + i), cDataBase);
        colCuts.back()->calls.clear();
    }
    cHistory.WritePendingTimes(cDataBase);
    int lTries = 0;
    for (const auto& cCut : colCuts)
        lTries += cCut->calls["SetLastPlayed"];
    EXPECT_EQ(lTries, 2);
    EXPECT_EQ(cHistory.PendingTimes(), 6u);
}

TEST_F(PendingTimesTest, EachIncidentIsToldAsFirstOnce)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    for (int i = 0; i < 2; ++i)
    {
        cCut->failing.insert("SetLastPlayed");
        cHistory.Record(*PlayOf(*cCut, dtNoon + i), cDataBase);
        cHistory.WritePendingTimes(cDataBase);
        cCut->failing.clear();
        cHistory.WritePendingTimes(cDataBase);
        EXPECT_EQ(cCut->LastPlayed(), dtNoon + i);
    }
    EXPECT_EQ(colRefusals, (Refusals{"91 first", "91", "91 first", "91"}));
}

TEST_F(PendingTimesTest, ALaterPlayOfTheCutReplacesItsPendingTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    cCut->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    cHistory.Record(*PlayOf(*cCut, dtNoon + 1), cDataBase);
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
    EXPECT_EQ(cHistory.TimeOf(*cCut), dtNoon + 1);
    cCut->failing.clear();
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon + 1);
}

TEST_F(PendingTimesTest, ATimeThatOthersSetSinceIsKept)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    cCut->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cCut, dtNoon), cDataBase);
    cCut->failing.clear();
    cCut->SetLastPlayed(dtNoon + 2);
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon + 2);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, TheTimeGoesToTheObjectTheDatabaseHasNow)
{
    const auto cOld = AddCut(L"a.mp3", L"Ash", L"Sun");
    cOld->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cOld, dtNoon), cDataBase);
    cDataBase.Remove(*cOld);
    const auto cReopened = AddCut(L"a.mp3", L"Ash", L"Sun");
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cReopened->LastPlayed(), dtNoon);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, APlayReportedWhileOthersAreWrittenIsNotLost)
{
    const auto cFirst = AddCut(L"a.mp3", L"Ash", L"Sun");
    const auto cSecond = AddCut(L"b.mp3", L"Elm", L"Rain");
    cFirst->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cFirst, dtNoon), cDataBase);
    cFirst->failing.clear();
    bool bCalled = false;
    cFirst->OnCall = [&](const std::string& sMember)
    {
        if (sMember == "SetLastPlayed" && !std::exchange(bCalled, true))
        {
            cHistory.Record(*PlayOf(*cSecond, dtNoon + 1), cDataBase);
            cHistory.Record(*PlayOf(*cFirst, dtNoon + 2), cDataBase);
        }
    };
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_TRUE(bCalled);
    cFirst->OnCall = nullptr;
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
    EXPECT_EQ(cSecond->LastPlayed(), dtNoon + 1);
}

} // namespace
} // namespace ravlo::test

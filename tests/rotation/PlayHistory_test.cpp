// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryPorts.h"
#include "rotation/PlayHistory.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
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

    // A cut "0", "1", ... whose artist and title are its key.
    std::shared_ptr<FakeCut> AddCut(int lNumber)
    {
        const std::wstring sText = std::to_wstring(lNumber);
        return AddCut(sText, sText, sText);
    }
    // Such a cut that refuses the time of a play.
    std::shared_ptr<FakeCut> AddRefusing(int lNumber)
    {
        const auto cCut = AddCut(lNumber);
        cCut->failing.insert("SetLastPlayed");
        return cCut;
    }

    // Cuts 1, 2 ... whose plays were refused; their calls are counted from here on.
    std::vector<std::shared_ptr<FakeCut>> RefusedPlays(int lCount)
    {
        std::vector<std::shared_ptr<FakeCut>> colCuts;
        for (int lCut = 1; lCut <= lCount; ++lCut)
        {
            colCuts.push_back(AddRefusing(lCut));
            Play(*colCuts.back(), dtNoon);
            colCuts.back()->calls.clear();
        }
        return colCuts;
    }
    static int Tries(const std::vector<std::shared_ptr<FakeCut>>& colCuts)
    {
        int lTries = 0;
        for (const auto& cCut : colCuts)
            lTries += cCut->calls["SetLastPlayed"];
        return lTries;
    }
    // Runs an action at the next SetLastPlayed of a cut.
    static void OnceAtSetLastPlayed(FakeCut& cCut, std::function<void()> action)
    {
        cCut.OnCall = [&cCut, action = std::move(action)](std::string_view sMember) {
            if (sMember != "SetLastPlayed")
                return;
            const auto once = action;
            cCut.OnCall = nullptr;
            once();
        };
    }

    // What a host reports: a copy of its own with a play time.
    static std::shared_ptr<Cut> PlayOf(const Cut& cCut, DateTime dtWhen)
    {
        std::shared_ptr<Cut> cPlay = test::PlainCopyOf(cCut);
        cPlay->SetLastPlayed(dtWhen);
        return cPlay;
    }

    void Play(const FakeCut& cCut, DateTime dtWhen)
    {
        cHistory.Record(*PlayOf(*cCut.CloneCut(), dtWhen), cDataBase);
    }

    using Plays = std::vector<std::shared_ptr<Cut>>;
    const Plays none{nullptr, nullptr, nullptr};
    Plays Last(const wchar_t* sArtist, const wchar_t* sTitle, const wchar_t* sAlbum) const
    {
        return {cHistory.ArtistHistoryCut(TextKey(sArtist)), cHistory.TitleHistoryCut(TextKey(sTitle)),
                cHistory.AlbumHistoryCut(TextKey(sAlbum))};
    }

    // The refusals reported: the error's number, and "first" for the first of an incident.
    std::vector<std::string> colRefusals;
    MemoryClock cClock;
    FakeDataBase cDataBase;
    PlayHistory cHistory{cClock,
                         [this](const RuntimeError& cError, bool bFirst) {
        colRefusals.push_back(std::to_string(cError.Number()) + (bFirst ? " first" : ""));
                         }};
};

TEST_F(PlayHistoryTest, PlayIsEnteredAsTheDatabasesOwnCutWithItsTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    Play(*cCut, dtNoon);
    EXPECT_EQ(Last(L"Ash", L"Sun", L"Sky"), (Plays{cCut, cCut, cCut}));
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    EXPECT_EQ(Last(L" Ash", L"Sun ", L"S ky"), none) << "blanks tell keys apart";
    EXPECT_EQ(Last(L"Sun", L"Sky", L"Ash"), none) << "the three histories do not mix";
    const auto cOld = AddCut(L"b.mp3", L"Elm", L"Rain");
    Play(*cOld, 0.5);
    EXPECT_EQ(Last(L"Elm", L"Rain", L""), (Plays{cOld, cOld, nullptr})) << "any time above 0 is one";
}

TEST_F(PlayHistoryTest, SpellingsThatDifferInCaseAreOneEntry)
{
    const auto cFirst = AddCut(L"a.mp3", L"elan \u00e9t\u00e9", L"One");
    const auto cSecond = AddCut(L"b.mp3", L"ELAN \u00c9T\u00c9", L"Two");
    Play(*cFirst, dtNoon);
    Play(*cSecond, dtNoon);
    for (const wchar_t* sSpelling : {L"elan \u00e9t\u00e9", L"ELAN \u00c9T\u00c9", L"Elan \u00c9t\u00e9"})
        EXPECT_EQ(Last(sSpelling, L"one", L""), (Plays{cSecond, cFirst, nullptr}));
}

TEST_F(PlayHistoryTest, LaterReportReplacesTheEntryWithAnyTime)
{
    const auto cLater = AddCut(L"a.mp3", L"Ash", L"One", L"Sky");
    const auto cEarlier = AddCut(L"b.mp3", L"Ash", L"Two"); // and no album
    Play(*cLater, dtNoon);
    Play(*cEarlier, dtNoon - 1);
    EXPECT_EQ(Last(L"Ash", L"Two", L"Sky"), (Plays{cEarlier, cEarlier, cLater}));
}

TEST_F(PlayHistoryTest, EmptyTextFindsNoPlayAndDoesNotHinderTheOthers)
{
    const auto cNoArtist = AddCut(L"a.mp3", L"", L"Sun");
    const auto cNoTitle = AddCut(L"b.mp3", L"Ash", L"");
    Play(*cNoArtist, dtNoon);
    Play(*cNoTitle, dtNoon);
    EXPECT_EQ(Last(L"", L"", L""), none);
    EXPECT_EQ(Last(L"Ash", L"Sun", L""), (Plays{cNoTitle, cNoArtist, nullptr}));
}

TEST_F(PlayHistoryTest, PlayWithoutATimeOrACutOfTheDatabaseChangesNothing)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cCut->SetLastPlayed(dtNoon);
    for (const DateTime dtNever : {0.0, -1.0})
        Play(*cCut, dtNever);
    for (const DateTime dtBeyondTheCalendar : {1e9, std::numeric_limits<double>::infinity()})
        EXPECT_THROW(Play(*cCut, dtBeyondTheCalendar), RuntimeError);
    cDataBase.Remove(*cCut);
    Play(*cCut, dtNoon + 1);
    EXPECT_EQ(Last(L"Ash", L"Sun", L"Sky"), none);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
}

TEST_F(PlayHistoryTest, CutUnknownByKeyIsFoundByArtistAndTitle)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cCut, dtNoon);
    cPlay->SetKey(L"moved.mp3");
    cPlay->SetAlbum(L"Other");
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(Last(L"Ash", L"Sun", L"Sky"), (Plays{cCut, cCut, cCut})) << "texts are the database cut's";
    EXPECT_EQ(Last(L"", L"", L"Other"), none);
}

TEST_F(PlayHistoryTest, KeyGoesBeforeArtistAndTitle)
{
    AddCut(L"a.mp3", L"Ash", L"Sun");
    const auto cByKey = AddCut(L"b.mp3", L"Elm", L"Rain");
    const std::shared_ptr<Cut> cPlay = PlayOf(*cByKey, dtNoon);
    cPlay->SetArtist(L"Ash");
    cPlay->SetTitle(L"Sun");
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(Last(L"Elm", L"Rain", L""), (Plays{cByKey, cByKey, nullptr}));
    EXPECT_EQ(Last(L"Ash", L"Sun", L""), none);
}

TEST_F(PlayHistoryTest, WhatWasUpdatedBeforeAnErrorStays)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    cCut->failing.insert("Title");
    EXPECT_THROW(Play(*cCut, dtNoon), RuntimeError);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    EXPECT_EQ(Last(L"Ash", L"Sun", L""), none);
}

TEST_F(PlayHistoryTest, CopyFindsOtherCutsUnderTheSameTexts)
{
    Play(*AddCut(L"a", L"Ash", L"Sun", L"Best"), dtNoon);
    Play(*AddCut(L"b", L"ASH", L"Rain"), dtNoon + 1);
    std::vector<std::shared_ptr<Cut>> colCopies;
    PlayHistory cCopy(cClock, [](const RuntimeError&, bool) {});
    cCopy.TakeOver(cHistory.Lists(), {}, [&](const std::shared_ptr<Cut>& cCut) {
        return colCopies.emplace_back(cCut->CloneCut());
    });

    EXPECT_EQ(cCopy.ArtistHistoryCut(TextKey(L"ash"))->Key(), TextKey(L"b"));
    EXPECT_EQ(cCopy.TitleHistoryCut(TextKey(L"sun"))->Key(), TextKey(L"a"));
    EXPECT_EQ(cCopy.AlbumHistoryCut(TextKey(L"best"))->Key(), TextKey(L"a"));
    for (const std::shared_ptr<Cut>& cCut : colCopies)
        cCut->SetLastPlayed(dtNoon + 2);
    EXPECT_EQ(cHistory.TimeOf(*cHistory.ArtistHistoryCut(TextKey(L"ash"))), dtNoon + 1);
    EXPECT_EQ(cCopy.TimeOf(*cCopy.ArtistHistoryCut(TextKey(L"ash"))), dtNoon + 2);
}

TEST_F(PlayHistoryTest, HistoryKeepsARemovedCutWithItsPlayTime)
{
    auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun");
    Play(*cCut, dtNoon);
    cDataBase.Remove(*cCut);
    cCut.reset();
    ASSERT_NE(cHistory.ArtistHistoryCut(TextKey(L"Ash")), nullptr);
    EXPECT_EQ(cHistory.ArtistHistoryCut(TextKey(L"Ash"))->LastPlayed(), dtNoon);
}

// ---- plays under all names of their credits

class NamedPlaysTest : public PlayHistoryTest
{
protected:
    // The keys of the last plays of these names, "-" for none.
    std::wstring LastOf(const std::vector<const wchar_t*>& colNames) const
    {
        std::wstring sKeys;
        for (const wchar_t* sName : colNames)
        {
            const std::shared_ptr<Cut> cCut = cHistory.ArtistHistoryCut(TextKey(sName));
            sKeys += cCut ? cCut->Key().Text() : L"-";
        }
        return sKeys;
    }
    // The last plays of a history, as key and artist.
    static std::wstring ReportsOf(const PlayHistory& cOf)
    {
        std::wstring sReports;
        for (const PlayHistory::Play& play : cOf.LastPlays())
            sReports += play.cCut->Key().Text() + play.credit.cArtist.Text() + L"|";
        return sReports;
    }
    const std::vector<const wchar_t*> colAll = {L"Abba feat. Cher", L"abba", L"CHER", L"Kiss", L""};
};

TEST_F(NamedPlaysTest, PlayIsEnteredUnderEveryNameItCountsFor)
{
    cHistory.SetNames(ArtistNames().With(true));
    Play(*AddCut(L"a", L"Abba", L"One (feat. Kiss)"), dtNoon);
    Play(*AddCut(L"b", L"Abba feat. Cher", L"Two"), dtNoon);
    Play(*AddCut(L"c", L"", L"Three feat. Kiss"), dtNoon);
    EXPECT_EQ(LastOf(colAll), L"bbba-");
}

TEST_F(NamedPlaysTest, ChangedNamesRebuildAllPlaysInTheOrderOfReports)
{
    const auto cFirst = AddCut(L"a", L"Abba feat. Cher", L"One");
    Play(*cFirst, dtNoon);
    Play(*AddCut(L"b", L"Cher", L"Two"), dtNoon + 1);
    Play(*AddCut(L"c", L"Abba", L"Three (ft. Kiss)"), dtNoon);
    Play(*AddCut(L"d", L"Abba", L"Four"), dtNoon - 1);
    EXPECT_EQ(LastOf(colAll), L"adb--");
    const ArtistNames cNames = ArtistNames().With(true);
    cHistory.SetNames(cNames);
    EXPECT_EQ(LastOf(colAll), L"adbc-");
    cFirst->SetArtist(L"Kiss"); // plays keep the texts they had
    Play(*cFirst, dtNoon);
    cFirst->SetArtist(L"Abba feat. Cher");
    Play(*cFirst, dtNoon);
    EXPECT_EQ(LastOf(colAll), L"aaaa-");
    cHistory.SetNames({});
    EXPECT_EQ(LastOf(colAll), L"adba-");
    cHistory.SetNames(cNames);
    EXPECT_EQ(LastOf(colAll), L"aaaa-");
    EXPECT_EQ(ReportsOf(cHistory), L"bCher|cAbba|dAbba|aKiss|aAbba feat. Cher|");
}

TEST_F(NamedPlaysTest, TakenOverPlaysCountUnderAnyNames)
{
    Play(*AddCut(L"a", L"Abba feat. Cher", L"One"), dtNoon);
    Play(*AddCut(L"b", L"Cher", L"Two"), dtNoon + 1);
    const ArtistNames cNames = ArtistNames().With(true);
    for (const bool bAtOnce : {true, false})
    {
        PlayHistory cCopy(cClock, [](const RuntimeError&, bool) {});
        cCopy.TakeOver(cHistory.Lists(), bAtOnce ? cNames : ArtistNames(),
                       [](const std::shared_ptr<Cut>& cCut) { return cCut; });
        cCopy.SetNames(cNames);
        EXPECT_TRUE(cCopy.Names() == cNames);
        EXPECT_EQ(cCopy.ArtistHistoryCut(TextKey(L"Abba"))->Key(), TextKey(L"a"));
        EXPECT_EQ(cCopy.ArtistHistoryCut(TextKey(L"Cher"))->Key(), TextKey(L"b"));
        cCopy.Record(*cDataBase.Own(L"a"), cDataBase);
        EXPECT_EQ(ReportsOf(cCopy), L"bCher|aAbba feat. Cher|") << "each credit once, the last report counts";
        cCopy.SetNames({});
        EXPECT_EQ(cCopy.ArtistHistoryCut(TextKey(L"Abba")), nullptr);
    }
}

TEST_F(NamedPlaysTest, TakenOverPlaysCanBeLeftOut)
{
    Play(*AddCut(L"a", L"Ash", L"Sun", L"Best"), dtNoon);
    Play(*AddCut(L"b", L"Yew", L"Rain", L"Rest"), dtNoon);
    const PlayLists<int> lists = cHistory.Lists().Of<int>([](const std::shared_ptr<Cut>& cCut) {
        return cCut->Key() == TextKey(L"a") ? std::optional(7) : std::nullopt;
    });
    for (const auto* pList : {&lists.artists, &lists.titles, &lists.albums})
        EXPECT_EQ(pList->size(), 1u);
    EXPECT_EQ(lists.reports.size(), 1u);
    EXPECT_EQ(lists.artists[0].cText.Text() + lists.albums[0].cText.Text(), L"AshBest");
    EXPECT_EQ(lists.titles[0].played, 7);
}

// ---- a database that refuses the times of plays

using PendingTimesTest = PlayHistoryTest;
using Refusals = std::vector<std::string>;
constexpr std::uint32_t lSecond = 1'000;

TEST_F(PendingTimesTest, RefusedPlayIsEnteredWithItsTime)
{
    const auto cCut = AddCut(L"a.mp3", L"Ash", L"Sun", L"Sky");
    cCut->failing.insert("SetLastPlayed");
    Play(*cCut, dtNoon);
    EXPECT_EQ(Last(L"Ash", L"Sun", L"Sky"), (Plays{cCut, cCut, cCut}));
    EXPECT_EQ(cHistory.TimeOf(*cCut), dtNoon);
    EXPECT_EQ(cCut->LastPlayed(), 0) << "a host sees by this that the time is pending";
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
    EXPECT_EQ(colRefusals, Refusals{"91 first"});
}

TEST_F(PendingTimesTest, NextPlayWritesWhatIsPending)
{
    const auto cFirst = AddRefusing(1);
    const auto cSecond = AddCut(2);
    Play(*cFirst, dtNoon);
    cFirst->failing.clear();
    cClock.Advance(lSecond);
    Play(*cSecond, dtNoon + 1);
    EXPECT_EQ(cFirst->LastPlayed(), dtNoon);
    EXPECT_EQ(cSecond->LastPlayed(), dtNoon + 1);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, WhileTimesArePendingOneTryASecond)
{
    std::vector<int> colTries;
    int lPlay = 0;
    for (const std::uint32_t lSince : {0u, lSecond - 1, 1u, lSecond - 1, 1u})
    {
        cClock.Advance(lSince);
        const auto cCut = AddRefusing(++lPlay);
        Play(*cCut, dtNoon + lPlay);
        EXPECT_EQ(cHistory.TimeOf(*cCut), dtNoon + lPlay);
        colTries.push_back(cCut->calls["SetLastPlayed"]);
    }
    EXPECT_EQ(colTries, (std::vector<int>{1, 0, 1, 0, 1})) << "at the start and after a second";
    EXPECT_EQ(cHistory.PendingTimes(), 5u);
    EXPECT_EQ(colRefusals, (Refusals{"91 first", "91", "91"}));
}

TEST_F(PendingTimesTest, CutThatAlwaysRefusesHindersNoOther)
{
    Play(*AddRefusing(0), dtNoon);
    for (int i = 1; i <= 5; ++i)
    {
        cClock.Advance(i % 2 == 0 ? lSecond : 0);
        Play(*AddCut(i), dtNoon + i);
    }
    cHistory.WritePendingTimes(cDataBase);
    for (int i = 1; i <= 5; ++i)
        EXPECT_EQ(cDataBase.CutByKey(TextKey(std::to_wstring(i)))->LastPlayed(), dtNoon + i);
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
}

TEST_F(PendingTimesTest, WritingAllGivesUpAfterTwoRefusals)
{
    const auto colCuts = RefusedPlays(5);
    cClock.Advance(lSecond);
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(Tries(colCuts), 2);
    EXPECT_EQ(cHistory.PendingTimes(), 5u);
    const auto cNext = AddCut(6);
    Play(*cNext, dtNoon);
    EXPECT_EQ(cNext->calls["SetLastPlayed"], 0) << "a second has to pass after these refusals too";
}

TEST_F(PendingTimesTest, PlayStopsAtTheFirstRefusalOfOthers)
{
    const auto colCuts = RefusedPlays(3);
    cClock.Advance(lSecond);
    Play(*AddCut(4), dtNoon);
    EXPECT_EQ(Tries(colCuts), 1);
}

TEST_F(PendingTimesTest, EachIncidentIsReportedAsFirstOnce)
{
    const auto cCut = AddCut(1);
    for (int i = 0; i < 2; ++i)
    {
        cCut->failing.insert("SetLastPlayed");
        Play(*cCut, dtNoon + i);
        cHistory.WritePendingTimes(cDataBase);
        cCut->failing.clear();
        cHistory.WritePendingTimes(cDataBase);
        EXPECT_EQ(cCut->LastPlayed(), dtNoon + i);
    }
    EXPECT_EQ(colRefusals, (Refusals{"91 first", "91", "91 first", "91"}));
}

TEST_F(PendingTimesTest, RefusalThatLeavesNothingPendingEndsItsIncident)
{
    const auto cCut = AddRefusing(1);
    Play(*cCut, dtNoon);
    cClock.Advance(lSecond);
    OnceAtSetLastPlayed(*cCut, [&] {
        cCut->failing.clear();
        Play(*cCut, dtNoon + 1); // is taken, and the one in progress is refused
        cCut->failing.insert("SetLastPlayed");
    });
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
    Play(*cCut, dtNoon + 2);
    EXPECT_EQ(colRefusals, (Refusals{"91 first", "91 first", "91 first"}));
}

TEST_F(PendingTimesTest, LaterPlayOfTheCutReplacesItsPendingTime)
{
    const auto cCut = AddRefusing(1);
    Play(*cCut, dtNoon);
    Play(*cCut, dtNoon + 1);
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
    EXPECT_EQ(cHistory.TimeOf(*cCut), dtNoon + 1);
    cCut->failing.clear();
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon + 1);
}

TEST_F(PendingTimesTest, ALaterTimeThatOthersSetSinceIsKept)
{
    for (const DateTime dtTheirs : {dtNoon + 2, dtNoon - 1})
    {
        const auto cCut = RefusedPlays(1)[0];
        cCut->failing.clear();
        cCut->SetLastPlayed(dtTheirs);
        cHistory.WritePendingTimes(cDataBase);
        EXPECT_EQ(cCut->LastPlayed(), std::max(dtTheirs, dtNoon));
        EXPECT_EQ(cHistory.PendingTimes(), 0u);
        cDataBase.colCuts.clear();
    }
}

TEST_F(PendingTimesTest, TimeOfADatabaseThatWasLeftGoesToNoOther)
{
    const auto cLeft = std::make_shared<FakeDataBase>();
    const auto cCut = cLeft->Add(L"1", L"Rock", 1);
    cCut->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cCut->CloneCut(), dtNoon), *cLeft);
    cHistory.Leave(cLeft);
    const auto cOther = cDataBase.Add(L"1", L"Rock", 1);
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cOther->LastPlayed(), 0);
    EXPECT_EQ(cHistory.TimeOf(*cCut), dtNoon) << "separations are measured from it";
    EXPECT_EQ(cHistory.TimeOf(*cOther), 0);
    cClock.Advance(lSecond);
    Play(*cOther, dtNoon + 1);
    EXPECT_EQ(cHistory.PendingTimes(), 1u);
    cCut->failing.clear();
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cCut->LastPlayed(), dtNoon);
    EXPECT_EQ(cOther->LastPlayed(), dtNoon + 1);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, ClosedDatabaseThatIsOpenedAgainTakesTheTime)
{
    const auto cClosed = std::make_shared<FakeDataBase>();
    const auto cCut = cClosed->Add(L"1", L"Rock", 1);
    cCut->failing.insert("SetLastPlayed");
    cHistory.Record(*PlayOf(*cCut->CloneCut(), dtNoon), *cClosed);
    cHistory.Leave(cClosed);
    cClosed->bFails = true;
    const auto cReopened = cDataBase.Add(L"1", L"Rock", 1);
    cReopened->lID = 7;
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cReopened->LastPlayed(), 0) << "another cut of the same key";
    cReopened->lID = cCut->lID;
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cReopened->LastPlayed(), dtNoon);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, TimeGoesToTheObjectTheDatabaseHasNow)
{
    const auto cOld = AddRefusing(1);
    Play(*cOld, dtNoon);
    cDataBase.Remove(*cOld);
    const auto cReopened = AddCut(1);
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_EQ(cReopened->LastPlayed(), dtNoon);
    EXPECT_EQ(cHistory.PendingTimes(), 0u);
}

TEST_F(PendingTimesTest, PlayReportedWhileOthersAreWrittenIsNotLost)
{
    for (const std::uint32_t lSince : {0u, lSecond}) // the report waits, or settles what is pending itself
    {
        const auto colCuts = RefusedPlays(2);
        for (const auto& cCut : colCuts)
            cCut->failing.clear();
        cClock.Advance(lSince);
        OnceAtSetLastPlayed(*colCuts[0], [&] {
            Play(*colCuts[1], dtNoon + 1);
            Play(*colCuts[0], dtNoon + 2);
        });
        cHistory.WritePendingTimes(cDataBase);
        EXPECT_FALSE(colCuts[0]->OnCall);
        cHistory.WritePendingTimes(cDataBase);
        EXPECT_EQ(cHistory.PendingTimes(), 0u);
        EXPECT_EQ(colCuts[1]->LastPlayed(), dtNoon + 1);
        cDataBase.colCuts.clear();
    }
}

TEST_F(PendingTimesTest, WritingWhileTimesAreWrittenWritesNoneTwice)
{
    const auto colCuts = RefusedPlays(2);
    for (const auto& cCut : colCuts)
        cCut->failing.clear();
    OnceAtSetLastPlayed(*colCuts[0], [&] { cHistory.WritePendingTimes(cDataBase); });
    cHistory.WritePendingTimes(cDataBase);
    EXPECT_FALSE(colCuts[0]->OnCall);
    for (const auto& cCut : colCuts)
        EXPECT_EQ(cCut->calls["SetLastPlayed"], 1);
}

} // namespace
} // namespace ravlo::test

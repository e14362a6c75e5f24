// SPDX-License-Identifier: MIT
#include "rotation/Selection.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <set>
#include <tuple>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

class SelectionTest : public testing::Test
{
protected:
    Pick NextCut(bool bMustBeOpener = false, const std::shared_ptr<Cut>& cPrevSchedCut = nullptr)
    {
        return station.NextCut(bMustBeOpener, cPrevSchedCut);
    }

    // A pick whose steps go to note alone.
    static Pick Traced(Station& cState, TraceSink note)
    {
        SelectionContext context = cState.Context();
        context.note = std::move(note);
        return NextCutFromCategory(cState.cLevel, false, nullptr, context);
    }

    // The titles a walk examined, in order.
    static Lines Examined(Station& cState)
    {
        Lines colTitles;
        Traced(cState, [&](const TraceStep& step) {
            if (step.eKind == StepKind::Considered)
                colTitles.emplace_back(step.sTitle);
        });
        return colTitles;
    }

    // At the first pump only.
    void OnFirstPump(const std::function<void()>& action)
    {
        station.OnPump([this, action] {
            const auto actionNow = action;
            station.OnPump(nullptr);
            actionNow();
        });
    }

    Station station;
};

// ---- what comes back

TEST_F(SelectionTest, FreshHeadComesBackAsACopyAndGoesToTheBack)
{
    const auto cHead = station.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky", .lRunTime = 200'000});
    station.AddCut(L"b", L"Elm", L"Rain", {.lRunTime = 100'001});
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"a");
    EXPECT_EQ(pick.cCut->Album(), L"Sky");
    EXPECT_NE(pick.cCut, cHead);
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(cHead->calls["SetKindCode"], 0) << "the database's cut is not changed";
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log(), (Lines{L"Getting Next Cut From Category: ",
                                    L"We dont care if its an opener or not...considering: Ash - Sun",
                                    L"Sent: a to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                                    L"Average runtime 150000", L"NextCutFromCategory returns: Ash - Sun"}));
}

TEST_F(SelectionTest, CutThatBreaksARuleIsPassedOverForTheNextThatFits)
{
    station.AddCuts(3);
    station.Played(20, L"Oak", L"Sun");
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    EXPECT_EQ(station.Order(), (Lines{L"c", L"a", L"b"}));
    EXPECT_EQ(station.Log().at(3), L"Sun was played 20 mins ago : title rule violation.");
}

TEST_F(SelectionTest, ViolatorWithTheMostSeparationComesBack)
{
    station.AddCuts(3);
    station.Played(20, L"Ash", L"x");
    station.Played(40, L"Elm", L"y");
    station.Played(30, L"Fir", L"z");
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(pick.cCut->KindCode(), eKindArtistViolation);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b", L"c"})) << "rotated once";
    EXPECT_EQ(
        station.Log(),
        (Lines{L"Getting Next Cut From Category: ",
               L"We dont care if its an opener or not...considering: Ash - Sun",
               L"Sent: a to back of category: Pop 2", L"Ash was played 20 mins ago : artist rule violation.",
               L"We dont care if its an opener or not...considering: Elm - Rain",
               L"Sent: b to back of category: Pop 2", L"Elm was played 40 mins ago : artist rule violation.",
               L"We dont care if its an opener or not...considering: Fir - Snow",
               L"Sent: c to back of category: Pop 2", L"Fir was played 30 mins ago : artist rule violation.",
               L"Couldn't find anything without a rule violation in: Pop 2",
               L"There are ONLY violations that can be scheduled, choosing the item with the MOST separation "
               L"out of the violators...",
               L"Cut with least ARTIST violation: Elm - Rain [40 mins]", L"Next Cut in Category: Pop 2",
               L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
}

TEST_F(SelectionTest, KindOfAViolatorNamesTheRuleItBroke)
{
    struct Case
    {
        std::wstring sPlayedArtist, sPlayedTitle, sPlayedAlbum;
        CutKind eKind;
        std::wstring sRule, sMeasured;
    };
    const std::wstring sTitleLine = L"Sun was played 20 mins ago : title rule violation.";
    const std::wstring sArtistLine = L"Ash was played 20 mins ago : artist rule violation.";
    const Case colCases[] = {
        {L"x", L"Sun", L"y", eKindTitleViolation, L"TITLE", sTitleLine},
        {L"Ash", L"x", L"y", eKindArtistViolation, L"ARTIST", sArtistLine},
        {L"x", L"y", L"Sky", eKindAlbumViolation, L"ALBUM", L"Ash - Sun...violates on album sep."},
        {L"Ash", L"Sun", L"Sky", eKindTitleViolation, L"TITLE", sTitleLine},
        {L"Ash", L"x", L"Sky", eKindArtistViolation, L"ARTIST", sArtistLine},
    };
    for (const Case& test : colCases)
    {
        Station own;
        own.SetRules({false, 60, 60, 60});
        own.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky"});
        own.Played(20, test.sPlayedArtist, test.sPlayedTitle, test.sPlayedAlbum);
        EXPECT_EQ(own.NextCut().cCut->KindCode(), test.eKind);
        EXPECT_EQ(own.Log().at(3), test.sMeasured);
        EXPECT_EQ(own.Log().at(6), L"Cut with least " + test.sRule + L" violation: Ash - Sun [20 mins]");
    }
}

TEST_F(SelectionTest, OfViolatorsWithEqualSeparationTheFirstIsChosen)
{
    station.AddCut(L"a", L"Ash", L"One");
    station.AddCut(L"b", L"ASH", L"Two");
    station.AddCut(L"c", L"ash", L"Three");
    station.Played(20, L"Ash", L"x");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b", L"c"}));
}

TEST_F(SelectionTest, MinutesThatReadTheSameCountAsEqual)
{
    // Two distances that single precision tells apart and seven digits do not.
    std::int64_t seconds = 60'000'000;
    const auto Minutes = [](std::int64_t l) { return static_cast<float>(l) / 60.0F; };
    while (Minutes(seconds) == Minutes(seconds + 4) ||
           SingleText(Minutes(seconds)) != SingleText(Minutes(seconds + 4)))
        ++seconds;
    station.SetRules({false, 0, 100'000'000, 0});
    station.AddCuts(2);
    station.PlayedSecondsAgo(seconds, L"Ash", L"x");
    station.PlayedSecondsAgo(seconds + 4, L"Elm", L"y");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
}

TEST_F(SelectionTest, SeparationsAreMeasuredFromThePreviousCutsEnd)
{
    station.AddCuts(2);
    station.Played(20, L"Ash", L"x");
    struct Case
    {
        DateTime dtPlayed;
        std::int32_t lDuration;
        const wchar_t* sChosen;
    };
    const DateTime dtIn37Minutes = station.Now() + 37.0 / (24 * 60);
    const Case colCases[] = {
        {dtIn37Minutes, 3 * 60'000 - 1000, L"b"}, // 59:59 from the play to the slot
        {dtIn37Minutes, 3 * 60'000, L"a"},        // 60:00
        {0, 100 * 60'000, L"b"},                  // never played: counts as no previous cut
        {-1, 100 * 60'000, L"b"},
    };
    const auto cPrev = NewPlainCut();
    for (const Case& test : colCases)
    {
        cPrev->SetLastPlayed(test.dtPlayed);
        cPrev->SetDurationmS(test.lDuration);
        station.SendAllToFront({L"a", L"b"});
        EXPECT_EQ(NextCut(false, cPrev).cCut->Key().Text(), test.sChosen) << test.lDuration;
    }
}

TEST_F(SelectionTest, PreviousCutThatCannotBeUsedLeavesTheRulesInForce)
{
    station.AddCuts(3);
    station.Played(20, L"Ash", L"x");
    station.Played(20, L"Elm", L"y");
    const auto cPrev = std::make_shared<FakeCut>();
    cPrev->SetLastPlayed(station.Now() + 1);
    cPrev->failing.insert("DurationmS");
    const Pick pick = NextCut(false, cPrev);
    EXPECT_EQ(pick.cCut->Key().Text(), L"c") << "measured from now";
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    EXPECT_TRUE(station.Boxes().empty());
    EXPECT_EQ(
        station.Count(L"DISPLAYERROR, ViolatesRules [schedman], previous cut 91 " + StandardDescription(91)),
        1);
}

TEST_F(SelectionTest, GlobalSeparationsHoldWhereALevelSetsNoneExceptForAlbums)
{
    station.UseRulesFile();
    station.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky"});
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(59, L"Ash", L"x");
    station.Played(1, L"y", L"z", L"Sky");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"b");
    station.SendAllToFront({L"a", L"b"});
    station.cMod.SetGlobalArtistSepMins(59);
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
}

TEST_F(SelectionTest, LevelThatIgnoresTheRulesGivesItsHead)
{
    station.SetRules({true, 60, 60, 60});
    station.AddCuts(2);
    station.Played(1, L"Ash", L"Sun");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
}

// ---- openers

TEST_F(SelectionTest, WhereAnOpenerIsRequiredOthersGoToTheBackUnchecked)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain", {.bOpener = true});
    station.AddCut(L"c", L"Fir", L"Snow", {.bOpener = true});
    station.Played(20, L"Ash", L"Sun");
    EXPECT_EQ(NextCut(true).cCut->Key().Text(), L"b");
    EXPECT_EQ(station.Order(), (Lines{L"c", L"a", L"b"}));
    EXPECT_EQ(station.Log(),
              (Lines{L"Getting Next Cut From Category: ",
                     L"It's required that we find an opener. Ash - Sun is NOT an opener, kicking..",
                     L"Sent: a to back of category: Pop 2",
                     L"It's required that we find an opener. Elm - Rain IS an opener, kicking..",
                     L"Sent: b to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                     L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
}

TEST_F(SelectionTest, WithoutAnOpenerEveryCutGoesToTheBackAndKind11Returns)
{
    station.AddCuts(2);
    const Pick pick = NextCut(true);
    EXPECT_EQ(pick.cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(pick.cCut->CategoryText(), L"Pop");
    EXPECT_EQ(pick.cCut->CatLevel(), 2);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    const Lines colLog = station.Log();
    EXPECT_EQ(Lines(colLog.begin() + 5, colLog.end()),
              (Lines{L"Couldn't find anything without a rule violation in: Pop 2",
                     L"No way can an item be scheduled in this position. Sorry, I tried *really* hard!"}));
}

TEST_F(SelectionTest, OnlyOpenersCompeteAmongTheViolators)
{
    station.AddCut(L"a", L"Ash", L"Sun", {.bOpener = true});
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(20, L"Ash", L"x");
    station.Played(50, L"Elm", L"y");
    EXPECT_EQ(NextCut(true).cCut->Key().Text(), L"a");
}

// ---- placeholders

TEST_F(SelectionTest, NoLevelMainCategoryAndEmptyLevelGivePlaceholders)
{
    struct Case
    {
        std::shared_ptr<clsCat> cLevel;
        CutKind eKind;
        const wchar_t *sName, *sLine;
        std::int32_t lLevel;
    };
    const Case colCases[] = {
        {station.cLevel, eKindLevelEmpty, L"Pop", L"Whoops! - no cuts in category: Pop 2", 2},
        {station.cMainCat, eKindLevelZero, L"", L"Whoops! Cant schedule level zero", 0},
        {nullptr, eKindNoCategory, L"", L"Whoops! Category not set...", 0},
    };
    Lines colLog;
    for (const Case& test : colCases)
    {
        station.cLevel = test.cLevel;
        const Pick pick = NextCut();
        EXPECT_EQ(pick.cCut->KindCode(), test.eKind);
        EXPECT_EQ(pick.cCut->CategoryText(), test.sName);
        EXPECT_EQ(pick.cCut->CatLevel(), test.lLevel);
        EXPECT_EQ(pick.cCut->Key().Text(), L"");
        EXPECT_FALSE(pick.bMovedCuts);
        colLog.insert(colLog.end(), {L"Getting Next Cut From Category: ", test.sLine});
    }
    EXPECT_EQ(station.Log(), colLog);
}

TEST_F(SelectionTest, PlaceholderIsTheDatabasesNewCutOrOneOfTheLibrarysOwn)
{
    const auto cNew = std::make_shared<FakeCut>();
    station.cDataBase->cNewCut = cNew;
    EXPECT_EQ(NextCut().cCut, cNew);
    const std::function<void()> colFailures[] = {
        [&] { cNew->failing.insert("SetCatLevel"); }, [&] { station.cDataBase->bNewCutIsNothing = true; },
        [&] { station.cDataBase->bNewCutFails = true; }, [&] { station.cDataBase = nullptr; }};
    for (const auto& fail : colFailures)
    {
        fail();
        const Pick pick = NextCut();
        EXPECT_NE(pick.cCut, cNew);
        EXPECT_EQ(pick.cCut->KindCode(), eKindLevelEmpty);
        EXPECT_EQ(pick.cCut->CatLevel(), 2);
    }
    EXPECT_TRUE(station.Boxes().empty());
}

// ---- cuts that cannot be sent to the back

TEST_F(SelectionTest, CutTheDatabaseDoesNotKnowIsMovedByPosition)
{
    station.AddCuts(2);
    station.cDataBase->Remove(*station.cLevel->SchedCuts()->At(0));
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2), L"Next Cut in Category: Pop 2") << "no line for it";
}

TEST_F(SelectionTest, CutRenamedUnannouncedIsMovedByPositionUnderItsOldKey)
{
    station.AddCuts(2);
    station.cLevel->SchedCuts()->At(0)->SetKey(L"z");
    NextCut();
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2), L"Whoops! - Didnt send: z to back of category: Pop 2");
}

TEST_F(SelectionTest, WhenATwinIsSentBackTheHeadMovesTooAndNoneIsSeenTwice)
{
    station.AddCut(L"0", L"Ash", L"0");
    const auto cGone = station.AddCut(L"1", L"Ash", L"1");
    station.AddCut(L"2", L"Ash", L"1");
    station.AddCut(L"3", L"Ash", L"3");
    station.Played(20, L"Ash", L"x");
    station.cDataBase->Remove(*cGone); // found by artist and title now: the twin
    EXPECT_EQ(Examined(station), (Lines{L"0", L"1", L"3", L"1"})) << "the twin left its place for the end";
    EXPECT_EQ(station.Order(), (Lines{L"1", L"3", L"0", L"2"})) << "the head went behind it";
}

TEST_F(SelectionTest, CutMovedByPositionHidesNoChangeOfOthers)
{
    station.AddViolators(6);
    station.cDataBase->Remove(*station.cLevel->SchedCuts()->At(3));
    station.OnPump([&] { station.cLevel->SchedCuts()->MoveToEnd(0); }); // 5, before the fifth step
    EXPECT_EQ(Examined(station), (Lines{L"1", L"2", L"3", L"4", L"6", L"5"}));
}

TEST_F(SelectionTest, LevelRotatesWhenTheDatabaseFailsOrThereIsNone)
{
    station.AddCuts(2);
    station.cDataBase->bFails = true;
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2),
              L"DISPLAYERROR, SendToBackOfCategory [schedman] 57 " + StandardDescription(57));
    station.cDataBase = nullptr;
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"b");
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    EXPECT_TRUE(station.Boxes().empty());
}

TEST_F(SelectionTest, DatabasesOwnCutTakesThePlaceOfAnOldObject)
{
    const auto cCut = station.AddCut(L"a", L"Ash", L"Sun");
    station.cLevel->SchedCuts()->At(0) = test::PlainCopyOf(*cCut);
    NextCut();
    EXPECT_EQ(station.cLevel->SchedCuts()->At(0), cCut);
}

TEST_F(SelectionTest, EntriesWithoutACutOrAKeyDoNotStopTheWalk)
{
    station.cLevel->SchedCuts()->Add(nullptr);
    station.cLevel->SchedCuts()->Add(station.NewCut(L"a", L"Ash", L"Sun"));
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.cLevel->SchedCuts()->At(0), nullptr);
}

// ---- pumping and what may happen then

TEST_F(SelectionTest, EveryFifthStepPumpsBeforeItExamines)
{
    const std::pair<int, int> colCounts[] = {{1, 0}, {4, 0}, {5, 1}, {9, 1}, {10, 2}, {23, 4}};
    for (const auto& [cuts, lPumps] : colCounts)
    {
        Station own;
        own.AddViolators(cuts);
        own.NextCut();
        EXPECT_EQ(own.PumpCount(), lPumps) << cuts << " cuts";
    }
}

TEST_F(SelectionTest, LogIsOnTheDiskAtAPumpAndEachLineHasItsTime)
{
    station.AddViolators(6);
    Lines colBefore;
    station.OnPump([&] {
        colBefore = station.Log();
        station.SetNow(DateTimeOf({2026, 11, 21, 12, 7, 30}));
    });
    NextCut();
    ASSERT_EQ(colBefore.size(), 1u + 4 * 3);
    EXPECT_EQ(colBefore.back(), L"Ash was played 30 mins ago : artist rule violation.");
    EXPECT_EQ(station.Log().at(13), L"We dont care if its an opener or not...considering: Ash - 5");
    EXPECT_EQ(station.LogStamps().at(12), L"21/11/26 12:00:00 ");
    EXPECT_EQ(station.LogStamps().at(13), L"21/11/26 12:07:30 ");
}

TEST_F(SelectionTest, ReferenceTimeIsOneMomentForTheWholeWalk)
{
    station.AddViolators(5);
    station.OnPump([&] { station.SetNow(station.Now() + 31.0 / (24 * 60)); });
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindArtistViolation) << "though an hour passes during the walk";
}

TEST_F(SelectionTest, LevelEmptiedAtAPumpEndsTheWalkWithWhatWasExamined)
{
    station.AddViolators(8);
    station.OnPump([&] { station.cLevel->SchedCuts()->Clear(); });
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindArtistViolation);
    EXPECT_EQ(pick.cCut->Key().Text(), L"1");
    EXPECT_TRUE(station.Order().empty());
}

TEST_F(SelectionTest, LevelReplacedAtAPumpIsWalkedAsItIsThen)
{
    station.AddViolators(8);
    station.OnPump([&] { station.cLevel->SetSchedCuts({station.NewCut(L"n", L"Elm", L"n")}); });
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"n");
}

TEST_F(SelectionTest, CategoryDeletedAtAPumpIsWalkedToItsEnd)
{
    station.AddViolators(8);
    const std::weak_ptr<clsCat> cWeak = station.cLevel;
    std::shared_ptr<clsCat> cLevel = std::move(station.cLevel);
    SelectionContext context = station.Context();
    context.pump = [&] { station.DeleteMainCat(); };
    const Pick pick = NextCutFromCategory(std::move(cLevel), false, nullptr, context);
    EXPECT_EQ(pick.cCut->Key().Text(), L"1");
    EXPECT_TRUE(cWeak.expired());
}

TEST_F(SelectionTest, CutsRemovedAtAPumpAreNotExaminedAndNoneTwice)
{
    station.AddViolators(12);
    station.OnPump([&] {
        for (const wchar_t* sKey : {L"2", L"7", L"8"})
            station.cLevel->SchedCuts()->Remove(sKey);
    });
    EXPECT_EQ(Examined(station), (Lines{L"1", L"2", L"3", L"4", L"5", L"6", L"9", L"10", L"11", L"12"}));
    EXPECT_EQ(station.Order().size(), 9u);
}

TEST_F(SelectionTest, PickInsideAPumpLeavesNoCutExaminedTwiceByEither)
{
    station.AddViolators(12);
    station.AddCut(L"13", L"Elm", L"13");
    station.AddCut(L"14", L"Fir", L"14");
    Lines colInner;
    OnFirstPump([&] { colInner = Examined(station); });
    const Lines colOuter = Examined(station);
    EXPECT_EQ(colInner, (Lines{L"5", L"6", L"7", L"8", L"9", L"10", L"11", L"12", L"13"}));
    EXPECT_EQ(colOuter, (Lines{L"1", L"2", L"3", L"4", L"14"}));
    EXPECT_EQ(station.Order().size(), 14u);
}

TEST_F(SelectionTest, PassOverIsNoStep)
{
    station.AddViolators(12);
    station.AddCut(L"13", L"Elm", L"13");
    OnFirstPump([&] {
        // 1 to 4 are at the head again, and 13 is behind 5 to 12.
        const std::shared_ptr<CutCollection> colOrder = station.cLevel->SchedCuts();
        for (const int i : {5, 6, 7, 8, 9, 10, 11, 12, 13})
            colOrder->MoveToEnd(*colOrder->PositionOf(std::to_wstring(i)));
    });
    Lines colPassed;
    const Pick pick = Traced(station, [&](const TraceStep& step) {
        if (step.eKind == StepKind::PassedOver)
            colPassed.emplace_back(step.sKey);
    });
    EXPECT_EQ(colPassed, (Lines{L"1", L"2", L"3", L"4"}));
    EXPECT_EQ(pick.cCut->Key().Text(), L"13") << "a fresh cut goes before violators";
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
}

TEST_F(SelectionTest, WalkEndsWhenEveryCutIsPassedOver)
{
    station.AddViolators(12);
    station.OnPump([&] {
        station.cLevel->SchedCuts()->Clear();
        for (std::size_t i = 0; i < 4; ++i)
            station.cLevel->SchedCuts()->Add(TextKey(std::to_wstring(i + 1)),
                                             station.cDataBase->colCuts.at(i));
    });
    EXPECT_EQ(Examined(station), (Lines{L"1", L"2", L"3", L"4"}));
    EXPECT_EQ(station.Order(), (Lines{L"1", L"2", L"3", L"4"}));
}

TEST_F(SelectionTest, ShuffleAtAPumpLeavesNoCutExaminedTwice)
{
    for (std::size_t shift = 1; shift < 30; shift += 7)
    {
        Station own;
        own.AddViolators(30);
        own.OnPump([&] {
            for (std::size_t i = 0; i < 30; i += 2)
                own.cLevel->SchedCuts()->MoveToEnd((i + shift) % 30);
        });
        const Lines colTitles = Examined(own);
        EXPECT_EQ(std::set(colTitles.begin(), colTitles.end()).size(), colTitles.size()) << "twice";
        EXPECT_GT(colTitles.size(), 5u);
        EXPECT_EQ(own.Order().size(), 30u);
    }
}

TEST_F(SelectionTest, ViolatorIsCopiedBeforeTheNextPump)
{
    station.AddViolators(6);
    station.OnPump([&] { station.cDataBase->colCuts.at(0)->SetTitle(L"changed"); });
    EXPECT_EQ(NextCut().cCut->Title(), L"1");
}

TEST_F(SelectionTest, OnlyWhatIsKeptIsCopied)
{
    station.AddViolators(4);
    station.AddCut(L"5", L"Elm", L"5");
    const Cuts colCuts(station.cLevel->SchedCuts()->begin(), station.cLevel->SchedCuts()->end());
    NextCut();
    std::vector<int> colCopies;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        colCopies.push_back(std::static_pointer_cast<FakeCut>(cCut)->calls["CloneCut"]);
    EXPECT_EQ(colCopies, (std::vector<int>{1, 0, 0, 0, 1})) << "the best violator so far, and the choice";
}

// ---- errors

TEST_F(SelectionTest, HeadThatFailsGivesKind11AndGoesToTheBack)
{
    for (const char* sMember : {"Artist", "Title", "Opener", "CloneCut"})
    {
        Station own;
        own.AddCut(L"a", L"Ash", L"Sun", {.bOpener = true})->failing.insert(sMember);
        own.AddCut(L"b", L"Elm", L"Rain", {.bOpener = true});
        const Pick pick = own.NextCut(true);
        EXPECT_EQ(pick.cCut->KindCode(), eKindNothingSchedulable) << sMember;
        EXPECT_EQ(pick.cCut->CategoryText(), L"Pop");
        EXPECT_EQ(pick.cCut->CatLevel(), 2);
        EXPECT_TRUE(pick.bMovedCuts);
        ASSERT_EQ(own.Boxes().size(), 1u) << sMember;
        EXPECT_EQ(own.Boxes()[0],
                  (ShownBox{BoxIcon::Critical, BoxButtons::Ok, L"Error in NextCutFromCategory [cSchedMan]",
                            L"91 " + StandardDescription(91)}));
        EXPECT_EQ(own.Order(), (Lines{L"b", L"a"})) << sMember;
        EXPECT_EQ(own.NextCut(true).cCut->Key().Text(), L"b");
    }
}

TEST_F(SelectionTest, CutThatClonesToNothingIsAnError)
{
    station.AddCut(L"a", L"Ash", L"Sun")->bClonesNothing = true;
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(station.Boxes().size(), 1u);
}

TEST_F(SelectionTest, ErrorWhileMeasuringIsReportedAndBreaksNoRule)
{
    station.AddCuts(2);
    station.Played(1, L"Ash", L"x")->failing.insert("LastPlayed");
    // What others do in the box must not disturb the candidate under measurement.
    station.OnBox([&] {
        station.cLevel->SetSchedCuts({});
        station.cDataBase->colCuts.clear();
    });
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"a");
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    EXPECT_TRUE(station.Order().empty());
    const std::wstring sDescription = StandardDescription(91);
    EXPECT_EQ(station.Log().at(3), L"DISPLAYERROR, ViolatesRules [schedman] 91 " + sDescription);
    ASSERT_EQ(station.Boxes().size(), 1u);
    EXPECT_EQ(station.Boxes()[0], (ShownBox{BoxIcon::Information, BoxButtons::Ok, L"ViolatesRules [schedman]",
                                            L"Handled Error!\r\n" + sDescription + L"\r\n91"}));
}

TEST_F(SelectionTest, ErrorThatEveryCandidateMeetsShowsOneBox)
{
    station.SetRules({false, 60, 60, 0});
    for (int i = 1; i <= 3; ++i)
        station.AddCut(std::to_wstring(i), L"Ash", L"Same");
    station.Played(5, L"x", L"Same");
    station.Played(1, L"Ash", L"y")->failing.insert("LastPlayed");
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindTitleViolation) << "what was found before the error counts";
    EXPECT_EQ(station.Boxes().size(), 1u);
    EXPECT_EQ(station.Count(L"DISPLAYERROR, ViolatesRules [schedman] 91 " + StandardDescription(91)), 3);
}

// ---- the trace

TEST_F(SelectionTest, TraceHasEachMeasurementAlsoThoseTheLogLeavesOut)
{
    station.AddCuts(3);
    station.PlayedSecondsAgo(1001, L"x", L"Sun");
    station.Played(0, L"x", L"Rain");
    std::vector<std::tuple<std::wstring, std::int32_t, double>> colMeasured;
    const Pick pick = Traced(station, [&](const TraceStep& step) {
        if (step.eKind == StepKind::Measured)
            colMeasured.emplace_back(step.sTitle, step.pViolation->Violation, step.dTitleMinsKey);
    });
    EXPECT_EQ(colMeasured, (decltype(colMeasured){
                               {L"Sun", eGlobalTitle, 16.683},
                               {L"Rain", eGlobalTitle, 1'000'000.0}, // played now: listed as if never played
                               {L"Snow", eNone, 1'000'000.0}}));
    EXPECT_TRUE(station.Log().empty()) << "a selection without a log writes none";
}

TEST_F(SelectionTest, TraceNamesTheLevelsCutAndThePlayInItsWay)
{
    station.AddCuts(2);
    const auto cPlayed = station.Played(20, L"Ash", L"x");
    const Cuts colCuts(station.cLevel->SchedCuts()->begin(), station.cLevel->SchedCuts()->end());
    using Told = std::tuple<StepKind, std::shared_ptr<Cut>, std::shared_ptr<Cut>>;
    std::vector<Told> colTold;
    Traced(station, [&](const TraceStep& step) {
        if (step.pCandidate)
            colTold.emplace_back(step.eKind, step.pCandidate->cCut,
                                 step.pBreach ? step.pBreach->cBlockedBy : nullptr);
    });
    EXPECT_EQ(colTold, (std::vector<Told>{{StepKind::Considered, colCuts[0], nullptr},
                                          {StepKind::Measured, colCuts[0], cPlayed},
                                          {StepKind::Considered, colCuts[1], nullptr},
                                          {StepKind::Measured, colCuts[1], nullptr},
                                          {StepKind::Chosen, colCuts[1], nullptr}}));
}

TEST_F(SelectionTest, RulesOfTheContextTakeThePlaceOfTheLevelsOwn)
{
    station.AddCuts(2);
    station.Played(20, L"Ash", L"x");
    SelectionContext context = station.Context();
    context.rules = [](clsCat&) { return SeparationRules{false, 60, 20, -1}; };
    EXPECT_EQ(NextCutFromCategory(station.cLevel, false, nullptr, context).cCut->Key().Text(), L"a");
}

} // namespace
} // namespace ravlo::test

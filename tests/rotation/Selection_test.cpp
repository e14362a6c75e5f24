// SPDX-License-Identifier: MIT
#include "rotation/Selection.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

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
        const ModScheduler::LogScope cScope(station.cMod);
        return NextCutFromCategory(station.cLevel, bMustBeOpener, cPrevSchedCut, station.World());
    }

    // The keys a walk examined, in order, whatever came of them.
    Lines Examined(bool bMustBeOpener = false)
    {
        Lines colKeys;
        SelectionWorld world = station.World();
        world.note = [&](const TraceStep& step)
        {
            if (step.eKind == StepKind::Considered || step.eKind == StepKind::OpenerConsidered ||
                step.eKind == StepKind::NotAnOpener)
                colKeys.emplace_back(step.sTitle);
        };
        NextCutFromCategory(station.cLevel, bMustBeOpener, nullptr, world);
        return colKeys;
    }

    // A level of cuts "1" to "n" whose titles are their keys. Every one breaks the artist rule.
    void AddViolators(int lCount)
    {
        for (int i = 1; i <= lCount; ++i)
            station.AddCut(std::to_wstring(i), L"Ash", std::to_wstring(i));
        station.Played(30, L"Ash", L"Other");
    }

    Station station;
};

// ---- what comes back

TEST_F(SelectionTest, AFreshHeadComesBackAsACopyAndGoesToTheBack)
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

TEST_F(SelectionTest, ACutThatBreaksARuleIsPassedOverForTheNextThatFits)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.AddCut(L"c", L"Fir", L"Snow");
    station.Played(20, L"Oak", L"Sun");
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    EXPECT_EQ(station.Order(), (Lines{L"c", L"a", L"b"}));
    EXPECT_EQ(station.Log(), (Lines{L"Getting Next Cut From Category: ",
                                    L"We dont care if its an opener or not...considering: Ash - Sun",
                                    L"Sent: a to back of category: Pop 2",
                                    L"Sun was played 20 mins ago : title rule violation.",
                                    L"We dont care if its an opener or not...considering: Elm - Rain",
                                    L"Sent: b to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                                    L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
}

TEST_F(SelectionTest, AmongViolatorsTheOneWithTheMostSeparationComesBackAndTheOrderIsRotatedOnce)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.AddCut(L"c", L"Fir", L"Snow");
    station.Played(20, L"Ash", L"x");
    station.Played(40, L"Elm", L"y");
    station.Played(30, L"Fir", L"z");
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(pick.cCut->KindCode(), eKindArtistViolation);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b", L"c"}));
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

TEST_F(SelectionTest, TheKindOfAViolatorNamesTheRuleItBroke)
{
    struct Case
    {
        std::wstring sPlayedArtist, sPlayedTitle, sPlayedAlbum;
        CutKind eKind;
        std::wstring sLine;
    };
    const Case colCases[] = {
        {L"x", L"Sun", L"y", eKindTitleViolation, L"Cut with least TITLE violation: Ash - Sun [20 mins]"},
        {L"Ash", L"x", L"y", eKindArtistViolation, L"Cut with least ARTIST violation: Ash - Sun [20 mins]"},
        {L"x", L"y", L"Sky", eKindAlbumViolation, L"Cut with least ALBUM violation: Ash - Sun [20 mins]"},
        {L"Ash", L"Sun", L"Sky", eKindTitleViolation, L"Cut with least TITLE violation: Ash - Sun [20 mins]"},
        {L"Ash", L"x", L"Sky", eKindArtistViolation, L"Cut with least ARTIST violation: Ash - Sun [20 mins]"},
    };
    for (const Case& test : colCases)
    {
        Station own;
        own.SetRules({false, 60, 60, 60});
        own.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky"});
        own.Played(20, test.sPlayedArtist, test.sPlayedTitle, test.sPlayedAlbum);
        const Pick pick = NextCutFromCategory(own.cLevel, false, nullptr, own.World());
        EXPECT_EQ(pick.cCut->KindCode(), test.eKind);
        EXPECT_EQ(own.Log().at(own.Log().size() - 4), test.sLine);
    }
}

TEST_F(SelectionTest, AnAlbumViolationIsLoggedWithArtistAndTitle)
{
    station.SetRules({false, 0, 0, 60});
    station.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky"});
    station.Played(20, L"x", L"y", L"Sky");
    NextCut();
    EXPECT_EQ(station.Log().at(3), L"Ash - Sun...violates on album sep.");
}

TEST_F(SelectionTest, OfViolatorsWithEqualSeparationTheFirstExaminedIsChosen)
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
    std::int64_t lSeconds = 60'000'000;
    const auto Minutes = [](std::int64_t l) { return static_cast<float>(l) / 60.0F; };
    while (Minutes(lSeconds) == Minutes(lSeconds + 4) ||
           SingleText(Minutes(lSeconds)) != SingleText(Minutes(lSeconds + 4)))
        ++lSeconds;
    station.SetRules({false, 0, 100'000'000, 0});
    station.AddCut(L"a", L"Ash", L"One");
    station.AddCut(L"b", L"Elm", L"Two");
    station.PlayedSecondsAgo(lSeconds, L"Ash", L"x");
    station.PlayedSecondsAgo(lSeconds + 4, L"Elm", L"y");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
}

TEST_F(SelectionTest, SeparationsAreMeasuredFromThePreviousCutsEnd)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(20, L"Ash", L"x");
    auto cPrev = NewPlainCut();
    cPrev->SetLastPlayed(station.Now() + 37.0 / (24 * 60));
    cPrev->SetDurationmS(3 * 60'000 - 1000);
    EXPECT_EQ(NextCut(false, cPrev).cCut->Key().Text(), L"b") << "59:59 from the play to the slot";
    station.SendAllToFront({L"a", L"b"});
    cPrev->SetDurationmS(3 * 60'000);
    EXPECT_EQ(NextCut(false, cPrev).cCut->Key().Text(), L"a") << "60:00";
}

TEST_F(SelectionTest, APreviousCutThatCannotBeUsedLeavesTheRulesInForce)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.AddCut(L"c", L"Fir", L"Snow");
    station.Played(20, L"Ash", L"x");
    station.Played(20, L"Elm", L"y");
    auto cPrev = std::make_shared<FakeCut>();
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

TEST_F(SelectionTest, APreviousCutWithoutAPlayTimeCountsAsNone)
{
    for (const DateTime dtPlayed : {0.0, -1.0})
    {
        station.AddCut(L"a", L"Ash", L"Sun");
        station.AddCut(L"b", L"Elm", L"Rain");
        station.Played(20, L"Ash", L"x");
        auto cPrev = NewPlainCut();
        cPrev->SetLastPlayed(dtPlayed);
        cPrev->SetDurationmS(100 * 60'000);
        station.SendAllToFront({L"a", L"b"});
        EXPECT_EQ(NextCut(false, cPrev).cCut->Key().Text(), L"b");
    }
}

TEST_F(SelectionTest, TheGlobalSeparationsHoldForArtistAndTitleWhereTheLevelSetsNoneAndForTheAlbumNever)
{
    station.UseRulesFile();
    station.AddCut(L"a", L"Ash", L"Sun", {.sAlbum = L"Sky"});
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(59, L"Ash", L"x");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"b");
    station.SendAllToFront({L"a", L"b"});
    station.cMod.SetGlobalArtistSepMins(59);
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    station.SendAllToFront({L"a", L"b"});
    station.Played(1, L"y", L"z", L"Sky");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
}

TEST_F(SelectionTest, ALevelThatIgnoresTheRulesGivesItsHead)
{
    station.SetRules({true, 60, 60, 60});
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
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
    const Pick pick = NextCut(true);
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(station.Order(), (Lines{L"c", L"a", L"b"}));
    EXPECT_EQ(station.Log(),
              (Lines{L"Getting Next Cut From Category: ",
                     L"It's required that we find an opener. Ash - Sun is NOT an opener, kicking..",
                     L"Sent: a to back of category: Pop 2",
                     L"It's required that we find an opener. Elm - Rain IS an opener, kicking..",
                     L"Sent: b to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                     L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
}

TEST_F(SelectionTest, WithoutAnyOpenerEveryCutGoesToTheBackAndKind11ComesBack)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    const Pick pick = NextCut(true);
    EXPECT_EQ(pick.cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(pick.cCut->CategoryText(), L"Pop");
    EXPECT_EQ(pick.cCut->CatLevel(), 2);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    EXPECT_EQ(station.Log(),
              (Lines{L"Getting Next Cut From Category: ",
                     L"It's required that we find an opener. Ash - Sun is NOT an opener, kicking..",
                     L"Sent: a to back of category: Pop 2",
                     L"It's required that we find an opener. Elm - Rain is NOT an opener, kicking..",
                     L"Sent: b to back of category: Pop 2",
                     L"Couldn't find anything without a rule violation in: Pop 2",
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

TEST_F(SelectionTest, AnEmptyLevelGivesKind7WithItsNameAndLevel)
{
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindLevelEmpty);
    EXPECT_EQ(pick.cCut->CategoryText(), L"Pop");
    EXPECT_EQ(pick.cCut->CatLevel(), 2);
    EXPECT_EQ(pick.cCut->Key().Text(), L"");
    EXPECT_FALSE(pick.bMovedCuts);
    EXPECT_EQ(station.Log(),
              (Lines{L"Getting Next Cut From Category: ", L"Whoops! - no cuts in category: Pop 2"}));
}

TEST_F(SelectionTest, NoLevelGivesKind13)
{
    station.cLevel = nullptr;
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindNoCategory);
    EXPECT_EQ(pick.cCut->CategoryText(), L"");
    EXPECT_FALSE(pick.bMovedCuts);
    EXPECT_EQ(station.Log(), (Lines{L"Getting Next Cut From Category: ", L"Whoops! Category not set..."}));
}

TEST_F(SelectionTest, AMainCategoryGivesKind12)
{
    station.AddCut(L"a");
    station.cLevel = station.cMainCat;
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindLevelZero);
    EXPECT_EQ(pick.cCut->CategoryText(), L"");
    EXPECT_EQ(station.Log(),
              (Lines{L"Getting Next Cut From Category: ", L"Whoops! Cant schedule level zero"}));
}

TEST_F(SelectionTest, APlaceholderIsTheDatabasesNewCutOrOneOfTheLibrarysOwn)
{
    station.cDataBase->cNewCut = std::make_shared<FakeCut>();
    EXPECT_EQ(NextCut().cCut, station.cDataBase->cNewCut);

    std::static_pointer_cast<FakeCut>(station.cDataBase->cNewCut)->failing.insert("SetCatLevel");
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindLevelEmpty);

    station.cDataBase->bNewCutIsNothing = true;
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindLevelEmpty);

    station.cDataBase->bNewCutFails = true;
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindLevelEmpty);
    EXPECT_EQ(pick.cCut->CatLevel(), 2);

    station.cDataBase = nullptr;
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindLevelEmpty);
    EXPECT_TRUE(station.Boxes().empty());
}

// ---- cuts that cannot be sent to the back

TEST_F(SelectionTest, ACutTheDatabaseNoLongerKnowsIsMovedByPositionAndSaysNothing)
{
    const auto cGone = station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.cDataBase->Remove(*cGone);
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2), L"Next Cut in Category: Pop 2");
}

TEST_F(SelectionTest, ACutRenamedUnannouncedIsMovedByPositionUnderItsOldKey)
{
    const auto cRenamed = station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    cRenamed->SetKey(L"z");
    NextCut();
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2), L"Whoops! - Didnt send: z to back of category: Pop 2");
}

TEST_F(SelectionTest, WhenTheFallBackLookUpMovesAnotherCutTheHeadMovesTooAndNoCutIsExaminedTwice)
{
    const auto cGone = station.AddCut(L"1", L"Ash", L"1");
    station.AddCut(L"2", L"Ash", L"1");
    station.AddCut(L"3", L"Ash", L"3");
    station.Played(20, L"Ash", L"x");
    station.cDataBase->Remove(*cGone); // found by artist and title now: the twin
    NextCut();
    EXPECT_EQ(station.Order(), (Lines{L"1", L"3", L"2"}))
        << "the twin left its place, the head went behind it";
    EXPECT_EQ(station.Count(L"We dont care if its an opener or not...considering: Ash - 1"), 2)
        << "the cut and its twin, once each";
    EXPECT_EQ(station.Count(L"We dont care if its an opener or not...considering: Ash - 3"), 1);
}

TEST_F(SelectionTest, WithoutADatabaseALevelStillRotates)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.cDataBase = nullptr;
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"b");
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
}

TEST_F(SelectionTest, ADatabaseThatFailsIsLoggedAndTheLevelStillRotates)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.cDataBase->bFails = true;
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log().at(2),
              L"DISPLAYERROR, SendToBackOfCategory [schedman] 57 " + StandardDescription(57));
    EXPECT_TRUE(station.Boxes().empty());
}

TEST_F(SelectionTest, TheDatabasesOwnCutTakesThePlaceOfAnOldObjectInTheOrder)
{
    const auto cCut = station.AddCut(L"a", L"Ash", L"Sun");
    station.cLevel->SchedCuts()->At(0) = PlainCopyOf(*cCut);
    NextCut();
    EXPECT_EQ(station.cLevel->SchedCuts()->At(0), cCut);
}

TEST_F(SelectionTest, AnEntryWithoutACutAndEntriesWithoutKeysDoNotStopTheWalk)
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
    for (const auto& [lCuts, lPumps] : colCounts)
    {
        Station own;
        for (int i = 1; i <= lCuts; ++i)
            own.AddCut(std::to_wstring(i), L"Ash", std::to_wstring(i));
        own.Played(30, L"Ash", L"x");
        NextCutFromCategory(own.cLevel, false, nullptr, own.World());
        EXPECT_EQ(own.PumpCount(), lPumps) << lCuts << " cuts";
    }
}

TEST_F(SelectionTest, ThePumpComesAtTheFifthStepAndTheLogIsOnTheDiskThen)
{
    AddViolators(6);
    Lines colBefore;
    station.OnPump([&] { colBefore = station.Log(); });
    NextCut();
    ASSERT_FALSE(colBefore.empty());
    EXPECT_EQ(colBefore.size(), 1u + 4 * 3);
    EXPECT_EQ(colBefore.back(), L"Ash was played 30 mins ago : artist rule violation.");
}

TEST_F(SelectionTest, LinesCarryTheTimeOfTheirMoment)
{
    AddViolators(5);
    station.OnPump([&] { station.SetNow(DateTimeOf({2026, 11, 21, 12, 7, 30})); });
    NextCut();
    const Lines colStamps = station.LogStamps();
    ASSERT_EQ(station.Log().at(13), L"We dont care if its an opener or not...considering: Ash - 5");
    EXPECT_EQ(colStamps.at(12), L"21/11/26 12:00:00 ");
    EXPECT_EQ(colStamps.at(13), L"21/11/26 12:07:30 ");
}

TEST_F(SelectionTest, TheReferenceTimeMovesWithTheClock)
{
    AddViolators(5);
    station.OnPump([&] { station.SetNow(station.Now() + 31.0 / (24 * 60)); });
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"5") << "an hour has passed when the fifth cut is measured";
}

TEST_F(SelectionTest, ALevelEmptiedAtAPumpEndsTheWalkWithWhatWasExamined)
{
    AddViolators(8);
    station.OnPump([&] { station.cLevel->SchedCuts()->Clear(); });
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->KindCode(), eKindArtistViolation);
    EXPECT_EQ(pick.cCut->Key().Text(), L"1");
    EXPECT_TRUE(station.Order().empty());
}

TEST_F(SelectionTest, ALevelReplacedAtAPumpIsWalkedAsItStandsThen)
{
    AddViolators(8);
    station.OnPump([&] { station.cLevel->SetSchedCuts({station.NewCut(L"n", L"Elm", L"n")}); });
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"n");
}

TEST_F(SelectionTest, ACategoryDeletedAtAPumpIsWalkedToItsEnd)
{
    AddViolators(8);
    const std::weak_ptr<clsCat> cWeak = station.cLevel;
    std::shared_ptr<clsCat> cLevel = std::move(station.cLevel);
    SelectionWorld world = station.World();
    world.pump = [&] { station.DeleteMainCat(); };
    const Pick pick = NextCutFromCategory(std::move(cLevel), false, nullptr, world);
    EXPECT_EQ(pick.cCut->Key().Text(), L"1");
    EXPECT_TRUE(cWeak.expired());
}

TEST_F(SelectionTest, CutsRemovedAtAPumpAreNotExaminedAndNoOtherIsExaminedTwice)
{
    AddViolators(12);
    station.OnPump(
        [&]
        {
            station.cLevel->SchedCuts()->Remove(L"2");
            station.cLevel->SchedCuts()->Remove(L"7");
            station.cLevel->SchedCuts()->Remove(L"8");
        });
    EXPECT_EQ(Examined(), (Lines{L"1", L"2", L"3", L"4", L"5", L"6", L"9", L"10", L"11", L"12"}));
    EXPECT_EQ(station.Order().size(), 9u);
}

TEST_F(SelectionTest, APickInsideAPumpLeavesNoCutExaminedTwiceByEither)
{
    AddViolators(12);
    station.AddCut(L"13", L"Elm", L"13");
    station.AddCut(L"14", L"Fir", L"14");
    Lines colInner;
    bool bNested = false;
    station.OnPump(
        [&]
        {
            if (std::exchange(bNested, true))
                return;
            colInner = Examined();
        });
    const Lines colOuter = Examined();
    EXPECT_EQ(colInner, (Lines{L"5", L"6", L"7", L"8", L"9", L"10", L"11", L"12", L"13"}));
    EXPECT_EQ(colOuter, (Lines{L"1", L"2", L"3", L"4", L"14"}));
    EXPECT_EQ(station.Order().size(), 14u);
}

TEST_F(SelectionTest, APassOverIsNoStep)
{
    AddViolators(12);
    station.AddCut(L"13", L"Elm", L"13");
    bool bNested = false;
    station.OnPump(
        [&]
        {
            if (std::exchange(bNested, true))
                return;
            // 1 to 4 come to the head again, and 13 stands behind 5 to 12.
            const std::shared_ptr<CutCollection> colOrder = station.cLevel->SchedCuts();
            for (const int i : {5, 6, 7, 8, 9, 10, 11, 12, 13})
                colOrder->MoveToEnd(*colOrder->PositionOf(std::to_wstring(i)));
        });
    std::size_t lPassed = 0;
    SelectionWorld world = station.World();
    world.note = [&](const TraceStep& step) { lPassed += step.eKind == StepKind::PassedOver ? 1 : 0; };
    const Pick pick = NextCutFromCategory(station.cLevel, false, nullptr, world);
    EXPECT_EQ(lPassed, 4u);
    EXPECT_EQ(pick.cCut->Key().Text(), L"13") << "a fresh cut goes before violators";
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
}

TEST_F(SelectionTest, AWalkEndsWhenEveryCutIsPassedOver)
{
    AddViolators(12);
    station.OnPump(
        [&]
        {
            station.cLevel->SchedCuts()->Clear();
            for (int i = 1; i <= 4; ++i)
                station.cLevel->SchedCuts()->Add(
                    TextKey(std::to_wstring(i)),
                    station.cDataBase->colCuts.at(static_cast<std::size_t>(i - 1)));
        });
    EXPECT_EQ(Examined(), (Lines{L"1", L"2", L"3", L"4"}));
    EXPECT_EQ(station.Order(), (Lines{L"1", L"2", L"3", L"4"}));
}

TEST_F(SelectionTest, AShuffleAtAPumpLeavesNoCutExaminedTwice)
{
    for (int lShift = 1; lShift < 30; lShift += 7)
    {
        Station own;
        for (int i = 1; i <= 30; ++i)
            own.AddCut(std::to_wstring(i), L"Ash", std::to_wstring(i));
        own.Played(30, L"Ash", L"x");
        own.OnPump(
            [&]
            {
                for (std::size_t i = 0; i < 30; i += 2)
                    own.cLevel->SchedCuts()->MoveToEnd((i + static_cast<std::size_t>(lShift)) % 30);
            });
        std::set<std::wstring> colSeen;
        SelectionWorld world = own.World();
        world.note = [&](const TraceStep& step)
        {
            if (step.eKind == StepKind::Considered)
            {
                EXPECT_TRUE(colSeen.insert(std::wstring(step.sTitle)).second) << "twice";
            }
        };
        NextCutFromCategory(own.cLevel, false, nullptr, world);
        EXPECT_GT(colSeen.size(), 5u);
        EXPECT_EQ(own.Order().size(), 30u);
    }
}

TEST_F(SelectionTest, AViolatorIsCopiedBeforeTheNextPump)
{
    const auto cFirst = station.AddCut(L"1", L"Ash", L"1");
    for (int i = 2; i <= 6; ++i)
        station.AddCut(std::to_wstring(i), L"Ash", std::to_wstring(i));
    station.Played(30, L"Ash", L"x");
    station.OnPump([&] { cFirst->SetTitle(L"changed"); });
    EXPECT_EQ(NextCut().cCut->Title(), L"1");
}

TEST_F(SelectionTest, OnlyWhatIsKeptIsCopied)
{
    std::vector<std::shared_ptr<FakeCut>> colCuts;
    for (int i = 1; i <= 4; ++i)
        colCuts.push_back(station.AddCut(std::to_wstring(i), L"Ash", std::to_wstring(i)));
    station.Played(30, L"Ash", L"x");
    station.AddCut(L"5", L"Elm", L"5");
    NextCut();
    const int lCopies =
        std::accumulate(colCuts.begin(), colCuts.end(), 0,
                        [](int lSum, const auto& cCut) { return lSum + cCut->calls["CloneCut"]; });
    EXPECT_EQ(lCopies, 1) << "the best violator so far, and none that could not replace it";
}

// ---- errors

TEST_F(SelectionTest, AnErrorOfTheHeadIsShownGivesKind11AndTheCutDoesNotStayAtTheHead)
{
    for (const char* sMember : {"Artist", "Title", "Opener", "CloneCut"})
    {
        Station own;
        own.AddCut(L"a", L"Ash", L"Sun", {.bOpener = true})->failing.insert(sMember);
        own.AddCut(L"b", L"Elm", L"Rain", {.bOpener = true});
        const Pick pick = NextCutFromCategory(own.cLevel, true, nullptr, own.World());
        EXPECT_EQ(pick.cCut->KindCode(), eKindNothingSchedulable) << sMember;
        EXPECT_EQ(pick.cCut->CategoryText(), L"Pop");
        EXPECT_EQ(pick.cCut->CatLevel(), 2);
        EXPECT_TRUE(pick.bMovedCuts);
        const std::wstring sText = L"91 " + StandardDescription(91);
        ASSERT_EQ(own.Boxes().size(), 1u) << sMember;
        EXPECT_EQ(own.Boxes()[0], (ShownBox{BoxIcon::Critical, BoxButtons::Ok,
                                            L"Error in NextCutFromCategory [cSchedMan]", sText}));
        EXPECT_EQ(own.Order(), (Lines{L"b", L"a"})) << sMember;
        EXPECT_EQ(NextCutFromCategory(own.cLevel, true, nullptr, own.World()).cCut->Key().Text(), L"b");
    }
}

TEST_F(SelectionTest, ACutThatClonesToNothingIsAnError)
{
    station.AddCut(L"a", L"Ash", L"Sun")->bClonesNothing = true;
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(station.Boxes().size(), 1u);
}

TEST_F(SelectionTest, AnErrorWhileMeasuringIsReportedAndBreaksNoRule)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(1, L"Ash", L"x")->failing.insert("LastPlayed");
    const Pick pick = NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"a");
    EXPECT_EQ(pick.cCut->KindCode(), eKindChosen);
    const std::wstring sDescription = StandardDescription(91);
    EXPECT_EQ(station.Log().at(3), L"DISPLAYERROR, ViolatesRules [schedman] 91 " + sDescription);
    ASSERT_EQ(station.Boxes().size(), 1u);
    EXPECT_EQ(station.Boxes()[0], (ShownBox{BoxIcon::Information, BoxButtons::Ok, L"ViolatesRules [schedman]",
                                            L"Handled Error!\r\n" + sDescription + L"\r\n91"}));
}

TEST_F(SelectionTest, AnErrorThatEveryCandidateMeetsShowsOneBoxAndIsLoggedEachTime)
{
    station.SetRules({false, 60, 60, 0});
    for (int i = 1; i <= 3; ++i)
        station.AddCut(std::to_wstring(i), L"Ash", L"Same");
    station.Played(5, L"x", L"Same");
    station.Played(1, L"Ash", L"y")->failing.insert("LastPlayed");
    EXPECT_EQ(NextCut().cCut->KindCode(), eKindTitleViolation) << "what was found before the error stands";
    EXPECT_EQ(station.Boxes().size(), 1u);
    EXPECT_EQ(station.Count(L"DISPLAYERROR, ViolatesRules [schedman] 91 " + StandardDescription(91)), 3);
}

TEST_F(SelectionTest, ALevelEmptiedWhileAnErrorIsShownDoesNotDisturbTheCandidateUnderMeasurement)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.Played(1, L"Ash", L"x")->failing.insert("LastPlayed");
    station.OnBox(
        [&]
        {
            station.cLevel->SetSchedCuts({});
            station.cDataBase->colCuts.clear();
        });
    EXPECT_EQ(NextCut().cCut->Key().Text(), L"a");
    EXPECT_TRUE(station.Order().empty());
}

// ---- the trace

TEST_F(SelectionTest, TheTraceTellsEachMeasurementAlsoThoseTheLogPassesOver)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b", L"Elm", L"Rain");
    station.PlayedSecondsAgo(1001, L"x", L"Sun");
    std::vector<std::tuple<std::wstring, std::int32_t, double>> colMeasured;
    SelectionWorld world = station.World();
    world.note = [&](const TraceStep& step)
    {
        if (step.eKind == StepKind::Measured)
            colMeasured.emplace_back(step.sTitle, step.pViolation->Violation, step.dTitleMinsKey);
    };
    NextCutFromCategory(station.cLevel, false, nullptr, world);
    ASSERT_EQ(colMeasured.size(), 2u);
    EXPECT_EQ(colMeasured[0], std::tuple(std::wstring(L"Sun"), std::int32_t{eGlobalTitle}, 16.683));
    EXPECT_EQ(colMeasured[1], std::tuple(std::wstring(L"Rain"), std::int32_t{eNone}, 1'000'000.0));
    EXPECT_TRUE(station.Log().empty()) << "a selection without a log writes none";
}

TEST_F(SelectionTest, ATitlePlayedThisVeryMomentIsListedAsIfItHadNotPlayedAndStillBreaksItsRule)
{
    station.AddCut(L"a", L"Ash", L"Sun");
    station.Played(0, L"x", L"Sun");
    double dKey = 0;
    SelectionWorld world = station.World();
    world.note = [&](const TraceStep& step)
    { dKey = step.eKind == StepKind::Measured ? step.dTitleMinsKey : dKey; };
    EXPECT_EQ(NextCutFromCategory(station.cLevel, false, nullptr, world).cCut->KindCode(),
              eKindTitleViolation);
    EXPECT_EQ(dKey, 1'000'000.0);
}

} // namespace
} // namespace ravlo::test

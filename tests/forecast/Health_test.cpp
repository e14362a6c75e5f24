// SPDX-License-Identifier: MIT
#include "forecast/Health.h"

#include "forecast/HealthCase.h"
#include "forecast/Light.h"
#include "forecast/MakeUp.h"
#include "forecast/PlayPatterns.h"
#include "forecast/Troubles.h"
#include "forecast/clsSimulation.h"
#include "support/EngineTest.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

TEST(MakeUp, CountsArtistsAndTitlesWithoutRegardToCase)
{
    const struct
    {
        std::vector<CaseCut> cuts;
        std::size_t artists, mostOfArtist, mostOfTitle;
        std::wstring sCommonest;
    } colCases[] = {
        {{}, 0, 0, 0, L""},
        {{{L"", L""}, {L"", L""}}, 0, 0, 0, L""}, // they limit nothing
        {{{L"Ash", L"Sun"}, {L"Elm", L"SUN"}, {L"elm", L"Sea"}}, 2, 2, 2, L"Elm"},
        {{{L"ash", L"1"}, {L"Elm", L"2"}, {L"ELM", L"3"}, {L"Ash", L"4"}}, 2, 2, 1, L"ash"},
        {{{L"Ash feat. Elm", L"1"}, {L"Elm", L"2"}, {L"", L"2"}}, 2, 1, 2, L"Ash feat. Elm"},
    };
    for (const auto& one : colCases)
    {
        HealthCase health;
        health.AddLevel(L"Pop", {}, 0, one.cuts);
        const MakeUp makeUp = MakeUpOf(*health.cStation, health.cStation->levels[0].order, {});
        EXPECT_EQ(makeUp.cuts, one.cuts.size());
        EXPECT_EQ(makeUp.artists.size(), one.artists);
        EXPECT_EQ(makeUp.mostOfArtist, one.mostOfArtist);
        EXPECT_EQ(makeUp.mostOfTitle, one.mostOfTitle);
        EXPECT_EQ(makeUp.commonest.cName.Text(), one.sCommonest);
    }
}

TEST(MakeUp, FeaturedArtistsCountWhenTheSimulationCountsThem)
{
    HealthCase health;
    health.AddLevel(L"Pop", {}, 24, {{L"Ash feat. Elm", L"1"}, {L"Elm", L"2"}, {L"Oak", L"3"}});
    health.result.options.bFeaturedArtists = true;
    const LevelHealth level = HealthOf(health.result).levels[0];
    EXPECT_EQ(level.lArtists, 4); // the credit, Ash, Elm, Oak
    EXPECT_EQ(level.sTopArtist, L"Elm");
    EXPECT_EQ(level.lTopArtistCuts, 2);
    EXPECT_EQ(level.lAttainableArtistMins, 60);
}

TEST(MakeUp, AttainableMinutesAreWholePlacesTimesSlotMinutes)
{
    const struct
    {
        AskingRate rate;
        std::size_t cuts, most;
        double dSlotMins;
        std::int32_t lAttainable;
    } colCases[] = {
        {{1, 0}, 10, 2, 0, 0},            // never asked
        {{1, 24}, 0, 0, 60, 0},           // no cuts
        {{1, 24}, 3, 0, 60, lAnyMins},    // no cut has an artist
        {{1, 24}, 10, 3, 60, 180},        // floor(10 / 3) places of an hour
        {{7, 1000}, 5, 1, 10.08, 50},     // 50.4
        {{1, 7}, 7, 1, 1440.0 / 7, 1440}, // exact in spite of the fraction
        {{1.5, 24}, 4, 2, 90, 180},       // one and a half days
        {{DateTimeOf({2024, 3, 8, 13, 0, 0}) - DateTimeOf({2024, 3, 8, 6, 0, 0}), 14}, 5, 1, 30, 150},
        {{3660, 1}, 1000, 1, 5270400, lAnyMins}, // more than can be shown
    };
    for (const auto& one : colCases)
    {
        EXPECT_DOUBLE_EQ(one.rate.SlotMins(), one.dSlotMins);
        EXPECT_EQ(one.rate.AttainableMins(one.cuts, one.most), one.lAttainable);
    }
}

TEST(Troubles, DueDecidesWhichCutsAreStarved)
{
    using Positions = std::vector<std::size_t>;
    const struct
    {
        const char* sWhat;
        std::uint32_t asked, askedOpener;
        std::vector<std::uint32_t> plays; // the first cut is an opener
        Positions neverPlayed, underHalf;
    } colCases[] = {
        {"never asked", 0, 0, {0, 0}, {}, {}},
        {"1.5 due", 3, 0, {3, 0}, {1}, {}},
        {"less than 1.5 due", 4, 0, {4, 0, 0}, {}, {}},
        {"3 due, never played", 6, 0, {6, 0}, {1}, {1}},
        {"3 due, 1 is under half", 6, 0, {5, 1}, {}, {1}},
        {"4 due, 2 is half", 8, 0, {6, 2}, {}, {}},
        {"less than 3 due", 5, 0, {4, 1}, {}, {}},
        {"opener slots are due to openers only", 8, 6, {8, 0}, {}, {}},
        {"an opener is due in every slot", 8, 6, {1, 1}, {}, {0}},
        {"no cut", 9, 0, {}, {}, {}},
    };
    for (const auto& one : colCases)
    {
        SCOPED_TRACE(one.sWhat);
        std::vector<CaseCut> cuts;
        for (const std::uint32_t plays : one.plays)
            cuts.push_back({L"", L"", cuts.empty(), {plays, 0, 0, eNone, std::nullopt}});
        HealthCase health;
        health.AddLevel(L"Pop", {}, one.asked, cuts, one.askedOpener);
        const Starvation starvation = StarvationOf(health.result, 0);
        EXPECT_EQ(starvation.neverPlayed, one.neverPlayed);
        EXPECT_EQ(starvation.underHalf, one.underHalf);
    }
}

TEST(Troubles, ARemedyMustImproveWithoutMakingAnythingWorse)
{
    const struct
    {
        Troubles before, after;
        bool bImproves;
    } colCases[] = {
        {{2, 3, 3, 4}, {2, 3, 3, 4}, false},       {{2, 3, 3, 4}, {1, 3, 3, 4}, true},
        {{2, 3, 3, 4}, {1, 4, 4, 4}, false},       {{2, 3, 3, 4}, {1, 3, 3, 5}, false},
        {{2, 3, 3, 4}, {2, 2, 2, 4}, true},        {{2, 3, 3, 4}, {3, 2, 3, 0}, false},
        {{2, 3, 3, 4}, {2, 3, 3, 3}, true},        {{2, 3, 3, 4}, {2, 2, 2, 5}, false},
        {{2, 3, 3, 4, 1}, {2, 3, 3, 3, 2}, false},
    };
    for (const auto& one : colCases)
        EXPECT_EQ(Improves(one.before, one.after), one.bImproves);
}

TEST(Troubles, ACutThatIsStarvedInBothWaysCountsOnce)
{
    HealthCase health;
    health.AddLevel(L"Pop", {}, 12, {{L"a"}, {L"b", L"", false, {1, 0, 0, eNone, std::nullopt}}, {L"c"}});
    const Troubles troubles = TroublesOf(health.result, 0);
    EXPECT_EQ(troubles.neverPlayed, 2u);
    EXPECT_EQ(troubles.underHalf, 3u);
    EXPECT_EQ(troubles.starved, 3u);
}

struct LightCase
{
    const char* sWhat;
    std::int32_t lPicks = 1000;
    std::int32_t lRulesBroken = 0;
    std::size_t never = 0;
    std::size_t under = 0;
    std::int32_t lArtist = 0; // separation, and what is attainable of it
    std::int32_t lArtistAttainable = 0;
    std::int32_t lTitle = 0;
    std::int32_t lTitleAttainable = 0;
    Light eLight = Light::Green;
    std::vector<std::wstring> why = {};
};

const LightCase lightCases[] = {
    {.sWhat = "all well", .lArtist = 85, .lArtistAttainable = 100, .lTitle = 170, .lTitleAttainable = 200},
    {.sWhat = "nothing set, nothing attainable"},
    {.sWhat = "never asked", .lPicks = 0, .lArtist = 60, .lTitle = 60},
    {.sWhat = "a cut never played", .never = 1, .eLight = Light::Red, .why = {L"1 cut never plays"}},
    {.sWhat = "a cut under half",
     .under = 1,
     .eLight = Light::Red,
     .why = {L"1 cut plays less than half of its due"}},
    {.sWhat = "1 % broken",
     .lRulesBroken = 10,
     .eLight = Light::Yellow,
     .why = {L"10 of 1000 picks break a rule"}},
    {.sWhat = "more than 1 % broken",
     .lRulesBroken = 11,
     .eLight = Light::Red,
     .why = {L"11 of 1000 picks break a rule"}},
    {.sWhat = "artist above 85 %",
     .lArtist = 86,
     .lArtistAttainable = 100,
     .eLight = Light::Yellow,
     .why = {L"the artist separation of 86 minutes leaves little room: at most 100 can be kept"}},
    {.sWhat = "title above 85 %",
     .lTitle = 171,
     .lTitleAttainable = 200,
     .eLight = Light::Yellow,
     .why = {L"the title separation of 171 minutes leaves little room: at most 200 can be kept"}},
    {.sWhat = "artist at the attainable",
     .lArtist = 100,
     .lArtistAttainable = 100,
     .eLight = Light::Yellow,
     .why = {L"the artist separation of 100 minutes leaves little room: at most 100 can be kept"}},
    {.sWhat = "artist above the attainable",
     .lArtist = 101,
     .lArtistAttainable = 100,
     .lTitleAttainable = 500,
     .eLight = Light::Red,
     .why = {L"the artist separation of 101 minutes cannot be kept: 100 at most"}},
    {.sWhat = "title above the attainable",
     .lArtistAttainable = 500,
     .lTitle = 201,
     .lTitleAttainable = 200,
     .eLight = Light::Red,
     .why = {L"the title separation of 201 minutes cannot be kept: 200 at most"}},
    {.sWhat = "the worst first",
     .lRulesBroken = 1,
     .never = 2,
     .under = 2,
     .lArtist = 86,
     .lArtistAttainable = 100,
     .eLight = Light::Red,
     .why = {L"2 cuts never play", L"2 cuts play less than half of their due",
             L"1 of 1000 picks breaks a rule",
             L"the artist separation of 86 minutes leaves little room: at most 100 can be kept"}},
};

TEST(Light, FollowsStarvationBrokenRulesAndSeparations)
{
    for (const LightCase& one : lightCases)
    {
        SCOPED_TRACE(one.sWhat);
        LevelHealth level;
        level.lPicks = one.lPicks;
        level.lRulesBroken = one.lRulesBroken;
        level.neverPlayed.resize(one.never);
        level.underHalf.resize(one.under);
        level.lArtistSepMins = one.lArtist;
        level.lAttainableArtistMins = one.lArtistAttainable;
        level.lTitleSepMins = one.lTitle;
        level.lAttainableTitleMins = one.lTitleAttainable;
        SetLight(level);
        EXPECT_EQ(level.eLight, one.eLight);
        EXPECT_EQ(level.why, one.why);
    }
}

TEST(Health, SeparationsThatAreNotMeasuredCountAsNone)
{
    const struct
    {
        SeparationRules rules;
        std::int32_t lArtist, lTitle;
    } colCases[] = {{{false, 180, 60, 0}, 60, 180}, {{true, 180, 60, 0}, 0, 0}, {{false, 0, -5, 90}, 0, 0}};
    for (const auto& one : colCases)
    {
        HealthCase health;
        health.AddLevel(L"Pop", one.rules, 1, {{L"Ash"}});
        const LevelHealth level = HealthOf(health.result).levels[0];
        EXPECT_EQ(level.lArtistSepMins, one.lArtist);
        EXPECT_EQ(level.lTitleSepMins, one.lTitle);
    }
}

TEST(Light, EmptySlotsAreRedAndSayWhy)
{
    const struct
    {
        std::vector<CaseCut> cuts;
        std::uint32_t asked, askedOpener, unfilled;
        std::vector<std::wstring> why;
    } colCases[] = {
        {{}, 144, 0, 144, {L"144 of 144 slots stay empty: the level has no cuts"}},
        {{{L"", L"", false, {143, 0, 0, eNone, {}}}},
         144,
         1,
         1,
         {L"1 of 144 slots stays empty: no cut is an opener"}},
        {{{L"", L"", true, {142, 0, 0, eNone, {}}}}, 144, 9, 2, {L"2 of 144 slots stay empty"}},
        {{{L"", L"", false, {144, 0, 0, eNone, {}}}}, 144, 0, 0, {}},
        {{}, 0, 0, 0, {}},
    };
    for (const auto& one : colCases)
    {
        HealthCase health;
        health.AddLevel(L"Pop", {}, one.asked, one.cuts, one.askedOpener);
        health.result.levels[0].unfilled = one.unfilled;
        const LevelHealth level = HealthOf(health.result).levels[0];
        EXPECT_EQ(level.why, one.why);
        EXPECT_EQ(level.eLight, one.why.empty() ? Light::Green : Light::Red);
        EXPECT_EQ(level.lUnfilled, static_cast<std::int32_t>(one.unfilled));
    }
}

TEST(Light, CutsWithoutArtistOrTitleLimitNothing)
{
    // Three jingles, asked every 3 1/3 minutes, under the global separations.
    HealthCase health;
    const CaseCut jingle{L"", L"", false, {144, 0, 0, eNone, {}}};
    health.AddLevel(L"Jingle", {false, 60, 60, 0}, 432, {jingle, jingle, jingle});
    const LevelHealth level = HealthOf(health.result).levels[0];
    EXPECT_EQ(level.eLight, Light::Green);
    EXPECT_EQ(level.lAttainableArtistMins, lAnyMins);
    EXPECT_EQ(level.lAttainableTitleMins, lAnyMins);
}

TEST(Health, WarnsOfWhatMayBeOtherwiseOnAir)
{
    HealthCase health;
    health.AddLevel(L"Pop", {}, 1, {{L"Ash"}});
    health.cStation->warnings = {L"The rules of Pop 1 cannot be read now."};
    for (int slot = 0; slot < 2; ++slot)
    {
        health.result.plan.AddSlot({L"Soul", 7});
        health.result.levelOfSlot.emplace_back(std::nullopt);
    }
    EXPECT_EQ(HealthOf(health.result).warnings,
              (std::vector<std::wstring>{
                  L"The rules of Pop 1 cannot be read now.",
                  L"The plan asks for Soul 7, which does not exist. Its slots stay empty."}));
}

// Two levels of one day. Pop plays Ash, Elm, Ash; Oldies plays Ash's other cut in between.
class DayHealthTest : public testing::Test
{
protected:
    DayHealthTest()
    {
        const CutOutcome passed{0, 5, 1, eGlobalArtist, CutNumber{0}};
        day.AddLevel(L"Pop", {false, 90, 60, 0}, 12,
                     {{L"Ash", L"Sun"}, {L"Elm", L"Sea"}, {L"ASH", L"Sky", false, passed}});
        day.AddLevel(L"Oldies", {}, 4, {{L"Ash", L"SUN"}});
        day.AddPlay(0, 0, 0);
        day.AddPlay(1, 0, 30);
        day.AddPlay(0, 1, 60);
        day.AddPlay(0, 0, 150);
        day.AddPlay(1, 0, 160);
        health = HealthOf(day.result);
    }
    static void Expect(const std::optional<PlayDistances>& distances, double dSmallest, double dMedian,
                       double dLargest)
    {
        ASSERT_TRUE(distances);
        EXPECT_EQ(distances->dSmallest, dSmallest);
        EXPECT_EQ(distances->dMedian, dMedian);
        EXPECT_EQ(distances->dLargest, dLargest);
    }

    HealthCase day;
    StationHealth health;
};

TEST_F(DayHealthTest, LevelHasItsFigures)
{
    const LevelHealth& pop = health.levels[0];
    EXPECT_EQ(health.lPicks, 5);
    EXPECT_EQ(pop.sKey, L"Pop\t1");
    EXPECT_EQ(pop.lArtists, 2);
    EXPECT_EQ(pop.sTopArtist, L"Ash");
    EXPECT_EQ(pop.lTopArtistCuts, 2);
    EXPECT_EQ(pop.sngSlotMins, 120);
    EXPECT_EQ(pop.lAttainableArtistMins, 120); // floor(3 / 2) x 120
    EXPECT_EQ(pop.lAttainableTitleMins, 360);
    EXPECT_EQ(pop.lPicks, 12);
    EXPECT_EQ(pop.lFewestPlays, 0);
    EXPECT_EQ(pop.dMeanPlays, 1);
    EXPECT_EQ(pop.lMostPlays, 2);
    EXPECT_EQ(pop.eLight, Light::Red);
    EXPECT_EQ(health.levels[1].lFewestPlays, 2);
}

TEST_F(DayHealthTest, StarvedCutNamesReasonAndBlocker)
{
    const LevelHealth& pop = health.levels[0];
    ASSERT_EQ(pop.neverPlayed.size(), 1u);
    const StarvedCut& starved = pop.neverPlayed[0];
    EXPECT_EQ(starved.cut, 2u);
    EXPECT_EQ(starved.lTimesPassedOver, 5);
    EXPECT_EQ(starved.eRule, eGlobalArtist);
    ASSERT_TRUE(starved.blockedBy);
    EXPECT_EQ(health.blockers[*starved.blockedBy].cKey.Text(), L"Pop0");
    EXPECT_EQ(pop.underHalf.size(), 2u); // Elm with 1 of 4, and the one that never played
    EXPECT_EQ(health.blockers.size(), 1u);
}

TEST_F(DayHealthTest, GapsCountPlaysOfAnyLevel)
{
    const LevelHealth& pop = health.levels[0];
    Expect(pop.artists[0].distances, 10, 30, 120); // Ash at 0, 30, 150, 160
    EXPECT_FALSE(pop.artists[1].distances);        // Elm once
    Expect(pop.cuts[0].titleDistances, 10, 30, 120);
    EXPECT_FALSE(pop.cuts[2].titleDistances);
}

TEST_F(DayHealthTest, SharesAndHoursAreOfTheLevel)
{
    const LevelHealth& pop = health.levels[0];
    EXPECT_EQ(pop.artists[0].lCuts, 2);
    EXPECT_EQ(pop.artists[0].lPlays, 2);
    EXPECT_DOUBLE_EQ(pop.artists[0].dShareOfCuts, 2.0 / 3);
    EXPECT_DOUBLE_EQ(pop.artists[0].dShareOfPicks, 2.0 / 12);
    EXPECT_EQ(pop.cuts[0].colByHour[6], 1);
    EXPECT_EQ(pop.cuts[0].colByHour[8], 1);
    EXPECT_EQ(health.levels[1].cuts[0].colByHour[6], 1);
}

TEST(Health, ArtistsAreOverAskedAcrossLevels)
{
    // Ash: 12 an hour x 1/2 x 20/60 = 2, and 1 an hour x 1 x 30/60 = 0.5. Elm: 2. Oak: 1, just kept.
    HealthCase health;
    health.AddLevel(L"Pop", {false, 0, 20, 0}, 288, {{L"Elm"}, {L"Ash"}});
    health.AddLevel(L"Rock", {false, 0, 30, 0}, 24, {{L"ash"}});
    health.AddLevel(L"Jazz", {false, 0, 60, 0}, 24, {{L"Oak"}});
    health.AddLevel(L"Free", {true, 0, 60, 0}, 2400, {{L"Yew"}});
    const std::vector<OverAskedArtist> overAsked = HealthOf(health.result).overAsked;
    ASSERT_EQ(overAsked.size(), 2u);
    EXPECT_EQ(overAsked[0].sName, L"Ash");
    EXPECT_DOUBLE_EQ(overAsked[0].dLoad, 2.5);
    EXPECT_EQ(overAsked[1].sName, L"Elm");
    EXPECT_DOUBLE_EQ(overAsked[1].dLoad, 2);
}

TEST(Health, NamesOfTheSameCutsAreOverAskedOnce)
{
    // 12 picks an hour x 1/4 x 20/60 = 1 for each cut, of which Elm has two.
    HealthCase health;
    health.AddLevel(L"Pop", {false, 0, 20, 0}, 288, {{L"Ash feat. Elm"}, {L"Oak"}, {L"Elm"}, {L"Yew"}});
    health.result.options.bFeaturedArtists = true;
    std::vector<std::wstring> names;
    for (const OverAskedArtist& artist : HealthOf(health.result).overAsked)
        names.push_back(artist.sName);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Elm"})) << "the others are asked 1 of 1";
    health.cStation->levels[0].rules.lArtist = 30;
    names.clear();
    for (const OverAskedArtist& artist : HealthOf(health.result).overAsked)
        names.push_back(artist.sName);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Elm", L"Ash feat. Elm", L"Oak", L"Yew"}))
        << "Ash has no cut of its own";
}

TEST(Health, TheFirstOfTheCommonestNamesIsTheTopArtist)
{
    HealthCase health;
    health.AddLevel(L"Pop", {}, 24, {{L"Oak"}, {L"Ash feat. Elm"}, {L"Elm"}, {L"OAK"}});
    health.result.options.bFeaturedArtists = true;
    EXPECT_EQ(HealthOf(health.result).levels[0].sTopArtist, L"Oak") << "Elm has two cuts as well";
}

TEST(Health, NamesOfTheStationsTableCount)
{
    ArtistsTable::Problems problems;
    const auto cTable = std::make_shared<ArtistsTable>(
        ArtistsTable::Parse("credited,counts_as\r\nThe Ash,Ash\r\nAsh Quartet,Ash\r\n", problems));
    HealthCase health;
    health.cStation->names = ArtistNames(false, cTable);
    health.AddLevel(L"Pop", {}, 24, {{L"The Ash"}, {L"Ash Quartet"}, {L"Elm"}});
    const LevelHealth level = HealthOf(health.result).levels[0];
    EXPECT_EQ(level.sTopArtist, L"Ash");
    EXPECT_EQ(level.lTopArtistCuts, 2);
    EXPECT_EQ(level.lAttainableArtistMins, 60);
}

TEST(Health, AnArtistThatIsOverAskedNeverReadsAsKept)
{
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.PortsWith(cPorts.cFiles)};
    StationHealth health;
    health.overAsked = {{L"Ash", 2.5}, {L"Elm", 1.001}};
    EXPECT_EQ(clsSimulation(HealthCase().result, health, {cMod, nullptr, {}}).ArtistsOverAsked(),
              (std::vector<std::wstring>{L"Ash: 2.5 of 1", L"Elm: 1.01 of 1"}));
}

TEST(PlayPatterns, LockStepIsOneHourOnMostDaysAndNoChance)
{
    constexpr std::int64_t hour = 3600;
    constexpr std::int64_t day = 24 * hour;
    const auto everyHour = [](std::int64_t hours) {
        std::vector<std::int64_t> times;
        for (std::int64_t at = 0; at < std::int64_t{4} * 24; ++at)
            if (at % 24 < hours)
                times.push_back(at * hour);
        return times;
    };
    const struct
    {
        const char* sWhat;
        std::vector<std::int64_t> times;
        std::size_t hoursAsked;
        bool bLockStep;
    } colCases[] = {
        {"never", {}, 24, false},
        {"once", {hour}, 24, false},
        {"twice in an hour of one day", {hour, hour + 60}, 24, false},
        {"the same hour on both days", {hour, day + hour + 59}, 24, true},
        {"half of the days", {hour, day + hour, 2 * day, 3 * day + 2 * hour}, 24, false},
        {"days without a play do not count", {hour, 2 * day, 5 * day + hour}, 24, true},
        {"other hours do not matter", {0, hour, day + hour, day + 5 * hour}, 24, true},
        {"every hour of the day", everyHour(24), 24, false},
        {"12 of the 24 hours", everyHour(12), 24, true},
        {"13 of the 24 hours", everyHour(13), 24, false},
        {"the only hour in which the level is asked", {hour, day + hour}, 1, false},
        {"one of two hours", {hour, day + hour}, 2, true},
    };
    for (const auto& one : colCases)
    {
        SCOPED_TRACE(one.sWhat);
        EXPECT_EQ(IsLockStep(one.times, one.hoursAsked), one.bLockStep);
    }
}

TEST(PlayPatterns, MedianIsTheMiddleOrTheMeanOfTwo)
{
    EXPECT_EQ(SummaryOf({5, 1, 3}).dMedian, 3);
    EXPECT_EQ(SummaryOf({8, 1, 3, 5}).dMedian, 4);
    EXPECT_EQ(SummaryOf({7}).dLargest, 7);
}

} // namespace
} // namespace ravlo::test

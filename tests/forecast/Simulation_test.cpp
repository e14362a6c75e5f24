// SPDX-License-Identifier: MIT
#include "forecast/AiringStation.h"

#include <limits>

namespace ravlo::test
{
namespace
{

constexpr double dNoNumber = std::numeric_limits<double>::quiet_NaN();

class SimulationTest : public AiringStation
{
protected:
    // The number of the error, or 0.
    template <class Work> static std::int32_t ErrorOf(Work work)
    {
        try
        {
            work();
        }
        catch (const RuntimeError& cError)
        {
            return cError.Number();
        }
        return 0;
    }
    SimulationResult SimulateDay(const Plan& plan, const SimulationOptions& options = {})
    {
        return Simulate(Snapshot(), plan, dtStart, 1, options);
    }
    // Cuts "1", "2" ... of one level "Pop 1", with these artists.
    void StartLevel(const std::vector<std::wstring>& artists)
    {
        for (std::size_t cut = 1; cut <= artists.size(); ++cut)
            AddCut(std::to_wstring(cut), L"Pop", 1, artists[cut - 1], L"Title " + std::to_wstring(cut));
        Start();
        SetRules(L"Pop", 1, 60, 0, 0);
    }
    static std::wstring KeyOf(const SimulationResult& result, CutNumber number)
    {
        return result.cStation->cuts.at(number).values.cKey.Text();
    }

    // Each look at the clock takes 2 ms.
    TickingClock cSlowClock{cPorts.cClock, 2};
    ModScheduler cSlowMod{Ports{cSlowClock, cPorts.cHostLoop, cPorts.cFiles, cPorts.cMessages,
                                cPorts.cUserSettings, cPorts.cCodePage, cPorts.cRandom}};
};

TEST_F(SimulationTest, StationIsNotTouched)
{
    AddCuts(L"p", L"Pop", 1, 20, 6, 20);
    AddCuts(L"q", L"Pop/Rock", 2, 20, 6, 20);
    Start();
    Play({L"Pop", 1}, dtStart - 0.001);
    const auto state = [&] {
        Lines lines = cPorts.LogMessages();
        for (const auto& [sName, lLevel] : {std::pair(L"Pop", 1), {L"Pop", 2}, {L"Rock", 2}})
            for (const std::wstring& sKey : cLib.Order(sName, lLevel))
                lines.push_back(sKey);
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        {
            const std::shared_ptr<Cut> cPlayed = cLib.cSchedMan->ArtistHistoryCut(cCut->Artist());
            lines.push_back(IsoText(cCut->LastPlayed()) + cCut->CategoryText() +
                            (cPlayed ? cPlayed->Key().Text() : L"-"));
        }
        return lines;
    };
    const Lines before = state();
    const Boxes shown = cPorts.cMessages.Boxes;
    cPorts.cFiles.ClearOperations();
    const int lPumps = cPorts.cHostLoop.lPumps;
    EXPECT_GT(Simulate(Snapshot(), ClockPlan("Pop,1\nPop,2\nRock,2\n"), dtStart, 3).rows.size(), 1000u);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(cPorts.cMessages.Boxes, shown);
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines{});
    EXPECT_EQ(cPorts.cHostLoop.lPumps, lPumps);
    cLib.End();
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"Rules\\Rock"), std::wstring::npos) << "only a pick on air loads rules";
}

TEST_F(SimulationTest, SlotsThatEndBeforeTheDaysCountForTheirOwnTime)
{
    StartLevel({L"Ash", L"Elm"});
    const Plan clock = ClockPlan("Pop,1\n");
    Plan timed;
    timed.LoadSlots("slot_at,category,level,opener\n2024-03-08T06:00:00,Pop,1,\n2024-03-08T07:00:00,Pop,1,\n",
                    L"slots");
    const auto cStation = Snapshot();
    EXPECT_EQ(Simulate(cStation, clock, dtStart, 2).PlayedDays(), 2);
    const DateTime dtFirst = DateTimeOf({2024, 3, 8, 6, 0, 0});
    for (const double dEarlier : {0, 5})
    {
        const SimulationResult result = Simulate(cStation, timed, dtFirst - dEarlier, 28);
        EXPECT_EQ(result.PlayedDays(), result.dtEnd - dtFirst) << dEarlier;
        EXPECT_LT(result.PlayedDays(), 0.05); // an hour and a cut
    }
}

TEST_F(SimulationTest, RefusesWhatCannotBePlayed)
{
    StartLevel({L"Ash"});
    const Plan clock = ClockPlan("Pop,1\n");
    Plan timed;
    timed.LoadSlots("slot_at,category,level,opener\n2024-03-08T06:10:00,Pop,1,\n", L"slots");
    const struct
    {
        Plan plan;
        DateTime dtFrom;
        double dDays;
        std::int32_t lNumber;
    } table[] = {
        {clock, dtStart, 1, 0},
        {clock, dtStart, 1.5, 0},
        {clock, dtStart, 0.99, 5},
        {clock, dtStart, 3660.5, 5},
        {clock, dtStart, dNoNumber, 5},
        {clock, dNoNumber, 1, 5},
        {clock, 0, 1, 5},
        {clock, 2'958'465.5, 1, 5}, // ends beyond the calendar
        {Plan(), dtStart, 1, 5},
        {timed, dtStart, 7, 5}, // starts when the time ends
        {timed, dtStart, 7.001, 0},
        {timed, dtStart + 7, 1, 0}, // starts with the time
        {timed, dtStart + 7.001, 1, 5},
    };
    for (const auto& row : table)
    {
        EXPECT_EQ(ErrorOf([&] { Simulate(Snapshot(), row.plan, row.dtFrom, row.dDays); }), row.lNumber)
            << "row " << &row - table;
    }
}

TEST_F(SimulationTest, ClockRunsForWholeAndPartDays)
{
    StartLevel({L"Ash"}); // of 200 seconds
    EXPECT_EQ(Simulate(Snapshot(), ClockPlan("Pop,1\n"), dtStart, 1).rows.size(), 432u);
    const SimulationResult result = Simulate(Snapshot(), ClockPlan("Pop,1\n"), dtStart, 1.25);
    EXPECT_EQ(result.rows.size(), 540u);
    EXPECT_EQ(IsoText(result.dtEnd), IsoText(dtStart + 1.25));
}

TEST_F(SimulationTest, HostRunsAtLeastEveryFiftyMilliseconds)
{
    AddCuts(L"p", L"Pop", 1, 300, 1, 300); // each pick examines all of them
    Start();
    const std::shared_ptr<StationSnapshot> cSnapshot = Snapshot();
    std::vector<double> done;
    std::uint32_t lLast = cPorts.cClock.TickCount();
    std::uint32_t lLongest = 0;
    ravlo::Simulate(cSlowMod, cSnapshot, ClockPlan("Pop,1\n"), dtStart, 1, {}, [&](double dDone, bool&) {
        lLongest = std::max(lLongest, cPorts.cClock.TickCount() - lLast);
        lLast = cPorts.cClock.TickCount();
        done.push_back(dDone);
    });
    EXPECT_LE(lLongest, 50u);
    EXPECT_EQ(done.front(), 0);
    EXPECT_EQ(done.back(), 1);
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_GT(std::count(done.begin(), done.end(), done[done.size() / 2]), 1) << "within one pick, too";
}

TEST_F(SimulationTest, HostCancelsOrFails)
{
    AddCuts(L"p", L"Pop", 1, 300, 1, 300);
    Start();
    const std::shared_ptr<StationSnapshot> cSnapshot = Snapshot();
    for (int lCall = 0; lCall < 4; ++lCall)
    {
        int lCalls = 0;
        const auto simulate = [&](auto act) {
            lCalls = 0;
            return ErrorOf([&] {
                ravlo::Simulate(cSlowMod, cSnapshot, ClockPlan("Pop,1\n"), dtStart, 1, {},
                                [&](double, bool& bCancel) {
                    if (lCalls++ == lCall)
                        act(bCancel);
                });
            });
        };
        EXPECT_EQ(simulate([](bool& bCancel) { bCancel = true; }), error::UserInterrupt);
        EXPECT_EQ(lCalls, lCall + 1);
        EXPECT_EQ(simulate([](bool&) { throw RuntimeError(error::DeviceIo); }), error::DeviceIo);
        EXPECT_EQ(lCalls, lCall + 1);
    }
}

TEST_F(SimulationTest, OutcomeSaysWhatPassedOverACut)
{
    // Eighteen cuts an hour. In the walk's order the second cut of an artist always follows the first, within
    // the hour: it never plays.
    std::vector<std::wstring> artists{L"Ash", L"Ash"};
    for (int other = 1; other <= 19; ++other)
        artists.push_back(L"Other " + std::to_wstring(other));
    StartLevel(artists);
    const SimulationResult walk = SimulateDay(ClockPlan("Pop,1\n"));
    const LevelOutcome& level = walk.levels.at(0);
    EXPECT_EQ(level.asked, 432u);
    EXPECT_EQ(level.rulesBroken, 0u);
    EXPECT_EQ(level.cuts[1].plays, 0u);
    EXPECT_GE(level.cuts[1].passedOver, 20u);
    EXPECT_EQ(level.cuts[1].eRule, eGlobalArtist);
    EXPECT_EQ(KeyOf(walk, level.cuts[1].blockedBy.value()), L"1");
    EXPECT_EQ(level.cuts[2].passedOver, 0u);
    EXPECT_EQ(level.cuts[2].blockedBy, std::nullopt);

    const SimulationResult fair = SimulateDay(ClockPlan("Pop,1\n"), {true, {}});
    EXPECT_GT(fair.levels.at(0).cuts[1].plays, 8u);
    EXPECT_TRUE(fair.options.bFairRotation);
    EXPECT_FALSE(walk.options.bFairRotation);
}

TEST_F(SimulationTest, WhatTheHostDoesDuringItChangesNothing)
{
    AddCuts(L"p", L"Pop", 1, 30, 12, 25);
    Start();
    const std::string expected = LogCsv(SimulateDay(ClockPlan("Pop,1\n")).Rows());
    int lCalls = 0;
    const auto disturb = [&](double, bool&) {
        if (++lCalls > 3)
            return;
        Play({L"Pop", 1}, dtStart + lCalls);
        SetRules(L"Pop", 1, lCalls, lCalls, lCalls);
        cLib.cSchedMan->SetFairRotation(lCalls % 2 == 1);
        cLib.Populate();
    };
    const SimulationResult result =
        ravlo::Simulate(cSlowMod, Snapshot(), ClockPlan("Pop,1\n"), dtStart, 1, SimulationOptions{}, disturb);
    EXPECT_GE(lCalls, 3);
    EXPECT_EQ(LogCsv(result.Rows()), expected);
}

TEST_F(SimulationTest, RotationThatIsNotAllowedIsNoHindrance)
{
    StartLevel({L"Ash", L"Elm"});
    cLib.cSchedMan->SetRotatesAllowed(false);
    const LevelOutcome level = SimulateDay(ClockPlan("Pop,1\n")).levels.at(0);
    EXPECT_EQ(level.unfilled, 0u);
    EXPECT_EQ(level.cuts[0].plays + level.cuts[1].plays, level.asked);
}

TEST_F(SimulationTest, CutInTwoLevelsIsCountedInEach)
{
    AddCut(L"1", L"Pop/Rock", 1, L"Ash", L"Sun");
    AddCut(L"2", L"Rock", 1, L"Elm", L"Sea");
    Start();
    const SimulationResult day = SimulateDay(ClockPlan("Pop,1\nRock,1\n"));
    ASSERT_EQ(day.levels.size(), 2u);
    EXPECT_EQ(day.levelOfSlot, (std::vector<std::optional<std::size_t>>{0, 1}));
    EXPECT_EQ(day.levels[0].cuts.at(0).plays, day.levels[0].asked);
    EXPECT_EQ(day.levels[1].cuts.at(0).plays + day.levels[1].cuts.at(1).plays, day.levels[1].asked);
    EXPECT_GT(day.levels[1].cuts.at(1).plays, day.levels[1].cuts.at(0).plays) << "1 has always just played";
}

TEST_F(SimulationTest, SlotsOfALevelThatDoesNotExistStayEmpty)
{
    StartLevel({L"Ash"});
    const SimulationResult day = SimulateDay(ClockPlan("Pop,1\nSoul,1\n"));
    EXPECT_EQ(day.levelOfSlot, (std::vector<std::optional<std::size_t>>{0, std::nullopt}));
    EXPECT_EQ(day.levels.at(0).unfilled, 0u);
    EXPECT_GT(day.rows.size(), day.levels[0].asked);
}

TEST_F(SimulationTest, ChosenViolatorIsNotPassedOver)
{
    StartLevel({L"Ash", L"Ash"});
    const LevelOutcome level = SimulateDay(ClockPlan("Pop,1\n")).levels.at(0);
    EXPECT_EQ(level.asked, 432u);
    EXPECT_EQ(level.rulesBroken, 431u);
    EXPECT_EQ(level.cuts[0].plays + level.cuts[1].plays, 432u);
    EXPECT_EQ(level.cuts[0].passedOver + level.cuts[1].passedOver, 431u) << "one of the two in each pick";
}

TEST_F(SimulationTest, NoOpenerIsCountedApart)
{
    StartLevel({L"Ash", L"Elm"});
    const LevelOutcome level = SimulateDay(ClockPlan("Pop,1,Y\nPop,1\n")).levels.at(0);
    EXPECT_GT(level.askedOpener, 200u);
    EXPECT_EQ(level.unfilled, level.askedOpener);
    EXPECT_LT(level.askedOpener, level.asked);
    for (const CutOutcome& cut : level.cuts)
    {
        EXPECT_EQ(cut.noOpener, level.askedOpener);
        EXPECT_EQ(cut.eRule, cut.passedOver > 0 ? eGlobalArtist : eNone);
    }
}

} // namespace
} // namespace ravlo::test

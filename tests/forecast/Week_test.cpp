// SPDX-License-Identifier: MIT
#include "forecast/AiringStation.h"

#include "base/Utf8.h"

#include <map>
#include <sstream>

namespace ravlo::test
{
namespace
{

constexpr const char* sHour =
    "Pop,1,Y\nRock,1,\nPop,2,\nTight,1,\nPop,1,N\nSpeech,1,Y\nPop,3,\nFree,2,\n"
    "Gold,1,\nBox,1,\nRock,7,\nPop,1,\nNobody,1,\nTight,1,Y\nGold,1,\nSolo,1,\nRock,1,Y\n";

// A station with every kind of level that a plan may ask for.
class WeekTest : public AiringStation
{
protected:
    WeekTest()
    {
        AddCuts(L"p", L"Pop", 1, 60, 25, 50);
        AddCuts(L"q", L"Pop", 2, 35, 20, 35);
        AddCuts(L"r", L"Rock/Gold", 1, 50, 30, 60);
        AddCuts(L"g", L"Gold", 1, 10, 40, 60);
        AddCuts(L"t", L"Tight", 1, 7, 2, 5); // not enough artists and titles for its rules
        AddCuts(L"f", L"Free", 2, 12, 3, 4);
        AddCut(L"b1", L"Box", 1, L"Trio", L"Opus 1", {.sAlbum = L"Complete"});
        AddCut(L"b2", L"Box", 1, L"Duo", L"Opus 2", {.sAlbum = L"Complete"});
        AddCut(L"o1", L"Solo", 1, L"Solo", L"First");
        AddCut(L"o2", L"Solo", 1, L"Solo", L"Second");
        AddCut(L"s1", L"Speech", 1, L"Host", L"News"); // no opener
        AddCut(L"n1", L"Tight", 1, L"", L"");
        AddCut(L"x1", L"NOCAT", 0, L"Artist 1", L"Title 1", {.dtLastPlayed = dtStart - 0.01});
        Start();
        AddEmptyLevel(L"Pop", 3);
        SetRules(L"Pop", 1, 75, 180, 30);
        SetRules(L"Tight", 1, 90, 120, 45);
        SetRules(L"Solo", 1, 600, 0, 0);
        SetRules(L"Box", 1, 0, 0, 90);
        SetRules(L"Free", 2, 60, 60, 60, true);
    }

    // Kind -> rows.
    static std::map<std::int32_t, int> Kinds(const Day& day)
    {
        std::map<std::int32_t, int> kinds;
        for (const LogRow& row : day.rows)
            ++kinds[row.lKind];
        return kinds;
    }
    static Plan SlotsPlan(DateTime dtFrom, int lSlots)
    {
        const std::vector<Slot> clock = ParseClock(sHour, L"clock");
        std::ostringstream bytes;
        bytes << "slot_at,category,level,opener\n";
        for (int slot = 0; slot < lSlots; ++slot)
        {
            const Slot& one = clock[static_cast<std::size_t>(slot) % clock.size()];
            bytes << Utf8Of(IsoText(Later(dtFrom, slot * 240'000LL))) << "," << Utf8Of(one.sCategory) << ","
                  << one.lLevel << "," << (one.bOpener ? "Y" : "N") << "\n";
        }
        Plan plan;
        plan.LoadSlots(bytes.str(), L"slots");
        return plan;
    }

    void ExpectSameWeek(const Plan& plan)
    {
        const SimulationResult simulated = Simulate(Snapshot(), plan, dtStart, 7);
        ExpectSame(simulated, Air(plan, 7));
    }
    static void ExpectSame(const SimulationResult& simulated, const Day& aired)
    {
        EXPECT_EQ(simulated.rows.size(), aired.rows.size());
        EXPECT_EQ(LogCsv(simulated.Rows()), LogCsv(aired.rows));
        EXPECT_EQ(Summary(simulated.Rows(), simulated.dtEnd), Summary(aired.rows, aired.dtEnd));
        for (const std::int32_t lKind : {0, 7, 9, 10, 11, 14, 15, 18})
            EXPECT_GT(Kinds(aired)[lKind], 0) << "the week lacks kind " << lKind;
    }
};

TEST_F(WeekTest, SimulatedClockEqualsTheAiredWeekRowForRow) { ExpectSameWeek(ClockPlan(sHour)); }

TEST_F(WeekTest, SimulatedSlotsEqualTheAiredWeekRowForRow)
{
    ExpectSameWeek(SlotsPlan(dtStart - 0.5, 9 * 24 * 15));
}

TEST_F(WeekTest, SimulationContinuesTheDayThatWasAired)
{
    Air(ClockPlan(sHour), 1);
    ExpectSameWeek(ClockPlan(sHour));
}

TEST_F(WeekTest, SimulationUsesTheStationsOptionsOrOthers)
{
    const Plan plan = ClockPlan(sHour);
    const SimulationResult prescribed = Simulate(Snapshot(), plan, dtStart, 7);
    const SimulationResult others = Simulate(Snapshot(), plan, dtStart, 7, SimulationOptions{true, true});
    cLib.cSchedMan->SetFairRotation(true);
    cLib.cSchedMan->SetFeaturedArtists(true);
    const SimulationResult own = Simulate(Snapshot(), plan, dtStart, 7);
    const SimulationResult without = Simulate(Snapshot(), plan, dtStart, 7, SimulationOptions{false, false});
    EXPECT_EQ(LogCsv(without.Rows()), LogCsv(prescribed.Rows()));
    EXPECT_NE(LogCsv(own.Rows()), LogCsv(prescribed.Rows()));
    EXPECT_EQ(LogCsv(own.Rows()), LogCsv(others.Rows()));
    ExpectSame(own, Air(plan, 7));
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "forecast/Plan.h"

#include "plan/PlanError.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

constexpr const char* sTwoSlots =
    "slot_at,category,level,opener\n2024-03-01T10:00:00,rock,1,Y\n2024-03-01T10:04:00,pop,2,N\n";

TEST(Plan, LoadedFileReplacesAllSlots)
{
    Plan plan;
    plan.AddSlot({L"old", 1});
    plan.LoadClock("rock,1,Y\n", L"clock");
    EXPECT_EQ(plan.Slots(), (std::vector<Slot>{{L"rock", 1, true, 1}}));
    EXPECT_FALSE(plan.IsTimed());
    plan.LoadSlots(sTwoSlots, L"slots");
    EXPECT_EQ(plan.Slots(), (std::vector<Slot>{{L"rock", 1, true, 2}, {L"pop", 2, false, 3}}));
    EXPECT_EQ(plan.Times(), (std::vector<DateTime>{DateTimeOf({2024, 3, 1, 10, 0, 0}),
                                                   DateTimeOf({2024, 3, 1, 10, 4, 0})}));
    plan.LoadClock("pop,1\n", L"clock");
    EXPECT_FALSE(plan.IsTimed());
    plan.Clear();
    EXPECT_TRUE(plan.Slots().empty());
}

TEST(Plan, NameSaysWhereTheSlotsComeFrom)
{
    Plan plan;
    EXPECT_EQ(plan.Name(), L"0 slots an hour");
    plan.LoadClock("rock,1\n", L"C:\\Radio\\hot hour.txt");
    EXPECT_EQ(plan.Name() + L"|" + plan.File(), L"clock file hot hour.txt|hot hour.txt");
    plan.LoadSlots(sTwoSlots, L"radio/monday.csv");
    EXPECT_EQ(plan.Name() + L"|" + plan.File(), L"slot file monday.csv|monday.csv");
    EXPECT_THROW(plan.AddSlot({L"pop", 2}), PlanError);
    EXPECT_EQ(plan.File(), L"monday.csv");
    plan.LoadClock("rock,1\n", L"hour");
    plan.AddSlot({L"pop", 2});
    EXPECT_EQ(plan.Name() + L"|" + plan.File(), L"2 slots an hour|") << "no longer the file's hour";
    plan.Clear();
    plan.AddSlotAt(46'000, {L"pop", 2});
    EXPECT_EQ(plan.Name(), L"1 slot");
}

TEST(Plan, FileThatCannotBeUsedLeavesThePlan)
{
    Plan plan;
    plan.LoadSlots(sTwoSlots, L"slots");
    for (const auto load : {&Plan::LoadClock, &Plan::LoadSlots})
    {
        EXPECT_THROW((plan.*load)("rock,none\n", L"file"), PlanError);
        EXPECT_EQ(plan.Slots().size(), 2u);
        EXPECT_TRUE(plan.IsTimed());
    }
}

TEST(Plan, HourTakesFurtherSlotsAndTimedSlotsNone)
{
    Plan plan;
    plan.LoadClock("rock,1\n", L"clock");
    plan.AddSlot({L"pop", 2, true});
    EXPECT_EQ(plan.Slots(), (std::vector<Slot>{{L"rock", 1, false, 1}, {L"pop", 2, true, 0}}));
    plan.LoadSlots(sTwoSlots, L"slots");
    EXPECT_THROW(plan.AddSlot({L"pop", 2}), PlanError);
    EXPECT_EQ(plan.Slots().size(), 2u);
}

} // namespace
} // namespace ravlo

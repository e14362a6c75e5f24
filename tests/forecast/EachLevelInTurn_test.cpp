// SPDX-License-Identifier: MIT
#include "forecast/EachLevelInTurn.h"

#include "forecast/AiringStation.h"

#include <map>

namespace ravlo::test
{
namespace
{

using EachLevelInTurnTest = AiringStation;

TEST_F(EachLevelInTurnTest, AsksEveryLevelWithCutsEquallyOften)
{
    for (int lLevel = 1; lLevel <= 30; ++lLevel) // more than fit into an hour
        AddCut(L"c" + std::to_wstring(lLevel), L"Pop", lLevel, L"a", L"t");
    Start();
    AddEmptyLevel(L"Pop", 31);
    const Plan plan = EachLevelInTurn(*Snapshot(), dtStart, 1);
    std::map<std::int32_t, int> colAsked;
    for (const Slot& slot : plan.Slots())
        ++colAsked[slot.lLevel];
    EXPECT_EQ(colAsked.size(), 30u);
    for (const auto& [lLevel, lAsked] : colAsked)
        EXPECT_NEAR(lAsked, 14, 1) << lLevel; // 432 slots of 200 seconds
    EXPECT_EQ(Simulate(Snapshot(), plan, dtStart, 1).rows.size(), 432u);
}

TEST_F(EachLevelInTurnTest, SlotIsAsLongAsTheLevelsCutsOnAverage)
{
    AddCut(L"a", L"Pop", 1, L"a", L"t", {.lDurationmS = 100'000});
    AddCut(L"b", L"Pop", 1, L"b", L"t", {.lDurationmS = 0}); // counts as 3 minutes
    AddCut(L"c", L"Rock", 1, L"c", L"t", {.lDurationmS = 1});
    Start();
    const Plan plan = EachLevelInTurn(*Snapshot(), dtStart, 1);
    EXPECT_EQ(plan.Times()[0], dtStart);
    EXPECT_EQ(WholeSeconds(plan.Times()[1]) - WholeSeconds(plan.Times()[0]), 140);
    EXPECT_EQ(WholeSeconds(plan.Times()[2]) - WholeSeconds(plan.Times()[1]), 1) << "at least a second";
    EXPECT_LT(plan.Times().back(), dtStart + 1);
}

TEST_F(EachLevelInTurnTest, StationWithoutCutsHasNoSlots)
{
    Start();
    EXPECT_EQ(EachLevelInTurn(*Snapshot(), dtStart, 28).Slots().size(), 0u);
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "host/day/DayPlan.h"

#include "host/day/HostError.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

TimedSlot At(int lDay, int lHour)
{
    return {DateTimeOf({2024, 3, lDay, lHour, 0, 0}), {L"rock", 1, false, 0}};
}

std::vector<int> HoursOf(const std::vector<TimedSlot>& slots)
{
    std::vector<int> hours;
    for (const auto& timed : slots)
        hours.push_back(FieldsOf(timed.dtAt).lHour);
    return hours;
}

} // namespace

TEST(LevelsInUse, ContainsALevelIgnoringTheCaseOfItsCategory)
{
    LevelsInUse levels;
    levels.Add(L"Rock", 2);
    EXPECT_TRUE(levels.Contains(L"ROCK", 2));
    EXPECT_FALSE(levels.Contains(L"Rock", 1));
    EXPECT_FALSE(levels.Contains(L"Pop", 2));
}

TEST(LevelsInUse, GivesOneSlotForEachLevelInTheOrderOfNamesAndNumbers)
{
    LevelsInUse levels;
    for (const auto& [sName, lLevel] :
         std::vector<std::pair<std::wstring, int>>{{L"rock", 10}, {L"Pop", 1}, {L"rock", 2}, {L"pop", 1}})
        levels.Add(sName, lLevel);
    EXPECT_EQ(levels.RoundOfAll(),
              (std::vector<Slot>{{L"Pop", 1, false, 0}, {L"rock", 2, false, 0}, {L"rock", 10, false, 0}}));
}

TEST(CheckLevels, NamesTheFirstSlotThatNoCutCanFill)
{
    LevelsInUse levels;
    levels.Add(L"rock", 1);
    EXPECT_NO_THROW(CheckLevels({{L"Rock", 1, false, 3}}, levels, L"clock.txt"));
    try
    {
        CheckLevels({{L"rock", 1, false, 3}, {L"rock", 4, false, 5}, {L"jazz", 1, false, 6}}, levels,
                    L"clock.txt");
        FAIL() << "no error";
    }
    catch (const HostError& error)
    {
        EXPECT_EQ(error.Description(), L"clock.txt, line 5: no cut stands in rock:4");
    }
}

TEST(SlotsWithin, KeepsTheSlotsOfTheTimeAskedFor)
{
    const std::vector<TimedSlot> slots{At(1, 8), At(1, 9), At(1, 10), At(1, 11)};
    const auto dtNine = DateTimeOf({2024, 3, 1, 9, 0, 0});
    const struct
    {
        std::optional<DateTime> dtStart;
        std::optional<int> lHours;
        std::vector<int> kept;
    } table[] = {
        {{}, {}, {8, 9, 10, 11}},
        {dtNine, {}, {9, 10, 11}},
        {{}, 2, {8, 9}}, // the end itself is outside
        {dtNine, 2, {9, 10}},
        {DateTimeOf({2024, 3, 1, 8, 30, 0}), 2, {9, 10}}, // counted from the start, not from the first slot
        {DateTimeOf({2024, 3, 2, 0, 0, 0}), {}, {}},
    };
    for (const auto& row : table)
        EXPECT_EQ(HoursOf(SlotsWithin(slots, row.dtStart, row.lHours)), row.kept);
}

} // namespace ravlo

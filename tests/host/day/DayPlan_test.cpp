// SPDX-License-Identifier: MIT
#include "host/day/DayPlan.h"

#include "support/Raised.h"

#include <gtest/gtest.h>

namespace ravlo
{

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
    const auto errorOf = [&](const std::vector<Slot>& slots) {
        return RaisedBy([&] { CheckLevels(slots, levels, L"clock.txt"); }).sDescription;
    };
    EXPECT_EQ(errorOf({{L"Rock", 1, false, 3}}), L"");
    EXPECT_EQ(errorOf({{L"rock", 1, false, 3}, {L"rock", 4, false, 5}, {L"jazz", 1, false, 6}}),
              L"clock.txt, line 5: no cut is in rock:4");
}

} // namespace ravlo

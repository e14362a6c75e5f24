// SPDX-License-Identifier: MIT
#include "host/day/CategoryName.h"

#include "host/day/HostError.h"

#include <gtest/gtest.h>

namespace ravlo
{

TEST(ParseCategoryName, ReadsAMainCategoryOrALevel)
{
    const std::pair<const wchar_t*, CategoryName> table[] = {
        {L"rock", {L"rock", 0}},
        {L"rock:2", {L"rock", 2}},
        {L"rock:0002", {L"rock", 2}},
        {L"Hard Rock:32764", {L"Hard Rock", 32764}},
        {L"rock:2147483647", {L"rock", 2147483647}},
        {L" odd : name :7", {L" odd : name ", 7}},
        {L"Talk: News", {L"Talk: News", 0}},
        {L"Talk: News:3", {L"Talk: News", 3}},
        {L"Talk:7:1", {L"Talk:7", 1}},
        {L"rock:", {L"rock:", 0}},
        {L"rock:-1", {L"rock:-1", 0}},
        {L"rock:two", {L"rock:two", 0}},
        {L"rock: 2", {L"rock: 2", 0}},
    };
    for (const auto& [sText, name] : table)
        EXPECT_EQ(ParseCategoryName(sText), name) << sText;
}

TEST(ParseCategoryName, RefusesWhatNamesNothing)
{
    for (const auto* sText :
         {L"", L":2", L":2147483648", L"rock:0", L"rock:2147483648", L"rock:99999999999999999999999"})
        EXPECT_THROW(ParseCategoryName(sText), HostError) << sText;
}

TEST(TextOfCategoryName, CanBeTypedBackIn)
{
    for (const auto& name : {CategoryName{L"rock", 0}, {L"rock", 2}, {L"Talk: News", 0}, {L"Talk: News", 3}})
        EXPECT_EQ(ParseCategoryName(TextOf(name)), name) << TextOf(name);
}

TEST(TextOfTargets, ListsNamesWithTheirCuts)
{
    EXPECT_EQ(TextOf(std::vector<Target>{{{L"rock", 2}, 250}, {{L"pop", 0}, 1}, {{L"new", 1}, 0}}),
              L"rock:2 (250 cuts), pop (1 cut), new:1 (0 cuts)");
}

TEST(IsYes, TakesOnlyAClearYes)
{
    for (const auto* sAnswer : {L"y", L"Y", L"yes", L"YES", L" yes "})
        EXPECT_TRUE(IsYes(sAnswer)) << sAnswer;
    for (const auto* sAnswer : {L"", L"n", L"no", L"yeah", L"y n", L"1"})
        EXPECT_FALSE(IsYes(sAnswer)) << sAnswer;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "host/day/Rotation.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

LevelOrder Level(const wchar_t* sCategory, std::int32_t lLevel, const std::vector<std::wstring>& paths)
{
    LevelOrder order{sCategory, lLevel, 185000, {}};
    for (const auto& sPath : paths)
        order.cuts.push_back({L"Artist", L"Title " + sPath, L"", sPath, 61999});
    return order;
}

} // namespace

TEST(ChangeBetween, ListsEachLevelsCutsAndThePositionsOfNewOnes)
{
    const Rotation before = {Level(L"pop", 1, {L"a", L"b"}), Level(L"pop", 2, {L"c"})};
    const Rotation after = {Level(L"pop", 1, {L"n", L"b", L"a", L"m"}), Level(L"pop", 2, {L"c"})};
    const auto change = ChangeBetween(before, after);
    ASSERT_EQ(change.levels.size(), 2u);
    EXPECT_EQ(change.levels[0].before, 2u);
    EXPECT_EQ(change.levels[0].after, 4u);
    EXPECT_EQ(change.levels[0].newAt, (std::vector<std::size_t>{1, 4}));
    EXPECT_TRUE(change.levels[1].newAt.empty()) << "a new order alone makes no cut new";
}

TEST(ChangeBetween, CountsACutInSeveralLevelsOnce)
{
    const Rotation before = {Level(L"pop", 1, {L"stays", L"moves", L"goes", L"also"}),
                             Level(L"rock", 1, {L"goes"})};
    const Rotation after = {Level(L"pop", 1, {L"stays", L"also", L"new"}),
                            Level(L"rock", 2, {L"moves", L"new", L"also"})};
    const auto change = ChangeBetween(before, after);
    EXPECT_EQ(change.added, 1u);
    EXPECT_EQ(change.moved, 2u);
    EXPECT_EQ(change.gone, 1u);
}

TEST(ChangeBetween, NamesNewLevelsAndThoseThatAreGone)
{
    const auto change = ChangeBetween({Level(L"pop", 1, {L"a"})}, {Level(L"rock", 1, {L"a"})});
    ASSERT_EQ(change.levels.size(), 2u);
    EXPECT_EQ(change.levels[0].sCategory, L"rock");
    EXPECT_EQ(change.levels[0].before, 0u);
    EXPECT_EQ(change.levels[1].sCategory, L"pop");
    EXPECT_EQ(change.levels[1].after, 0u);
}

TEST(ChangeBetween, ComparesNamesAndPathsIgnoringCase)
{
    const auto change = ChangeBetween({Level(L"Pop", 1, {L"D:\\A.mp3"})}, {Level(L"POP", 1, {L"d:\\a.MP3"})});
    EXPECT_EQ(change.levels.size(), 1u);
    EXPECT_EQ(change.added + change.moved + change.gone, 0u);
}

TEST(OnlyChanged, LeavesOutLevelsThatAreAsTheyWere)
{
    const Rotation before = {Level(L"pop", 1, {L"a"}), Level(L"pop", 2, {L"b"}), Level(L"pop", 3, {L"c"})};
    const Rotation after = {Level(L"pop", 1, {L"a"}), Level(L"pop", 2, {L"x"}), Level(L"pop", 3, {})};
    const auto change = OnlyChanged(ChangeBetween(before, after));
    ASSERT_EQ(change.levels.size(), 2u);
    EXPECT_EQ(change.levels[0].lLevel, 2) << "as many cuts, but another one";
    EXPECT_EQ(change.levels[1].lLevel, 3);
}

TEST(SoonestNew, IsTheLevelWithTheFewestCutsInFrontOfANewOne)
{
    const Rotation before = {Level(L"pop", 1, {L"a", L"b"}), Level(L"pop", 2, {L"c"}),
                             Level(L"pop", 3, {L"d"})};
    const Rotation after = {Level(L"pop", 1, {L"a", L"b", L"n"}), Level(L"pop", 2, {L"c", L"n"}),
                            Level(L"pop", 3, {L"d", L"m"})};
    const auto change = ChangeBetween(before, after);
    ASSERT_NE(SoonestNew(change), nullptr);
    EXPECT_EQ(SoonestNew(change)->lLevel, 2);
    EXPECT_EQ(SoonestNew(ChangeBetween(before, before)), nullptr);
}

TEST(ChangeTable, LinesItsColumnsUp)
{
    const Rotation before = {Level(L"pop", 1, {L"a", L"b"}), Level(L"pop", 2, {L"c"})};
    const Rotation after = {Level(L"pop", 1, {L"a", L"n", L"m"}), Level(L"new releases", 10, {L"n"})};
    EXPECT_EQ(ChangeTable(ChangeBetween(before, after)), L"Category      Level  Before  After  New at\n"
                                                         L"pop               1       2      3  2-3\n"
                                                         L"new releases     10       0      1  1\n"
                                                         L"pop               2       1      0\n");
}

TEST(PlacesText, JoinsNeighbours)
{
    EXPECT_EQ(PlacesText({}), L"");
    EXPECT_EQ(PlacesText({7}), L"7");
    EXPECT_EQ(PlacesText({1, 2}), L"1-2");
    EXPECT_EQ(PlacesText({3, 5, 6, 7, 8, 9, 12}), L"3, 5-9, 12");
}

TEST(OrderLines, ShowTheRotationFromItsFirstCutOn)
{
    const auto order = Level(L"pop", 1, {L"a", L"b", L"c"});
    EXPECT_EQ(OrderLines(order, {2}, 0), L"1  Artist - Title a (1:01)\n"
                                         L"2  Artist - Title b (1:01)  new\n"
                                         L"3  Artist - Title c (1:01)\n");
    EXPECT_EQ(OrderLines(order, {}, 2), L"1  Artist - Title a (1:01)\n"
                                        L"2  Artist - Title b (1:01)\n"
                                        L"... and 1 more\n");
    EXPECT_EQ(OrderLines(order, {}, 3), OrderLines(order, {}, 0));
}

TEST(LevelTable, CountsCategoriesAndLevels)
{
    EXPECT_EQ(LevelTable({Level(L"pop", 1, {L"a", L"b"}), Level(L"Pop", 2, {}), {L"empty", 0, 0, {}}}),
              L"Category  Level  Cuts  Average\n"
              L"pop           1     2     3:05\n"
              L"Pop           2     0        -\n"
              L"empty         -     0        -\n"
              L"2 categories with 2 levels\n");
    EXPECT_EQ(LevelTable({}), L"Category  Level  Cuts  Average\n0 categories with 0 levels\n");
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

using RenamedCutTest = StationTest;

TEST_F(RenamedCutTest, ACutAnnouncedUnderANewKeyKeepsItsPlaces)
{
    const auto cFirst = Add(L"a", L"Rock/Pop");
    Add(L"b", L"Rock/Pop");
    Start();
    cFirst->SetKey(L"z");
    Modified({cFirst});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"}));
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"z", L"b"}));
    EXPECT_FALSE(cLib.Level(L"Rock", 1)->SchedCuts()->Exists(L"a"));
    EXPECT_TRUE(cLib.Level(L"Rock", 1)->SchedCuts()->Exists(L"z"));
    cLib.Restart();
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"})) << "the file has the new key";
    EXPECT_TRUE(cWorld.cMessages.Boxes.empty());
}

TEST_F(RenamedCutTest, ItLeavesEveryLevelWhenItIsRemoved)
{
    const auto cFirst = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    cFirst->SetKey(L"z");
    Modified({cFirst});
    Removed({cFirst});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
}

TEST_F(RenamedCutTest, ItsOtherChangesAreFollowedToo)
{
    const auto cFirst = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    cFirst->SetKey(L"z");
    cFirst->SetCategoryText(L"Pop");
    Modified({cFirst});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
    EXPECT_EQ(cLib.Order(L"Pop", 1), Keys{L"z"});
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "scheduler/UnsavedOrders.h"

#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ravlo::test
{
namespace
{

using Names = std::vector<std::wstring>;

class UnsavedOrdersTest : public testing::Test
{
protected:
    Names Sorted(UnsavedOrders::Which eWhich) const
    {
        Names colNames = cOrders.Names(eWhich);
        std::sort(colNames.begin(), colNames.end());
        return colNames;
    }
    Names Due() const { return Sorted(UnsavedOrders::Which::Due); }

    MemoryClock cClock;
    UnsavedOrders cOrders{cClock};
};

TEST_F(UnsavedOrdersTest, FailureIsDueAfterASecondUntilALaterStateIsSaved)
{
    cOrders.SaveFailed(L"Rock", 5);
    cOrders.Changed(L"Pop", 6); // the host saves it
    EXPECT_EQ(Sorted(UnsavedOrders::Which::All), (Names{L"Pop", L"Rock"}));
    EXPECT_EQ(Sorted(UnsavedOrders::Which::Failed), Names{L"Rock"});
    cClock.Advance(999);
    EXPECT_EQ(Due(), Names());
    EXPECT_FALSE(cOrders.IsDue(L"ROCK"));
    EXPECT_EQ(cOrders.LongestDueExcept(L"Pop"), std::nullopt);
    cClock.Advance(1);
    EXPECT_EQ(Due(), Names{L"Rock"});
    EXPECT_TRUE(cOrders.IsDue(L"ROCK"));
    cOrders.Settled(L"Rock", 4);
    EXPECT_EQ(Due(), Names{L"Rock"}) << "an older state";
    cOrders.Settled(L"Rock", 5);
    cOrders.Settled(L"Rock", 4);
    EXPECT_EQ(Due(), Names());
    EXPECT_EQ(Sorted(UnsavedOrders::Which::All), Names{L"Pop"});
}

TEST_F(UnsavedOrdersTest, ThatWhichWaitsLongestIsNextButForOne)
{
    for (const wchar_t* sName : {L"b", L"a", L"c"})
    {
        cOrders.SaveFailed(sName, 5);
        cClock.Advance(UnsavedOrders::lRetryMs);
    }
    EXPECT_EQ(cOrders.LongestDueExcept(L"c"), L"b");
    EXPECT_EQ(cOrders.LongestDueExcept(L"B"), L"a");
    EXPECT_EQ(cOrders.LongestDueExcept(L"unknown"), L"b");
}

TEST_F(UnsavedOrdersTest, FileIsToBeDeletedUntilItsDeletionOrALaterSave)
{
    EXPECT_FALSE(cOrders.IsToDelete(L"Rock"));
    cOrders.DeletionFailed(L"Rock", 5);
    cOrders.Settled(L"Rock", 4);
    EXPECT_TRUE(cOrders.IsToDelete(L"ROCK"));
    cOrders.SaveFailed(L"Rock", 6);
    EXPECT_TRUE(cOrders.IsToDelete(L"Rock"));
    cOrders.Settled(L"Rock", 5);
    EXPECT_FALSE(cOrders.IsToDelete(L"Rock"));
}

TEST_F(UnsavedOrdersTest, OrderIsNewerThanAReadingBeforeItsChangeOrInPart)
{
    EXPECT_FALSE(cOrders.IsNewerThanItsReading(L"Rock")) << "unknown";
    cOrders.Read(L"Rock", 3);
    EXPECT_FALSE(cOrders.IsNewerThanItsReading(L"Rock"));
    cOrders.Changed(L"Rock", 4);
    cOrders.Settled(L"Rock", 4);
    EXPECT_TRUE(cOrders.IsNewerThanItsReading(L"Rock")) << "the reading was earlier";
    cOrders.Read(L"Rock", 5);
    EXPECT_FALSE(cOrders.IsNewerThanItsReading(L"Rock"));
    cOrders.Read(L"Rock", 0);
    EXPECT_TRUE(cOrders.IsNewerThanItsReading(L"Rock")) << "not applied in full";
    cOrders.Changed(L"Pop", 4);
    cOrders.Read(L"Pop", 5);
    EXPECT_TRUE(cOrders.IsNewerThanItsReading(L"Pop")) << "not saved";
    cOrders.Read(L"Soul", 0);
    EXPECT_TRUE(cOrders.IsNewerThanItsReading(L"Soul")) << "not applied in full, and never changed";
    cOrders.Read(L"Soul", 1);
    EXPECT_FALSE(cOrders.IsNewerThanItsReading(L"Soul")) << "the first reading of all";
}

TEST_F(UnsavedOrdersTest, ForgottenCategoryHasNothingToSave)
{
    cOrders.DeletionFailed(L"Rock", 5);
    cOrders.SaveFailed(L"Pop", 6);
    cOrders.Forget(L"ROCK");
    EXPECT_EQ(Sorted(UnsavedOrders::Which::All), Names{L"Pop"});
    EXPECT_FALSE(cOrders.IsToDelete(L"Rock"));
    cOrders.ForgetAll();
    EXPECT_EQ(Sorted(UnsavedOrders::Which::All), Names());
}

} // namespace
} // namespace ravlo::test

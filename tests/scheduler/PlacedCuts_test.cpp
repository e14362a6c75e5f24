// SPDX-License-Identifier: MIT
#include "scheduler/PlacedCuts.h"

#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

class PlacedCutsTest : public testing::Test
{
protected:
    std::shared_ptr<FakeCut> NewCut(const std::wstring& sCategoryText, std::int32_t lLevel)
    {
        return cDataBase.Add(L"a", sCategoryText, lLevel);
    }
    FakeDataBase cDataBase;
    PlacedCuts cPlaced;
};

TEST_F(PlacedCutsTest, UnknownOrForgottenCutCountsAsChanged)
{
    const auto cCut = NewCut(L"Rock", 1);
    EXPECT_FALSE(cPlaced.Contains(cCut->Key()));
    EXPECT_FALSE(cPlaced.IsUnchanged(*cCut));
    cPlaced.Remember(*cCut);
    EXPECT_TRUE(cPlaced.Contains(TextKey(L"A"))) << "keys are without regard to case";
    EXPECT_TRUE(cPlaced.IsUnchanged(*cCut));
    cPlaced.Forget(cCut->Key());
    EXPECT_FALSE(cPlaced.Contains(cCut->Key()));
    EXPECT_FALSE(cPlaced.IsUnchanged(*cCut));
}

TEST_F(PlacedCutsTest, NumberLeadsToTheLastKnownKeyOfItsCut)
{
    const auto cCut = NewCut(L"Rock", 1);
    cCut->lID = 7;
    EXPECT_FALSE(cPlaced.KeyOf(7));
    cPlaced.Remember(*cCut);
    EXPECT_EQ(cPlaced.KeyOf(7), TextKey(L"a"));
    cPlaced.Forget(cCut->Key());
    EXPECT_EQ(cPlaced.KeyOf(7), TextKey(L"a")) << "even if its names and level are forgotten";
    cPlaced.Remember(*cCut);
    cCut->SetKey(L"z");
    cPlaced.Remember(*cCut);
    EXPECT_EQ(cPlaced.KeyOf(7), TextKey(L"z"));
    cPlaced.Removed(TextKey(L"a"));
    EXPECT_EQ(cPlaced.KeyOf(7), TextKey(L"z")) << "no longer that key's";
    cPlaced.Removed(TextKey(L"z"));
    EXPECT_FALSE(cPlaced.KeyOf(7));
}

TEST_F(PlacedCutsTest, CutWithoutANumberIsRememberedAllTheSame)
{
    const auto cCut = NewCut(L"Rock", 1);
    cCut->lID = 0;
    cPlaced.Remember(*cCut);
    EXPECT_TRUE(cPlaced.IsUnchanged(*cCut));
    EXPECT_FALSE(cPlaced.KeyOf(0));
    cCut->lID = 7;
    cCut->failing = {"ID"};
    cPlaced.Remember(*cCut);
    EXPECT_TRUE(cPlaced.IsUnchanged(*cCut));
    EXPECT_FALSE(cPlaced.KeyOf(7));
}

TEST_F(PlacedCutsTest, ChangeIsSeenInTheLevelAndTheNamesInTheirOrder)
{
    struct Case
    {
        const wchar_t* sText;
        std::int32_t lLevel;
        bool bUnchanged;
    };
    for (const Case& c :
         {Case{L"Rock/Pop", 2, true}, Case{L"rOCK/POP", 2, true}, Case{L"Pop/Rock", 2, false},
          Case{L"Rock", 2, false}, Case{L"Rock/Pop/Jazz", 2, false}, Case{L"RockPop", 2, false},
          Case{L"", 2, false}, Case{L"Rock/Pop", 3, false}, Case{L"Rock\t9/Pop", 2, true}})
    {
        const auto cCut = NewCut(L"Rock/Pop", 2);
        cPlaced.Remember(*cCut);
        cCut->SetCategoryText(c.sText);
        cCut->SetCatLevel(c.lLevel);
        EXPECT_EQ(cPlaced.IsUnchanged(*cCut), c.bUnchanged) << testing::PrintToString(std::wstring(c.sText));
    }
}

TEST_F(PlacedCutsTest, OwnChangeIsRememberedUnlessAnotherWasUnknown)
{
    const auto cCut = NewCut(L"Rock", 1);
    cPlaced.Remember(*cCut);
    {
        const PlacedCuts::OwnChange cOwnChange(cPlaced, *cCut);
        cCut->SetCatLevel(2);
        cCut->AddCategoryName(L"Pop");
    }
    EXPECT_TRUE(cPlaced.IsUnchanged(*cCut));
    cCut->SetCatLevel(3); // the database's
    {
        const PlacedCuts::OwnChange cOwnChange(cPlaced, *cCut);
        cCut->AddCategoryName(L"Jazz");
    }
    EXPECT_FALSE(cPlaced.IsUnchanged(*cCut));
    const auto cUnknown = cDataBase.Add(L"b", L"Rock", 1);
    {
        const PlacedCuts::OwnChange cOwnChange(cPlaced, *cUnknown);
        cUnknown->SetCatLevel(2);
    }
    EXPECT_FALSE(cPlaced.Contains(cUnknown->Key()));
}

TEST_F(PlacedCutsTest, OwnChangeThatFailsOrCannotBeReadForgetsTheCut)
{
    const auto cCut = NewCut(L"Rock", 1);
    for (const bool bFails : {true, false})
    {
        cPlaced.Remember(*cCut);
        try
        {
            const PlacedCuts::OwnChange cOwnChange(cPlaced, *cCut);
            if (bFails)
                throw RuntimeError(error::DeviceIo);
            cCut->failing = {"CategoryNames"};
        }
        catch (const RuntimeError&)
        {
        }
        EXPECT_FALSE(cPlaced.Contains(cCut->Key()));
    }
}

TEST_F(PlacedCutsTest, AssignedNamesComeOnceWithoutALevelAndInOrder)
{
    const auto cCut = NewCut(L"Rock\t3/Pop/ROCK/pop\t1/Jazz", 1);
    cCut->AddCategoryName(L"");
    EXPECT_EQ(AssignedNames(*cCut), (Lines{L"Rock", L"Pop", L"Jazz", L""}))
        << "an empty name stays to be refused";
    EXPECT_EQ(AssignedNames(*NewCut(L"", 1)), Lines());
}

} // namespace
} // namespace ravlo::test

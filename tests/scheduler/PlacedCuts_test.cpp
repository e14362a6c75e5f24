// SPDX-License-Identifier: MIT
#include "scheduler/PlacedCuts.h"

#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

class FiledCutsTest : public testing::Test
{
protected:
    std::shared_ptr<FakeCut> NewCut(const std::wstring& sCategoryText, std::int32_t lLevel)
    {
        return cDataBase.Add(L"a", sCategoryText, lLevel);
    }
    FakeDataBase cDataBase;
    FiledCuts cFiled;
};

TEST_F(FiledCutsTest, ACutThatWasNeverMetOrIsForgottenIsUnknownAndChanged)
{
    const auto cCut = NewCut(L"Rock", 1);
    EXPECT_FALSE(cFiled.Knows(cCut->Key()));
    EXPECT_FALSE(cFiled.IsUnchanged(*cCut));
    cFiled.Remember(*cCut);
    EXPECT_TRUE(cFiled.Knows(TextKey(L"A"))) << "keys are without regard to case";
    EXPECT_TRUE(cFiled.IsUnchanged(*cCut));
    cFiled.Forget(cCut->Key());
    EXPECT_FALSE(cFiled.Knows(cCut->Key()));
    EXPECT_FALSE(cFiled.IsUnchanged(*cCut));
}

TEST_F(FiledCutsTest, ANumberLeadsToTheKeyTheCutWasMetUnderLast)
{
    const auto cCut = NewCut(L"Rock", 1);
    cCut->lID = 7;
    EXPECT_FALSE(cFiled.KeyOf(7));
    cFiled.Remember(*cCut);
    EXPECT_EQ(cFiled.KeyOf(7), TextKey(L"a"));
    cFiled.Forget(cCut->Key());
    EXPECT_EQ(cFiled.KeyOf(7), TextKey(L"a")) << "of a cut whose names and level are unknown, too";
    cFiled.Remember(*cCut);
    cCut->SetKey(L"z");
    cFiled.Remember(*cCut);
    EXPECT_EQ(cFiled.KeyOf(7), TextKey(L"z"));
    cFiled.Removed(TextKey(L"a"));
    EXPECT_EQ(cFiled.KeyOf(7), TextKey(L"z")) << "no longer that key's";
    cFiled.Removed(TextKey(L"z"));
    EXPECT_FALSE(cFiled.KeyOf(7));
}

TEST_F(FiledCutsTest, ACutWithoutANumberIsRememberedAllTheSame)
{
    const auto cCut = NewCut(L"Rock", 1);
    cCut->lID = 0;
    cFiled.Remember(*cCut);
    EXPECT_TRUE(cFiled.IsUnchanged(*cCut));
    EXPECT_FALSE(cFiled.KeyOf(0));
    cCut->lID = 7;
    cCut->failing = {"ID"};
    cFiled.Remember(*cCut);
    EXPECT_TRUE(cFiled.IsUnchanged(*cCut));
    EXPECT_FALSE(cFiled.KeyOf(7));
}

TEST_F(FiledCutsTest, NamesInTheirOrderAndTheLevelTellAChange)
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
        cFiled.Remember(*cCut);
        cCut->SetCategoryText(c.sText);
        cCut->SetCatLevel(c.lLevel);
        EXPECT_EQ(cFiled.IsUnchanged(*cCut), c.bUnchanged) << testing::PrintToString(std::wstring(c.sText));
    }
}

TEST_F(FiledCutsTest, AnOwnChangeOfACutInStepIsRemembered)
{
    const auto cCut = NewCut(L"Rock", 1);
    cFiled.Remember(*cCut);
    {
        const FiledCuts::OwnChange cOwnChange(cFiled, *cCut);
        cCut->SetCatLevel(2);
        cCut->AddCategoryName(L"Pop");
    }
    EXPECT_TRUE(cFiled.IsUnchanged(*cCut));
}

TEST_F(FiledCutsTest, AnOwnChangeOfACutOutOfStepHidesNothing)
{
    const auto cCut = NewCut(L"Rock", 1);
    cFiled.Remember(*cCut);
    cCut->SetCatLevel(2); // the database's
    {
        const FiledCuts::OwnChange cOwnChange(cFiled, *cCut);
        cCut->AddCategoryName(L"Pop");
    }
    EXPECT_FALSE(cFiled.IsUnchanged(*cCut));
    const auto cUnknown = cDataBase.Add(L"b", L"Rock", 1);
    {
        const FiledCuts::OwnChange cOwnChange(cFiled, *cUnknown);
        cUnknown->SetCatLevel(2);
    }
    EXPECT_FALSE(cFiled.Knows(cUnknown->Key()));
}

TEST_F(FiledCutsTest, AnOwnChangeThatFailsOrCannotBeReadForgetsTheCut)
{
    const auto cCut = NewCut(L"Rock", 1);
    cFiled.Remember(*cCut);
    try
    {
        const FiledCuts::OwnChange cOwnChange(cFiled, *cCut);
        cCut->SetCatLevel(2);
        throw RuntimeError(error::DeviceIo);
    }
    catch (const RuntimeError&)
    {
    }
    EXPECT_FALSE(cFiled.Knows(cCut->Key()));

    cFiled.Remember(*cCut);
    {
        const FiledCuts::OwnChange cOwnChange(cFiled, *cCut);
        cCut->failing = {"CategoryNames"};
    }
    EXPECT_FALSE(cFiled.Knows(cCut->Key()));
}

TEST_F(FiledCutsTest, AssignedNamesComeOnceWithoutALevelAndInOrder)
{
    const auto cCut = NewCut(L"Rock\t3/Pop/ROCK/pop\t1/Jazz", 1);
    cCut->AddCategoryName(L"");
    EXPECT_EQ(AssignedNames(*cCut), (Lines{L"Rock", L"Pop", L"Jazz", L""}))
        << "an empty name stays to be refused";
    EXPECT_EQ(AssignedNames(*NewCut(L"", 1)), Lines());
}

} // namespace
} // namespace ravlo::test

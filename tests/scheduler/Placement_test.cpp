// SPDX-License-Identifier: MIT
#include "scheduler/Placement.h"

#include "support/SyncTest.h"

#include <limits>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();

class PlacementTest : public testing::Test
{
protected:
    std::shared_ptr<FakeCut> NewCut(const std::wstring& sKey, std::int32_t lLevel,
                                    std::int32_t lRunTimemS = 1000)
    {
        return cDataBase.Add(sKey, L"", lLevel, lRunTimemS);
    }
    // What Report shows, as "number description".
    Lines Report()
    {
        Lines colShown;
        cPlacement.Report([&](const RuntimeError& cError) {
            colShown.push_back(std::to_wstring(cError.Number()) + L" " + cError.Description());
        });
        return colShown;
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    FakeDataBase cDataBase;
    Placement cPlacement{cMod};
    const std::shared_ptr<clsCat> cRock = std::make_shared<clsCat>(cMod, L"Rock", 0);
    Boxes& boxes = cPorts.cMessages.Boxes;
    bool bCreated = false;
};

TEST_F(PlacementTest, MainCategoryIsFoundIgnoringCaseOrMadeAtTheEnd)
{
    CatCollection colMainCats;
    const auto cMade = EnsureMainCat(cMod, colMainCats, L"Rock");
    EXPECT_EQ(cMade->CatLevel(), 0);
    EXPECT_EQ(colMainCats.KeyAt(0)->Text(), L"Rock\t0");
    EXPECT_EQ(EnsureMainCat(cMod, colMainCats, L"ROCK"), cMade);
    EnsureMainCat(cMod, colMainCats, L"Pop");
    EXPECT_EQ(TreeText(colMainCats), L"Rock | Pop");
}

TEST_F(PlacementTest, ReturnsWhetherTheCutWasPlaced)
{
    const auto cCut = NewCut(L"a", 2);
    EXPECT_TRUE(cPlacement.Place(cCut, *cRock, bCreated));
    EXPECT_TRUE(bCreated);
    EXPECT_FALSE(cPlacement.Place(cCut, *cRock, bCreated)) << "it is there";
    EXPECT_EQ(Report(), Lines());
    cCut->failing = {"RunTimemS"};
    EXPECT_THROW(cPlacement.Place(cCut, *std::make_shared<clsCat>(cMod, L"Pop", 0), bCreated), RuntimeError);
    EXPECT_EQ(Report(), Lines()) << "the caller reports an error of the cut";
}

TEST_F(PlacementTest, OverflowIsGatheredAndTheCutCountsAsPlaced)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        EXPECT_TRUE(cPlacement.Place(NewCut(sKey, 1, lLongest), *cRock, bCreated));
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Report(), (Lines{CriticalText(6) + L": run times in category Rock"}));
    EXPECT_EQ(Report(), Lines()) << "reported once";
}

TEST_F(PlacementTest, LevelZeroAndNegativeLevelHaveOneBoxPerCategory)
{
    const ShownBox levelZero =
        CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock");
    const ShownBox negative =
        CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level");
    cMod.StoreAppPath(sRadio);
    for (const std::int32_t lLevel : {0, -1, 0, -7, -1})
        EXPECT_FALSE(cPlacement.Place(NewCut(L"k" + std::to_wstring(cDataBase.colCuts.size()), lLevel),
                                      *cRock, bCreated));
    EXPECT_EQ(boxes, (Boxes{levelZero, negative}));
    EXPECT_EQ(Report(), Lines());
    EXPECT_EQ(cPorts.LogMessages().back(), L"Not placed in category Rock, having no level: 3 more cuts.");
}

TEST_F(PlacementTest, FailedCutsAreCountedOnceEachAndTheFirstErrorIsShown)
{
    const auto cFirst = NewCut(L"a", 1);
    const auto cSecond = NewCut(L"b", 1);
    const auto Fail = [&](const Cut* cCut, std::int32_t lNumber) {
        try
        {
            throw RuntimeError(lNumber);
        }
        catch (...)
        {
            cCut ? cPlacement.Failed(*cCut) : cPlacement.Failed();
        }
    };
    Fail(cFirst.get(), 57);
    Fail(cFirst.get(), 70);
    Fail(cSecond.get(), 91);
    EXPECT_EQ(Report(), (Lines{CriticalText(57) + L" (2 cuts could not be handled)"}));
    Fail(nullptr, 61);
    EXPECT_EQ(Report(), (Lines{CriticalText(61)}));
}

TEST_F(PlacementTest, TouchedLevelsSumRunTimesInTheOrderTouched)
{
    const auto cPopLevel = std::make_shared<clsCat>(cMod, L"Pop", 1);
    const auto cRockLevel = std::make_shared<clsCat>(cMod, L"Rock", 1);
    for (const auto& cLevel : {cRockLevel, cPopLevel})
        for (const wchar_t* sKey : {L"a", L"b"})
            cLevel->SchedCuts()->Add(TextKey(sKey), NewCut(sKey, 1, lLongest));
    cPlacement.Touch(cRockLevel);
    cPlacement.Touch(cPopLevel);
    cPlacement.Touch(cRockLevel);
    EXPECT_EQ(Report(), (Lines{CriticalText(6) + L": run times in category Rock",
                               CriticalText(6) + L": run times in category Pop"}));
    EXPECT_EQ(cRockLevel->AverageRunTimemS(), lLongest);
}

TEST_F(PlacementTest, OnlyTheFirstEmptyNameIsShownAndTheRestCounted)
{
    for (const wchar_t* sText : {L"first", L"second", L"third"})
        cPlacement.EmptyName(BoxIcon::None, sText);
    EXPECT_EQ(boxes, (Boxes{OkBox(BoxIcon::None, L"RavloScheduler", L"first")}));
    cMod.StoreAppPath(sRadio);
    EXPECT_EQ(Report(), Lines());
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"Zero-length cat names are illegal: 3 in all."}));
}

} // namespace
} // namespace ravlo::test

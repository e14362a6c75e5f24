// SPDX-License-Identifier: MIT
#include "model/clsCat.h"

#include "support/EngineTest.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using Boxes = std::vector<ShownBox>;
using Keys = std::vector<std::wstring>;
using Names = std::vector<std::wstring>;

constexpr std::int32_t lMaxLong = std::numeric_limits<std::int32_t>::max();

Keys KeysOf(const CutCollection& colCuts)
{
    Keys colKeys;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        colKeys.push_back(cCut->Key().Text());
    return colKeys;
}

class CatTest : public testing::Test
{
protected:
    CatTest() { cMod.StoreAppPath(sRadio); }

    std::shared_ptr<FakeCut> NewCut(const std::wstring& sKey, std::int32_t lLevel,
                                    std::int32_t lRunTime = 1000)
    {
        return cDataBase.Add(sKey, L"", lLevel, lRunTime);
    }
    std::shared_ptr<clsCat> NewCat(const std::wstring& sName, std::int32_t lLevel)
    {
        return std::make_shared<clsCat>(cMod, sName, lLevel);
    }
    std::shared_ptr<clsCat> NewMainCat(const std::vector<std::int32_t>& colLevels)
    {
        const std::shared_ptr<clsCat> cMainCat = NewCat(L"Rock", 0);
        for (const std::int32_t lLevel : colLevels)
            EXPECT_TRUE(cMainCat->AddSubCat(NewCat(L"Rock", lLevel)));
        return cMainCat;
    }
    static bool Add(clsCat& cCat, const std::shared_ptr<Cut>& cCut)
    {
        bool bCreatedNewSubCat = false;
        return cCat.AddCut(cCut, bCreatedNewSubCat);
    }
    static std::vector<std::int32_t> LevelsOf(const clsCat& cMainCat)
    {
        std::vector<std::int32_t> colLevels;
        for (std::size_t lAt = 0; lAt < cMainCat.SubCats()->Count(); ++lAt)
        {
            colLevels.push_back(cMainCat.SubCats()->At(lAt)->CatLevel());
            EXPECT_EQ(cMainCat.SubCats()->KeyAt(lAt)->Text(), std::to_wstring(colLevels.back()));
        }
        return colLevels;
    }

    RadioWorld cWorld;
    ModScheduler cMod{cWorld.AllPorts()};
    FakeDataBase cDataBase;
    std::vector<ShownBox>& boxes = cWorld.cMessages.Boxes;
};

const ShownBox noLevelBox = CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level");
const ShownBox levelZeroBox =
    CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock");

template <class Operation> std::int32_t ErrorOf(Operation&& operation)
{
    try
    {
        operation();
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
    return 0;
}

// ---- a category by itself

TEST_F(CatTest, ANewCategoryIsEmptyAndOfLevelZero)
{
    const auto cCat = std::make_shared<clsCat>(cMod);
    EXPECT_EQ(cCat->CatName(), L"");
    EXPECT_EQ(cCat->CatLevel(), 0);
    EXPECT_EQ(cCat->MainCat(), nullptr);
    EXPECT_EQ(cCat->TotalCuts(), 0);
    EXPECT_EQ(cCat->AverageRunTimemS(), 0);
    EXPECT_TRUE(cCat->SchedCuts()->Empty());
    EXPECT_TRUE(cCat->SubCats()->Empty());
    EXPECT_EQ(cCat->CatID(), L"\t0") << "the TAB form with an empty name";
}

TEST_F(CatTest, TheNameIsKeptAsGiven)
{
    const auto cCat = NewCat(L"", 0);
    for (const wchar_t* sName : {L" Rock ", L"", L"A/B\t?", L"123"})
    {
        cCat->SetCatName(sName);
        EXPECT_EQ(cCat->CatName(), sName);
    }
}

TEST_F(CatTest, ANegativeLevelReadsBackAsZero)
{
    const auto cCat = NewCat(L"Rock", 3);
    cCat->SetCatLevel(-5);
    EXPECT_EQ(cCat->CatLevel(), 0);
    cCat->SetCatLevel(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(cCat->CatLevel(), 0);
    cCat->SetCatLevel(lMaxLong);
    EXPECT_EQ(cCat->CatLevel(), lMaxLong);
}

TEST_F(CatTest, TheIdIsTheLevelsNumberOrTheMainCategorysKey)
{
    EXPECT_EQ(NewCat(L"Rock", 0)->CatID(), L"Rock\t0");
    EXPECT_EQ(NewCat(L"Rock", 3)->CatID(), L"3");
    EXPECT_EQ(NewCat(L"Rock", lMaxLong)->CatID(), L"2147483647");
    EXPECT_EQ(CategoryKey(L"Rock", 12), L"Rock\t12");
}

TEST_F(CatTest, TheMainCategoryIsNotKeptAlive)
{
    auto cMainCat = NewMainCat({1});
    const auto cLevel = cMainCat->SubCat(1);
    EXPECT_EQ(cLevel->MainCat(), cMainCat);
    EXPECT_EQ(cMainCat.use_count(), 1);
    cMainCat.reset();
    EXPECT_EQ(cLevel->MainCat(), nullptr);
}

TEST_F(CatTest, TheMainCategoryCanBeSetAndCleared)
{
    const auto cMainCat = NewCat(L"Rock", 0);
    const auto cLevel = NewCat(L"Rock", 1);
    cLevel->SetMainCat(cMainCat);
    EXPECT_EQ(cLevel->MainCat(), cMainCat);
    cLevel->SetMainCat(nullptr);
    EXPECT_EQ(cLevel->MainCat(), nullptr);
}

TEST_F(CatTest, RulesAreMadeOnceOnFirstUseUnderNameAndLevel)
{
    cWorld.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
    const auto cCat = NewCat(L"Pop", 2);
    EXPECT_TRUE(cWorld.cFiles.Operations().empty()) << "nothing is read before they are asked for";
    const std::shared_ptr<clsCatRules> cRules = cCat->Rules();
    EXPECT_EQ(cRules->CatID(), L"Pop\u00AC\u00AC\u00AC2");
    EXPECT_EQ(cCat->Rules(), cRules);
    EXPECT_EQ(NewCat(L"Pop", 0)->Rules()->CatID(), L"Pop\u00AC\u00AC\u00AC0");
}

TEST_F(CatTest, RulesCanBeReplaced)
{
    const auto cCat = NewCat(L"Pop", 2);
    const auto cRules = std::make_shared<clsCatRules>(cMod);
    cCat->SetRules(cRules);
    EXPECT_EQ(cCat->Rules(), cRules);
    EXPECT_EQ(cRules->CatID(), L"") << "an object given from outside is taken as it is";
}

// ---- adding cuts

TEST_F(CatTest, ALevelAppendsACutAndRegistersItsName)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cFirst = NewCut(L"b.mp3", 1);
    const auto cSecond = NewCut(L"a.mp3", 1);
    cSecond->AddCategoryName(L"ROCK");
    bool bCreatedNewSubCat = false;
    EXPECT_TRUE(cLevel->AddCut(cFirst, bCreatedNewSubCat));
    EXPECT_TRUE(cLevel->AddCut(cSecond, bCreatedNewSubCat));
    EXPECT_FALSE(bCreatedNewSubCat);
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(cLevel->SchedCuts()->KeyAt(0)->Text(), L"b.mp3") << "keyed by the unique key";
    EXPECT_EQ(cLevel->TotalCuts(), 2);
    EXPECT_EQ(cFirst->CategoryNames(), Names{L"Rock"});
    EXPECT_EQ(cSecond->CategoryNames(), Names{L"ROCK"}) << "an existing entry is left as it is";
}

TEST_F(CatTest, ALevelTakesACutOfAnotherLevelsNumber)
{
    const auto cLevel = NewCat(L"Rock", 1);
    EXPECT_TRUE(Add(*cLevel, NewCut(L"a.mp3", 7)));
    EXPECT_TRUE(Add(*cLevel, NewCut(L"b.mp3", -7)));
    EXPECT_EQ(cLevel->TotalCuts(), 2);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CatTest, NoCutIsNotAdded)
{
    bool bCreatedNewSubCat = false;
    EXPECT_FALSE(NewCat(L"Rock", 1)->AddCut(nullptr, bCreatedNewSubCat));
    EXPECT_FALSE(NewCat(L"Rock", 0)->AddCut(nullptr, bCreatedNewSubCat));
    EXPECT_FALSE(bCreatedNewSubCat);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CatTest, ACutThatIsThereAlreadyIsNotAddedAgainButItsNameIsRegistered)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cCut = NewCut(L"a.mp3", 1, 5000);
    EXPECT_TRUE(Add(*cLevel, cCut));
    cCut->RemoveCategoryName(L"Rock");
    EXPECT_FALSE(Add(*cLevel, cCut));
    EXPECT_FALSE(Add(*cLevel, NewCut(L"A.MP3", 1, 7000))) << "keys are told apart as the file system does";
    EXPECT_EQ(cLevel->TotalCuts(), 1);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 5000) << "its run time counts once";
    EXPECT_TRUE(cCut->HasCategoryName(L"Rock"));
}

TEST_F(CatTest, ALevelZeroCutIsRefusedWithABoxAndNothingElseChanges)
{
    for (const std::int32_t lLevel : {0, 1})
    {
        boxes.clear();
        const auto cCat = NewCat(L"Rock", lLevel);
        const auto cCut = NewCut(L"a.mp3", 0);
        bool bCreatedNewSubCat = false;
        EXPECT_FALSE(cCat->AddCut(cCut, bCreatedNewSubCat));
        EXPECT_FALSE(bCreatedNewSubCat);
        EXPECT_EQ(boxes, Boxes{levelZeroBox});
        EXPECT_EQ(cCat->TotalCuts(), 0);
        EXPECT_TRUE(cCat->SubCats()->Empty());
        EXPECT_TRUE(cCut->CategoryNames().empty());
    }
}

TEST_F(CatTest, AMainCategoryMakesALevelThatIsMissingAndSaysSo)
{
    const auto cMainCat = NewMainCat({1, 2});
    const auto cCut = NewCut(L"a.mp3", 3);
    bool bCreatedNewSubCat = false;
    EXPECT_TRUE(cMainCat->AddCut(cCut, bCreatedNewSubCat));
    EXPECT_TRUE(bCreatedNewSubCat);
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 2, 3}));
    const auto cLevel = cMainCat->SubCat(3);
    EXPECT_EQ(cLevel->CatName(), L"Rock");
    EXPECT_EQ(cLevel->MainCat(), cMainCat);
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"a.mp3"});
    EXPECT_EQ(cCut->CategoryNames(), Names{L"Rock"});

    for (const bool bBefore : {false, true})
    {
        bCreatedNewSubCat = bBefore;
        EXPECT_FALSE(cMainCat->AddCut(cCut, bCreatedNewSubCat));
        EXPECT_EQ(bCreatedNewSubCat, bBefore) << "left as the caller passed it";
    }
}

TEST_F(CatTest, AMainCategoryHandsACutToTheLevelOfItsNumber)
{
    const auto cMainCat = NewMainCat({1, 2});
    bool bCreatedNewSubCat = true;
    EXPECT_TRUE(cMainCat->AddCut(NewCut(L"a.mp3", 2), bCreatedNewSubCat));
    EXPECT_TRUE(bCreatedNewSubCat) << "only ever set, never reset";
    EXPECT_TRUE(Add(*cMainCat, NewCut(L"b.mp3", 1)));
    EXPECT_EQ(cMainCat->SubCat(1)->TotalCuts(), 1);
    EXPECT_EQ(cMainCat->SubCat(2)->TotalCuts(), 1);
    EXPECT_EQ(cMainCat->TotalCuts(), 2);
}

TEST_F(CatTest, AMainCategoryRefusesACutOfANegativeLevelAtOnce)
{
    const auto cMainCat = NewMainCat({1});
    const auto cCut = NewCut(L"a.mp3", -3);
    bool bCreatedNewSubCat = false;
    EXPECT_FALSE(cMainCat->AddCut(cCut, bCreatedNewSubCat));
    EXPECT_FALSE(bCreatedNewSubCat);
    EXPECT_EQ(boxes, Boxes{noLevelBox});
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_TRUE(cCut->CategoryNames().empty());
}

TEST_F(CatTest, ALevelPastTheOnesThatCanBeTypedIsFiledNormally)
{
    const auto cMainCat = NewMainCat({});
    EXPECT_TRUE(Add(*cMainCat, NewCut(L"a.mp3", 32766)));
    EXPECT_TRUE(Add(*cMainCat, NewCut(L"b.mp3", lMaxLong)));
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{32766, lMaxLong}));
}

// ---- removing cuts

TEST_F(CatTest, RemovingTakesTheCutTheNameAndTheRunTime)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cCut = NewCut(L"a.mp3", 1, 4000);
    Add(*cLevel, cCut);
    Add(*cLevel, NewCut(L"b.mp3", 1, 1000));
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"b.mp3"});
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
    EXPECT_TRUE(cCut->CategoryNames().empty());
    EXPECT_FALSE(cLevel->RemoveCut(cCut));
    EXPECT_FALSE(cLevel->RemoveCut(nullptr));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
}

TEST_F(CatTest, WithoutTheNameTheRunTimeIsNotSubtracted)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cCut = NewCut(L"a.mp3", 1, 4000);
    Add(*cLevel, cCut);
    Add(*cLevel, NewCut(L"b.mp3", 1, 1000));
    cCut->RemoveCategoryName(L"Rock");
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 5000);
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
}

TEST_F(CatTest, ACutThatKeepsItsNameStaysAtItsPlaceWithItsRunTime)
{
    const auto cLevel = NewCat(L"Rock", 1);
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        Add(*cLevel, NewCut(sKey, 1, 3000));
    const auto cBad = std::static_pointer_cast<FakeCut>(cLevel->SchedCuts()->At(1));
    for (const char* sMember : {"Key", "HasCategoryName", "RunTimemS", "RemoveCategoryName"})
    {
        cBad->failing = {sMember};
        EXPECT_EQ(ErrorOf([&] { cLevel->RemoveCut(cBad); }), error::ObjectNotSet) << sMember;
        cBad->failing.clear();
        EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), (Keys{L"a", L"b", L"c"})) << sMember;
        EXPECT_EQ(cLevel->AverageRunTimemS(), 3000) << sMember;
        EXPECT_TRUE(cBad->HasCategoryName(L"Rock"));
    }
}

TEST_F(CatTest, WhoeverIsToldOfTheNameFindsOrderAndTotalChangedAlready)
{
    const auto cLevel = NewCat(L"Rock", 1);
    Add(*cLevel, NewCut(L"a", 1, 1000));
    const auto cCut = NewCut(L"b", 1, 3000);
    int lTold = 0;
    cCut->OnCall = [&](const std::string& sMember)
    {
        if (sMember == "AddCategoryName")
        {
            ++lTold;
            EXPECT_EQ(cLevel->TotalCuts(), 2);
            EXPECT_EQ(cLevel->AverageRunTimemS(), 2000);
        }
        if (sMember == "RemoveCategoryName")
        {
            ++lTold;
            EXPECT_EQ(cLevel->TotalCuts(), 1);
            EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
        }
    };
    EXPECT_TRUE(Add(*cLevel, cCut));
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(lTold, 2);
}

TEST_F(CatTest, ACutIsAlsoFoundUnderItsSecondaryKey)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cFiled = NewCut(L"old.mp3", 1, 1000);
    Add(*cLevel, cFiled);
    const auto cRenamed = NewCut(L"new.mp3", 1, 1000);
    cRenamed->lID = cFiled->lID;
    cRenamed->AddCategoryName(L"Rock");
    cRenamed->SetSecondaryKey(L"old.mp3");
    EXPECT_TRUE(cLevel->RemoveCut(cRenamed));
    EXPECT_EQ(cLevel->TotalCuts(), 0);
    EXPECT_FALSE(cRenamed->HasCategoryName(L"Rock"));
}

TEST_F(CatTest, AnEmptySecondaryKeyNeverRemovesAnything)
{
    const auto cLevel = NewCat(L"Rock", 1);
    Add(*cLevel, NewCut(L"", 1));
    EXPECT_FALSE(cLevel->RemoveCut(NewCut(L"other.mp3", 1)));
    EXPECT_EQ(cLevel->TotalCuts(), 1);
}

TEST_F(CatTest, ASecondaryKeyDoesNotRemoveAnotherCutOfTheDatabase)
{
    // Numbers of their own make them two cuts, whatever the secondary key says.
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cOther = NewCut(L"other.mp3", 1);
    const auto cCut = NewCut(L"new.mp3", 1);
    cCut->SetSecondaryKey(L"other.mp3");
    cOther->lID = 1;
    cCut->lID = 2;
    Add(*cLevel, cOther);
    EXPECT_FALSE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(cLevel->TotalCuts(), 1);
    cCut->lID = 1;
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
}

TEST_F(CatTest, AMainCategoryRemovesNoCutOfItsLevels)
{
    const auto cMainCat = NewMainCat({1});
    const auto cCut = NewCut(L"a.mp3", 1);
    Add(*cMainCat, cCut);
    EXPECT_FALSE(cMainCat->RemoveCut(cCut));
    EXPECT_EQ(cMainCat->TotalCuts(), 1);
    EXPECT_TRUE(cCut->HasCategoryName(L"Rock"));
}

// ---- levels

TEST_F(CatTest, LevelsStandInAscendingOrderHoweverTheyCome)
{
    EXPECT_EQ(LevelsOf(*NewMainCat({3, 1, 2})), (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_EQ(LevelsOf(*NewMainCat({10, 9, 100, 1, 2})), (std::vector<std::int32_t>{1, 2, 9, 10, 100}))
        << "by number, not by text";
}

TEST_F(CatTest, AddingALevelKeepsTheCollectionHostsHold)
{
    const auto cMainCat = NewMainCat({3, 1});
    const std::shared_ptr<CatCollection> colHeld = cMainCat->SubCats();
    const auto cNew = NewCat(L"Rock", 2);
    EXPECT_TRUE(cMainCat->AddSubCat(cNew));
    EXPECT_EQ(cMainCat->SubCats(), colHeld);
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_EQ(cMainCat->SubCat(2), cNew);
    EXPECT_EQ(cNew->MainCat(), cMainCat);
    EXPECT_EQ(cMainCat->SubCat(4), nullptr);
}

TEST_F(CatTest, ALevelThatIsThereAlreadyOrNoneIsNotAdded)
{
    const auto cMainCat = NewMainCat({1});
    const auto cOther = NewCat(L"Rock", 1);
    EXPECT_FALSE(cMainCat->AddSubCat(cOther));
    EXPECT_FALSE(cMainCat->AddSubCat(nullptr));
    EXPECT_NE(cMainCat->SubCat(1), cOther);
    EXPECT_EQ(cOther->MainCat(), nullptr);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CatTest, ALevelWithoutANumberIsRefusedWithABox)
{
    const auto cMainCat = NewMainCat({1});
    EXPECT_FALSE(cMainCat->AddSubCat(NewCat(L"Rock", 0)));
    EXPECT_EQ(boxes, Boxes{noLevelBox});
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
}

TEST_F(CatTest, AnErrorInAddSubCatIsReportedAndGivesFalse)
{
    cWorld.cMessages.OnShown = [this]
    {
        cWorld.cMessages.OnShown = nullptr;
        throw RuntimeError(error::PermissionDenied);
    };
    EXPECT_FALSE(NewCat(L"Rock", 0)->AddSubCat(NewCat(L"Rock", 0)));
    EXPECT_EQ(boxes, (Boxes{noLevelBox, HandledError(L"AddSubCat [clsCat]", L"Permission denied", L"70")}));
    EXPECT_EQ(cWorld.LogMessages(), Names{L"DISPLAYERROR, AddSubCat [clsCat] 70 Permission denied"});
}

TEST_F(CatTest, WhatCanBeNoLevelIsRefusedWithError5)
{
    const auto cMainCat = NewMainCat({1});
    const auto cOther = NewMainCat({1});
    cOther->SetCatLevel(2); // as a host may do with a main category
    const auto cSelf = NewCat(L"Rock", 3);
    EXPECT_FALSE(cSelf->AddSubCat(cSelf));
    EXPECT_FALSE(cMainCat->AddSubCat(cOther));
    EXPECT_FALSE(cMainCat->SubCat(1)->AddSubCat(NewCat(L"Rock", 2))) << "a level has no levels";
    const ShownBox refusedBox = HandledError(L"AddSubCat [clsCat]", StandardDescription(5), L"5");
    EXPECT_EQ(boxes, (Boxes{refusedBox, refusedBox, refusedBox}));
    EXPECT_TRUE(cSelf->SubCats()->Empty());
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_EQ(ErrorOf([&] { cMainCat->RequireLevel(*cOther); }), 5);
    EXPECT_EQ(ErrorOf([&] { cMainCat->RequireLevel(*NewCat(L"Rock", 0)); }), 5);
    EXPECT_EQ(ErrorOf([&] { cMainCat->RequireLevel(*NewCat(L"Rock", 2)); }), 0);
}

TEST_F(CatTest, LevelsStayInOrderWhenAHostRenumbersOne)
{
    const auto cMainCat = NewMainCat({1, 4, 7});
    cMainCat->SubCat(4)->SetCatLevel(9);
    ASSERT_TRUE(cMainCat->AddSubCat(NewCat(L"Rock", 8)));
    std::vector<std::int32_t> colLevels;
    for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
        colLevels.push_back(cSubCat->CatLevel());
    EXPECT_EQ(colLevels, (std::vector<std::int32_t>{1, 7, 8, 9}));
}

TEST_F(CatTest, LevelsStayInOrderAfterOneLeft)
{
    const auto cMainCat = NewMainCat({5, 3, 9});
    cMainCat->RemoveSubCat(cMainCat->SubCat(5));
    for (const std::int32_t lLevel : {4, 12, 1})
        ASSERT_TRUE(cMainCat->AddSubCat(NewCat(L"Rock", lLevel)));
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 3, 4, 9, 12}));
}

TEST_F(CatTest, RemovingALevelTakesItAwayWithItsCuts)
{
    const auto cMainCat = NewMainCat({1, 2});
    const auto cCut = NewCut(L"a.mp3", 2, 4000);
    Add(*cMainCat, cCut);
    const auto cLevel = cMainCat->SubCat(2);
    EXPECT_TRUE(cMainCat->RemoveSubCat(cLevel));
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_EQ(cLevel->TotalCuts(), 1)
        << "a main category's RemoveCut finds nothing: the level keeps its cuts";
    EXPECT_TRUE(cCut->HasCategoryName(L"Rock"));
}

TEST_F(CatTest, RemovingALevelFromAMainCategoryAsksItsCutsNothing)
{
    const auto cMainCat = std::make_shared<clsCat>(cMod, L"Pop", 0);
    const auto cLevel = std::make_shared<clsCat>(cMod, L"Pop", 1);
    ASSERT_TRUE(cMainCat->AddSubCat(cLevel));
    const auto cCut = cDataBase.Add(L"a", L"Pop", 1);
    bool bCreated = false;
    cLevel->AddCut(cCut, bCreated);
    cCut->calls.clear();
    EXPECT_TRUE(cMainCat->RemoveSubCat(cLevel));
    EXPECT_TRUE(cCut->calls.empty());
}

TEST_F(CatTest, RemovingALevelTakesItsCutsOutOfACategoryThatHoldsCutsItself)
{
    const auto cParent = std::make_shared<clsCat>(cMod, L"Pop", 1); // a level with levels of its own
    const auto cLevel = std::make_shared<clsCat>(cMod, L"Pop", 2);
    ASSERT_TRUE(cParent->AddSubCat(cLevel));
    const auto cBoth = cDataBase.Add(L"a", L"Pop", 1);
    const auto cOwn = cDataBase.Add(L"b", L"Pop", 1);
    bool bCreated = false;
    for (const auto& cCut : {cBoth, cOwn})
        cParent->AddCut(cCut, bCreated);
    cLevel->AddCut(cBoth, bCreated);
    EXPECT_TRUE(cParent->RemoveSubCat(cLevel));
    EXPECT_FALSE(cParent->SchedCuts()->Exists(L"a"));
    EXPECT_TRUE(cParent->SchedCuts()->Exists(L"b"));
}

TEST_F(CatTest, SortingMovesEachLevelAsItStandsInTheCollection)
{
    const auto cMainCat = std::make_shared<clsCat>(cMod, L"Pop", 0);
    for (const std::int32_t lLevel : {1, 4, 7})
        ASSERT_TRUE(cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, L"Pop", lLevel)));
    CatCollection& colSubCats = *cMainCat->SubCats();
    colSubCats.Reorder({2, 0, 1}); // a host's
    const std::shared_ptr<clsCat>* const pOfSeven = colSubCats.Find(L"7");
    ASSERT_TRUE(cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, L"Pop", 3)));
    std::vector<std::int32_t> colLevels;
    for (const std::shared_ptr<clsCat>& cSubCat : colSubCats)
        colLevels.push_back(cSubCat->CatLevel());
    EXPECT_EQ(colLevels, (std::vector<std::int32_t>{1, 3, 4, 7}));
    EXPECT_EQ(colSubCats.Find(L"7"), pOfSeven) << "neither taken out nor made anew";
}

TEST_F(CatTest, RemovingALevelThatIsNotThereRemovesNothing)
{
    const auto cMainCat = NewMainCat({1});
    EXPECT_FALSE(cMainCat->RemoveSubCat(NewCat(L"Rock", 2)));
    EXPECT_FALSE(cMainCat->RemoveSubCat(nullptr));
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_TRUE(cMainCat->RemoveSubCat(NewCat(L"Other", 1))) << "the level's number alone counts";
}

// ---- run times

TEST_F(CatTest, ALevelsAverageIsItsTotalDividedByItsCuts)
{
    struct Row
    {
        std::vector<std::int32_t> colRunTimes;
        std::int32_t lAverage;
    };
    const Row rows[] = {{{}, 0},        {{100}, 100},   {{1, 2}, 2},    {{2, 3}, 2},           {{3, 4}, 4},
                        {{-1, -2}, -2}, {{1, 1, 2}, 1}, {{0, 0, 0}, 0}, {{lMaxLong}, lMaxLong}};
    for (const Row& row : rows)
    {
        const auto cLevel = NewCat(L"Rock", 1);
        for (std::size_t lAt = 0; lAt < row.colRunTimes.size(); ++lAt)
            Add(*cLevel, NewCut(std::to_wstring(lAt), 1, row.colRunTimes[lAt]));
        EXPECT_EQ(cLevel->AverageRunTimemS(), row.lAverage) << testing::PrintToString(row.colRunTimes);
    }
}

TEST_F(CatTest, AMainCategorysAverageIsTheSumOfItsLevelsAveragesDividedByItsCuts)
{
    const auto cMainCat = NewMainCat({1, 2});
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 0);
    Add(*cMainCat, NewCut(L"a.mp3", 1, 100'000));
    Add(*cMainCat, NewCut(L"b.mp3", 1, 200'000));
    Add(*cMainCat, NewCut(L"c.mp3", 2, 60'000));
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 70'000);
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 70'000) << "the sum it leaves behind is not added to";
}

TEST_F(CatTest, AMainCategorysAverageIsRoundedToEven)
{
    const auto cMainCat = NewMainCat({1, 2});
    Add(*cMainCat, NewCut(L"a.mp3", 1, 2));
    Add(*cMainCat, NewCut(L"b.mp3", 2, 3));
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 2) << "2.5";
}

TEST_F(CatTest, ASumOutOfRangeIsRaisedAfterTheCutIsFiledAndItsNameRegistered)
{
    const auto cMainCat = NewMainCat({1});
    const auto cLevel = cMainCat->SubCat(1);
    Add(*cMainCat, NewCut(L"a.mp3", 1, lMaxLong));
    for (const bool bMain : {true, false})
    {
        const auto cCut = NewCut(bMain ? L"b.mp3" : L"c.mp3", 1, 1);
        EXPECT_EQ(ErrorOf([&] { Add(bMain ? *cMainCat : *cLevel, cCut); }), error::Overflow);
        EXPECT_TRUE(cLevel->SchedCuts()->Exists(cCut->Key()));
        EXPECT_EQ(cCut->CategoryNames(), Names{L"Rock"});
    }
    EXPECT_EQ(cLevel->AverageRunTimemS(), 715'827'883) << "averages stay true: (2^31 - 1 + 1 + 1) / 3";
    EXPECT_TRUE(boxes.empty()) << "raised, not shown";
}

TEST_F(CatTest, ASumThatComesBackIntoRangeIsNoErrorAnyMore)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cLong = NewCut(L"a.mp3", 1, lMaxLong);
    Add(*cLevel, cLong);
    EXPECT_EQ(ErrorOf([&] { Add(*cLevel, NewCut(L"b.mp3", 1, 5)); }), error::Overflow);
    EXPECT_TRUE(cLevel->RemoveCut(cLong));
    EXPECT_TRUE(Add(*cLevel, NewCut(L"c.mp3", 1, 7)));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 6);
}

TEST_F(CatTest, TheLowestSumThatFitsIsNoError)
{
    const auto cLevel = NewCat(L"Rock", 1);
    EXPECT_TRUE(Add(*cLevel, NewCut(L"a.mp3", 1, std::numeric_limits<std::int32_t>::min())));
    EXPECT_EQ(ErrorOf([&] { Add(*cLevel, NewCut(L"b.mp3", 1, -1)); }), error::Overflow);
    EXPECT_TRUE(Add(*cLevel, NewCut(L"c.mp3", 1, 1)));
}

TEST_F(CatTest, TheSumOfTheLevelsAveragesMayOverflowToo)
{
    const auto cMainCat = NewMainCat({1, 2});
    Add(*cMainCat, NewCut(L"a.mp3", 1, lMaxLong));
    Add(*cMainCat, NewCut(L"b.mp3", 2, 1));
    EXPECT_EQ(ErrorOf([&] { (void)cMainCat->AverageRunTimemS(); }), error::Overflow);
}

TEST_F(CatTest, RemovingALevelRecalculatesAndRaisesOnlyAfterTheLevelIsGone)
{
    const auto cMainCat = NewMainCat({1, 2, 3});
    Add(*cMainCat, NewCut(L"a.mp3", 1, lMaxLong));
    Add(*cMainCat, NewCut(L"b.mp3", 2, lMaxLong));
    EXPECT_EQ(ErrorOf([&] { cMainCat->RemoveSubCat(cMainCat->SubCat(3)); }), error::Overflow);
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 2}));
}

TEST_F(CatTest, RecalculatingFollowsWhatTheCutsSayNow)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cCut = NewCut(L"a.mp3", 1, 1000);
    Add(*cLevel, cCut);
    cCut->SetRunTimemS(9000);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 9000);
}

// ---- SchedCuts

TEST_F(CatTest, ALevelsCutsAreItsOwnCollection)
{
    const auto cLevel = NewCat(L"Rock", 1);
    Add(*cLevel, NewCut(L"a.mp3", 1));
    EXPECT_EQ(cLevel->SchedCuts(), cLevel->SchedCuts());
    cLevel->SchedCuts()->Clear();
    EXPECT_EQ(cLevel->TotalCuts(), 0);
}

TEST_F(CatTest, AMainCategorysCutsAreAMergedCopyWithEachCutOnceAtItsFirstPlace)
{
    const auto cMainCat = NewMainCat({2, 1});
    const auto cBoth = NewCut(L"both.mp3", 1);
    Add(*cMainCat->SubCat(1), NewCut(L"a.mp3", 1));
    Add(*cMainCat->SubCat(1), cBoth);
    Add(*cMainCat->SubCat(2), NewCut(L"c.mp3", 2));
    Add(*cMainCat->SubCat(2), cBoth);
    Add(*cMainCat->SubCat(2), NewCut(L"b.mp3", 2));
    const auto colMerged = cMainCat->SchedCuts();
    EXPECT_EQ(KeysOf(*colMerged), (Keys{L"a.mp3", L"both.mp3", L"c.mp3", L"b.mp3"}));
    EXPECT_TRUE(colMerged->Exists(L"BOTH.mp3"));
    EXPECT_NE(cMainCat->SchedCuts(), colMerged) << "a new one on each call";
    colMerged->Clear();
    EXPECT_EQ(cMainCat->TotalCuts(), 5) << "changing it changes no level";
}

TEST_F(CatTest, ReplacingALevelsCutsFilesEachInOrderAndRecalculates)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cOld = NewCut(L"old.mp3", 1, 9000);
    Add(*cLevel, cOld);
    const auto colOld = cLevel->SchedCuts();
    const auto cFirst = NewCut(L"b.mp3", 1, 1000);
    const auto cSecond = NewCut(L"a.mp3", 5, 3000);
    cLevel->SetSchedCuts({cFirst, nullptr, cSecond, cFirst});
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 2000);
    EXPECT_EQ(cFirst->CategoryNames(), Names{L"Rock"});
    EXPECT_EQ(cSecond->CategoryNames(), Names{L"Rock"});
    EXPECT_TRUE(cOld->HasCategoryName(L"Rock"));
    EXPECT_NE(cLevel->SchedCuts(), colOld);
    EXPECT_EQ(KeysOf(*colOld), Keys{L"old.mp3"}) << "the replaced collection is not touched";
}

TEST_F(CatTest, ReplacingAMainCategorysCutsFilesThemIntoItsLevels)
{
    const auto cMainCat = NewMainCat({1});
    cMainCat->SetSchedCuts({NewCut(L"a.mp3", 1), NewCut(L"b.mp3", 4), NewCut(L"c.mp3", 1)});
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 4}));
    EXPECT_EQ(KeysOf(*cMainCat->SubCat(1)->SchedCuts()), (Keys{L"a.mp3", L"c.mp3"}));
    EXPECT_EQ(KeysOf(*cMainCat->SubCat(4)->SchedCuts()), Keys{L"b.mp3"});
}

TEST_F(CatTest, ReplacingWithLevelZeroCutsGivesOneBoxAndALineWithTheirNumber)
{
    const auto cLevel = NewCat(L"Rock", 1);
    cLevel->SetSchedCuts(
        {NewCut(L"a.mp3", 0), NewCut(L"b.mp3", 1), NewCut(L"c.mp3", 0), NewCut(L"d.mp3", 0)});
    EXPECT_EQ(boxes, Boxes{levelZeroBox});
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"b.mp3"});
    EXPECT_EQ(cWorld.LogMessages(), Names{L"Level 0 cuts refused by category Rock: 3 in all."});
}

TEST_F(CatTest, ReplacingFilesEverythingBeforeItRaisesAnOverflow)
{
    const auto cLevel = NewCat(L"Rock", 1);
    EXPECT_EQ(ErrorOf(
                  [&] {
                      cLevel->SetSchedCuts(
                          {NewCut(L"a.mp3", 1, lMaxLong), NewCut(L"b.mp3", 1, 2), NewCut(L"c.mp3", 1, 3)});
                  }),
              error::Overflow);
    EXPECT_EQ(cLevel->TotalCuts(), 3);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 715'827'884);
}

TEST_F(CatTest, AFailingReplacementLeavesTheOldCuts)
{
    const auto cLevel = NewCat(L"Rock", 1);
    Add(*cLevel, NewCut(L"old.mp3", 1, 9000));
    const auto cBad = NewCut(L"bad.mp3", 1);
    cBad->failing = {"Key"};
    EXPECT_EQ(ErrorOf([&] { cLevel->SetSchedCuts({NewCut(L"a.mp3", 1), cBad}); }), error::ObjectNotSet);
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"old.mp3"});
    EXPECT_EQ(cLevel->AverageRunTimemS(), 9000);
}

TEST_F(CatTest, ACutThatFailsWhileItIsFiledLeavesTheTotalTrue)
{
    for (const char* sMember : {"CatLevel", "RunTimemS", "Key", "AddCategoryName"})
    {
        const auto cLevel = NewCat(L"Rock", 1);
        Add(*cLevel, NewCut(L"a.mp3", 1, 1000));
        const auto cBad = NewCut(L"bad.mp3", 1, 3000);
        cBad->failing = {sMember};
        EXPECT_EQ(ErrorOf([&] { Add(*cLevel, cBad); }), error::ObjectNotSet) << sMember;
        EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"a.mp3"}) << sMember;
        EXPECT_EQ(cLevel->AverageRunTimemS(), 1000) << sMember;
    }
}

// ---- hosts' cuts that do something while they are asked

TEST_F(CatTest, ACutThatLeavesWhileItIsAskedForItsKeyIsSafe)
{
    const auto cMainCat = NewMainCat({1});
    for (int i = 0; i < 40; ++i)
        Add(*cMainCat, NewCut(std::to_wstring(i), 1));
    for (const std::shared_ptr<Cut>& cCut : *cMainCat->SubCat(1)->SchedCuts())
    {
        const auto cFake = std::static_pointer_cast<FakeCut>(cCut);
        cFake->OnCall = [&cMainCat, pFake = cFake.get()](const std::string& sMember)
        {
            if (sMember != "Key")
                return;
            pFake->OnCall = nullptr;
            for (const std::shared_ptr<clsCat>& cLevel :
                 Cats(cMainCat->SubCats()->begin(), cMainCat->SubCats()->end()))
                cLevel->SchedCuts()->Clear();
            cMainCat->SubCats()->Clear();
        };
    }
    cDataBase.colCuts.clear(); // the level holds the last reference
    EXPECT_EQ(cMainCat->SchedCuts()->Count(), 40u) << "as they stood when they were asked for";
    EXPECT_TRUE(cMainCat->SubCats()->Empty());
}

TEST_F(CatTest, RecalculatingCountsWhatLeavesMeanwhile)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cFirst = NewCut(L"a", 1, 1'000);
    const auto cSecond = NewCut(L"b", 1, 5'000);
    Add(*cLevel, cFirst);
    Add(*cLevel, cSecond);
    cFirst->SetRunTimemS(2'000);
    cLevel->RecalcTotalRunTime();
    cSecond->OnCall = [&](const std::string& sMember)
    {
        if (sMember != "RunTimemS")
            return;
        cSecond->OnCall = nullptr;
        EXPECT_TRUE(cLevel->RemoveCut(cSecond));
    };
    cDataBase.colCuts.clear();
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->TotalCuts(), 1);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 2'000);
}

TEST_F(CatTest, TheNewestRecalculationCounts)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cCut = NewCut(L"a", 1, 1'000);
    Add(*cLevel, cCut);
    cCut->SetRunTimemS(4'000);
    cCut->OnCall = [&](const std::string& sMember)
    {
        if (sMember != "RunTimemS")
            return;
        cCut->OnCall = nullptr;
        cLevel->RecalcTotalRunTime();
    };
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 4'000);
}

// ---- whole or not at all

TEST_F(CatTest, ALevelMadeForACutThatFailsIsNotLeftBehind)
{
    const auto cMainCat = NewMainCat({1});
    const auto cCut = NewCut(L"a", 3);
    cCut->failing.insert("AddCategoryName");
    bool bCreated = false;
    EXPECT_EQ(ErrorOf([&] { cMainCat->AddCut(cCut, bCreated); }), 91);
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_FALSE(bCreated);
    cCut->failing.clear();
    EXPECT_TRUE(cMainCat->AddCut(cCut, bCreated));
    EXPECT_TRUE(bCreated);
    EXPECT_EQ(LevelsOf(*cMainCat), (std::vector<std::int32_t>{1, 3}));
}

TEST_F(CatTest, AFailingReplacementTakesItsNamesOffAgain)
{
    const auto cLevel = NewCat(L"Rock", 1);
    const auto cOld = NewCut(L"old", 1);
    Add(*cLevel, cOld);
    const auto cNew = NewCut(L"new", 1);
    const auto cNamed = NewCut(L"named", 1); // stands in another level of the category
    cNamed->AddCategoryName(L"ROCK");
    const auto cBad = NewCut(L"bad", 1);
    cBad->failing.insert("AddCategoryName");
    EXPECT_EQ(ErrorOf([&] { cLevel->SetSchedCuts({cOld, cNew, cNamed, cBad}); }), 91);
    EXPECT_EQ(KeysOf(*cLevel->SchedCuts()), Keys{L"old"});
    EXPECT_EQ(cOld->CategoryText(), L"Rock");
    EXPECT_EQ(cNew->CategoryText(), L"");
    EXPECT_EQ(cNamed->CategoryText(), L"ROCK");
    EXPECT_EQ(cBad->CategoryText(), L"");
}

TEST_F(CatTest, AFailingReplacementOfAMainCategoryIsTakenBack)
{
    const auto cMainCat = NewMainCat({1});
    const auto cOld = NewCut(L"old", 1);
    Add(*cMainCat, cOld);
    const auto cNew = NewCut(L"new", 1);
    const auto cOfNewLevel = NewCut(L"level", 3);
    const auto cNamed = NewCut(L"named", 1);
    cNamed->AddCategoryName(L"Rock");
    const auto cBad = NewCut(L"bad", 4);
    cBad->failing.insert("AddCategoryName");
    EXPECT_EQ(ErrorOf([&] { cMainCat->SetSchedCuts({cOld, cNew, cOfNewLevel, cNamed, cBad}); }), 91);
    EXPECT_EQ(KeysOf(*cMainCat->SchedCuts()), Keys{L"old"});
    EXPECT_EQ(LevelsOf(*cMainCat), std::vector<std::int32_t>{1});
    EXPECT_EQ(cOld->CategoryText(), L"Rock");
    EXPECT_EQ(cNew->CategoryText(), L"");
    EXPECT_EQ(cOfNewLevel->CategoryText(), L"");
    EXPECT_EQ(cNamed->CategoryText(), L"Rock");
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "model/clsCat.h"

#include "support/EngineTest.h"
#include "support/FakeDataBase.h"
#include "support/Raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace ravlo::test
{
namespace
{

using Boxes = std::vector<ShownBox>;
using Keys = std::vector<std::wstring>;
using Names = std::vector<std::wstring>;
using Levels = std::vector<std::int32_t>;

constexpr std::int32_t lMaxLong = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t lMinLong = std::numeric_limits<std::int32_t>::min();

const ShownBox noLevelBox = CriticalBox(L"Please contact support.", L"Illegal - a subcat MUST have a level");
const ShownBox levelZeroBox =
    CriticalBox(L"Contact Techincal.", L"Illegal attempt to add level 0 cut to category Rock");

class CatTest : public testing::Test
{
protected:
    CatTest() { cMod.StoreAppPath(sRadio); }

    std::shared_ptr<clsCat> NewCat(std::int32_t lLevel, const std::wstring& sName = L"Rock")
    {
        return std::make_shared<clsCat>(cMod, sName, lLevel);
    }
    std::shared_ptr<clsCat> NewMainCat(const Levels& colLevels)
    {
        const std::shared_ptr<clsCat> cMainCat = NewCat(0);
        AddLevels(*cMainCat, colLevels);
        return cMainCat;
    }
    void AddLevels(clsCat& cMainCat, const Levels& colLevels)
    {
        for (const std::int32_t lLevel : colLevels)
            EXPECT_TRUE(cMainCat.AddSubCat(NewCat(lLevel)));
    }

    std::shared_ptr<FakeCut> NewCut(const std::wstring& sKey, std::int32_t lLevel = 1,
                                    std::int32_t lRunTime = 1000)
    {
        return cDataBase.Add(sKey, L"", lLevel, lRunTime);
    }
    bool Add(clsCat& cCat, const std::shared_ptr<Cut>& cCut) { return cCat.AddCut(cCut, bCreated); }
    // A new cut that is in the category.
    std::shared_ptr<FakeCut> NewCutIn(clsCat& cCat, const std::wstring& sKey, std::int32_t lLevel = 1,
                                      std::int32_t lRunTime = 1000)
    {
        const std::shared_ptr<FakeCut> cCut = NewCut(sKey, lLevel, lRunTime);
        EXPECT_TRUE(Add(cCat, cCut));
        return cCut;
    }
    // A cut that runs an action, once, when a member is called.
    static void OnceAt(FakeCut& cCut, const std::string& sMember, const std::function<void()>& action)
    {
        cCut.OnCall = [&cCut, sMember, action](std::string_view sCalled) {
            if (sCalled != sMember)
                return;
            const auto actionNow = action; // outlives the hook
            cCut.OnCall = nullptr;
            actionNow();
        };
    }

    static Keys KeysOf(const CutCollection& colCuts)
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }
    static Keys KeysOf(const clsCat& cCat) { return KeysOf(*cCat.SchedCuts()); }
    static Levels LevelsOf(const clsCat& cMainCat)
    {
        Levels colLevels;
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat.SubCats())
            colLevels.push_back(cSubCat->CatLevel());
        return colLevels;
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    FakeDataBase cDataBase;
    std::vector<ShownBox>& boxes = cPorts.cMessages.Boxes;
    bool bCreated = false; // AddCut's other result
    const std::shared_ptr<clsCat> cLevel = NewCat(1);
};

// ---- a category by itself

TEST_F(CatTest, NewCategoryIsEmptyAndOfLevelZero)
{
    const clsCat cCat(cMod);
    EXPECT_EQ(cCat.CatName(), L"");
    EXPECT_EQ(cCat.CatLevel(), 0);
    EXPECT_EQ(cCat.MainCat(), nullptr);
    EXPECT_EQ(cCat.TotalCuts(), 0);
    EXPECT_EQ(clsCat(cMod).AverageRunTimemS(), 0);
    EXPECT_TRUE(cCat.SchedCuts()->Empty());
    EXPECT_TRUE(cCat.SubCats()->Empty());
    EXPECT_EQ(cCat.CatID(), L"\t0") << "the TAB form with an empty name";
}

TEST_F(CatTest, NameIsKeptAsGivenAndANegativeLevelReadsAsZero)
{
    for (const wchar_t* sName : {L" Rock ", L"", L"A/B\t?", L"123"})
    {
        cLevel->SetCatName(sName);
        EXPECT_EQ(cLevel->CatName(), sName);
    }
    for (const std::int32_t lLevel : {-5, lMinLong, 0, 1, lMaxLong})
    {
        cLevel->SetCatLevel(lLevel);
        EXPECT_EQ(cLevel->CatLevel(), std::max(lLevel, 0));
    }
}

TEST_F(CatTest, IdIsTheLevelsNumberOrTheMainCategorysKey)
{
    EXPECT_EQ(NewCat(0)->CatID(), L"Rock\t0");
    EXPECT_EQ(NewCat(3)->CatID(), L"3");
    EXPECT_EQ(NewCat(lMaxLong)->CatID(), L"2147483647");
    EXPECT_EQ(CategoryKey(L"Rock", 12), L"Rock\t12");
}

TEST_F(CatTest, MainCategoryIsNotKeptAliveAndCanBeCleared)
{
    auto cMainCat = NewMainCat({1});
    const auto cSubCat = cMainCat->SubCat(1);
    EXPECT_EQ(cSubCat->MainCat(), cMainCat);
    EXPECT_EQ(cMainCat.use_count(), 1);
    cLevel->SetMainCat(cMainCat);
    cLevel->SetMainCat(nullptr);
    EXPECT_EQ(cLevel->MainCat(), nullptr);
    cMainCat.reset();
    EXPECT_EQ(cSubCat->MainCat(), nullptr);
}

TEST_F(CatTest, RulesAreMadeOnFirstUseUnderNameAndLevel)
{
    cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "nothing is read before they are asked for";
    const std::shared_ptr<clsCatRules> cRules = cLevel->Rules();
    EXPECT_EQ(cRules->CatID(), L"Rock\u00AC\u00AC\u00AC1");
    EXPECT_EQ(cLevel->Rules(), cRules);
    EXPECT_EQ(NewCat(0)->Rules()->CatID(), L"Rock\u00AC\u00AC\u00AC0");

    const auto cOther = std::make_shared<clsCatRules>(cMod);
    cLevel->SetRules(cOther);
    EXPECT_EQ(cLevel->PresentRules(), cOther);
    EXPECT_EQ(cLevel->Rules(), cOther);
    EXPECT_EQ(cOther->CatID(), L"") << "an object given from outside is taken as it is";
}

// ---- adding cuts

TEST_F(CatTest, LevelAppendsCutsAndRegistersItsName)
{
    const auto cFirst = NewCutIn(*cLevel, L"b");
    const auto cSecond = NewCut(L"a");
    cSecond->AddCategoryName(L"ROCK");
    EXPECT_TRUE(Add(*cLevel, cSecond));
    NewCutIn(*cLevel, L"of level 7", 7);
    NewCutIn(*cLevel, L"of level -7", -7);
    EXPECT_EQ(KeysOf(*cLevel), (Keys{L"b", L"a", L"of level 7", L"of level -7"}));
    EXPECT_EQ(cLevel->SchedCuts()->KeyAt(0)->Text(), L"b") << "keyed by the unique key";
    EXPECT_EQ(cLevel->TotalCuts(), 4);
    EXPECT_EQ(cFirst->CategoryNames(), Names{L"Rock"});
    EXPECT_EQ(cSecond->CategoryNames(), Names{L"ROCK"}) << "an existing entry is left as it is";
    EXPECT_FALSE(bCreated);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CatTest, CutThatIsThereIsNotAddedAgainButNamed)
{
    const auto cCut = NewCutIn(*cLevel, L"a.mp3", 1, 5000);
    cCut->RemoveCategoryName(L"Rock");
    EXPECT_FALSE(Add(*cLevel, cCut));
    EXPECT_FALSE(Add(*cLevel, NewCut(L"A.MP3", 1, 7000))) << "keys are told apart as the file system does";
    EXPECT_EQ(cLevel->TotalCuts(), 1);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 5000) << "its run time counts once";
    EXPECT_TRUE(cCut->HasCategoryName(L"Rock"));
}

TEST_F(CatTest, NoCutAndACutOfNoLevelAreRefused)
{
    const auto expectRefused =
        [&](const std::shared_ptr<clsCat>& cCat, std::int32_t lCut, const ShownBox& box) {
        boxes.clear();
        EXPECT_FALSE(Add(*cCat, nullptr));
        EXPECT_TRUE(boxes.empty());
        const auto cCut = NewCut(L"a", lCut);
        EXPECT_FALSE(Add(*cCat, cCut));
        EXPECT_EQ(boxes, Boxes{box});
        EXPECT_FALSE(bCreated);
        EXPECT_EQ(cCat->TotalCuts(), 0);
        EXPECT_TRUE(cCat->SubCats()->Empty());
        EXPECT_TRUE(cCut->CategoryNames().empty());
    };
    expectRefused(NewCat(0), 0, levelZeroBox);
    expectRefused(NewCat(1), 0, levelZeroBox);
    expectRefused(NewCat(0), -3, noLevelBox);
}

TEST_F(CatTest, MainCategoryMakesAMissingLevelAndSaysSo)
{
    const auto cMainCat = NewMainCat({1, 2});
    const auto cCut = NewCutIn(*cMainCat, L"a", 3);
    EXPECT_TRUE(bCreated);
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 2, 3}));
    EXPECT_EQ(cMainCat->SubCat(3)->CatName(), L"Rock");
    EXPECT_EQ(cMainCat->SubCat(3)->MainCat(), cMainCat);
    EXPECT_EQ(KeysOf(*cMainCat->SubCat(3)), Keys{L"a"});
    EXPECT_EQ(cCut->CategoryNames(), Names{L"Rock"});

    NewCutIn(*cMainCat, L"b", 2);
    EXPECT_TRUE(bCreated) << "only ever set, never reset";
    for (const bool bBefore : {false, true})
    {
        bCreated = bBefore;
        EXPECT_FALSE(Add(*cMainCat, cCut));
        EXPECT_EQ(bCreated, bBefore) << "left as the caller passed it";
    }
    for (const std::int32_t lLevel : {32766, lMaxLong}) // past those that can be typed
        NewCutIn(*cMainCat, std::to_wstring(lLevel), lLevel);
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 2, 3, 32766, lMaxLong}));
    EXPECT_EQ(cMainCat->SubCat(1)->TotalCuts(), 0);
    EXPECT_EQ(cMainCat->SubCat(2)->TotalCuts(), 1);
    EXPECT_EQ(cMainCat->TotalCuts(), 4);
}

TEST_F(CatTest, LevelOfAnotherNameGivesACutBothNamesOrNone)
{
    for (const bool bAlready : {false, true})
        for (const bool bNamed : {false, true})
        {
            const auto cMainCat = NewMainCat({});
            ASSERT_TRUE(cMainCat->AddSubCat(NewCat(1, L"Other")));
            NewCutIn(*cMainCat, L"good");
            const auto cBad = bAlready ? NewCutIn(*cMainCat, L"bad") : NewCut(L"bad");
            EXPECT_EQ(cBad->CategoryNames(), bAlready ? (Names{L"Other", L"Rock"}) : Names{});
            cBad->SetCategoryText(bNamed ? L"Other" : L"");
            const Keys colBefore = KeysOf(*cMainCat);
            int calls = 0;
            cBad->OnCall = [&](std::string_view sMember) {
                if (sMember == "AddCategoryName" && ++calls == 2) // the main category's name
                    cBad->failing.emplace(sMember);
                else
                    cBad->failing.clear();
            };
            EXPECT_EQ(NumberRaisedBy([&] { Add(*cMainCat, cBad); }), error::ObjectNotSet);
            EXPECT_EQ(cBad->CategoryText(), bNamed ? L"Other" : L"");
            EXPECT_EQ(KeysOf(*cMainCat), colBefore);
            EXPECT_EQ(cMainCat->SubCat(1)->AverageRunTimemS(), 1000);
        }
}

// ---- removing cuts

TEST_F(CatTest, RemovingTakesTheCutAndWithItsNameTheRunTime)
{
    const auto cCut = NewCutIn(*cLevel, L"a", 1, 4000);
    NewCutIn(*cLevel, L"b", 1, 1000);
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(KeysOf(*cLevel), Keys{L"b"});
    EXPECT_TRUE(cCut->CategoryNames().empty());
    EXPECT_FALSE(cLevel->RemoveCut(cCut));
    EXPECT_FALSE(cLevel->RemoveCut(nullptr));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);

    EXPECT_TRUE(Add(*cLevel, cCut));
    cCut->RemoveCategoryName(L"Rock");
    cCut->calls.clear();
    EXPECT_TRUE(cLevel->RemoveCut(cCut));
    EXPECT_EQ(cCut->calls["RemoveCategoryName"], 0);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 5000) << "not subtracted without the name";
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1000);
}

TEST_F(CatTest, CutThatFailsLeavesTheLevelAsItWas)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        NewCutIn(*cLevel, sKey, 1, 3000);
    const auto expectFailure =
        [&](FakeCut& cBad, const char* sMember, const std::function<void()>& operation) {
        SCOPED_TRACE(sMember);
        const auto bNamed = cBad.HasCategoryName(L"Rock");
        cBad.failing = {sMember};
        EXPECT_EQ(NumberRaisedBy(operation), error::ObjectNotSet);
        cBad.failing.clear();
        EXPECT_EQ(KeysOf(*cLevel), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(cLevel->AverageRunTimemS(), 3000);
        EXPECT_EQ(cBad.HasCategoryName(L"Rock"), bNamed);
    };
    const auto cPlaced = std::static_pointer_cast<FakeCut>(cLevel->SchedCuts()->At(1));
    for (const char* sMember : {"Key", "HasCategoryName", "RunTimemS", "RemoveCategoryName"})
        expectFailure(*cPlaced, sMember, [&] { cLevel->RemoveCut(cPlaced); });
    const auto cNew = NewCut(L"new", 1, 9000);
    for (const char* sMember : {"CatLevel", "RunTimemS", "Key", "AddCategoryName"})
        expectFailure(*cNew, sMember, [&] { Add(*cLevel, cNew); });
}

TEST_F(CatTest, NameIsAnnouncedAfterOrderAndTotalChanged)
{
    NewCutIn(*cLevel, L"a", 1, 1000);
    const auto cCut = NewCut(L"b", 1, 3000);
    std::vector<std::pair<std::int32_t, std::int32_t>> colTold;
    for (const char* sMember : {"AddCategoryName", "RemoveCategoryName"})
    {
        OnceAt(*cCut, sMember,
               [&] { colTold.emplace_back(cLevel->TotalCuts(), cLevel->AverageRunTimemS()); });
        EXPECT_TRUE(colTold.empty() ? Add(*cLevel, cCut) : cLevel->RemoveCut(cCut));
    }
    EXPECT_EQ(colTold, (decltype(colTold){{2, 2000}, {1, 1000}}));
}

TEST_F(CatTest, CutIsAlsoFoundUnderItsSecondaryKey)
{
    const auto cPlaced = NewCutIn(*cLevel, L"old");
    const auto cRenamed = NewCut(L"new");
    cRenamed->lID = cPlaced->lID;
    cRenamed->AddCategoryName(L"Rock");
    cRenamed->SetSecondaryKey(L"old");
    EXPECT_TRUE(cLevel->RemoveCut(cRenamed));
    EXPECT_EQ(cLevel->TotalCuts(), 0);
    EXPECT_FALSE(cRenamed->HasCategoryName(L"Rock"));

    NewCutIn(*cLevel, L"");
    EXPECT_FALSE(cLevel->RemoveCut(NewCut(L"other"))) << "an empty secondary key finds nothing";
}

TEST_F(CatTest, SecondaryKeyDoesNotRemoveAnotherCutOfTheDatabase)
{
    // Numbers of their own make them two cuts, with any secondary key.
    const std::tuple<std::int32_t, std::int32_t, bool> colNumbers[] = {
        {1, 2, false}, {1, 1, true}, {0, 2, true}, {1, 0, true}};
    for (const auto& [lOther, lOwn, bRemoved] : colNumbers)
    {
        const auto cCat = NewCat(1);
        NewCutIn(*cCat, L"other")->lID = lOther;
        const auto cCut = NewCut(L"new");
        cCut->SetSecondaryKey(L"other");
        cCut->lID = lOwn;
        EXPECT_EQ(cCat->RemoveCut(cCut), bRemoved) << lOther << ' ' << lOwn;
        EXPECT_EQ(cCat->TotalCuts(), bRemoved ? 0 : 1);
    }
}

// ---- levels

TEST_F(CatTest, LevelsAreInAscendingOrderInTheCollectionHostsHold)
{
    const auto cMainCat = NewMainCat({10, 9, 100, 1, 2}); // by number, not by text
    const std::shared_ptr<CatCollection> colHeld = cMainCat->SubCats();
    const auto cNew = NewCat(3);
    EXPECT_TRUE(cMainCat->AddSubCat(cNew));
    EXPECT_EQ(cMainCat->SubCats(), colHeld);
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 2, 3, 9, 10, 100}));
    for (std::size_t at = 0; at < colHeld->Count(); ++at)
        EXPECT_EQ(colHeld->KeyAt(at)->Text(), colHeld->At(at)->CatID());
    EXPECT_EQ(cMainCat->SubCat(3), cNew);
    EXPECT_EQ(cNew->MainCat(), cMainCat);
    EXPECT_EQ(cMainCat->SubCat(4), nullptr);
}

TEST_F(CatTest, LevelThatIsThereOrNoneIsNotAdded)
{
    const auto cMainCat = NewMainCat({1});
    EXPECT_FALSE(cMainCat->AddSubCat(cLevel));
    EXPECT_FALSE(cMainCat->AddSubCat(nullptr));
    EXPECT_NE(cMainCat->SubCat(1), cLevel);
    EXPECT_EQ(cLevel->MainCat(), nullptr);
    EXPECT_TRUE(boxes.empty());
    EXPECT_FALSE(cMainCat->AddSubCat(NewCat(0)));
    EXPECT_EQ(boxes, Boxes{noLevelBox});
    EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
}

TEST_F(CatTest, ErrorInAddSubCatIsReportedAndGivesFalse)
{
    cPorts.cMessages.OnShown = [this] {
        cPorts.cMessages.OnShown = nullptr;
        throw RuntimeError(error::PermissionDenied);
    };
    EXPECT_FALSE(NewCat(0)->AddSubCat(NewCat(0)));
    EXPECT_EQ(boxes, (Boxes{noLevelBox, HandledError(L"AddSubCat [clsCat]", L"Permission denied", L"70")}));
    EXPECT_EQ(cPorts.LogMessages(), Names{L"DISPLAYERROR, AddSubCat [clsCat] 70 Permission denied"});
}

TEST_F(CatTest, WhatCanBeNoLevelIsRefusedWithError5)
{
    const auto cMainCat = NewMainCat({1});
    const auto cOther = NewMainCat({1});
    cOther->SetCatLevel(2); // as a host may do with a main category
    EXPECT_FALSE(cLevel->AddSubCat(cLevel));
    EXPECT_FALSE(cMainCat->AddSubCat(cOther));
    EXPECT_FALSE(cMainCat->SubCat(1)->AddSubCat(NewCat(2))) << "a level has no levels";
    const ShownBox refusedBox = HandledError(L"AddSubCat [clsCat]", StandardDescription(5), L"5");
    EXPECT_EQ(boxes, (Boxes{refusedBox, refusedBox, refusedBox}));
    EXPECT_TRUE(cLevel->SubCats()->Empty());
    EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
    EXPECT_EQ(NumberRaisedBy([&] { cMainCat->RequireLevel(*cOther); }), 5);
    EXPECT_EQ(NumberRaisedBy([&] { cMainCat->RequireLevel(*NewCat(0)); }), 5);
    EXPECT_EQ(NumberRaisedBy([&] { cMainCat->RequireLevel(*NewCat(2)); }), 0);
}

TEST_F(CatTest, LevelsStayInOrderAfterAHostsChanges)
{
    auto cMainCat = NewMainCat({1, 4, 7});
    const auto expectLevels = [&](const Levels& colAdded, const Levels& colExpected) {
        AddLevels(*cMainCat, colAdded);
        EXPECT_EQ(LevelsOf(*cMainCat), colExpected);
    };
    cMainCat->SubCat(4)->SetCatLevel(9);
    expectLevels({8}, {1, 7, 8, 9});

    cMainCat = NewMainCat({5, 3, 9});
    cMainCat->RemoveSubCat(cMainCat->SubCat(5));
    expectLevels({4, 12, 1}, {1, 3, 4, 9, 12});

    cMainCat = NewMainCat({1, 4, 7});
    cMainCat->SubCats()->Reorder({2, 0, 1});
    const std::shared_ptr<clsCat>* const pOfSeven = cMainCat->SubCats()->Find(L"7");
    expectLevels({3}, {1, 3, 4, 7});
    EXPECT_EQ(cMainCat->SubCats()->Find(L"7"), pOfSeven) << "moved, neither taken out nor made again";

    cMainCat->SubCats()->Reorder({3, 2, 1, 0});
    cMainCat->RemoveSubCat(cMainCat->SubCat(1));
    expectLevels({5}, {3, 4, 5, 7});
}

TEST_F(CatTest, MainCategoryRemovesALevelWithItsCutsButNoCut)
{
    const auto cMainCat = NewMainCat({1, 2});
    const auto cCut = NewCutIn(*cMainCat, L"a", 2);
    const auto cSecond = cMainCat->SubCat(2);
    EXPECT_FALSE(cMainCat->RemoveCut(cCut));
    cCut->calls.clear();
    EXPECT_TRUE(cMainCat->RemoveSubCat(cSecond));
    EXPECT_TRUE(cCut->calls.empty()) << "cuts are asked nothing";
    EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
    EXPECT_EQ(cSecond->TotalCuts(), 1);
    EXPECT_TRUE(cCut->HasCategoryName(L"Rock"));

    EXPECT_FALSE(cMainCat->RemoveSubCat(cSecond));
    EXPECT_FALSE(cMainCat->RemoveSubCat(nullptr));
    EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
    EXPECT_TRUE(cMainCat->RemoveSubCat(NewCat(1, L"Other"))) << "the level's number alone counts";
}

TEST_F(CatTest, RemovedLevelTakesItsCutsOutOfACategoryWithCuts)
{
    const auto cSecond = NewCat(2);
    ASSERT_TRUE(cLevel->AddSubCat(cSecond)); // a level with levels of its own
    const auto cBoth = NewCutIn(*cLevel, L"a");
    NewCutIn(*cLevel, L"b");
    Add(*cSecond, cBoth);
    EXPECT_TRUE(cLevel->RemoveSubCat(cSecond));
    EXPECT_EQ(KeysOf(*cLevel), Keys{L"b"});
}

// ---- run times

TEST_F(CatTest, LevelsAverageIsItsTotalDividedByItsCuts)
{
    const std::pair<std::vector<std::int32_t>, std::int32_t> rows[] = {
        {{}, 0},        {{100}, 100},   {{1, 2}, 2},    {{2, 3}, 2},           {{3, 4}, 4},
        {{-1, -2}, -2}, {{1, 1, 2}, 1}, {{0, 0, 0}, 0}, {{lMaxLong}, lMaxLong}};
    for (const auto& [colRunTimes, lAverage] : rows)
    {
        const auto cCat = NewCat(1);
        for (const std::int32_t lRunTime : colRunTimes)
            NewCutIn(*cCat, std::to_wstring(cCat->TotalCuts()), 1, lRunTime);
        EXPECT_EQ(cCat->AverageRunTimemS(), lAverage) << testing::PrintToString(colRunTimes);
    }
}

TEST_F(CatTest, MainCategorysAverageIsOfItsLevelsAverages)
{
    auto cMainCat = NewMainCat({1, 2});
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 0);
    NewCutIn(*cMainCat, L"a", 1, 100'000);
    NewCutIn(*cMainCat, L"b", 1, 200'000);
    NewCutIn(*cMainCat, L"c", 2, 60'000);
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 70'000) << "their sum divided by all cuts";
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 70'000) << "the sum it leaves behind is not added to";

    cMainCat = NewMainCat({1, 2});
    NewCutIn(*cMainCat, L"d", 1, 2);
    NewCutIn(*cMainCat, L"e", 2, 3);
    EXPECT_EQ(cMainCat->AverageRunTimemS(), 2) << "2.5 is rounded to even";
    NewCutIn(*cMainCat, L"f", 3, lMaxLong);
    EXPECT_EQ(NumberRaisedBy([&] { (void)cMainCat->AverageRunTimemS(); }), error::Overflow);
}

TEST_F(CatTest, OverflowIsRaisedAfterTheCutIsPlacedAndNamed)
{
    const auto cMainCat = NewMainCat({1});
    const auto cSubCat = cMainCat->SubCat(1);
    const auto expectPlaced = [&](clsCat& cCat, const wchar_t* sKey) {
        const auto cCut = NewCut(sKey, 1, 1);
        EXPECT_EQ(NumberRaisedBy([&] { Add(cCat, cCut); }), error::Overflow);
        EXPECT_TRUE(cSubCat->SchedCuts()->Exists(cCut->Key()));
        EXPECT_EQ(cCut->CategoryNames(), Names{L"Rock"});
    };
    NewCutIn(*cMainCat, L"a", 1, lMaxLong);
    expectPlaced(*cMainCat, L"b");
    expectPlaced(*cSubCat, L"c");
    EXPECT_EQ(cSubCat->AverageRunTimemS(), 715'827'883) << "averages stay true: (2^31 - 1 + 1 + 1) / 3";
    EXPECT_TRUE(boxes.empty()) << "raised, not shown";
    EXPECT_EQ(NumberRaisedBy([&] { cMainCat->RemoveSubCat(NewCat(1)); }), 0) << "what overflowed is gone";
}

TEST_F(CatTest, SumBackInRangeIsNoErrorAnyMore)
{
    const auto cLong = NewCutIn(*cLevel, L"a", 1, lMaxLong);
    EXPECT_EQ(NumberRaisedBy([&] { Add(*cLevel, NewCut(L"b", 1, 5)); }), error::Overflow);
    EXPECT_TRUE(cLevel->RemoveCut(cLong));
    EXPECT_TRUE(Add(*cLevel, NewCut(L"c", 1, 7)));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 6);

    const auto cCat = NewCat(1);
    NewCutIn(*cCat, L"d", 1, lMinLong); // the lowest that fits
    EXPECT_EQ(NumberRaisedBy([&] { Add(*cCat, NewCut(L"e", 1, -1)); }), error::Overflow);
    NewCutIn(*cCat, L"f", 1, 1);
}

TEST_F(CatTest, OverflowIsRaisedAfterALevelIsGoneOrItsCutsAreReplaced)
{
    const auto cMainCat = NewMainCat({1, 2, 3});
    NewCutIn(*cMainCat, L"a", 1, lMaxLong);
    NewCutIn(*cMainCat, L"b", 2, lMaxLong);
    EXPECT_EQ(NumberRaisedBy([&] { cMainCat->RemoveSubCat(cMainCat->SubCat(3)); }), error::Overflow);
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 2}));
    const Cuts colCuts = {NewCut(L"c", 1, lMaxLong), NewCut(L"d", 1, 2), NewCut(L"e", 1, 3)};
    EXPECT_EQ(NumberRaisedBy([&] { cLevel->SetSchedCuts(colCuts); }), error::Overflow);
    EXPECT_EQ(cLevel->TotalCuts(), 3);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 715'827'884);
}

TEST_F(CatTest, RecalculatingFollowsWhatTheCutsSayNow)
{
    const auto cFirst = NewCutIn(*cLevel, L"a", 1, 1'000);
    cFirst->SetRunTimemS(9'000);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 1'000);
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 9'000);
    cFirst->SetRunTimemS(2'000);
    OnceAt(*cFirst, "RunTimemS", [&] { cLevel->RecalcTotalRunTime(); });
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->AverageRunTimemS(), 2'000) << "the newest one counts";

    const auto cSecond = NewCutIn(*cLevel, L"b", 1, 5'000);
    OnceAt(*cSecond, "RunTimemS", [&] { EXPECT_TRUE(cLevel->RemoveCut(cSecond)); });
    cDataBase.colCuts.clear();
    cLevel->RecalcTotalRunTime();
    EXPECT_EQ(cLevel->TotalCuts(), 1);
    EXPECT_EQ(cLevel->AverageRunTimemS(), 2'000) << "what leaves during it is subtracted";
}

// ---- SchedCuts

TEST_F(CatTest, MainCategorysCutsAreAMergedCopyWithEachCutOnce)
{
    const auto cMainCat = NewMainCat({2, 1});
    NewCutIn(*cMainCat, L"a");
    const auto cBoth = NewCutIn(*cMainCat, L"both");
    NewCutIn(*cMainCat, L"c", 2);
    Add(*cMainCat->SubCat(2), cBoth);
    NewCutIn(*cMainCat, L"b", 2);
    const auto colMerged = cMainCat->SchedCuts();
    EXPECT_EQ(KeysOf(*colMerged), (Keys{L"a", L"both", L"c", L"b"})) << "at its first place";
    EXPECT_TRUE(colMerged->Exists(L"BOTH"));
    EXPECT_NE(cMainCat->SchedCuts(), colMerged) << "a new one on each call";
    colMerged->Clear();
    EXPECT_EQ(cMainCat->TotalCuts(), 5) << "changing it changes no level";
}

TEST_F(CatTest, LevelsCutsAreItsOwnCollectionUntilTheyAreReplacedInOrder)
{
    const auto cOld = NewCutIn(*cLevel, L"old", 1, 9000);
    const auto colOld = cLevel->SchedCuts();
    EXPECT_EQ(cLevel->SchedCuts(), colOld);
    const auto cFirst = NewCut(L"b", 1, 1000);
    const auto cSecond = NewCut(L"a", 5, 3000);
    cLevel->SetSchedCuts({cFirst, nullptr, cSecond, cFirst});
    EXPECT_EQ(KeysOf(*cLevel), (Keys{L"b", L"a"}));
    EXPECT_EQ(cLevel->AverageRunTimemS(), 2000);
    EXPECT_EQ(cFirst->CategoryNames(), Names{L"Rock"});
    EXPECT_EQ(cSecond->CategoryNames(), Names{L"Rock"});
    EXPECT_TRUE(cOld->HasCategoryName(L"Rock"));
    EXPECT_NE(cLevel->SchedCuts(), colOld);
    EXPECT_EQ(KeysOf(*colOld), Keys{L"old"}) << "the replaced collection is not touched";
    EXPECT_TRUE(boxes.empty());
    cLevel->SchedCuts()->Clear();
    EXPECT_EQ(cLevel->TotalCuts(), 0);
}

TEST_F(CatTest, ReplacingAMainCategorysCutsPlacesThemInItsLevels)
{
    const auto cMainCat = NewMainCat({1});
    cMainCat->SetSchedCuts({NewCut(L"a"), NewCut(L"b", 4), NewCut(L"c")});
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 4}));
    EXPECT_EQ(KeysOf(*cMainCat->SubCat(1)), (Keys{L"a", L"c"}));
    EXPECT_EQ(KeysOf(*cMainCat->SubCat(4)), Keys{L"b"});
}

TEST_F(CatTest, ReplacingWithLevelZeroCutsGivesOneBoxAndALine)
{
    cLevel->SetSchedCuts({NewCut(L"a", 0), NewCut(L"b"), NewCut(L"c", 0), NewCut(L"d", 0)});
    EXPECT_EQ(boxes, Boxes{levelZeroBox});
    EXPECT_EQ(KeysOf(*cLevel), Keys{L"b"});
    EXPECT_EQ(cPorts.LogMessages(), Names{L"Level 0 cuts refused by category Rock: 3 in all."});
    cLevel->SetSchedCuts({NewCut(L"e", 0)});
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_EQ(cPorts.LogMessages().size(), 1u) << "no line for a single one";
}

// ---- whole or not at all

TEST_F(CatTest, LevelMadeForACutThatFailsIsNotLeftBehind)
{
    const auto cMainCat = NewMainCat({1});
    const auto cCut = NewCut(L"a", 3);
    cCut->failing.insert("AddCategoryName");
    EXPECT_EQ(NumberRaisedBy([&] { Add(*cMainCat, cCut); }), 91);
    EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
    EXPECT_FALSE(bCreated);
    OnceAt(*cCut, "AddCategoryName", [&] { NewCutIn(*cMainCat, L"of others", 3); });
    EXPECT_EQ(NumberRaisedBy([&] { Add(*cMainCat, cCut); }), 91);
    EXPECT_EQ(KeysOf(*cMainCat), Keys{L"of others"}) << "others have used the level since";
    cCut->failing.clear();
    cMainCat->RemoveSubCat(cMainCat->SubCat(3));
    bCreated = false;
    EXPECT_TRUE(Add(*cMainCat, cCut));
    EXPECT_TRUE(bCreated);
    EXPECT_EQ(LevelsOf(*cMainCat), (Levels{1, 3}));
}

TEST_F(CatTest, FailingReplacementLeavesEverythingAsItWas)
{
    const auto expectAsBefore = [&](bool bMain, const char* sMember) {
        const auto cMainCat = NewMainCat({1});
        const auto cOld = NewCutIn(*cMainCat, L"old", 1, 9000);
        const auto cNamed = NewCut(L"named"); // is in another level of the category
        cNamed->AddCategoryName(L"ROCK");
        const auto cBad = NewCut(L"bad", 4);
        cBad->failing = {sMember};
        const Cuts colNew{NewCut(L"new"), NewCut(L"level", 3), NewCut(L"no level", -3), cBad};
        clsCat& cCat = bMain ? *cMainCat : *cMainCat->SubCat(1);
        EXPECT_EQ(NumberRaisedBy([&] {
                      cCat.SetSchedCuts({cOld, colNew[0], colNew[1], colNew[2], cNamed, cBad});
                  }),
                  91);
        EXPECT_EQ(KeysOf(*cMainCat), Keys{L"old"});
        EXPECT_EQ(LevelsOf(*cMainCat), Levels{1});
        EXPECT_EQ(cMainCat->SubCat(1)->AverageRunTimemS(), 9000);
        EXPECT_EQ(cOld->CategoryText(), L"Rock");
        EXPECT_EQ(cNamed->CategoryText(), bMain ? L"Rock" : L"ROCK");
        for (const std::shared_ptr<Cut>& cNew : colNew)
            EXPECT_EQ(cNew->CategoryText(), L"");
    };
    for (const char* sMember : {"Key", "AddCategoryName"})
    {
        expectAsBefore(false, sMember);
        expectAsBefore(true, sMember);
    }
}

// ---- hosts' cuts that do something while they are asked

TEST_F(CatTest, CutsMayLeaveWhileTheyAreAskedForTheirKeys)
{
    const auto cMainCat = NewMainCat({1});
    for (int i = 0; i < 40; ++i)
    {
        const auto cCut = NewCutIn(*cMainCat, std::to_wstring(i));
        OnceAt(*cCut, "Key", [&cMainCat] {
            if (const auto cSubCat = cMainCat->SubCat(1))
                cSubCat->SchedCuts()->Clear();
            cMainCat->SubCats()->Clear();
        });
    }
    cDataBase.colCuts.clear(); // the level has the last reference
    EXPECT_EQ(cMainCat->SchedCuts()->Count(), 40u) << "as they were when they were asked for";
    EXPECT_TRUE(cMainCat->SubCats()->Empty());
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "scheduler/MassChange.h"

#include "support/SyncTest.h"

#include <limits>

namespace ravlo::test
{
namespace
{

constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();

class MassChangeTest : public StationTest
{
protected:
    // True when a level was made.
    bool Change(eCatDragOptions eOption, const Cats& colFrom, const std::shared_ptr<clsCat>& cTo,
                const Cuts& colCuts)
    {
        bool bCreated = false;
        cLib.cSchedMan->DoMassCatChange(eOption, colFrom, cTo, colCuts, bCreated);
        return bCreated;
    }
    ShownBox ErrorBox(const std::wstring& sText) const
    {
        return CriticalBox(L"Error in DoMassCatChange [cSchedMan]", sText);
    }
};

const Lines colMoveSaid{L"Start 1: Applying Mass Move Change...", L"Done: Applied Mass Move."};

// ---- what does nothing

TEST_F(MassChangeTest, NothingHappensWithoutAnOptionASourceOrATarget)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Pop", 1);
    Start();
    const Cats colFrom{Level(L"Rock", 1)};
    Change(eCancel, colFrom, Level(L"Pop", 1), {cCut});
    Change(static_cast<eCatDragOptions>(4), colFrom, Level(L"Pop", 1), {cCut});
    Change(static_cast<eCatDragOptions>(-1), colFrom, Level(L"Pop", 1), {cCut});
    for (const eCatDragOptions eOption : {eCopyHere, eMoveHere, eMoveExclusiveHere})
    {
        Change(eOption, {}, Level(L"Pop", 1), {cCut});
        Change(eOption, colFrom, nullptr, {cCut});
    }
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(MassChangeTest, WithoutCutsNothingHappensAndNothingIsSaid)
{
    Add(L"a", L"Rock", 1);
    Add(L"b", L"Pop", 1);
    Start();
    const Cuts colNothing[] = {{}, {nullptr}, {nullptr, nullptr}};
    for (const eCatDragOptions eOption : {eCopyHere, eMoveHere, eMoveExclusiveHere})
        for (const Cuts& colCuts : colNothing)
            for (const auto& cTo :
                 {Level(L"Pop", 1), MainCat(L"Pop"), std::make_shared<clsCat>(cLib.cMod, L"Gone", 1)})
                EXPECT_FALSE(Change(eOption, {Level(L"Rock", 1)}, cTo, colCuts));
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines());
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 0);
}

TEST_F(MassChangeTest, WithoutCutsItIsNoEditThatAPopulationHadToRefuse)
{
    Add(L"a", L"Rock", 1);
    Start();
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Rock", 1), {});
    };
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(MassChangeTest, ATargetTheTreeDoesNotHoldIsRefused)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Pop", 1);
    Start();
    const auto cDead = Level(L"Pop", 1);
    cLib.cSchedMan->DeleteCats({cDead});
    Forget();
    const ShownBox gone = ErrorBox(L"5 The category to change into does not exist any more");
    for (const auto& cTo :
         {cDead, std::make_shared<clsCat>(cLib.cMod, L"Pop", 1),
          std::make_shared<clsCat>(cLib.cMod, L"Jazz", 0), std::make_shared<clsCat>(cLib.cMod, L"Jazz", 1)})
    {
        boxes.clear();
        Change(eMoveHere, {Level(L"Rock", 1)}, cTo, {cCut});
        EXPECT_EQ(boxes, (Boxes{gone}));
    }
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(said, Lines());
}

TEST_F(MassChangeTest, TargetFromBeforeAReloadIsFoundByNameAndNumber)
{
    Add(L"b", L"Pop", 1);
    Start();
    for (const bool bMain : {false, true})
    {
        SCOPED_TRACE(bMain);
        const std::wstring sKey = bMain ? L"main" : L"level";
        const auto cCut = Add(sKey, L"Rock", 1);
        Added({cCut});
        const std::shared_ptr<clsCat> cTo = bMain ? MainCat(L"Pop") : Level(L"Pop", 1);
        const std::shared_ptr<clsCat> cFrom = Level(L"Rock", 1);
        cLib.Populate();
        Change(eMoveHere, {cFrom}, cTo, {cCut});
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(Order(L"Rock", 1), Keys());
        EXPECT_EQ(Order(L"Pop", 1).back(), sKey);
        cLib.Restart();
        EXPECT_EQ(Order(L"Pop", 1).back(), sKey);
    }
}

// ---- moving into a level

TEST_F(MassChangeTest, AMovedCutLeavesItsSourceAndTakesTheTargetsNumberAndName)
{
    const auto cCut = Add(L"a", L"Rock", 1, 100'000);
    Add(L"b", L"Pop", 2, 50'000);
    Start();
    EXPECT_FALSE(Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut})) << "no level was made";
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CatLevel(), 2);
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(TotalOf(L"Rock", 1), 0);
    EXPECT_EQ(TotalOf(L"Pop", 2), 150'000);
    EXPECT_EQ(said, Joined({colMoveSaid, SaveSaid(L"Rock", 1), SaveSaid(L"Pop", 2)}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    EXPECT_EQ(File(L"Pop"), SifCut("b", 2) + SifCut("a", 2));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(MassChangeTest, InOtherMainCategoriesAMovedCutIsMovedUnderTheNewNumber)
{
    const auto cCut = Add(L"a", L"Rock/Jazz/Soul", 1);
    Add(L"b", L"Pop", 3);
    Add(L"c", L"Jazz", 3);
    Start();
    EXPECT_TRUE(Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 3), {cCut})) << "Soul 3 was made";
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Jazz", 1), Keys());
    EXPECT_EQ(Order(L"Jazz", 3), (Keys{L"c", L"a"}));
    EXPECT_EQ(Order(L"Soul", 1), Keys());
    EXPECT_EQ(Order(L"Soul", 3), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Pop", 3), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Jazz/Soul/Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz", L"Soul", L"Pop"})) << "each once";
}

TEST_F(MassChangeTest, ExclusivelyMovedCutLeavesEveryOtherLevel)
{
    const auto cCut = Add(L"a", L"Rock/Jazz", 1);
    Add(L"b", L"Pop", 2);
    Add(L"c", L"Soul", 7);
    Start();
    bool bCreated = false;
    Level(L"Soul", 7)->AddCut(cCut, bCreated); // found by where it stands, not by its number
    Change(eMoveExclusiveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Jazz", 1), Keys());
    EXPECT_EQ(Order(L"Soul", 7), (Keys{L"c"}));
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz", L"Soul", L"Pop"}));
}

TEST_F(MassChangeTest, ACutAtItsTargetKeepsItsPosition)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock", 1);
    Start();
    for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere})
    {
        Change(eOption, {Level(L"Rock", 1)}, Level(L"Rock", 1), {cCut});
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    }
    EXPECT_EQ(cCut->CategoryText(), L"Rock") << "the exclusive move took it out of Pop";
    EXPECT_EQ(Order(L"Pop", 1), Keys());
}

TEST_F(MassChangeTest, WithinOneMainCategoryTheLevelChangesAndTheNameStays)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1);
    Add(L"b", L"Rock", 2);
    Start();
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Rock", 2), {cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
}

TEST_F(MassChangeTest, ACutInTwoLevelsOfTheSourceKeepsTheNameWhileItStaysInOne)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"b", L"Rock", 2);
    Add(L"c", L"Pop", 2);
    Start();
    bool bCreated = false;
    Level(L"Rock", 2)->AddCut(cCut, bCreated);
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
}

TEST_F(MassChangeTest, CutOfNoLevelIsPlacedWithASubstituteSource)
{
    const auto cCut = Add(L"a", L"", 5);
    const auto cZero = Add(L"z", L"", 0);
    Add(L"b", L"Pop", 2);
    Start();
    const auto cStandIn = std::make_shared<clsCat>(cLib.cMod, L"", 1);
    Change(eMoveHere, {cStandIn}, Level(L"Pop", 2), {cCut, cZero});
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a", L"z"}));
    EXPECT_EQ(cCut->CatLevel(), 2);
    EXPECT_EQ(cZero->CatLevel(), 2);
    EXPECT_EQ(boxes, Boxes());
}

// ---- cuts in two levels of one category

// A cut in Rock 1 and Rock 2 that leaves Rock 1 stays in Rock by Rock 2, under the number that it gets.
class TwoLevelsTest : public MassChangeTest
{
protected:
    TwoLevelsTest()
    {
        cCut = Add(L"a", L"Rock", 1);
        Add(L"b", L"Rock", 1);
        Add(L"c", L"Rock", 2);
        Add(L"p", L"Pop", 1);
        Start();
        bool bCreated = false;
        Level(L"Rock", 2)->AddCut(cCut, bCreated);
    }
    std::shared_ptr<FakeCut> cCut;
};

TEST_F(TwoLevelsTest, AMoveThatKeepsTheNumberLeavesTheCutLastInTheLevelOfItsNumber)
{
    for (const bool bIntoMain : {false, true})
    {
        SCOPED_TRACE(bIntoMain);
        cCut->SetCategoryText(L"Rock");
        cLib.Populate();
        bool bCreated = false;
        Level(L"Rock", 2)->AddCut(cCut, bCreated);
        Forget();
        Change(eMoveHere, {Level(L"Rock", 1)}, bIntoMain ? MainCat(L"Pop") : Level(L"Pop", 1), {cCut});
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
        EXPECT_EQ(cCut->CatLevel(), 1);
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"a"}));
        EXPECT_EQ(Order(L"Rock", 2), (Keys{L"c"}));
        EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"a"}));
        EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
        EXPECT_EQ(File(L"Rock"), SifCut("b", 1) + SifCut("a", 1) + SifCut("c", 2));
        EXPECT_EQ(File(L"Pop"), SifCut("p", 1) + SifCut("a", 1));
        cLib.Restart();
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"a"}));
        EXPECT_EQ(Order(L"Rock", 2), (Keys{L"c"}));
        EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"a"}));
        EXPECT_EQ(boxes, Boxes());
    }
}

TEST_F(TwoLevelsTest, AMoveThatFailsLeavesTheCutWhereItStood)
{
    const std::string rock = File(L"Rock");
    for (const char* sMember : {"AddCategoryName", "RunTimemS", "Key", "CatLevel", "CategoryText"})
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere})
        {
            SCOPED_TRACE(sMember);
            cCut->failing = {sMember};
            Change(eOption, {Level(L"Rock", 1)}, Level(L"Pop", 1), {cCut});
            cCut->failing.clear();
            EXPECT_EQ(cCut->CategoryText(), L"Rock");
            EXPECT_EQ(cCut->CatLevel(), 1);
            EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
            EXPECT_EQ(Order(L"Rock", 2), (Keys{L"c", L"a"}));
            EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p"}));
            EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
            EXPECT_EQ(boxes.size(), 1u);
            Forget();
        }
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock"));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifCut("b", 1) + SifCut("c", 2) + SifCut("a", 1))
        << "a cut's record holds its own number";
}

// ---- copies of cuts, and names without a level

TEST_F(MassChangeTest, CopyOfACutMeansTheDatabasesOwn)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"p", L"Pop", 2);
    Start();
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut->CloneCut()});
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(cCut->CatLevel(), 2);
    EXPECT_EQ(Level(L"Pop", 2)->SchedCuts()->At(1), cCut);
    Change(eCopyHere, {Level(L"Pop", 2)}, MainCat(L"Rock"), {cCut->CloneCut()});
    EXPECT_EQ(cCut->CategoryText(), L"Pop/Rock");
    EXPECT_EQ(Level(L"Rock", 2)->SchedCuts()->At(0), cCut);
    cLib.Restart();
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"p", L"a"}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
}

TEST_F(MassChangeTest, CutGivenALevelNumberIsPlacedByItsNames)
{
    struct Case
    {
        eCatDragOptions eOption;
        const wchar_t* sNames;
        Keys colRock;
    };
    for (const Case& c : {Case{eMoveExclusiveHere, L"Pop", {}}, Case{eMoveHere, L"Rock/Jazz/Pop", {L"z"}},
                          Case{eCopyHere, L"Rock/Jazz/Pop", {L"z"}}})
    {
        SCOPED_TRACE(static_cast<int>(c.eOption));
        RadioPorts cOther;
        Library cLibrary(cOther);
        const auto cZero = cLibrary.cDataBase->Add(L"z", L"Rock/Jazz", 0);
        cLibrary.cDataBase->Add(L"p", L"Pop", 1);
        cLibrary.Populate();
        cOther.cMessages.Boxes.clear();
        bool bCreated = false;
        cLibrary.cSchedMan->DoMassCatChange(c.eOption, {std::make_shared<clsCat>(cLibrary.cMod, sNoCat, 0)},
                                            cLibrary.Level(L"Pop", 1), {cZero}, bCreated);
        for (const char* sWhen : {"at once", "after a restart"})
        {
            SCOPED_TRACE(sWhen);
            EXPECT_EQ(cZero->CategoryText(), c.sNames);
            EXPECT_EQ(cZero->CatLevel(), 1);
            EXPECT_EQ(cLibrary.Order(L"Pop", 1), (Keys{L"p", L"z"}));
            EXPECT_EQ(cLibrary.Order(L"Rock", 1), c.colRock);
            EXPECT_EQ(cLibrary.Order(L"Jazz", 1), c.colRock);
            cLibrary.Restart();
        }
        EXPECT_EQ(cOther.cMessages.Boxes, Boxes());
    }
}

TEST_F(MassChangeTest, SourcesFromBeforeAReloadAreLeft)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"p", L"Pop", 1);
    Start();
    const auto cOld = Level(L"Rock", 1);
    cLib.Populate();
    Change(eMoveHere, {cOld}, Level(L"Pop", 1), {cCut});
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Order(L"Rock", 1), Keys());
}

TEST_F(MassChangeTest, ALevelMadeForACutThatFailsGoesAgain)
{
    const auto cCut = Add(L"a", L"Rock/Jazz", 4);
    Add(L"p", L"Pop", 1);
    Start();
    for (const auto& cTo : {MainCat(L"Pop"), Level(L"Pop", 1)})
        for (const eCatDragOptions eOption : {eMoveHere, eCopyHere})
            for (const char* sMember : {"AddCategoryName", "RunTimemS"})
            {
                cCut->failing = {sMember};
                EXPECT_FALSE(Change(eOption, {Level(L"Rock", 4)}, cTo, {cCut}));
                cCut->failing.clear();
                EXPECT_EQ(MainCat(L"Pop")->SubCats()->Count(), 1u);
                EXPECT_EQ(MainCat(L"Jazz")->SubCats()->Count(), 1u);
                EXPECT_EQ(cCut->CatLevel(), 4);
                EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
            }
}

// ---- moving into a main category

TEST_F(MassChangeTest, IntoAMainCategoryCutsKeepTheirNumbersAndMissingLevelsAreMade)
{
    const auto cOne = Add(L"a", L"Rock", 1);
    const auto cFour = Add(L"d", L"Rock", 4);
    const auto cZero = Add(L"z", L"", 0);
    Add(L"b", L"Pop", 1);
    Start();
    EXPECT_TRUE(
        Change(eMoveHere, {Level(L"Rock", 1), Level(L"Rock", 4)}, MainCat(L"Pop"), {cOne, cFour, cZero}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b", L"a", L"z"})) << "a cut without a level starts at 1";
    EXPECT_EQ(Order(L"Pop", 4), (Keys{L"d"}));
    EXPECT_EQ(MainCat(L"Rock")->TotalCuts(), 0);
    EXPECT_EQ(cFour->CategoryText(), L"Pop");
    EXPECT_EQ(cZero->CatLevel(), 1);
}

// ---- copying

TEST_F(MassChangeTest, ACopiedCutIsPlacedInTheTargetAsWell)
{
    const auto cCut = Add(L"a", L"Rock", 2);
    Add(L"b", L"Pop", 2);
    Start();
    EXPECT_FALSE(Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Pop", 2), {cCut}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"}));
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(said, Joined({{L"Start 1: Copying into category...", L"Progress 1/1: Copied into Pop 2",
                             L"Done: Category copy complete."},
                            SaveSaid(L"Pop", 2)}));
    EXPECT_EQ(Written(), (Lines{L"Pop"}));
    Forget();
    Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"})) << "it is there already";
    EXPECT_EQ(Written(), Lines());
}

TEST_F(MassChangeTest, CopiesIntoAMainCategoryKeepTheirNumbers)
{
    const auto cTwo = Add(L"a", L"Rock", 2);
    const auto cZero = Add(L"z", L"", 0);
    const auto cNegative = Add(L"n", L"", -3);
    Add(L"b", L"Pop", 1);
    Start();
    EXPECT_TRUE(Change(eCopyHere, {Level(L"Rock", 2)}, MainCat(L"Pop"), {cTwo, cZero, cNegative}));
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b", L"z", L"n"}));
    EXPECT_EQ(cZero->CatLevel(), 1);
    EXPECT_EQ(boxes, Boxes());
}

const ShownBox refusal =
    OkBox(BoxIcon::Information, L"Multiple Category Levels Not Allowed!",
          L"Items can only be in one category level,even though they may be in multiple categories.\r\n\r\n"
          L"Copying the items to this level is therefore not permitted.\r\n\r\n"
          L"You DO have the option to move the items to this level,\r\n"
          L"in which case this will change the level for EVERY category the items are in.");

TEST_F(MassChangeTest, ACutIsNotCopiedIntoALevelOfAnotherNumber)
{
    const auto cOne = Add(L"one", L"Rock", 1);
    const auto cTwo = Add(L"two", L"Rock", 2);
    const auto cTwoToo = Add(L"two too", L"Rock", 2);
    Add(L"p", L"Pop", 1);
    Start();
    const std::string rock = File(L"Rock");
    Change(eCopyHere, {Level(L"Rock", 1), Level(L"Rock", 2)}, Level(L"Pop", 1), {cTwo, cOne, cTwoToo});
    EXPECT_EQ(boxes, (Boxes{refusal})) << "each for itself, told once";
    EXPECT_EQ(said, Joined({{L"Start 1: Copying into category...", L"Progress 1/1: Copied into Pop 1",
                             L"Done: Category copy complete."},
                            SaveSaid(L"Pop", 2)}));
    EXPECT_EQ(cTwo->CategoryText(), L"Rock");
    EXPECT_EQ(cTwo->CatLevel(), 2);
    EXPECT_EQ(cOne->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(File(L"Rock"), rock);
    EXPECT_EQ(File(L"Pop"), SifCut("p", 1) + SifCut("one", 1));
    cLib.Restart();
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"one"}));
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"two", L"two too"}));
}

TEST_F(MassChangeTest, WhenEveryCopyIsRefusedOnlyTheRefusalIsSaid)
{
    const auto cTwo = Add(L"two", L"Rock", 2);
    Add(L"one", L"Rock", 1);
    Start();
    EXPECT_FALSE(Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Rock", 1), {cTwo}));
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"one"}));
}

TEST_F(MassChangeTest, ACutWithoutALevelIsCopiedIntoTheFirst)
{
    const Cuts colCuts{Add(L"zero", L"", 0), Add(L"negative", L"", -3)};
    Add(L"p", L"Pop", 1);
    Add(L"q", L"Pop", 2);
    Start();
    const Cats colFrom{std::make_shared<clsCat>(cLib.cMod, sNoCat, 0)};
    Change(eCopyHere, colFrom, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(colCuts[0]->CatLevel(), 0);
    Forget();
    Change(eCopyHere, colFrom, Level(L"Pop", 1), colCuts);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"zero", L"negative"}));
}

TEST_F(MassChangeTest, ANumberChangedWhileOthersRunIsRefusedToo)
{
    const Cuts colCuts = AddMany(101, L"k", L"Rock", 1);
    Add(L"p", L"Pop", 1);
    Start();
    cPorts.cHostLoop.OnPump = [&] { colCuts[100]->SetCatLevel(5); };
    Change(eCopyHere, {Level(L"Rock", 1)}, Level(L"Pop", 1), colCuts);
    EXPECT_EQ(Order(L"Pop", 1).size(), 101u);
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(colCuts[100]->CategoryText(), L"Rock");
}

// ---- progress

TEST_F(MassChangeTest, AMoveReportsEveryFiftiethCutAndPumps)
{
    const Cuts colCuts = AddMany(101, L"k", L"", 1);
    Add(L"b", L"Pop", 2);
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Change(eMoveHere, {std::make_shared<clsCat>(cLib.cMod, L"", 1)}, Level(L"Pop", 2), colCuts);
    colTrace.resize(6);
    EXPECT_EQ(colTrace, (Lines{L"Start 101: Applying Mass Move Change...",
                               L"Progress 50/101: Applying Mass Move Change 50 of 101", L"pump",
                               L"Progress 100/101: Applying Mass Move Change 100 of 101", L"pump",
                               L"Done: Applied Mass Move."}));
}

TEST_F(MassChangeTest, ACopyPausesAndReportsEveryHundredthCut)
{
    const Cuts colCuts = AddMany(201, L"k", L"Rock", 1);
    Add(L"x", L"Rock", 2);
    Add(L"b", L"Pop", 1);
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Change(eCopyHere, {Level(L"Rock", 1), Level(L"Rock", 2)}, Level(L"Pop", 1), colCuts);
    colTrace.resize(9);
    EXPECT_EQ(colTrace,
              (Lines{L"Start 201: Copying into category...", L"sleep 50",
                     L"Progress 100/201: Copying into Pop 1 from Rock 1, Rock 2", L"pump", L"sleep 50",
                     L"Progress 200/201: Copying into Pop 1 from Rock 1, Rock 2", L"pump",
                     L"Progress 201/201: Copied into Pop 1", L"Done: Category copy complete."}));
}

TEST_F(MassChangeTest, AStandInForTheSourceIsNamed)
{
    const Cuts colCuts = AddMany(100, L"k", L"", 1);
    Add(L"b", L"Pop", 1);
    Start();
    Change(eCopyHere, {std::make_shared<clsCat>(cLib.cMod, sNoCat, 0)}, Level(L"Pop", 1), colCuts);
    EXPECT_EQ(said[1], L"Progress 100/100: Copying into Pop 1 from NOCAT");
}

TEST_F(MassChangeTest, EachAffectedCategoryIsWrittenOnceHoweverManyCutsAreMoved)
{
    const Cuts colCuts = AddMany(150, L"k", L"Rock/Jazz/Soul", 1);
    Add(L"b", L"Pop", 2);
    Add(L"far", L"Untouched", 1);
    Start();
    Change(eMoveExclusiveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz", L"Soul", L"Pop"}));
    EXPECT_EQ(Order(L"Pop", 2).size(), 151u);
}

// ---- what fails

TEST_F(MassChangeTest, CutWhoseChangeFailsKeepsItsPlaceAndOthersMove)
{
    for (const char* sMember : {"Key", "CatLevel", "SetCatLevel", "AddCategoryName", "RemoveCategoryName",
                                "RunTimemS", "CategoryText"})
    {
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere})
        {
            SCOPED_TRACE(sMember);
            RadioPorts cOther;
            Library cLibrary(cOther);
            const auto cBad = cLibrary.cDataBase->Add(L"bad", L"Rock/Jazz", 1);
            const auto cGood = cLibrary.cDataBase->Add(L"good", L"Rock/Jazz", 1);
            cLibrary.cDataBase->Add(L"p", L"Pop", 2);
            cLibrary.Populate();
            cBad->failing = {sMember};
            bool bCreated = false;
            cLibrary.cSchedMan->DoMassCatChange(eOption, {cLibrary.Level(L"Rock", 1)},
                                                cLibrary.Level(L"Pop", 2), {cBad, cGood}, bCreated);
            cBad->failing.clear();
            EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"bad"}));
            EXPECT_EQ(cLibrary.Order(L"Jazz", 1), (Keys{L"bad"}));
            EXPECT_EQ(cLibrary.Order(L"Pop", 2), (Keys{L"p", L"good"}));
            EXPECT_EQ(cBad->CategoryText(), L"Rock/Jazz");
            EXPECT_EQ(cBad->CatLevel(), 1);
            EXPECT_EQ(cLibrary.Level(L"Pop", 2)->AverageRunTimemS(), 180'000);
            ASSERT_FALSE(cOther.cMessages.Boxes.empty());
            EXPECT_EQ(cOther.cMessages.Boxes.back(),
                      CriticalBox(L"Error in DoMassCatChange [cSchedMan]",
                                  CriticalText(91) + L" (1 cuts could not be handled)"));
            cLibrary.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cBad, cGood});
            EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"bad"})) << "tree and database agree";
        }
    }
}

TEST_F(MassChangeTest, ACutThatCannotBeCopiedIsNotPlacedAndReportedOnce)
{
    for (const char* sMember : {"Key", "CatLevel", "AddCategoryName", "RunTimemS"})
    {
        SCOPED_TRACE(sMember);
        RadioPorts cOther;
        Library cLibrary(cOther);
        const auto cBad = cLibrary.cDataBase->Add(L"bad", L"Rock", 2);
        const auto cBadToo = cLibrary.cDataBase->Add(L"bad too", L"Rock", 2);
        const auto cGood = cLibrary.cDataBase->Add(L"good", L"Rock", 2);
        cLibrary.cDataBase->Add(L"p", L"Pop", 2);
        cLibrary.Populate();
        cBad->failing = cBadToo->failing = {sMember};
        bool bCreated = false;
        cLibrary.cSchedMan->DoMassCatChange(eCopyHere, {cLibrary.Level(L"Rock", 2)},
                                            cLibrary.Level(L"Pop", 2), {cBad, cBadToo, cGood}, bCreated);
        EXPECT_EQ(cOther.cMessages.Boxes.front(),
                  CriticalBox(L"Error in DoMassCatChange [cSchedMan]",
                              CriticalText(91) + L" (2 cuts could not be handled)"));
        cBad->failing.clear();
        cBadToo->failing.clear();
        EXPECT_EQ(cLibrary.Order(L"Pop", 2), (Keys{L"p", L"good"}));
        EXPECT_EQ(cBad->CategoryText(), L"Rock");
    }
}

TEST_F(MassChangeTest, RunTimesOutOfRangeAreReportedOnceAfterTheMove)
{
    const Cuts colCuts{Add(L"a", L"Rock", 1, lLongest), Add(L"b", L"Rock", 1, lLongest),
                       Add(L"c", L"Rock", 1, lLongest)};
    Add(L"p", L"Pop", 2);
    Start();
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"p", L"a", L"b", L"c"}));
    EXPECT_EQ(boxes, (Boxes{ErrorBox(CriticalText(6) + L": run times in category Pop")}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(MassChangeTest, ASaveThatFailsIsShownOncePerCategoryAndTheOthersAreWritten)
{
    const auto cCut = Add(L"a", L"Rock/Jazz", 1);
    Add(L"b", L"Pop", 2);
    Start();
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                        CriticalText(75) + L": Rock")}));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1)) << "the old file is whole";
    EXPECT_EQ(File(L"Pop"), SifCut("b", 2) + SifCut("a", 2));
    EXPECT_EQ(File(L"Jazz"), SifMarker(1) + SifCut("a", 2));
}

TEST_F(MassChangeTest, TargetDeletedInTheMiddleEndsItAndTheRestStays)
{
    const Cuts colCuts = AddMany(80, L"k", L"Rock", 1);
    Add(L"b", L"Pop", 2);
    Start();
    bool bDone = false;
    cPorts.cHostLoop.OnPump = [&] {
        if (!std::exchange(bDone, true))
        {
            EXPECT_EQ(Order(L"Pop", 2).size(), 51u);
            cLib.cSchedMan->DeleteCats({MainCat(L"Pop")});
        }
    };
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(Order(L"Rock", 1).size(), 30u);
    EXPECT_FALSE(MainCat(L"Pop"));
    EXPECT_EQ(File(L"Pop"), "none") << "it is not brought back";
    EXPECT_EQ(colCuts[0]->CategoryText(), L"");
    EXPECT_EQ(colCuts[60]->CategoryText(), L"Rock");
    EXPECT_EQ(boxes,
              (Boxes{CriticalBox(L"Error in DoMassCatChange [cSchedMan]",
                                 L"5 The category to change into does not exist any more (30 cuts were "
                                 L"left as they are)")}));
    EXPECT_EQ(Written().back(), L"Rock") << "what was changed is saved all the same";
}

TEST_F(MassChangeTest, ATargetReloadedInTheMiddleOfACopyIsReportedOnceAtTheEnd)
{
    const Cuts colCuts = AddMany(120, L"k", L"Rock", 1);
    Add(L"b", L"Pop", 2);
    Start();
    cPorts.cHostLoop.OnPump = [&] {
        cPorts.cHostLoop.OnPump = nullptr;
        cLib.Populate();
    };
    cLib.cHost.OnEvent = [&](const std::wstring&) { EXPECT_EQ(boxes, Boxes()); };
    Change(eCopyHere, {Level(L"Rock", 1)}, MainCat(L"Pop"), colCuts);
    EXPECT_EQ(Order(L"Pop", 1).size(), 100u);
    EXPECT_EQ(boxes,
              (Boxes{CriticalBox(L"Error in DoMassCatChange [cSchedMan]",
                                 L"5 The category to change into does not exist any more (20 cuts were "
                                 L"left as they are)")}));
}

} // namespace
} // namespace ravlo::test

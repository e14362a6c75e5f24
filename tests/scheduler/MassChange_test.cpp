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
    // A category that no tree contains.
    std::shared_ptr<clsCat> NewCat(const std::wstring& sName, std::int32_t lLevel)
    {
        return std::make_shared<clsCat>(cLib.cMod, sName, lLevel);
    }
    static ShownBox ErrorBox(const std::wstring& sText)
    {
        return CriticalBox(L"Error in DoMassCatChange [cSchedMan]", sText);
    }
    static ShownBox FailedBox(int lCuts)
    {
        return ErrorBox(CriticalText(91) + L" (" + std::to_wstring(lCuts) + L" cuts could not be handled)");
    }
};

const Lines colMoveSaid{L"Start 1: Applying Mass Move Change...", L"Done: Applied Mass Move."};
Lines CopySaid(const std::wstring& sTo)
{
    return {L"Start 1: Copying into category...", L"Progress 1/1: Copied into " + sTo,
            L"Done: Category copy complete."};
}
const std::wstring sTargetGone = L"5 The category to change into does not exist any more";

// ---- what does nothing

TEST_F(MassChangeTest, WithoutOptionSourceTargetOrCutsNothingHappens)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: b");
    const Cats colFrom{Level(L"Rock", 1)};
    const auto cPop = Level(L"Pop", 1);
    for (const int lOption : {static_cast<int>(eCancel), 4, -1})
        Change(static_cast<eCatDragOptions>(lOption), colFrom, cPop, {cCut});
    for (const eCatDragOptions eOption : {eCopyHere, eMoveHere, eMoveExclusiveHere})
    {
        Change(eOption, {}, cPop, {cCut});
        Change(eOption, colFrom, nullptr, {cCut});
        for (const Cuts& colNothing : {Cuts{}, Cuts{nullptr}, Cuts{nullptr, nullptr}})
            for (const auto& cTo : {cPop, MainCat(L"Pop"), NewCat(L"Gone", 1)})
                EXPECT_FALSE(Change(eOption, colFrom, cTo, colNothing));
    }
    EXPECT_EQ(Tree(), L"Rock 1: a | Pop 1: b");
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines());
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 0);
}

TEST_F(MassChangeTest, WithoutCutsAPopulationHasNothingToRefuse)
{
    Start(L"Rock 1: a");
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Rock", 1), {});
    };
    cLib.Populate();
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(MassChangeTest, TargetThatTheTreeDoesNotContainIsRefused)
{
    const auto cCut = Start(L"Rock 1: a | Pop 1: b");
    const auto cDead = Level(L"Pop", 1);
    cLib.cSchedMan->DeleteCats({cDead});
    for (const auto& cTo : {cDead, NewCat(L"Pop", 1), NewCat(L"Jazz", 0), NewCat(L"Jazz", 1)})
    {
        Forget();
        Change(eMoveHere, {Level(L"Rock", 1)}, cTo, {cCut});
        EXPECT_EQ(boxes, (Boxes{ErrorBox(sTargetGone)}));
        EXPECT_EQ(said, Lines());
    }
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(MassChangeTest, SourceAndTargetFromBeforeAReloadAreFoundByNameAndNumber)
{
    for (const bool bMain : {false, true})
    {
        SCOPED_TRACE(bMain);
        const auto cCut = Start(L"Rock 1: a | Pop 1: b");
        const std::shared_ptr<clsCat> cTo = bMain ? MainCat(L"Pop") : Level(L"Pop", 1);
        const std::shared_ptr<clsCat> cFrom = Level(L"Rock", 1);
        cLib.Populate();
        Change(eMoveHere, {cFrom}, cTo, {cCut});
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: b a");
        cLib.Restart();
        EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b", L"a"}));
    }
}

// ---- moving into a level

TEST_F(MassChangeTest, MovedCutLeavesItsSourceAndTakesTheTargetsNumberAndName)
{
    const auto cCut = Add(L"a", L"Rock", 1, 100'000);
    Add(L"b", L"Pop", 2, 50'000);
    Start();
    EXPECT_FALSE(Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut})) << "no level was made";
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 2: b a");
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

TEST_F(MassChangeTest, MoveTakesTheCutOutOfItsSourceAndKeepsTheRest)
{
    const auto Expect = [&](eCatDragOptions eOption, const std::wstring& sBefore, const std::wstring& sTo,
                            std::int32_t lTo, const std::wstring& sAfter, const std::wstring& sNames) {
        const auto cCut = Start(sBefore);
        const bool bMade = sAfter.find(L"Soul 3") != std::wstring::npos;
        EXPECT_EQ(Change(eOption, {Level(L"Rock", 1)}, Level(sTo, lTo), {cCut}), bMade);
        EXPECT_EQ(Tree(), sAfter);
        EXPECT_EQ(cCut->CategoryText(), sNames);
    };
    // Other main categories follow under the new number.
    Expect(eMoveHere, L"Rock 1: a | Jazz 1: a | Soul 1: a | Pop 3: b | Jazz 3: c", L"Pop", 3,
           L"Rock 1: | Jazz 1: | Jazz 3: c a | Soul 1: | Soul 3: a | Pop 3: b a", L"Jazz/Soul/Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz", L"Soul", L"Pop"}));
    Expect(eMoveHere, L"Rock 1: a | Soul 1: a | Rock 3: b", L"Rock", 3,
           L"Rock 1: | Rock 3: b a | Soul 1: | Soul 3: a", L"Rock/Soul");
    // A cut at its target keeps its position; an exclusive move takes it out of the others.
    Expect(eMoveHere, L"Rock 1: a b | Pop 1: a", L"Rock", 1, L"Rock 1: a b | Pop 1: a", L"Rock/Pop");
    Expect(eMoveExclusiveHere, L"Rock 1: a b | Pop 1: a", L"Rock", 1, L"Rock 1: a b | Pop 1:", L"Rock");
}

TEST_F(MassChangeTest, ExclusivelyMovedCutLeavesEveryOtherLevel)
{
    const auto cCut = Start(L"Rock 1: a | Jazz 1: a | Pop 2: b | Soul 7: c");
    PlaceToo(cCut, L"Soul", 7); // found by its place in the tree, not by its number
    Change(eMoveExclusiveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Tree(), L"Rock 1: | Jazz 1: | Pop 2: b a | Soul 7: c");
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz", L"Soul", L"Pop"}));
}

TEST_F(MassChangeTest, CutInTwoLevelsOfTheSourceKeepsTheNameWhileItStaysInOne)
{
    const auto cCut = Start(L"Rock 1: a | Rock 2: b | Pop 2: c");
    PlaceToo(cCut, L"Rock", 2);
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Tree(), L"Rock 1: | Rock 2: b a | Pop 2: c a");
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
}

TEST_F(MassChangeTest, CutOfNoLevelIsPlacedWithASubstituteSource)
{
    const Cuts colCuts{Add(L"a", L"", 5), Add(L"z", L"", 0)};
    Add(L"b", L"Pop", 2);
    Start();
    Change(eMoveHere, {NewCat(L"", 1)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(Tree(), L"Pop 2: b a z");
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        EXPECT_EQ(cCut->CatLevel(), 2);
    EXPECT_EQ(boxes, Boxes());
}

// ---- cuts in two levels of one category

// A cut in Rock 1 and Rock 2 that leaves Rock 1 stays in Rock by Rock 2, under the number that it gets.
class TwoLevelsTest : public MassChangeTest
{
protected:
    void StartInTwoLevels()
    {
        cCut = Start(L"Rock 1: a b | Rock 2: c | Pop 1: p");
        PlaceToo(cCut, L"Rock", 2);
    }
    std::shared_ptr<FakeCut> cCut;
};

TEST_F(TwoLevelsTest, MoveThatKeepsTheNumberLeavesTheCutLastInItsLevel)
{
    for (const bool bIntoMain : {false, true})
    {
        SCOPED_TRACE(bIntoMain);
        StartInTwoLevels();
        Change(eMoveHere, {Level(L"Rock", 1)}, bIntoMain ? MainCat(L"Pop") : Level(L"Pop", 1), {cCut});
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
        EXPECT_EQ(cCut->CatLevel(), 1);
        EXPECT_EQ(Tree(), L"Rock 1: b a | Rock 2: c | Pop 1: p a");
        EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
        EXPECT_EQ(File(L"Rock"), SifCut("b", 1) + SifCut("a", 1) + SifCut("c", 2));
        EXPECT_EQ(File(L"Pop"), SifCut("p", 1) + SifCut("a", 1));
        cLib.Restart();
        EXPECT_EQ(Tree(), L"Rock 1: b a | Rock 2: c | Pop 1: p a");
        EXPECT_EQ(boxes, Boxes());
    }
}

TEST_F(TwoLevelsTest, MoveThatFailsLeavesTheCutWhereItWas)
{
    StartInTwoLevels();
    for (const char* sMember : {"AddCategoryName", "RunTimemS", "Key", "CatLevel", "CategoryText"})
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere})
        {
            SCOPED_TRACE(sMember);
            cCut->failing = {sMember};
            Change(eOption, {Level(L"Rock", 1)}, Level(L"Pop", 1), {cCut});
            cCut->failing.clear();
            EXPECT_EQ(cCut->CategoryText(), L"Rock");
            EXPECT_EQ(cCut->CatLevel(), 1);
            EXPECT_EQ(Tree(), L"Rock 1: a b | Rock 2: c a | Pop 1: p");
            EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
            EXPECT_EQ(boxes.size(), 1u);
            Forget();
        }
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock"));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1) + SifCut("b", 1) + SifCut("c", 2) + SifCut("a", 1))
        << "a cut's record has its own number";
}

// ---- copies of cuts, and names without a level

TEST_F(MassChangeTest, CopyOfACutMeansTheDatabasesOwn)
{
    const auto cCut = Start(L"Rock 1: a | Pop 2: p");
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut->CloneCut()});
    EXPECT_EQ(cCut->CategoryText(), L"Pop");
    EXPECT_EQ(cCut->CatLevel(), 2);
    EXPECT_EQ(Level(L"Pop", 2)->SchedCuts()->At(1), cCut);
    Change(eCopyHere, {Level(L"Pop", 2)}, MainCat(L"Rock"), {cCut->CloneCut()});
    EXPECT_EQ(cCut->CategoryText(), L"Pop/Rock");
    EXPECT_EQ(Level(L"Rock", 2)->SchedCuts()->At(0), cCut);
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Pop 2: p a | Rock 1: | Rock 2: a");
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
        const auto cZero = Start(L"Rock 0: z | Jazz 0: z | Pop 1: p");
        Change(c.eOption, {NewCat(sNoCat, 0)}, Level(L"Pop", 1), {cZero});
        for (const char* sWhen : {"at once", "after a restart"})
        {
            SCOPED_TRACE(sWhen);
            EXPECT_EQ(cZero->CategoryText(), c.sNames);
            EXPECT_EQ(cZero->CatLevel(), 1);
            EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"z"}));
            EXPECT_EQ(Order(L"Rock", 1), c.colRock);
            EXPECT_EQ(Order(L"Jazz", 1), c.colRock);
            cLib.Restart();
        }
        EXPECT_EQ(boxes, Boxes());
    }
}

TEST_F(MassChangeTest, LevelMadeForACutThatFailsIsRemoved)
{
    const auto cCut = Start(L"Rock 4: a | Jazz 4: a | Pop 1: p");
    for (const auto& cTo : {MainCat(L"Pop"), Level(L"Pop", 1)})
        for (const eCatDragOptions eOption : {eMoveHere, eCopyHere})
            for (const char* sMember : {"AddCategoryName", "RunTimemS"})
            {
                cCut->failing = {sMember};
                EXPECT_FALSE(Change(eOption, {Level(L"Rock", 4)}, cTo, {cCut}));
                cCut->failing.clear();
                EXPECT_EQ(Tree(), L"Rock 4: a | Jazz 4: a | Pop 1: p");
                EXPECT_EQ(cCut->CatLevel(), 4);
                EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
            }
}

// ---- moving and copying into a main category

TEST_F(MassChangeTest, IntoAMainCategoryCutsKeepTheirNumbersAndMissingLevelsAreMade)
{
    for (const bool bMove : {true, false})
    {
        SCOPED_TRACE(bMove);
        Start(L"Rock 1: a | Rock 4: d | Pop 1: b");
        const Cuts colCuts{CutOf(L"a"), CutOf(L"d"), Add(L"z", L"", 0), Add(L"n", L"", -3)};
        EXPECT_TRUE(Change(bMove ? eMoveHere : eCopyHere, {Level(L"Rock", 1), Level(L"Rock", 4)},
                           MainCat(L"Pop"), colCuts));
        EXPECT_EQ(Order(L"Pop", 1), (Keys{L"b", L"a", L"z", L"n"})) << "a cut without a level starts at 1";
        EXPECT_EQ(Order(L"Pop", 4), (Keys{L"d"}));
        EXPECT_EQ(MainCat(L"Rock")->TotalCuts(), bMove ? 0 : 2);
        EXPECT_EQ(CutOf(L"d")->CategoryText(), bMove ? L"Pop" : L"Rock/Pop");
        EXPECT_EQ(CutOf(L"z")->CatLevel(), 1);
        EXPECT_EQ(boxes, Boxes());
    }
}

// ---- copying

TEST_F(MassChangeTest, CopiedCutIsPlacedInTheTargetAsWell)
{
    const auto cCut = Start(L"Rock 2: a | Pop 2: b");
    EXPECT_FALSE(Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Pop", 2), {cCut}));
    EXPECT_EQ(Tree(), L"Rock 2: a | Pop 2: b a");
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(said, Joined({CopySaid(L"Pop 2"), SaveSaid(L"Pop", 2)}));
    EXPECT_EQ(Written(), (Lines{L"Pop"}));
    Forget();
    Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"b", L"a"})) << "it is there already";
    EXPECT_EQ(Written(), Lines());
}

const ShownBox refusal =
    OkBox(BoxIcon::Information, L"Multiple Category Levels Not Allowed!",
          L"Items can only be in one category level,even though they may be in multiple categories.\r\n\r\n"
          L"Copying the items to this level is therefore not permitted.\r\n\r\n"
          L"You DO have the option to move the items to this level,\r\n"
          L"in which case this will change the level for EVERY category the items are in.");

TEST_F(MassChangeTest, CutIsNotCopiedIntoALevelOfAnotherNumber)
{
    Start(L"Rock 1: one | Rock 2: two three | Pop 1: p");
    const std::string rock = File(L"Rock");
    Change(eCopyHere, {Level(L"Rock", 1), Level(L"Rock", 2)}, Level(L"Pop", 1),
           {CutOf(L"two"), CutOf(L"one"), CutOf(L"three")});
    EXPECT_EQ(boxes, (Boxes{refusal})) << "each for itself, shown once";
    EXPECT_EQ(said, Joined({CopySaid(L"Pop 1"), SaveSaid(L"Pop", 2)}));
    EXPECT_EQ(CutOf(L"two")->CategoryText(), L"Rock");
    EXPECT_EQ(CutOf(L"two")->CatLevel(), 2);
    EXPECT_EQ(CutOf(L"one")->CategoryText(), L"Rock/Pop");
    EXPECT_EQ(File(L"Rock"), rock);
    EXPECT_EQ(File(L"Pop"), SifCut("p", 1) + SifCut("one", 1));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 1: one | Rock 2: two three | Pop 1: p one");
}

TEST_F(MassChangeTest, WhenEveryCopyIsRefusedOnlyTheRefusalIsSaid)
{
    const auto cTwo = Start(L"Rock 2: two | Rock 1: one");
    EXPECT_FALSE(Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Rock", 1), {cTwo}));
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Tree(), L"Rock 1: one | Rock 2: two");
}

TEST_F(MassChangeTest, CutWithoutALevelIsCopiedIntoTheFirst)
{
    const Cuts colCuts{Add(L"zero", L"", 0), Add(L"negative", L"", -3)};
    cLib.cDataBase->AddTree(L"Pop 1: p | Pop 2: q");
    Start();
    Change(eCopyHere, {NewCat(sNoCat, 0)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(colCuts[0]->CatLevel(), 0);
    Forget();
    Change(eCopyHere, {NewCat(sNoCat, 0)}, Level(L"Pop", 1), colCuts);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Tree(), L"Pop 1: p zero negative | Pop 2: q");
}

TEST_F(MassChangeTest, NumberChangedWhileOthersRunIsRefusedToo)
{
    const Cuts colCuts = AddMany(101, L"k", L"Rock");
    Add(L"p", L"Pop");
    Start();
    cPorts.cHostLoop.OnPump = [&] { colCuts[100]->SetCatLevel(5); };
    Change(eCopyHere, {Level(L"Rock", 1)}, Level(L"Pop", 1), colCuts);
    EXPECT_EQ(Order(L"Pop", 1).size(), 101u);
    EXPECT_EQ(boxes, (Boxes{refusal}));
    EXPECT_EQ(colCuts[100]->CategoryText(), L"Rock");
}

// ---- progress

TEST_F(MassChangeTest, MoveReportsEvery50thCutAndPumps)
{
    const Cuts colCuts = AddMany(101, L"k", L"");
    Add(L"b", L"Pop", 2);
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Change(eMoveHere, {NewCat(L"", 1)}, Level(L"Pop", 2), colCuts);
    colTrace.resize(6);
    EXPECT_EQ(colTrace, (Lines{L"Start 101: Applying Mass Move Change...",
                               L"Progress 50/101: Applying Mass Move Change 50 of 101", L"pump",
                               L"Progress 100/101: Applying Mass Move Change 100 of 101", L"pump",
                               L"Done: Applied Mass Move."}));
}

TEST_F(MassChangeTest, CopyPausesAndReportsEvery100thCutWithItsSources)
{
    const Cuts colCuts = AddMany(201, L"k", L"Rock");
    cLib.cDataBase->AddTree(L"Rock 2: x | Pop 1: b");
    Start();
    Lines colTrace;
    TraceAll(colTrace);
    Change(eCopyHere, {Level(L"Rock", 1), NewCat(sNoCat, 0), Level(L"Rock", 2)}, Level(L"Pop", 1), colCuts);
    colTrace.resize(9);
    EXPECT_EQ(colTrace,
              (Lines{L"Start 201: Copying into category...", L"sleep 50",
                     L"Progress 100/201: Copying into Pop 1 from Rock 1, NOCAT, Rock 2", L"pump", L"sleep 50",
                     L"Progress 200/201: Copying into Pop 1 from Rock 1, NOCAT, Rock 2", L"pump",
                     L"Progress 201/201: Copied into Pop 1", L"Done: Category copy complete."}));
}

// ---- what fails

TEST_F(MassChangeTest, CutWhoseMoveFailsKeepsItsPlaceAndOthersMove)
{
    for (const char* sMember : {"Key", "CatLevel", "SetCatLevel", "AddCategoryName", "RemoveCategoryName",
                                "RunTimemS", "CategoryText"})
        for (const eCatDragOptions eOption : {eMoveHere, eMoveExclusiveHere})
        {
            SCOPED_TRACE(sMember);
            const auto cBad = Start(L"Rock 1: bad good | Jazz 1: bad good | Pop 2: p");
            const auto cGood = CutOf(L"good");
            cBad->failing = {sMember};
            Change(eOption, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cBad, cGood});
            cBad->failing.clear();
            EXPECT_EQ(Order(L"Rock", 1), (Keys{L"bad"}));
            EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"bad"}));
            EXPECT_EQ(Order(L"Pop", 2), (Keys{L"p", L"good"}));
            EXPECT_EQ(cBad->CategoryText(), L"Rock/Jazz");
            EXPECT_EQ(cBad->CatLevel(), 1);
            EXPECT_EQ(TotalOf(L"Pop", 2), 360'000);
            ASSERT_FALSE(boxes.empty());
            EXPECT_EQ(boxes.back(), FailedBox(1));
            Modified({cBad, cGood});
            EXPECT_EQ(Order(L"Rock", 1), (Keys{L"bad"})) << "tree and database agree";
        }
}

TEST_F(MassChangeTest, CutsThatCannotBeCopiedAreNotPlacedAndReportedOnce)
{
    for (const char* sMember : {"Key", "CatLevel", "AddCategoryName", "RunTimemS"})
    {
        SCOPED_TRACE(sMember);
        const auto cBad = Start(L"Rock 2: bad bad2 good | Pop 2: p");
        const auto cBadToo = CutOf(L"bad2");
        cBad->failing = cBadToo->failing = {sMember};
        Change(eCopyHere, {Level(L"Rock", 2)}, Level(L"Pop", 2), {cBad, cBadToo, CutOf(L"good")});
        EXPECT_EQ(boxes.at(0), FailedBox(2));
        cBad->failing.clear();
        cBadToo->failing.clear();
        EXPECT_EQ(Order(L"Pop", 2), (Keys{L"p", L"good"}));
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
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 2: p a b c");
    EXPECT_EQ(boxes, (Boxes{ErrorBox(CriticalText(6) + L": run times in category Pop")}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
}

TEST_F(MassChangeTest, SaveThatFailsIsShownAndTheOthersAreWritten)
{
    const auto cCut = Start(L"Rock 1: a | Jazz 1: a | Pop 2: b");
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), {cCut});
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                        CriticalText(75) + L": Rock")}));
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1)) << "the old file is whole";
    EXPECT_EQ(File(L"Pop"), SifCut("b", 2) + SifCut("a", 2));
    EXPECT_EQ(File(L"Jazz"), SifMarker(1) + SifCut("a", 2));
}

TEST_F(MassChangeTest, TargetDeletedDuringAMoveEndsItAndTheRestStays)
{
    const Cuts colCuts = AddMany(80, L"k", L"Rock");
    Add(L"b", L"Pop", 2);
    Start();
    Once(cPorts.cHostLoop.OnPump, [&] {
        EXPECT_EQ(Order(L"Pop", 2).size(), 51u);
        cLib.cSchedMan->DeleteCats({MainCat(L"Pop")});
    });
    Change(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), colCuts);
    EXPECT_EQ(Order(L"Rock", 1).size(), 30u);
    EXPECT_FALSE(MainCat(L"Pop"));
    EXPECT_EQ(File(L"Pop"), "none") << "it is not brought back";
    EXPECT_EQ(colCuts[0]->CategoryText(), L"");
    EXPECT_EQ(colCuts[60]->CategoryText(), L"Rock");
    EXPECT_EQ(boxes, (Boxes{ErrorBox(sTargetGone + L" (30 cuts were left as they are)")}));
    EXPECT_EQ(Written().back(), L"Rock") << "what was changed is saved all the same";
}

TEST_F(MassChangeTest, TargetReloadedDuringACopyIsReportedOnceAtTheEnd)
{
    const Cuts colCuts = AddMany(120, L"k", L"Rock");
    Add(L"b", L"Pop", 2);
    Start();
    Once(cPorts.cHostLoop.OnPump, [&] { cLib.Populate(); });
    cLib.cHost.OnEvent = [&](const std::wstring&) { EXPECT_EQ(boxes, Boxes()); };
    Change(eCopyHere, {Level(L"Rock", 1)}, MainCat(L"Pop"), colCuts);
    EXPECT_EQ(Order(L"Pop", 1).size(), 100u);
    EXPECT_EQ(boxes, (Boxes{ErrorBox(sTargetGone + L" (20 cuts were left as they are)")}));
}

} // namespace
} // namespace ravlo::test

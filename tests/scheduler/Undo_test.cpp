// SPDX-License-Identifier: MIT
#include "scheduler/UndoTest.h"

namespace ravlo::test
{
namespace
{

// ---- each unit of work

class UndoWorkTest : public UndoTest, public testing::WithParamInterface<std::size_t>
{
};

TEST_P(UndoWorkTest, IsTakenBackAndDoneAgain)
{
    const auto& [sKind, work] = UndoKinds()[GetParam()];
    const std::wstring sWhat = sKind;
    const std::wstring sBefore = State();
    const Lines colBefore = Levels();
    EXPECT_EQ(Man().UndoText(), L"");
    work(desk);
    const std::wstring sAfter = State();
    EXPECT_NE(sAfter, sBefore);
    for (int lTimes = 0; lTimes < 2; ++lTimes)
    {
        ASSERT_TRUE(Man().CanUndo());
        EXPECT_FALSE(Man().CanRedo());
        EXPECT_EQ(Man().UndoText(), L"Undo " + sWhat);
        EXPECT_EQ(Man().Undo(), L"Undone: " + sWhat);
        EXPECT_EQ(State(), sBefore);
        EXPECT_FALSE(Man().CanUndo());
        EXPECT_EQ(Man().RedoText(), L"Redo " + sWhat);
        EXPECT_EQ(Man().Redo(), L"Redone: " + sWhat);
        EXPECT_EQ(State(), sAfter);
    }
    const Lines colAfter = Levels();
    cLib.Restart();
    EXPECT_EQ(Man().Undo(), L"Undone: " + sWhat);
    EXPECT_EQ(Levels(), colBefore);
    cLib.Restart();
    EXPECT_EQ(Levels(), colBefore);
    EXPECT_EQ(Man().Redo(), L"Redone: " + sWhat);
    EXPECT_EQ(Levels(), colAfter);
    EXPECT_EQ(boxes, Boxes());
}

INSTANTIATE_TEST_SUITE_P(UndoTest, UndoWorkTest, testing::Range(std::size_t{0}, UndoKinds().size()));

// ---- steps

TEST_F(UndoTest, StepsAreUndoneNewestFirstAndANewOneEndsRedo)
{
    MoveTo(L"e", 1);
    Move({L"a"}, Level(L"Pop", 1));
    EXPECT_TRUE(cLib.CreateMainCat(L"Jazz"));
    EXPECT_EQ(Man().Undo(), L"Undone: new category Jazz");
    EXPECT_EQ(Man().Undo(), L"Undone: move of 1 cut to Pop 1");
    EXPECT_EQ(Man().RedoText(), L"Redo move of 1 cut to Pop 1");
    EXPECT_EQ(Man().Redo(), L"Redone: move of 1 cut to Pop 1");
    EXPECT_EQ(Man().RedoText(), L"Redo new category Jazz");
    MoveTo(L"f", 1);
    EXPECT_EQ(Man().RedoText(), L"");
    EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1");
}

TEST_F(UndoTest, WhatChangesNothingMakesNoStep)
{
    Man().ShuffleCategories({Level(L"Soul", 3)});
    MoveTo(L"a", 1);
    Move({L"a"}, Level(L"Rock", 1));
    Move({L"p"}, Level(L"Pop", 1), eCopyHere);
    Remove({L"p"}, L"Rock");
    Man().AssignCut(CutOf(L"a"), 1, {L"Rock"});
    EXPECT_EQ(Man().UndoText(), L"");
    CutOf(L"b")->failing = {"SetCatLevel"};
    Move({L"b"}, Level(L"Rock", 2));
    EXPECT_EQ(Man().UndoText(), L"") << "nor does what fails";
    Move({L"a", L"b"}, Level(L"Rock", 2));
    EXPECT_EQ(Man().UndoText(), L"Undo move of 1 cut to Rock 2");
}

TEST_F(UndoTest, AHundredStepsAreKept)
{
    for (std::size_t step = 0; step < UndoSteps::mostSteps + 3; ++step)
        MoveTo(step % 2 == 0 ? L"f" : L"e", 1);
    cLib.Restart();
    std::size_t undone = 0;
    for (; Man().CanUndo(); ++undone)
        Man().Undo();
    EXPECT_EQ(undone, UndoSteps::mostSteps);
}

TEST_F(UndoTest, SingleRemovalsFromTheSameLevelAreOneStep)
{
    const auto remove = [this](const wchar_t* sName, const wchar_t* sKey) {
        CatCollection colLeft;
        Man().RemoveCutFromCategory(MainCat(sName), CutOf(sKey), colLeft);
    };
    for (const wchar_t* sKey : {L"a", L"c", L"b"})
        remove(L"Rock", sKey);
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 3 cuts from Rock 1");
    remove(L"Pop", L"p");
    remove(L"Rock", L"d");
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 1 cut from Rock 1");
    cLib.Pick(L"Rock\t1");
    remove(L"Rock", L"e");
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 1 cut from Rock 1");
    Man().SaveHistoryAndOrdering(nullptr);
    cLib.Restart();
    for (const wchar_t* sStep :
         {L"1 cut from Rock 1", L"1 cut from Rock 1", L"1 cut from Pop 1", L"3 cuts from Rock 1"})
        EXPECT_EQ(Man().Undo(), std::wstring(L"Undone: removal of ") + sStep);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"q"}));
    for (int lStep = 0; lStep < 4; ++lStep)
        Man().Redo();
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"f"});
}

TEST_F(UndoTest, MovesOfTheSameCutInItsLevelAreOneStep)
{
    for (const std::int32_t lPosition : {5, 4, 3})
        MoveTo(L"f", lPosition);
    MoveTo(L"e", 1);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"e", L"a", L"b", L"f", L"c", L"d"}));
    Man().Undo();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"f", L"c", L"d", L"e"}));
    MoveTo(L"f", 1);
    Man().Undo();
    Man().Undo();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    MoveTo(L"f", 1);
    MoveTo(L"f", 7);
    EXPECT_FALSE(Man().CanUndo()) << "it is back where it was";
    EXPECT_FALSE(Man().CanRedo());
    MoveTo(L"f", 1);
    cLib.Restart();
    MoveTo(L"f", 3);
    Man().Undo();
    EXPECT_TRUE(Man().CanUndo()) << "not across a restart";
}

// ---- what others have changed since

TEST_F(UndoTest, AnOrderReturnsWithoutCutsThatAreGoneAndBeforeNewOnes)
{
    MoveTo(L"f", 1);
    MoveTo(L"e", 1);
    Removed({CutOf(L"a"), CutOf(L"c")});
    Added({Add(L"new", L"Rock", 1)});
    cLib.Pick(L"Rock\t1");
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1 (2 cuts are gone, 1 new cut stays)");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"f", L"b", L"d", L"e", L"new"}));
    EXPECT_EQ(Man().Redo(), L"Redone: re-order of Rock 1");
    Modified({CutOf(L"new")});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"f", L"b", L"d", L"new", L"e"})) << "the order before the undo";
}

TEST_F(UndoTest, ACategoryNameWithASlashReturnsWhole)
{
    Start(L"AC/DC 1: a b | Rock 1: c");
    const std::shared_ptr<Cut> cCut = CutOf(L"a");
    cCut->SetCategoryText({});
    for (const wchar_t* sName : {L"AC/DC", L"Folk"})
        cCut->AddCategoryName(sName);
    const std::vector<std::wstring> colNames = cCut->CategoryNames();
    cLib.Change(eMoveExclusiveHere, Level(L"AC/DC", 1), Level(L"Rock", 1), {cCut});
    EXPECT_EQ(cCut->CategoryNames(), std::vector<std::wstring>{L"Rock"});
    Man().Undo();
    EXPECT_EQ(cCut->CategoryNames(), colNames);
}

TEST_F(UndoTest, NamesInAnotherOrderAndCaseAreNoChange)
{
    Man().AssignCut(CutOf(L"a"), 2, {L"Rock", L"Pop"});
    CutOf(L"a")->SetCategoryText(L"pop/ROCK");
    EXPECT_EQ(Man().Undo(), L"Undone: assignment of Artist of a - Title of a");
    EXPECT_EQ(CutOf(L"a")->CategoryText(), L"Rock");
}

TEST_F(UndoTest, ACutThatOthersMovedElsewhereIsNotGone)
{
    MoveTo(L"f", 1);
    CutOf(L"a")->SetCatLevel(2);
    Modified({CutOf(L"a")});
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1 (1 cut was changed since and stays as it is)");
}

TEST_F(UndoTest, ACutIsFollowedToItsNewKey)
{
    Move({L"a", L"b"}, Level(L"Pop", 1));
    MoveTo(L"f", 1);
    for (const wchar_t* sKey : {L"b", L"f"})
    {
        const std::shared_ptr<FakeCut> cCut = CutOf(sKey);
        cCut->SetKey(std::wstring(L"new ") + sKey);
        Modified({cCut});
    }
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1");
    EXPECT_EQ(Man().Undo(), L"Undone: move of 2 cuts to Pop 1");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"new b", L"c", L"d", L"e", L"new f"}));
    cLib.Restart();
    Man().Redo();
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"q", L"a", L"new b"}));
}

TEST_F(UndoTest, AKeyThatChangesInsideAUnitIsTheNewOneInItsStep)
{
    CutOf(L"d")->SetKey(L"new d");
    Move({L"b", L"new d"}, Level(L"Pop", 1));
    EXPECT_EQ(Man().Undo(), L"Undone: move of 2 cuts to Pop 1");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"new d", L"e", L"f"}));
}

TEST_F(UndoTest, AnEntryUnderASecondaryKeyReturnsToItsPlace)
{
    const std::shared_ptr<FakeCut> cCut = CutOf(L"c");
    Level(L"Rock", 1)->SchedCuts()->Remove(TextKey(L"c"));
    cCut->SetSecondaryKey(L"second");
    const TextKey cSecond(L"second");
    Level(L"Rock", 1)->SchedCuts()->Insert(2, &cSecond, cCut);
    Remove({L"c"}, L"Rock");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"d", L"e", L"f"}));
    EXPECT_EQ(Man().Undo(), L"Undone: removal of 1 cut from Rock 1");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
}

TEST_F(UndoTest, CutsThatOthersHaveChangedStayAsTheyAre)
{
    Move({L"a", L"b", L"c"}, Level(L"Pop", 1));
    CutOf(L"b")->SetCatLevel(5);
    Modified({CutOf(L"b")});
    Removed({CutOf(L"c")});
    EXPECT_EQ(Man().Undo(),
              L"Undone: move of 3 cuts to Pop 1 (1 cut is gone, 1 cut was changed since and stays as it is)");
    EXPECT_EQ(Tree(), L"Rock 1: a d e f | Rock 2: x y | Pop 1: p q | Pop 5: b | Soul 3: s");
    EXPECT_EQ(Man().Redo(), L"Redone: move of 3 cuts to Pop 1");
    EXPECT_EQ(Tree(), L"Rock 1: d e f | Rock 2: x y | Pop 1: p q a | Pop 5: b | Soul 3: s");
}

TEST_F(UndoTest, ANewLevelWithCutsStays)
{
    EXPECT_TRUE(cLib.CreateMainCat(L"Jazz"));
    Added({Add(L"new", L"Jazz", 1)});
    EXPECT_EQ(Man().Undo(), L"Undone: new category Jazz (1 new cut stays, Jazz 1 has cuts and stays)");
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"new"}));
    EXPECT_FALSE(Man().CanRedo());
}

TEST_F(UndoTest, ALevelThatOthersDeletedIsMadeAgainForItsCuts)
{
    Move({L"a"}, Level(L"Pop", 1));
    MoveTo(L"f", 1);
    Removed({CutOf(L"b"), CutOf(L"c"), CutOf(L"d"), CutOf(L"e"), CutOf(L"f")});
    MainCat(L"Rock")->SubCats()->Remove(std::wstring_view(L"1"));
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1 (Rock 1 is gone)");
    EXPECT_EQ(Man().Undo(), L"Undone: move of 1 cut to Pop 1 (5 cuts are gone)");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(UndoTest, FilesOfLevelsThatTheCutStaysInGetItsNumberToo)
{
    CreateLevel(L"Rock", L"3");
    PlaceToo(CutOf(L"a"), L"Soul", 3); // by a host: of another level than its number
    CutOf(L"a")->SetCategoryText(L"Rock");
    CutOf(L"a")->SetCatLevel(1);
    cLib.SaveAll();
    const std::string before = File(L"Soul");
    Move({L"a"}, Level(L"Rock", 3));
    EXPECT_NE(File(L"Soul"), before);
    Man().Undo();
    EXPECT_EQ(File(L"Soul"), before);
}

TEST_F(UndoTest, FilesThatOthersMadeAreNotDeleted)
{
    const std::wstring sRules = std::wstring(sRadio) + L"Scheduler\\Rules\\Jazz.rls";
    cPorts.cFiles.Put(sRules, "of others");
    cPorts.cFiles.Put(SifPath(L"Jazz"), "of others");
    EXPECT_TRUE(cLib.CreateMainCat(L"Jazz"));
    Man().Undo();
    EXPECT_EQ(cPorts.cFiles.Get(sRules), "of others");
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Jazz") + L".bak"), "of others");
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Jazz")));
}

TEST_F(UndoTest, AnOpenLibraryWindowShowsIt)
{
    CountingWindows cWindows;
    Man().SetWindows(&cWindows);
    MoveTo(L"f", 1);
    Man().Undo();
    EXPECT_EQ(cWindows.lRefreshes, 1);
    cWindows.OnRefresh = [] { throw RuntimeError(error::DeviceIo); };
    EXPECT_EQ(Man().Redo(), L"Redone: re-order of Rock 1");
    cWindows.bExists = false;
    Man().Undo();
    EXPECT_EQ(cWindows.lRefreshes, 2);
    Man().SetWindows(nullptr);
}

// ---- failures

class UndoFailureTest : public UndoTest, public testing::WithParamInterface<const char*>
{
};

TEST_P(UndoFailureTest, ChangesNothingAndTheNextUndoLeavesTheCutOut)
{
    Move({L"a", L"b", L"c"}, Level(L"Soul", 3));
    const std::wstring sAfter = State();
    Forget();
    CutOf(L"c")->failing = {GetParam()};
    for (int lTimes = 0; lTimes < 2; ++lTimes)
    {
        try
        {
            Man().Undo();
            ADD_FAILURE();
        }
        catch (const RuntimeError& cError)
        {
            EXPECT_EQ(cError.Number(), error::ObjectNotSet);
            EXPECT_EQ(cError.Description(),
                      L"Could not undo the move of 3 cuts to Soul 3; nothing was changed: " +
                          StandardText(91) + L" The next undo leaves out the cuts that fail.");
        }
        CutOf(L"c")->failing.clear();
        EXPECT_EQ(State(), sAfter);
        CutOf(L"c")->failing = {GetParam()};
        EXPECT_EQ(boxes, Boxes());
        if (lTimes == 0)
            NumberOf([&] { Man().Redo(); }); // so the next one is not the second in a row
    }
    EXPECT_EQ(Man().Undo(), L"Undone: move of 3 cuts to Soul 3 (1 cut could not be changed)");
    CutOf(L"c")->failing.clear();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"d", L"e", L"f"}));
    EXPECT_EQ(Order(L"Soul", 3), (Keys{L"s", L"c"}));
    Man().Redo();
    EXPECT_EQ(Order(L"Soul", 3), (Keys{L"s", L"a", L"b", L"c"}));
}

INSTANTIATE_TEST_SUITE_P(UndoTest, UndoFailureTest,
                         testing::Values("SetCatLevel", "SetCategoryText", "CatLevel", "Key"));

// The list cannot be saved, nor an order, and the host's window fails: the cuts are where they were, the step
// can be redone, and the files are written when that is possible again.
TEST_F(UndoTest, WhatFailsAfterTheCutsAreChangedIsPassedOver)
{
    const std::wstring sBefore = State();
    EXPECT_TRUE(Man().DeleteCats({MainCat(L"Soul")}));
    Move({L"a"}, Level(L"Pop", 1));
    const std::wstring sAfter = desk.InMemory();
    for (const std::wstring& sPath : {SifPath(L"Rock"), SifPath(L"Pop"), std::wstring(sMainCatsPath)})
        cPorts.cFiles.SetReadOnly(sPath, true);
    cLib.cHost.OnEvent = [](const std::wstring& sLine) {
        if (sLine.starts_with(L"Start"))
            throw RuntimeError(error::DeviceIo);
    };
    EXPECT_EQ(Man().Undo(), L"Undone: move of 1 cut to Pop 1");
    EXPECT_EQ(Man().Undo(), L"Undone: deletion of Soul");
    cLib.cHost.OnEvent = nullptr;
    EXPECT_EQ(desk.InMemory(), sBefore.substr(0, desk.InMemory().size()));
    EXPECT_NE(State(), sBefore) << "the files are still the old ones";
    EXPECT_FALSE(boxes.empty()) << "which is shown";
    for (const std::wstring& sPath : {SifPath(L"Rock"), SifPath(L"Pop"), std::wstring(sMainCatsPath)})
        cPorts.cFiles.SetReadOnly(sPath, false);
    cLib.SaveAll();
    Man().SaveCatNames();
    EXPECT_EQ(State(), sBefore);
    Man().Redo();
    Man().Redo();
    EXPECT_EQ(desk.InMemory(), sAfter);
}

TEST_F(UndoTest, ADatabaseThatCannotBeAskedChangesNothing)
{
    Remove({L"a"}, L"Rock");
    cLib.cDataBase->bFails = true;
    EXPECT_THROW(Man().Undo(), RuntimeError);
    cLib.cDataBase->bFails = false;
    EXPECT_TRUE(Man().CanUndo());
}

TEST_F(UndoTest, IsRefusedBeforeAndDuringAPopulationAndInsideAnother)
{
    std::vector<std::int32_t> colNumbers;
    const auto undo = [&] { colNumbers.push_back(NumberOf([&] { Man().Undo(); })); };
    undo();
    MoveTo(L"f", 1);
    cLib.cDataBase->OnAllCuts = undo;
    cLib.Populate();
    cLib.cDataBase->OnAllCuts = nullptr;
    MoveTo(L"e", 1);
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        cLib.cHost.OnEvent = nullptr;
        undo();
    };
    undo();
    cLib.cSchedMan = std::make_shared<clsSchedMan>(cLib.cMod);
    undo();
    EXPECT_EQ(colNumbers, (std::vector<std::int32_t>{5, 70, 70, 0, 91}));
}

TEST_F(UndoTest, IsRefusedInsideAChangeOfCuts)
{
    MoveTo(L"f", 1);
    const std::wstring before = State();
    std::int32_t lNumber = 0;
    CutOf(L"b")->OnCall = [&](std::string_view sMember) {
        if (sMember == "RemoveCategoryName")
            lNumber = NumberOf([&] { Man().Undo(); });
    };
    Man().RemoveCutsFromCategories({{CutOf(L"a"), nullptr, 0}, {CutOf(L"b"), nullptr, 0}}, nullptr);
    CutOf(L"b")->OnCall = nullptr;
    EXPECT_EQ(lNumber, error::PermissionDenied);
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 2 cuts from Rock 1");
    Man().Undo();
    EXPECT_EQ(State(), before);
    EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1");
}

TEST_F(UndoTest, ATreeThatIsReplacedInsideStopsIt)
{
    Move({L"a", L"b"}, Level(L"Pop", 1));
    CutOf(L"b")->OnCall = [&](std::string_view sMember) {
        if (sMember != "SetCategoryText")
            return;
        CutOf(L"b")->OnCall = nullptr;
        cLib.Populate();
    };
    EXPECT_EQ(NumberOf([&] { Man().Undo(); }), error::PermissionDenied);
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"p", L"q", L"b", L"a"})) << "the population found a in Rock";
    EXPECT_EQ(Man().Undo(), L"Undone: move of 2 cuts to Pop 1");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    Move({L"b"}, Level(L"Pop", 1));
    CutOf(L"b")->OnCall = [&](std::string_view) {
        CutOf(L"b")->OnCall = nullptr;
        CutOf(L"b")->SetCatLevel(7);
        cLib.Populate();
    };
    EXPECT_EQ(NumberOf([&] { Man().Undo(); }), error::PermissionDenied) << "even with nothing left to change";
}

TEST_F(UndoTest, AnEditInsideAnUndoIsTheNextStep)
{
    MoveTo(L"f", 1);
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        cLib.cHost.OnEvent = nullptr;
        Move({L"a"}, Level(L"Pop", 1));
    };
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1");
    EXPECT_EQ(Man().UndoText(), L"Undo move of 1 cut to Pop 1");
    EXPECT_EQ(Man().RedoText(), L"");
}

// ---- the file

TEST_F(UndoTest, PicksAndPlaysDoNotWriteTheFile)
{
    MoveTo(L"f", 1);
    Forget();
    Man().UpdateArtistTitleHistory(cLib.NextCut(L"Rock\t1"));
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"Undo.dat"), std::wstring::npos) << testing::PrintToString(sOperation);
}

TEST_F(UndoTest, AFileThatCannotBeSavedIsTriedAgainWithTheNextStepAndAtTheEnd)
{
    MoveTo(L"f", 1);
    cPorts.cFiles.SetReadOnly(sUndoPath, true);
    Forget();
    MoveTo(L"e", 1);
    EXPECT_EQ(boxes, Boxes());
    const std::wstring sLine = L"DISPLAYERROR, Undo.dat " + CriticalText(75);
    EXPECT_EQ(Log(), (Lines{sLine}));
    Added({Add(L"new", L"Rock", 1)});
    EXPECT_EQ(Logged(sLine), 1) << "no further attempt without a step";
    cPorts.cFiles.SetReadOnly(sUndoPath, false);
    cLib.Restart();
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1 (1 new cut stays)");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"f", L"a", L"b", L"c", L"d", L"e", L"new"}));
}

TEST_F(UndoTest, ADamagedFileMeansNoStepsAndIsKeptAside)
{
    MoveTo(L"f", 1);
    std::string damaged = cPorts.cFiles.Get(sUndoPath);
    damaged.back() = 'x';
    cPorts.cFiles.Put(sUndoPath, damaged);
    cLib.Restart();
    EXPECT_FALSE(Man().CanUndo());
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Logged(std::wstring(L"Nothing can be undone, the file is damaged: ") + sUndoPath), 1);
    MoveTo(L"e", 1);
    EXPECT_EQ(cPorts.cFiles.Get(std::wstring(sUndoPath) + L".bak"), damaged);
    cLib.Restart();
    EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1");
}

TEST_F(UndoTest, AFileThatCannotBeReadAtFirstKeepsItsSteps)
{
    MoveTo(L"f", 1);
    const std::string before = cPorts.cFiles.Get(sUndoPath);
    cPorts.cFiles.SetUnreadable(sUndoPath, error::PermissionDenied);
    cLib.Restart();
    EXPECT_FALSE(Man().CanUndo());
    MoveTo(L"e", 1);
    EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1");
    EXPECT_FALSE(cPorts.cFiles.PresenceOf(std::wstring(sUndoPath) + L".bak") == Presence::Present);
    EXPECT_EQ(Logged(L"DISPLAYERROR, Undo.dat " + CriticalText(70)), 1);
    cPorts.cFiles.SetUnreadable(sUndoPath, 0);
    EXPECT_EQ(cPorts.cFiles.Get(sUndoPath), before);
    cPorts.cClock.Advance(1'000);
    Move({L"a"}, Level(L"Pop", 1));
    cLib.Restart();
    for (const wchar_t* sStep : {L"move of 1 cut to Pop 1", L"re-order of Rock 1", L"re-order of Rock 1"})
        EXPECT_EQ(Man().Undo(), std::wstring(L"Undone: ") + sStep);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_FALSE(Man().CanUndo());
}

TEST_F(UndoTest, StepsStayWithTheirStation)
{
    MoveTo(L"f", 1);
    cPorts.cFiles.MakeFolders(L"C:\\Other\\Debugging Logs\\Scheduler");
    cLib.Populate(L"C:\\Other");
    EXPECT_FALSE(Man().CanUndo());
    MoveTo(L"c", 1);
    cLib.Populate();
    EXPECT_EQ(Man().Undo(), L"Undone: re-order of Rock 1");
    EXPECT_FALSE(Man().CanUndo());
    cLib.Populate(L"C:\\Other");
    EXPECT_TRUE(Man().CanUndo());
}

TEST_F(UndoTest, StepsOfAnotherDatabaseAreNotUndone)
{
    Move({L"a", L"b"}, Level(L"Pop", 1));
    EXPECT_TRUE(Man().DeleteCats({MainCat(L"Soul")}));
    const std::string foreign = cPorts.cFiles.Get(sUndoPath);
    const auto cOurs = cLib.cDataBase;
    cLib.cDataBase = std::make_shared<FakeDataBase>();
    cLib.cDataBase->AddTree(L"Talk 1: t u");
    cLib.Populate();
    EXPECT_EQ(Man().UndoText(), L"");
    cLib.Restart();
    EXPECT_EQ(Man().UndoText(), L"");
    EXPECT_EQ(Logged(std::wstring(L"Nothing can be undone, the file is of another database: ") + sUndoPath),
              1);
    std::swap(cLib.cDataBase, const_cast<std::shared_ptr<FakeDataBase>&>(cOurs));
    cLib.Populate();
    EXPECT_EQ(Man().UndoText(), L"Undo deletion of Soul");
    std::swap(cLib.cDataBase, const_cast<std::shared_ptr<FakeDataBase>&>(cOurs));
    cLib.Populate();
    EXPECT_TRUE(cLib.CreateMainCat(L"Jazz"));
    EXPECT_EQ(cPorts.cFiles.Get(std::wstring(sUndoPath) + L".bak"), foreign);
    Man().Undo();
    EXPECT_FALSE(Man().CanUndo());
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "scheduler/UndoSteps.h"

#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sStation = L"Rock 1: a b c d e f | Rock 2: x y | Pop 1: p q | Soul 3: s";

class UndoTest : public StationTest
{
protected:
    UndoTest()
    {
        Start(sStation);
        Man().SaveCatNames();
        Man().SetRotatesAllowed(true);
    }

    clsSchedMan& Man() { return *cLib.cSchedMan; }
    // Everything a unit of work may change: the tree, run times, the cuts, the files of orders and the list.
    std::wstring State() const
    {
        std::wstring sState = Tree();
        for (const std::shared_ptr<clsCat>& cMainCat : *cLib.cSchedMan->colMainCats())
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                sState += L", " + std::to_wstring(TotalOf(cMainCat->CatName(), cSubCat->CatLevel()));
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            sState += L"\n" + cCut->Key().Text() + L" " + std::to_wstring(cCut->CatLevel()) + L" " +
                      cCut->CategoryText();
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif") || sPath.ends_with(L".rls") || sPath == sMainCatsPath)
            {
                const std::string bytes = cPorts.cFiles.Get(sPath);
                sState += L"\n" + sPath + L" " + Printable(bytes);
            }
        return sState;
    }
    // The levels with their cuts, and the cuts' categories. A start may put the main categories in another
    // order.
    Lines Levels() const
    {
        Lines colLevels = Split(Tree(), L" | ");
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            colLevels.push_back(cCut->Key().Text() + std::to_wstring(cCut->CatLevel()) +
                                cCut->CategoryText());
        std::sort(colLevels.begin(), colLevels.end());
        return colLevels;
    }
    // Without fill bytes, and with digits for small binary numbers.
    static std::wstring Printable(const std::string& bytes)
    {
        std::wstring sText;
        for (const char c : bytes)
            if (c != '\0' && (c != ' ' || !sText.ends_with(L' ')))
                sText += c > 0 && c < 10 ? static_cast<wchar_t>(L'0' + c) : static_cast<wchar_t>(c);
        return sText;
    }
    Cuts CutsNamed(std::initializer_list<const wchar_t*> colKeys) const
    {
        Cuts colCuts;
        for (const wchar_t* sKey : colKeys)
            colCuts.push_back(CutOf(sKey));
        return colCuts;
    }
    void Move(std::initializer_list<const wchar_t*> colKeys, const std::shared_ptr<clsCat>& cTo,
              eCatDragOptions eOption = eMoveHere)
    {
        cLib.Change(eOption, Level(L"Rock", 1), cTo, CutsNamed(colKeys));
    }
    void Remove(std::initializer_list<const wchar_t*> colKeys, const std::wstring& sName)
    {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : CutsNamed(colKeys))
            colRemovals.push_back({cCut, sName.empty() ? nullptr : MainCat(sName), 0});
        Man().RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    }
    void CreateLevel(const std::wstring& sName, const std::wstring& sLevel)
    {
        cPorts.cMessages.Typed = {sLevel};
        EXPECT_TRUE(Man().CreateCatLevel(MainCat(sName)));
    }
    void MoveTo(const std::wstring& sKey, std::int32_t PosInto)
    {
        Man().MoveCutsInCategory(Level(L"Rock", 1), {CutOf(sKey)}, PosInto);
    }
};

// ---- each unit of work

class UndoWorkTest : public UndoTest, public testing::WithParamInterface<std::size_t>
{
public:
    static std::vector<std::pair<const wchar_t*, std::function<void(UndoWorkTest&)>>> All()
    {
        using T = UndoWorkTest;
        return {
            {L"shuffle of Rock 1", [](T& t) { t.Man().ShuffleCategories({t.Level(L"Rock", 1)}); }},
            {L"shuffle of Rock, Pop 1, Soul 3... (+1)",
             [](T& t) {
            t.Man().ShuffleCategories(
                {t.MainCat(L"Rock"), t.Level(L"Pop", 1), t.Level(L"Soul", 3), t.Level(L"Rock", 2)});
             }},
            {L"spread of Rock 1",
             [](T& t) {
            t.CutOf(L"a")->SetLastPlayed(t.cPorts.cClock.Now());
            t.Man().SpreadCategories({t.Level(L"Rock", 1)});
             }},
            {L"re-order of Rock 1", [](T& t) { t.MoveTo(L"e", 2); }},
            {L"move of 2 cuts to Pop 1",
             [](T& t) {
            t.Move({L"b", L"d"}, t.Level(L"Pop", 1));
             }},
            {L"move of 1 cut to Pop", [](T& t) { t.Move({L"b"}, t.MainCat(L"Pop"), eMoveExclusiveHere); }},
            {L"move of 6 cuts to Soul 3",
             [](T& t) {
            t.Move({L"f", L"e", L"d", L"c", L"b", L"a"}, t.Level(L"Soul", 3));
             }},
            {L"move of 2 cuts to Rock 2",
             [](T& t) {
            t.Move({L"c", L"a"}, t.Level(L"Rock", 2));
             }},
            {L"copy of 2 cuts to Pop 1",
             [](T& t) {
            t.Move({L"b", L"e"}, t.Level(L"Pop", 1), eCopyHere);
             }},
            {L"copy of 1 cut to Soul", [](T& t) { t.Move({L"b"}, t.MainCat(L"Soul"), eCopyHere); }},
            {L"removal of 2 cuts from Rock 1",
             [](T& t) {
            t.Remove({L"b", L"d"}, L"Rock");
             }},
            {L"removal of 3 cuts from Pop 1, Soul 3",
             [](T& t) {
            t.Remove({L"p", L"q", L"s"}, L"");
             }},
            {L"deletion of Pop 1", [](T& t) { EXPECT_TRUE(t.Man().DeleteCats({t.Level(L"Pop", 1)})); }},
            {L"deletion of Rock", [](T& t) { EXPECT_TRUE(t.Man().DeleteCats({t.MainCat(L"Rock")})); }},
            {L"deletion of Soul, Pop, Rock",
             [](T& t) {
            EXPECT_TRUE(t.Man().DeleteCats({t.MainCat(L"Soul"), t.MainCat(L"Pop"), t.MainCat(L"Rock")}));
             }},
            {L"deletion of Soul 3, Rock 2, Soul",
             [](T& t) {
            EXPECT_TRUE(t.Man().DeleteCats({t.Level(L"Soul", 3), t.Level(L"Rock", 2), t.MainCat(L"Soul")}));
             }},
            {L"new category Jazz", [](T& t) { EXPECT_TRUE(t.cLib.CreateMainCat(L"Jazz")); }},
            {L"new level Pop 7", [](T& t) { t.CreateLevel(L"Pop", L"7"); }},
            {L"assignment of Artist of c - Title of c",
             [](T& t) {
            t.Man().AssignCut(t.CutOf(L"c"), 2, {L"Pop", L"Rock", L"Folk"});
             }},
            };
    }
    using UndoTest::CreateLevel;
    using UndoTest::Man;
    using UndoTest::Move;
    using UndoTest::MoveTo;
    using UndoTest::Remove;
};

TEST_P(UndoWorkTest, IsTakenBackAndDoneAgain)
{
    const auto work = All()[GetParam()];
    const std::wstring sWhat = work.first;
    const std::wstring sBefore = State();
    const Lines colBefore = Levels();
    EXPECT_EQ(Man().UndoText(), L"");
    work.second(*this);
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

INSTANTIATE_TEST_SUITE_P(UndoTest, UndoWorkTest, testing::Range(std::size_t{0}, UndoWorkTest::All().size()));

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
        MoveTo(L"f", step % 2 == 0 ? 1 : 7);
    cLib.Restart();
    std::size_t undone = 0;
    for (; Man().CanUndo(); ++undone)
        Man().Undo();
    EXPECT_EQ(undone, UndoSteps::mostSteps);
}

TEST_F(UndoTest, EachSingleRemovalIsAStepOfItsOwn)
{
    CatCollection colLeft;
    for (const wchar_t* sKey : {L"a", L"b"})
        Man().RemoveCutFromCategory(MainCat(L"Rock"), CutOf(sKey), colLeft);
    Man().Undo();
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 1 cut from Rock 1");
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

// ---- failures

TEST_F(UndoTest, AFailureChangesNothingAndTheStepStays)
{
    Move({L"a", L"b", L"c"}, Level(L"Soul", 3));
    const std::wstring sAfter = State();
    Forget();
    for (const char* sMember : {"SetCatLevel", "SetCategoryText", "CatLevel", "Key"})
    {
        SCOPED_TRACE(sMember);
        CutOf(L"c")->failing = {sMember};
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
                          StandardText(91));
        }
        CutOf(L"c")->failing.clear();
        EXPECT_EQ(State(), sAfter);
        EXPECT_EQ(boxes, Boxes());
    }
    EXPECT_EQ(Man().Undo(), L"Undone: move of 3 cuts to Soul 3");
}

TEST_F(UndoTest, ADatabaseThatCannotBeAskedChangesNothing)
{
    Remove({L"a"}, L"Rock");
    cLib.cDataBase->bFails = true;
    EXPECT_THROW(Man().Undo(), RuntimeError);
    cLib.cDataBase->bFails = false;
    EXPECT_TRUE(Man().CanUndo());
}

std::int32_t NumberOf(const std::function<void()>& action)
{
    try
    {
        action();
        return 0;
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
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
    CutOf(L"b")->OnCall = [&](const std::string& sMember) {
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
    CutOf(L"b")->OnCall = [&](const std::string& sMember) {
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
    CutOf(L"b")->OnCall = [&](const std::string&) {
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

constexpr const wchar_t* sUndoPath = L"C:\\Radio\\Scheduler\\Undo.dat";

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

TEST_F(UndoTest, StepsOfAnotherStationAreHarmless)
{
    Move({L"a", L"b"}, Level(L"Pop", 1));
    EXPECT_TRUE(Man().DeleteCats({MainCat(L"Soul")}));
    const std::string foreign = cPorts.cFiles.Get(sUndoPath);
    Start(L"Talk 1: t u");
    cPorts.cFiles.Put(sUndoPath, foreign);
    cLib.Restart();
    EXPECT_EQ(Man().Undo(), L"Undone: deletion of Soul (1 cut is gone)");
    EXPECT_EQ(Man().Undo(),
              L"Undone: move of 2 cuts to Pop 1 (2 cuts are gone, Pop 1 is gone, Rock 1 is gone)");
    EXPECT_EQ(Tree(), L"Talk 1: t u | Soul 3:");
    EXPECT_FALSE(Man().CanUndo());
}

// The bound: steps of about 400 KB each.
TEST(UndoSteps, TheOldestStepsGoWhenTheFileWouldBeTooLarge)
{
    for (const bool bTexts : {false, true}) // what fills the file: keys, or texts
    {
        SCOPED_TRACE(bTexts);
        RadioPorts cPorts;
        ModScheduler cMod(cPorts.Ports());
        cPorts.cFiles.MakeFolders(std::wstring(sRadio) + L"Scheduler");
        UndoSteps cSteps(cMod);
        cSteps.Serve(sRadio);
        constexpr std::size_t steps = 30;
        for (std::size_t step = 0; step < steps; ++step)
        {
            ChangeRecord record;
            record.colOrders.push_back(
                {{bTexts ? std::wstring(410'000, static_cast<wchar_t>(L'a' + step)) : L"Rock", 1}, {}});
            for (std::size_t cut = 0; cut < (bTexts ? 0 : 1'000); ++cut)
                record.colOrders[0].colKeys.emplace_back(std::to_wstring(cut * 100 + step) +
                                                         std::wstring(400, L'x'));
            cSteps.Add(std::to_wstring(step), record);
        }
        cSteps.Save();
        EXPECT_LE(cPorts.cFiles.Get(sUndoPath).size(), UndoSteps::mostBytes + 1'000);
        UndoSteps cRead(cMod);
        cRead.Serve(sRadio);
        std::size_t kept = 0;
        for (; const std::optional<UndoSteps::Step> step = cRead.Next(UndoWay::Undo); ++kept)
        {
            EXPECT_EQ(step->sWhat, std::to_wstring(steps - 1 - kept));
            EXPECT_EQ(step->record.colOrders.at(0).colKeys.size(), bTexts ? 0u : 1'000u);
            cRead.Reversed(*step, UndoWay::Undo, {});
        }
        EXPECT_GE(kept, 10u);
        EXPECT_LT(kept, steps);
    }
}

ChangeRecord RecordOf(std::size_t cuts)
{
    ChangeRecord record;
    record.colOrders.push_back({{L"Rock", 1}, {}});
    for (std::size_t cut = 0; cut < cuts; ++cut)
        record.colOrders[0].colKeys.emplace_back(std::to_wstring(cut * 7 + cuts) +
                                                 std::wstring(40'000, L'x'));
    return record;
}

TEST(UndoSteps, ASmallStepAfterAnUndoneLargeOneIsSaved)
{
    RadioPorts cPorts;
    ModScheduler cMod(cPorts.Ports());
    cPorts.cFiles.MakeFolders(std::wstring(sRadio) + L"Scheduler");
    UndoSteps cSteps(cMod);
    cSteps.Serve(sRadio);
    cSteps.Add(L"first", RecordOf(2));
    cSteps.Add(L"large", RecordOf(190));
    cSteps.Reversed(*cSteps.Next(UndoWay::Undo), UndoWay::Undo, RecordOf(190));
    cSteps.Add(L"small", RecordOf(15));
    cSteps.Save();
    UndoSteps cRead(cMod);
    cRead.Serve(sRadio);
    for (const wchar_t* sWhat : {L"small", L"first"})
    {
        EXPECT_EQ(cRead.What(UndoWay::Undo), sWhat);
        cRead.Reversed(*cRead.Next(UndoWay::Undo), UndoWay::Undo, {});
    }
}

TEST(UndoSteps, TheFileKeepsTheNextStepWhenTheOtherWayIsTooLarge)
{
    for (const std::size_t redone : {5u, 230u})
    {
        RadioPorts cPorts;
        ModScheduler cMod(cPorts.Ports());
        cPorts.cFiles.MakeFolders(std::wstring(sRadio) + L"Scheduler");
        UndoSteps cSteps(cMod);
        cSteps.Serve(sRadio);
        cSteps.Add(L"first", RecordOf(2));
        cSteps.Add(L"larger", RecordOf(5));
        cSteps.Reversed(*cSteps.Next(UndoWay::Undo), UndoWay::Undo, RecordOf(redone));
        cSteps.Save();
        EXPECT_LE(cPorts.cFiles.Get(sUndoPath).size(), UndoSteps::mostBytes);
        UndoSteps cRead(cMod);
        cRead.Serve(sRadio);
        EXPECT_EQ(cRead.What(UndoWay::Undo), L"first");
        EXPECT_EQ(cRead.What(UndoWay::Redo), redone == 5u ? L"larger" : L"");
    }
}

} // namespace
} // namespace ravlo::test

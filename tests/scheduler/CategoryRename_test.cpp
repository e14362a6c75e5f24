// SPDX-License-Identifier: MIT
#include "scheduler/CategoryRename.h"

#include "platform/memory/FailingFiles.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

std::wstring RulesPath(const std::wstring& sName, std::int32_t lLevel)
{
    return L"C:\\Radio\\Scheduler\\Rules\\" + clsCat::RulesID(sName, lLevel) + L".rls";
}

// Rock 1 (b a c, of which c is in Pop too), Rock 2 and Pop 1, with saved orders, list and rules of Rock 1.
struct RenamedStation
{
    explicit RenamedStation(bool bHasBatches = true)
    {
        cDataBase->bHasBatches = bHasBatches;
        cDataBase->cInner.AddTree(L"Rock 1: a b | Rock 2: x | Pop 1: p");
        cDataBase->cInner.Add(L"c", L"Rock/Pop", 1);
        Populate();
        cLib.Level(L"Rock", 1)->SchedCuts()->MoveToEnd(0);
        cLib.Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"c"));
        cLib.Level(L"Rock", 1)->Rules()->SetArtistSepMins(45);
        cLib.SaveAll();
        cLib.cSchedMan->SaveCatNames();
    }
    void Populate() { cLib.cSchedMan->PopulateFromDataBase(cDataBase, sRadio); }
    bool Rename(const std::wstring& sTo) { return cLib.cSchedMan->RenameMainCat(L"Rock", sTo); }
    // What a start finds: tree, cuts, the separation of level 1 and the list.
    std::wstring StartOf(const std::wstring& sName)
    {
        Library cNext(cPorts);
        cNext.cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
        std::wstring sState = StateOf(cNext, sName);
        cNext.End();
        return sState;
    }
    std::wstring StateOf(const Library& cLibrary, const std::wstring& sName) const
    {
        std::wstring sState = cLibrary.Tree();
        for (const std::shared_ptr<Cut>& cCut : cDataBase->cInner.colCuts)
            sState += L" " + cCut->CategoryText();
        const std::shared_ptr<clsCat> cLevel = cLibrary.Level(sName, 1);
        return sState + L" " + (cLevel ? std::to_wstring(cLevel->PresentRules()->ArtistSepMins()) : L"");
    }

    RadioPorts cPorts;
    FailingFiles cFiles{cPorts.cFiles, 1'000'000};
    Library cLib{cPorts, cFiles};
    std::shared_ptr<BatchingDataBase> cDataBase = std::make_shared<BatchingDataBase>();
};

TEST(CategoryRename, OtherNamesWithASlashStayWhole)
{
    for (const bool bFails : {false, true})
    {
        RenamedStation station;
        const std::shared_ptr<FakeCut> cCut = station.cDataBase->cInner.Own(L"a");
        cCut->AddCategoryName(L"AC/DC");
        station.cDataBase->cInner.Own(L"x")->failing = {bFails ? "SetCategoryText" : ""};
        EXPECT_EQ(station.Rename(L"Blues"), !bFails);
        EXPECT_EQ(cCut->CategoryNames(), (Lines{bFails ? L"Rock" : L"Blues", L"AC/DC"}));
    }
}

TEST(CategoryRename, TakesCutsOrdersRulesAndListAlong)
{
    for (const bool bHasBatches : {true, false})
    {
        RenamedStation station(bHasBatches);
        const std::shared_ptr<clsCat> cLevel = station.cLib.Level(L"Rock", 1);
        const std::wstring sTree = station.cLib.Tree();
        ASSERT_TRUE(station.Rename(L" Blues "));
        EXPECT_EQ(station.cLib.Level(L"Blues", 1), cLevel) << "the same object";
        EXPECT_EQ(station.cLib.MainCat(L"Rock"), nullptr);
        EXPECT_EQ(station.cLib.Order(L"Blues", 1), (Keys{L"b", L"a", L"c"}));
        EXPECT_EQ(station.cDataBase->cInner.Own(L"c")->CategoryText(), L"Blues/Pop");
        EXPECT_EQ(station.StateOf(station.cLib, L"Blues"), station.StartOf(L"Blues"));
        EXPECT_EQ(cLevel->Rules()->ArtistSepMins(), 45);
        for (const std::wstring& sGone : {SifPath(L"Rock"), RulesPath(L"Rock", 1)})
            EXPECT_FALSE(station.cPorts.cFiles.FileExists(sGone));
        EXPECT_EQ(station.cPorts.cFiles.Get(sMainCatsPath).find("Rock"), std::string::npos);
        EXPECT_TRUE(station.cPorts.cMessages.Boxes.empty());
    }
}

TEST(CategoryRename, ShowsItsProgressInTheWindowAlone)
{
    RenamedStation station;
    for (int lCut = 0; lCut < 36; ++lCut)
        station.cDataBase->cInner.Add(L"n" + std::to_wstring(lCut), L"Rock", 1);
    station.Populate();
    station.cDataBase->cInner.Own(L"a")->OnCall = [&](std::string_view) {
        station.cPorts.cClock.SetTickCount(station.cPorts.cClock.TickCount() + 150);
    };
    HostEvents cWindow;
    station.cLib.cSchedMan->SetProgressFollower(&cWindow);
    station.cLib.cHost.colSaid.clear();
    ASSERT_TRUE(station.Rename(L"Blues"));
    const Lines colShown{L"Start 41: Renaming...", L"Progress 20/41: Renaming 20 of 41", L"Done: "};
    EXPECT_EQ(cWindow.colSaid, colShown);
    EXPECT_EQ(station.cLib.cHost.colSaid, Lines()) << "a host that hears of it could change what is renamed";
    cWindow.colSaid.clear();
    station.cDataBase->cInner.Own(L"n35")->failing = {"SetCategoryText"};
    EXPECT_FALSE(station.cLib.cSchedMan->RenameMainCat(L"Blues", L"Soul"));
    EXPECT_EQ(cWindow.colSaid.back(), L"Done: ");
    station.cLib.cSchedMan->SetProgressFollower(nullptr);
}

TEST(CategoryRename, HeldRulesSaveUnderTheNewName)
{
    RenamedStation station;
    const std::shared_ptr<clsCatRules> cRules = station.cLib.Level(L"Rock", 1)->Rules();
    ASSERT_TRUE(station.Rename(L"Blues"));
    cRules->SetArtistSepMins(50);
    EXPECT_FALSE(station.cPorts.cFiles.FileExists(RulesPath(L"Rock", 1)));
    EXPECT_TRUE(station.StartOf(L"Blues").ends_with(L" 50"));
}

TEST(CategoryRename, ChangesOnlyTheCaseOfAName)
{
    RenamedStation station;
    ASSERT_TRUE(station.Rename(L"ROCK"));
    EXPECT_EQ(station.cLib.MainCatNames().front(), L"ROCK");
    EXPECT_EQ(station.cDataBase->cInner.Own(L"a")->CategoryText(), L"ROCK");
    EXPECT_TRUE(station.StartOf(L"ROCK").ends_with(L" 45"));
}

TEST(CategoryRename, RenamesACategoryWithoutCuts)
{
    RenamedStation station;
    ASSERT_TRUE(station.cLib.CreateMainCat(L"Jazz"));
    ASSERT_TRUE(station.cLib.cSchedMan->RenameMainCat(L"Jazz", L"Swing"));
    const std::wstring sNow = station.cLib.Tree();
    EXPECT_NE(sNow.find(L"Swing"), std::wstring::npos);
    EXPECT_EQ(station.StartOf(L"Rock"), station.StateOf(station.cLib, L"Rock"));
}

TEST(CategoryRename, RefusesWithOneSentence)
{
    RenamedStation station;
    const std::wstring sBefore = station.StateOf(station.cLib, L"Rock");
    for (const auto& [sTo, sWhyNot] :
         {std::pair{L"", L"A category needs a name."},
          {L"12", L"A category name must not be a number."},
          {L"pop", L"There is already a category named Pop."},
          {L"a/b", L"A category name must not contain any of * / : < > ? \\ | \""},
          {L"CON", L"A category cannot be named CON."},
          {L"all audio", L"A category cannot be named all audio."},
          {L"\u4E2D", L"A category cannot be named \u4E2D."}})
    {
        station.cPorts.cMessages.Boxes.clear();
        EXPECT_FALSE(station.Rename(sTo));
        EXPECT_EQ(station.cPorts.cMessages.Boxes,
                  (Boxes{OkBox(BoxIcon::Exclamation, L"Rename Category", sWhyNot)}));
    }
    EXPECT_FALSE(station.Rename(std::wstring(51, L'x')));
    EXPECT_FALSE(station.cLib.cSchedMan->RenameMainCat(L"Gone", L"Blues"));
    EXPECT_FALSE(station.Rename(L"Rock")) << "nothing to do";
    EXPECT_EQ(station.StateOf(station.cLib, L"Rock"), sBefore);
    EXPECT_FALSE(station.cLib.cSchedMan->CanUndo());
}

TEST(CategoryRename, IsOneStepToUndo)
{
    RenamedStation station;
    const std::wstring sBefore = station.StateOf(station.cLib, L"Rock");
    ASSERT_TRUE(station.Rename(L"Blues"));
    const std::wstring sAfter = station.StateOf(station.cLib, L"Blues");
    EXPECT_EQ(station.cLib.cSchedMan->UndoText(), L"Undo renaming of Rock to Blues");
    EXPECT_EQ(station.cLib.cSchedMan->Undo(), L"Undone: renaming of Rock to Blues");
    EXPECT_EQ(station.StateOf(station.cLib, L"Rock"), sBefore);
    EXPECT_EQ(station.cLib.cSchedMan->Redo(), L"Redone: renaming of Rock to Blues");
    EXPECT_EQ(station.StateOf(station.cLib, L"Blues"), sAfter);
    station.cDataBase->bRefusesCommit = true;
    EXPECT_THROW(station.cLib.cSchedMan->Undo(), RuntimeError);
    EXPECT_EQ(station.StateOf(station.cLib, L"Blues"), sAfter);
    EXPECT_TRUE(station.cLib.cSchedMan->CanUndo());
}

TEST(CategoryRename, ARefusingDatabaseChangesNothing)
{
    const std::pair<const char*, std::function<void(BatchingDataBase&)>> causes[] = {
        {"commit", [](BatchingDataBase& cDataBase) { cDataBase.bRefusesCommit = true; }},
        {"begin", [](BatchingDataBase& cDataBase) { cDataBase.bRefusesBegin = true; }},
        {"a cut", [](BatchingDataBase& cDataBase) {
             cDataBase.cInner.Own(L"c")->OnCall = [bDone = false](std::string_view sMember) mutable {
                 if (sMember == "SetCategoryText" && !std::exchange(bDone, true))
                     throw RuntimeError(error::DeviceIo);
             };
         }}};
    for (const auto& [sCause, refuse] : causes)
    {
        SCOPED_TRACE(sCause);
        RenamedStation station;
        const std::wstring sBefore = station.StateOf(station.cLib, L"Rock");
        refuse(*station.cDataBase);
        EXPECT_FALSE(station.Rename(L"Blues"));
        EXPECT_EQ(station.cPorts.cMessages.Boxes.size(), 1u);
        EXPECT_EQ(station.StateOf(station.cLib, L"Rock"), sBefore);
        EXPECT_EQ(station.StartOf(L"Rock"), sBefore);
        EXPECT_FALSE(station.cPorts.cFiles.FileExists(SifPath(L"Blues")));
        EXPECT_FALSE(station.cLib.cSchedMan->CanUndo());
    }
}

TEST(CategoryRename, EveryFailingFileLeavesAllOrNothing)
{
    for (const bool bStaysBroken : {false, true})
        for (int lGood = 0;; ++lGood)
        {
            SCOPED_TRACE(lGood);
            RenamedStation station;
            const std::wstring sBefore = station.StateOf(station.cLib, L"Rock");
            station.cFiles.bStaysBroken = bStaysBroken;
            station.cFiles.Arm(lGood);
            const bool bRenamed = station.Rename(L"Blues");
            const std::wstring sName = bRenamed ? L"Blues" : L"Rock";
            EXPECT_EQ(station.cLib.MainCat(bRenamed ? L"Rock" : L"Blues"), nullptr);
            EXPECT_EQ(station.StateOf(station.cLib, sName) == sBefore, !bRenamed);
            // What a kill at that step would have left.
            EXPECT_EQ(station.StartOf(sName), station.StateOf(station.cLib, sName));
            if (!station.cFiles.bFailed)
            {
                EXPECT_TRUE(bRenamed);
                break;
            }
        }
}

TEST(CategoryRename, IsRefusedDuringAPopulation)
{
    RenamedStation station;
    bool bRenamed = true;
    Once(station.cPorts.cHostLoop.OnPump, [&] { bRenamed = station.Rename(L"Blues"); });
    station.Populate();
    EXPECT_FALSE(bRenamed);
    ASSERT_FALSE(station.cPorts.cMessages.Boxes.empty());
    EXPECT_TRUE(station.cPorts.cMessages.Boxes[0].sText.starts_with(L"70 "));
}

} // namespace
} // namespace ravlo::test

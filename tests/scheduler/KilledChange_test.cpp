// SPDX-License-Identifier: MIT
// A process that is killed in the middle of a change of cuts leaves files and a database with which the next
// start finds every level and every order.

#include "scheduler/UndoRecords.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

namespace ravlo::test
{
namespace
{

// What a killed process leaves: the files and the database's cuts.
struct Left
{
    std::map<std::wstring, std::string> files;
    Cuts colCuts;
};

// The next program's start with what was left.
struct NextStart
{
    explicit NextStart(const Left& left)
    {
        for (const auto& [sPath, bytes] : left.files)
            cPorts.cFiles.Put(sPath, bytes);
        cLib.cDataBase->colCuts = left.colCuts;
        cLib.Populate();
    }

    RadioPorts cPorts;
    Library cLib{cPorts};
};

using Orders = std::map<std::wstring, Keys>; // by "Rock 1"

class KilledChangeTest : public StationTest
{
protected:
    // Rock 1 to 3 and Pop 1 and 4, in orders that are not the database's; Jazz 1 with as many cuts as said.
    void Start(bool bHasBatches, std::size_t jazz = 0)
    {
        cBatching->bHasBatches = bHasBatches;
        cBatching->cInner.AddTree(
            L"Rock 1: r11 r12 r13 r14 | Rock 2: r21 r22 r23 r24 | Rock 3: r31 r32 r33 r34 |"
            L" Pop 1: p1 p2 p3 p4 | Pop 4: q1 q2 q3 q4 | Jazz 2: k");
        for (std::size_t cut = 1; cut <= jazz; ++cut)
            cBatching->cInner.Add(L"j" + std::to_wstring(cut), L"Jazz", 1);
        cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
        for (const std::wstring& sName : cLib.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
            {
                std::vector<std::size_t> colOrder(cSubCat->SchedCuts()->Count());
                for (std::size_t at = 0; at < colOrder.size(); ++at)
                    colOrder[at] = (at + 2) % colOrder.size();
                cSubCat->SchedCuts()->Reorder(colOrder);
            }
        cLib.SaveAll();
        Forget();
        before = OrdersOf(cLib);
        cBatching->OnCommit = [this] { colLeft.push_back(Leave()); };
    }
    Left Leave() const
    {
        Left left;
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            left.files[sPath] = cPorts.cFiles.Get(sPath);
        for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
            left.colCuts.push_back(cCut->CloneCut());
        return left;
    }
    static Orders OrdersOf(const Library& cLibrary)
    {
        Orders orders;
        for (const std::wstring& sName : cLibrary.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *cLibrary.MainCat(sName)->SubCats())
                orders[sName + L" " + cSubCat->CatID()] = cLibrary.Order(sName, cSubCat->CatLevel());
        return orders;
    }
    void MoveRock1(const Cuts& colCuts)
    {
        cLib.Change(eMoveHere, Level(L"Rock", 1), Level(L"Pop", 4), colCuts);
    }
    void OnEveryCall(const std::function<void(std::string_view)>& action)
    {
        for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
            std::dynamic_pointer_cast<FakeCut>(cCut)->OnCall = action;
    }

    // A start with what was left: no box, every level there was (but for those in colMayGo), and of each the
    // cuts that are still in it in their order. Returns the log.
    Lines ExpectSoundStart(const Left& left, const Keys& colMayGo = {}) const
    {
        NextStart next(left);
        Library& cNext = next.cLib;
        const RadioPorts& cOther = next.cPorts;
        EXPECT_EQ(cOther.cMessages.Boxes, Boxes());
        const Orders after = OrdersOf(cNext);
        for (const auto& [sLevel, colBefore] : before)
        {
            const auto found = after.find(sLevel);
            if (found == after.end())
            {
                EXPECT_NE(std::find(colMayGo.begin(), colMayGo.end(), sLevel), colMayGo.end()) << sLevel;
                continue;
            }
            EXPECT_EQ(Common(found->second, colBefore), Common(colBefore, found->second)) << sLevel;
        }
        return cOther.LogMessages();
    }
    static bool Tells(const Lines& colLog, const std::wstring& sName)
    {
        return std::count(colLog.begin(), colLog.end(),
                          L"A change of category " + sName +
                              L" was interrupted: some of its cuts may be changed and others not.") == 1;
    }

    static Lines StateOf(const Cuts& colCuts)
    {
        Lines colState;
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            colState.push_back(cCut->Key().Text() + L" " + std::to_wstring(cCut->CatLevel()) + L" " +
                               cCut->CategoryText());
        return colState;
    }

    static constexpr const wchar_t* sPartsPath = L"C:\\Radio\\Scheduler\\Undo.parts";
    std::shared_ptr<BatchingDataBase> cBatching = std::make_shared<BatchingDataBase>();
    Orders before;
    std::vector<Left> colLeft; // at each commit: right before it and right after it
};

TEST_F(KilledChangeTest, AMoveThatEmptiesALevelKeepsTheLevelsAboveIt)
{
    Start(true);
    MoveRock1(CutsOf(L"Rock"));
    ASSERT_EQ(colLeft.size(), 2u);
    EXPECT_TRUE(Tells(ExpectSoundStart(colLeft[0]), L"Rock"));
    EXPECT_TRUE(Tells(ExpectSoundStart(colLeft[1]), L"Rock"));
    const Lines colLog = ExpectSoundStart(Leave());
    EXPECT_FALSE(Tells(colLog, L"Rock")) << "the change is over";
    EXPECT_FALSE(Tells(colLog, L"Pop"));
}

TEST_F(KilledChangeTest, WithoutBatchesEachCutOfTheMoveMayBeTheLast)
{
    Start(false);
    bool bInside = false;
    const Cuts colCuts = CutsOf(L"Rock", 2);
    OnEveryCall([&](std::string_view) {
        if (std::exchange(bInside, true))
            return; // the look at what is left
        colLeft.push_back(Leave());
        bInside = false;
    });
    cLib.Change(eMoveExclusiveHere, Level(L"Rock", 2), Level(L"Rock", 1), colCuts);
    OnEveryCall(nullptr);
    EXPECT_GT(colLeft.size(), 20u);
    for (const Left& left : colLeft)
        ExpectSoundStart(left);
}

TEST_F(KilledChangeTest, ALevelThatIsBeingDeletedIsThereOrGone)
{
    Start(true);
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1), MainCat(L"Pop")}));
    ASSERT_EQ(colLeft.size(), 6u);
    const Keys colMayGo{L"Rock 1", L"Pop 1", L"Pop 4"};
    for (const Left& left : colLeft)
        ExpectSoundStart(left, colMayGo);
    EXPECT_FALSE(Tells(ExpectSoundStart(Leave(), colMayGo), L"Rock"));
}

TEST_F(KilledChangeTest, RemovalsAndAnAssignmentKeepTheLevelsAboveToo)
{
    Start(true);
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : CutsOf(L"Rock"))
        colRemovals.push_back({cCut, nullptr, 0});
    cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    for (const std::shared_ptr<Cut>& cCut : CutsOf(L"Pop"))
        cLib.cSchedMan->AssignCut(cCut, 3, {L"Rock"});
    ASSERT_EQ(colLeft.size(), 10u);
    for (const Left& left : colLeft)
        ExpectSoundStart(left);
}

TEST_F(KilledChangeTest, AKilledMoveIsLoggedWithItsCategories)
{
    Start(true, 120);
    std::vector<Left> colPumps;
    cPorts.cHostLoop.OnPump = [&] { colPumps.push_back(Leave()); };
    cLib.Change(eMoveHere, Level(L"Jazz", 1), Level(L"Pop", 1), CutsOf(L"Jazz"));
    ASSERT_GE(colPumps.size(), 2u);
    for (const Left& left : {colPumps[0], colPumps[1]})
    {
        const Lines colLog = ExpectSoundStart(left);
        EXPECT_TRUE(Tells(colLog, L"Jazz"));
        EXPECT_TRUE(Tells(colLog, L"Pop"));
        EXPECT_FALSE(Tells(colLog, L"Rock"));
    }
    EXPECT_FALSE(Tells(ExpectSoundStart(Leave()), L"Jazz"));
}

TEST_F(KilledChangeTest, MarkersWrittenAheadOfAFailedChangeAreRemoved)
{
    Start(true);
    const std::string rock = File(L"Rock");
    cBatching->bRefusesCommit = true;
    MoveRock1(CutsOf(L"Rock"));
    EXPECT_EQ(File(L"Rock"), rock);
    EXPECT_EQ(OrdersOf(cLib), before);
    OnEveryCall([&](std::string_view) {
        if (File(L"Rock") != rock) // written ahead
            SetReadOnly(L"Rock");
    });
    MoveRock1(CutsOf(L"Rock"));
    OnEveryCall(nullptr);
    EXPECT_EQ(OrdersOf(cLib), before);
    EXPECT_NE(File(L"Rock"), rock);
    EXPECT_EQ(SifWithoutGuards(File(L"Rock")), rock);
    EXPECT_TRUE(Tells(ExpectSoundStart(Leave()), L"Rock"));
    Forget();
    SetReadOnly(L"Rock", false);
    WaitForRetry();
    EXPECT_TRUE(cLib.Save(L"Pop"));
    EXPECT_EQ(File(L"Rock"), rock) << "retried";
    EXPECT_EQ(boxes, Boxes());
}

// ---- a change that was committed in part is undone at the next start

using InParts = std::pair<const wchar_t*, std::function<void(Library&)>>;

// At a station with 120 cuts in Jazz 1; each with the text of its step.
const std::vector<InParts>& ChangesInParts()
{
    static const auto colJazz = [](Library& l) {
        return Cuts(l.Level(L"Jazz", 1)->SchedCuts()->begin(), l.Level(L"Jazz", 1)->SchedCuts()->end());
    };
    static const std::vector<InParts> colChanges{
        {L"deletion of Jazz 1, Rock, Pop 4",
         [](Library& l) {
        l.cSchedMan->DeleteCats({l.Level(L"Jazz", 1), l.MainCat(L"Rock"), l.Level(L"Pop", 4)});
         }},
        {L"deletion of Jazz", [](Library& l) { l.cSchedMan->DeleteCats({l.MainCat(L"Jazz")}); }},
        {L"move of 120 cuts to Pop 1",
         [](Library& l) { l.Change(eMoveHere, l.Level(L"Jazz", 1), l.Level(L"Pop", 1), colJazz(l)); }},
        {L"move of 120 cuts to Pop",
         [](Library& l) {
        l.Change(eMoveExclusiveHere, l.Level(L"Jazz", 1), l.MainCat(L"Pop"), colJazz(l));
         }},
        {L"move of 120 cuts to Rock 3",
         [](Library& l) { l.Change(eMoveHere, l.Level(L"Jazz", 1), l.Level(L"Rock", 3), colJazz(l)); }},
        {L"copy of 120 cuts to Rock",
         [](Library& l) { l.Change(eCopyHere, l.Level(L"Jazz", 1), l.MainCat(L"Rock"), colJazz(l)); }},
        {L"removal of 120 cuts",
         [](Library& l) {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : colJazz(l))
            colRemovals.push_back({cCut, nullptr, 0});
        l.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
         }},
        };
    return colChanges;
}

class KilledInPartsTest : public KilledChangeTest,
                          public testing::WithParamInterface<std::tuple<std::size_t, bool>>
{
protected:
    const InParts& Change() const { return ChangesInParts()[std::get<0>(GetParam())]; }
    // Starts with what was left, undoes, and starts again. Returns whether there was an interrupted step.
    bool UndoWhatIsLeft(const Left& left, const Lines& colBefore) const
    {
        NextStart next(left);
        Library& cNext = next.cLib;
        const RadioPorts& cOther = next.cPorts;
        clsSchedMan& cMan = *cNext.cSchedMan;
        if (!cMan.CanUndo())
        {
            EXPECT_EQ(StateOf(left.colCuts), colBefore) << "nothing to undo, so nothing was done";
            return false;
        }
        const std::wstring sStep = cMan.UndoText().substr(sizeof("Undo"));
        const bool bInterrupted = sStep == std::wstring(L"interrupted ") + Change().first;
        EXPECT_EQ(cMan.Undo(), L"Undone: " + sStep);
        EXPECT_EQ(OrdersOf(cNext), before);
        EXPECT_EQ(StateOf(left.colCuts), colBefore);
        EXPECT_FALSE(cMan.CanUndo());
        EXPECT_FALSE(cOther.cFiles.FileExists(sPartsPath)) << "it is in Undo.dat now";
        cNext.Restart();
        EXPECT_FALSE(cNext.cSchedMan->CanUndo());
        EXPECT_EQ(OrdersOf(cNext), before);
        return bInterrupted;
    }
};

TEST_P(KilledInPartsTest, WhatItHasDoneIsUndoneAtTheNextStart)
{
    Start(std::get<1>(GetParam()), 120);
    const Lines colBefore = StateOf(cBatching->cInner.colCuts);
    cPorts.cHostLoop.OnPump = [&] { colLeft.push_back(Leave()); };
    Change().second(cLib);
    ASSERT_GE(colLeft.size(), 1u);
    bool bInterrupted = false;
    for (const Left& left : colLeft)
        bInterrupted = UndoWhatIsLeft(left, colBefore) || bInterrupted;
    EXPECT_TRUE(bInterrupted);
    EXPECT_FALSE(UndoWhatIsLeft(Leave(), colBefore)) << "it has ended";
}

INSTANTIATE_TEST_SUITE_P(KilledChange, KilledInPartsTest,
                         testing::Combine(testing::Range(std::size_t{0}, ChangesInParts().size()),
                                          testing::Bool()));

// What is left of the file decides what can be undone of it.
TEST_F(KilledChangeTest, OnlyPartsThatAreWholeAndNewerAreTaken)
{
    Start(true, 120);
    const Lines colBefore = StateOf(cBatching->cInner.colCuts);
    cPorts.cHostLoop.OnPump = [&] { colLeft.push_back(Leave()); };
    ChangesInParts()[1].second(cLib);
    const Left left = *std::find_if(colLeft.begin(), colLeft.end(),
                                    [&](const Left& each) { return StateOf(each.colCuts) != colBefore; });
    const std::string whole = left.files.at(sPartsPath);
    const auto TextWith = [&](const std::string& parts, bool bNewer = false, bool bInUse = false) {
        RadioPorts cOther;
        for (const auto& [sPath, bytes] : left.files)
            cOther.cFiles.Put(sPath, bytes);
        cOther.cFiles.Put(sPartsPath, parts);
        if (bNewer)
            cOther.cFiles.Put(std::wstring(sRadio) + L"Scheduler\\Undo.dat", EncodeUndoFile({}));
        const auto cHeld =
            bInUse ? cOther.cFiles.HoldOpen(std::wstring(sRadio) + L"Scheduler\\InUse.lock") : nullptr;
        Library cNext(cOther);
        cNext.cDataBase->colCuts = left.colCuts;
        cNext.Populate();
        const std::wstring sText = cNext.cSchedMan->UndoText();
        cNext.MainCat(L"Pop")->SubCats()->At(0)->SchedCuts()->MoveToEnd(0);
        cNext.cSchedMan->ShuffleCategories({cNext.MainCat(L"Pop")});
        EXPECT_EQ(cOther.cFiles.FileExists(sPartsPath), bInUse || !parts.starts_with("RavloUndoParts 1\r\n"));
        return sText;
    };
    EXPECT_EQ(TextWith(whole), L"Undo interrupted deletion of Jazz");
    EXPECT_EQ(TextWith(whole + whole.substr(26, 40)), L"Undo interrupted deletion of Jazz") << "a torn end";
    EXPECT_EQ(TextWith(whole.substr(0, whole.size() - 1)), L"") << "its only part";
    EXPECT_EQ(TextWith(whole, true), L"") << "Undo.dat was written since";
    EXPECT_EQ(TextWith("what is this?"), L"");
    EXPECT_EQ(TextWith(whole, false, true), L"") << "another program is at work";
}

TEST_F(KilledChangeTest, PartsThatAreLockedAtFirstAreReadLater)
{
    Start(true, 120);
    cPorts.cHostLoop.OnPump = [&] { colLeft.push_back(Leave()); };
    ChangesInParts()[1].second(cLib);
    RadioPorts cOther;
    for (const auto& [sPath, bytes] : colLeft[2].files)
        cOther.cFiles.Put(sPath, bytes);
    cOther.cFiles.SetUnreadable(sPartsPath, error::PermissionDenied);
    Library cNext(cOther);
    cNext.cDataBase->colCuts = colLeft[2].colCuts;
    cNext.Populate();
    EXPECT_FALSE(cNext.cSchedMan->CanUndo());
    const std::shared_ptr<clsCat> cRock = cNext.Level(L"Rock", 1);
    cNext.cSchedMan->MoveCutsInCategory(cRock, {cRock->SchedCuts()->At(3)}, 1);
    EXPECT_TRUE(cOther.cFiles.FileExists(sPartsPath));
    cOther.cFiles.SetUnreadable(sPartsPath, 0);
    cOther.cClock.Advance(1'000);
    EXPECT_EQ(cNext.cSchedMan->Undo(), L"Undone: re-order of Rock 1");
    EXPECT_EQ(cNext.cSchedMan->UndoText(), L"Undo interrupted deletion of Jazz");
}

TEST_F(KilledChangeTest, WithoutItsPartsAChangeIsDoneAndUndoneAsUsual)
{
    Start(true, 120);
    cPorts.cFiles.SetReadOnly(sPartsPath);
    const Lines colBefore = StateOf(cBatching->cInner.colCuts);
    ChangesInParts()[0].second(cLib);
    EXPECT_EQ(boxes, Boxes());
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(), L"DISPLAYERROR, Undo.parts " + CriticalText(75)), 1)
        << "once a change";
    EXPECT_EQ(cLib.cSchedMan->Undo(), L"Undone: deletion of Jazz 1, Rock, Pop 4");
    EXPECT_EQ(StateOf(cBatching->cInner.colCuts), colBefore);
    EXPECT_EQ(OrdersOf(cLib), before);
}

// ---- removals that the host saves

class HostsRemovalTest : public KilledChangeTest
{
protected:
    // Takes cuts out of Rock 1, one by one, until so many are left.
    void RemoveDownTo(std::size_t left)
    {
        while (Level(L"Rock", 1)->SchedCuts()->Count() > left)
        {
            CatCollection colMainCats;
            cLib.cSchedMan->RemoveCutFromCategory(MainCat(L"Rock"), CutsOf(L"Rock")[0], colMainCats);
            ASSERT_EQ(colMainCats.Count(), 1u);
        }
    }
};

TEST_F(HostsRemovalTest, TheLevelOutlivesAKillBeforeTheHostSaves)
{
    Start(true);
    RemoveDownTo(1);
    EXPECT_EQ(Written(), Lines()) << "nothing is saved";
    RemoveDownTo(0);
    EXPECT_EQ(Written(), Lines{L"Rock"}) << "ahead of the last one";
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(boxes, Boxes());
    ASSERT_EQ(colLeft.size(), 8u);
    for (const Left& left : colLeft)
        ExpectSoundStart(left);
    EXPECT_TRUE(Tells(ExpectSoundStart(Leave()), L"Rock"));
    EXPECT_TRUE(cLib.Save(L"Rock"));
    EXPECT_FALSE(Tells(ExpectSoundStart(Leave()), L"Rock"));
}

TEST_F(HostsRemovalTest, OneThatFailsLeavesTheFileAsItWas)
{
    Start(true);
    RemoveDownTo(1);
    EXPECT_TRUE(cLib.Save(L"Rock"));
    const std::string rock = File(L"Rock");
    cBatching->bRefusesCommit = true;
    CatCollection colMainCats;
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, CutsOf(L"Rock")[0], colMainCats);
    EXPECT_TRUE(colMainCats.Empty());
    EXPECT_EQ(Level(L"Rock", 1)->SchedCuts()->Count(), 1u);
    EXPECT_EQ(File(L"Rock"), rock);
}

TEST_F(HostsRemovalTest, OneThatCannotBeWrittenAheadIsOnlyLogged)
{
    Start(true);
    RemoveDownTo(1);
    SetReadOnly(L"Rock");
    Forget();
    RemoveDownTo(0);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Log(), Lines{L"DISPLAYERROR, SaveHistoryAndOrdering Rock 75 Path/File access error"});
    SetReadOnly(L"Rock", false);
    Forget();
    EXPECT_TRUE(cLib.Save(L"Pop"));
    EXPECT_EQ(Written(), Lines{L"Pop"}) << "the removal is the host's to save";
}

TEST_F(KilledChangeTest, OnlyCategoriesThatMayLoseALevelAreWrittenTwice)
{
    Start(true);
    MoveRock1({CutsOf(L"Rock")[0]});
    const auto Writes = [this](const std::wstring& sName) {
        const Lines colOperations = cPorts.cFiles.Operations();
        return std::count_if(colOperations.begin(), colOperations.end(), [&](const std::wstring& sOperation) {
            return sOperation.starts_with(L"Rename ") && sOperation.ends_with(SifPath(sName));
        });
    };
    EXPECT_EQ(Writes(L"Rock"), 1);
    EXPECT_EQ(Writes(L"Pop"), 1);
    Forget();
    MoveRock1(CutsOf(L"Rock"));
    EXPECT_EQ(Writes(L"Rock"), 2);
    EXPECT_EQ(Writes(L"Pop"), 1);
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// A process that is killed in the middle of a change of cuts leaves files and a database with which the next
// start finds every level and every order.

#include "scheduler/UnsavedOrders.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <algorithm>

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

using Orders = std::map<std::wstring, Keys>; // by "Rock 1"

class KilledChangeTest : public StationTest
{
protected:
    // Rock 1 to 3 and Pop 1 and 4, in orders that are not the database's; Jazz 1 with as many cuts as said.
    void Start(bool bHasBatches, std::size_t jazz = 0)
    {
        cBatching->bHasBatches = bHasBatches;
        for (std::int32_t lLevel = 1; lLevel <= 3; ++lLevel)
            for (int lCut = 1; lCut <= 4; ++lCut)
                cBatching->cInner.Add(L"r" + std::to_wstring(lLevel * 10 + lCut), L"Rock", lLevel);
        for (int lCut = 1; lCut <= 4; ++lCut)
        {
            cBatching->cInner.Add(L"p" + std::to_wstring(lCut), L"Pop", 1);
            cBatching->cInner.Add(L"q" + std::to_wstring(lCut), L"Pop", 4);
        }
        for (std::size_t lCut = 1; lCut <= jazz; ++lCut)
            cBatching->cInner.Add(L"j" + std::to_wstring(lCut), L"Jazz", 1);
        cBatching->cInner.Add(L"k", L"Jazz", 2);
        cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
        for (const std::wstring& sName : cLib.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
            {
                std::vector<std::size_t> colOrder(cSubCat->SchedCuts()->Count());
                for (std::size_t at = 0; at < colOrder.size(); ++at)
                    colOrder[at] = (at + 2) % colOrder.size();
                cSubCat->SchedCuts()->Reorder(colOrder);
            }
        cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
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
    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        const auto colCuts = Level(sName, lLevel)->SchedCuts();
        return {colCuts->begin(), colCuts->end()};
    }

    // A start with what was left: no box, every level there was (but for those in colMayGo), and of each the
    // cuts that are still in it in their order. Returns the log.
    Lines ExpectSoundStart(const Left& left, const Keys& colMayGo = {}) const
    {
        RadioPorts cOther;
        for (const auto& [sPath, bytes] : left.files)
            cOther.cFiles.Put(sPath, bytes);
        Library cNext(cOther);
        cNext.cDataBase->colCuts = left.colCuts;
        cNext.Populate();
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
            const auto Keep = [](Keys colKeys, const Keys& colOf) {
                std::erase_if(colKeys, [&](const std::wstring& sKey) {
                    return std::find(colOf.begin(), colOf.end(), sKey) == colOf.end();
                });
                return colKeys;
            };
            EXPECT_EQ(Keep(found->second, colBefore), Keep(colBefore, found->second)) << sLevel;
        }
        return cOther.LogMessages();
    }
    static bool Tells(const Lines& colLog, const std::wstring& sName)
    {
        return std::count(colLog.begin(), colLog.end(),
                          L"A change of category " + sName +
                              L" was interrupted: some of its cuts may be changed and others not.") == 1;
    }

    std::shared_ptr<BatchingDataBase> cBatching = std::make_shared<BatchingDataBase>();
    Orders before;
    std::vector<Left> colLeft; // at each commit: right before it and right after it
};

TEST_F(KilledChangeTest, AMoveThatEmptiesALevelKeepsTheLevelsAboveIt)
{
    Start(true);
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 4), CutsOf(L"Rock", 1),
                                    bCreated);
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
    bool bCreated = false;
    bool bInside = false;
    const Cuts colCuts = CutsOf(L"Rock", 2);
    for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
        std::dynamic_pointer_cast<FakeCut>(cCut)->OnCall = [&](const std::string&) {
            if (std::exchange(bInside, true))
                return; // the look at what is left
            colLeft.push_back(Leave());
            bInside = false;
        };
    cLib.cSchedMan->DoMassCatChange(eMoveExclusiveHere, {Level(L"Rock", 2)}, Level(L"Rock", 1), colCuts,
                                    bCreated);
    for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
        std::dynamic_pointer_cast<FakeCut>(cCut)->OnCall = nullptr;
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
    for (const std::shared_ptr<Cut>& cCut : CutsOf(L"Rock", 1))
        colRemovals.push_back({cCut, nullptr, 0});
    cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    const Cuts colCuts = CutsOf(L"Pop", 1);
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        cLib.cSchedMan->AssignCut(cCut, 3, {L"Rock"});
    ASSERT_EQ(colLeft.size(), 10u);
    for (const Left& left : colLeft)
        ExpectSoundStart(left);
}

TEST_F(KilledChangeTest, KilledMoveIsLoggedWithItsCategories)
{
    Start(true, 120);
    std::vector<Left> colPumps;
    cPorts.cHostLoop.OnPump = [&] { colPumps.push_back(Leave()); };
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Jazz", 1)}, Level(L"Pop", 1), CutsOf(L"Jazz", 1),
                                    bCreated);
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

TEST_F(KilledChangeTest, WhatIsWrittenAheadOfAChangeThatFailsIsWrittenAgain)
{
    Start(true);
    const std::string rock = File(L"Rock");
    cBatching->bRefusesCommit = true;
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 4), CutsOf(L"Rock", 1),
                                    bCreated);
    EXPECT_EQ(File(L"Rock"), rock);
    EXPECT_EQ(OrdersOf(cLib), before);
}

TEST_F(KilledChangeTest, MarkersThatCannotBeTakenOffAreTriedAgain)
{
    Start(true);
    const std::string rock = File(L"Rock");
    cBatching->bRefusesCommit = true;
    for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
        std::dynamic_pointer_cast<FakeCut>(cCut)->OnCall = [&](const std::string&) {
            if (File(L"Rock") != rock) // written ahead
                cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        };
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 4), CutsOf(L"Rock", 1),
                                    bCreated);
    for (const std::shared_ptr<Cut>& cCut : cBatching->cInner.colCuts)
        std::dynamic_pointer_cast<FakeCut>(cCut)->OnCall = nullptr;
    EXPECT_EQ(OrdersOf(cLib), before);
    EXPECT_NE(File(L"Rock"), rock);
    EXPECT_EQ(SifWithoutGuards(File(L"Rock")), rock);
    EXPECT_TRUE(Tells(ExpectSoundStart(Leave()), L"Rock"));
    Forget();
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop")));
    EXPECT_EQ(File(L"Rock"), rock);
    EXPECT_EQ(boxes, Boxes());
}

// ---- removals that the host saves

class HostsRemovalTest : public KilledChangeTest
{
protected:
    // Takes cuts out of Rock 1, one by one, until so many are left.
    void RemoveDownTo(std::size_t lLeft)
    {
        while (Level(L"Rock", 1)->SchedCuts()->Count() > lLeft)
        {
            CatCollection colMainCats;
            cLib.cSchedMan->RemoveCutFromCategory(MainCat(L"Rock"), CutsOf(L"Rock", 1)[0], colMainCats);
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
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock")));
    EXPECT_FALSE(Tells(ExpectSoundStart(Leave()), L"Rock"));
}

TEST_F(HostsRemovalTest, OneThatFailsLeavesTheFileAsItWas)
{
    Start(true);
    RemoveDownTo(1);
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock")));
    const std::string rock = File(L"Rock");
    cBatching->bRefusesCommit = true;
    CatCollection colMainCats;
    cLib.cSchedMan->RemoveCutFromCategory(nullptr, CutsOf(L"Rock", 1)[0], colMainCats);
    EXPECT_TRUE(colMainCats.Empty());
    EXPECT_EQ(Level(L"Rock", 1)->SchedCuts()->Count(), 1u);
    EXPECT_EQ(File(L"Rock"), rock);
}

TEST_F(HostsRemovalTest, OneThatCannotBeWrittenAheadIsOnlyLogged)
{
    Start(true);
    RemoveDownTo(1);
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    Forget();
    RemoveDownTo(0);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(said, Lines());
    EXPECT_EQ(Log(), Lines{L"DISPLAYERROR, SaveHistoryAndOrdering Rock 75 Path/File access error"});
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    Forget();
    EXPECT_TRUE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop")));
    EXPECT_EQ(Written(), Lines{L"Pop"}) << "the removal is the host's to save";
}

TEST_F(KilledChangeTest, OnlyCategoriesThatMayLoseALevelAreWrittenTwice)
{
    Start(true);
    bool bCreated = false;
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 4), {CutsOf(L"Rock", 1)[0]},
                                    bCreated);
    const auto Writes = [this](const std::wstring& sName) {
        const Lines colOperations = cPorts.cFiles.Operations();
        return std::count_if(colOperations.begin(), colOperations.end(), [&](const std::wstring& sOperation) {
            return sOperation.starts_with(L"Rename ") && sOperation.ends_with(SifPath(sName));
        });
    };
    EXPECT_EQ(Writes(L"Rock"), 1);
    EXPECT_EQ(Writes(L"Pop"), 1);
    Forget();
    cLib.cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 4), CutsOf(L"Rock", 1),
                                    bCreated);
    EXPECT_EQ(Writes(L"Rock"), 2);
    EXPECT_EQ(Writes(L"Pop"), 1);
}

} // namespace
} // namespace ravlo::test

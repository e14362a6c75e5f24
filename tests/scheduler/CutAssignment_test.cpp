// SPDX-License-Identifier: MIT
#include "scheduler/CutAssignment.h"

#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <limits>

namespace ravlo::test
{
namespace
{

class AssignCutTest : public StationTest
{
protected:
    void Assign(const std::shared_ptr<Cut>& cGiven, std::int32_t lLevel, const Lines& colNames)
    {
        cLib.cSchedMan->AssignCut(cGiven, lLevel, colNames);
    }
};

TEST_F(AssignCutTest, TheCutIsPlacedAndEachTouchedCategoryIsSavedOnce)
{
    const auto cCut = Add(L"a", L"Rock/Pop", 1, 100'000);
    Add(L"r", L"Rock", 3);
    Add(L"b", L"Rock", 1);
    Add(L"j", L"Jazz", 3);
    Start();
    Assign(cCut, 3, {L"Rock", L"Jazz"});
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop", L"Jazz"}));
    for (const char* sWhen : {"at once", "after a restart"})
    {
        SCOPED_TRACE(sWhen);
        EXPECT_EQ(cCut->CatLevel(), 3);
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
        EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b"}));
        EXPECT_EQ(Order(L"Rock", 3), (Keys{L"r", L"a"}));
        EXPECT_EQ(Order(L"Jazz", 3), (Keys{L"j", L"a"}));
        EXPECT_EQ(Order(L"Pop", 1), Keys());
        EXPECT_EQ(TotalOf(L"Rock", 3), 280'000);
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(File(L"Rock"), SifCut("b", 1) + SifCut("r", 3) + SifCut("a", 3));
        EXPECT_EQ(File(L"Pop"), SifMarker(1));
        cLib.Restart();
        Forget();
    }
}

TEST_F(AssignCutTest, ALaterAnnouncementFindsNothingToDo)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"j", L"Jazz", 2);
    Start();
    Assign(cCut, 2, {L"Jazz"});
    Forget();
    Modified({cCut});
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Order(L"Jazz", 2), (Keys{L"j", L"a"}));
    // What it had before is no longer what it is placed under.
    cCut->SetCatLevel(1);
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
}

TEST_F(AssignCutTest, ADatabaseThatAnnouncesEachPropertyMakesNoStrayLevel)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Add(L"j", L"Jazz", 2);
    Start();
    cCut->OnCall = [&](const std::string& sMember) {
        if (sMember.starts_with("Set"))
            Modified({cCut});
    };
    Assign(cCut, 2, {L"Jazz"});
    cCut->OnCall = nullptr;
    EXPECT_EQ(Level(L"Rock", 2), nullptr);
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Order(L"Jazz", 2), (Keys{L"j", L"a"}));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz"}));
}

TEST_F(AssignCutTest, WhatFailsThrowsAndChangesNothing)
{
    for (const char* sMember : {"SetCatLevel", "SetCategoryText", "RunTimemS", "CategoryText", "Key"})
    {
        SCOPED_TRACE(sMember);
        RadioPorts cOther;
        Library cLibrary(cOther);
        const auto cCut = cLibrary.cDataBase->Add(L"a", L"Rock/Pop", 1);
        cLibrary.cDataBase->Add(L"b", L"Rock", 1);
        cLibrary.Populate();
        cCut->failing = {sMember};
        EXPECT_THROW(cLibrary.cSchedMan->AssignCut(cCut, 4, {L"Jazz", L"Rock"}), RuntimeError);
        cCut->failing.clear();
        EXPECT_EQ(cCut->CatLevel(), 1);
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"a", L"b"}));
        EXPECT_EQ(cLibrary.Order(L"Pop", 1), (Keys{L"a"}));
        EXPECT_EQ(cLibrary.Level(L"Rock", 4), nullptr);
        EXPECT_EQ(cLibrary.MainCat(L"Jazz"), nullptr) << "made for it, and gone with it";
        EXPECT_EQ(cOther.cMessages.Boxes, Boxes()) << "the caller tells";
    }
}

TEST_F(AssignCutTest, ARunTimeOutOfRangeIsShownAndTheCutIsAssigned)
{
    const auto cCut = Add(L"a", L"Rock", 1, std::numeric_limits<std::int32_t>::max());
    Add(L"j", L"Jazz", 1, 1);
    Start();
    Assign(cCut, 1, {L"Jazz"});
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"j", L"a"}));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in ShowCatUI [cSchedMan]",
                                        CriticalText(6) + L": run times in category Jazz")}));
}

TEST_F(AssignCutTest, EveryErrorOfAnAssignmentIsShown)
{
    const auto cCut = Add(L"a", L"Rock", 1, std::numeric_limits<std::int32_t>::max());
    Add(L"j", L"Jazz", 1, 1);
    Add(L"p", L"Pop", 1, 1);
    Start();
    Assign(cCut, 1, {L"Jazz", L"Pop"});
    const std::wstring sTitle = L"Error in ShowCatUI [cSchedMan]";
    EXPECT_EQ(boxes, (Boxes{CriticalBox(sTitle, CriticalText(6) + L": run times in category Jazz"),
                            CriticalBox(sTitle, CriticalText(6) + L": run times in category Pop")}));
}

TEST_F(AssignCutTest, CutsOwnFailureIsThrownAndTheOthersAreLogged)
{
    const auto cCut = Add(L"a", L"Rock", 1, std::numeric_limits<std::int32_t>::max());
    Add(L"j", L"Jazz", 1, 1);
    Start();
    const auto cCopy = std::make_shared<FakeCut>();
    cCopy->SetKey(L"a");
    cCopy->failing = {"SetCategoryText"};
    try
    {
        Assign(cCopy, 1, {L"Jazz"});
        FAIL();
    }
    catch (const RuntimeError& cError)
    {
        EXPECT_EQ(cError.Number(), error::ObjectNotSet);
    }
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
    EXPECT_EQ(boxes, Boxes());
    const Lines colLog = Log();
    EXPECT_EQ(
        std::count(colLog.begin(), colLog.end(),
                   L"DISPLAYERROR, Error in ShowCatUI [cSchedMan] 6 Overflow: run times in category Jazz"),
        1);
}

TEST_F(AssignCutTest, ACategoryDeletedSinceItWasChosenIsMadeAndListed)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    Assign(cCut, 2, {L"New"});
    EXPECT_EQ(Order(L"New", 2), (Keys{L"a"}));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nNew");
}

TEST_F(AssignCutTest, ACopyReceivesWhatTheDatabasesOwnCutReceives)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
    Assign(cCopy, 2, {L"Rock", L"Pop"});
    for (const std::shared_ptr<Cut>& cEach : {cCopy, std::static_pointer_cast<Cut>(cCut)})
    {
        EXPECT_EQ(cEach->CatLevel(), 2);
        EXPECT_EQ(cEach->CategoryText(), L"Rock/Pop");
    }
    EXPECT_EQ(Level(L"Pop", 2)->SchedCuts()->At(0), cCut);
}

TEST_F(AssignCutTest, ACutTheDatabaseDoesNotHoldYetIsPlacedWhenItIsAnnounced)
{
    Add(L"r", L"Rock", 1);
    Start();
    const auto cNew = Add(L"new", L"", 0);
    cLib.cDataBase->Remove(*cNew);
    Assign(cNew, 1, {L"Rock"});
    EXPECT_EQ(cNew->CategoryText(), L"Rock");
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"r"}));
    cNew->failing = {"SetCategoryText"};
    EXPECT_THROW(Assign(cNew, 2, {L"Pop"}), RuntimeError);
    EXPECT_EQ(cNew->CatLevel(), 1);
    cNew->failing.clear();
    cLib.cDataBase->colCuts.push_back(cNew);
    Added({cNew});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"r", L"new"}));
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(AssignCutTest, DuringAPopulationItIsRefused)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    Start();
    int lRefused = 0;
    cLib.cHost.OnEvent = [&](const std::wstring&) {
        try
        {
            Assign(cCut, 2, {L"Pop"});
        }
        catch (const RuntimeError& cError)
        {
            lRefused += cError.Number() == error::PermissionDenied;
        }
    };
    cLib.Populate();
    EXPECT_GT(lRefused, 0);
    EXPECT_EQ(cCut->CatLevel(), 1);
    EXPECT_EQ(boxes, Boxes());
}

class AssignInBatchesTest : public StationTest
{
protected:
    AssignInBatchesTest()
    {
        cCut = cBatching->cInner.Add(L"a", L"Rock", 1);
        cLib.cSchedMan->PopulateFromDataBase(cBatching, sRadio);
        Forget();
    }
    std::shared_ptr<BatchingDataBase> cBatching = std::make_shared<BatchingDataBase>();
    std::shared_ptr<FakeCut> cCut;
};

TEST_F(AssignInBatchesTest, LevelAndNamesAreOneChangeOnTheDisk)
{
    cLib.cSchedMan->AssignCut(cCut, 2, {L"Pop"});
    EXPECT_EQ(cBatching->lBegun, 1);
    EXPECT_EQ(cBatching->lCommitted, 1);
}

TEST_F(AssignInBatchesTest, ARefusedCommitThrowsAndChangesNothing)
{
    cBatching->bRefusesCommit = true;
    EXPECT_THROW(cLib.cSchedMan->AssignCut(cCut, 2, {L"Pop"}), RuntimeError);
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(cCut->CatLevel(), 1);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(MainCat(L"Pop"), nullptr);
}

TEST_F(AssignInBatchesTest, RefusedBeginIsShownAndChangesCountSingly)
{
    cBatching->bRefusesBegin = true;
    cLib.cSchedMan->AssignCut(cCut, 2, {L"Pop"});
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in ShowCatUI [cSchedMan]", CriticalText(57))}));
    Forget();
    cCut->failing = {"SetCategoryText"};
    EXPECT_THROW(cLib.cSchedMan->AssignCut(cCut, 3, {L"Rock"}), RuntimeError);
    cCut->failing.clear();
    EXPECT_EQ(cCut->CatLevel(), 2) << "whole or not at all without a batch too";
    EXPECT_EQ(Order(L"Pop", 2), (Keys{L"a"}));
}

} // namespace
} // namespace ravlo::test

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

TEST_F(AssignCutTest, CutIsPlacedAndEachTouchedCategoryIsSavedOnce)
{
    const auto cCut = Start(L"Rock 1: a b | Pop 1: a | Rock 3: r | Jazz 3: j");
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
        EXPECT_EQ(TotalOf(L"Rock", 3), 360'000);
        EXPECT_EQ(boxes, Boxes());
        EXPECT_EQ(File(L"Rock"), SifCut("b", 1) + SifCut("r", 3) + SifCut("a", 3));
        EXPECT_EQ(File(L"Pop"), SifMarker(1));
        cLib.Restart();
        Forget();
    }
}

TEST_F(AssignCutTest, LaterAnnouncementFindsNothingToDo)
{
    const auto cCut = Start(L"Rock 1: a | Jazz 2: j");
    Assign(cCut, 2, {L"Jazz"});
    Forget();
    Modified({cCut});
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(Tree(), L"Rock 1: | Jazz 2: j a");
    cCut->SetCatLevel(1);
    cCut->SetCategoryText(L"Rock");
    Modified({cCut});
    EXPECT_EQ(Tree(), L"Rock 1: a | Jazz 2: j") << "its names and level before are no longer remembered";
}

TEST_F(AssignCutTest, DatabaseThatAnnouncesEachPropertyMakesNoStrayLevel)
{
    const auto cCut = Start(L"Rock 1: a | Jazz 2: j");
    cCut->OnCall = [&](std::string_view sMember) {
        if (sMember.starts_with("Set"))
            Modified({cCut});
    };
    Assign(cCut, 2, {L"Jazz"});
    cCut->OnCall = nullptr;
    EXPECT_EQ(Tree(), L"Rock 1: | Jazz 2: j a");
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Jazz"}));
}

TEST_F(AssignCutTest, FailureThrowsAndChangesNothing)
{
    for (const char* sMember : {"SetCatLevel", "SetCategoryText", "RunTimemS", "CategoryText", "Key"})
    {
        SCOPED_TRACE(sMember);
        const auto cCut = Start(L"Rock 1: a b | Pop 1: a");
        cCut->failing = {sMember};
        EXPECT_THROW(Assign(cCut, 4, {L"Jazz", L"Rock"}), RuntimeError);
        cCut->failing.clear();
        EXPECT_EQ(cCut->CatLevel(), 1);
        EXPECT_EQ(cCut->CategoryText(), L"Rock/Pop");
        EXPECT_EQ(Tree(), L"Rock 1: a b | Pop 1: a") << "what was made for it is removed";
        EXPECT_EQ(boxes, Boxes()) << "the caller shows the error";
    }
}

TEST_F(AssignCutTest, RunTimesOutOfRangeAreShownOrLoggedWhenTheCutFails)
{
    const auto cCut = Add(L"a", L"Rock", 1, std::numeric_limits<std::int32_t>::max());
    Add(L"j", L"Jazz", 1, 1);
    Add(L"p", L"Pop", 1, 1);
    Start();
    const std::wstring sTitle = L"Error in ShowCatUI [cSchedMan]";
    const std::wstring sOverflow = CriticalText(6) + L": run times in category ";
    const auto cCopy = std::make_shared<FakeCut>();
    cCopy->SetKey(L"a");
    cCopy->failing = {"SetCategoryText"};
    EXPECT_THROW(Assign(cCopy, 1, {L"Jazz"}), RuntimeError);
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Logged(L"DISPLAYERROR, " + sTitle + L" " + sOverflow + L"Jazz"), 1);
    Assign(cCut, 1, {L"Jazz", L"Pop"});
    EXPECT_EQ(Tree(), L"Rock 1: | Jazz 1: j a | Pop 1: p a");
    EXPECT_EQ(boxes,
              (Boxes{CriticalBox(sTitle, sOverflow + L"Jazz"), CriticalBox(sTitle, sOverflow + L"Pop")}));
}

TEST_F(AssignCutTest, CategoryDeletedSinceItWasChosenIsMadeAndListed)
{
    const auto cCut = Start(L"Rock 1: a");
    Assign(cCut, 2, {L"New"});
    EXPECT_EQ(Tree(), L"Rock 1: | New 2: a");
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nNew");
}

TEST_F(AssignCutTest, CopyReceivesWhatTheDatabasesOwnCutReceives)
{
    const auto cCut = Start(L"Rock 1: a");
    const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
    Assign(cCopy, 2, {L"Rock", L"Pop"});
    for (const std::shared_ptr<Cut>& cEach : {cCopy, std::static_pointer_cast<Cut>(cCut)})
    {
        EXPECT_EQ(cEach->CatLevel(), 2);
        EXPECT_EQ(cEach->CategoryText(), L"Rock/Pop");
    }
    EXPECT_EQ(Level(L"Pop", 2)->SchedCuts()->At(0), cCut);
}

TEST_F(AssignCutTest, CutThatTheDatabaseLacksIsPlacedWhenAnnounced)
{
    Start(L"Rock 1: r");
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

TEST_F(AssignCutTest, IsRefusedDuringAPopulation)
{
    const auto cCut = Start(L"Rock 1: a");
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

TEST_F(AssignInBatchesTest, LevelAndNamesAreOneChangeAndARefusedCommitThrows)
{
    cBatching->bRefusesCommit = true;
    EXPECT_THROW(cLib.cSchedMan->AssignCut(cCut, 2, {L"Pop"}), RuntimeError);
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    EXPECT_EQ(cCut->CatLevel(), 1);
    EXPECT_EQ(Tree(), L"Rock 1: a");
    cBatching->bRefusesCommit = false;
    cLib.cSchedMan->AssignCut(cCut, 2, {L"Pop"});
    EXPECT_EQ(cBatching->lBegun, 2);
    EXPECT_EQ(cBatching->lCommitted, 1);
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

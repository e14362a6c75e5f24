// SPDX-License-Identifier: MIT
// The order file of a category without levels that cannot be deleted at first.
#include "scheduler/HistoryFiles.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

// Rock with one level and Pop. The file of Rock cannot be deleted once the level is gone from the tree.
class OwedDeletionTest : public StationTest
{
protected:
    OwedDeletionTest()
    {
        Add(L"r1", L"Rock");
        Add(L"r2", L"Rock");
        Add(L"p1", L"Pop");
        Add(L"p2", L"Pop");
        Start();
        cLib.cSchedMan->SaveCatNames(); // Rock without cuts is known by the list alone
        Forget();
        cLib.cHost.OnEvent = [this](const std::wstring& sLine) {
            if (sLine == L"Done: Deleted Rock 1")
                cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        };
    }
    void DeleteTheLevel()
    {
        EXPECT_FALSE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}));
        ExpectRefused();
    }
    void ExpectRefused()
    {
        EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(75))});
        EXPECT_EQ(SifWithoutGuards(File(L"Rock")), SifCut("r1", 1) + SifCut("r2", 1));
        Forget();
    }
    void Free() { cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false); }
    void ExpectNoLevelAfterARestart()
    {
        Free();
        cLib.Restart();
        ASSERT_TRUE(MainCat(L"Rock"));
        EXPECT_TRUE(MainCat(L"Rock")->SubCats()->Empty());
        EXPECT_EQ(File(L"Rock"), "none");
        EXPECT_EQ(boxes, Boxes());
    }
};

TEST_F(OwedDeletionTest, ALaterSaveDeletesTheFile)
{
    DeleteTheLevel();
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_NE(File(L"Rock"), "none") << "still locked";
    Free();
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(boxes, Boxes()) << "a failing retry is logged only";
    Forget();
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_EQ(Written(), Lines{L"Pop"});
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"Rock.sif"), std::wstring::npos) << "owed no more";
    ExpectNoLevelAfterARestart();
}

TEST_F(OwedDeletionTest, APickDeletesTheFile)
{
    DeleteTheLevel();
    Free();
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cLib.cSchedMan->SetRotatesAllowed(true);
    cLib.Pick(L"Pop\t1");
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(File(L"Pop"), SifCut("p2", 1) + SifCut("p1", 1));
}

TEST_F(OwedDeletionTest, TheEndDeletesTheFile)
{
    DeleteTheLevel();
    ExpectNoLevelAfterARestart();
}

TEST_F(OwedDeletionTest, AReloadWhileItIsLockedBringsNoLevelBack)
{
    DeleteTheLevel();
    cLib.Populate();
    EXPECT_TRUE(MainCat(L"Rock")->SubCats()->Empty());
    EXPECT_EQ(boxes, Boxes());
    ExpectNoLevelAfterARestart();
}

TEST_F(OwedDeletionTest, ASaveOfTheCategoryItselfDeletesTheFileOrTellsWhyNot)
{
    DeleteTheLevel();
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock")));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                       CriticalText(75) + L": Rock")});
    Forget();
    Free();
    EXPECT_FALSE(cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Rock"))) << "it has no records";
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(OwedDeletionTest, ALevelMadeSinceIsSavedInsteadOfDeletingTheFile)
{
    DeleteTheLevel();
    Free();
    cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock")));
    EXPECT_EQ(File(L"Rock"), SifMarker(7));
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_EQ(File(L"Rock"), SifMarker(7));
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 7)}));
    EXPECT_EQ(File(L"Rock"), "none");
}

TEST_F(OwedDeletionTest, TheFileOfADeletedMainCategoryIsDeletedToo)
{
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    ExpectRefused();
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_NE(File(L"Rock"), "none") << "still locked";
    Free();
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(OwedDeletionTest, AMainCategoryCreatedAgainUnderAnotherCaseKeepsItsFile)
{
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}));
    ExpectRefused();
    Free();
    std::wstring sName = L"ROCK";
    EXPECT_TRUE(cLib.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(File(L"ROCK"), SifMarker(1));
    Forget();
    cLib.cSchedMan->SaveHistoryAndOrdering(MainCat(L"Pop"));
    EXPECT_EQ(File(L"ROCK"), SifMarker(1));
    EXPECT_EQ(Written(), Lines{L"Pop"});
}

} // namespace
} // namespace ravlo::test

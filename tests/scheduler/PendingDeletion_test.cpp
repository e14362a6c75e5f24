// SPDX-License-Identifier: MIT
// The order file of a category without levels that cannot be deleted at first.
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

// Rock with one level and Pop. The file of Rock cannot be deleted once the level is gone from the tree.
class PendingDeletionTest : public StationTest
{
protected:
    PendingDeletionTest()
    {
        Start(L"Rock 1: r1 r2 | Pop 1: p1 p2");
        cLib.cSchedMan->SaveCatNames(); // Rock without cuts is known by the list alone
        Forget();
        cLib.cHost.OnEvent = [this](const std::wstring& sLine) {
            if (sLine == L"Done: Deleted Rock 1")
                SetReadOnly(L"Rock");
        };
    }
    // Deletes Rock or its level, whose file stays.
    void Delete(const std::shared_ptr<clsCat>& cCat)
    {
        EXPECT_FALSE(cLib.cSchedMan->DeleteCats({cCat}));
        EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in DeleteCats [cSchedMan]", CriticalText(75))});
        EXPECT_EQ(SifWithoutGuards(File(L"Rock")), SifCuts("r1 r2"));
        Forget();
    }
    void Free() { SetReadOnly(L"Rock", false); }
    // A save of another category retries the deletion, quietly, until it succeeds.
    void ExpectDeletedByALaterSave()
    {
        cLib.Save(L"Pop");
        EXPECT_NE(File(L"Rock"), "none") << "still locked";
        Free();
        WaitForRetry();
        cLib.Save(L"Pop");
        EXPECT_EQ(File(L"Rock"), "none");
        cPorts.cFiles.Put(SifPath(L"Rock"), "another program's");
        WaitForRetry();
        cLib.Save(L"Pop");
        EXPECT_EQ(File(L"Rock"), "another program's") << "pending no more";
        cPorts.cFiles.Delete(SifPath(L"Rock"));
        EXPECT_EQ(boxes, Boxes());
    }
    void ExpectNoLevelAfterARestart()
    {
        Free();
        cLib.Restart();
        EXPECT_EQ(Tree(), L"Pop 1: p1 p2 | Rock");
        EXPECT_EQ(File(L"Rock"), "none");
        EXPECT_EQ(boxes, Boxes());
    }
};

TEST_F(PendingDeletionTest, ALaterSaveDeletesTheFile)
{
    Delete(Level(L"Rock", 1));
    ExpectDeletedByALaterSave();
    ExpectNoLevelAfterARestart();
}

TEST_F(PendingDeletionTest, ALaterSaveDeletesTheFileOfADeletedMainCategoryToo)
{
    Delete(MainCat(L"Rock"));
    ExpectDeletedByALaterSave();
}

TEST_F(PendingDeletionTest, APickDeletesTheFile)
{
    Delete(Level(L"Rock", 1));
    Free();
    WaitForRetry();
    cLib.cSchedMan->SetRotatesAllowed(true);
    cLib.Pick(L"Pop\t1");
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(File(L"Pop"), SifCuts("p2 p1"));
}

TEST_F(PendingDeletionTest, NeitherAReloadNorTheEndBringsTheLevelBack)
{
    Delete(Level(L"Rock", 1));
    cLib.Populate(); // while the file is locked
    EXPECT_TRUE(MainCat(L"Rock")->SubCats()->Empty());
    EXPECT_EQ(boxes, Boxes());
    ExpectNoLevelAfterARestart();
}

TEST_F(PendingDeletionTest, ASaveOfTheCategoryItselfDeletesTheFileOrShowsWhyNot)
{
    Delete(Level(L"Rock", 1));
    EXPECT_FALSE(cLib.Save(L"Rock"));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                       CriticalText(75) + L": Rock")});
    Forget();
    Free();
    EXPECT_FALSE(cLib.Save(L"Rock")) << "it has no records";
    EXPECT_EQ(File(L"Rock"), "none");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(PendingDeletionTest, ALevelCreatedSinceIsSavedInsteadOfDeletingTheFile)
{
    Delete(Level(L"Rock", 1));
    Free();
    cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock")));
    cLib.Save(L"Pop");
    EXPECT_EQ(File(L"Rock"), SifMarker(7));
    EXPECT_TRUE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 7)}));
    EXPECT_EQ(File(L"Rock"), "none");
}

TEST_F(PendingDeletionTest, AMainCategoryCreatedAgainInAnotherCaseKeepsItsFile)
{
    Delete(MainCat(L"Rock"));
    Free();
    EXPECT_TRUE(cLib.CreateMainCat(L"ROCK"));
    Forget();
    cLib.Save(L"Pop");
    EXPECT_EQ(File(L"ROCK"), SifMarker(1));
    EXPECT_EQ(Written(), Lines{L"Pop"});
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "scheduler/CutRemoval.h"

#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

class CutRemovalTest : public StationTest
{
protected:
    // Returns the counts that were reported.
    std::vector<std::size_t> Remove(const std::vector<CutRemoval>& colRemovals)
    {
        std::vector<std::size_t> colDone;
        cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [&](std::size_t done) {
            colDone.push_back(done);
            if (const auto hook = OnProgress)
                hook();
        });
        return colDone;
    }
    // Every cut of the database, from one main category or from all.
    std::vector<CutRemoval> AllFrom(const std::shared_ptr<clsCat>& cMainCat) const
    {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            colRemovals.push_back({cCut, cMainCat, 0});
        return colRemovals;
    }

    std::function<void()> OnProgress;
};

TEST_F(CutRemovalTest, EachCutLeavesItsCategoriesAndEachIsSavedOnce)
{
    const auto cOne = Start(L"Rock 1: one all level stays | Pop 1: one all | Jazz 1: all");
    const auto cLevel = CutOf(L"level");
    MainCat(L"Rock")->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Rock", 2));
    PlaceToo(cLevel, L"Rock", 2);
    EXPECT_TRUE(
        Remove({{cOne, MainCat(L"Rock"), 0}, {CutOf(L"all"), nullptr, 0}, {cLevel, MainCat(L"Rock"), 2}})
            .empty());
    EXPECT_EQ(Tree(), L"Rock 1: level stays | Rock 2: | Pop 1: one | Jazz 1:");
    EXPECT_EQ(cOne->CategoryText(), L"Pop");
    EXPECT_EQ(CutOf(L"all")->CategoryText(), L"");
    EXPECT_EQ(cLevel->CategoryText(), L"Rock") << "its other level keeps the name";
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop", L"Jazz"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CutRemovalTest, NameStaysForAnotherLevelAfterAFindBySecondaryKey)
{
    const auto cCut = Start(L"Rock 1: a | Rock 2: b");
    cCut->SetSecondaryKey(L"second");
    Level(L"Rock", 2)->SchedCuts()->Add(TextKey(L"second"), cCut);
    Remove({{cCut, MainCat(L"Rock"), 2}});
    EXPECT_EQ(Order(L"Rock", 2), Keys{L"b"});
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    cLib.Restart();
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
}

TEST_F(CutRemovalTest, Every50thCutIsReportedBeforeAPump)
{
    AddMany(120, L"k", L"Rock");
    Start();
    std::vector<int> colPumps;
    OnProgress = [&] { colPumps.push_back(cPorts.cHostLoop.lPumps); };
    EXPECT_EQ(Remove(AllFrom(nullptr)), (std::vector<std::size_t>{50, 100}));
    EXPECT_EQ(colPumps, (std::vector<int>{0, 1}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
}

TEST_F(CutRemovalTest, NothingToRemoveSavesNothing)
{
    const auto cCut = Start(L"Rock 1: a");
    Remove({});
    Remove({{cCut, MainCat(L"Rock"), 9}, {nullptr, nullptr, 0}});
    EXPECT_EQ(Tree(), L"Rock 1: a");
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(said, Lines());
}

TEST_F(CutRemovalTest, CutThatRefusesIsReportedAtTheEndAndTheOthersLeave)
{
    const auto cBad = Start(L"Rock 1: bad bad2 good");
    cBad->failing = CutOf(L"bad2")->failing = {"RemoveCategoryName"};
    Remove(AllFrom(nullptr));
    EXPECT_EQ(Tree(), L"Rock 1: bad bad2");
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]",
                                        CriticalText(91) + L" (2 cuts could not be handled)")}));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
}

TEST_F(CutRemovalTest, MainCategoryThatIsGoneIsSkipped)
{
    AddMany(60, L"k", L"Rock/Pop");
    Start();
    Once(OnProgress, [&] { cLib.cSchedMan->DeleteCats({MainCat(L"Rock")}); });
    Remove(AllFrom(MainCat(L"Rock")));
    EXPECT_EQ(MainCat(L"Rock"), nullptr);
    EXPECT_EQ(Order(L"Pop", 1).size(), 60u);
    EXPECT_EQ(File(L"Rock"), "none") << "nothing of Rock is written again";
    EXPECT_EQ(boxes, Boxes());
}

} // namespace
} // namespace ravlo::test

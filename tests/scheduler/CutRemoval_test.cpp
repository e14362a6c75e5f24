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
    // The counts that were told on the way.
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
    ShownBox ErrorBox(const std::wstring& sText) const
    {
        return CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]", sText);
    }

    std::function<void()> OnProgress;
};

TEST_F(CutRemovalTest, EachCutLeavesWhatItIsToLeaveAndEachCategoryIsSavedOnce)
{
    const auto cOne = Add(L"one", L"Rock/Pop");
    const auto cAll = Add(L"all", L"Rock/Pop/Jazz");
    const auto cLevel = Add(L"level", L"Rock");
    Add(L"stays", L"Rock");
    Start();
    bool bCreated = false;
    MainCat(L"Rock")->AddSubCat(std::make_shared<clsCat>(cLib.cMod, L"Rock", 2));
    Level(L"Rock", 2)->AddCut(cLevel, bCreated);
    EXPECT_TRUE(
        Remove({{cOne, MainCat(L"Rock"), 0}, {cAll, nullptr, 0}, {cLevel, MainCat(L"Rock"), 2}}).empty());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"level", L"stays"}));
    EXPECT_EQ(Order(L"Rock", 2), Keys());
    EXPECT_EQ(Order(L"Pop", 1), (Keys{L"one"}));
    EXPECT_EQ(Order(L"Jazz", 1), Keys());
    EXPECT_EQ(cOne->CategoryText(), L"Pop");
    EXPECT_EQ(cAll->CategoryText(), L"");
    EXPECT_EQ(cLevel->CategoryText(), L"Rock") << "its other level keeps the name";
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop", L"Jazz"}));
    EXPECT_EQ(TotalOf(L"Rock", 1), 360'000);
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CutRemovalTest, NameStaysForAnotherLevelAfterAFindBySecondaryKey)
{
    const auto cCut = Add(L"a", L"Rock", 1);
    cCut->SetSecondaryKey(L"second");
    Add(L"b", L"Rock", 2);
    Start();
    Level(L"Rock", 2)->SchedCuts()->Add(TextKey(L"second"), cCut);
    Remove({{cCut, MainCat(L"Rock"), 2}});
    EXPECT_EQ(Order(L"Rock", 2), Keys{L"b"});
    EXPECT_EQ(cCut->CategoryText(), L"Rock");
    cLib.Restart();
    EXPECT_EQ(Order(L"Rock", 1), Keys{L"a"});
}

TEST_F(CutRemovalTest, EveryFiftiethCutIsReportedBeforeAPump)
{
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : AddMany(120, L"k", L"Rock"))
        colRemovals.push_back({cCut, nullptr, 0});
    Start();
    std::vector<int> colPumps;
    OnProgress = [&] { colPumps.push_back(cPorts.cHostLoop.lPumps); };
    EXPECT_EQ(Remove(colRemovals), (std::vector<std::size_t>{50, 100}));
    EXPECT_EQ(colPumps, (std::vector<int>{0, 1}));
    EXPECT_EQ(Order(L"Rock", 1), Keys());
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
}

TEST_F(CutRemovalTest, NothingToRemoveSavesNothing)
{
    const auto cCut = Add(L"a", L"Rock");
    Start();
    Remove({});
    Remove({{cCut, MainCat(L"Rock"), 9}, {nullptr, nullptr, 0}});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a"}));
    EXPECT_EQ(Written(), Lines());
    EXPECT_EQ(said, Lines());
}

TEST_F(CutRemovalTest, ACutThatRefusesIsReportedAtTheEndAndTheOthersLeave)
{
    const auto cBad = Add(L"bad", L"Rock");
    const auto cBadToo = Add(L"bad too", L"Rock");
    const auto cGood = Add(L"good", L"Rock");
    Start();
    cBad->failing = cBadToo->failing = {"RemoveCategoryName"};
    Remove({{cBad, nullptr, 0}, {cBadToo, nullptr, 0}, {cGood, nullptr, 0}});
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"bad", L"bad too"}));
    EXPECT_EQ(boxes, (Boxes{ErrorBox(CriticalText(91) + L" (2 cuts could not be handled)")}));
    EXPECT_EQ(Written(), (Lines{L"Rock"}));
}

TEST_F(CutRemovalTest, MainCategoryThatIsGoneIsSkipped)
{
    std::vector<CutRemoval> colRemovals;
    const Cuts colCuts = AddMany(60, L"k", L"Rock/Pop");
    Start();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        colRemovals.push_back({cCut, MainCat(L"Rock"), 0});
    OnProgress = [&] {
        OnProgress = nullptr;
        cLib.cSchedMan->DeleteCats({MainCat(L"Rock")});
    };
    Remove(colRemovals);
    EXPECT_EQ(MainCat(L"Rock"), nullptr);
    EXPECT_EQ(Order(L"Pop", 1).size(), 60u);
    EXPECT_EQ(File(L"Rock"), "none") << "nothing of Rock is written again";
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(CutRemovalTest, NewsDuringACallIsHandledAfterwards)
{
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : AddMany(50, L"k", L"Rock"))
        colRemovals.push_back({cCut, nullptr, 0});
    Start();
    OnProgress = [&] {
        Added({Add(L"new", L"Rock")});
        EXPECT_EQ(Order(L"Rock", 1), Keys());
    };
    Remove(colRemovals);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"new"}));
}

} // namespace
} // namespace ravlo::test

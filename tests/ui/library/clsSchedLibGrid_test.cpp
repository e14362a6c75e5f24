// SPDX-License-Identifier: MIT
#include "ui/library/clsSchedLibGridPresenter.h"

#include "LibraryFakes.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

class SchedLibGridTest : public testing::TestWithParam<bool>
{
protected:
    SchedLibGridTest()
    {
        for (const wchar_t* sKey : {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"})
            window.Add(sKey, L"Rock", 1);
        window.Add(L"both", L"Rock/Jazz", 2);
        window.Add(L"alone", L"", 0);
        window.Show();
        window.Shown().clear(); // the cut without a level
    }
    clsSchedLibGridPresenter& Grid() { return window.cForm.Grid(); }

    LibraryWindowLifetime window{GetParam()};
};

TEST_P(SchedLibGridTest, TheGridGetsItsTenColumnsOnceWithRedrawOff)
{
    EXPECT_EQ(window.cGridView.colHeaders, (Lines{L"Pos", L"ID", L"Artist", L"Title", L"Dur", L"Categories",
                                                  L"Lvl", L"Year", L"Opener", L"Path"}));
    EXPECT_FALSE(window.cGridView.bRedraws.at(0));
    EXPECT_TRUE(window.cGridView.bRedraws.at(1));
    Grid().TakeGrid();
    EXPECT_EQ(window.cGridView.colHeaders.size(), 10u);
}

TEST_P(SchedLibGridTest, TheLayoutIsReadWhenTheGridIsTakenAndStoredWhenItIsLetGo)
{
    EXPECT_EQ(window.cGridView.layout.Text(), ColumnLayout().Text());
    window.cGridView.layout.SetWidth(0, 99);
    window.cForm.Closing();
    const std::wstring sStored =
        window.cPorts.cUserSettings.Get(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib", L"");
    EXPECT_EQ(sStored, window.cGridView.layout.Text());
    EXPECT_EQ(sStored.substr(0, 11), L"1|Width|99|");
    window.cGridView.layout = ColumnLayout();
    window.cForm.Opened();
    EXPECT_EQ(window.cGridView.layout.Text(), sStored);
}

TEST_P(SchedLibGridTest, CellsAreAskedOfTheCutsWhenTheyArePainted)
{
    const auto cCut = std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(1));
    cCut->lID = 7;
    cCut->SetArtist(L"A");
    cCut->SetTitle(L"T");
    cCut->SetDurationmS(125'000);
    cCut->SetYear(1984);
    Lines colCells;
    for (std::size_t column = 0; column < 10; ++column)
        colCells.push_back(Grid().CellText(1, column));
    EXPECT_EQ(colCells, (Lines{L"2", L"7", L"A", L"T", L"2:05", L"Rock", L"1", L"1984", L"N", L"2"}));
    cCut->SetOpener(true);
    EXPECT_EQ(Grid().CellText(1, 8), L"Y");
}

TEST_P(SchedLibGridTest, ShowingANodeAsksNoCutForItsTexts)
{
    const auto cCut = std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(0));
    cCut->calls.clear();
    window.ShowNode(L"Rock", 1);
    EXPECT_TRUE(cCut->calls.empty());
}

TEST_P(SchedLibGridTest, ACutThatCannotTellHasEmptyCellsButAPosition)
{
    const auto cCut = std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(0));
    cCut->failing = {"Artist"};
    EXPECT_EQ(Grid().CellText(0, 2), L"");
    EXPECT_EQ(Grid().CellText(0, 0), L"1");
    EXPECT_EQ(Grid().CellText(999, 0), L"");
}

TEST_P(SchedLibGridTest, TheCurrentRowCountsFromOneAndIsZeroForNone)
{
    EXPECT_EQ(Grid().CurrentRow(), 0);
    window.cGridView.lCurrent = 4;
    EXPECT_EQ(Grid().CurrentRow(), 5);
}

TEST_P(SchedLibGridTest, SelectionCommandsSelectAllNoneAndFlipEachRow)
{
    Grid().SelectAll();
    EXPECT_EQ(Grid().SelectedRows().size(), 10u);
    Grid().SelectNone();
    EXPECT_TRUE(Grid().SelectedRows().empty());
    window.cGridView.Select({0, 5});
    Grid().InvertSelection();
    EXPECT_EQ(Grid().SelectedRows(), (Rows{1, 2, 3, 4, 6, 7, 8, 9}));
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"2", L"3", L"4", L"5", L"7", L"8", L"both", L"alone"}));
}

TEST_P(SchedLibGridTest, TypingFindsAnArtistFromARowOnAndAroundElseATitle)
{
    std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(2))->SetArtist(L"Queen");
    std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(6))->SetArtist(L"quarryman");
    std::dynamic_pointer_cast<FakeCut>(Grid().CutAt(4))->SetTitle(L"Xanadu");
    EXPECT_EQ(Grid().FindRow(L"qu", 0), 2u);
    EXPECT_EQ(Grid().FindRow(L"QU", 3), 6u);
    EXPECT_EQ(Grid().FindRow(L"qu", 7), 2u);
    EXPECT_EQ(Grid().FindRow(L"xan", 9), 4u);
    EXPECT_EQ(Grid().FindRow(L"zz", 0), std::nullopt);
    Grid().Clear();
    EXPECT_EQ(Grid().FindRow(L"qu", 0), std::nullopt);
}

// ---- levels dragged from

TEST_P(SchedLibGridTest, InALevelTheCutsComeFromThatLevel)
{
    window.ShowNode(L"Rock", 1);
    EXPECT_TRUE(Grid().colSubCatsDraggedFrom(*window.cLibrary.cSchedMan).empty());
    window.cGridView.Select({0, 3});
    EXPECT_EQ(Grid().colSubCatsDraggedFrom(*window.cLibrary.cSchedMan),
              (Cats{window.cLibrary.Level(L"Rock", 1)}));
}

TEST_P(SchedLibGridTest, InAMainCategoryEachRowComesFromTheLevelItIsListedUnder)
{
    window.ShowNode(L"Rock", 0);
    window.cGridView.Select({7, 8});
    EXPECT_EQ(Grid().LevelAt(7), window.cLibrary.Level(L"Rock", 1));
    EXPECT_EQ(Grid().LevelAt(8), window.cLibrary.Level(L"Rock", 2));
    EXPECT_EQ(Grid().colSubCatsDraggedFrom(*window.cLibrary.cSchedMan),
              (Cats{window.cLibrary.Level(L"Rock", 1), window.cLibrary.Level(L"Rock", 2)}));
}

TEST_P(SchedLibGridTest, InAllAudioTheyAreAllLevelsTheCutsStandIn)
{
    window.cGridView.Select({8});
    EXPECT_EQ(Grid().LevelAt(8), nullptr);
    EXPECT_EQ(Grid().colSubCatsDraggedFrom(*window.cLibrary.cSchedMan),
              (Cats{window.cLibrary.Level(L"Rock", 2), window.cLibrary.Level(L"Jazz", 2)}));
}

TEST_P(SchedLibGridTest, CutsThatStandNowhereComeWithALevelOfTheirOwn)
{
    window.cGridView.Select({0, 9});
    const Cats colFrom = Grid().colSubCatsDraggedFrom(*window.cLibrary.cSchedMan);
    ASSERT_EQ(colFrom.size(), 2u);
    EXPECT_EQ(colFrom[0], window.cLibrary.Level(L"Rock", 1));
    EXPECT_EQ(colFrom[1]->CatName(), L"NOCAT");
    EXPECT_EQ(colFrom[1]->CatLevel(), 0);
    EXPECT_EQ(colFrom[1]->MainCat(), nullptr);
}

// ---- re-ordering

class ReorderTest : public SchedLibGridTest
{
protected:
    ReorderTest() { window.ShowNode(L"Rock", 1); }
    Keys Order() { return window.cLibrary.Order(L"Rock", 1); }
};

TEST_P(ReorderTest, RowsMoveInFrontOfTheRowTheyAreDroppedOn)
{
    struct Case
    {
        Rows colRows;
        std::optional<std::size_t> into;
        Keys colAfter;
    };
    const Case cases[] = {
        {{3, 4, 5}, 7, {L"1", L"2", L"3", L"7", L"4", L"5", L"6", L"8"}},
        {{3}, 4, {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}},
        {{3, 4}, 3, {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}},
        {{6, 7}, 0, {L"7", L"8", L"1", L"2", L"3", L"4", L"5", L"6"}},
        {{0, 1}, std::nullopt, {L"3", L"4", L"5", L"6", L"7", L"8", L"1", L"2"}},
    };
    for (const Case& test : cases)
    {
        LibraryWindowLifetime fresh(GetParam());
        for (const wchar_t* sKey : {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"})
            fresh.Add(sKey, L"Rock", 1);
        fresh.Show();
        fresh.ShowNode(L"Rock", 1);
        fresh.cGridView.Select(test.colRows);
        const Keys colMoved = fresh.SelectedKeys();
        fresh.DropOnRow(test.into);
        EXPECT_EQ(fresh.cLibrary.Order(L"Rock", 1), test.colAfter);
        EXPECT_EQ(fresh.RowKeys(), test.colAfter);
        EXPECT_EQ(fresh.SelectedKeys(), colMoved);
        EXPECT_EQ(fresh.cForm.Grid().CutAt(fresh.cGridView.lCurrent.value())->Key().Text(), colMoved[0]);
        const std::size_t first = fresh.cGridView.lCurrent.value();
        EXPECT_EQ(fresh.cGridView.colEnsured, (Rows{first + colMoved.size() - 1, first}))
            << "the whole block, its first row in any case";
        EXPECT_TRUE(fresh.Shown().empty());
    }
}

TEST_P(ReorderTest, TheNewOrderIsSaved)
{
    ASSERT_FALSE(window.cPorts.cFiles.FileExists(SifPath(L"Rock")));
    window.cGridView.Select({0});
    window.DropOnRow(5);
    EXPECT_TRUE(window.cPorts.cFiles.FileExists(SifPath(L"Rock")));
}

TEST_P(ReorderTest, RowMeansItsCutAfterTheRotationMovedIt)
{
    window.cLibrary.Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"1")); // 2 3 4 5 6 7 8 1
    window.cGridView.Select({7});                                              // 8
    window.DropOnRow(3);                                                       // 4
    EXPECT_EQ(Order(), (Keys{L"2", L"3", L"8", L"4", L"5", L"6", L"7", L"1"}));
}

TEST_P(ReorderTest, RowsThatAreNotConsecutiveAreRefused)
{
    window.cGridView.Select({3, 4, 6});
    window.DropOnRow(0);
    EXPECT_EQ(
        window.Shown(),
        (Boxes{OkBox(BoxIcon::Information, L"Operation Not Completed.",
                     L"When dragging and dropping multiple items in the scheduler grid for reordering, \r\n"
                     L"the items dragged from need to be in consecutive schedule order.")}));
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}));
}

TEST_P(ReorderTest, WhatWasNotDraggedFromTheGridIsRefused)
{
    window.cForm.Cuts().Dropped(LibraryCuts::Drop{false, L"", 0, L"something else"});
    EXPECT_EQ(window.Shown(),
              (Boxes{OkBox(BoxIcon::None, L"Scheduler Grid", L"Unrecognized Source for dragdrop!")}));
}

TEST_P(ReorderTest, OutsideOfOneLevelItIsRefusedEvenForOneRow)
{
    const ShownBox refusal = OkBox(
        BoxIcon::Information, L"View Inside a Category Level to Enable Dragging and Dropping In The Grid.",
        L"Dragging and dropping in the grid to change schedule order is only enabled,\r\n"
        L"or indeed makes any sense, when you are viewing within a category level.\r\n\r\n"
        L"To view inside a category level, expand the tree for the category, \r\n"
        L"and double-left click the desired category level.\r\n\r\n"
        L"Then you may drag the items around in the grid to change the schedule order.\r\n\r\n"
        L"Also, you can select multiple items and drag them into different categories in the tree.");
    for (const wchar_t* sName : {sAllAudio, L"Rock"})
    {
        window.Shown().clear();
        window.ShowNode(sName, 0);
        EXPECT_TRUE(Grid().BanOLEDrop());
        window.cGridView.Select({1});
        window.DropOnRow(0);
        EXPECT_EQ(window.Shown(), (Boxes{refusal}));
    }
    window.ShowNode(L"Rock", 1);
    EXPECT_FALSE(Grid().BanOLEDrop());
}

TEST_P(ReorderTest, KeysMoveTheSelectedRowsByOnePlaceAndStopAtTheEnds)
{
    window.cGridView.Select({1, 2});
    window.cForm.Cuts().MoveSelected(true);
    EXPECT_EQ(Order(), (Keys{L"2", L"3", L"1", L"4", L"5", L"6", L"7", L"8"}));
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"2", L"3"}));
    window.cForm.Cuts().MoveSelected(true);
    EXPECT_EQ(Order(), (Keys{L"2", L"3", L"1", L"4", L"5", L"6", L"7", L"8"}));
    window.cForm.Cuts().MoveSelected(false);
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}));
    window.cGridView.Select({6});
    window.cForm.Cuts().MoveSelected(false);
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"4", L"5", L"6", L"8", L"7"}));
    window.cForm.Cuts().MoveSelected(false);
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"4", L"5", L"6", L"8", L"7"}));
    EXPECT_TRUE(window.Shown().empty());
}

TEST_P(ReorderTest, KeysPressedDuringAMoveAreGatheredIntoOneMore)
{
    window.cGridView.Select({7});
    int lPresses = 3; // arrive while the first move runs
    window.cPorts.cHostLoop.OnPump = [&] {
        if (lPresses > 0 && lPresses-- > 0)
            window.cForm.Cuts().MoveSelected(true);
    };
    int lSaves = 0;
    window.cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) { lSaves += sLine.starts_with(L"Done"); };
    window.cForm.Cuts().MoveSelected(true);
    window.cLibrary.cHost.OnEvent = nullptr;
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"8", L"4", L"5", L"6", L"7"})) << "four places up";
    EXPECT_LE(lSaves, 3) << "fewer saves than presses";
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"8"}));
    EXPECT_EQ(window.cGridView.lCurrent, 3u);
}

TEST_P(ReorderTest, AMoveByManyPlacesStopsAtTheEnds)
{
    window.cGridView.Select({3, 4});
    Grid().MoveSelected(-10);
    EXPECT_EQ(Order(), (Keys{L"4", L"5", L"1", L"2", L"3", L"6", L"7", L"8"}));
    Grid().MoveSelected(3);
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}));
    Grid().MoveSelected(10);
    EXPECT_EQ(Order(), (Keys{L"1", L"2", L"3", L"6", L"7", L"8", L"4", L"5"}));
}

TEST_P(ReorderTest, NoInsertionLineWhereADropWouldChangeNothing)
{
    const auto WouldMove = [&](const Rows& colRows, std::optional<std::size_t> row) {
        window.cGridView.Select(colRows);
        EXPECT_TRUE(window.cForm.Cuts().DragStarted());
        const bool bMoves = Grid().DropWouldMove(row);
        window.cForm.Cuts().DragCompleted(std::nullopt);
        return bMoves;
    };
    const std::vector<bool> bExpected{true, true, false, false, false, true, true, true};
    for (std::size_t row = 0; row < bExpected.size(); ++row)
        EXPECT_EQ(WouldMove({2, 3}, row), bExpected[row]) << row;
    EXPECT_TRUE(WouldMove({2, 3}, std::nullopt));
    EXPECT_FALSE(WouldMove({7}, std::nullopt));
    EXPECT_FALSE(WouldMove({2, 4}, 0));
    EXPECT_FALSE(Grid().DropWouldMove(0)) << "nothing is dragged";
    window.ShowNode(L"Rock", 0);
    EXPECT_FALSE(WouldMove({2}, 0));
}

TEST_P(ReorderTest, TheSelectionIsReadOnceADragAndNotAtEachMoveOfTheMouse)
{
    window.cGridView.Select({2, 3});
    int lReads = 0;
    window.cGridView.OnSelectedRows = [&] { ++lReads; };
    ASSERT_TRUE(window.cForm.Cuts().DragStarted());
    for (std::size_t row = 0; row < 8; ++row)
        Grid().DropWouldMove(row);
    EXPECT_EQ(lReads, 1);
    window.cForm.Cuts().DragCompleted(std::nullopt);
}

TEST_P(ReorderTest, TheWindowIsBusyWhileItMovesAndNeverAfterwards)
{
    window.cView.bBusy.clear();
    window.cGridView.Select({0});
    window.DropOnRow(3);
    EXPECT_EQ(window.cView.bBusy, (std::vector<bool>{true, false}));
}

TEST_P(ReorderTest, ALevelThatIsGoneIsNotPlacedInto)
{
    const std::shared_ptr<clsCat> cGone = window.cLibrary.Level(L"Rock", 1);
    window.cGridView.Select({0});
    window.cLibrary.cSchedMan->DeleteCats({cGone});
    window.DropOnRow(3);
    EXPECT_FALSE(window.cForm.Tree().Find(L"Rock\t1"));
    EXPECT_EQ(Grid().CurrentCatViewing(), window.cLibrary.MainCat(L"Rock"));
}

// ---- the place on the screen

TEST_P(ReorderTest, ShowingTheSameNodeAgainKeepsSelectionCurrentRowAndPlaceByCut)
{
    window.cGridView.Select({2, 5});
    window.cGridView.lCurrent = 5;
    window.cGridView.lTop = 4;
    window.cLibrary.Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"1"));
    window.ShowNode(L"Rock", 1);
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"3", L"6"}));
    EXPECT_EQ(window.cGridView.lCurrent, 4u);
    EXPECT_EQ(window.cGridView.lTop, 3u);
}

TEST_P(ReorderTest, AfterARemovalTheRowInItsPlaceIsTheCurrentOne)
{
    window.cGridView.Select({2});
    window.cGridView.lCurrent = 2;
    window.cForm.Cuts().GridDelete();
    EXPECT_EQ(window.RowKeys(), (Keys{L"1", L"2", L"4", L"5", L"6", L"7", L"8"}));
    EXPECT_EQ(window.cGridView.lCurrent, 2u);
    window.cGridView.Select({5, 6});
    window.cGridView.lCurrent = 6;
    window.cForm.Cuts().GridDelete();
    EXPECT_EQ(window.cGridView.lCurrent, 4u) << "the last one";
    EXPECT_TRUE(Grid().SelectedRows().empty());
}

TEST_P(ReorderTest, AfterABlockIsRemovedTheRowBehindItIsTheCurrentOne)
{
    window.cGridView.Select({2, 3, 4});
    window.cGridView.lCurrent = 4;
    window.cForm.Cuts().GridDelete();
    EXPECT_EQ(window.RowKeys(), (Keys{L"1", L"2", L"6", L"7", L"8"}));
    EXPECT_EQ(window.cGridView.lCurrent, 2u);
}

TEST_P(ReorderTest, AfterAHostsPopulationRowsMoveInThePresentLevel)
{
    window.cGridView.Select({6});
    window.cLibrary.Populate();
    window.DropOnRow(0);
    EXPECT_EQ(Order()[0], L"7");
    EXPECT_EQ(window.RowKeys(), Order());
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"7"}));
}

TEST_P(ReorderTest, WhereNoRowWasCurrentNoneIsAfterwards)
{
    window.cGridView.Select({2});
    window.cForm.Cuts().GridDelete();
    EXPECT_EQ(window.cGridView.lCurrent, std::nullopt);
}

TEST_P(ReorderTest, AGridThatWasAtItsTopStaysThere)
{
    window.cGridView.Select({0});
    window.cLibrary.Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"1"));
    window.ShowNode(L"Rock", 1);
    EXPECT_EQ(window.cGridView.lTop, 0u);
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"1"}));
}

TEST_P(ReorderTest, ShowingAnotherNodeStartsAtItsTopWithNothingSelected)
{
    window.cGridView.Select({2, 5});
    window.cGridView.lTop = 4;
    window.ShowNode(L"Rock", 0);
    EXPECT_TRUE(Grid().SelectedRows().empty());
    EXPECT_EQ(window.cGridView.lTop, 0u);
}

// A host's database may hand out another object for the same cut each time.
std::string ObjectsOf(const testing::TestParamInfo<bool>& param) { return param.param ? "Fresh" : "Same"; }
INSTANTIATE_TEST_SUITE_P(Objects, SchedLibGridTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, ReorderTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

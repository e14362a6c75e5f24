// SPDX-License-Identifier: MIT
#include "ui/library/clsSchedLibGridPresenter.h"

#include "LibraryFakes.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

// Rock 1 has the cuts 1 to 8.
void FillRock(ScreenLibrary& library)
{
    for (const wchar_t* sKey : {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"})
        library.Add(sKey, L"Rock", 1);
}
// The keys of one character each.
Keys KeysOf(const std::wstring& sKeys)
{
    Keys colKeys;
    for (const wchar_t cKey : sKeys)
        colKeys.emplace_back(1, cKey);
    return colKeys;
}

class SchedLibGridTest : public ScreenLibraryTest
{
protected:
    SchedLibGridTest()
    {
        FillRock(*this);
        Add(L"both", L"Rock/Jazz", 2);
        Add(L"alone", L"", 0);
        Show();
        Shown().clear(); // the cut without a level
    }
    Cats LevelsDraggedFrom(const Rows& colRows)
    {
        cGridView.Select(colRows);
        return Grid().colSubCatsDraggedFrom(Man());
    }
};

TEST_P(SchedLibGridTest, TheGridGetsItsTenColumnsOnceWithRedrawOff)
{
    EXPECT_EQ(cGridView.colHeaders, (Lines{L"Pos", L"ID", L"Artist", L"Title", L"Dur", L"Categories", L"Lvl",
                                           L"Year", L"Opener", L"Path"}));
    EXPECT_FALSE(cGridView.bRedraws.at(0));
    EXPECT_TRUE(cGridView.bRedraws.at(1));
    Grid().TakeGrid();
    EXPECT_EQ(cGridView.colHeaders.size(), 10u);
}

TEST_P(SchedLibGridTest, TheLayoutIsLoadedOnOpeningAndStoredOnClosing)
{
    EXPECT_EQ(cGridView.layout.Text(), ColumnLayout().Text());
    cGridView.layout.SetWidth(0, 99);
    cForm.Closing();
    const std::wstring sStored =
        cPorts.cUserSettings.Get(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib", L"");
    EXPECT_EQ(sStored, cGridView.layout.Text());
    EXPECT_EQ(sStored.substr(0, 11), L"1|Width|99|");
    cGridView.layout = ColumnLayout();
    cForm.Opened();
    EXPECT_EQ(cGridView.layout.Text(), sStored);
}

TEST_P(SchedLibGridTest, CutsAreAskedForTheirTextsOnlyWhenTheyArePainted)
{
    const std::shared_ptr<FakeCut> cCut = CutInRow(1).Twin(); // the list may drop its object
    cCut->lID = 7;
    cCut->SetArtist(L"A");
    cCut->SetTitle(L"T");
    cCut->SetDurationmS(125'000);
    cCut->SetYear(1984);
    cCut->calls.clear();
    ShowNode(L"Rock", 1);
    EXPECT_TRUE(cCut->calls.empty());
    Lines colCells;
    for (std::size_t column = 0; column < 10; ++column)
        colCells.push_back(Grid().CellText(1, column));
    EXPECT_EQ(colCells, (Lines{L"2", L"7", L"A", L"T", L"2:05", L"Rock", L"1", L"1984", L"N", L"2"}));
    cCut->SetOpener(true);
    EXPECT_EQ(Grid().CellText(1, 8), L"Y");
    cCut->failing = {"Artist"};
    EXPECT_EQ(Grid().CellText(1, 2), L"") << "a cut that fails has empty cells but a position";
    EXPECT_EQ(Grid().CellText(1, 0), L"2");
    EXPECT_EQ(Grid().CellText(999, 0), L"");
}

TEST_P(SchedLibGridTest, TheCurrentRowCountsFromOneAndIsZeroForNone)
{
    EXPECT_EQ(Grid().CurrentRow(), 0);
    cGridView.current = 4;
    EXPECT_EQ(Grid().CurrentRow(), 5);
}

TEST_P(SchedLibGridTest, SelectionCommandsSelectAllNoneAndFlipEachRow)
{
    Grid().SelectAll();
    EXPECT_EQ(Grid().SelectedRows().size(), 10u);
    Grid().SelectNone();
    EXPECT_TRUE(Grid().SelectedRows().empty());
    cGridView.Select({0, 5});
    Grid().InvertSelection();
    EXPECT_EQ(Grid().SelectedRows(), (Rows{1, 2, 3, 4, 6, 7, 8, 9}));
    EXPECT_EQ(SelectedKeys(), (Keys{L"2", L"3", L"4", L"5", L"7", L"8", L"both", L"alone"}));
}

TEST_P(SchedLibGridTest, TypingFindsTheNextArtistElseATitle)
{
    CutInRow(2).SetArtist(L"Queen");
    CutInRow(6).SetArtist(L"quarryman");
    CutInRow(4).SetTitle(L"Xanadu");
    EXPECT_EQ(Grid().FindRow(L"qu", 0), 2u);
    EXPECT_EQ(Grid().FindRow(L"QU", 3), 6u);
    EXPECT_EQ(Grid().FindRow(L"qu", 7), 2u);
    EXPECT_EQ(Grid().FindRow(L"xan", 9), 4u);
    EXPECT_EQ(Grid().FindRow(L"zz", 0), std::nullopt);
    CutInRow(4).calls.clear();
    EXPECT_EQ(Grid().FindRow(L"zzz", 0), std::nullopt);
    EXPECT_EQ(Grid().FindRow(L"xa", 0), 4u);
    EXPECT_TRUE(CutInRow(4).calls.empty()) << "a cut is read once, not at each letter";
    CutInRow(4).SetTitle(L"Yes");
    cForm.RequestRefresh();
    EXPECT_EQ(Grid().FindRow(L"ye", 0), 4u);
    Grid().Clear();
    EXPECT_EQ(Grid().FindRow(L"qu", 0), std::nullopt);
}

TEST_P(SchedLibGridTest, ACutThatClearsTheListWhenAskedIsKept)
{
    const auto expectKept = [&](const char* sMember, const auto& ask) {
        auto cCut = std::make_shared<FakeCut>();
        const std::weak_ptr<FakeCut> cWeak = cCut;
        bool bKept = false;
        cCut->OnCall = [&](std::string_view sAsked) {
            if (sAsked != sMember || Grid().RowCount() == 0)
                return;
            Grid().Clear();
            bKept = !cWeak.expired();
        };
        ListedCuts listed;
        listed.colCuts.push_back(std::move(cCut));
        Grid().Show(std::move(listed));
        ask();
        EXPECT_TRUE(bKept) << sMember;
    };
    expectKept("Artist", [&] { Grid().FindRow(L"qu", 0); });
    expectKept("Key", [&] { Grid().KeyAt(0); });
}

// ---- levels dragged from

TEST_P(SchedLibGridTest, CutsComeFromTheLevelTheyAreListedUnder)
{
    ShowNode(L"Rock", 1);
    EXPECT_TRUE(LevelsDraggedFrom({}).empty());
    EXPECT_EQ(LevelsDraggedFrom({0, 3}), (Cats{Level(L"Rock", 1)}));
    ShowNode(L"Rock", 0);
    EXPECT_EQ(Grid().LevelAt(7), Level(L"Rock", 1));
    EXPECT_EQ(Grid().LevelAt(8), Level(L"Rock", 2));
    EXPECT_EQ(LevelsDraggedFrom({7, 8}), (Cats{Level(L"Rock", 1), Level(L"Rock", 2)}));
}

TEST_P(SchedLibGridTest, InAllAudioCutsComeFromAllTheirLevels)
{
    EXPECT_EQ(Grid().LevelAt(8), nullptr);
    EXPECT_EQ(LevelsDraggedFrom({8}), (Cats{Level(L"Rock", 2), Level(L"Jazz", 2)}));
    const Cats colFrom = LevelsDraggedFrom({0, 9});
    ASSERT_EQ(colFrom.size(), 2u);
    EXPECT_EQ(colFrom[0], Level(L"Rock", 1));
    EXPECT_EQ(colFrom[1]->CatName(), L"NOCAT") << "a level of its own for the cut that is in none";
    EXPECT_EQ(colFrom[1]->CatLevel(), 0);
    EXPECT_EQ(colFrom[1]->MainCat(), nullptr);
}

// ---- re-ordering

class ReorderTest : public SchedLibGridTest
{
protected:
    ReorderTest() { ShowNode(L"Rock", 1); }
    Keys Order() { return cLibrary.Order(L"Rock", 1); }
    void ExpectOrder(const std::wstring& sKeys) { EXPECT_EQ(Order(), KeysOf(sKeys)); }
    void Place(const Rows& colSelected, std::size_t current, std::size_t top)
    {
        cGridView.Select(colSelected);
        cGridView.current = current;
        cGridView.top = top;
    }
    void SendToBack(const wchar_t* sKey) { Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(sKey)); }
};

TEST_P(ReorderTest, ASelectionThatIsGoneWhenItIsBusyMovesNothing)
{
    for (void (*move)(LibraryCuts&) : {+[](LibraryCuts& cCuts) { cCuts.MoveSelected(true); },
                                       +[](LibraryCuts& cCuts) { cCuts.MoveSelectedToTop(); }})
    {
        cPorts.cHostLoop.OnPump = [this] { cGridView.Select({}); };
        cGridView.Select({3});
        move(cForm.Cuts());
        cPorts.cHostLoop.OnPump = nullptr;
        ExpectOrder(L"12345678");
        EXPECT_EQ(Shown(), Boxes());
        EXPECT_FALSE(cView.Busy());
    }
}

TEST_P(ReorderTest, RowsMoveInFrontOfTheRowTheyAreDroppedOn)
{
    const struct
    {
        Rows colRows;
        std::optional<std::size_t> into;
        const wchar_t* sAfter;
    } cases[] = {
        {{3, 4, 5}, 7, L"12374568"},
        {{3}, 4, L"12345678"},
        {{3, 4}, 3, L"12345678"},
        {{6, 7}, 0, L"78123456"},
        {{0, 1}, std::nullopt, L"34567812"},
    };
    for (const auto& test : cases)
    {
        ScreenLibrary fresh(GetParam());
        FillRock(fresh);
        fresh.Show();
        fresh.ShowNode(L"Rock", 1);
        fresh.cView.bBusy.clear();
        fresh.cGridView.Select(test.colRows);
        const Keys colMoved = fresh.SelectedKeys();
        fresh.DropOnRow(test.into);
        EXPECT_EQ(fresh.Order(L"Rock", 1), KeysOf(test.sAfter));
        EXPECT_EQ(fresh.RowKeys(), KeysOf(test.sAfter));
        EXPECT_EQ(fresh.SelectedKeys(), colMoved);
        const std::size_t first = fresh.cGridView.current.value();
        EXPECT_EQ(fresh.RowKeys()[first], colMoved[0]);
        EXPECT_EQ(fresh.cGridView.colEnsured, (Rows{first + colMoved.size() - 1, first}))
            << "the whole block, its first row in any case";
        EXPECT_TRUE(fresh.Shown().empty());
        EXPECT_EQ(fresh.cView.bBusy, (std::vector<bool>{true, false}));
    }
}

TEST_P(ReorderTest, TheNewOrderIsSaved)
{
    ASSERT_FALSE(SifSaved(L"Rock"));
    cGridView.Select({0});
    DropOnRow(5);
    EXPECT_TRUE(SifSaved(L"Rock"));
}

TEST_P(ReorderTest, ARowMeansItsCutAfterTheRotationMovedIt)
{
    SendToBack(L"1");      // 23456781
    cGridView.Select({7}); // 8
    DropOnRow(3);          // 4
    ExpectOrder(L"23845671");
}

TEST_P(ReorderTest, AfterAHostsPopulationRowsMoveInTheCurrentLevel)
{
    cGridView.Select({6});
    cLibrary.Populate();
    DropOnRow(0);
    ExpectOrder(L"71234568");
    EXPECT_EQ(RowKeys(), Order());
    EXPECT_EQ(SelectedKeys(), (Keys{L"7"}));
}

TEST_P(ReorderTest, RowsThatAreNotConsecutiveAreRefused)
{
    cGridView.Select({3, 4, 6});
    DropOnRow(0);
    EXPECT_EQ(
        Shown(),
        (Boxes{OkBox(BoxIcon::Information, L"Operation Not Completed.",
                     L"When dragging and dropping multiple items in the scheduler grid for reordering, \r\n"
                     L"the items dragged from need to be in consecutive schedule order.")}));
    ExpectOrder(L"12345678");
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
        Shown().clear();
        ShowNode(sName, 0);
        EXPECT_TRUE(Grid().BanOLEDrop());
        cGridView.Select({1});
        DropOnRow(0);
        EXPECT_EQ(Shown(), (Boxes{refusal}));
    }
    ShowNode(L"Rock", 1);
    EXPECT_FALSE(Grid().BanOLEDrop());
}

TEST_P(ReorderTest, KeysMoveTheSelectedRowsByOnePlaceAndStopAtTheEnds)
{
    const auto expectMove = [&](bool bUp, const wchar_t* sAfter) {
        CutActions().MoveSelected(bUp);
        ExpectOrder(sAfter);
    };
    cGridView.Select({1, 2});
    expectMove(true, L"23145678");
    EXPECT_EQ(SelectedKeys(), (Keys{L"2", L"3"}));
    expectMove(true, L"23145678");
    expectMove(false, L"12345678");
    cGridView.Select({6});
    expectMove(false, L"12345687");
    expectMove(false, L"12345687");
    EXPECT_TRUE(Shown().empty());
}

TEST_P(ReorderTest, KeysPressedDuringAMoveAreGatheredIntoOneMore)
{
    cGridView.Select({7});
    int lPresses = 3; // while the first move runs
    cPorts.cHostLoop.OnPump = [&] {
        if (lPresses > 0 && lPresses-- > 0)
            CutActions().MoveSelected(true);
    };
    int lSaves = 0;
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) { lSaves += sLine.starts_with(L"Done"); };
    CutActions().MoveSelected(true);
    ExpectOrder(L"12384567"); // four places up
    EXPECT_LE(lSaves, 3) << "fewer saves than presses";
    EXPECT_EQ(SelectedKeys(), (Keys{L"8"}));
    EXPECT_EQ(cGridView.current, 3u);
}

TEST_P(ReorderTest, AMoveByManyPlacesStopsAtTheEnds)
{
    cGridView.Select({3, 4});
    for (const auto& [lPlaces, sAfter] : {std::pair{-10, L"45123678"}, {3, L"12345678"}, {10, L"12367845"}})
    {
        Grid().MoveSelected(lPlaces);
        ExpectOrder(sAfter);
    }
}

TEST_P(ReorderTest, NoInsertionLineWhereADropWouldChangeNothing)
{
    const auto WouldMove = [&](const Rows& colRows, std::optional<std::size_t> row) {
        cGridView.Select(colRows);
        EXPECT_TRUE(CutActions().DragStarted());
        const bool bMoves = Grid().DropWouldMove(row);
        CutActions().DragCompleted(std::nullopt);
        return bMoves;
    };
    const std::vector<bool> bExpected{true, true, false, false, false, true, true, true};
    for (std::size_t row = 0; row < bExpected.size(); ++row)
        EXPECT_EQ(WouldMove({2, 3}, row), bExpected[row]) << row;
    EXPECT_TRUE(WouldMove({2, 3}, std::nullopt));
    EXPECT_FALSE(WouldMove({7}, std::nullopt));
    EXPECT_FALSE(WouldMove({2, 4}, 0));
    EXPECT_FALSE(Grid().DropWouldMove(0)) << "nothing is dragged";
    ShowNode(L"Rock", 0);
    EXPECT_FALSE(WouldMove({2}, 0));
}

TEST_P(ReorderTest, TheSelectionIsReadOnceADragAndNotAtEachMoveOfTheMouse)
{
    cGridView.Select({2, 3});
    int lReads = 0;
    cGridView.OnSelectedRows = [&] { ++lReads; };
    ASSERT_TRUE(CutActions().DragStarted());
    for (std::size_t row = 0; row < 8; ++row)
        Grid().DropWouldMove(row);
    EXPECT_EQ(lReads, 1);
    CutActions().DragCompleted(std::nullopt);
}

TEST_P(ReorderTest, ALevelThatIsGoneIsNotPlacedInto)
{
    const std::shared_ptr<clsCat> cGone = Level(L"Rock", 1);
    cGridView.Select({0});
    Man().DeleteCats({cGone});
    DropOnRow(3);
    EXPECT_FALSE(InTree(L"Rock\t1"));
    EXPECT_EQ(Grid().CurrentCatViewing(), MainCat(L"Rock"));
}

// ---- the place on the screen

TEST_P(ReorderTest, ShowingTheSameNodeAgainKeepsSelectionCurrentRowAndPlaceByCut)
{
    Place({2, 5}, 5, 4);
    SendToBack(L"1");
    ShowNode(L"Rock", 1);
    EXPECT_EQ(SelectedKeys(), (Keys{L"3", L"6"}));
    EXPECT_EQ(cGridView.current, 4u);
    EXPECT_EQ(cGridView.top, 3u);
    Place({0}, 0, 0);
    SendToBack(L"2");
    ShowNode(L"Rock", 1);
    EXPECT_EQ(cGridView.top, 0u) << "a grid at its top stays there";
    EXPECT_EQ(SelectedKeys(), (Keys{L"2"}));
}

TEST_P(ReorderTest, AfterARemovalTheRowInItsPlaceIsTheCurrentOne)
{
    const struct
    {
        const char* sWhat;
        Rows colRemoved;
        std::optional<std::size_t> current;
        const wchar_t* sLeft;
        std::optional<std::size_t> currentAfter;
    } cases[] = {
        {"no row was current", {0}, std::nullopt, L"2345678", std::nullopt},
        {"one row", {1}, 1, L"245678", 1},
        {"a block", {2, 3}, 3, L"2478", 2},
        {"the last rows", {2, 3}, 3, L"24", 1},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(test.sWhat);
        cGridView.Select(test.colRemoved);
        cGridView.current = test.current;
        CutActions().GridDelete();
        EXPECT_EQ(RowKeys(), KeysOf(test.sLeft));
        EXPECT_EQ(cGridView.current, test.currentAfter);
        EXPECT_TRUE(Grid().SelectedRows().empty());
    }
}

TEST_P(ReorderTest, ShowingAnotherNodeStartsAtItsTopWithNothingSelected)
{
    Place({2, 5}, 5, 4);
    ShowNode(L"Rock", 0);
    EXPECT_TRUE(Grid().SelectedRows().empty());
    EXPECT_EQ(cGridView.top, 0u);
}

INSTANTIATE_TEST_SUITE_P(Objects, SchedLibGridTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, ReorderTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "ui/library/LibraryPanes.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

// ---- showing

TEST_P(frmUILibTest, ANodeIsShownWithItsCategoryAndWhetherRowsMayBeDropped)
{
    cView.colStatus.clear();
    ShowNode(L"Rock", 1);
    EXPECT_EQ(cView.colStatus,
              (Lines{L"Collecting Database info...|", L"Finished Collecting Info.|Got 3 total.",
                     L"Populating Grid...|", L"Showing Rock 1|Showing 3 total."}));
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(Grid().CurrentCatViewing(), Level(L"Rock", 1));
    EXPECT_FALSE(Grid().BanOLEDrop());
    EXPECT_TRUE(Tree().At(Node(L"Rock", 1)).bOpen);
    EXPECT_TRUE(Tree().At(Node(L"Rock", 0)).bOpen);
    EXPECT_EQ(cView.bBusy, (std::vector<bool>{true, false}));
    ShowNode(L"Rock", 0);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(Grid().CurrentCatViewing(), MainCat(L"Rock"));
    EXPECT_TRUE(Grid().BanOLEDrop());
    cTreeView.lSelected.reset();
    cView.colStatus.clear();
    cForm.Panes().ShowSelectedNode();
    EXPECT_TRUE(cView.colStatus.empty()) << "with nothing selected, nothing happens";
}

// ---- ticks

TEST_P(frmUILibTest, TicksAreShownAsTheTreeHasThem)
{
    const Keys colRock{L"Rock\t0", L"Rock\t1", L"Rock\t2"};
    Tick(L"Rock", 0);
    EXPECT_EQ(Ticked(), colRock);
    EXPECT_TRUE(cTreeView.bChecked[Node(L"Rock", 2)]);
    EXPECT_FALSE(cTreeView.bChecked[Node(L"Jazz", 1)]);
    for (const bool bTicked : {true, false})
    {
        Do(bTicked ? mnuSelectAllTree : mnuSelectNoneTree);
        EXPECT_EQ(cTreeView.bChecked, std::vector<bool>(Tree().Count(), bTicked));
    }
    Tick(L"Jazz", 0);
    Do(mnuSelectInvertTree);
    EXPECT_TRUE(cTreeView.bChecked[0]);
    EXPECT_EQ(Ticked(), colRock);
}

TEST_P(frmUILibTest, ATickWhileSomethingRunsIsUndone)
{
    StartDrag({0});
    cTreeView.bChecked[1] = true; // as the click left the box
    cForm.Panes().NodeCheck(1, true);
    EXPECT_FALSE(cTreeView.bChecked[1]);
    EXPECT_TRUE(Ticked().empty());
    GiveUpDrag();
}

// ---- typing

class TreeSearchTest : public NewLibraryTest
{
protected:
    TreeSearchTest()
    {
        for (const wchar_t* sName : {L"mid afternoons", L"Mid Dawns", L"middays", L"morning"})
            Add(sName, sName, 1);
        Show();
    }
    bool Type(const std::wstring& sText)
    {
        bool bTaken = true;
        for (const wchar_t cTyped : sText)
        {
            cPorts.cClock.Advance(300);
            bTaken = cForm.Panes().TypeInTree(cTyped) && bTaken;
        }
        return bTaken;
    }
};

TEST_P(TreeSearchTest, ABlankBelongsToTheTextThatIsBeingTyped)
{
    EXPECT_FALSE(cForm.Panes().TypeInTree(L' '));
    EXPECT_TRUE(Type(L"mid dawns"));
    EXPECT_EQ(SelectedNode(), L"Mid Dawns\t0");
    EXPECT_TRUE(Ticked().empty());
    cPorts.cClock.Advance(1000);
    EXPECT_FALSE(cForm.Panes().TypeInTree(L' ')) << "a second later it ticks";
    EXPECT_FALSE(cForm.Panes().TypeInTree(L'\r'));
    EXPECT_EQ(SelectedNode(), L"Mid Dawns\t0");
}

TEST_P(TreeSearchTest, TheSameLetterGoesThroughAllThatBeginWithIt)
{
    Keys colSelected;
    for (int i = 0; i < 5; ++i)
    {
        Type(L"m");
        colSelected.push_back(SelectedNode());
    }
    EXPECT_EQ(colSelected, (Keys{L"mid afternoons\t0", L"Mid Dawns\t0", L"middays\t0", L"morning\t0",
                                 L"mid afternoons\t0"}));
}

TEST_P(TreeSearchTest, OnlyVisibleNodesAreFoundAndNoneLeavesTheSelection)
{
    const auto find = [&](const wchar_t* sText) {
        cPorts.cClock.Advance(2000);
        Type(sText);
        return SelectedNode();
    };
    EXPECT_EQ(find(L"1"), L"ALL AUDIO\t0");
    cForm.Panes().NodeExpanded(Node(L"Rock", 0), true);
    EXPECT_EQ(find(L"1"), L"Rock\t1");
    EXPECT_EQ(find(L"zz"), L"Rock\t1");
}

// ---- reloading and refreshing

TEST_P(frmUILibTest, AReloadKeepsTheSelectedNodeAndTheExpandedOnes)
{
    cForm.Panes().NodeExpanded(Node(L"Rock", 0), true);
    SelectNode(L"Rock", 1);
    AddLevel(L"Jazz", 9);
    cForm.ReloadAll();
    EXPECT_TRUE(InTree(L"Jazz\t9"));
    EXPECT_EQ(SelectedNode(), L"Rock\t1");
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(Tree().ExpandedKeys(), (Keys{L"ALL AUDIO\t0", L"Rock\t0"}));
    EXPECT_TRUE(std::count(cTreeView.colExpanded.begin(), cTreeView.colExpanded.end(), Node(L"Rock", 0)));
    Add(L"late", L"Rock/Pop", 1);
    Do(mnuReloadAll);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"late"})) << "the command reads the database again";
    EXPECT_TRUE(InTree(L"Pop\t1"));
    EXPECT_EQ(Grid().CurrentCatViewing(), Level(L"Rock", 1));
}

TEST_P(frmUILibTest, ADeletedNodeIsReplacedByItsMainCategoryElseTheRoot)
{
    ShowNode(L"Rock", 2);
    const auto selectedAfter = [&](const std::shared_ptr<clsCat>& cDeleted) {
        Man().DeleteCats({cDeleted});
        cForm.ReloadAll();
        return SelectedNode();
    };
    EXPECT_EQ(selectedAfter(Level(L"Rock", 2)), L"Rock\t0");
    EXPECT_EQ(selectedAfter(MainCat(L"Rock")), L"ALL AUDIO\t0");
    EXPECT_EQ(selectedAfter(MainCat(L"Jazz")), L"ALL AUDIO\t0");
    EXPECT_EQ(Grid().RowCount(), 0u);
    EXPECT_EQ(cView.colStatus.back(), L"|");
}

TEST_P(frmUILibTest, NotificationsAreShownAtOnceOrOnceWhenNothingRuns)
{
    cGridView.lFilled = 0;
    cForm.RequestRefresh();
    EXPECT_EQ(cGridView.lFilled, 1);
    StartDrag({0});
    cForm.RequestRefresh();
    cForm.RequestRefresh();
    cForm.ReloadAll();
    EXPECT_EQ(cGridView.lFilled, 1);
    GiveUpDrag();
    EXPECT_EQ(cGridView.lFilled, 2);
}

TEST_P(ShownLevelTest, NotificationsKeepWhatIsShownSelectedTickedAndExpanded)
{
    SelectNode(L"Jazz", 0); // selected, not shown
    Tick(L"Rock", 1);
    cForm.Panes().NodeExpanded(Node(L"Rock", 0), true);
    const auto expectKept = [&] {
        EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(SelectedNode(), L"Jazz\t0");
        EXPECT_EQ(Ticked(), (Keys{L"Rock\t1"}));
        EXPECT_TRUE(cTreeView.bChecked[Node(L"Rock", 1)]);
        EXPECT_EQ(Tree().ExpandedKeys(), (Keys{L"ALL AUDIO\t0", L"Rock\t0"}));
    };
    cTreeView.lShown = 0;
    cForm.RequestRefresh();
    EXPECT_EQ(cTreeView.lShown, 0) << "a tree with the same nodes";
    expectKept();
    AddLevel(L"Jazz", 9);
    cForm.RequestRefresh();
    EXPECT_EQ(cTreeView.lShown, 1);
    expectKept();
}

TEST_P(ShownLevelTest, AnEditLeavesTheListWhereItIs)
{
    SelectNode(L"Jazz", 1);
    cGridView.current = 2;
    cGridView.top = 1;
    cGridView.Select({2});
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Edit")) // the editor's OK: the database announces the change
            Announce(&DataBaseEvents::CutsModified, DataBase().colCuts[2]);
        cForm.RequestRefresh();
    };
    CutActions().CellDblClick(3, 1);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(SelectedKeys(), (Keys{L"c"}));
    EXPECT_EQ(cGridView.current, 2u);
    EXPECT_EQ(cGridView.top, 1u);
}

TEST_P(frmUILibTest, EndlessNotificationsWaitForTheUsersTurnAndEndWithTheWindow)
{
    cGridView.lFilled = 0;
    cPorts.cHostLoop.OnPump = [&] { cForm.RequestRefresh(); };
    cForm.RequestRefresh();
    EXPECT_FALSE(cView.Busy());
    EXPECT_EQ(cGridView.lFilled, 2) << "those that arrived in between, once";
    EXPECT_EQ(cView.lAskedFor, 1);
    cPorts.cHostLoop.OnPump = nullptr;
    cForm.RequestRefresh();
    EXPECT_EQ(cView.lAskedFor, 1);
    cPorts.cHostLoop.OnPump = [&] {
        cForm.RequestRefresh();
        cForm.RequestClose();
    };
    cForm.RequestRefresh();
    EXPECT_EQ(cGridView.lFilled, 4) << "none after the window is to close";
    EXPECT_EQ(cView.lAskedFor, 1);
    EXPECT_EQ(cView.lClosed, 1);
}

INSTANTIATE_TEST_SUITE_P(Objects, TreeSearchTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

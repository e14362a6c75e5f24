// SPDX-License-Identifier: MIT
#include "ui/library/frmUILibPresenter.h"

#include "LibraryFakes.h"
#include "ui/library/LibraryContents.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

// Rock has the levels 1 (a, b, c) and 2 (d), Jazz the level 1 (c, e); f is in no category.
class frmUILibTest : public testing::TestWithParam<bool>
{
protected:
    frmUILibTest() { Fill(window); }
    static void Fill(LibraryWindowLifetime& station)
    {
        station.Add(L"a", L"Rock", 1);
        station.Add(L"b", L"Rock", 1);
        station.Add(L"c", L"Rock/Jazz", 1);
        station.Add(L"d", L"Rock", 2);
        station.Add(L"e", L"Jazz", 1);
        station.Add(L"f", L"", 1);
    }
    frmUILibPresenter& Form() { return window.cForm; }
    clsSchedMan& Man() { return *window.cLibrary.cSchedMan; }
    std::wstring SelectedNode() const
    {
        return window.cTreeView.lSelected ? window.cForm.Tree().At(*window.cTreeView.lSelected).sKey : L"";
    }
    void Tick(const std::wstring& sName, std::int32_t lLevel)
    {
        Form().Panes().NodeCheck(window.Node(sName, lLevel), true);
    }
    std::vector<std::wstring> Ticked() const
    {
        std::vector<std::wstring> colKeys;
        for (const CategoryTreePresenter::Node lNode : window.cForm.Tree().Checked())
            colKeys.push_back(window.cForm.Tree().At(lNode).sKey);
        return colKeys;
    }
    bool SifSaved(const std::wstring& sName) { return window.cPorts.cFiles.FileExists(SifPath(sName)); }
    void ForgetSifs()
    {
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            if (SifSaved(sName))
                window.cPorts.cFiles.Delete(SifPath(sName));
    }

    LibraryWindowLifetime window{GetParam()};
};

// Windows of a manager, of which the category window alone does something.
class CategoryWindows final : public SchedulerWindows
{
public:
    std::function<void(CategoryRequest&)> OnCategory;
    bool LibraryExists() const override { return false; }
    bool LibraryShowing() const override { return false; }
    void ReloadLibrary() override {}
    void RefreshLibrary() override {}
    void ShowLibrary() override {}
    std::int32_t ShowCategory(CategoryRequest& request) override
    {
        OnCategory(request);
        return lNotChosen;
    }
};

// ---- opening and closing

TEST_P(frmUILibTest, WithoutAManagerABoxSaysSoAndNoWindowIsShown)
{
    window.cView.OnModal = [] { ADD_FAILURE(); };
    Form().SetSchedMan(nullptr);
    Form().ShowModalUI();
    EXPECT_EQ(window.Shown(), (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                           L"Scheduler Library needs a scheduler manager!")}));
}

TEST_P(frmUILibTest, ItOpensWithTheRootSelectedAndAllAudioShown)
{
    bool bShown = false;
    window.cView.OnModal = [&] {
        bShown = true;
        EXPECT_TRUE(Form().Showing());
        EXPECT_FALSE(window.cView.Busy());
    };
    window.Show();
    EXPECT_TRUE(bShown);
    EXPECT_FALSE(Form().Showing());
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(Form().Grid().CurrentCatViewing(), nullptr);
    EXPECT_EQ(window.cView.colStatus.back(), L"Showing All Audio|Showing 6 total.");
    EXPECT_FALSE(window.cView.lBarMax);
}

TEST_P(frmUILibTest, ItCountsAsShowingBeforeTheFirstMessagesRun)
{
    window.cLibrary.Populate();
    int lPumps = 0;
    window.cPorts.cHostLoop.OnPump = [&] {
        ++lPumps;
        EXPECT_TRUE(Form().Showing());
    };
    Form().ShowModalUI();
    EXPECT_GT(lPumps, 0);
}

TEST_P(frmUILibTest, OneThatWasNeverShownIsFilledWithoutLettingMessagesRun)
{
    window.cLibrary.Populate();
    Form().Opened();
    window.cPorts.cHostLoop.OnPump = [] { ADD_FAILURE(); };
    Form().ReloadAll();
    Form().RequestRefresh();
    EXPECT_EQ(window.RowKeys().size(), 6u);
    EXPECT_TRUE(window.cView.bBusy.empty());
}

TEST_P(frmUILibTest, AFailureWhileItOpensLeavesNoProgressBar)
{
    window.cLibrary.Populate();
    window.cLibrary.cDataBase->bAllCutsFails = true;
    window.cView.OnModal = [&] { EXPECT_FALSE(window.cView.lBarMax); };
    Form().Opened();
    Form().ShowModalUI();
    EXPECT_EQ(window.Shown(), (Boxes{HandledError(L"frmUILib.Form_Load", L"Device I/O error", L"57")}));
    EXPECT_THROW(Form().ReloadAll(), RuntimeError);
    EXPECT_FALSE(window.cView.lBarMax);
}

TEST_P(frmUILibTest, ShowingItAgainWhileItShowsBringsItToTheFront)
{
    window.cView.OnModal = [&] {
        Form().ShowModalUI();
        EXPECT_EQ(window.cView.lFront, 1);
        EXPECT_TRUE(Form().Showing());
    };
    window.Show();
    EXPECT_EQ(window.cView.lFront, 1);
}

TEST_P(frmUILibTest, ANeverPopulatedManagerShowsAnEmptyWindow)
{
    Form().Opened();
    Form().ShowModalUI();
    EXPECT_EQ(Form().Tree().Count(), 0u);
    EXPECT_EQ(Form().Grid().RowCount(), 0u);
    EXPECT_TRUE(window.Shown().empty());
    EXPECT_FALSE(window.cView.Busy());
}

TEST_P(frmUILibTest, ExitClosesTheWindow)
{
    window.Show();
    Form().Do(mnuExit);
    EXPECT_EQ(window.cView.lClosed, 1);
}

// ---- showing

TEST_P(frmUILibTest, ANodeIsShownWithItsCategoryAndTheBanThatGoesWithIt)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(Form().Grid().CurrentCatViewing(), window.cLibrary.Level(L"Rock", 1));
    EXPECT_FALSE(Form().Grid().BanOLEDrop());
    EXPECT_TRUE(Form().Tree().At(window.Node(L"Rock", 1)).bOpen);
    EXPECT_TRUE(Form().Tree().At(window.Node(L"Rock", 0)).bOpen);
    EXPECT_EQ(window.cView.bBusy, (std::vector<bool>{true, false}));
    window.ShowNode(L"Rock", 0);
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(Form().Grid().CurrentCatViewing(), window.cLibrary.MainCat(L"Rock"));
    EXPECT_TRUE(Form().Grid().BanOLEDrop());
}

TEST_P(frmUILibTest, WithNothingSelectedNothingHappens)
{
    window.Show();
    window.cTreeView.lSelected.reset();
    window.cView.colStatus.clear();
    Form().Panes().ShowSelectedNode();
    EXPECT_TRUE(window.cView.colStatus.empty());
}

TEST_P(frmUILibTest, AStationWithoutCategoriesIsPopulatedAgainFirst)
{
    window.cLibrary.cDataBase->colCuts.clear();
    window.Show();
    EXPECT_EQ(Form().Tree().Count(), 1u);
    window.Add(L"new", L"Pop", 1);
    Form().Panes().ShowSelectedNode();
    EXPECT_TRUE(Form().Tree().Find(L"Pop\t1"));
    EXPECT_EQ(window.RowKeys(), (Keys{L"new"}));
}

TEST_P(frmUILibTest, ProgressIsShownFromItsStartToItsEnd)
{
    window.Show();
    window.cView.colStatus.clear();
    window.ShowNode(L"Jazz", 1);
    EXPECT_EQ(window.cView.colStatus,
              (Lines{L"Collecting Database info...|", L"Finished Collecting Info.|Got 2 total.",
                     L"Populating Grid...|", L"Showing Jazz 1|Showing 2 total."}));
}

TEST_P(frmUILibTest, TheManagersProgressIsShownToo)
{
    window.Show();
    window.cView.colStatus.clear();
    std::vector<std::optional<std::int32_t>> colBars;
    window.cLibrary.cHost.OnEvent = [&](const std::wstring&) { colBars.push_back(window.cView.lBarMax); };
    window.cLibrary.cDataBase->Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Importing"), 9);
    window.cLibrary.cDataBase->Announce(&DataBaseEvents::Progress, std::wstring(L"so far"), 4, 9);
    EXPECT_EQ(window.cView.lBarMax, 9);
    EXPECT_EQ(window.cView.lBar, 4);
    window.cLibrary.cDataBase->Announce(&DataBaseEvents::ProgressDone, std::wstring(L"Imported"));
    EXPECT_FALSE(window.cView.lBarMax);
    EXPECT_EQ(window.cView.colStatus, (Lines{L"Importing|", L"so far|", L"Imported|"}));
    EXPECT_EQ(colBars.size(), 3u) << "the host is told as well";
}

// ---- ticks

TEST_P(frmUILibTest, ATickIsHandedDownOnTheScreen)
{
    window.Show();
    Tick(L"Rock", 0);
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t0", L"Rock\t1", L"Rock\t2"}));
    EXPECT_TRUE(window.cTreeView.bChecked[window.Node(L"Rock", 2)]);
    EXPECT_FALSE(window.cTreeView.bChecked[window.Node(L"Jazz", 1)]);
}

TEST_P(frmUILibTest, MenusTickAllNoneAndFlip)
{
    window.Show();
    Form().Do(mnuSelectAllTree);
    EXPECT_EQ(window.cTreeView.bChecked, std::vector<bool>(Form().Tree().Count(), true));
    Form().Do(mnuSelectNoneTree);
    EXPECT_EQ(window.cTreeView.bChecked, std::vector<bool>(Form().Tree().Count(), false));
    Tick(L"Jazz", 0);
    Form().Do(mnuSelectInvertTree);
    EXPECT_TRUE(window.cTreeView.bChecked[0]);
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t0", L"Rock\t1", L"Rock\t2"}));
}

TEST_P(frmUILibTest, ATickWhileSomethingRunsIsTakenBack)
{
    window.Show();
    window.cGridView.Select({0});
    ASSERT_TRUE(Form().Cuts().DragStarted());
    window.cTreeView.bChecked[1] = true; // as the click left the box
    Form().Panes().NodeCheck(1, true);
    EXPECT_FALSE(window.cTreeView.bChecked[1]);
    EXPECT_TRUE(Ticked().empty());
    Form().Cuts().DragCompleted(std::nullopt);
}

TEST_P(frmUILibTest, GridCommandsSelectRows)
{
    window.Show();
    Form().Do(mnuSelectAllGrid);
    EXPECT_EQ(Form().Grid().SelectedRows().size(), 6u);
    Form().Do(mnuSelectNoneGrid);
    EXPECT_TRUE(Form().Grid().SelectedRows().empty());
    Form().Do(mnuInvertSelectionGrid);
    EXPECT_EQ(Form().Grid().SelectedRows().size(), 6u);
}

// ---- typing in the tree

class TreeSearchTest : public frmUILibTest
{
protected:
    TreeSearchTest()
    {
        for (const wchar_t* sName : {L"mid afternoons", L"Mid Dawns", L"middays", L"morning"})
            window.Add(sName, sName, 1);
        window.Show();
    }
    bool Type(const std::wstring& sText)
    {
        bool bTaken = true;
        for (const wchar_t cTyped : sText)
        {
            window.cPorts.cClock.Advance(300);
            bTaken = Form().Panes().TypeInTree(cTyped) && bTaken;
        }
        return bTaken;
    }
};

TEST_P(TreeSearchTest, ABlankBelongsToTheTextThatIsBeingTyped)
{
    EXPECT_TRUE(Type(L"mid dawns"));
    EXPECT_EQ(SelectedNode(), L"Mid Dawns\t0");
    EXPECT_TRUE(Ticked().empty());
}

TEST_P(TreeSearchTest, ABlankByItselfAndOtherKeysAreNotTaken)
{
    EXPECT_FALSE(Form().Panes().TypeInTree(L' '));
    EXPECT_TRUE(Type(L"mid"));
    window.cPorts.cClock.Advance(1000);
    EXPECT_FALSE(Form().Panes().TypeInTree(L' ')) << "a second later it ticks";
    EXPECT_FALSE(Form().Panes().TypeInTree(L'\r'));
    EXPECT_EQ(SelectedNode(), L"mid afternoons\t0");
}

TEST_P(TreeSearchTest, TheSameLetterGoesThroughAllThatBeginWithIt)
{
    std::vector<std::wstring> colSelected;
    for (int i = 0; i < 5; ++i)
    {
        Type(L"m");
        colSelected.push_back(SelectedNode());
    }
    EXPECT_EQ(colSelected, (Keys{L"mid afternoons\t0", L"Mid Dawns\t0", L"middays\t0", L"morning\t0",
                                 L"mid afternoons\t0"}));
}

TEST_P(TreeSearchTest, OnlyNodesOnTheScreenAreFoundAndNoneLeavesTheSelection)
{
    Type(L"1");
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    Form().Panes().NodeExpanded(window.Node(L"Rock", 0), true);
    window.cPorts.cClock.Advance(2000);
    Type(L"1");
    EXPECT_EQ(SelectedNode(), L"Rock\t1");
    window.cPorts.cClock.Advance(2000);
    Type(L"zz");
    EXPECT_EQ(SelectedNode(), L"Rock\t1");
}

// ---- refreshing, saving, reloading

TEST_P(frmUILibTest, ARefreshKeepsTheSelectedNodeAndTheExpandedOnes)
{
    window.Show();
    Form().Panes().NodeExpanded(window.Node(L"Rock", 0), true);
    window.cTreeView.Select(window.Node(L"Rock", 1));
    window.cLibrary.MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(window.cLibrary.cMod, L"Jazz", 9));
    Form().ReloadAll();
    EXPECT_TRUE(Form().Tree().Find(L"Jazz\t9"));
    EXPECT_EQ(SelectedNode(), L"Rock\t1");
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(Form().Tree().ExpandedKeys(), (Keys{L"ALL AUDIO\t0", L"Rock\t0"}));
    EXPECT_TRUE(std::count(window.cTreeView.colExpanded.begin(), window.cTreeView.colExpanded.end(),
                           window.Node(L"Rock", 0)));
}

TEST_P(frmUILibTest, ASelectedNodeThatIsGoneGivesWayToItsMainCategoryElseTheRoot)
{
    window.Show();
    window.ShowNode(L"Rock", 2);
    Man().DeleteCats({window.cLibrary.Level(L"Rock", 2)});
    Form().ReloadAll();
    EXPECT_EQ(SelectedNode(), L"Rock\t0");
    Man().DeleteCats({window.cLibrary.MainCat(L"Rock")});
    Form().ReloadAll();
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    Man().DeleteCats({window.cLibrary.MainCat(L"Jazz")});
    Form().ReloadAll();
    EXPECT_EQ(Form().Grid().RowCount(), 0u);
    EXPECT_EQ(window.cView.colStatus.back(), L"|");
}

TEST_P(frmUILibTest, NewsAreShownAtOnceOrOnceWhenWhatRunsHasEnded)
{
    window.Show();
    window.cGridView.lFilled = 0;
    Form().RequestRefresh();
    EXPECT_EQ(window.cGridView.lFilled, 1);
    window.cGridView.Select({0});
    ASSERT_TRUE(Form().Cuts().DragStarted());
    Form().RequestRefresh();
    Form().RequestRefresh();
    Form().ReloadAll();
    EXPECT_EQ(window.cGridView.lFilled, 1);
    Form().Cuts().DragCompleted(std::nullopt);
    EXPECT_EQ(window.cGridView.lFilled, 2);
}

TEST_P(frmUILibTest, NewsLeaveTheShownNodeShownAndTheSelectedSelected)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cTreeView.Select(window.Node(L"Jazz", 0)); // selected, not shown
    Tick(L"Rock", 1);
    window.cTreeView.lShown = 0;
    Form().RequestRefresh();
    EXPECT_EQ(window.cTreeView.lShown, 0) << "a tree with the same nodes";
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(SelectedNode(), L"Jazz\t0");
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t1"}));
    window.cLibrary.MainCat(L"Jazz")->AddSubCat(std::make_shared<clsCat>(window.cLibrary.cMod, L"Jazz", 9));
    Form().RequestRefresh();
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(SelectedNode(), L"Jazz\t0");
}

TEST_P(frmUILibTest, AnEditLeavesTheListWhereItIs)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cTreeView.Select(window.Node(L"Jazz", 1));
    window.cGridView.lCurrent = 2;
    window.cGridView.lTop = 1;
    window.cGridView.Select({2});
    window.cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Edit")) // the editor's OK: the database announces the change
            window.cLibrary.cDataBase->Announce(&DataBaseEvents::CutsModified,
                                                Cuts{window.cLibrary.cDataBase->colCuts[2]});
        Form().RequestRefresh();
    };
    Form().Cuts().CellDblClick(3, 1);
    window.cLibrary.cHost.OnEvent = nullptr;
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"c"}));
    EXPECT_EQ(window.cGridView.lCurrent, 2u);
    EXPECT_EQ(window.cGridView.lTop, 1u);
}

TEST_P(frmUILibTest, NewsThatChangeTheTreeKeepTicksAndExpandedNodes)
{
    window.Show();
    Tick(L"Rock", 1);
    Tick(L"Jazz", 0);
    Form().Panes().NodeExpanded(window.Node(L"Rock", 0), true);
    Man().DeleteCats({window.cLibrary.Level(L"Jazz", 1)});
    Form().RequestRefresh();
    EXPECT_EQ(Ticked(), (Keys{L"Jazz\t0", L"Rock\t1"}));
    EXPECT_TRUE(window.cTreeView.bChecked[window.Node(L"Rock", 1)]);
    EXPECT_EQ(Form().Tree().ExpandedKeys(), (Keys{L"ALL AUDIO\t0", L"Rock\t0"}));
}

TEST_P(frmUILibTest, NewsThatNeverEndWaitForTheUsersTurn)
{
    window.Show();
    window.cGridView.lFilled = 0;
    window.cPorts.cHostLoop.OnPump = [&] { Form().RequestRefresh(); };
    Form().RequestRefresh();
    EXPECT_FALSE(window.cView.Busy());
    EXPECT_EQ(window.cGridView.lFilled, 2) << "and those that came in between, once";
    EXPECT_EQ(window.cView.lAskedFor, 1);
    window.cPorts.cHostLoop.OnPump = nullptr;
    Form().RequestRefresh();
    EXPECT_EQ(window.cView.lAskedFor, 1);
}

TEST_P(frmUILibTest, ClosingWaitsForWhatRuns)
{
    window.Show();
    window.cGridView.Select({0});
    ASSERT_TRUE(Form().Cuts().DragStarted());
    Form().Do(mnuExit);
    EXPECT_EQ(window.cView.lClosed, 0);
    Form().Cuts().DragCompleted(std::nullopt);
    EXPECT_EQ(window.cView.lClosed, 1);
}

TEST_P(frmUILibTest, AWindowThatIsToCloseShowsNoMoreNews)
{
    window.Show();
    window.cGridView.lFilled = 0;
    window.cPorts.cHostLoop.OnPump = [&] {
        Form().RequestRefresh(); // each time: the news never end
        Form().RequestClose();
    };
    Form().RequestRefresh();
    EXPECT_EQ(window.cGridView.lFilled, 1);
    EXPECT_EQ(window.cView.lAskedFor, 0);
    EXPECT_EQ(window.cView.lClosed, 1);
}

TEST_P(frmUILibTest, SaveWritesEveryMainCategoryAndChangesNothingShown)
{
    window.Show();
    ForgetSifs();
    window.cTreeView.lShown = 0;
    Form().Do(mnuSave);
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_TRUE(SifSaved(L"Jazz"));
    EXPECT_EQ(window.cTreeView.lShown, 0);
    EXPECT_EQ(window.cView.bBusy, (std::vector<bool>{true, false}));
}

TEST_P(frmUILibTest, APopulationDuringASaveHasItsPresentOrdersWritten)
{
    const std::wstring sOther = L"D:\\Other\\Scheduler\\History_and_Ordering\\Jazz.sif";
    window.Show();
    window.cLibrary.Level(L"Jazz", 1)->SchedCuts()->SendToBack(TextKey(L"c"));
    window.cPorts.cFiles.MakeFolders(L"D:\\Other");
    bool bOnce = false;
    window.cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!sLine.starts_with(L"Done") || std::exchange(bOnce, true))
            return;
        window.cLibrary.cDataBase->colCuts[2]->SetCategoryText(L"Rock"); // c is no longer in Jazz
        window.cLibrary.Populate(L"D:\\Other");
    };
    Form().Do(mnuSave);
    window.cLibrary.cHost.OnEvent = nullptr;
    ASSERT_TRUE(bOnce);
    ASSERT_TRUE(window.cPorts.cFiles.FileExists(sOther));
    EXPECT_EQ(window.cPorts.cFiles.Get(sOther), SifCut("e", 1)) << "the order before holds c as well";
}

TEST_P(frmUILibTest, ReloadReadsTheDatabaseAgainAndKeepsTheNode)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cLibrary.cDataBase->Add(L"late", L"Rock/Pop", 1);
    Form().Do(mnuReloadAll);
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c", L"late"}));
    EXPECT_TRUE(Form().Tree().Find(L"Pop\t1"));
    EXPECT_EQ(Form().Grid().CurrentCatViewing(), window.cLibrary.Level(L"Rock", 1));
}

// ---- creating

TEST_P(frmUILibTest, ANewCategoryAppearsAndAGivenUpOneChangesNothing)
{
    window.Show();
    window.cTreeView.lShown = 0;
    Form().Do(mnuCatNew);
    EXPECT_EQ(window.cTreeView.lShown, 0);
    window.cPorts.cMessages.Typed = {L"Pop"};
    Form().Do(mnuCatNew);
    EXPECT_TRUE(Form().Tree().Find(L"Pop\t1"));
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    EXPECT_EQ(window.cTreeView.colBrought.back(), window.Node(L"Pop", 0)) << "into view";
}

TEST_P(frmUILibTest, ANewLevelIsMadeUnderTheSelectedNodesMainCategoryAndExpanded)
{
    window.Show();
    for (const std::int32_t lSelected : {0, 2})
    {
        window.cTreeView.Select(window.Node(L"Rock", lSelected));
        window.cPorts.cMessages.Typed = {std::to_wstring(7 + lSelected)};
        Form().Do(mnuCatLevelNew);
        EXPECT_TRUE(Form().Tree().Find(CategoryKey(L"Rock", 7 + lSelected)));
        EXPECT_TRUE(Form().Tree().At(window.Node(L"Rock", 0)).bExpanded);
        EXPECT_EQ(window.cTreeView.colExpanded.back(), window.Node(L"Rock", 0));
        EXPECT_EQ(window.cTreeView.colBrought.back(), window.Node(L"Rock", 7 + lSelected)) << "into view";
    }
}

TEST_P(frmUILibTest, WhatIsCreatedLeavesShownSelectedAndTicked)
{
    CategoryWindows cWindows;
    Man().SetWindows(&cWindows);
    cWindows.OnCategory = [&](CategoryRequest&) {
        std::wstring sName = L"Soul";
        Man().CreateMainCat(sName);
    };
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cTreeView.Select(window.Node(L"Jazz", 0)); // selected, not shown
    Tick(L"Rock", 2);
    window.cPorts.cMessages.Typed = {L"Pop", L"3"};
    for (const LibraryCommand eCommand : {mnuCatNew, mnuCatLevelNew, mnuCatUI})
    {
        Form().Do(eCommand);
        EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(SelectedNode(), L"Jazz\t0");
        EXPECT_EQ(Ticked(), (Keys{L"Rock\t2"}));
        EXPECT_TRUE(window.cTreeView.bChecked[window.Node(L"Rock", 2)]);
    }
    EXPECT_TRUE(Form().Tree().Find(L"Pop\t1"));
    EXPECT_TRUE(Form().Tree().Find(L"Jazz\t3"));
    EXPECT_TRUE(Form().Tree().Find(L"Soul\t1"));
    Man().SetWindows(nullptr);
}

TEST_P(frmUILibTest, TheFirstCategoryOfAStationIsShownInItsTree)
{
    LibraryWindowLifetime empty(GetParam());
    empty.Show();
    empty.cPorts.cMessages.Typed = {L"Pop"};
    empty.cForm.Do(mnuCatNew);
    EXPECT_TRUE(empty.cForm.Tree().Find(L"Pop\t1"));
    EXPECT_EQ(empty.cTreeView.lSelected, CategoryTreePresenter::Node{0});
    EXPECT_EQ(empty.cView.colStatus.back(), L"Showing All Audio|Showing 0 total.");
}

TEST_P(frmUILibTest, ANewLevelNeedsASelectedCategory)
{
    window.Show();
    window.cTreeView.lSelected.reset();
    Form().Do(mnuCatLevelNew);
    window.cTreeView.Select(0);
    Form().Do(mnuCatLevelNew);
    EXPECT_EQ(
        window.Shown(),
        (Boxes{OkBox(BoxIcon::Information, L"Nothing Selected",
                     L"First Select a category in the tree under which to create the new Category Level"),
               OkBox(BoxIcon::Information, L"Choose Another Category In The Tree",
                     L"'ALL AUDIO' is not a valid category selection for this operation")}));
    EXPECT_TRUE(window.cPorts.cMessages.Inputs.empty());
}

// ---- shuffling and deleting

TEST_P(frmUILibTest, ShufflingAndDeletingNeedTicks)
{
    window.Show();
    Form().Do(mnuShuffle);
    Form().Do(mnuCatDelete);
    EXPECT_EQ(window.Shown(),
              (Boxes{OkBox(BoxIcon::Information, L"You Need to Check (tick) Them In The Tree.",
                           L"First, select some categories to shuffle"),
                     OkBox(BoxIcon::Information, L"First Select Some Categories To Delete In The Tree!",
                           L"There are no categories checked in the tree to delete!")}));
}

TEST_P(frmUILibTest, ShufflingAsksAndShowsTheShownNodeAgainWithItsTicks)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cTreeView.Select(window.Node(L"Jazz", 1)); // selected, not shown
    Tick(L"Rock", 1);
    window.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    ForgetSifs();
    Form().Do(mnuShuffle);
    EXPECT_EQ(window.Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"Confirm Shuffle.",
                                      L"Really shuffle these categories: Rock 1"}}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_EQ(window.RowKeys(), window.cLibrary.Order(L"Rock", 1));
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t1"}));
    EXPECT_EQ(SelectedNode(), L"Jazz\t1");
}

TEST_P(frmUILibTest, TheWindowIsNotBusyWhileShufflingAsks)
{
    window.Show();
    Tick(L"Rock", 1);
    int lAsked = 0;
    window.cPorts.cMessages.OnShown = [&] {
        ++lAsked;
        EXPECT_FALSE(window.cView.Busy());
    };
    Form().Do(mnuShuffle); // answered with No
    EXPECT_EQ(window.cView.bBusy, (std::vector<bool>{true, false})) << "showing the node again";
    window.cView.bBusy.clear();
    bool bBusyAtSave = false;
    window.cLibrary.cHost.OnEvent = [&](const std::wstring&) { bBusyAtSave = window.cView.Busy(); };
    window.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    Form().Do(mnuShuffle);
    window.cLibrary.cHost.OnEvent = nullptr;
    EXPECT_EQ(lAsked, 2);
    EXPECT_TRUE(bBusyAtSave);
    EXPECT_FALSE(window.cView.Busy());
}

TEST_P(frmUILibTest, DeletingAsksAndNoLeavesEverythingAsItWas)
{
    window.Show();
    Tick(L"Rock", 0);
    window.cTreeView.lShown = 0;
    Form().Do(mnuCatDelete);
    EXPECT_EQ(window.Shown(),
              (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"Confirm Category Deletion",
                      L"Really delete the checked categories: \r\nRock, Rock 1, Rock 2\r\n\r\n"
                      L"Any items in these categories will be removed from the categories."}}));
    EXPECT_EQ(window.cTreeView.lShown, 0);
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
    window.cPorts.cMessages.Answers = {BoxAnswer::None, BoxAnswer::Yes};
    Form().Do(mnuCatDelete);
    EXPECT_EQ(window.cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz"})) << "closed without an answer";
    Form().Do(mnuCatDelete);
    EXPECT_EQ(window.cLibrary.MainCatNames(), (Lines{L"Jazz"}));
    EXPECT_FALSE(Form().Tree().Find(L"Rock\t0"));
}

TEST_P(frmUILibTest, AVeryLongListOfCategoriesIsCutInTheQuestion)
{
    for (int lCat = 0; lCat < 40; ++lCat)
        window.Add(L"x" + std::to_wstring(lCat), L"Cat" + std::to_wstring(100 + lCat), 1);
    window.Show();
    Form().Do(mnuSelectAllTree);
    Form().Do(mnuCatDelete);
    ASSERT_EQ(window.Shown().size(), 1u);
    EXPECT_NE(window.Shown()[0].sText.find(L"... (+"), std::wstring::npos);
}

// ---- other commands

TEST_P(frmUILibTest, HelpAsksTheHost)
{
    window.Show();
    Form().Do(mnuHelp);
    EXPECT_EQ(window.cLibrary.cHost.colSaid.back(), L"Help");
}

TEST_P(frmUILibTest, TheCategoryWindowRefreshesOnlyWhenCategoriesChanged)
{
    CategoryWindows cWindows;
    Man().SetWindows(&cWindows);
    window.Show();
    window.cTreeView.lShown = 0;
    std::wstring sCaption;
    cWindows.OnCategory = [&](CategoryRequest& request) { sCaption = request.sCaption; };
    Form().Do(mnuCatUI);
    EXPECT_EQ(sCaption, L"Category Selector");
    EXPECT_EQ(window.cTreeView.lShown, 0);
    cWindows.OnCategory = [&](CategoryRequest&) {
        std::wstring sName = L"Pop";
        Man().CreateMainCat(sName);
    };
    Form().Do(mnuCatUI);
    EXPECT_EQ(window.cTreeView.lShown, 1);
    EXPECT_TRUE(Form().Tree().Find(L"Pop\t0"));
    Man().SetWindows(nullptr);
}

TEST_P(frmUILibTest, ADoubleClickEditsTheCutAndShowsTheNodeUnlessCancelled)
{
    struct Case
    {
        std::optional<std::int32_t> lAnswer;
        bool bShownAgain;
    };
    for (const Case& test : {Case{2, false}, Case{1, true}, Case{std::nullopt, true}})
    {
        LibraryWindowLifetime fresh(GetParam());
        fresh.Add(L"a", L"Rock", 1);
        fresh.Add(L"b", L"Rock", 1);
        fresh.Show();
        fresh.cView.colStatus.clear();
        fresh.cLibrary.cHost.lEditAnswer = test.lAnswer;
        fresh.cForm.Cuts().CellDblClick(2, 3);
        EXPECT_EQ(fresh.cLibrary.cHost.colSaid.back(), L"Edit b");
        EXPECT_EQ(!fresh.cView.colStatus.empty(), test.bShownAgain);
    }
}

TEST_P(frmUILibTest, AnEditThatTheDatabaseTellsOfIsShownOnce)
{
    window.Show();
    window.cView.colStatus.clear();
    window.cLibrary.cHost.OnEvent = [&](const std::wstring&) { Form().RequestRefresh(); };
    Form().Cuts().CellDblClick(1, 1);
    window.cLibrary.cHost.OnEvent = nullptr;
    EXPECT_EQ(std::count(window.cView.colStatus.begin(), window.cView.colStatus.end(),
                         L"Showing All Audio|Showing 6 total."),
              1);
}

TEST_P(frmUILibTest, ADoubleClickOnNoCellOrAMissingCutDoesNothing)
{
    window.Show();
    window.cLibrary.cHost.colSaid.clear();
    Form().Cuts().CellDblClick(0, 1);
    Form().Cuts().CellDblClick(1, 0);
    Form().Cuts().CellDblClick(7, 1);
    window.cLibrary.cDataBase->colCuts.clear();
    Form().Cuts().CellDblClick(1, 1);
    EXPECT_TRUE(window.cLibrary.cHost.colSaid.empty());
}

TEST_P(frmUILibTest, WhatTheUserDoesWhileSomethingRunsIsIgnored)
{
    window.Show();
    window.cLibrary.cHost.colSaid.clear();
    bool bOnce = false;
    window.cPorts.cHostLoop.OnPump = [&] {
        if (std::exchange(bOnce, true))
            return;
        EXPECT_TRUE(window.cView.Busy());
        Form().Do(mnuHelp);
        Form().Cuts().CellDblClick(1, 1);
        EXPECT_FALSE(Form().Cuts().DragStarted());
    };
    Form().Do(mnuSave);
    EXPECT_TRUE(bOnce);
    EXPECT_EQ(std::count(window.cLibrary.cHost.colSaid.begin(), window.cLibrary.cHost.colSaid.end(), L"Help"),
              0);
    EXPECT_EQ(
        std::count(window.cLibrary.cHost.colSaid.begin(), window.cLibrary.cHost.colSaid.end(), L"Edit a"), 0);
}

TEST_P(frmUILibTest, AnUnexpectedFailureIsShownAndTheWindowIsNotLeftDisabled)
{
    window.Show();
    window.cLibrary.cDataBase->bAllCutsFails = true;
    window.ShowNode(sAllAudio, 0);
    window.cPorts.cMessages.Typed = {L"Pop"};
    Form().Do(mnuCatNew); // all audio is shown again
    EXPECT_EQ(window.Shown(), (Boxes{HandledError(L"TvCats_DblClick", L"Device I/O error", L"57"),
                                     HandledError(L"mnuCatNew_Click", L"Device I/O error", L"57")}));
    EXPECT_FALSE(window.cView.Busy());
    EXPECT_FALSE(window.cView.lBarMax);
    window.cLibrary.cDataBase->bAllCutsFails = false;
    window.ShowNode(sAllAudio, 0);
    EXPECT_EQ(window.Shown().size(), 2u);
}

// ---- a disk that is full, a database that is not there

class FailingDiskTest : public frmUILibTest
{
protected:
    // Everything saved, Rock 1 shown with its last row selected, and from then on nothing can be written.
    FailingDiskTest()
    {
        window.Show();
        Form().Do(mnuSave);
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            colSaved.push_back(window.cPorts.cFiles.Get(SifPath(sName)));
        window.ShowNode(L"Rock", 1);
        window.cGridView.Select({2}); // c
        Lock(true);
    }
    void Lock(bool bLock)
    {
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            window.cPorts.cFiles.SetReadOnly(SifPath(sName), bLock);
        window.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", bLock);
    }
    // The window shows what the manager has, can be used, and the files are whole.
    void ExpectTrue()
    {
        EXPECT_FALSE(window.cView.Busy());
        EXPECT_FALSE(window.cView.lBarMax);
        EXPECT_FALSE(window.Shown().empty()) << "the failure is said";
        EXPECT_TRUE(Form().Tree().HasSameNodes(NodesOf(Man().colMainCats().get())));
        EXPECT_EQ(window.RowKeys(), window.cLibrary.Order(L"Rock", 1));
        EXPECT_EQ(window.cPorts.cFiles.Get(SifPath(L"Rock")), colSaved[0]);
        EXPECT_EQ(window.cPorts.cFiles.Get(SifPath(L"Jazz")), colSaved[1]);
        Form().Do(mnuHelp);
        EXPECT_EQ(window.cLibrary.cHost.colSaid.back(), L"Help") << "nothing runs any more";
    }
    std::vector<std::string> colSaved;
};

TEST_P(FailingDiskTest, DeletingACategoryLeavesTreeGridAndFilesTrue)
{
    Tick(L"Jazz", 0);
    window.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    Form().Do(mnuCatDelete);
    ExpectTrue();
}

TEST_P(FailingDiskTest, ChangesOfCutsLeaveTreeGridAndFilesTrue)
{
    window.DropOnRow(0);
    ExpectTrue();
    EXPECT_EQ(window.RowKeys(), (Keys{L"c", L"a", L"b"}));
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"c"}));
    window.cView.colChoices = {1}; // move
    window.DropOnNode(L"Rock", 2);
    ExpectTrue();
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 2), (Keys{L"d", L"c"}));
    window.cGridView.Select({0});
    Form().Cuts().GridDelete();
    ExpectTrue();
    EXPECT_EQ(window.RowKeys(), (Keys{L"b"}));
}

TEST_P(FailingDiskTest, SavingAllLeavesTreeGridAndFilesTrueAndCanBeDoneAgain)
{
    window.cLibrary.Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a"));
    window.ShowNode(L"Rock", 1);
    Form().Do(mnuSave);
    ExpectTrue();
    Lock(false);
    Form().Do(mnuSave);
    EXPECT_NE(window.cPorts.cFiles.Get(SifPath(L"Rock")), colSaved[0]);
}

TEST_P(FailingDiskTest, AReloadWhoseDatabaseFailsLeavesTreeGridAndFilesTrue)
{
    for (const bool bFails : {true, false})
    {
        window.cLibrary.cDataBase->bAllCutsFails = bFails;
        Form().Do(mnuReloadAll);
        ExpectTrue();
    }
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c"}));
}

TEST_P(frmUILibTest, TheManagerCanEndWhileTheWindowExists)
{
    window.Show();
    const std::weak_ptr<clsSchedMan> cSchedMan = window.cLibrary.cSchedMan;
    window.cLibrary.cSchedMan.reset();
    EXPECT_TRUE(cSchedMan.expired());
    Form().Do(mnuSave);
    Form().ReloadAll();
    Form().RequestRefresh();
    EXPECT_FALSE(window.cView.Busy());
}

// ---- removing

TEST_P(frmUILibTest, DeleteWithNothingSelectedSaysSo)
{
    window.Show();
    Form().Cuts().GridDelete();
    EXPECT_EQ(window.Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"First Select Some Items In The Grid!",
                                           L"There are no items selected to be remove category from!")}));
}

TEST_P(frmUILibTest, InALevelDeleteTakesTheCutsOutOfItAndSaves)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cGridView.Select({0, 2});
    ForgetSifs();
    Form().Cuts().GridDelete();
    EXPECT_TRUE(window.Shown().empty());
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"b"}));
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e"}));
    EXPECT_EQ(window.RowKeys(), (Keys{L"b"}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_FALSE(SifSaved(L"Jazz"));
    EXPECT_EQ(window.cView.bBusy.back(), false);
}

TEST_P(frmUILibTest, DeleteGoesByTheLevelThatContainsACutAndNotByItsNumber)
{
    for (const wchar_t* sShown : {L"Rock", sAllAudio})
    {
        LibraryWindowLifetime fresh(GetParam());
        Fill(fresh);
        fresh.Show();
        fresh.cLibrary.cDataBase->colCuts[3]->SetCatLevel(1); // d, which is in Rock 2
        fresh.ShowNode(sShown, 0);
        fresh.cGridView.Select({3});
        fresh.cPorts.cMessages.Answers = {BoxAnswer::Yes};
        fresh.cForm.Cuts().GridDelete();
        EXPECT_TRUE(fresh.cLibrary.Order(L"Rock", 2).empty());
        EXPECT_EQ(fresh.cLibrary.Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(fresh.cLibrary.cDataBase->colCuts[3]->CategoryText(), L"");
    }
}

TEST_P(frmUILibTest, InAllAudioDeleteAsksAndTakesTheCutsOutOfEverything)
{
    const ShownBox question{BoxIcon::Question, BoxButtons::YesNo, L"Are You Sure?",
                            L"The view is 'ALL AUDIO'.\r\n\r\n"
                            L"Continuing will remove ALL the categories from the selected items\r\n"
                            L"Really continue?"};
    window.Show();
    window.cGridView.Select({2});
    Form().Cuts().GridDelete();
    EXPECT_EQ(window.Shown(), (Boxes{question}));
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e"}));
    window.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    ForgetSifs();
    Form().Cuts().GridDelete();
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"e"}));
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_TRUE(SifSaved(L"Jazz"));
}

TEST_P(frmUILibTest, AfterAHostsPopulationDeleteTakesCutsOutOfThePresentLevel)
{
    for (const std::int32_t lLevel : {1, 0})
    {
        window.Show();
        window.ShowNode(L"Rock", lLevel);
        window.cLibrary.Populate();
        window.cGridView.Select({0});
        const std::size_t before = window.cLibrary.Order(L"Rock", 1).size();
        Form().Cuts().GridDelete();
        EXPECT_EQ(window.cLibrary.Order(L"Rock", 1).size(), before - 1);
        EXPECT_EQ(window.cLibrary.Order(L"Rock", 1)[0], lLevel == 1 ? L"b" : L"c");
    }
}

TEST_P(frmUILibTest, ACutInTwoLevelsIsSelectedInTheLevelItWas)
{
    window.Add(L"twice", L"Rock", 2);
    window.Show();
    bool bCreated = false;
    const auto cCut = window.cLibrary.cDataBase->colCuts.back();
    cCut->SetCatLevel(1);
    window.cLibrary.Level(L"Rock", 1)->AddCut(cCut, bCreated);
    window.ShowNode(L"Rock", 0);
    ASSERT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d", L"twice"}));
    window.cGridView.Select({5});
    window.cGridView.lCurrent = 5;
    Form().RequestRefresh();
    EXPECT_EQ(Form().Grid().SelectedRows(), (Rows{5}));
    EXPECT_EQ(window.cGridView.lCurrent, 5u);
    Form().Cuts().GridDelete();
    EXPECT_EQ(window.RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d"}));
    EXPECT_TRUE(Form().Grid().SelectedRows().empty()) << "the other one is not what was selected";
}

TEST_P(frmUILibTest, RemovingManyCutsReportsAndContinuesPastAFailure)
{
    for (int lCut = 0; lCut < 120; ++lCut)
        window.Add(L"m" + std::to_wstring(lCut), L"Many", 1);
    window.Show();
    window.ShowNode(L"Many", 1);
    std::dynamic_pointer_cast<FakeCut>(Form().Grid().CutAt(5))->failing = {"RemoveCategoryName"};
    window.cGridView.SelectAll(true);
    window.cView.colStatus.clear();
    Form().Cuts().GridDelete();
    EXPECT_EQ(window.cLibrary.Order(L"Many", 1), (Keys{L"m5"}));
    EXPECT_EQ((Lines{window.cView.colStatus.begin(), window.cView.colStatus.begin() + 3}),
              (Lines{L"Removing from category...|", L"Removed 50 of 120|", L"Removed 100 of 120|"}));
    ASSERT_EQ(window.Shown().size(), 1u);
    EXPECT_EQ(window.Shown()[0].sTitle, L"Error in RemoveCutFromCategory [cSchedMan]");
}

// ---- drag and drop into the tree

class DropTest : public frmUILibTest
{
protected:
    using Choices = std::deque<std::optional<std::size_t>>;
    // Shows a node, selects rows and drops them.
    static void Drop(LibraryWindowLifetime& in, const std::wstring& sName, std::int32_t lLevel,
                     const Rows& colRows, const std::wstring& sTo, std::int32_t lTo, Choices colChoices)
    {
        in.Show();
        in.ShowNode(sName, lLevel);
        in.cGridView.Select(colRows);
        in.cView.colChoices = std::move(colChoices);
        in.DropOnNode(sTo, lTo);
    }
    void DropFrom(const std::wstring& sName, std::int32_t lLevel, const Rows& colRows,
                  const std::wstring& sTo, std::int32_t lTo, Choices colChoices)
    {
        Drop(window, sName, lLevel, colRows, sTo, lTo, std::move(colChoices));
    }
    // Shows Rock 1, keeps its first cut for a Paste and selects Jazz 1.
    void CopyFirstOfRock()
    {
        window.Show();
        window.ShowNode(L"Rock", 1);
        window.cGridView.Select({0});
        Form().Cuts().CopySelection();
        window.cTreeView.Select(window.Node(L"Jazz", 1));
    }
    void PasteIntoJazz(std::size_t choice)
    {
        window.cTreeView.Select(window.Node(L"Jazz", 1));
        window.cView.colChoices = {choice};
        Form().Cuts().Paste();
    }
    void TakeOutOfTheDatabase(std::size_t lCut)
    {
        FakeDataBase& cDataBase = *window.cLibrary.cDataBase;
        const std::shared_ptr<Cut> cCut = cDataBase.colCuts[lCut];
        cDataBase.Remove(*cCut);
        cDataBase.Announce(&DataBaseEvents::CutsRemoved, Cuts{cCut});
    }
    const ShownBox refusal = OkBox(
        BoxIcon::Information, L"Multiple Category Levels Not Allowed!",
        L"Items can only be in one category level,even though they may be in multiple categories.\r\n\r\n"
        L"Copying the items to this level is therefore not permitted.\r\n\r\n"
        L"You DO have the option to move the items to this level,\r\n"
        L"in which case this will change the level for EVERY category the items are in.");
    enum Choice : std::size_t
    {
        eCopy,
        eMove,
        eExclusive,
        eGiveUp
    };
};

TEST_P(DropTest, AllAudioIsNoTarget)
{
    DropFrom(L"Rock", 1, {0}, sAllAudio, 0, {});
    EXPECT_EQ(window.Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"Invalid Drop!",
                                           L"It's not valid to drop into 'ALL AUDIO'")}));
    EXPECT_TRUE(window.cView.colPopUps.empty());
}

TEST_P(DropTest, PopUpsNameTheTargetAndAMainCategorysLevelIsChosenFirst)
{
    const Items levels{L"Drop Into: Rock, keeping levels the same", L"Drop Into Rock Level 1",
                       L"Drop Into Rock Level 2"};
    const Items intoLevel{L"Copy Into Rock 2", L"Move Into Rock 2", L"Move Exclusive Into Rock 2", L"Cancel"};
    const Items intoMain{L"Copy Into Rock", L"Move Into Rock", L"Move Exclusive Into Rock", L"Cancel"};
    DropFrom(L"Rock", 1, {0}, L"Rock", 2, {});
    EXPECT_EQ(window.cView.colPopUps, (std::vector<Items>{intoLevel}));
    window.cView.colPopUps.clear();
    DropFrom(L"Rock", 1, {0}, L"Rock", 0, {2, std::nullopt});
    EXPECT_EQ(window.cView.colPopUps, (std::vector<Items>{levels, intoLevel}));
    window.cView.colPopUps.clear();
    DropFrom(L"Rock", 1, {0}, L"Rock", 0, {0, std::nullopt});
    EXPECT_EQ(window.cView.colPopUps, (std::vector<Items>{levels, intoMain}));
}

TEST_P(DropTest, EachChoiceCopiesOrMovesUnderItsRules)
{
    struct Node
    {
        const wchar_t* sName;
        std::int32_t lLevel;
    };
    const Node all{sAllAudio, 0}, rock{L"Rock", 0}, rock1{L"Rock", 1}, rock2{L"Rock", 2}, jazz{L"Jazz", 0},
        jazz1{L"Jazz", 1};
    const Keys abc{L"a", L"b", L"c"}, ab{L"a", L"b"}, d{L"d"}, dc{L"d", L"c"}, ce{L"c", L"e"};
    const struct
    {
        const char* what;
        Node from;
        Rows colRows;
        Node to;
        Choices colChoices;
        Keys inRock1, inRock2, inJazz1, inJazz2;
        bool bRefused = false;
    } cases[] = {
        {"levels kept", rock, {0, 3}, jazz, {0, eCopy}, abc, d, {L"c", L"e", L"a"}, d},
        {"copied into the same number", rock1, {1}, jazz1, {eCopy}, abc, d, {L"c", L"e", L"b"}, {}},
        {"copied into another number", rock1, {2}, rock2, {eCopy}, abc, d, ce, {}, true},
        {"copied from several levels", rock, {0, 3}, jazz1, {eCopy}, abc, d, ce, {}, true},
        {"moved: in every category", rock1, {2}, rock2, {eMove}, ab, dc, {L"e"}, {L"c"}},
        {"moved out of all audio: out of all its levels", all, {2}, rock2, {eMove}, ab, dc, {L"e"}, {}},
        {"moved exclusively", rock1, {2}, rock2, {eExclusive}, ab, dc, {L"e"}, {}},
        {"of no category, another number", all, {5}, rock2, {eCopy}, abc, d, ce, {}, true},
        {"of no category, its own number", all, {5}, jazz1, {eCopy}, abc, d, {L"c", L"e", L"f"}, {}},
        {"of no category, moved", all, {5}, rock2, {eMove}, abc, {L"d", L"f"}, ce, {}},
        {"the first pop-up dismissed", rock1, {0}, jazz, {std::nullopt}, abc, d, ce, {}},
        {"the second pop-up dismissed", rock1, {0}, jazz, {1, std::nullopt}, abc, d, ce, {}},
        {"cancelled", rock1, {0}, jazz, {1, eGiveUp}, abc, d, ce, {}},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(test.what);
        LibraryWindowLifetime fresh(GetParam());
        Fill(fresh);
        Drop(fresh, test.from.sName, test.from.lLevel, test.colRows, test.to.sName, test.to.lLevel,
             test.colChoices);
        EXPECT_EQ(fresh.cLibrary.Order(L"Rock", 1), test.inRock1);
        EXPECT_EQ(fresh.cLibrary.Order(L"Rock", 2), test.inRock2);
        EXPECT_EQ(fresh.cLibrary.Order(L"Jazz", 1), test.inJazz1);
        EXPECT_EQ(fresh.cLibrary.Order(L"Jazz", 2), test.inJazz2);
        EXPECT_EQ(fresh.Shown(), test.bRefused ? Boxes{refusal} : Boxes{});
        EXPECT_EQ(fresh.RowKeys().size(),
                  fresh.cForm.Grid().CurrentCatViewing()
                      ? static_cast<std::size_t>(fresh.cForm.Grid().CurrentCatViewing()->TotalCuts())
                      : 6u)
            << "the shown node again";
        EXPECT_FALSE(fresh.cView.Busy());
    }
}

TEST_P(DropTest, ALevelThatADropMakesComesIntoView)
{
    DropFrom(L"Rock", 0, {0, 3}, L"Jazz", 0, {0, eCopy});
    EXPECT_EQ(window.cTreeView.colBrought, (std::vector{window.Node(L"Jazz", 2)}));
    EXPECT_TRUE(Form().Tree().At(window.Node(L"Jazz", 0)).bExpanded);
    EXPECT_EQ(window.cTreeView.colExpanded.back(), window.Node(L"Jazz", 0));
    EXPECT_EQ(SelectedNode(), L"Rock\t0");
}

TEST_P(DropTest, ALevelMadeElsewhereLeavesTheTreeWhereItIs)
{
    DropFrom(L"Rock", 1, {2}, L"Rock", 2, {eMove}); // "c" is in Jazz as well
    EXPECT_TRUE(Form().Tree().Find(L"Jazz\t2"));
    EXPECT_TRUE(window.cTreeView.colBrought.empty());
    EXPECT_FALSE(Form().Tree().At(window.Node(L"Jazz", 0)).bExpanded);
}

TEST_P(DropTest, NextToTheNodesNothingHappens)
{
    window.Show();
    window.cGridView.Select({0});
    ASSERT_TRUE(Form().Cuts().DragStarted());
    Form().Cuts().DragCompleted(LibraryCuts::Drop{true, L"", std::nullopt, sGridPayload});
    Form().Cuts().Dropped({true, L"", std::nullopt, sGridPayload});
    EXPECT_TRUE(window.cView.colPopUps.empty());
    EXPECT_TRUE(window.Shown().empty());
}

TEST_P(DropTest, ADragFromElsewhereIsRefusedWithAnyText)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cGridView.Select({0});
    for (const wchar_t* sText : {sGridPayload, L"something else"})
        for (const bool bOnTree : {true, false})
        {
            window.Shown().clear();
            Form().Cuts().Dropped({bOnTree, bOnTree ? L"Jazz\t1" : L"", std::nullopt, sText});
            EXPECT_EQ(window.Shown(),
                      (Boxes{OkBox(BoxIcon::None, L"Scheduler Grid", L"Unrecognized Source for dragdrop!")}));
        }
    EXPECT_TRUE(window.cView.colPopUps.empty());
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

TEST_P(DropTest, AfterADropTheListOfAllAudioKeepsItsSelection)
{
    DropFrom(sAllAudio, 0, {2}, L"Rock", 2, {eMove});
    EXPECT_EQ(window.SelectedKeys(), (Keys{L"c"}));
}

TEST_P(DropTest, APastedCutIsComparedByTheNumberItHasWhenItIsPasted)
{
    CopyFirstOfRock();
    const std::shared_ptr<Cut> cCut = window.cLibrary.cDataBase->colCuts[0];
    cCut->SetCatLevel(2);
    window.cLibrary.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cCut});
    ASSERT_EQ(window.cLibrary.Order(L"Rock", 2), (Keys{L"d", L"a"}));
    PasteIntoJazz(eCopy);
    EXPECT_EQ(window.Shown(), (Boxes{refusal}));
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, ASecondMoveByPasteLeavesWhereTheFirstOneWent)
{
    CopyFirstOfRock();
    window.cView.colChoices = {eMove, eMove};
    Form().Cuts().Paste();
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"}));
    window.cTreeView.Select(window.Node(L"Rock", 2));
    Form().Cuts().Paste();
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 2), (Keys{L"d", L"a"}));
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, APopulationDuringThePopUpDoesNotStopTheDrop)
{
    window.cView.OnPopUp = [&] { window.cLibrary.Populate(); };
    DropFrom(L"Rock", 1, {0}, L"Jazz", 1, {eMove});
    EXPECT_TRUE(window.Shown().empty());
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"}));
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"b", L"c"}));
}

TEST_P(DropTest, TheCutsAreThoseSelectedBeforeThePopUpsOpened)
{
    window.cView.OnPopUp = [&] { window.cGridView.Select({1}); };
    DropFrom(L"Rock", 1, {0}, L"Jazz", 1, {eCopy});
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"}));
}

TEST_P(DropTest, AFailureWhileGatheringTheLevelsEndsTheDropWithAReport)
{
    window.cView.OnPopUp = [] { ADD_FAILURE(); };
    window.Show();
    window.cGridView.Select({0});
    ASSERT_TRUE(Form().Cuts().DragStarted());
    window.cGridView.OnSelectedRows = [] { throw RuntimeError(error::InvalidProcedureCall); };
    Form().Cuts().DragCompleted(LibraryCuts::Drop{true, L"Jazz\t1", std::nullopt, sGridPayload});
    EXPECT_EQ(window.Shown(), (Boxes{HandledError(L"Error occurred in dragdrop",
                                                  L"Invalid procedure call or argument", L"5")}));
}

TEST_P(DropTest, AnUnexpectedFailureIsSaidAndTheBusyStateIsCleared)
{
    window.cView.OnPopUp = [] { throw RuntimeError(error::DeviceIo); };
    DropFrom(L"Rock", 1, {0}, L"Jazz", 1, {});
    EXPECT_EQ(window.Shown(), (Boxes{CriticalBox(L"RavloScheduler", L"An Error occurred.")}));
    EXPECT_FALSE(window.cView.Busy());
    window.cView.OnPopUp = nullptr;
    Form().Do(mnuHelp);
    EXPECT_EQ(window.cLibrary.cHost.colSaid.back(), L"Help");
}

TEST_P(DropTest, ACategoryDeletedWhileThePopUpIsOpenIsNotPlacedInto)
{
    window.cView.OnPopUp = [&] { Man().DeleteCats({window.cLibrary.MainCat(L"Jazz")}); };
    DropFrom(L"Rock", 1, {0}, L"Jazz", 1, {eCopy});
    ASSERT_EQ(window.Shown().size(), 1u);
    EXPECT_EQ(window.Shown()[0].sTitle, L"Error in DoMassCatChange [cSchedMan]");
    EXPECT_EQ(window.cLibrary.cDataBase->colCuts[0]->CategoryText(), L"Rock");
}

TEST_P(DropTest, ACutThatLeavesTheDatabaseDuringThePopUpIsNotPlacedAgain)
{
    window.cView.OnPopUp = [&] { TakeOutOfTheDatabase(0); };
    DropFrom(L"Rock", 1, {0, 1}, L"Jazz", 1, {eCopy});
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"b"}));
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"b", L"c"}));
}

TEST_P(DropTest, ACutThatLeavesTheDatabaseBeforeItIsPastedIsNotPlacedAgain)
{
    CopyFirstOfRock();
    TakeOutOfTheDatabase(0);
    PasteIntoJazz(eMove);
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, APasteTakesWhatWasCopiedOutOfTheLevelsItIsInNow)
{
    CopyFirstOfRock();
    window.cGridView.Select({1});
    PasteIntoJazz(eCopy);
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"})) << "not what is selected now";
    CopyFirstOfRock();
    Form().Do(mnuReloadAll);
    PasteIntoJazz(eMove);
    EXPECT_EQ(window.cLibrary.Order(L"Rock", 1), (Keys{L"b", L"c"})) << "after a reload";
    Man().DeleteCats({window.cLibrary.MainCat(L"Rock")});
    PasteIntoJazz(eMove);
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"})) << "with its level gone";
    EXPECT_EQ(window.cLibrary.MainCatNames(), (Lines{L"Jazz"}));
}

TEST_P(DropTest, PastingNothingAsksNothing)
{
    window.Show();
    Form().Cuts().Paste();
    EXPECT_TRUE(window.cView.colPopUps.empty());
}

TEST_P(DropTest, NothingSelectedIsNothingToDrag)
{
    window.Show();
    EXPECT_FALSE(Form().Cuts().DragStarted());
    window.cGridView.Select({0});
    EXPECT_TRUE(Form().Cuts().DragStarted());
    EXPECT_FALSE(Form().Cuts().DragStarted());
    Form().Cuts().DragCompleted(std::nullopt);
}

TEST_P(DropTest, ARefreshAskedForDuringTheDragComesAfterTheDrop)
{
    window.Show();
    window.ShowNode(L"Rock", 1);
    window.cGridView.Select({0});
    window.cGridView.lFilled = 0;
    ASSERT_TRUE(Form().Cuts().DragStarted());
    Form().RequestRefresh();
    window.cView.colChoices = {eCopy};
    window.cView.OnPopUp = [&] { EXPECT_EQ(window.cGridView.lFilled, 0); };
    Form().Cuts().DragCompleted(LibraryCuts::Drop{true, L"Jazz\t1", std::nullopt, sGridPayload});
    EXPECT_EQ(window.cGridView.lFilled, 2);
    EXPECT_EQ(window.cLibrary.Order(L"Jazz", 1), (Keys{L"c", L"e", L"a"}));
}

// A host's database may hand out another object for the same cut each time.
std::string ObjectsOf(const testing::TestParamInfo<bool>& param) { return param.param ? "Fresh" : "Same"; }
INSTANTIATE_TEST_SUITE_P(Objects, frmUILibTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, FailingDiskTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, TreeSearchTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, DropTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

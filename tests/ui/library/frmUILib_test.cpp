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
void Fill(ScreenLibrary& library)
{
    library.Add(L"a", L"Rock", 1);
    library.Add(L"b", L"Rock", 1);
    library.Add(L"c", L"Rock/Jazz", 1);
    library.Add(L"d", L"Rock", 2);
    library.Add(L"e", L"Jazz", 1);
    library.Add(L"f", L"", 1);
}

// The window before it is shown.
class NewLibraryTest : public ScreenLibraryTest
{
protected:
    NewLibraryTest() { Fill(*this); }

    void Do(LibraryCommand eCommand) { cForm.Do(eCommand); }
    void Tick(const std::wstring& sName, std::int32_t lLevel)
    {
        cForm.Panes().NodeCheck(Node(sName, lLevel), true);
    }
    Keys Ticked() const
    {
        Keys colKeys;
        for (const CategoryTreePresenter::Node lNode : Tree().Checked())
            colKeys.push_back(Tree().At(lNode).sKey);
        return colKeys;
    }
    void AddLevel(const std::wstring& sName, std::int32_t lLevel)
    {
        MainCat(sName)->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, sName, lLevel));
    }
    void ForgetSifs()
    {
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            if (SifSaved(sName))
                cPorts.cFiles.Delete(SifPath(sName));
    }
    void ExpectIdle()
    {
        EXPECT_FALSE(cView.Busy());
        EXPECT_FALSE(cView.lBarMax);
        Do(mnuHelp);
        EXPECT_EQ(Said().back(), L"Help") << "nothing runs any more";
    }
};

// The window shows all audio.
class frmUILibTest : public NewLibraryTest
{
protected:
    frmUILibTest() { Show(); }
};

// Rock 1 is shown.
class ShownLevelTest : public frmUILibTest
{
protected:
    ShownLevelTest() { ShowNode(L"Rock", 1); }
};

// Windows of a manager, of which only the category window does something.
class CategoryWindows final : public SchedulerWindows
{
public:
    explicit CategoryWindows(clsSchedMan& cSchedMan) : m_cSchedMan(cSchedMan)
    {
        m_cSchedMan.SetWindows(this);
    }
    ~CategoryWindows() { m_cSchedMan.SetWindows(nullptr); }
    CategoryWindows(const CategoryWindows&) = delete;
    CategoryWindows& operator=(const CategoryWindows&) = delete;

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

private:
    clsSchedMan& m_cSchedMan;
};

// ---- opening and closing

TEST_P(NewLibraryTest, WithoutAManagerABoxSaysSoAndNoWindowIsShown)
{
    cView.OnModal = [] { ADD_FAILURE(); };
    cForm.SetSchedMan(nullptr);
    cForm.ShowModalUI();
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                    L"Scheduler Library needs a scheduler manager!")}));
}

TEST_P(NewLibraryTest, ItOpensWithTheRootSelectedAndAllAudioShown)
{
    bool bShown = false;
    cView.OnModal = [&] {
        bShown = true;
        EXPECT_TRUE(cForm.Showing());
        EXPECT_FALSE(cView.Busy());
        cForm.ShowModalUI(); // again
        EXPECT_EQ(cView.lFront, 1);
        EXPECT_TRUE(cForm.Showing());
        cView.OnModal = nullptr;
    };
    Show();
    EXPECT_TRUE(bShown);
    EXPECT_FALSE(cForm.Showing());
    EXPECT_EQ(cView.lFront, 1);
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"d", L"e", L"f"}));
    EXPECT_EQ(Grid().CurrentCatViewing(), nullptr);
    EXPECT_EQ(cView.colStatus.back(), L"Showing All Audio|Showing 6 total.");
    EXPECT_FALSE(cView.lBarMax);
}

TEST_P(NewLibraryTest, ItCountsAsShowingBeforeTheFirstMessagesRun)
{
    cLibrary.Populate();
    int lPumps = 0;
    cPorts.cHostLoop.OnPump = [&] {
        ++lPumps;
        EXPECT_TRUE(cForm.Showing());
    };
    cForm.ShowModalUI();
    EXPECT_GT(lPumps, 0);
}

TEST_P(NewLibraryTest, OneThatWasNeverShownIsFilledWithoutLettingMessagesRun)
{
    cLibrary.Populate();
    cForm.Opened();
    cPorts.cHostLoop.OnPump = [] { ADD_FAILURE(); };
    cForm.ReloadAll();
    cForm.RequestRefresh();
    EXPECT_EQ(RowKeys().size(), 6u);
    EXPECT_TRUE(cView.bBusy.empty());
}

TEST_P(NewLibraryTest, AFailureWhileItOpensLeavesNoProgressBar)
{
    cLibrary.Populate();
    DataBase().bAllCutsFails = true;
    cView.OnModal = [&] { EXPECT_FALSE(cView.lBarMax); };
    cForm.Opened();
    cForm.ShowModalUI();
    EXPECT_EQ(Shown(), (Boxes{HandledError(L"frmUILib.Form_Load", L"Device I/O error", L"57")}));
    EXPECT_THROW(cForm.ReloadAll(), RuntimeError);
    EXPECT_FALSE(cView.lBarMax);
}

TEST_P(NewLibraryTest, ANeverPopulatedManagerShowsAnEmptyWindow)
{
    cForm.Opened();
    cForm.ShowModalUI();
    EXPECT_EQ(Tree().Count(), 0u);
    EXPECT_EQ(Grid().RowCount(), 0u);
    EXPECT_TRUE(Shown().empty());
    EXPECT_FALSE(cView.Busy());
}

TEST_P(NewLibraryTest, AStationWithoutCategoriesIsPopulatedAgainFirst)
{
    DataBase().colCuts.clear();
    Show();
    EXPECT_EQ(Tree().Count(), 1u);
    Add(L"new", L"Pop", 1);
    cForm.Panes().ShowSelectedNode();
    EXPECT_TRUE(InTree(L"Pop\t1"));
    EXPECT_EQ(RowKeys(), (Keys{L"new"}));
}

TEST_P(NewLibraryTest, TheFirstCategoryOfAStationIsShownInItsTree)
{
    DataBase().colCuts.clear();
    Show();
    cPorts.cMessages.Typed = {L"Pop"};
    Do(mnuCatNew);
    EXPECT_TRUE(InTree(L"Pop\t1"));
    EXPECT_EQ(cTreeView.lSelected, CategoryTreePresenter::Node{0});
    EXPECT_EQ(cView.colStatus.back(), L"Showing All Audio|Showing 0 total.");
}

TEST_P(frmUILibTest, ExitClosesTheWindowOnceNothingRuns)
{
    StartDrag({0});
    Do(mnuExit);
    EXPECT_EQ(cView.lClosed, 0);
    GiveUpDrag();
    EXPECT_EQ(cView.lClosed, 1);
    Do(mnuExit);
    EXPECT_EQ(cView.lClosed, 2);
}

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

TEST_P(frmUILibTest, TheManagersProgressIsShownToo)
{
    cView.colStatus.clear();
    Said().clear();
    DataBase().Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Importing"), 9);
    DataBase().Announce(&DataBaseEvents::Progress, std::wstring(L"so far"), 4, 9);
    EXPECT_EQ(cView.lBarMax, 9);
    EXPECT_EQ(cView.lBar, 4);
    DataBase().Announce(&DataBaseEvents::ProgressDone, std::wstring(L"Imported"));
    EXPECT_FALSE(cView.lBarMax);
    EXPECT_EQ(cView.colStatus, (Lines{L"Importing|", L"so far|", L"Imported|"}));
    EXPECT_EQ(Said().size(), 3u) << "the host receives it as well";
}

// ---- ticks

TEST_P(frmUILibTest, TicksAreShownAsTheTreeHasThem)
{
    const auto all = [&](bool bTicked) { return std::vector<bool>(Tree().Count(), bTicked); };
    Tick(L"Rock", 0);
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t0", L"Rock\t1", L"Rock\t2"}));
    EXPECT_TRUE(cTreeView.bChecked[Node(L"Rock", 2)]);
    EXPECT_FALSE(cTreeView.bChecked[Node(L"Jazz", 1)]);
    Do(mnuSelectAllTree);
    EXPECT_EQ(cTreeView.bChecked, all(true));
    Do(mnuSelectNoneTree);
    EXPECT_EQ(cTreeView.bChecked, all(false));
    Tick(L"Jazz", 0);
    Do(mnuSelectInvertTree);
    EXPECT_TRUE(cTreeView.bChecked[0]);
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t0", L"Rock\t1", L"Rock\t2"}));
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

TEST_P(frmUILibTest, GridCommandsSelectRows)
{
    for (const auto& [eCommand, rows] :
         {std::pair{mnuSelectAllGrid, 6u}, {mnuSelectNoneGrid, 0u}, {mnuInvertSelectionGrid, 6u}})
    {
        Do(eCommand);
        EXPECT_EQ(Grid().SelectedRows().size(), rows);
    }
}

// ---- typing in the tree

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

// ---- refreshing, saving, reloading

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
    cGridView.lCurrent = 2;
    cGridView.lTop = 1;
    cGridView.Select({2});
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Edit")) // the editor's OK: the database announces the change
            Announce(&DataBaseEvents::CutsModified, DataBase().colCuts[2]);
        cForm.RequestRefresh();
    };
    CutActions().CellDblClick(3, 1);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
    EXPECT_EQ(SelectedKeys(), (Keys{L"c"}));
    EXPECT_EQ(cGridView.lCurrent, 2u);
    EXPECT_EQ(cGridView.lTop, 1u);
}

TEST_P(frmUILibTest, EndlessNotificationsWaitForTheUsersTurn)
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
}

TEST_P(frmUILibTest, AWindowThatIsToCloseShowsNoMoreNotifications)
{
    cGridView.lFilled = 0;
    cPorts.cHostLoop.OnPump = [&] {
        cForm.RequestRefresh();
        cForm.RequestClose();
    };
    cForm.RequestRefresh();
    EXPECT_EQ(cGridView.lFilled, 1);
    EXPECT_EQ(cView.lAskedFor, 0);
    EXPECT_EQ(cView.lClosed, 1);
}

TEST_P(frmUILibTest, SaveWritesEveryMainCategoryAndChangesNothingShown)
{
    ForgetSifs();
    cTreeView.lShown = 0;
    Do(mnuSave);
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_TRUE(SifSaved(L"Jazz"));
    EXPECT_EQ(cTreeView.lShown, 0);
    EXPECT_EQ(cView.bBusy, (std::vector<bool>{true, false}));
}

TEST_P(frmUILibTest, APopulationDuringASaveHasItsCurrentOrdersWritten)
{
    const std::wstring sOther = L"D:\\Other\\Scheduler\\History_and_Ordering\\Jazz.sif";
    Level(L"Jazz", 1)->SchedCuts()->SendToBack(TextKey(L"c"));
    cPorts.cFiles.MakeFolders(L"D:\\Other");
    bool bOnce = false;
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!sLine.starts_with(L"Done") || std::exchange(bOnce, true))
            return;
        DataBase().colCuts[2]->SetCategoryText(L"Rock"); // c is no longer in Jazz
        cLibrary.Populate(L"D:\\Other");
    };
    Do(mnuSave);
    ASSERT_TRUE(bOnce);
    ASSERT_TRUE(cPorts.cFiles.FileExists(sOther));
    EXPECT_EQ(cPorts.cFiles.Get(sOther), SifCut("e", 1)) << "the order before contains c as well";
}

TEST_P(ShownLevelTest, ReloadReadsTheDatabaseAgainAndKeepsTheNode)
{
    Add(L"late", L"Rock/Pop", 1);
    Do(mnuReloadAll);
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"late"}));
    EXPECT_TRUE(InTree(L"Pop\t1"));
    EXPECT_EQ(Grid().CurrentCatViewing(), Level(L"Rock", 1));
}

// ---- creating

TEST_P(frmUILibTest, ANewCategoryAppearsAndACancelledOneChangesNothing)
{
    cTreeView.lShown = 0;
    Do(mnuCatNew);
    EXPECT_EQ(cTreeView.lShown, 0);
    cPorts.cMessages.Typed = {L"Pop"};
    Do(mnuCatNew);
    EXPECT_TRUE(InTree(L"Pop\t1"));
    EXPECT_EQ(SelectedNode(), L"ALL AUDIO\t0");
    EXPECT_EQ(cTreeView.colBrought.back(), Node(L"Pop", 0)) << "into view";
}

TEST_P(frmUILibTest, ANewLevelIsMadeUnderTheSelectedMainCategoryAndExpanded)
{
    for (const std::int32_t lSelected : {0, 2})
    {
        SelectNode(L"Rock", lSelected);
        cPorts.cMessages.Typed = {std::to_wstring(7 + lSelected)};
        Do(mnuCatLevelNew);
        EXPECT_TRUE(InTree(CategoryKey(L"Rock", 7 + lSelected)));
        EXPECT_TRUE(Tree().At(Node(L"Rock", 0)).bExpanded);
        EXPECT_EQ(cTreeView.colExpanded.back(), Node(L"Rock", 0));
        EXPECT_EQ(cTreeView.colBrought.back(), Node(L"Rock", 7 + lSelected)) << "into view";
    }
}

TEST_P(ShownLevelTest, WhatIsCreatedLeavesShownSelectedAndTicked)
{
    CategoryWindows cWindows(Man());
    cWindows.OnCategory = [&](CategoryRequest&) {
        std::wstring sName = L"Soul";
        Man().CreateMainCat(sName);
    };
    SelectNode(L"Jazz", 0); // selected, not shown
    Tick(L"Rock", 2);
    cPorts.cMessages.Typed = {L"Pop", L"3"};
    for (const auto& [eCommand, sCreated] :
         {std::pair{mnuCatNew, L"Pop\t1"}, {mnuCatLevelNew, L"Jazz\t3"}, {mnuCatUI, L"Soul\t1"}})
    {
        Do(eCommand);
        EXPECT_TRUE(InTree(sCreated));
        EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(SelectedNode(), L"Jazz\t0");
        EXPECT_EQ(Ticked(), (Keys{L"Rock\t2"}));
        EXPECT_TRUE(cTreeView.bChecked[Node(L"Rock", 2)]);
    }
}

TEST_P(frmUILibTest, ANewLevelNeedsASelectedCategory)
{
    cTreeView.lSelected.reset();
    Do(mnuCatLevelNew);
    cTreeView.Select(0);
    Do(mnuCatLevelNew);
    EXPECT_EQ(
        Shown(),
        (Boxes{OkBox(BoxIcon::Information, L"Nothing Selected",
                     L"First Select a category in the tree under which to create the new Category Level"),
               OkBox(BoxIcon::Information, L"Choose Another Category In The Tree",
                     L"'ALL AUDIO' is not a valid category selection for this operation")}));
    EXPECT_TRUE(cPorts.cMessages.Inputs.empty());
}

// ---- shuffling and deleting

TEST_P(frmUILibTest, ShufflingAndDeletingNeedTicks)
{
    Do(mnuShuffle);
    Do(mnuCatDelete);
    EXPECT_EQ(Shown(),
              (Boxes{OkBox(BoxIcon::Information, L"You Need to Check (tick) Them In The Tree.",
                           L"First, select some categories to shuffle"),
                     OkBox(BoxIcon::Information, L"First Select Some Categories To Delete In The Tree!",
                           L"There are no categories checked in the tree to delete!")}));
}

TEST_P(ShownLevelTest, ShufflingAsksAndShowsTheShownNodeAgainWithItsTicks)
{
    SelectNode(L"Jazz", 1); // selected, not shown
    Tick(L"Rock", 1);
    Answers({BoxAnswer::Yes});
    ForgetSifs();
    Do(mnuShuffle);
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"Confirm Shuffle.",
                               L"Really shuffle these categories: Rock 1"}}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_EQ(RowKeys(), Order(L"Rock", 1));
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t1"}));
    EXPECT_EQ(SelectedNode(), L"Jazz\t1");
}

TEST_P(frmUILibTest, TheWindowIsNotBusyWhileShufflingAsks)
{
    Tick(L"Rock", 1);
    int lAsked = 0;
    cPorts.cMessages.OnShown = [&] {
        ++lAsked;
        EXPECT_FALSE(cView.Busy());
    };
    Do(mnuShuffle); // answered with No
    EXPECT_EQ(cView.bBusy, (std::vector<bool>{true, false})) << "showing the node again";
    cView.bBusy.clear();
    bool bBusyAtSave = false;
    cLibrary.cHost.OnEvent = [&](const std::wstring&) { bBusyAtSave = cView.Busy(); };
    Answers({BoxAnswer::Yes});
    Do(mnuShuffle);
    EXPECT_EQ(lAsked, 2);
    EXPECT_TRUE(bBusyAtSave);
    EXPECT_FALSE(cView.Busy());
}

TEST_P(frmUILibTest, DeletingAsksAndNoChangesNothing)
{
    Tick(L"Rock", 0);
    cTreeView.lShown = 0;
    Do(mnuCatDelete);
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"Confirm Category Deletion",
                               L"Really delete the checked categories: \r\nRock, Rock 1, Rock 2\r\n\r\n"
                               L"Any items in these categories will be removed from the categories."}}));
    EXPECT_EQ(cTreeView.lShown, 0);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
    Answers({BoxAnswer::None, BoxAnswer::Yes});
    Do(mnuCatDelete);
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Jazz"})) << "closed without an answer";
    Do(mnuCatDelete);
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Jazz"}));
    EXPECT_FALSE(InTree(L"Rock\t0"));
}

TEST_P(NewLibraryTest, AVeryLongListOfCategoriesIsCutInTheQuestion)
{
    for (int lCat = 0; lCat < 40; ++lCat)
        Add(L"x" + std::to_wstring(lCat), L"Cat" + std::to_wstring(100 + lCat), 1);
    Show();
    Do(mnuSelectAllTree);
    Do(mnuCatDelete);
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_NE(Shown()[0].sText.find(L"... (+"), std::wstring::npos);
}

// ---- other commands

TEST_P(frmUILibTest, TheCategoryWindowRefreshesOnlyWhenCategoriesChanged)
{
    CategoryWindows cWindows(Man());
    cTreeView.lShown = 0;
    std::wstring sCaption;
    cWindows.OnCategory = [&](CategoryRequest& request) { sCaption = request.sCaption; };
    Do(mnuCatUI);
    EXPECT_EQ(sCaption, L"Category Selector");
    EXPECT_EQ(cTreeView.lShown, 0);
    cWindows.OnCategory = [&](CategoryRequest&) {
        std::wstring sName = L"Pop";
        Man().CreateMainCat(sName);
    };
    Do(mnuCatUI);
    EXPECT_EQ(cTreeView.lShown, 1);
    EXPECT_TRUE(InTree(L"Pop\t0"));
}

TEST_P(frmUILibTest, ADoubleClickEditsTheCutAndShowsTheNodeUnlessCancelled)
{
    using Answer = std::optional<std::int32_t>;
    for (const auto& [lAnswer, bShownAgain] :
         {std::pair{Answer(2), false}, {Answer(1), true}, {Answer(), true}})
    {
        cView.colStatus.clear();
        cLibrary.cHost.lEditAnswer = lAnswer;
        CutActions().CellDblClick(2, 3);
        EXPECT_EQ(Said().back(), L"Edit b");
        EXPECT_EQ(!cView.colStatus.empty(), bShownAgain);
    }
    cView.colStatus.clear();
    cLibrary.cHost.OnEvent = [&](const std::wstring&) { cForm.RequestRefresh(); };
    CutActions().CellDblClick(1, 1);
    EXPECT_EQ(
        std::count(cView.colStatus.begin(), cView.colStatus.end(), L"Showing All Audio|Showing 6 total."), 1)
        << "an edit that the database announces is shown once";
}

TEST_P(frmUILibTest, ADoubleClickOnNoCellOrAMissingCutDoesNothing)
{
    Said().clear();
    CutActions().CellDblClick(0, 1);
    CutActions().CellDblClick(1, 0);
    CutActions().CellDblClick(7, 1);
    DataBase().colCuts.clear();
    CutActions().CellDblClick(1, 1);
    EXPECT_TRUE(Said().empty());
}

TEST_P(frmUILibTest, WhatTheUserDoesWhileSomethingRunsIsIgnored)
{
    Said().clear();
    bool bOnce = false;
    cPorts.cHostLoop.OnPump = [&] {
        if (std::exchange(bOnce, true))
            return;
        EXPECT_TRUE(cView.Busy());
        Do(mnuHelp);
        CutActions().CellDblClick(1, 1);
        EXPECT_FALSE(CutActions().DragStarted());
    };
    Do(mnuSave);
    EXPECT_TRUE(bOnce);
    for (const wchar_t* sLine : {L"Help", L"Edit a"})
        EXPECT_EQ(std::count(Said().begin(), Said().end(), sLine), 0);
}

TEST_P(frmUILibTest, AnUnexpectedFailureIsShownAndTheWindowIsNotLeftDisabled)
{
    DataBase().bAllCutsFails = true;
    ShowNode(sAllAudio, 0);
    cPorts.cMessages.Typed = {L"Pop"};
    Do(mnuCatNew); // all audio is shown again
    EXPECT_EQ(Shown(), (Boxes{HandledError(L"TvCats_DblClick", L"Device I/O error", L"57"),
                              HandledError(L"mnuCatNew_Click", L"Device I/O error", L"57")}));
    ExpectIdle();
    DataBase().bAllCutsFails = false;
    ShowNode(sAllAudio, 0);
    EXPECT_EQ(Shown().size(), 2u);
}

// ---- a disk that is full, a database that is not there

class FailingDiskTest : public ShownLevelTest
{
protected:
    // Everything is saved, Rock 1 is shown with its last row selected, and now nothing can be written.
    FailingDiskTest()
    {
        Do(mnuSave);
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            colSaved.push_back(cPorts.cFiles.Get(SifPath(sName)));
        cGridView.Select({2}); // c
        Lock(true);
    }
    void Lock(bool bLock)
    {
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            cPorts.cFiles.SetReadOnly(SifPath(sName), bLock);
        cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", bLock);
    }
    // The failure is reported, the window shows what the manager has and can be used, and the files are
    // whole.
    void ExpectTrue()
    {
        EXPECT_FALSE(Shown().empty());
        EXPECT_TRUE(Tree().HasSameNodes(NodesOf(Man().colMainCats().get())));
        EXPECT_EQ(RowKeys(), Order(L"Rock", 1));
        EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), colSaved[0]);
        EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Jazz")), colSaved[1]);
        ExpectIdle();
    }
    std::vector<std::string> colSaved;
};

TEST_P(FailingDiskTest, DeletingACategoryLeavesTreeGridAndFilesTrue)
{
    Tick(L"Jazz", 0);
    Answers({BoxAnswer::Yes});
    Do(mnuCatDelete);
    ExpectTrue();
}

TEST_P(FailingDiskTest, ChangesOfCutsLeaveTreeGridAndFilesTrue)
{
    DropOnRow(0);
    ExpectTrue();
    EXPECT_EQ(RowKeys(), (Keys{L"c", L"a", L"b"}));
    EXPECT_EQ(SelectedKeys(), (Keys{L"c"}));
    cView.colChoices = {1}; // move
    DropOnNode(L"Rock", 2);
    ExpectTrue();
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"d", L"c"}));
    cGridView.Select({0});
    CutActions().GridDelete();
    ExpectTrue();
    EXPECT_EQ(RowKeys(), (Keys{L"b"}));
}

TEST_P(FailingDiskTest, SavingAllLeavesTreeGridAndFilesTrueAndCanBeDoneAgain)
{
    Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a"));
    ShowNode(L"Rock", 1);
    Do(mnuSave);
    ExpectTrue();
    Lock(false);
    Do(mnuSave);
    EXPECT_NE(cPorts.cFiles.Get(SifPath(L"Rock")), colSaved[0]);
}

TEST_P(FailingDiskTest, AReloadWhoseDatabaseFailsLeavesTreeGridAndFilesTrue)
{
    for (const bool bFails : {true, false})
    {
        DataBase().bAllCutsFails = bFails;
        Do(mnuReloadAll);
        ExpectTrue();
    }
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
}

TEST_P(frmUILibTest, TheManagerCanEndWhileTheWindowExists)
{
    const std::weak_ptr<clsSchedMan> cSchedMan = cLibrary.cSchedMan;
    cLibrary.cSchedMan.reset();
    EXPECT_TRUE(cSchedMan.expired());
    Do(mnuSave);
    cForm.ReloadAll();
    cForm.RequestRefresh();
    EXPECT_FALSE(cView.Busy());
}

// ---- removing

TEST_P(frmUILibTest, DeleteWithNothingSelectedSaysSo)
{
    CutActions().GridDelete();
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"First Select Some Items In The Grid!",
                                    L"There are no items selected to be remove category from!")}));
}

TEST_P(ShownLevelTest, InALevelDeleteRemovesTheCutsFromItAndSaves)
{
    cGridView.Select({0, 2});
    ForgetSifs();
    CutActions().GridDelete();
    EXPECT_TRUE(Shown().empty());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b"}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
    EXPECT_EQ(RowKeys(), (Keys{L"b"}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_FALSE(SifSaved(L"Jazz"));
    EXPECT_EQ(cView.bBusy.back(), false);
}

TEST_P(NewLibraryTest, DeleteGoesByTheLevelThatContainsACutAndNotByItsNumber)
{
    for (const wchar_t* sShown : {L"Rock", sAllAudio})
    {
        ScreenLibrary fresh(GetParam());
        Fill(fresh);
        fresh.Show();
        fresh.DataBase().colCuts[3]->SetCatLevel(1); // d, which is in Rock 2
        fresh.ShowNode(sShown, 0);
        fresh.cGridView.Select({3});
        fresh.Answers({BoxAnswer::Yes});
        fresh.CutActions().GridDelete();
        EXPECT_TRUE(fresh.Order(L"Rock", 2).empty());
        EXPECT_EQ(fresh.Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(fresh.DataBase().colCuts[3]->CategoryText(), L"");
    }
}

TEST_P(frmUILibTest, InAllAudioDeleteAsksAndRemovesTheCutsFromEverything)
{
    cGridView.Select({2});
    CutActions().GridDelete();
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?"}}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
    Answers({BoxAnswer::Yes});
    ForgetSifs();
    CutActions().GridDelete();
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"e"}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_TRUE(SifSaved(L"Jazz"));
}

TEST_P(frmUILibTest, AfterAHostsPopulationDeleteRemovesFromTheCurrentLevel)
{
    for (const auto& [lLevel, colLeft] : {std::pair{1, Keys{L"b", L"c"}}, std::pair{0, Keys{L"c"}}})
    {
        ShowNode(L"Rock", lLevel);
        cLibrary.Populate();
        cGridView.Select({0});
        CutActions().GridDelete();
        EXPECT_EQ(Order(L"Rock", 1), colLeft);
    }
}

TEST_P(NewLibraryTest, ACutInTwoLevelsIsSelectedInTheLevelItWas)
{
    Add(L"twice", L"Rock", 2);
    Show();
    bool bCreated = false;
    const auto cCut = DataBase().colCuts.back();
    cCut->SetCatLevel(1);
    Level(L"Rock", 1)->AddCut(cCut, bCreated);
    ShowNode(L"Rock", 0);
    ASSERT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d", L"twice"}));
    cGridView.Select({5});
    cGridView.lCurrent = 5;
    cForm.RequestRefresh();
    EXPECT_EQ(Grid().SelectedRows(), (Rows{5}));
    EXPECT_EQ(cGridView.lCurrent, 5u);
    CutActions().GridDelete();
    EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c", L"twice", L"d"}));
    EXPECT_TRUE(Grid().SelectedRows().empty()) << "the other row was not selected";
}

TEST_P(NewLibraryTest, RemovingManyCutsReportsAndContinuesPastAFailure)
{
    for (int lCut = 0; lCut < 120; ++lCut)
        Add(L"m" + std::to_wstring(lCut), L"Many", 1);
    Show();
    ShowNode(L"Many", 1);
    CutInRow(5).failing = {"RemoveCategoryName"};
    cGridView.SelectAll(true);
    cView.colStatus.clear();
    CutActions().GridDelete();
    EXPECT_EQ(Order(L"Many", 1), (Keys{L"m5"}));
    EXPECT_EQ((Lines{cView.colStatus.begin(), cView.colStatus.begin() + 3}),
              (Lines{L"Removing from category...|", L"Removed 50 of 120|", L"Removed 100 of 120|"}));
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"Error in RemoveCutFromCategory [cSchedMan]");
}

// ---- drag and drop into the tree

class DropTest : public frmUILibTest
{
protected:
    using Choices = std::deque<std::optional<std::size_t>>;
    // Shows a node, selects rows and drops them.
    static void Drop(ScreenLibrary& in, const std::wstring& sName, std::int32_t lLevel, const Rows& colRows,
                     const std::wstring& sTo, std::int32_t lTo, Choices colChoices)
    {
        in.ShowNode(sName, lLevel);
        in.cGridView.Select(colRows);
        in.cView.colChoices = std::move(colChoices);
        in.DropOnNode(sTo, lTo);
    }
    // The first cut of Rock 1.
    void DropIntoJazz(Choices colChoices) { Drop(*this, L"Rock", 1, {0}, L"Jazz", 1, std::move(colChoices)); }
    // Shows Rock 1, keeps its first cut for a Paste and selects Jazz 1.
    void CopyFirstOfRock()
    {
        Show();
        ShowNode(L"Rock", 1);
        cGridView.Select({0});
        CutActions().CopySelection();
    }
    void PasteInto(const std::wstring& sName, std::int32_t lLevel, std::size_t choice)
    {
        SelectNode(sName, lLevel);
        cView.colChoices = {choice};
        CutActions().Paste();
    }
    void RemoveFromTheDatabase(std::size_t cut)
    {
        const std::shared_ptr<Cut> cCut = DataBase().colCuts[cut];
        DataBase().Remove(*cCut);
        Announce(&DataBaseEvents::CutsRemoved, cCut);
    }
    const Keys colJazzWithA{L"c", L"e", L"a"};
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

TEST_P(DropTest, PopUpsNameTheTargetAndAMainCategorysLevelIsChosenFirst)
{
    const Items levels{L"Drop Into: Rock, keeping levels the same", L"Drop Into Rock Level 1",
                       L"Drop Into Rock Level 2"};
    const Items intoLevel{L"Copy Into Rock 2", L"Move Into Rock 2", L"Move Exclusive Into Rock 2", L"Cancel"};
    const Items intoMain{L"Copy Into Rock", L"Move Into Rock", L"Move Exclusive Into Rock", L"Cancel"};
    const auto popUps = [&](std::int32_t lTo, Choices colChoices) {
        cView.colPopUps.clear();
        Drop(*this, L"Rock", 1, {0}, L"Rock", lTo, std::move(colChoices));
        return cView.colPopUps;
    };
    EXPECT_EQ(popUps(2, {}), (std::vector<Items>{intoLevel}));
    EXPECT_EQ(popUps(0, {2, std::nullopt}), (std::vector<Items>{levels, intoLevel}));
    EXPECT_EQ(popUps(0, {0, std::nullopt}), (std::vector<Items>{levels, intoMain}));
}

TEST_P(DropTest, EachChoiceCopiesOrMovesUnderItsRules)
{
    struct Target
    {
        const wchar_t* sName;
        std::int32_t lLevel;
    };
    const Target all{sAllAudio, 0}, rock{L"Rock", 0}, rock1{L"Rock", 1}, rock2{L"Rock", 2}, jazz{L"Jazz", 0},
        jazz1{L"Jazz", 1};
    const Keys abc{L"a", L"b", L"c"}, ab{L"a", L"b"}, d{L"d"}, dc{L"d", L"c"}, ce{L"c", L"e"};
    const struct
    {
        const char* what;
        Target from;
        Rows colRows;
        Target to;
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
        ScreenLibrary fresh(GetParam());
        Fill(fresh);
        fresh.Show();
        Drop(fresh, test.from.sName, test.from.lLevel, test.colRows, test.to.sName, test.to.lLevel,
             test.colChoices);
        EXPECT_EQ(fresh.Order(L"Rock", 1), test.inRock1);
        EXPECT_EQ(fresh.Order(L"Rock", 2), test.inRock2);
        EXPECT_EQ(fresh.Order(L"Jazz", 1), test.inJazz1);
        EXPECT_EQ(fresh.Order(L"Jazz", 2), test.inJazz2);
        EXPECT_EQ(fresh.Shown(), test.bRefused ? Boxes{refusal} : Boxes{});
        const std::shared_ptr<clsCat> cShown = fresh.Grid().CurrentCatViewing();
        EXPECT_EQ(fresh.RowKeys().size(), cShown ? static_cast<std::size_t>(cShown->TotalCuts()) : 6u)
            << "the shown node again";
        EXPECT_FALSE(fresh.cView.Busy());
    }
}

TEST_P(DropTest, ALevelThatADropMakesIsBroughtIntoView)
{
    Drop(*this, L"Rock", 0, {0, 3}, L"Jazz", 0, {0, eCopy});
    EXPECT_EQ(cTreeView.colBrought, (std::vector{Node(L"Jazz", 2)}));
    EXPECT_TRUE(Tree().At(Node(L"Jazz", 0)).bExpanded);
    EXPECT_EQ(cTreeView.colExpanded.back(), Node(L"Jazz", 0));
    EXPECT_EQ(SelectedNode(), L"Rock\t0");
}

TEST_P(DropTest, ALevelMadeElsewhereLeavesTheTreeWhereItIs)
{
    Drop(*this, L"Rock", 1, {2}, L"Rock", 2, {eMove}); // c is in Jazz as well
    EXPECT_TRUE(InTree(L"Jazz\t2"));
    EXPECT_TRUE(cTreeView.colBrought.empty());
    EXPECT_FALSE(Tree().At(Node(L"Jazz", 0)).bExpanded);
}

TEST_P(DropTest, AllAudioIsNoTargetAndNextToTheNodesNothingHappens)
{
    StartDrag({0});
    CutActions().DragCompleted(LibraryCuts::Drop{true, L"", std::nullopt, sGridPayload});
    CutActions().Dropped({true, L"", std::nullopt, sGridPayload});
    EXPECT_TRUE(Shown().empty());
    Drop(*this, L"Rock", 1, {0}, sAllAudio, 0, {});
    EXPECT_EQ(Shown(), (Boxes{OkBox(BoxIcon::Exclamation, L"Invalid Drop!",
                                    L"It's not valid to drop into 'ALL AUDIO'")}));
    EXPECT_TRUE(cView.colPopUps.empty());
}

TEST_P(DropTest, ADragFromElsewhereIsRefusedWithAnyText)
{
    ShowNode(L"Rock", 1);
    cGridView.Select({0});
    for (const wchar_t* sText : {sGridPayload, L"something else"})
        for (const bool bOnTree : {true, false})
        {
            Shown().clear();
            CutActions().Dropped({bOnTree, bOnTree ? L"Jazz\t1" : L"", std::nullopt, sText});
            EXPECT_EQ(Shown(),
                      (Boxes{OkBox(BoxIcon::None, L"Scheduler Grid", L"Unrecognized Source for dragdrop!")}));
        }
    EXPECT_TRUE(cView.colPopUps.empty());
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"a", L"b", L"c"}));
}

TEST_P(DropTest, AfterADropTheListOfAllAudioKeepsItsSelection)
{
    Drop(*this, sAllAudio, 0, {2}, L"Rock", 2, {eMove});
    EXPECT_EQ(SelectedKeys(), (Keys{L"c"}));
}

TEST_P(DropTest, APastedCutIsComparedByItsCurrentNumber)
{
    CopyFirstOfRock();
    const std::shared_ptr<Cut> cCut = DataBase().colCuts[0];
    cCut->SetCatLevel(2);
    Announce(&DataBaseEvents::CutsModified, cCut);
    ASSERT_EQ(Order(L"Rock", 2), (Keys{L"d", L"a"}));
    PasteInto(L"Jazz", 1, eCopy);
    EXPECT_EQ(Shown(), (Boxes{refusal}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, ASecondMoveByPasteLeavesTheTargetOfTheFirst)
{
    CopyFirstOfRock();
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA);
    PasteInto(L"Rock", 2, eMove);
    EXPECT_EQ(Order(L"Rock", 2), (Keys{L"d", L"a"}));
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e"}));
}

TEST_P(DropTest, TheCutsAreThoseSelectedBeforeThePopUpsOpened)
{
    cView.OnPopUp = [&] {
        cGridView.Select({1});
        cLibrary.Populate(); // a host may do that
    };
    DropIntoJazz({eMove});
    EXPECT_TRUE(Shown().empty());
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c"}));
}

TEST_P(DropTest, AFailureWhileGatheringTheLevelsEndsTheDropWithAReport)
{
    cView.OnPopUp = [] { ADD_FAILURE(); };
    StartDrag({0});
    cGridView.OnSelectedRows = [] { throw RuntimeError(error::InvalidProcedureCall); };
    CutActions().DragCompleted(LibraryCuts::Drop{true, L"Jazz\t1", std::nullopt, sGridPayload});
    EXPECT_EQ(Shown(), (Boxes{HandledError(L"Error occurred in dragdrop",
                                           L"Invalid procedure call or argument", L"5")}));
}

TEST_P(DropTest, AnUnexpectedFailureIsReportedAndTheBusyStateIsCleared)
{
    cView.OnPopUp = [] { throw RuntimeError(error::DeviceIo); };
    DropIntoJazz({});
    EXPECT_EQ(Shown(), (Boxes{CriticalBox(L"RavloScheduler", L"An Error occurred.")}));
    ExpectIdle();
}

TEST_P(DropTest, ACategoryDeletedWhileThePopUpIsOpenIsNotPlacedInto)
{
    cView.OnPopUp = [&] { Man().DeleteCats({MainCat(L"Jazz")}); };
    DropIntoJazz({eCopy});
    ASSERT_EQ(Shown().size(), 1u);
    EXPECT_EQ(Shown()[0].sTitle, L"Error in DoMassCatChange [cSchedMan]");
    EXPECT_EQ(DataBase().colCuts[0]->CategoryText(), L"Rock");
}

TEST_P(DropTest, ACutThatLeavesTheDatabaseIsNotPlacedAgain)
{
    CopyFirstOfRock();
    cView.OnPopUp = [&] {
        RemoveFromTheDatabase(0);
        cView.OnPopUp = nullptr;
    };
    Drop(*this, L"Rock", 1, {0, 1}, L"Jazz", 1, {eCopy});
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e", L"b"}));
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c"}));
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), (Keys{L"c", L"e", L"b"}));
}

TEST_P(DropTest, APasteMovesWhatWasCopiedFromItsCurrentLevels)
{
    CopyFirstOfRock();
    cGridView.Select({1});
    PasteInto(L"Jazz", 1, eCopy);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA) << "not what is selected now";
    CopyFirstOfRock();
    Do(mnuReloadAll);
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Rock", 1), (Keys{L"b", L"c"})) << "after a reload";
    Man().DeleteCats({MainCat(L"Rock")});
    PasteInto(L"Jazz", 1, eMove);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA) << "with its level gone";
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Jazz"}));
}

TEST_P(DropTest, NothingSelectedOrCopiedIsNothingToDragOrPaste)
{
    CutActions().Paste();
    EXPECT_TRUE(cView.colPopUps.empty());
    EXPECT_FALSE(CutActions().DragStarted());
    StartDrag({0});
    EXPECT_FALSE(CutActions().DragStarted());
    GiveUpDrag();
}

TEST_P(DropTest, ARefreshRequestedDuringTheDragRunsAfterTheDrop)
{
    ShowNode(L"Rock", 1);
    cGridView.lFilled = 0;
    StartDrag({0});
    cForm.RequestRefresh();
    cView.colChoices = {eCopy};
    cView.OnPopUp = [&] { EXPECT_EQ(cGridView.lFilled, 0); };
    CutActions().DragCompleted(LibraryCuts::Drop{true, L"Jazz\t1", std::nullopt, sGridPayload});
    EXPECT_EQ(cGridView.lFilled, 2);
    EXPECT_EQ(Order(L"Jazz", 1), colJazzWithA);
}

INSTANTIATE_TEST_SUITE_P(Objects, NewLibraryTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, frmUILibTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, ShownLevelTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, FailingDiskTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, TreeSearchTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, DropTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

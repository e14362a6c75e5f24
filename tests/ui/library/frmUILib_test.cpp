// SPDX-License-Identifier: MIT
#include "ui/library/frmUILibPresenter.h"

#include "frmUILibTest.h"
#include "ui/library/LibraryContents.h"

namespace ravlo::test
{
namespace
{

using enum LibraryCommand;

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

TEST_P(NewLibraryTest, GoesToACutWhenShownAndWhileShown)
{
    cForm.GoTo(L"Rock\t1", TextKey(L"b"));
    cView.OnModal = [&] {
        EXPECT_EQ(SelectedNode(), L"Rock\t1");
        EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(Grid().SelectedRows(), (Rows{1}));
        EXPECT_EQ(cView.lFocused, 1);
        cForm.GoTo(L"Jazz\t1", TextKey(L"gone"));
        EXPECT_EQ(SelectedNode(), L"Jazz\t1");
        EXPECT_EQ(Grid().SelectedRows(), Rows());
        cForm.GoTo(L"Pop\t1", TextKey(L"a"));
        EXPECT_EQ(SelectedNode(), L"Jazz\t1") << "there is no such level";
        EXPECT_EQ(cView.lFocused, 2);
        cView.OnModal = nullptr;
    };
    Show();
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

TEST_P(frmUILibTest, GridCommandsSelectRows)
{
    for (const auto& [eCommand, rows] :
         {std::pair{mnuSelectAllGrid, 6u}, {mnuSelectNoneGrid, 0u}, {mnuInvertSelectionGrid, 6u}})
    {
        Do(eCommand);
        EXPECT_EQ(Grid().SelectedRows().size(), rows);
    }
}

// ---- saving

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
    EXPECT_EQ(cView.sResult, L"New category: Pop");
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
        EXPECT_EQ(SelectedNode(), CategoryKey(L"Rock", lSelected));
    }
}

TEST_P(ShownLevelTest, WhatIsCreatedLeavesShownSelectedAndTicked)
{
    CategoryWindows cWindows(Man());
    cWindows.OnCategory = [&](CategoryRequest&) { CreateMainCat(L"Soul"); };
    SelectNode(L"Jazz", 0); // selected, not shown
    Tick(L"Rock", 2);
    cPorts.cMessages.Typed = {L"3", L"Pop"};
    for (const auto& [eCommand, sCreated] :
         {std::pair{mnuCatLevelNew, L"Jazz\t3"}, {mnuCatNew, L"Pop\t1"}, {mnuCatUI, L"Soul\t1"}})
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
    int lAsked = 0;
    cPorts.cMessages.OnShown = [&] {
        ++lAsked;
        EXPECT_FALSE(cView.Busy());
    };
    cView.bBusy.clear();
    Do(mnuShuffle); // answered with No
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Confirm Shuffle.",
                               L"Really shuffle these categories: Rock 1"}}));
    EXPECT_EQ(cView.bBusy, (std::vector<bool>{true, false})) << "showing the node again";
    bool bBusyAtSave = false;
    cLibrary.cHost.OnEvent = [&](const std::wstring&) { bBusyAtSave = cView.Busy(); };
    Answers({BoxAnswer::Yes});
    ForgetSifs();
    Do(mnuShuffle);
    EXPECT_EQ(lAsked, 2);
    EXPECT_TRUE(bBusyAtSave);
    EXPECT_FALSE(cView.Busy());
    EXPECT_TRUE(SifSaved(L"Rock"));
    EXPECT_EQ(RowKeys(), Order(L"Rock", 1));
    EXPECT_EQ(Ticked(), (Keys{L"Rock\t1"}));
    EXPECT_EQ(SelectedNode(), L"Jazz\t1");
}

TEST_P(frmUILibTest, DeletingAsksAndNoChangesNothing)
{
    Tick(L"Rock", 0);
    cTreeView.lShown = 0;
    Do(mnuCatDelete);
    EXPECT_EQ(Shown(), (Boxes{{BoxIcon::Question, BoxButtons::YesNoDefaultNo, L"Confirm Category Deletion",
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
    cWindows.OnCategory = [&](CategoryRequest&) { CreateMainCat(L"Pop"); };
    Do(mnuCatUI);
    EXPECT_EQ(cTreeView.lShown, 1);
    EXPECT_TRUE(InTree(L"Pop\t0"));
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
    Remove({0});
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

INSTANTIATE_TEST_SUITE_P(Objects, NewLibraryTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, frmUILibTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, ShownLevelTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, FailingDiskTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

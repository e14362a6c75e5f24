// SPDX-License-Identifier: MIT
// The menus of the library window, each command's wiring, and the database's notifications while it is open.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using enum LibraryCommand;

struct LibraryCommands : FilledLibrary
{
    void DeleteRockFile()
    {
        if (cState.cPorts.cFiles.FileExists(sRockFile))
            cState.cPorts.cFiles.Delete(sRockFile);
    }
    void LockFiles(bool bLock)
    {
        cState.cPorts.cFiles.SetReadOnly(sRockFile, bLock);
        cState.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", bLock);
    }

    // ---- what a command has done

    using Effect = std::function<void(const User&)>;
    Effect Ticks(int nodes)
    {
        return [=, this](const User&) { EXPECT_EQ(Ticked(), nodes); };
    }
    Effect Selects(int rows)
    {
        return [=, this](const User&) { EXPECT_EQ(SelectedRows(), rows); };
    }
    Effect ShowsBox(const wchar_t* sTitle, const wchar_t* sShot)
    {
        return [=, this](const User& user) {
            EXPECT_EQ(user.Box().sTitle, sTitle);
            ShotWithBoxes(user, sShot);
            user.Answer(user.Box().lButtons == std::vector<int>{IDOK} ? IDOK : IDCANCEL);
        };
    }
    Effect IsFair(bool bFair)
    {
        return [=, this](const User& user) {
            Run(user, [&] { EXPECT_EQ(cState.cSchedMan->Options().bFairRotation, bFair); });
        };
    }
    static void ShowsCategories(const User& user)
    {
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        EXPECT_EQ(User::Text(hCategories), L"Category Selector");
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hCategories);
    }
};

TEST_F(LibraryCommands, TheMenusReadAsTheyShould)
{
    Open([&](const User&) {
        EXPECT_EQ(MenuTexts(::GetMenu(hWindow)), (Texts{L"&Edit",
                                                        L" Category Tree CheckBoxes...",
                                                        L"  Select &All",
                                                        L"  Select &None",
                                                        L"  &Invert Selection",
                                                        L" Grid Selections...",
                                                        L"  Select &All\t  Ctrl+A",
                                                        L"  Select &None",
                                                        L"  &Invert Grid Selection",
                                                        L"Ac&tions",
                                                        L" Reload Everything",
                                                        L" Save / Re-Save All\t  Ctrl+S",
                                                        L" Exit\t  Alt+F4",
                                                        L"&Categories",
                                                        L" Show Category UI",
                                                        L" New...",
                                                        L"  Category",
                                                        L"  Category Level",
                                                        L" Shuffle Checked Categories",
                                                        L" Delete Checked Categories",
                                                        L"&Rotation",
                                                        L" Undo\t  Ctrl+Z",
                                                        L" Redo\t  Ctrl+Y",
                                                        L" ",
                                                        L" &Spread Checked Categories",
                                                        L" &Fair Rotation",
                                                        L" ",
                                                        L" &Explain Next Cut",
                                                        L" &Next 20 Cuts",
                                                        L" Rotation &Health",
                                                        L"&Help"}));
    });
}

// Each item does its own command, in the order of the menus.
TEST_F(LibraryCommands, EveryItemIsReachedByMouseAndKeyboard)
{
    const Effect saves = [&](const User&) { EXPECT_TRUE(cState.cPorts.cFiles.FileExists(sRockFile)); };
    const Effect helps = [&](const User&) { EXPECT_EQ(cEvents.colSaid.back(), L"Help"); };
    const std::pair<std::vector<int>, Effect> items[] = {
        {{0, 0, 0}, Ticks(8)},
        {{0, 0, 1}, Ticks(0)},
        {{0, 0, 2}, Ticks(8)}, // the root as well
        {{0, 1, 0}, Selects(9)},
        {{0, 1, 1}, Selects(0)},
        {{0, 1, 2}, Selects(9)},
        {{1, 0}, Ticks(8)}, // everything is read again, and stays ticked
        {{0, 0, 1}, Ticks(0)},
        {{1, 1}, saves},
        {{2, 0}, ShowsCategories},
        {{2, 1, 0}, ShowsBox(L"New Category Creation", L"library-box-new-category")},
        {{2, 1, 1}, ShowsBox(L"Choose Another Category In The Tree", L"library-box-choose-another")},
        {{2, 2}, ShowsBox(L"You Need to Check (tick) Them In The Tree.", L"library-box-nothing-to-shuffle")},
        {{2, 3},
         ShowsBox(L"First Select Some Categories To Delete In The Tree!", L"library-box-nothing-to-delete")},
        {{3, 3}, ShowsBox(L"You Need to Check (tick) Them In The Tree.", L"library-box-nothing-to-spread")},
        {{3, 4}, IsFair(true)},
        {{3, 4}, IsFair(false)},
        {{4}, helps},
    };
    for (const auto choose : {&LibraryCommands::ChooseByMouse, &LibraryCommands::ChooseByKeys})
        Open([&](const User& user) {
            for (const auto& [path, effect] : items)
            {
                SCOPED_TRACE(::testing::PrintToString(path));
                DeleteRockFile();
                cEvents.colSaid = {L""};
                (this->*choose)(user, path);
                user.Idle();
                effect(user);
            }
            (this->*choose)(user, {1, 2});
            user.WaitUntilGone(hWindow);
        });
}

TEST_F(LibraryCommands, CommandKeysWorkFromAnyFocus)
{
    Open([&](const User& user) {
        cEvents.colSaid.clear();
        for (const HWND hFocus : {hTree, hGrid})
        {
            user.Click(hFocus);
            DeleteRockFile();
            user.Key(VK_F1);
            user.Key('S', VK_CONTROL);
            EXPECT_TRUE(cState.cPorts.cFiles.FileExists(sRockFile));
            Do(user, mnuSelectNoneGrid);
            user.Key('A', VK_CONTROL);
            EXPECT_EQ(SelectedRows(), 9);
        }
        EXPECT_EQ(std::count(cEvents.colSaid.begin(), cEvents.colSaid.end(), L"Help"), 2);
        user.Key(VK_F4, VK_MENU);
        user.WaitUntilGone(hWindow);
    });
}

TEST_F(LibraryCommands, ANewCategoryAndANewLevelAppearInTheTree)
{
    Open([&](const User& user) {
        Command(mnuCatNew);
        user.AnswerInput(L"Blues");
        EXPECT_EQ(Tree()[1], L" Blues");
        ClickNode(user, Item(L"Rock"));
        Command(mnuCatLevelNew);
        EXPECT_EQ(user.Box().sTitle, L"Enter The New Category Level");
        ShotWithBoxes(user, L"library-box-new-level");
        user.AnswerInput(L"3");
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2", L"3"}));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        EXPECT_EQ(SelectedNode(), L"Rock");
        EXPECT_EQ(Status(0), L"Showing All Audio") << "what was shown before";
        EXPECT_EQ(Status(2), L"New level: Rock 3");
        Show(user, Item(L"Rock", L"3"));
        EXPECT_EQ(Rows(), 0);
        EXPECT_EQ(Status(1), L"Showing 0 total.");
    });
}

TEST_F(LibraryCommands, ShufflingAndDeletingAskAndTheWindowFollows)
{
    OpenOnRock([&](const User& user) {
        user.Key(VK_SPACE);
        const auto shuffle = [&](int lAnswer) {
            Command(mnuShuffle);
            Answer(user, YesNoOnScreen(L"Confirm Shuffle.", L"Really shuffle these categories: Rock 1"),
                   L"library-box-shuffle", lAnswer);
        };
        shuffle(IDNO);
        EXPECT_EQ(Artists(), colRockArtists);
        shuffle(IDYES);
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_NE(Artists(), colRockArtists);
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2"}));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        ClickBox(user, Item(L"Jazz"));
        const auto deleteTicked = [&](int lAnswer) {
            Command(mnuCatDelete);
            Answer(user,
                   YesNoOnScreen(L"Confirm Category Deletion",
                                 L"Really delete the checked categories: \r\nJazz, Jazz 1, Rock 1\r\n\r\n"
                                 L"Any items in these categories will be removed from the categories."),
                   L"library-box-delete", lAnswer);
        };
        deleteTicked(IDNO);
        EXPECT_EQ(Tree().size(), 8u);
        deleteTicked(IDYES);
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" r&b", L"  1", L" Rock", L"  2"}));
        EXPECT_EQ(SelectedNode(), L"Rock") << "the main category of the deleted level";
        EXPECT_EQ(Status(0), L"Showing Rock");
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
    });
}

TEST_F(LibraryCommands, EnterAnswersNoToQuestionsThatDestroy)
{
    OpenOnRock([&](const User& user) {
        user.Key(VK_SPACE);
        for (const LibraryCommand eCommand : {mnuShuffle, mnuSpread, mnuCatDelete})
        {
            Command(eCommand);
            user.Box();
            EXPECT_EQ(Status(2), L"Concerns 6 cuts");
            user.Key(VK_RETURN);
            user.Idle();
            EXPECT_EQ(Order(L"Rock", 1), colRockArtists);
        }
    });
}

TEST_F(LibraryCommands, TheStatusBarShowsSelectionAndResults)
{
    OpenOnRock([&](const User& user) {
        const auto until = [&](const std::wstring& sText) {
            user.Until([&] { return Status(2) == sText; }, "the status bar's text");
        };
        ClickRow(user, 0);
        until(L"1 cut selected, 2:37");
        user.Key(VK_DOWN, VK_SHIFT);
        until(L"2 cuts selected, 5:21");
        user.Shot(hWindow, L"library-status-selection");
        user.Key(VK_DELETE);
        until(L"2 cuts taken out of Rock 1");
        user.Shot(hWindow, L"library-status-result");
        user.Key(L'R', VK_MENU);
        EXPECT_EQ(PopUpItems(user)[0], L"Undo removal of 2 cuts from Rock 1\t  Ctrl+Z");
        ShotWithBoxes(user, L"library-undo");
        user.Keys({VK_ESCAPE, VK_ESCAPE});
        user.Key('Z', VK_CONTROL);
        until(L"Undone: removal of 2 cuts from Rock 1");
        EXPECT_EQ(Artists(), colRockArtists);
        user.Key(L'R', VK_MENU);
        EXPECT_EQ(PopUpItems(user)[1], L"Redo removal of 2 cuts from Rock 1\t  Ctrl+Y");
        ShotWithBoxes(user, L"library-rotation-menu");
        user.Keys({VK_ESCAPE, VK_ESCAPE});
        user.Key('Y', VK_CONTROL);
        until(L"Redone: removal of 2 cuts from Rock 1");
    });
}

TEST_F(LibraryCommands, ACommandWhoseSaveFailsLeavesTheWindowUsable)
{
    OpenOnRock([&](const User& user) {
        user.Key(VK_SPACE);
        user.Key('S', VK_CONTROL);
        const std::string before = cState.cPorts.cFiles.Get(sRockFile);
        LockFiles(true);
        Command(mnuShuffle);
        user.Answer(IDYES);
        Answer(user, OkOnScreen(L"RavloScheduler", L"Failed to save cat history and ordering for: Rock"),
               L"library-box-failed-save", IDOK);
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(cState.cPorts.cFiles.Get(sRockFile), before);
        for (const HWND hControl : {hTree, hGrid, hWindow})
            EXPECT_TRUE(Enabled(hControl));
        LockFiles(false);
        user.Key('S', VK_CONTROL);
        EXPECT_NE(cState.cPorts.cFiles.Get(sRockFile), before) << "saved once the disk works again";
    });
}

TEST_F(LibraryCommands, TheTreeFollowsWhatTheCategoryWindowCreates)
{
    Open([&](const User& user) {
        Command(mnuCatUI);
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        EXPECT_FALSE(Enabled(hWindow));
        ShotWithBoxes(user, L"library-category-window");
        cHost.Run(user, [&] {
            std::wstring sName = L"Polka";
            cState.cSchedMan->CreateMainCat(sName);
        });
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hCategories);
        user.Idle();
        EXPECT_TRUE(Enabled(hWindow));
        EXPECT_EQ(Tree()[3], L" Polka");
    });
}

// It shows once: a library window that it has opened cannot open it again.
TEST_F(LibraryCommands, ShowCategoryUIIsGreyedWhileThatWindowIsOpen)
{
    cState.Populate();
    const auto expectGreyed = [&](const User& user, bool bGreyed) {
        const auto expect = [&](const char* sWhere) {
            user.WaitFor(L"#32768");
            constexpr int lCategories = 2;
            const HMENU hMenu = ::GetSubMenu(::GetMenu(hWindow), lCategories);
            EXPECT_EQ((::GetMenuState(hMenu, 0, MF_BYPOSITION) & MF_GRAYED) != 0, bGreyed) << sWhere;
            user.Keys({VK_ESCAPE, VK_ESCAPE});
        };
        user.Key(L'C', VK_MENU);
        expect("in the menu bar");
        user.Click(hTree);
        user.Key(VK_APPS);
        expect("at the tree");
    };
    CategoryRequest request;
    WhileOpen([&] { cState.cSchedMan->ShowCatUI(request); },
              [&](const User& user) {
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        ::PostMessageW(hCategories, WM_COMMAND, eIdmnuSchedLib, 0);
        TakeWindow(user);
        expectGreyed(user, true);
        for (const HWND hOpen : {hWindow, hCategories})
        {
            ::PostMessageW(hOpen, WM_CLOSE, 0, 0);
            user.WaitUntilGone(hOpen);
        }
    });
    OpenAgain([&](const User& user) { expectGreyed(user, false); });
}

// ---- notifications of the database ----

TEST_F(LibraryCommands, NotificationsAreShownAndKeepWhatIsSelected)
{
    OpenOnRock([&](const User& user) {
        auto& cDataBase = *cState.cDataBase;
        SelectRows(user, 3, 4); // Dido, Eagles
        ClickBox(user, Item(L"Jazz"));
        Run(user, [&] {
            Add(L"C:\\Music\\new.wav", L"Rock/Soul", 1, L"Garbage");
            Announce(&DataBaseEvents::CutsAdded, cDataBase.colCuts.size() - 1);
        });
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz*", L"  1*", L" r&b", L"  1", L" Rock", L"  1", L"  2",
                                 L" Soul", L"  1"}));
        EXPECT_EQ(Artists().back(), L"Garbage");
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(SelectedNode(), L"1");
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        ClickNode(user, Item(L"Jazz")); // selected, not shown
        const Texts colBefore = Tree();
        Run(user, [&] {
            cDataBase.colCuts[0]->SetArtist(L"Zappa");
            Announce(&DataBaseEvents::CutsModified, 0);
        });
        EXPECT_EQ(Artists().front(), L"Zappa");
        EXPECT_EQ(Tree(), colBefore);
        Run(user, [&] {
            const auto cGone = cDataBase.colCuts[1];
            cDataBase.colCuts.erase(cDataBase.colCuts.begin() + 1);
            cDataBase.Announce(&DataBaseEvents::CutsRemoved, Cuts{cGone});
        });
        EXPECT_EQ(Artists(), (Texts{L"Zappa", L"Cream", L"Dido", L"Eagles", L"Feist", L"Garbage"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(SelectedNode(), L"Jazz");
        EXPECT_EQ(Status(0), L"Showing Rock 1");
        EXPECT_EQ(Status(1), L"Showing 6 total.");
    });
}

TEST_F(LibraryCommands, NotificationsDuringAPopUpWaitForTheChoice)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0); // Abba
        DropOnNode(user, 0, Item(L"Jazz"));
        user.WaitFor(L"#32768");
        cHost.Run(user, [&] {
            Add(L"C:\\Music\\new.wav", L"Soul", 1, L"Garbage");
            Announce(&DataBaseEvents::CutsAdded, cState.cDataBase->colCuts.size() - 1);
        });
        EXPECT_EQ(Tree().size(), 8u);
        Choose(user, {1, 1});
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        EXPECT_EQ(Tree().size(), 10u);
    });
}

TEST_F(LibraryCommands, AGridThatAHostFillsShowsItsProgressInTheWindow)
{
    Open([&](const User& user) {
        const auto follower = [&]() -> ProgressEvents& { return *cState.cSchedMan->ProgressFollower(); };
        cHost.Run(user, [&] { follower().ProgressStart(L"Populating Grid...", 3); });
        EXPECT_EQ(Status(0), L"Populating Grid...");
        EXPECT_TRUE(Shown(At(eIdProgressBar1)));
        cHost.Run(user, [&] { follower().ProgressDone(L"Showing Rock", L"Showing 6 total."); });
        EXPECT_EQ(Status(1), L"Showing 6 total.");
        EXPECT_FALSE(Shown(At(eIdProgressBar1)));
    });
}

} // namespace ravlo::test

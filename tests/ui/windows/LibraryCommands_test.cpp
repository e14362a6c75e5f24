// SPDX-License-Identifier: MIT
// The menus of the library window, each command's wiring, and the database's news while it is open.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

namespace
{

constexpr const wchar_t* sRockFile = L"C:\\Radio\\Scheduler\\History_and_Ordering\\Rock.sif";

} // namespace

struct LibraryCommands : LibraryWindowTest
{
    void DeleteRockFile()
    {
        if (cState.cPorts.cFiles.FileExists(sRockFile))
            cState.cPorts.cFiles.Delete(sRockFile);
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
                                                        L"&Help"}));
    });
}

// Each item by the mouse and by the keyboard does its own command, in the order of the menus.
TEST_F(LibraryCommands, EveryItemIsReachedByMouseAndKeyboard)
{
    FillStation();
    struct Row
    {
        std::vector<int> path;
        std::function<void(const User&)> effect;
    };
    const auto ticked = [&] {
        const Texts colNodes = Tree();
        return std::count_if(colNodes.begin(), colNodes.end(),
                             [](const std::wstring& sNode) { return sNode.back() == L'*'; });
    };
    const auto box = [&](const wchar_t* sTitle) {
        return [=](const User& user) {
            EXPECT_EQ(user.Box().sTitle, sTitle);
            user.Answer(user.Box().lButtons == std::vector<int>{IDOK} ? IDOK : IDCANCEL);
        };
    };
    const std::vector<Row> rows =
        {
            {{0, 0, 0}, [&](const User&) { EXPECT_EQ(ticked(), 8); }},
            {{0, 0, 1}, [&](const User&) { EXPECT_EQ(ticked(), 0); }},
            {{0, 0, 2}, [&](const User&) { EXPECT_EQ(ticked(), 8) << "inverted, the root as well"; }},
            {{0, 1, 0}, [&](const User&) { EXPECT_EQ(SelectedArtists().size(), 9u); }},
            {{0, 1, 1}, [&](const User&) { EXPECT_EQ(SelectedArtists().size(), 0u); }},
            {{0, 1, 2}, [&](const User&) { EXPECT_EQ(SelectedArtists().size(), 9u); }},
            {{1, 0}, [&](const User&) { EXPECT_EQ(ticked(), 0) << "read anew, without ticks"; }},
            {{1, 1}, [&](const User&) { EXPECT_TRUE(cState.cPorts.cFiles.FileExists(sRockFile)); }},
            {{2, 0},
             [&](const User& user) {
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        EXPECT_EQ(User::Text(hCategories), L"Category Selector");
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hCategories);
             }},
            {{2, 1, 0}, box(L"New Category Creation")},
            {{2, 1, 1}, box(L"Choose Another Category In The Tree")},
            {{2, 2}, box(L"You Need to Check (tick) Them In The Tree.")},
            {{2, 3}, box(L"First Select Some Categories To Delete In The Tree!")},
            {{3}, [&](const User&) { EXPECT_EQ(cEvents.colSaid.back(), L"Help"); }},
    };
    for (const bool bMouse : {true, false})
    {
        Open([&](const User& user) {
            for (const Row& row : rows)
            {
                SCOPED_TRACE(::testing::PrintToString(row.path) + (bMouse ? " mouse" : " keys"));
                DeleteRockFile();
                cEvents.colSaid = {L""};
                bMouse ? ChooseByMouse(user, row.path) : ChooseByKeys(user, row.path);
                user.Idle();
                row.effect(user);
            }
            bMouse ? ChooseByMouse(user, {1, 2}) : ChooseByKeys(user, {1, 2});
            user.WaitUntilGone(hWindow);
        });
    }
}

TEST_F(LibraryCommands, CommandKeysWorkFromAnyFocus)
{
    FillStation();
    Open([&](const User& user) {
        cEvents.colSaid.clear();
        for (const HWND hFocus : {hTree, hGrid})
        {
            user.Click(hFocus);
            DeleteRockFile();
            user.Key(VK_F1);
            user.Key('S', VK_CONTROL);
            EXPECT_TRUE(cState.cPorts.cFiles.FileExists(sRockFile));
        }
        EXPECT_EQ(std::count(cEvents.colSaid.begin(), cEvents.colSaid.end(), L"Help"), 2);
        user.Key(VK_F4, VK_MENU);
        user.WaitUntilGone(hWindow);
    });
}

TEST_F(LibraryCommands, ANewCategoryAndANewLevelAppearInTheTree)
{
    FillStation();
    Open([&](const User& user) {
        Command(LibraryCommand::mnuCatNew);
        EXPECT_EQ(user.Box().sTitle, L"New Category Creation");
        ShotWithBoxes(user, L"library-box-new-category");
        user.AnswerInput(L"Blues");
        EXPECT_EQ(Tree()[1], L" Blues");
        ClickNode(user, Item(L"Rock"));
        Command(LibraryCommand::mnuCatLevelNew);
        EXPECT_EQ(user.Box().sTitle, L"Enter The New Category Level");
        ShotWithBoxes(user, L"library-box-new-level");
        user.AnswerInput(L"3");
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2", L"3"}));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        EXPECT_EQ(SelectedNode(), L"Rock");
        EXPECT_EQ(Status(0), L"Showing All Audio") << "what was shown before";
        Show(user, Item(L"Rock", L"3"));
        EXPECT_EQ(Rows(), 0);
        EXPECT_EQ(Status(1), L"Showing 0 total.");
        // Under a level it is its main category that gets another one.
        Command(LibraryCommand::mnuCatLevelNew);
        user.AnswerInput(L"4");
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2", L"3", L"4"}));
    });
}

TEST_F(LibraryCommands, ANewLevelUnderAllAudioIsRefused)
{
    FillStation();
    Open([&](const User& user) {
        Command(LibraryCommand::mnuCatLevelNew);
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"Choose Another Category In The Tree",
                               L"'ALL AUDIO' is not a valid category selection for this operation",
                               {IDOK}}));
        ShotWithBoxes(user, L"library-box-choose-another");
        user.Answer(IDOK);
    });
}

TEST_F(LibraryCommands, ShufflingAsksAndKeepsTicksAndShownNode)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        user.Key(VK_SPACE);
        Command(LibraryCommand::mnuShuffle);
        EXPECT_EQ(
            user.Box(),
            (BoxOnScreen{L"Confirm Shuffle.", L"Really shuffle these categories: Rock 1", {IDYES, IDNO}}));
        ShotWithBoxes(user, L"library-box-shuffle");
        user.Answer(IDNO);
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
        Command(LibraryCommand::mnuShuffle);
        user.Answer(IDYES);
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_NE(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2"}));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
    });
}

TEST_F(LibraryCommands, DeletingAsksAndTheTreeFollows)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"2"));
        user.Key(VK_SPACE);
        ClickBox(user, Item(L"Jazz"));
        Command(LibraryCommand::mnuCatDelete);
        const BoxOnScreen question{L"Confirm Category Deletion",
                                   L"Really delete the checked categories: \r\n"
                                   L"Jazz, Jazz 1, Rock 2\r\n\r\n"
                                   L"Any items in these categories will be removed from the categories.",
                                   {IDYES, IDNO}};
        EXPECT_EQ(user.Box(), question);
        ShotWithBoxes(user, L"library-box-delete");
        user.Answer(IDNO);
        EXPECT_EQ(Tree().size(), 8u);
        Command(LibraryCommand::mnuCatDelete);
        user.Answer(IDYES);
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" r&b", L"  1", L" Rock", L"  1"}));
        EXPECT_EQ(SelectedNode(), L"Rock") << "the main category of the level that is gone";
        EXPECT_EQ(Status(0), L"Showing Rock");
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
    });
}

TEST_F(LibraryCommands, NothingTickedIsSaid)
{
    FillStation();
    Open([&](const User& user) {
        Command(LibraryCommand::mnuCatDelete);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"First Select Some Categories To Delete In The Tree!",
                                           L"There are no categories checked in the tree to delete!",
                                           {IDOK}}));
        ShotWithBoxes(user, L"library-box-nothing-to-delete");
        user.Answer(IDOK);
        Command(LibraryCommand::mnuShuffle);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"You Need to Check (tick) Them In The Tree.",
                                           L"First, select some categories to shuffle",
                                           {IDOK}}));
        ShotWithBoxes(user, L"library-box-nothing-to-shuffle");
        user.Answer(IDOK);
    });
}

TEST_F(LibraryCommands, ACommandWhoseSaveFailsLeavesTreeGridAndWindowTrue)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        user.Key(VK_SPACE);
        user.Key('S', VK_CONTROL);
        const std::string before = cState.cPorts.cFiles.Get(sRockFile);
        cState.cPorts.cFiles.SetReadOnly(sRockFile);
        cState.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
        Command(LibraryCommand::mnuShuffle);
        user.Answer(IDYES);
        EXPECT_EQ(
            user.Box(),
            (BoxOnScreen{L"RavloScheduler", L"Failed to save cat history and ordering for: Rock", {IDOK}}));
        ShotWithBoxes(user, L"library-box-failed-save");
        user.Answer(IDOK);
        user.Idle();
        EXPECT_EQ(Artists(), Order(L"Rock", 1)) << "the grid shows what is";
        EXPECT_EQ(cState.cPorts.cFiles.Get(sRockFile), before) << "the file is whole";
        EXPECT_TRUE(::IsWindowEnabled(hTree));
        EXPECT_TRUE(::IsWindowEnabled(hGrid));
        EXPECT_TRUE(::IsWindowEnabled(hWindow));
        // Once the disk is there again, saving again makes it good.
        cState.cPorts.cFiles.SetReadOnly(sRockFile, false);
        cState.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", false);
        user.Key('S', VK_CONTROL);
        EXPECT_NE(cState.cPorts.cFiles.Get(sRockFile), before);
    });
}

TEST_F(LibraryCommands, TheTreeFollowsWhatTheCategoryWindowCreates)
{
    FillStation();
    Open([&](const User& user) {
        Command(LibraryCommand::mnuCatUI);
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        EXPECT_FALSE(::IsWindowEnabled(hWindow));
        ShotWithBoxes(user, L"library-category-window");
        cHost.Run(user, [&] {
            std::wstring sName = L"Polka";
            cState.cSchedMan->CreateMainCat(sName);
        });
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hCategories);
        user.Idle();
        EXPECT_TRUE(::IsWindowEnabled(hWindow));
        EXPECT_EQ(Tree()[3], L" Polka");
    });
}

// It shows once: from a library window that it has opened itself it cannot be opened again.
TEST_F(LibraryCommands, ShowCategoryUIIsGreyedWhileThatWindowIsOpen)
{
    FillStation();
    cState.Populate();
    const auto bGreyed = [&](const User& user, const std::function<void()>& openMenu) {
        openMenu();
        user.WaitFor(L"#32768");
        constexpr int lCategories = 2;
        const HMENU hMenu = ::GetSubMenu(::GetMenu(hWindow), lCategories);
        const bool bNow = (::GetMenuState(hMenu, 0, MF_BYPOSITION) & MF_GRAYED) != 0;
        user.Key(VK_ESCAPE);
        user.Key(VK_ESCAPE);
        return bNow;
    };
    const auto check = [&](const User& user, bool bExpected) {
        EXPECT_EQ(bGreyed(user, [&] { user.Key(L'C', VK_MENU); }), bExpected) << "in the menu bar";
        user.Click(hTree);
        EXPECT_EQ(bGreyed(user, [&] { user.Key(VK_APPS); }), bExpected) << "at the tree";
    };
    CategoryRequest request;
    WhileOpen([&] { cState.cSchedMan->ShowCatUI(request); },
              [&](const User& user) {
        const HWND hCategories = user.WaitFor(sfrmCatClass);
        ::PostMessageW(hCategories, WM_COMMAND, eIdmnuSchedLib, 0);
        hWindow = user.WaitFor(sfrmUILibClass);
        hTree = User::Control(hWindow, eIdTvCats);
        check(user, true);
        ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
        user.WaitUntilGone(hWindow);
        ::PostMessageW(hCategories, WM_CLOSE, 0, 0);
        user.WaitUntilGone(hCategories);
    });
    OpenAgain([&](const User& user) { check(user, false); });
}

// ---- news from the database ----

TEST_F(LibraryCommands, WhatTheDatabaseAnnouncesIsShownWhileTheWindowIsOpen)
{
    FillStation();
    Open([&](const User& user) {
        auto& cDataBase = *cState.cDataBase;
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        SelectRows(user, 3, 4); // Dido, Eagles
        cHost.Run(user, [&] {
            Add(L"C:\\Music\\new.wav", L"Rock/Soul", 1, L"Garbage");
            cDataBase.Announce(&DataBaseEvents::CutsAdded, Cuts{cDataBase.colCuts.back()});
        });
        user.Idle();
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2",
                                 L" Soul", L"  1"}));
        EXPECT_EQ(Artists().back(), L"Garbage");
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"})) << "what was selected still is";
        EXPECT_EQ(SelectedNode(), L"1");
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        cHost.Run(user, [&] {
            cDataBase.colCuts[0]->SetArtist(L"Zappa");
            cDataBase.Announce(&DataBaseEvents::CutsModified, Cuts{cDataBase.colCuts[0]});
        });
        user.Idle();
        EXPECT_EQ(Artists().front(), L"Zappa");
        cHost.Run(user, [&] {
            const auto cGone = cDataBase.colCuts[1];
            cDataBase.colCuts.erase(cDataBase.colCuts.begin() + 1);
            cDataBase.Announce(&DataBaseEvents::CutsRemoved, Cuts{cGone});
        });
        user.Idle();
        EXPECT_EQ(Artists(), (Texts{L"Zappa", L"Cream", L"Dido", L"Eagles", L"Feist", L"Garbage"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(Status(1), L"Showing 6 total.");
    });
}

TEST_F(LibraryCommands, NewsDuringAPopUpWaitUntilTheChoiceIsCarriedOut)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        SelectRows(user, 0, 0); // Abba
        DropOnNode(user, 0, Item(L"Jazz"));
        user.WaitFor(L"#32768");
        cHost.Run(user, [&] {
            auto& cDataBase = *cState.cDataBase;
            Add(L"C:\\Music\\new.wav", L"Soul", 1, L"Garbage");
            cDataBase.Announce(&DataBaseEvents::CutsAdded, Cuts{cDataBase.colCuts.back()});
        });
        EXPECT_EQ(Tree().size(), 8u) << "not under the user's feet";
        Choose(user, 1);
        Choose(user, 1);
        user.Idle();
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        EXPECT_EQ(Tree().size(), 10u);
    });
}

TEST_F(LibraryCommands, AGridThatAHostFillsShowsItsProgressInTheWindow)
{
    FillStation();
    cState.Populate();
    OpenAgain([&](const User& user) {
        cHost.Run(user,
                  [&] { cState.cSchedMan->ProgressFollower()->ProgressStart(L"Populating Grid...", 3); });
        EXPECT_EQ(Status(0), L"Populating Grid...");
        EXPECT_TRUE(::IsWindowVisible(User::Control(hWindow, eIdProgressBar1)));
        cHost.Run(user, [&] {
            cState.cSchedMan->ProgressFollower()->ProgressDone(L"Showing Rock", L"Showing 6 total.");
        });
        EXPECT_EQ(Status(1), L"Showing 6 total.");
        EXPECT_FALSE(::IsWindowVisible(User::Control(hWindow, eIdProgressBar1)));
    });
}

} // namespace ravlo::test

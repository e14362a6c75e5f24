// SPDX-License-Identifier: MIT
// Dragging rows of the library window's grid into its tree and within the grid, and the keys for the same.
#include "ui/library/windows/DragAndDrop.h"
#include "ui/windows/LibraryFixture.h"

#include <thread>

namespace ravlo::test
{

namespace
{

enum Option : int
{
    eCopy,
    eMove,
    eExclusive,
    eGiveUp,
};

} // namespace

// Rock 1 is shown.
struct LibraryDrag : LibraryWindowTest
{
    LibraryDrag() { FillStation(); }
    void OpenOnRock(const std::function<void(const User&)>& drive)
    {
        Open([&](const User& user) {
            Expand(user, Item(L"Jazz"));
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"1"));
            ASSERT_EQ(Artists().size(), 6u);
            drive(user);
        });
    }
    // The categories a cut is in, with its level.
    std::wstring CatsOf(const std::wstring& sArtist) const
    {
        std::wstring sCats;
        for (const std::shared_ptr<clsCat>& cMainCat : *cState.cSchedMan->colMainCats())
            for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
                for (const std::shared_ptr<Cut>& cCut : *cLevel->SchedCuts())
                    if (cCut->Artist() == sArtist)
                        sCats += (sCats.empty() ? L"" : L", ") + cMainCat->CatName() + L" " +
                                 std::to_wstring(cLevel->CatLevel());
        return sCats;
    }
};

// ---- into the tree ----

struct DropCase
{
    int lFirst;
    int lLast;
    const wchar_t* sMain;
    const wchar_t* sLevel; // empty: the main category's node
    int lLevelItem;        // of the first pop-up; -1 for a level's node
    Option eOption;
    const wchar_t* sAbba; // where it stands afterwards
    const wchar_t* sBlur;

    friend void PrintTo(const DropCase&, std::ostream*) {} // its name says it
};

std::string NameOf(const ::testing::TestParamInfo<DropCase>& param)
{
    const DropCase& drop = param.param;
    const char* sOptions[] = {"Copy", "Move", "Exclusive", "Cancel"};
    const std::wstring sMain = drop.sMain;
    return std::string(drop.lFirst == drop.lLast ? "One" : "Many") + sOptions[drop.eOption] + "Into" +
           std::string(sMain.begin(), sMain.end()) +
           (drop.lLevelItem < 0 ? "Level" + std::to_string(*drop.sLevel - L'0')
                                : "ByChoice" + std::to_string(drop.lLevelItem));
}

struct LibraryDrops : LibraryDrag, ::testing::WithParamInterface<DropCase>
{
};

TEST_P(LibraryDrops, RowsGoWhereTheyAreDropped)
{
    const DropCase& drop = GetParam();
    OpenOnRock([&](const User& user) {
        SelectRows(user, drop.lFirst, drop.lLast);
        DropOnNode(user, drop.lFirst, Item(drop.sMain, drop.sLevel));
        if (drop.lLevelItem >= 0)
            Choose(user, drop.lLevelItem);
        Choose(user, drop.eOption);
        user.Idle();
        EXPECT_EQ(CatsOf(L"Abba"), drop.sAbba);
        EXPECT_EQ(CatsOf(L"Blur"), drop.sBlur);
        EXPECT_EQ(CatsOf(L"Cream"), L"Rock 1");
        EXPECT_EQ(Artists(), Order(L"Rock", 1)) << "the grid shows what is";
        EXPECT_EQ(Status(0), L"Showing Rock 1");
        EXPECT_EQ(SelectedNode(), L"1");
    });
}

INSTANTIATE_TEST_SUITE_P(
    All, LibraryDrops,
    ::testing::Values(DropCase{0, 0, L"Jazz", L"1", -1, eCopy, L"Rock 1, Jazz 1", L"Rock 1"},
                      DropCase{0, 1, L"Jazz", L"1", -1, eCopy, L"Rock 1, Jazz 1", L"Rock 1, Jazz 1"},
                      DropCase{0, 0, L"Jazz", L"1", -1, eMove, L"Jazz 1", L"Rock 1"},
                      DropCase{0, 1, L"Rock", L"2", -1, eMove, L"Rock 2", L"Rock 2"},
                      DropCase{0, 0, L"Rock", L"2", -1, eExclusive, L"Rock 2", L"Rock 1"},
                      DropCase{0, 1, L"Jazz", L"1", -1, eExclusive, L"Jazz 1", L"Jazz 1"},
                      DropCase{0, 1, L"Jazz", L"1", -1, eGiveUp, L"Rock 1", L"Rock 1"},
                      DropCase{0, 0, L"Jazz", L"", 0, eCopy, L"Rock 1, Jazz 1", L"Rock 1"},
                      DropCase{0, 1, L"Jazz", L"", 0, eMove, L"Jazz 1", L"Jazz 1"},
                      DropCase{0, 1, L"Jazz", L"", 0, eExclusive, L"Jazz 1", L"Jazz 1"},
                      DropCase{0, 1, L"Rock", L"", 2, eMove, L"Rock 2", L"Rock 2"},
                      DropCase{0, 1, L"Rock", L"", 2, eGiveUp, L"Rock 1", L"Rock 1"}),
    NameOf);

TEST_F(LibraryDrag, ThePopUpsNameTheirTarget)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 0, 1);
        DragOverNode(user, 0, Item(L"r&b"));
        user.Shot(hWindow, L"library-drag-to-tree");
        user.Release();
        EXPECT_EQ(PopUpItems(user),
                  (Texts{L"Drop Into: r&&b, keeping levels the same", L"Drop Into r&&b Level 1"}))
            << "the doubled sign is shown once";
        ShotWithBoxes(user, L"library-choose-level");
        Choose(user, 1);
        EXPECT_EQ(PopUpItems(user), (Texts{L"Copy Into r&&b 1", L"Move Into r&&b 1",
                                           L"Move Exclusive Into r&&b 1", L"Cancel"}));
        ShotWithBoxes(user, L"library-choose-drop");
        Choose(user, 1);
        user.Idle();
        EXPECT_EQ(Order(L"r&b", 1), (Texts{L"Aretha", L"Abba", L"Blur"}));
        EXPECT_EQ(Artists(), (Texts{L"Cream", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(NextItem(nullptr, TVGN_DROPHILITE), nullptr);
    });
}

TEST_F(LibraryDrag, DismissingEitherPopUpChangesNothing)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 0, 1);
        for (const int lChosen : {0, 1})
        {
            DropOnNode(user, 0, Item(L"Jazz"));
            if (lChosen == 1)
                Choose(user, 0);
            user.WaitFor(L"#32768");
            user.Key(VK_ESCAPE);
            user.Idle();
            EXPECT_EQ(user.Find(L"#32768"), nullptr);
            EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella"}));
            EXPECT_EQ(SelectedArtists(), (Texts{L"Abba", L"Blur"}));
        }
    });
}

TEST_F(LibraryDrag, CopyingIntoALevelOfAnotherNumberIsRefused)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 0, 1);
        DropOnNode(user, 0, Item(L"Rock", L"2"));
        Choose(user, eCopy);
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"Multiple Category Levels Not Allowed!",
                               L"Items can only be in one category level,even though they may be in "
                               L"multiple categories.\r\n\r\n"
                               L"Copying the items to this level is therefore not permitted.\r\n\r\n"
                               L"You DO have the option to move the items to this level,\r\n"
                               L"in which case this will change the level for EVERY category the items "
                               L"are in.",
                               {IDOK}}));
        ShotWithBoxes(user, L"library-box-multiple-levels");
        user.Answer(IDOK);
        EXPECT_EQ(Order(L"Rock", 2), (Texts{L"Slowdive"}));
    });
}

TEST_F(LibraryDrag, ADropIntoAllAudioIsRefusedWhenTheDragHasEnded)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DropOnNode(user, 0, Root());
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"Invalid Drop!", L"It's not valid to drop into 'ALL AUDIO'", {IDOK}}));
        ShotWithBoxes(user, L"library-box-invalid-drop");
        EXPECT_EQ(NextItem(nullptr, TVGN_DROPHILITE), Root()) << "what the box speaks of";
        user.Answer(IDOK);
        user.Idle();
        EXPECT_EQ(NextItem(nullptr, TVGN_DROPHILITE), nullptr);
    });
}

TEST_F(LibraryDrag, BesideTheNodesNothingHappens)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        RECT client{};
        ::GetClientRect(hTree, &client);
        DragOver(user, 0, hTree, {60, client.bottom - 60});
        user.Release();
        EXPECT_EQ(user.Find(L"#32768"), nullptr);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        Command(LibraryCommand::mnuHelp);
        user.Idle();
        EXPECT_EQ(cEvents.colSaid.back(), L"Help") << "nothing runs any more";
    });
}

TEST_F(LibraryDrag, EscapeEndsADragWithoutADrop)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DragOver(user, 0, hGrid, RowAt(4));
        user.Key(VK_ESCAPE);
        user.Release();
        EXPECT_EQ(Order(L"Rock", 1)[0], L"Abba");
        Command(LibraryCommand::mnuHelp);
        user.Idle();
        EXPECT_EQ(cEvents.colSaid.back(), L"Help") << "nothing runs any more";
    });
}

TEST_F(LibraryDrag, ANodeThePointerRestsOnOpens)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DragOverNode(user, 0, Item(L"r&b"));
        user.Until(
            [&] {
            user.MoveTo(hTree, MiddleOf(Item(L"r&b")));
            return IsExpanded(Item(L"r&b"));
            },
            "the node to open");
        user.Key(VK_ESCAPE);
        user.Release();
    });
}

TEST_F(LibraryDrag, ANodeOpenedInADragStaysOpenAfterARefresh)
{
    OpenOnRock([&](const User& user) {
        // Opened and closed before: the tree view reports only an item's first opening by itself.
        ASSERT_TRUE(IsExpanded(Item(L"Jazz")));
        ClickNode(user, Item(L"Jazz"));
        user.Key(VK_LEFT);
        ASSERT_FALSE(IsExpanded(Item(L"Jazz")));
        ClickNode(user, Item(L"r&b")); // a selected node is not marked besides
        ClickRow(user, 0);
        DragOverNode(user, 0, Item(L"Jazz"));
        user.Until(
            [&] {
            user.MoveTo(hTree, MiddleOf(Item(L"Jazz")));
            return IsExpanded(Item(L"Jazz"));
            },
            "the node to open");
        user.Key(VK_ESCAPE);
        user.Release();
        Command(LibraryCommand::mnuReloadAll);
        user.Idle();
        EXPECT_TRUE(IsExpanded(Item(L"Jazz")));
    });
}

// ---- within the grid ----

TEST_F(LibraryDrag, ABlockIsReOrderedByTheMouse)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 3, 4); // Dido, Eagles
        DragOver(user, 3, hGrid, RowAt(1));
        user.Shot(hWindow, L"library-drag-in-grid");
        user.Release();
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(Order(L"Rock", 1), Artists());
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(Cell(1, 0), L"2") << "positions are counted anew";
        // Below the rows: to the end.
        DragOver(user, 1, hGrid, {RowAt(5).x, RowAt(5).y + 60});
        user.Release();
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Feist", L"Dido", L"Eagles"}));
        // Onto the header: to the beginning.
        DragOver(user, 4, hGrid, {RowAt(0).x, 5});
        user.Release();
        EXPECT_EQ(Artists(), (Texts{L"Dido", L"Eagles", L"Abba", L"Blur", L"Cream", L"Feist"}));
        // Onto itself: nothing.
        DropOnRow(user, 0, 1);
        EXPECT_EQ(Artists(), (Texts{L"Dido", L"Eagles", L"Abba", L"Blur", L"Cream", L"Feist"}));
    });
}

TEST_F(LibraryDrag, ABlockIsReOrderedByKeys)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 3, 4);
        user.Key(VK_DOWN, VK_MENU);
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Feist", L"Dido", L"Eagles"}));
        user.Key(VK_DOWN, VK_MENU);
        EXPECT_EQ(Artists().back(), L"Eagles") << "at the end";
        for (int i = 0; i < 5; ++i)
            user.Key(VK_UP, VK_MENU);
        EXPECT_EQ(Artists(), (Texts{L"Dido", L"Eagles", L"Abba", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(Order(L"Rock", 1), Artists());
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

TEST_F(LibraryDrag, ADropAboveTheRowsIsInFrontOfTheFirstAlsoWhenItIsOutOfSight)
{
    for (int i = 0; i < 80; ++i)
        Add(L"C:\\Music\\more" + std::to_wstring(i) + L".wav", L"Rock", 1, L"Zappa");
    Add(L"C:\\Music\\last.wav", L"Rock", 1, L"Zz Top");
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        user.Key(VK_F6);
        user.Key(VK_END);
        ASSERT_GT(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), 20);
        DragOver(user, 86, hGrid, {RowAt(86).x, 5});
        user.Release();
        EXPECT_EQ(Artists()[0], L"Zz Top");
        EXPECT_EQ(Order(L"Rock", 1)[1], L"Abba");
    });
}

TEST_F(LibraryDrag, MovingRowsByKeysLeavesTheMenuAlone)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 3);
        // As a hand does that leaves both keys at once: Alt is up first.
        for (const auto& [lKey, lFlags] : {std::pair<BYTE, DWORD>{VK_MENU, 0},
                                           {VK_UP, 0},
                                           {VK_MENU, KEYEVENTF_KEYUP},
                                           {VK_UP, KEYEVENTF_KEYUP}})
            ::keybd_event(lKey, 0, lFlags, 0);
        user.Idle();
        EXPECT_EQ(Order(L"Rock", 1)[2], L"Dido");
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        ::GetGUIThreadInfo(::GetWindowThreadProcessId(hWindow, nullptr), &info);
        EXPECT_EQ(info.flags & GUI_INMENUMODE, 0u);
        user.Key(VK_HOME);
        EXPECT_EQ(SelectedArtists(), (Texts{L"Abba"})) << "the list still has the keys";
    });
}

TEST_F(LibraryDrag, RowsOutOfOrderAreNotReOrdered)
{
    OpenOnRock([&](const User& user) {
        const BoxOnScreen refusal{
            L"Operation Not Completed.",
            L"When dragging and dropping multiple items in the scheduler grid for reordering, \r\n"
            L"the items dragged from need to be in consecutive schedule order.",
            {IDOK}};
        ClickRow(user, 2);
        AddRow(user, 3);
        AddRow(user, 5);
        ASSERT_EQ(SelectedArtists(), (Texts{L"Cream", L"Dido", L"Feist"}));
        DropOnRow(user, 3, 0);
        EXPECT_EQ(user.Box(), refusal);
        ShotWithBoxes(user, L"library-box-not-consecutive");
        user.Answer(IDOK);
        user.Key(VK_UP, VK_MENU);
        EXPECT_EQ(user.Box(), refusal);
        user.Answer(IDOK);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
    });
}

TEST_F(LibraryDrag, OutsideOfALevelNothingIsReOrdered)
{
    OpenOnRock([&](const User& user) {
        const BoxOnScreen refusal{
            L"View Inside a Category Level to Enable Dragging and Dropping In The Grid.",
            L"Dragging and dropping in the grid to change schedule order is only enabled,\r\n"
            L"or indeed makes any sense, when you are viewing within a category level.\r\n\r\n"
            L"To view inside a category level, expand the tree for the category, \r\n"
            L"and double-left click the desired category level.\r\n\r\n"
            L"Then you may drag the items around in the grid to change the schedule order.\r\n\r\n"
            L"Also, you can select multiple items and drag them into different categories in the tree.",
            {IDOK}};
        for (const HTREEITEM hItem : {Item(L"Rock"), Root()})
        {
            Show(user, hItem);
            ClickRow(user, 0);
            DropOnRow(user, 0, 3);
            EXPECT_EQ(user.Box(), refusal);
            ShotWithBoxes(user, L"library-box-not-in-a-level");
            user.Answer(IDOK);
        }
        EXPECT_EQ(Order(L"Rock", 1)[0], L"Abba");
    });
}

TEST_F(LibraryDrag, WhatIsDraggedFromElsewhereIsRefused)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 4);
        // The second one says what this window's own rows say.
        for (const wchar_t* sText : {L"something else", sGridPayload})
        {
            ForgetClicks(user);
            user.Press(User::Control(hWindow, eIdStatus), {6, 6});
            std::thread dragger([&] { cHost.Run(user, [sText] { DragText(sText); }); });
            for (const int lRow : {1, 2, 3, 2})
                user.MoveTo(hGrid, RowAt(lRow));
            user.Release();
            dragger.join();
            EXPECT_EQ(user.Box(),
                      (BoxOnScreen{L"Scheduler Grid", L"Unrecognized Source for dragdrop!", {IDOK}}));
            ShotWithBoxes(user, L"library-box-unrecognized");
            user.Answer(IDOK);
        }
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
    });
}

// ---- by the keyboard alone ----

TEST_F(LibraryDrag, CutsAreCopiedAndMovedWithTheKeyboardAlone)
{
    Open([&](const User& user) {
        for (int i = 0; i < 3; ++i)
            user.Key(VK_DOWN); // Rock
        user.Key(VK_RIGHT);
        user.Key(VK_DOWN); // level 1
        user.Key(VK_RETURN);
        for (const wchar_t cKey : {L'C', L'X'})
        {
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hGrid);
            user.Key(VK_HOME);
            user.Key(VK_DOWN);
            user.Key(cKey, VK_CONTROL);
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hTree);
            user.Key(VK_HOME);
            user.Key(VK_DOWN); // Jazz
            user.Key('V', VK_CONTROL);
            Choose(user, 1); // level 1
            Choose(user, cKey == L'C' ? eCopy : eMove);
            user.Idle();
        }
        EXPECT_EQ(CatsOf(L"Blur"), L"Jazz 1");
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Blur"}));
    });
}

} // namespace ravlo::test

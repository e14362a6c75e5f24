// SPDX-License-Identifier: MIT
// Dragging rows of the library window's grid into its tree and within the grid, and the keys for the same.
#include "ui/library/clsSchedLibGridPresenter.h"
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

struct LibraryDrag : FilledLibrary
{
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
    // Rests on a node until it opens, and gives the drag up.
    void RestOn(const User& user, HTREEITEM hItem) const
    {
        DragOverNode(user, 0, hItem);
        user.Until(
            [&] {
            user.MoveTo(hTree, MiddleOf(hItem));
            return IsExpanded(hItem);
            },
            "the node to open");
        GiveUpDrag(user);
    }
    void ExpectIdle(const User& user)
    {
        Do(user, LibraryCommand::mnuHelp);
        EXPECT_EQ(cEvents.colSaid.back(), L"Help") << "nothing runs any more";
    }
};

// ---- into the tree ----

TEST_F(LibraryDrag, RowsGoWhereTheyAreDropped)
{
    OpenOnRock([&](const User& user) {
        const struct
        {
            const wchar_t* sMain;
            const wchar_t* sLevel; // empty: the main category's node
            int lFirst, lLast;
            std::vector<int> items; // of the pop-ups
            std::vector<std::pair<const wchar_t*, const wchar_t*>> colWhere;
        } drops[] = {
            {L"Jazz", L"", 0, 0, {1, eCopy}, {{L"Abba", L"Rock 1, Jazz 1"}, {L"Blur", L"Rock 1"}}},
            {L"Rock", L"2", 1, 2, {eMove}, {{L"Blur", L"Rock 2"}, {L"Cream", L"Rock 2"}}},
            {L"Jazz", L"", 1, 2, {0, eExclusive}, {{L"Dido", L"Jazz 1"}, {L"Eagles", L"Jazz 1"}}},
            {L"Rock", L"", 0, 1, {2, eGiveUp}, {{L"Abba", L"Rock 1, Jazz 1"}, {L"Feist", L"Rock 1"}}},
        };
        for (const auto& drop : drops)
        {
            SCOPED_TRACE(drop.colWhere[0].second);
            SelectRows(user, drop.lFirst, drop.lLast);
            DropOnNode(user, drop.lFirst, Item(drop.sMain, drop.sLevel));
            for (const int lItem : drop.items)
                Choose(user, lItem);
            user.Idle();
            for (const auto& [sArtist, sCats] : drop.colWhere)
                EXPECT_EQ(CatsOf(sArtist), sCats);
            EXPECT_EQ(Artists(), Order(L"Rock", 1));
            EXPECT_EQ(Status(0), L"Showing Rock 1");
            EXPECT_EQ(SelectedNode(), L"1");
        }
    });
}

TEST_F(LibraryDrag, PopUpsNameTheTargetAndCanBeDismissed)
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
        user.Key(VK_ESCAPE);
        DropOnNode(user, 0, Item(L"r&b"));
        Choose(user, 1);
        EXPECT_EQ(PopUpItems(user), (Texts{L"Copy Into r&&b 1", L"Move Into r&&b 1",
                                           L"Move Exclusive Into r&&b 1", L"Cancel"}));
        ShotWithBoxes(user, L"library-choose-drop");
        user.Key(VK_ESCAPE);
        user.Idle();
        EXPECT_EQ(user.Find(L"#32768"), nullptr);
        EXPECT_EQ(Order(L"r&b", 1), (Texts{L"Aretha"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Abba", L"Blur"}));
    });
}

TEST_F(LibraryDrag, ADragWithoutATargetChangesNothing)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        DragOver(user, 0, hTree, {60, ClientOf(hTree).bottom - 60}); // below the nodes
        user.Release();
        EXPECT_EQ(user.Find(L"#32768"), nullptr);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        ExpectIdle(user);
        DragOver(user, 0, hGrid, RowAt(4));
        GiveUpDrag(user);
        EXPECT_EQ(Order(L"Rock", 1)[0], L"Abba");
        ExpectIdle(user);
    });
}

TEST_F(LibraryDrag, ANodeThePointerRestsOnOpensAndStaysOpen)
{
    OpenOnRock([&](const User& user) {
        // Opened and closed before: the tree view itself reports only an item's first opening.
        Expand(user, Item(L"Jazz"));
        user.Key(VK_LEFT);
        ASSERT_FALSE(IsExpanded(Item(L"Jazz")));
        ClickNode(user, Root()); // a selected node is never marked
        ClickRow(user, 0);
        for (const wchar_t* sName : {L"r&b", L"Jazz"})
            RestOn(user, Item(sName));
        Do(user, LibraryCommand::mnuReloadAll);
        EXPECT_TRUE(IsExpanded(Item(L"Jazz")));
        EXPECT_TRUE(IsExpanded(Item(L"r&b")));
    });
}

// ---- within the grid ----

TEST_F(LibraryDrag, ABlockIsReOrderedByMouseAndKeys)
{
    OpenOnRock([&](const User& user) {
        const Texts colFirst{L"Dido", L"Eagles", L"Abba", L"Blur", L"Cream", L"Feist"};
        const Texts colLast{L"Abba", L"Blur", L"Cream", L"Feist", L"Dido", L"Eagles"};
        SelectRows(user, 3, 4); // Dido, Eagles
        DragOver(user, 3, hGrid, RowAt(1));
        user.Shot(hWindow, L"library-drag-in-grid");
        user.Release();
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(Cell(1, 0), L"2") << "positions are counted again";
        DropAt(user, 1, {RowAt(5).x, RowAt(5).y + 60}); // below the rows
        EXPECT_EQ(Artists(), colLast);
        DropAt(user, 4, {RowAt(0).x, 5}); // onto the header
        EXPECT_EQ(Artists(), colFirst);
        DropAt(user, 0, RowAt(1)); // onto itself
        EXPECT_EQ(Artists(), colFirst);
        for (int i = 0; i < 5; ++i)
            user.Key(VK_DOWN, VK_MENU);
        EXPECT_EQ(Artists(), colLast);
        user.Key(VK_UP, VK_MENU);
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Order(L"Rock", 1), Artists());
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

TEST_F(LibraryDrag, ADropOnTheHeaderIsInFrontOfAHiddenFirstRow)
{
    for (int i = 0; i < 80; ++i)
        Add(L"C:\\Music\\more" + std::to_wstring(i) + L".wav", L"Rock", 1, L"Zappa");
    Add(L"C:\\Music\\last.wav", L"Rock", 1, L"Zz Top");
    OpenOnRock([&](const User& user) {
        user.Keys({VK_F6, VK_END});
        ASSERT_GT(TopRow(), 20);
        DropAt(user, 86, {RowAt(86).x, 5});
        EXPECT_EQ(Artists()[0], L"Zz Top");
        EXPECT_EQ(Order(L"Rock", 1)[1], L"Abba");
    });
}

TEST_F(LibraryDrag, MovingRowsByKeysLeavesTheMenuAlone)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 3);
        // A hand that releases both keys at once: Alt is up first.
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

TEST_F(LibraryDrag, ReOrderingThatIsRefusedIsExplained)
{
    const auto expectRefusal = [&](const User& user, const wchar_t* sTitle, const wchar_t* sShot) {
        EXPECT_EQ(user.Box().sTitle, sTitle);
        ShotWithBoxes(user, sShot);
        user.Answer(IDOK);
    };
    const auto expectNotConsecutive = [&](const User& user) {
        expectRefusal(user, L"Operation Not Completed.", L"library-box-not-consecutive");
    };
    OpenOnRock([&](const User& user) {
        ClickRow(user, 2);
        AddRow(user, 3);
        AddRow(user, 5);
        ASSERT_EQ(SelectedArtists(), (Texts{L"Cream", L"Dido", L"Feist"}));
        DropAt(user, 3, RowAt(0));
        expectNotConsecutive(user);
        user.Key(VK_UP, VK_MENU);
        expectNotConsecutive(user);
        Show(user, Root());
        ClickRow(user, 0);
        DropAt(user, 0, RowAt(3));
        expectRefusal(user, L"View Inside a Category Level to Enable Dragging and Dropping In The Grid.",
                      L"library-box-not-in-a-level");
        EXPECT_EQ(Order(L"Rock", 1), colRockArtists);
    });
}

TEST_F(LibraryDrag, ADragFromElsewhereIsRefused)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 4);
        ForgetClicks(user);
        user.Press(At(eIdStatus), {6, 6});
        // With the text of this window's own rows.
        std::thread dragger([&] { cHost.Run(user, [] { DragText(sGridPayload); }); });
        for (const int lRow : {1, 2, 3, 2})
            user.MoveTo(hGrid, RowAt(lRow));
        user.Release();
        dragger.join();
        Answer(user, OkOnScreen(L"Scheduler Grid", L"Unrecognized Source for dragdrop!"),
               L"library-box-unrecognized", IDOK);
        EXPECT_EQ(Order(L"Rock", 1), colRockArtists);
    });
}

// ---- by the keyboard alone ----

TEST_F(LibraryDrag, CutsAreCopiedAndMovedWithTheKeyboardAlone)
{
    Open([&](const User& user) {
        user.Keys({VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT, VK_DOWN, VK_RETURN}); // Rock 1
        for (const wchar_t cKey : {L'C', L'X'})
        {
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hGrid);
            user.Keys({VK_HOME, VK_DOWN});
            user.Key(cKey, VK_CONTROL);
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hTree);
            user.Keys({VK_HOME, VK_DOWN}); // Jazz
            user.Key('V', VK_CONTROL);
            Choose(user, {1, cKey == L'C' ? eCopy : eMove});
        }
        EXPECT_EQ(CatsOf(L"Blur"), L"Jazz 1");
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Blur"}));
    });
}

// A database may hand out another object for the same cut each time: what the user sees and does goes by the
// keys.
TEST_F(LibraryDrag, CutsOfFreshObjectsAreReOrderedMovedPastedAndRemoved)
{
    cState.cDataBase->bFreshObjects = true;
    OpenOnRock([&](const User& user) {
        SelectRows(user, 3, 4); // Dido, Eagles
        DropAt(user, 3, RowAt(1));
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        ClickRow(user, 0);
        DropOnNode(user, 0, Item(L"Jazz"));
        Choose(user, {1, 1}); // level 1, move
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        ClickRow(user, 2); // Blur
        user.Key('C', VK_CONTROL);
        ClickNode(user, Item(L"Jazz"));
        user.Key('V', VK_CONTROL);
        Choose(user, {1, 0}); // level 1, copy
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba", L"Blur"}));
        SelectRows(user, 2, 3);
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(cState.cDataBase->colCuts[1]->CategoryText(), L"Jazz");
    });
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// The category tree of the library window: what it shows, ticks, expands and selects.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using LibraryTree = FilledLibrary;
using OtherLibraryTree = LibraryWindowTest; // with cuts of its own

TEST_F(LibraryTree, DoubleClickAndEnterShowANodesItems)
{
    Open([&](const User& user) {
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
        EXPECT_EQ(Rows(), 9);
        EXPECT_EQ(Status(0), L"Showing All Audio");
        EXPECT_EQ(Status(1), L"Showing 9 total.");
        EXPECT_EQ(SelectedNode(), L"ALL AUDIO");
        EXPECT_EQ(user.FocusedWindow(), hTree);
        Expand(user, Item(L"Rock"));
        DoubleClickNode(user, Item(L"Rock", L"1"));
        EXPECT_EQ(Artists(), colRockArtists);
        EXPECT_EQ(Status(0), L"Showing Rock 1");
        EXPECT_EQ(Status(1), L"Showing 6 total.");
        user.Shot(hWindow, L"library-level");
        DoubleClickNode(user, Item(L"Rock"));
        EXPECT_EQ(Rows(), 7);
        EXPECT_EQ(Status(0), L"Showing Rock");
        user.Shot(hWindow, L"library-main-category");
        DoubleClickNode(user, Root());
        EXPECT_EQ(Rows(), 9);
        user.Keys({VK_DOWN, VK_RETURN});
        EXPECT_EQ(Status(0), L"Showing Jazz");
        user.Keys({VK_RIGHT, VK_RIGHT, VK_RETURN});
        EXPECT_EQ(Status(0), L"Showing Jazz 1");
    });
}

TEST_F(LibraryTree, DoubleClickCountsOnTheRowNotOnExpanderOrBox)
{
    Open([&](const User& user) {
        const RECT label = LabelOf(Item(L"Jazz"));
        user.DoubleClickAt(hTree, {label.right + 60, label.top + 4});
        EXPECT_EQ(Status(0), L"Showing Jazz");
        ForgetClicks(user);
        for (const UINT lPart : {TVHT_ONITEMSTATEICON, TVHT_ONITEMBUTTON})
            user.DoubleClickAt(hTree, PartOf(Item(L"Rock"), lPart));
        EXPECT_EQ(Status(0), L"Showing Jazz");
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2"})) << "ticked and unticked again";
    });
}

TEST_F(LibraryTree, TheShownNodeAndItsParentHaveTheOpenImage)
{
    Open([&](const User& user) {
        EXPECT_TRUE(IsOpen(Root()));
        EXPECT_FALSE(IsOpen(Item(L"Rock")));
        Expand(user, Item(L"Rock"));
        EXPECT_FALSE(IsOpen(Item(L"Rock"))) << "selected is not shown";
        Show(user, Item(L"Rock", L"2"));
        EXPECT_TRUE(IsOpen(Item(L"Rock", L"2")));
        EXPECT_TRUE(IsOpen(Item(L"Rock")));
        for (const HTREEITEM hOther : {Item(L"Rock", L"1"), Root(), Item(L"Jazz")})
            EXPECT_FALSE(IsOpen(hOther));
        Do(user, LibraryCommand::mnuReloadAll);
        EXPECT_TRUE(IsOpen(Item(L"Rock", L"2")));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        EXPECT_FALSE(IsExpanded(Item(L"Jazz")));
        EXPECT_EQ(SelectedNode(), L"2");
        EXPECT_EQ(Artists(), (Texts{L"Slowdive"}));
    });
}

TEST_F(LibraryTree, ATickTicksWhatIsBelow)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        ClickBox(user, Item(L"Rock"));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
        ForgetClicks(user);
        ClickBox(user, Item(L"Rock", L"2"));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2"}));
        EXPECT_EQ(Tree()[5], L" Rock~") << "some of its levels";
        ClickNode(user, Item(L"Rock", L"2"));
        user.Key(VK_SPACE);
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
        ClickNode(user, Root());
        user.Key(VK_SPACE);
        EXPECT_EQ(Ticked(), 8) << "every node";
        ClickBox(user, Root());
        EXPECT_EQ(Ticked(), 0);
        EXPECT_EQ(Rows(), 9) << "no tick shows anything";
        cHost.Run(user, [&] { ::ShowWindow(hTree, SW_HIDE); }); // as the split panel does with a pane
        Do(user, LibraryCommand::mnuSelectAllTree);
        EXPECT_FALSE(Shown(hTree)) << "a tick leaves a hidden tree hidden";
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
    });
}

TEST_F(LibraryTree, APartlyTickedCategoryIsTickedByClickAndKey)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        for (const bool bByKey : {false, true})
        {
            ForgetClicks(user);
            ClickBox(user, Item(L"Rock", L"2"));
            EXPECT_EQ(Tree()[5], L" Rock~");
            user.Shot(hWindow, L"library-tree-some-levels");
            ClickNode(user, Item(L"Rock"));
            if (bByKey)
                user.Key(VK_SPACE);
            else
                ClickBox(user, Item(L"Rock"));
            user.Idle();
            EXPECT_EQ(Tree()[5], L" Rock*");
            EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
            ForgetClicks(user);
            ClickBox(user, Item(L"Rock"));
            EXPECT_EQ(Ticked(), 0);
        }
    });
}

// The number is drawn at the right edge, so its pixels tell.
TEST_F(LibraryTree, NumbersOfCutsAreDrawnWhereThereIsRoom)
{
    Add(L"long", L"A category whose name is wider than the tree on the left can be at first", 1, L"A");
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        user.Idle();
        const auto drawn = [&](HTREEITEM hItem) {
            const RECT label = LabelOf(hItem);
            const auto lRight = static_cast<int>(ClientOf(hTree).right);
            const HDC hDC = ::GetDC(hTree);
            const COLORREF lBack = ::GetPixel(hDC, lRight - 2, static_cast<int>(label.top) + 2);
            bool bDrawn = false;
            for (int x = lRight - 30; x < lRight - 2; ++x)
                for (int y = static_cast<int>(label.top) + 2; y < label.bottom - 2; ++y)
                    bDrawn = bDrawn || ::GetPixel(hDC, x, y) != lBack;
            ::ReleaseDC(hTree, hDC);
            return bDrawn;
        };
        for (const HTREEITEM hItem : {Root(), Item(L"Rock"), Item(L"Rock", L"2"), Item(L"Jazz")})
            EXPECT_TRUE(drawn(hItem)) << ItemText(hItem).size();
        EXPECT_EQ(ItemText(Item(L"Rock")), L"Rock") << "not part of the text";
        user.Shot(hWindow, L"library-tree-counts");
    });
}

TEST_F(LibraryTree, F2EditsTheNameOfACategoryInPlace)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        const auto edit = [&] {
            user.Key(VK_F2);
            user.Until([&] { return Send(hTree, TVM_GETEDITCONTROL) != 0; }, "the edit field");
            return reinterpret_cast<HWND>(Send(hTree, TVM_GETEDITCONTROL));
        };
        const HWND hEdit = edit();
        EXPECT_EQ(User::Text(hEdit), L"Rock");
        user.Shot(hWindow, L"library-rename");
        user.Key(VK_ESCAPE);
        EXPECT_EQ(Tree()[5], L" Rock");
        edit();
        user.Type(L"Blues & Soul");
        user.Key(VK_RETURN);
        user.WaitUntilGone(hEdit);
        user.Idle();
        EXPECT_EQ(Tree()[1], L" Blues & Soul");
        EXPECT_EQ(SelectedNode(), L"Blues & Soul");
        EXPECT_TRUE(IsExpanded(Item(L"Blues & Soul")));
        EXPECT_EQ(Status(2), L"Renamed Rock to Blues & Soul (7 cuts)");
        EXPECT_EQ(user.FocusedWindow(), hTree);
        user.Key('Z', VK_CONTROL);
        EXPECT_EQ(Tree()[5], L" Rock");
        ClickNode(user, Item(L"Jazz"));
        ClickNode(user, Item(L"Jazz"));
        EXPECT_EQ(Send(hTree, TVM_GETEDITCONTROL), 0) << "a second click edits nothing";
    });
}

TEST_F(LibraryTree, OneRowIsPaintedAsSelectedAfterClicksOnBoxes)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Jazz"));
        Expand(user, Item(L"Rock"));
        const std::vector<HTREEITEM> hItems = {Root(),        Item(L"Jazz"),       Item(L"Jazz", L"1"),
                                               Item(L"Rock"), Item(L"Rock", L"1"), Item(L"Rock", L"2")};
        // By the pixels next to the first letter of each label.
        const auto painted = [&] {
            const HDC hDC = ::GetDC(hTree);
            Texts colPainted;
            for (const HTREEITEM hItem : hItems)
            {
                const RECT label = LabelOf(hItem);
                if (::GetPixel(hDC, static_cast<int>(label.left) + 1, static_cast<int>(label.top) + 2) !=
                    ::GetSysColor(COLOR_WINDOW))
                    colPainted.push_back(ItemText(hItem));
            }
            ::ReleaseDC(hTree, hDC);
            return colPainted;
        };
        ClickNode(user, Item(L"Jazz"));
        ASSERT_EQ(painted(), (Texts{L"Jazz"}));
        for (const HTREEITEM hItem : hItems)
        {
            ForgetClicks(user);
            ClickBox(user, hItem);
            user.Idle();
            EXPECT_EQ(painted(), (Texts{SelectedNode()}));
        }
        user.Shot(hWindow, L"library-tree-ticked");
    });
}

TEST_F(LibraryTree, TheRootIsNeverCollapsedAndOtherNodesAre)
{
    Open([&](const User& user) {
        ClickNode(user, Root());
        for (const int lKey : {VK_LEFT, VK_SUBTRACT})
        {
            user.Key(lKey);
            EXPECT_TRUE(IsExpanded(Root())) << lKey;
        }
        DoubleClickNode(user, Root());
        EXPECT_TRUE(IsExpanded(Root()));
        Expand(user, Item(L"Rock"));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        user.Key(VK_LEFT);
        EXPECT_FALSE(IsExpanded(Item(L"Rock")));
        user.ClickAt(hTree, PartOf(Item(L"Jazz"), TVHT_ONITEMBUTTON));
        EXPECT_TRUE(IsExpanded(Item(L"Jazz")));
    });
}

TEST_F(LibraryTree, ARightClickSelectsTheNodeAndOpensTheCategoriesMenu)
{
    Open([&](const User& user) {
        user.RightClickAt(hTree, MiddleOf(Item(L"Jazz")));
        EXPECT_EQ(PopUpItems(user), (Texts{L"Show Category UI", L"New...", L" Category", L" Category Level",
                                           L"Shuffle Checked Categories", L"Delete Checked Categories", L"",
                                           L"Rename Category\t  F2"}));
        EXPECT_EQ(SelectedNode(), L"Jazz");
        EXPECT_EQ(Rows(), 9) << "selected is not shown";
        ShotWithBoxes(user, L"library-context-menu");
        user.Keys({VK_ESCAPE, VK_DOWN, VK_APPS});
        EXPECT_EQ(PopUpItems(user).size(), 8u) << "with the menu key too";
        user.Key(VK_ESCAPE);
        EXPECT_EQ(SelectedNode(), L"r&b");
    });
}

TEST_F(OtherLibraryTree, AnEmptyStationIsReadAgainWhenANodeIsShown)
{
    Open([&](const User& user) {
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO"}));
        cHost.Run(user, [&] {
            for (const auto& [sCategory, lLevel] :
                 {std::pair{L"beta", 10}, {L"beta", 2}, {L"Alpha", 1}, {L"all Audio", 1}})
                Add(sCategory + std::to_wstring(lLevel), sCategory, lLevel, L"Abba");
        });
        user.Key(VK_RETURN);
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Alpha", L"  1", L" beta", L"  10", L"  2"}))
            << "sorted by text, without a category called all audio";
        EXPECT_EQ(Rows(), 4);
    });
}

TEST_F(OtherLibraryTree, TypingAndScrollingLeaveTheCheckBoxes)
{
    Add(L"a", L"A category whose name is much longer than the tree on the left can be wide at first", 1,
        L"A");
    Add(L"b", L"mid afternoons", 1, L"B");
    Add(L"c", L"mid dawns", 1, L"C");
    Open([&](const User& user) {
        EXPECT_EQ(::GetScrollPos(hTree, SB_HORZ), 0);
        PartOf(Item(L"mid dawns"), TVHT_ONITEMSTATEICON); // in sight
        user.Shot(hWindow, L"library-long-name");
        user.Type(L"mid dawns");
        EXPECT_EQ(SelectedNode(), L"mid dawns");
        EXPECT_EQ(Ticked(), 0) << "a blank within a name ticks nothing";
    });
}

// A tree that is longer than the window.
struct LongLibraryTree : LibraryWindowTest
{
    LongLibraryTree()
    {
        for (int i = 0; i < 120; ++i)
            Add(std::to_wstring(i), L"Category " + std::to_wstring(1000 + i), 1, L"Artist");
        for (int i = 1; i < 40; ++i)
            Add(L"level" + std::to_wstring(i), L"Zither", 100 + i, L"Artist");
    }
    HTREEITEM First() const { return NextItem(nullptr, TVGN_FIRSTVISIBLE); }
};

TEST_F(LongLibraryTree, ANewLevelIsScrolledIntoView)
{
    Open([&](const User& user) {
        Send(hTree, TVM_ENSUREVISIBLE, 0, Item(L"Zither"));
        ClickNode(user, Item(L"Zither"));
        Command(LibraryCommand::mnuCatLevelNew);
        user.AnswerInput(L"999");
        const RECT label = LabelOf(Item(L"Zither", L"999"));
        EXPECT_GE(label.top, 0);
        EXPECT_LE(label.bottom, ClientOf(hTree).bottom);
        EXPECT_EQ(SelectedNode(), L"Zither");
        EXPECT_EQ(Status(0), L"Showing All Audio");
    });
}

TEST_F(LongLibraryTree, TheTreeScrollsWhileADragRestsAtItsEdge)
{
    Open([&](const User& user) {
        const HTREEITEM hFirst = First();
        ClickRow(user, 0);
        const POINT edge{60, ClientOf(hTree).bottom - 6};
        DragOver(user, 0, hTree, edge);
        user.Until([&] { return First() != hFirst; }, "the tree to scroll");
        user.Until(
            [&] {
            TVHITTESTINFO hit{};
            hit.pt = edge;
            Send(hTree, TVM_HITTEST, 0, &hit);
            return hit.hItem && Marked() == hit.hItem;
            },
            "the node below the pointer to be marked");
        GiveUpDrag(user);
    });
}

TEST_F(LongLibraryTree, TheMenuKeyBringsTheSelectedNodeIntoView)
{
    Open([&](const User& user) {
        ClickNode(user, Item(L"Category 1000"));
        Send(hTree, WM_VSCROLL, SB_BOTTOM);
        ASSERT_LT(LabelOf(Item(L"Category 1000")).bottom, 0);
        user.Key(VK_APPS);
        EXPECT_EQ(PopUpItems(user).size(), 8u);
        EXPECT_GE(LabelOf(Item(L"Category 1000")).top, 0);
        user.Key(VK_ESCAPE);
    });
}

} // namespace ravlo::test

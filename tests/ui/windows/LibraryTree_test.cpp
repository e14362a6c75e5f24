// SPDX-License-Identifier: MIT
// The category tree of the library window: what it shows, ticks, expands and selects.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using LibraryTree = LibraryWindowTest;

TEST_F(LibraryTree, ADoubleClickShowsANodesItems)
{
    FillStation();
    Open([&](const User& user) {
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
        EXPECT_EQ(Rows(), 9);
        EXPECT_EQ(Status(0), L"Showing All Audio");
        EXPECT_EQ(Status(1), L"Showing 9 total.");
        EXPECT_EQ(SelectedNode(), L"ALL AUDIO");
        EXPECT_EQ(user.FocusedWindow(), hTree);
        Expand(user, Item(L"Rock"));
        DoubleClickNode(user, Item(L"Rock", L"1"));
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Status(0), L"Showing Rock 1");
        EXPECT_EQ(Status(1), L"Showing 6 total.");
        user.Shot(hWindow, L"library-level");
        DoubleClickNode(user, Item(L"Rock"));
        EXPECT_EQ(Rows(), 7);
        EXPECT_EQ(Status(0), L"Showing Rock");
        user.Shot(hWindow, L"library-main-category");
        DoubleClickNode(user, Root());
        EXPECT_EQ(Rows(), 9);
    });
}

TEST_F(LibraryTree, DoubleClickCountsOnTheRowNotOnExpanderOrBox)
{
    FillStation();
    Open([&](const User& user) {
        const RECT label = LabelOf(Item(L"Jazz"));
        user.DoubleClickAt(hTree, static_cast<int>(label.right) + 60, static_cast<int>(label.top) + 4);
        EXPECT_EQ(Status(0), L"Showing Jazz");
        ForgetClicks(user);
        const POINT box = PartOf(Item(L"Rock"), TVHT_ONITEMSTATEICON);
        user.DoubleClickAt(hTree, static_cast<int>(box.x), static_cast<int>(box.y));
        const POINT button = PartOf(Item(L"Rock"), TVHT_ONITEMBUTTON);
        user.DoubleClickAt(hTree, static_cast<int>(button.x), static_cast<int>(button.y));
        EXPECT_EQ(Status(0), L"Showing Jazz");
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2"})) << "ticked and unticked again";
    });
}

TEST_F(LibraryTree, EnterShowsTheSelectedNode)
{
    FillStation();
    Open([&](const User& user) {
        user.Key(VK_DOWN);
        user.Key(VK_RETURN);
        EXPECT_EQ(Status(0), L"Showing Jazz");
        user.Key(VK_RIGHT);
        user.Key(VK_RIGHT);
        user.Key(VK_RETURN);
        EXPECT_EQ(Status(0), L"Showing Jazz 1");
    });
}

TEST_F(LibraryTree, TheShownNodeAndItsParentHaveTheOpenImage)
{
    FillStation();
    Open([&](const User& user) {
        EXPECT_TRUE(IsOpen(Root()));
        EXPECT_FALSE(IsOpen(Item(L"Rock")));
        Expand(user, Item(L"Rock"));
        EXPECT_FALSE(IsOpen(Item(L"Rock"))) << "selected is not shown";
        Show(user, Item(L"Rock", L"2"));
        EXPECT_TRUE(IsOpen(Item(L"Rock", L"2")));
        EXPECT_TRUE(IsOpen(Item(L"Rock")));
        EXPECT_FALSE(IsOpen(Item(L"Rock", L"1")));
        EXPECT_FALSE(IsOpen(Root()));
        EXPECT_FALSE(IsOpen(Item(L"Jazz")));
    });
}

TEST_F(LibraryTree, ATickOnAMainCategoryTicksItsLevels)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        ClickBox(user, Item(L"Rock"));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
        ForgetClicks(user);
        ClickBox(user, Item(L"Rock", L"2"));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2"}));
        EXPECT_EQ(Tree()[5], L" Rock*") << "a level changes nothing else";
        ClickNode(user, Item(L"Rock", L"2"));
        user.Key(VK_SPACE);
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
        ClickNode(user, Item(L"Rock"));
        user.Key(VK_SPACE);
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1", L"2"}));
        EXPECT_EQ(Rows(), 9) << "no tick shows anything";
    });
}

TEST_F(LibraryTree, ATickOnTheRootTicksEverything)
{
    FillStation();
    Open([&](const User& user) {
        user.Key(VK_SPACE);
        EXPECT_EQ(Tree(),
                  (Texts{L"ALL AUDIO*", L" Jazz*", L"  1*", L" r&b*", L"  1*", L" Rock*", L"  1*", L"  2*"}));
        ClickBox(user, Root());
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
    });
}

TEST_F(LibraryTree, TicksLeaveAHiddenTreeHidden)
{
    FillStation();
    Open([&](const User& user) {
        cHost.Run(user, [&] { ::ShowWindow(hTree, SW_HIDE); }); // as the split panel does with a pane
        Command(LibraryCommand::mnuSelectAllTree);
        user.Idle();
        EXPECT_FALSE(::IsWindowVisible(hTree));
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
    });
}

TEST_F(LibraryTree, OneRowIsPaintedAsSelectedAfterClicksOnBoxes)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Jazz"));
        Expand(user, Item(L"Rock"));
        const std::vector<HTREEITEM> hItems = {Root(),        Item(L"Jazz"),       Item(L"Jazz", L"1"),
                                               Item(L"Rock"), Item(L"Rock", L"1"), Item(L"Rock", L"2")};
        // By the pixels beside the first letter of each label.
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

TEST_F(LibraryTree, ANewLevelIsScrolledIntoView)
{
    for (int i = 0; i < 60; ++i)
        Add(L"many" + std::to_wstring(i), L"Category " + std::to_wstring(1000 + i), 1, L"Artist");
    for (int i = 1; i < 40; ++i)
        Add(L"level" + std::to_wstring(i), L"Zither", 100 + i, L"Artist");
    Open([&](const User& user) {
        ::SendMessageW(hTree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(Item(L"Zither")));
        ClickNode(user, Item(L"Zither"));
        Command(LibraryCommand::mnuCatLevelNew);
        user.AnswerInput(L"999");
        RECT client{};
        ::GetClientRect(hTree, &client);
        const RECT label = LabelOf(Item(L"Zither", L"999"));
        EXPECT_GE(label.top, 0);
        EXPECT_LE(label.bottom, client.bottom);
        EXPECT_EQ(SelectedNode(), L"Zither");
        EXPECT_EQ(Status(0), L"Showing All Audio");
    });
}

TEST_F(LibraryTree, TheRootIsNeverCollapsedAndOtherNodesAre)
{
    FillStation();
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
        const POINT button = PartOf(Item(L"Jazz"), TVHT_ONITEMBUTTON);
        user.ClickAt(hTree, static_cast<int>(button.x), static_cast<int>(button.y));
        EXPECT_TRUE(IsExpanded(Item(L"Jazz")));
    });
}

TEST_F(LibraryTree, ARefreshKeepsExpandedNodesAndTheSelectedOne)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"2"));
        Command(LibraryCommand::mnuReloadAll);
        user.Idle();
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
        EXPECT_FALSE(IsExpanded(Item(L"Jazz")));
        EXPECT_EQ(SelectedNode(), L"2");
        EXPECT_TRUE(IsOpen(Item(L"Rock", L"2")));
        EXPECT_EQ(Artists(), (Texts{L"Slowdive"}));
    });
}

TEST_F(LibraryTree, ARightClickSelectsTheNodeAndOpensTheCategoriesMenu)
{
    FillStation();
    Open([&](const User& user) {
        const POINT at = MiddleOf(Item(L"Jazz"));
        user.RightClickAt(hTree, static_cast<int>(at.x), static_cast<int>(at.y));
        EXPECT_EQ(PopUpItems(user), (Texts{L"Show Category UI", L"New...", L" Category", L" Category Level",
                                           L"Shuffle Checked Categories", L"Delete Checked Categories"}));
        EXPECT_EQ(SelectedNode(), L"Jazz");
        EXPECT_EQ(Rows(), 9) << "selected is not shown";
        ShotWithBoxes(user, L"library-context-menu");
        user.Key(VK_ESCAPE);
        user.Key(VK_DOWN); // r&b
        user.Key(VK_APPS);
        EXPECT_EQ(PopUpItems(user).size(), 6u) << "with the menu key too";
        user.Key(VK_ESCAPE);
        EXPECT_EQ(SelectedNode(), L"r&b");
    });
}

TEST_F(LibraryTree, CategoriesAreSortedByTextWithoutOneCalledAllAudio)
{
    Add(L"b", L"beta", 10, L"A");
    Add(L"b2", L"beta", 2, L"A");
    Add(L"a", L"Alpha", 1, L"A");
    Add(L"x", L"all Audio", 1, L"A");
    Open([&](const User&) {
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Alpha", L"  1", L" beta", L"  10", L"  2"}));
    });
}

TEST_F(LibraryTree, EmptyStationIsReadAgainWhenANodeIsShown)
{
    Open([&](const User& user) {
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO"}));
        cHost.Run(user, [&] { Add(L"a", L"Alpha", 1, L"Abba"); });
        user.Key(VK_RETURN);
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Alpha", L"  1"}));
        EXPECT_EQ(Artists(), (Texts{L"Abba"}));
    });
}

TEST_F(LibraryTree, ABlankWithinATypedNameTicksNothing)
{
    Add(L"a", L"mid afternoons", 1, L"A");
    Add(L"b", L"mid dawns", 1, L"B");
    Open([&](const User& user) {
        user.Type(L"mid dawns");
        EXPECT_EQ(SelectedNode(), L"mid dawns");
        const Texts colNodes = Tree();
        EXPECT_TRUE(std::none_of(colNodes.begin(), colNodes.end(),
                                 [](const std::wstring& sNode) { return sNode.back() == L'*'; }));
    });
}

TEST_F(LibraryTree, ALongNameLeavesCheckBoxesInSight)
{
    Add(L"a", L"A category whose name is much longer than the tree on the left can be wide at first", 1,
        L"A");
    Add(L"b", L"Rock", 1, L"B");
    Open([&](const User& user) {
        EXPECT_EQ(::GetScrollPos(hTree, SB_HORZ), 0);
        PartOf(Item(L"Rock"), TVHT_ONITEMSTATEICON);
        user.Shot(hWindow, L"library-long-name");
    });
}

TEST_F(LibraryTree, TheTreeScrollsWhileADragRestsAtItsEdge)
{
    for (int i = 0; i < 120; ++i)
        Add(std::to_wstring(i), L"Category " + std::to_wstring(1000 + i), 1, L"Artist");
    Open([&](const User& user) {
        const auto first = [&] { return NextItem(nullptr, TVGN_FIRSTVISIBLE); };
        const HTREEITEM hFirst = first();
        ClickRow(user, 0);
        RECT client{};
        ::GetClientRect(hTree, &client);
        const POINT edge{60, client.bottom - 6};
        DragOver(user, 0, hTree, edge);
        user.Until([&] { return first() != hFirst; }, "the tree to scroll");
        user.Until(
            [&] {
            TVHITTESTINFO hit{};
            hit.pt = edge;
            ::SendMessageW(hTree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
            return hit.hItem && NextItem(nullptr, TVGN_DROPHILITE) == hit.hItem;
            },
            "the node below the pointer to be marked");
        user.Key(VK_ESCAPE);
        user.Release();
    });
}

TEST_F(LibraryTree, TheMenuKeyBringsTheSelectedNodeIntoSight)
{
    for (int i = 0; i < 120; ++i)
        Add(std::to_wstring(i), L"Category " + std::to_wstring(1000 + i), 1, L"Artist");
    Open([&](const User& user) {
        ClickNode(user, Item(L"Category 1000"));
        ::SendMessageW(hTree, WM_VSCROLL, SB_BOTTOM, 0);
        ASSERT_LT(LabelOf(Item(L"Category 1000")).bottom, 0);
        user.Key(VK_APPS);
        EXPECT_EQ(PopUpItems(user).size(), 6u);
        EXPECT_GE(LabelOf(Item(L"Category 1000")).top, 0);
        user.Key(VK_ESCAPE);
    });
}

TEST_F(LibraryTree, NewsKeepTicksAndTheShownNode)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        ClickNode(user, Item(L"Jazz"));
        ClickBox(user, Item(L"Jazz"));
        const Texts colBefore = Tree();
        cHost.Run(user, [&] {
            cState.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cState.cDataBase->colCuts[0]});
        });
        user.Idle();
        EXPECT_EQ(Tree(), colBefore);
        EXPECT_EQ(Status(0), L"Showing Rock 1");
        EXPECT_EQ(SelectedNode(), L"Jazz");
        // A new category comes with the next news.
        cHost.Run(user, [&] {
            Add(L"new", L"Pop", 1, L"Prince");
            cState.cDataBase->Announce(&DataBaseEvents::CutsAdded, Cuts{cState.cDataBase->colCuts.back()});
        });
        user.Idle();
        EXPECT_EQ(Tree(Item(L"Jazz")), (Texts{L"1*"}));
        EXPECT_NO_THROW(Item(L"Pop"));
        EXPECT_EQ(Status(0), L"Showing Rock 1");
    });
}

} // namespace ravlo::test

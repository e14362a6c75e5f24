// SPDX-License-Identifier: MIT
#include "support/SchedulerTest.h"
#include "ui/library/windows/ControlIds.h"
#include "windows/TestStation.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using Texts = std::vector<std::wstring>;

// The library window of a station with Rock (levels 1 and 2), Jazz (level 1) and r&b (level 1), before a
// host's window.
struct LibraryWindowTest : ::testing::Test
{
    LibraryWindowTest() { cStation.cSchedMan->SetEvents(&cEvents); }
    ~LibraryWindowTest() override { cStation.cSchedMan->SetEvents(nullptr); }

    void Add(const std::wstring& sKey, const std::wstring& sCategories, int lLevel,
             const std::wstring& sArtist)
    {
        const auto cCut = cStation.cDataBase->Add(sKey, sCategories, lLevel);
        cCut->lID = static_cast<std::int32_t>(cStation.cDataBase->colCuts.size());
        cCut->SetArtist(sArtist);
        cCut->SetTitle(L"Song " + sKey);
        cCut->SetDurationmS(150'000 + 1'000 * cCut->lID);
        cCut->SetYear(1970 + cCut->lID);
    }
    void FillStation()
    {
        const wchar_t* sArtists[] = {L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"};
        for (int i = 0; i < 6; ++i)
            Add(L"C:\\Music\\rock" + std::to_wstring(i + 1) + L".wav", L"Rock", 1, sArtists[i]);
        Add(L"C:\\Music\\slow.wav", L"Rock", 2, L"Slowdive");
        Add(L"C:\\Music\\jazz.wav", L"Jazz", 1, L"Ella");
        Add(L"C:\\Music\\soul.wav", L"r&b", 1, L"Aretha");
    }

    // Opens the window, lets the user do something and closes it when it is still open.
    void Open(const std::function<void(const User&)>& drive)
    {
        cStation.Populate();
        OpenAgain(drive);
    }
    void OpenAgain(const std::function<void(const User&)>& drive)
    {
        WhileOpen([&] { cStation.cSchedMan->ShowLibraryUI(); },
                  [&](const User& user)
                  {
                      hWindow = user.WaitFor(sfrmUILibClass);
                      hTree = User::Control(hWindow, eIdTvCats);
                      hGrid = User::Control(hWindow, eIdiGridLib);
                      drive(user);
                      if (::IsWindow(hWindow))
                          ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
                      user.WaitUntilGone(hWindow);
                  });
    }

    // ---- the tree

    HTREEITEM NextItem(HTREEITEM hItem, UINT lRelation) const
    {
        return reinterpret_cast<HTREEITEM>(
            ::SendMessageW(hTree, TVM_GETNEXTITEM, lRelation, reinterpret_cast<LPARAM>(hItem)));
    }
    std::wstring ItemText(HTREEITEM hItem) const
    {
        wchar_t sText[100] = L"";
        TVITEMW item{};
        item.mask = TVIF_TEXT;
        item.hItem = hItem;
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        ::SendMessageW(hTree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return sText;
    }
    UINT ItemState(HTREEITEM hItem) const
    {
        return static_cast<UINT>(::SendMessageW(hTree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(hItem),
                                                static_cast<LPARAM>(~0u)));
    }
    // The items below one, indented, "*" behind the ticked ones.
    Texts Tree(HTREEITEM hItem = nullptr, const std::wstring& sIndent = L"") const
    {
        Texts colTexts;
        for (HTREEITEM h = hItem ? NextItem(hItem, TVGN_CHILD) : NextItem(nullptr, TVGN_ROOT); h;
             h = NextItem(h, TVGN_NEXT))
        {
            const bool bTicked = (ItemState(h) & TVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2u);
            colTexts.push_back(sIndent + ItemText(h) + (bTicked ? L"*" : L""));
            const Texts colBelow = Tree(h, sIndent + L" ");
            colTexts.insert(colTexts.end(), colBelow.begin(), colBelow.end());
        }
        return colTexts;
    }
    HTREEITEM Item(const std::wstring& sMain, const std::wstring& sLevel = L"") const
    {
        const HTREEITEM hRoot = NextItem(nullptr, TVGN_ROOT);
        for (HTREEITEM hMain = NextItem(hRoot, TVGN_CHILD); hMain; hMain = NextItem(hMain, TVGN_NEXT))
        {
            if (ItemText(hMain) != sMain)
                continue;
            if (sLevel.empty())
                return hMain;
            for (HTREEITEM h = NextItem(hMain, TVGN_CHILD); h; h = NextItem(h, TVGN_NEXT))
                if (ItemText(h) == sLevel)
                    return h;
        }
        throw std::runtime_error("there is no such node");
    }
    HTREEITEM Root() const { return NextItem(nullptr, TVGN_ROOT); }
    RECT LabelOf(HTREEITEM hItem) const
    {
        RECT label{};
        std::memcpy(&label, &hItem, sizeof hItem);
        ::SendMessageW(hTree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&label));
        return label;
    }
    POINT MiddleOf(HTREEITEM hItem) const
    {
        const RECT label = LabelOf(hItem);
        return {label.left + 8, (label.top + label.bottom) / 2};
    }
    void ClickNode(const User& user, HTREEITEM hItem) const
    {
        const POINT at = MiddleOf(hItem);
        user.ClickAt(hTree, static_cast<int>(at.x), static_cast<int>(at.y));
    }
    void Expand(const User& user, HTREEITEM hItem) const
    {
        ClickNode(user, hItem);
        user.Key(VK_RIGHT);
    }
    void ClickBox(const User& user, HTREEITEM hItem) const
    {
        const RECT label = LabelOf(hItem);
        TVHITTESTINFO hit{};
        hit.pt = {label.left, (label.top + label.bottom) / 2};
        for (; hit.pt.x > 0; --hit.pt.x)
        {
            ::SendMessageW(hTree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
            if ((hit.flags & TVHT_ONITEMSTATEICON) != 0)
                return user.ClickAt(hTree, static_cast<int>(hit.pt.x) - 5, static_cast<int>(hit.pt.y));
        }
        throw std::runtime_error("the node has no check box");
    }
    void Show(const User& user, HTREEITEM hItem) const
    {
        ClickNode(user, hItem);
        user.Key(VK_RETURN);
    }

    // ---- the grid

    std::wstring Cell(int lRow, int lColumn) const
    {
        wchar_t sText[200] = L"";
        LVITEMW item{};
        item.iSubItem = lColumn;
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        ::SendMessageW(hGrid, LVM_GETITEMTEXTW, static_cast<WPARAM>(lRow), reinterpret_cast<LPARAM>(&item));
        return sText;
    }
    int Rows() const { return static_cast<int>(::SendMessageW(hGrid, LVM_GETITEMCOUNT, 0, 0)); }
    Texts Artists() const
    {
        Texts colTexts;
        for (int lRow = 0; lRow < Rows(); ++lRow)
            colTexts.push_back(Cell(lRow, 2));
        return colTexts;
    }
    Texts SelectedArtists() const
    {
        Texts colTexts;
        for (int lRow = -1; (lRow = static_cast<int>(::SendMessageW(
                                 hGrid, LVM_GETNEXTITEM, static_cast<WPARAM>(static_cast<INT_PTR>(lRow)),
                                 LVNI_SELECTED))) >= 0;)
            colTexts.push_back(Cell(lRow, 2));
        return colTexts;
    }
    POINT RowAt(int lRow) const
    {
        RECT row{};
        row.left = LVIR_BOUNDS;
        ::SendMessageW(hGrid, LVM_GETITEMRECT, static_cast<WPARAM>(lRow), reinterpret_cast<LPARAM>(&row));
        return {row.left + 100, (row.top + row.bottom) / 2};
    }
    void ClickRow(const User& user, int lRow) const
    {
        const POINT at = RowAt(lRow);
        user.ClickAt(hGrid, static_cast<int>(at.x), static_cast<int>(at.y));
    }
    // Selects some rows that follow each other.
    void SelectRows(const User& user, int lFirst, int lLast) const
    {
        ClickRow(user, lFirst);
        for (int lRow = lFirst; lRow < lLast; ++lRow)
            user.Key(VK_DOWN, VK_SHIFT);
        PauseBetweenClicks();
    }
    // A press too soon after a click at the same place would be a double-click.
    static void PauseBetweenClicks() { ::Sleep(::GetDoubleClickTime() + 50); }

    std::wstring Status(int lPart) const
    {
        wchar_t sText[200] = L"";
        ::SendMessageW(User::Control(hWindow, eIdStatus), SB_GETTEXTW, static_cast<WPARAM>(lPart),
                       reinterpret_cast<LPARAM>(sText));
        return sText;
    }

    // ---- pop-up menus

    Texts PopUpItems(const User& user) const
    {
        constexpr UINT lGetMenu = 0x1E1;
        const HWND hPopUp = user.WaitFor(L"#32768");
        const auto hMenu = reinterpret_cast<HMENU>(::SendMessageW(hPopUp, lGetMenu, 0, 0));
        Texts colItems;
        for (int i = 0; i < ::GetMenuItemCount(hMenu); ++i)
        {
            wchar_t sText[200] = L"";
            ::GetMenuStringW(hMenu, static_cast<UINT>(i), sText, ARRAYSIZE(sText), MF_BYPOSITION);
            colItems.push_back(sText);
        }
        return colItems;
    }
    void Choose(const User& user, int lItem) const
    {
        user.WaitFor(L"#32768");
        for (int i = 0; i <= lItem; ++i)
            user.Key(VK_DOWN);
        user.Key(VK_RETURN);
    }
    // A command of the menu bar, as the menu sends it; without waiting for what it shows.
    void Command(LibraryCommand eCommand) const
    {
        ::PostMessageW(hWindow, WM_COMMAND, static_cast<WPARAM>(IdOf(eCommand)), 0);
    }
    Texts Order(const std::wstring& sName, int lLevel) const
    {
        Texts colArtists;
        for (const std::shared_ptr<Cut>& cCut : *cStation.Level(sName, lLevel)->SchedCuts())
            colArtists.push_back(cCut->Artist());
        return colArtists;
    }

    HostWindow cHost;
    TestStation cStation;
    HostEvents cEvents;
    HWND hWindow = nullptr;
    HWND hTree = nullptr;
    HWND hGrid = nullptr;
};

TEST_F(LibraryWindowTest, AnEmptyStationShowsItsRootAlone)
{
    Open(
        [&](const User& user)
        {
            EXPECT_EQ(User::Text(hWindow), L"Ravlo-Scheduler Library");
            EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO"}));
            EXPECT_EQ(Rows(), 0);
            EXPECT_TRUE(cStation.cSchedMan->UIShowing());
            EXPECT_FALSE(::IsWindowEnabled(cHost.Handle()));
            user.Shot(hWindow, L"library-empty");
            user.Key(VK_F4, VK_MENU);
            user.WaitUntilGone(hWindow);
        });
    EXPECT_FALSE(cStation.cSchedMan->UIShowing());
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
}

TEST_F(LibraryWindowTest, ADoubleClickShowsANodesItems)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            EXPECT_EQ(Tree(),
                      (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
            EXPECT_EQ(Rows(), 9);
            EXPECT_EQ(Status(0), L"Showing All Audio");
            EXPECT_EQ(Status(1), L"Showing 9 total.");
            EXPECT_EQ(user.FocusedWindow(), hTree);
            Expand(user, Item(L"Rock"));
            const POINT at = MiddleOf(Item(L"Rock", L"1"));
            PauseBetweenClicks();
            user.ClickAt(hTree, static_cast<int>(at.x), static_cast<int>(at.y));
            user.ClickAt(hTree, static_cast<int>(at.x), static_cast<int>(at.y));
            EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
            EXPECT_EQ(Status(0), L"Showing Rock 1");
            EXPECT_EQ(Cell(1, 0), L"2");
            EXPECT_EQ(Cell(1, 3), L"Song C:\\Music\\rock2.wav");
            EXPECT_EQ(Cell(1, 9), L"C:\\Music\\rock2.wav");
            user.Shot(hWindow, L"library-level");
            Show(user, Item(L"Rock"));
            EXPECT_EQ(Rows(), 7);
            user.Shot(hWindow, L"library-main-category");
        });
}

TEST_F(LibraryWindowTest, ManyCutsAreShownAtOnce)
{
    for (int i = 0; i < 5000; ++i)
        Add(L"C:\\Music\\" + std::to_wstring(i) + L".wav", L"Category " + std::to_wstring(i % 40), 1 + i % 3,
            L"Artist " + std::to_wstring(i % 700));
    Open(
        [&](const User& user)
        {
            EXPECT_EQ(Rows(), 5000);
            user.Click(hGrid);
            user.Key(VK_END);
            EXPECT_EQ(SelectedArtists().size(), 1u);
            user.Key('A', VK_CONTROL);
            EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 5000);
            user.Shot(hWindow, L"library-many");
        });
}

TEST_F(LibraryWindowTest, ATickOnAMainCategoryTicksItsLevels)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            ClickBox(user, Item(L"Rock"));
            EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2*"}));
            PauseBetweenClicks();
            ClickBox(user, Item(L"Rock", L"2"));
            EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"1*", L"2"}));
            ClickNode(user, Root());
            user.Key(VK_SPACE);
            EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO*", L" Jazz*", L"  1*", L" r&b*", L"  1*", L" Rock*", L"  1*",
                                     L"  2*"}));
            Command(LibraryCommand::mnuSelectNoneTree);
            user.Idle();
            EXPECT_EQ(Tree(),
                      (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
            EXPECT_EQ(Rows(), 9) << "no click on a box shows anything";
        });
}

TEST_F(LibraryWindowTest, TheRootIsNeverCollapsedAndOtherNodesAre)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            ClickNode(user, Root());
            user.Key(VK_LEFT);
            EXPECT_NE(ItemState(Root()) & TVIS_EXPANDED, 0u);
            Expand(user, Item(L"Rock"));
            EXPECT_NE(ItemState(Item(L"Rock")) & TVIS_EXPANDED, 0u);
            user.Key(VK_LEFT);
            EXPECT_EQ(ItemState(Item(L"Rock")) & TVIS_EXPANDED, 0u);
        });
}

TEST_F(LibraryWindowTest, ARefreshKeepsExpandedNodesAndTheSelectedOne)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"2"));
            Command(LibraryCommand::mnuReloadAll);
            user.Idle();
            EXPECT_NE(ItemState(Item(L"Rock")) & TVIS_EXPANDED, 0u);
            EXPECT_EQ(ItemText(NextItem(nullptr, TVGN_CARET)), L"2");
            EXPECT_EQ(Artists(), (Texts{L"Slowdive"}));
        });
}

TEST_F(LibraryWindowTest, DeleteAsksInAllAudioAndBoxesLookAsTheyShould)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            ClickRow(user, 7); // Ella
            user.Key(VK_DELETE);
            EXPECT_EQ(user.Box(),
                      (BoxOnScreen{L"Are You Sure?",
                                   L"The view is 'ALL AUDIO'.\r\n\r\n"
                                   L"Continuing will remove ALL the categories from the selected items\r\n"
                                   L"Really continue?",
                                   {IDYES, IDNO}}));
            user.Shot(user.WaitFor(L"#32770"), L"library-box-remove-all");
            user.Answer(IDNO);
            EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella"}));
            user.Key(VK_DELETE);
            user.Answer(IDYES);
            user.Idle();
            EXPECT_TRUE(Order(L"Jazz", 1).empty());
            Command(LibraryCommand::mnuCatDelete);
            EXPECT_EQ(user.Box(), (BoxOnScreen{L"First Select Some Categories To Delete In The Tree!",
                                               L"There are no categories checked in the tree to delete!",
                                               {IDOK}}));
            user.Shot(user.WaitFor(L"#32770"), L"library-box-nothing-ticked");
            user.Answer(IDOK);
            EXPECT_EQ(user.FocusedWindow(), hGrid);
        });
}

TEST_F(LibraryWindowTest, RowsAreReOrderedByDraggingAndByKeys)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"1"));
            SelectRows(user, 3, 4); // Dido, Eagles
            user.Press(hGrid, RowAt(3));
            user.MoveTo(hGrid, {RowAt(3).x + 10, RowAt(3).y});
            user.MoveTo(hGrid, {RowAt(2).x + 10, RowAt(2).y});
            user.MoveTo(hGrid, {RowAt(1).x + 10, RowAt(1).y});
            user.MoveTo(hGrid, {RowAt(1).x + 12, RowAt(1).y});
            user.Shot(hWindow, L"library-drag-in-grid");
            user.Release();
            user.Until([&] { return Order(L"Rock", 1)[1] == L"Dido"; }, "the new order");
            user.Idle();
            EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
            EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
            ::SetFocus(hGrid);
            user.Key(VK_DOWN, VK_MENU);
            EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Dido", L"Eagles", L"Cream", L"Feist"}));
            EXPECT_EQ(Order(L"Rock", 1), Artists());
            EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        });
}

TEST_F(LibraryWindowTest, RowsAreDraggedIntoTheTreeAndThePopUpsAsk)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"1"));
            SelectRows(user, 0, 1); // Abba, Blur
            const POINT target = MiddleOf(Item(L"r&b"));
            user.Press(hGrid, RowAt(0));
            user.MoveTo(hGrid, {RowAt(0).x + 10, RowAt(0).y});
            user.MoveTo(hGrid, {RowAt(0).x - 20, RowAt(0).y});
            user.MoveTo(hTree, {target.x + 4, target.y});
            user.MoveTo(hTree, target);
            user.Until([&] { return NextItem(nullptr, TVGN_DROPHILITE) == Item(L"r&b"); },
                       "the target to be marked");
            user.Shot(hWindow, L"library-drag-to-tree");
            user.Release();
            EXPECT_EQ(PopUpItems(user),
                      (Texts{L"Drop Into: r&&b, keeping levels the same", L"Drop Into r&&b Level 1"}));
            user.Shot(hWindow, L"library-choose-level");
            Choose(user, 1);
            EXPECT_EQ(PopUpItems(user), (Texts{L"Copy Into r&&b 1", L"Move Into r&&b 1",
                                               L"Move Exclusive Into r&&b 1", L"Cancel"}));
            user.Shot(hWindow, L"library-choose-drop");
            Choose(user, 1);
            user.Until([&] { return Order(L"r&b", 1).size() == 3; }, "the cuts to be moved");
            user.Idle();
            EXPECT_EQ(Order(L"r&b", 1), (Texts{L"Aretha", L"Abba", L"Blur"}));
            EXPECT_EQ(Artists(), (Texts{L"Cream", L"Dido", L"Eagles", L"Feist"}));
            EXPECT_EQ(NextItem(nullptr, TVGN_DROPHILITE), nullptr);
        });
}

TEST_F(LibraryWindowTest, ADropIntoAllAudioIsRefusedWhenTheDragHasEnded)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            ClickRow(user, 0);
            PauseBetweenClicks();
            user.Press(hGrid, RowAt(0));
            user.MoveTo(hGrid, {RowAt(0).x + 10, RowAt(0).y});
            user.MoveTo(hTree, MiddleOf(Item(L"Jazz")));
            user.MoveTo(hTree, MiddleOf(Root()));
            user.Release();
            EXPECT_EQ(user.Box(),
                      (BoxOnScreen{L"Invalid Drop!", L"It's not valid to drop into 'ALL AUDIO'", {IDOK}}));
            user.Shot(user.WaitFor(L"#32770"), L"library-box-invalid-drop");
            user.Answer(IDOK);
        });
}

TEST_F(LibraryWindowTest, EscapeEndsADragWithoutADrop)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"1"));
            ClickRow(user, 0);
            PauseBetweenClicks();
            user.Press(hGrid, RowAt(0));
            user.MoveTo(hGrid, {RowAt(0).x + 10, RowAt(0).y});
            user.MoveTo(hGrid, RowAt(3));
            user.Key(VK_ESCAPE);
            user.Release();
            EXPECT_EQ(Order(L"Rock", 1)[0], L"Abba");
            Command(LibraryCommand::mnuHelp);
            user.Idle();
            EXPECT_EQ(cEvents.colSaid.back(), L"Help") << "nothing runs any more";
        });
}

TEST_F(LibraryWindowTest, CutsAreCopiedWithTheKeyboardAlone)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            Expand(user, Item(L"Rock"));
            user.Key(VK_DOWN); // level 1
            user.Key(VK_RETURN);
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hGrid);
            user.Key(VK_HOME);
            user.Key(VK_SPACE);
            user.Key('C', VK_CONTROL);
            user.Key(VK_F6);
            EXPECT_EQ(user.FocusedWindow(), hTree);
            user.Key(VK_HOME);
            user.Key(VK_DOWN); // Jazz
            user.Key('V', VK_CONTROL);
            Choose(user, 1); // level 1
            Choose(user, 0); // copy
            user.Until([&] { return Order(L"Jazz", 1).size() == 2; }, "the copy");
            EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        });
}

TEST_F(LibraryWindowTest, EnterInTheGridAndADoubleClickEditTheCut)
{
    FillStation();
    cEvents.lEditAnswer = 2;
    Open(
        [&](const User& user)
        {
            ClickRow(user, 1);
            user.Key(VK_RETURN);
            EXPECT_EQ(cEvents.colSaid.back(), L"Edit C:\\Music\\rock2.wav");
            PauseBetweenClicks();
            ClickRow(user, 2);
            ClickRow(user, 2);
            EXPECT_EQ(cEvents.colSaid.back(), L"Edit C:\\Music\\rock3.wav");
        });
}

TEST_F(LibraryWindowTest, F1AsksForHelpWhereverTheFocusIs)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            cEvents.colSaid.clear();
            user.Key(VK_F1);
            user.Click(hGrid);
            user.Key(VK_F1);
            EXPECT_EQ(cEvents.colSaid, (Lines{L"Help", L"Help"}));
        });
}

TEST_F(LibraryWindowTest, TypingFindsACut)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            ClickRow(user, 0);
            user.Type(L"sl");
            EXPECT_EQ(SelectedArtists(), (Texts{L"Slowdive"}));
        });
}

TEST_F(LibraryWindowTest, ARightClickSelectsTheNodeAndOpensTheCategoriesMenu)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            const POINT at = MiddleOf(Item(L"Jazz"));
            POINT onScreen = at;
            ::ClientToScreen(hTree, &onScreen);
            ::SetCursorPos(static_cast<int>(onScreen.x), static_cast<int>(onScreen.y));
            ::PostMessageW(hTree, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(at.x, at.y));
            ::PostMessageW(hTree, WM_RBUTTONUP, 0, MAKELPARAM(at.x, at.y));
            EXPECT_EQ(PopUpItems(user), (Texts{L"Show Category UI", L"New...", L"Shuffle Checked Categories",
                                               L"Delete Checked Categories"}));
            EXPECT_EQ(ItemText(NextItem(nullptr, TVGN_CARET)), L"Jazz");
            user.Shot(hWindow, L"library-context-menu");
            user.Key(VK_ESCAPE);
        });
}

TEST_F(LibraryWindowTest, ColumnsAndPlaceAreRemembered)
{
    FillStation();
    RECT first{};
    Open(
        [&](const User& user)
        {
            EXPECT_EQ(::SendMessageW(hGrid, LVM_GETCOLUMNWIDTH, 0, 0), 44);
            EXPECT_EQ(::SendMessageW(hGrid, LVM_GETCOLUMNWIDTH, 8, 0), 0);
            EXPECT_EQ(::SendMessageW(hGrid, LVM_GETCOLUMNWIDTH, 9, 0), 200);
            ::SendMessageW(hGrid, LVM_SETCOLUMNWIDTH, 2, 177);
            ::SetWindowPos(hWindow, nullptr, 60, 70, 800, 500, SWP_NOZORDER);
            user.Idle();
            ::GetWindowRect(hWindow, &first);
        });
    const std::wstring sStored =
        cStation.cWorld.cUserSettings.Get(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib", L"");
    EXPECT_EQ(sStored.substr(0, 24), L"1|Width|44|1|Order|1|1|V");
    EXPECT_NE(sStored.find(L"|3|Width|177|3|Order|3|"), std::wstring::npos);
    OpenAgain(
        [&](const User&)
        {
            EXPECT_EQ(::SendMessageW(hGrid, LVM_GETCOLUMNWIDTH, 2, 0), 177);
            RECT second{};
            ::GetWindowRect(hWindow, &second);
            EXPECT_TRUE(::EqualRect(&first, &second));
        });
}

TEST_F(LibraryWindowTest, ReloadAllWithoutAWindowShowsNothing)
{
    FillStation();
    cStation.Populate();
    cStation.cSchedMan->ReloadAll();
    EXPECT_TRUE(cStation.cWindows->LibraryExists());
    EXPECT_FALSE(cStation.cSchedMan->UIShowing());
    const HWND hHidden = ::FindWindowW(sfrmUILibClass, nullptr);
    ASSERT_NE(hHidden, nullptr);
    EXPECT_FALSE(::IsWindowVisible(hHidden));
    hTree = User::Control(hHidden, eIdTvCats);
    EXPECT_EQ(Tree().size(), 8u);
}

TEST_F(LibraryWindowTest, ASecondOpeningComesBackAtOnce)
{
    FillStation();
    Open(
        [&](const User& user)
        {
            cEvents.OnEvent = [&](const std::wstring&) { cStation.cSchedMan->ShowLibraryUI(); };
            user.Key(VK_F1);
            EXPECT_EQ(cEvents.colSaid.back(), L"Help");
            EXPECT_TRUE(cStation.cSchedMan->UIShowing());
            cEvents.OnEvent = nullptr;
        });
}

} // namespace
} // namespace ravlo::test

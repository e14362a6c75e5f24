// SPDX-License-Identifier: MIT
#pragma once

#include "support/SchedulerTest.h"
#include "ui/category/windows/ControlIds.h"
#include "ui/library/windows/ControlIds.h"
#include "ui/library/windows/FolderImages.h"
#include "ui/windows/TestStation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <commctrl.h>
#include <cstddef>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace ravlo::test
{

using Texts = std::vector<std::wstring>;

inline const Texts colRockArtists{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"};
inline constexpr const wchar_t* sRockFile = L"C:\\Radio\\Scheduler\\History_and_Ordering\\Rock.sif";

// The library window before a host's window; filled, the station has Rock (levels 1 and 2), Jazz (level 1)
// and r&b (level 1).
struct LibraryWindowTest : ::testing::Test
{
    LibraryWindowTest() { cState.cSchedMan->SetEvents(&cEvents); }
    ~LibraryWindowTest() override { cState.cSchedMan->SetEvents(nullptr); }

    // Short enough that no category has more of it than a 32-bit number of milliseconds holds.
    static constexpr int lRunTimemS = 10'000;

    void Add(const std::wstring& sKey, const std::wstring& sCategories, int lLevel,
             const std::wstring& sArtist)
    {
        const auto cCut = cState.cDataBase->Add(sKey, sCategories, lLevel, lRunTimemS);
        cCut->lID = static_cast<std::int32_t>(cState.cDataBase->colCuts.size());
        cCut->SetArtist(sArtist);
        cCut->SetTitle(L"Song " + std::to_wstring(cCut->lID));
        cCut->SetDurationmS(150'000 + 7'000 * (cCut->lID % 30));
        cCut->SetYear(1970 + cCut->lID % 50);
    }
    void FillStation()
    {
        for (std::size_t i = 0; i < colRockArtists.size(); ++i)
            Add(L"C:\\Music\\rock" + std::to_wstring(i + 1) + L".wav", L"Rock", 1, colRockArtists[i]);
        Add(L"C:\\Music\\slow.wav", L"Rock", 2, L"Slowdive");
        Add(L"C:\\Music\\jazz.wav", L"Jazz", 1, L"Ella");
        Add(L"C:\\Music\\soul.wav", L"r&b", 1, L"Aretha");
    }

    // Opens the window, lets the user act and closes it when it is still open.
    void Open(const std::function<void(const User&)>& drive)
    {
        cState.Populate();
        OpenAgain(drive);
    }
    void OpenAgain(const std::function<void(const User&)>& drive)
    {
        WhileShowing([&] { cState.cSchedMan->ShowLibraryUI(); }, drive);
    }
    // The same with another call that shows the window.
    void WhileShowing(const std::function<void()>& show, const std::function<void(const User&)>& drive)
    {
        WhileOpen(show, [&](const User& user) {
            TakeWindow(user);
            drive(user);
            if (::IsWindow(hWindow))
                ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
            user.WaitUntilGone(hWindow);
        });
    }
    void TakeWindow(const User& user)
    {
        hWindow = user.WaitFor(sfrmUILibClass);
        hTree = User::Control(hWindow, eIdTvCats);
        hGrid = User::Control(hWindow, eIdiGridLib);
    }
    // Opens the window, with Rock expanded and its level 1 shown.
    void OpenOnRock(const std::function<void(const User&)>& drive)
    {
        Open([&](const User& user) {
            Expand(user, Item(L"Rock"));
            Show(user, Item(L"Rock", L"1"));
            drive(user);
        });
    }
    // Runs something on the windows' thread and waits for all that follows from it.
    void Run(const User& user, const std::function<void()>& what)
    {
        cHost.Run(user, what);
        user.Idle();
    }
    // The database announces something of one of its cuts.
    void Announce(void (DataBaseEvents::*announce)(const Cuts&), std::size_t cut)
    {
        cState.cDataBase->Announce(announce, Cuts{cState.cDataBase->colCuts[cut]});
    }

    // ---- the tree

    HTREEITEM NextItem(HTREEITEM hItem, UINT lRelation) const
    {
        return reinterpret_cast<HTREEITEM>(Send(hTree, TVM_GETNEXTITEM, lRelation, hItem));
    }
    std::wstring ItemText(HTREEITEM hItem) const
    {
        wchar_t sText[100] = L"";
        TVITEMW item{};
        item.mask = TVIF_TEXT;
        item.hItem = hItem;
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        Send(hTree, TVM_GETITEMW, 0, &item);
        return sText;
    }
    UINT ItemState(HTREEITEM hItem) const
    {
        return static_cast<UINT>(::SendMessageW(hTree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(hItem),
                                                static_cast<LPARAM>(~0u)));
    }
    // The items below one, indented, "*" behind the ticked ones, "~" behind the partly ticked ones.
    Texts Tree(HTREEITEM hItem = nullptr, const std::wstring& sIndent = L"") const
    {
        Texts colTexts;
        for (HTREEITEM h = hItem ? NextItem(hItem, TVGN_CHILD) : NextItem(nullptr, TVGN_ROOT); h;
             h = NextItem(h, TVGN_NEXT))
        {
            const wchar_t* const sTicks[] = {L"", L"", L"*", L"~"};
            const UINT lTicks = (ItemState(h) & TVIS_STATEIMAGEMASK) >> 12;
            colTexts.push_back(sIndent + ItemText(h) + sTicks[lTicks & 3]);
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
        Send(hTree, TVM_GETITEMRECT, TRUE, &label);
        return label;
    }
    POINT MiddleOf(HTREEITEM hItem) const
    {
        const RECT label = LabelOf(hItem);
        return {(label.left + label.right) / 2, (label.top + label.bottom) / 2};
    }
    void ClickNode(const User& user, HTREEITEM hItem) const { user.ClickAt(hTree, MiddleOf(hItem)); }
    void DoubleClickNode(const User& user, HTREEITEM hItem) const
    {
        ForgetClicks(user);
        user.DoubleClickAt(hTree, MiddleOf(hItem));
    }
    bool IsExpanded(HTREEITEM hItem) const { return (ItemState(hItem) & TVIS_EXPANDED) != 0; }
    bool IsOpen(HTREEITEM hItem) const
    {
        TVITEMW item{};
        item.mask = TVIF_IMAGE;
        item.hItem = hItem;
        Send(hTree, TVM_GETITEMW, 0, &item);
        return item.iImage == eFolderOpen;
    }
    std::wstring SelectedNode() const { return ItemText(NextItem(nullptr, TVGN_CARET)); }
    HTREEITEM Marked() const { return NextItem(nullptr, TVGN_DROPHILITE); } // as the target of a drag
    void Expand(const User& user, HTREEITEM hItem) const
    {
        ClickNode(user, hItem);
        user.Key(VK_RIGHT);
    }
    // The middle of a node's check box or expander.
    POINT PartOf(HTREEITEM hItem, UINT lPart) const
    {
        const RECT label = LabelOf(hItem);
        TVHITTESTINFO hit{};
        hit.pt = {label.left, (label.top + label.bottom) / 2};
        LONG lFirst = 0;
        LONG lLast = 0;
        for (; hit.pt.x >= 0; --hit.pt.x)
        {
            Send(hTree, TVM_HITTEST, 0, &hit);
            if ((hit.flags & lPart) == 0)
                continue;
            lFirst = hit.pt.x;
            lLast = std::max(lLast, lFirst);
        }
        if (lLast == 0)
            throw std::runtime_error("the node has no such part");
        return {(lFirst + lLast) / 2, hit.pt.y};
    }
    void ClickBox(const User& user, HTREEITEM hItem) const
    {
        user.ClickAt(hTree, PartOf(hItem, TVHT_ONITEMSTATEICON));
    }
    std::ptrdiff_t Ticked() const
    {
        const Texts colNodes = Tree();
        return std::count_if(colNodes.begin(), colNodes.end(),
                             [](const std::wstring& sNode) { return sNode.back() == L'*'; });
    }
    void Show(const User& user, HTREEITEM hItem) const
    {
        ClickNode(user, hItem);
        user.Key(VK_RETURN);
    }

    // ---- the grid

    // The list's own number of a column: its first one is the artist.
    static int ListColumn(int lColumn)
    {
        constexpr int lFirst[] = {1, 2, 0};
        return lColumn < 3 ? lFirst[lColumn] : lColumn;
    }
    std::wstring Cell(int lRow, int lColumn) const
    {
        wchar_t sText[200] = L"";
        LVITEMW item{};
        item.iSubItem = ListColumn(lColumn);
        item.pszText = sText;
        item.cchTextMax = ARRAYSIZE(sText);
        Send(hGrid, LVM_GETITEMTEXTW, lRow, &item);
        return sText;
    }
    HWND Header() const { return reinterpret_cast<HWND>(Send(hGrid, LVM_GETHEADER)); }
    RECT HeaderItem(int lColumn) const
    {
        RECT item{};
        Send(Header(), HDM_GETITEMRECT, ListColumn(lColumn), &item);
        return item;
    }
    LRESULT ColumnWidth(int lColumn) const { return Send(hGrid, LVM_GETCOLUMNWIDTH, ListColumn(lColumn)); }
    std::wstring StoredLayout() const
    {
        return cState.cPorts.cUserSettings.Get(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib",
                                               L"");
    }
    int Rows() const { return static_cast<int>(Send(hGrid, LVM_GETITEMCOUNT)); }
    int TopRow() const { return static_cast<int>(Send(hGrid, LVM_GETTOPINDEX)); }
    int NextRow(int lAfter, LPARAM lState) const
    {
        const auto lRow = static_cast<WPARAM>(static_cast<INT_PTR>(lAfter));
        return static_cast<int>(::SendMessageW(hGrid, LVM_GETNEXTITEM, lRow, lState));
    }
    int CurrentRow() const { return NextRow(-1, LVNI_FOCUSED); }
    LRESULT SelectedRows() const { return Send(hGrid, LVM_GETSELECTEDCOUNT); }
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
        for (int lRow = -1; (lRow = NextRow(lRow, LVNI_SELECTED)) >= 0;)
            colTexts.push_back(Cell(lRow, 2));
        return colTexts;
    }
    POINT RowAt(int lRow) const
    {
        RECT row{};
        row.left = LVIR_BOUNDS;
        Send(hGrid, LVM_GETITEMRECT, lRow, &row);
        return {row.left + 100, (row.top + row.bottom) / 2};
    }
    void ClickRow(const User& user, int lRow) const { user.ClickAt(hGrid, RowAt(lRow)); }
    // Selects consecutive rows.
    void SelectRows(const User& user, int lFirst, int lLast) const
    {
        ClickRow(user, lFirst);
        for (int lRow = lFirst; lRow < lLast; ++lRow)
            user.Key(VK_DOWN, VK_SHIFT);
    }
    void AddRow(const User& user, int lRow) const { user.ClickAt(hGrid, RowAt(lRow), VK_CONTROL); }
    // Clicks elsewhere, so that the next press is not the second one of a double-click.
    void ForgetClicks(const User& user) const { user.ClickAt(At(eIdStatus), {6, 6}); }

    std::wstring Status(int lPart) const
    {
        wchar_t sText[200] = L"";
        Send(At(eIdStatus), SB_GETTEXTW, lPart, sText);
        return sText;
    }
    HWND At(int lId) const { return User::Control(hWindow, lId); }

    // ---- pop-up menus

    // The captions of a menu, what is below an item indented.
    static Texts MenuTexts(HMENU hMenu, const std::wstring& sIndent = L"")
    {
        Texts colItems;
        for (int i = 0; i < ::GetMenuItemCount(hMenu); ++i)
        {
            wchar_t sText[200] = L"";
            ::GetMenuStringW(hMenu, static_cast<UINT>(i), sText, ARRAYSIZE(sText), MF_BYPOSITION);
            colItems.push_back(sIndent + sText);
            const Texts colBelow = MenuTexts(::GetSubMenu(hMenu, i), sIndent + L" ");
            colItems.insert(colItems.end(), colBelow.begin(), colBelow.end());
        }
        return colItems;
    }
    Texts PopUpItems(const User& user) const
    {
        constexpr UINT lGetMenu = 0x1E1;
        const HWND hPopUp = user.WaitFor(L"#32768");
        return MenuTexts(reinterpret_cast<HMENU>(Send(hPopUp, lGetMenu)));
    }
    void Choose(const User& user, int lItem) const
    {
        user.WaitFor(L"#32768");
        for (int i = 0; i <= lItem; ++i)
            user.Key(VK_DOWN);
        user.Key(VK_RETURN);
    }
    // Chooses an item of each pop-up that opens.
    void Choose(const User& user, std::initializer_list<int> lItems) const
    {
        for (const int lItem : lItems)
            Choose(user, lItem);
        user.Idle();
    }
    // An item of the menu bar by its place, and by its places in the menus below.
    void ChooseByMouse(const User& user, const std::vector<int>& path) const
    {
        HMENU hMenu = ::GetMenu(hWindow);
        for (const int lItem : path)
        {
            RECT item{};
            const bool bBar = hMenu == ::GetMenu(hWindow);
            ::GetMenuItemRect(bBar ? hWindow : nullptr, hMenu, static_cast<UINT>(lItem), &item);
            user.ClickAt(::GetDesktopWindow(), {(item.left + item.right) / 2, (item.top + item.bottom) / 2});
            hMenu = ::GetSubMenu(hMenu, lItem);
        }
    }
    void ChooseByKeys(const User& user, const std::vector<int>& path) const
    {
        const wchar_t cMnemonics[] = {L'E', L'T', L'C', L'R', L'H'};
        user.Key(cMnemonics[path[0]], VK_MENU);
        HMENU hMenu = ::GetMenu(hWindow);
        for (std::size_t step = 1; step < path.size(); ++step)
        {
            hMenu = ::GetSubMenu(hMenu, path[step - 1]);
            const auto lItem = static_cast<UINT>(path[step]);
            const auto bHighlighted = [&] {
                return (::GetMenuState(hMenu, lItem, MF_BYPOSITION) & MF_HILITE) != 0;
            };
            for (int i = 0; i < 8 && !bHighlighted(); ++i)
                user.Key(VK_DOWN);
            user.Key(VK_RETURN);
        }
    }
    // The window with the menus and boxes over it.
    void ShotWithBoxes(const User& user, const std::wstring& sName) const
    {
        user.Idle();
        std::vector<HWND> hWindows{hWindow};
        for (const wchar_t* sClass : {sfrmCatClass, L"#32768", L"#32770"})
            if (const HWND hOver = user.Find(sClass))
                hWindows.push_back(hOver);
        EXPECT_TRUE(TakeScreenshot(hWindows, sName));
    }
    // Expects a box, takes a screenshot of it over the window, and answers it.
    void Answer(const User& user, const BoxOnScreen& expected, const std::wstring& sShot, int lButton) const
    {
        EXPECT_EQ(user.Box(), expected);
        ShotWithBoxes(user, sShot);
        user.Answer(lButton);
        user.Idle();
    }
    // A command of the menu bar, as the menu sends it; without waiting for what it shows.
    void Command(LibraryCommand eCommand) const
    {
        ::PostMessageW(hWindow, WM_COMMAND, static_cast<WPARAM>(IdOf(eCommand)), 0);
    }
    void Do(const User& user, LibraryCommand eCommand) const
    {
        Command(eCommand);
        user.Idle();
    }

    // ---- dragging

    // Drags the selection, taken at one of its rows, over a point of a control; the button stays down.
    void DragOver(const User& user, int lRow, HWND hOver, POINT to) const
    {
        ForgetClicks(user);
        const POINT from = RowAt(lRow);
        user.Press(hGrid, from);
        user.MoveTo(hGrid, {from.x + 10, from.y});
        user.MoveTo(hGrid, {from.x + 20, from.y});
        user.MoveTo(hOver, {to.x + 4, to.y});
        user.MoveTo(hOver, to);
    }
    void DragOverNode(const User& user, int lRow, HTREEITEM hItem) const
    {
        DragOver(user, lRow, hTree, MiddleOf(hItem));
        // The display may report an earlier place after the last one, so the hand keeps moving.
        LONG lAside = 0;
        user.Until(
            [&] {
            if (Marked() == hItem)
                return true;
            const POINT at = MiddleOf(hItem);
            lAside = 1 - lAside;
            user.MoveTo(hTree, {at.x + lAside, at.y});
            return false;
            },
            "the target to be marked");
    }
    void DropOnNode(const User& user, int lRow, HTREEITEM hItem) const
    {
        DragOverNode(user, lRow, hItem);
        user.Release();
    }
    // Drops at a point of the grid.
    void DropAt(const User& user, int lRow, POINT to) const
    {
        DragOver(user, lRow, hGrid, to);
        user.Release();
    }
    void GiveUpDrag(const User& user) const
    {
        user.Key(VK_ESCAPE);
        user.Release();
    }

    Texts Order(const std::wstring& sName, int lLevel) const
    {
        Texts colArtists;
        for (const std::shared_ptr<Cut>& cCut : *cState.Level(sName, lLevel)->SchedCuts())
            colArtists.push_back(cCut->Artist());
        return colArtists;
    }

    HostWindow cHost;
    TestStation cState;
    HostEvents cEvents;
    HWND hWindow = nullptr;
    HWND hTree = nullptr;
    HWND hGrid = nullptr;
};

// With its cuts in the database.
struct FilledLibrary : LibraryWindowTest
{
    FilledLibrary() { FillStation(); }
};

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// The cut grid of the library window: columns, cells, selection, finding, editing, removing.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using LibraryGrid = FilledLibrary;
using OtherLibraryGrid = LibraryWindowTest; // with cuts of its own

namespace
{

constexpr const wchar_t* sDefaultOfTen =
    L"1|Width|44|1|Order|1|1|Visible|1|2|Width|31|2|Order|2|2|Visible|1|3|Width|130|3|Order|3|3|Visible|1|"
    L"4|Width|143|4|Order|4|4|Visible|1|5|Width|43|5|Order|5|5|Visible|1|6|Width|154|6|Order|6|6|Visible|1|"
    L"7|Width|26|7|Order|7|7|Visible|1|8|Width|34|8|Order|8|8|Visible|1|9|Width|0|9|Order|9|9|Visible|1|"
    L"10|Width|200|10|Order|10|10|Visible|1|";

} // namespace

TEST_F(LibraryGrid, ItHasTenColumnsAndACutsTexts)
{
    cState.cDataBase->colCuts[1]->SetOpener(true);
    Open([&](const User&) {
        Texts colHeaders;
        Texts colCells;
        for (int lColumn = 0; lColumn < Send(Header(), HDM_GETITEMCOUNT); ++lColumn)
        {
            wchar_t sText[50] = L"";
            HDITEMW item{};
            item.mask = HDI_TEXT | HDI_FORMAT;
            item.pszText = sText;
            item.cchTextMax = ARRAYSIZE(sText);
            Send(Header(), HDM_GETITEMW, ListColumn(lColumn), &item);
            const bool bRight = (item.fmt & HDF_JUSTIFYMASK) == HDF_RIGHT;
            colHeaders.push_back(sText + std::wstring(bRight ? L">" : L""));
            colCells.push_back(Cell(1, lColumn));
        }
        EXPECT_EQ(colHeaders, (Texts{L"Pos>", L"ID>", L"Artist", L"Title", L"Dur>", L"Categories", L"Lvl>",
                                     L"Year>", L"Opener", L"Path"}))
            << "numbers are right-aligned";
        EXPECT_EQ(colCells, (Texts{L"2", L"2", L"Blur", L"Song 2", L"2:44", L"Rock", L"1", L"1972", L"Y",
                                   L"C:\\Music\\rock2.wav"}));
        EXPECT_EQ(Cell(0, 8), L"N");
    });
}

TEST_F(LibraryGrid, UntouchedColumnsAreStoredAsTheDefaultIs)
{
    Open([&](const User&) {
        for (const auto& [lColumn, lWidth] : {std::pair{0, 44}, {2, 130}, {5, 154}, {8, 0}, {9, 200}})
            EXPECT_EQ(ColumnWidth(lColumn), lWidth);
    });
    EXPECT_EQ(StoredLayout(), sDefaultOfTen);
}

TEST_F(OtherLibraryGrid, NumbersAreNeverCutUnlessTheUserSizesTheColumn)
{
    for (int i = 0; i < 12'000; ++i)
        Add(std::to_wstring(i), L"Rock", 1, L"A");
    Open([&](const User& user) {
        for (const int lColumn : {0, 1, 6, 7})
        {
            const std::wstring sWidest = lColumn == 7 ? L"2013" : Cell(11'999, lColumn);
            EXPECT_GE(ColumnWidth(lColumn), Send(hGrid, LVM_GETSTRINGWIDTHW, 0, sWidest.c_str()) + 12)
                << lColumn;
        }
        ::SendMessageW(hGrid, LVM_SETCOLUMNWIDTH, 2, 20);
        Show(user, Root());
        EXPECT_EQ(ColumnWidth(1), 20);
    });
    EXPECT_NE(StoredLayout().find(L"|2|Width|20|"), std::wstring::npos);
    EXPECT_EQ(StoredLayout().substr(0, 11), L"1|Width|44|");
    OpenAgain([&](const User&) { EXPECT_EQ(ColumnWidth(1), 20); });
}

TEST_F(LibraryGrid, DraggedColumnsAreRemembered)
{
    Open([&](const User& user) {
        const auto dragHeader = [&](LONG from, LONG to) { user.Drag(Header(), {from, 8}, {to, 8}); };
        const LONG right = HeaderItem(2).right;
        dragHeader(right - 1, right + 39);
        EXPECT_EQ(ColumnWidth(2), 170);
        dragHeader(HeaderItem(3).left + 30, HeaderItem(2).left + 5); // "Title" in front of "Artist"
        user.Shot(hWindow, L"library-columns-moved");
        EXPECT_LT(HeaderItem(3).left, HeaderItem(2).left);
        const RECT categories = HeaderItem(5);
        dragHeader(categories.right - 1, categories.left - 60);
        user.Idle();
        EXPECT_EQ(ColumnWidth(5), 12) << "an edge to drag it back by";
    });
    for (const wchar_t* sPart : {L"|3|Width|170|3|Order|4|", L"|4|Width|143|4|Order|3|", L"|6|Width|12|"})
        EXPECT_NE(StoredLayout().find(sPart), std::wstring::npos);
    OpenAgain([&](const User&) {
        EXPECT_EQ(ColumnWidth(2), 170);
        EXPECT_LT(HeaderItem(3).left, HeaderItem(2).left);
    });
}

TEST_F(LibraryGrid, AStoredLayoutIsShown)
{
    cState.cPorts.cUserSettings.Set(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib",
                                    L"3|Width|222|9|Width|50|10|Order|0|4|Visible|0|");
    Open([&](const User&) {
        for (const auto& [lColumn, lWidth] : {std::pair{2, 222}, {8, 50}, {3, 0}})
            EXPECT_EQ(ColumnWidth(lColumn), lWidth);
        EXPECT_EQ(HeaderItem(9).left, 0);
    });
    EXPECT_NE(StoredLayout().find(L"|4|Width|143|4|Order|5|4|Visible|0|"), std::wstring::npos)
        << "a hidden column keeps its width";
}

TEST_F(LibraryGrid, RowsAreSelectedByMouseAndKeys)
{
    Open([&](const User& user) {
        ClickRow(user, 1);
        AddRow(user, 4);
        EXPECT_EQ(SelectedArtists(), (Texts{L"Blur", L"Eagles"}));
        // AltGr is Ctrl and Alt: many languages type letters with it.
        ::keybd_event(VK_CONTROL, 0, 0, 0);
        user.Key('A', VK_MENU);
        ::keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
        user.Idle();
        EXPECT_EQ(SelectedRows(), 2);
        ClickRow(user, 2);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(SelectedArtists(), (Texts{L"Cream", L"Dido"}));
        Do(user, LibraryCommand::mnuInvertSelectionGrid);
        EXPECT_EQ(SelectedArtists(),
                  (Texts{L"Abba", L"Blur", L"Eagles", L"Feist", L"Slowdive", L"Ella", L"Aretha"}));
        user.Type(L"sl");
        EXPECT_EQ(SelectedArtists(), (Texts{L"Slowdive"})) << "typing finds a cut";
    });
}

TEST_F(LibraryGrid, EnterAndADoubleClickAskTheHostToEditTheCut)
{
    cEvents.lEditAnswer = 2;
    Open([&](const User& user) {
        cEvents.OnEvent = [&](const std::wstring&) { cState.cDataBase->colCuts[1]->SetArtist(L"Edited"); };
        ClickRow(user, 1);
        user.Key(VK_RETURN);
        EXPECT_EQ(cEvents.colSaid.back(), L"Edit C:\\Music\\rock2.wav");
        cEvents.lEditAnswer = 1;
        cEvents.OnEvent = nullptr;
        cEvents.colSaid.clear();
        ForgetClicks(user);
        user.DoubleClickAt(hGrid, RowAt(2));
        EXPECT_EQ(cEvents.colSaid, (Lines{L"Edit C:\\Music\\rock3.wav"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Cream"})) << "shown again, with the same selection";
        // Below the rows there is nothing to edit.
        user.DoubleClickAt(hGrid, {100, RowAt(8).y + 60});
        EXPECT_EQ(cEvents.colSaid.size(), 1u);
    });
}

TEST_F(LibraryGrid, DeleteRemovesTheSelectedCuts)
{
    Open([&](const User& user) {
        ClickRow(user, 7); // Ella, in all audio
        for (const int lAnswer : {IDNO, IDYES})
        {
            user.Key(VK_DELETE);
            EXPECT_EQ(user.Box().sTitle, L"Are You Sure?");
            ShotWithBoxes(user, L"library-box-remove-all");
            user.Answer(lAnswer);
            EXPECT_EQ(Order(L"Jazz", 1).empty(), lAnswer == IDYES);
        }
        EXPECT_EQ(user.FocusedWindow(), hGrid);
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), colRockArtists) << "in the tree it deletes nothing";
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        SelectRows(user, 1, 2);
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(Status(1), L"Showing 4 total.");
    });
}

// Cuts are asked for their texts only when their rows are painted.
TEST_F(OtherLibraryGrid, AHundredThousandCutsAreAskedOnlyForWhatIsPainted)
{
    for (int i = 0; i < 100'000; ++i)
        Add(L"C:\\Music\\Track " + std::to_wstring(i + 1) + L".mp3", L"Category " + std::to_wstring(i % 40),
            1, L"Artist " + std::to_wstring(i % 700));
    std::atomic<int> lAsked = 0;
    for (const auto& cCut : cState.cDataBase->colCuts)
        static_cast<FakeCut&>(*cCut).OnCall = [&](std::string_view sMember) { lAsked += sMember == "Title"; };
    Open([&](const User& user) {
        constexpr int lPainted = 400; // some paintings of the forty visible rows
        const auto asked = [&] { return lAsked.exchange(0); };
        EXPECT_EQ(Rows(), 100'000);
        user.Shot(hWindow, L"library-many");
        asked();
        Show(user, Item(L"Category 1"));
        EXPECT_EQ(Rows(), 2'500);
        EXPECT_LT(asked(), lPainted);
        Show(user, Root());
        user.Click(hGrid);
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(SelectedRows(), 100'000);
        Do(user, LibraryCommand::mnuInvertSelectionGrid);
        EXPECT_EQ(SelectedRows(), 0);
        EXPECT_LT(asked(), 2 * lPainted);
        for (int i = 0; i < 5; ++i)
            user.Key(VK_NEXT);
        user.Key(VK_END);
        EXPECT_LT(asked(), 4 * lPainted);
        EXPECT_EQ(Cell(99'999, 0), L"100000");
    });
    for (const auto& cCut : cState.cDataBase->colCuts)
        static_cast<FakeCut&>(*cCut).OnCall = nullptr;
}

TEST_F(OtherLibraryGrid, AnotherNodeOpensAtItsFirstRow)
{
    for (int i = 0; i < 500; ++i)
        Add(std::to_wstring(i), i % 2 == 0 ? L"Even" : L"Odd", 1, L"Artist " + std::to_wstring(i));
    Open([&](const User& user) {
        user.Keys({VK_F6, VK_END});
        ASSERT_GT(TopRow(), 100);
        Show(user, Item(L"Even"));
        EXPECT_EQ(TopRow(), 0);
        // The same node again keeps its place.
        user.Keys({VK_F6, VK_END});
        const int lTop = TopRow();
        ASSERT_GT(lTop, 100);
        Show(user, Item(L"Even"));
        EXPECT_EQ(TopRow(), lTop);
    });
}

TEST_F(LibraryGrid, TheFocusEntersTheListAtItsFirstRow)
{
    Open([&](const User& user) {
        user.Key(VK_F6);
        EXPECT_EQ(CurrentRow(), 0);
        EXPECT_EQ(SelectedRows(), 0);
        user.Shot(hWindow, L"library-focus-in-list");
    });
}

namespace
{

// Counts what the list reports of its rows to its parent while this object exists.
class RowReports
{
public:
    RowReports(HostWindow& cHost, const User& user, HWND hWindow)
        : m_cHost(cHost), m_user(user), m_hWindow(hWindow)
    {
        lReports = 0;
        m_cHost.Run(m_user, [this] { ::SetWindowSubclass(m_hWindow, &RowReports::OnMessage, 77, 0); });
    }
    ~RowReports()
    {
        m_cHost.Run(m_user, [this] { ::RemoveWindowSubclass(m_hWindow, &RowReports::OnMessage, 77); });
    }
    RowReports(const RowReports&) = delete;
    RowReports& operator=(const RowReports&) = delete;
    static int Taken() { return lReports.exchange(0); }

private:
    static inline std::atomic<int> lReports = 0;
    static LRESULT CALLBACK OnMessage(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR) noexcept
    {
        if (lMessage == WM_NOTIFY)
        {
            const UINT lCode = reinterpret_cast<const NMHDR*>(lParam)->code;
            lReports += lCode == LVN_ITEMCHANGED || lCode == LVN_ITEMCHANGING || lCode == LVN_ODSTATECHANGED;
        }
        return ::DefSubclassProc(hWindow, lMessage, wParam, lParam);
    }

    HostWindow& m_cHost;
    const User& m_user;
    HWND m_hWindow;
};

} // namespace

// Cleared row by row, the list would freeze for seconds; at once, there are a few reports for any number of
// rows.
TEST_F(OtherLibraryGrid, ALargeSelectionIsClearedAtOnce)
{
    constexpr int lRows = 20'000;
    constexpr int lFew = 12;
    for (int i = 0; i < lRows; ++i)
        Add(std::to_wstring(i), L"Big", 1, i == 700 ? L"Xavier" : L"Artist");
    Open([&](const User& user) {
        ClickRow(user, 3);
        const RowReports cReports(cHost, user, hWindow);
        const struct
        {
            const char* sWhat;
            std::function<void()> act;
            int lSelected;
            int lCurrent; // -1: any
        } cases[] = {
            {"click", [&] { ClickRow(user, 5); }, 1, 5},
            {"home", [&] { user.Key(VK_HOME); }, 1, 0},
            {"home at the first row", [&] { user.Key(VK_HOME); }, 1, 0},
            {"up at the first row", [&] { user.Key(VK_UP); }, 1, 0},
            {"end", [&] { user.Key(VK_END); }, 1, lRows - 1},
            {"a letter", [&] { user.Type(L"x"); }, 1, 700},
            {"page up", [&] { user.Key(VK_PRIOR); }, 1, -1},
            {"shift and end", [&] { user.Key(VK_HOME), user.Key(VK_END, VK_SHIFT); }, lRows, lRows - 1},
        };
        for (const auto& test : cases)
        {
            SCOPED_TRACE(test.sWhat);
            user.Key('A', VK_CONTROL);
            ASSERT_EQ(SelectedRows(), lRows);
            RowReports::Taken();
            test.act();
            EXPECT_EQ(SelectedRows(), test.lSelected);
            EXPECT_TRUE(test.lCurrent < 0 || CurrentRow() == test.lCurrent) << CurrentRow();
            EXPECT_LE(RowReports::Taken(), lFew);
        }
    });
}

TEST_F(OtherLibraryGrid, ClearingALargeSelectionKeepsThePlace)
{
    for (int i = 0; i < 2'000; ++i)
        Add(std::to_wstring(i), L"Big", 1, L"Artist");
    Open([&](const User& user) {
        user.Place(hWindow, 60, 70, 800, 500);
        ClickRow(user, 2);
        Send(hGrid, LVM_ENSUREVISIBLE, 1'000);
        ClickRow(user, 995);
        Send(hGrid, LVM_SCROLL, 60);
        const auto place = [&] {
            return std::vector<int>{TopRow(), ::GetScrollPos(hGrid, SB_HORZ), CurrentRow()};
        };
        const std::vector<int> before = place();
        ASSERT_GT(before[0], 900);
        ASSERT_EQ(before[1], 60);
        ASSERT_EQ(before[2], 995);
        user.Key('A', VK_CONTROL);
        ASSERT_EQ(SelectedRows(), 2'000);
        Do(user, LibraryCommand::mnuSelectNoneGrid);
        EXPECT_EQ(SelectedRows(), 0);
        EXPECT_EQ(place(), before);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(SelectedRows(), 2) << "a range still begins at the same row";
        // A press clears nothing as long as it may begin a drag.
        user.Key('A', VK_CONTROL);
        DragOver(user, 997, hGrid, RowAt(1'000));
        EXPECT_EQ(SelectedRows(), 2'000);
        GiveUpDrag(user);
        EXPECT_EQ(SelectedRows(), 2'000);
    });
}

} // namespace ravlo::test

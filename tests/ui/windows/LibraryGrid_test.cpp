// SPDX-License-Identifier: MIT
// The cut grid of the library window: columns, cells, selection, finding, editing, removing.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using LibraryGrid = LibraryWindowTest;

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
    FillStation();
    cState.cDataBase->colCuts[1]->SetOpener(true);
    Open([&](const User&) {
        const HWND hHeader = Header();
        Texts colHeaders;
        for (int i = 0; i < ::SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0); ++i)
        {
            wchar_t sText[50] = L"";
            HDITEMW item{};
            item.mask = HDI_TEXT | HDI_FORMAT;
            item.pszText = sText;
            item.cchTextMax = ARRAYSIZE(sText);
            ::SendMessageW(hHeader, HDM_GETITEMW, static_cast<WPARAM>(ListColumn(i)),
                           reinterpret_cast<LPARAM>(&item));
            const bool bRight = (item.fmt & HDF_JUSTIFYMASK) == HDF_RIGHT;
            colHeaders.push_back(sText + std::wstring(bRight ? L">" : L""));
        }
        EXPECT_EQ(colHeaders, (Texts{L"Pos>", L"ID>", L"Artist", L"Title", L"Dur>", L"Categories", L"Lvl>",
                                     L"Year>", L"Opener", L"Path"}))
            << "numbers stand at the right";
        Texts colCells;
        for (int lColumn = 0; lColumn < 10; ++lColumn)
            colCells.push_back(Cell(1, lColumn));
        EXPECT_EQ(colCells, (Texts{L"2", L"2", L"Blur", L"Song 2", L"2:44", L"Rock", L"1", L"1972", L"Y",
                                   L"C:\\Music\\rock2.wav"}));
        EXPECT_EQ(Cell(0, 8), L"N");
    });
}

TEST_F(LibraryGrid, UntouchedColumnsAreStoredAsTheDefaultIs)
{
    FillStation();
    Open([&](const User&) {
        EXPECT_EQ(WidthOf(0), 44);
        EXPECT_EQ(WidthOf(2), 130);
        EXPECT_EQ(WidthOf(5), 154);
        EXPECT_EQ(WidthOf(8), 0);
        EXPECT_EQ(WidthOf(9), 200);
    });
    EXPECT_EQ(StoredLayout(), sDefaultOfTen);
}

TEST_F(LibraryGrid, NumbersAreNeverCutInAColumnThatNobodyHasSized)
{
    for (int i = 0; i < 12'000; ++i)
        Add(std::to_wstring(i), L"Rock", 1, L"A");
    Open([&](const User& user) {
        for (const int lColumn : {0, 1, 6, 7})
        {
            const std::wstring sWidest = lColumn == 7 ? L"2013" : Cell(11'999, lColumn);
            const auto lText = static_cast<int>(
                ::SendMessageW(hGrid, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(sWidest.c_str())));
            EXPECT_GE(WidthOf(lColumn), lText + 12) << lColumn;
        }
        // One that somebody has sized is as wide as he wants it.
        ::SendMessageW(hGrid, LVM_SETCOLUMNWIDTH, 2, 20);
        Show(user, Root());
        EXPECT_EQ(WidthOf(1), 20);
    });
    EXPECT_NE(StoredLayout().find(L"|2|Width|20|"), std::wstring::npos);
    EXPECT_EQ(StoredLayout().substr(0, 11), L"1|Width|44|");
    OpenAgain([&](const User&) { EXPECT_EQ(WidthOf(1), 20); });
}

TEST_F(LibraryGrid, AColumnDraggedWiderAndOneDraggedElsewhereAreRemembered)
{
    FillStation();
    Open([&](const User& user) {
        const HWND hHeader = Header();
        const RECT artist = HeaderItem(2);
        user.Drag(hHeader, {artist.right - 1, 8}, {artist.right + 39, 8});
        EXPECT_EQ(WidthOf(2), 170);
        // "Title" in front of "Artist".
        const RECT from = HeaderItem(3);
        const RECT to = HeaderItem(2);
        user.Drag(hHeader, {from.left + 30, 8}, {to.left + 5, 8});
        user.Idle();
        user.Shot(hWindow, L"library-columns-moved");
        EXPECT_LT(HeaderItem(3).left, HeaderItem(2).left);
    });
    EXPECT_NE(StoredLayout().find(L"|3|Width|170|3|Order|4|"), std::wstring::npos);
    EXPECT_NE(StoredLayout().find(L"|4|Width|143|4|Order|3|"), std::wstring::npos);
    OpenAgain([&](const User&) {
        EXPECT_EQ(WidthOf(2), 170);
        EXPECT_LT(HeaderItem(3).left, HeaderItem(2).left);
    });
}

TEST_F(LibraryGrid, AStoredLayoutIsShownAndAnUnusableOneIsTheDefault)
{
    FillStation();
    const auto store = [&](const wchar_t* sLayout) {
        cState.cPorts.cUserSettings.Set(L"RavloScheduler", L"Settings", L"iGridLibLayoutColSchedLib",
                                        sLayout);
    };
    store(L"3|Width|222|9|Width|50|10|Order|0|4|Visible|0|");
    Open([&](const User&) {
        EXPECT_EQ(WidthOf(2), 222);
        EXPECT_EQ(WidthOf(8), 50);
        EXPECT_EQ(WidthOf(3), 0);
        EXPECT_EQ(HeaderItem(9).left, 0);
    });
    EXPECT_NE(StoredLayout().find(L"|4|Width|143|4|Order|5|4|Visible|0|"), std::wstring::npos)
        << "a hidden column keeps its width";
    store(L"what is this");
    OpenAgain([&](const User&) { EXPECT_EQ(WidthOf(2), 130); });
    EXPECT_EQ(StoredLayout(), sDefaultOfTen);
}

TEST_F(LibraryGrid, RowsAreSelectedByMouseAndKeys)
{
    FillStation();
    Open([&](const User& user) {
        ClickRow(user, 1);
        AddRow(user, 4);
        EXPECT_EQ(SelectedArtists(), (Texts{L"Blur", L"Eagles"}));
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(SelectedArtists().size(), 9u);
        ClickRow(user, 2);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(SelectedArtists(), (Texts{L"Cream", L"Dido"}));
        Command(LibraryCommand::mnuInvertSelectionGrid);
        user.Idle();
        EXPECT_EQ(SelectedArtists(),
                  (Texts{L"Abba", L"Blur", L"Eagles", L"Feist", L"Slowdive", L"Ella", L"Aretha"}));
    });
}

// AltGr is Ctrl and Alt: with it letters of many languages are typed.
TEST_F(LibraryGrid, AltGrIsNoCtrl)
{
    FillStation();
    Open([&](const User& user) {
        ClickRow(user, 2);
        ::keybd_event(VK_CONTROL, 0, 0, 0);
        user.Key('A', VK_MENU);
        ::keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
        user.Idle();
        EXPECT_EQ(SelectedArtists().size(), 1u);
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(SelectedArtists().size(), 9u);
    });
}

TEST_F(LibraryGrid, TypingFindsACut)
{
    FillStation();
    Open([&](const User& user) {
        ClickRow(user, 0);
        user.Type(L"sl");
        EXPECT_EQ(SelectedArtists(), (Texts{L"Slowdive"}));
    });
}

TEST_F(LibraryGrid, EnterAndADoubleClickAskTheHostToEditTheCut)
{
    FillStation();
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
        const POINT at = RowAt(2);
        user.DoubleClickAt(hGrid, static_cast<int>(at.x), static_cast<int>(at.y));
        EXPECT_EQ(cEvents.colSaid, (Lines{L"Edit C:\\Music\\rock3.wav"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Cream"})) << "shown again, with the same selection";
        // Below the rows there is nothing to edit.
        user.DoubleClickAt(hGrid, 100, static_cast<int>(RowAt(8).y) + 60);
        EXPECT_EQ(cEvents.colSaid.size(), 1u);
    });
}

TEST_F(LibraryGrid, DeleteTakesTheSelectedCutsOutOfTheShownLevel)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1).size(), 6u) << "in the tree it deletes nothing";
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        SelectRows(user, 1, 2);
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(Status(1), L"Showing 4 total.");
    });
}

TEST_F(LibraryGrid, DeleteWithoutASelectionSaysSo)
{
    FillStation();
    Open([&](const User& user) {
        user.Key(VK_F6);
        user.Key(VK_DELETE);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"First Select Some Items In The Grid!",
                                           L"There are no items selected to be remove category from!",
                                           {IDOK}}));
        ShotWithBoxes(user, L"library-box-nothing-selected");
        user.Answer(IDOK);
    });
}

TEST_F(LibraryGrid, DeleteAsksInAllAudio)
{
    FillStation();
    Open([&](const User& user) {
        ClickRow(user, 7); // Ella
        user.Key(VK_DELETE);
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"Are You Sure?",
                               L"The view is 'ALL AUDIO'.\r\n\r\n"
                               L"Continuing will remove ALL the categories from the selected items\r\n"
                               L"Really continue?",
                               {IDYES, IDNO}}));
        ShotWithBoxes(user, L"library-box-remove-all");
        user.Answer(IDNO);
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella"}));
        user.Key(VK_DELETE);
        user.Answer(IDYES);
        EXPECT_TRUE(Order(L"Jazz", 1).empty());
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

TEST_F(LibraryGrid, ManyCutsAreShownAtOnce)
{
    for (int i = 0; i < 5000; ++i)
        Add(L"C:\\Music\\Track " + std::to_wstring(i + 1) + L".mp3", L"Category " + std::to_wstring(i % 40),
            1 + i % 3, L"Artist " + std::to_wstring(i % 700));
    Open([&](const User& user) {
        EXPECT_EQ(Rows(), 5000);
        user.Shot(hWindow, L"library-many");
        user.Click(hGrid);
        user.Key(VK_END);
        EXPECT_EQ(SelectedArtists().size(), 1u);
        EXPECT_EQ(Cell(4999, 0), L"5000");
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 5000);
        user.Shot(hWindow, L"library-many-selected");
    });
}

// Cuts are asked for texts when their rows are painted, and for nothing else.
TEST_F(LibraryGrid, AHundredThousandCutsAreAskedForWhatIsPaintedAlone)
{
    for (int i = 0; i < 100'000; ++i)
        Add(std::to_wstring(i), L"Big " + std::to_wstring(i % 2), 1, L"Artist");
    std::atomic<int> lAsked = 0;
    for (const auto& cCut : cState.cDataBase->colCuts)
        static_cast<FakeCut&>(*cCut).OnCall = [&](const std::string& sMember) {
            lAsked += sMember == "Title";
        };
    Open([&](const User& user) {
        constexpr int lPainted = 400; // some paintings of the forty rows that are to be seen
        const auto asked = [&] { return lAsked.exchange(0); };
        EXPECT_EQ(Rows(), 100'000);
        asked();
        Show(user, Item(L"Big 1"));
        EXPECT_EQ(Rows(), 50'000);
        EXPECT_LT(asked(), lPainted);
        Show(user, Root());
        user.Click(hGrid);
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 100'000);
        Command(LibraryCommand::mnuInvertSelectionGrid);
        user.Idle();
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 0);
        EXPECT_LT(asked(), 2 * lPainted);
        for (int i = 0; i < 5; ++i)
            user.Key(VK_NEXT);
        user.Key(VK_END);
        EXPECT_LT(asked(), 4 * lPainted);
        user.Shot(hWindow, L"library-100000");
    });
    for (const auto& cCut : cState.cDataBase->colCuts)
        static_cast<FakeCut&>(*cCut).OnCall = nullptr;
}

TEST_F(LibraryGrid, AnotherNodeOpensAtItsFirstRow)
{
    for (int i = 0; i < 500; ++i)
        Add(std::to_wstring(i), i % 2 == 0 ? L"Even" : L"Odd", 1, L"Artist " + std::to_wstring(i));
    Open([&](const User& user) {
        user.Key(VK_F6);
        user.Key(VK_END);
        ASSERT_GT(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), 100);
        Show(user, Item(L"Even"));
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), 0);
        // The same node again stays where it is.
        user.Key(VK_F6);
        user.Key(VK_END);
        const LRESULT lTop = ::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0);
        ASSERT_GT(lTop, 100);
        Show(user, Item(L"Even"));
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), lTop);
    });
}

TEST_F(LibraryGrid, CtrlASelectsAllRowsFromAnyFocus)
{
    FillStation();
    Open([&](const User& user) {
        for (const HWND hFocus : {hTree, hGrid})
        {
            Command(LibraryCommand::mnuSelectNoneGrid);
            user.Click(hFocus);
            user.Key('A', VK_CONTROL);
            EXPECT_EQ(SelectedArtists().size(), 9u);
        }
    });
}

TEST_F(LibraryGrid, TheFocusIsToBeSeenInAListWithoutACurrentRow)
{
    FillStation();
    Open([&](const User& user) {
        user.Key(VK_F6);
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), 0);
        EXPECT_TRUE(SelectedArtists().empty());
        user.Shot(hWindow, L"library-focus-in-list");
        ClickRow(user, 3);
        user.Click(hTree);
        user.Shot(hWindow, L"library-selection-without-focus");
    });
}

TEST_F(LibraryGrid, AColumnDraggedToNothingKeepsAnEdgeToTakeHoldOf)
{
    FillStation();
    Open([&](const User& user) {
        const RECT artist = HeaderItem(2);
        user.Drag(Header(), {artist.right - 1, 8}, {artist.left - 60, 8});
        user.Idle();
        EXPECT_EQ(WidthOf(2), 12);
    });
    EXPECT_NE(StoredLayout().find(L"|3|Width|12|"), std::wstring::npos);
}

TEST_F(LibraryGrid, F6WithAnotherKeyIsNotTaken)
{
    FillStation();
    Open([&](const User& user) {
        for (const int lModifier : {VK_CONTROL, VK_SHIFT})
        {
            user.Key(VK_F6, lModifier);
            EXPECT_EQ(user.FocusedWindow(), hTree);
        }
        user.Key(VK_F6);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

namespace
{

// Counts what the list reports of its rows while it exists. The list's window tells its parent.
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

// Row by row the list would freeze for seconds; in one piece there are a few reports, however many rows.
TEST_F(LibraryGrid, ALargeSelectionIsTakenBackInOnePiece)
{
    constexpr int lRows = 20'000;
    constexpr int lFew = 12;
    for (int i = 0; i < lRows; ++i)
        Add(std::to_wstring(i), L"Big", 1, i == 700 ? L"Xavier" : L"Artist");
    Open([&](const User& user) {
        const auto selected = [&] { return ::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0); };
        const auto current = [&] {
            return ::SendMessageW(hGrid, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        };
        ClickRow(user, 3);
        const RowReports cReports(cHost, user, hWindow);
        const auto allSelected = [&] {
            user.Key('A', VK_CONTROL);
            ASSERT_EQ(selected(), lRows);
            RowReports::Taken();
        };
        struct Case
        {
            const char* sWhat;
            std::function<void()> act;
            LRESULT lSelected;
            LRESULT lCurrent;
        };
        const Case cases[] =
            {
                {"click", [&] { ClickRow(user, 5); }, 1, 5},
                {"home", [&] { user.Key(VK_HOME); }, 1, 0},
                {"home at the first row", [&] { user.Key(VK_HOME); }, 1, 0},
                {"up at the first row", [&] { user.Key(VK_UP); }, 1, 0},
                {"end", [&] { user.Key(VK_END); }, 1, lRows - 1},
                {"a letter", [&] { user.Type(L"x"); }, 1, 700},
                {"page up", [&] { user.Key(VK_PRIOR); }, 1, -1},
                {"shift and end",
                 [&] {
            user.Key(VK_HOME);
            user.Key(VK_END, VK_SHIFT);
                 },
                 lRows, lRows - 1},
        };
        for (const Case& test : cases)
        {
            SCOPED_TRACE(test.sWhat);
            allSelected();
            test.act();
            EXPECT_EQ(selected(), test.lSelected);
            if (test.lCurrent >= 0)
            {
                EXPECT_EQ(current(), test.lCurrent);
            }
            EXPECT_LE(RowReports::Taken(), lFew);
        }
    });
}

TEST_F(LibraryGrid, TakingBackALargeSelectionKeepsThePlace)
{
    for (int i = 0; i < 2'000; ++i)
        Add(std::to_wstring(i), L"Big", 1, L"Artist");
    Open([&](const User& user) {
        ::SetWindowPos(hWindow, nullptr, 60, 70, 800, 500, SWP_NOZORDER);
        user.Idle();
        ClickRow(user, 2);
        ::SendMessageW(hGrid, LVM_ENSUREVISIBLE, 1'000, FALSE);
        ClickRow(user, 995);
        ::SendMessageW(hGrid, LVM_SCROLL, 60, 0);
        const auto place = [&] {
            return std::vector<LRESULT>{
                ::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), ::GetScrollPos(hGrid, SB_HORZ),
                ::SendMessageW(hGrid, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED)};
        };
        const std::vector<LRESULT> before = place();
        ASSERT_GT(before[0], 900);
        ASSERT_EQ(before[1], 60);
        ASSERT_EQ(before[2], 995);
        user.Key('A', VK_CONTROL);
        ASSERT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 2'000);
        Command(LibraryCommand::mnuSelectNoneGrid);
        user.Idle();
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 0);
        EXPECT_EQ(place(), before);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 2) << "a range begins where it did";
    });
}

// The selection stays while a drag may begin.
TEST_F(LibraryGrid, ALargeSelectionCanBeDragged)
{
    for (int i = 0; i < 2'000; ++i)
        Add(std::to_wstring(i), L"Big", 1, L"Artist");
    Open([&](const User& user) {
        ClickRow(user, 3);
        user.Key('A', VK_CONTROL);
        DragOver(user, 5, hGrid, RowAt(8));
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 2'000);
        user.Key(VK_ESCAPE);
        user.Release();
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETSELECTEDCOUNT, 0, 0), 2'000);
    });
}

} // namespace ravlo::test

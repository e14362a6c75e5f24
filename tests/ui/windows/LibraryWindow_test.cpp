// SPDX-License-Identifier: MIT
// The library window among other windows: opening and closing, place, resolution, what it leaves behind.
#include "ui/controls/windows/Window.h"
#include "ui/windows/LibraryFixture.h"
#include "ui/windows/Tidy.h"

namespace ravlo::test
{

using LibraryWindowLifetime = LibraryWindowTest;
using Faults = std::vector<std::string>;

TEST_F(LibraryWindowLifetime, AnEmptyStationShowsItsRootAlone)
{
    Open([&](const User& user) {
        EXPECT_EQ(User::Text(hWindow), L"Ravlo-Scheduler Library");
        EXPECT_EQ(User::Text(User::Control(hWindow, eIdlblTopLeft)),
                  L"Double-click any node to display items");
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO"}));
        EXPECT_EQ(Rows(), 0);
        EXPECT_TRUE(cState.cSchedMan->UIShowing());
        EXPECT_FALSE(::IsWindowEnabled(cHost.Handle()));
        user.Shot(hWindow, L"library-empty");
        user.Key(VK_F4, VK_MENU);
        user.WaitUntilGone(hWindow);
    });
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
    EXPECT_EQ(::GetFocus(), cHost.hEdit);
}

TEST_F(LibraryWindowLifetime, ReloadAllWithoutAWindowShowsNothing)
{
    FillStation();
    cState.Populate();
    cState.cSchedMan->ReloadAll();
    EXPECT_TRUE(cState.cWindows->LibraryExists());
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    const HWND hHidden = ::FindWindowW(sfrmUILibClass, nullptr);
    ASSERT_NE(hHidden, nullptr);
    EXPECT_FALSE(::IsWindowVisible(hHidden));
    hTree = User::Control(hHidden, eIdTvCats);
    EXPECT_EQ(Tree().size(), 8u);
}

namespace
{

// The database of a host that does something of its own while it is asked for its cuts.
class BusyDataBase final : public DataBase
{
public:
    explicit BusyDataBase(std::shared_ptr<FakeDataBase> cDataBase) : m_cDataBase(std::move(cDataBase)) {}

    mutable std::function<void()> OnAllCuts; // once

    Cuts AllCuts() const override
    {
        if (const auto hook = std::exchange(OnAllCuts, nullptr))
            hook();
        return m_cDataBase->AllCuts();
    }
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override { return m_cDataBase->CutByKey(cKey); }
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override
    {
        return m_cDataBase->CutByArtistTitle(sArtist, sTitle);
    }
    std::shared_ptr<Cut> NewCut() const override { return m_cDataBase->NewCut(); }
    void Advise(DataBaseEvents& cEvents) override { m_cDataBase->Advise(cEvents); }
    void Unadvise(DataBaseEvents& cEvents) noexcept override { m_cDataBase->Unadvise(cEvents); }

private:
    std::shared_ptr<FakeDataBase> m_cDataBase;
};

} // namespace

TEST_F(LibraryWindowLifetime, AHostMayShowItWhileAHiddenOneIsFilled)
{
    FillStation();
    cState.Populate();
    const auto cBusy = std::make_shared<BusyDataBase>(cState.cDataBase);
    cState.cSchedMan->PopulateFromDataBase(cBusy, L"C:\\Radio\\");
    cBusy->OnAllCuts = [&] {
        cState.cSchedMan->ShowLibraryUI();
        cState.cSchedMan->ReloadAll(); // makes a hidden one again
    };
    WhileOpen([&] { cState.cSchedMan->ReloadAll(); },
              [&](const User& user) {
        hWindow = user.WaitFor(sfrmUILibClass);
        hGrid = User::Control(hWindow, eIdiGridLib);
        EXPECT_EQ(Rows(), 9);
        ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
        user.WaitUntilGone(hWindow);
    });
    hWindow = ::FindWindowW(sfrmUILibClass, nullptr);
    ASSERT_NE(hWindow, nullptr);
    EXPECT_EQ(::FindWindowExW(nullptr, hWindow, sfrmUILibClass, nullptr), nullptr) << "the last one alone";
    cState.cDataBase->Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Importing"), 9);
    EXPECT_EQ(Status(0), L"Importing") << "the manager's progress goes to it";
}

TEST_F(LibraryWindowLifetime, AHostMayLetGoOfTheWindowsWhileAHiddenOneIsFilled)
{
    FillStation();
    cState.Populate();
    const auto cBusy = std::make_shared<BusyDataBase>(cState.cDataBase);
    cState.cSchedMan->PopulateFromDataBase(cBusy, L"C:\\Radio\\");
    bool bGone = false;
    cBusy->OnAllCuts = [&] {
        cState.cSchedMan->SetWindows(nullptr);
        cState.cWindows.reset();
        bGone = true;
    };
    cState.cSchedMan->ReloadAll();
    EXPECT_TRUE(bGone);
    EXPECT_EQ(::FindWindowW(sfrmUILibClass, nullptr), nullptr);
}

TEST_F(LibraryWindowLifetime, ReloadAllRefillsTheOpenWindowWithoutTheDatabase)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        cHost.Run(user, [&] {
            cState.cDataBase->bFails = true;
            cState.Level(L"Rock", 1)->SetCatLevel(7);
            cState.cSchedMan->ReloadAll();
            cState.Level(L"Rock", 1)->SetCatLevel(1);
            cState.cDataBase->bFails = false;
        });
        EXPECT_EQ(Tree(Item(L"Rock")), (Texts{L"2", L"7"}));
        EXPECT_TRUE(IsExpanded(Item(L"Rock")));
    });
}

TEST_F(LibraryWindowLifetime, ASecondOpeningComesBackAtOnceAndBringsItToTheFront)
{
    FillStation();
    Open([&](const User& user) {
        ::ShowWindow(hWindow, SW_MINIMIZE);
        cHost.Run(user, [&] { cState.cSchedMan->ShowLibraryUI(); });
        EXPECT_FALSE(::IsIconic(hWindow));
        EXPECT_TRUE(cState.cSchedMan->UIShowing());
    });
}

TEST_F(LibraryWindowLifetime, ClosingWaitsForWhatRuns)
{
    FillStation();
    Open([&](const User& user) {
        std::atomic<bool> bHeld = false;
        cEvents.OnEvent = [&](const std::wstring&) {
            if (bHeld.exchange(true))
                return;
            ::SendMessageW(hWindow, WM_CLOSE, 0, 0);
            EXPECT_TRUE(::IsWindowVisible(hWindow)) << "not in the middle of a command";
            Command(LibraryCommand::mnuHelp); // ignored
            cState.cHostLoop.PumpMessages();
        };
        cEvents.colSaid.clear();
        Command(LibraryCommand::mnuReloadAll);
        user.WaitUntilGone(hWindow);
        EXPECT_TRUE(bHeld);
        EXPECT_EQ(std::count(cEvents.colSaid.begin(), cEvents.colSaid.end(), L"Help"), 0);
    });
}

// How many of the controls are enabled.
struct LibraryGreyed : LibraryWindowTest
{
    int Enabled() const
    {
        int lEnabled = 0;
        for (const int lId : {eIdlblTopLeft, eIdTvCats, eIdiGridLib, eIdStatus, eIdProgressBar1})
            lEnabled += ::IsWindowEnabled(User::Control(hWindow, lId)) ? 1 : 0;
        return lEnabled;
    }
};

TEST_F(LibraryGreyed, LongCommandDisablesControlsThenRestoresTheFocus)
{
    FillStation();
    Open([&](const User& user) {
        user.Click(hGrid);
        std::atomic<bool> bGreyed = false;
        std::atomic<bool> bBar = false;
        // Reading the database takes longer than the window waits before it greys.
        static_cast<FakeCut&>(*cState.cDataBase->colCuts[3]).OnCall = [&](const std::string&) {
            const DWORD lStart = ::GetTickCount();
            while (!bGreyed && ::GetTickCount() - lStart < 5000)
            {
                cState.cHostLoop.PumpMessages();
                const UINT lMenu = ::GetMenuState(::GetMenu(hWindow), 0, MF_BYPOSITION);
                bGreyed = Enabled() == 0 && (lMenu & MF_GRAYED) != 0;
                bBar = ::IsWindowVisible(User::Control(hWindow, eIdProgressBar1)) != FALSE;
            }
        };
        Command(LibraryCommand::mnuReloadAll);
        user.Until([&] { return bGreyed.load(); }, "the controls to be disabled");
        user.Idle();
        EXPECT_TRUE(bBar);
        EXPECT_EQ(Enabled(), 5);
        EXPECT_EQ(::GetMenuState(::GetMenu(hWindow), 0, MF_BYPOSITION) & MF_GRAYED, 0u);
        EXPECT_FALSE(::IsWindowVisible(User::Control(hWindow, eIdProgressBar1)));
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
    static_cast<FakeCut&>(*cState.cDataBase->colCuts[3]).OnCall = nullptr;
}

TEST_F(LibraryGreyed, TheFocusComesBackAlsoWhenABoxFollowsALongCommand)
{
    FillStation();
    Open([&](const User& user) {
        user.Click(hGrid);
        bool bShown = false;
        auto& cCut = static_cast<FakeCut&>(*cState.cDataBase->colCuts[3]);
        cCut.OnCall = [&](const std::string&) {
            if (std::exchange(bShown, true))
                return;
            const DWORD lStart = ::GetTickCount();
            while (Enabled() != 0 && ::GetTickCount() - lStart < 5000)
                cState.cHostLoop.PumpMessages();
            cState.cMod.Box(BoxIcon::None, BoxButtons::Ok, L"Host", L"A question in the middle");
        };
        Command(LibraryCommand::mnuReloadAll);
        EXPECT_EQ(user.Box().sTitle, L"Host");
        EXPECT_EQ(Enabled(), 0);
        user.Answer(IDOK);
        user.Idle();
        EXPECT_EQ(Enabled(), 5);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
        cCut.OnCall = nullptr;
    });
}

TEST_F(LibraryWindowLifetime, TheFocusComesBackToTheControlThatHadIt)
{
    FillStation();
    Open([&](const User& user) {
        user.Click(hGrid);
        Command(LibraryCommand::mnuCatNew);
        user.Answer(IDCANCEL);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

TEST_F(LibraryWindowLifetime, QuittingProgramClosesItAndQuits)
{
    FillStation();
    cState.Populate();
    bool bQuit = false;
    WhileOpen(
        [&] {
        cState.cSchedMan->ShowLibraryUI();
        MSG message;
        bQuit = ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7;
        },
        [&](const User& user) {
        const HWND hOpen = user.WaitFor(sfrmUILibClass);
        cHost.Run(user, [] { ::PostQuitMessage(7); });
        user.WaitUntilGone(hOpen);
    });
    EXPECT_TRUE(bQuit);
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
}

TEST_F(LibraryWindowLifetime, AHostThatDestroysItsWindowTakesThisOneWithIt)
{
    FillStation();
    cState.Populate();
    WhileOpen([&] { cState.cSchedMan->ShowLibraryUI(); },
              [&](const User& user) {
        const HWND hOpen = user.WaitFor(sfrmUILibClass);
        hGrid = User::Control(hOpen, eIdiGridLib);
        ::SendMessageW(hGrid, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(ListColumn(2)), 222);
        cHost.Run(user, [&] { ::DestroyWindow(cHost.Handle()); });
        user.WaitUntilGone(hOpen);
    });
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_NE(StoredLayout().find(L"|3|Width|222|"), std::wstring::npos) << "its columns are remembered";
}

// ---- place ----

TEST_F(LibraryWindowLifetime, SizePlaceAndDividerAreRemembered)
{
    FillStation();
    RECT first{};
    RECT tree{};
    Open([&](const User& user) {
        EXPECT_NEAR(WidthOnScreen(hTree), 298, 4) << "as wide as names are";
        ::SetWindowPos(hWindow, nullptr, 60, 70, 800, 500, SWP_NOZORDER);
        user.Idle();
        ::GetWindowRect(hWindow, &first);
        const HWND hBar = User::Control(hWindow, eIdsp1);
        user.Drag(hBar, {2, 100}, {-78, 100});
        ::GetWindowRect(hTree, &tree);
        EXPECT_NEAR(tree.right - tree.left, 218, 4);
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
    OpenAgain([&](const User&) {
        RECT second{};
        ::GetWindowRect(hWindow, &second);
        EXPECT_TRUE(::EqualRect(&first, &second));
        ::GetWindowRect(hTree, &second);
        EXPECT_TRUE(::EqualRect(&tree, &second));
    });
}

TEST_F(LibraryWindowLifetime, AMaximisedWindowOpensMaximised)
{
    Open([&](const User& user) {
        ::ShowWindow(hWindow, SW_MAXIMIZE);
        user.Idle();
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
    OpenAgain([&](const User&) { EXPECT_TRUE(::IsZoomed(hWindow)); });
}

// ---- look ----

TEST_F(LibraryWindowLifetime, NothingIsClippedOrCoveredAtAnySizeAndResolution)
{
    FillStation();
    Open([&](const User& user) {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
        for (const int lDpi : {96, 120, 144, 192, 96})
        {
            RECT place{0, 0, std::min(::MulDiv(1000, lDpi, 96), 1600), ::MulDiv(560, lDpi, 96)};
            ::SendMessageW(hWindow, WM_DPICHANGED, MAKEWPARAM(lDpi, lDpi), reinterpret_cast<LPARAM>(&place));
            user.Idle();
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
            EXPECT_EQ(WidthOf(3), ::MulDiv(143, lDpi, 96));
            user.Shot(hWindow, L"library-" + std::to_wstring(lDpi * 100 / 96));
            // As small as it goes.
            ::SetWindowPos(hWindow, nullptr, 0, 0, 10, 10, SWP_NOZORDER);
            user.Idle();
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
        }
    });
    EXPECT_EQ(StoredLayout().substr(0, 14), L"1|Width|44|1|O") << "resolutions change no width";
}

TEST_F(LibraryWindowLifetime, ItHasAnIconOfItsOwnInBothSizes)
{
    Open([&](const User&) {
        const auto widthOf = [&](WPARAM lWhich) {
            const auto hIcon = reinterpret_cast<HICON>(::SendMessageW(hWindow, WM_GETICON, lWhich, 0));
            ICONINFO info{};
            BITMAP bitmap{};
            if (!hIcon || !::GetIconInfo(hIcon, &info))
                return 0L;
            ::GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
            ::DeleteObject(info.hbmColor);
            ::DeleteObject(info.hbmMask);
            return static_cast<long>(bitmap.bmWidth);
        };
        for (const int lDpi : {96, 192})
        {
            RECT place{0, 0, 1000, 560};
            ::SendMessageW(hWindow, WM_DPICHANGED, MAKEWPARAM(lDpi, lDpi), reinterpret_cast<LPARAM>(&place));
            EXPECT_EQ(widthOf(ICON_BIG), 32 * lDpi / 96);
            EXPECT_EQ(widthOf(ICON_SMALL), 16 * lDpi / 96);
        }
    });
}

TEST_F(LibraryWindowLifetime, EveryControlHasANameForScreenReaders)
{
    FillStation();
    Open([&](const User&) {
        EXPECT_EQ(Nameless(hWindow), Faults());
        const std::pair<int, const wchar_t*> names[] = {
            {eIdTvCats, L"Categories"},
            {eIdiGridLib, L"Cuts"},
            {eIdStatus, L"Showing All Audio"},
            {eIdProgressBar1, L"Progress"},
            {eIdlblTopLeft, L"Double-click any node to display items"}};
        for (const auto& [lId, sName] : names)
            EXPECT_EQ(WindowText(User::Control(hWindow, lId)), sName);
        EXPECT_NE(WindowText(User::Control(hWindow, eIdsp1)), L"");
    });
}

TEST_F(LibraryWindowLifetime, TabAndF6GoFromPaneToPane)
{
    FillStation();
    Open([&](const User& user) {
        const HWND hBar = User::Control(hWindow, eIdsp1);
        for (const HWND hNext : {hBar, hGrid, hTree})
        {
            user.Key(VK_TAB);
            EXPECT_EQ(user.FocusedWindow(), hNext);
        }
        user.Key(VK_TAB, VK_SHIFT);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
        user.Key(VK_F6);
        EXPECT_EQ(user.FocusedWindow(), hTree);
        user.Key(VK_F6);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
}

// ---- leaving nothing behind ----

namespace
{

// Uses the open window on its own thread and closes it.
void CALLBACK UseAndClose(HWND, UINT, UINT_PTR, DWORD)
{
    const HWND hOpen = ::FindWindowW(sfrmUILibClass, nullptr);
    if (!hOpen || !::IsWindowVisible(hOpen))
        return;
    ::SendMessageW(User::Control(hOpen, eIdTvCats), WM_KEYDOWN, VK_DOWN, 0);
    ::SendMessageW(hOpen, WM_COMMAND, static_cast<WPARAM>(IdOf(LibraryCommand::mnuSelectAllTree)), 0);
    ::SendMessageW(User::Control(hOpen, eIdTvCats), WM_KEYDOWN, VK_RIGHT, 0);
    const RECT place{0, 0, 1200, 900};
    ::SendMessageW(hOpen, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    ::UpdateWindow(hOpen);
    ::SendMessageW(hOpen, WM_CLOSE, 0, 0);
}

} // namespace

TEST_F(LibraryWindowLifetime, TwoHundredOpeningsLeaveNothingBehind)
{
    struct Counts
    {
        DWORD lGdi = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
        DWORD lUser = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
        DWORD lHandles = [] {
            DWORD lCount = 0;
            ::GetProcessHandleCount(::GetCurrentProcess(), &lCount);
            return lCount;
        }();
    };
    FillStation();
    cState.Populate();
    const auto openAndUse = [&](int lTimes) {
        for (int i = 0; i < lTimes; ++i)
        {
            const UINT_PTR lTimer = ::SetTimer(nullptr, 0, 1, UseAndClose);
            cState.cSchedMan->ShowLibraryUI();
            ::KillTimer(nullptr, lTimer);
        }
    };
    openAndUse(5); // what is made once stays
    const long lUsers = cState.cSchedMan.use_count();
    const Counts before;
    openAndUse(200);
    const Counts after;
    EXPECT_LE(after.lGdi, before.lGdi + 2);
    EXPECT_LE(after.lUser, before.lUser + 2);
    EXPECT_LE(after.lHandles, before.lHandles + 10);
    EXPECT_EQ(cState.cSchedMan.use_count(), lUsers);
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof wndClass;
    EXPECT_FALSE(::GetClassInfoExW(ThisModule(), sfrmUILibClass, &wndClass));
}

} // namespace ravlo::test

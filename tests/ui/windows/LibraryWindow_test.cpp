// SPDX-License-Identifier: MIT
// The library window among other windows: opening and closing, place, resolution, what it leaves behind.
#include "ui/controls/windows/Window.h"
#include "ui/windows/LibraryFixture.h"
#include "ui/windows/Tidy.h"

namespace ravlo::test
{

using EmptyLibraryWindow = LibraryWindowTest;

struct LibraryWindow : FilledLibrary
{
    // How many of the controls are enabled.
    int EnabledControls() const
    {
        int lEnabled = 0;
        for (const int lId : {eIdlblTopLeft, eIdTvCats, eIdiGridLib, eIdStatus, eIdProgressBar1})
            lEnabled += Enabled(At(lId)) ? 1 : 0;
        return lEnabled;
    }
    bool MenuGreyed() const
    {
        return (::GetMenuState(::GetMenu(hWindow), 0, MF_BYPOSITION) & MF_GRAYED) != 0;
    }
    // Populates the station from a database that does something while it is asked for its cuts.
    void PopulateBusily(const std::function<void()>& onAllCuts);
};

TEST_F(EmptyLibraryWindow, AnEmptyStationShowsItsRootAlone)
{
    Open([&](const User& user) {
        EXPECT_EQ(User::Text(hWindow), L"Ravlo-Scheduler Library");
        EXPECT_EQ(User::Text(At(eIdlblTopLeft)), L"Double-click any node to display items");
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

TEST_F(LibraryWindow, ReloadAllWithoutAWindowShowsNothing)
{
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

// The database of a host that does something while it is asked for its cuts.
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

void LibraryWindow::PopulateBusily(const std::function<void()>& onAllCuts)
{
    cState.Populate();
    const auto cBusy = std::make_shared<BusyDataBase>(cState.cDataBase);
    cState.cSchedMan->PopulateFromDataBase(cBusy, L"C:\\Radio\\");
    cBusy->OnAllCuts = onAllCuts;
}

TEST_F(LibraryWindow, AHostMayShowItWhileAHiddenOneIsFilled)
{
    PopulateBusily([&] {
        cState.cSchedMan->ShowLibraryUI();
        cState.cSchedMan->ReloadAll(); // makes a hidden one again
    });
    WhileShowing([&] { cState.cSchedMan->ReloadAll(); }, [&](const User&) { EXPECT_EQ(Rows(), 9); });
    hWindow = ::FindWindowW(sfrmUILibClass, nullptr);
    ASSERT_NE(hWindow, nullptr);
    EXPECT_EQ(::FindWindowExW(nullptr, hWindow, sfrmUILibClass, nullptr), nullptr) << "only one";
    cState.cDataBase->Announce(&DataBaseEvents::ProgressStart, std::wstring(L"Importing"), 9);
    EXPECT_EQ(Status(0), L"Importing") << "the manager's progress goes to it";
}

TEST_F(LibraryWindow, AHostMayReleaseTheWindowsWhileAHiddenOneIsFilled)
{
    bool bGone = false;
    PopulateBusily([&] {
        cState.cSchedMan->SetWindows(nullptr);
        cState.cWindows.reset();
        bGone = true;
    });
    cState.cSchedMan->ReloadAll();
    EXPECT_TRUE(bGone);
    EXPECT_EQ(::FindWindowW(sfrmUILibClass, nullptr), nullptr);
}

TEST_F(LibraryWindow, ReloadAllRefillsTheOpenWindowWithoutTheDatabase)
{
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

TEST_F(LibraryWindow, ASecondOpeningReturnsAndBringsItToTheFront)
{
    Open([&](const User& user) {
        ::ShowWindow(hWindow, SW_MINIMIZE);
        cHost.Run(user, [&] { cState.cSchedMan->ShowLibraryUI(); });
        EXPECT_FALSE(::IsIconic(hWindow));
        EXPECT_TRUE(cState.cSchedMan->UIShowing());
    });
}

TEST_F(LibraryWindow, ClosingWaitsForWhatRuns)
{
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

TEST_F(LibraryWindow, LongCommandDisablesTheControlsAndRestoresTheFocus)
{
    auto& cCut = static_cast<FakeCut&>(*cState.cDataBase->colCuts[3]);
    Open([&](const User& user) {
        user.Click(hGrid);
        bool bAsked = false;
        // Reading the database takes longer than the window waits before it disables its controls.
        cCut.OnCall = [&](std::string_view) {
            if (std::exchange(bAsked, true))
                return;
            const DWORD lStart = ::GetTickCount();
            while ((EnabledControls() != 0 || !MenuGreyed()) && ::GetTickCount() - lStart < 5000)
                cState.cHostLoop.PumpMessages();
            EXPECT_TRUE(Shown(At(eIdProgressBar1)));
            cState.cMod.Box(BoxIcon::None, BoxButtons::Ok, L"Host", L"A question in the middle");
        };
        Command(LibraryCommand::mnuReloadAll);
        EXPECT_EQ(user.Box().sTitle, L"Host");
        EXPECT_EQ(EnabledControls(), 0);
        EXPECT_TRUE(MenuGreyed());
        user.Answer(IDOK);
        user.Idle();
        EXPECT_EQ(EnabledControls(), 5);
        EXPECT_FALSE(MenuGreyed());
        EXPECT_FALSE(Shown(At(eIdProgressBar1)));
        EXPECT_EQ(user.FocusedWindow(), hGrid);
    });
    cCut.OnCall = nullptr;
}

TEST_F(LibraryWindow, QuittingProgramClosesItAndQuits)
{
    cState.Populate();
    bool bQuit = false;
    const auto show = [&] {
        cState.cSchedMan->ShowLibraryUI();
        MSG message;
        bQuit = ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7;
    };
    WhileShowing(show, [&](const User& user) {
        cHost.Run(user, [] { ::PostQuitMessage(7); });
        user.WaitUntilGone(hWindow);
    });
    EXPECT_TRUE(bQuit);
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
}

TEST_F(LibraryWindow, AHostThatDestroysItsWindowTakesThisOneWithIt)
{
    cState.Populate();
    OpenAgain([&](const User& user) {
        ::SendMessageW(hGrid, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(ListColumn(2)), 222);
        cHost.Run(user, [&] { ::DestroyWindow(cHost.Handle()); });
        user.WaitUntilGone(hWindow);
    });
    EXPECT_FALSE(cState.cSchedMan->UIShowing());
    EXPECT_NE(StoredLayout().find(L"|3|Width|222|"), std::wstring::npos) << "its columns are remembered";
}

// ---- place ----

TEST_F(LibraryWindow, SizePlaceAndDividerAreRemembered)
{
    RECT window{};
    RECT tree{};
    Open([&](const User& user) {
        EXPECT_NEAR(WidthOf(PlaceOf(hTree)), 298, 4) << "as wide as names are";
        user.Place(hWindow, 60, 70, 800, 500);
        window = PlaceOf(hWindow);
        user.Drag(At(eIdsp1), {2, 100}, {-78, 100});
        tree = PlaceOf(hTree);
        EXPECT_NEAR(WidthOf(tree), 218, 4);
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
    OpenAgain([&](const User& user) {
        for (const auto& [before, hNow] : {std::pair{window, hWindow}, {tree, hTree}})
        {
            const RECT now = PlaceOf(hNow);
            EXPECT_TRUE(::EqualRect(&before, &now));
        }
        user.ShowAs(hWindow, SW_MAXIMIZE);
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
    OpenAgain([&](const User&) { EXPECT_TRUE(::IsZoomed(hWindow)); });
}

// ---- look ----

TEST_F(LibraryWindow, NothingIsClippedOrCoveredAtAnySizeAndResolution)
{
    const auto iconWidth = [&](int lWhich) {
        const auto hIcon = reinterpret_cast<HICON>(Send(hWindow, WM_GETICON, lWhich));
        ICONINFO info{};
        BITMAP bitmap{};
        if (!hIcon || !::GetIconInfo(hIcon, &info))
            return 0L;
        ::GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
        ::DeleteObject(info.hbmColor);
        ::DeleteObject(info.hbmMask);
        return static_cast<long>(bitmap.bmWidth);
    };
    OpenOnRock([&](const User& user) {
        for (const int lDpi : {96, 120, 144, 192, 96})
        {
            SCOPED_TRACE(lDpi);
            user.ChangeResolution(hWindow, lDpi, 1000, 560);
            EXPECT_EQ(Untidiness(hWindow), Faults());
            EXPECT_EQ(ColumnWidth(3), ::MulDiv(143, lDpi, 96));
            EXPECT_EQ(iconWidth(ICON_BIG), 32 * lDpi / 96);
            EXPECT_EQ(iconWidth(ICON_SMALL), 16 * lDpi / 96);
            user.Shot(hWindow, L"library-" + std::to_wstring(lDpi * 100 / 96));
            user.Place(hWindow, 0, 0, 10, 10); // as small as it can be
            EXPECT_EQ(Untidiness(hWindow), Faults());
        }
    });
    EXPECT_EQ(StoredLayout().substr(0, 14), L"1|Width|44|1|O") << "resolutions change no width";
}

TEST_F(LibraryWindow, PanesAreNamedAndReachedByTabAndF6)
{
    Open([&](const User& user) {
        EXPECT_EQ(Nameless(hWindow), Faults());
        const std::pair<int, const wchar_t*> names[] = {
            {eIdTvCats, L"Categories"},
            {eIdiGridLib, L"Cuts"},
            {eIdStatus, L"Showing All Audio"},
            {eIdProgressBar1, L"Progress"},
            {eIdlblTopLeft, L"Double-click any node to display items"}};
        for (const auto& [lId, sName] : names)
            EXPECT_EQ(WindowText(At(lId)), sName);
        EXPECT_NE(WindowText(At(eIdsp1)), L"");
        const struct
        {
            int lKey, lModifier;
            HWND hNext;
        } steps[] = {{VK_TAB, 0, At(eIdsp1)},   {VK_TAB, 0, hGrid}, {VK_TAB, 0, hTree},
                     {VK_TAB, VK_SHIFT, hGrid}, {VK_F6, 0, hTree},  {VK_F6, VK_CONTROL, hTree},
                     {VK_F6, VK_SHIFT, hTree},  {VK_F6, 0, hGrid}};
        for (const auto& step : steps)
        {
            user.Key(step.lKey, step.lModifier);
            EXPECT_EQ(user.FocusedWindow(), step.hNext);
        }
        Command(LibraryCommand::mnuCatNew);
        user.Answer(IDCANCEL);
        EXPECT_EQ(user.FocusedWindow(), hGrid) << "after a box";
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
    Send(User::Control(hOpen, eIdTvCats), WM_KEYDOWN, VK_DOWN);
    Send(hOpen, WM_COMMAND, IdOf(LibraryCommand::mnuSelectAllTree));
    Send(User::Control(hOpen, eIdTvCats), WM_KEYDOWN, VK_RIGHT);
    const RECT place{0, 0, 1200, 900};
    Send(hOpen, WM_DPICHANGED, MAKEWPARAM(144, 144), &place);
    ::UpdateWindow(hOpen);
    Send(hOpen, WM_CLOSE);
}

} // namespace

TEST_F(LibraryWindow, OpeningsLeaveNothingBehind)
{
    cState.Populate();
    const long lUsers = cState.cSchedMan.use_count();
    ExpectNoHandlesLeft([&] { cState.cSchedMan->ShowLibraryUI(); }, UseAndClose);
    EXPECT_EQ(cState.cSchedMan.use_count(), lUsers);
    EXPECT_FALSE(IsWindowClass(sfrmUILibClass));
}

} // namespace ravlo::test

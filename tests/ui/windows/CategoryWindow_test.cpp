// SPDX-License-Identifier: MIT
// The category window among other windows: modality, focus, place, menu, resolution, what it leaves behind.
#include "ui/controls/windows/Window.h"
#include "ui/windows/CategoryFixture.h"
#include "ui/windows/Tidy.h"

#include <atomic>
#include <thread>
#include <utility>

namespace ravlo::test
{

using Faults = std::vector<std::string>;

struct CategoryWindow : CategoryWindowTest
{
    // Of the only menu.
    UINT MenuState() const { return ::GetMenuState(::GetMenu(hWindow), 0, MF_BYPOSITION) & MF_GRAYED; }
};

TEST_F(CategoryWindow, OtherWindowsAreDisabledAndJustThoseEnabledAgain)
{
    HostWindow cSecond(L"Second");
    HostWindow cDisabled(L"Disabled before");
    ::EnableWindow(cDisabled.Handle(), FALSE);
    ::SetForegroundWindow(cHost.Handle());
    ::SetFocus(cHost.hEdit);
    Open([&](const User&) {
        EXPECT_FALSE(::IsWindowEnabled(cHost.Handle()));
        EXPECT_FALSE(::IsWindowEnabled(cSecond.Handle()));
        EXPECT_EQ(::GetWindow(hWindow, GW_OWNER), cHost.Handle());
    });
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
    EXPECT_TRUE(::IsWindowEnabled(cSecond.Handle()));
    EXPECT_FALSE(::IsWindowEnabled(cDisabled.Handle()));
    EXPECT_EQ(::GetActiveWindow(), cHost.Handle());
    EXPECT_EQ(::GetFocus(), cHost.hEdit);
}

TEST_F(CategoryWindow, TheFocusComesBackToTheControlThatHadIt)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.Click(Box(0, eIdtxtTitleSepMins));
        user.Key('N', VK_MENU); // the input box comes and goes
        user.Answer(IDCANCEL);
        EXPECT_EQ(user.FocusedWindow(), At(eIdcmdNew));
        user.Click(Box(0, eIdtxtArtistSepMins));
        EXPECT_EQ(user.FocusedWindow(), Box(0, eIdtxtArtistSepMins));
        ::SendMessageW(hWindow, WM_ACTIVATE, WA_INACTIVE, 0);
        cHost.Run(user, [&] { ::SetFocus(nullptr); });
        ::SendMessageW(hWindow, WM_ACTIVATE, WA_ACTIVE, 0);
        EXPECT_EQ(user.FocusedWindow(), Box(0, eIdtxtArtistSepMins));
    });
}

TEST_F(CategoryWindow, ASecondRequestOfTheSameManagerIsRefused)
{
    Open([&](const User& user) {
        cHost.Run(user, [&] {
            CategoryRequest second;
            EXPECT_EQ(cState.cSchedMan->ShowCatUI(second), lNotChosen);
        });
    });
    EXPECT_EQ(Open([&](const User& user) { user.Key(VK_RETURN); }), lChosen); // and later it opens again
}

TEST_F(CategoryWindow, AnotherManagersWindowOpensOnTopAndBothClose)
{
    TestStation cOther;
    cOther.cDataBase->Add(L"z", L"Polka", 1);
    cOther.Populate();
    Open([&](const User& user) {
        ::PostMessageW(cHost.Handle(), WM_NULL, 0, 0);
        std::int32_t lOther = 0;
        CategoryRequest request2;
        request2.sCaption = L"The other one";
        std::thread opener([&] { cHost.Run(user, [&] { lOther = cOther.cSchedMan->ShowCatUI(request2); }); });
        user.Until([&] { return user.Find(sfrmCatClass) != hWindow; }, "the other window");
        const HWND hOther = user.Find(sfrmCatClass);
        user.Idle();
        EXPECT_EQ(user.Text(hOther), L"The other one");
        EXPECT_FALSE(::IsWindowEnabled(hWindow));
        EXPECT_EQ(user.Entries(user.Control(hOther, eIdlstCat)), (Texts{L"Polka"}));
        user.Key(VK_RETURN);
        user.WaitUntilGone(hOther);
        opener.join();
        EXPECT_EQ(lOther, lChosen);
        EXPECT_TRUE(::IsWindowEnabled(hWindow));
        EXPECT_FALSE(::IsWindowEnabled(cHost.Handle()));
    });
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
}

TEST_F(CategoryWindow, ManagersOpenTheirWindowsInTurn)
{
    for (const wchar_t* sCat : {L"Polka", L"Waltz", L"Tango"})
    {
        TestStation cOther;
        cOther.cDataBase->Add(L"z", sCat, 1);
        cOther.Populate();
        CategoryRequest other;
        std::int32_t lAnswer = 0;
        WhileOpen([&] { lAnswer = cOther.cSchedMan->ShowCatUI(other); },
                  [&](const User& user) {
            const HWND hOpen = user.WaitFor(sfrmCatClass);
            user.ClickEntry(user.Control(hOpen, eIdlstCat), 0);
            user.Key(VK_RETURN);
            user.WaitUntilGone(hOpen);
        });
        EXPECT_EQ(lAnswer, lChosen);
        ASSERT_TRUE(other.cMainCatChosen);
        EXPECT_EQ(other.cMainCatChosen->CatName(), sCat);
    }
    EXPECT_EQ(Open([&](const User& user) { EXPECT_EQ(user.Entries(At(eIdlstCat)).size(), 3u); }), lNotChosen);
}

TEST_F(CategoryWindow, QuittingProgramClosesItAndQuits)
{
    StartOn(L"Rock", 3);
    std::int32_t lAnswer = 0;
    bool bQuit = false;
    WhileOpen(
        [&] {
        lAnswer = cState.cSchedMan->ShowCatUI(request);
        MSG message;
        bQuit = ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7;
        },
        [&](const User& user) {
        const HWND hOpen = user.WaitFor(sfrmCatClass);
        cHost.Run(user, [] { ::PostQuitMessage(7); });
        user.WaitUntilGone(hOpen);
    });
    EXPECT_TRUE(bQuit);
    EXPECT_EQ(lAnswer, lNotChosen);
    EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
}

TEST_F(CategoryWindow, AHostThatDestroysItsWindowTakesThisOneWithIt)
{
    std::int32_t lAnswer = 0;
    WhileOpen([&] { lAnswer = cState.cSchedMan->ShowCatUI(request); },
              [&](const User& user) {
        const HWND hOpen = user.WaitFor(sfrmCatClass);
        cHost.Run(user, [&] { ::DestroyWindow(cHost.Handle()); });
        user.WaitUntilGone(hOpen);
    });
    EXPECT_EQ(lAnswer, lNotChosen);
}

// Inside a sent message nothing comes into the queue that would wake a waiting loop.
TEST_F(CategoryWindow, AHostThatDestroysItsWindowInsideASentMessageEndsTheWaitToo)
{
    std::atomic<bool> bReturned = false;
    const DWORD lThread = ::GetCurrentThreadId();
    WhileOpen(
        [&] {
        EXPECT_EQ(cState.cSchedMan->ShowCatUI(request), lNotChosen);
        bReturned = true;
        },
        [&](const User& user) {
        user.WaitFor(sfrmCatClass);
        ::SendMessageW(cHost.Handle(), WM_CLOSE, 0, 0);
        try
        {
            user.Until([&] { return bReturned.load(); }, "the call to return");
        }
        catch (...)
        {
            ::PostThreadMessageW(lThread, WM_NULL, 0, 0); // or the test would wait for ever
            throw;
        }
    });
}

// Whatever hides the control with the focus: the keyboard is heard by another one that is to be seen.
TEST_F(CategoryWindow, TheFocusIsNeverOnAControlThatIsHidden)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.Click(Box(0, eIdtxtTitleSepMins));
        user.Key(VK_TAB, VK_CONTROL); // the other tab
        EXPECT_EQ(user.FocusedWindow(), At(eIdTabStrip1));
        for (const bool bInPane : {true, false})
        {
            if (bInPane)
                user.Click(Box(1, eIdtxtArtistSepMins));
            else
                user.ClickTab(At(eIdTabStrip1), 1);
            EXPECT_EQ(user.FocusedWindow(), bInPane ? Box(1, eIdtxtArtistSepMins) : At(eIdTabStrip1));
            user.Click(At(eIdLabel1)); // a label takes no focus itself
            EXPECT_EQ(user.FocusedWindow(), At(eIdLabel2));
            user.Key(VK_SPACE);
            EXPECT_TRUE(::IsWindowVisible(At(eIdTabStrip1)));
        }
        user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
        user.Key(VK_TAB, VK_SHIFT);
        user.Key(VK_TAB, VK_SHIFT);
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(user.FocusedWindow(), At(IDOK));
    });
}

TEST_F(CategoryWindow, MnemonicsReachTheLists)
{
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdCategoriesLabel)), L"Cate&gories:");
        EXPECT_EQ(user.Text(At(eIdLevelsLabel)), L"Le&vels:");
        user.Key('V', VK_MENU);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
        user.Key('G', VK_MENU);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
    });
}

TEST_F(CategoryWindow, TheMnemonicsOfHiddenButtonsDoNothing)
{
    request.bAllowNew = false;
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_FALSE(::IsWindowVisible(At(eIdcmdNew)));
        EXPECT_FALSE(::IsWindowVisible(At(eIdcmdNewLevel)));
        for (const int lKey : {'N', 'L'})
        {
            user.Key(lKey, VK_MENU);
            EXPECT_EQ(user.Find(L"#32770"), nullptr);
        }
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
    });
}

TEST_F(CategoryWindow, EnterPressesTheButtonThatHasTheFocusAndOKElsewhere)
{
    StartOn(L"Rock", 3);
    const auto bDefault = [&](int lId) {
        return (::SendMessageW(At(lId), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
    };
    EXPECT_EQ(Open([&](const User& user) {
                  EXPECT_TRUE(bDefault(IDOK));
                  user.Click(At(eIdchkSortedSongs));
                  user.Key(VK_TAB); // round to the categories
                  for (int i = 0; i < 8; ++i)
                      user.Key(VK_TAB, VK_SHIFT);
                  ASSERT_EQ(user.FocusedWindow(), At(eIdcmdNewLevel));
                  EXPECT_TRUE(bDefault(eIdcmdNewLevel));
                  EXPECT_FALSE(bDefault(IDOK));
                  user.Key(VK_RETURN);
                  EXPECT_EQ(user.Box().sTitle, L"Enter The New Category Level");
                  user.Key(VK_ESCAPE);
                  ASSERT_EQ(user.FocusedWindow(), At(eIdcmdNewLevel));
                  user.Key(VK_TAB);
                  user.Key(VK_TAB);
                  EXPECT_EQ(user.FocusedWindow(), At(eIdTabStrip1));
                  user.Key(VK_RETURN);
                  user.WaitUntilGone(hWindow);
              }),
              lChosen);
}

TEST_F(CategoryWindow, ItsFrameIsDraggedToAnotherSizeButNotBelowTheSmallest)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        RECT before{};
        ::GetWindowRect(hWindow, &before);
        RECT client{};
        ::GetClientRect(hWindow, &client);
        const RECT list = PlaceOf(At(eIdlstsongs1));
        const POINT corner{client.right + 2, client.bottom + 2};
        user.Drag(hWindow, corner, {corner.x + 80, corner.y + 60});
        RECT after{};
        ::GetWindowRect(hWindow, &after);
        EXPECT_EQ(after.right, before.right + 80);
        EXPECT_EQ(after.bottom, before.bottom + 60);
        EXPECT_GT(PlaceOf(At(eIdlstsongs1)).bottom, list.bottom);
        EXPECT_EQ(Untidiness(hWindow), Faults());
        ::GetClientRect(hWindow, &client);
        user.Drag(hWindow, {client.right + 2, client.bottom + 2}, {20, 20});
        ::GetWindowRect(hWindow, &after);
        EXPECT_GT(after.right - after.left, 600);
        EXPECT_GT(after.bottom - after.top, 300);
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
}

// Long work of the library pumps messages itself; the window's keys mean the same there.
TEST_F(CategoryWindow, ItsKeysWorkWhileTheLibraryPumpsMessages)
{
    Open([&](const User& user) {
        std::atomic<bool> bPumping = false;
        std::atomic<bool> bStop = false;
        std::thread typist([&] {
            user.Until([&] { return bPumping.load(); }, "the pump");
            user.Key(VK_TAB);
            bStop = true;
        });
        cHost.Run(user, [&] {
            bPumping = true;
            while (!bStop)
                cState.cHostLoop.PumpMessages();
        });
        typist.join();
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
    });
}

// ---- busy ----

TEST_F(CategoryWindow, WhileALevelIsSavedNothingInItCanBeUsed)
{
    for (int i = 0; i < 1000; ++i) // enough for the save to pump messages
        Add(L"more " + std::to_wstring(i), L"Rock", 1, L"A", std::to_wstring(i));
    cState.Populate();
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        const std::vector<int> colIds = {eIdlstCat, eIdlstlvl,      eIdlstsongs1, eIdchkOpener,
                                         eIdcmdNew, eIdcmdNewLevel, eIdTabStrip1, eIdpicRules0,
                                         IDOK,      IDCANCEL,       eIdLabel2};
        bool bShot = false;
        int lPumps = 0;
        user.Click(Box(0, eIdtxtTitleSepMins));
        cState.cWatchedLoop.OnPump = [&] {
            ++lPumps;
            for (const int lId : colIds)
                EXPECT_FALSE(::IsWindowEnabled(At(lId))) << lId;
            for (const int lId : {eIdtxtTitleSepMins, eIdNote})
                EXPECT_FALSE(::IsWindowEnabled(Box(0, lId))) << lId << " looks disabled, too";
            EXPECT_EQ(::GetFocus(), hWindow);
            EXPECT_EQ(MenuState(), static_cast<UINT>(MF_GRAYED));
            for (const HWND hOver : {At(IDOK), At(eIdlstCat), hWindow}) // the pointer is the application's
            {
                ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
                ::SendMessageW(hOver, WM_SETCURSOR, reinterpret_cast<WPARAM>(hOver),
                               MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
                EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
            }
            ::SendMessageW(hWindow, WM_CLOSE, 0, 0);
            const bool bTaken = std::exchange(bShot, true) || TakeScreenshot(hWindow, L"category-busy");
            EXPECT_TRUE(bTaken);
        };
        user.Key('L', VK_MENU);
        user.AnswerInput(L"2");
        cState.cWatchedLoop.OnPump = nullptr;
        EXPECT_GT(lPumps, 0);
        EXPECT_TRUE(cState.Level(L"Rock", 2));
        for (const int lId : colIds)
            EXPECT_TRUE(::IsWindowEnabled(At(lId))) << lId;
        for (const int lId : {eIdtxtTitleSepMins, eIdNote})
            EXPECT_TRUE(::IsWindowEnabled(Box(0, lId))) << lId;
        EXPECT_FALSE(::IsWindowEnabled(At(eIdcmdApply))); // nothing has been edited
        EXPECT_EQ(MenuState(), static_cast<UINT>(MF_ENABLED));
        EXPECT_EQ(user.FocusedWindow(), At(eIdcmdNewLevel));
    });
}

// What was chosen may take time to store, with boxes: nothing may look usable that nobody serves.
TEST_F(CategoryWindow, ItIsOutOfSightAsSoonAsItIsClosed)
{
    request.cCut = cState.cDataBase->colCuts[3];
    request.bAllowMultiSelect = true;
    bool bAsked = false;
    std::static_pointer_cast<FakeCut>(request.cCut)->OnCall = [&](const std::string& sMember) {
        if (sMember != "SetCategoryText")
            return;
        bAsked = true;
        EXPECT_FALSE(::IsWindowVisible(hWindow));
        EXPECT_TRUE(::IsWindowEnabled(cHost.Handle()));
    };
    Open([&](const User& user) {
        user.ClickEntry(At(eIdlstCat), 0, VK_CONTROL);
        user.Click(At(IDOK));
    });
    EXPECT_TRUE(bAsked);
    EXPECT_EQ(::GetFocus(), cHost.hEdit);
}

// ---- menu ----

namespace
{

// The station's own windows with a library that is only counted.
class WithLibrary final : public SchedulerWindows
{
public:
    explicit WithLibrary(SchedulerWindows& cInner) : m_cInner(cInner) {}
    bool LibraryExists() const override { return bShowing; }
    bool LibraryShowing() const override { return bShowing; }
    void ReloadLibrary() override {}
    void RefreshLibrary() override {}
    void ShowLibrary() override { ++lShown; }
    std::int32_t ShowCategory(CategoryRequest& request) override { return m_cInner.ShowCategory(request); }

    bool bShowing = false;
    std::atomic<int> lShown = 0;

private:
    SchedulerWindows& m_cInner;
};

std::wstring MenuText(HMENU hMenu, UINT lItem)
{
    wchar_t sText[100] = L"";
    ::GetMenuStringW(hMenu, lItem, sText, ARRAYSIZE(sText), MF_BYPOSITION);
    return sText;
}

} // namespace

TEST_F(CategoryWindow, TheMenuOpensTheLibraryUnlessItIsShowing)
{
    WithLibrary cWindows(*cState.cWindows);
    cState.cSchedMan->SetWindows(&cWindows);
    const auto choose = [&](const User& user) {
        user.Key(VK_F10);
        user.Key(VK_DOWN);
        const HWND hPopup = user.WaitFor(L"#32768");
        user.Shot(hWindow, L"category-menu");
        EXPECT_TRUE(::IsWindow(hPopup));
        user.Key(VK_DOWN);
        user.Key(VK_RETURN);
        user.Key(VK_ESCAPE); // a greyed item leaves the menu open
        user.Key(VK_ESCAPE);
    };
    Open([&](const User& user) {
        EXPECT_EQ(MenuText(::GetMenu(hWindow), 0), L"Scheduler");
        EXPECT_EQ(MenuText(::GetSubMenu(::GetMenu(hWindow), 0), 0), L"Show Scheduler Library");
        user.Key(VK_F10);
        user.Key(VK_DOWN);
        user.WaitFor(L"#32768");
        user.Key(VK_RETURN);
        EXPECT_EQ(cWindows.lShown, 1);
        cWindows.bShowing = true;
        choose(user);
        EXPECT_EQ(cWindows.lShown, 1);
    });
    cState.cSchedMan->SetWindows(nullptr);
}

// ---- place ----

TEST_F(CategoryWindow, ItsSizeAndPlaceAreRemembered)
{
    RECT first{};
    Open([&](const User& user) {
        ::SetWindowPos(hWindow, nullptr, 130, 90, 900, 620, SWP_NOZORDER);
        user.Idle();
        ::GetWindowRect(hWindow, &first);
    });
    Open([&](const User&) {
        RECT second{};
        ::GetWindowRect(hWindow, &second);
        EXPECT_TRUE(::EqualRect(&first, &second));
    });
}

TEST_F(CategoryWindow, ARememberedPlaceOffTheScreenIsBroughtBack)
{
    cState.cPorts.cUserSettings.Set(L"RavloScheduler", L"Settings", L"frmCatPlace", L"-5000,9000,900,600");
    Open([&](const User&) {
        RECT work{};
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        RECT place{};
        ::GetWindowRect(hWindow, &place);
        RECT both{};
        ::IntersectRect(&both, &work, &place);
        EXPECT_TRUE(::EqualRect(&both, &place));
    });
}

TEST_F(CategoryWindow, TheRulesAreShownOnTheScreenAlsoAtItsEdge)
{
    Open([&](const User& user) {
        RECT work{};
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        user.Click(At(eIdLabel2));
        const int lWidth = static_cast<int>(PlaceOf(hWindow).right - PlaceOf(hWindow).left);
        const int lSongs = static_cast<int>(PlaceOf(At(eIdlstsongs1)).right - PlaceOf(At(eIdlstsongs1)).left);
        ::SetWindowPos(hWindow, nullptr, static_cast<int>(work.right) - lWidth, 90, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER);
        user.Idle();
        user.Click(At(eIdLabel2));
        EXPECT_EQ(PlaceOf(hWindow).right, work.right);
        EXPECT_GT(PlaceOf(hWindow).right - PlaceOf(hWindow).left, lWidth + 200);
        EXPECT_EQ(PlaceOf(At(eIdlstsongs1)).right - PlaceOf(At(eIdlstsongs1)).left, lSongs);
        EXPECT_LT(PlaceOf(At(IDCANCEL)).right, work.right);
    });
}

TEST_F(CategoryWindow, TheStripWorksInAMaximisedWindowToo)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        ::ShowWindow(hWindow, SW_MAXIMIZE);
        user.Idle();
        const RECT maximised = PlaceOf(hWindow);
        for (const bool bShown : {false, true, false, true})
        {
            user.Click(At(eIdLabel2));
            EXPECT_EQ(::IsWindowVisible(At(eIdTabStrip1)) != FALSE, bShown);
            EXPECT_TRUE(::IsZoomed(hWindow));
            const RECT now = PlaceOf(hWindow);
            EXPECT_TRUE(::EqualRect(&now, &maximised));
            EXPECT_EQ(Untidiness(hWindow), Faults());
        }
        // Restored it has room for the rules, even if they were hidden when it was maximised.
        user.Click(At(eIdLabel2));
        ::ShowWindow(hWindow, SW_RESTORE);
        ::SetWindowPos(hWindow, nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOMOVE);
        ::ShowWindow(hWindow, SW_MAXIMIZE);
        user.Idle();
        user.Click(At(eIdLabel2));
        ::ShowWindow(hWindow, SW_RESTORE);
        user.Idle();
        EXPECT_FALSE(::IsZoomed(hWindow));
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
}

TEST_F(CategoryWindow, AMaximisedWindowOpensMaximised)
{
    Open([&](const User& user) {
        ::ShowWindow(hWindow, SW_MAXIMIZE);
        user.Idle();
        user.Shot(hWindow, L"category-maximised");
        EXPECT_EQ(Untidiness(hWindow), Faults());
    });
    Open([&](const User&) { EXPECT_TRUE(::IsZoomed(hWindow)); });
}

// ---- look ----

TEST_F(CategoryWindow, NothingIsClippedOrCoveredAtAnySizeAndResolution)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        for (const int lDpi : {96, 120, 144, 192, 96})
        {
            RECT place{0, 0, ::MulDiv(840, lDpi, 96), ::MulDiv(500, lDpi, 96)};
            ::SendMessageW(hWindow, WM_DPICHANGED, MAKEWPARAM(lDpi, lDpi), reinterpret_cast<LPARAM>(&place));
            const std::wstring sPercent = std::to_wstring(lDpi * 100 / 96);
            for (const int lTab : {0, 1})
            {
                user.ClickTab(At(eIdTabStrip1), lTab);
                EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
                user.Shot(hWindow, L"category-" + sPercent + (lTab == 0 ? L"-global" : L"-category"));
            }
            // As small as it goes.
            ::SetWindowPos(hWindow, nullptr, 0, 0, 10, 10, SWP_NOZORDER);
            user.Idle();
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
            user.Shot(hWindow, L"category-" + sPercent + L"-smallest");
            user.Click(At(eIdLabel2));
            ::SetWindowPos(hWindow, nullptr, 0, 0, 10, 10, SWP_NOZORDER);
            user.Idle();
            EXPECT_FALSE(::IsWindowVisible(At(eIdTabStrip1)));
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
            user.Click(At(eIdLabel2));
        }
    });
}

TEST_F(CategoryWindow, EveryControlHasANameForScreenReaders)
{
    StartOn(L"Rock", 3);
    Open([&](const User&) { EXPECT_EQ(Nameless(hWindow), Faults()); });
}

TEST_F(CategoryWindow, LongNamesAndAmpersandsAreShownWhole)
{
    const std::wstring sLong(50, L'W');
    Add(L"l", sLong, 1, std::wstring(100, L'A'), std::wstring(100, L'T'));
    Add(L"amp", L"r&b", 32764, L"A & B", L"C && D");
    cState.Populate();
    StartOn(L"r&b", 32764);
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: r&b 32764");
        EXPECT_EQ(user.Entries(At(eIdlstsongs1)), (Texts{L"A & B - C && D"}));
        user.Shot(hWindow, L"category-ampersand");
        cHost.Run(user, [&] { ::SendMessageW(At(eIdlstCat), LB_SETCARETINDEX, 3, 0); });
        user.ClickEntry(At(eIdlstCat), 3);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{sLong}));
        EXPECT_GT(::SendMessageW(At(eIdlstsongs1), LB_GETHORIZONTALEXTENT, 0, 0), 1000);
        EXPECT_EQ(Untidiness(hWindow), Faults());
        user.Shot(hWindow, L"category-long-names");
    });
}

TEST_F(CategoryWindow, TheSmallestWindowGrowsWithALongTitle)
{
    Add(L"l", std::wstring(50, L'W'), 1, L"A", L"T");
    cState.Populate();
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        ::SetWindowPos(hWindow, nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOMOVE);
        user.Idle();
        const RECT before = PlaceOf(hWindow);
        cHost.Run(user, [&] { ::SendMessageW(At(eIdlstCat), LB_SETCARETINDEX, 3, 0); });
        user.ClickEntry(At(eIdlstCat), 3);
        EXPECT_GT(PlaceOf(hWindow).bottom, before.bottom);
        EXPECT_EQ(PlaceOf(hWindow).right, before.right);
        EXPECT_EQ(Untidiness(hWindow), Faults());
        user.Shot(hWindow, L"category-smallest-long-title");
    });
}

TEST_F(CategoryWindow, ANewCategoryIsScrolledIntoView)
{
    for (int i = 0; i < 60; ++i)
        Add(L"x" + std::to_wstring(i), L"Cat " + std::to_wstring(i), 1, L"A", L"T");
    cState.Populate();
    Open([&](const User& user) {
        user.Click(At(eIdcmdNew));
        user.AnswerInput(L"Swing");
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Swing"}));
        RECT entry{};
        RECT list{};
        ::SendMessageW(At(eIdlstCat), LB_GETITEMRECT, 63, reinterpret_cast<LPARAM>(&entry));
        ::GetClientRect(At(eIdlstCat), &list);
        EXPECT_GE(entry.top, 0);
        EXPECT_LE(entry.bottom, list.bottom);
        user.Shot(hWindow, L"category-new-of-many");
    });
}

TEST_F(CategoryWindow, TenThousandSongsAreListedAtOnce)
{
    for (int i = 0; i < 10'000; ++i)
        Add(L"big" + std::to_wstring(i), L"Big", 1, L"Artist " + std::to_wstring(i % 700),
            L"Title " + std::to_wstring(i));
    cState.Populate();
    Open([&](const User& user) {
        const DWORD lStart = ::GetTickCount();
        user.ClickEntry(At(eIdlstCat), 3);
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"Total matching criteria = 10000");
        user.Key('S', VK_MENU);
        EXPECT_EQ(::SendMessageW(At(eIdlstsongs0), LB_GETCOUNT, 0, 0), 10'000);
        EXPECT_LT(::GetTickCount() - lStart, 4000u);
        user.Shot(hWindow, L"category-10000-songs");
        user.ClickEntry(At(eIdlstsongs0), 0);
        user.Key(VK_END, VK_SHIFT);
        user.Click(At(IDOK));
    });
    EXPECT_EQ(request.colSelCuts.size(), 10'000u);
}

// ---- leaving nothing behind ----

TEST_F(CategoryWindow, ItsClassesAreGoneWhenItIsClosed)
{
    Open([&](const User&) {
        WNDCLASSEXW wndClass{};
        wndClass.cbSize = sizeof wndClass;
        EXPECT_TRUE(::GetClassInfoExW(ThisModule(), sfrmCatClass, &wndClass));
    });
    for (const wchar_t* sClass : {sfrmCatClass, sCatSelectorClass, sRulesPaneClass})
    {
        WNDCLASSEXW wndClass{};
        wndClass.cbSize = sizeof wndClass;
        EXPECT_FALSE(::GetClassInfoExW(ThisModule(), sClass, &wndClass));
    }
}

namespace
{

// Uses the open window on its own thread and closes it.
void CALLBACK UseAndClose(HWND, UINT, UINT_PTR, DWORD)
{
    const HWND hOpen = ::FindWindowW(sfrmCatClass, nullptr);
    if (!hOpen)
        return;
    const HWND hCats = User::Control(hOpen, eIdlstCat);
    ::SendMessageW(hCats, LB_SETSEL, TRUE, 0);
    ::SendMessageW(::GetParent(hCats), WM_COMMAND, MAKEWPARAM(eIdlstCat, LBN_SELCHANGE), 0);
    ::SendMessageW(hOpen, WM_COMMAND, eIdLabel2, 0);
    const RECT place{0, 0, 1200, 900};
    ::SendMessageW(hOpen, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    ::UpdateWindow(hOpen);
    ::SendMessageW(hOpen, WM_COMMAND, IDCANCEL, 0);
}

} // namespace

TEST_F(CategoryWindow, TwoHundredOpeningsLeaveNoHandlesBehind)
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
    const auto openAndUse = [&](int lTimes) {
        for (int i = 0; i < lTimes; ++i)
        {
            const UINT_PTR lTimer = ::SetTimer(nullptr, 0, 1, UseAndClose);
            EXPECT_EQ(cState.cSchedMan->ShowCatUI(request), lNotChosen);
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
}

} // namespace ravlo::test

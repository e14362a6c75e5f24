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

struct CategoryWindow : CategoryWindowTest
{
    bool MenuGreyed() const
    {
        return (::GetMenuState(::GetMenu(hWindow), 0, MF_BYPOSITION) & MF_GRAYED) != 0;
    }
    static RECT WorkArea()
    {
        RECT work{};
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        return work;
    }
    void ExpectTidy() const { EXPECT_EQ(Untidiness(hWindow), Faults()); }
};

TEST_F(CategoryWindow, OtherWindowsAreDisabledAndOnlyThoseEnabledAgain)
{
    HostWindow cSecond(L"Second");
    HostWindow cDisabled(L"Disabled before");
    ::EnableWindow(cDisabled.Handle(), FALSE);
    ::SetForegroundWindow(cHost.Handle());
    ::SetFocus(cHost.hEdit);
    Open([&](const User&) {
        EXPECT_FALSE(Enabled(cHost.Handle()));
        EXPECT_FALSE(Enabled(cSecond.Handle()));
        EXPECT_EQ(::GetWindow(hWindow, GW_OWNER), cHost.Handle());
    });
    EXPECT_TRUE(Enabled(cHost.Handle()));
    EXPECT_TRUE(Enabled(cSecond.Handle()));
    EXPECT_FALSE(Enabled(cDisabled.Handle()));
    EXPECT_EQ(::GetActiveWindow(), cHost.Handle());
    EXPECT_EQ(::GetFocus(), cHost.hEdit);
}

TEST_F(CategoryWindow, TheFocusReturnsToTheControlThatHadIt)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.Click(Box(0, eIdtxtTitleSepMins));
        user.Key('N', VK_MENU); // opens the input box
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
        EXPECT_FALSE(Enabled(hWindow));
        EXPECT_EQ(user.Entries(user.Control(hOther, eIdlstCat)), (Texts{L"Polka"}));
        user.Key(VK_RETURN);
        user.WaitUntilGone(hOther);
        opener.join();
        EXPECT_EQ(lOther, lChosen);
        EXPECT_TRUE(Enabled(hWindow));
        EXPECT_FALSE(Enabled(cHost.Handle()));
    });
    EXPECT_TRUE(Enabled(cHost.Handle()));
}

TEST_F(CategoryWindow, QuittingProgramClosesItAndQuits)
{
    StartOn(L"Rock", 3);
    bool bQuit = false;
    const auto show = [&] {
        const std::int32_t lAnswer = cState.cSchedMan->ShowCatUI(request);
        MSG message;
        bQuit = ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.wParam == 7;
        return lAnswer;
    };
    EXPECT_EQ(OpenWith(
                  show,
                  [&](const User& user) {
        cHost.Run(user, [] { ::PostQuitMessage(7); });
        user.WaitUntilGone(hWindow);
                  }),
              lNotChosen);
    EXPECT_TRUE(bQuit);
    EXPECT_TRUE(Enabled(cHost.Handle()));
}

TEST_F(CategoryWindow, AHostThatDestroysItsWindowDestroysThisOne)
{
    EXPECT_EQ(Open([&](const User& user) {
                  cHost.Run(user, [&] { ::DestroyWindow(cHost.Handle()); });
                  user.WaitUntilGone(hWindow);
              }),
              lNotChosen);
}

// A sent message puts nothing into the queue that would wake a waiting loop.
TEST_F(CategoryWindow, AHostMayDestroyItsWindowInsideASentMessage)
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
            ::PostThreadMessageW(lThread, WM_NULL, 0, 0); // or the test would never end
            throw;
        }
    });
}

TEST_F(CategoryWindow, TheFocusLeavesAControlThatIsHidden)
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
            EXPECT_TRUE(RulesShown());
        }
        user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
        user.Key(VK_TAB, VK_SHIFT);
        user.Key(VK_TAB, VK_SHIFT);
        user.Click(At(eIdcmdApply));
        EXPECT_EQ(user.FocusedWindow(), At(IDOK));
    });
}

TEST_F(CategoryWindow, MnemonicsReachTheListsAndNoHiddenButton)
{
    request.bAllowNew = false;
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdCategoriesLabel)), L"Cate&gories:");
        EXPECT_EQ(user.Text(At(eIdLevelsLabel)), L"Le&vels:");
        for (const auto& [lKey, lList] : {std::pair{'V', eIdlstlvl}, {'G', eIdlstCat}})
        {
            user.Key(lKey, VK_MENU);
            EXPECT_EQ(user.FocusedWindow(), At(lList));
        }
        for (const auto& [lKey, lButton] : {std::pair{'N', eIdcmdNew}, {'L', eIdcmdNewLevel}})
        {
            EXPECT_FALSE(Shown(At(lButton)));
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
                  user.Keys({VK_TAB, VK_TAB});
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
        const RECT before = PlaceOf(hWindow);
        const LONG listBottom = PlaceOf(At(eIdlstsongs1)).bottom;
        const auto dragCorner = [&](LONG right, LONG down) {
            const RECT client = ClientOf(hWindow);
            const POINT corner{client.right + 2, client.bottom + 2};
            user.Drag(hWindow, corner, {corner.x + right, corner.y + down});
            ExpectTidy();
            return PlaceOf(hWindow);
        };
        const RECT larger = dragCorner(80, 60);
        EXPECT_EQ(larger.right, before.right + 80);
        EXPECT_EQ(larger.bottom, before.bottom + 60);
        EXPECT_GT(PlaceOf(At(eIdlstsongs1)).bottom, listBottom);
        const RECT smallest = dragCorner(-before.right, -before.bottom);
        EXPECT_GT(WidthOf(smallest), 600);
        EXPECT_GT(smallest.bottom - smallest.top, 300);
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
        const auto expectEnabled = [&](bool bEnabled) {
            for (const int lId : std::initializer_list<int>{eIdlstCat, eIdlstlvl, eIdlstsongs1, eIdchkOpener,
                                                            eIdcmdNew, eIdcmdNewLevel, eIdTabStrip1,
                                                            eIdpicRules0, IDOK, IDCANCEL, eIdLabel2})
                EXPECT_EQ(Enabled(At(lId)), bEnabled) << lId;
            for (const int lId : {eIdtxtTitleSepMins, eIdNote}) // they look disabled, too
                EXPECT_EQ(Enabled(Box(0, lId)), bEnabled) << lId;
            EXPECT_EQ(MenuGreyed(), !bEnabled);
        };
        int lPumps = 0;
        user.Click(Box(0, eIdtxtTitleSepMins));
        cState.cWatchedLoop.OnPump = [&] {
            expectEnabled(false);
            EXPECT_EQ(::GetFocus(), hWindow);
            for (const HWND hOver : {At(IDOK), At(eIdlstCat), hWindow}) // the pointer is the application's
            {
                ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
                ::SendMessageW(hOver, WM_SETCURSOR, reinterpret_cast<WPARAM>(hOver),
                               MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
                EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
            }
            Send(hWindow, WM_CLOSE);
            EXPECT_TRUE(lPumps++ > 0 || TakeScreenshot(hWindow, L"category-busy"));
        };
        user.Key('L', VK_MENU);
        user.AnswerInput(L"2");
        cState.cWatchedLoop.OnPump = nullptr;
        EXPECT_GT(lPumps, 0);
        EXPECT_TRUE(cState.Level(L"Rock", 2));
        expectEnabled(true);
        EXPECT_FALSE(Enabled(At(eIdcmdApply))); // nothing has been edited
        EXPECT_EQ(user.FocusedWindow(), At(eIdcmdNewLevel));
    });
}

// Storing the choice may take time and show boxes: a window that no longer reacts must not look usable.
TEST_F(CategoryWindow, ItIsHiddenAsSoonAsItIsClosed)
{
    request.cCut = CutOf(3);
    request.bAllowMultiSelect = true;
    bool bAsked = false;
    std::static_pointer_cast<FakeCut>(request.cCut)->OnCall = [&](std::string_view sMember) {
        if (sMember != "SetCategoryText")
            return;
        bAsked = true;
        EXPECT_FALSE(Shown(hWindow));
        EXPECT_TRUE(Enabled(cHost.Handle()));
    };
    Open([&](const User& user) {
        Pick(user, eIdlstCat, 0, VK_CONTROL);
        user.Click(At(IDOK));
    });
    EXPECT_TRUE(bAsked);
    EXPECT_EQ(::GetFocus(), cHost.hEdit);
}

// ---- menu ----

namespace
{

// The station's own windows, with a library whose openings are counted.
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
    Open([&](const User& user) {
        const auto openMenu = [&] {
            user.Keys({VK_F10, VK_DOWN});
            EXPECT_TRUE(::IsWindow(user.WaitFor(L"#32768")));
        };
        EXPECT_EQ(MenuText(::GetMenu(hWindow), 0), L"Scheduler");
        EXPECT_EQ(MenuText(::GetSubMenu(::GetMenu(hWindow), 0), 0), L"Show Scheduler Library");
        openMenu();
        user.Key(VK_RETURN);
        EXPECT_EQ(cWindows.lShown, 1);
        cWindows.bShowing = true;
        openMenu();
        user.Shot(hWindow, L"category-menu");
        user.Keys({VK_DOWN, VK_RETURN, VK_ESCAPE, VK_ESCAPE}); // a greyed item leaves the menu open
        EXPECT_EQ(cWindows.lShown, 1);
    });
    cState.cSchedMan->SetWindows(nullptr);
}

// ---- place ----

TEST_F(CategoryWindow, ItsSizeAndPlaceAreRemembered)
{
    RECT first{};
    Open([&](const User& user) {
        user.Place(hWindow, 130, 90, 900, 620);
        first = PlaceOf(hWindow);
    });
    Open([&](const User& user) {
        const RECT second = PlaceOf(hWindow);
        EXPECT_TRUE(::EqualRect(&first, &second));
        user.ShowAs(hWindow, SW_MAXIMIZE);
        user.Shot(hWindow, L"category-maximised");
        ExpectTidy();
    });
    Open([&](const User&) { EXPECT_TRUE(::IsZoomed(hWindow)); });
}

TEST_F(CategoryWindow, ARememberedPlaceOffTheScreenIsBroughtBack)
{
    cState.cPorts.cUserSettings.Set(L"RavloScheduler", L"Settings", L"frmCatPlace", L"-5000,9000,900,600");
    Open([&](const User&) {
        const RECT work = WorkArea();
        const RECT place = PlaceOf(hWindow);
        RECT both{};
        ::IntersectRect(&both, &work, &place);
        EXPECT_TRUE(::EqualRect(&both, &place));
    });
}

TEST_F(CategoryWindow, TheRulesAreShownOnTheScreenAlsoAtItsEdge)
{
    Open([&](const User& user) {
        const auto songsWidth = [&] { return WidthOf(PlaceOf(At(eIdlstsongs1))); };
        const LONG right = WorkArea().right;
        user.Click(At(eIdLabel2));
        const int lWidth = WidthOf(PlaceOf(hWindow));
        const int lSongs = songsWidth();
        ::SetWindowPos(hWindow, nullptr, static_cast<int>(right) - lWidth, 90, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER);
        user.Idle();
        user.Click(At(eIdLabel2));
        EXPECT_EQ(PlaceOf(hWindow).right, right);
        EXPECT_GT(WidthOf(PlaceOf(hWindow)), lWidth + 200);
        EXPECT_EQ(songsWidth(), lSongs);
        EXPECT_LT(PlaceOf(At(IDCANCEL)).right, right);
    });
}

TEST_F(CategoryWindow, TheStripWorksInAMaximisedWindowToo)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        user.ShowAs(hWindow, SW_MAXIMIZE);
        const RECT maximised = PlaceOf(hWindow);
        for (const bool bShown : {false, true, false, true})
        {
            user.Click(At(eIdLabel2));
            EXPECT_EQ(RulesShown(), bShown);
            EXPECT_TRUE(::IsZoomed(hWindow));
            const RECT now = PlaceOf(hWindow);
            EXPECT_TRUE(::EqualRect(&now, &maximised));
            ExpectTidy();
        }
        // Restored, it has room for the rules even if they were hidden when it was maximised.
        user.Click(At(eIdLabel2));
        ::ShowWindow(hWindow, SW_RESTORE);
        user.Resize(hWindow, 10, 10);
        user.ShowAs(hWindow, SW_MAXIMIZE);
        user.Click(At(eIdLabel2));
        user.ShowAs(hWindow, SW_RESTORE);
        EXPECT_FALSE(::IsZoomed(hWindow));
        ExpectTidy();
    });
}

// ---- look ----

TEST_F(CategoryWindow, EverythingIsNamedAndVisibleAtAnySizeAndResolution)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(Nameless(hWindow), Faults()) << "for screen readers";
        for (const int lDpi : {96, 120, 144, 192, 96})
        {
            SCOPED_TRACE(lDpi);
            user.ChangeResolution(hWindow, lDpi, 840, 500);
            const std::wstring sShot = L"category-" + std::to_wstring(lDpi * 100 / 96);
            for (const int lTab : {0, 1})
            {
                ClickTab(user, lTab);
                ExpectTidy();
                user.Shot(hWindow, sShot + (lTab == 0 ? L"-global" : L"-category"));
            }
            user.Place(hWindow, 0, 0, 10, 10); // as small as it can be
            ExpectTidy();
            user.Shot(hWindow, sShot + L"-smallest");
            user.Click(At(eIdLabel2));
            user.Place(hWindow, 0, 0, 10, 10);
            EXPECT_FALSE(RulesShown());
            ExpectTidy();
            user.Click(At(eIdLabel2));
        }
    });
}

TEST_F(CategoryWindow, LongNamesAndAmpersandsAreShownWhole)
{
    const std::wstring sLong(50, L'W');
    Add(L"l", sLong, 1, std::wstring(100, L'A'), std::wstring(100, L'T'));
    Add(L"amp", L"r&b", 32764, L"A & B", L"C && D");
    cState.Populate();
    StartOn(L"r&b", 32764);
    Open([&](const User& user) {
        ClickTab(user, 1);
        EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: r&b 32764");
        EXPECT_EQ(Entries(eIdlstsongs1), (Texts{L"A & B - C && D"}));
        user.Shot(hWindow, L"category-ampersand");
        user.Resize(hWindow, 10, 10);
        const RECT before = PlaceOf(hWindow);
        cHost.Run(user, [&] { Send(At(eIdlstCat), LB_SETCARETINDEX, 3); });
        Pick(user, eIdlstCat, 3);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{sLong}));
        EXPECT_GT(Send(At(eIdlstsongs1), LB_GETHORIZONTALEXTENT), 1000);
        EXPECT_GT(PlaceOf(hWindow).bottom, before.bottom) << "room for the longer title";
        EXPECT_EQ(PlaceOf(hWindow).right, before.right);
        ExpectTidy();
        user.Shot(hWindow, L"category-long-names");
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
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Swing"}));
        RECT entry{};
        Send(At(eIdlstCat), LB_GETITEMRECT, 63, &entry);
        EXPECT_GE(entry.top, 0);
        EXPECT_LE(entry.bottom, ClientOf(At(eIdlstCat)).bottom);
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
        Pick(user, eIdlstCat, 3);
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"Total matching criteria = 10000");
        user.Key('S', VK_MENU);
        EXPECT_EQ(Send(At(eIdlstsongs0), LB_GETCOUNT), 10'000);
        EXPECT_LT(::GetTickCount() - lStart, 4000u);
        user.Shot(hWindow, L"category-10000-songs");
        Pick(user, eIdlstsongs0, 0);
        user.Key(VK_END, VK_SHIFT);
        user.Click(At(IDOK));
    });
    EXPECT_EQ(request.colSelCuts.size(), 10'000u);
}

// ---- leaving nothing behind ----

namespace
{

// Uses the open window on its own thread and closes it.
void CALLBACK UseAndClose(HWND, UINT, UINT_PTR, DWORD)
{
    const HWND hOpen = ::FindWindowW(sfrmCatClass, nullptr);
    if (!hOpen)
        return;
    const HWND hCats = User::Control(hOpen, eIdlstCat);
    Send(hCats, LB_SETSEL, TRUE);
    Send(::GetParent(hCats), WM_COMMAND, MAKEWPARAM(eIdlstCat, LBN_SELCHANGE));
    Send(hOpen, WM_COMMAND, eIdLabel2);
    const RECT place{0, 0, 1200, 900};
    Send(hOpen, WM_DPICHANGED, MAKEWPARAM(144, 144), &place);
    ::UpdateWindow(hOpen);
    Send(hOpen, WM_COMMAND, IDCANCEL);
}

} // namespace

TEST_F(CategoryWindow, OpeningsLeaveNothingBehind)
{
    const long lUsers = cState.cSchedMan.use_count();
    ExpectNoHandlesLeft([&] { EXPECT_EQ(cState.cSchedMan->ShowCatUI(request), lNotChosen); }, UseAndClose);
    EXPECT_EQ(cState.cSchedMan.use_count(), lUsers);
    for (const wchar_t* sClass : {sfrmCatClass, sCatSelectorClass, sRulesPaneClass})
        EXPECT_FALSE(IsWindowClass(sClass));
}

} // namespace ravlo::test

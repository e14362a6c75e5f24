// SPDX-License-Identifier: MIT
#include "ui/controls/windows/SplitPanelWindow.h"

#include "platform/memory/MemoryPorts.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/windows/User.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <memory>

namespace ravlo::test
{

namespace
{

constexpr int lLeftId = 1;
constexpr int lBarId = 2;
constexpr int lRightId = 3;
constexpr const wchar_t* sContainer = L"RavloTestContainer";

// A window with two lists and a split panel between them, shown until it is closed.
class Container final : public Window
{
public:
    explicit Container(UserSettings& cUserSettings) : Window(sContainer)
    {
        WindowStart start;
        start.sTitle = L"Panes";
        start.lStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
        Create(start);
        hLeft =
            MakeControl(Handle(), WC_LISTBOXW, L"", WS_TABSTOP | WS_BORDER | LBS_NOINTEGRALHEIGHT, lLeftId);
        cSplit = std::make_unique<SplitPanelWindow>(Handle(), lBarId, cUserSettings,
                                                    [] { ADD_FAILURE() << "trouble in the bar"; });
        hRight =
            MakeControl(Handle(), WC_LISTBOXW, L"", WS_TABSTOP | WS_BORDER | LBS_NOINTEGRALHEIGHT, lRightId);
        cSplit->Panel().SetRegistryID(L"Test");
        cSplit->SetControls(hLeft, hRight);
    }
    ~Container() override { cSplit.reset(); }

    void Show()
    {
        ::SetWindowPos(Handle(), nullptr, 50, 50, 800, 500, SWP_NOZORDER);
        ::ShowWindow(Handle(), SW_SHOWNORMAL);
        ::SetForegroundWindow(Handle());
        ::SetFocus(hLeft);
        ModalLoop cLoop(Handle());
        cLoop.Run();
    }

    // On the windows' thread.
    void Run(const User& user, const std::function<void()>& what)
    {
        OnRun = what;
        ::PostMessageW(Handle(), WM_APP, 0, 0);
        user.Idle();
    }

    HWND hLeft = nullptr;
    HWND hRight = nullptr;
    std::unique_ptr<SplitPanelWindow> cSplit;
    int lDpi = 96;

    void LayOut()
    {
        RECT client{};
        ::GetClientRect(Handle(), &client);
        if (cSplit)
            cSplit->Place(client, lDpi);
    }

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override
    {
        if (lMessage == WM_SIZE && wParam != SIZE_MINIMIZED)
            LayOut();
        else if (lMessage == WM_APP)
            OnRun();
        else if (lMessage == WM_SETCURSOR && cSplit && cSplit->SetsCursor())
            return TRUE;
        return Default(lMessage, wParam, lParam);
    }
    void OnException() noexcept override { ADD_FAILURE() << "the container failed"; }

    std::function<void()> OnRun;
};

RECT PlaceOf(HWND hWindow)
{
    RECT place{};
    ::GetWindowRect(hWindow, &place);
    ::MapWindowPoints(nullptr, ::GetParent(hWindow), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

struct SplitWindow : ::testing::Test
{
    void Open(const std::function<void(const User&, HWND hBar)>& drive)
    {
        Container cOne(cSettings);
        cContainer = &cOne;
        WhileOpen([&] { cOne.Show(); },
                  [&](const User& user) {
            user.WaitFor(sContainer);
            drive(user, cOne.cSplit->Handle());
            ::PostMessageW(cOne.Handle(), WM_CLOSE, 0, 0);
        });
        cContainer = nullptr;
    }
    // Left edge and width of the bar, and that the panes meet it.
    int BarLeft() const
    {
        const RECT bar = PlaceOf(cContainer->cSplit->Handle());
        if (::IsWindowVisible(cContainer->hLeft))
        {
            EXPECT_EQ(PlaceOf(cContainer->hLeft).right, bar.left);
        }
        if (::IsWindowVisible(cContainer->hRight))
        {
            EXPECT_EQ(PlaceOf(cContainer->hRight).left, bar.right);
        }
        return static_cast<int>(bar.left);
    }
    int ClientWidth() const
    {
        RECT client{};
        ::GetClientRect(cContainer->Handle(), &client);
        return static_cast<int>(client.right);
    }
    std::wstring Remembered() const
    {
        return cSettings.Get(L"uSplittest_windowsTest", L"Settings", L"Pos", L"none");
    }

    MemoryUserSettings cSettings;
    Container* cContainer = nullptr;
};

} // namespace

TEST_F(SplitWindow, TheBarIsDraggedWithTheMouseAndItsPlaceRemembered)
{
    Open([&](const User& user, HWND hBar) {
        user.Shot(cContainer->Handle(), L"split-panel");
        user.Press(hBar, {2, 100});
        user.MoveTo(hBar, {2 + 90, 100});
        EXPECT_TRUE(cContainer->cSplit->Panel().Dragging());
        user.Shot(cContainer->Handle(), L"split-panel-dragging");
        POINT pointer{};
        ::GetCursorPos(&pointer);
        ::ScreenToClient(cContainer->Handle(), &pointer);
        user.Release();
        // The centre line stands under the pointer.
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), pointer.x * 15);
        EXPECT_EQ(BarLeft(), (pointer.x * 15 - 37 + 7) / 15);
        EXPECT_EQ(Remembered(), std::to_wstring(pointer.x * 15));
        EXPECT_EQ(user.FocusedWindow(), cContainer->hLeft);
    });
}

TEST_F(SplitWindow, ARememberedPlaceIsTakenWhenItComesIntoView)
{
    cSettings.Set(L"uSplittest_windowsTest", L"Settings", L"Pos", L"6000");
    Open([&](const User&, HWND) { EXPECT_EQ(BarLeft(), (6000 - 37 + 7) / 15); });
}

TEST_F(SplitWindow, EscLetsGoOfTheBar)
{
    Open([&](const User& user, HWND hBar) {
        const int lBefore = BarLeft();
        user.Press(hBar, {2, 100});
        user.MoveTo(hBar, {2 + 90, 100});
        user.Key(VK_ESCAPE);
        user.Release();
        EXPECT_EQ(BarLeft(), lBefore);
        EXPECT_FALSE(cContainer->cSplit->Panel().Dragging());
        EXPECT_TRUE(::IsWindow(cContainer->Handle()));
    });
}

TEST_F(SplitWindow, LosingTheMouseLetsGoOfTheBar)
{
    Open([&](const User& user, HWND hBar) {
        const int lBefore = BarLeft();
        user.Press(hBar, {2, 100});
        user.MoveTo(hBar, {2 + 90, 100});
        ::SendMessageW(hBar, WM_CANCELMODE, 0, 0);
        user.Idle();
        EXPECT_EQ(BarLeft(), lBefore);
        user.Release();
    });
}

TEST_F(SplitWindow, ADropAtAnEdgeCollapsesAPane)
{
    Open([&](const User& user, HWND hBar) {
        cContainer->cSplit->Panel().SetSnapToEdge(true);
        user.Drag(hBar, {2, 100}, {-BarLeft() + 5, 100});
        EXPECT_FALSE(::IsWindowVisible(cContainer->hLeft));
        EXPECT_EQ(PlaceOf(cContainer->hRight).right, ClientWidth());
        user.Shot(cContainer->Handle(), L"split-panel-collapsed");
        user.Drag(hBar, {2, 100}, {300, 100});
        EXPECT_TRUE(::IsWindowVisible(cContainer->hLeft));
        user.Drag(hBar, {2, 100}, {ClientWidth() - BarLeft() - 5, 100});
        EXPECT_FALSE(::IsWindowVisible(cContainer->hRight));
        EXPECT_EQ(BarLeft(), ClientWidth() - 5);
    });
}

TEST_F(SplitWindow, KeysMoveTheBarThatHasTheFocus)
{
    Open([&](const User& user, HWND hBar) {
        user.Key(VK_TAB);
        ASSERT_EQ(user.FocusedWindow(), hBar);
        const std::int32_t lStart = cContainer->cSplit->Panel().Position();
        user.Key(VK_RIGHT);
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), lStart + 150);
        user.Key(VK_LEFT, VK_CONTROL);
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), lStart + 135);
        user.Key(VK_HOME);
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), 2000);
        user.Key(VK_END);
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), ClientWidth() * 15 - 2000);
        user.Shot(cContainer->Handle(), L"split-panel-focus");
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), cContainer->hRight);
    });
}

TEST_F(SplitWindow, KeysCollapseAPaneAndBringItBackAndTheFocusIsNeverLost)
{
    Open([&](const User& user, HWND hBar) {
        cContainer->cSplit->Panel().SetSnapToEdge(true);
        user.Key(VK_TAB);
        user.Key(VK_HOME);
        EXPECT_FALSE(::IsWindowVisible(cContainer->hLeft));
        user.Key(VK_RIGHT);
        EXPECT_TRUE(::IsWindowVisible(cContainer->hLeft));
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), 2000);
        // The pane with the focus collapses, by a drop and in code.
        user.Key(VK_TAB, VK_SHIFT);
        ASSERT_EQ(user.FocusedWindow(), cContainer->hLeft);
        user.Drag(hBar, {2, 100}, {-BarLeft() + 5, 100});
        EXPECT_FALSE(::IsWindowVisible(cContainer->hLeft));
        EXPECT_EQ(user.FocusedWindow(), hBar);
        user.Key(VK_RIGHT);
        user.Key(VK_TAB);
        ASSERT_EQ(user.FocusedWindow(), cContainer->hRight);
        cContainer->Run(user, [&] { cContainer->cSplit->Panel().SetSnapped(2); });
        EXPECT_FALSE(::IsWindowVisible(cContainer->hRight));
        EXPECT_EQ(user.FocusedWindow(), hBar);
    });
}

TEST_F(SplitWindow, PanesAboveEachOtherAreDividedVertically)
{
    Open([&](const User& user, HWND hBar) {
        cContainer->cSplit->Panel().SetHorizontal(true);
        user.Drag(hBar, {100, 2}, {100, 62});
        EXPECT_EQ(PlaceOf(cContainer->hLeft).bottom, PlaceOf(hBar).top);
        EXPECT_EQ(PlaceOf(cContainer->hRight).top, PlaceOf(hBar).bottom);
        EXPECT_EQ(PlaceOf(hBar).right, ClientWidth());
        user.Key(VK_TAB);
        const std::int32_t lStart = cContainer->cSplit->Panel().Position();
        user.Key(VK_DOWN);
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), lStart + 150);
        user.Shot(cContainer->Handle(), L"split-panel-horizontal");
    });
}

TEST_F(SplitWindow, AMinimisedWindowKeepsItsPosition)
{
    Open([&](const User& user, HWND hBar) {
        user.Drag(hBar, {2, 100}, {150, 100});
        const std::int32_t lPosition = cContainer->cSplit->Panel().Position();
        ::ShowWindow(cContainer->Handle(), SW_MINIMIZE);
        user.Idle();
        ::ShowWindow(cContainer->Handle(), SW_RESTORE);
        user.Idle();
        EXPECT_EQ(cContainer->cSplit->Panel().Position(), lPosition);
    });
}

TEST_F(SplitWindow, EveryResolutionFillsTheAreaToTheLastPixel)
{
    Open([&](const User& user, HWND) {
        for (const int lDpi : {96, 120, 144, 168, 192, 240, 288})
        {
            cContainer->lDpi = lDpi;
            ::SendMessageW(cContainer->Handle(), WM_SIZE, SIZE_RESTORED, 0);
            user.Idle();
            BarLeft();
            EXPECT_EQ(PlaceOf(cContainer->hRight).right, ClientWidth()) << lDpi;
            EXPECT_EQ(PlaceOf(cContainer->hLeft).left, 0) << lDpi;
        }
    });
}

TEST_F(SplitWindow, ADisabledPanelDisablesItsPanesAndShowsTheHourglass)
{
    Open([&](const User& user, HWND hBar) {
        cContainer->cSplit->Panel().SetEnabled(false);
        EXPECT_FALSE(::IsWindowEnabled(cContainer->hLeft));
        EXPECT_FALSE(::IsWindowEnabled(cContainer->hRight));
        EXPECT_FALSE(::IsWindowEnabled(hBar));
        user.MoveTo(cContainer->Handle(), {200, 200});
        EXPECT_TRUE(cContainer->cSplit->SetsCursor());
        cContainer->cSplit->Panel().SetEnabled(true);
        EXPECT_TRUE(::IsWindowEnabled(cContainer->hLeft));
        EXPECT_FALSE(cContainer->cSplit->SetsCursor());
    });
}

// Without waiting for a move of the mouse; not always an arrow.
TEST_F(SplitWindow, ThePointerIsAtOnceTheOneOfWhatIsUnderIt)
{
    Open([&](const User& user, HWND hBar) {
        user.MoveTo(hBar, {2, 100});
        HCURSOR hDisabled = nullptr;
        HCURSOR hEnabled = nullptr;
        cContainer->Run(user, [&] {
            cContainer->cSplit->Panel().SetEnabled(false);
            hDisabled = ::GetCursor();
            cContainer->cSplit->Panel().SetEnabled(true);
            hEnabled = ::GetCursor();
        });
        EXPECT_EQ(hDisabled, ::LoadCursorW(nullptr, IDC_WAIT));
        EXPECT_EQ(hEnabled, ::LoadCursorW(nullptr, IDC_SIZEWE));
    });
}

TEST_F(SplitWindow, WithOnePaneTheOtherAndTheBarAreStillLaidOut)
{
    Open([&](const User&, HWND hBar) {
        cContainer->cSplit->SetControls(nullptr, cContainer->hRight);
        cContainer->LayOut();
        EXPECT_EQ(PlaceOf(cContainer->hRight).left, PlaceOf(hBar).right);
        cContainer->cSplit->Panel().SetSplitVisible(false);
        EXPECT_FALSE(::IsWindowVisible(hBar));
    });
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "ui/controls/windows/SplitPanelWindow.h"

#include "platform/memory/MemoryPorts.h"
#include "ui/controls/windows/Controls.h"
#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/windows/Tidy.h"
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
        constexpr DWORD lStyle = WS_TABSTOP | WS_BORDER | LBS_NOINTEGRALHEIGHT;
        hLeft = MakeControl(Handle(), WC_LISTBOXW, L"", lStyle, lLeftId);
        cSplit = std::make_unique<SplitPanelWindow>(Handle(), lBarId, cUserSettings,
                                                    [] { ADD_FAILURE() << "trouble in the bar"; });
        hRight = MakeControl(Handle(), WC_LISTBOXW, L"", lStyle, lRightId);
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
        if (cSplit)
            cSplit->Place(ClientOf(Handle()), lDpi);
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
    SplitPanelPresenter& Panel() const { return cContainer->cSplit->Panel(); }
    std::int32_t Position() const { return Panel().Position(); }
    bool LeftShown() const { return Shown(cContainer->hLeft); }
    bool RightShown() const { return Shown(cContainer->hRight); }
    RECT Left() const { return PlaceInParent(cContainer->hLeft); }
    RECT Right() const { return PlaceInParent(cContainer->hRight); }
    // The bar's left edge, after checking that the panes meet it.
    int BarLeft() const
    {
        const RECT bar = PlaceInParent(cContainer->cSplit->Handle());
        EXPECT_TRUE(!LeftShown() || Left().right == bar.left);
        EXPECT_TRUE(!RightShown() || Right().left == bar.right);
        return static_cast<int>(bar.left);
    }
    int ClientWidth() const { return static_cast<int>(ClientOf(cContainer->Handle()).right); }
    void Shot(const User& user, const std::wstring& sName) const
    {
        user.Shot(cContainer->Handle(), L"split-panel" + sName);
    }
    // Takes the bar, drags it 90 pixels and holds it.
    void DragAndHold(const User& user, HWND hBar) const
    {
        user.Press(hBar, {2, 100});
        user.MoveTo(hBar, {2 + 90, 100});
        EXPECT_TRUE(Panel().Dragging());
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
        Shot(user, L"");
        DragAndHold(user, hBar);
        Shot(user, L"-dragging");
        POINT pointer{};
        ::GetCursorPos(&pointer);
        ::ScreenToClient(cContainer->Handle(), &pointer);
        user.Release();
        EXPECT_EQ(Position(), pointer.x * 15) << "the centre line is under the pointer";
        EXPECT_EQ(BarLeft(), (pointer.x * 15 - 37 + 7) / 15);
        EXPECT_EQ(Remembered(), std::to_wstring(pointer.x * 15));
        EXPECT_EQ(user.FocusedWindow(), cContainer->hLeft);
    });
}

TEST_F(SplitWindow, ARememberedPlaceIsUsedWhenItIsShown)
{
    cSettings.Set(L"uSplittest_windowsTest", L"Settings", L"Pos", L"6000");
    Open([&](const User&, HWND) { EXPECT_EQ(BarLeft(), (6000 - 37 + 7) / 15); });
}

TEST_F(SplitWindow, EscOrLosingTheMouseCancelsTheDrag)
{
    Open([&](const User& user, HWND hBar) {
        const int lBefore = BarLeft();
        for (const bool bEsc : {true, false})
        {
            DragAndHold(user, hBar);
            if (bEsc)
                user.Key(VK_ESCAPE);
            else
                Send(hBar, WM_CANCELMODE);
            user.Idle();
            EXPECT_EQ(BarLeft(), lBefore);
            EXPECT_FALSE(Panel().Dragging());
            user.Release();
            EXPECT_EQ(BarLeft(), lBefore);
            EXPECT_TRUE(::IsWindow(cContainer->Handle()));
        }
    });
}

TEST_F(SplitWindow, ADropAtAnEdgeCollapsesAPane)
{
    Open([&](const User& user, HWND hBar) {
        Panel().SetSnapToEdge(true);
        user.Drag(hBar, {2, 100}, {-BarLeft() + 5, 100});
        EXPECT_FALSE(LeftShown());
        EXPECT_EQ(Right().right, ClientWidth());
        EXPECT_EQ(user.FocusedWindow(), hBar) << "the focus leaves the collapsed pane";
        Shot(user, L"-collapsed");
        user.Drag(hBar, {2, 100}, {300, 100});
        EXPECT_TRUE(LeftShown());
        user.Drag(hBar, {2, 100}, {ClientWidth() - BarLeft() - 5, 100});
        EXPECT_FALSE(RightShown());
        EXPECT_EQ(BarLeft(), ClientWidth() - 5);
    });
}

TEST_F(SplitWindow, KeysMoveTheBarThatHasTheFocus)
{
    Open([&](const User& user, HWND hBar) {
        user.Key(VK_TAB);
        ASSERT_EQ(user.FocusedWindow(), hBar);
        const std::int32_t lStart = Position();
        user.Key(VK_RIGHT);
        EXPECT_EQ(Position(), lStart + 150);
        user.Key(VK_LEFT, VK_CONTROL);
        EXPECT_EQ(Position(), lStart + 135);
        user.Key(VK_HOME);
        EXPECT_EQ(Position(), 2000);
        user.Key(VK_END);
        EXPECT_EQ(Position(), ClientWidth() * 15 - 2000);
        Shot(user, L"-focus");
        Panel().SetSnapToEdge(true);
        user.Key(VK_HOME);
        EXPECT_FALSE(LeftShown());
        user.Key(VK_RIGHT);
        EXPECT_TRUE(LeftShown());
        EXPECT_EQ(Position(), 2000);
        user.Key(VK_TAB);
        ASSERT_EQ(user.FocusedWindow(), cContainer->hRight);
        cContainer->Run(user, [&] { Panel().SetSnapped(2); });
        EXPECT_FALSE(RightShown());
        EXPECT_EQ(user.FocusedWindow(), hBar) << "the focus leaves a pane that code collapses";
    });
}

TEST_F(SplitWindow, PanesAboveEachOtherAreDividedVertically)
{
    Open([&](const User& user, HWND hBar) {
        Panel().SetHorizontal(true);
        user.Drag(hBar, {100, 2}, {100, 62});
        const RECT bar = PlaceInParent(hBar);
        EXPECT_EQ(Left().bottom, bar.top);
        EXPECT_EQ(Right().top, bar.bottom);
        EXPECT_EQ(bar.right, ClientWidth());
        user.Key(VK_TAB);
        const std::int32_t lStart = Position();
        user.Key(VK_DOWN);
        EXPECT_EQ(Position(), lStart + 150);
        Shot(user, L"-horizontal");
    });
}

TEST_F(SplitWindow, EveryResolutionFillsTheAreaToTheLastPixel)
{
    Open([&](const User& user, HWND) {
        for (const int lDpi : {96, 120, 144, 168, 192, 240, 288})
        {
            SCOPED_TRACE(lDpi);
            cContainer->lDpi = lDpi;
            Send(cContainer->Handle(), WM_SIZE, SIZE_RESTORED);
            user.Idle();
            BarLeft();
            EXPECT_EQ(Right().right, ClientWidth());
            EXPECT_EQ(Left().left, 0);
        }
    });
}

TEST_F(SplitWindow, ADisabledPanelDisablesItsPanesAndShowsTheHourglass)
{
    Open([&](const User& user, HWND hBar) {
        user.MoveTo(hBar, {2, 100});
        for (const bool bEnabled : {false, true})
            cContainer->Run(user, [&] {
                Panel().SetEnabled(bEnabled);
                // At once, before the mouse moves again.
                EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, bEnabled ? IDC_SIZEWE : IDC_WAIT));
                for (const HWND hControl : {cContainer->hLeft, cContainer->hRight, hBar})
                    EXPECT_EQ(Enabled(hControl), bEnabled);
                EXPECT_EQ(cContainer->cSplit->SetsCursor(), !bEnabled);
            });
    });
}

TEST_F(SplitWindow, WithOnePaneTheOtherAndTheBarAreStillLaidOut)
{
    Open([&](const User&, HWND hBar) {
        cContainer->cSplit->SetControls(nullptr, cContainer->hRight);
        cContainer->LayOut();
        EXPECT_EQ(Right().left, PlaceInParent(hBar).right);
        Panel().SetSplitVisible(false);
        EXPECT_FALSE(Shown(hBar));
    });
}

} // namespace ravlo::test

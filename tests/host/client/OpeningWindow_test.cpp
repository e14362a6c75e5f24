// SPDX-License-Identifier: MIT
#include "host/client/OpeningWindow.h"

#include "host/client/WindowActivation.h"
#include "platform/windows/WindowContent.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>

namespace ravlo::test
{

namespace
{

int PositionOf(const OpeningWindow& window)
{
    return static_cast<int>(::SendDlgItemMessageW(window.Handle(), lOpeningBar, PBM_GETPOS, 0, 0));
}

void RunMessages(DWORD lForMs)
{
    const auto end = ::GetTickCount64() + lForMs;
    while (::GetTickCount64() < end)
    {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&message);
        ::Sleep(5);
    }
}

} // namespace

TEST(OpeningWindow, ShowsTextAndProgressWhileItLives)
{
    std::optional<OpeningWindow> window(std::in_place);
    const HWND hWindow = window->Handle();
    EXPECT_TRUE(::IsWindowVisible(hWindow));
    EXPECT_EQ(TextIn(::GetDlgItem(hWindow, lOpeningText)), L"Opening the station ...");
    const auto lStart = ::GetTickCount64();
    window->Show(L"Reading cuts", 250, 1000);
    EXPECT_EQ(TextIn(::GetDlgItem(hWindow, lOpeningText)), L"Reading cuts");
    EXPECT_EQ(PositionOf(*window), 250);
    window->Show(L"At once", 251, 1000);
    constexpr ULONGLONG leastTicks = 50; // which a busy machine may let pass between the two
    EXPECT_TRUE(PositionOf(*window) == 250 || ::GetTickCount64() - lStart >= leastTicks)
        << "it is not drawn for every cut";
    window.reset();
    EXPECT_FALSE(::IsWindow(hWindow));
    window.emplace().Show(L"Reading", 17, 0);
    EXPECT_EQ(PositionOf(*window), 0) << "of an unknown amount of work";
}

TEST(WindowActivation, CallsOnceFromTheMessageLoopWhenTheUserReturns)
{
    int lCalls = 0;
    OpeningWindow window;
    RunMessages(200); // those of its own opening
    {
        const WindowActivation activation([&] { ++lCalls; });
        ::SendMessageW(window.Handle(), WM_ACTIVATEAPP, TRUE, 0);
        ::SendMessageW(window.Handle(), WM_ACTIVATEAPP, TRUE, 0);
        EXPECT_EQ(lCalls, 0);
        RunMessages(200);
        EXPECT_EQ(lCalls, 1);
        ::SendMessageW(window.Handle(), WM_ACTIVATEAPP, FALSE, 0);
        RunMessages(100);
        EXPECT_EQ(lCalls, 1);
        ::SendMessageW(window.Handle(), WM_ACTIVATEAPP, TRUE, 0);
    }
    RunMessages(100);
    EXPECT_EQ(lCalls, 1) << "there is no listener any more";
}

TEST(WindowActivation, AFailingHandlerIsCalledAgain)
{
    int lCalls = 0;
    OpeningWindow window;
    RunMessages(200);
    const WindowActivation activation([&] {
        ++lCalls;
        throw 1;
    });
    for (int l = 1; l <= 2; ++l)
    {
        ::SendMessageW(window.Handle(), WM_ACTIVATEAPP, TRUE, 0);
        RunMessages(100);
        EXPECT_EQ(lCalls, l);
    }
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// The split of a window that opens in its remembered place.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

using SplitPanelPlace = LibraryWindowTest;

TEST_F(SplitPanelPlace, MaximisedWindowKeepsASplitTooWideForItsNormalSize)
{
    MemoryUserSettings& cSettings = cState.cPorts.cUserSettings;
    cSettings.Set(L"RavloScheduler", L"Settings", L"frmUILibPlace", L"100,100,700,500,max");
    cSettings.Set(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"14000");
    FillStation();
    Open([&](const User&) {
        EXPECT_TRUE(::IsZoomed(hWindow));
        RECT tree{};
        ::GetWindowRect(hTree, &tree);
        EXPECT_GT(tree.right - tree.left, 900); // 14000 twips are 933 pixels
    });
    EXPECT_EQ(cSettings.Get(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"none"), L"14000");
}

TEST_F(SplitPanelPlace, MaximisingClosingAndRestoringKeepTheSplit)
{
    FillStation();
    int lNormal = 0;
    int lMaximised = 0;
    Open([&](const User& user) {
        ::SetWindowPos(hWindow, nullptr, 60, 70, 800, 500, SWP_NOZORDER);
        user.Idle();
        user.Drag(User::Control(hWindow, eIdsp1), {2, 100}, {82, 100});
        lNormal = WidthOnScreen(hTree);
        EXPECT_NEAR(lNormal, 378, 4);
        ::ShowWindow(hWindow, SW_MAXIMIZE);
        user.Idle();
        lMaximised = WidthOnScreen(hTree);
        EXPECT_EQ(lMaximised, lNormal);
    });
    OpenAgain([&](const User& user) {
        ASSERT_TRUE(::IsZoomed(hWindow));
        EXPECT_EQ(WidthOnScreen(hTree), lMaximised);
        ::ShowWindow(hWindow, SW_RESTORE);
        user.Idle();
        EXPECT_EQ(WidthOnScreen(hWindow), 800);
        EXPECT_EQ(WidthOnScreen(hTree), lNormal);
    });
}

TEST_F(SplitPanelPlace, AWindowShrunkClosedAndGrownBringsTheSplitBack)
{
    FillStation();
    int lWide = 0;
    Open([&](const User& user) {
        ::SetWindowPos(hWindow, nullptr, 60, 70, 1100, 500, SWP_NOZORDER);
        user.Idle();
        user.Drag(User::Control(hWindow, eIdsp1), {2, 100}, {402, 100});
        lWide = WidthOnScreen(hTree);
        EXPECT_NEAR(lWide, 698, 4);
        ::SetWindowPos(hWindow, nullptr, 60, 70, 600, 500, SWP_NOZORDER);
        user.Idle();
        EXPECT_LT(WidthOnScreen(hTree), 600);
    });
    OpenAgain([&](const User& user) {
        EXPECT_LT(WidthOnScreen(hTree), 600);
        ::SetWindowPos(hWindow, nullptr, 60, 70, 1100, 500, SWP_NOZORDER);
        user.Idle();
        EXPECT_EQ(WidthOnScreen(hTree), lWide);
    });
}

} // namespace ravlo::test

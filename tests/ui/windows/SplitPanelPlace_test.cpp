// SPDX-License-Identifier: MIT
// The split of a window that opens in its remembered place.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

struct SplitPanelPlace : FilledLibrary
{
    int TreeWidth() const { return WidthOf(PlaceOf(hTree)); }
    // The bar, to the right.
    void DragBar(const User& user, int lPixels) const { user.Drag(At(eIdsp1), {2, 100}, {2 + lPixels, 100}); }
};

TEST_F(SplitPanelPlace, MaximisedWindowKeepsASplitTooWideForItsNormalSize)
{
    MemoryUserSettings& cSettings = cState.cPorts.cUserSettings;
    cSettings.Set(L"RavloScheduler", L"Settings", L"frmUILibPlace", L"100,100,700,500,max");
    cSettings.Set(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"14000");
    Open([&](const User&) {
        EXPECT_TRUE(::IsZoomed(hWindow));
        EXPECT_GT(TreeWidth(), 900); // 14000 twips are 933 pixels
    });
    EXPECT_EQ(cSettings.Get(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"none"), L"14000");
}

TEST_F(SplitPanelPlace, MaximisingShrinkingAndClosingKeepTheSplit)
{
    int lWidth = 0;
    Open([&](const User& user) {
        user.Place(hWindow, 60, 70, 1100, 500);
        DragBar(user, 400);
        lWidth = TreeWidth();
        EXPECT_NEAR(lWidth, 698, 4);
        user.ShowAs(hWindow, SW_MAXIMIZE);
        EXPECT_EQ(TreeWidth(), lWidth);
    });
    OpenAgain([&](const User& user) {
        ASSERT_TRUE(::IsZoomed(hWindow));
        EXPECT_EQ(TreeWidth(), lWidth);
        user.ShowAs(hWindow, SW_RESTORE);
        EXPECT_EQ(WidthOf(PlaceOf(hWindow)), 1100);
        EXPECT_EQ(TreeWidth(), lWidth);
        user.Resize(hWindow, 600, 500);
        EXPECT_LT(TreeWidth(), 600);
    });
    OpenAgain([&](const User& user) {
        EXPECT_LT(TreeWidth(), 600);
        user.Resize(hWindow, 1100, 500);
        EXPECT_EQ(TreeWidth(), lWidth);
    });
}

} // namespace ravlo::test

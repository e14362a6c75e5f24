// SPDX-License-Identifier: MIT
// The split of a window that opens in its remembered place.
#include "windows/LibraryFixture.h"

namespace ravlo::test
{

using SplitPanelPlace = LibraryWindowTest;

TEST_F(SplitPanelPlace, AWindowThatOpensMaximisedKeepsASplitForWhichItsNormalSizeHasNoRoom)
{
    MemoryUserSettings& cSettings = cStation.cWorld.cUserSettings;
    cSettings.Set(L"RavloScheduler", L"Settings", L"frmUILibPlace", L"100,100,700,500,max");
    cSettings.Set(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"14000");
    FillStation();
    Open(
        [&](const User&)
        {
            EXPECT_TRUE(::IsZoomed(hWindow));
            RECT tree{};
            ::GetWindowRect(hTree, &tree);
            EXPECT_GT(tree.right - tree.left, 900); // 14000 twips are 933 pixels
        });
    EXPECT_EQ(cSettings.Get(L"uSplittest_windowsSplitPanelSchedLib", L"Settings", L"Pos", L"none"), L"14000");
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// The selector on the screen, outside the category window: what only its public face can do.
#include "ui/category/windows/CatSelectorWindow.h"

#include "ui/controls/windows/Dpi.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/controls/windows/VisualStyles.h"
#include "ui/windows/CategoryFixture.h"

#include <memory>

namespace ravlo::test
{

TEST_F(CategoryWindowTest, DisabledSelectorShowsTheHourglass)
{
    const VisualStyles cStyles;
    const UniqueFont hFont = MessageFont(96);
    CatSelectorWindow cSelectorWindow(cHost.Handle(), 50, cState.cMod);
    CatSelectorPresenter& cSelector = cSelectorWindow.Selector();
    cSelectorWindow.SetLook(hFont.get(), 96);
    ::MoveWindow(cSelectorWindow.Handle(), 10, 50, 600, 400, TRUE);
    cSelector.SetSchedMan(cState.cSchedMan);
    cSelector.SetColMainCats(cState.cSchedMan->colMainCats());
    const auto control = [&](int lId) { return User::Control(cSelectorWindow.Handle(), lId); };
    ModalLoop cLoop(cHost.Handle());
    WhileOpen([&] { cLoop.Run(); },
              [&](const User& user) {
        HCURSOR hCursor = nullptr;
        const auto over = [&](int lId) {
            user.MoveTo(control(lId), {20, 6});
            user.MoveTo(control(lId), {22, 8});
            cHost.Run(user, [&] { hCursor = ::GetCursor(); });
            return hCursor;
        };
        const int lIds[] = {eIdlstCat,    eIdlstlvl,         eIdlstsongs0, eIdlstsongs1,
                            eIdchkOpener, eIdchkSortedSongs, eIdlblMatch};
        cHost.Run(user, [&] { cSelector.EnableUI(false); });
        for (const int lId : lIds)
            EXPECT_FALSE(::IsWindowEnabled(control(lId))) << lId;
        EXPECT_EQ(over(eIdlstCat), ::LoadCursorW(nullptr, IDC_WAIT));
        EXPECT_EQ(over(eIdchkOpener), ::LoadCursorW(nullptr, IDC_WAIT));
        user.Shot(cHost.Handle(), L"category-selector-disabled");
        cHost.Run(user, [&] { cSelector.EnableUI(true); });
        for (const int lId : lIds)
            EXPECT_TRUE(::IsWindowEnabled(control(lId))) << lId;
        EXPECT_EQ(over(eIdlstCat), ::LoadCursorW(nullptr, IDC_ARROW));
        EXPECT_TRUE(::IsWindowVisible(control(eIdMatchLabel1))); // of the list that is to be seen
        EXPECT_FALSE(::IsWindowVisible(control(eIdlblMatch)));
        cHost.Run(user, [&] {
            cSelector.SetAllowMultiCatSelect(true);
            cSelector.EnableUI(false);
            cSelector.EnableUI(true);
        });
        EXPECT_TRUE(::IsWindowEnabled(control(eIdlstCat)));
        EXPECT_FALSE(::IsWindowEnabled(control(eIdlstsongs1)));
        EXPECT_FALSE(::IsWindowEnabled(control(eIdlblMatch)));
        cHost.Run(user, [&] { cLoop.End(); });
    });
}

TEST_F(CategoryWindowTest, LongEntriesCanBeScrolledToTheirEndInAnotherFontToo)
{
    const UniqueFont hFont = MessageFont(96);
    const UniqueFont hLarge = MessageFont(192);
    CatSelectorWindow cSelectorWindow(cHost.Handle(), 50, cState.cMod);
    cSelectorWindow.SetLook(hFont.get(), 96);
    CatSelectorPresenter& cSelector = cSelectorWindow.Selector();
    cSelector.SetColMainCats(cState.cSchedMan->colMainCats());
    cSelector.SetSelectedMainCat(cState.MainCat(L"Rock"));
    const auto extent = [&](int lId) {
        return ::SendMessageW(User::Control(cSelectorWindow.Handle(), lId), LB_GETHORIZONTALEXTENT, 0, 0);
    };
    const LRESULT lCats = extent(eIdlstCat);
    const LRESULT lSongs = extent(eIdlstsongs1);
    EXPECT_GT(lSongs, lCats);
    cSelectorWindow.SetLook(hLarge.get(), 192);
    EXPECT_GT(extent(eIdlstCat), lCats * 3 / 2);
    EXPECT_GT(extent(eIdlstsongs1), lSongs * 3 / 2);
    cSelectorWindow.SetLook(hFont.get(), 96);
    EXPECT_EQ(extent(eIdlstsongs1), lSongs);
}

} // namespace ravlo::test

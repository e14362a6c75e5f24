// SPDX-License-Identifier: MIT
// The selector without the category window: what only its public interface can do.
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
    hWindow = cSelectorWindow.Handle();
    ModalLoop cLoop(cHost.Handle());
    WhileOpen([&] { cLoop.Run(); },
              [&](const User& user) {
        const auto expectPointer = [&](int lId, LPCWSTR sCursor) {
            user.MoveTo(At(lId), {20, 6});
            user.MoveTo(At(lId), {22, 8});
            cHost.Run(user, [&] { EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, sCursor)); });
        };
        const auto enable = [&](bool bEnable) {
            cHost.Run(user, [&] { cSelector.EnableUI(bEnable); });
            for (const int lId : {eIdlstCat, eIdlstlvl, eIdlstsongs0, eIdlstsongs1, eIdchkOpener,
                                  eIdchkSortedSongs, eIdlblMatch})
                EXPECT_EQ(Enabled(At(lId)), bEnable) << lId;
        };
        enable(false);
        expectPointer(eIdlstCat, IDC_WAIT);
        expectPointer(eIdchkOpener, IDC_WAIT);
        user.Shot(cHost.Handle(), L"category-selector-disabled");
        enable(true);
        expectPointer(eIdlstCat, IDC_ARROW);
        EXPECT_TRUE(Shown(At(eIdMatchLabel1))); // of the visible list
        EXPECT_FALSE(Shown(At(eIdlblMatch)));
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
        return Send(User::Control(cSelectorWindow.Handle(), lId), LB_GETHORIZONTALEXTENT);
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

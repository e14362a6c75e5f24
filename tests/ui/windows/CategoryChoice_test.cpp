// SPDX-License-Identifier: MIT
// The category window's selector and what it returns, by mouse and keyboard.
#include "ui/windows/CategoryFixture.h"

namespace ravlo::test
{

using CategoryChoice = CategoryWindowTest;

TEST_F(CategoryChoice, MouseClicksChooseCategoryLevelAndCuts)
{
    const auto lAnswer = Open([&](const User& user) {
        EXPECT_EQ(Entries(eIdlstCat), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
        EXPECT_EQ(Selected(eIdlstCat), Texts());
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
        Pick(user, eIdlstCat, 0);
        EXPECT_EQ(Entries(eIdlstlvl), (Texts{L"1", L"3", L"ALL"}));
        EXPECT_EQ(Selected(eIdlstlvl), (Texts{L"1"}));
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"Total matching criteria = 2");
        Pick(user, eIdlstlvl, 2);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
        EXPECT_EQ(Entries(eIdlstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core", L"Mango - Stone"}));
        Pick(user, eIdlstlvl, 0);
        Pick(user, eIdlstsongs1, 0);
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(Selected(eIdlstsongs1), (Texts{L"Zebra - Stripes", L"Apple - Core"}));
        Pick(user, eIdlstsongs1, 0);
        Pick(user, eIdlstsongs1, 1, VK_SHIFT);
        user.Shot(hWindow, L"category-cuts-selected");
        user.Click(At(IDOK));
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, cState.Level(L"Rock", 1));
    EXPECT_EQ(request.colSelCuts, (Cuts{CutOf(0), CutOf(1)}));
}

TEST_F(CategoryChoice, KeysAloneChooseACategoryAndALevel)
{
    const auto lAnswer = Open([&](const User& user) {
        user.Key(VK_DOWN);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Jazz"}));
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
        user.Key(VK_DOWN);
        EXPECT_EQ(Selected(eIdlstlvl), (Texts{L"ALL"}));
        user.Key(VK_RETURN);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Jazz"));
    EXPECT_EQ(request.cSubCatChosen, nullptr);
}

TEST_F(CategoryChoice, EscTheCloseBoxAndCancelChooseNothing)
{
    StartOn(L"Rock", 3);
    const std::function<void(const User&)> ways[] = {
        [&](const User& user) { user.Key(VK_ESCAPE); },
        [&](const User& user) { user.Click(At(IDCANCEL)); },
        [&](const User& user) { user.Key('C', VK_MENU); },
        [&](const User& user) { user.Key(VK_F4, VK_MENU); },
        [&](const User&) { ::PostMessageW(hWindow, WM_SYSCOMMAND, SC_CLOSE, 0); },
    };
    for (const auto& way : ways)
    {
        EXPECT_EQ(Open([&](const User& user) {
                      Pick(user, eIdlstCat, 1);
                      way(user);
                      user.WaitUntilGone(hWindow);
                  }),
                  lNotChosen);
        EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Rock"));
    }
}

TEST_F(CategoryChoice, TheFiltersWorkByMouseAndMnemonic)
{
    for (const wchar_t* sArtist : {L"abba", L"\u00C4rzte", L"Beck"})
        Add(sArtist, L"Rock", 1, sArtist, L"x");
    cState.Populate();
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdchkOpener)), L"Filter for &Openers Only");
        EXPECT_EQ(user.Text(At(eIdchkSortedSongs)), L"&Sorted alphabetically");
        user.Click(At(eIdchkOpener));
        EXPECT_EQ(Entries(eIdlstsongs1), (Texts{L"Apple - Core"}));
        user.Key('O', VK_MENU);
        EXPECT_EQ(Entries(eIdlstsongs1).size(), 5u);
        user.Key('S', VK_MENU);
        EXPECT_EQ(Entries(eIdlstsongs0),
                  (Texts{L"abba - x", L"Apple - Core", L"\u00C4rzte - x", L"Beck - x", L"Zebra - Stripes"}));
        EXPECT_TRUE(Shown(At(eIdlstsongs0)));
        EXPECT_FALSE(Shown(At(eIdlstsongs1)));
        user.Shot(hWindow, L"category-sorted");
        user.Click(At(eIdchkSortedSongs));
        EXPECT_FALSE(Shown(At(eIdlstsongs0)));
        Pick(user, eIdlstlvl, 1);
        user.Click(At(eIdchkOpener));
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"No items in this category");
    });
}

TEST_F(CategoryChoice, TabGoesThroughTheControlsInTheirOrder)
{
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        // From the selector's last control forward to its first one; backward out of it.
        for (const int lId : {eIdlstlvl, eIdlstsongs1, eIdchkOpener, eIdchkSortedSongs, eIdlstCat})
        {
            user.Key(VK_TAB);
            EXPECT_EQ(user.FocusedWindow(), At(lId));
        }
        for (const HWND hControl : {At(IDCANCEL), At(IDOK), Box(0, eIdtxtAlbumSepMins),
                                    Box(0, eIdtxtTitleSepMins), Box(0, eIdtxtArtistSepMins), At(eIdTabStrip1),
                                    At(eIdLabel2), At(eIdcmdNewLevel), At(eIdcmdNew), At(eIdchkSortedSongs)})
        {
            user.Key(VK_TAB, VK_SHIFT);
            EXPECT_EQ(user.FocusedWindow(), hControl) << ::GetDlgCtrlID(hControl);
        }
    });
}

TEST_F(CategoryChoice, WithoutMultiSelectOneCategoryIsSelected)
{
    Open([&](const User& user) {
        Pick(user, eIdlstCat, 0);
        Pick(user, eIdlstCat, 1, VK_CONTROL);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Jazz"}));
        EXPECT_EQ(Entries(eIdlstlvl), (Texts{L"2", L"ALL"}));
        user.Drag(At(eIdlstCat), {10, 4}, {10, 24});
        EXPECT_EQ(Selected(eIdlstCat).size(), 1u);
        Pick(user, eIdlstCat, 0);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Jazz"}));
        user.Key(VK_SPACE, VK_CONTROL);
        EXPECT_EQ(Selected(eIdlstCat).size(), 1u);
    });
}

TEST_F(CategoryChoice, WithMultiSelectACutIsPlacedUnderTheSelectedCategories)
{
    request.cCut = CutOf(3); // in Jazz 2
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open([&](const User& user) {
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Jazz"}));
        EXPECT_EQ(Selected(eIdlstlvl), (Texts{L"2"}));
        for (const int lId : {eIdlstsongs1, eIdchkOpener, eIdchkSortedSongs, eIdlblMatch})
            EXPECT_FALSE(Enabled(At(lId)));
        Pick(user, eIdlstCat, 2, VK_CONTROL); // NOCAT cannot be selected with Jazz
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Jazz"}));
        Pick(user, eIdlstCat, 0, VK_CONTROL);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Rock", L"Jazz"}));
        Pick(user, eIdlstlvl, 1);
        user.Shot(hWindow, L"category-multi-select");
        user.Click(At(IDOK));
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(CutOf(3)->CatLevel(), 3);
    EXPECT_EQ(CutOf(3)->CategoryText(), L"Rock/Jazz");
}

TEST_F(CategoryChoice, WithMultiSelectKeysSelectSeveralCategories)
{
    request.cCut = CutOf(0); // in Rock 1
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open([&](const User& user) {
        user.Key(VK_HOME);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Rock"}));
        for (int i = 0; i < 2; ++i) // the second time NOCAT, which cannot be selected with others
        {
            user.Key(VK_DOWN, VK_SHIFT);
            EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Rock", L"Jazz"}));
        }
        user.Key(VK_RETURN);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(CutOf(0)->CategoryText(), L"Rock/Jazz");
}

TEST_F(CategoryChoice, BeforeAnyPopulationTheWindowSaysWhatItNeeds)
{
    const auto cFresh = std::make_shared<clsSchedMan>(cState.cMod);
    const auto cWindows = NewSchedulerUi(cFresh);
    cFresh->SetWindows(cWindows.get());
    CategoryRequest empty;
    WhileOpen([&] { cFresh->ShowCatUI(empty); },
              [&](const User& user) {
        user.Answer(OkOnScreen(L"RavloScheduler", L"Cat Selector NEEDS the collection of main cats!"), IDOK);
        const HWND hOpen = user.WaitFor(sfrmCatClass);
        user.Shot(hOpen, L"category-empty");
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hOpen);
    });
    cFresh->SetWindows(nullptr);
}

TEST_F(CategoryChoice, ANewLevelIsListedAndItsCategoryStaysChosen)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdcmdNew)), L"&New Category");
        EXPECT_EQ(user.Text(At(eIdcmdNewLevel)), L"New &Level");
        user.Key('L', VK_MENU);
        user.AnswerInput(L"2");
        EXPECT_EQ(Entries(eIdlstlvl), (Texts{L"1", L"2", L"3", L"ALL"}));
        EXPECT_EQ(Selected(eIdlstlvl), (Texts{L"3"}));
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Rock"}));
    });
    EXPECT_TRUE(cState.Level(L"Rock", 2));
}

} // namespace ravlo::test

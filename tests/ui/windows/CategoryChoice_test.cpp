// SPDX-License-Identifier: MIT
// The category window's selector and what comes back, by mouse and keyboard.
#include "ui/windows/CategoryFixture.h"

namespace ravlo::test
{

using CategoryChoice = CategoryWindowTest;

TEST_F(CategoryChoice, MouseClicksChooseCategoryLevelAndCuts)
{
    const auto lAnswer = Open([&](const User& user) {
        EXPECT_EQ(user.Entries(At(eIdlstCat)), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
        EXPECT_EQ(user.Selected(At(eIdlstCat)), Texts());
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
        user.ClickEntry(At(eIdlstCat), 0);
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"1", L"3", L"ALL"}));
        EXPECT_EQ(user.Selected(At(eIdlstlvl)), (Texts{L"1"}));
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"Total matching criteria = 2");
        user.ClickEntry(At(eIdlstlvl), 2);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
        EXPECT_EQ(user.Entries(At(eIdlstsongs1)),
                  (Texts{L"Zebra - Stripes", L"Apple - Core", L"Mango - Stone"}));
        user.ClickEntry(At(eIdlstlvl), 0);
        user.ClickEntry(At(eIdlstsongs1), 0);
        user.ClickEntry(At(eIdlstsongs1), 1, VK_SHIFT);
        user.Shot(hWindow, L"category-cuts-selected");
        user.Click(At(IDOK));
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Rock"));
    EXPECT_EQ(request.cSubCatChosen, cState.Level(L"Rock", 1));
    EXPECT_EQ(request.colSelCuts, (Cuts{cState.cDataBase->colCuts[0], cState.cDataBase->colCuts[1]}));
}

TEST_F(CategoryChoice, KeysAloneChooseACategoryAndALevel)
{
    const auto lAnswer = Open([&](const User& user) {
        user.Key(VK_DOWN);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstlvl));
        user.Key(VK_DOWN);
        EXPECT_EQ(user.Selected(At(eIdlstlvl)), (Texts{L"ALL"}));
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
                      user.ClickEntry(At(eIdlstCat), 1);
                      way(user);
                      user.WaitUntilGone(hWindow);
                  }),
                  lNotChosen);
        EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Rock"));
    }
}

TEST_F(CategoryChoice, TheFiltersWorkByMouseAndMnemonic)
{
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdchkOpener)), L"Filter for &Openers Only");
        EXPECT_EQ(user.Text(At(eIdchkSortedSongs)), L"&Sorted alphabetically");
        user.Click(At(eIdchkOpener));
        EXPECT_EQ(user.Entries(At(eIdlstsongs1)), (Texts{L"Apple - Core"}));
        user.Key('O', VK_MENU);
        EXPECT_EQ(user.Entries(At(eIdlstsongs1)), (Texts{L"Zebra - Stripes", L"Apple - Core"}));
        user.Key('S', VK_MENU);
        EXPECT_EQ(user.Entries(At(eIdlstsongs0)), (Texts{L"Apple - Core", L"Zebra - Stripes"}));
        EXPECT_TRUE(::IsWindowVisible(At(eIdlstsongs0)));
        EXPECT_FALSE(::IsWindowVisible(At(eIdlstsongs1)));
        user.Shot(hWindow, L"category-sorted");
        user.Click(At(eIdchkSortedSongs));
        EXPECT_FALSE(::IsWindowVisible(At(eIdlstsongs0)));
        user.ClickEntry(At(eIdlstlvl), 1);
        user.Click(At(eIdchkOpener));
        EXPECT_EQ(user.Text(At(eIdlblMatch)), L"No items in this category");
    });
}

TEST_F(CategoryChoice, SortedListIsAlphabeticalIgnoringCase)
{
    for (const wchar_t* sArtist : {L"abba", L"Zappa", L"Beck", L"\u00C4rzte"})
        Add(sArtist, L"Pop", 1, sArtist, L"x");
    cState.Populate();
    StartOn(L"Pop", 1);
    Open([&](const User& user) {
        user.Key('S', VK_MENU);
        EXPECT_EQ(user.Entries(At(eIdlstsongs0)),
                  (Texts{L"abba - x", L"\u00C4rzte - x", L"Beck - x", L"Zappa - x"}));
    });
}

TEST_F(CategoryChoice, TabGoesThroughTheControlsInTheirOrder)
{
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        for (const int lId : {eIdlstlvl, eIdlstsongs1, eIdchkOpener, eIdchkSortedSongs})
        {
            user.Key(VK_TAB);
            EXPECT_EQ(user.FocusedWindow(), At(lId));
        }
        // Inside the selector the focus goes round ...
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
        // ... and backward it leaves it.
        const HWND backward[] = {At(IDCANCEL),
                                 At(IDOK),
                                 Box(0, eIdtxtAlbumSepMins),
                                 Box(0, eIdtxtTitleSepMins),
                                 Box(0, eIdtxtArtistSepMins),
                                 At(eIdTabStrip1),
                                 At(eIdLabel2),
                                 At(eIdcmdNewLevel),
                                 At(eIdcmdNew),
                                 At(eIdchkSortedSongs)};
        for (const HWND hControl : backward)
        {
            user.Key(VK_TAB, VK_SHIFT);
            EXPECT_EQ(user.FocusedWindow(), hControl) << ::GetDlgCtrlID(hControl);
        }
    });
}

TEST_F(CategoryChoice, CtrlASelectsEverySong)
{
    StartOn(L"Rock", 1);
    Open([&](const User& user) {
        user.ClickEntry(At(eIdlstsongs1), 0);
        user.Key('A', VK_CONTROL);
        EXPECT_EQ(user.Selected(At(eIdlstsongs1)), (Texts{L"Zebra - Stripes", L"Apple - Core"}));
        user.Click(At(IDOK));
    });
    EXPECT_EQ(request.colSelCuts.size(), 2u);
}

TEST_F(CategoryChoice, WithoutMultiSelectCtrlClickLeavesOneCategorySelected)
{
    Open([&](const User& user) {
        user.ClickEntry(At(eIdlstCat), 0);
        user.ClickEntry(At(eIdlstCat), 1, VK_CONTROL);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        user.Drag(At(eIdlstCat), {10, 4}, {10, 24});
        EXPECT_EQ(user.Selected(At(eIdlstCat)).size(), 1u);
    });
}

TEST_F(CategoryChoice, WithMultiSelectACutIsPlacedUnderTheSelectedCategories)
{
    const auto cCut = cState.cDataBase->colCuts[3]; // in Jazz 2
    request.cCut = cCut;
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open([&](const User& user) {
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        EXPECT_EQ(user.Selected(At(eIdlstlvl)), (Texts{L"2"}));
        for (const int lId : {eIdlstsongs1, eIdchkOpener, eIdchkSortedSongs, eIdlblMatch})
            EXPECT_FALSE(::IsWindowEnabled(At(lId)));
        user.ClickEntry(At(eIdlstCat), 2, VK_CONTROL); // NOCAT cannot stay beside Jazz
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        user.ClickEntry(At(eIdlstCat), 0, VK_CONTROL);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock", L"Jazz"}));
        user.ClickEntry(At(eIdlstlvl), 1);
        user.Shot(hWindow, L"category-multi-select");
        user.Click(At(IDOK));
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(cCut->CatLevel(), 3);
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
}

TEST_F(CategoryChoice, WithMultiSelectKeysSelectSeveralCategories)
{
    const auto cCut = cState.cDataBase->colCuts[0]; // in Rock 1
    request.cCut = cCut;
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open([&](const User& user) {
        user.Key(VK_HOME);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock"}));
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock", L"Jazz"}));
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"2", L"ALL"})); // of the one with the caret
        user.Key(VK_DOWN, VK_SHIFT);                                   // not NOCAT beside the others
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock", L"Jazz"}));
        user.Key(VK_RETURN);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(cCut->CategoryText(), L"Rock/Jazz");
}

TEST_F(CategoryChoice, WithoutMultiSelectNoKeySelectsTwoCategoriesOrNone)
{
    Open([&](const User& user) {
        user.ClickEntry(At(eIdlstCat), 0);
        user.Key(VK_DOWN, VK_SHIFT);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        user.Key(VK_SPACE, VK_CONTROL);
        EXPECT_EQ(user.Selected(At(eIdlstCat)).size(), 1u);
        user.ClickEntry(At(eIdlstCat), 1, VK_CONTROL);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Jazz"}));
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"2", L"ALL"}));
    });
}

TEST_F(CategoryChoice, ALLIsRefusedForACutOfSeveralCategories)
{
    const auto cCut = cState.cDataBase->colCuts[3];
    request.cCut = cCut;
    request.bAllowMultiSelect = true;
    const auto lAnswer = Open([&](const User& user) {
        user.ClickEntry(At(eIdlstlvl), 1);
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"'ALL' is Not Valid",
                               L"Choose a level other than 'ALL' to be able to multi-select categories",
                               {IDOK}}));
        user.Answer(IDOK);
    });
    EXPECT_EQ(lAnswer, lChosen);
    EXPECT_EQ(cCut->CatLevel(), 2);
}

TEST_F(CategoryChoice, ACutWhoseCategoryIsGoneIsReportedBeforeTheWindowOpens)
{
    request.cCut = Add(L"x", L"Polka/Rock", 7, L"A", L"B");
    request.bAllowMultiSelect = true;
    std::int32_t lAnswer = 0;
    WhileOpen([&] { lAnswer = cState.cSchedMan->ShowCatUI(request); },
              [&](const User& user) {
        EXPECT_EQ(user.Box().sText, L"Unexpected!- main cat Polka\t0\r\n"
                                    L"Doesn't exist in ShowCutCatsAsSelected!");
        EXPECT_EQ(user.Box().sTitle, L"Error!");
        user.Answer(IDOK);
        EXPECT_EQ(user.Box().sText, L"Unexpected!- sub cat 7\r\n"
                                    L"Doesn't exist in ShowCutCatsAsSelected!");
        user.Answer(IDOK);
        user.WaitFor(sfrmCatClass);
        user.Key(VK_ESCAPE);
    });
    EXPECT_EQ(lAnswer, lNotChosen);
}

TEST_F(CategoryChoice, BeforeAnyPopulationTheWindowSaysWhatItNeeds)
{
    const auto cFresh = std::make_shared<clsSchedMan>(cState.cMod);
    const auto cWindows = NewSchedulerUi(cFresh);
    cFresh->SetWindows(cWindows.get());
    CategoryRequest empty;
    WhileOpen([&] { cFresh->ShowCatUI(empty); },
              [&](const User& user) {
        EXPECT_EQ(
            user.Box(),
            (BoxOnScreen{L"RavloScheduler", L"Cat Selector NEEDS the collection of main cats!", {IDOK}}));
        user.Answer(IDOK);
        const HWND hOpen = user.WaitFor(sfrmCatClass);
        user.Shot(hOpen, L"category-empty");
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hOpen);
    });
    cFresh->SetWindows(nullptr);
}

// ---- making ----

TEST_F(CategoryChoice, ANewCategoryIsAskedForAndChosen)
{
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdcmdNew)), L"&New Category");
        user.Click(At(eIdcmdNew));
        EXPECT_EQ(user.Box().sTitle, L"New Category Creation");
        EXPECT_EQ(user.Box().sText, L"Type the name for the new category");
        user.AnswerInput(L"Swing");
        EXPECT_EQ(user.Entries(At(eIdlstCat)), (Texts{L"Rock", L"Jazz", L"NOCAT", L"Swing"}));
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Swing"}));
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"1", L"ALL"}));
        // By mnemonic, and given up.
        user.Key('N', VK_MENU);
        user.Answer(IDCANCEL);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Swing"}));
        user.Click(At(IDOK));
    });
    EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Swing"));
}

TEST_F(CategoryChoice, ANewLevelIsAskedForAndItsCategoryStaysChosen)
{
    StartOn(L"Rock", 3);
    Open([&](const User& user) {
        EXPECT_EQ(user.Text(At(eIdcmdNewLevel)), L"New &Level");
        user.Key('L', VK_MENU);
        EXPECT_EQ(user.Box().sTitle, L"Enter The New Category Level");
        user.AnswerInput(L"2");
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"1", L"2", L"3", L"ALL"}));
        EXPECT_EQ(user.Selected(At(eIdlstlvl)), (Texts{L"3"}));
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock"}));
    });
    EXPECT_TRUE(cState.Level(L"Rock", 2));
}

TEST_F(CategoryChoice, TheNewButtonsAreHiddenUnlessNewIsAllowed)
{
    request.bAllowNew = false;
    Open([&](const User&) {
        EXPECT_FALSE(::IsWindowVisible(At(eIdcmdNew)));
        EXPECT_FALSE(::IsWindowVisible(At(eIdcmdNewLevel)));
    });
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
// The find bars of the library window and of the category window, with real keys and clicks.
#include "ui/controls/windows/FindBar.h"
#include "ui/windows/CategoryFixture.h"
#include "ui/windows/LibraryFixture.h"
#include "ui/windows/Tidy.h"

namespace ravlo::test
{

namespace
{

constexpr int lResolutions[] = {96, 144, 192};

struct LibraryFindBarsTest : FilledLibrary
{
    HWND In(int lBar, int lId) const { return User::Control(User::Control(hWindow, lBar), lId); }
    std::wstring Count(int lBar) const { return User::Text(In(lBar, eIdFindCount)); }
    Texts Artists() const
    {
        Texts colArtists;
        for (int row = 0; row < Send(hGrid, LVM_GETITEMCOUNT); ++row)
            colArtists.push_back(Cell(row, 2));
        return colArtists;
    }
};

struct CategoryFindBar : CategoryWindowTest
{
    HWND Bar(int lId) const { return User::Control(At(eIdFindCats), lId); }
};

} // namespace

TEST_F(LibraryFindBarsTest, TypingNarrowsTheListAndEscShowsAll)
{
    OpenOnRock([&](const User& user) {
        user.Click(hGrid);
        EXPECT_FALSE(Shown(User::Control(hWindow, eIdFindCuts)));
        user.Key('F', VK_CONTROL);
        EXPECT_EQ(user.FocusedWindow(), In(eIdFindCuts, eIdFindQuery));
        user.Type(L"EA");
        EXPECT_EQ(Artists(), (Texts{L"Cream", L"Eagles"}));
        EXPECT_EQ(Cell(1, 0), L"5") << "its place in the schedule";
        EXPECT_EQ(Count(eIdFindCuts), L"2 of 6");
        user.Key('A', VK_CONTROL); // marks the field's text, not the rows
        EXPECT_EQ(Send(hGrid, LVM_GETSELECTEDCOUNT), 0);
        user.Type(L"ea gl");
        EXPECT_EQ(Artists(), Texts{L"Eagles"});
        EXPECT_EQ(Untidiness(hWindow), Faults());
        EXPECT_EQ(Nameless(hWindow), Faults());
        user.Shot(hWindow, L"library-find-cuts");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.FocusedWindow(), hGrid);
        EXPECT_EQ(Send(hGrid, LVM_GETSELECTEDCOUNT), 1);
        user.Key(VK_ESCAPE);
        EXPECT_EQ(Artists(), colRockArtists);
        EXPECT_EQ(Send(hGrid, LVM_GETNEXTITEM, -1, reinterpret_cast<const void*>(LVNI_SELECTED)), 4);
        EXPECT_FALSE(Shown(User::Control(hWindow, eIdFindCuts)));
    });
}

TEST_F(LibraryFindBarsTest, TypingNarrowsTheTreeAndTheCrossShowsAll)
{
    OpenOnRock([&](const User& user) {
        user.Key('F', VK_CONTROL); // in the tree
        EXPECT_EQ(user.FocusedWindow(), In(eIdFindCategories, eIdFindQuery));
        user.Type(L"j");
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1"}));
        EXPECT_EQ(Count(eIdFindCategories), L"1 of 3");
        user.Key(VK_DOWN);
        EXPECT_EQ(user.FocusedWindow(), hTree);
        EXPECT_EQ(SelectedNode(), L"Jazz");
        user.Key(VK_SPACE);
        user.Click(In(eIdFindCategories, eIdFindClose));
        EXPECT_EQ(user.FocusedWindow(), hTree);
        EXPECT_EQ(Tree(),
                  (Texts{L"ALL AUDIO", L" Jazz*", L"  1*", L" r&b", L"  1", L" Rock", L"  1", L"  2"}));
        user.Key('F', VK_CONTROL);
        user.Key(VK_ESCAPE);
        EXPECT_EQ(user.FocusedWindow(), hTree);
    });
}

TEST_F(LibraryFindBarsTest, TheCrossIsAButtonForTheKeyboard)
{
    OpenOnRock([&](const User& user) {
        for (const int lKey : {VK_RETURN, VK_SPACE, VK_ESCAPE})
        {
            user.Key('F', VK_CONTROL);
            user.Key(VK_TAB);
            const HWND hCross = In(eIdFindCategories, eIdFindClose);
            EXPECT_EQ(user.FocusedWindow(), hCross);
            EXPECT_EQ(ClassOf(hCross) + L": " + User::Text(hCross), L"Button: Close Find");
            user.Key(lKey);
            EXPECT_EQ(user.FocusedWindow(), hTree);
            EXPECT_FALSE(Shown(User::Control(hWindow, eIdFindCategories)));
        }
    });
}

TEST_F(LibraryFindBarsTest, TheyAreTidyAtEveryResolution)
{
    OpenOnRock([&](const User& user) {
        user.Key('F', VK_CONTROL);
        user.Type(L"rock");
        user.Click(hGrid);
        user.Key('F', VK_CONTROL);
        user.Type(L"a");
        for (const int lDpi : lResolutions)
        {
            user.ChangeResolution(hWindow, lDpi, 900, 420);
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
            user.Shot(hWindow, L"library-find-" + std::to_wstring(lDpi));
        }
    });
}

TEST_F(CategoryFindBar, NarrowsAndTheMenuSortsTheCategories)
{
    Open([&](const User& user) {
        const Texts colAll = Entries(eIdlstCat);
        EXPECT_EQ(Nameless(hWindow), Faults());
        user.Key('F', VK_CONTROL);
        EXPECT_EQ(user.FocusedWindow(), Bar(eIdFindQuery));
        user.Type(L"zz");
        EXPECT_EQ(Entries(eIdlstCat), Texts{L"Jazz"});
        EXPECT_EQ(User::Text(Bar(eIdFindCount)).substr(0, 6), L"1 of 3");
        for (const int lDpi : lResolutions)
        {
            user.ChangeResolution(hWindow, lDpi, 840, 500);
            EXPECT_EQ(Untidiness(hWindow), Faults()) << lDpi;
            user.Shot(hWindow, L"category-find-" + std::to_wstring(lDpi));
        }
        user.ChangeResolution(hWindow, 96, 840, 500);
        user.Key(VK_RETURN);
        EXPECT_EQ(user.FocusedWindow(), At(eIdlstCat));
        EXPECT_EQ(Selected(eIdlstCat), Texts{L"Jazz"});
        user.Key('F', VK_CONTROL);
        user.Key(VK_ESCAPE); // the bar, not the window
        EXPECT_EQ(Entries(eIdlstCat), colAll);
        user.Type(L"no");
        EXPECT_EQ(Selected(eIdlstCat), Texts{L"NOCAT"});
        user.RightClickAt(At(eIdlstCat), {10, 10});
        user.WaitFor(L"#32768");
        user.Shot(hWindow, L"category-list-menu");
        user.Keys({VK_DOWN, VK_DOWN, VK_RETURN});
        EXPECT_EQ(Entries(eIdlstCat), (Texts{L"Jazz", L"NOCAT", L"Rock"}));
        EXPECT_EQ(Selected(eIdlstCat), Texts{L"NOCAT"});
    });
    Open([&](const User&) { EXPECT_EQ(Entries(eIdlstCat), (Texts{L"Jazz", L"NOCAT", L"Rock"})); });
}

} // namespace ravlo::test

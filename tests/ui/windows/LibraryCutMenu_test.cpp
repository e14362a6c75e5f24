// SPDX-License-Identifier: MIT
// The menu of the cuts in the library window, and what a drag and a cut look like.
#include "ui/windows/LibraryFixture.h"

#include <cstdlib>

namespace ravlo::test
{

namespace
{

struct LibraryCutMenu : FilledLibrary
{
    // How much the text of a row that is not selected differs from its background.
    int Contrast(int lRow) const
    {
        RECT row{};
        row.left = LVIR_LABEL;
        Send(hGrid, LVM_GETITEMRECT, lRow, &row);
        const int lBack = GetGValue(::GetSysColor(COLOR_WINDOW));
        const HDC hDC = ::GetDC(hGrid);
        int lContrast = 0;
        for (LONG y = row.top + 1; y < row.bottom - 1; ++y)
            for (LONG x = row.left + 4; x < row.left + 60; ++x)
                lContrast = std::max(lContrast, std::abs(GetGValue(::GetPixel(hDC, x, y)) - lBack));
        ::ReleaseDC(hGrid, hDC);
        return lContrast;
    }
};

} // namespace

TEST_F(LibraryCutMenu, ARightClickMovesCutsThatStandApartToTheTop)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 2);
        AddRow(user, 4);
        user.RightClickAt(hGrid, RowAt(4));
        EXPECT_EQ(PopUpItems(user).at(1), L"&Remove from Rock 1\t  Del");
        ShotWithBoxes(user, L"library-cut-menu");
        user.Key('T');
        user.Idle();
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Cream", L"Eagles", L"Abba", L"Blur", L"Dido", L"Feist"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Cream", L"Eagles"}));
    });
}

TEST_F(LibraryCutMenu, TheKeyboardOpensItAndMovesToTheEnds)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 1);
        user.Key(VK_END, VK_MENU);
        EXPECT_EQ(Order(L"Rock", 1).back(), L"Blur");
        user.Key(VK_HOME, VK_MENU);
        EXPECT_EQ(Order(L"Rock", 1).front(), L"Blur");
        for (const int lKey : {VK_APPS, VK_F10})
        {
            user.Key(lKey, lKey == VK_F10 ? VK_SHIFT : 0);
            user.WaitFor(L"#32768");
            user.Key('P');
            user.AnswerInput(lKey == VK_F10 ? L"5" : L"3");
            user.Idle();
            EXPECT_EQ(Order(L"Rock", 1).at(lKey == VK_F10 ? 4 : 2), L"Blur");
        }
    });
}

TEST_F(LibraryCutMenu, ACopyGoesToWhatIsChosenAndThenToARecentTarget)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 0);
        user.Key(VK_APPS);
        user.WaitFor(L"#32768");
        user.Keys({'C', 'H'});
        const HWND hCategory = user.WaitFor(sfrmCatClass);
        EXPECT_EQ(User::Text(hCategory), L"Copy To");
        user.ClickEntry(User::Control(hCategory, eIdlstCat), 1); // Jazz
        ShotWithBoxes(user, L"library-choose-target");
        user.Click(User::Control(hCategory, IDOK));
        user.WaitUntilGone(hCategory);
        user.Idle();
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        ClickRow(user, 1);
        user.Key(VK_APPS);
        user.WaitFor(L"#32768");
        user.Key('C');
        ShotWithBoxes(user, L"library-recent-targets");
        user.Key(VK_RETURN);
        user.Idle();
        EXPECT_EQ(Order(L"Jazz", 1).size(), 3u);
    });
}

TEST_F(LibraryCutMenu, ADragShowsHowManyCutsItCarries)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 1, 3);
        for (const int lDpi : {96, 144, 192})
        {
            user.ChangeResolution(hWindow, lDpi, 700, 400);
            DragOverNode(user, 2, Item(L"Jazz"));
            const HWND hTip = user.WaitFor(TOOLTIPS_CLASSW);
            EXPECT_EQ(User::Text(hTip), L"3 cuts");
            EXPECT_EQ(Marked(), Item(L"Jazz")) << "it does not hide the target";
            EXPECT_TRUE(
                TakeScreenshot({hWindow, hTip}, L"library-drag-count-" + std::to_wstring(lDpi * 100 / 96)));
            GiveUpDrag(user);
            user.WaitUntilGone(hTip);
        }
    });
}

TEST_F(LibraryCutMenu, CutRowsArePaleUntilEscOrAPaste)
{
    OpenOnRock([&](const User& user) {
        ClickRow(user, 1);
        AddRow(user, 3);
        user.Key('X', VK_CONTROL);
        user.Shot(hWindow, L"library-cut-rows");
        ClickRow(user, 5);
        EXPECT_LT(Contrast(1), Contrast(0) - 60);
        EXPECT_GT(Contrast(2), Contrast(0) - 20);
        user.Key(VK_ESCAPE);
        EXPECT_GT(Contrast(1), Contrast(0) - 20);
    });
}

} // namespace ravlo::test

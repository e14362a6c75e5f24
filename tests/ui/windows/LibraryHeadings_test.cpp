// SPDX-License-Identifier: MIT
// The headings of the library window's cut grid: sorting, columns.
#include "ui/library/GridColumns.h"
#include "ui/windows/LibraryFixture.h"

#include <uxtheme.h>

namespace ravlo::test
{

namespace
{

struct LibraryHeadings : FilledLibrary
{
    void ClickHeading(const User& user, int lColumn) const
    {
        const RECT heading = HeaderItem(lColumn);
        user.ClickAt(Header(), {(heading.left + heading.right) / 2, (heading.top + heading.bottom) / 2});
    }
    int SortMark(int lColumn) const
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        Send(Header(), HDM_GETITEMW, ListColumn(lColumn), &item);
        return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    }
};

} // namespace

TEST_F(LibraryHeadings, AClickSortsReversesAndReturnsToTheSchedule)
{
    OpenOnRock([&](const User& user) {
        const Texts colReversed(colRockArtists.rbegin(), colRockArtists.rend());
        ClickHeading(user, 2);
        EXPECT_EQ(SortMark(2), HDF_SORTUP);
        EXPECT_EQ(Status(0), L"Sorted by Artist");
        user.Shot(hWindow, L"library-sorted-up");
        ForgetClicks(user);
        ClickHeading(user, 2);
        EXPECT_EQ(Artists(), colReversed);
        EXPECT_EQ(SortMark(2), HDF_SORTDOWN);
        user.Shot(hWindow, L"library-sorted");
        ClickRow(user, 0);
        user.Key(VK_DOWN, VK_MENU);
        EXPECT_EQ(Order(L"Rock", 1), colRockArtists) << "a sorted list is not re-ordered";
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        ForgetClicks(user);
        ClickHeading(user, 2);
        EXPECT_EQ(Artists(), colRockArtists);
        EXPECT_EQ(SortMark(2), 0);
    });
}

TEST_F(LibraryHeadings, NoHeadingOfNumbersIsCutOff)
{
    Open([&](const User& user) {
        for (const bool bThemed : {true, false})
        {
            if (!bThemed)
                Run(user, [this] { ::SetWindowTheme(Header(), L"None", L"None"); });
            for (const int lDpi : {144, 192, 96})
            {
                user.ChangeResolution(hWindow, lDpi, 1000, 460);
                const auto lAround = static_cast<int>(Send(Header(), HDM_GETBITMAPMARGIN)) * 2 +
                                     (bThemed ? 0 : 2 * ::GetSystemMetrics(SM_CXEDGE));
                for (const int lColumn : {0, 1, 4, 6, 7})
                {
                    const wchar_t* const sHeader =
                        colGridColumns.at(static_cast<std::size_t>(lColumn)).sHeader;
                    EXPECT_GE(ColumnWidth(lColumn), Send(hGrid, LVM_GETSTRINGWIDTHW, 0, sHeader) + lAround)
                        << lDpi << " dpi, column " << lColumn << (bThemed ? "" : ", without a theme");
                }
            }
        }
    });
}

TEST_F(LibraryHeadings, TheirMenuShowsAColumnThatIsRememberedAndResetsAll)
{
    Open([&](const User& user) {
        user.RightClickAt(Header(), {HeaderItem(3).left + 20, 8});
        const Texts colItems = PopUpItems(user);
        EXPECT_EQ(colItems.front(), L"&Schedule order");
        EXPECT_EQ(colItems.back(), L" &Reset columns");
        user.Key('L');
        ShotWithBoxes(user, L"library-columns-menu");
        user.Keys({VK_DOWN, VK_RETURN}); // the second one
        user.Idle();
        EXPECT_EQ(Send(Header(), HDM_GETITEMCOUNT), 11);
        EXPECT_EQ(Cell(0, 10), L"next");
        EXPECT_GT(HeaderItem(1).left, HeaderItem(10).left) << "after the position";
        for (const int lDpi : {144, 192, 96})
        {
            user.ChangeResolution(hWindow, lDpi, 1000, 460);
            EXPECT_GE(ColumnWidth(10), Send(hGrid, LVM_GETSTRINGWIDTHW, 0, L"Next to play"));
            user.Shot(hWindow, L"library-further-column-" + std::to_wstring(lDpi * 100 / 96));
        }
    });
    OpenAgain([&](const User& user) {
        EXPECT_EQ(Cell(0, 10), L"next");
        user.RightClickAt(Header(), {HeaderItem(3).left + 20, 8});
        user.WaitFor(L"#32768");
        user.Keys({'L', 'R'});
        user.Idle();
        EXPECT_EQ(Send(Header(), HDM_GETITEMCOUNT), 10);
    });
}

} // namespace ravlo::test

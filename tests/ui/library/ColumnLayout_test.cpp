// SPDX-License-Identifier: MIT
#include "ui/library/ColumnLayout.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sDefault =
    L"1|Width|44|1|Order|1|1|Visible|1|2|Width|31|2|Order|2|2|Visible|1|3|Width|130|3|Order|3|3|Visible|1|"
    L"4|Width|143|4|Order|4|4|Visible|1|5|Width|43|5|Order|5|5|Visible|1|6|Width|154|6|Order|6|6|Visible|1|"
    L"7|Width|26|7|Order|7|7|Visible|1|8|Width|34|8|Order|8|8|Visible|1|9|Width|0|9|Order|9|9|Visible|1|";
constexpr const wchar_t* sTenth = L"10|Width|200|10|Order|10|10|Visible|1|";

std::vector<std::size_t> ShownOf(const ColumnLayout& layout)
{
    const auto colShown = layout.Shown();
    return {colShown.begin(), colShown.end()};
}

TEST(ColumnLayoutTest, TheColumnsHaveTheKeysAndHeadersHostsKnow)
{
    std::wstring sAll;
    for (const GridColumn& column : colGridColumns)
        sAll += std::wstring(column.sKey) + L"=" + column.sHeader + L" ";
    EXPECT_EQ(sAll, L"Pos=Pos ID=ID Artist=Artist Title=Title Dur=Dur Cat=Categories Lvl=Lvl Year=Year "
                    L"Opener=Opener Path=Path ");
}

TEST(ColumnLayoutTest, TheDefaultIsTheKnownTextAndATenthColumnOf200)
{
    EXPECT_EQ(ColumnLayout().Text(), std::wstring(sDefault) + sTenth);
    EXPECT_EQ(ColumnLayout(sDefault).Text(), ColumnLayout().Text());
}

TEST(ColumnLayoutTest, WithoutAnythingUsableItIsTheDefault)
{
    for (const wchar_t* sText :
         {L"", L"|", L"rubbish", L"1|Width", L"11|Width|5|", L"0|Width|5|", L"1|Colour|5|", L"1|Width|x|",
          L"x|Width|5|", L"-1|Order|3|", L"1|Width|99999999999|"})
        EXPECT_EQ(ColumnLayout(sText).Text(), ColumnLayout().Text()) << sText;
}

TEST(ColumnLayoutTest, WhatItSaysIsReadAgainAsItIs)
{
    ColumnLayout layout;
    layout.SetWidth(2, 77);
    layout.SetOrder({9, 0, 1, 2, 3, 4, 5, 6, 7, 8});
    const ColumnLayout again(layout.Text());
    EXPECT_EQ(again.Text(), layout.Text());
    EXPECT_EQ(again.At(2).lWidth, 77);
    EXPECT_EQ(again.At(9).lOrder, 1);
    EXPECT_EQ(again.At(0).lOrder, 2);
}

TEST(ColumnLayoutTest, UsableGroupsCountNextToUnusableOnes)
{
    const ColumnLayout layout(L"3|Width|91|99|Width|5|4|Nothing|1|5|Width|abc|9|VISIBLE|0|2|width|61|7");
    EXPECT_EQ(layout.At(2).lWidth, 91);
    EXPECT_EQ(layout.At(1).lWidth, 61);
    EXPECT_EQ(layout.At(4).lWidth, 43);
    EXPECT_FALSE(layout.At(8).bVisible);
    EXPECT_TRUE(layout.At(7).bVisible);
}

TEST(ColumnLayoutTest, WidthsAreBroughtIntoTheirRange)
{
    for (const auto& [sStored, lWidth] : {std::pair{L"-5", 0}, {L"0", 0}, {L"2000", 2000}, {L"2001", 2000}})
        EXPECT_EQ(ColumnLayout(std::wstring(L"1|Width|") + sStored + L"|").At(0).lWidth, lWidth);
    ColumnLayout layout;
    layout.SetWidth(0, -1);
    EXPECT_EQ(layout.At(0).lWidth, 0);
}

TEST(ColumnLayoutTest, PlacesAreSortedStablyAndAllDifferent)
{
    EXPECT_EQ(ShownOf(ColumnLayout(L"4|Order|1|")), (std::vector<std::size_t>{0, 3, 1, 2, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(ShownOf(ColumnLayout(L"1|Order|500|3|Order|-7|")),
              (std::vector<std::size_t>{2, 1, 3, 4, 5, 6, 7, 8, 9, 0}));
    const ColumnLayout layout(L"1|Order|3|2|Order|3|3|Order|3|");
    for (std::size_t place = 0; place < 10; ++place)
        EXPECT_EQ(layout.At(place).lOrder, static_cast<int>(place + 1));
}

TEST(ColumnLayoutTest, AnOrderThatNamesAColumnTwiceKeepsTheOthersBehind)
{
    ColumnLayout layout;
    layout.SetOrder({5, 5, 5, 5, 5, 5, 5, 5, 5, 99});
    EXPECT_EQ(ShownOf(layout), (std::vector<std::size_t>{5, 0, 1, 2, 3, 4, 6, 7, 8, 9}));
}

} // namespace
} // namespace ravlo::test

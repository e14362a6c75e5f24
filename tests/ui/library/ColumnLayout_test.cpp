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

// The ten columns that hosts know, in the order shown.
std::vector<std::size_t> ShownOf(const ColumnLayout& layout)
{
    std::vector<std::size_t> colShown = layout.Shown();
    std::erase_if(colShown, [](std::size_t column) { return column >= colGridColumns.size(); });
    return colShown;
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
    EXPECT_EQ(ShownOf(again), (std::vector<std::size_t>{9, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
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
    EXPECT_EQ(ShownOf(ColumnLayout(L"1|Order|3|2|Order|3|3|Order|3|")), ShownOf(ColumnLayout()));
    for (std::size_t place = 0; const std::size_t column : ColumnLayout(L"3|Order|9|").Shown())
        EXPECT_EQ(ColumnLayout(L"3|Order|9|").At(column).lOrder, static_cast<int>(++place));
}

TEST(ColumnLayoutTest, AnOrderOfSomeColumnsKeepsTheOthersInTheirPlaces)
{
    ColumnLayout layout;
    layout.SetOrder({5, 5, 3, 99});
    EXPECT_EQ(ShownOf(layout), (std::vector<std::size_t>{0, 1, 2, 5, 4, 3, 6, 7, 8, 9}));
}

TEST(ColumnLayoutTest, FurtherColumnsAreHiddenAndStoredApart)
{
    ColumnLayout layout;
    EXPECT_EQ(layout.FurtherText(),
              L"11|Width|130|11|Order|6|11|Visible|0|12|Width|110|12|Order|12|12|Visible|0|"
              L"13|Width|80|13|Order|2|13|Visible|0|14|Width|90|14|Order|13|14|Visible|0|");
    for (std::size_t column = 0; column < listColumnCount; ++column)
        EXPECT_EQ(layout.IsShown(column), column != 8 && column < 10) << column;
    layout.Show(12, true);
    layout.Show(2, false);
    layout.Show(8, true);
    layout.SetOrder({12, 0});
    const ColumnLayout again(layout.Text(), layout.FurtherText());
    EXPECT_EQ(again.Shown(), layout.Shown());
    EXPECT_EQ(again.Shown().front(), 12u);
    EXPECT_TRUE(again.IsShown(12) && again.IsShown(8) && !again.IsShown(2));
    EXPECT_EQ(again.At(8).lWidth, 60) << "a width to see it by";
    EXPECT_EQ(again.At(2).lWidth, 130);
}

TEST(ColumnLayoutTest, AProgramWithTenColumnsReadsAndKeepsItsPart)
{
    ColumnLayout layout;
    layout.Show(10, true);
    EXPECT_EQ(layout.Text(), ColumnLayout().Text());
    // It stores its ten; the further ones stay where they were.
    const ColumnLayout again(L"1|Order|10|10|Order|1|", layout.FurtherText());
    EXPECT_EQ(ShownOf(again), (std::vector<std::size_t>{9, 1, 2, 3, 4, 5, 6, 7, 8, 0}));
    EXPECT_EQ(again.At(10).lOrder, layout.At(10).lOrder);
    EXPECT_EQ(ColumnLayout(L"11|Width|5|", L"1|Width|5|").Text(), ColumnLayout().Text());
}

} // namespace
} // namespace ravlo::test

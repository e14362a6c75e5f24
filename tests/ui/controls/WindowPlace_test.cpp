// SPDX-License-Identifier: MIT
#include "ui/controls/WindowPlace.h"

#include <gtest/gtest.h>

#include <string>

namespace ravlo::test
{

TEST(WindowPlace, IsReadAsItWasWritten)
{
    for (const WindowPlace& place :
         {WindowPlace{10, -20, 640, 480, false}, WindowPlace{-1900, 0, 1, 99999, true}})
        EXPECT_EQ(ParseWindowPlace(TextOf(place)), place);
    EXPECT_EQ(TextOf({10, -20, 640, 480, false}), L"10,-20,640,480");
    EXPECT_EQ(TextOf({10, -20, 640, 480, true}), L"10,-20,640,480,max");
}

TEST(WindowPlace, TextsThatAreNoPlaceAreNothing)
{
    for (const std::wstring sText : {L"", L"1,2,3", L"1,2,3,4,5", L"1,2,3,4,max,max", L"a,2,3,4", L"1,2,0,4",
                                     L"1,2,3,-4", L"1,2,3,", L"1,2,3,100001", L"99999999999,2,3,4"})
        EXPECT_FALSE(ParseWindowPlace(sText)) << std::string(sText.begin(), sText.end());
}

TEST(WindowPlace, AWindowIsMovedAndShrunkToFitOnTheScreen)
{
    const ScreenBox work{0, 40, 1000, 700};
    const struct
    {
        const char* sRule;
        ScreenBox window;
        ScreenBox fitted;
    } table[] = {
        {"one inside stays", {10, 50, 200, 100}, {10, 50, 200, 100}},
        {"one beyond the right edge moves back", {950, 50, 200, 100}, {800, 50, 200, 100}},
        {"one above the work area moves down", {10, -5, 200, 100}, {10, 40, 200, 100}},
        {"one on a removed screen is brought back", {-3000, 5000, 200, 100}, {0, 640, 200, 100}},
        {"one larger than the screen shrinks", {-50, 0, 5000, 9000}, {0, 40, 1000, 700}},
    };
    for (const auto& row : table)
        EXPECT_EQ(FittedInto(work, row.window), row.fitted) << row.sRule;
}

TEST(WindowPlace, FirstWindowIsCentred)
{
    EXPECT_EQ(CentredOn({100, 200, 800, 600}, 400, 300), (ScreenBox{300, 350, 400, 300}));
}

} // namespace ravlo::test

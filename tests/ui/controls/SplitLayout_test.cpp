// SPDX-License-Identifier: MIT
#include "ui/controls/SplitLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <ostream>

namespace ravlo
{
// For test output, found by name.
void PrintTo(const TwipsRect& rect, std::ostream* pStream)
{
    *pStream << rect.lLeft << "," << rect.lTop << " " << rect.lWidth << "x" << rect.lHeight;
}
void PrintTo(const SplitState& state, std::ostream* pStream)
{
    *pStream << "position " << state.lPosition << ", snapped " << state.iSnapped;
}
} // namespace ravlo

namespace ravlo::test
{

namespace
{

using Integers = std::initializer_list<std::int16_t>;

} // namespace

TEST(SplitLayout, PositionSettlesByTheRules)
{
    const SplitSettings settings; // smallest pane 2000, bar 75
    const struct
    {
        const char* sRule;
        std::int32_t lExtent;
        SplitState state;
        std::int32_t lPosition;
    } table[] = {
        {"a position with room on both sides stays", 10000, {5000, 0}, 5000},
        {"the smallest first pane may be kept exactly", 10000, {2000, 0}, 2000},
        {"below it the position is clamped", 10000, {1999, 0}, 2000},
        {"the smallest second pane may be kept exactly", 10000, {8000, 0}, 8000},
        {"above it the position is clamped", 10000, {8001, 0}, 8000},
        {"a negative position is clamped", 10000, {-50000, 0}, 2000},
        {"a collapsed first pane puts a small position at 0", 10000, {500, 1}, 0},
        {"a position in the middle stays although the first pane is collapsed", 10000, {5000, 1}, 5000},
        {"a large one is clamped although the first pane is collapsed", 10000, {9000, 1}, 8000},
        {"a collapsed second pane puts the bar at the end", 10000, {5000, 2}, 10000 - 37},
        {"also from the near edge", 10000, {0, 2}, 10000 - 37},
        {"a panel of just two smallest panes clamps", 4000, {100, 0}, 2000},
        {"a smaller panel centres the bar", 3999, {100, 0}, 1999},
        {"also from the far side", 3999, {3900, 0}, 1999},
        {"but not with the first pane collapsed", 3999, {100, 1}, 0},
        {"nor with the second one collapsed", 3999, {100, 2}, 3999 - 37},
        {"another number than 0 to 2 lays out as 0", 10000, {100, 3}, 2000},
        {"a negative one, too", 10000, {100, -1}, 2000},
    };
    for (const auto& row : table)
    {
        const auto places = LayOutSplit(settings, row.state, row.lExtent, 600);
        ASSERT_TRUE(places) << row.sRule;
        EXPECT_EQ(places->lPosition, row.lPosition) << row.sRule;
    }
}

TEST(SplitLayout, CollapsedPanesAreHiddenAndTheOthersShown)
{
    for (const std::int16_t iSnapped : Integers{0, 1, 2, 7, -1})
    {
        const auto places = LayOutSplit({}, {3000, iSnapped}, 10000, 5000);
        EXPECT_EQ(places->bShowControl1, iSnapped != 1) << iSnapped;
        EXPECT_EQ(places->bShowControl2, iSnapped != 2) << iSnapped;
    }
}

TEST(SplitLayout, PanesShareTheExtent)
{
    const auto places = LayOutSplit({}, {3000, 0}, 10000, 5000);
    EXPECT_EQ(places->control1, (TwipsRect{0, 0, 3000 - 37, 5000}));
    EXPECT_EQ(places->bar, (TwipsRect{3000 - 37, 0, 75, 5000}));
    EXPECT_EQ(places->control2, (TwipsRect{3000 + 38, 0, 10000 - 3038, 5000}));
    SplitSettings settings;
    settings.bHorizontal = true;
    const auto rows = LayOutSplit(settings, {3000, 0}, 5000, 10000);
    EXPECT_EQ(rows->control1, (TwipsRect{0, 0, 5000, 3000 - 37}));
    EXPECT_EQ(rows->bar, (TwipsRect{0, 3000 - 37, 5000, 75}));
    EXPECT_EQ(rows->control2, (TwipsRect{0, 3000 + 38, 5000, 10000 - 3038}));
}

TEST(SplitLayout, NothingIsLaidOutWithoutAnExtent)
{
    SplitSettings settings;
    EXPECT_FALSE(LayOutSplit(settings, {3000, 0}, 0, 5000));
    EXPECT_FALSE(LayOutSplit(settings, {3000, 0}, -1, 5000));
    EXPECT_TRUE(LayOutSplit(settings, {3000, 0}, 1, 0));
    settings.bHorizontal = true;
    EXPECT_FALSE(LayOutSplit(settings, {3000, 0}, 5000, 0));
    EXPECT_TRUE(LayOutSplit(settings, {3000, 0}, 0, 1));
}

namespace
{

void ExpectConsistent(const SplitSettings& settings, const SplitState& state, std::int32_t lExtent)
{
    constexpr std::int32_t lAcross = 700;
    const std::int32_t lWidth = settings.bHorizontal ? lAcross : lExtent;
    const std::int32_t lHeight = settings.bHorizontal ? lExtent : lAcross;
    const auto start = [&](const TwipsRect& rect) { return settings.bHorizontal ? rect.lTop : rect.lLeft; };
    const auto length = [&](const TwipsRect& rect) {
        return settings.bHorizontal ? rect.lHeight : rect.lWidth;
    };

    const auto places = LayOutSplit(settings, state, lWidth, lHeight);
    ASSERT_TRUE(places);
    ASSERT_EQ(start(places->control1), 0);
    ASSERT_EQ(length(places->control1), std::max(0, start(places->bar)));
    ASSERT_EQ(start(places->control2), start(places->bar) + settings.iSplitterWidth);
    ASSERT_EQ(length(places->control2), std::max(0, lExtent - start(places->control2)));
    ASSERT_EQ(start(places->bar) + settings.iSplitterWidth / 2, places->lPosition);
    const auto again = LayOutSplit(settings, {places->lPosition, state.iSnapped}, lWidth, lHeight);
    ASSERT_EQ(again->lPosition, places->lPosition);
    const std::int32_t lMin = settings.iMinPanelSize;
    if (state.iSnapped == 0 && lMin >= 0 && lExtent >= 2 * lMin)
    {
        ASSERT_GE(places->lPosition, lMin);
        ASSERT_LE(places->lPosition, lExtent - lMin);
    }
}

} // namespace

// Over every combination of odd and even, small and large values: the pieces are adjacent, none has a
// negative size, a second layout changes nothing, and a bar that can keep both panes does.
TEST(SplitLayout, IsConsistentOverAGridOfValues)
{
    for (const bool bHorizontal : {false, true})
        for (const std::int16_t iMin : Integers{-300, 0, 1, 75, 999, 2000, 32767})
            for (const std::int16_t iWidth : Integers{0, 1, 74, 75, 600, 32767})
                for (const std::int16_t iSnapped : Integers{0, 1, 2})
                    for (const std::int32_t lExtent : {1, 37, 75, 1998, 3999, 4000, 4001, 12345, 200000})
                        for (const std::int32_t lPosition :
                             {-9999, 0, 1, 1999, 2000, 2001, 6172, 12000, 999999})
                            ExpectConsistent({iMin, bHorizontal, false, iWidth}, {lPosition, iSnapped},
                                             lExtent);
}

TEST(SplitLayout, ADropNearAnEdgeCollapsesThePaneThere)
{
    SplitSettings settings;
    settings.bSnapToEdge = true;
    const struct
    {
        const char* sRule;
        SplitState before;
        std::int32_t lDrop;
        SplitState after;
    } table[] = {
        {"a quarter of the smallest pane from the near edge collapses the first", {3000, 0}, 500, {500, 1}},
        {"one further does not", {3000, 0}, 501, {501, 0}},
        {"beyond the edge, too", {3000, 0}, -4000, {-4000, 1}},
        {"a quarter from the far edge collapses the second", {3000, 0}, 9500, {9925, 2}},
        {"one nearer does not", {3000, 0}, 9499, {9499, 0}},
        {"beyond the far edge, too", {3000, 0}, 20000, {9925, 2}},
        {"a drop in the middle shows both again", {0, 1}, 5000, {5000, 0}},
        {"also from the far side", {9962, 2}, 5000, {5000, 0}},
    };
    for (const auto& row : table)
        EXPECT_EQ(DropSplit(settings, row.before, row.lDrop, 10000), row.after) << row.sRule;
    settings.iMinPanelSize = 2003; // an integer quarter
    EXPECT_EQ(DropSplit(settings, {}, 500, 10000).iSnapped, 1);
    EXPECT_EQ(DropSplit(settings, {}, 501, 10000).iSnapped, 0);
}

TEST(SplitLayout, WithoutSnappingADropChangesThePositionAlone)
{
    for (const std::int32_t lDrop : {-10, 0, 400, 5000, 9999})
        for (const std::int16_t iSnapped : Integers{0, 1, 2})
            EXPECT_EQ(DropSplit({}, {3000, iSnapped}, lDrop, 10000), (SplitState{lDrop, iSnapped}));
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace ravlo
{

// The geometry of the split panel: pure functions of values. Lengths and positions are in twips and counted
// from the panel's top left corner; halves are integer halves.

// Which pane is collapsed. Any other number lays out as none.
enum Snap : std::int16_t
{
    eBothShown = 0,
    eControl1Collapsed = 1,
    eControl2Collapsed = 2,
};

struct SplitSettings
{
    std::int16_t iMinPanelSize = 2000; // what a pane keeps while both are shown
    bool bHorizontal = false;          // true: panes above each other; false: side by side
    bool bSnapToEdge = false;          // a pane collapses when the bar is dropped near an edge
    std::int16_t iSplitterWidth = 75;  // of the bar
};

struct SplitState
{
    std::int32_t lPosition = 0; // of the bar's centre line, from the top or left edge
    std::int16_t iSnapped = eBothShown;

    friend bool operator==(const SplitState&, const SplitState&) = default;
};

struct TwipsRect
{
    std::int32_t lLeft = 0;
    std::int32_t lTop = 0;
    std::int32_t lWidth = 0; // never negative
    std::int32_t lHeight = 0;

    friend bool operator==(const TwipsRect&, const TwipsRect&) = default;
};

struct SplitPlaces
{
    std::int32_t lPosition; // the settled one
    bool bShowControl1;
    bool bShowControl2;
    TwipsRect control1;
    TwipsRect bar;
    TwipsRect control2;
};

// Where everything is in a panel of that size. Nothing while the panel has no extent: a position
// must not be lost because a window is minimised or not sized yet.
std::optional<SplitPlaces> LayOutSplit(const SplitSettings& settings, const SplitState& state,
                                       std::int32_t lWidth, std::int32_t lHeight);

// The extent along which the panel is divided.
std::int32_t SplitExtent(const SplitSettings& settings, std::int32_t lWidth, std::int32_t lHeight);

// The top or left edge of a bar whose centre line is at that position.
std::int32_t BarStart(const SplitSettings& settings, std::int32_t lPosition);

// The panel's state after the bar was dropped with its centre line at that position.
SplitState DropSplit(const SplitSettings& settings, const SplitState& before, std::int32_t lPosition,
                     std::int32_t lExtent);

} // namespace ravlo

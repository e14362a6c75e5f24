// SPDX-License-Identifier: MIT
#include "ui/controls/SplitLayout.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::int32_t SettledPosition(const SplitSettings& settings, const SplitState& state, std::int32_t lExtent)
{
    const std::int32_t lMin = settings.iMinPanelSize;
    const std::int32_t lFarEnd = lExtent - settings.iSplitterWidth / 2;
    std::int32_t lPosition = state.lPosition;
    if (state.iSnapped == eControl2Collapsed)
        lPosition = lFarEnd;
    if (lExtent < 2 * lMin)
    {
        if (state.iSnapped == eControl1Collapsed)
            return 0;
        return state.iSnapped == eControl2Collapsed ? lFarEnd : lExtent / 2;
    }
    if (lPosition < lMin)
        return state.iSnapped == eControl1Collapsed ? 0 : lMin;
    if (lPosition > lExtent - lMin)
        return state.iSnapped == eControl2Collapsed ? lFarEnd : lExtent - lMin;
    return lPosition;
}

TwipsRect Slice(bool bHorizontal, std::int32_t lStart, std::int32_t lLength, std::int32_t lWidth,
                std::int32_t lHeight)
{
    const std::int32_t lSafe = std::max(0, lLength);
    return bHorizontal ? TwipsRect{0, lStart, lWidth, lSafe} : TwipsRect{lStart, 0, lSafe, lHeight};
}

} // namespace

std::int32_t SplitExtent(const SplitSettings& settings, std::int32_t lWidth, std::int32_t lHeight)
{
    return settings.bHorizontal ? lHeight : lWidth;
}

std::int32_t BarStart(const SplitSettings& settings, std::int32_t lPosition)
{
    return lPosition - settings.iSplitterWidth / 2;
}

std::optional<SplitPlaces> LayOutSplit(const SplitSettings& settings, const SplitState& state,
                                       std::int32_t lWidth, std::int32_t lHeight)
{
    const std::int32_t lExtent = SplitExtent(settings, lWidth, lHeight);
    if (lExtent <= 0)
        return std::nullopt;
    SplitPlaces places{};
    places.lPosition = SettledPosition(settings, state, lExtent);
    places.bShowControl1 = state.iSnapped != eControl1Collapsed;
    places.bShowControl2 = state.iSnapped != eControl2Collapsed;
    const std::int32_t lStart = BarStart(settings, places.lPosition);
    const std::int32_t lEnd = lStart + settings.iSplitterWidth;
    const auto slice = [&](std::int32_t lFrom, std::int32_t lLength) {
        return Slice(settings.bHorizontal, lFrom, lLength, lWidth, lHeight);
    };
    places.control1 = slice(0, lStart);
    places.bar = slice(lStart, settings.iSplitterWidth);
    places.control2 = slice(lEnd, lExtent - lEnd);
    return places;
}

SplitState DropSplit(const SplitSettings& settings, const SplitState& before, std::int32_t lPosition,
                     std::int32_t lExtent)
{
    if (!settings.bSnapToEdge)
        return {lPosition, before.iSnapped};
    const std::int32_t lNear = settings.iMinPanelSize / 4;
    if (lPosition <= lNear)
        return {lPosition, eControl1Collapsed};
    if (lPosition >= lExtent - lNear)
        return {lExtent - settings.iSplitterWidth, eControl2Collapsed};
    return {lPosition, eBothShown};
}

} // namespace ravlo

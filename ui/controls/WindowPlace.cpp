// SPDX-License-Identifier: MIT
#include "ui/controls/WindowPlace.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ravlo
{

namespace
{

constexpr std::int32_t lLargest = 100'000; // pixels; far beyond every screen, far below any overflow

std::optional<std::int32_t> Pixels(std::wstring_view sText)
{
    const std::optional<double> dValue = NumericValue(sText);
    const std::optional<std::int32_t> lValue = dValue ? ToLong(*dValue) : std::nullopt;
    if (!lValue || *lValue < -lLargest || *lValue > lLargest)
        return std::nullopt;
    return lValue;
}

} // namespace

std::wstring TextOf(const WindowPlace& place)
{
    return DecimalText(place.lLeft) + L"," + DecimalText(place.lTop) + L"," + DecimalText(place.lWidth) +
           L"," + DecimalText(place.lHeight) + (place.bMaximised ? L",max" : L"");
}

std::optional<WindowPlace> ParseWindowPlace(std::wstring_view sText)
{
    const std::vector<std::wstring> colPieces = Split(sText, L",");
    if (colPieces.size() < 4 || colPieces.size() > 5 || (colPieces.size() == 5 && colPieces[4] != L"max"))
        return std::nullopt;
    std::array<std::int32_t, 4> lValues{};
    for (std::size_t i = 0; i < lValues.size(); ++i)
    {
        const std::optional<std::int32_t> lValue = Pixels(colPieces[i]);
        if (!lValue)
            return std::nullopt;
        lValues[i] = *lValue;
    }
    if (lValues[2] <= 0 || lValues[3] <= 0)
        return std::nullopt;
    return WindowPlace{lValues[0], lValues[1], lValues[2], lValues[3], colPieces.size() == 5};
}

ScreenBox FittedInto(const ScreenBox& work, const ScreenBox& window)
{
    ScreenBox box = window;
    box.lWidth = std::min(window.lWidth, work.lWidth);
    box.lHeight = std::min(window.lHeight, work.lHeight);
    box.lLeft = std::clamp(window.lLeft, work.lLeft, work.lLeft + work.lWidth - box.lWidth);
    box.lTop = std::clamp(window.lTop, work.lTop, work.lTop + work.lHeight - box.lHeight);
    return box;
}

ScreenBox CentredOn(const ScreenBox& around, std::int32_t lWidth, std::int32_t lHeight)
{
    return {around.lLeft + (around.lWidth - lWidth) / 2, around.lTop + (around.lHeight - lHeight) / 2, lWidth,
            lHeight};
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// Where a window was when it was closed: the place in screen pixels, the size in pixels at 96 dpi, so that
// it keeps its look on a screen of another resolution.
struct WindowPlace
{
    std::int32_t lLeft = 0;
    std::int32_t lTop = 0;
    std::int32_t lWidth = 0;
    std::int32_t lHeight = 0;
    bool bMaximised = false;

    friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

// "left,top,width,height", followed by ",max" for a maximised window.
std::wstring TextOf(const WindowPlace& place);
// Nothing for any other text, and for a size that no window can have.
std::optional<WindowPlace> ParseWindowPlace(std::wstring_view sText);

// A box on the screen, in pixels.
struct ScreenBox
{
    std::int32_t lLeft = 0;
    std::int32_t lTop = 0;
    std::int32_t lWidth = 0;
    std::int32_t lHeight = 0;

    friend bool operator==(const ScreenBox&, const ScreenBox&) = default;
};

// The box moved, and shrunk where it must, so that it lies whole inside the screen's work area.
ScreenBox FittedInto(const ScreenBox& work, const ScreenBox& window);
// A box of that size in the middle of another one.
ScreenBox CentredOn(const ScreenBox& around, std::int32_t lWidth, std::int32_t lHeight);

} // namespace ravlo

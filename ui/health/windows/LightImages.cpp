// SPDX-License-Identifier: MIT
#include "ui/health/windows/LightImages.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

namespace ravlo
{

namespace
{

constexpr std::uint32_t lGreen = 0x2E8B3D;
constexpr std::uint32_t lYellow = 0xF2B01E;
constexpr std::uint32_t lRed = 0xC8352B;
constexpr std::uint32_t lGrey = 0x8A8F98;
constexpr std::uint32_t lWhite = 0xFFFFFF;
constexpr std::uint32_t lBlack = 0x202020;

std::optional<std::uint32_t> GreenAt(double dX, double dY)
{
    if (std::min(DistanceFromStroke(dX, dY, {4.6, 8.2, 7, 10.7}),
                 DistanceFromStroke(dX, dY, {7, 10.7, 11.6, 5.6})) < 1.1)
        return lWhite;
    return std::hypot(dX - 8, dY - 8) < 6.8 ? std::optional(lGreen) : std::nullopt;
}

std::optional<std::uint32_t> YellowAt(double dX, double dY)
{
    if (DistanceFromStroke(dX, dY, {8, 6.2, 8, 9.6}) < 1 || std::hypot(dX - 8, dY - 12.1) < 1.1)
        return lBlack;
    const bool bInside = dY > 1.4 && dY < 14.4 && std::abs(dX - 8) < (dY - 0.8) * 0.53;
    return bInside ? std::optional(lYellow) : std::nullopt;
}

std::optional<std::uint32_t> RedAt(double dX, double dY)
{
    if (std::min(DistanceFromStroke(dX, dY, {5.6, 5.6, 10.4, 10.4}),
                 DistanceFromStroke(dX, dY, {10.4, 5.6, 5.6, 10.4})) < 1.1)
        return lWhite;
    const double dFromX = std::abs(dX - 8);
    const double dFromY = std::abs(dY - 8);
    const bool bInside = std::max(dFromX, dFromY) < 6.7 && dFromX + dFromY < 9.5;
    return bInside ? std::optional(lRed) : std::nullopt;
}

std::optional<std::uint32_t> NoneAt(double dX, double dY)
{
    return DistanceFromStroke(dX, dY, {5, 8, 11, 8}) < 1.2 ? std::optional(lGrey) : std::nullopt;
}

} // namespace

UniqueImageList LightImages(int lSize)
{
    UniqueImageList hImages(::ImageList_Create(lSize, lSize, ILC_COLOR32, 4, 0));
    for (const auto colourAt : {&GreenAt, &YellowAt, &RedAt, &NoneAt}) // as LightImage
        AddSmoothImage(hImages.get(), colourAt, lSize);
    return hImages;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ui/controls/windows/SmoothImage.h"

#include <algorithm>
#include <cmath>

namespace ravlo
{

namespace
{

constexpr double dUnits = 16;

// One pixel: premultiplied 0xAARRGGBB.
std::uint32_t Pixel(const ColourAt& colourAt, int lX, int lY, int lSize)
{
    constexpr int lFine = 4;
    std::array<std::uint32_t, 4> sums{}; // alpha, red, green, blue
    for (int i = 0; i < lFine * lFine; ++i)
    {
        const double dX = (lX + (i % lFine + 0.5) / lFine) * dUnits / lSize;
        const double dY = (lY + (static_cast<double>(i / lFine) + 0.5) / lFine) * dUnits / lSize;
        const std::optional<std::uint32_t> lColour = colourAt(dX, dY);
        if (!lColour)
            continue;
        sums[0] += 255;
        sums[1] += *lColour >> 16 & 0xFF;
        sums[2] += *lColour >> 8 & 0xFF;
        sums[3] += *lColour & 0xFF;
    }
    std::uint32_t lPixel = 0;
    for (const std::uint32_t lSum : sums)
        lPixel = lPixel << 8 | lSum / (lFine * lFine);
    return lPixel;
}

} // namespace

void AddSmoothImage(HIMAGELIST hImages, const ColourAt& colourAt, int lSize)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = lSize;
    info.bmiHeader.biHeight = -lSize; // from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pBits = nullptr;
    const HBITMAP hBitmap = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
    if (!hBitmap)
        return;
    auto* pPixels = static_cast<std::uint32_t*>(pBits);
    for (int lY = 0; lY < lSize; ++lY)
        for (int lX = 0; lX < lSize; ++lX)
            *pPixels++ = Pixel(colourAt, lX, lY, lSize);
    ::ImageList_Add(hImages, hBitmap, nullptr);
    ::DeleteObject(hBitmap);
}

double DistanceFromStroke(double dX, double dY, std::array<double, 4> stroke)
{
    const double dWidth = stroke[2] - stroke[0];
    const double dHeight = stroke[3] - stroke[1];
    const double dAlong = std::clamp(((dX - stroke[0]) * dWidth + (dY - stroke[1]) * dHeight) /
                                         (dWidth * dWidth + dHeight * dHeight),
                                     0.0, 1.0);
    return std::hypot(dX - stroke[0] - dAlong * dWidth, dY - stroke[1] - dAlong * dHeight);
}

} // namespace ravlo

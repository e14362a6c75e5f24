// SPDX-License-Identifier: MIT
#include "ui/library/windows/TickImages.h"

#include "ui/controls/windows/Colours.h"
#include "ui/controls/windows/Dpi.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>

namespace ravlo
{

namespace
{

constexpr int lBoxSize = 13; // at 96 dpi
constexpr int lImageSize = 16;
constexpr int lEdgePercent = 60; // of the text's colour

std::uint32_t Rgb(COLORREF colour)
{
    return static_cast<std::uint32_t>(GetRValue(colour)) << 16 |
           static_cast<std::uint32_t>(GetGValue(colour)) << 8 | GetBValue(colour);
}

// A box in an image of so many pixels. Its edges are on whole pixels, so that they are sharp.
class Box
{
public:
    Box(int lSize, int lDpi) : m_dUnit(lImageSize / static_cast<double>(lSize))
    {
        const int lBox = Scaled(lBoxSize, lDpi);
        m_lFirst = (lSize - lBox) / 2;
        m_lEnd = m_lFirst + lBox;
        m_lLine = std::max(Scaled(1, lDpi), 1);
    }

    // Whether a point of the drawing is in the box, so many pixels away from its edges.
    bool Contains(double dX, double dY, int lMargin = 0) const
    {
        const double dFirst = (m_lFirst + lMargin) * m_dUnit;
        const double dEnd = (m_lEnd - lMargin) * m_dUnit;
        return std::min(dX, dY) > dFirst && std::max(dX, dY) < dEnd;
    }
    // Inside of its edge line.
    bool IsInside(double dX, double dY) const { return Contains(dX, dY, m_lLine); }
    // In the smaller square that means some.
    bool IsInMiddle(double dX, double dY) const
    {
        return Contains(dX, dY, (m_lEnd - m_lFirst) / 3 - m_lLine / 2);
    }

private:
    double m_dUnit;
    int m_lFirst = 0;
    int m_lEnd = 0;
    int m_lLine = 1;
};

bool InTick(double dX, double dY)
{
    constexpr double dHalfWidth = 0.95;
    return std::min(DistanceFromStroke(dX, dY, {4.6, 8.2, 7, 10.6}),
                    DistanceFromStroke(dX, dY, {7, 10.6, 11.6, 5.4})) < dHalfWidth;
}

} // namespace

UniqueImageList TickImages(int lDpi)
{
    const int lSize = Scaled(lImageSize, lDpi);
    const Box cBox(lSize, lDpi);
    const COLORREF window = ::GetSysColor(COLOR_WINDOW);
    const COLORREF text = ::GetSysColor(COLOR_WINDOWTEXT);
    const auto Drawn = [&](const std::function<bool(double dX, double dY)>& inMark) {
        return [&, inMark](double dX, double dY) -> std::optional<std::uint32_t> {
            if (!cBox.Contains(dX, dY))
                return std::nullopt;
            if (!cBox.IsInside(dX, dY))
                return Rgb(Mixed(text, window, lEdgePercent));
            return Rgb(inMark(dX, dY) ? text : window);
        };
    };
    UniqueImageList hImages(::ImageList_Create(lSize, lSize, ILC_COLOR32, 4, 0));
    const auto Add = [&](const ColourAt& colourAt) { AddSmoothImage(hImages.get(), colourAt, lSize); };
    Add([](double, double) { return std::nullopt; });
    Add(Drawn([](double, double) { return false; }));
    Add(Drawn(&InTick));
    Add(Drawn([&](double dX, double dY) { return cBox.IsInMiddle(dX, dY); }));
    return hImages;
}

} // namespace ravlo

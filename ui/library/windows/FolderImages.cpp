// SPDX-License-Identifier: MIT
#include "ui/library/windows/FolderImages.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ravlo
{

namespace
{

struct Corner
{
    double x;
    double y;
};
struct Shape
{
    std::vector<Corner> colCorners;
    std::uint32_t lColor; // 0xRRGGBB
};

constexpr std::uint32_t lEdge = 0xB8862B;
constexpr std::uint32_t lBack = 0xE0A83C;
constexpr std::uint32_t lFront = 0xF7CB5E;
constexpr std::uint32_t lPaper = 0xFFFFFF;
constexpr std::uint32_t lPaperEdge = 0x9AA7B4;

// Closed: tab, body and a front. Open: the front leans out and a sheet of paper shows behind it.
std::vector<Shape> Drawing(FolderImage eImage)
{
    if (eImage == eFolderClosed)
        return {{{{1, 3}, {6.5, 3}, {8, 4.5}, {15, 4.5}, {15, 14}, {1, 14}}, lEdge},
                {{{1.8, 3.8}, {6.2, 3.8}, {7.7, 5.3}, {14.2, 5.3}, {14.2, 13.2}, {1.8, 13.2}}, lBack},
                {{{1.8, 6.3}, {14.2, 6.3}, {14.2, 13.2}, {1.8, 13.2}}, lFront}};
    return {{{{1, 3}, {6.5, 3}, {8, 4.5}, {13.5, 4.5}, {13.5, 14}, {1, 14}}, lEdge},
            {{{1.8, 3.8}, {6.2, 3.8}, {7.7, 5.3}, {12.7, 5.3}, {12.7, 13.2}, {1.8, 13.2}}, lBack},
            {{{3.2, 5.6}, {11.8, 5.6}, {11.8, 11}, {3.2, 11}}, lPaperEdge},
            {{{3.9, 6.3}, {11.1, 6.3}, {11.1, 11}, {3.9, 11}}, lPaper},
            {{{3.6, 8}, {16, 8}, {13.6, 14}, {1, 14}}, lEdge},
            {{{4.2, 8.8}, {14.9, 8.8}, {13, 13.2}, {2.2, 13.2}}, lFront}};
}

bool Contains(const Shape& shape, Corner point)
{
    bool bInside = false;
    const std::vector<Corner>& corners = shape.colCorners;
    for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++)
    {
        const Corner& a = corners[i];
        const Corner& b = corners[j];
        if ((a.y > point.y) != (b.y > point.y) && point.x < (b.x - a.x) * (point.y - a.y) / (b.y - a.y) + a.x)
            bInside = !bInside;
    }
    return bInside;
}

void AddImage(HIMAGELIST hImages, FolderImage eImage, int lSize)
{
    const auto ColourOf = [colShapes = Drawing(eImage)](double dX,
                                                        double dY) -> std::optional<std::uint32_t> {
        for (auto shape = colShapes.rbegin(); shape != colShapes.rend(); ++shape)
            if (Contains(*shape, {dX, dY}))
                return shape->lColor;
        return std::nullopt;
    };
    AddSmoothImage(hImages, ColourOf, lSize);
}

} // namespace

UniqueImageList FolderImages(int lSize)
{
    UniqueImageList hImages(::ImageList_Create(lSize, lSize, ILC_COLOR32, 2, 0));
    AddImage(hImages.get(), eFolderClosed, lSize);
    AddImage(hImages.get(), eFolderOpen, lSize);
    return hImages;
}

UniqueIcon FolderIcon(int lSize)
{
    return UniqueIcon(::ImageList_GetIcon(FolderImages(lSize).get(), eFolderOpen, ILD_NORMAL));
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

using UniqueImageList = UniqueHandle<HIMAGELIST, &::ImageList_Destroy>;

// The colour (0xRRGGBB) at a point of a drawing of 16 by 16 units; nothing outside its shapes.
using ColourAt = std::function<std::optional<std::uint32_t>(double dX, double dY)>;

// Adds a drawing to an image list, lSize pixels wide and high, with smooth edges.
void AddSmoothImage(HIMAGELIST hImages, const ColourAt& colourAt, int lSize);

// The distance of a point from a straight stroke, which is given by its ends: x and y of one, then of the
// other.
double DistanceFromStroke(double dX, double dY, std::array<double, 4> stroke);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/SmoothImage.h"

namespace ravlo
{

// The symbols of the lights, told apart by shape as well as by colour: a green disc with a tick, a yellow
// triangle with an exclamation mark, a red octagon with a cross, a grey bar for a level that is not asked.
enum LightImage : int
{
    eLightGreen,
    eLightYellow,
    eLightRed,
    eLightNone,
};

// Drawn for that many pixels.
UniqueImageList LightImages(int lSize);

} // namespace ravlo

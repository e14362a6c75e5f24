// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/SmoothImage.h"

namespace ravlo
{

// The state images of the category tree's check boxes: a blank one, which tree views never show, then those
// of CategoryTreePresenter::Ticks in its order. In the colours of a window, on nothing: the row shows around
// the box. Drawn rather than taken from the theme, whose boxes do not have every size.
UniqueImageList TickImages(int lDpi);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/windows/FolderImages.h"

namespace ravlo
{

// The state images of the category tree's check boxes: a blank one, which tree views never show, then those
// of CategoryTreePresenter::Ticks in its order. Drawn as the system draws check boxes, for that scale.
UniqueImageList TickImages(HWND hTree, int lDpi);

} // namespace ravlo

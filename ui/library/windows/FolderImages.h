// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/SmoothImage.h"

namespace ravlo
{

using UniqueIcon = UniqueHandle<HICON, &::DestroyIcon>;

// ImgTv: the images of the category tree's nodes, drawn for that many pixels.
enum FolderImage : int
{
    eFolderClosed,
    eFolderOpen,
};
UniqueImageList FolderImages(int lSize);
// The open one as the icon of a window. Null when the system has none left.
UniqueIcon FolderIcon(int lSize);

} // namespace ravlo

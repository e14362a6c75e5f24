// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

// ImgTv: the images of the category tree's nodes, drawn for that many pixels.
enum FolderImage : int
{
    eFolderClosed,
    eFolderOpen,
};
HIMAGELIST FolderImages(int lSize);

} // namespace ravlo

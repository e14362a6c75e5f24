// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/PopUpItem.h"

#include <windows.h>

namespace ravlo
{

// Shows a pop-up menu at a point of the screen and pumps messages until it is closed. Returns the item that
// the user chose; null when the menu was dismissed.
const PopUpItem* ChooseFromMenu(HWND hWindow, POINT onScreen, const PopUpMenu& menu);

} // namespace ravlo

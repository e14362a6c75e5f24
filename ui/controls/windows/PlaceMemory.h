// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserSettings.h"

#include <string>
#include <windows.h>

namespace ravlo
{

// Remembers a top-level window's size and place in the user's settings (application "RavloScheduler", section
// "Settings", key sKey).

// Puts a hidden window where it was last, or with the given size in the middle of its owner or screen,
// whole on the screen in any case. Returns how it is to be shown (a SW_ number).
int RestorePlace(HWND hWindow, const UserSettings& cUserSettings, const std::wstring& sKey, SIZE size);
// Gives a window another size at its place, moved and shrunk as far as it must be to lie whole on its screen.
void ResizeOnScreen(HWND hWindow, SIZE size);
void RememberPlace(HWND hWindow, UserSettings& cUserSettings, const std::wstring& sKey);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace ravlo
{

// Returns the text of a window or control of this process; empty for no window.
std::wstring TextIn(HWND hWindow);

// Writes the windows as the screen shows them, the last one on top, to a PNG file. False when it cannot be
// written.
[[nodiscard]] bool WritePng(const std::vector<HWND>& windows, const std::wstring& sFile);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>

namespace ravlo
{

// What a window or control of this process says; nothing for no window.
std::wstring TextIn(HWND hWindow);

} // namespace ravlo

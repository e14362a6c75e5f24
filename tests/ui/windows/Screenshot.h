// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace ravlo::test
{

// Writes the visible part of a window to <build folder>/screenshots/<sName>.png, as an artefact to look at.
// False when it could not be written.
bool TakeScreenshot(HWND hWindow, const std::wstring& sName);
// Several windows as they lie on each other, the last one on top.
bool TakeScreenshot(const std::vector<HWND>& hWindows, const std::wstring& sName);

// Gives captions, menus, message boxes and controls the font of a current desktop, for this session.
void LookLikeACurrentDesktop();

} // namespace ravlo::test

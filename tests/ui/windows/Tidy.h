// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace ravlo::test
{

// What is wrong with the look of a window's visible controls, one line each: a control that reaches out of
// its parent, two that cover each other, or a text that does not fit its control.
std::vector<std::string> Untidiness(HWND hWindow);

// The focusable controls that a screen reader could not name: no text of their own and no label before them.
std::vector<std::string> Nameless(HWND hWindow);

} // namespace ravlo::test

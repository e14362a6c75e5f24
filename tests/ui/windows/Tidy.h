// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>
#include <windows.h>

namespace ravlo::test
{

using Faults = std::vector<std::string>;

// In the parent's client coordinates.
RECT PlaceInParent(HWND hWindow);

// What is wrong with the look of a window's visible controls, one line each: a control that reaches out of
// its parent, two that cover each other, or a text that does not fit its control.
Faults Untidiness(HWND hWindow);

// The focusable controls without a name for screen readers: no text of their own and no label before them.
Faults Nameless(HWND hWindow);

// Opens a window 15 times (50 with RAVLO_LONG), which a timer's procedure uses and closes, and expects no
// more handles afterwards.
void ExpectNoHandlesLeft(const std::function<void()>& open, TIMERPROC useAndClose);

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// Behind the selected rows of a control without the focus: a tint of the selection's own colour, since the
// system's grey on white is hardly to be seen.
inline COLORREF UnfocusedSelection() noexcept
{
    constexpr int lShare = 30; // of the selection's colour, in hundredths
    const COLORREF lSelection = ::GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF lWindow = ::GetSysColor(COLOR_WINDOW);
    const auto Mix = [](int lLeft, int lRight) { return (lLeft * lShare + lRight * (100 - lShare)) / 100; };
    return RGB(Mix(GetRValue(lSelection), GetRValue(lWindow)), Mix(GetGValue(lSelection), GetGValue(lWindow)),
               Mix(GetBValue(lSelection), GetBValue(lWindow)));
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"

#include <windows.h>

namespace ravlo
{

// While one lives, windows that this thread creates know the resolution of the monitor they are on and
// receive WM_DPICHANGED when it changes. Where the system offers less, they keep the resolution they open
// with.
class DpiAwareness
{
public:
    DpiAwareness() noexcept;
    ~DpiAwareness();
    DpiAwareness(const DpiAwareness&) = delete;
    DpiAwareness& operator=(const DpiAwareness&) = delete;

private:
    HANDLE m_hBefore; // null when nothing was changed
};

// Dots per inch; 96 is 100 %.
int DpiOf(HWND hWindow) noexcept;

// Lengths at 96 dpi and in twips, in the pixels of another resolution and back.
inline int Scaled(int lAt96, int lDpi) noexcept { return ::MulDiv(lAt96, lDpi, 96); }
inline int Unscaled(int lPixels, int lDpi) noexcept { return ::MulDiv(lPixels, 96, lDpi); }
inline int PixelsOf(int lTwips, int lDpi) noexcept { return ::MulDiv(lTwips, lDpi, 1440); }
inline int TwipsOf(int lPixels, int lDpi) noexcept { return ::MulDiv(lPixels, 1440, lDpi); }

// The system's message font, at a resolution.
UniqueFont MessageFont(int lDpi);
// The symbol font of arrows and ticks, as high as the message font.
UniqueFont SymbolFont(int lDpi);

// Where the system wants a window whose resolution has changed; lParam as WM_DPICHANGED brings it.
void TakeSuggestedPlace(HWND hWindow, LPARAM lParam) noexcept;

// The size of a window whose client area has that size.
SIZE WindowSizeFor(HWND hWindow, SIZE client, int lDpi) noexcept;

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// A colour between two, with so many percent of the first one.
inline COLORREF Mixed(COLORREF front, COLORREF back, int lPercent) noexcept
{
    const auto Part = [&](BYTE lFront, BYTE lBack) {
        return static_cast<BYTE>((lFront * lPercent + lBack * (100 - lPercent)) / 100);
    };
    return RGB(Part(GetRValue(front), GetRValue(back)), Part(GetGValue(front), GetGValue(back)),
               Part(GetBValue(front), GetBValue(back)));
}

} // namespace ravlo

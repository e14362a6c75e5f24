// SPDX-License-Identifier: MIT
#include "host/client/WindowText.h"

namespace ravlo
{

std::wstring TextIn(HWND hWindow)
{
    std::wstring sText(static_cast<std::size_t>(::GetWindowTextLengthW(hWindow)) + 1, L'\0');
    sText.resize(
        static_cast<std::size_t>(::GetWindowTextW(hWindow, sText.data(), static_cast<int>(sText.size()))));
    return sText;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace ravlo
{

// Whether a file name is that of a device of Windows (CON, NUL, COM1 ...), with any extension and in any
// case. Opening one never returns where the device waits for input.
bool IsDeviceName(std::wstring_view sName) noexcept;

} // namespace ravlo

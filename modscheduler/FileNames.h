// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// Whether a name can be the name of a file when an extension follows it. Not possible: an empty name,
// separators, * ? : < > | ", control characters, and the platform's device names (CON, NUL, COM1 ...), which
// stay devices with any extension. Dots are fine anywhere, since an extension follows.
bool CanBeFileName(std::wstring_view sName) noexcept;

// Throws error 52, with the name in its description, when it cannot be one.
void RequireFileName(const std::wstring& sName);

} // namespace ravlo

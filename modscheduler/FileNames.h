// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// Whether a name from outside can be the name of a file when an extension follows it. Refused are separators,
// * ? : < > | ", control characters, and the platform's device names (CON, NUL, COM1 ...), which stay devices
// with any extension. Dots are fine anywhere, since an extension always follows. An empty name is
// refused.
bool CanBeFileName(std::wstring_view sName) noexcept;

// Throws error 52, with a description that contains the name, when it cannot be one.
void RequireFileName(const std::wstring& sName);

} // namespace ravlo

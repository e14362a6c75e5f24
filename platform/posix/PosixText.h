// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// Between paths as hosts write them (backslashes) and as this system does (slashes, UTF-8).
// Throws 52 for a path this system cannot express: an empty one, or one with a character that is none.
std::string NativePathOf(const std::wstring& sPath);
std::wstring HostPathOf(std::string_view bytes);

} // namespace ravlo

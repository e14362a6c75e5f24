// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/PathKind.h"

#include <cstdint>
#include <string>
#include <windows.h>
#undef ReplaceFile // this system's own function is another one

namespace ravlo
{

// The error number that a host's own file statements report for a system error.
std::int32_t ErrorNumberOf(DWORD lError);

// The path in the system's form, of any length. Throws 52 for a path that names no file: an empty one, a
// pattern, a stream, a device, or one that is too long.
std::wstring NativePathOf(const std::wstring& sPath);

PathKind KindOfNative(const std::wstring& sNative);
// None also for what NativePathOf refuses.
PathKind KindOf(const std::wstring& sPath);
PathKind KindOfAttributes(DWORD lAttributes);

} // namespace ravlo

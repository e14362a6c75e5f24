// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <windows.h>
#undef ReplaceFile // this system's own function is another one

namespace ravlo
{

// The number that a host's own file statements report for an error of the system.
std::int32_t ErrorNumberOf(DWORD lError);

// The path as the system needs it, of any length. Throws 52 for what names no file: an empty path, a pattern,
// a stream, a device, a name or path that is too long.
std::wstring NativePathOf(const std::wstring& sPath);

// What is at a path.
enum class Kind
{
    None,
    File,
    Folder,
    Unknown, // cannot be looked at
};
Kind KindOfNative(const std::wstring& sNative);
// None also for what NativePathOf refuses.
Kind KindOf(const std::wstring& sPath);
Kind KindOfAttributes(DWORD lAttributes);

} // namespace ravlo

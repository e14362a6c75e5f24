// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <windows.h>
#undef ReplaceFile // this system's own function is another one

namespace ravlo
{

// The number that a host's own file statements give for an error of the system.
std::int32_t ErrorNumberOf(DWORD lError);

// The path as the system takes it, however long. Throws 52 for what names no file: an empty path, a pattern,
// a stream, a device, a name or path that is too long.
std::wstring NativePathOf(const std::wstring& sPath);

// What a path leads to.
enum class Kind
{
    None,
    File,
    Folder,
    Unknown, // it could not be looked at
};
Kind KindOfNative(const std::wstring& sNative);
// None too for what NativePathOf refuses.
Kind KindOf(const std::wstring& sPath);
Kind KindOfAttributes(DWORD lAttributes);

} // namespace ravlo

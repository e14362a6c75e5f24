// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/PathKind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the media database and its imports need of the disk. Paths are texts in the system's own form and may
// be of any length. (std::filesystem stops at 259 characters on Windows, and brings the standard streams with
// it.)
namespace ravlo::disk
{

// The whole path, without "." and "..", and without a separator at its end. Throws 52 for a text that can
// name no file: an empty one, or one with a NUL or half a surrogate pair.
std::wstring FullPath(const std::wstring& sPath);

// The whole path of what a file in a folder names: relative to the folder, unless it is a whole path itself.
// Throws as FullPath. Precondition: the folder's path is whole.
std::wstring PathIn(const std::wstring& sFolder, const std::wstring& sName);

// The folder of a whole path; the name of a path without its extension; the extension with its dot, or "".
std::wstring FolderOf(const std::wstring& sPath);
std::wstring StemOf(const std::wstring& sPath);
std::wstring ExtensionOf(const std::wstring& sPath);

// What is at a path, links followed; never Folder for what cannot be looked at.
PathKind KindOf(const std::wstring& sPath);

struct Entry
{
    std::wstring sPath;
    bool bFolder = false;
    bool bLink = false;
};

// What is directly in a folder, in no order; nothing when it cannot be listed. Precondition: the path is
// whole.
std::optional<std::vector<Entry>> Entries(const std::wstring& sFolder);

struct Stamp
{
    std::int64_t modified = 0; // milliseconds since 1970, UTC
    std::int64_t size = 0;

    bool operator==(const Stamp&) const = default;
};

// Nothing when the file cannot be looked at.
std::optional<Stamp> StampOf(const std::wstring& sPath);

// The whole content of a file. Throws 53 when there is none, 75 when it cannot be opened, 57 when reading
// fails, 52 as FullPath.
std::string ReadFile(const std::wstring& sPath);

// False when it failed. Rename replaces a file of the new name.
bool Rename(const std::wstring& sFrom, const std::wstring& sTo);
bool Remove(const std::wstring& sPath);

} // namespace ravlo::disk

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <string>
#include <string_view>

namespace ravlo
{

// The files of a POSIX system. Backslashes in paths mean slashes; names are UTF-8 and case-sensitive.
// WriteNew and Rename have flushed to the disk when they return. Programs do not lock each other out here, so
// patience changes nothing, and HoldOpen keeps out only other calls of HoldOpen.
class PosixFiles final : public Files
{
public:
    Presence PresenceOf(const std::wstring& sPath) const override;
    Presence PresenceOfFolder(const std::wstring& sPath) const override;
    void CreateFolder(const std::wstring& sPath) override;
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override;
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override;
    std::string ReadAll(const std::wstring& sPath, Patience ePatience = Patience::UpToASecond) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                Patience ePatience = Patience::UpToASecond) override;
    void Delete(const std::wstring& sPath) override;
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override;
};

// Convert between a host's paths (backslashes) and this system's (slashes, UTF-8). Throws 52 for a path that
// this system cannot express: an empty one, or one with a NUL or half a surrogate pair.
std::string NativePathOf(const std::wstring& sPath);
std::wstring HostPathOf(std::string_view bytes);

} // namespace ravlo

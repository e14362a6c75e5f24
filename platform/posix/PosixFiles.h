// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

namespace ravlo
{

// The files of a POSIX system. Backslashes in paths stand for slashes; names are UTF-8 and found as they are
// spelled. What WriteNew wrote and what Rename renamed is on the disk when they return. No program locks
// others out here, so there is nothing to be patient with; HoldOpen keeps out only who asks with it.
class PosixFiles final : public Files
{
public:
    Presence PresenceOf(const std::wstring& sPath) const override;
    Presence PresenceOfFolder(const std::wstring& sPath) const override;
    void CreateFolder(const std::wstring& sPath) override;
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override;
    std::string ReadAll(const std::wstring& sPath, Patience ePatience = Patience::UpToASecond) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                Patience ePatience = Patience::UpToASecond) override;
    void Delete(const std::wstring& sPath) override;
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

namespace ravlo
{

// The files of Windows. Paths may be longer than the classic 260 characters. A name with a colon (a stream of
// another file) or of a device is not a file's: it is Absent, and every other operation raises 52.
class WindowsFiles final : public Files
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
    // Of the DLL or program that this code was linked into.
    std::wstring LibraryFolder() const override;
};

} // namespace ravlo

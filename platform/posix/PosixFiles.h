// SPDX-License-Identifier: MIT
#pragma once

#include "ports/Files.h"

namespace ravlo
{

// The files of a POSIX system. Backslashes in paths stand for slashes; names are UTF-8 and found as they are
// spelled. What WriteNew wrote and what Rename renamed is on the disk when they return.
class PosixFiles final : public Files
{
public:
    bool FileExists(const std::wstring& sPath) const override;
    bool FolderExists(const std::wstring& sPath) const override;
    void CreateFolder(const std::wstring& sPath) override;
    std::string ReadAll(const std::wstring& sPath) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo) override;
    void Delete(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override;
};

} // namespace ravlo

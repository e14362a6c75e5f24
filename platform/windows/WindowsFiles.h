// SPDX-License-Identifier: MIT
#pragma once

#include "ports/Files.h"

namespace ravlo
{

// The files of Windows. Paths may be longer than the classic 260 characters. A name with a colon (a stream of
// another file) or of a device is no file's: looked at it is not there, otherwise it raises 52. A rename that
// another program stands in the way of, as virus scanners do for a moment, is tried again for a third of a
// second.
class WindowsFiles final : public Files
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
    // Of the DLL or program that this code was linked into.
    std::wstring LibraryFolder() const override;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// A new folder in the system's temporary folder, deleted with its content at the end.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // With backslashes, without one at the end.
    const std::wstring& Path() const { return m_sPath; }
    // The number of files and folders directly in it.
    std::size_t EntryCount() const;

private:
    std::wstring m_sPath;
};

} // namespace ravlo

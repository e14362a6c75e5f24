// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// A folder of its own for one test, in the system's place for such, deleted with all it holds at the end.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // With backslashes, without one at the end.
    const std::wstring& Path() const { return m_sPath; }
    // How many files and folders stand directly in it.
    std::size_t EntryCount() const;

private:
    std::wstring m_sPath;
};

} // namespace ravlo

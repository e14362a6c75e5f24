// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"
#include "platform/UserSettings.h"

#include <vector>

namespace ravlo
{

// Settings in one small text file per application, "<folder>\<application>.ini", in UTF-8:
//
//     [section]
//     key=value
//
// Backslash, line breaks and other control characters, and in sections and keys also = [ ] and ;, are written
// as "\xxxx" with their four hexadecimal digits. Sections and keys are found without regard to case. Any
// other lines are removed at the next change. The file is replaced in one step.
class IniUserSettings final : public UserSettings
{
public:
    // Creates the folder and its parents when the first setting is stored.
    IniUserSettings(Files& cFiles, std::wstring sFolder);

    // The user's own configuration folder: $XDG_CONFIG_HOME, or .config in the home folder.
    static std::wstring UserFolder();

    std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sDefault) const override;
    bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
             const std::wstring& sValue) override;

private:
    struct Entry
    {
        std::wstring sSection;
        std::wstring sKey;
        std::wstring sValue;
    };

    std::wstring PathOf(const std::wstring& sApplication) const;
    std::vector<Entry> Read(const std::wstring& sPath) const;
    void Write(const std::wstring& sPath, const std::vector<Entry>& entries);
    void MakeFolder(const std::wstring& sFolder);

    Files& m_cFiles;
    std::wstring m_sFolder;
};

} // namespace ravlo

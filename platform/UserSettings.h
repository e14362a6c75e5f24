// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// The per-user settings. Never throws: a setting that cannot be read has its default.
class UserSettings
{
public:
    virtual ~UserSettings() = default;
    virtual std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection,
                             const std::wstring& sKey, const std::wstring& sDefault) const = 0;
    // False when it could not be stored.
    virtual bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sValue) = 0;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserSettings.h"

namespace ravlo
{

// Settings where automation hosts keep theirs: the values of
// HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>.
class RegistryUserSettings final : public UserSettings
{
public:
    std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sDefault) const override;
    bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
             const std::wstring& sValue) override;
};

} // namespace ravlo

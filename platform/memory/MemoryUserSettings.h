// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UserSettings.h"

#include <map>

namespace ravlo
{

// Settings that last as long as the object. Names are found without regard to case, as in the real store.
class MemoryUserSettings final : public UserSettings
{
public:
    std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sDefault) const override;
    bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
             const std::wstring& sValue) override;

    // Whether the store refuses everything.
    bool bBroken = false;

private:
    std::map<std::wstring, std::wstring> m_values;
};

} // namespace ravlo

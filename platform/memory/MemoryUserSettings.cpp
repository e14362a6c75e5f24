// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryUserSettings.h"

#include "base/CaseFolding.h"

namespace ravlo
{

namespace
{

std::wstring PathOf(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey)
{
    return FoldCase(sApplication + L'\n' + sSection + L'\n' + sKey);
}

} // namespace

std::wstring MemoryUserSettings::Get(const std::wstring& sApplication, const std::wstring& sSection,
                                     const std::wstring& sKey, const std::wstring& sDefault) const
{
    const auto it = m_values.find(PathOf(sApplication, sSection, sKey));
    return bBroken || it == m_values.end() ? sDefault : it->second;
}

bool MemoryUserSettings::Set(const std::wstring& sApplication, const std::wstring& sSection,
                             const std::wstring& sKey, const std::wstring& sValue)
{
    if (bBroken)
        return false;
    m_values[PathOf(sApplication, sSection, sKey)] = sValue;
    return true;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "platform/windows/RegistryUserSettings.h"

#include <windows.h>

namespace ravlo
{

namespace
{

std::wstring SubKeyOf(const std::wstring& sApplication, const std::wstring& sSection)
{
    return L"Software\\VB and VBA Program Settings\\" + sApplication + L"\\" + sSection;
}

} // namespace

std::wstring RegistryUserSettings::Get(const std::wstring& sApplication, const std::wstring& sSection,
                                       const std::wstring& sKey, const std::wstring& sDefault) const
{
    const std::wstring sSubKey = SubKeyOf(sApplication, sSection);
    std::wstring sValue(64, L'\0');
    for (;;)
    {
        auto lBytes = static_cast<DWORD>(sValue.size() * sizeof(wchar_t));
        const LSTATUS lResult = ::RegGetValueW(HKEY_CURRENT_USER, sSubKey.c_str(), sKey.c_str(),
                                               RRF_RT_REG_SZ, nullptr, sValue.data(), &lBytes);
        if (lResult == ERROR_MORE_DATA)
        {
            // Larger than asked for, so that it ends even where the needed size is told too small.
            sValue.resize(lBytes / sizeof(wchar_t) + 64);
            continue;
        }
        if (lResult != ERROR_SUCCESS)
            return sDefault;
        sValue.resize(lBytes / sizeof(wchar_t) - 1); // the size counts the terminator
        return sValue;
    }
}

bool RegistryUserSettings::Set(const std::wstring& sApplication, const std::wstring& sSection,
                               const std::wstring& sKey, const std::wstring& sValue)
{
    HKEY hKey = nullptr;
    if (::RegCreateKeyExW(HKEY_CURRENT_USER, SubKeyOf(sApplication, sSection).c_str(), 0, nullptr, 0,
                          KEY_SET_VALUE, nullptr, &hKey, nullptr) != ERROR_SUCCESS)
        return false;
    const LSTATUS lResult =
        ::RegSetValueExW(hKey, sKey.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(sValue.c_str()),
                         static_cast<DWORD>((sValue.size() + 1) * sizeof(wchar_t)));
    ::RegCloseKey(hKey);
    return lResult == ERROR_SUCCESS;
}

} // namespace ravlo

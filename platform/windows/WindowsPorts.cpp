// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsPorts.h"

#include <windows.h>
// after it
#include <mmsystem.h>

namespace ravlo
{

namespace
{

std::wstring SubKeyOf(const std::wstring& sApplication, const std::wstring& sSection)
{
    return L"Software\\VB and VBA Program Settings\\" + sApplication + L"\\" + sSection;
}

} // namespace

DateTime WindowsClock::Now() const
{
    SYSTEMTIME now{};
    ::GetLocalTime(&now);
    const DateTime dtWhole =
        DateTimeOf({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
    return dtWhole + static_cast<double>(now.wMilliseconds) / 86'400'000.0;
}

std::uint32_t WindowsClock::TickCount() const { return ::timeGetTime(); }

void WindowsHostLoop::PumpMessages()
{
    constexpr DWORD lLongest = 250; // milliseconds
    const DWORD lStart = ::GetTickCount();
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    {
        if (message.message == WM_QUIT)
        {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (!::CallMsgFilterW(&message, MSGF_USER))
        {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
        if (::GetTickCount() - lStart >= lLongest)
            return;
    }
}

void WindowsHostLoop::Sleep(std::uint32_t lMilliseconds) { ::Sleep(lMilliseconds); }

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
            // Larger than asked for, so that the loop ends even when the reported size is too small.
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

std::string SystemCodePage::Encode(std::wstring_view sText) const
{
    const int lLength = static_cast<int>(sText.size());
    if (lLength == 0)
        return {}; // the system takes an empty text for an error
    const int lNeeded = ::WideCharToMultiByte(CP_ACP, 0, sText.data(), lLength, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(lNeeded), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, sText.data(), lLength, bytes.data(), lNeeded, nullptr, nullptr);
    return bytes;
}

std::wstring SystemCodePage::Decode(std::string_view bytes) const
{
    const int lLength = static_cast<int>(bytes.size());
    if (lLength == 0)
        return {};
    const int lNeeded = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), lLength, nullptr, 0);
    std::wstring sText(static_cast<std::size_t>(lNeeded), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), lLength, sText.data(), lNeeded);
    return sText;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "platform/DeviceNames.h"

#include <algorithm>
#include <array>

namespace ravlo
{

namespace
{

// The digits that may follow COM and LPT; the file system takes the superscript ones for digits too.
bool IsDeviceDigit(wchar_t c) noexcept
{
    return (c >= L'1' && c <= L'9') || c == L'\u00B9' || c == L'\u00B2' || c == L'\u00B3';
}

wchar_t Upper(wchar_t c) noexcept { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c; }

bool IsSpelled(std::wstring_view sName, std::wstring_view sUpper) noexcept
{
    return std::equal(sName.begin(), sName.end(), sUpper.begin(), sUpper.end(),
                      [](wchar_t c, wchar_t cUpper) { return Upper(c) == cUpper; });
}

} // namespace

bool IsDeviceName(std::wstring_view sName) noexcept
{
    // What follows the first dot does not matter, nor do blanks before it.
    std::wstring_view sStem = sName.substr(0, sName.find(L'.'));
    while (!sStem.empty() && sStem.back() == L' ')
        sStem.remove_suffix(1);
    static constexpr std::array<std::wstring_view, 6> devices = {L"CON", L"PRN",    L"AUX",
                                                                 L"NUL", L"CONIN$", L"CONOUT$"};
    if (std::any_of(devices.begin(), devices.end(),
                    [&](std::wstring_view sDevice) { return IsSpelled(sStem, sDevice); }))
        return true;
    return sStem.size() == 4 && IsDeviceDigit(sStem[3]) &&
           (IsSpelled(sStem.substr(0, 3), L"COM") || IsSpelled(sStem.substr(0, 3), L"LPT"));
}

} // namespace ravlo

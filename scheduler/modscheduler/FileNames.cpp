// SPDX-License-Identifier: MIT
#include "scheduler/modscheduler/FileNames.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"
#include "ports/RuntimeError.h"

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

bool IsDeviceName(std::wstring_view sName) noexcept
{
    // What follows the first dot does not matter, nor do blanks before it.
    std::wstring_view sStem = sName.substr(0, sName.find(L'.'));
    while (!sStem.empty() && sStem.back() == L' ')
        sStem.remove_suffix(1);
    static constexpr std::array<std::wstring_view, 6> devices = {L"CON", L"PRN",    L"AUX",
                                                                 L"NUL", L"CONIN$", L"CONOUT$"};
    if (std::any_of(devices.begin(), devices.end(),
                    [&](std::wstring_view sDevice) { return EqualIgnoringCase(sStem, sDevice); }))
        return true;
    return sStem.size() == 4 && IsDeviceDigit(sStem[3]) &&
           (EqualIgnoringCase(sStem.substr(0, 3), L"COM") || EqualIgnoringCase(sStem.substr(0, 3), L"LPT"));
}

} // namespace

bool CanBeFileName(std::wstring_view sName) noexcept
{
    if (sName.empty() || IsDeviceName(sName))
        return false;
    return std::none_of(sName.begin(), sName.end(),
                        [](wchar_t c) {
                            return c < L' ' ||
                                   std::wstring_view(L"*/:<>?\\|\"").find(c) != std::wstring_view::npos;
                        });
}

void RequireFileName(const std::wstring& sName)
{
    if (!CanBeFileName(sName))
        throw RuntimeError(error::BadFileName, L"Bad file name: \"" + sName + L"\"");
}

} // namespace ravlo

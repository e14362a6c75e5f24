// SPDX-License-Identifier: MIT
#include "platform/windows/SystemCodePage.h"

#include <windows.h>

namespace ravlo
{

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

// SPDX-License-Identifier: MIT
#include "platform/posix/PosixText.h"

#include "ports/RuntimeError.h"

#include <algorithm>
#include <cstdint>

namespace ravlo
{

namespace
{

constexpr std::uint32_t lReplacement = 0xFFFD;

bool IsCharacter(std::uint32_t lCode) { return lCode <= 0x10FFFF && (lCode < 0xD800 || lCode > 0xDFFF); }

void AppendUtf8(std::string& bytes, std::uint32_t lCode)
{
    const auto add = [&](std::uint32_t lByte) { bytes += static_cast<char>(lByte); };
    if (lCode < 0x80)
        return add(lCode);
    if (lCode < 0x800)
    {
        add(0xC0 | (lCode >> 6));
        return add(0x80 | (lCode & 0x3F));
    }
    if (lCode < 0x10000)
        add(0xE0 | (lCode >> 12));
    else
    {
        add(0xF0 | (lCode >> 18));
        add(0x80 | ((lCode >> 12) & 0x3F));
    }
    add(0x80 | ((lCode >> 6) & 0x3F));
    add(0x80 | (lCode & 0x3F));
}

// Takes one character off the front; a byte that begins none stands for itself as the replacement.
std::uint32_t TakeCharacter(std::string_view& bytes)
{
    const auto lLead = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    if (lLead < 0x80)
        return lLead;
    const std::size_t lMore = lLead >= 0xF0 ? 3 : lLead >= 0xE0 ? 2 : 1;
    if (lLead < 0xC2 || lLead > 0xF4 || bytes.size() < lMore)
        return lReplacement;
    std::uint32_t lCode = lLead & (0x3Fu >> lMore);
    for (std::size_t i = 0; i < lMore; ++i)
    {
        const auto lByte = static_cast<unsigned char>(bytes[i]);
        if ((lByte & 0xC0) != 0x80)
            return lReplacement;
        lCode = (lCode << 6) | (lByte & 0x3Fu);
    }
    constexpr std::uint32_t aSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (lCode < aSmallest[lMore] || !IsCharacter(lCode))
        return lReplacement;
    bytes.remove_prefix(lMore);
    return lCode;
}

} // namespace

std::string Utf8Of(std::wstring_view sText)
{
    std::string bytes;
    for (const wchar_t c : sText)
    {
        const auto lCode = static_cast<std::uint32_t>(c);
        AppendUtf8(bytes, IsCharacter(lCode) ? lCode : lReplacement);
    }
    return bytes;
}

std::wstring TextOfUtf8(std::string_view bytes)
{
    std::wstring sText;
    while (!bytes.empty())
        sText += static_cast<wchar_t>(TakeCharacter(bytes));
    return sText;
}

std::string NativePathOf(const std::wstring& sPath)
{
    if (sPath.empty() ||
        std::any_of(sPath.begin(), sPath.end(),
                    [](wchar_t c) { return c == 0 || !IsCharacter(static_cast<std::uint32_t>(c)); }))
        throw RuntimeError(error::BadFileName);
    std::string bytes = Utf8Of(sPath);
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return bytes;
}

std::wstring HostPathOf(std::string_view bytes)
{
    std::wstring sPath = TextOfUtf8(bytes);
    std::replace(sPath.begin(), sPath.end(), L'/', L'\\');
    return sPath;
}

} // namespace ravlo

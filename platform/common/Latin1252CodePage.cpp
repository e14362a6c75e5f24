// SPDX-License-Identifier: MIT
#include "platform/common/Latin1252CodePage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace ravlo
{

namespace
{

// The characters of the bytes 0x80 to 0x9F; all others have the number of their byte.
constexpr wchar_t aSpecial[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

std::string Latin1252CodePage::Encode(std::wstring_view sText) const
{
    // Most texts are only ASCII; the rest after the first other character is converted one by one.
    std::string bytes(sText.size(), '\0');
    std::size_t plain = 0;
    for (; plain < sText.size() && static_cast<std::uint32_t>(sText[plain]) < 0x80; ++plain)
        bytes[plain] = static_cast<char>(sText[plain]);
    bytes.resize(plain);
    for (const wchar_t c : sText.substr(plain))
    {
        const auto lCode = static_cast<std::uint32_t>(c);
        if (lCode < 0x80 || (lCode >= 0xA0 && lCode <= 0xFF))
        {
            bytes += static_cast<char>(lCode);
            continue;
        }
        const wchar_t* pFound = std::find(std::begin(aSpecial), std::end(aSpecial), c);
        if (pFound != std::end(aSpecial))
            bytes += static_cast<char>(0x80 + (pFound - std::begin(aSpecial)));
        else
            bytes += lCode > 0xFFFF ? "??" : "?";
    }
    return bytes;
}

std::wstring Latin1252CodePage::Decode(std::string_view bytes) const
{
    std::wstring sText(bytes.size(), L'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        const auto lByte = static_cast<unsigned char>(bytes[i]);
        sText[i] = lByte >= 0x80 && lByte <= 0x9F ? aSpecial[lByte - 0x80] : static_cast<wchar_t>(lByte);
    }
    return sText;
}

} // namespace ravlo

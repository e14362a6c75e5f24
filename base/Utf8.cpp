// SPDX-License-Identifier: MIT
#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace ravlo
{

namespace
{

constexpr std::uint32_t lReplacement = 0xFFFD;
constexpr std::uint32_t lLastCodePoint = 0x10FFFF;

bool IsHighHalf(std::uint32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowHalf(std::uint32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

void AppendUtf8(std::string& bytes, std::uint32_t c)
{
    const auto Tail = [&](int lShift) { bytes += static_cast<char>(0x80U | ((c >> lShift) & 0x3FU)); };
    if (c < 0x80)
    {
        bytes += static_cast<char>(c);
    }
    else if (c < 0x800)
    {
        bytes += static_cast<char>(0xC0U | (c >> 6));
        Tail(0);
    }
    else if (c < 0x10000)
    {
        bytes += static_cast<char>(0xE0U | (c >> 12));
        Tail(6);
        Tail(0);
    }
    else
    {
        bytes += static_cast<char>(0xF0U | (c >> 18));
        Tail(12);
        Tail(6);
        Tail(0);
    }
}

void AppendWide(std::wstring& sText, std::uint32_t c)
{
    if constexpr (sizeof(wchar_t) == 2)
    {
        if (c >= 0x10000)
        {
            sText += static_cast<wchar_t>(0xD800U + ((c - 0x10000) >> 10));
            sText += static_cast<wchar_t>(0xDC00U + ((c - 0x10000) & 0x3FFU));
            return;
        }
    }
    sText += static_cast<wchar_t>(c);
}

struct Form
{
    int length;           // bytes in all
    std::uint32_t lFirst; // bits of the first byte
    std::uint32_t lLeast; // the smallest code that needs this length
};

std::optional<Form> FormOf(unsigned char c)
{
    if (c < 0x80)
        return Form{1, c, 0};
    if (c >= 0xC2 && c <= 0xDF)
        return Form{2, c & 0x1FU, 0x80};
    if (c >= 0xE0 && c <= 0xEF)
        return Form{3, c & 0x0FU, 0x800};
    if (c >= 0xF0 && c <= 0xF4)
        return Form{4, c & 0x07U, 0x10000};
    return std::nullopt;
}

// Moves ASCII at the start of the bytes to the text: most text is ASCII.
void TakeAscii(std::wstring& sText, std::string_view& bytes)
{
    std::size_t count = 0;
    while (count < bytes.size() && static_cast<unsigned char>(bytes[count]) < 0x80)
        ++count;
    sText.append(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    bytes.remove_prefix(count);
}

// The code at the start of the bytes, and its length; nothing when there is none. Accepts halves of surrogate
// pairs.
std::optional<std::uint32_t> Decode(std::string_view bytes, std::size_t& length)
{
    const auto form = FormOf(static_cast<unsigned char>(bytes.front()));
    if (!form || bytes.size() < static_cast<std::size_t>(form->length))
        return std::nullopt;
    std::uint32_t c = form->lFirst;
    for (int i = 1; i < form->length; ++i)
    {
        const auto next = static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
        if ((next & 0xC0U) != 0x80U)
            return std::nullopt;
        c = (c << 6) | (next & 0x3FU);
    }
    if (c < form->lLeast || c > lLastCodePoint)
        return std::nullopt;
    length = static_cast<std::size_t>(form->length);
    return c;
}

} // namespace

std::string Utf8Of(std::wstring_view sText)
{
    std::string bytes;
    bytes.reserve(sText.size() + sText.size() / 8);
    for (std::size_t i = 0; i < sText.size(); ++i)
    {
        auto c = static_cast<std::uint32_t>(sText[i]);
        if constexpr (sizeof(wchar_t) == 2)
        {
            if (IsHighHalf(c) && i + 1 < sText.size() && IsLowHalf(static_cast<std::uint32_t>(sText[i + 1])))
            {
                c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<std::uint32_t>(sText[i + 1]) - 0xDC00);
                ++i;
            }
        }
        AppendUtf8(bytes, c > lLastCodePoint ? lReplacement : c);
    }
    return bytes;
}

std::wstring TextFromStore(std::string_view bytes)
{
    std::wstring sText;
    sText.reserve(bytes.size());
    for (TakeAscii(sText, bytes); !bytes.empty(); TakeAscii(sText, bytes))
    {
        std::size_t length = 1;
        AppendWide(sText, Decode(bytes, length).value_or(lReplacement));
        bytes.remove_prefix(length);
    }
    return sText;
}

std::optional<std::wstring> TextFromUtf8(std::string_view bytes)
{
    std::wstring sText;
    sText.reserve(bytes.size());
    for (TakeAscii(sText, bytes); !bytes.empty(); TakeAscii(sText, bytes))
    {
        std::size_t length = 1;
        const std::optional<std::uint32_t> c = Decode(bytes, length);
        if (!c || IsHighHalf(*c) || IsLowHalf(*c))
            return std::nullopt;
        AppendWide(sText, *c);
        bytes.remove_prefix(length);
    }
    return sText;
}

std::string_view WithoutByteOrderMark(std::string_view bytes) noexcept
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (bytes.starts_with(mark))
        bytes.remove_prefix(mark.size());
    return bytes;
}

} // namespace ravlo

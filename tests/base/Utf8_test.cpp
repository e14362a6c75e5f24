// SPDX-License-Identifier: MIT
#include "base/Utf8.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

using namespace std::string_literals;

struct Pair
{
    std::wstring sText;
    std::string bytes;
};

const Pair wellFormed[] = {
    {L"", ""},
    {L"AC/DC", "AC/DC"},
    {L"a\0b"s, "a\0b"s},
    {L"\x7F\x80\x7FF", "\x7F\xC2\x80\xDF\xBF"},
    {L"Bj\u00F6rk \u20AC", "Bj\xC3\xB6rk \xE2\x82\xAC"},
    {L"\u0800\uD7FF\uE000\uFFFF", "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
    {L"\U00010000\U0001F600\U0010FFFF", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
};

const std::string malformed[] = {
    "\x80",             // a tail without a head
    "\xC3",             // a head without a tail
    "\xE2\x82",         // cut off
    "\xE2\x28\xA1",     // a head where a tail belongs
    "\xC0\xAF",         // too long a form
    "\xE0\x80\xAF",     // too long a form
    "\xF0\x80\x80\xAF", // too long a form
    "\xF4\x90\x80\x80", // past the last code point
    "\xF8\x88\x80\x80", // no head at all
    "\xFF",
};

TEST(Utf8, ConvertsWellFormedTextBothWays)
{
    for (const auto& pair : wellFormed)
    {
        EXPECT_EQ(Utf8Of(pair.sText), pair.bytes);
        EXPECT_EQ(TextFromUtf8(pair.bytes), pair.sText);
        EXPECT_EQ(TextFromStore(pair.bytes), pair.sText);
    }
}

TEST(Utf8, MalformedBytesAreNoUtf8)
{
    for (const auto& bytes : malformed)
        EXPECT_FALSE(TextFromUtf8("ok " + bytes + " ok")) << ::testing::PrintToString(bytes);
}

TEST(Utf8, MalformedBytesInTheDatabaseBecomeReplacementCharacters)
{
    for (const auto& bytes : malformed)
    {
        const auto sText = TextFromStore("a" + bytes + "z");
        EXPECT_EQ(sText.front(), L'a');
        EXPECT_EQ(sText.back(), L'z');
        EXPECT_NE(sText.find(L'\uFFFD'), std::wstring::npos) << ::testing::PrintToString(bytes);
    }
    EXPECT_EQ(TextFromStore("\xC0\xAF"), L"\uFFFD\uFFFD");
}

TEST(Utf8, HalfASurrogatePairSurvivesInTheDatabaseButIsNoUtf8)
{
    for (const wchar_t c : {wchar_t{0xD800}, wchar_t{0xDBFF}, wchar_t{0xDC00}, wchar_t{0xDFFF}})
    {
        const std::wstring sText = {L'a', c, L'b'};
        const std::string bytes = Utf8Of(sText);
        EXPECT_EQ(TextFromStore(bytes), sText);
        EXPECT_FALSE(TextFromUtf8(bytes));
    }
}

TEST(Utf8, AValueThatIsNoCodePointBecomesTheReplacementCharacter)
{
    if constexpr (sizeof(wchar_t) > 2)
    {
        EXPECT_EQ(Utf8Of(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    }
}

} // namespace
} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

TEST(CaseFolding, FoldsEveryAsciiLetterAndNothingElseInAscii)
{
    for (wchar_t c = 0; c < 0x80; ++c)
    {
        const bool bLower = c >= L'a' && c <= L'z';
        EXPECT_EQ(FoldCase(c), bLower ? static_cast<wchar_t>(c - 32) : c) << static_cast<int>(c);
    }
}

TEST(CaseFolding, FoldsByTheUpperCaseTableOfTheBasicPlane)
{
    const struct
    {
        int lFrom;
        int lTo;
    } aCases[] = {
        {0x00E4, 0x00C4}, // a with diaeresis
        {0x00F7, 0x00F7}, // the division sign is between letters
        {0x00FE, 0x00DE}, // the last letter of its run
        {0x00FF, 0x0178}, // y with diaeresis leaves Latin-1
        {0x00B5, 0x039C}, // micro sign
        {0x0101, 0x0100}, // pairs side by side ...
        {0x0102, 0x0102}, // ... the upper ones of which stay
        {0x012F, 0x012E}, // the last pair before the dotless i
        {0x01C5, 0x01C4}, // title case digraph
        {0x01C6, 0x01C4}, // lower case digraph
        {0x03B1, 0x0391}, // alpha
        {0x03C2, 0x03A3}, // final sigma
        {0x03C3, 0x03A3}, // sigma
        {0x0430, 0x0410}, // Cyrillic a
        {0x045F, 0x040F}, // Cyrillic dzhe
        {0x0561, 0x0531}, // Armenian ayb
        {0x10D0, 0x1C90}, // Georgian an
        {0x1E01, 0x1E00}, //
        {0x1F80, 0x1F88}, // one to one by its title case, though its full upper case is two letters
        {0x24D0, 0x24B6}, // circled a
        {0x2C61, 0x2C60}, //
        {0xA641, 0xA640}, //
        {0xFF41, 0xFF21}, // full-width a
        {0x4E2D, 0x4E2D}, // ideograph
    };
    for (const auto& testCase : aCases)
        EXPECT_EQ(FoldCase(static_cast<wchar_t>(testCase.lFrom)), static_cast<wchar_t>(testCase.lTo))
            << std::hex << testCase.lFrom;
}

TEST(CaseFolding, LeavesLettersWhoseUpperCaseIsLongerThanOne)
{
    EXPECT_EQ(FoldCase(L'\u00DF'), L'\u00DF'); // sharp s
    EXPECT_EQ(FoldCase(L'\u0149'), L'\u0149');
    EXPECT_EQ(FoldCase(L'\u01F0'), L'\u01F0');
    EXPECT_EQ(FoldCase(L'\uFB01'), L'\uFB01'); // fi ligature
}

TEST(CaseFolding, NothingOutsideAsciiFoldsIntoAscii)
{
    for (int lCode = 0x80; lCode < 0x10000; ++lCode)
        EXPECT_GE(static_cast<int>(FoldCase(static_cast<wchar_t>(lCode))), 0x80) << std::hex << lCode;
    EXPECT_EQ(FoldCase(L'\u0131'), L'\u0131'); // dotless i
    EXPECT_EQ(FoldCase(L'\u017F'), L'\u017F'); // long s
    EXPECT_EQ(FoldCase(L'\u212A'), L'\u212A'); // Kelvin sign
}

TEST(CaseFolding, FoldingTwiceIsFoldingOnce)
{
    for (int lCode = 0; lCode < 0x10000; ++lCode)
    {
        const wchar_t cFolded = FoldCase(static_cast<wchar_t>(lCode));
        EXPECT_EQ(FoldCase(cFolded), cFolded) << std::hex << lCode;
    }
}

TEST(CaseFolding, LeavesCharactersBeyondTheBasicPlane)
{
    const std::wstring sDeseret = L"\U00010428"; // a small letter that Unicode gives a capital
    EXPECT_EQ(FoldCase(sDeseret), sDeseret);
    EXPECT_FALSE(EqualIgnoringCase(sDeseret, L"\U00010400"));
}

TEST(CaseFolding, FoldsTextsCharacterByCharacter)
{
    EXPECT_EQ(FoldCase(L"C:\\Musik\\\u00FCber \u00DF.mp3"), L"C:\\MUSIK\\\u00DCBER \u00DF.MP3");
    EXPECT_EQ(FoldCase(std::wstring_view()), L"");
}

TEST(CaseFolding, TextsAreEqualWhenTheirFoldedFormsAre)
{
    EXPECT_TRUE(EqualIgnoringCase(L"Jazz", L"jAZZ"));
    EXPECT_TRUE(EqualIgnoringCase(L"\u00C4rger", L"\u00E4RGER"));
    EXPECT_TRUE(EqualIgnoringCase(L"", L""));
    EXPECT_FALSE(EqualIgnoringCase(L"Jazz", L"Jazz "));
    EXPECT_FALSE(EqualIgnoringCase(L"Jazz", L"Jaz"));
    EXPECT_FALSE(EqualIgnoringCase(L"Stra\u00DFe", L"STRASSE"));
    EXPECT_FALSE(EqualIgnoringCase(std::wstring_view(L"a\0b", 3), std::wstring_view(L"a\0c", 3)));
}

TEST(CaseFolding, EqualTextsHaveEqualHashes)
{
    EXPECT_EQ(HashIgnoringCase(L"C:\\Musik\\\u00FCber.mp3"), HashIgnoringCase(L"c:\\MUSIK\\\u00DCBER.MP3"));
    for (int lCode = 0; lCode < 0x10000; ++lCode)
    {
        const auto c = static_cast<wchar_t>(lCode);
        const wchar_t cFolded = FoldCase(c);
        EXPECT_EQ(HashIgnoringCase({&c, 1}), HashIgnoringCase({&cFolded, 1})) << std::hex << lCode;
    }
}

TEST(CaseFolding, HashesOfNumberedPathsSpreadOverTheLowBits)
{
    constexpr std::size_t buckets = 1024;
    std::size_t aCount[buckets] = {};
    for (int i = 0; i < 10 * static_cast<int>(buckets); ++i)
        ++aCount[HashIgnoringCase(L"C:\\Music\\" + std::to_wstring(i) + L".mp3") % buckets];
    for (const std::size_t count : aCount)
        EXPECT_LT(count, 40u); // ten on average
}

} // namespace
} // namespace ravlo

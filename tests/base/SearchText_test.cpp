// SPDX-License-Identifier: MIT
#include "base/SearchText.h"

#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace ravlo
{
namespace
{

TEST(SearchTextTest, TextsThatPeopleTakeForTheSameFoldToTheSame)
{
    const struct
    {
        const wchar_t* sText;
        const char* sFolded;
    } cases[] = {
        {L"AC/DC", "ac/dc"},
        {L"Bj\u00F6rk", "bjork"},
        {L"Bjo\u0308rk", "bjork"}, // o and a combining diaeresis
        {L"Mot\u00F6rhead", "motorhead"},
        {L"Stra\u00DFe", "strasse"},
        {L"STRA\u1E9EE", "strasse"},
        {L"R\u00F8yksopp", "royksopp"},
        {L"\u00C6nima \u0153uvre", "aenima oeuvre"},
        {L"\u0141\u00F3d\u017A", "lodz"},
        {L"\u0110or\u0111e \u0126al", "dorde hal"},
        {L"\u00DE\u00F3r \u00D0", "thor d"},
        {L"\u0130stanbul \u0131", "istanbul i"},
        {L"\u0401\u043B\u043A\u0430", "\xD0\xB5\xD0\xBB\xD0\xBA\xD0\xB0"}, // Cyrillic io becomes ie
        {L"\u0386\u03BB\u03C6\u03B1\u03C2", "\xCE\xB1\xCE\xBB\xCF\x86\xCE\xB1\xCF\x83"}, // final sigma too
        {L"\u1FB3", "\xCE\xB1"},                                                         // iota subscript
        {L"\uFF21\uFF22\uFF23\uFF11", "abc1"},                                           // full width
        {L"\uFF76\uFF9E \u30AC", "\xE3\x82\xAB\xE3\x82\x99 \xE3\x82\xAB\xE3\x82\x99"},   // voicing is kept
        {L"\uFB01ne\u2122 \u00BD \u2163", "finetm 1/2 iv"},
        {L"Don\u2019t \u201Cstop\u201D", "don't \"stop\""},
        {L"A\u2013Z \u2026", "a-z ..."},
        {L"a\u00A0b\tc\nd\u3000e", "a b c d e"},
        {L"\u4E2D\uD55C", "\xE4\xB8\xAD\xED\x95\x9C"}, // an ideograph and Hangul stay
        {L"\u0301\u00AD\u200B", ""},
    };
    for (const auto& test : cases)
        EXPECT_EQ(FoldForSearch(test.sText), test.sFolded) << test.sFolded;
    EXPECT_EQ(FoldForSearch(TextFromStore("\xF0\x9F\x8E\xB5 \xC3\xA9")), "\xF0\x9F\x8E\xB5 e")
        << "a character beyond the basic plane stays";
}

TEST(SearchTextTest, FoldingAgainChangesNothingAndCaseDoesNotMatter)
{
    for (std::uint32_t lCode = 1; lCode < 0x10000; ++lCode)
    {
        const std::wstring sText(1, static_cast<wchar_t>(lCode));
        const std::string sFolded = FoldForSearch(sText);
        ASSERT_EQ(FoldForSearch(TextFromStore(sFolded)), sFolded) << std::hex << lCode;
        ASSERT_EQ(sFolded.find(SearchWords::cFieldEnd), std::string::npos) << std::hex << lCode;
    }
    for (char c = 'a'; c <= 'z'; ++c)
        EXPECT_EQ(FoldForSearch(std::wstring(1, static_cast<wchar_t>(c - 32))), std::string(1, c));
}

TEST(SearchTextTest, JoinedTextsFoldToTheJoinedBytes)
{
    std::mt19937 random(20);
    const std::wstring sLetters = L"aB \u00E9\u00DF\u0301\u0142\u4E2D\uAC00\uFF21\u0451";
    const auto Some = [&] {
        std::wstring sText;
        for (std::size_t length = random() % 6; length > 0; --length)
            sText += sLetters[random() % sLetters.size()];
        return sText;
    };
    for (int lRound = 0; lRound < 2000; ++lRound)
    {
        const std::wstring sLeft = Some();
        const std::wstring sRight = Some();
        const std::string sLeftFolded = FoldForSearch(sLeft);
        ASSERT_EQ(FoldForSearch(sLeft + sRight), sLeftFolded + FoldForSearch(sRight));
        ASSERT_TRUE(BeginsFolded(sLeft + sRight, sLeftFolded));
        ASSERT_EQ(BeginsFolded(sLeft, FoldForSearch(sRight)),
                  sLeftFolded.substr(0, FoldForSearch(sRight).size()) == FoldForSearch(sRight));
    }
}

TEST(SearchTextTest, EveryWordMustOccurInAFieldInAnyOrder)
{
    const std::string sFields =
        FoldForSearch(L"Bj\u00F6rk") + '\n' + FoldForSearch(L"It's Oh So Quiet") + '\n';
    const struct
    {
        const wchar_t* sQuery;
        bool bFound;
    } cases[] = {
        {L"", true},
        {L"  \t", true},
        {L"bjork", true},
        {L"BJ\u00D6RK quiet", true},
        {L"quiet bjork", true},
        {L"jor uie so", true},
        {L"rkit", false},
        {L"bjork loud", false},
        {L"it\u2019s", true},
        {L"so  oh ", true},
    };
    for (const auto& test : cases)
        EXPECT_EQ(SearchWords(test.sQuery).FoundIn(sFields), test.bFound) << Utf8Of(test.sQuery);
    EXPECT_TRUE(SearchWords(L" \u0301 ").Empty());
    EXPECT_FALSE(SearchWords(L"x").Empty());
}

TEST(SearchTextTest, NarrowerWordsFindNothingThatTheWiderOnesDoNot)
{
    EXPECT_TRUE(SearchWords(L"ab").NarrowerThan(SearchWords(L"a")));
    EXPECT_TRUE(SearchWords(L"ab c").NarrowerThan(SearchWords(L"c a")));
    EXPECT_FALSE(SearchWords(L"a").NarrowerThan(SearchWords(L"ab")));
    std::mt19937 random(7);
    const auto Some = [&](std::size_t most) {
        std::wstring sText;
        for (std::size_t length = random() % most; length > 0; --length)
            sText += L"ab "[random() % 3];
        return sText;
    };
    int lNarrower = 0;
    for (int lRound = 0; lRound < 5000; ++lRound)
    {
        const SearchWords cNew(Some(6));
        const SearchWords cOld(Some(4));
        const std::string sText = FoldForSearch(Some(12)) + SearchWords::cFieldEnd;
        if (!cNew.NarrowerThan(cOld))
            continue;
        ++lNarrower;
        ASSERT_TRUE(!cNew.FoundIn(sText) || cOld.FoundIn(sText));
    }
    EXPECT_GT(lNarrower, 500);
}

} // namespace
} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "base/Text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace ravlo
{
namespace
{

TEST(Trim, RemovesBlanksAtBothEndsAndNothingElse)
{
    EXPECT_EQ(Trim(L"  Top 40 Hits "), L"Top 40 Hits");
    EXPECT_EQ(Trim(L"   "), L"");
    EXPECT_EQ(Trim(L""), L"");
    EXPECT_EQ(Trim(L"\t Jazz\r\n"), L"\t Jazz\r\n");
    EXPECT_EQ(Trim(L" \u00A0Jazz\u3000 "), L"\u00A0Jazz\u3000");
}

using Pieces = std::vector<std::wstring>;

TEST(Split, GivesOnePieceMoreThanThereAreDelimiters)
{
    EXPECT_EQ(Split(L"", L"/"), Pieces{L""});
    EXPECT_EQ(Split(L"Jazz", L"/"), Pieces{L"Jazz"});
    EXPECT_EQ(Split(L"Jazz/Funk", L"/"), (Pieces{L"Jazz", L"Funk"}));
    EXPECT_EQ(Split(L"/Jazz//", L"/"), (Pieces{L"", L"Jazz", L"", L""}));
}

TEST(Split, TakesTheWholeDelimiterOnly)
{
    EXPECT_EQ(Split(L"a\r\nb\nc\r\n", sCrLf), (Pieces{L"a", L"b\nc", L""}));
    EXPECT_EQ(Split(L"aaa", L"aa"), (Pieces{L"", L"a"}));
    EXPECT_EQ(Split(L"abc", L""), Pieces{L"abc"});
}

TEST(DecimalText, WritesDigitsAndSignOnly)
{
    EXPECT_EQ(DecimalText(0), L"0");
    EXPECT_EQ(DecimalText(-1234567), L"-1234567");
    EXPECT_EQ(DecimalText(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
}

TEST(CountText, WritesTheDigitsOfACount)
{
    EXPECT_EQ(CountText(0), L"0");
    EXPECT_EQ(CountText(1234567), L"1234567");
}

TEST(SingleText, WritesAtMostSevenSignificantDigits)
{
    const struct
    {
        float sngValue;
        const wchar_t* sText;
    } aCases[] = {
        {0.0f, L"0"},
        {-0.0f, L"0"},
        {1.0f, L"1"},
        {-1.5f, L"-1.5"},
        {0.5f, L"0.5"},
        {12.33333333f, L"12.33333"},
        {0.1f, L"0.1"},
        {1.0f / 3.0f, L"0.3333333"},
        {2.0f / 3.0f, L"0.6666667"},
        {59.98333f, L"59.98333"},
        {100.0f, L"100"},
        {1000000.0f, L"1000000"},
        {1234567.0f, L"1234567"},
        {9999999.0f, L"9999999"},
        {10000000.0f, L"1E+07"},
        {12345678.0f, L"1.234568E+07"},
        {1e20f, L"1E+20"},
        {2999352.5f, L"2999353"}, // ties go away from zero
        {-6550.0625f, L"-6550.063"},
        {9999999.5f, L"1E+07"}, // reads as 10000000 in single precision
        {0.99999994f, L"0.9999999"},
        {0.01f, L"0.01"}, // a little less: every digit carries
        {99999.99f, L"99999.99"},
        {1.17549435e-38f, L"1.175494E-38"},
        {-2.5e-7f, L"-2.5E-07"},
        {0.0001f, L"0.0001"},
        {0.00001f, L"1E-05"},
        {0.000015f, L"1.5E-05"},
        {3.402823466e38f, L"3.402823E+38"},
        {std::numeric_limits<float>::denorm_min(), L"1.401298E-45"},
    };
    for (const auto& testCase : aCases)
        EXPECT_EQ(SingleText(testCase.sngValue), testCase.sText);
}

TEST(SingleText, NamesWhatIsNoNumberAsTheConversionDoes)
{
    EXPECT_EQ(SingleText(std::numeric_limits<float>::infinity()), L"1.#INF");
    EXPECT_EQ(SingleText(-std::numeric_limits<float>::infinity()), L"-1.#INF");
    EXPECT_EQ(SingleText(std::numeric_limits<float>::quiet_NaN()), L"-1.#IND");
}

TEST(NumericValue, ReadsWhatTheAutomationConversionReads)
{
    const struct
    {
        double dValue;
        const wchar_t* sTexts; // divided by |
    } aCases[] = {
        {0, L"0|0E999999999999999999999|1E-999999999999999999999"},
        {2024, L"2024"},
        {7, L"007"},
        {42, L"  42  |\t42\r\n"},
        {5, L"+5|5+|$5|\u00A4 5|5$|5.|5,"},
        {-5, L"-5|5-|- 5|5 -| - 5 |(5)|( 5 )|-$5|$-5|($5)|(-5)"},
        {1.5, L"1.5"},
        {0.5, L".5"},
        {-0.5, L"-.5"},
        {0.1, L"0.1"},
        {1234567.25, L"1,234,567.25"},
        {123, L"1,2,3"},
        {1000, L"1E3|1e3|1D3|1d+3"},
        {2.5, L"25E-1"},
        {-150, L"1.5E2-"},
        {1e308, L"1E308"},
        {4.9e-324, L"4.9E-324"},
        {31, L"&H1F"},
        {255, L"&hff"},
        {65535, L" &HFFFF "},
        {4294967295.0, L"&HFFFFFFFF"},
        {15, L"&O17|&o17"},
        {18446744073709551615.0, L"&O1777777777777777777777|&HFFFFFFFFFFFFFFFF"},
        {1.2345678901234568e29, L"123456789012345678901234567890"},
    };
    for (const auto& [dValue, sTexts] : aCases)
        for (const std::wstring& sText : Split(sTexts, L"|"))
            EXPECT_EQ(NumericValue(sText), std::optional<double>(dValue)) << sText;
}

TEST(NumericValue, RefusesEverythingElse)
{
    for (const std::wstring& sText : Split(L"| |Jazz|Top 40|40 Hits|4 0|1 2 3|.|-|$|()|(|E5|1E|1E+|1E 5|"
                                           L"1E2.5|1.2.3|1.2,3|,5|--5|-5-|+-5|$$5|$5$|(5|5)|((5))|(5)(|"
                                           L"5%|#5|&|&H|&HG|&O8|&O|&B1|-&H1|$&H1|&H1 2|&H1&|"
                                           L"&H10000000000000000|&O2000000000000000000000|1E309|"
                                           L"1E999999999999999999999|\u0661|\uFF15|\u00BD|5\u20AC|0x1F|"
                                           L"inf|nan|True|1/2|12:30",
                                           L"|"))
        EXPECT_FALSE(IsNumeric(sText)) << sText;
    EXPECT_FALSE(IsNumeric(std::wstring_view(L"5\0", 2)));
}

TEST(NumericValue, ReadsNumbersHoweverLong)
{
    EXPECT_EQ(NumericValue(L"1" + std::wstring(400, L'0')), std::nullopt);
    EXPECT_EQ(NumericValue(L"0." + std::wstring(400, L'0') + L"1"), std::optional<double>(0));
    EXPECT_EQ(NumericValue(std::wstring(400, L'0') + L"1"), std::optional<double>(1));
    EXPECT_EQ(NumericValue(L"0." + std::wstring(400, L'0') + L"1E401"), std::optional<double>(1));
}

TEST(ToLong, RoundsToTheNearestAndTiesToEven)
{
    const struct
    {
        double dValue;
        std::int32_t lLong;
    } aCases[] = {
        {0, 0},
        {0.5, 0},
        {1.5, 2},
        {2.5, 2},
        {3.5, 4},
        {-0.5, 0},
        {-1.5, -2},
        {-2.5, -2},
        {2.4, 2},
        {2.6, 3},
        {-2.6, -3},
        {0.49999999999999994, 0},
        {1e-300, 0},
        {7.0, 7},
        {-7.0, -7},
        {2.5001, 3},
        {2147483647.4, 2147483647},
        {-2147483648.5, std::numeric_limits<std::int32_t>::min()},
    };
    for (const auto& testCase : aCases)
        EXPECT_EQ(ToLong(testCase.dValue), std::optional<std::int32_t>(testCase.lLong)) << testCase.dValue;
}

TEST(ToLong, RefusesWhatDoesNotFit)
{
    for (const double dValue : {2147483647.5, 2147483648.0, -2147483648.6, -2147483649.0, 1e300, -1e300,
                                std::numeric_limits<double>::infinity(), std::nan("")})
        EXPECT_EQ(ToLong(dValue), std::nullopt) << dValue;
}

TEST(CategoryKey, IsDividedAtItsFirstTab)
{
    EXPECT_EQ(CategoryKey(L"Pop", 12), L"Pop\t12");
    struct
    {
        std::wstring_view sKey;
        std::wstring_view sName;
        std::optional<std::wstring_view> sLevel;
    } const cases[] = {
        {L"Pop\t12", L"Pop", L"12"}, {L"Pop", L"Pop", std::nullopt}, {L"Pop\t", L"Pop", L""},
        {L"\t1", L"", L"1"},         {L"a\t1\t2", L"a", L"1\t2"},    {L"", L"", std::nullopt},
    };
    for (const auto& row : cases)
    {
        const CategoryKeyParts parts = SplitCategoryKey(row.sKey);
        EXPECT_EQ(parts.sName, row.sName);
        EXPECT_EQ(parts.sLevel, row.sLevel);
    }
}

} // namespace
} // namespace ravlo

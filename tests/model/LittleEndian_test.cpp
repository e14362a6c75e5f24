// SPDX-License-Identifier: MIT
#include "model/LittleEndian.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace ravlo::test
{
namespace
{

using namespace std::string_literals;

TEST(LittleEndian, LongIsFourBytesLowestFirst)
{
    const std::pair<std::int32_t, std::string> rows[] = {
        {0, "\0\0\0\0"s},
        {1, "\1\0\0\0"s},
        {-1, "\xFF\xFF\xFF\xFF"s},
        {0x12345678, "\x78\x56\x34\x12"s},
        {std::numeric_limits<std::int32_t>::max(), "\xFF\xFF\xFF\x7F"s},
        {std::numeric_limits<std::int32_t>::min(), "\0\0\0\x80"s}};
    for (const auto& [lValue, expected] : rows)
    {
        std::string bytes = "??????";
        PutLong(bytes, 1, lValue);
        EXPECT_EQ(bytes, "?" + expected + "?") << lValue;
        EXPECT_EQ(GetLong(bytes, 1), lValue);
    }
}

TEST(LittleEndian, IntegerIsTwoBytesLowestFirst)
{
    const std::pair<std::int16_t, std::string> rows[] = {
        {std::int16_t{0}, "\0\0"s},         {std::int16_t{1}, "\1\0"s},
        {std::int16_t{-1}, "\xFF\xFF"s},    {std::int16_t{0x1234}, "\x34\x12"s},
        {std::int16_t{32767}, "\xFF\x7F"s}, {std::int16_t{-32768}, "\0\x80"s}};
    for (const auto& [iValue, expected] : rows)
    {
        std::string bytes = "????";
        PutInteger(bytes, 1, iValue);
        EXPECT_EQ(bytes, "?" + expected + "?") << iValue;
        EXPECT_EQ(GetInteger(bytes, 1), iValue);
    }
}

TEST(LittleEndian, TextIsPaddedWithBlanksAndCutAtItsField)
{
    for (const auto& [text, expected] : {std::pair{"ab", "?ab   ??"}, std::pair{"", "?     ??"},
                                         std::pair{"abcde", "?abcde??"}, std::pair{"abcdefgh", "?abcde??"}})
    {
        std::string bytes = "????????";
        PutText(bytes, 1, 5, text);
        EXPECT_EQ(bytes, expected);
    }
}

} // namespace
} // namespace ravlo::test

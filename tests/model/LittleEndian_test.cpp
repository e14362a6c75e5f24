// SPDX-License-Identifier: MIT
#include "model/LittleEndian.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace ravlo::test
{
namespace
{

using namespace std::string_literals;

TEST(LittleEndian, ALongIsFourBytesLowestFirst)
{
    struct Row
    {
        std::int32_t lValue;
        std::string bytes;
    };
    const Row rows[] = {{0, "\0\0\0\0"s},
                        {1, "\1\0\0\0"s},
                        {-1, "\xFF\xFF\xFF\xFF"s},
                        {0x12345678, "\x78\x56\x34\x12"s},
                        {std::numeric_limits<std::int32_t>::max(), "\xFF\xFF\xFF\x7F"s},
                        {std::numeric_limits<std::int32_t>::min(), "\0\0\0\x80"s}};
    for (const Row& row : rows)
    {
        std::string bytes = "??????";
        PutLong(bytes, 1, row.lValue);
        EXPECT_EQ(bytes, "?" + row.bytes + "?") << row.lValue;
        EXPECT_EQ(GetLong(bytes, 1), row.lValue);
    }
}

TEST(LittleEndian, AnIntegerIsTwoBytesLowestFirst)
{
    struct Row
    {
        std::int16_t iValue;
        std::string bytes;
    };
    const Row rows[] = {{0, "\0\0"s},          {1, "\1\0"s},         {-1, "\xFF\xFF"s},
                        {0x1234, "\x34\x12"s}, {32767, "\xFF\x7F"s}, {-32768, "\0\x80"s}};
    for (const Row& row : rows)
    {
        std::string bytes = "????";
        PutInteger(bytes, 1, row.iValue);
        EXPECT_EQ(bytes, "?" + row.bytes + "?") << row.iValue;
        EXPECT_EQ(GetInteger(bytes, 1), row.iValue);
    }
}

TEST(LittleEndian, ATextIsPaddedWithBlanksAndCutAtItsField)
{
    std::string bytes = "????????";
    PutText(bytes, 1, 5, "ab");
    EXPECT_EQ(bytes, "?ab   ??");
    PutText(bytes, 1, 5, "");
    EXPECT_EQ(bytes, "?     ??");
    PutText(bytes, 1, 5, "abcde");
    EXPECT_EQ(bytes, "?abcde??");
    PutText(bytes, 1, 5, "abcdefgh");
    EXPECT_EQ(bytes, "?abcde??");
}

} // namespace
} // namespace ravlo::test

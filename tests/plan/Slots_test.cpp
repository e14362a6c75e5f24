// SPDX-License-Identifier: MIT
#include "plan/Slots.h"

#include "support/Raised.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

DateTime TimeOf(int lHour, int lMinute, int lSecond = 0)
{
    return DateTimeOf({2024, 3, 1, lHour, lMinute, lSecond});
}

} // namespace

TEST(ParseClock, TakesOneSlotALine)
{
    const auto slots = ParseClock("rock,2,Y\npop,1,N\n", L"clock.txt");
    ASSERT_EQ(slots.size(), 2u);
    EXPECT_EQ(slots[0], (Slot{L"rock", 2, true, 1}));
    EXPECT_EQ(slots[1], (Slot{L"pop", 1, false, 2}));
}

TEST(ParseClock, SkipsButCountsCommentsEmptyLinesAndTheHeading)
{
    const auto slots = ParseClock(
        "\xEF\xBB\xBF# it's the \"hour\r\n\r\nCategory,Level,Opener\r\n#,,,\r\nrock,2,Y\r\n  \r\npop,1",
        L"clock.txt");
    ASSERT_EQ(slots.size(), 2u);
    EXPECT_EQ(slots[0], (Slot{L"rock", 2, true, 5}));
    EXPECT_EQ(slots[1], (Slot{L"pop", 1, false, 7}));
}

TEST(ParseClock, AMissingOrEmptyOpenerMeansNo)
{
    for (const char* sLine : {"rock,2", "rock,2,", "rock,2,n", "rock, 2 , N "})
        EXPECT_EQ(ParseClock(sLine, L"c").at(0), (Slot{L"rock", 2, false, 1})) << sLine;
}

TEST(ParseClock, ReadsQuotedAndForeignNames)
{
    const auto slots = ParseClock("\"R&B, \"\"slow\"\"\",1,y\n\xC3\x84rger,3,N\n", L"clock.txt");
    EXPECT_EQ(slots.at(0).sCategory, L"R&B, \"slow\"");
    EXPECT_TRUE(slots.at(0).bOpener);
    EXPECT_EQ(slots.at(1).sCategory, L"\u00C4rger");
}

TEST(ParseClock, AWrongLineIsNamedWithTheReason)
{
    const struct
    {
        const char* sBytes;
        const wchar_t* sError;
    } table[] = {
        {"rock,1\nrock\n", L"clock.txt, line 2: expected category,level,opener"},
        {"rock,1,Y,4\n", L"clock.txt, line 1: expected category,level,opener"},
        {" ,1,Y\n", L"clock.txt, line 1: the category is empty"},
        {"rock,0\n", L"clock.txt, line 1: the level must be a whole number from 1, not \"0\""},
        {"rock,-1\n", L"clock.txt, line 1: the level must be a whole number from 1, not \"-1\""},
        {"rock,1.5\n", L"clock.txt, line 1: the level must be a whole number from 1, not \"1.5\""},
        {"rock,\n", L"clock.txt, line 1: the level must be a whole number from 1, not \"\""},
        {"rock,99999999999\n",
         L"clock.txt, line 1: the level must be a whole number from 1, not \"99999999999\""},
        {"rock,1,maybe\n", L"clock.txt, line 1: the opener must be Y or N, not \"maybe\""},
        {"#\nro\"ck,1\n", L"clock.txt, line 2: a quotation mark is where none may be"},
        {"\"rock,1\n", L"clock.txt, line 1: a quotation mark is never closed"},
        {"ro\xFF"
         "ck,1\n",
         L"clock.txt, line 1: not UTF-8"},
        {"", L"clock.txt holds no slot"},
        {"# only words\ncategory,level,opener\n", L"clock.txt holds no slot"},
    };
    for (const auto& row : table)
        EXPECT_EQ(RaisedBy([&] { ParseClock(row.sBytes, L"clock.txt"); }).sDescription, row.sError)
            << row.sBytes;
}

TEST(ParseSlots, TakesTimesWithTheirSlots)
{
    const auto slots = ParseSlots("slot_at,category,level,opener\n2024-03-01T10:00:00,rock,2,Y\n"
                                  "2024-03-01 10:00,pop,1,\n2024-03-01T10:04:30,pop,1,N\n",
                                  L"slots.csv");
    ASSERT_EQ(slots.size(), 3u);
    EXPECT_EQ(slots[0], (TimedSlot{TimeOf(10, 0), {L"rock", 2, true, 2}}));
    EXPECT_EQ(slots[1], (TimedSlot{TimeOf(10, 0), {L"pop", 1, false, 3}}));
    EXPECT_EQ(slots[2], (TimedSlot{TimeOf(10, 4, 30), {L"pop", 1, false, 4}}));
}

TEST(ParseSlots, AWrongLineIsNamedWithTheReason)
{
    const struct
    {
        const char* sBytes;
        const wchar_t* sError;
    } table[] = {
        {"2024-03-01T10:00:00,rock,2,Y\n",
         L"slots.csv does not begin with the heading slot_at,category,level,opener"},
        {"", L"slots.csv does not begin with the heading slot_at,category,level,opener"},
        {"slot_at,category,level,opener\n", L"slots.csv holds no slot"},
        {"slot_at,category,level,opener\n2024-02-30T10:00:00,rock,2,Y\n",
         L"slots.csv, line 2: \"2024-02-30T10:00:00\" is no time (expected yyyy-mm-ddThh:nn:ss)"},
        {"slot_at,category,level,opener\n1899-12-30,rock,2,Y\n",
         L"slots.csv, line 2: \"1899-12-30\" is no time (expected yyyy-mm-ddThh:nn:ss)"},
        {"slot_at,category,level,opener\n2024-03-01,rock\n",
         L"slots.csv, line 2: expected slot_at,category,level,opener"},
        {"slot_at,category,level,opener\n2024-03-02,rock,1,N\n2024-03-01,rock,1,N\n",
         L"slots.csv, line 3: the time is earlier than that of the slot before"},
    };
    for (const auto& row : table)
        EXPECT_EQ(RaisedBy([&] { ParseSlots(row.sBytes, L"slots.csv"); }).sDescription, row.sError)
            << row.sBytes;
}

TEST(ClockHand, BeginsAgainAfterTheLastSlotAndWithEachHour)
{
    const std::vector<Slot> clock{{L"a", 1}, {L"b", 1}, {L"c", 1}};
    ClockHand hand(clock);
    EXPECT_EQ(hand.Next(TimeOf(10, 0)).sCategory, L"a");
    EXPECT_EQ(hand.Next(TimeOf(10, 4)).sCategory, L"b");
    EXPECT_EQ(hand.Next(TimeOf(10, 8)).sCategory, L"c");
    EXPECT_EQ(hand.Next(TimeOf(10, 55)).sCategory, L"a");
    EXPECT_EQ(hand.Next(TimeOf(10, 59, 59)).sCategory, L"b");
    EXPECT_EQ(hand.Next(TimeOf(11, 0)).sCategory, L"a");
    EXPECT_EQ(hand.Next(TimeOf(11, 3)).sCategory, L"b");
    EXPECT_EQ(hand.Next(DateTimeOf({2024, 3, 2, 11, 3, 0})).sCategory, L"a"); // the same hour of another day
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "base/DateTime.h"
#include "base/Text.h"
#include "support/Raised.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace ravlo
{
namespace
{

constexpr double dSecond = 1.0 / 86400;

TEST(DateTime, CountsDaysFromTheThirtiethOfDecember1899)
{
    const struct
    {
        DateTime dtWhen;
        const wchar_t* sIso;
    } aCases[] = {
        {0, L"1899-12-30T00:00:00"},
        {0.5, L"1899-12-30T12:00:00"},
        {1, L"1899-12-31T00:00:00"},
        {2, L"1900-01-01T00:00:00"},
        {60, L"1900-02-28T00:00:00"},
        {61, L"1900-03-01T00:00:00"}, // 1900 was no leap year
        {36526, L"2000-01-01T00:00:00"},
        {36585, L"2000-02-29T00:00:00"}, // 2000 was one
        {45352.5, L"2024-03-01T12:00:00"},
        {45351.25, L"2024-02-29T06:00:00"},
        {45352 - dSecond, L"2024-02-29T23:59:59"},
        {2958465, L"9999-12-31T00:00:00"},
        {-657434, L"0100-01-01T00:00:00"},
    };
    for (const auto& testCase : aCases)
    {
        EXPECT_EQ(IsoText(testCase.dtWhen), testCase.sIso);
        EXPECT_NEAR(DateTimeOf(FieldsOf(testCase.dtWhen)), testCase.dtWhen, dSecond / 1000);
    }
}

TEST(DateTime, TheTimeOfDayCountsForwardBeforeTheFirstDayToo)
{
    EXPECT_EQ(IsoText(-1.25), L"1899-12-29T06:00:00");
    EXPECT_EQ(IsoText(-0.25), L"1899-12-30T06:00:00"); // the same moment as 0.25
    EXPECT_EQ(DateTimeOf({1899, 12, 29, 6, 0, 0}), -1.25);
    EXPECT_EQ(DateTimeOf({1899, 12, 30, 6, 0, 0}), 0.25);
    EXPECT_EQ(WholeSeconds(-1.25), -86400 + 21600);
    EXPECT_EQ(WholeSeconds(-0.25), 21600);
}

TEST(DateTime, EveryDayOfACalendarCycleHasItsFields)
{
    DateFields fields = FieldsOf(36526);
    for (int lDay = 1; lDay <= 146097; ++lDay)
    {
        const DateFields next = FieldsOf(36526 + lDay);
        const int lMonths = (next.lYear - fields.lYear) * 12 + next.lMonth - fields.lMonth;
        ASSERT_TRUE(next.lDay == 1 ? lMonths == 1 : lMonths == 0 && next.lDay == fields.lDay + 1) << lDay;
        ASSERT_EQ(DateTimeOf(next), 36526 + lDay);
        fields = next;
    }
    EXPECT_EQ(fields.lYear, 2400);
}

TEST(DateTime, RoundsToWholeSeconds)
{
    EXPECT_EQ(WholeSeconds(1 + 0.4 * dSecond), 86400);
    EXPECT_EQ(WholeSeconds(1 + 0.6 * dSecond), 86401);
    EXPECT_EQ(WholeSeconds(2 - 0.4 * dSecond), 2 * 86400);
    EXPECT_EQ(IsoText(45352 - 0.4 * dSecond), L"2024-03-01T00:00:00");
    EXPECT_EQ(IsoText(-2 - (1 - 0.4 * dSecond)),
              L"1899-12-29T00:00:00"); // a second before midnight, rounded up
    EXPECT_EQ(IsoText(2958466 - 0.4 * dSecond), L"9999-12-31T23:59:59"); // there is no next day
}

TEST(DateTime, EverySecondOfADaySurvivesTheRoundTrip)
{
    for (std::int64_t second = 0; second < 86400; ++second)
    {
        const int lSeconds = static_cast<int>(second);
        const DateTime dtWhen = DateTimeOf({2024, 3, 1, lSeconds / 3600, lSeconds / 60 % 60, lSeconds % 60});
        ASSERT_EQ(WholeSeconds(dtWhen), 45352 * 86400LL + second);
    }
}

TEST(DateTime, RefusesWhatIsNoDate)
{
    const auto raisedBy = [](DateTime dtWhen) { return NumberRaisedBy([&] { FieldsOf(dtWhen); }); };
    for (const double dtWhen :
         {2958466.0, -657435.0, 1e300, -1e300, std::numeric_limits<double>::infinity(), std::nan("")})
        EXPECT_EQ(raisedBy(dtWhen), error::InvalidProcedureCall) << dtWhen;
    EXPECT_EQ(raisedBy(2958465.99), 0);
    EXPECT_EQ(raisedBy(-657434.99), 0);
}

TEST(DateTime, RefusesFieldsThatNameNoMoment)
{
    const DateFields aWrong[] = {
        {99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0},  {2024, 13, 1, 0, 0, 0},
        {2024, 1, 0, 0, 0, 0},  {2024, 1, 32, 0, 0, 0}, {2024, 4, 31, 0, 0, 0}, {2023, 2, 29, 0, 0, 0},
        {1900, 2, 29, 0, 0, 0}, {2024, 2, 30, 0, 0, 0}, {2024, 1, 1, 24, 0, 0}, {2024, 1, 1, -1, 0, 0},
        {2024, 1, 1, 0, 60, 0}, {2024, 1, 1, 0, -1, 0}, {2024, 1, 1, 0, 0, 60}, {2024, 1, 1, 0, 0, -1}};
    for (const DateFields& fields : aWrong)
        EXPECT_THROW(DateTimeOf(fields), RuntimeError)
            << fields.lYear << ' ' << fields.lMonth << ' ' << fields.lDay << ' ' << fields.lHour << ' '
            << fields.lMinute << ' ' << fields.lSecond;
}

TEST(ParseIso, ReadsDatesWithAndWithoutATime)
{
    const struct
    {
        const wchar_t* sText;
        DateTime dtWhen;
    } aCases[] = {
        {L"2024-03-01", 45352},
        {L"2024-03-01T12:00", 45352.5},
        {L"2024-03-01 12:00", 45352.5},
        {L"2024-03-01T06:00:00", 45352.25},
        {L"2024-03-01T06:00:00Z", 45352.25},
        {L"2024-03-01T12:00Z", 45352.5},
        {L"2024-03-01T00:00:00.5", 45352 + dSecond / 2},
        {L"2024-03-01T00:00:01.250Z", 45352 + 1.25 * dSecond},
        {L"2024-02-29", 45351},
        {L"1899-12-29T06:00", -1.25},
        {L"0100-01-01", -657434},
        {L"9999-12-31T23:59:59", 2958466 - dSecond},
    };
    for (const auto& testCase : aCases)
    {
        const auto dtWhen = ParseIso(testCase.sText);
        ASSERT_TRUE(dtWhen.has_value()) << testCase.sText;
        EXPECT_NEAR(*dtWhen, testCase.dtWhen, dSecond / 1e4) << testCase.sText;
    }
}

TEST(ParseIso, RefusesEverythingElse)
{
    for (const std::wstring& sText : Split(L"|2024|2024-03|2024-3-1|24-03-01|2024-03-01T|2024-03-01T12|"
                                           L"2024-03-01T12:0|2024-03-01T12:00:|2024-03-01T12:00:00.|"
                                           L"2024-03-01T12:00:00+01:00|2024-03-01T12:00:00ZZ|2024-03-01Z|"
                                           L" 2024-03-01|2024-03-01 |2024/03/01|2024-13-01|2023-02-29|"
                                           L"2024-03-00|2024-03-01T24:00|2024-03-01T12:60|"
                                           L"2024-03-01T12:00:60|0099-01-01|-024-03-01|2024-03-01T-1:00|"
                                           L"01.03.2024|yesterday",
                                           L"|"))
        EXPECT_EQ(ParseIso(sText), std::nullopt) << sText;
}

TEST(ParseIso, ReadsBackWhatIsoTextWrote)
{
    for (const DateTime dtWhen : {0.0, -1.25, 45352.123456, 2958465.5})
        EXPECT_EQ(IsoText(*ParseIso(IsoText(dtWhen))), IsoText(dtWhen));
}

} // namespace
} // namespace ravlo

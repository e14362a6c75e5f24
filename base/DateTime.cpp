// SPDX-License-Identifier: MIT
#include "base/DateTime.h"

#include "base/RuntimeError.h"

#include <cmath>
#include <cstdio>

namespace ravlo
{

namespace
{

constexpr std::int64_t secondsPerDay = 86400;

// Days from 30 December 1899 to a date of the Gregorian calendar.
std::int64_t DayNumberOf(int lYear, int lMonth, int lDay)
{
    // Years begin in March here, so that the leap day is the last one of its year.
    const std::int64_t shifted = lMonth > 2 ? lYear : lYear - 1;
    const std::int64_t era = shifted / 400;
    const std::int64_t yearOfEra = shifted - era * 400;
    const std::int64_t dayOfYear = (153 * (lMonth > 2 ? lMonth - 3 : lMonth + 9) + 2) / 5 + lDay - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    constexpr std::int64_t epoch = 693899; // 30 December 1899, counted from 1 March of the year 0
    return era * 146097 + dayOfEra - epoch;
}

void SplitDayNumber(std::int64_t number, DateFields& fields)
{
    const std::int64_t days = number + 693899;
    const std::int64_t era = days / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    fields.lDay = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    fields.lMonth = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    fields.lYear = static_cast<int>(yearOfEra + era * 400 + (fields.lMonth <= 2 ? 1 : 0));
}

bool IsValid(const DateFields& fields)
{
    if (fields.lYear < 100 || fields.lYear > 9999 || fields.lMonth < 1 || fields.lMonth > 12)
        return false;
    constexpr int aDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool bLeap = fields.lYear % 4 == 0 && (fields.lYear % 100 != 0 || fields.lYear % 400 == 0);
    const int lDays = fields.lMonth == 2 && bLeap ? 29 : aDays[fields.lMonth - 1];
    return fields.lDay >= 1 && fields.lDay <= lDays && fields.lHour >= 0 && fields.lHour <= 23 &&
           fields.lMinute >= 0 && fields.lMinute <= 59 && fields.lSecond >= 0 && fields.lSecond <= 59;
}

// Before the first day the time of day still counts forward: -1.25 is 29 December 1899, 6 o'clock.
DateTime Joined(std::int64_t day, double dSeconds)
{
    const double dFraction = dSeconds / static_cast<double>(secondsPerDay);
    return static_cast<double>(day) + (day < 0 ? -dFraction : dFraction);
}

double SecondsOfDay(const DateFields& fields)
{
    return fields.lHour * 3600 + fields.lMinute * 60 + fields.lSecond;
}

// Reads fields of fixed width from the start of a text.
class IsoReader
{
public:
    explicit IsoReader(std::wstring_view sText) : m_sRest(sText) {}

    bool Digits(int lCount, int& lValue)
    {
        lValue = 0;
        for (; lCount > 0; --lCount)
        {
            if (!AtDigit())
                return false;
            lValue = lValue * 10 + (m_sRest.front() - L'0');
            m_sRest.remove_prefix(1);
        }
        return true;
    }
    bool Mark(std::wstring_view sAllowed)
    {
        if (m_sRest.empty() || sAllowed.find(m_sRest.front()) == std::wstring_view::npos)
            return false;
        m_sRest.remove_prefix(1);
        return true;
    }
    bool Fraction(double& dFraction)
    {
        if (!AtDigit())
            return false;
        for (double dUnit = 0.1; AtDigit(); dUnit /= 10)
        {
            dFraction += dUnit * (m_sRest.front() - L'0');
            m_sRest.remove_prefix(1);
        }
        return true;
    }
    bool AtEnd() const { return m_sRest.empty(); }

private:
    bool AtDigit() const { return !m_sRest.empty() && m_sRest.front() >= L'0' && m_sRest.front() <= L'9'; }
    std::wstring_view m_sRest;
};

} // namespace

DateFields FieldsOf(DateTime dtWhen)
{
    const std::int64_t seconds = WholeSeconds(dtWhen);
    std::int64_t day = seconds / secondsPerDay;
    std::int64_t rest = seconds % secondsPerDay;
    if (rest < 0)
    {
        rest += secondsPerDay;
        --day;
    }
    DateFields fields{};
    SplitDayNumber(day, fields);
    fields.lHour = static_cast<int>(rest / 3600);
    fields.lMinute = static_cast<int>(rest / 60 % 60);
    fields.lSecond = static_cast<int>(rest % 60);
    return fields;
}

DateTime DateTimeOf(const DateFields& fields)
{
    if (!IsValid(fields))
        throw RuntimeError(error::InvalidProcedureCall);
    return Joined(DayNumberOf(fields.lYear, fields.lMonth, fields.lDay), SecondsOfDay(fields));
}

std::int64_t WholeSeconds(DateTime dtWhen)
{
    constexpr double dFirst = -657435; // 1 January 100 is -657434, and its times of day are below that
    constexpr double dBehindLast = 2958466;
    if (!(dtWhen > dFirst && dtWhen < dBehindLast)) // NaN fails the test too
        throw RuntimeError(error::InvalidProcedureCall);
    const double dDay = std::trunc(dtWhen);
    const double dTime = std::abs(dtWhen - dDay) * static_cast<double>(secondsPerDay);
    const std::int64_t seconds = static_cast<std::int64_t>(dDay) * secondsPerDay + std::llround(dTime);
    // The last half second of the calendar has no next day to round up to.
    constexpr std::int64_t last = static_cast<std::int64_t>(dBehindLast) * secondsPerDay - 1;
    return seconds < last ? seconds : last;
}

std::wstring IsoText(DateTime dtWhen)
{
    const DateFields fields = FieldsOf(dtWhen);
    char aText[80]; // enough for six ints of any value, so that no compiler warns
    const int lLength =
        std::snprintf(aText, sizeof aText, "%04d-%02d-%02dT%02d:%02d:%02d", fields.lYear, fields.lMonth,
                      fields.lDay, fields.lHour, fields.lMinute, fields.lSecond);
    return std::wstring(aText, aText + lLength);
}

std::optional<DateTime> ParseIso(std::wstring_view sText)
{
    IsoReader cReader(sText);
    DateFields fields{};
    double dFraction = 0;
    if (!cReader.Digits(4, fields.lYear) || !cReader.Mark(L"-") || !cReader.Digits(2, fields.lMonth) ||
        !cReader.Mark(L"-") || !cReader.Digits(2, fields.lDay))
        return std::nullopt;
    if (cReader.Mark(L"T "))
    {
        if (!cReader.Digits(2, fields.lHour) || !cReader.Mark(L":") || !cReader.Digits(2, fields.lMinute))
            return std::nullopt;
        if (cReader.Mark(L":"))
        {
            if (!cReader.Digits(2, fields.lSecond) || (cReader.Mark(L".") && !cReader.Fraction(dFraction)))
                return std::nullopt;
        }
        cReader.Mark(L"Z");
    }
    if (!cReader.AtEnd() || !IsValid(fields))
        return std::nullopt;
    return Joined(DayNumberOf(fields.lYear, fields.lMonth, fields.lDay), SecondsOfDay(fields) + dFraction);
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// A moment in local time as automation hosts store it: days since 30 December 1899, the time of day as the
// fraction. 0 means "never".
using DateTime = double;

// The fields of a moment, rounded to whole seconds.
struct DateFields
{
    int lYear;
    int lMonth;  // 1 to 12
    int lDay;    // 1 to 31
    int lHour;   // 0 to 23
    int lMinute; // 0 to 59
    int lSecond; // 0 to 59
};

DateFields FieldsOf(DateTime dtWhen);
DateTime DateTimeOf(const DateFields& fields);

// Seconds since 30 December 1899, rounded to the nearest whole second.
std::int64_t WholeSeconds(DateTime dtWhen);

// "yyyy-mm-ddThh:nn:ss".
std::wstring IsoText(DateTime dtWhen);

// Reads "yyyy-mm-dd", "yyyy-mm-ddThh:nn" or "yyyy-mm-ddThh:nn:ss" (a blank may replace the T; seconds may
// have a fraction, a trailing Z is ignored). Nothing when the text is no such date or names a day that does
// not exist.
std::optional<DateTime> ParseIso(std::wstring_view sText);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "platform/posix/SystemClock.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace ravlo
{

DateTime SystemClock::Now() const
{
    using namespace std::chrono;
    const std::int64_t lMilliseconds =
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const std::time_t lSeconds = static_cast<std::time_t>(lMilliseconds / 1000);
    std::tm tm{};
    ::localtime_r(&lSeconds, &tm);
    // A leap second is told as second 60, which dates do not have.
    const DateTime dtWhole = DateTimeOf(
        {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, std::min(tm.tm_sec, 59)});
    return dtWhole + static_cast<double>(lMilliseconds % 1000) / 86'400'000.0;
}

std::uint32_t SystemClock::TickCount() const
{
    using namespace std::chrono;
    return static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace ravlo

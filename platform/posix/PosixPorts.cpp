// SPDX-License-Identifier: MIT
#include "platform/posix/PosixPorts.h"

#include "base/Utf8.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace ravlo
{

namespace
{

void Print(const std::wstring& sTitle, const std::wstring& sText)
{
    const std::string bytes = Utf8Of(sTitle + L": " + sText + L"\n");
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

} // namespace

DateTime SystemClock::Now() const
{
    using namespace std::chrono;
    const std::int64_t unixMilliseconds =
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const std::time_t unixSeconds = static_cast<std::time_t>(unixMilliseconds / 1000);
    std::tm tm{};
    ::localtime_r(&unixSeconds, &tm);
    // A leap second is second 60, which dates do not have.
    const DateTime dtWhole = DateTimeOf(
        {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, std::min(tm.tm_sec, 59)});
    return dtWhole + static_cast<double>(unixMilliseconds % 1000) / 86'400'000.0;
}

std::uint32_t SystemClock::TickCount() const
{
    using namespace std::chrono;
    return static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void PosixHostLoop::Sleep(std::uint32_t lMilliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(lMilliseconds));
}

BoxAnswer StandardMessages::Box(BoxIcon, BoxButtons, const std::wstring& sTitle, const std::wstring& sText)
{
    Print(sTitle, sText);
    return BoxAnswer::None;
}

std::optional<std::wstring> StandardMessages::Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                                    const std::wstring&)
{
    Print(sTitle, sPrompt);
    return std::nullopt;
}

} // namespace ravlo

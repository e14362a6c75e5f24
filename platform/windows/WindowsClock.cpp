// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsClock.h"

#include <windows.h>
// after it
#include <mmsystem.h>

namespace ravlo
{

DateTime WindowsClock::Now() const
{
    SYSTEMTIME now{};
    ::GetLocalTime(&now);
    const DateTime dtWhole =
        DateTimeOf({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
    return dtWhole + static_cast<double>(now.wMilliseconds) / 86'400'000.0;
}

std::uint32_t WindowsClock::TickCount() const { return ::timeGetTime(); }

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryClock.h"

namespace ravlo
{

DateTime MemoryClock::Now() const { return m_dtStart + static_cast<double>(m_lPassed) / 86'400'000.0; }

void MemoryClock::SetNow(DateTime dtNow)
{
    m_dtStart = dtNow;
    m_lPassed = 0;
}

void MemoryClock::Advance(std::uint32_t lMilliseconds)
{
    m_lPassed += lMilliseconds;
    m_lTickCount += lMilliseconds;
}

} // namespace ravlo

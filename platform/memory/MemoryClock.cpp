// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryClock.h"

namespace ravlo
{

DateTime MemoryClock::Now() const { return m_dtStart + static_cast<double>(m_passed) / 86'400'000.0; }

void MemoryClock::SetNow(DateTime dtNow)
{
    m_dtStart = dtNow;
    m_passed = 0;
}

void MemoryClock::Advance(std::uint32_t lMilliseconds)
{
    m_passed += lMilliseconds;
    m_lTickCount += lMilliseconds;
}

} // namespace ravlo

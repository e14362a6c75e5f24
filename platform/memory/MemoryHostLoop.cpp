// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryHostLoop.h"

namespace ravlo
{

void MemoryHostLoop::PumpMessages()
{
    ++lPumps;
    if (const auto hook = OnPump)
        hook();
}

void MemoryHostLoop::Sleep(std::uint32_t lMilliseconds)
{
    ++lSleeps;
    sleptmS += lMilliseconds;
    if (m_cClock)
        m_cClock->Advance(lMilliseconds);
    if (const auto hook = OnSleep)
        hook(lMilliseconds);
}

} // namespace ravlo

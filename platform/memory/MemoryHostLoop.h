// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HostLoop.h"
#include "platform/memory/MemoryClock.h"

#include <functional>

namespace ravlo
{

// A message loop that counts. Through the hooks a test does what a host's timers and users do: call back into
// the scheduler in the middle of its work. A hook may replace itself.
class MemoryHostLoop final : public HostLoop
{
public:
    MemoryHostLoop() = default;
    // Sleeping lets the clock's time pass.
    explicit MemoryHostLoop(MemoryClock& cClock) : m_cClock(&cClock) {}

    void PumpMessages() override;
    void Sleep(std::uint32_t lMilliseconds) override;

    int lPumps = 0;
    int lSleeps = 0;
    std::uint64_t sleptmS = 0;
    std::function<void()> OnPump;
    std::function<void(std::uint32_t lMilliseconds)> OnSleep;

private:
    MemoryClock* m_cClock = nullptr;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// The host's message loop, on whose thread everything runs. Anything may happen inside either call: the
// host's timers and the user's clicks may call back into the scheduler.
class HostLoop
{
public:
    virtual ~HostLoop() = default;
    // Processes the window messages that are waiting and returns.
    virtual void PumpMessages() = 0;
    // Suspends the thread; no messages are processed meanwhile.
    virtual void Sleep(std::uint32_t lMilliseconds) = 0;
};

} // namespace ravlo

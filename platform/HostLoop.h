// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// The host's message loop, on whose thread everything runs. Inside PumpMessages the host's timers and the
// user's clicks may call back into the scheduler.
class HostLoop
{
public:
    virtual ~HostLoop() = default;
    // Processes the pending window messages.
    virtual void PumpMessages() = 0;
    // Suspends the thread without processing messages.
    virtual void Sleep(std::uint32_t lMilliseconds) = 0;
};

} // namespace ravlo

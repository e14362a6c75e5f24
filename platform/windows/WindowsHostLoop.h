// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HostLoop.h"

namespace ravlo
{

// The message loop of the calling thread. Each message is shown to the thread's message filter hooks
// (WH_MSGFILTER, code MSGF_USER) first, so that an open window gets its accelerators and dialog keys here as
// it does in its own loop. A request to quit is put back for the host's loop. Pumping ends after a quarter of
// a second even if messages never do.
class WindowsHostLoop final : public HostLoop
{
public:
    void PumpMessages() override;
    void Sleep(std::uint32_t lMilliseconds) override;
};

} // namespace ravlo

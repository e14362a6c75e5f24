// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HostLoop.h"

namespace ravlo
{

// A program without windows has no messages to process.
class PosixHostLoop final : public HostLoop
{
public:
    void PumpMessages() override {}
    void Sleep(std::uint32_t lMilliseconds) override;
};

} // namespace ravlo

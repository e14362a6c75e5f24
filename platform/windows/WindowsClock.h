// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

namespace ravlo
{

// The system's clock, in local time to the millisecond.
class WindowsClock final : public Clock
{
public:
    DateTime Now() const override;
    std::uint32_t TickCount() const override;
};

} // namespace ravlo

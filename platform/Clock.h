// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"

#include <cstdint>

namespace ravlo
{

// The time of day, and a tick count.
class Clock
{
public:
    virtual ~Clock() = default;
    // The current local date and time.
    virtual DateTime Now() const = 0;
    // Milliseconds since some start; wraps after 2^32 ms, so compare by unsigned subtraction.
    virtual std::uint32_t TickCount() const = 0;
};

} // namespace ravlo

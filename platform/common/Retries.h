// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ravlo
{

// The pauses between the attempts at a file that is in use, in milliseconds: 950 in all.
inline constexpr std::array<std::uint32_t, 9> aRetryPauses = {10, 20, 40, 80, 160, 160, 160, 160, 160};

// How often an operation is attempted.
constexpr std::size_t Attempts(Patience ePatience)
{
    return ePatience == Patience::None ? 1 : aRetryPauses.size() + 1;
}

// Runs attempt, which returns whether the file was free, until it succeeds or patience ends; calls pause with
// the milliseconds to wait in between. Returns false when the file was never free.
template <class Attempt, class Pause> bool TryPatiently(Patience ePatience, Attempt&& attempt, Pause&& pause)
{
    for (std::size_t failed = 0;; ++failed)
    {
        if (attempt())
            return true;
        if (failed + 1 >= Attempts(ePatience))
            return false;
        pause(aRetryPauses[failed]);
    }
}

} // namespace ravlo

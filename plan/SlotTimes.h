// SPDX-License-Identifier: MIT
#pragma once

#include "plan/Slots.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ravlo
{

// The assumed length of an empty slot, and of a cut without a duration, so that a clock advances.
inline constexpr std::int32_t lEmptySlotmS = 3 * 60 * 1000;

std::int64_t WholeMilliseconds(DateTime dtWhen) noexcept;

// The moment so many milliseconds later, computed in whole milliseconds, so that sums of durations gather no
// rounding errors.
DateTime Later(DateTime dtWhen, std::int64_t milliseconds) noexcept;
inline DateTime LaterByHours(DateTime dtWhen, int lHours) noexcept
{
    return Later(dtWhen, std::int64_t{lHours} * 3'600'000);
}

// The slots from dtStart on (all of them without one), limited to lHours after dtStart, or after the first of
// them.
std::vector<TimedSlot> SlotsWithin(const std::vector<TimedSlot>& slots, std::optional<DateTime> dtStart,
                                   std::optional<int> lHours);

} // namespace ravlo

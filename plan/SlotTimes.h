// SPDX-License-Identifier: MIT
#pragma once

#include "plan/Slots.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
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

// How long the cut of a slot lasts; lDurationmS 0 and below: an empty slot, or a cut without a duration.
inline constexpr std::int32_t LengthOf(std::int32_t lDurationmS) noexcept
{
    return lDurationmS > 0 ? lDurationmS : lEmptySlotmS;
}
inline DateTime EndOfSlot(DateTime dtStart, std::int32_t lDurationmS) noexcept
{
    return Later(dtStart, LengthOf(lDurationmS));
}

// Fills a slot that starts at dtStart and returns when its cut ends.
using FillSlot = std::function<DateTime(const Slot& slot, DateTime dtStart)>;
// Fills the slots of a clock, each from the end of the previous one, until one would start at dtEnd or later.
void FillClock(const std::vector<Slot>& clock, DateTime dtStart, DateTime dtEnd, const FillSlot& fill);

// The times from dtStart on and before dtEnd, as the positions of the first one and of the one after the
// last. Compared in whole milliseconds, since a host may have computed either. Precondition: ascending.
std::pair<std::size_t, std::size_t> PositionsWithin(const std::vector<DateTime>& times, DateTime dtStart,
                                                    DateTime dtEnd);

// The slots from dtStart on (all of them without one), limited to lHours after dtStart, or after the first of
// them. Precondition: in ascending order.
std::vector<TimedSlot> SlotsWithin(const std::vector<TimedSlot>& slots, std::optional<DateTime> dtStart,
                                   std::optional<int> lHours);

} // namespace ravlo

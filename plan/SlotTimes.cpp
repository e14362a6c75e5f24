// SPDX-License-Identifier: MIT
#include "plan/SlotTimes.h"

#include <cmath>

namespace ravlo
{

namespace
{

constexpr double dDaymS = 86'400'000.0;

} // namespace

std::int64_t WholeMilliseconds(DateTime dtWhen) noexcept { return std::llround(dtWhen * dDaymS); }

DateTime Later(DateTime dtWhen, std::int64_t milliseconds) noexcept
{
    return static_cast<double>(WholeMilliseconds(dtWhen) + milliseconds) / dDaymS;
}

void FillClock(const std::vector<Slot>& clock, DateTime dtStart, DateTime dtEnd, const FillSlot& fill)
{
    ClockHand hand(clock);
    DateTime dtNext = dtStart;
    while (WholeMilliseconds(dtNext) < WholeMilliseconds(dtEnd))
        dtNext = fill(hand.Next(dtNext), dtNext);
}

std::vector<TimedSlot> SlotsWithin(const std::vector<TimedSlot>& slots, std::optional<DateTime> dtStart,
                                   std::optional<int> lHours)
{
    std::vector<TimedSlot> within;
    for (const auto& timed : slots)
    {
        if (dtStart && timed.dtAt < *dtStart)
            continue;
        const auto dtFrom = dtStart ? *dtStart : within.empty() ? timed.dtAt : within.front().dtAt;
        if (!lHours || timed.dtAt < LaterByHours(dtFrom, *lHours))
            within.push_back(timed);
    }
    return within;
}

} // namespace ravlo

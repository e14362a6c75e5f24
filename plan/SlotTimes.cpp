// SPDX-License-Identifier: MIT
#include "plan/SlotTimes.h"

#include <algorithm>
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

std::pair<std::size_t, std::size_t> PositionsWithin(const std::vector<DateTime>& times, DateTime dtStart,
                                                    DateTime dtEnd)
{
    const auto position = [&](DateTime dtWhen) {
        const auto it = std::lower_bound(times.begin(), times.end(), dtWhen, [](DateTime a, DateTime b) {
            return WholeMilliseconds(a) < WholeMilliseconds(b);
        });
        return static_cast<std::size_t>(it - times.begin());
    };
    const std::size_t first = position(dtStart);
    return {first, std::max(first, position(dtEnd))};
}

std::vector<TimedSlot> SlotsWithin(const std::vector<TimedSlot>& slots, std::optional<DateTime> dtStart,
                                   std::optional<int> lHours)
{
    if (slots.empty())
        return {};
    const DateTime dtFrom = dtStart.value_or(slots.front().dtAt);
    const DateTime dtEnd = lHours ? LaterByHours(dtFrom, *lHours) : Later(slots.back().dtAt, 1);
    std::vector<DateTime> times;
    for (const TimedSlot& timed : slots)
        times.push_back(timed.dtAt);
    const auto [first, last] = PositionsWithin(times, dtFrom, dtEnd);
    return {slots.begin() + static_cast<std::ptrdiff_t>(first),
            slots.begin() + static_cast<std::ptrdiff_t>(last)};
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "plan/SlotTimes.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

TimedSlot OnDay(int lDay, int lHour)
{
    return {DateTimeOf({2024, 3, lDay, lHour, 0, 0}), {L"rock", 1, false, 0}};
}

std::vector<int> HoursOf(const std::vector<TimedSlot>& slots)
{
    std::vector<int> hours;
    hours.reserve(slots.size());
    for (const auto& timed : slots)
        hours.push_back(FieldsOf(timed.dtAt).lHour);
    return hours;
}

} // namespace

TEST(SlotsWithin, KeepsTheSlotsOfTheTimeAskedFor)
{
    const std::vector<TimedSlot> slots{OnDay(1, 8), OnDay(1, 9), OnDay(1, 10), OnDay(1, 11)};
    const auto dtNine = DateTimeOf({2024, 3, 1, 9, 0, 0});
    const struct
    {
        std::optional<DateTime> dtStart;
        std::optional<int> lHours;
        std::vector<int> kept;
    } table[] = {
        {{}, {}, {8, 9, 10, 11}},
        {dtNine, {}, {9, 10, 11}},
        {{}, 2, {8, 9}}, // the end itself is outside
        {dtNine, 2, {9, 10}},
        {DateTimeOf({2024, 3, 1, 8, 30, 0}), 2, {9, 10}}, // counted from the start, not from the first slot
        {DateTimeOf({2024, 3, 2, 0, 0, 0}), {}, {}},
    };
    for (const auto& row : table)
        EXPECT_EQ(HoursOf(SlotsWithin(slots, row.dtStart, row.lHours)), row.kept);
}

} // namespace ravlo

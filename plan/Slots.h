// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// One position in the day, to be filled with a cut of one category level.
struct Slot
{
    std::wstring sCategory;
    std::int32_t lLevel = 0; // from 1
    bool bOpener = false;    // only a cut that may open an hour
    std::size_t line = 0;    // its line in the file; 0 = not from a file
    friend bool operator==(const Slot&, const Slot&) = default;
};

// "rock:2"
std::wstring LevelText(const Slot& slot);

struct TimedSlot
{
    DateTime dtAt = 0;
    Slot slot;
    friend bool operator==(const TimedSlot&, const TimedSlot&) = default;
};

// A clock file: the slots of an hour, one line each, "category,level,opener". UTF-8, quoted as in RFC 4180;
// opener is Y or N and may be omitted (N). Empty lines, lines that begin with '#' and a heading
// "category,level,opener" are ignored. Throws PlanError, naming sName and the line, when a line cannot be
// used or there is none.
std::vector<Slot> ParseClock(std::string_view bytes, const std::wstring& sName);

// A slot file: the heading "slot_at,category,level,opener", then one line per slot in the same form, with its
// time in ISO form, in ascending order. Throws like ParseClock.
std::vector<TimedSlot> ParseSlots(std::string_view bytes, const std::wstring& sName);

// Returns a clock's slots in turn; starts over with the first one when they are used up, and at the first
// slot of each full hour.
class ClockHand
{
public:
    // Precondition: there is at least one slot, and the caller's slots outlive this.
    explicit ClockHand(const std::vector<Slot>& slots) : m_slots(slots) {}
    const Slot& Next(DateTime dtStart);

private:
    const std::vector<Slot>& m_slots;
    std::size_t m_next = 0;
    std::optional<std::int64_t> m_hour; // of the last slot, in hours since the calendar's beginning
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "plan/Slots.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// What a station's days ask for: the slots of an hour that repeats, or slots with times of their own. A level
// that no cut is in, or that does not exist, may be asked for.
class Plan
{
public:
    // Replace the plan by the slots of a file, see ParseClock and ParseSlots. Throw PlanError, naming sName
    // and the line, for a file that cannot be used; the plan stays as it was.
    void LoadClock(std::string_view bytes, const std::wstring& sName);
    void LoadSlots(std::string_view bytes, const std::wstring& sName);
    // Adds a slot to the hour. Throws PlanError when the slots have times.
    void AddSlot(Slot slot);
    // Adds a slot with a time of its own. Precondition: no slot of an hour was added, and none is later.
    void AddSlotAt(DateTime dtAt, Slot slot);
    void Clear() noexcept { *this = {}; }

    bool IsTimed() const noexcept { return !m_times.empty(); }
    const std::vector<Slot>& Slots() const noexcept { return m_slots; }
    // When each slot starts, in ascending order; empty when the slots repeat.
    const std::vector<DateTime>& Times() const noexcept { return m_times; }

private:
    std::vector<Slot> m_slots;
    std::vector<DateTime> m_times;
};

} // namespace ravlo

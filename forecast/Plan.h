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
    enum class Source
    {
        Slots, // added one by one
        ClockFile,
        SlotFile,
        EachLevelInTurn,
    };

    // Replace the plan by the slots of a file, see ParseClock and ParseSlots. Throw PlanError, naming sName
    // and the line, for a file that cannot be used; the plan stays as it was.
    void LoadClock(std::string_view bytes, const std::wstring& sName);
    void LoadSlots(std::string_view bytes, const std::wstring& sName);
    // Adds a slot to the hour, which is that of a file no longer. Throws PlanError when the slots have times.
    void AddSlot(Slot slot);
    // Adds a slot with a time of its own. Precondition: no slot of an hour was added, and none is later.
    void AddSlotAt(DateTime dtAt, Slot slot);
    void Clear() noexcept { *this = {}; }

    // Where the slots come from, and the name of the file without its folder; empty for none.
    Source From() const noexcept { return m_eSource; }
    const std::wstring& File() const noexcept { return m_sFile; }
    void SetSource(Source eSource) noexcept { m_eSource = eSource; }
    // "clock file morning.txt", "slot file monday.csv", "24 slots an hour", "each level in turn".
    std::wstring Name() const;

    bool IsTimed() const noexcept { return !m_times.empty(); }
    const std::vector<Slot>& Slots() const noexcept { return m_slots; }
    // When each slot starts, in ascending order; empty when the slots repeat.
    const std::vector<DateTime>& Times() const noexcept { return m_times; }

private:
    Source m_eSource = Source::Slots;
    std::wstring m_sFile;
    std::vector<Slot> m_slots;
    std::vector<DateTime> m_times;
};

} // namespace ravlo

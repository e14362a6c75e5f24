// SPDX-License-Identifier: MIT
#include "forecast/Plan.h"

#include "plan/PlanError.h"

#include <utility>

namespace ravlo
{

void Plan::LoadClock(std::string_view bytes, const std::wstring& sName)
{
    m_slots = ParseClock(bytes, sName);
    m_times.clear();
}

void Plan::LoadSlots(std::string_view bytes, const std::wstring& sName)
{
    Plan next;
    for (TimedSlot& timed : ParseSlots(bytes, sName))
    {
        next.m_slots.push_back(std::move(timed.slot));
        next.m_times.push_back(timed.dtAt);
    }
    *this = std::move(next);
}

void Plan::AddSlot(Slot slot)
{
    if (IsTimed())
        throw PlanError(L"The plan has slots with times of their own; none can be added to its hour");
    m_slots.push_back(std::move(slot));
}

void Plan::AddSlotAt(DateTime dtAt, Slot slot)
{
    m_slots.push_back(std::move(slot));
    m_times.push_back(dtAt);
}

} // namespace ravlo

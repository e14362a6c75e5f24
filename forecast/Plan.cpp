// SPDX-License-Identifier: MIT
#include "forecast/Plan.h"

#include "base/Text.h"
#include "plan/PlanError.h"

#include <utility>

namespace ravlo
{

namespace
{

// The name of a file without its folder.
std::wstring LastPart(const std::wstring& sPath) { return sPath.substr(sPath.find_last_of(L"\\/") + 1); }

} // namespace

void Plan::LoadClock(std::string_view bytes, const std::wstring& sName)
{
    m_slots = ParseClock(bytes, sName);
    m_times.clear();
    m_eSource = Source::ClockFile;
    m_sFile = LastPart(sName);
}

void Plan::LoadSlots(std::string_view bytes, const std::wstring& sName)
{
    Plan next;
    for (TimedSlot& timed : ParseSlots(bytes, sName))
    {
        next.m_slots.push_back(std::move(timed.slot));
        next.m_times.push_back(timed.dtAt);
    }
    next.m_eSource = Source::SlotFile;
    next.m_sFile = LastPart(sName);
    *this = std::move(next);
}

void Plan::AddSlot(Slot slot)
{
    if (IsTimed())
        throw PlanError(L"The plan has slots with times of their own; none can be added to its hour");
    m_slots.push_back(std::move(slot));
    m_eSource = Source::Slots;
    m_sFile.clear();
}

std::wstring Plan::Name() const
{
    switch (m_eSource)
    {
    case Source::ClockFile:
        return L"clock file " + m_sFile;
    case Source::SlotFile:
        return L"slot file " + m_sFile;
    case Source::EachLevelInTurn:
        return L"each level in turn";
    case Source::Slots:
        break;
    }
    return DecimalText(static_cast<std::int64_t>(m_slots.size())) +
           (m_slots.size() == 1 ? L" slot" : L" slots") + (IsTimed() ? L"" : L" an hour");
}

void Plan::AddSlotAt(DateTime dtAt, Slot slot)
{
    m_slots.push_back(std::move(slot));
    m_times.push_back(dtAt);
}

} // namespace ravlo

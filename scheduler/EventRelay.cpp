// SPDX-License-Identifier: MIT
#include "scheduler/EventRelay.h"

#include <algorithm>
#include <limits>

namespace ravlo
{

namespace
{

std::int32_t AsLong(std::int64_t lCount)
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(
        lCount, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

} // namespace

template <class Raise> void EventRelay::ToListener(Raise&& raise)
{
    m_cMod.FlushDebugLog();
    if (!m_cEvents)
        return;
    try
    {
        raise(*m_cEvents);
    }
    catch (...)
    {
        // What goes wrong in a host's handler is the host's; the work that reports its progress goes on.
        m_cMod.LogError(L"Event handler", CurrentError());
    }
}

void EventRelay::ShowHelpEvent()
{
    ToListener([](SchedulerEvents& cEvents) { cEvents.ShowHelpEvent(); });
}

void EventRelay::ProgressStart(const std::wstring& sReason, std::int64_t lMax)
{
    ToListener([&](SchedulerEvents& cEvents) { cEvents.ProgressStart(sReason, AsLong(lMax)); });
}

void EventRelay::Progress(const std::wstring& strProgress, std::int64_t lCount, std::int64_t lMax)
{
    ToListener([&](SchedulerEvents& cEvents)
               { cEvents.Progress(strProgress, AsLong(lCount), AsLong(lMax)); });
}

void EventRelay::ProgressDone(const std::wstring& sStatus)
{
    ToListener([&](SchedulerEvents& cEvents) { cEvents.ProgressDone(sStatus); });
}

std::optional<std::int32_t> EventRelay::RequestEditCut(const std::shared_ptr<Cut>& cCut)
{
    std::optional<std::int32_t> lAnswer;
    ToListener([&](SchedulerEvents& cEvents) { lAnswer = cEvents.RequestEditCut(cCut); });
    return lAnswer;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "scheduler/EventRelay.h"

#include <algorithm>
#include <limits>

namespace ravlo
{

namespace
{

std::int32_t AsLong(std::int64_t count)
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(count, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

} // namespace

template <class Events, class Raise> void EventRelay::To(Events* const& cEvents, Raise&& raise)
{
    const ModScheduler::OthersRun cOthers(m_cMod);
    if (!cEvents)
        return;
    try
    {
        raise(*cEvents);
    }
    catch (...)
    {
        // An error in a host's handler must not stop the work that reports its progress.
        m_cMod.LogError(L"Event handler", CurrentError());
    }
}

template <class Raise> void EventRelay::ToBoth(Raise&& raise)
{
    To(m_cEvents, raise);
    To(m_cWindow, raise); // read after the host's handler, which may have closed the window
}

void EventRelay::ShowHelpEvent()
{
    To(m_cEvents, [](SchedulerEvents& cEvents) { cEvents.ShowHelpEvent(); });
}

void EventRelay::ProgressStart(const std::wstring& sReason, std::int64_t max)
{
    ToBoth([&](ProgressEvents& cEvents) { cEvents.ProgressStart(sReason, AsLong(max)); });
}

void EventRelay::Progress(const std::wstring& strProgress, std::int64_t count, std::int64_t max)
{
    ToBoth([&](ProgressEvents& cEvents) { cEvents.Progress(strProgress, AsLong(count), AsLong(max)); });
}

void EventRelay::ProgressDone(const std::wstring& sStatus)
{
    ToBoth([&](ProgressEvents& cEvents) { cEvents.ProgressDone(sStatus, L""); });
}

std::optional<std::int32_t> EventRelay::RequestEditCut(const std::shared_ptr<Cut>& cCut)
{
    std::optional<std::int32_t> lAnswer;
    To(m_cEvents, [&](SchedulerEvents& cEvents) { lAnswer = cEvents.RequestEditCut(cCut); });
    return lAnswer;
}

} // namespace ravlo

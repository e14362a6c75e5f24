// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/SchedulerEvents.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ravlo
{

// Raises the manager's events to the current listener. Before each, appends the gathered log lines, and
// gathers none during it, since the host may run for long inside an event. Exceptions of a listener are
// logged and never thrown.
class EventRelay
{
public:
    explicit EventRelay(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    void Listen(SchedulerEvents* cEvents) noexcept { m_cEvents = cEvents; }
    // Sets a window that also shows progress, after the host; null for none. Not owned.
    void Follow(ProgressEvents* cWindow) noexcept { m_cWindow = cWindow; }
    ProgressEvents* Follower() const noexcept { return m_cWindow; }

    void ShowHelpEvent();
    void ProgressStart(const std::wstring& sReason, std::int64_t max);
    void Progress(const std::wstring& strProgress, std::int64_t count, std::int64_t max);
    void ProgressDone(const std::wstring& sStatus);
    std::optional<std::int32_t> RequestEditCut(const std::shared_ptr<Cut>& cCut);

private:
    template <class Events, class Raise> void To(Events* const& cEvents, Raise&& raise);
    template <class Raise> void ToBoth(Raise&& raise);

    ModScheduler& m_cMod;
    SchedulerEvents* m_cEvents = nullptr;
    ProgressEvents* m_cWindow = nullptr;
};

// Decides when a long loop reports: it reads the clock at every 20th item, and a report is due when more than
// 100 ms have passed since the last one.
class ProgressThrottle
{
public:
    static constexpr std::size_t itemsPerSample = 20;
    static constexpr std::uint32_t lMinGapMs = 100;

    explicit ProgressThrottle(const Clock& cClock) : m_cClock(cClock), m_lLast(cClock.TickCount()) {}

    // Whether the clock is read at this item, counted from 1.
    static bool IsSample(std::size_t item) noexcept { return item % itemsPerSample == 0; }
    // Whether a report is due after this item, counted from 1. Call Reported() after reporting.
    bool IsDue(std::size_t item) const
    {
        return IsSample(item) && m_cClock.TickCount() - m_lLast > lMinGapMs;
    }
    void Reported() { m_lLast = m_cClock.TickCount(); }

private:
    const Clock& m_cClock;
    std::uint32_t m_lLast;
};

} // namespace ravlo

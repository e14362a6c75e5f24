// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/SchedulerEvents.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ravlo
{

// Raises the manager's events to whoever listens at the moment. Nothing is gathered for the debug log
// during one, since the host may do anything inside an event. Nothing a listener throws comes through.
class EventRelay
{
public:
    explicit EventRelay(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    void Listen(SchedulerEvents* cEvents) noexcept { m_cEvents = cEvents; }
    // A window that shows the reports too, after the host has had them; null for none. Not owned.
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

// Decides when a long loop reports: every 20th item looks at the clock, and only when more than 100 ms have
// passed since the last report is another one due.
class ProgressThrottle
{
public:
    static constexpr std::size_t itemsPerSample = 20;
    static constexpr std::uint32_t lMinGapMs = 100;

    explicit ProgressThrottle(const Clock& cClock) : m_cClock(cClock), m_lLast(cClock.TickCount()) {}

    // Whether lItem, counted from 1, is one at which the clock is looked at.
    static bool IsSample(std::size_t item) noexcept { return item % itemsPerSample == 0; }
    // Whether a report is due after lItem items. The reporter calls Reported() when it has reported.
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

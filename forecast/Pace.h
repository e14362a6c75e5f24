// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <cstdint>
#include <functional>

namespace ravlo
{

// Called with the share of the work that is done: with 0, at least every 50 ms, and with 1. bCancel ends the
// work with error 18.
using SimulationProgress = std::function<void(double dDone, bool& bCancel)>;

// Called often during work of unknown length, so that it can let the host run. What it throws ends the work.
// May be empty.
using LetHostRun = std::function<void()>;

// Reports what is done. Throws error 18 when the host cancels, and what progress throws.
void Report(const SimulationProgress& progress, double dDone);

// Progress of a part of the work, from dFrom to dTo of the whole. Precondition: progress outlives it.
SimulationProgress PartOf(const SimulationProgress& progress, double dFrom, double dTo);

// Lets the host run often enough. The system's ticks are up to 16 ms apart, so 30 of them are enough for 50.
class Pace
{
public:
    // Precondition: both outlive this.
    Pace(const Clock& cClock, const SimulationProgress& progress)
        : m_cClock(cClock), m_progress(progress), m_lTold(cClock.TickCount())
    {
    }
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;

    // Notes how much is done.
    void Reached(double dDone)
    {
        m_dDone = dDone;
        PumpIfDue();
    }
    // Reports what is done when the last report was long ago.
    void PumpIfDue();
    void Report(double dDone);

private:
    const Clock& m_cClock;
    const SimulationProgress& m_progress;
    std::uint32_t m_lTold;
    double m_dDone = 0;
};

// Lets the host run once for a few cuts: reading one from a host's database may take a millisecond.
class CutByCut
{
public:
    // Precondition: letHostRun outlives this.
    explicit CutByCut(const LetHostRun& letHostRun) noexcept : m_letHostRun(letHostRun) {}
    // Call for each cut.
    void Next()
    {
        constexpr std::uint32_t lCutsAtATime = 8;
        if (++m_lCuts % lCutsAtATime == 0 && m_letHostRun)
            m_letHostRun();
    }

private:
    const LetHostRun& m_letHostRun;
    std::uint32_t m_lCuts = 0;
};

} // namespace ravlo

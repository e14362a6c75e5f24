// SPDX-License-Identifier: MIT
#include "forecast/Pace.h"

#include "base/RuntimeError.h"

namespace ravlo
{

void Report(const SimulationProgress& progress, double dDone)
{
    bool bCancel = false;
    if (progress)
        progress(dDone, bCancel);
    if (bCancel)
        throw RuntimeError(error::UserInterrupt);
}

SimulationProgress PartOf(const SimulationProgress& progress, double dFrom, double dTo)
{
    return [&progress, dFrom, dTo](double dDone, bool& bCancel) {
        if (progress)
            progress(dFrom + dDone * (dTo - dFrom), bCancel);
    };
}

void Pace::PumpIfDue()
{
    constexpr std::uint32_t lEverymS = 30;
    if (m_cClock.TickCount() - m_lTold >= lEverymS)
        Report(m_dDone);
}

void Pace::Report(double dDone)
{
    ravlo::Report(m_progress, dDone);
    m_lTold = m_cClock.TickCount();
}

} // namespace ravlo

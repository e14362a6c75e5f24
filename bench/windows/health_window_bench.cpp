// SPDX-License-Identifier: MIT
// The cost of the rotation health window, which plays 28 days when it opens.
#include "bench/windows/WindowBench.h"
#include "ui/controls/windows/Controls.h"
#include "ui/health/windows/ControlIds.h"

#include <string>

namespace ravlo::bench
{

namespace
{

std::shared_ptr<Cut> SongCut(std::int64_t number)
{
    std::shared_ptr<Cut> cCut = LibraryCut(number);
    cCut->SetDurationmS(180'000);
    cCut->SetRunTimemS(180'000);
    return cCut;
}

// Opens the window, waits for its figures and closes it.
class HealthOpening
{
public:
    explicit HealthOpening(const Station& cState)
    {
        pOpening = this;
        const UINT_PTR lTimer = ::SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &HealthOpening::OnTimer);
        m_dStart = Seconds();
        cState.Ui().ShowHealth({});
        ::KillTimer(nullptr, lTimer);
    }

    // Milliseconds.
    double dFrame = 0;      // until the window is painted
    double dFigures = 0;    // until its figures are
    double dUnanswered = 0; // the longest time in which it handled no message

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) { pOpening->Look(); }
    void Look()
    {
        const HWND hForm = ::FindWindowW(sfrmHealthClass, nullptr);
        if (!hForm || !::IsWindowVisible(hForm) || dFigures != 0)
            return;
        ::RedrawWindow(hForm, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        const double dNow = (Seconds() - m_dStart) * 1000;
        if (dFrame == 0)
            dFrame = dNow;
        else
            dUnanswered = std::max(dUnanswered, dNow - m_dLast);
        m_dLast = dNow;
        const std::wstring sSummary = WindowText(::GetDlgItem(hForm, eIdlblSummary));
        if (sSummary.empty() || sSummary.starts_with(L"These figures")) // none, or those of the last opening
            return;
        dFigures = dNow;
        ::PostMessageW(hForm, WM_CLOSE, 0, 0);
    }
    static inline HealthOpening* pOpening = nullptr;

    double m_dStart;
    double m_dLast = 0; // when it last handled a message, in milliseconds after the start
};

} // namespace

void MeasureHealthWindow()
{
    constexpr double dFrameAim = 500;
    constexpr double dFiguresAim = 2000; // of the 28 days of a usual station
    constexpr double dAnswerAim = 250;
    for (const std::int64_t cuts : {5'000, 33'000, 100'000})
    {
        const Station cState(cuts, &SongCut);
        double dFrame = std::numeric_limits<double>::max();
        double dFigures = dFrame;
        double dUnanswered = dFrame;
        for (int i = 0; i < 3; ++i)
        {
            const HealthOpening opening(cState);
            dFrame = std::min(dFrame, opening.dFrame);
            dFigures = std::min(dFigures, opening.dFigures);
            dUnanswered = std::min(dUnanswered, opening.dUnanswered);
        }
        Time("health: opening", cuts, dFrame, dFrameAim);
        Time("health: figures of 28 days", cuts, dFigures, cuts > 33'000 ? 0 : dFiguresAim);
        Time("health: longest without an answer", cuts, dUnanswered, dAnswerAim);
    }
}

} // namespace ravlo::bench

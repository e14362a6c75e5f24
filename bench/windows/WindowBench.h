// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Radio.h"
#include "platform/windows/WindowsPorts.h"
#include "scheduler/clsSchedMan.h"
#include "ui/library/windows/ControlIds.h"
#include "ui/windows/SchedulerUi.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>

namespace ravlo::bench
{

using Work = std::function<void()>;

inline double Seconds()
{
    LARGE_INTEGER lNow{};
    LARGE_INTEGER lFrequency{};
    ::QueryPerformanceCounter(&lNow);
    ::QueryPerformanceFrequency(&lFrequency);
    return static_cast<double>(lNow.QuadPart) / static_cast<double>(lFrequency.QuadPart);
}

// Milliseconds of the fastest of some rounds.
inline double Quickest(const Work& work, int lRounds = 5)
{
    double dBest = std::numeric_limits<double>::max();
    for (int i = 0; i < lRounds; ++i)
    {
        const double dStart = Seconds();
        work();
        dBest = std::min(dBest, (Seconds() - dStart) * 1000);
    }
    return dBest;
}

inline bool bWithinLimits = true;

// dAimMs: the most milliseconds that the operation may take as well; 0 for no such limit.
inline void Row(const char* sOperation, std::int64_t n, double dOurs, double dBaseline, double dLimit,
                double dAimMs = 0)
{
    const double dRatio = dOurs / dBaseline;
    const bool bWithin = dRatio <= dLimit && (dAimMs == 0 || dOurs <= dAimMs);
    bWithinLimits = bWithinLimits && bWithin;
    std::printf("%-36s %8lld %10.2f ms %10.2f ms %7.2f  (limit %.1f", sOperation, static_cast<long long>(n),
                dOurs, dBaseline, dRatio, dLimit);
    if (dAimMs != 0)
        std::printf(", %.0f ms", dAimMs);
    std::printf(")%s\n", bWithin ? "" : "  ABOVE");
    std::fflush(stdout);
}

// A row without a baseline. dAimMs as above.
inline void Time(const char* sOperation, std::int64_t n, double dMs, double dAimMs)
{
    const bool bWithin = dAimMs == 0 || dMs <= dAimMs;
    bWithinLimits = bWithinLimits && bWithin;
    std::printf("%-36s %8lld %10.2f ms", sOperation, static_cast<long long>(n), dMs);
    if (dAimMs != 0)
        std::printf("%24s (limit %.0f ms)%s", "", dAimMs, bWithin ? "" : "  ABOVE");
    std::printf("\n");
    std::fflush(stdout);
}

inline void Paint(HWND hList)
{
    ::RedrawWindow(hList, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
}

// A station of n cuts and its library window.
class Station
{
public:
    explicit Station(std::int64_t cuts) : Station(cuts, &LibraryCut) {}
    Station(std::int64_t cuts, std::shared_ptr<Cut> (*cut)(std::int64_t number)) : m_cuts(cuts)
    {
        for (std::int64_t i = 0; i < cuts; ++i)
            m_cDataBase->Add(cut(i));
        m_cSchedMan->SetWindows(m_cUi.get());
        m_cSchedMan->PopulateFromDataBase(m_cDataBase, L"C:\\Radio\\");
    }
    ~Station() { m_cSchedMan->SetWindows(nullptr); }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    // Milliseconds from the request to the painted window; does something with it and closes it.
    double Open(const Work& work = {})
    {
        m_work = work;
        m_dStart = Seconds();
        pOpening = this;
        const UINT_PTR lTimer = ::SetTimer(nullptr, 0, 1, &Station::OnTimer);
        m_cSchedMan->ShowLibraryUI();
        ::KillTimer(nullptr, lTimer);
        return m_dOpening;
    }
    HWND Form() const { return ::FindWindowW(sfrmUILibClass, nullptr); }
    HWND Grid() const { return Control(eIdiGridLib); }
    HWND Tree() const { return Control(eIdTvCats); }
    void Command(LibraryCommand eCommand) const
    {
        ::SendMessageW(Form(), WM_COMMAND, static_cast<WPARAM>(IdOf(eCommand)), 0);
    }
    void ShowAgain() const { m_cSchedMan->ReloadAll(); }
    std::int64_t Size() const { return m_cuts; }
    SchedulerUi& Ui() const { return *m_cUi; }

private:
    HWND Control(int lId) const
    {
        for (HWND hChild = ::GetWindow(Form(), GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
            if (::GetDlgCtrlID(hChild) == lId)
                return hChild;
        return nullptr;
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR lTimer, DWORD)
    {
        Station& cState = *pOpening;
        const HWND hForm = cState.Form();
        if (!hForm || !::IsWindowVisible(hForm))
            return;
        ::KillTimer(nullptr, lTimer);
        ::UpdateWindow(hForm);
        Paint(cState.Grid());
        cState.m_dOpening = (Seconds() - cState.m_dStart) * 1000;
        if (cState.m_work)
            cState.m_work();
        ::PostMessageW(hForm, WM_CLOSE, 0, 0);
    }
    static inline Station* pOpening = nullptr;

    std::int64_t m_cuts;
    Work m_work;
    double m_dStart = 0;
    double m_dOpening = 0;
    MemoryPorts m_cPorts;
    NoFiles m_cFiles;
    WindowsMessages m_cMessages;
    WindowsHostLoop m_cHostLoop;
    WindowsClock m_cClock; // work is done in steps of some milliseconds
    ModScheduler m_cMod{Ports{m_cClock, m_cHostLoop, m_cFiles, m_cMessages, m_cPorts.cUserSettings,
                              m_cPorts.cCodePage, m_cPorts.cRandom}};
    std::shared_ptr<RadioDataBase> m_cDataBase = std::make_shared<RadioDataBase>();
    std::shared_ptr<clsSchedMan> m_cSchedMan = std::make_shared<clsSchedMan>(m_cMod);
    std::unique_ptr<SchedulerUi> m_cUi = NewSchedulerUi(m_cSchedMan);
};

// The cost of opening the rotation health window.
void MeasureHealthWindow();

} // namespace ravlo::bench

// SPDX-License-Identifier: MIT
#pragma once

// For the parts of frmUILib alone: what every handler runs under.

#include "platform/Messages.h"
#include "ui/library/frmUILibPresenter.h"

#include <utility>

namespace ravlo
{

class frmUILibPresenter::Working
{
public:
    explicit Working(frmUILibPresenter& cForm) : m_cForm(cForm) { ++m_cForm.m_lWorking; }
    ~Working()
    {
        if (m_cForm.m_lWorking == 1)
            m_cForm.Settle();
        --m_cForm.m_lWorking;
    }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

private:
    frmUILibPresenter& m_cForm;
};

class frmUILibPresenter::Busy
{
public:
    explicit Busy(frmUILibPresenter& cForm) : m_cWorking(cForm), m_cForm(cForm)
    {
        if (m_cForm.m_lBusy++ == 0)
            m_cForm.SetBusy(true);
    }
    ~Busy()
    {
        if (--m_cForm.m_lBusy == 0)
            m_cForm.SetBusy(false);
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    Working m_cWorking;
    frmUILibPresenter& m_cForm;
};

// An unexpected failure is shown, and leaves no progress bar behind.
template <class Body> void frmUILibPresenter::Try(const wchar_t* sWhere, Body&& body)
{
    const bool bDone = Trap(m_cMod, sWhere, false, [&] {
        body();
        return true;
    });
    if (!bDone)
        m_cView.HideProgress();
}

// What every handler of the user's doings runs under: nothing while something else runs, and an unexpected
// failure is shown. The busy state is cleared by then.
template <class Body> void frmUILibPresenter::Handle(const wchar_t* sWhere, Body&& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (m_lWorking > 0 || !cSchedMan)
        return;
    const Working cWorking(*this);
    Try(sWhere, [&] { body(*cSchedMan); });
}

template <class Body> void frmUILibPresenter::HandleDrop(Body&& body)
{
    if (m_lWorking == 0)
        RunDrop(std::forward<Body>(body));
}

template <class Body> void frmUILibPresenter::RunDrop(Body&& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = m_cSchedMan.lock();
    if (!cSchedMan)
        return;
    const Working cWorking(*this);
    try
    {
        body(*cSchedMan);
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib drop", CurrentError());
        m_cReordering.reset();
        m_cView.HideProgress();
        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle, L"An Error occurred.");
    }
}

} // namespace ravlo

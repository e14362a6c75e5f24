// SPDX-License-Identifier: MIT
#include "ui/library/LibraryWork.h"

#include "platform/Messages.h"

#include <utility>

namespace ravlo
{

LibraryWork::Working::~Working()
{
    if (m_cWork.m_lWorking == 1)
        m_cWork.Settle();
    if (--m_cWork.m_lWorking == 0)
        m_cWork.Ended();
}

LibraryWork::Busy::Busy(LibraryWork& cWork) : m_cWorking(cWork), m_cWork(cWork)
{
    if (m_cWork.m_lBusy++ == 0)
        m_cWork.SetBusy(true);
}

LibraryWork::Busy::~Busy()
{
    if (--m_cWork.m_lBusy == 0)
        m_cWork.SetBusy(false);
}

LibraryWork::LibraryWork(frmUILibView& cView, ModScheduler& cMod, Body Refresh)
    : m_cView(cView), m_cMod(cMod), m_Refresh(std::move(Refresh))
{
}

void LibraryWork::Opened()
{
    m_bShown = true;
    m_bClosePending = false;
}

// Disabling and enabling process waiting messages, which may do anything. A window that was never shown has
// nothing to disable, and its caller expects no messages.
void LibraryWork::SetBusy(bool bBusy) noexcept
{
    if (!m_bShown)
        return;
    try
    {
        m_cView.SetBusy(bBusy);
        m_cMod.Pump();
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib.SetBusy", CurrentError());
    }
}

// Runs pending requests. Called while the last Working still counts, so that new requests become pending
// instead of nesting. A change that is announced during the refresh waits until the user had a turn;
// otherwise a database that keeps reporting would lock the user out. A window that is about to close shows
// none.
void LibraryWork::Settle() noexcept
{
    if (!m_bClosePending && std::exchange(m_bRefreshPending, false))
        Try(L"frmUILib.RefreshAll", [this] {
            if (const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan())
                m_Refresh(*cSchedMan);
        });
    if (std::exchange(m_bClosePending, false))
        m_cView.Close();
    else if (std::exchange(m_bRefreshPending, false))
        m_cView.AskForRefresh();
}

void LibraryWork::RequestRefresh()
{
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    if (Running())
        m_bRefreshPending = true;
    else if (cSchedMan)
    {
        const Working cWorking(*this);
        Try(L"frmUILib.RefreshAll", [&] { m_Refresh(*cSchedMan); });
    }
}

void LibraryWork::RequestClose()
{
    if (Running())
        m_bClosePending = true;
    else
        m_cView.Close();
}

void LibraryWork::ProgressStarted()
{
    if (BusyFromProgress* const pAwaiting = std::exchange(m_pAwaiting, nullptr))
        pAwaiting->m_cBusy.emplace(*this);
}

void LibraryWork::Try(const wchar_t* sWhere, const std::function<void()>& body)
{
    const bool bDone = Trap(m_cMod, sWhere, false, [&] {
        body();
        return true;
    });
    if (!bDone)
        m_cView.HideProgress();
}

void LibraryWork::Handle(const wchar_t* sWhere, const Body& body)
{
    if (Running() || !SchedMan())
        return;
    UserActs();
    GoOn(sWhere, body);
}

void LibraryWork::GoOn(const wchar_t* sWhere, const Body& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    if (Running() || !cSchedMan)
        return;
    const Working cWorking(*this);
    Try(sWhere, [&] { body(*cSchedMan); });
}

void LibraryWork::HandleDrop(const Body& body)
{
    if (!Running())
        RunDrop(body);
}

void LibraryWork::RunDrop(const Body& body)
{
    const std::shared_ptr<clsSchedMan> cSchedMan = SchedMan();
    if (!cSchedMan)
        return;
    UserActs();
    const Working cWorking(*this);
    try
    {
        body(*cSchedMan);
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib drop", CurrentError());
        m_cView.HideProgress();
        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle, L"An Error occurred.");
    }
}

} // namespace ravlo

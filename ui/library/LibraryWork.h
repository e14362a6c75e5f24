// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/frmUILibView.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace ravlo
{

// How long a step of work in the background may take; clocks that tick every 16 ms make it 31 at most.
inline constexpr std::uint32_t lStepMs = 15;

// The work that runs in the library window. While something runs, is dragged or is edited, user actions are
// ignored, a requested refresh runs once at the end, and closing is delayed. Holds the manager weakly: it may
// end while a hidden window exists.
class LibraryWork
{
public:
    using Body = std::function<void(clsSchedMan& cSchedMan)>;

    // While one exists something runs.
    class Working
    {
    public:
        explicit Working(LibraryWork& cWork) : m_cWork(cWork) { ++m_cWork.m_lWorking; }
        ~Working();
        Working(const Working&) = delete;
        Working& operator=(const Working&) = delete;

    private:
        LibraryWork& m_cWork;
    };
    // While one exists something runs and the window's controls are disabled.
    class Busy
    {
    public:
        explicit Busy(LibraryWork& cWork);
        ~Busy();
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;

    private:
        Working m_cWorking;
        LibraryWork& m_cWork;
    };

    // While one exists, Busy from the manager's first report of progress on, not during its question.
    class BusyFromProgress
    {
    public:
        explicit BusyFromProgress(LibraryWork& cWork)
            : m_cWork(cWork), m_pBefore(std::exchange(cWork.m_pAwaiting, this))
        {
        }
        ~BusyFromProgress() { m_cWork.m_pAwaiting = m_pBefore; }
        BusyFromProgress(const BusyFromProgress&) = delete;
        BusyFromProgress& operator=(const BusyFromProgress&) = delete;

        // Whether anything was reported.
        bool Began() const noexcept { return m_cBusy.has_value(); }

    private:
        friend class LibraryWork;
        LibraryWork& m_cWork;
        BusyFromProgress* m_pBefore;
        std::optional<Busy> m_cBusy;
    };

    // Owns neither view nor module. Refresh shows the database's changes.
    LibraryWork(frmUILibView& cView, ModScheduler& cMod, Body Refresh);

    // Called when a user's action begins, and when nothing runs any more. Throw nothing.
    std::function<void()> UserActs = [] {};
    std::function<void()> Ended = [] {};

    void SetSchedMan(const std::shared_ptr<clsSchedMan>& cSchedMan) { m_cSchedMan = cSchedMan; }
    std::shared_ptr<clsSchedMan> SchedMan() const { return m_cSchedMan.lock(); }
    bool Running() const noexcept { return m_lWorking > 0; }
    bool RefreshPending() const noexcept { return m_bRefreshPending; }

    // Call when the window is shown: it can be disabled from then on. Cancels an earlier request to close.
    void Opened();
    // Run at once, or at the end of the present work.
    void RequestRefresh();
    void RequestClose();
    // The manager reports that something begins.
    void ProgressStarted();

    // Runs a handler of a user action, unless something runs or there is no manager. A failure is shown, the
    // progress bar is hidden and the controls are enabled.
    void Handle(const wchar_t* sWhere, const Body& body);
    // As Handle, for a step of what the user has begun before.
    void GoOn(const wchar_t* sWhere, const Body& body);
    // As Handle, for a drop and for commands with the rules of a drop.
    void HandleDrop(const Body& body);
    // Runs a drop even while something runs, namely the drag that it ends.
    void RunDrop(const Body& body);
    // Runs the body and shows a failure as Handle does.
    void Try(const wchar_t* sWhere, const std::function<void()>& body);

private:
    void SetBusy(bool bBusy) noexcept;
    void Settle() noexcept;

    frmUILibView& m_cView;
    ModScheduler& m_cMod;
    Body m_Refresh;
    BusyFromProgress* m_pAwaiting = nullptr;
    std::weak_ptr<clsSchedMan> m_cSchedMan;
    int m_lWorking = 0;
    int m_lBusy = 0;
    bool m_bRefreshPending = false;
    bool m_bClosePending = false;
    bool m_bShown = false; // has been, or is
};

} // namespace ravlo

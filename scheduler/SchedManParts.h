// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/NextCut.h"
#include "rotation/RotationFiles.h"
#include "scheduler/CategoryCreation.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/SpreadOrders.h"
#include "scheduler/Synchronisation.h"
#include "scheduler/clsSchedMan.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace ravlo
{

// The parts that the facade calls.
struct clsSchedMan::Parts : SchedulerState
{
    static constexpr const wchar_t* sUpdateHistoryWhere = L"UpdateArtistTitleHistory";

    explicit Parts(ModScheduler& cModule)
        : SchedulerState(cModule), cSync(*this), cPlayHistory(
                                                     cModule.Ports().cClock,
                                                     [&cModule](const RuntimeError& cError, bool bFirst) {
        cModule.DISPLAYERROR(sUpdateHistoryWhere, bFirst, cError);
                                                     }),
    colIllegalChars(IllegalChars()), cCreation(*this, colIllegalChars), cEditing(*this, cSync)
    {
    }

    // Serves the rotation files of this folder, with plays under the names they give.
    void ServeRotation(const std::wstring& sPath)
    {
        cRotationFiles.Serve(sPath);
        cPlayHistory.SetNames(cRotationFiles.Names());
    }
    // Call before anything that depends on them.
    void RefreshRotation()
    {
        cRotationFiles.Refresh();
        cPlayHistory.SetNames(cRotationFiles.Names());
    }
    // What a pick is made with.
    SelectionContext Context()
    {
        RefreshRotation();
        SelectionContext context = LiveContext(cMod, cPlayHistory, Serving());
        context.bFairRotation = cRotationFiles.Options().bFairRotation;
        return context;
    }
    // Tries to write the play times that the database has refused so far.
    void WritePendingPlayTimes()
    {
        if (const std::shared_ptr<ravlo::DataBase> cPresent = cDataBase)
            cPlayHistory.WritePendingTimes(*cPresent);
    }
    // The database of the present tree; before the first tree, that of the tree being built.
    const std::shared_ptr<ravlo::DataBase>& Serving() const noexcept
    {
        return colMainCats || !cNextDataBase ? cDataBase : cNextDataBase;
    }
    // Remembers a play for the next database, when a tree is being built from one.
    void NotePlay(const Cut& cCut)
    {
        if (!colMainCats || !cNextDataBase || cNextDataBase == cDataBase)
            return;
        try
        {
            if (std::shared_ptr<Cut> cCopy = cCut.CloneCut())
                colPlayed.push_back(std::move(cCopy));
        }
        catch (...)
        {
            cMod.LogError(sUpdateHistoryWhere, CurrentError()); // the present database still records the play
        }
    }

    Synchronisation cSync;
    PlayHistory cPlayHistory;
    RotationFiles cRotationFiles{cMod};
    PicksOnAir cPicks;
    std::shared_ptr<NameCollection> colIllegalChars;
    CategoryCreation cCreation;
    CategoryEditing cEditing;
    SpreadOrders cSpreadOrders;
    std::unique_ptr<HeldFile> cMark; // the mark on AppPath(); null when another program has marked it
    std::shared_ptr<ravlo::DataBase> cNextDataBase; // while a tree is being built: its database
    Cuts colPlayed;                                 // copies, for the next database
    bool bPopulating = false;
    bool bReversing = false; // an undo or redo is running
    // The step whose last reversal, the newest of all, something has prevented; 0: none. See Failing.
    std::uint64_t failedStep = 0;
    bool bRotatesAllowed = false;
};

// Every public member that may let others run creates one: it keeps the manager alive until the call is over,
// even when the host releases it, and writes the call's log lines together.
class clsSchedMan::Call
{
public:
    explicit Call(clsSchedMan& cSchedMan)
        : m_cKeepAlive(cSchedMan.weak_from_this().lock()), m_cScope(cSchedMan.Mod())
    {
    }

private:
    std::shared_ptr<clsSchedMan> m_cKeepAlive;
    ModScheduler::LogScope m_cScope;
};

} // namespace ravlo

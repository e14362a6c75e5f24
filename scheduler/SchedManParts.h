// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/NextCut.h"
#include "scheduler/CategoryCreation.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"
#include "scheduler/clsSchedMan.h"

#include <memory>
#include <utility>

namespace ravlo
{

// The parts the facade routes to.
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

    // Tries to write the times of plays that the database has refused so far.
    void WritePendingPlayTimes()
    {
        if (const std::shared_ptr<ravlo::DataBase> cPresent = cDataBase)
            cPlayHistory.WritePendingTimes(*cPresent);
    }
    // The database of the present tree; before the first one, that of the tree that is being built.
    const std::shared_ptr<ravlo::DataBase>& Serving() const noexcept
    {
        return colMainCats || !cNextDataBase ? cDataBase : cNextDataBase;
    }
    // A play while the next tree is built from another database: that one is told of it later.
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
            cMod.LogError(sUpdateHistoryWhere, CurrentError()); // the present database is told all the same
        }
    }

    Synchronisation cSync;
    PlayHistory cPlayHistory;
    PicksOnAir cPicks;
    std::shared_ptr<NameCollection> colIllegalChars;
    CategoryCreation cCreation;
    CategoryEditing cEditing;
    std::unique_ptr<HeldFile> cMark;                // of AppPath(); null when another program marks it
    std::shared_ptr<ravlo::DataBase> cNextDataBase; // while a tree is built: the one it is built from
    Cuts colPlayed;                                 // copies, for the next database
    bool bPopulating = false;
    bool bRotatesAllowed = false;
};

// What every public member that may let others run holds: the manager stays alive until the call is over,
// whatever the host does in between, and the call's log lines are written together.
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

// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/MediaLibrary.h"
#include "host/client/ProgressListener.h"
#include "host/day/DayMaker.h"
#include "host/day/PlayBook.h"

#include <RavloScheduler.h>

namespace ravlo
{

// What the cut's properties say.
PlayedCut PlayedCutOf(_clsCut& cCut);
std::wstring PathOf(_clsCut& cCut);

// The scheduler, used as any host uses it: populated once, told what was played before, asked slot by slot.
class Scheduler : public Playout
{
public:
    // bSaveEach: every pick saves its category's rotation order. Else SaveOrders does, once.
    Scheduler(MediaLibrary& cLibrary, bool bSaveEach);

    void Populate(const std::wstring& sAppFolder, const MediaLibrary::Progress& progress);
    // Follows what the scheduler tells, of its own work and of the database's, while the result lives.
    ProgressListener Follow(ProgressListener::Handlers handlers);
    // From here on each play is entered in the book as well, which outlives this.
    void KeepBook(PlayBook& cBook) noexcept { m_pBook = &cBook; }
    // Reports a play that the library remembers. In ascending order of their times.
    void Remember(_clsCut& cCut);
    Answer Play(const Slot& slot, DateTime dtStart) override;
    // Throws HostError, naming the categories, when orders could not be saved.
    void SaveOrders();
    _clsSchedMan& Object() const noexcept { return *m_cManager; }

private:
    ComPtr<_clsCut> Pick(const Slot& slot, DateTime dtStart);
    bool Save(_clsCat* pMainCat);

    MediaLibrary& m_cLibrary;
    bool m_bSaveEach;
    PlayBook* m_pBook = nullptr;
    ComPtr<_clsSchedMan> m_cManager;
};

} // namespace ravlo

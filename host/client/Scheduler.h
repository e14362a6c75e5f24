// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/EventListener.h"
#include "host/client/MediaLibrary.h"
#include "host/day/PlayBook.h"
#include "plan/DayMaker.h"

#include <RavloScheduler.h>

namespace ravlo
{

// The values of the cut's properties.
PlayedCut PlayedCutOf(_clsCut& cCut);
std::wstring PathOf(_clsCut& cCut);

// The scheduler, used as any host uses it: populated once, given the earlier plays, asked slot by slot.
class Scheduler : public Playout
{
public:
    // bSaveEach: every pick saves its category's rotation order; otherwise SaveOrders does, once.
    Scheduler(MediaLibrary& cLibrary, bool bSaveEach);

    void Populate(const std::wstring& sAppFolder, const MediaLibrary::Progress& progress);
    // Passes on the scheduler's progress events while the result lives.
    ProgressListener Follow(ProgressListener::Handlers handlers);
    // Also enters each play in the book from now on. Precondition: the book outlives this.
    void KeepBook(PlayBook& cBook) noexcept { m_pBook = &cBook; }
    // Reports a recorded play. Precondition: called in ascending order of the plays' times.
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

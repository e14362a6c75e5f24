// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Snapshot.h"
#include "plan/Slots.h"
#include "rotation/NextCut.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace ravlo
{

// A station made from a snapshot, with a tree, a database, a history and a clock of its own, from which the
// selection on air picks. Its cuts carry their numbers, see CutNumber.
class StationCopy
{
public:
    // Precondition: cMod and the snapshot outlive this. note and pump as in SelectionContext; pump is called
    // while the station is copied, too. An error that pump throws, or any other that ends a pick, is thrown.
    StationCopy(ModScheduler& cMod, const StationSnapshot& snapshot, const RotationOptions& options,
                TraceSink note, std::function<void()> pump);
    StationCopy(const StationCopy&) = delete;
    StationCopy& operator=(const StationCopy&) = delete;
    ~StationCopy();

    // The level of a slot, as a position in the snapshot's; nothing when there is none.
    std::optional<std::size_t> LevelOf(const Slot& slot) const;

    // Asks for the cut of a slot that starts at dtStart, and reports a real one as played at that time, as a
    // host does that names the start exactly. The cut is never null.
    std::shared_ptr<Cut> Play(const Slot& slot, DateTime dtStart);

private:
    class SlotClock;
    class CopiedCuts;

    void MakeTree(ModScheduler& cMod, const StationSnapshot& snapshot);

    std::shared_ptr<SlotClock> m_cClock;
    std::shared_ptr<CopiedCuts> m_cDataBase;
    PlayHistory m_cHistory;
    CatCollection m_colMainCats;
    std::unordered_map<const clsCat*, std::size_t> m_colLevels;
    std::exception_ptr m_failure; // what ended the pick
    SelectionContext m_context;
    RotationRequest m_request;
};

// The number of a cut of a copied station, or of a copy of one.
CutNumber NumberOf(const Cut& cCut);

} // namespace ravlo

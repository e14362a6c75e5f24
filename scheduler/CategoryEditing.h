// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/CutChanges.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// The names of categories as one text: a main category by its name, a level by name, blank and number, joined
// with ", ". With a lMost above 0 the list ends after that many with "... (+n)".
std::wstring ListCats(const Cats& colCats, std::size_t most = 0);

// How many categories a question lists before it ends in "... (+n)": more would not fit a screen.
inline constexpr std::size_t mostListed = 30;

// Shuffling, deleting and re-ordering: what the windows and hosts do to categories that exist. A category
// that is handed in stands for the tree's of the same name and number, since a host may hold one from before
// a reload. What is not reported here is thrown.
class CategoryEditing
{
public:
    CategoryEditing(SchedulerState& cState, Synchronisation& cSync) noexcept
        : m_cState(cState), m_cSync(cSync)
    {
    }

    // Puts the cuts of each level into a new random order; a main category stands for all its levels, each
    // shuffled in itself. Every main category concerned is saved; one that cannot be saved is reported and
    // the others go on. When none of them exists any more, nothing is asked.
    void ShuffleCategories(const Cats& colCats, bool bConfirmFirst);

    // Deletes levels and main categories. A main category listed alone goes with all its levels; one listed
    // together with some of its levels goes only when no level is left. The cuts leave the deleted levels; a
    // category's file goes when it has no level any more. A level that a cut could not be taken out of, or
    // that others have placed cuts into meanwhile, stays. False when something could not be deleted or does
    // not exist any more.
    bool DeleteCats(const Cats& colCats);

    // Moves cuts of a level, in the order given, in front of the one that stands at PosInto (from 1, counted
    // before anything moves; below 1 is 1, past the end is the end), and saves its main category. Cuts the
    // level does not hold are ignored. Error 5 when the level does not exist any more.
    void MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                            std::int32_t PosInto);

private:
    bool DeleteChosen(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat, const Cats& colListed,
                      bool bMainListed);
    bool DeleteLevel(CutChanges& cChanges, const SchedulerState::Place& place);
    void EmptyLevel(CutChanges& cChanges, const SchedulerState::Place& place);
    bool DeleteMainCat(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat);
    bool DeleteFile(const std::wstring& sCatName);
    void SaveShuffled(const AffectedCats& cAffected);

    SchedulerState& m_cState;
    Synchronisation& m_cSync;
};

} // namespace ravlo

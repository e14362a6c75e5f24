// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/CutChanges.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// The names of categories as one text, joined with ", ": a main category's name, a level's name, blank and
// number. With most above 0 the list ends after that many with "... (+n)".
std::wstring ListCats(const Cats& colCats, std::size_t most = 0);

// A question lists this many categories before "... (+n)": more would not fit a screen.
inline constexpr std::size_t mostListed = 30;
// What an undo names, so that it fits a menu.
inline constexpr std::size_t mostInUndoText = 3;

// Shuffles, deletes and re-orders existing categories, for windows and hosts. A host may pass a category from
// before a reload: the tree's category of the same name and number is used. Errors that are not reported here
// are thrown.
class CategoryEditing
{
public:
    CategoryEditing(SchedulerState& cState, Synchronisation& cSync) noexcept
        : m_cState(cState), m_cSync(cSync)
    {
    }

    // Puts the cuts of each level into a new random order; for a main category, of each of its levels. Saves
    // every main category concerned; reports one that cannot be saved and continues with the others. Asks
    // nothing when none of the categories still exists.
    void ShuffleCategories(const Cats& colCats, bool bConfirmFirst);

    // The keys of a level's cuts in a new order. May let the host run.
    using NewOrder = std::function<std::vector<TextKey>(const clsCat& cSubCat)>;
    // As ShuffleCategories, with the order that newOrder gives; see PutInOrder. When it throws, the level
    // keeps its order, the other levels get theirs, and the first error is thrown after saving.
    void SpreadCategories(const Cats& colCats, bool bConfirmFirst, const NewOrder& newOrder);

    // Deletes levels and main categories and removes the cuts from them. A main category listed without
    // levels is deleted with all its levels; one listed with levels is deleted only when no level remains. A
    // category's file is deleted when it has no levels left. A level stays when a cut could not be removed
    // from it, or when others placed cuts in it during the deletion. Returns false when something could not
    // be deleted or no longer exists.
    bool DeleteCats(const Cats& colCats);

    // Moves cuts of a level, in the given order, in front of the cut at PosInto and saves the main category.
    // PosInto counts from 1, before anything moves; below 1 means 1, past the end means the end. Ignores cuts
    // that are not in the level. Throws error 5 when the level no longer exists.
    void MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                            std::int32_t PosInto);

private:
    bool DeleteChosen(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat, const Cats& colListed,
                      bool bMainListed);
    bool DeleteLevel(CutChanges& cChanges, const SchedulerState::Place& place);
    void EmptyLevel(CutChanges& cChanges, const SchedulerState::Place& place);
    bool DeleteMainCat(CutChanges& cChanges, const std::shared_ptr<clsCat>& cMainCat);
    bool DeleteFile(const std::wstring& sCatName);
    // A question that is asked before the categories are re-ordered; the text is followed by their names.
    struct Question
    {
        const wchar_t* sTitle;
        const wchar_t* sText;
        const wchar_t* sEnd = L"";
    };
    bool IsConfirmed(const Question& question, const Cats& colPresent);
    // The present positions of a level's cuts in their new order. May let the host run.
    using NewPositions = std::function<std::vector<std::size_t>(const clsCat& cSubCat)>;
    void ReorderCategories(const Cats& colPresent, const wchar_t* sWhat, const NewPositions& newPositions);
    void SaveReordered(const AffectedCats& cAffected);
    void MoveTo(const clsCat& cSubCat, const std::vector<std::size_t>& colPositions,
                const std::vector<TextKey>& colMoved);

    SchedulerState& m_cState;
    Synchronisation& m_cSync;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/AffectedCats.h"
#include "scheduler/ChangeRecord.h"
#include "scheduler/Placement.h"
#include "scheduler/RenamedCuts.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// One unit of work that changes where cuts are placed. It alone knows the order in which notifications are
// held, a batch is begun and committed, a cut is tried and put back, progress is reported, messages are
// pumped, run times are recalculated, orders are saved and errors are reported.
//
// A change of the scheduler's own is made on the database's own cuts, each whole or not at all, in batches
// where the database offers them. No batch is open while others run: it is committed before each report. When
// the database refuses one, its cuts return to where they were, and the work continues.
//
// A change that the database has announced is only followed: it is neither batched nor put back, and as much
// of it is kept as could be done.
//
// The database's disk and the files cannot change together, so a process may be killed between them. Before a
// step that may empty a level, and before others run in the middle of the work, the categories concerned are
// saved with a marker in front of each level: with such a file, whichever side of the step the next start
// finds, no level is missing and no other cut loses its place, and the log says that a change was
// interrupted.
//
// Without Finish, as after an exception, what is not committed is undone; what is committed stays and is
// saved without a box.
class CutChanges
{
public:
    enum class Origin
    {
        Own,
        DataBase,
    };
    CutChanges(SchedulerState& cState, Synchronisation& cSync, Origin eOrigin);
    ~CutChanges();
    CutChanges(const CutChanges&) = delete;
    CutChanges& operator=(const CutChanges&) = delete;

    // When the host is told how far the work is.
    struct Rhythm
    {
        std::size_t cuts = 0;       // after so many cuts each; 0: never
        bool bBeforeTheCut = false; // before the last of them is changed
        std::uint32_t lPauseMs = 0;
        std::function<void(std::size_t done)> tell;
        bool bPump = true;
        std::function<bool()> goOn; // asked before each cut; empty: always
        // Whether cuts may leave the level, when orders are saved afterwards; empty: they leave none.
        std::function<bool(const SchedulerState::Place& place)> mayLeave;
    };
    using Change = std::function<void(const std::shared_ptr<Cut>& cCut, std::size_t at)>;
    // Changes each cut, which change receives with its position in colCuts, and commits. Null is passed over.
    // What change throws is gathered, and the other cuts follow. Returns the number of cuts that were tried.
    // What is touched is recalculated at the end.
    std::size_t Run(const Cuts& colCuts, const Change& change, const Rhythm& rhythm);
    // As Run for a single cut, whose failure is reported without a count.
    void RunOne(const std::shared_ptr<Cut>& cCut, const Change& change, const Rhythm& rhythm);

    // ---- what a change is made of

    // Places a cut into a level, or into a main category's level of the cut's own number, which is made when
    // missing and goes again when the placement fails. True when the cut has joined; else it was there
    // already, or its number is no level's, which is shown.
    bool Place(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cInto);
    // As Place, but a cut that is there already moves to the end.
    void PlaceLast(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cMainCat);
    // Places a cut into the main category of that name, which is touched when the cut is in it
    // afterwards. A name that is not in the tree is refused with a box.
    void AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName);
    // As AddCutToCategory for each of the cut's names, making the main categories that are missing. Nothing
    // happens before the first population.
    void AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names);
    // Shows that one of the cut's category names has no characters.
    void RefuseEmptyName(const Cut& cCut);
    // Removes a cut's entry from a level, which is touched, and leaves its category names alone.
    void Leave(const SchedulerState::Place& place, const TextKey& cKey);
    // Takes a cut out of one level, category name included, and touches it; the name stays while another
    // level of the same main category holds the cut. False when the level did not hold it.
    bool TakeOut(const std::shared_ptr<Cut>& cCut, const SchedulerState::Place& place);
    // Brings the tree in line with a cut whose names or level are not those it was placed under, or which
    // is not where they say. Nothing happens before the first population.
    void ModifyCut(const std::shared_ptr<Cut>& cCut);
    // Places a cut whose key has changed since it was placed under cKey, its present one, and touches what
    // that concerns, also when the change of the cut is put back. Run does it for changes of the scheduler's
    // own.
    void FollowNewKey(const std::shared_ptr<Cut>& cCut, const TextKey& cKey);
    // The main category of that name, which is made when missing.
    std::shared_ptr<clsCat> Ensure(const NameLists::Name& name);

    // The main category is saved at the end, unless what touched it is put back.
    void Touch(const std::wstring& sCatName);
    // The caller saves the main category, or deletes its file, when nothing is open.
    void CallerSaves(const std::wstring& sCatName);
    const AffectedCats& Affected() const noexcept { return m_cAffected; }
    // The caller is about to remove this category, which holds no cuts, from the tree.
    void Deleting(const clsCat& cCat);
    // Gathers what goes wrong.
    Placement& Problems() noexcept { return m_cPlacement; }

    // ---- the end

    struct Ending
    {
        // Nothing: the host saves. A file that was written ahead of the change keeps its markers until then.
        std::optional<SaveMode> save = SaveMode{};
        std::function<void(std::size_t affected)> beforeSave;
        std::function<void()> afterSave;
        std::function<void(const RuntimeError&)> show; // each error once
    };
    // Saves what was touched, and the list of categories when one was made, and reports what went wrong. What
    // afterSave throws comes after the report. Returns what was where before; nothing for a change of the
    // database's.
    ChangeRecord Finish(const Ending& ending);

private:
    struct Changed // a cut as it was before it was changed
    {
        std::shared_ptr<Cut> cCut;
        ChangeRecord::Cut before;
        std::optional<PlacedCuts::Entry> placed;
        std::uint64_t population;
    };
    struct Mark // a point of the open step
    {
        std::size_t lChanged;
        std::size_t lUndo;
        std::size_t made;
        std::size_t touched;
    };

    bool IsOwn() const noexcept { return m_eOrigin == Origin::Own; }
    void Begin() noexcept;
    void Commit() noexcept;
    void Tell(const Rhythm& rhythm, std::size_t done);
    void Guard(const std::shared_ptr<clsCat>& cMainCat);
    void GuardAffected();
    void GuardEmptying(std::span<const std::shared_ptr<Cut>> colStep, const Rhythm& rhythm);
    void Failed(const Cut& cCut) noexcept;
    void Try(const std::shared_ptr<Cut>& cGiven, const Change& change, std::size_t at) noexcept;
    void TryOwn(const std::shared_ptr<Cut>& cCut, const Change& change, std::size_t at);
    Mark Now() const noexcept
    {
        return {m_colChanged.size(), m_colUndo.size(), m_colMade.size(), m_colTouched.size()};
    }
    void TakeBack(const Mark& mark) noexcept;
    void PutBack(const Changed& changed) noexcept;
    void KeepStep();
    void WillUndo(std::function<void()> undo);
    void WillReturn(const std::shared_ptr<clsCat>& cSubCat, const TextKey& cKey, std::size_t position);
    void RecordOrder(const std::shared_ptr<clsCat>& cSubCat);
    std::shared_ptr<clsCat> EnsureLevel(const std::shared_ptr<clsCat>& cMainCat, std::int32_t lLevel);
    void PlaceAsNamed(const std::shared_ptr<Cut>& cCut, const NameLists::Name& name);
    bool IsPlacedAsAssigned(const Cut& cCut) const;
    void EndGuards();
    void SaveAffected(SaveMode mode);

    SchedulerState& m_cState;
    const Synchronisation::Hold m_cHold;
    const Origin m_eOrigin;
    Placement m_cPlacement;
    RenamedCuts m_cRenamed;
    AffectedCats m_cAffected;
    bool m_bCounts = true; // the cuts that failed
    bool m_bFinished = false;

    // The open step: what was done since the last commit.
    std::unique_ptr<DataBase::Batch> m_cBatch;
    std::vector<Changed> m_colChanged;
    std::vector<std::function<void()>> m_colUndo; // each harmless when what it undoes has not happened
    std::vector<ChangeRecord::Category> m_colMade;
    std::vector<std::wstring> m_colTouched; // main categories, for the first time

    // Main categories whose files have markers in front of each level, by name.
    OrderedKeyedCollection<std::unique_ptr<HistoryFiles::EmptyingLevels>> m_colGuards;
    ChangeRecord m_record; // of the steps before, and every order
    OrderedKeyedCollection<char> m_colRecordedCuts;
    std::unordered_set<std::shared_ptr<clsCat>> m_colRecordedOrders;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/AffectedCats.h"
#include "scheduler/ChangeRecord.h"
#include "scheduler/Placement.h"
#include "scheduler/RenamedCuts.h"
#include "scheduler/SchedulerState.h"
#include "scheduler/Synchronisation.h"
#include "scheduler/UnitRecord.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ravlo
{

// One unit of work that changes where cuts are placed. This class alone defines the order in which
// notifications are held, batches begun and committed, cuts changed and put back, progress reported, messages
// pumped, run times recalculated, orders saved and errors reported.
//
// Origin::Own: changes the database's own cuts, each completely or not at all, in batches where the database
// supports them. Each batch is committed before a report, so none is open while others run. When the database
// refuses a batch, its cuts return to where they were and the work continues.
//
// Origin::DataBase: the database has already made the change, and the tree follows it. Nothing is batched or
// put back; as much is done as possible.
//
// A process may be killed between a write of the database and one of a file. Therefore, before a step that
// may empty a level, and before others run in the middle of the work, the categories concerned are saved with
// a marker in front of each level. Such a file is right before and after the step: at the next start no level
// is missing, no other cut has lost its position, and the log says that a change was interrupted.
//
// Without Finish, as after an exception, uncommitted changes are undone; committed ones stay, are announced
// to changed and saved without a box.
class CutChanges
{
public:
    enum class Origin
    {
        Own,
        DataBase,
    };
    // Origin::Own: changed is called once, when all is done and before anything else runs; see
    // UnitRecord::End.
    using Changed = UnitRecord::Changed;
    CutChanges(SchedulerState& cState, Synchronisation& cSync, Origin eOrigin, Changed changed = {});
    ~CutChanges();
    CutChanges(const CutChanges&) = delete;
    CutChanges& operator=(const CutChanges&) = delete;

    // The work may be committed in several parts: should the program be killed in between, the next one can
    // undo what was done, under this text. Call before the first change. Precondition: Origin::Own.
    void WorkInParts(const std::wstring& sWhat);

    // How often progress is reported.
    struct Rhythm
    {
        std::size_t cuts = 0;       // after every so many cuts; 0: never
        bool bBeforeTheCut = false; // report before the last of them is changed, not after
        std::uint32_t lPauseMs = 0;
        std::function<void(std::size_t done)> tell;
        bool bPump = true;
        std::function<bool()> goOn; // asked before each cut: false ends the work; empty: always true
        // Whether cuts may leave the level; empty: they leave none. Used only when orders are saved
        // afterwards.
        std::function<bool(const SchedulerState::Place& place)> mayLeave;
    };
    using Change = std::function<void(const std::shared_ptr<Cut>& cCut, std::size_t at)>;
    // Calls change for each cut, with its position in colCuts, and commits. Skips null. Collects the errors
    // of change and continues with the other cuts. Recalculates touched levels at the end. Returns the number
    // of cuts tried.
    std::size_t Run(const Cuts& colCuts, const Change& change, const Rhythm& rhythm);
    // As Run for a single cut; its error is reported without a count.
    void RunOne(const std::shared_ptr<Cut>& cCut, const Change& change, const Rhythm& rhythm);
    // Changes all of the cuts, in one batch, or none: throws the first error after everything done since the
    // last Run is put back. Reports nothing and pumps nothing. With leaveOut, a cut whose own change fails is
    // left as it is and handed to leaveOut, with its error being handled; leaveOut may rethrow it.
    // Precondition: Origin::Own.
    using LeaveOut = std::function<void(std::size_t at)>;
    void RunWhole(const Cuts& colCuts, const Change& change, const Rhythm& rhythm,
                  const LeaveOut& leaveOut = {});

    // ---- what a change is made of

    // Places a cut in a level; in a main category, in the level of the cut's own number, which is created
    // when missing and removed again when placing fails. Returns whether the cut was added. It is not when it
    // is already there, or when its number is no level, which is shown.
    bool Place(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cInto);
    // As Place, but a cut that is already there moves to the end.
    void PlaceLast(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cMainCat);
    // Places a cut in the main category of that name, which is touched when it then contains the cut. A name
    // that is not in the tree is refused with a box.
    void AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName);
    // As AddCutToCategory for each of the cut's names, creating missing main categories. Does nothing before
    // the first population.
    void AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names);
    // Shows that one of the cut's category names is empty.
    void RefuseEmptyName(const Cut& cCut);
    // Removes a cut's entry from a level and touches the level. The cut keeps its category names.
    void Leave(const SchedulerState::Place& place, const TextKey& cKey);
    // Removes a cut from one level, which is touched, and removes the category's name from the cut unless
    // another level of the same main category contains it. Returns false when the cut was not in the level.
    bool TakeOut(const std::shared_ptr<Cut>& cCut, const SchedulerState::Place& place);
    // Moves a cut in the tree when its names or level have changed since it was placed, or when it is not
    // where they say. Does nothing before the first population.
    void ModifyCut(const std::shared_ptr<Cut>& cCut);
    // Updates the tree when the cut's key has changed to cKey since it was placed, and touches the categories
    // concerned. This stays even when the change of the cut is put back. For Origin::Own, Run calls it.
    void FollowNewKey(const std::shared_ptr<Cut>& cCut, const TextKey& cKey);
    // Returns the main category of that name; creates it when missing, at that position or the end.
    std::shared_ptr<clsCat> Ensure(const NameLists::Name& name,
                                   std::size_t position = std::numeric_limits<std::size_t>::max());
    // Returns the level of that number; creates it when missing.
    std::shared_ptr<clsCat> EnsureLevel(const std::shared_ptr<clsCat>& cMainCat, std::int32_t lLevel);
    // Adds a cut to the end of a level that does not contain it, and touches the level. Leaves the cut's
    // category names alone, even when they do not name this category.
    void Join(const SchedulerState::Place& place, const std::shared_ptr<Cut>& cCut, const TextKey& cKey);
    // As PutInOrder of RotationOrder.h, and touches the level when its order changes.
    void PutInOrder(const SchedulerState::Place& place, const std::vector<TextKey>& colKeys);

    // Marks the main category to be saved at the end, unless the change that touched it is put back.
    void Touch(const std::wstring& sCatName);
    // The caller will save the main category, or delete its file, outside any batch.
    void CallerSaves(const std::wstring& sCatName);
    const AffectedCats& Affected() const noexcept { return m_cAffected; }
    // Call before removing this category from the tree. Precondition: it contains no cuts.
    void Deleting(const clsCat& cCat);
    // Number of cuts that were changed as a whole, each once, even when the change made no difference.
    std::size_t CutsDone() const noexcept { return m_unit ? m_unit->OwnCuts() : 0; }
    // Collects the errors.
    Placement& Problems() noexcept { return m_cPlacement; }

    // ---- the end

    struct Ending
    {
        // Empty: the host saves. A file that was written before the change keeps its markers until then.
        std::optional<SaveMode> save = SaveMode{};
        std::function<void(std::size_t affected)> beforeSave;
        std::function<void()> afterSave;
        std::function<void(const RuntimeError&)> show; // called once for each error
    };
    // Saves what was touched, and the list of categories when one was created, then reports the errors. An
    // exception of afterSave is thrown after the report. Returns where everything that differs now was
    // before; empty for Origin::DataBase.
    ChangeRecord Finish(const Ending& ending);

private:
    struct ChangedCut // a cut's state before it was changed
    {
        std::shared_ptr<Cut> cCut;
        ChangeRecord::Cut record;
        std::optional<PlacedCuts::Entry> placed;
        std::uint64_t population;
        std::size_t inside; // see UnitRecord::RecordCut
    };
    struct Mark // a position in the open step, to undo back to
    {
        std::size_t changed;
        std::size_t undo;
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
    void TryOrLeaveOut(const std::shared_ptr<Cut>& cCut, const Change& change, std::size_t at,
                       const LeaveOut& leaveOut);
    Mark Now() const noexcept
    {
        return {m_colChanged.size(), m_colUndo.size(), m_colMade.size(), m_colTouched.size()};
    }
    void TakeBack(const Mark& mark) noexcept;
    void PutBack(const ChangedCut& changed) noexcept;
    void WriteAhead() noexcept;
    void KeepStep();
    static void ReadAfter(ChangedCut& changed) noexcept;
    bool Exists(const ChangeRecord::Category& category) const;
    ChangeRecord EndRecord();
    void WillUndo(std::function<void()> undo);
    void WillReturn(const std::shared_ptr<clsCat>& cSubCat, const TextKey& cKey, std::size_t position);
    void RecordOrder(const std::shared_ptr<clsCat>& cSubCat);
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
    std::vector<ChangedCut> m_colChanged;
    std::vector<std::function<void()>> m_colUndo; // each harmless when what it undoes has not happened
    std::vector<ChangeRecord::Category> m_colMade;
    std::vector<std::wstring> m_colTouched; // main categories, for the first time
    bool m_bInParts = false;
    std::size_t m_cutsAhead = 0; // of m_colChanged: written ahead
    std::size_t m_madeAhead = 0; // of m_colMade

    // Main categories whose files have markers in front of each level, by name.
    OrderedKeyedCollection<std::unique_ptr<HistoryFiles::EmptyingLevels>> m_colGuards;
    const Changed m_changed;
    std::optional<UnitRecord> m_unit; // of the steps before, and every order; none for Origin::DataBase
};

} // namespace ravlo

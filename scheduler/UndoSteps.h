// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/GrowingRecord.h"
#include "scheduler/StepParts.h"
#include "scheduler/UndoRecords.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

class PlacedCuts;

enum class UndoWay : int
{
    Undo,
    Redo,
};

// A station's units of work that can be undone, and the undone ones that can be redone. Each is kept as the
// record that takes it back; see ReverseChange. They are kept over a restart in Scheduler\Undo.dat, which is
// read when they are first needed. Errors of that file are only logged. While it cannot be read, only new
// steps are known, and it is not written; when it can be read, its steps are the older ones. Steps that name
// cuts, of which the database has none, are of another database and forgotten.
class UndoSteps
{
public:
    struct Step
    {
        std::uint64_t number;
        std::wstring sWhat;                 // such as "shuffle of pop 1"
        std::optional<ChangeRecord> record; // nothing when it cannot be used
    };
    // Beyond these the oldest steps are dropped. A step that is larger than the file may be is kept until the
    // end of the program. A shuffle of 100 000 cuts takes 300 KB; their keys, of 60 characters each, 6 MB.
    static constexpr std::size_t mostSteps = 100;
    static constexpr std::size_t mostStepBytes = 16'000'000;
    static constexpr std::size_t mostTableBytes = 16'000'000; // of the keys and texts that the steps name
    // A file that took long to write is not written again before this many times as long, or this time.
    static constexpr std::uint32_t lPauseFactor = 10;
    static constexpr std::uint32_t lLongestPauseMs = 5'000;

    // With pPlacedCuts, the cuts that the database has.
    explicit UndoSteps(ModScheduler& cMod, const PlacedCuts* pPlacedCuts = nullptr) noexcept
        : m_cMod(cMod), m_pPlacedCuts(pPlacedCuts), m_cParts(cMod)
    {
    }
    ~UndoSteps() { m_cMod.Saved().Forget(this); }
    UndoSteps(const UndoSteps&) = delete;
    UndoSteps& operator=(const UndoSteps&) = delete;

    // The steps are those of the station with this application path from now on. Saves the ones before. Call
    // when a tree comes into use.
    void Serve(const std::wstring& sAppPath) noexcept;
    // Whether the file is written: not while another manager writes it.
    void SetMayWrite(bool bMayWrite) noexcept { m_bMayWrite = bMayWrite; }

    // ---- adding

    // Call when a unit of work is done, before anything else runs. From now on it is the next to be undone,
    // and nothing can be redone; inside another unit it becomes part of that, except a change of settings,
    // which has nothing to do with its cuts and is a step before it. Ignores a record of nothing. On an
    // error, which is logged, the work stays, and all steps are forgotten: they cannot be undone over it.
    void Add(const std::wstring& sWhat, const ChangeRecord& record) noexcept;

    // Small units that belong together, such as those of a key that is held down.
    struct Series
    {
        std::wstring sName;
        std::function<std::wstring(const ChangeRecord& whole)> textOf;
        std::vector<ChangeRecord::Order> colAfter; // the record's orders as they are now
    };
    // As Add. When the unit before was added under the same name, and has left the orders as this one found
    // them, the two are one step; none when they cancel out.
    void AddToSeries(const Series& series, const ChangeRecord& record) noexcept;

    // A unit of work that is running; see UnitRecord.
    class OpenUnit
    {
    public:
        virtual void TakeIn(const std::wstring& sWhat, const ChangeRecord& record) = 0;
        virtual void Renamed(const TextKey& cFrom, const TextKey& cTo) = 0;

    protected:
        ~OpenUnit() = default;
    };
    void Open(OpenUnit& cUnit) { m_colOpen.push_back(&cUnit); }
    void Close(OpenUnit& cUnit) noexcept;
    bool IsUnitOpen() const noexcept { return !m_colOpen.empty(); }

    // Call when a unit begins that commits its work in several parts, and hand over each part before it is
    // committed; see StepParts. Undo.dat is not written until the outermost unit ends. sWhat is the step's
    // text, should the program be killed before that.
    void BeginParts(const std::wstring& sWhat) noexcept;
    void AddPart(const ChangeRecord& part) noexcept { m_cParts.Add(part); }

    // Call when a cut has another key, which the steps then name. A cut that had the new key is gone.
    void Renamed(const TextKey& cFrom, const TextKey& cTo) noexcept;

    // ---- undoing

    bool Has(UndoWay eWay) noexcept;
    // What the next step of that way did; empty when there is none.
    std::wstring What(UndoWay eWay);
    std::optional<Step> Next(UndoWay eWay);
    // Call when a step was reversed, before anything else runs. inverse reverses that: it is the next step of
    // the other way, unless it is a record of nothing.
    void Reversed(const Step& step, UndoWay eWay, const ChangeRecord& inverse) noexcept;

    // ---- saving

    // Saves the steps when they have changed since the last attempt, unless the file was written a moment
    // ago, or a SaveLast exists. Does not wait for a locked file. Call at the end of each operation.
    void Save() noexcept;
    // Saves them at once, also what failed before.
    void SaveAtEnd() noexcept;
    // The steps are saved when this ends. After a kill before that, a step whose reversal is saved in part is
    // still there, and can be reversed again.
    class SaveLast
    {
    public:
        explicit SaveLast(UndoSteps& cSteps) noexcept : m_cSteps(cSteps) { m_cSteps.m_bSavedLast = true; }
        ~SaveLast()
        {
            m_cSteps.m_bSavedLast = false;
            m_cSteps.Save();
        }
        SaveLast(const SaveLast&) = delete;
        SaveLast& operator=(const SaveLast&) = delete;

    private:
        UndoSteps& m_cSteps;
    };

private:
    enum class Unsaved
    {
        No,
        Yes,
        Tried, // and failed
    };
    std::deque<UndoStep>& Steps(UndoWay eWay) noexcept
    {
        return eWay == UndoWay::Undo ? m_content.colUndo : m_content.colRedo;
    }
    void Load() noexcept;
    void Read();
    void ReadParts(UndoContent& older, Patience ePatience);
    void Write();
    std::wstring PartsPath() const;
    void PutBefore(UndoContent older);
    bool IsForeign(const UndoTables& cTables) const;
    void ForgetForeign();
    void Push(UndoWay eWay, const std::wstring& sWhat, const ChangeRecord& record);
    void Grow(const Series& series, const ChangeRecord& record);
    void Settle();
    void EndSeries() noexcept { m_sSeries.clear(); }
    template <class Body> void Attempt(Body&& body) noexcept;
    void DropOldest();
    std::size_t StepBytes() const noexcept;
    bool IsTooLarge() const noexcept;
    void Renumber();
    void MarkUnsaved() noexcept { m_eUnsaved = Unsaved::Yes; }

    ModScheduler& m_cMod;
    const PlacedCuts* const m_pPlacedCuts;
    std::wstring m_sPath; // empty before the first population
    bool m_bMayWrite = true;
    bool m_bSavedLast = false; // a SaveLast exists
    bool m_bLoaded = true;
    std::optional<std::uint32_t> m_lReadFailedAt; // by the tick count
    Unsaved m_eUnsaved = Unsaved::No;
    std::uint32_t m_lSavedAt = 0; // by the tick count
    std::uint32_t m_lPauseMs = 0;
    std::string m_check = std::string(undoCheckBytes, '\0'); // of the file on the disk
    StepParts m_cParts;
    std::uint64_t m_numbers = 0; // given to steps, each once
    UndoContent m_content;
    std::vector<OpenUnit*> m_colOpen;
    std::vector<std::pair<TextKey, TextKey>> m_colRenamed; // since the file could not be read

    std::wstring m_sSeries; // of the newest step to undo; empty: it is in none that goes on
    std::vector<ChangeRecord::Order> m_colAfter;
    GrowingRecord m_growing; // its record
    bool m_bGrown = false;   // the step's bytes are not those of m_growing yet
};

} // namespace ravlo

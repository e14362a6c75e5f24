// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/UndoRecords.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace ravlo
{

enum class UndoWay : int
{
    Undo,
    Redo,
};

// A station's units of work that can be undone, and the undone ones that can be redone. Each is kept as the
// record that takes it back; see ReverseChange. They are kept over a restart in Scheduler\Undo.dat, which is
// read when they are first needed. Errors of that file are only logged. While it cannot be read, only new
// steps are known, and it is not written; when it can be read, its steps are the older ones.
class UndoSteps
{
public:
    struct Step
    {
        std::uint64_t lNumber;
        std::wstring sWhat; // such as "shuffle of pop 1"
        ChangeRecord record;
    };
    // Beyond these the oldest steps are dropped. A step that is larger than the file may be is kept until the
    // end of the program. 100 shuffles of a level of 1 000 cuts take about 250 KB.
    static constexpr std::size_t mostSteps = 100;
    static constexpr std::size_t mostBytes = 8'000'000;

    explicit UndoSteps(ModScheduler& cMod) noexcept : m_cMod(cMod) {}
    ~UndoSteps() { m_cMod.Saved().Forget(this); }
    UndoSteps(const UndoSteps&) = delete;
    UndoSteps& operator=(const UndoSteps&) = delete;

    // The steps are those of the station with this application path from now on. Saves the ones before.
    void Serve(const std::wstring& sAppPath) noexcept;

    // Call when a unit of work is done, before anything else runs. From now on it is the next to be undone,
    // and nothing can be redone. Ignores a record of nothing. An error is logged: the work stays, without a
    // step.
    void Add(const std::wstring& sWhat, const ChangeRecord& record) noexcept;

    bool Has(UndoWay eWay) noexcept;
    // What the next step of that way did; empty when there is none.
    std::wstring What(UndoWay eWay);
    std::optional<Step> Next(UndoWay eWay);
    // Call when a step was reversed, before anything else runs. inverse reverses that: it is the next step of
    // the other way, unless it is a record of nothing.
    void Reversed(const Step& step, UndoWay eWay, const ChangeRecord& inverse) noexcept;

    // Saves the steps when they have changed since the last attempt; at the end, also what failed then. Does
    // not wait for a locked file.
    void Save() noexcept;
    void SaveAtEnd() noexcept;

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
    void PutBefore(UndoContent older);
    void Push(UndoWay eWay, const std::wstring& sWhat, const ChangeRecord& record);
    void DropOldest();
    std::size_t StepBytes() const noexcept;
    std::size_t Bytes() const noexcept;
    void Renumber();

    ModScheduler& m_cMod;
    std::wstring m_sPath; // empty before the first population
    bool m_bLoaded = true;
    std::optional<std::uint32_t> m_lReadFailedAt; // by the tick count
    Unsaved m_eUnsaved = Unsaved::No;
    std::uint64_t m_lNumbers = 0; // given to steps, each once
    UndoContent m_content;
};

} // namespace ravlo

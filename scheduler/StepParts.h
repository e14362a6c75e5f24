// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "scheduler/ChangeRecord.h"

#include <optional>
#include <string>

namespace ravlo
{

inline constexpr const wchar_t* sPartsFileName = L"Undo.parts"; // next to Undo.dat

// Whether a killed program may have left a step at the station with this application path. Never throws.
bool PartsAreLeft(const Files& cFiles, const std::wstring& sAppPath);

// The text of a step is this and what was interrupted.
inline constexpr const wchar_t* sInterrupted = L"interrupted ";

// What a unit of work that commits in several parts has done so far, on the disk: each part is written before
// it is committed. When the program is killed in the middle of the work, the next one finds it here, as a
// step that can be undone. File: Scheduler\Undo.parts, see docs/formats/undo.md. Errors of writing are only
// logged.
class StepParts
{
public:
    explicit StepParts(ModScheduler& cMod) noexcept : m_cMod(cMod) {}
    ~StepParts() { m_cMod.Saved().Forget(this); }
    StepParts(const StepParts&) = delete;
    StepParts& operator=(const StepParts&) = delete;

    // Begins the parts of a step with this text. check is that of the Undo.dat which does not contain the
    // step yet. Writes nothing before the first part.
    void Begin(const std::wstring& sPath, const std::string& check, const std::wstring& sWhat);
    bool IsOpen() const noexcept { return m_bOpen; }
    // Ignored when none is open. After an error the parts so far stay, and no others are added.
    void Add(const ChangeRecord& part) noexcept;
    void End() noexcept { m_bOpen = false; }

    // Whether there is a file of a step that has not been in any Undo.dat. Delete it when one has the step.
    bool IsLeft() const noexcept { return m_bLeft; }
    void Delete() noexcept;
    // Forgets the file, which stays.
    void Leave() noexcept;

    struct Found
    {
        std::wstring sWhat;
        ChangeRecord record; // of all parts; see Read
    };
    // The step that a killed program has left, when there is one that is not in the Undo.dat of this check.
    // The last part may not have been committed: then its cuts are as before. A cut of the last part that an
    // earlier one has, too, is therefore recorded without its state after the change.
    // Throws when the file cannot be read.
    std::optional<Found> Read(const std::wstring& sPath, const std::string& check, Patience ePatience);

private:
    ModScheduler& m_cMod;
    std::wstring m_sPath;
    std::string m_check;
    std::wstring m_sWhat;
    bool m_bOpen = false;
    bool m_bLeft = false;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

#include <memory>
#include <string>

namespace ravlo
{

// The scheduler's place under the host's application folder, sAppPath with a trailing backslash.

// Creates the scheduler's folders where they are missing. A failure is shown and ends it.
void CreateFolders(ModScheduler& cMod, const std::wstring& sAppPath);

// Deletes the temporary files that killed programs left in the scheduler's folders: those that were written
// more than a day ago, so that nobody is writing them now. What cannot be deleted stays.
void DeleteOldTemporaryFiles(Files& cFiles, const std::wstring& sAppPath);

// Marks the station that is about to be populated; null when somebody else has, or when it cannot be marked.
// Either is logged only: working on is better than silence on air.
std::unique_ptr<HeldFile> MarkStationOrLog(ModScheduler& cMod, const std::wstring& sAppPath);

// Moves the library to the folder that a population reads. Rules and settings are used from there once the
// population has succeeded: until then those of the tree in use are read and written where they are. When the
// population fails, the library returns to the folder it was in.
class FolderMove
{
public:
    FolderMove(ModScheduler& cMod, const std::wstring& sAppPath);
    ~FolderMove();
    FolderMove(const FolderMove&) = delete;
    FolderMove& operator=(const FolderMove&) = delete;

    // Where to, with a trailing backslash. The library itself may be moved on by another manager.
    const std::wstring& AppPath() const noexcept { return m_sTo; }
    // Whether the library has moved, from a folder it had: the settings are loaded by Settle then.
    bool IsMoving() const { return m_bMoving; }
    // The population has succeeded.
    void Settle();

private:
    // Whether the move is still under way: another manager may have moved the library since, which is that
    // one's then, or have settled in this folder.
    bool IsUnderWay() const;

    ModScheduler& m_cMod;
    const std::wstring m_sFrom;
    std::wstring m_sTo;
    bool m_bMoving = false;
};

} // namespace ravlo

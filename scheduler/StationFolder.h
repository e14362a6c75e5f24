// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

#include <memory>
#include <string>

namespace ravlo
{

// The scheduler's folders under the host's application folder, sAppPath with a trailing backslash.

// Creates the scheduler's missing folders. Shows a failure and stops at it.
void CreateFolders(ModScheduler& cMod, const std::wstring& sAppPath);

// Deletes temporary files that killed programs left in the scheduler's folders: those older than a day, which
// nobody is still writing. Files that cannot be deleted stay.
void DeleteOldTemporaryFiles(Files& cFiles, const std::wstring& sAppPath);

// Marks the station that is about to be populated. Returns null when another program has marked it, or it
// cannot be marked. Only logs either: working is better than silence on air.
std::unique_ptr<HeldFile> MarkStationOrLog(ModScheduler& cMod, const std::wstring& sAppPath);

// Moves the library to the folder that a population reads. Until the population succeeds, the present tree's
// rules and settings are still read and written in their own folder. When it fails, the library returns to
// that folder.
class FolderMove
{
public:
    FolderMove(ModScheduler& cMod, const std::wstring& sAppPath);
    ~FolderMove();
    FolderMove(const FolderMove&) = delete;
    FolderMove& operator=(const FolderMove&) = delete;

    // The destination, with a trailing backslash. Another manager may move the library on.
    const std::wstring& AppPath() const noexcept { return m_sTo; }
    // Whether the library moves away from another folder: Settle then loads the settings.
    bool IsMoving() const { return m_bMoving; }
    // Call when the population has succeeded.
    void Settle();

private:
    // Whether neither this move has settled nor another manager has moved the library since or settled in
    // this folder.
    bool IsUnderWay() const;

    ModScheduler& m_cMod;
    const std::wstring m_sFrom;
    std::wstring m_sTo;
    bool m_bMoving = false;
};

} // namespace ravlo

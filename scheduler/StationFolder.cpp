// SPDX-License-Identifier: MIT
#include "scheduler/StationFolder.h"

#include "platform/StationMarker.h"

#include <array>
#include <chrono>

namespace ravlo
{

namespace
{

void DeleteIfPossible(Files& cFiles, const std::wstring& sPath)
{
    try
    {
        cFiles.Delete(sPath);
    }
    catch (const RuntimeError&)
    {
        // A file that is left does no harm.
    }
}

} // namespace

void CreateFolders(ModScheduler& cMod, const std::wstring& sAppPath)
{
    // Parents first: only the last component of each is created. On purpose the rules' folder is listed
    // twice.
    static constexpr std::array<const wchar_t*, 5> folders = {
        L"Scheduler", L"Scheduler\\History_and_Ordering", L"Scheduler\\Rules", L"Scheduler\\Debugging Logs",
        L"Scheduler\\Rules"};
    TrapCritical(cMod, L"Error in CreateFolders [scheduler]", [&] {
        Files& cFiles = cMod.Ports().cFiles;
        for (const wchar_t* sFolder : folders)
            if (!cFiles.FolderExists(sAppPath + sFolder))
                cFiles.CreateFolder(sAppPath + sFolder);
    });
}

void DeleteOldTemporaryFiles(Files& cFiles, const std::wstring& sAppPath)
{
    for (const wchar_t* sFolder : {L"Scheduler", L"Scheduler\\History_and_Ordering", L"Scheduler\\Rules"})
    {
        try
        {
            for (const FileEntry& file : cFiles.FilesIn(sAppPath + sFolder))
                if (IsTemporaryName(file.sName) && file.lAge > std::chrono::hours(24))
                    DeleteIfPossible(cFiles, sAppPath + sFolder + L"\\" + file.sName);
        }
        catch (const RuntimeError&)
        {
            // A missing or unreachable folder is reported elsewhere.
        }
    }
}

std::unique_ptr<HeldFile> MarkStationOrLog(ModScheduler& cMod, const std::wstring& sAppPath)
{
    try
    {
        std::unique_ptr<HeldFile> cMark = MarkStation(cMod.Ports().cFiles, sAppPath);
        if (!cMark)
            cMod.WriteDebugLog(
                L"The station is in use by another program or manager, which may overwrite its "
                L"orders: " +
                sAppPath);
        return cMark;
    }
    catch (...)
    {
        cMod.LogError(L"PopulateFromDataBase, marking the station", CurrentError());
        return nullptr;
    }
}

FolderMove::FolderMove(ModScheduler& cMod, const std::wstring& sAppPath)
    : m_cMod(cMod), m_sFrom(cMod.AppPath())
{
    m_cMod.MoveAppPath(sAppPath);
    m_sTo = m_cMod.AppPath();
    m_bMoving = m_cMod.ServedPath() != m_sTo;
}

FolderMove::~FolderMove()
{
    try
    {
        if (IsUnderWay())
            m_cMod.MoveAppPath(m_sFrom);
    }
    catch (...)
    {
        m_cMod.LogError(L"PopulateFromDataBase, back to the folder before", CurrentError());
    }
}

bool FolderMove::IsUnderWay() const
{
    return m_bMoving && m_cMod.AppPath() == m_sTo && m_cMod.ServedPath() != m_sTo;
}

void FolderMove::Settle()
{
    if (IsUnderWay())
        m_cMod.SettleAppPath();
    m_bMoving = false;
}

} // namespace ravlo

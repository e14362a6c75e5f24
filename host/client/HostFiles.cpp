// SPDX-License-Identifier: MIT
#include "host/client/HostFiles.h"

#include "base/RuntimeError.h"
#include "host/day/HostError.h"
#include "platform/StationMarker.h"
#include "platform/windows/WindowsFiles.h"

#include <windows.h>
#undef ReplaceFile // the system's macro would rename ours

namespace ravlo
{

namespace
{

WindowsFiles files;

constexpr ULONGLONG lookmS = 3000; // longer than listing a station takes
constexpr DWORD lBetweenLooksmS = 100;

// The folder a full path lies in, without a trailing backslash.
std::wstring FolderOf(const std::wstring& sPath) { return sPath.substr(0, sPath.find_last_of(L'\\')); }

// Adds the file's name to errors of the file system.
template <class Work> auto Named(const std::wstring& sPath, Work work)
{
    try
    {
        return work();
    }
    catch (const RuntimeError& error)
    {
        throw HostError(sPath + L": " + error.Description());
    }
}

// Whether the scheduler has worked in the folder.
bool IsStation(const std::wstring& sAppFolder)
{
    const std::wstring sFull = FullPath(sAppFolder);
    return files.FolderExists(sFull + (sFull.ends_with(L'\\') ? L"Scheduler" : L"\\Scheduler"));
}

// Creates the folder and its parents, as far as they are missing.
void MakeFolder(const std::wstring& sPath)
{
    if (files.FolderExists(sPath))
        return;
    const std::wstring sAbove = FolderOf(sPath);
    if (sAbove.size() > 2 && sAbove != sPath) // past "C:"
        MakeFolder(sAbove);
    Named(sPath, [&] { files.CreateFolder(sPath); });
}

} // namespace

std::wstring FullPath(const std::wstring& sPath)
{
    const DWORD lRoom = GetFullPathNameW(sPath.c_str(), 0, nullptr, nullptr);
    std::wstring sFull(lRoom, L'\0');
    const DWORD lLength = GetFullPathNameW(sPath.c_str(), lRoom, sFull.data(), nullptr);
    if (lLength == 0 || lLength >= lRoom)
        throw HostError(sPath + L" is no file name");
    sFull.resize(lLength);
    return sFull;
}

void MustExist(const std::wstring& sPath)
{
    if (!FileExists(sPath))
        throw HostError(sPath + L": no such file");
}

void MustBeWritable(const std::wstring& sPath)
{
    if (files.FolderExists(sPath))
        throw HostError(sPath + L" is a folder");
    if (!files.FolderExists(FolderOf(sPath) + L"\\"))
        throw HostError(sPath + L": its folder does not exist");
}

void MayBeStation(const std::wstring& sDataBase, const std::wstring& sAppFolder)
{
    MustExist(FullPath(sDataBase));
    if (FileExists(FullPath(sAppFolder)))
        throw HostError(sAppFolder + L" is a file, not a folder");
}

void MustBeStation(const std::wstring& sDataBase, const std::wstring& sAppFolder)
{
    MayBeStation(sDataBase, sAppFolder);
    if (!IsStation(sAppFolder))
        throw HostError(sAppFolder + L" is no station: it has no folder Scheduler (day, watch, library and "
                                     L"category make a new station)");
}

std::wstring MakeStation(const std::wstring& sAppFolder)
{
    if (IsStation(sAppFolder))
        return {};
    MakeFolder(FullPath(sAppFolder));
    return L"New station: " + sAppFolder + L"\n";
}

void MustBeFree(const std::wstring& sAppFolder)
{
    const std::wstring sStation = FullPath(sAppFolder);
    const ULONGLONG end = GetTickCount64() + lookmS;
    while (IsStationInUse(files, sStation))
    {
        if (GetTickCount64() >= end)
            throw HostError(L"another program works on the station " + sAppFolder);
        Sleep(lBetweenLooksmS);
    }
}

bool FileExists(const std::wstring& sPath) { return files.FileExists(sPath); }

void DeleteIfThere(const std::wstring& sPath) noexcept { DeleteFileW(sPath.c_str()); }

std::string ReadWhole(const std::wstring& sPath)
{
    MustExist(sPath);
    return Named(sPath, [&] { return files.ReadAll(sPath); });
}

void WriteWhole(const std::wstring& sPath, std::string_view bytes)
{
    Named(sPath, [&] { ReplaceFile(files, sPath, bytes); });
}

} // namespace ravlo

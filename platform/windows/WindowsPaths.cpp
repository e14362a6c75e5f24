// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsPaths.h"

#include "base/RuntimeError.h"
#include "platform/DeviceNames.h"

#include <algorithm>
#include <string_view>

namespace ravlo
{

namespace
{

bool StartsWith(const std::wstring& sText, std::wstring_view sStart)
{
    return sText.compare(0, sStart.size(), sStart) == 0;
}

// Throws when a name or the path is longer than the system accepts; it would answer "not found".
void RequireLengths(const std::wstring& sFull)
{
    constexpr std::size_t longestPath = 32'767;
    constexpr std::size_t longestName = 255;
    if (sFull.size() > longestPath - 8) // less the long form's "\\?\UNC\" and the end
        throw RuntimeError(error::BadFileName, L"Bad file name: the path is longer than 32767 characters");
    for (std::size_t start = 0; start < sFull.size();)
    {
        const std::size_t end = std::min(sFull.find(L'\\', start), sFull.size());
        if (end - start > longestName)
            throw RuntimeError(error::BadFileName,
                               L"Bad file name: longer than 255 characters, which is the limit of a name");
        start = end + 1;
    }
}

// The last component of a path.
std::wstring_view NameOf(std::wstring_view sPath)
{
    while (!sPath.empty() && (sPath.back() == L'\\' || sPath.back() == L'/'))
        sPath.remove_suffix(1);
    return sPath.substr(sPath.find_last_of(L"\\/") + 1); // from the start when there is none
}

std::wstring FullPathOf(const std::wstring& sPath)
{
    std::wstring sFull(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD lLength =
            ::GetFullPathNameW(sPath.c_str(), static_cast<DWORD>(sFull.size()), sFull.data(), nullptr);
        if (lLength == 0)
            throw RuntimeError(error::BadFileName);
        const bool bFits = lLength < sFull.size();
        sFull.resize(lLength);
        if (bFits)
            return sFull;
    }
}

// Whether a file or folder can be opened for reading its attributes; follows links, which may lead to an
// unavailable drive.
bool CanBeOpened(const std::wstring& sNative)
{
    constexpr DWORD lShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE hFile = ::CreateFileW(sNative.c_str(), FILE_READ_ATTRIBUTES, lShareAll, nullptr,
                                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return false;
    ::CloseHandle(hFile);
    return true;
}

// Whether a path is missing because one of its folders does not exist, rather than because its drive is
// unavailable: the system reports one error for both. True when the last existing component can be opened.
bool IsFolderMissing(std::wstring sNative)
{
    for (;;)
    {
        const std::size_t separator = sNative.find_last_of(L'\\');
        if (separator == std::wstring::npos || separator == 0)
            return false;
        sNative.resize(separator);
        // "C:" alone would be the drive's current folder, and a server alone can never be opened.
        const std::wstring sFolder = sNative.back() == L':' ? sNative + L"\\" : sNative;
        if (::GetFileAttributesW(sFolder.c_str()) != INVALID_FILE_ATTRIBUTES)
            return CanBeOpened(sFolder);
        const DWORD lError = ::GetLastError();
        if (lError != ERROR_FILE_NOT_FOUND && lError != ERROR_PATH_NOT_FOUND)
            return false;
    }
}

} // namespace

std::int32_t ErrorNumberOf(DWORD lError)
{
    constexpr DWORD lQuotaExceeded = 1295; // ERROR_DISK_QUOTA_EXCEEDED, which not every SDK names
    constexpr std::int32_t lTooManyFiles = 67;
    constexpr std::int32_t lDiskNotReady = 71;
    switch (lError)
    {
    case ERROR_FILE_NOT_FOUND:
        return error::FileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
        return error::PathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return error::PathFileAccess;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
        return error::PermissionDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return error::FileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case lQuotaExceeded:
        return error::DiskFull;
    case ERROR_TOO_MANY_OPEN_FILES:
        return lTooManyFiles;
    case ERROR_NOT_READY:
        return lDiskNotReady;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return error::BadFileName;
    default:
        return error::DeviceIo;
    }
}

std::wstring NativePathOf(const std::wstring& sPath)
{
    if (sPath.empty() || sPath.find(L'\0') != std::wstring::npos || IsDeviceName(NameOf(sPath)))
        throw RuntimeError(error::BadFileName);
    RequireLengths(sPath);
    const std::wstring sFull = FullPathOf(sPath);
    const bool bLongForm = StartsWith(sFull, L"\\\\?\\"); // a host may hand one in
    const std::size_t root = bLongForm ? 4 : 0;
    if (StartsWith(sFull, L"\\\\.\\") || sFull.find(L':', root + 2) != std::wstring::npos ||
        sFull.find_first_of(L"*?<>|\"", root) != std::wstring::npos)
        throw RuntimeError(error::BadFileName);
    RequireLengths(sFull);                    // the folder that a relative path starts in counts
    constexpr std::size_t classicLimit = 240; // 260, less what a folder must leave room for
    if (bLongForm || sFull.size() < classicLimit)
        return sFull;
    if (StartsWith(sFull, L"\\\\"))
        return L"\\\\?\\UNC\\" + sFull.substr(2);
    return L"\\\\?\\" + sFull;
}

PathKind KindOfAttributes(DWORD lAttributes)
{
    return (lAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::Folder : PathKind::File;
}

PathKind KindOfNative(const std::wstring& sNative)
{
    const DWORD lAttributes = ::GetFileAttributesW(sNative.c_str());
    if (lAttributes != INVALID_FILE_ATTRIBUTES)
        return KindOfAttributes(lAttributes);
    switch (::GetLastError())
    {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
        return PathKind::None;
    case ERROR_PATH_NOT_FOUND:
        return IsFolderMissing(sNative) ? PathKind::None : PathKind::Unknown;
    default:
        return PathKind::Unknown;
    }
}

PathKind KindOf(const std::wstring& sPath)
{
    std::wstring sNative;
    try
    {
        sNative = NativePathOf(sPath);
    }
    catch (const RuntimeError&)
    {
        return PathKind::None; // an impossible name does not exist
    }
    return KindOfNative(sNative);
}

} // namespace ravlo

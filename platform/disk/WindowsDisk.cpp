// SPDX-License-Identifier: MIT
#ifdef _WIN32
#include "base/RuntimeError.h"
#include "platform/disk/Disk.h"
#include "platform/disk/System.h"

#include <algorithm>
#include <string_view>

#include <windows.h>

namespace ravlo::disk
{

namespace
{

constexpr std::wstring_view sLongForm = L"\\\\?\\";

// The form without which names end at 259 characters. Precondition: the path is whole.
std::wstring LongForm(const std::wstring& sWhole)
{
    if (sWhole.starts_with(sLongForm))
        return sWhole;
    if (sWhole.starts_with(L"\\\\"))
        return L"\\\\?\\UNC" + sWhole.substr(1);
    return std::wstring(sLongForm) + sWhole;
}

// The long form of any path; "" for one that names no file, which no call then finds.
std::wstring NativeOf(const std::wstring& sPath)
{
    try
    {
        return LongForm(FullPath(sPath));
    }
    catch (const RuntimeError&)
    {
        return {};
    }
}

// Milliseconds since 1970, of 100 ns since 1601.
std::int64_t MillisecondsOf(const FILETIME& time)
{
    constexpr std::uint64_t from1601To1970 = 116'444'736'000'000'000;
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return (static_cast<std::int64_t>(ticks) - static_cast<std::int64_t>(from1601To1970)) / 10'000;
}

// Not the folders of a cloud drive, which are reparse points, too.
bool IsLink(const WIN32_FIND_DATAW& found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

bool IsRoot(const std::wstring& sPath) { return sPath.size() == 3 && sPath[1] == L':'; }

} // namespace

std::wstring FullPath(const std::wstring& sPath)
{
    RequireName(sPath);
    std::wstring sFull(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD lLength =
            ::GetFullPathNameW(sPath.c_str(), static_cast<DWORD>(sFull.size()), sFull.data(), nullptr);
        if (lLength == 0)
            throw RuntimeError(error::BadFileName, L"\"" + sPath + L"\" is no file name.");
        const bool bFits = lLength < sFull.size();
        sFull.resize(lLength);
        if (bFits)
            break;
    }
    if (sFull.starts_with(L"\\\\.\\")) // a device, such as the console
        throw RuntimeError(error::BadFileName, L"\"" + sPath + L"\" is no file name.");
    while (sFull.size() > 1 && sFull.back() == L'\\' && !IsRoot(sFull))
        sFull.pop_back();
    return sFull;
}

std::wstring PathIn(const std::wstring& sFolder, const std::wstring& sName)
{
    RequireName(sName);
    const auto isSeparator = [](wchar_t c) { return c == L'\\' || c == L'/'; };
    const bool bDrive = sName.size() > 1 && sName[1] == L':';
    const bool bRooted = isSeparator(sName[0]);
    if (bDrive || (bRooted && sName.size() > 1 && isSeparator(sName[1])))
        return FullPath(sName);
    if (bRooted && sFolder[1] == L':') // of the folder's drive
        return FullPath(sFolder.substr(0, 2) + sName);
    return FullPath(sFolder + L"\\" + sName);
}

PathKind KindOf(const std::wstring& sPath)
{
    const DWORD lAttributes = ::GetFileAttributesW(NativeOf(sPath).c_str());
    if (lAttributes != INVALID_FILE_ATTRIBUTES)
        return (lAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::Folder : PathKind::File;
    const DWORD lError = ::GetLastError();
    const bool bUnknown = lError == ERROR_ACCESS_DENIED || lError == ERROR_SHARING_VIOLATION;
    return bUnknown ? PathKind::Unknown : PathKind::None;
}

std::optional<std::vector<Entry>> Entries(const std::wstring& sFolder)
{
    const std::wstring sStart = IsRoot(sFolder) ? sFolder : sFolder + L"\\";
    WIN32_FIND_DATAW found{};
    const HANDLE hSearch = ::FindFirstFileW((LongForm(sStart) + L"*").c_str(), &found);
    if (hSearch == INVALID_HANDLE_VALUE) // the root of an empty drive has not even "."
        return ::GetLastError() == ERROR_FILE_NOT_FOUND ? std::optional(std::vector<Entry>()) : std::nullopt;
    std::vector<Entry> colEntries;
    do
    {
        const std::wstring_view sName = found.cFileName;
        if (sName != L"." && sName != L"..")
            colEntries.push_back({sStart + found.cFileName,
                                  (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, IsLink(found)});
    } while (::FindNextFileW(hSearch, &found));
    const bool bWhole = ::GetLastError() == ERROR_NO_MORE_FILES;
    ::FindClose(hSearch);
    return bWhole ? std::optional(std::move(colEntries)) : std::nullopt;
}

std::optional<Stamp> StampOf(const std::wstring& sPath)
{
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!::GetFileAttributesExW(NativeOf(sPath).c_str(), GetFileExInfoStandard, &found))
        return std::nullopt;
    return Stamp{MillisecondsOf(found.ftLastWriteTime),
                 static_cast<std::int64_t>(std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow)};
}

bool Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    return ::MoveFileExW(NativeOf(sFrom).c_str(), NativeOf(sTo).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

bool Remove(const std::wstring& sPath) { return ::DeleteFileW(NativeOf(sPath).c_str()) != 0; }

OpenFile::OpenFile(const std::wstring& sPath)
    : m_handle(reinterpret_cast<std::intptr_t>(::CreateFileW(
          NativeOf(sPath).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
          nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)))
{
}

OpenFile::~OpenFile()
{
    if (IsOpen())
        ::CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

bool OpenFile::IsOpen() const noexcept { return reinterpret_cast<HANDLE>(m_handle) != INVALID_HANDLE_VALUE; }

std::optional<std::int64_t> OpenFile::Size() const
{
    LARGE_INTEGER size{};
    return ::GetFileSizeEx(reinterpret_cast<HANDLE>(m_handle), &size)
               ? std::optional<std::int64_t>(size.QuadPart)
               : std::nullopt;
}

bool OpenFile::Read(std::string& bytes) const
{
    constexpr std::size_t block = 0x1000000;
    for (std::size_t done = 0; done < bytes.size();)
    {
        DWORD lRead = 0;
        const auto lWanted = static_cast<DWORD>(std::min(bytes.size() - done, block));
        if (!::ReadFile(reinterpret_cast<HANDLE>(m_handle), bytes.data() + done, lWanted, &lRead, nullptr) ||
            lRead == 0)
            return false;
        done += lRead;
    }
    return true;
}

} // namespace ravlo::disk
#endif

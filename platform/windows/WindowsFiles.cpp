// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsFiles.h"

#include "ports/RuntimeError.h"

#include <algorithm>
#include <windows.h>

namespace ravlo
{

namespace
{

// The numbers a host's own file statements give.
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

[[noreturn]] void FailWith(DWORD lError) { throw RuntimeError(ErrorNumberOf(lError)); }
[[noreturn]] void Fail() { FailWith(::GetLastError()); }

bool StartsWith(const std::wstring& sText, std::wstring_view sStart)
{
    return sText.compare(0, sStart.size(), sStart) == 0;
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

// The path as the system takes it, however long. Throws 52 for what names no file.
std::wstring NativePathOf(const std::wstring& sPath)
{
    if (sPath.empty() || sPath.find(L'\0') != std::wstring::npos)
        throw RuntimeError(error::BadFileName);
    const std::wstring sFull = FullPathOf(sPath);
    const bool bLongForm = StartsWith(sFull, L"\\\\?\\"); // a host may hand one in
    const std::size_t lRoot = bLongForm ? 4 : 0;
    if (StartsWith(sFull, L"\\\\.\\") || sFull.find(L':', lRoot + 2) != std::wstring::npos ||
        sFull.find_first_of(L"*?<>|\"", lRoot) != std::wstring::npos)
        throw RuntimeError(error::BadFileName);
    constexpr std::size_t lClassicLimit = 240; // 260, less what a folder must leave room for
    if (bLongForm || sFull.size() < lClassicLimit)
        return sFull;
    if (StartsWith(sFull, L"\\\\"))
        return L"\\\\?\\UNC\\" + sFull.substr(2);
    return L"\\\\?\\" + sFull;
}

DWORD AttributesOf(const std::wstring& sPath)
{
    try
    {
        return ::GetFileAttributesW(NativePathOf(sPath).c_str());
    }
    catch (const RuntimeError&)
    {
        return INVALID_FILE_ATTRIBUTES; // what can be no name is not there
    }
}

bool IsFolder(DWORD lAttributes)
{
    return lAttributes != INVALID_FILE_ATTRIBUTES && (lAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// An open file, closed at the end of its life.
class OpenFile
{
public:
    OpenFile(const std::wstring& sPath, DWORD lAccess, DWORD lSharing, DWORD lDisposition)
        : m_hFile(::CreateFileW(NativePathOf(sPath).c_str(), lAccess, lSharing, nullptr, lDisposition,
                                FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        if (m_hFile == INVALID_HANDLE_VALUE)
            Fail();
    }
    ~OpenFile()
    {
        if (m_hFile != INVALID_HANDLE_VALUE)
            ::CloseHandle(m_hFile);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    LONGLONG Size()
    {
        LARGE_INTEGER lSize{};
        if (!::GetFileSizeEx(m_hFile, &lSize))
            Fail();
        return lSize.QuadPart;
    }

    std::string ReadToEnd()
    {
        std::string bytes;
        bytes.reserve(static_cast<std::size_t>(Size()));
        std::string sBuffer(std::min<std::size_t>(bytes.capacity() + 1, lBlock), '\0');
        for (;;)
        {
            DWORD lRead = 0;
            if (!::ReadFile(m_hFile, sBuffer.data(), static_cast<DWORD>(sBuffer.size()), &lRead, nullptr))
                Fail();
            if (lRead == 0)
                return bytes;
            bytes.append(sBuffer, 0, lRead);
        }
    }

    void WriteAtEnd(std::string_view bytes)
    {
        while (!bytes.empty())
        {
            OVERLAPPED end{};
            end.Offset = end.OffsetHigh = 0xFFFFFFFF; // the end of the file, whoever writes beside
            DWORD lWritten = 0;
            const auto lWanted = static_cast<DWORD>(std::min(bytes.size(), lBlock));
            if (!::WriteFile(m_hFile, bytes.data(), lWanted, &lWritten, &end))
                Fail();
            if (lWritten == 0)
                throw RuntimeError(error::DiskFull);
            bytes.remove_prefix(lWritten);
        }
    }

    // False when it could not be done.
    bool CutOffAt(LONGLONG lSize)
    {
        LARGE_INTEGER lWhere{};
        lWhere.QuadPart = lSize;
        return ::SetFilePointerEx(m_hFile, lWhere, nullptr, FILE_BEGIN) && ::SetEndOfFile(m_hFile);
    }

    void Flush()
    {
        if (!::FlushFileBuffers(m_hFile))
            Fail();
    }

private:
    static constexpr std::size_t lBlock = 0x1000000;
    HANDLE m_hFile;
};

bool IsPassing(DWORD lError)
{
    return lError == ERROR_SHARING_VIOLATION || lError == ERROR_LOCK_VIOLATION ||
           lError == ERROR_ACCESS_DENIED;
}

} // namespace

bool WindowsFiles::FileExists(const std::wstring& sPath) const
{
    const DWORD lAttributes = AttributesOf(sPath);
    return lAttributes != INVALID_FILE_ATTRIBUTES && !IsFolder(lAttributes);
}

bool WindowsFiles::FolderExists(const std::wstring& sPath) const { return IsFolder(AttributesOf(sPath)); }

void WindowsFiles::CreateFolder(const std::wstring& sPath)
{
    if (!::CreateDirectoryW(NativePathOf(sPath).c_str(), nullptr))
        Fail();
}

std::string WindowsFiles::ReadAll(const std::wstring& sPath) const
{
    return OpenFile(sPath, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    OPEN_EXISTING)
        .ReadToEnd();
}

void WindowsFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    // Opened and emptied, not created anew: that would fail on a hidden file.
    OpenFile cFile(sPath, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
    if (!cFile.CutOffAt(0))
        Fail();
    cFile.WriteAtEnd(bytes);
    cFile.Flush();
}

void WindowsFiles::Append(const std::wstring& sPath, std::string_view bytes)
{
    OpenFile cFile(sPath, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    const LONGLONG lSize = cFile.Size();
    try
    {
        cFile.WriteAtEnd(bytes);
    }
    catch (...)
    {
        cFile.CutOffAt(lSize); // if that fails too, there is nothing left to do
        throw;
    }
}

void WindowsFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    const std::wstring sOld = NativePathOf(sFrom);
    const std::wstring sNew = NativePathOf(sTo);
    if (FolderExists(sFrom) || FolderExists(sTo))
        throw RuntimeError(error::PathFileAccess);
    constexpr DWORD lLongestPause = 160; // milliseconds; the pauses double from 10 on
    for (DWORD lPause = 10;; lPause *= 2)
    {
        if (::MoveFileExW(sOld.c_str(), sNew.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return;
        const DWORD lError = ::GetLastError();
        if (!IsPassing(lError) || lPause > lLongestPause)
            FailWith(lError);
        ::Sleep(lPause);
    }
}

void WindowsFiles::Delete(const std::wstring& sPath)
{
    const std::wstring sNative = NativePathOf(sPath);
    if (::DeleteFileW(sNative.c_str()))
        return;
    const DWORD lError = ::GetLastError();
    FailWith(FolderExists(sPath) ? ERROR_ACCESS_DENIED : lError);
}

std::wstring WindowsFiles::LibraryFolder() const
{
    HMODULE hModule = nullptr;
    static const int lHere = 0; // any address inside the module
    if (!::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                  GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              reinterpret_cast<LPCWSTR>(&lHere), &hModule))
        Fail();
    std::wstring sPath(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD lLength = ::GetModuleFileNameW(hModule, sPath.data(), static_cast<DWORD>(sPath.size()));
        if (lLength == 0)
            Fail();
        if (lLength < sPath.size())
        {
            sPath.resize(lLength);
            return sPath.substr(0, sPath.rfind(L'\\'));
        }
        sPath.resize(sPath.size() * 2);
    }
}

} // namespace ravlo

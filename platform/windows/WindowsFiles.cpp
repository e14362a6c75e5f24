// SPDX-License-Identifier: MIT
#include "platform/windows/WindowsFiles.h"

#include "base/RuntimeError.h"
#include "platform/common/Retries.h"
#include "platform/windows/WindowsPaths.h"

#include <algorithm>
#include <cstddef>

namespace ravlo
{

namespace
{

[[noreturn]] void FailWith(DWORD lError) { throw RuntimeError(ErrorNumberOf(lError)); }
[[noreturn]] void Fail() { FailWith(::GetLastError()); }

bool IsInUse(DWORD lError) { return lError == ERROR_SHARING_VIOLATION || lError == ERROR_LOCK_VIOLATION; }

// An open file, closed at the end of its life.
class OpenFile
{
public:
    OpenFile(const std::wstring& sPath, DWORD lAccess, DWORD lSharing, DWORD lDisposition,
             Patience ePatience = Patience::None)
    {
        const std::wstring sNative = NativePathOf(sPath);
        DWORD lError = 0;
        TryPatiently(
            ePatience,
            [&] {
            m_hFile = ::CreateFileW(sNative.c_str(), lAccess, lSharing, nullptr, lDisposition,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
            lError = m_hFile == INVALID_HANDLE_VALUE ? ::GetLastError() : 0;
            return !IsInUse(lError);
            },
            ::Sleep);
        if (m_hFile == INVALID_HANDLE_VALUE)
            FailWith(lError);
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
        std::string sBuffer(std::min<std::size_t>(bytes.capacity() + 1, block), '\0');
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
            end.Offset = end.OffsetHigh = 0xFFFFFFFF; // the end of the file, even while others write
            DWORD lWritten = 0;
            const auto lWanted = static_cast<DWORD>(std::min(bytes.size(), block));
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
    static constexpr std::size_t block = 0x1000000;
    HANDLE m_hFile = INVALID_HANDLE_VALUE;
};

class WindowsHeldFile final : public HeldFile
{
public:
    explicit WindowsHeldFile(const std::wstring& sPath)
        : m_cFile(sPath, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS)
    {
    }

private:
    OpenFile m_cFile;
};

std::wstring PatternIn(const std::wstring& sFolder)
{
    const std::wstring sNative = NativePathOf(sFolder);
    return sNative + (sNative.back() == L'\\' ? L"*" : L"\\*");
}

// A search in a folder, ended at the end of its life.
class FolderSearch
{
public:
    FolderSearch(const std::wstring& sFolder, WIN32_FIND_DATAW& found)
        : m_hSearch(::FindFirstFileW(PatternIn(sFolder).c_str(), &found))
    {
        if (m_hSearch == INVALID_HANDLE_VALUE)
            Fail();
    }
    ~FolderSearch() { ::FindClose(m_hSearch); }
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;

    bool Next(WIN32_FIND_DATAW& found)
    {
        if (::FindNextFileW(m_hSearch, &found))
            return true;
        const DWORD lError = ::GetLastError();
        if (lError != ERROR_NO_MORE_FILES)
            FailWith(lError);
        return false;
    }

private:
    HANDLE m_hSearch;
};

// In the file system's units of 100 ns.
std::int64_t TicksOf(const FILETIME& time)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 |
                                     time.dwLowDateTime);
}

std::chrono::seconds AgeOf(const WIN32_FIND_DATAW& found)
{
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    return std::chrono::seconds((TicksOf(now) - TicksOf(found.ftLastWriteTime)) / 10'000'000);
}

// Copies the access rights of another file. Best effort: a network share or a plain disk may have none.
void CopyPermissions(const std::wstring& sFrom, const std::wstring& sTo)
{
    DWORD lSize = 0;
    ::GetFileSecurityW(sFrom.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &lSize);
    std::vector<std::byte> descriptor(lSize);
    if (lSize == 0 ||
        !::GetFileSecurityW(sFrom.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), lSize, &lSize))
        return;
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD lRevision = 0;
    if (::GetSecurityDescriptorControl(descriptor.data(), &control, &lRevision) &&
        (control & SE_DACL_AUTO_INHERITED) != 0) // inherited rights stay inherited
        ::SetSecurityDescriptorControl(descriptor.data(), SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
    ::SetFileSecurityW(sTo.c_str(), DACL_SECURITY_INFORMATION, descriptor.data());
}

// Gives a file the rights and attributes of the one that it will replace.
void CopyLooks(const std::wstring& sFrom, const std::wstring& sTo)
{
    const DWORD lFrom = ::GetFileAttributesW(sFrom.c_str());
    if (lFrom == INVALID_FILE_ATTRIBUTES)
        return;
    CopyPermissions(sFrom, sTo);
    // Not "read only": such a file is never replaced, and the temporary one could not be deleted then.
    constexpr DWORD lKept =
        FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD lKeep = lFrom & lKept;
    if (lKeep != 0)
        ::SetFileAttributesW(sTo.c_str(),
                             lKeep | FILE_ATTRIBUTE_ARCHIVE); // "archive": changed since a backup
}

bool IsReadOnly(const std::wstring& sNative)
{
    const DWORD lAttributes = ::GetFileAttributesW(sNative.c_str());
    return lAttributes != INVALID_FILE_ATTRIBUTES && (lAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// A virus scanner with the file open makes a rename fail with "access denied", too.
bool IsPassing(DWORD lError) { return IsInUse(lError) || lError == ERROR_ACCESS_DENIED; }

} // namespace

Presence WindowsFiles::PresenceOf(const std::wstring& sPath) const
{
    return PresenceOfKind(KindOf(sPath), PathKind::File);
}

Presence WindowsFiles::PresenceOfFolder(const std::wstring& sPath) const
{
    return PresenceOfKind(KindOf(sPath), PathKind::Folder);
}

void WindowsFiles::CreateFolder(const std::wstring& sPath)
{
    if (!::CreateDirectoryW(NativePathOf(sPath).c_str(), nullptr))
        Fail();
}

std::vector<FileEntry> WindowsFiles::FilesIn(const std::wstring& sFolder) const
{
    std::vector<FileEntry> colFiles;
    WIN32_FIND_DATAW found{};
    FolderSearch cSearch(sFolder, found);
    do
        if (KindOfAttributes(found.dwFileAttributes) == PathKind::File)
            colFiles.push_back({found.cFileName, AgeOf(found)});
    while (cSearch.Next(found));
    return colFiles;
}

std::optional<FileStamp> WindowsFiles::StampOf(const std::wstring& sPath) const
{
    const Presence ePresence = PresenceOf(sPath);
    if (ePresence == Presence::Absent)
        return std::nullopt;
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (ePresence == Presence::Unknown ||
        !::GetFileAttributesExW(NativePathOf(sPath).c_str(), GetFileExInfoStandard, &found))
        throw RuntimeError(error::PathFileAccess);
    return FileStamp{TicksOf(found.ftLastWriteTime),
                     TicksOf(FILETIME{found.nFileSizeLow, found.nFileSizeHigh})};
}

std::string WindowsFiles::ReadAll(const std::wstring& sPath, Patience ePatience) const
{
    return OpenFile(sPath, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    OPEN_EXISTING, ePatience)
        .ReadToEnd();
}

void WindowsFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    // Opens and empties the file instead of creating it again, which would fail for a hidden file.
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
        cFile.CutOffAt(lSize); // if that fails too, nothing else can be done
        throw;
    }
}

void WindowsFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience)
{
    const std::wstring sOld = NativePathOf(sFrom);
    const std::wstring sNew = NativePathOf(sTo);
    if (KindOfNative(sOld) == PathKind::Folder || KindOfNative(sNew) == PathKind::Folder)
        throw RuntimeError(error::PathFileAccess);
    // Waiting would not help.
    if (IsReadOnly(sNew))
        throw RuntimeError(error::PathFileAccess);
    // Not with the system's ReplaceFile: killed in the middle it leaves no file of the name.
    CopyLooks(sNew, sOld);
    DWORD lError = 0;
    TryPatiently(
        ePatience,
        [&] {
        constexpr DWORD lHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        lError = ::MoveFileExW(sOld.c_str(), sNew.c_str(), lHow) ? 0 : ::GetLastError();
        return !IsPassing(lError);
        },
        ::Sleep);
    if (lError != 0)
        FailWith(lError);
}

void WindowsFiles::Delete(const std::wstring& sPath)
{
    const std::wstring sNative = NativePathOf(sPath);
    if (::DeleteFileW(sNative.c_str()))
        return;
    const DWORD lError = ::GetLastError();
    FailWith(KindOfNative(sNative) == PathKind::Folder ? ERROR_ACCESS_DENIED : lError);
}

std::unique_ptr<HeldFile> WindowsFiles::HoldOpen(const std::wstring& sPath)
{
    try
    {
        return std::make_unique<WindowsHeldFile>(sPath);
    }
    catch (const RuntimeError& cError)
    {
        if (cError.Number() == error::PermissionDenied) // what a file in use raises
            return nullptr;
        throw;
    }
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

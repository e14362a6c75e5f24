// SPDX-License-Identifier: MIT
#include "platform/posix/PosixFiles.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"
#include "platform/common/PathKind.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlo
{

namespace
{

std::string FolderOf(const std::string& sNative)
{
    const std::size_t separator = sNative.find_last_of('/');
    if (separator == std::string::npos)
        return ".";
    return sNative.substr(0, separator == 0 ? 1 : separator);
}

// Whether the last existing component of the path is a link to something that does not exist, such as an
// unmounted drive.
bool IsLinkBroken(std::string sNative)
{
    for (;;)
    {
        struct stat status;
        if (::lstat(sNative.c_str(), &status) == 0)
            return S_ISLNK(status.st_mode);
        const std::string sFolder = FolderOf(sNative);
        if ((errno != ENOENT && errno != ENOTDIR) || sFolder == sNative)
            return false;
        sNative = sFolder;
    }
}

PathKind KindOf(const std::string& sNative)
{
    struct stat status;
    if (::stat(sNative.c_str(), &status) == 0)
        return S_ISDIR(status.st_mode) ? PathKind::Folder : PathKind::File;
    switch (errno)
    {
    case ENOENT:
        return IsLinkBroken(sNative) ? PathKind::Unknown : PathKind::None;
    case ENOTDIR:
    case ENAMETOOLONG:
        return PathKind::None;
    default:
        return PathKind::Unknown;
    }
}

Presence PresenceAs(PathKind eWanted, const std::wstring& sPath)
{
    std::string sNative;
    try
    {
        sNative = NativePathOf(sPath);
    }
    catch (const RuntimeError&)
    {
        return Presence::Absent; // a path that cannot be expressed names nothing
    }
    return PresenceOfKind(KindOf(sNative), eWanted);
}

std::int32_t ErrorNumberOf(int lErrno, const std::string& sNative)
{
    constexpr std::int32_t lTooManyFiles = 67;
    switch (lErrno)
    {
    case ENOENT:
        return KindOf(FolderOf(sNative)) == PathKind::Folder ? error::FileNotFound : error::PathNotFound;
    case ENOTDIR:
        return error::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return error::PathFileAccess;
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:
        return error::PermissionDenied;
    case EEXIST:
        return error::FileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return error::DiskFull;
    case EMFILE:
    case ENFILE:
        return lTooManyFiles;
    case ELOOP:
    case EINVAL:
        return error::BadFileName;
    default:
        return error::DeviceIo;
    }
}

[[noreturn]] void FailWith(int lErrno, const std::string& sNative)
{
    if (lErrno == ENAMETOOLONG)
        throw RuntimeError(error::BadFileName, L"Bad file name: longer than 255 bytes in a name, or than " +
                                                   std::to_wstring(PATH_MAX - 1) + L" in the whole path");
    throw RuntimeError(ErrorNumberOf(lErrno, sNative));
}

[[noreturn]] void Fail(const std::string& sNative) { FailWith(errno, sNative); }

// An open file, closed at the end of its life.
class Descriptor
{
public:
    Descriptor(const std::string& sNative, int lFlags)
        : m_sNative(sNative), m_lDescriptor(::open(sNative.c_str(), lFlags | O_CLOEXEC, 0666))
    {
        if (m_lDescriptor < 0)
            Fail(m_sNative);
    }
    ~Descriptor()
    {
        if (m_lDescriptor >= 0)
            ::close(m_lDescriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    std::string ReadToEnd()
    {
        struct stat status;
        std::string bytes;
        if (::fstat(m_lDescriptor, &status) == 0 && status.st_size > 0)
            bytes.reserve(static_cast<std::size_t>(status.st_size) + 1);
        char aBuffer[65536];
        for (;;)
        {
            const ssize_t lRead = ::read(m_lDescriptor, aBuffer, sizeof aBuffer);
            if (lRead > 0)
                bytes.append(aBuffer, static_cast<std::size_t>(lRead));
            else if (lRead == 0)
                return bytes;
            else if (errno != EINTR)
                Fail(m_sNative);
        }
    }

    void Write(std::string_view bytes)
    {
        while (!bytes.empty())
        {
            const ssize_t lWritten = ::write(m_lDescriptor, bytes.data(), bytes.size());
            if (lWritten >= 0)
                bytes.remove_prefix(static_cast<std::size_t>(lWritten));
            else if (errno != EINTR)
                Fail(m_sNative);
        }
    }

    off_t Size() const { return ::lseek(m_lDescriptor, 0, SEEK_END); }
    // Best effort, on the way out of a failure.
    void CutOffAt(off_t lSize) const
    {
        if (lSize >= 0 && ::ftruncate(m_lDescriptor, lSize) != 0)
            return;
    }

    // Locks the file until this ends. Returns false when somebody else has locked it.
    bool Lock()
    {
        if (::flock(m_lDescriptor, LOCK_EX | LOCK_NB) == 0)
            return true;
        if (errno != EWOULDBLOCK)
            Fail(m_sNative);
        return false;
    }

    void Flush()
    {
        if (::fsync(m_lDescriptor) != 0)
            Fail(m_sNative);
    }

    // Some file systems report a failed write only here.
    void Close()
    {
        const int lDescriptor = m_lDescriptor;
        m_lDescriptor = -1;
        if (::close(lDescriptor) != 0)
            Fail(m_sNative);
    }

private:
    std::string m_sNative;
    int m_lDescriptor;
};

class PosixHeldFile final : public HeldFile
{
public:
    explicit PosixHeldFile(const std::string& sNative) : m_cFile(sNative, O_RDWR | O_CREAT) {}
    bool Lock() { return m_cFile.Lock(); }

private:
    Descriptor m_cFile;
};

// Gives a file the owner and mode of the one that it will replace. Best effort: only the superuser can change
// an owner.
void CopyPermissions(const std::string& sFrom, const std::string& sTo)
{
    struct stat from;
    struct stat to;
    if (::stat(sFrom.c_str(), &from) != 0 || ::stat(sTo.c_str(), &to) != 0)
        return;
    const bool bOtherOwner = from.st_uid != to.st_uid || from.st_gid != to.st_gid;
    if (bOtherOwner && ::chown(sTo.c_str(), from.st_uid, from.st_gid) != 0)
        return; // with another owner the mode could grant more than before
    if (from.st_mode != to.st_mode && ::chmod(sTo.c_str(), from.st_mode & 07777) != 0)
        return;
}

// Flushes a new name to the disk. A failure is no error: the rename itself has happened, and not every file
// system can flush a folder.
void FlushFolder(const std::string& sNative)
{
    const int lDescriptor = ::open(sNative.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lDescriptor < 0)
        return;
    ::fsync(lDescriptor);
    ::close(lDescriptor);
}

bool IsCharacter(std::uint32_t lCode) { return lCode <= 0x10FFFF && (lCode < 0xD800 || lCode > 0xDFFF); }

} // namespace

Presence PosixFiles::PresenceOf(const std::wstring& sPath) const { return PresenceAs(PathKind::File, sPath); }

Presence PosixFiles::PresenceOfFolder(const std::wstring& sPath) const
{
    return PresenceAs(PathKind::Folder, sPath);
}

void PosixFiles::CreateFolder(const std::wstring& sPath)
{
    const std::string sNative = NativePathOf(sPath);
    if (::mkdir(sNative.c_str(), 0777) == 0)
        return;
    if (errno == ENOENT)
        throw RuntimeError(
            error::PathNotFound); // "dir/" seems to lie in itself, so the folder is not looked at
    Fail(sNative);
}

std::vector<FileEntry> PosixFiles::FilesIn(const std::wstring& sFolder) const
{
    const std::string sNative = NativePathOf(sFolder);
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(::opendir(sNative.c_str()), &::closedir);
    if (!pFolder && errno == ENOENT)
        throw RuntimeError(
            error::PathNotFound); // that it is the last component that is missing does not matter
    if (!pFolder)
        Fail(sNative);
    std::vector<FileEntry> colFiles;
    const std::time_t now = std::time(nullptr);
    for (errno = 0; const dirent* pEntry = ::readdir(pFolder.get()); errno = 0)
    {
        struct stat status;
        if (::stat((sNative + "/" + pEntry->d_name).c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
            colFiles.push_back({HostPathOf(pEntry->d_name), std::chrono::seconds(now - status.st_mtime)});
    }
    if (errno != 0)
        Fail(sNative);
    return colFiles;
}

std::optional<FileStamp> PosixFiles::StampOf(const std::wstring& sPath) const
{
    const Presence ePresence = PresenceOf(sPath);
    if (ePresence == Presence::Absent)
        return std::nullopt;
    struct stat status;
    if (ePresence == Presence::Unknown || ::stat(NativePathOf(sPath).c_str(), &status) != 0)
        throw RuntimeError(error::PathFileAccess);
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return FileStamp{status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec, status.st_size};
}

std::string PosixFiles::ReadAll(const std::wstring& sPath, Patience) const
{
    return Descriptor(NativePathOf(sPath), O_RDONLY).ReadToEnd();
}

void PosixFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    Descriptor cFile(NativePathOf(sPath), O_WRONLY | O_CREAT | O_TRUNC);
    cFile.Write(bytes);
    cFile.Flush();
    cFile.Close();
}

void PosixFiles::Append(const std::wstring& sPath, std::string_view bytes)
{
    Descriptor cFile(NativePathOf(sPath), O_WRONLY | O_CREAT | O_APPEND);
    const off_t lSize = cFile.Size();
    try
    {
        cFile.Write(bytes);
    }
    catch (...)
    {
        cFile.CutOffAt(lSize);
        throw;
    }
    cFile.Close();
}

void PosixFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience)
{
    const std::string sOld = NativePathOf(sFrom);
    const std::string sNew = NativePathOf(sTo);
    if (KindOf(sOld) == PathKind::Folder || KindOf(sNew) == PathKind::Folder)
        throw RuntimeError(error::PathFileAccess);
    CopyPermissions(sNew, sOld);
    if (::rename(sOld.c_str(), sNew.c_str()) != 0)
    {
        const int lErrno = errno;
        FailWith(lErrno, KindOf(sOld) == PathKind::None ? sOld : sNew);
    }
    FlushFolder(FolderOf(sNew));
}

void PosixFiles::Delete(const std::wstring& sPath)
{
    const std::string sNative = NativePathOf(sPath);
    if (::unlink(sNative.c_str()) != 0)
        Fail(sNative);
}

std::unique_ptr<HeldFile> PosixFiles::HoldOpen(const std::wstring& sPath)
{
    auto cHeld = std::make_unique<PosixHeldFile>(NativePathOf(sPath));
    if (!cHeld->Lock())
        return nullptr;
    return cHeld;
}

std::wstring PosixFiles::LibraryFolder() const
{
    char aPath[PATH_MAX];
    const ssize_t lLength = ::readlink("/proc/self/exe", aPath, sizeof aPath);
    if (lLength < 0)
        Fail("/proc/self/exe");
    return HostPathOf(FolderOf(std::string(aPath, static_cast<std::size_t>(lLength))));
}

std::string NativePathOf(const std::wstring& sPath)
{
    if (sPath.empty() || std::any_of(sPath.begin(), sPath.end(), [](wchar_t c) {
            return c == 0 || !IsCharacter(static_cast<std::uint32_t>(c));
        }))
        throw RuntimeError(error::BadFileName);
    std::string bytes = Utf8Of(sPath);
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return bytes;
}

std::wstring HostPathOf(std::string_view bytes)
{
    std::wstring sPath = TextFromStore(bytes);
    std::replace(sPath.begin(), sPath.end(), L'/', L'\\');
    return sPath;
}

} // namespace ravlo

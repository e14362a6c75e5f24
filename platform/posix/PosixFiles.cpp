// SPDX-License-Identifier: MIT
#include "platform/posix/PosixFiles.h"

#include "platform/posix/PosixText.h"
#include "ports/RuntimeError.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlo
{

namespace
{

enum class Kind
{
    None,
    File,
    Folder,
};

Kind KindOf(const std::string& sNative)
{
    struct stat status;
    if (::stat(sNative.c_str(), &status) != 0)
        return Kind::None;
    return S_ISDIR(status.st_mode) ? Kind::Folder : Kind::File;
}

Kind KindOf(const std::wstring& sPath)
{
    try
    {
        return KindOf(NativePathOf(sPath));
    }
    catch (const RuntimeError&)
    {
        return Kind::None; // a path that cannot be expressed names nothing
    }
}

std::string FolderOf(const std::string& sNative)
{
    const std::size_t lSeparator = sNative.find_last_of('/');
    if (lSeparator == std::string::npos)
        return ".";
    return sNative.substr(0, lSeparator == 0 ? 1 : lSeparator);
}

std::int32_t ErrorNumberOf(int lErrno, const std::string& sNative)
{
    constexpr std::int32_t lTooManyFiles = 67;
    switch (lErrno)
    {
    case ENOENT:
        return KindOf(FolderOf(sNative)) == Kind::Folder ? error::FileNotFound : error::PathNotFound;
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
    case ENAMETOOLONG:
    case ELOOP:
    case EINVAL:
        return error::BadFileName;
    default:
        return error::DeviceIo;
    }
}

[[noreturn]] void Fail(const std::string& sNative) { throw RuntimeError(ErrorNumberOf(errno, sNative)); }

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

    off_t Size() { return ::lseek(m_lDescriptor, 0, SEEK_END); }
    // Best effort, on the way out of a failure.
    void CutOffAt(off_t lSize)
    {
        if (lSize >= 0 && ::ftruncate(m_lDescriptor, lSize) != 0)
            return;
    }

    void Flush()
    {
        if (::fsync(m_lDescriptor) != 0)
            Fail(m_sNative);
    }

    // Some file systems tell only now that a write failed.
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

// Brings a new name to the disk. Failing is no error: the rename itself has happened, and not every file
// system can flush a folder.
void FlushFolder(const std::string& sNative)
{
    const int lDescriptor = ::open(sNative.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lDescriptor < 0)
        return;
    ::fsync(lDescriptor);
    ::close(lDescriptor);
}

} // namespace

bool PosixFiles::FileExists(const std::wstring& sPath) const { return KindOf(sPath) == Kind::File; }

bool PosixFiles::FolderExists(const std::wstring& sPath) const { return KindOf(sPath) == Kind::Folder; }

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

std::string PosixFiles::ReadAll(const std::wstring& sPath) const
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

void PosixFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    const std::string sOld = NativePathOf(sFrom);
    const std::string sNew = NativePathOf(sTo);
    if (KindOf(sOld) == Kind::Folder || KindOf(sNew) == Kind::Folder)
        throw RuntimeError(error::PathFileAccess);
    if (::rename(sOld.c_str(), sNew.c_str()) != 0)
        throw RuntimeError(ErrorNumberOf(errno, KindOf(sOld) == Kind::None ? sOld : sNew));
    FlushFolder(FolderOf(sNew));
}

void PosixFiles::Delete(const std::wstring& sPath)
{
    const std::string sNative = NativePathOf(sPath);
    if (::unlink(sNative.c_str()) != 0)
        Fail(sNative);
}

std::wstring PosixFiles::LibraryFolder() const
{
    char aPath[PATH_MAX];
    const ssize_t lLength = ::readlink("/proc/self/exe", aPath, sizeof aPath);
    if (lLength < 0)
        Fail("/proc/self/exe");
    return HostPathOf(FolderOf(std::string(aPath, static_cast<std::size_t>(lLength))));
}

} // namespace ravlo

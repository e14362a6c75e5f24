// SPDX-License-Identifier: MIT
#ifndef _WIN32
#include "base/Utf8.h"
#include "platform/disk/Disk.h"
#include "platform/disk/System.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlo::disk
{

namespace
{

// Without "", "." and "..".
std::wstring Normal(const std::wstring& sWhole)
{
    std::wstring sNormal;
    for (std::size_t start = 0; start < sWhole.size();)
    {
        const std::size_t end = std::min(sWhole.find(L'/', start), sWhole.size());
        const std::wstring sName = sWhole.substr(start, end - start);
        if (sName == L"..")
            sNormal.resize(sNormal.empty() ? 0 : sNormal.rfind(L'/'));
        else if (!sName.empty() && sName != L".")
            sNormal += L"/" + sName;
        start = end + 1;
    }
    return sNormal.empty() ? L"/" : sNormal;
}

std::wstring WorkingFolder()
{
    const std::unique_ptr<char, decltype(&std::free)> pFolder(::getcwd(nullptr, 0), &std::free);
    return TextFromStore(pFolder ? pFolder.get() : "/");
}

} // namespace

std::wstring FullPath(const std::wstring& sPath)
{
    RequireName(sPath);
    return Normal(sPath.front() == L'/' ? sPath : WorkingFolder() + L"/" + sPath);
}

// A name from Windows may be read here.
std::wstring PathIn(const std::wstring& sFolder, const std::wstring& sName)
{
    RequireName(sName);
    std::wstring sPath = sName;
    std::replace(sPath.begin(), sPath.end(), L'\\', L'/');
    return Normal(sPath.front() == L'/' ? sPath : sFolder + L"/" + sPath);
}

PathKind KindOf(const std::wstring& sPath)
{
    struct stat status;
    if (::stat(Utf8Of(sPath).c_str(), &status) == 0)
        return S_ISDIR(status.st_mode) ? PathKind::Folder : PathKind::File;
    return errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG ? PathKind::None : PathKind::Unknown;
}

std::optional<std::vector<Entry>> Entries(const std::wstring& sFolder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(::opendir(Utf8Of(sFolder).c_str()), &::closedir);
    if (!pFolder)
        return std::nullopt;
    std::vector<Entry> colEntries;
    for (errno = 0; const dirent* pEntry = ::readdir(pFolder.get()); errno = 0)
    {
        const std::wstring sName = TextFromStore(pEntry->d_name);
        if (sName == L"." || sName == L"..")
            continue;
        std::wstring sPath = (sFolder == L"/" ? L"" : sFolder) + L"/" + sName;
        struct stat status;
        const bool bLink = ::lstat(Utf8Of(sPath).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
        const bool bFolder = KindOf(sPath) == PathKind::Folder;
        colEntries.push_back({std::move(sPath), bFolder, bLink});
    }
    return errno == 0 ? std::optional(std::move(colEntries)) : std::nullopt;
}

std::optional<Stamp> StampOf(const std::wstring& sPath)
{
    struct stat status;
    if (::stat(Utf8Of(sPath).c_str(), &status) != 0)
        return std::nullopt;
    return Stamp{status.st_mtim.tv_sec * std::int64_t{1000} + status.st_mtim.tv_nsec / 1'000'000,
                 status.st_size};
}

bool Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    return std::rename(Utf8Of(sFrom).c_str(), Utf8Of(sTo).c_str()) == 0;
}

bool Remove(const std::wstring& sPath) { return std::remove(Utf8Of(sPath).c_str()) == 0; }

OpenFile::OpenFile(const std::wstring& sPath) : m_handle(::open(Utf8Of(sPath).c_str(), O_RDONLY | O_CLOEXEC))
{
}
OpenFile::~OpenFile()
{
    if (IsOpen())
        ::close(static_cast<int>(m_handle));
}

bool OpenFile::IsOpen() const noexcept { return m_handle >= 0; }

std::optional<std::int64_t> OpenFile::Size() const
{
    struct stat status;
    return ::fstat(static_cast<int>(m_handle), &status) == 0 ? std::optional<std::int64_t>(status.st_size)
                                                             : std::nullopt;
}

bool OpenFile::Read(std::string& bytes) const
{
    std::size_t done = 0;
    while (done < bytes.size())
    {
        const ssize_t count = ::read(static_cast<int>(m_handle), bytes.data() + done, bytes.size() - done);
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        done += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace ravlo::disk
#endif

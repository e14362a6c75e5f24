// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryFiles.h"

#include "base/CaseFolding.h"
#include "platform/DeviceNames.h"
#include "platform/common/Retries.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::wstring Plain(const std::wstring& sPath)
{
    std::wstring sPlain = sPath;
    std::replace(sPlain.begin(), sPlain.end(), L'/', L'\\');
    while (!sPlain.empty() && sPlain.back() == L'\\')
        sPlain.pop_back();
    return sPlain;
}

std::wstring Folded(const std::wstring& sPath) { return FoldCase(Plain(sPath)); }

std::wstring FolderOf(const std::wstring& sPath)
{
    const std::wstring sPlain = Plain(sPath);
    const std::size_t separator = sPlain.rfind(L'\\');
    return separator == std::wstring::npos ? L"" : sPlain.substr(0, separator);
}

bool IsNameRefused(const std::wstring& sPath)
{
    const std::wstring sPlain = Plain(sPath);
    const std::wstring sName = sPlain.substr(sPlain.rfind(L'\\') + 1); // from the start when there is none
    return sName.empty() || IsDeviceName(sName) || std::any_of(sName.begin(), sName.end(), [](wchar_t c) {
               return c < L' ' || std::wstring_view(L"<>:\"|?*").find(c) != std::wstring_view::npos;
           });
}

// Folded paths: the folder itself and what lies below it.
bool LiesIn(const std::wstring& sPath, const std::wstring& sFolder)
{
    return sPath.starts_with(sFolder) && (sPath.size() == sFolder.size() || sPath[sFolder.size()] == L'\\');
}

} // namespace

// Removes its name from the set at the end, even after the files themselves are gone.
class MemoryFiles::Held final : public HeldFile
{
public:
    Held(std::shared_ptr<std::set<std::wstring>> held, std::wstring sFolded)
        : m_held(std::move(held)), m_sFolded(std::move(sFolded))
    {
        m_held->insert(m_sFolded);
    }
    ~Held() override { m_held->erase(m_sFolded); }

private:
    std::shared_ptr<std::set<std::wstring>> m_held;
    std::wstring m_sFolded;
};

MemoryFiles::MemoryFiles()
{
    MakeFolders(L"C:");
    SetLibraryFolder(L"C:\\Program Files\\Ravlo");
}

MemoryFiles::MemoryFiles(std::initializer_list<std::pair<std::wstring, std::string>> contents) : MemoryFiles()
{
    for (const auto& [sPath, bytes] : contents)
        Put(sPath, bytes);
}

Presence MemoryFiles::PresenceOf(const std::wstring& sPath) const
{
    if (AwayError(sPath) != 0)
        return Presence::Unknown;
    return IsFile(sPath) ? Presence::Present : Presence::Absent;
}

Presence MemoryFiles::PresenceOfFolder(const std::wstring& sPath) const
{
    if (AwayError(sPath) != 0)
        return Presence::Unknown;
    return IsFolder(sPath) ? Presence::Present : Presence::Absent;
}

bool MemoryFiles::IsFile(const std::wstring& sPath) const { return m_files.contains(Folded(sPath)); }

bool MemoryFiles::IsFolder(const std::wstring& sPath) const
{
    const std::wstring sFolded = Folded(sPath);
    return sFolded.empty() || m_folders.contains(sFolded);
}

void MemoryFiles::CreateFolder(const std::wstring& sPath)
{
    m_sOperations.push_back(L"CreateFolder " + sPath);
    RequireReachable(sPath);
    RequirePlaceFor(sPath);
    if (IsFile(sPath) || IsFolder(sPath))
        throw RuntimeError(error::FileAlreadyExists);
    RequireChangeable(FolderOf(sPath));
    m_folders.emplace(Folded(sPath), Plain(sPath));
}

std::vector<FileEntry> MemoryFiles::FilesIn(const std::wstring& sFolder) const
{
    RequireReachable(sFolder);
    if (!IsFolder(sFolder))
        throw RuntimeError(error::PathNotFound);
    std::vector<FileEntry> colFiles;
    for (const auto& [sFolded, file] : m_files)
        if (FolderOf(sFolded) == Folded(sFolder))
            colFiles.push_back({file.sPath.substr(file.sPath.rfind(L'\\') + 1), file.lAge});
    return colFiles;
}

std::optional<FileStamp> MemoryFiles::StampOf(const std::wstring& sPath) const
{
    RequireReachable(sPath);
    if (!IsFile(sPath))
        return std::nullopt;
    const File& file = Existing(sPath);
    return FileStamp{file.write, static_cast<std::int64_t>(file.bytes.size())};
}

std::string MemoryFiles::ReadAll(const std::wstring& sPath, Patience ePatience) const
{
    m_sOperations.push_back(L"ReadAll " + sPath);
    RequireReachable(sPath);
    RequireFree(sPath, ePatience);
    const File& file = Existing(sPath);
    if (const auto it = m_unreadable.find(Folded(sPath)); it != m_unreadable.end())
        throw RuntimeError(it->second);
    return file.bytes;
}

void MemoryFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    m_sOperations.push_back(L"WriteNew " + sPath);
    File& file = Writable(sPath);
    file.bytes = bytes;
    file.lAge = {};
    file.write = ++m_writes;
}

void MemoryFiles::Append(const std::wstring& sPath, std::string_view bytes)
{
    m_sOperations.push_back(L"Append " + sPath);
    File& file = Writable(sPath);
    file.bytes += bytes;
    file.lAge = {};
    file.write = ++m_writes;
}

void MemoryFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo, Patience ePatience)
{
    m_sOperations.push_back(L"Rename " + sFrom + L" -> " + sTo);
    RequireReachable(sFrom);
    RequireReachable(sTo);
    const File& cOld = Existing(sFrom);
    const File file{Plain(sTo), cOld.bytes, cOld.lAge, cOld.write};
    RequirePlaceFor(sTo);
    if (IsFolder(sTo))
        throw RuntimeError(error::PathFileAccess);
    RequireChangeable(sTo);
    RequireChangeable(FolderOf(sTo));
    RequireFree(sFrom, ePatience);
    RequireFree(sTo, ePatience);
    m_files.erase(Folded(sFrom));
    m_files[Folded(sTo)] = file;
}

void MemoryFiles::Delete(const std::wstring& sPath)
{
    m_sOperations.push_back(L"Delete " + sPath);
    RequireReachable(sPath);
    Existing(sPath);
    RequireChangeable(sPath);
    m_files.erase(Folded(sPath));
}

std::unique_ptr<HeldFile> MemoryFiles::HoldOpen(const std::wstring& sPath)
{
    m_sOperations.push_back(L"HoldOpen " + sPath);
    if (m_held->count(Folded(sPath)) != 0)
        return nullptr;
    Writable(sPath);
    return std::make_unique<Held>(m_held, Folded(sPath));
}

void MemoryFiles::Put(const std::wstring& sPath, std::string_view bytes)
{
    MakeFolders(FolderOf(sPath));
    File& file = m_files[Folded(sPath)];
    if (file.sPath.empty())
        file.sPath = Plain(sPath);
    file.bytes = bytes;
    file.write = ++m_writes;
}

const std::string& MemoryFiles::Get(const std::wstring& sPath) const { return Existing(sPath).bytes; }

void MemoryFiles::MakeFolders(const std::wstring& sPath)
{
    for (std::wstring sFolder = Plain(sPath); !sFolder.empty(); sFolder = FolderOf(sFolder))
        m_folders.emplace(Folded(sFolder), sFolder);
}

std::vector<std::wstring> MemoryFiles::Paths() const
{
    std::vector<std::wstring> sPaths;
    for (const auto& [sFolded, file] : m_files)
        sPaths.push_back(file.sPath);
    return sPaths;
}

void MemoryFiles::SetLibraryFolder(const std::wstring& sPath)
{
    m_sLibraryFolder = Plain(sPath);
    MakeFolders(sPath);
}

void MemoryFiles::SetReadOnly(const std::wstring& sPath, bool bReadOnly)
{
    m_readOnly[Folded(sPath)] = bReadOnly;
}

void MemoryFiles::SetUnreadable(const std::wstring& sPath, std::int32_t lError)
{
    if (lError == 0)
        m_unreadable.erase(Folded(sPath));
    else
        m_unreadable[Folded(sPath)] = lError;
}

void MemoryFiles::SetAway(const std::wstring& sPath, std::int32_t lError)
{
    if (lError == 0)
        m_away.erase(Folded(sPath));
    else
        m_away[Folded(sPath)] = lError;
}

void MemoryFiles::SetLocked(const std::wstring& sPath, int lAttempts) { m_locked[Folded(sPath)] = lAttempts; }

int MemoryFiles::AttemptsOn(const std::wstring& sPath) const
{
    const auto it = m_attempts.find(Folded(sPath));
    return it == m_attempts.end() ? 0 : it->second;
}

void MemoryFiles::SetAge(const std::wstring& sPath, std::chrono::seconds lAge)
{
    Existing(sPath).lAge = lAge;
}

MemoryFiles::File& MemoryFiles::Existing(const std::wstring& sPath)
{
    return const_cast<File&>(std::as_const(*this).Existing(sPath));
}

const MemoryFiles::File& MemoryFiles::Existing(const std::wstring& sPath) const
{
    if (const auto it = m_files.find(Folded(sPath)); it != m_files.end())
        return it->second;
    if (IsFolder(sPath))
        throw RuntimeError(error::PathFileAccess);
    throw RuntimeError(IsFolder(FolderOf(sPath)) ? error::FileNotFound : error::PathNotFound);
}

MemoryFiles::File& MemoryFiles::Writable(const std::wstring& sPath)
{
    RequireReachable(sPath);
    if (m_held->count(Folded(sPath)) != 0)
        throw RuntimeError(error::PermissionDenied);
    RequirePlaceFor(sPath);
    if (IsFolder(sPath))
        throw RuntimeError(error::PathFileAccess);
    RequireChangeable(sPath);
    if (!IsFile(sPath))
        RequireChangeable(FolderOf(sPath));
    File& file = m_files[Folded(sPath)];
    if (file.sPath.empty())
        file.sPath = Plain(sPath);
    return file;
}

void MemoryFiles::RequirePlaceFor(const std::wstring& sPath) const
{
    if (!IsFolder(FolderOf(sPath)))
        throw RuntimeError(error::PathNotFound);
    if (IsNameRefused(sPath))
        throw RuntimeError(error::BadFileName);
}

void MemoryFiles::RequireChangeable(const std::wstring& sPath) const
{
    if (const auto it = m_readOnly.find(Folded(sPath)); it != m_readOnly.end() && it->second)
        throw RuntimeError(error::PathFileAccess);
}

std::int32_t MemoryFiles::AwayError(const std::wstring& sPath) const
{
    const std::wstring sFolded = Folded(sPath);
    for (const auto& [sAway, lError] : m_away)
        if (LiesIn(sFolded, sAway))
            return lError;
    return 0;
}

void MemoryFiles::RequireReachable(const std::wstring& sPath) const
{
    if (const std::int32_t lError = AwayError(sPath); lError != 0)
        throw RuntimeError(lError);
}

void MemoryFiles::RequireFree(const std::wstring& sPath, Patience ePatience) const
{
    const std::wstring sFolded = Folded(sPath);
    const auto attempt = [&] {
        ++m_attempts[sFolded];
        const auto it = m_locked.find(sFolded);
        if (it == m_locked.end() || it->second == 0)
            return true;
        if (it->second > 0)
            --it->second;
        return false;
    };
    if (!TryPatiently(ePatience, attempt, [](std::uint32_t) {}))
        throw RuntimeError(error::PermissionDenied);
}

} // namespace ravlo

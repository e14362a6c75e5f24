// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "platform/Files.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

// A file system in memory that behaves like the host's: names are found without regard to case and keep their
// first spelling, files need an existing folder, and a name with one of < > : " | ? * or a control character,
// or a device's, is refused (52). The folders "" (the current one), "C:" and the library's own exist at
// first.
class MemoryFiles final : public Files
{
public:
    MemoryFiles();
    MemoryFiles(std::initializer_list<std::pair<std::wstring, std::string>> contents);

    Presence PresenceOf(const std::wstring& sPath) const override;
    Presence PresenceOfFolder(const std::wstring& sPath) const override;
    void CreateFolder(const std::wstring& sPath) override;
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override;
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override;
    std::string ReadAll(const std::wstring& sPath, Patience ePatience = Patience::UpToASecond) const override;
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override;
    void Append(const std::wstring& sPath, std::string_view bytes) override;
    void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                Patience ePatience = Patience::UpToASecond) override;
    void Delete(const std::wstring& sPath) override;
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override;
    std::wstring LibraryFolder() const override { return m_sLibraryFolder; }

    // The following members are for tests. They are not recorded, and marks do not affect them.

    // Sets a file's content; creates its folders.
    void Put(const std::wstring& sPath, std::string_view bytes);
    // A file's content; 53 when it is not there.
    const std::string& Get(const std::wstring& sPath) const;
    // Creates a folder and its parents, as far as they are missing.
    void MakeFolders(const std::wstring& sPath);
    // The paths of all files in their spelling, in the order of their folded paths.
    std::vector<std::wstring> Paths() const;
    void SetLibraryFolder(const std::wstring& sPath);

    // A read-only file can be read, but not written, replaced or deleted (75); nothing can be made in a
    // read-only folder.
    void SetReadOnly(const std::wstring& sPath, bool bReadOnly = true);
    // Makes reading the file throw the number; 0 removes the mark. The mark belongs to the path.
    void SetUnreadable(const std::wstring& sPath, std::int32_t lError);

    // Makes the drive of a path unavailable: the path and everything in it are Unknown, and every operation
    // throws the number. 0 makes it available again, unchanged.
    void SetAway(const std::wstring& sPath, std::int32_t lError = error::PathNotFound);
    // Simulates another program that has the file open during that many attempts to read or replace it. Each
    // attempt throws 70 or, with patience, is followed by the next one; no time passes. Negative: always.
    void SetLocked(const std::wstring& sPath, int lAttempts);
    // How many attempts to read or replace that file there were, successful or not.
    int AttemptsOn(const std::wstring& sPath) const;
    // Sets how long ago the file was written; writing it makes it new again. The stamp stays.
    void SetAge(const std::wstring& sPath, std::chrono::seconds lAge);

    // The reads and changes since the last clearing, failed ones included, each as the operation's name, a
    // blank and its path, e.g. "WriteNew C:\Radio\Jazz.sif"; "Rename <from> -> <to>".
    const std::vector<std::wstring>& Operations() const { return m_sOperations; }
    void ClearOperations() { m_sOperations.clear(); }

private:
    struct File
    {
        std::wstring sPath;
        std::string bytes;
        std::chrono::seconds lAge{};
        std::int64_t write = 0; // the number of the last write to any file
    };
    class Held;

    File& Existing(const std::wstring& sPath);
    const File& Existing(const std::wstring& sPath) const;
    // The file of that path, created if missing. Throws what the host's file system would throw.
    File& Writable(const std::wstring& sPath);
    void RequirePlaceFor(const std::wstring& sPath) const;
    void RequireChangeable(const std::wstring& sPath) const;
    void RequireReachable(const std::wstring& sPath) const;
    void RequireFree(const std::wstring& sPath, Patience ePatience) const;
    bool IsFile(const std::wstring& sPath) const;
    bool IsFolder(const std::wstring& sPath) const;
    // The error of a path whose drive is away; 0 for any other.
    std::int32_t AwayError(const std::wstring& sPath) const;

    std::int64_t m_writes = 0;
    std::map<std::wstring, File> m_files;           // by folded path
    std::map<std::wstring, std::wstring> m_folders; // spelling by folded path
    std::map<std::wstring, bool> m_readOnly;
    std::map<std::wstring, std::int32_t> m_unreadable;
    std::map<std::wstring, std::int32_t> m_away;
    mutable std::map<std::wstring, int> m_locked; // attempts still to fail
    mutable std::map<std::wstring, int> m_attempts;
    std::shared_ptr<std::set<std::wstring>> m_held = std::make_shared<std::set<std::wstring>>();
    mutable std::vector<std::wstring> m_sOperations;
    std::wstring m_sLibraryFolder;
};

} // namespace ravlo

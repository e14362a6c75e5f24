// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// Whether something exists at a path. Unknown: the drive or the network is not available, or access is
// denied. It may exist, so Unknown never allows overwriting.
enum class Presence
{
    Absent,
    Present,
    Unknown,
};

// How long to wait for a file that another program has open for a moment, as virus scanners and backups do.
enum class Patience
{
    None,        // fails at once: for work on air, which is retried later
    UpToASecond, // retries; the thread waits without pumping messages
};

// Keeps a file open, as long as it exists, so that no other program can open it for writing.
class HeldFile
{
public:
    HeldFile() = default;
    virtual ~HeldFile() = default;
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
};

// A file in a folder.
struct FileEntry
{
    std::wstring sName;
    std::chrono::seconds lAge{}; // since it was last written; negative when the clock was set back since
};

// Tells one content of a file from another: differs after every write, as finely as the file system keeps
// time.
struct FileStamp
{
    std::int64_t written = 0; // when, in units of the file system
    std::int64_t size = 0;    // bytes

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// The file system. Paths use backslashes, as the host hands them in. Every path is taken literally: '*' and
// '?' match no other names. An operation that fails throws RuntimeError with the number a host knows (53, 57,
// 61, 70, 75, 76 ...) and has changed nothing, except where stated. A path that is too long raises 52 with a
// description that names the limit.
class Files
{
public:
    virtual ~Files() = default;

    // Whether a file (not a folder) of exactly that name exists; a path that can name no file is Absent.
    // Never throws.
    virtual Presence PresenceOf(const std::wstring& sPath) const = 0;
    // As PresenceOf, for a folder.
    virtual Presence PresenceOfFolder(const std::wstring& sPath) const = 0;
    // Use where a wrong "no" does no harm.
    bool FileExists(const std::wstring& sPath) const { return PresenceOf(sPath) == Presence::Present; }
    bool FolderExists(const std::wstring& sPath) const
    {
        return PresenceOfFolder(sPath) == Presence::Present;
    }

    // Creates the last component of the path only. 76 when the parent is missing, 58 when the name is taken.
    virtual void CreateFolder(const std::wstring& sPath) = 0;

    // The files directly in a folder, without its folders, in no order. 76 when it is missing.
    virtual std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const = 0;

    // The stamp of a file; nothing when there is no file at the path. Throws when it cannot be looked at.
    virtual std::optional<FileStamp> StampOf(const std::wstring& sPath) const = 0;

    // The whole content.
    virtual std::string ReadAll(const std::wstring& sPath,
                                Patience ePatience = Patience::UpToASecond) const = 0;

    // Creates the file, or empties an existing one, writes the bytes and flushes them to the disk. On failure
    // the file may contain a part of the bytes: use ReplaceFile where the old content matters.
    virtual void WriteNew(const std::wstring& sPath, std::string_view bytes) = 0;

    // Adds the bytes at the end of the file; creates it when it is missing. One open, one write, one close.
    virtual void Append(const std::wstring& sPath, std::string_view bytes) = 0;

    // Renames a file within its folder, in one step. Replaces a file of the new name, and keeps that file's
    // attributes and permissions where the platform can.
    virtual void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                        Patience ePatience = Patience::UpToASecond) = 0;

    // 53 when there is no such file.
    virtual void Delete(const std::wstring& sPath) = 0;

    // Opens a file so that nobody else can open it for writing; creates it empty when it is missing. The
    // system closes it when the program ends in any way. Null when this or another program already has it
    // open for writing.
    virtual std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) = 0;

    // The folder of the running library itself, without a trailing backslash.
    virtual std::wstring LibraryFolder() const = 0;
};

#ifdef ReplaceFile
#undef ReplaceFile // the macro of a system header that came first
#endif

// Replaces a file's content in one step: a reader sees the old bytes or the new ones, never a part of either.
// Writes the new content to a temporary file in the same folder, flushes and renames it. Throws when that
// fails; the old file is then whole, and the temporary file is deleted if possible.
void ReplaceFile(Files& cFiles, const std::wstring& sPath, std::string_view bytes,
                 Patience ePatience = Patience::UpToASecond);

// Whether a name is one that ReplaceFile gives its temporary files: "~", eight lower-case hexadecimal digits,
// ".tmp".
bool IsTemporaryName(std::wstring_view sName) noexcept;

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ravlobase/CutFileOpening.h"

#include "base/RuntimeError.h"
#include "base/Utf8.h"
#include "platform/disk/Disk.h"
#include "ravlobase/DiskRoom.h"
#include "ravlobase/FileLayout.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace ravlo
{

namespace
{

// The file's mark, in its header (docs/formats/database.md).
constexpr std::uint32_t applicationID = 0x52415642; // "RAVB"

constexpr std::size_t headSize = 100;
constexpr std::size_t pageSizeAt = 16; // two bytes; 1 means 65536
constexpr std::size_t pagesAt = 28;
constexpr std::size_t versionAt = 60;
constexpr std::size_t applicationAt = 68;
constexpr std::string_view sMagic{"SQLite format 3\0", 16};

std::uint32_t BigEndian(std::string_view bytes, std::size_t at, std::size_t length = 4)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < length; ++i)
        value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

[[noreturn]] void Refuse(const std::wstring& sFile, const std::wstring& sReason)
{
    throw RuntimeError(error::InvalidFileFormat, L"The file \"" + sFile + L"\" " + sReason + L".");
}

void CheckVersion(const std::wstring& sFile, std::int64_t version)
{
    if (version > layout::current)
        Refuse(sFile, L"was written by a newer version of this program");
    if (version < layout::oldest)
        Refuse(sFile, L"is damaged");
}

void CheckHead(const std::wstring& sFile, const std::string& bytes)
{
    if (!bytes.starts_with(sMagic))
        Refuse(sFile, L"is no media database");
    if (bytes.size() < headSize)
        Refuse(sFile, L"is damaged");
    if (BigEndian(bytes, applicationAt) != applicationID)
        Refuse(sFile, L"belongs to another program");
    CheckVersion(sFile, BigEndian(bytes, versionAt));
}

// The size of the file according to its header.
std::int64_t SizeIn(const std::string& bytes)
{
    const std::int64_t pageSize = BigEndian(bytes, pageSizeAt, 2);
    return (pageSize == 1 ? 65536 : pageSize) * BigEndian(bytes, pagesAt);
}

// Removes a file and what SQLite may have left with it, as far as they can be removed.
void RemoveQuietly(const std::wstring& sFile)
{
    for (const wchar_t* sTail : {L"", L"-journal", L"-wal", L"-shm"})
        disk::Remove(sFile + sTail);
}

// The full path: SQLite gives some bare names a meaning of their own.
std::string SqlitePath(const std::wstring& sFile) { return Utf8Of(disk::FullPath(sFile)); }

void WriteEmptyDatabase(const std::wstring& sTemporary, const std::wstring& sFile)
{
    sqlite::Connection cConnection(SqlitePath(sTemporary), sFile, sqlite::Connection::Mode::Create);
    cConnection.Run("PRAGMA synchronous = FULL");
    sqlite::Transaction cTransaction(cConnection);
    cConnection.Run(("PRAGMA application_id = " + std::to_string(applicationID)).c_str());
    layout::Make(cConnection);
    cTransaction.Commit();
    // With a write-ahead log a change costs one flush, and readers never wait. On a file system without
    // shared memory SQLite keeps its rollback journal, which is as safe.
    cConnection.Run("PRAGMA journal_mode = WAL");
}

// The file is created completely or not at all.
void CreateDataBase(const std::wstring& sFile)
{
    const std::wstring sTemporary = sFile + L".rb~";
    RemoveQuietly(sTemporary);
    try
    {
        sqlite::NeedRoomBeside(SqlitePath(sTemporary), sFile);
        WriteEmptyDatabase(sTemporary, sFile);
        if (!disk::Rename(sTemporary, sFile))
            throw RuntimeError(error::PathFileAccess, L"The database \"" + sFile + L"\" cannot be created.");
    }
    catch (...)
    {
        RemoveQuietly(sTemporary);
        throw;
    }
}

bool HasLog(const std::wstring& sFile)
{
    const std::optional<disk::Stamp> stamp = disk::StampOf(sFile + L"-wal");
    return stamp && stamp->size > 0;
}

// Begins a transaction that sees one state of the file and its log, which other programs may be writing to.
// Returns the log's description of that state; nothing when there is no log, or when a busy writer left no
// quiet moment.
std::optional<sqlite::Connection::Log> BeginReading(sqlite::Connection& cConnection)
{
    constexpr int tries = 20;
    std::optional<sqlite::Connection::Log> before;
    for (int attempt = 0; attempt < tries; ++attempt)
    {
        cConnection.Run("BEGIN");
        layout::Check(cConnection); // the first look begins the transaction
        std::optional<sqlite::Connection::Log> now = cConnection.WriteAheadLog();
        if (attempt > 0 && now == before)
            return now;
        before = now;
        cConnection.Run("ROLLBACK");
    }
    cConnection.Run("BEGIN");
    return std::nullopt;
}

// SQLite would accept another file's log: a different size of the database in the log shows that. A file
// larger than its database has foreign bytes at its end.
void CheckSize(sqlite::Connection& cConnection, const std::optional<sqlite::Connection::Log>& log,
               const std::wstring& sFile)
{
    const std::int64_t pages = cConnection.Number("PRAGMA page_count");
    const bool bFromLog = log && log->frames > 0;
    if (bFromLog && log->pages != pages)
        Refuse(sFile, L"and the log next to it do not belong together");
    const std::int64_t size = pages * cConnection.Number("PRAGMA page_size");
    // The end of a database that grew may be only in the log.
    if (cConnection.RawSize() > size || (log && !bFromLog && cConnection.RawSize() < size))
        Refuse(sFile, L"is damaged");
}

void CheckStructure(sqlite::Connection& cConnection)
{
    if (cConnection.Text("PRAGMA integrity_check(1)") != L"ok")
        cConnection.Fail(SQLITE_CORRUPT);
}

} // namespace

std::string ReadyPath(const std::wstring& sFile)
{
    const std::wstring sWhole = disk::FullPath(sFile);
    const PathKind eKind = disk::KindOf(sWhole);
    if (eKind == PathKind::Folder)
        throw RuntimeError(error::PathFileAccess, L"\"" + sFile + L"\" is a folder.");
    if (eKind != PathKind::File)
    {
        if (disk::KindOf(disk::FolderOf(sWhole)) != PathKind::Folder)
            throw RuntimeError(error::PathNotFound, L"The folder of \"" + sFile + L"\" was not found.");
        CreateDataBase(sFile);
    }
    return SqlitePath(sWhole);
}

void CheckUnread(sqlite::Connection& cConnection, const std::wstring& sFile)
{
    const bool bHadLog = HasLog(sFile);
    const std::string head = cConnection.RawHead(headSize);
    CheckHead(sFile, head);
    if (!bHadLog && cConnection.RawSize() != SizeIn(head))
        Refuse(sFile, L"is damaged"); // SQLite takes the missing end of a last page for zeros
    sqlite::NeedRoomBeside(SqlitePath(sFile), sFile);
    cConnection.KeepLogOnClose(bHadLog);
}

void BeginSound(sqlite::Connection& cConnection, const std::wstring& sFile)
{
    const std::optional<sqlite::Connection::Log> log = BeginReading(cConnection);
    CheckVersion(sFile, layout::Version(cConnection)); // the header's may be older than the log's
    CheckSize(cConnection, log, sFile);
    CheckStructure(cConnection);
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ravlobase/CutFile.h"

#include "base/CaseFolding.h"
#include "base/Utf8.h"
#include "ravlobase/DiskRoom.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/StoreErrors.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

// The file's mark and version, which stand in its header (docs/formats/database.md).
constexpr std::uint32_t lApplicationID = 0x52415642; // "RAVB"
constexpr std::uint32_t lFormatVersion = 1;

constexpr std::size_t headSize = 100;
constexpr std::size_t pageSizeAt = 16; // two bytes; 1 stands for 65536
constexpr std::size_t pagesAt = 28;
constexpr std::size_t versionAt = 60;
constexpr std::size_t applicationAt = 68;
constexpr std::string_view sMagic{"SQLite format 3\0", 16};

constexpr const char* sCutsTable = "CREATE TABLE cuts("
                                   "id INTEGER PRIMARY KEY AUTOINCREMENT,"
                                   "cut_key TEXT NOT NULL,"
                                   "folded_key TEXT NOT NULL UNIQUE,"
                                   "path TEXT NOT NULL,"
                                   "secondary_key TEXT NOT NULL,"
                                   "artist TEXT NOT NULL,"
                                   "title TEXT NOT NULL,"
                                   "album TEXT NOT NULL,"
                                   "last_played REAL NOT NULL,"
                                   "year INTEGER NOT NULL,"
                                   "run_time_ms INTEGER NOT NULL,"
                                   "duration_ms INTEGER NOT NULL,"
                                   "cat_level INTEGER NOT NULL CHECK(cat_level >= 1),"
                                   "opener INTEGER NOT NULL"
                                   ") STRICT";
constexpr const char* sCategoriesTable = "CREATE TABLE cut_categories("
                                         "cut_id INTEGER NOT NULL REFERENCES cuts(id) ON DELETE CASCADE,"
                                         "position INTEGER NOT NULL,"
                                         "name TEXT NOT NULL,"
                                         "PRIMARY KEY(cut_id, position)"
                                         ") STRICT, WITHOUT ROWID";

// Artists, albums and categories recur: cuts read from a file share one text of each.
class TextPool
{
public:
    TextKey Of(std::wstring sText)
    {
        if (sText.empty())
            return TextKey();
        const auto it = m_texts.find(sText);
        if (it != m_texts.end())
            return it->second;
        TextKey cText(std::move(sText));
        return m_texts.emplace(cText.Text(), cText).first->second;
    }

private:
    std::unordered_map<std::wstring_view, TextKey> m_texts; // each view is of the text beside it
};

// One changeable value of a cut and its column.
struct Column
{
    const char* sName;
    bool (*Same)(const CutValues& left, const CutValues& right);
    void (*Bind)(sqlite::Statement& statement, int lAt, const CutValues& values);
    void (*Read)(const sqlite::Statement& statement, int lAt, CutValues& values, TextPool& cPool);
};

std::int32_t LongOf(std::int64_t lValue)
{
    if (lValue < std::numeric_limits<std::int32_t>::min() ||
        lValue > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(error::InvalidFileFormat, L"The database is damaged: a number is out of range.");
    return static_cast<std::int32_t>(lValue);
}

enum class Texts
{
    eDiffer, // from cut to cut
    eRecur,
};

template <TextKey CutValues::*Field, Texts eTexts> constexpr Column TextColumn(const char* sName)
{
    return {sName,
            [](const CutValues& left, const CutValues& right) { return SameText(left.*Field, right.*Field); },
            [](sqlite::Statement& statement, int lAt, const CutValues& values) {
        statement.Bind(lAt, (values.*Field).Text());
            },
            [](const sqlite::Statement& statement, int lAt, CutValues& values, TextPool& cPool) {
        auto sText = statement.Text(lAt);
        values.*Field = eTexts == Texts::eRecur ? cPool.Of(std::move(sText)) : TextKey(std::move(sText));
    }};
}

template <std::int32_t CutValues::*Field> constexpr Column LongColumn(const char* sName)
{
    return {sName, [](const CutValues& left, const CutValues& right) { return left.*Field == right.*Field; },
            [](sqlite::Statement& statement, int lAt, const CutValues& values) {
        statement.Bind(lAt, static_cast<std::int64_t>(values.*Field));
            },
            [](const sqlite::Statement& statement, int lAt, CutValues& values, TextPool&) {
        values.*Field = LongOf(statement.Number(lAt));
    }};
}

constexpr Column columns[] =
    {
        {"path",
         [](const CutValues& left, const CutValues& right) { return SameText(left.cPath, right.cPath); },
         [](sqlite::Statement& statement, int lAt, const CutValues& values) {
    statement.Bind(lAt, values.cPath.Text());
         },
         [](const sqlite::Statement& statement, int lAt, CutValues& values, TextPool&) {
    // Nearly always the key: the text is kept once.
    TextKey cPath(statement.Text(lAt));
    values.cPath = SameText(cPath, values.cKey) ? values.cKey : cPath;
        }},
                 TextColumn<&CutValues::cSecondaryKey, Texts::eDiffer>("secondary_key"),
                 TextColumn<&CutValues::cArtist, Texts::eRecur>("artist"),
                 TextColumn<&CutValues::cTitle, Texts::eDiffer>("title"),
                 TextColumn<&CutValues::cAlbum, Texts::eRecur>("album"),
                 {"last_played",
                  [](const CutValues& left, const CutValues& right) {
    return left.dtLastPlayed == right.dtLastPlayed;
                  },
                  [](sqlite::Statement& statement, int lAt, const CutValues& values) {
    statement.Bind(lAt, values.dtLastPlayed);
                 },
                 [](const sqlite::Statement& statement, int lAt, CutValues& values, TextPool&) {
    values.dtLastPlayed = statement.Real(lAt);
}},
    LongColumn<&CutValues::lYear>("year"), LongColumn<&CutValues::lRunTimemS>("run_time_ms"),
    LongColumn<&CutValues::lDurationmS>("duration_ms"), LongColumn<&CutValues::lCatLevel>("cat_level"),
    {"opener", [](const CutValues& left, const CutValues& right) { return left.bOpener == right.bOpener; },
     [](sqlite::Statement& statement, int lAt, const CutValues& values) {
    statement.Bind(lAt, static_cast<std::int64_t>(values.bOpener ? 1 : 0));
     },
     [](const sqlite::Statement& statement, int lAt, CutValues& values, TextPool&) {
    values.bOpener = statement.Number(lAt) != 0;
    }},
    };

bool SameCategories(const CutValues& left, const CutValues& right) noexcept
{
    return std::equal(left.colCategories.begin(), left.colCategories.end(), right.colCategories.begin(),
                      right.colCategories.end(), SameText);
}

std::string ColumnNames()
{
    std::string sNames;
    for (const auto& column : columns)
        sNames += std::string(",") + column.sName;
    return sNames;
}

std::uint32_t BigEndian(std::string_view bytes, std::size_t lAt, std::size_t length = 4)
{
    std::uint32_t lValue = 0;
    for (std::size_t i = 0; i < length; ++i)
        lValue = (lValue << 8) | static_cast<unsigned char>(bytes[lAt + i]);
    return lValue;
}

[[noreturn]] void Refuse(const std::wstring& sFile, const std::wstring& sReason)
{
    throw RuntimeError(error::InvalidFileFormat, L"The file \"" + sFile + L"\" " + sReason + L".");
}

void CheckHead(const std::wstring& sFile, const std::string& bytes)
{
    if (!bytes.starts_with(sMagic))
        Refuse(sFile, L"is no media database");
    if (bytes.size() < headSize)
        Refuse(sFile, L"is damaged");
    if (BigEndian(bytes, applicationAt) != lApplicationID)
        Refuse(sFile, L"belongs to another program");
    if (BigEndian(bytes, versionAt) > lFormatVersion)
        Refuse(sFile, L"was written by a newer version of this program");
    if (BigEndian(bytes, versionAt) != lFormatVersion)
        Refuse(sFile, L"is damaged");
}

// The size that the header speaks of.
std::int64_t SizeIn(const std::string& bytes)
{
    const std::int64_t pageSize = BigEndian(bytes, pageSizeAt, 2);
    return (pageSize == 1 ? 65536 : pageSize) * BigEndian(bytes, pagesAt);
}

// Removes a file and what SQLite may have left beside it. What cannot be removed stays.
void RemoveQuietly(const std::filesystem::path& cPath)
{
    for (const char* sTail : {"", "-journal", "-wal", "-shm"})
    {
        std::error_code ignored;
        auto cFile = cPath;
        std::filesystem::remove(cFile += sTail, ignored);
    }
}

// In full: a bare name could be one that means something else to SQLite.
std::string SqlitePath(const std::filesystem::path& cPath)
{
    const auto bytes = std::filesystem::absolute(cPath).u8string();
    return {bytes.begin(), bytes.end()};
}

void WriteEmptyDatabase(const std::filesystem::path& cTemporary, const std::wstring& sFile)
{
    sqlite::Connection cConnection(SqlitePath(cTemporary), sFile, sqlite::Connection::Mode::eCreate);
    cConnection.Run("PRAGMA synchronous = FULL");
    sqlite::Transaction cTransaction(cConnection);
    cConnection.Run(("PRAGMA application_id = " + std::to_string(lApplicationID)).c_str());
    cConnection.Run(("PRAGMA user_version = " + std::to_string(lFormatVersion)).c_str());
    cConnection.Run(sCutsTable);
    cConnection.Run(sCategoriesTable);
    cTransaction.Commit();
    // With a write-ahead log a change costs one flush, and readers never wait. Where the file system cannot
    // do it, SQLite stays with its rollback journal, which is as safe.
    cConnection.Run("PRAGMA journal_mode = WAL");
}

// The file appears whole or not at all.
void Create(const std::wstring& sFile)
{
    const auto cTemporary = FilePath(sFile + L".rb~");
    RemoveQuietly(cTemporary);
    try
    {
        sqlite::NeedRoomBeside(SqlitePath(cTemporary), sFile);
        WriteEmptyDatabase(cTemporary, sFile);
        std::filesystem::rename(cTemporary, FilePath(sFile));
    }
    catch (const std::filesystem::filesystem_error&)
    {
        RemoveQuietly(cTemporary);
        throw RuntimeError(error::PathFileAccess, L"The database \"" + sFile + L"\" cannot be created.");
    }
    catch (...)
    {
        RemoveQuietly(cTemporary);
        throw;
    }
}

// The path to be opened, as UTF-8; the file exists.
std::string ReadyPath(const std::wstring& sFile)
{
    const auto cPath = FilePath(sFile);
    std::error_code ignored;
    if (std::filesystem::is_directory(cPath, ignored))
        throw RuntimeError(error::PathFileAccess, L"\"" + sFile + L"\" is a folder.");
    if (!std::filesystem::exists(cPath, ignored))
    {
        if (cPath.has_parent_path() && !std::filesystem::is_directory(cPath.parent_path(), ignored))
            throw RuntimeError(error::PathNotFound, L"The folder of \"" + sFile + L"\" was not found.");
        Create(sFile);
    }
    return SqlitePath(cPath);
}

bool HasLog(const std::wstring& sFile)
{
    std::error_code failed;
    const auto lSize = std::filesystem::file_size(FilePath(sFile + L"-wal"), failed);
    return !failed && lSize > 0;
}

void CheckTables(sqlite::Connection& cConnection)
{
    sqlite::Statement tables(cConnection, "SELECT count(*) FROM sqlite_schema WHERE sql = ? OR sql = ?");
    tables.Bind(1, TextFromStore(sCutsTable)).Bind(2, TextFromStore(sCategoriesTable)).Step();
    if (tables.Number(0) != 2)
        cConnection.Fail(SQLITE_CORRUPT);
}

// Begins a transaction that sees one state of the file and its log, which other programs may be writing to.
// Gives what the log says of that state: nothing when there is no log, or when a busy writer left no quiet
// moment.
std::optional<sqlite::Connection::Log> BeginReading(sqlite::Connection& cConnection)
{
    constexpr int lTries = 20;
    std::optional<sqlite::Connection::Log> before;
    for (int l = 0; l < lTries; ++l)
    {
        cConnection.Run("BEGIN");
        CheckTables(cConnection); // the first look begins the transaction
        auto now = cConnection.WriteAheadLog();
        if (l > 0 && now == before)
            return now;
        before = now;
        cConnection.Run("ROLLBACK");
    }
    cConnection.Run("BEGIN");
    return std::nullopt;
}

// A log of another file, which SQLite would take for this one's, tells itself by the size that the database
// has in it; bytes behind the database's end, by the size of the file.
void CheckSize(sqlite::Connection& cConnection, const std::optional<sqlite::Connection::Log>& log,
               const std::wstring& sFile)
{
    const auto lPages = cConnection.Number("PRAGMA page_count");
    const bool bFromLog = log && log->lFrames > 0;
    if (bFromLog && log->lPages != lPages)
        Refuse(sFile, L"and the log beside it do not belong together");
    const auto lSize = lPages * cConnection.Number("PRAGMA page_size");
    // The end of a database that grew may be in the log alone.
    if (cConnection.RawSize() > lSize || (log && !bFromLog && cConnection.RawSize() < lSize))
        Refuse(sFile, L"is damaged");
}

void CheckStructure(sqlite::Connection& cConnection)
{
    if (cConnection.Text("PRAGMA integrity_check(1)") != L"ok")
        cConnection.Fail(SQLITE_CORRUPT);
}

// Another tool may have written a name that no cut can have, an empty one or one twice: it is passed over.
void ReadCategories(sqlite::Connection& cConnection, TextPool& cPool, std::vector<StoredCut>& colCuts)
{
    std::unordered_set<std::wstring> colSeen; // folded names of the cut at it
    sqlite::Statement names(cConnection, "SELECT cut_id, name FROM cut_categories ORDER BY cut_id, position");
    auto it = colCuts.begin();
    while (names.Step())
    {
        const auto lID = names.Number(0);
        const auto cut = std::find_if(it, colCuts.end(), [&](const StoredCut& c) { return c.lID >= lID; });
        if (cut == colCuts.end() || cut->lID != lID)
            cConnection.Fail(SQLITE_CORRUPT);
        if (cut != std::exchange(it, cut))
            colSeen.clear();
        std::wstring sName = names.Text(1);
        if (!sName.empty() && colSeen.insert(FoldCase(sName)).second)
            it->values.colCategories.push_back(cPool.Of(std::move(sName)));
    }
}

std::vector<StoredCut> ReadCuts(sqlite::Connection& cConnection)
{
    std::vector<StoredCut> colCuts;
    TextPool cPool;
    sqlite::Statement cuts(cConnection, "SELECT id, cut_key" + ColumnNames() + " FROM cuts ORDER BY id");
    while (cuts.Step())
    {
        StoredCut cut{LongOf(cuts.Number(0)), {}};
        cut.values.cKey = TextKey(cuts.Text(1));
        for (int i = 0; i < static_cast<int>(std::size(columns)); ++i)
            columns[i].Read(cuts, i + 2, cut.values, cPool);
        if (cut.lID < 1 || cut.values.cKey.Empty() || cut.values.lCatLevel < 1)
            cConnection.Fail(SQLITE_CORRUPT);
        colCuts.push_back(std::move(cut));
    }
    ReadCategories(cConnection, cPool, colCuts);
    return colCuts;
}

} // namespace

bool SameValues(const CutValues& left, const CutValues& right) noexcept
{
    return std::all_of(std::begin(columns), std::end(columns),
                       [&](const Column& column) { return column.Same(left, right); }) &&
           SameCategories(left, right);
}

CutFile::CutFile(const std::wstring& sFile, std::vector<StoredCut>& colCuts)
    : m_cConnection(ReadyPath(sFile), sFile, sqlite::Connection::Mode::eExisting)
{
    const bool bHadLog = HasLog(sFile);
    const auto head = m_cConnection.RawHead(headSize);
    CheckHead(sFile, head);
    if (!bHadLog && m_cConnection.RawSize() != SizeIn(head))
        Refuse(sFile, L"is damaged"); // SQLite takes the missing end of a last page for zeros
    sqlite::NeedRoomBeside(SqlitePath(FilePath(sFile)), sFile);
    // Until the file has proved sound, a log that somebody left is not moved into it.
    m_cConnection.KeepLogOnClose(bHadLog);
    try
    {
        colCuts = ReadSound(sFile);
    }
    catch (const RuntimeError& e)
    {
        // What SQLite has no better word for while it reads ("unsupported file format") is damage: the head
        // says that this program wrote the file.
        if (e.Number() == error::Internal)
            m_cConnection.Fail(SQLITE_CORRUPT);
        throw;
    }
    m_cConnection.KeepLogOnClose(false);
}

std::vector<StoredCut> CutFile::ReadSound(const std::wstring& sFile)
{
    m_cConnection.Run("PRAGMA cell_size_check = ON; PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL");
    m_read = DataVersion();
    const auto log = BeginReading(m_cConnection);
    CheckSize(m_cConnection, log, sFile);
    CheckStructure(m_cConnection);
    auto colCuts = ReadCuts(m_cConnection);
    m_cConnection.Run("COMMIT");
    return colCuts;
}

bool CutFile::ChangedByOthers() { return DataVersion() != m_read; }

std::vector<StoredCut> CutFile::Read()
{
    const auto lVersion = DataVersion(); // before reading: what changes meanwhile is seen the next time
    m_cConnection.Run("BEGIN");
    try
    {
        auto colCuts = ReadCuts(m_cConnection);
        m_cConnection.Run("COMMIT");
        m_read = lVersion;
        return colCuts;
    }
    catch (...)
    {
        sqlite3_exec(m_cConnection.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

std::int64_t CutFile::DataVersion()
{
    auto& statement = Prepared("PRAGMA data_version");
    statement.Step();
    const auto lVersion = statement.Number(0);
    statement.Run();
    return lVersion;
}

sqlite::Statement& CutFile::Prepared(const std::string& sSql)
{
    return m_statements.try_emplace(sSql, m_cConnection, sSql).first->second;
}

std::int32_t CutFile::Insert(const CutValues& values)
{
    static const std::string sInsert = [] {
        std::string sMarks;
        for (std::size_t i = 0; i < std::size(columns); ++i)
            sMarks += ",?";
        return "INSERT INTO cuts(cut_key, folded_key" + ColumnNames() + ") VALUES(?,?" + sMarks + ")";
    }();
    auto& statement = Prepared(sInsert);
    statement.Bind(1, values.cKey.Text()).Bind(2, FoldCase(values.cKey.Text()));
    for (int i = 0; i < static_cast<int>(std::size(columns)); ++i)
        columns[i].Bind(statement, i + 3, values);
    statement.Run();
    const auto lRowID = m_cConnection.LastRowID();
    if (lRowID > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(error::Overflow, L"The database has used up its numbers.");
    const auto lID = static_cast<std::int32_t>(lRowID);
    WriteCategories(lID, values);
    return lID;
}

void CutFile::Update(std::int32_t lID, const CutValues& old, const CutValues& next)
{
    for (const auto& column : columns)
    {
        if (column.Same(old, next))
            continue;
        auto& statement = Prepared(std::string("UPDATE cuts SET ") + column.sName + " = ? WHERE id = ?");
        column.Bind(statement, 1, next);
        statement.Bind(2, static_cast<std::int64_t>(lID)).Run();
        if (m_cConnection.ChangedRows() == 0)
            m_cConnection.Fail(SQLITE_CONSTRAINT_FOREIGNKEY);
    }
    if (!SameCategories(old, next))
    {
        Prepared("DELETE FROM cut_categories WHERE cut_id = ?").Bind(1, static_cast<std::int64_t>(lID)).Run();
        WriteCategories(lID, next);
    }
}

void CutFile::UpdateLastPlayed(std::int32_t lID, DateTime dtWhen)
{
    Prepared("UPDATE cuts SET last_played = ? WHERE id = ?")
        .Bind(1, dtWhen)
        .Bind(2, static_cast<std::int64_t>(lID))
        .Run();
}

void CutFile::Delete(std::int32_t lID)
{
    // The category names go with it.
    Prepared("DELETE FROM cuts WHERE id = ?").Bind(1, static_cast<std::int64_t>(lID)).Run();
}

void CutFile::WriteCategories(std::int32_t lID, const CutValues& values)
{
    auto& statement = Prepared("INSERT INTO cut_categories(cut_id, position, name) VALUES(?,?,?)");
    std::int64_t position = 0;
    for (const auto& cName : values.colCategories)
        statement.Bind(1, static_cast<std::int64_t>(lID)).Bind(2, position++).Bind(3, cName.Text()).Run();
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "ravlobase/CutFile.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "ravlobase/CutFileOpening.h"
#include "ravlobase/FileLayout.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <variant>

namespace ravlo
{

namespace
{

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
    std::unordered_map<std::wstring_view, TextKey> m_texts; // each view is of its value's text
};

// One changeable value of a cut and its column.
struct CutColumn
{
    const char* sName;
    std::variant<TextKey CutValues::*, std::int32_t CutValues::*, DateTime CutValues::*, bool CutValues::*>
        pMember;
    bool bRecurs = false; // from cut to cut
};

constexpr CutColumn columns[] = {
    {"path", &CutValues::cPath},
    {"secondary_key", &CutValues::cSecondaryKey},
    {"artist", &CutValues::cArtist, true},
    {"title", &CutValues::cTitle},
    {"album", &CutValues::cAlbum, true},
    {"last_played", &CutValues::dtLastPlayed},
    {"year", &CutValues::lYear},
    {"run_time_ms", &CutValues::lRunTimemS},
    {"duration_ms", &CutValues::lDurationmS},
    {"cat_level", &CutValues::lCatLevel},
    {"opener", &CutValues::bOpener},
};
constexpr int lColumns = std::size(columns);

std::string ColumnNames()
{
    std::string sNames;
    for (const CutColumn& column : columns)
        sNames += std::string(",") + column.sName;
    return sNames;
}

bool SameValue(const CutColumn& column, const CutValues& left, const CutValues& right)
{
    return std::visit(
        [&](auto pMember) {
        if constexpr (std::is_same_v<decltype(pMember), TextKey CutValues::*>)
            return SameText(left.*pMember, right.*pMember);
        else
            return left.*pMember == right.*pMember;
        },
        column.pMember);
}

void BindValue(sqlite::Statement& statement, int lAt, const CutColumn& column, const CutValues& values)
{
    std::visit(
        [&](auto pMember) {
        if constexpr (std::is_same_v<decltype(pMember), TextKey CutValues::*>)
            statement.Bind(lAt, (values.*pMember).Text());
        else
            statement.Bind(lAt, values.*pMember);
        },
        column.pMember);
}

std::int32_t LongOf(std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(error::InvalidFileFormat, L"The database is damaged: a number is out of range.");
    return static_cast<std::int32_t>(value);
}

// Takes the columns of a row into the values, one overload for each type.
struct ValueReader
{
    void operator()(TextKey CutValues::*pMember) const
    {
        std::wstring sText = row.Text(lAt);
        values.*pMember = bRecurs ? cPool.Of(std::move(sText)) : TextKey(std::move(sText));
    }
    void operator()(std::int32_t CutValues::*pMember) const { values.*pMember = LongOf(row.Number(lAt)); }
    void operator()(DateTime CutValues::*pMember) const { values.*pMember = row.Real(lAt); }
    void operator()(bool CutValues::*pMember) const { values.*pMember = row.Number(lAt) != 0; }

    const sqlite::Statement& row;
    int lAt;
    bool bRecurs;
    CutValues& values;
    TextPool& cPool;
};

bool SameCategories(const CutValues& left, const CutValues& right) noexcept
{
    return std::equal(left.colCategories.begin(), left.colCategories.end(), right.colCategories.begin(),
                      right.colCategories.end(), SameText);
}

// Skips an empty or repeated name, which no cut can have but another tool may have written.
void ReadCategories(sqlite::Connection& cConnection, TextPool& cPool, std::vector<StoredCut>& colCuts)
{
    std::unordered_set<std::wstring> colSeen; // folded names of the cut at it
    sqlite::Statement names(cConnection, "SELECT cut_id, name FROM cut_categories ORDER BY cut_id, position");
    auto it = colCuts.begin();
    while (names.Step())
    {
        const std::int64_t id = names.Number(0);
        const auto cut = std::find_if(it, colCuts.end(), [&](const StoredCut& c) { return c.lID >= id; });
        if (cut == colCuts.end() || cut->lID != id)
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
    sqlite::Statement row(cConnection, "SELECT id, cut_key" + ColumnNames() + " FROM cuts ORDER BY id");
    while (row.Step())
    {
        StoredCut cut{LongOf(row.Number(0)), {}};
        CutValues& values = cut.values;
        values.cKey = TextKey(row.Text(1));
        for (int l = 0; l < lColumns; ++l)
            std::visit(ValueReader{row, l + 2, columns[l].bRecurs, values, cPool}, columns[l].pMember);
        if (SameText(values.cPath, values.cKey))
            values.cPath = values.cKey; // nearly always: the text is kept once
        if (cut.lID < 1 || values.cKey.Empty() || values.lCatLevel < 1)
            cConnection.Fail(SQLITE_CORRUPT);
        colCuts.push_back(std::move(cut));
    }
    ReadCategories(cConnection, cPool, colCuts);
    return colCuts;
}

} // namespace

bool SameValues(const CutValues& left, const CutValues& right)
{
    return std::all_of(std::begin(columns), std::end(columns),
                       [&](const CutColumn& column) { return SameValue(column, left, right); }) &&
           SameCategories(left, right);
}

CutFile::CutFile(const std::wstring& sFile, std::vector<StoredCut>& colCuts)
    : m_cConnection(ReadyPath(sFile), sFile, sqlite::Connection::Mode::Existing)
{
    CheckUnread(m_cConnection, sFile);
    try
    {
        m_cConnection.Run("PRAGMA cell_size_check = ON; PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL");
        m_read = DataVersion();
        BeginSound(m_cConnection, sFile);
        colCuts = ReadCuts(m_cConnection);
        m_cConnection.Run("COMMIT");
        layout::BringUpToDate(m_cConnection);
    }
    catch (const RuntimeError& e)
    {
        // SQLite reports some damage only as "unsupported file format". The head shows that this program
        // wrote the file.
        if (e.Number() == error::Internal)
            m_cConnection.Fail(SQLITE_CORRUPT);
        throw;
    }
    m_cConnection.KeepLogOnClose(false);
}

bool CutFile::ChangedByOthers() { return DataVersion() != m_read; }

std::vector<StoredCut> CutFile::Read()
{
    const std::int64_t version = DataVersion(); // before reading, so that no later change is missed
    m_cConnection.Run("BEGIN");
    try
    {
        std::vector<StoredCut> colCuts = ReadCuts(m_cConnection);
        m_cConnection.Run("COMMIT");
        m_read = version;
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
    sqlite::Statement& statement = Prepared("PRAGMA data_version");
    statement.Step();
    const std::int64_t version = statement.Number(0);
    statement.Run();
    return version;
}

sqlite::Statement& CutFile::Prepared(const std::string& sSql)
{
    return m_statements.try_emplace(sSql, m_cConnection, sSql).first->second;
}

std::int32_t CutFile::Insert(const CutValues& values)
{
    static const std::string sInsert = [] {
        std::string sMarks;
        for (int l = 0; l < lColumns; ++l)
            sMarks += ",?";
        return "INSERT INTO cuts(cut_key, folded_key" + ColumnNames() + ") VALUES(?,?" + sMarks + ")";
    }();
    sqlite::Statement& statement = Prepared(sInsert);
    statement.Bind(1, values.cKey.Text()).Bind(2, FoldCase(values.cKey.Text()));
    for (int l = 0; l < lColumns; ++l)
        BindValue(statement, l + 3, columns[l], values);
    statement.Run();
    const std::int64_t rowID = m_cConnection.LastRowID();
    if (rowID > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(error::Overflow, L"The database has used up its numbers.");
    const auto lID = static_cast<std::int32_t>(rowID);
    WriteCategories(lID, values);
    return lID;
}

void CutFile::Update(std::int32_t lID, const CutValues& old, const CutValues& next)
{
    for (const CutColumn& column : columns)
    {
        if (SameValue(column, old, next))
            continue;
        sqlite::Statement& statement =
            Prepared(std::string("UPDATE cuts SET ") + column.sName + " = ? WHERE id = ?");
        BindValue(statement, 1, column, next);
        statement.Bind(2, lID).Run();
        if (m_cConnection.ChangedRows() == 0)
            m_cConnection.Fail(SQLITE_CONSTRAINT_FOREIGNKEY);
    }
    if (!SameCategories(old, next))
    {
        Prepared("DELETE FROM cut_categories WHERE cut_id = ?").Bind(1, lID).Run();
        WriteCategories(lID, next);
    }
}

void CutFile::UpdateLastPlayed(std::int32_t lID, DateTime dtWhen)
{
    Prepared("UPDATE cuts SET last_played = ? WHERE id = ?").Bind(1, dtWhen).Bind(2, lID).Run();
}

void CutFile::InsertPlay(const PlayRecord& play)
{
    Prepared("INSERT OR IGNORE INTO plays VALUES(?,?,?,?,?,?,?,?)")
        .Bind(1, play.dtPlayed)
        .Bind(2, play.cKey.Text())
        .Bind(3, play.cArtist.Text())
        .Bind(4, play.cTitle.Text())
        .Bind(5, play.cAlbum.Text())
        .Bind(6, play.lDurationmS)
        .Bind(7, JoinedNames(play.colCategories))
        .Bind(8, play.lCatLevel)
        .Run();
}

void CutFile::ForEachPlay(DateTime dtFrom, DateTime dtTo,
                          const std::function<void(const RecordedPlay&)>& visit)
{
    if (!HasLayout2())
        return;
    sqlite::Statement row(m_cConnection, "SELECT * FROM plays WHERE played_at >= ? AND played_at < ? "
                                         "ORDER BY played_at, cut_key");
    row.Bind(1, dtFrom).Bind(2, dtTo);
    while (row.Step())
        visit({row.Real(0), row.Text(1), row.Text(2), row.Text(3), row.Text(4), LongOf(row.Number(5)),
               row.Text(6), LongOf(row.Number(7))});
}

std::unordered_map<std::int32_t, ImportStamp> CutFile::ImportStamps()
{
    std::unordered_map<std::int32_t, ImportStamp> stamps;
    if (!HasLayout2())
        return stamps;
    sqlite::Statement row(m_cConnection, "SELECT cut_id, modified, size FROM imported_files");
    while (row.Step())
        stamps.emplace(LongOf(row.Number(0)), ImportStamp{row.Number(1), row.Number(2)});
    return stamps;
}

void CutFile::PutImportStamp(std::int32_t lID, const ImportStamp& stamp)
{
    Prepared("INSERT OR REPLACE INTO imported_files VALUES(?,?,?)")
        .Bind(1, lID)
        .Bind(2, stamp.modified)
        .Bind(3, stamp.size)
        .Run();
}

bool CutFile::HasLayout2() { return layout::Version(m_cConnection) >= 2; }

void CutFile::Delete(std::int32_t lID)
{
    // Deletes its category names, too.
    Prepared("DELETE FROM cuts WHERE id = ?").Bind(1, lID).Run();
}

void CutFile::WriteCategories(std::int32_t lID, const CutValues& values)
{
    sqlite::Statement& statement =
        Prepared("INSERT INTO cut_categories(cut_id, position, name) VALUES(?,?,?)");
    std::int64_t position = 0;
    for (const TextKey& cName : values.colCategories)
        statement.Bind(1, lID).Bind(2, position++).Bind(3, cName.Text()).Run();
}

} // namespace ravlo

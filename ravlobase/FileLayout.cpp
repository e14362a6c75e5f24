// SPDX-License-Identifier: MIT
#include "ravlobase/FileLayout.h"

#include "base/Utf8.h"

#include <string>

namespace ravlo::layout
{

namespace
{

// A table and the version that added it. The text is part of the format.
struct Table
{
    std::int64_t since;
    const char* sSql;
};

constexpr Table tables[] = {
    {1, "CREATE TABLE cuts("
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
        ") STRICT"},
    {1, "CREATE TABLE cut_categories("
        "cut_id INTEGER NOT NULL REFERENCES cuts(id) ON DELETE CASCADE,"
        "position INTEGER NOT NULL,"
        "name TEXT NOT NULL,"
        "PRIMARY KEY(cut_id, position)"
        ") STRICT, WITHOUT ROWID"},
    {2, "CREATE TABLE plays("
        "played_at REAL NOT NULL,"
        "cut_key TEXT NOT NULL,"
        "artist TEXT NOT NULL,"
        "title TEXT NOT NULL,"
        "album TEXT NOT NULL,"
        "duration_ms INTEGER NOT NULL,"
        "categories TEXT NOT NULL,"
        "cat_level INTEGER NOT NULL,"
        "PRIMARY KEY(played_at, cut_key)"
        ") STRICT, WITHOUT ROWID"},
    {2, "CREATE TABLE imported_files("
        "cut_id INTEGER PRIMARY KEY REFERENCES cuts(id) ON DELETE CASCADE,"
        "modified INTEGER NOT NULL,"
        "size INTEGER NOT NULL"
        ") STRICT"},
};

void MakeSince(sqlite::Connection& cConnection, std::int64_t version)
{
    for (const Table& table : tables)
        if (table.since > version)
            cConnection.Run(table.sSql);
    cConnection.Run(("PRAGMA user_version = " + std::to_string(current)).c_str());
}

} // namespace

std::int64_t Version(sqlite::Connection& cConnection) { return cConnection.Number("PRAGMA user_version"); }

void Make(sqlite::Connection& cConnection) { MakeSince(cConnection, 0); }

void Check(sqlite::Connection& cConnection)
{
    const std::int64_t version = Version(cConnection);
    for (const Table& table : tables)
    {
        sqlite::Statement found(cConnection, "SELECT count(*) FROM sqlite_schema WHERE sql = ?");
        found.Bind(1, TextFromStore(table.sSql)).Step();
        if (table.since <= version && found.Number(0) != 1)
            cConnection.Fail(SQLITE_CORRUPT);
    }
}

void BringUpToDate(sqlite::Connection& cConnection)
{
    if (Version(cConnection) == current || sqlite3_db_readonly(cConnection.Handle(), "main") != 0)
        return;
    sqlite::Transaction cTransaction(cConnection, sqlite::Transaction::Wait::Command);
    const std::int64_t version = Version(cConnection); // another program may have been quicker
    if (version < current)
        MakeSince(cConnection, version);
    cTransaction.Commit();
}

} // namespace ravlo::layout

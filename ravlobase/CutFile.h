// SPDX-License-Identifier: MIT
#pragma once

#include "media/CutValues.h"
#include "ravlobase/ImportStamp.h"
#include "ravlobase/PlayRecord.h"
#include "ravlobase/Sqlite.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A cut as the file has it.
struct StoredCut
{
    std::int32_t lID;
    CutValues values;
};

// The database file (docs/formats/database.md): the only place that knows its tables. Every failure is a
// RuntimeError.
class CutFile
{
public:
    // Opens the file, or creates a missing one, and reads its cuts into colCuts, in the file's order. Brings
    // a file of an older version up to date. Throws error 321 for a file that is damaged, or belongs to
    // another program or a newer version; the file then keeps every byte.
    CutFile(const std::wstring& sFile, std::vector<StoredCut>& colCuts);

    // Whether another program has changed the file since it was last read. Cheap.
    bool ChangedByOthers();
    // The file's cuts as of now, in its order.
    std::vector<StoredCut> Read();
    // The plays from dtFrom until before dtTo, in the order of their times.
    void ForEachPlay(DateTime dtFrom, DateTime dtTo, const std::function<void(const RecordedPlay&)>& visit);
    // The stamps of imported files, by the numbers of their cuts.
    std::unordered_map<std::int32_t, ImportStamp> ImportStamps();

    // Precondition of each: a transaction.
    std::int32_t Insert(const CutValues& values); // returns the new cut's ID
    void Update(std::int32_t lID, const CutValues& old, const CutValues& next);
    void Delete(std::int32_t lID);
    // Skips a cut that the file does not contain.
    void UpdateLastPlayed(std::int32_t lID, DateTime dtWhen);
    // The same play twice is one record: the first one.
    void InsertPlay(const PlayRecord& play);
    void PutImportStamp(std::int32_t lID, const ImportStamp& stamp);

    sqlite::Connection& Sql() noexcept { return m_cConnection; }

private:
    sqlite::Statement& Prepared(const std::string& sSql);
    void WriteCategories(std::int32_t lID, const CutValues& values);
    std::int64_t DataVersion();
    bool HasLayout2(); // not in an older file that can only be read

    sqlite::Connection m_cConnection;
    std::int64_t m_read = 0; // SQLite's number of the state last read
    std::unordered_map<std::string, sqlite::Statement> m_statements;
};

// Whether all values but the keys are equal.
bool SameValues(const CutValues& left, const CutValues& right);

} // namespace ravlo

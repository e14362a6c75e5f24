// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/Sqlite.h"
#include "ravlobase/StoreCut.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A cut as it stands in the file.
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
    // Opens the file, and makes it when it is missing. Puts its cuts into colCuts, in the file's order. A
    // file that is damaged, belongs to another program or to a newer version is refused with error 321 and
    // stays as it is, byte for byte.
    CutFile(const std::wstring& sFile, std::vector<StoredCut>& colCuts);

    // Whether another program has changed the file since the last Read or, before one, since the opening.
    // Costs next to nothing.
    bool ChangedByOthers();
    // The cuts as the file has them now, in its order.
    std::vector<StoredCut> Read();

    // Each of these is to be called inside a transaction.
    std::int32_t Insert(const CutValues& values); // the new cut's ID
    void Update(std::int32_t lID, const CutValues& old, const CutValues& next);
    void Delete(std::int32_t lID);
    // Passes over a cut that the file does not hold.
    void UpdateLastPlayed(std::int32_t lID, DateTime dtWhen);

    sqlite::Connection& Sql() noexcept { return m_cConnection; }

private:
    // The cuts of one moment, after the file has proved sound.
    std::vector<StoredCut> ReadSound(const std::wstring& sFile);
    sqlite::Statement& Prepared(const std::string& sSql);
    void WriteCategories(std::int32_t lID, const CutValues& values);

    std::int64_t DataVersion();

    sqlite::Connection m_cConnection;
    std::int64_t m_read = 0; // SQLite's number of the state that was read last
    std::unordered_map<std::string, sqlite::Statement> m_statements;
};

// Whether a file would hold the two alike.
bool SameValues(const CutValues& left, const CutValues& right) noexcept;

} // namespace ravlo

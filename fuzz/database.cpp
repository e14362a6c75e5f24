// SPDX-License-Identifier: MIT
// A damaged database file, with or without a log: it is refused and keeps every byte, or it opens, and then
// its content can be changed and read again.
//
// An input is a list of mishaps to a good file, each a kind, then what it takes:
//   0 offset(2) length(1) bytes    the file is overwritten        1 ...    its log is
//   2 length(2)                    the file is cut off            3 ...    its log is
//   4 length(1) bytes              the file has a tail            5 ...    its log has
//   6 row(1) column(1) length(1) bytes        a text of a cut is another
//   7 row(1) column(1) value(8)               a number of a cut is another
#include "fuzz/Stored.h"
#include "fuzz/TempFolder.h"

#include "base/RuntimeError.h"

#include <sqlite3.h>

#include <array>

namespace ravlo::fuzz
{

namespace
{

constexpr const char* sName = "station.db";
constexpr const char* sLogName = "station.db-wal";

struct StoredFiles
{
    std::string file;
    std::string log;
};

void Put(const TempFolder& cFolder, const StoredFiles& files)
{
    cFolder.Write("station.db-shm", {});
    cFolder.Write(sName, files.file);
    cFolder.Write(sLogName, files.log);
}

// A sound database whose last change is in its log.
StoredFiles SoundStore(const TempFolder& cFolder)
{
    Put(cFolder, {});
    Store cStore;
    cStore.Open(cFolder.File(sName));
    Cuts colCuts;
    for (int lCut = 0; lCut < 6; ++lCut)
    {
        colCuts.push_back(cStore.NewCut());
        colCuts.back()->SetKey(L"D:\\Music\\" + std::to_wstring(lCut) + L".mp3");
        colCuts.back()->SetArtist(L"Artist \x97F3 " + std::to_wstring(lCut / 2));
        colCuts.back()->SetTitle(L"Title");
        colCuts.back()->SetCategoryText(lCut % 2 == 0 ? L"Pop" : L"Rock/R&B");
        colCuts.back()->SetCatLevel(lCut % 3 + 1);
        colCuts.back()->SetDurationmS(180'000);
    }
    cStore.AddCuts(colCuts);
    cStore.Close(); // moves the log into the file
    cStore.Open(cFolder.File(sName));
    cStore.AllCuts()[2]->SetTitle(L"Another");
    return {cFolder.Read(sName), cFolder.Read(sLogName)};
}

// Parses an input; what is missing at its end is 0 or empty.
class Input
{
public:
    explicit Input(std::string_view bytes) : m_bytes(bytes) {}
    bool AtEnd() const { return m_bytes.empty(); }
    std::uint64_t Number(int lBytes)
    {
        std::uint64_t value = 0;
        for (; lBytes > 0 && !m_bytes.empty(); --lBytes, m_bytes.remove_prefix(1))
            value = value << 8 | static_cast<unsigned char>(m_bytes.front());
        return value;
    }
    std::string_view Bytes()
    {
        const auto lLength = Number(1);
        const std::string_view taken = m_bytes.substr(0, lLength);
        m_bytes.remove_prefix(taken.size());
        return taken;
    }

private:
    std::string_view m_bytes;
};

void Overwrite(std::string& file, std::size_t at, std::string_view bytes)
{
    for (std::size_t byte = 0; byte < bytes.size() && at + byte < file.size(); ++byte)
        file[at + byte] = bytes[byte];
}

// Sets a value of the file that none of our programs would write.
template <class Bind>
void Set(const TempFolder& cFolder, StoredFiles& files, const std::string& sSql, std::uint64_t row, Bind bind)
{
    Put(cFolder, files);
    sqlite3* pDatabase = nullptr;
    sqlite3_stmt* pStatement = nullptr;
    sqlite3_open((std::filesystem::path(cFolder.File(sName))).c_str(), &pDatabase);
    sqlite3_exec(pDatabase, "PRAGMA ignore_check_constraints=ON", nullptr, nullptr, nullptr);
    if (sqlite3_prepare_v2(pDatabase, sSql.c_str(), -1, &pStatement, nullptr) == SQLITE_OK)
    {
        bind(pStatement);
        sqlite3_bind_int64(pStatement, 2, static_cast<sqlite3_int64>(row % 6));
        sqlite3_step(pStatement);
    }
    sqlite3_finalize(pStatement);
    files = {cFolder.Read(sName), cFolder.Read(sLogName)};
    sqlite3_close(pDatabase);
}

void SetText(const TempFolder& cFolder, StoredFiles& files, Input& input)
{
    static constexpr std::array columns = {"cut_key", "folded_key", "path",  "secondary_key",
                                           "artist",  "title",      "album", "name"};
    const auto row = input.Number(1);
    const std::string sColumn = columns[input.Number(1) % columns.size()];
    const std::string_view bytes = input.Bytes();
    const std::string sSql =
        sColumn == "name"
            ? "UPDATE cut_categories SET name=? WHERE cut_id=(SELECT id FROM cuts LIMIT 1 OFFSET ?)"
            : "UPDATE cuts SET " + sColumn + "=? WHERE id=(SELECT id FROM cuts LIMIT 1 OFFSET ?)";
    Set(cFolder, files, sSql, row, [&](sqlite3_stmt* pStatement) {
        sqlite3_bind_text(pStatement, 1, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
    });
}

void SetNumber(const TempFolder& cFolder, StoredFiles& files, Input& input)
{
    static constexpr std::array columns = {"id",          "year",      "run_time_ms", "duration_ms",
                                           "last_played", "cat_level", "opener",      "position"};
    const auto row = input.Number(1);
    const std::string sColumn = columns[input.Number(1) % columns.size()];
    const auto value = static_cast<sqlite3_int64>(input.Number(8));
    const std::string sSql =
        sColumn == "position"
            ? "UPDATE cut_categories SET position=? WHERE cut_id=(SELECT id FROM cuts LIMIT 1 OFFSET ?)"
            : "UPDATE cuts SET " + sColumn + "=? WHERE id=(SELECT id FROM cuts LIMIT 1 OFFSET ?)";
    Set(cFolder, files, sSql, row,
        [&](sqlite3_stmt* pStatement) { sqlite3_bind_int64(pStatement, 1, value); });
}

StoredFiles HarmedStore(const TempFolder& cFolder, StoredFiles files, Input input)
{
    while (!input.AtEnd())
    {
        const auto lKind = input.Number(1) % 8;
        std::string& target = lKind % 2 == 0 ? files.file : files.log;
        if (lKind < 2)
        {
            const auto at = input.Number(2);
            Overwrite(target, at, input.Bytes());
        }
        else if (lKind < 4)
            target.resize(std::min(target.size(), std::size_t{input.Number(2)}));
        else if (lKind < 6)
            target += input.Bytes();
        else if (lKind == 6)
            SetText(cFolder, files, input);
        else
            SetNumber(cFolder, files, input);
    }
    return files;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    static const TempFolder cFolder;
    static const fuzz::StoredFiles good = SoundStore(cFolder);
    const fuzz::StoredFiles harmed = HarmedStore(cFolder, good, Input(fuzz::BytesOf(pBytes, size)));
    Put(cFolder, harmed);
    if (harmed.file.empty())
        return 0; // a missing file is created

    Store cStore;
    try
    {
        cStore.Open(cFolder.File(sName));
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::InvalidFileFormat);
        RAVLO_REQUIRE(!cStore.IsOpen());
        RAVLO_REQUIRE(cFolder.Read(sName) == harmed.file);
        RAVLO_REQUIRE(cFolder.Read(sLogName) == harmed.log);
        return 0;
    }
    ContentOf(cStore);
    const Cuts colCuts = cStore.AllCuts();
    if (!colCuts.empty())
        colCuts.back()->SetTitle(L"Changed");
    const std::vector<std::wstring> colContent = ContentOf(cStore);
    cStore.Close();
    cStore.Open(cFolder.File(sName));
    RAVLO_REQUIRE(ContentOf(cStore) == colContent);
    return 0;
}

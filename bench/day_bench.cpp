// SPDX-License-Identifier: MIT
// The cost of a slot of a planned day with the embedded database, with plays written together once a second.
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "ravlobase/Sqlite.h"
#include "ravlobase/Store.h"
#include "scheduler/clsSchedMan.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>

namespace ravlo::bench
{

namespace
{

using SteadyClock = std::chrono::steady_clock;

constexpr double dSlotDays = 3.0 / (24 * 60);

constexpr int lSlots = 1'000; // a round: a few days
constexpr std::int64_t lineScatter = 7'919;

// A folder of the program's own, deleted at its end.
struct Folder
{
    Folder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlo-bench-XXXXXX").string();
        cPath = mkdtemp(sPattern.data());
    }
    ~Folder() { std::filesystem::remove_all(cPath); }
    std::filesystem::path cPath;
};

// A station on a database file, whose picks go through its levels in turn. Pauses, pumps and order files cost
// nothing.
struct FileStation
{
    explicit FileStation(std::int64_t cuts)
    {
        Cuts colCuts;
        for (std::int64_t i = 0; i < cuts; ++i)
        {
            // A factor coprime to the count scatters each artist's cuts over the orders.
            colCuts.push_back(LibraryCut(i * lineScatter % cuts));
        }
        cStore->Open(sFile);
        cStore->AddCuts(colCuts);
        cSchedMan->PopulateFromDataBase(cStore, L"C:\\Host");
        cSchedMan->SetRotatesAllowed(true);
        for (int lCategory = 0; lCategory < 6; ++lCategory)
        {
            for (const auto* sLevel : {L"1", L"2", L"3", L"4"})
            {
                if (cSchedMan->colCuts(L"Category " + std::to_wstring(lCategory), std::stoi(sLevel)))
                    colKeys.push_back(L"Category " + std::to_wstring(lCategory) + L"\t" + sLevel);
            }
        }
        // The first pick of each level does one-time work that is not part of a slot.
        for (std::size_t i = 0; i < 2 * colKeys.size(); ++i)
            Pick();
    }
    static FileStation& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<FileStation>> colStations;
        auto& cState = colStations[cuts];
        if (!cState)
            cState = std::make_unique<FileStation>(cuts);
        return *cState;
    }

    // The cut of the next slot, which starts at dtNow.
    std::shared_ptr<Cut> Pick()
    {
        dtNow += dSlotDays;
        const auto cPrevious = cStore->NewCut();
        cPrevious->SetLastPlayed(dtNow);
        return cSchedMan->NextCutFromRotation({colKeys[next++ % colKeys.size()], false, cPrevious}, false)
            .cCut;
    }

    Folder folder;
    std::wstring sFile = (folder.cPath / "library.db").wstring();
    MemoryPorts context;
    NoFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<Store> cStore = std::make_shared<Store>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
    std::vector<std::wstring> colKeys;
    std::size_t next = 0;
    DateTime dtNow = 47'000;
};

// Tells when a second has passed.
class EverySecond
{
public:
    bool Passed()
    {
        const auto now = SteadyClock::now();
        if (now - m_last < std::chrono::seconds(1))
            return false;
        m_last = now;
        return true;
    }

private:
    SteadyClock::time_point m_last = SteadyClock::now();
};

// Pick, play, report, as a host plans a day.
void Slots(benchmark::State& state)
{
    auto& station = FileStation::OfSize(state.range(0));
    station.cStore->BeginGathering();
    EverySecond second;
    for (auto _ : state)
        for (int l = 0; l < lSlots; ++l)
        {
            const auto cCut = station.Pick();
            cCut->SetLastPlayed(station.dtNow);
            station.cSchedMan->UpdateArtistTitleHistory(cCut);
            if (second.Passed())
                station.cStore->WriteGathered();
        }
    station.cStore->EndGathering();
    state.SetItemsProcessed(state.iterations() * lSlots);
}

// The pick alone, and one row updated in a transaction that is committed once a second.
void PicksAndRows(benchmark::State& state)
{
    auto& station = FileStation::OfSize(state.range(0));
    sqlite::Connection cConnection((station.folder.cPath / "library.db").string(), L"",
                                   sqlite::Connection::Mode::Existing);
    cConnection.Run("PRAGMA synchronous = FULL");
    sqlite::Statement statement(cConnection, "UPDATE cuts SET last_played = ? WHERE id = ?");
    EverySecond second;
    cConnection.Run("BEGIN");
    for (auto _ : state)
        for (int l = 0; l < lSlots; ++l)
        {
            const auto cCut = station.Pick();
            statement.Bind(1, station.dtNow).Bind(2, std::int64_t{cCut->ID()}).Run();
            if (second.Passed())
                cConnection.Run("COMMIT; BEGIN");
        }
    cConnection.Run("COMMIT");
    state.SetItemsProcessed(state.iterations() * lSlots);
}

const bool bDayAdded = AddRatio({"a slot of a day with the embedded database",
                                 "a pick and a row updated in a batch",
                                 {1'000, 10'000, 100'000},
                                 &Slots,
                                 &PicksAndRows,
                                 3.0});

} // namespace

} // namespace ravlo::bench

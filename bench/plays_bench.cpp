// SPDX-License-Identifier: MIT
// The plays column of the library window: reading the record of plays of the embedded database, compared with
// counting the same keys in a hash map.
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "ravlobase/Store.h"
#include "ui/library/RecentPlays.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>

namespace ravlo::bench
{

namespace
{

constexpr std::int64_t libraryCuts = 100'000;
constexpr DateTime dtNow = 46'000;

// A library whose cuts played in turn, that many a day, for twice as long as the window shows.
class PlayedStation
{
public:
    explicit PlayedStation(std::int64_t playsADay) : m_cFolder(NewFolder())
    {
        m_context.cClock.SetNow(dtNow);
        m_cStore.Open((m_cFolder / "station.db").wstring());
        Cuts colCuts;
        for (std::int64_t number = 0; number < libraryCuts; ++number)
            colCuts.push_back(LibraryCut(number));
        m_cStore.AddCuts(colCuts);
        const std::int64_t shown = static_cast<std::int64_t>(RecentPlays::dDays) * playsADay;
        m_cStore.BeginGathering();
        for (std::int64_t play = 0; play < 2 * shown; ++play)
        {
            const auto& cCut = colCuts[static_cast<std::size_t>(play * 31 % libraryCuts)];
            m_cStore.CutByKey(cCut->Key())
                ->SetLastPlayed(dtNow - static_cast<double>(play + 1) / static_cast<double>(playsADay));
            if (play < shown)
                colPlayed.push_back(cCut->Key());
        }
        m_cStore.EndGathering();
    }
    ~PlayedStation()
    {
        m_cStore.Close();
        std::filesystem::remove_all(m_cFolder);
    }
    PlayedStation(const PlayedStation&) = delete;
    PlayedStation& operator=(const PlayedStation&) = delete;

    // What the window does first, and once an hour.
    std::optional<RecentPlays::Number> Read()
    {
        RecentPlays cPlays(m_cMod);
        cPlays.Recorded = [this](DateTime dtFrom, DateTime dtTo) { return m_cStore.PlaysCsv(dtFrom, dtTo); };
        return cPlays.Of(colPlayed.front());
    }

    std::vector<TextKey> colPlayed; // within the days

private:
    static std::filesystem::path NewFolder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlo-plays-XXXXXX").string();
        return mkdtemp(sPattern.data());
    }

    std::filesystem::path m_cFolder;
    MemoryPorts m_context;
    NoFiles m_cFiles;
    ModScheduler m_cMod{m_context.PortsWith(m_cFiles)};
    Store m_cStore;
};

PlayedStation& StationOf(std::int64_t playsADay)
{
    static std::map<std::int64_t, std::unique_ptr<PlayedStation>> colAll;
    auto& cStation = colAll[playsADay];
    if (!cStation)
        cStation = std::make_unique<PlayedStation>(playsADay);
    return *cStation;
}

void ReadPlays(benchmark::State& state)
{
    PlayedStation& cStation = StationOf(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(cStation.Read());
    state.SetItemsProcessed(state.iterations() * std::ssize(cStation.colPlayed));
}

void CountKeys(benchmark::State& state)
{
    const PlayedStation& cStation = StationOf(state.range(0));
    for (auto _ : state)
    {
        std::unordered_map<TextKey, std::size_t> colCounts;
        for (const TextKey& cKey : cStation.colPlayed)
            ++colCounts[cKey];
        benchmark::DoNotOptimize(colCounts);
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(cStation.colPlayed));
}

const bool bPlays = AddRatio({"the plays of 28 days of 100 000 cuts, per play",
                              "counting the same keys in a hash map",
                              {360, 1'000},
                              &ReadPlays,
                              &CountKeys,
                              30});

} // namespace

} // namespace ravlo::bench

// SPDX-License-Identifier: MIT
// What simulated days cost compared with the picks they consist of, and what reading and judging them costs.

#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "forecast/Health.h"
#include "forecast/Simulation.h"
#include "forecast/StationCopy.h"
#include "plan/SlotTimes.h"

#include <map>
#include <unordered_set>

namespace ravlo::bench
{

namespace
{

constexpr std::int64_t artistScatter = 7'919; // scatters each artist's cuts over the orders
constexpr int lCategories = 6;
constexpr int lLevels = 4;
constexpr std::int32_t lDurationmS = 180'000;
constexpr DateTime dtStart = 46'000.25;

// A station whose cuts all played on the day before, and a clock of all its levels.
struct Station
{
    explicit Station(std::int64_t cuts)
    {
        for (int category = 0; category < lCategories; ++category)
        {
            const std::wstring sName = L"Category " + std::to_wstring(category);
            snapshot->mainCats.push_back(sName);
            for (int level = 1; level <= lLevels; ++level)
            {
                snapshot->levels.push_back({sName, level, {.lTitle = 120, .lArtist = 60}, {}});
                plan.AddSlot({sName, level});
            }
        }
        for (std::int64_t i = 0; i < cuts; ++i)
        {
            const std::int64_t number = i * artistScatter % cuts;
            const std::shared_ptr<Cut> cCut = MadeUpCut(number);
            const CutNumber added = snapshot->Add({{cCut->Key(), cCut->ArtistKey(), cCut->TitleKey(),
                                                    cCut->AlbumKey(), 0, lDurationmS, dtStart - 1, false},
                                                   cCut->Path()});
            snapshot->levels[static_cast<std::size_t>(number % (long{lCategories} * lLevels))]
                .order.push_back(added);
            snapshot->played.push_back(added);
            EnterPlay(added);
        }
    }
    static Station& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<Station>> colStations;
        std::unique_ptr<Station>& cStation = colStations[cuts];
        if (!cStation)
            cStation = std::make_unique<Station>(cuts);
        return *cStation;
    }

    // As the last play of its title, and of its artist and album unless another cut is.
    void EnterPlay(CutNumber played)
    {
        const PlainCutValues& cut = snapshot->cuts[played].values;
        PlayLists<CutNumber>& history = snapshot->history;
        if (m_colEntered.insert(cut.cArtist).second)
            history.artists.push_back({cut.cArtist, played});
        if (m_colEntered.insert(cut.cAlbum).second)
            history.albums.push_back({cut.cAlbum, played});
        history.titles.push_back({cut.cTitle, played});
        history.reports.push_back({{cut.cArtist, cut.cTitle}, played, played});
    }

    Radio radio{0};
    std::shared_ptr<StationSnapshot> snapshot = std::make_shared<StationSnapshot>();
    Plan plan;

private:
    std::unordered_set<TextKey> m_colEntered; // artists and albums
};

template <int lDays, bool bFair> void Simulated(benchmark::State& state)
{
    Station& station = Station::OfSize(state.range(0));
    std::size_t rows = 0;
    for (auto _ : state)
        rows += Simulate(station.radio.cMod, station.snapshot, station.plan, dtStart, lDays, {bFair, {}})
                    .rows.size();
    state.SetItemsProcessed(static_cast<std::int64_t>(rows));
}

template <int lDays> void Judged(benchmark::State& state)
{
    Station& station = Station::OfSize(state.range(0));
    const SimulationResult result =
        Simulate(station.radio.cMod, station.snapshot, station.plan, dtStart, lDays);
    for (auto _ : state)
        benchmark::DoNotOptimize(HealthOf(result));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(result.rows.size()));
}

// The same picks from a copy that is kept.
template <int lDays, bool bFair> void Picks(benchmark::State& state)
{
    Station& station = Station::OfSize(state.range(0));
    std::int64_t rows = 0;
    StationCopy copy(
        station.radio.cMod, *station.snapshot, {.bFairRotation = bFair}, [](const TraceStep&) {}, [] {});
    DateTime dtNow = dtStart;
    for (auto _ : state)
    {
        FillClock(station.plan.Slots(), dtNow, Later(dtNow, lDays * 86'400'000LL),
                  [&](const Slot& slot, DateTime dtAt) {
            benchmark::DoNotOptimize(copy.Play(slot, dtAt));
            ++rows;
            return EndOfSlot(dtAt, lDurationmS);
        });
        dtNow = Later(dtNow, lDays * 86'400'000LL);
    }
    state.SetItemsProcessed(rows);
}

// One level of all cuts.
void TakenSnapshot(benchmark::State& state)
{
    Radio& radio = Radio::OfSize(state.range(0));
    const auto cMainCat = std::make_shared<clsCat>(radio.cMod, L"Pop", 0);
    cMainCat->SubCats()->Add(TextKey(L"1"), radio.cLevel);
    CatCollection colMainCats;
    colMainCats.Add(TextKey(CategoryKey(L"Pop", 0)), cMainCat);
    for (auto _ : state)
        benchmark::DoNotOptimize(TakeSnapshot(radio.cMod, colMainCats, radio.cHistory));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Copies of the cuts, found by key, artist, title and album.
void CopiedCuts(benchmark::State& state)
{
    const Cuts colCuts = Radio::OfSize(state.range(0)).cDataBase->AllCuts();
    for (auto _ : state)
    {
        std::unordered_map<TextKey, std::shared_ptr<Cut>> maps[4];
        for (const std::shared_ptr<Cut>& cCut : colCuts)
        {
            const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
            maps[0].emplace(cCut->Key(), cCopy);
            maps[1].insert_or_assign(cCut->ArtistKey(), cCopy);
            maps[2].insert_or_assign(cCut->TitleKey(), cCopy);
            maps[3].insert_or_assign(cCut->AlbumKey(), cCopy);
        }
        benchmark::DoNotOptimize(maps);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr const char* sPicks = "the same picks from a copy that is kept";
const bool bForecastAdded =
    AddRatio({"a simulated week, per slot",
              sPicks,
              {1'000, 5'000},
              &Simulated<7, false>,
              &Picks<7, false>,
              4.0}) &&
    AddRatio({"a simulated week with fair rotation, per slot",
              sPicks,
              {1'000, 5'000},
              &Simulated<7, true>,
              &Picks<7, true>,
              4.0}) &&
    AddRatio(
        {"28 simulated days, per slot", sPicks, {33'000}, &Simulated<28, false>, &Picks<28, false>, 6.0}) &&
    AddRatio({"the figures of a simulated week, per slot",
              "simulating it",
              {1'000, 5'000, 33'000},
              &Judged<7>,
              &Simulated<7, false>,
              1.5}) &&
    AddRatio({"a snapshot of a station, per cut",
              "clones in four hash maps",
              {5'000, 33'000},
              &TakenSnapshot,
              &CopiedCuts,
              4.0});

} // namespace

} // namespace ravlo::bench

// SPDX-License-Identifier: MIT
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "platform/posix/PosixFiles.h"
#include "scheduler/HistoryFiles.h"
#include "scheduler/Population.h"
#include "scheduler/StationFolder.h"

#include <cstdlib>
#include <filesystem>
#include <map>

namespace ravlo::bench
{

namespace
{

// A library of a typical station.
struct Library
{
    explicit Library(std::int64_t cuts)
    {
        cMod.StoreAppPath(L"C:\\Host");
        for (std::int64_t i = 0; i < cuts; ++i)
            cDataBase->Add(LibraryCut(i));
    }
    static Library& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<Library>> colLibraries;
        std::unique_ptr<Library>& cLibrary = colLibraries[cuts];
        if (!cLibrary)
            cLibrary = std::make_unique<Library>(cuts);
        return *cLibrary;
    }

    MemoryPorts context;
    NoFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<RadioDataBase> cDataBase = std::make_shared<RadioDataBase>();
};

void Populate(benchmark::State& state)
{
    Library& library = Library::OfSize(state.range(0));
    for (auto _ : state)
    {
        EventRelay cEvents(library.cMod);
        CategoryList cCategoryList(library.cMod);
        HistoryFiles cHistoryFiles(library.cMod, cEvents);
        PlacedCuts cPlacedCuts;
        Population cPopulation(library.cMod, cEvents, cCategoryList, cHistoryFiles, cPlacedCuts);
        benchmark::DoNotOptimize(cPopulation.Build(*library.cDataBase, library.cMod.AppPath()));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Every cut into one map by its path and into one vector.
void FillMapAndVector(benchmark::State& state)
{
    const Library& library = Library::OfSize(state.range(0));
    for (auto _ : state)
    {
        std::unordered_map<std::wstring, std::shared_ptr<Cut>> colByPath;
        Cuts colOrder;
        for (const std::shared_ptr<Cut>& cCut : library.cDataBase->AllCuts())
        {
            colByPath.emplace(cCut->Path(), cCut);
            colOrder.push_back(cCut);
        }
        benchmark::DoNotOptimize(colByPath);
        benchmark::DoNotOptimize(colOrder);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// One main category with one level on a real disk, in a folder that is deleted at the end.
struct StationOnDisk
{
    explicit StationOnDisk(std::int64_t cuts)
    {
        sFolder = (std::filesystem::temp_directory_path() / "ravlo-bench-XXXXXX").string();
        if (!mkdtemp(sFolder.data()))
            std::abort();
        cMod.StoreAppPath(std::wstring(sFolder.begin(), sFolder.end()));
        CreateFolders(cMod, cMod.AppPath());
        bool bCreated = false;
        for (std::int64_t i = 0; i < cuts; ++i)
            colMainCats.At(0)->AddCut(MadeUpCut(i), bCreated);
        cHistoryFiles.Save(colMainCats.At(0), {.bProgress = false});
        sFile = cMod.AppPath() + L"Scheduler\\History_and_Ordering\\Pop.sif";
        sOther = cMod.AppPath() + L"Scheduler\\other.bin";
        bytes = cFiles.ReadAll(sFile);
    }
    ~StationOnDisk() { std::filesystem::remove_all(sFolder); }
    static StationOnDisk& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<StationOnDisk>> colStations;
        std::unique_ptr<StationOnDisk>& cState = colStations[cuts];
        if (!cState)
            cState = std::make_unique<StationOnDisk>(cuts);
        return *cState;
    }

    std::string sFolder;
    MemoryPorts context;
    PosixFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    EventRelay cEvents{cMod};
    HistoryFiles cHistoryFiles{cMod, cEvents};
    CatCollection colMainCats = OnePop(cMod);
    std::wstring sFile;
    std::wstring sOther;
    std::string bytes;

    static CatCollection OnePop(ModScheduler& cMod)
    {
        CatCollection colCats;
        colCats.Add(TextKey(CategoryKey(L"Pop", 0)), std::make_shared<clsCat>(cMod, L"Pop", 0));
        return colCats;
    }
};

void SaveOrder(benchmark::State& state)
{
    StationOnDisk& station = StationOnDisk::OfSize(state.range(0));
    for (auto _ : state)
        station.cHistoryFiles.Save(station.colMainCats.At(0), {.bProgress = false});
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void WriteSameBytes(benchmark::State& state)
{
    StationOnDisk& station = StationOnDisk::OfSize(state.range(0));
    for (auto _ : state)
        ReplaceFile(station.cFiles, station.sOther, station.bytes);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void LoadOrder(benchmark::State& state)
{
    StationOnDisk& station = StationOnDisk::OfSize(state.range(0));
    for (auto _ : state)
        station.cHistoryFiles.ApplyHistory(station.colMainCats, station.cMod.AppPath());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ReadSameBytes(benchmark::State& state)
{
    StationOnDisk& station = StationOnDisk::OfSize(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(station.cFiles.ReadAll(station.sFile));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const std::vector<std::int64_t> colFileSizes{1'000, 10'000};

const bool bPopulation = AddRatio({"population, per cut",
                                   "insert into one hash map and one vector",
                                   {1'000, 10'000, 100'000},
                                   &Populate,
                                   &FillMapAndVector,
                                   3.0});
const bool bSave =
    AddRatio({"save of an order file, per cut", "one write of the same bytes, flushed and renamed",
              colFileSizes, &SaveOrder, &WriteSameBytes, 1.5, true});
const bool bLoad = AddRatio({"load of an order file, per cut", "one read of the same bytes", colFileSizes,
                             &LoadOrder, &ReadSameBytes, 2.0});

} // namespace

} // namespace ravlo::bench

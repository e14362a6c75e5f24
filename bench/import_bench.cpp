// SPDX-License-Identifier: MIT
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "scheduler/clsSchedMan.h"

#include <map>

namespace ravlo::bench
{

namespace
{

constexpr std::int64_t openCuts = 10'000;

// Cuts of the typical library from number first on, created once per size.
const Cuts& CutsOf(std::int64_t first, std::int64_t count)
{
    static std::map<std::pair<std::int64_t, std::int64_t>, Cuts> colAll;
    Cuts& colCuts = colAll[{first, count}];
    for (std::int64_t i = std::ssize(colCuts); i < count; ++i)
        colCuts.push_back(LibraryCut(first + i));
    return colCuts;
}

// The order files of a station, for reading; drops what is written. Shared by all stations of a size.
class SavedOrders final : public NoFiles
{
public:
    // Keeps the orders that a station writes.
    bool bKeep = false;

    Presence PresenceOf(const std::wstring& sPath) const override
    {
        return m_colFiles.contains(sPath) ? Presence::Present : NoFiles::PresenceOf(sPath);
    }
    std::string ReadAll(const std::wstring& sPath, Patience = Patience::UpToASecond) const override
    {
        return m_colFiles.at(sPath);
    }
    void WriteNew(const std::wstring&, std::string_view bytes) override
    {
        if (bKeep)
            m_written = bytes;
    }
    void Rename(const std::wstring&, const std::wstring& sPath, Patience = Patience::UpToASecond) override
    {
        if (bKeep)
            m_colFiles[sPath] = std::exchange(m_written, {});
    }

private:
    std::map<std::wstring, std::string> m_colFiles;
    std::string m_written;
};

// A manager on the air with a library of that many cuts. Pauses and pumps cost nothing here.
struct OpenStation
{
    OpenStation(std::int64_t cuts, SavedOrders& cSavedOrders) : cFiles(cSavedOrders)
    {
        for (const std::shared_ptr<Cut>& cCut : CutsOf(0, cuts))
            cDataBase->Add(cCut);
    }
    // A station whose orders were saved before.
    explicit OpenStation(std::int64_t cuts) : OpenStation(cuts, OrdersOf(cuts)) {}
    void Populate() { cSchedMan->PopulateFromDataBase(cDataBase, L"C:\\Host"); }

    static SavedOrders& OrdersOf(std::int64_t cuts)
    {
        static std::map<std::int64_t, SavedOrders> colOrders;
        const auto [found, bNew] = colOrders.try_emplace(cuts);
        SavedOrders& cOrders = found->second;
        if (bNew)
        {
            OpenStation cState(cuts, cOrders);
            cState.Populate();
            cOrders.bKeep = true;
            cState.cSchedMan->SaveHistoryAndOrdering(nullptr);
            cOrders.bKeep = false;
        }
        return cOrders;
    }

    MemoryPorts context;
    SavedOrders& cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<RadioDataBase> cDataBase = std::make_shared<RadioDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
};

// One announcement of new cuts to a station that has some.
void ImportCuts(benchmark::State& state, std::int64_t cuts)
{
    const Cuts& colNew = CutsOf(openCuts, cuts);
    for (auto _ : state)
    {
        state.PauseTiming();
        auto cState = std::make_unique<OpenStation>(openCuts);
        cState->Populate();
        state.ResumeTiming();
        cState->cDataBase->AnnounceAdded(colNew);
        state.PauseTiming();
        cState.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * cuts);
}

void Import(benchmark::State& state) { ImportCuts(state, state.range(0)); }
void ImportHalf(benchmark::State& state) { ImportCuts(state, state.range(0) / 2); }

void Populate(benchmark::State& state)
{
    for (auto _ : state)
    {
        state.PauseTiming();
        auto cState = std::make_unique<OpenStation>(state.range(0));
        state.ResumeTiming();
        cState->Populate();
        state.PauseTiming();
        cState.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bImportAdded = AddRatio({"import into a station of 10 000 cuts, per cut",
                                    "population with its saved orders, per cut",
                                    {10'000, 20'000},
                                    &Import,
                                    &Populate,
                                    2.0});
const bool bLinear = AddRatio(
    {"import of n cuts, per cut", "import of n / 2 cuts, per cut", {20'000}, &Import, &ImportHalf, 1.3});

} // namespace

} // namespace ravlo::bench

// SPDX-License-Identifier: MIT
// The cost of a simulated week through COM: reading the station, playing the week, judging it, and reading
// every value that a report needs. Processor time in milliseconds, next to the same work without COM on the
// same database. Prints a table and exits with 1 when a time or a ratio is above its limit.
#include "bench/Radio.h"
#include "bench/windows/ComBench.h"
#include "comkit/Collection.h"
#include "forecast/clsRotation.h"
#include "ravlobase/Store.h"

#include <RavloScheduler.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>

namespace ravlo::bench
{

namespace
{

constexpr DateTime dtStart = 46'000.25;
constexpr int lDays = 7;
constexpr int lRuns = 5;

double ProcessorMs()
{
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetProcessTimes(::GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return (std::uint64_t{time.dwHighDateTime} << 32) + time.dwLowDateTime;
    };
    return static_cast<double>(ticks(kernel) + ticks(user)) / 10'000;
}

// The least of some runs, since others run on the machine too.
template <class Work> double LeastMs(Work work)
{
    double dLeast = std::numeric_limits<double>::max();
    for (int i = 0; i < lRuns; ++i)
    {
        const double dBefore = ProcessorMs();
        work();
        dLeast = std::min(dLeast, ProcessorMs() - dBefore);
    }
    return dLeast;
}

// Six categories with four levels each; every cut played a day ago.
void Fill(const std::wstring& sFile, std::int64_t cuts)
{
    Store store;
    store.Open(sFile);
    Cuts colCuts;
    for (std::int64_t i = 0; i < cuts; ++i)
    {
        colCuts.push_back(LibraryCut(i));
        colCuts.back()->SetDurationmS(180'000);
        colCuts.back()->SetLastPlayed(dtStart - 1);
    }
    store.AddCuts(colCuts);
}

// The library without COM.
class NativeStation
{
public:
    explicit NativeStation(const std::wstring& sFile)
    {
        const auto cStore = std::make_shared<Store>();
        cStore->Open(sFile);
        m_cManager->PopulateFromDataBase(cStore, L"C:\\Host\\");
        for (const std::shared_ptr<Cut>& cCut : cStore->AllCuts())
            m_cManager->UpdateArtistTitleHistory(cCut);
        m_cRotation.SetScheduler(m_cManager);
        for (const std::shared_ptr<clsCat>& cMainCat : *m_cManager->colMainCats())
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                m_levelKeys.push_back(CategoryKey(cSubCat->CatName(), cSubCat->CatLevel()));
        for (const std::wstring& sKey : m_levelKeys)
            m_cRotation.AddSlot(sKey, false);
    }
    const std::vector<std::wstring>& LevelKeys() const noexcept { return m_levelKeys; }
    void Week() const { m_cRotation.Simulate(dtStart, lDays, {}, {}); }
    // The week alone, the snapshot made.
    double PlayMs() const
    {
        const std::shared_ptr<const StationSnapshot> cStation =
            TakeSnapshot(m_cMod, *m_cManager->colMainCats(), m_cManager->History());
        Plan plan;
        for (const SnapshotLevel& level : cStation->levels)
            plan.AddSlot({level.sCategory, level.lLevel});
        return LeastMs([&] { Simulate(m_cMod, cStation, plan, dtStart, lDays); });
    }

private:
    MemoryPorts m_ports;
    NoFiles m_cFiles;
    mutable ModScheduler m_cMod{m_ports.PortsWith(m_cFiles)};
    std::shared_ptr<clsSchedMan> m_cManager = std::make_shared<clsSchedMan>(m_cMod);
    clsRotation m_cRotation;
    std::vector<std::wstring> m_levelKeys;
};

// The library as a host uses it.
class ComStation
{
public:
    ComStation(const std::filesystem::path& folder, const std::vector<std::wstring>& levelKeys)
    {
        ThrowIfFailed(m_cDataBase->Open(Bstr((folder / L"library.db").wstring()).Get()));
        ThrowIfFailed(
            m_cManager->PopulateFromDataBase(m_cDataBase.Get(), Bstr((folder / L"").wstring()).Get()));
        ComPtr<_clsCollection> colCuts;
        ThrowIfFailed(m_cDataBase->get_Cuts(colCuts.Receive()));
        ForEachItem(colCuts.Get(), [&](const Variant& item) {
            const auto cCut = ObjectIn<_clsCut>(item);
            ThrowIfFailed(m_cManager->UpdateArtistTitleHistory(cCut.Get()));
            Bstr sKey;
            ThrowIfFailed(cCut->get_Key(sKey.Receive()));
            m_cutKeys.push_back(sKey.Text());
        });
        ThrowIfFailed(m_cRotation->putref_Scheduler(m_cManager.Get()));
        for (const std::wstring& sKey : levelKeys)
            ThrowIfFailed(m_cRotation->AddSlot(Bstr(sKey).Get(), VARIANT_FALSE));
    }

    ComPtr<_clsSimulation> Week() const
    {
        ComPtr<_clsSimulation> cWeek;
        ThrowIfFailed(
            m_cRotation->Simulate(dtStart, lDays, Variant::Omitted(), Variant::Omitted(), cWeek.Receive()));
        return cWeek;
    }

    // Reads the figures of every level, its starved cuts, and the plays of every cut.
    void ReadFigures(_clsSimulation& cWeek) const
    {
        ComPtr<_clsCollection> colLevels;
        ThrowIfFailed(cWeek.get_Levels(colLevels.Receive()));
        ForEachItem(colLevels.Get(),
                    [](const Variant& item) { ReadLevel(*ObjectIn<_clsLevelHealth>(item)); });
        for (const std::wstring& sKey : m_cutKeys)
        {
            LONG lPlays = 0;
            ThrowIfFailed(cWeek.Plays(Bstr(sKey).Get(), nullptr, &lPlays));
        }
    }

private:
    static void ReadLevel(_clsLevelHealth& cLevel)
    {
        using GetLong = HRESULT (STDMETHODCALLTYPE _clsLevelHealth::*)(LONG*);
        for (const GetLong get : {&_clsLevelHealth::get_Cuts, &_clsLevelHealth::get_Artists,
                                  &_clsLevelHealth::get_Picks, &_clsLevelHealth::get_FewestPlays,
                                  &_clsLevelHealth::get_MostPlays, &_clsLevelHealth::get_RulesBroken,
                                  &_clsLevelHealth::get_AttainableArtistMins, &_clsLevelHealth::get_Light})
        {
            LONG lValue = 0;
            ThrowIfFailed((cLevel.*get)(&lValue));
        }
        using GetItems = HRESULT (STDMETHODCALLTYPE _clsLevelHealth::*)(_clsCollection**);
        for (const GetItems get : {&_clsLevelHealth::get_NeverPlayed, &_clsLevelHealth::get_UnderHalf})
        {
            ComPtr<_clsCollection> colStarved;
            ThrowIfFailed((cLevel.*get)(colStarved.Receive()));
            ForEachItem(colStarved.Get(), [](const Variant& item) {
                LONG lPlays = 0;
                ThrowIfFailed(ObjectIn<_clsStarved>(item)->get_Plays(&lPlays));
            });
        }
    }

    ComPtr<_clsDataBase> m_cDataBase = New<_clsDataBase>(L"RavloBase.dll", CLSID_clsDataBase);
    ComPtr<_clsSchedMan> m_cManager = New<_clsSchedMan>(L"RavloSched.dll", CLSID_clsSchedMan);
    ComPtr<_clsRotation> m_cRotation = New<_clsRotation>(L"RavloSched.dll", CLSID_clsRotation);
    std::vector<std::wstring> m_cutKeys;
};

bool Measure(std::int64_t cuts, double dLimitMs)
{
    constexpr double dLimit = 3;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / (L"ravlo_bench_forecast" + std::to_wstring(cuts));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::wstring sFile = (folder / L"library.db").wstring();
    Fill(sFile, cuts);
    std::vector<std::wstring> levelKeys;
    double dPlay = 0;
    double dNative = 0;
    {
        const NativeStation station(sFile);
        levelKeys = station.LevelKeys();
        dPlay = station.PlayMs();
        dNative = LeastMs([&] { station.Week(); });
    }
    double dWeek = 0;
    double dFigures = 0;
    {
        const ComStation station(folder, levelKeys);
        ComPtr<_clsSimulation> cWeek;
        dWeek = LeastMs([&] { cWeek = station.Week(); });
        dFigures = LeastMs([&] { station.ReadFigures(*cWeek); });
    }
    std::filesystem::remove_all(folder);
    const double dCom = dWeek + dFigures;
    const double dRatio = dCom / dNative;
    const bool bWithin = dCom <= dLimitMs && dRatio <= dLimit;
    std::printf("%7lld %8.0f %10.0f %8.0f %10.0f %8.0f %8.0f %7.1f %7.1f%s\n", static_cast<long long>(cuts),
                dPlay, dNative, dWeek, dFigures, dCom, dLimitMs, dRatio, dLimit, bWithin ? "" : "  ABOVE");
    std::fflush(stdout);
    return bWithin;
}

} // namespace

} // namespace ravlo::bench

int main()
{
    using namespace ravlo::bench;
    return RunComBench([] {
        std::printf("          without COM        through COM\n");
        std::printf("%7s %8s %10s %8s %10s %8s %8s %7s %7s\n", "cuts", "playing", "everything", "Simulate",
                    "reading it", "together", "limit ms", "ratio", "limit");
        const bool bSmall = Measure(5'000, 300);
        const bool bLarge = Measure(100'000, 1'500);
        return bSmall && bLarge;
    });
}

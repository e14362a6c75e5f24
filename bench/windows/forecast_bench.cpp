// SPDX-License-Identifier: MIT
// The cost of a simulated week through COM: reading the station, playing the week, judging it, and reading
// every value that a report needs; and what advice for a level costs. Processor time in milliseconds, next to
// the same work without COM on the same database. Prints a table and exits with 1 when a time or a ratio is
// above its limit.
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
constexpr std::int32_t lTooManyMins = 100'000; // a separation that no level keeps

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

// The least of some runs, since others run on the machine too. prepare is not measured.
template <class Prepare, class Work> double LeastMs(Prepare prepare, Work work)
{
    double dLeast = std::numeric_limits<double>::max();
    for (int i = 0; i < lRuns; ++i)
    {
        prepare();
        const double dBefore = ProcessorMs();
        work();
        dLeast = std::min(dLeast, ProcessorMs() - dBefore);
    }
    return dLeast;
}
template <class Work> double LeastMs(Work work)
{
    return LeastMs([] {}, work);
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
    std::shared_ptr<const clsSimulation> Week() const { return m_cRotation.Simulate(dtStart, lDays, {}, {}); }
    // Looks for what helps the first level, which is asked too much.
    double AdviceMs() const
    {
        LevelByKey(m_cManager->colMainCats().get(), m_levelKeys.front())
            ->Rules()
            ->SetTitleSepMins(lTooManyMins);
        std::shared_ptr<const clsSimulation> cWeek;
        return LeastMs([&] { cWeek = Week(); }, [&] { cWeek->Advice(0); });
    }
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

    // As without COM.
    double AdviceMs(const std::wstring& sLevelKey) const
    {
        AskTooMuch(sLevelKey);
        ComPtr<_clsLevelHealth> cLevel;
        const auto simulate = [&] {
            ComPtr<_clsCollection> colLevels;
            ThrowIfFailed(Week()->get_Levels(colLevels.Receive()));
            Variant level;
            ThrowIfFailed(colLevels->get_Item(Variant(sLevelKey), &level));
            cLevel = ObjectIn<_clsLevelHealth>(level);
        };
        return LeastMs(simulate, [&] {
            ComPtr<_clsCollection> colTexts;
            ThrowIfFailed(cLevel->get_Advice(colTexts.Receive()));
        });
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
    void AskTooMuch(const std::wstring& sLevelKey) const
    {
        const std::size_t tab = sLevelKey.find(L'\t');
        ComPtr<_clsCollection> colMainCats;
        ThrowIfFailed(m_cManager->get_colMainCats(colMainCats.Receive()));
        Variant mainCat;
        ThrowIfFailed(colMainCats->get_Item(Variant(sLevelKey.substr(0, tab) + L"\t0"), &mainCat));
        ComPtr<_clsCollection> colSubCats;
        ThrowIfFailed(ObjectIn<_clsCat>(mainCat)->get_SubCats(colSubCats.Receive()));
        Variant subCat;
        ThrowIfFailed(colSubCats->get_Item(Variant(sLevelKey.substr(tab + 1)), &subCat));
        ComPtr<_clsCatRules> cRules;
        ThrowIfFailed(ObjectIn<_clsCat>(subCat)->get_Rules(cRules.Receive()));
        ThrowIfFailed(cRules->put_TitleSepMins(lTooManyMins));
    }
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

// Prints a row, marked when a figure is above its limit. Returns whether none is.
bool Report(const char* sWhat, std::int64_t cuts, double dNative, double dCom, double dLimitMs)
{
    constexpr double dLimit = 3;
    const double dRatio = dCom / dNative;
    const bool bWithin = dCom <= dLimitMs && dRatio <= dLimit;
    std::printf("%-26s %7lld %10.0f %8.0f %8.0f %6.1f %6.1f%s\n", sWhat, static_cast<long long>(cuts),
                dNative, dCom, dLimitMs, dRatio, dLimit, bWithin ? "" : "  ABOVE");
    std::fflush(stdout);
    return bWithin;
}

// dLimitMs: of the week and its figures. Advice is measured where dAdviceLimitMs, the most that COM may add,
// is not 0.
bool Measure(std::int64_t cuts, double dLimitMs, double dAdviceLimitMs)
{
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / (L"ravlo_bench_forecast" + std::to_wstring(cuts));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::wstring sFile = (folder / L"library.db").wstring();
    Fill(sFile, cuts);
    std::vector<std::wstring> levelKeys;
    double dPlay = 0;
    double dNative = 0;
    double dNativeAdvice = 0;
    {
        const NativeStation station(sFile);
        levelKeys = station.LevelKeys();
        dPlay = station.PlayMs();
        dNative = LeastMs([&] { station.Week(); });
        dNativeAdvice = dAdviceLimitMs > 0 ? station.AdviceMs() : 0;
    }
    double dWeek = 0;
    double dFigures = 0;
    double dAdvice = 0;
    {
        const ComStation station(folder, levelKeys);
        ComPtr<_clsSimulation> cWeek;
        dWeek = LeastMs([&] { cWeek = station.Week(); });
        dFigures = LeastMs([&] { station.ReadFigures(*cWeek); });
        dAdvice = dAdviceLimitMs > 0 ? station.AdviceMs(levelKeys.front()) : 0;
    }
    std::filesystem::remove_all(folder);
    std::printf("# %lld cuts: playing alone %.0f ms; through COM Simulate %.0f ms, reading it %.0f ms\n",
                static_cast<long long>(cuts), dPlay, dWeek, dFigures);
    const bool bWeek = Report("a week and its figures", cuts, dNative, dWeek + dFigures, dLimitMs);
    return (dAdviceLimitMs == 0 ||
            Report("advice for a level", cuts, dNativeAdvice, dAdvice, dNativeAdvice + dAdviceLimitMs)) &&
           bWeek;
}

} // namespace

} // namespace ravlo::bench

int main()
{
    using namespace ravlo::bench;
    return RunComBench([] {
        std::printf("%-26s %7s %10s %8s %8s %6s %6s\n", "processor time in ms", "cuts", "native", "COM",
                    "limit", "ratio", "limit");
        const bool bSmall = Measure(5'000, 300, 50);
        const bool bLarge = Measure(100'000, 1'500, 0);
        return bSmall && bLarge;
    });
}

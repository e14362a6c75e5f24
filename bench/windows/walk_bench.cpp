// SPDX-License-Identifier: MIT
// The cost per cut, in nanoseconds, of a walk over violators through the COM objects of the embedded
// database, compared with the same walk over the same database without COM. The first walk reads values that
// no call has read before; the ratio is that of the later ones. Prints a table and exits with 1 when a ratio
// is above its limit.
#include "bench/Radio.h"
#include "bench/windows/ComBench.h"
#include "com/HostDatabase.h"
#include "comkit/CutFace.h"
#include "ravlobase/Store.h"
#include "rotation/Selection.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <limits>

namespace ravlo::bench
{

namespace
{

constexpr double dLimit = 3.0;
constexpr std::int32_t lTwoDays = 2 * 24 * 60;

// One level with all cuts of a database, each of which played a day ago.
struct Station
{
    explicit Station(std::shared_ptr<DataBase> cDataBaseIn) : cDataBase(std::move(cDataBaseIn))
    {
        cMod.StoreAppPath(L"C:\\Host");
        auto cRules = std::make_shared<clsCatRules>(cMod);
        cRules->Apply({lTwoDays, lTwoDays, lTwoDays, false});
        cLevel->SetRules(cRules);
        for (const std::shared_ptr<Cut>& cCut : cDataBase->AllCuts())
        {
            bool bCreated = false;
            cLevel->AddCut(cCut, bCreated);
            cHistory.Record(*cCut, *cDataBase);
        }
    }

    // Nanoseconds a cut.
    struct Cost
    {
        double dFirst = 0;
        double dBest = std::numeric_limits<double>::max(); // of the walks after it
    };
    Cost WalkCost()
    {
        SelectionContext walkContext = LiveContext(cMod, cHistory, cDataBase);
        walkContext.note = [](const TraceStep&) {};
        Cost cost;
        for (int i = 0; i < 8; ++i)
        {
            const auto start = std::chrono::steady_clock::now();
            const Pick pick = NextCutFromCategory(cLevel, false, nullptr, walkContext);
            const std::chrono::duration<double, std::nano> passed = std::chrono::steady_clock::now() - start;
            if (pick.cCut->KindCode() != eKindTitleViolation)
                throw RuntimeError(error::InvalidProcedureCall, L"Not every cut breaks a rule");
            const double dACut = passed.count() / static_cast<double>(cLevel->TotalCuts());
            if (i == 0)
                cost.dFirst = dACut;
            else
                cost.dBest = std::min(cost.dBest, dACut);
        }
        return cost;
    }

    MemoryPorts context;
    NoFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<DataBase> cDataBase;
    PlayHistory cHistory{context.cClock, [](const RuntimeError& cError, bool) { throw cError; }};
    std::shared_ptr<clsCat> cLevel = std::make_shared<clsCat>(cMod, L"Pop", 1);
};

void Fill(const std::filesystem::path& path, std::int64_t cuts)
{
    std::filesystem::remove(path);
    Store store;
    store.Open(path.wstring());
    Cuts colCuts;
    const MemoryClock cClock;
    for (std::int64_t i = 0; i < cuts; ++i)
    {
        colCuts.push_back(MadeUpCut(i));
        colCuts.back()->AddCategoryName(L"Pop"); // so that placing them writes nothing
        colCuts.back()->SetLastPlayed(cClock.Now() - 1);
    }
    store.AddCuts(colCuts);
}

Station::Cost NativeCost(const std::filesystem::path& path)
{
    const auto cStore = std::make_shared<Store>();
    cStore->Open(path.wstring());
    return Station(cStore).WalkCost();
}

Station::Cost ComCost(const std::filesystem::path& path)
{
    const ComPtr<_clsDataBase> cDataBase = New<_clsDataBase>(L"RavloBase.dll", CLSID_clsDataBase);
    ThrowIfFailed(cDataBase->Open(Bstr(path.wstring()).Get()));
    return Station(HostDatabase::Of(cDataBase.Get())).WalkCost();
}

bool Compare(std::int64_t cuts)
{
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / (L"ravlo_bench_walk" + std::to_wstring(cuts) + L".db");
    Fill(path, cuts);
    const Station::Cost native = NativeCost(path);
    const Station::Cost com = ComCost(path);
    std::filesystem::remove(path);
    const double dRatio = com.dBest / native.dBest;
    const bool bWithin = dRatio <= dLimit;
    std::printf("%9lld %12.0f %12.0f %12.0f %12.0f %7.2f %7.2f%s\n", static_cast<long long>(cuts), com.dFirst,
                native.dFirst, com.dBest, native.dBest, dRatio, dLimit, bWithin ? "" : "  ABOVE");
    std::fflush(stdout);
    return bWithin;
}

} // namespace

} // namespace ravlo::bench

int main()
{
    using namespace ravlo::bench;
    return RunComBench([] {
        std::printf("%9s %12s %12s %12s %12s %7s %7s\n", "n", "first: COM", "native", "later: COM", "native",
                    "ratio", "limit");
        bool bWithin = true;
        for (const std::int64_t cuts : {1'000, 10'000, 100'000})
            bWithin = Compare(cuts) && bWithin;
        return bWithin;
    });
}

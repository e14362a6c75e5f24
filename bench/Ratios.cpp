// SPDX-License-Identifier: MIT
#include "bench/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <utility>

namespace ravlo::bench
{

namespace
{

constexpr double dNanoseconds = 1e9;
constexpr const char* sBaselineSuffix = " | baseline";

std::vector<RatioCase>& AllRatios()
{
    static std::vector<RatioCase> colRatios;
    return colRatios;
}

// The names of benchmarks are "<case>/<size>" and "<case> | baseline/<size>".
std::string RunName(const std::string& sName, std::int64_t size)
{
    return sName + "/" + std::to_string(size);
}

// Keeps the fastest repetition of each benchmark: other work of the machine can only slow one down.
class TableReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& colRuns) override
    {
        for (const Run& run : colRuns)
        {
            const auto items = run.counters.find("items_per_second");
            if (run.run_type != Run::RT_Iteration || run.error_occurred || items == run.counters.end())
                continue;
            const double dTime = dNanoseconds / items->second.value;
            const auto [it, bNew] =
                m_colTimes.try_emplace(run.run_name.function_name + "/" + run.run_name.args, dTime);
            if (!bNew)
                it->second = std::min(it->second, dTime);
        }
    }

    // False when a ratio is above its limit.
    bool Print() const
    {
        bool bAllWithin = true;
        std::printf("%-44s %9s %12s %12s %7s %7s\n", "operation", "n", "ns/unit", "baseline", "ratio",
                    "limit");
        for (const RatioCase& ratio : AllRatios())
        {
            std::string sHeading = ratio.sName + "  against " + ratio.sBaseline;
            for (const std::int64_t size : ratio.colSizes)
            {
                const double dSubject = TimeOf(RunName(ratio.sName, size));
                const double dBaseline = TimeOf(RunName(ratio.sName + sBaselineSuffix, size));
                if (!(dSubject > 0) || !(dBaseline > 0))
                    continue; // filtered out
                if (!sHeading.empty())
                    std::printf("%s\n", std::exchange(sHeading, {}).c_str());
                bAllWithin &= PrintRow(size, dSubject, dBaseline, ratio.dLimit);
            }
        }
        return bAllWithin;
    }

private:
    double TimeOf(const std::string& sRunName) const
    {
        const auto it = m_colTimes.find(sRunName);
        return it == m_colTimes.end() ? 0 : it->second;
    }

    static bool PrintRow(std::int64_t size, double dSubject, double dBaseline, double dLimit)
    {
        const double dRatio = dSubject / dBaseline;
        std::printf("%-44s %9lld %12.1f %12.1f %7.2f", "", static_cast<long long>(size), dSubject, dBaseline,
                    dRatio);
        if (dLimit <= 0)
        {
            std::printf("\n");
            return true;
        }
        const bool bWithin = dRatio <= dLimit;
        std::printf(" %7.2f%s\n", dLimit, bWithin ? "" : "  ABOVE");
        return bWithin;
    }

    std::map<std::string, double> m_colTimes; // ns per unit, by
};

void Register(const std::string& sName, const std::function<void(benchmark::State&)>& body,
              const RatioCase& ratio)
{
    auto* pBenchmark =
        benchmark::RegisterBenchmark(sName.c_str(), [body](benchmark::State& state) { body(state); });
    for (const std::int64_t size : ratio.colSizes)
        pBenchmark->Arg(size);
    if (ratio.bWallTime)
        pBenchmark->UseRealTime();
    pBenchmark->Repetitions(3)->MinTime(0.05);
}

} // namespace

bool AddRatio(RatioCase ratio)
{
    AllRatios().push_back(std::move(ratio));
    return true;
}

} // namespace ravlo::bench

int main(int argc, char** argv)
{
    using namespace ravlo::bench;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    for (const RatioCase& ratio : AllRatios())
    {
        Register(ratio.sName, ratio.subject, ratio);
        Register(ratio.sName + sBaselineSuffix, ratio.baseline, ratio);
    }
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.Print() ? 0 : 1;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ravlo::bench
{

// One row group of the table: the cost of something compared with the least that a machine would have to do
// for it. Both are benchmark functions of the usual shape (for (auto _ : state) ...) that read their size
// from state.range(0) and report the units of work with state.SetItemsProcessed; the table compares the time
// per unit.
struct RatioCase
{
    std::string sName;
    std::string sBaseline; // describes the baseline
    std::vector<std::int64_t> colSizes;
    std::function<void(benchmark::State&)> subject;
    std::function<void(benchmark::State&)> baseline;
    double dLimit = 0; // the largest ratio accepted; 0: no limit
    bool bWallTime =
        false; // compare the time that passes, for work that waits for the disk; else the processor's
};

// Adds a row group. At the top level of a file of this folder:
//     const bool bAdded = AddRatio({"name", "baseline", {1'000, 1'000'000}, &Subject, &Baseline, 3.0});
bool AddRatio(RatioCase ratio);

// The sizes the costs are shown for.
inline const std::vector<std::int64_t> colAllSizes{1'000, 10'000, 100'000, 1'000'000};

} // namespace ravlo::bench

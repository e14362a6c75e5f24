// SPDX-License-Identifier: MIT
// The view of the library window's list, sorted by a column of texts: compared with sorting the same texts as
// they are, by the standard library.
#include "bench/Ratios.h"
#include "ui/library/RowSorting.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace ravlo::bench
{

namespace
{

// Titles of a library, several of each artist, in no order.
std::vector<std::wstring> Titles(std::int64_t count)
{
    std::vector<std::wstring> colTitles;
    for (std::int64_t i = 0; i < count; ++i)
        colTitles.push_back(L"Arti\u00e9 " + std::to_wstring(i / 8) + L" Song " + std::to_wstring(i));
    std::shuffle(colTitles.begin(), colTitles.end(), std::mt19937_64(1));
    return colTitles;
}

void SortView(benchmark::State& state)
{
    const std::vector<std::wstring> colTitles = Titles(state.range(0));
    for (auto _ : state)
    {
        RowSorting cSorting;
        cSorting.Reserve(colTitles.size());
        for (const std::wstring& sTitle : colTitles)
            cSorting.Add(sTitle);
        benchmark::DoNotOptimize(cSorting.Sorted(false));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SortTexts(benchmark::State& state)
{
    const std::vector<std::wstring> colTitles = Titles(state.range(0));
    for (auto _ : state)
    {
        std::vector<std::wstring> colSorted = colTitles;
        std::sort(colSorted.begin(), colSorted.end());
        benchmark::DoNotOptimize(colSorted.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bSortAdded = AddRatio({"sort the list by a heading",
                                  "std::sort of the same texts",
                                  {1'000, 10'000, 100'000},
                                  &SortView,
                                  &SortTexts,
                                  3.0});

} // namespace

} // namespace ravlo::bench

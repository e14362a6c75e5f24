// SPDX-License-Identifier: MIT
#include "base/SearchText.h"
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "ui/library/ViewOrder.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ravlo::bench
{

namespace
{

// The cuts of a typical library, and their texts folded for a search.
struct Searched
{
    explicit Searched(std::int64_t cuts)
    {
        for (std::int64_t i = 0; i < cuts; ++i)
            colCuts.push_back(LibraryCut(i));
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            colFields.push_back(FieldsOf(*cCut));
    }
    static std::string FieldsOf(const Cut& cCut)
    {
        std::string sFields;
        for (const std::wstring& sText : {cCut.Artist(), cCut.Title(), cCut.Album(), cCut.Path()})
            sFields += FoldForSearch(sText) + SearchWords::cFieldEnd;
        return sFields;
    }
    static const Searched& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<Searched>> colSizes;
        std::unique_ptr<Searched>& cSearched = colSizes[cuts];
        if (!cSearched)
            cSearched = std::make_unique<Searched>(cuts);
        return *cSearched;
    }

    std::vector<std::shared_ptr<Cut>> colCuts;
    std::vector<std::string> colFields;
};

void ReadAll(benchmark::State& state)
{
    const Searched& searched = Searched::OfSize(state.range(0));
    for (auto _ : state)
        for (const std::shared_ptr<Cut>& cCut : searched.colCuts)
            benchmark::DoNotOptimize(Searched::FieldsOf(*cCut));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void CopyTexts(benchmark::State& state)
{
    const Searched& searched = Searched::OfSize(state.range(0));
    for (auto _ : state)
        for (const std::shared_ptr<Cut>& cCut : searched.colCuts)
        {
            std::wstring sTexts;
            for (const std::wstring& sText : {cCut->Artist(), cCut->Title(), cCut->Album(), cCut->Path()})
                sTexts += sText;
            benchmark::DoNotOptimize(sTexts);
        }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// A key: two words are looked for in every cut, and the view is narrowed to those that have both.
void Narrow(benchmark::State& state)
{
    const Searched& searched = Searched::OfSize(state.range(0));
    ViewOrder cOrder;
    cOrder.Reset(searched.colFields.size());
    for (auto _ : state)
    {
        const SearchWords words(L"tit 7");
        std::vector<bool> bKept;
        for (const std::string& sFields : searched.colFields)
            bKept.push_back(words.FoundIn(sFields));
        cOrder.Narrow(std::move(bKept));
        benchmark::DoNotOptimize(cOrder);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void FindTwice(benchmark::State& state)
{
    const Searched& searched = Searched::OfSize(state.range(0));
    for (auto _ : state)
    {
        std::size_t found = 0;
        for (const std::string& sFields : searched.colFields)
            if (sFields.find("tit") != std::string::npos && sFields.find('7') != std::string::npos)
                ++found;
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const std::vector<std::int64_t> colFindSizes{1'000, 10'000, 100'000};

const bool bRead = AddRatio({"find: reading a cut's texts", "a copy of the same four texts", colFindSizes,
                             &ReadAll, &CopyTexts, 6.0});
const bool bKey = AddRatio({"find: a key, per listed cut", "the same two searches in the folded text",
                            colFindSizes, &Narrow, &FindTwice, 4.0});

} // namespace

} // namespace ravlo::bench

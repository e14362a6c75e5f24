// SPDX-License-Identifier: MIT
#include "base/OrderedKeyedCollection.h"
#include "bench/Ratios.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo::bench
{

namespace
{

using Item = std::shared_ptr<int>;
using Collection = OrderedKeyedCollection<Item>;

// Keys in another order than that of their creation, like the paths of a library.
struct Keys
{
    explicit Keys(std::int64_t count)
    {
        for (std::int64_t i = 0; i < count; ++i)
            colTexts.push_back(L"D:\\Music\\Artist " + std::to_wstring(i / 10) + L"\\" + std::to_wstring(i) +
                               L".mp3");
        std::shuffle(colTexts.begin(), colTexts.end(), std::mt19937_64(1));
        for (const std::wstring& sText : colTexts)
            colKeys.emplace_back(sText);
    }
    static const Keys& OfSize(std::int64_t count)
    {
        static std::map<std::int64_t, std::unique_ptr<Keys>> colAll;
        std::unique_ptr<Keys>& keys = colAll[count];
        if (!keys)
            keys = std::make_unique<Keys>(count);
        return *keys;
    }

    std::vector<std::wstring> colTexts;
    std::vector<TextKey> colKeys;
};

// The standard library's way: a list for the order and a map for the keys.
struct ListAndMap
{
    using Order = std::list<Item>;
    Order colOrder;
    std::unordered_map<std::wstring, Order::iterator> colByKey;

    void Add(const std::wstring& sKey, Item item)
    {
        const auto [it, bNew] = colByKey.try_emplace(sKey);
        if (bNew)
            it->second = colOrder.insert(colOrder.end(), std::move(item));
    }
};

const Item theItem = std::make_shared<int>(1);

Collection Filled(const Keys& keys)
{
    Collection colItems;
    for (const TextKey& cKey : keys.colKeys)
        colItems.Add(cKey, theItem);
    return colItems;
}

ListAndMap FilledBare(const Keys& keys)
{
    ListAndMap items;
    for (const std::wstring& sKey : keys.colTexts)
        items.Add(sKey, theItem);
    return items;
}

// Runs step(i) for i = 0 .. n-1 in each iteration.
template <class Step> void ForEach(benchmark::State& state, Step&& step)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < count; ++i)
            step(i);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Add(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(Filled(keys).Count());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareAdd(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(FilledBare(keys).colOrder.size());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void FindByKey(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    const Collection colItems = Filled(keys);
    ForEach(state, [&](std::size_t i) { benchmark::DoNotOptimize(colItems.Find(keys.colKeys[i])); });
}

void FindByText(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    const Collection colItems = Filled(keys);
    ForEach(state, [&](std::size_t i) {
        benchmark::DoNotOptimize(colItems.Find(std::wstring_view(keys.colTexts[i])));
    });
}

void BareFind(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    const ListAndMap items = FilledBare(keys);
    ForEach(state,
            [&](std::size_t i) { benchmark::DoNotOptimize(*items.colByKey.find(keys.colTexts[i])->second); });
}

void SendHeadToBack(benchmark::State& state)
{
    Collection colItems = Filled(Keys::OfSize(state.range(0)));
    ForEach(state, [&](std::size_t) { colItems.SendToBack(*colItems.KeyAt(0)); });
}

void BareSendHeadToBack(benchmark::State& state)
{
    const Keys& keys = Keys::OfSize(state.range(0));
    ListAndMap items = FilledBare(keys);
    ForEach(state, [&](std::size_t i) {
        const auto it = items.colByKey.find(keys.colTexts[i])->second;
        items.colOrder.splice(items.colOrder.end(), items.colOrder, it);
    });
}

void Iterate(benchmark::State& state)
{
    const Collection colItems = Filled(Keys::OfSize(state.range(0)));
    for (auto _ : state)
    {
        for (const Item& item : colItems)
            benchmark::DoNotOptimize(item.get());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareIterate(benchmark::State& state)
{
    const ListAndMap items = FilledBare(Keys::OfSize(state.range(0)));
    for (auto _ : state)
    {
        for (const Item& item : items.colOrder)
            benchmark::DoNotOptimize(item.get());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void AtPosition(benchmark::State& state)
{
    const Collection colItems = Filled(Keys::OfSize(state.range(0)));
    ForEach(state, [&](std::size_t i) { benchmark::DoNotOptimize(colItems.At(i).get()); });
}

void BareAtPosition(benchmark::State& state)
{
    const std::vector<Item> colItems(static_cast<std::size_t>(state.range(0)), theItem);
    ForEach(state, [&](std::size_t i) { benchmark::DoNotOptimize(colItems[i].get()); });
}

const bool bCollectionsAdded =
    AddRatio({"collection: add at end", "unordered_map and list", colAllSizes, &Add, &BareAdd, 3.0}) &&
    AddRatio({"collection: find by key", "unordered_map", colAllSizes, &FindByKey, &BareFind, 3.0}) &&
    AddRatio({"collection: find by text", "unordered_map", colAllSizes, &FindByText, &BareFind, 5.0}) &&
    AddRatio({"collection: send head to back", "find and splice", colAllSizes, &SendHeadToBack,
              &BareSendHeadToBack, 3.0}) &&
    AddRatio({"collection: iterate", "list", colAllSizes, &Iterate, &BareIterate, 3.0}) &&
    AddRatio({"collection: item by position", "vector", colAllSizes, &AtPosition, &BareAtPosition, 0});

} // namespace

} // namespace ravlo::bench

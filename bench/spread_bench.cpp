// SPDX-License-Identifier: MIT
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "rotation/RandomOrder.h"
#include "rotation/RotationOrder.h"
#include "scheduler/SpreadOrders.h"

namespace ravlo::bench
{

namespace
{

void Shuffle(benchmark::State& state)
{
    Radio& radio = Radio::OfSize(state.range(0));
    CutCollection& colCuts = *radio.cLevel->SchedCuts();
    for (auto _ : state)
        colCuts.Reorder(RandomOrder(radio.context.cRandom, colCuts.Count()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Spread(benchmark::State& state)
{
    Radio& radio = Radio::OfSize(state.range(0));
    CutCollection& colCuts = *radio.cLevel->SchedCuts();
    const SpreadOrders::ItemOf itemOf = [&](const Cut& cCut) {
        return SpreadItem{{cCut.ArtistKey()}, cCut.TitleKey(), cCut.AlbumKey(), radio.cHistory.TimeOf(cCut)};
    };
    for (auto _ : state)
        PutInOrder(colCuts, SpreadKeys(colCuts, itemOf, radio.context.cRandom));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bSpreadAdded = AddRatio(
    {"spread of a level", "shuffle of the level", {1'000, 10'000, 100'000}, &Spread, &Shuffle, 10.0});

} // namespace

} // namespace ravlo::bench

// SPDX-License-Identifier: MIT
#include "scheduler/SpreadOrders.h"

#include "rotation/RotationOrder.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

void SpreadOrders::Remember(SpreadTrial trial)
{
    const TextKey cLevelKey = trial.cLevelKey;
    m_colTrials.insert_or_assign(cLevelKey, std::move(trial));
}

namespace
{

// The cuts of a level as a spread deals them, in rotation order.
struct Dealt
{
    std::vector<TextKey> colKeys;
    std::vector<SpreadItem> colItems;
};

Dealt Read(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf)
{
    // Copied before any cut is read, since that may let the host run.
    Dealt dealt{OrderOf(colCuts), {}};
    Cuts colCopy;
    colCopy.reserve(dealt.colKeys.size());
    for (const TextKey& cKey : dealt.colKeys)
        colCopy.push_back(*colCuts.Find(cKey));
    dealt.colItems.reserve(colCopy.size());
    for (const std::shared_ptr<Cut>& cCut : colCopy)
        dealt.colItems.push_back(itemOf(*cCut));
    return dealt;
}

std::vector<TextKey> Deal(const Dealt& dealt, Random& cRandom)
{
    std::vector<TextKey> colSpread;
    colSpread.reserve(dealt.colKeys.size());
    for (const std::size_t position : SpreadOrder(dealt.colItems, cRandom))
        colSpread.push_back(dealt.colKeys[position]);
    return colSpread;
}

// Whether the cut is tagged as it was; when it played last does not matter.
bool IsTaggedAlike(const SpreadItem& a, const SpreadItem& b)
{
    return a.colNames == b.colNames && a.cTitle == b.cTitle && a.cAlbum == b.cAlbum;
}

bool Fits(const SpreadTrial& trial, const Dealt& dealt, const RotationOptions& options)
{
    return trial.options == options && trial.colPresent == dealt.colKeys &&
           std::equal(trial.colItems.begin(), trial.colItems.end(), dealt.colItems.begin(),
                      dealt.colItems.end(), IsTaggedAlike);
}

} // namespace

std::vector<TextKey> SpreadOrders::Find(const clsCat& cSubCat, const RotationOptions& options,
                                        const ItemOf& itemOf, Random& cRandom) const
{
    const TextKey cLevelKey(CategoryKey(cSubCat.CatName(), cSubCat.CatLevel()));
    const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
    const Dealt dealt = Read(*colCuts, itemOf);
    const auto trial = m_colTrials.find(cLevelKey); // looked up now: the host may have run
    if (trial != m_colTrials.end() && Fits(trial->second, dealt, options))
        return trial->second.colSpread;
    return Deal(dealt, cRandom);
}

std::vector<TextKey> SpreadKeys(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf,
                                Random& cRandom)
{
    return Deal(Read(colCuts, itemOf), cRandom);
}

} // namespace ravlo

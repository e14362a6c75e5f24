// SPDX-License-Identifier: MIT
#include "scheduler/SpreadOrders.h"

#include "rotation/RotationOrder.h"

#include <utility>

namespace ravlo
{

void SpreadOrders::Remember(SpreadTrial trial)
{
    const TextKey cLevelKey = trial.cLevelKey;
    m_colTrials.insert_or_assign(cLevelKey, std::move(trial));
}

std::vector<TextKey> SpreadOrders::Find(const clsCat& cSubCat, const RotationOptions& options,
                                        const ArtistNames& names, const ItemOf& itemOf, Random& cRandom)
{
    const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
    const auto trial = m_colTrials.extract(TextKey(CategoryKey(cSubCat.CatName(), cSubCat.CatLevel())));
    if (!trial.empty() && trial.mapped().options == options && trial.mapped().names == names &&
        trial.mapped().colPresent == OrderOf(*colCuts))
        return std::move(trial.mapped().colSpread);
    return SpreadKeys(*colCuts, itemOf, cRandom);
}

std::vector<TextKey> SpreadKeys(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf,
                                Random& cRandom)
{
    // Copied before any cut is read, since that may let the host run.
    const std::vector<TextKey> colKeys = OrderOf(colCuts);
    Cuts colCopy;
    colCopy.reserve(colKeys.size());
    for (const TextKey& cKey : colKeys)
        colCopy.push_back(*colCuts.Find(cKey));
    std::vector<SpreadItem> colItems;
    colItems.reserve(colKeys.size());
    for (const std::shared_ptr<Cut>& cCut : colCopy)
        colItems.push_back(itemOf(*cCut));
    std::vector<TextKey> colSpread;
    colSpread.reserve(colKeys.size());
    for (const std::size_t position : SpreadOrder(colItems, cRandom))
        colSpread.push_back(colKeys[position]);
    return colSpread;
}

} // namespace ravlo

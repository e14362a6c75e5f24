// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "platform/Random.h"
#include "rotation/Spread.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// Finds the orders in which levels are spread; see Spread.h. Remembers the order that a trial has found, so
// that a spread carried out afterwards gives what the trial predicted.
class SpreadOrders
{
public:
    // What a spread needs of a cut. Errors of the cut are thrown.
    using ItemOf = std::function<SpreadItem(const Cut& cCut)>;

    // The next spread of the level gives colSpread, when the level's order is still colPresent then.
    void Remember(const TextKey& cLevelKey, std::vector<TextKey> colPresent, std::vector<TextKey> colSpread);
    // Returns the keys of the level's cuts in the order to put them in: a trial's, else a new one. Throws
    // what itemOf throws.
    std::vector<TextKey> Find(const clsCat& cSubCat, const ItemOf& itemOf, Random& cRandom);

private:
    struct Trial
    {
        std::vector<TextKey> colPresent;
        std::vector<TextKey> colSpread;
    };
    std::unordered_map<TextKey, Trial> m_colTrials; // by <name> TAB <level>
};

// Returns the keys of a level's cuts in a new spread order.
std::vector<TextKey> SpreadKeys(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf,
                                Random& cRandom);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "platform/Random.h"
#include "rotation/RotationOptions.h"
#include "rotation/Spread.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A spread order of a level that a trial has found, and what the trial depended on.
struct SpreadTrial
{
    TextKey cLevelKey;                // <name> TAB <level>
    std::vector<TextKey> colPresent;  // the level's order
    std::vector<SpreadItem> colItems; // of these cuts
    std::vector<TextKey> colSpread;
    RotationOptions options;
};

// Finds the orders in which levels are spread; see Spread.h. Remembers the order that a trial has found, so
// that a spread carried out afterwards gives what the trial predicted.
class SpreadOrders
{
public:
    // What a spread needs of a cut. Errors of the cut are thrown.
    using ItemOf = std::function<SpreadItem(const Cut& cCut)>;

    // Spreads of the level give the trial's order while the level's order, its cuts' names, titles and
    // albums, and the options are the trial's. Rules, the plan and plays do not matter: the order is as good
    // as it was, though the figures predicted for it are those of the trial's time.
    void Remember(SpreadTrial trial);
    // Returns the keys of the level's cuts in the order to put them in: a trial's, else a new one. options
    // are those in force. Throws what itemOf throws.
    std::vector<TextKey> Find(const clsCat& cSubCat, const RotationOptions& options, const ItemOf& itemOf,
                              Random& cRandom) const;

private:
    std::unordered_map<TextKey, SpreadTrial> m_colTrials; // by level
};

// Returns the keys of a level's cuts in a new spread order.
std::vector<TextKey> SpreadKeys(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf,
                                Random& cRandom);

} // namespace ravlo

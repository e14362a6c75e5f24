// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "platform/Random.h"
#include "rotation/ArtistNames.h"
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
    TextKey cLevelKey; // <name> TAB <level>
    std::vector<TextKey> colPresent;
    std::vector<TextKey> colSpread;
    RotationOptions options;
    ArtistNames names;
};

// Finds the orders in which levels are spread; see Spread.h. Remembers the order that a trial has found, so
// that a spread carried out afterwards gives what the trial predicted.
class SpreadOrders
{
public:
    // What a spread needs of a cut. Errors of the cut are thrown.
    using ItemOf = std::function<SpreadItem(const Cut& cCut)>;

    // The next spread of the level gives the trial's order, if the level's order, the options and the names
    // are the trial's then.
    void Remember(SpreadTrial trial);
    // Returns the keys of the level's cuts in the order to put them in: a trial's, else a new one. options
    // and names are those in force. Throws what itemOf throws.
    std::vector<TextKey> Find(const clsCat& cSubCat, const RotationOptions& options, const ArtistNames& names,
                              const ItemOf& itemOf, Random& cRandom);

private:
    std::unordered_map<TextKey, SpreadTrial> m_colTrials; // by level
};

// Returns the keys of a level's cuts in a new spread order.
std::vector<TextKey> SpreadKeys(const CutCollection& colCuts, const SpreadOrders::ItemOf& itemOf,
                                Random& cRandom);

} // namespace ravlo

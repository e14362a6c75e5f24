// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"
#include "platform/Random.h"

#include <cstddef>
#include <vector>

namespace ravlo
{

// What a spread needs of a cut.
struct SpreadItem
{
    std::vector<TextKey> colNames; // the artists it counts for; empty ones are ignored
    TextKey cTitle;
    TextKey cAlbum;
    DateTime dtLastPlayed = 0; // 0 = never
};

// Returns a rotation order in which the cuts of one artist are as far apart as possible: element i is the
// position, from 0, of the item that comes at i.
//
// Of count items, most by the commonest artist, no endless rotation keeps two of that artist more than
// D = count / most places apart, rounded down. This order keeps every artist's cuts at least D apart, also
// from its end to its beginning, when each cut has one name. A cut of several names is placed under the one
// that most of the items share (the first named of several); D is only an upper bound then. A cut without a
// name is an artist of its own.
//
// Artists with equally many cuts come in random order. Each artist's cuts come longest rested first, never
// played ones before all; one with the title or album of the cut before it changes places with the artist's
// next that has neither. O(n log n).
std::vector<std::size_t> SpreadOrder(const std::vector<SpreadItem>& colItems, Random& cRandom);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Random.h"

#include <cstddef>
#include <vector>

namespace ravlo
{

// A random order of lCount items: again and again one of those left is drawn, uniformly by its position among
// them, until none is left. Element i of the result is the position, from 0, of the item drawn as number i.
// O(n log n). The generator is not seeded here.
std::vector<std::size_t> RandomOrder(Random& cRandom, std::size_t count);

} // namespace ravlo

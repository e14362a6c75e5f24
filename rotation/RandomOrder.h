// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Random.h"

#include <cstddef>
#include <vector>

namespace ravlo
{

// A random order of count items: draws one of the remaining items, uniformly, until none remains. Element i
// of the result is the original position, from 0, of the i-th item drawn. O(n log n). Does not seed the
// generator.
std::vector<std::size_t> RandomOrder(Random& cRandom, std::size_t count);

} // namespace ravlo

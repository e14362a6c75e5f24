// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ravlo
{

// What a restored order could not use.
struct OrderLeftOver
{
    // A cut record named it and it does not exist: neither that record nor those behind it were applied.
    std::optional<std::int32_t> lMissingLevel;
    // Markers asked for them, and no level can have such a number.
    std::vector<std::int32_t> colImpossibleLevels;
    // A marker precedes its own level's cuts, as in a file that was written in the middle of a change.
    // Everything is applied nevertheless.
    bool bInTheMiddleOfAChange = false;

    bool None() const noexcept { return !lMissingLevel && colImpossibleLevels.empty(); }
};

// Applies whole records to a main category: makes the levels that markers declare, and puts every cut that a
// record names at the end of its level, in the order of the records. Cuts that no record names come
// first; records of cuts that are gone are passed over.
OrderLeftOver RestoreOrder(ModScheduler& cMod, clsCat& cMainCat, std::string_view records);

} // namespace ravlo

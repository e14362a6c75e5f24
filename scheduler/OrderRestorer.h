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

// What could not be used while restoring an order.
struct OrderLeftOver
{
    // The level of a cut record does not exist: neither that record nor the following ones were applied.
    std::optional<std::int32_t> lMissingLevel;
    // Numbers in markers that no level can have.
    std::vector<std::int32_t> colImpossibleLevels;
    // A marker precedes cuts of its own level, as in a file written in the middle of a change. Everything is
    // applied nevertheless.
    bool bInTheMiddleOfAChange = false;

    bool None() const noexcept { return !lMissingLevel && colImpossibleLevels.empty(); }
};

// Applies records to a main category: creates the levels that have markers, and puts every cut that a record
// names at the end of its level, in the records' order. Cuts that no record names come first; records of cuts
// that no longer exist are skipped. Precondition: AreOrderRecords(records).
OrderLeftOver RestoreOrder(ModScheduler& cMod, clsCat& cMainCat, std::string_view records);

} // namespace ravlo

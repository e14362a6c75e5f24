// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// What to do with cuts that are dropped into a category.
enum eCatDragOptions : std::int32_t
{
    eCancel = 0,            // nothing
    eCopyHere = 1,          // place them here as well
    eMoveHere = 2,          // move them here from the levels they were dragged from
    eMoveExclusiveHere = 3, // move them here from all other levels
};

} // namespace ravlo

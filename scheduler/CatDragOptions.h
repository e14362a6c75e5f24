// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// What a drop of cuts into a category does with them.
enum eCatDragOptions : std::int32_t
{
    eCancel = 0,            // nothing
    eCopyHere = 1,          // they are placed here as well
    eMoveHere = 2,          // they leave the levels they were dragged from
    eMoveExclusiveHere = 3, // they leave every other level
};

} // namespace ravlo

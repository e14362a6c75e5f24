// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

struct SchedulerState;
class Synchronisation;

// Gives a cut its level and category names, places it accordingly and saves what that touches. All or
// nothing: throws when the cut was left as it was. A copy of a database cut receives the same as the cut
// itself; a cut that the database does not have yet is placed when the database announces it.
void AssignCut(SchedulerState& cState, Synchronisation& cSync, const std::shared_ptr<Cut>& cCut,
               std::int32_t lCatLevel, const std::vector<std::wstring>& colCatNames);

} // namespace ravlo

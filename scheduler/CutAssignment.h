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

// Gives a cut its level and the names of its categories, whole or not at all, places it where they say and
// saves what that touches. A copy of one of the database's cuts receives the same as the cut itself; a cut
// the database does not hold yet is placed when the database announces it. Throws when the cut is left as it
// was.
void AssignCut(SchedulerState& cState, Synchronisation& cSync, const std::shared_ptr<Cut>& cCut,
               std::int32_t lCatLevel, const std::vector<std::wstring>& colCatNames);

} // namespace ravlo

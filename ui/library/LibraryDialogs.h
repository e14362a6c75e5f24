// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"

#include <functional>
#include <string>

namespace ravlo
{

// The windows that the library window opens on top of itself. Each function shows its window until it is
// closed. An empty function: there is no such window, and its command is disabled.
struct LibraryDialogs
{
    // Precondition: sLevelKey, name TAB level, names a level of the tree.
    // Explains the pick that comes next from the level. cKey: the cut to show first; empty for the chosen
    // one.
    std::function<void(clsSchedMan& cSchedMan, const std::wstring& sLevelKey, const TextKey& cKey)>
        ShowExplanation;
    // Forecasts the next 20 cuts of the level.
    std::function<void(clsSchedMan& cSchedMan, const std::wstring& sLevelKey)> ShowNextCuts;
    // The rotation health of the whole station.
    std::function<void(clsSchedMan& cSchedMan)> ShowHealth;
};

} // namespace ravlo

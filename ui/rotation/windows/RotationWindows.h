// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "scheduler/clsSchedMan.h"

#include <memory>
#include <string>

namespace ravlo
{

// Show a window in front of the thread's active window until it is closed, and give the focus back. A level
// is named by its key, name TAB level. Nothing of the station changes.

// Explains the pick that would come next from the level. cKey: a cut to show first; empty for the chosen one.
void ShowExplanationWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, const std::wstring& sLevelKey,
                           const TextKey& cKey);

// Forecasts the level's next 20 cuts.
void ShowNextCutsWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, const std::wstring& sLevelKey);

} // namespace ravlo

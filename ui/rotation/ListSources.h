// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "scheduler/clsSchedMan.h"
#include "ui/rotation/RotationListPresenter.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ravlo
{

inline constexpr std::size_t forecastCuts = 20;

// The pages of a level, named by its key (name TAB level). Reading throws error 5 when the level no longer
// exists and error 91 without a populated manager; it changes nothing.

// Explains the pick that would come next from the level. cKey: a cut to show first; empty for the chosen one.
ListSource ExplanationSource(std::shared_ptr<clsSchedMan> cSchedMan, const std::wstring& sLevelKey,
                             const TextKey& cKey);

// Forecasts the next 20 cuts of the level: asked as often as its last plays suggest, or one after the other.
ListSource NextCutsSource(std::shared_ptr<clsSchedMan> cSchedMan, const std::wstring& sLevelKey);

} // namespace ravlo

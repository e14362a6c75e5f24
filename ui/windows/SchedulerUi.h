// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerWindows.h"
#include "scheduler/clsSchedMan.h"

#include <memory>

namespace ravlo
{

// The windows of one manager, to be given to its SetWindows. They hold the manager weakly; what is given to the
// manager must be taken back (SetWindows(nullptr)) before it ends.
std::unique_ptr<SchedulerWindows> NewSchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan);

} // namespace ravlo

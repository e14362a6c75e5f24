// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/HealthWindows.h"
#include "scheduler/SchedulerWindows.h"
#include "scheduler/clsSchedMan.h"

#include <memory>

namespace ravlo
{

// The windows of one manager.
class SchedulerUi : public SchedulerWindows, public HealthWindows
{
};

// Makes the windows of one manager, for its SetWindows. They hold the manager weakly; take them back with
// SetWindows(nullptr) before they end.
std::unique_ptr<SchedulerUi> NewSchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan);

} // namespace ravlo

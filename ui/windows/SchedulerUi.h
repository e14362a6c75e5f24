// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerWindows.h"
#include "scheduler/clsSchedMan.h"
#include "ui/library/LibraryTargets.h"

#include <memory>

namespace ravlo
{

// The windows of one manager, to be given to its SetWindows. They hold the manager weakly; what is given to
// the manager must be taken back (SetWindows(nullptr)) before it ends.
class SchedulerUi : public SchedulerWindows
{
public:
    // The progress of filling a host's grid: shown by the library window while it is open.
    virtual ProgressTarget& LibraryProgress() = 0;
};
std::unique_ptr<SchedulerUi> NewSchedulerUi(const std::shared_ptr<clsSchedMan>& cSchedMan);

} // namespace ravlo

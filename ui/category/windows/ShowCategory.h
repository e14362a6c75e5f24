// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/SchedulerWindows.h"
#include "scheduler/clsSchedMan.h"

#include <cstdint>
#include <memory>

namespace ravlo
{

// Opens the category window before the thread's active window and returns when it is closed: lChosen or
// lNotChosen. The focus is then where it was.
std::int32_t ShowCategoryWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, CategoryRequest& request);

} // namespace ravlo

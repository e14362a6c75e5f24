// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

namespace ravlo
{

// What every object of the DLL shares: the application path, the debug log and the global separations, over
// the real world. Made on first use; ends with the DLL.
ModScheduler& Library();

} // namespace ravlo

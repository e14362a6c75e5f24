// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"

namespace ravlo
{

// What all objects of the DLL share: application path, debug log and global separations, on the system's own
// ports. Created on first use; ends with the DLL.
ModScheduler& Library();

} // namespace ravlo

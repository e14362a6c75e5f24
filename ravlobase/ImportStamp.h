// SPDX-License-Identifier: MIT
#pragma once

#include "platform/disk/Disk.h"

namespace ravlo
{

// When a file was last modified and how long it was: what an import remembers of it.
using ImportStamp = disk::Stamp;

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"

namespace ravlo::error
{

// Automation error numbers that only the media database raises.
inline constexpr std::int32_t OutOfMemory = 7;
inline constexpr std::int32_t FileAlreadyOpen = 55;
inline constexpr std::int32_t InvalidFileFormat = 321; // damaged, foreign or newer than this program

} // namespace ravlo::error

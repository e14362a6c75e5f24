// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/RotationOptions.h"

#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// The content of Scheduler\Rotation.cfg. File format: docs/formats/rotation.md.

// The options in the bytes of the file; nothing when it is damaged: not UTF-8, or with a NUL.
std::optional<RotationOptions> OptionsIn(std::string_view bytes);

// The bytes of the file with these options: their values are changed where they are, options that are missing
// are added at the end, and everything else stays byte for byte.
std::string WithOptions(std::string_view bytes, const RotationOptions& options);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

namespace ravlo
{

// What is at a path.
enum class PathKind
{
    None,
    File,
    Folder,
    Unknown, // it could not be checked
};

// Whether the wanted kind is at a path where eFound was found.
constexpr Presence PresenceOfKind(PathKind eFound, PathKind eWanted) noexcept
{
    if (eFound == PathKind::Unknown)
        return Presence::Unknown;
    return eFound == eWanted ? Presence::Present : Presence::Absent;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <memory>
#include <string>

namespace ravlo
{

// A station folder is marked while a manager works on it, since two programs on one station overwrite each
// other's orders and lists. The mark is an empty file that the manager holds open from its first population
// in that folder to its end. The file itself says nothing and stays; only that it is held open does, so a
// killed program marks nothing.

// The file that marks the station under an application folder, given with or without a trailing backslash.
std::wstring StationMarkerPath(const std::wstring& sAppPath);

// Marks the station for as long as the result lives. Null when it is marked already. Throws when the file
// cannot be made, as without the folder "Scheduler".
std::unique_ptr<HeldFile> MarkStation(Files& cFiles, const std::wstring& sAppPath);

// Whether a manager works on the station at this moment, in this program or another. Creates nothing. False
// for a folder that is none or cannot be looked at.
bool IsStationInUse(Files& cFiles, const std::wstring& sAppPath);

} // namespace ravlo

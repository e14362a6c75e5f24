// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <memory>
#include <string>

namespace ravlo
{

// A station folder is marked while a manager works on it, since two programs on one station overwrite each
// other's orders and lists. The mark is an empty file that the manager holds open from its first population
// in that folder to its end. The file stays; only holding it open is the mark, so a killed
// program marks nothing.

// The file that marks the station under an application folder, given with or without a trailing backslash.
std::wstring StationMarkerPath(const std::wstring& sAppPath);

// Marks the station as long as the result exists. Returns null when it is already marked. Throws when the
// file cannot be created, e.g. without the folder "Scheduler".
std::unique_ptr<HeldFile> MarkStation(Files& cFiles, const std::wstring& sAppPath);

// Whether a manager in this or another program works on the station now. Creates nothing. Returns false for a
// folder that does not exist or cannot be checked.
bool IsStationInUse(Files& cFiles, const std::wstring& sAppPath);

} // namespace ravlo

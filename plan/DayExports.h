// SPDX-License-Identifier: MIT
#pragma once

#include "plan/DayLog.h"

#include <string>
#include <vector>

namespace ravlo
{

// A day as an extended M3U8 playlist: UTF-8, lines ended with LF. Each cut has its length and name (#EXTINF)
// and the time at which it starts (#EXT-X-PROGRAM-DATE-TIME, local time). Empty slots are left out.
std::string DayPlaylist(const std::vector<LogRow>& rows);

// A day as JSON: an array of its slots, with the names of the log's columns. An empty slot has no cut.
std::string DayJson(const std::vector<LogRow>& rows);

} // namespace ravlo

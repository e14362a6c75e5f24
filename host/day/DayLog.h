// SPDX-License-Identifier: MIT
#pragma once

#include "host/day/Slots.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// What a host knows of a cut it was given.
struct PlayedCut
{
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::wstring sPath;
    std::int32_t lDurationmS = 0;
};

// One slot of the day and what fills it.
struct LogRow
{
    DateTime dtStart = 0;
    Slot slot;
    std::int32_t lKind = 0;               // the cut's kind code, which says why it is that cut
    std::optional<PlayedCut> cut;         // nothing: a placeholder came back, the slot is empty
    std::optional<double> dArtistGapMins; // since the artist's play before; nothing when there is none known
    std::optional<double> dTitleGapMins;
};

// "2.50": minutes with two decimals.
std::wstring MinutesText(double dMins);

// The whole log: UTF-8, one heading line, lines end with LF, fields quoted as RFC 4180 says.
std::string LogCsv(const std::vector<LogRow>& rows);

// One row for a person to read.
std::wstring LogLine(const LogRow& row);

// What became of the day in a few lines, each ended with LF: slots, kinds, smallest gaps, begin and end.
std::wstring Summary(const std::vector<LogRow>& rows, DateTime dtEnd);

} // namespace ravlo

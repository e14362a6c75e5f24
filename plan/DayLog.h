// SPDX-License-Identifier: MIT
#pragma once

#include "plan/Slots.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo
{

// The values of a cut that a host received.
struct PlayedCut
{
    std::wstring sArtist;
    std::wstring sTitle;
    std::wstring sAlbum;
    std::wstring sPath;
    std::int32_t lDurationmS = 0;
};

// One slot of the day and its cut.
struct LogRow
{
    DateTime dtStart = 0;
    Slot slot;
    std::int32_t lKind = 0;               // the cut's kind code: why this cut
    std::optional<PlayedCut> cut;         // nothing: a placeholder; the slot is empty
    std::optional<double> dArtistGapMins; // since the artist's previous play; nothing when none is known
    std::optional<double> dTitleGapMins;
};

// "2.50": minutes with two decimals.
std::wstring MinutesText(double dMins);

// The bytes of a log that is written row by row: UTF-8, one heading line, lines ended with LF, fields quoted
// as in RFC 4180. A log of years does not fit into memory as rows.
class LogBytes
{
public:
    LogBytes();
    void Add(const LogRow& row);
    std::string Take() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};

// The whole log, see LogBytes.
std::string LogCsv(const std::vector<LogRow>& rows);

// The rows of a log. Times, gaps and texts are as exact as the log has them. A row that is none is left out.
std::vector<LogRow> ParseLogCsv(std::string_view bytes);

// One row as text for people.
std::wstring LogLine(const LogRow& row);

// A summary of the day in a few lines, each ended with LF: slots, kinds, smallest gaps, begin and end.
std::wstring Summary(const std::vector<LogRow>& rows, DateTime dtEnd);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/PlayRecord.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace ravlo
{

// What a play report has one line for.
enum class PlaysBy
{
    Play,
    Cut,
    Artist,
};

// "" for each play, "cut" or "artist", in any case. Nothing for another word.
std::optional<PlaysBy> PlaysByNamed(std::wstring_view sBy);

// "0:03:25", rounded to whole seconds: the length of music as reports to rights societies have it.
std::wstring PlayLengthText(std::int64_t lengthmS);

// The plays of a period as CSV (docs/formats/plays-csv.md), in the order of their times. By cut or artist one
// line sums the plays that aired under the same texts, the most frequent ones first.
class PlayReport
{
public:
    explicit PlayReport(PlaysBy eBy);
    void Add(const RecordedPlay& play);
    // The whole report. Call it once, at the end.
    std::wstring Text();

private:
    struct Sum
    {
        RecordedPlay first;
        DateTime dtLast = 0;
        std::int64_t plays = 0;
        std::int64_t lengthmS = 0;
    };
    std::wstring SumLine(const Sum& sum) const;

    PlaysBy m_eBy;
    std::wstring m_sText;
    // By folded artist, and for cuts also by title, album and key.
    std::map<std::tuple<std::wstring, std::wstring, std::wstring, std::wstring>, Sum> m_sums;
};

} // namespace ravlo

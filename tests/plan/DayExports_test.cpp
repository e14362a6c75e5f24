// SPDX-License-Identifier: MIT
#include "plan/DayExports.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

const std::vector<LogRow> rows = {
    {DateTimeOf({2026, 11, 22, 6, 0, 0}),
     {L"rock", 1, true, 0},
     0,
     PlayedCut{L"Bj\u00F6rk", L"Say \"hi\"\n\\", L"Post", L"D:\\a.mp3", 204500},
     {},
     {}},
    {DateTimeOf({2026, 11, 22, 6, 3, 25}), {L"rock", 2, false, 0}, 101, {}, {}, {}},
    {DateTimeOf({2026, 11, 22, 6, 6, 25}),
     {L"pop", 1, false, 0},
     0,
     PlayedCut{L"B", L"C", L"", L"#1.mp3", 499},
     {},
     {}},
};

TEST(DayExports, APlaylistHasTheCutsWithLengthNameAndStart)
{
    EXPECT_EQ(DayPlaylist(rows), "#EXTM3U\n"
                                 "#EXT-X-PROGRAM-DATE-TIME:2026-11-22T06:00:00\n"
                                 "#EXTINF:205,Bj\xC3\xB6rk - Say \"hi\" \\\n"
                                 "D:\\a.mp3\n"
                                 "#EXT-X-PROGRAM-DATE-TIME:2026-11-22T06:06:25\n"
                                 "#EXTINF:0,B - C\n"
                                 "./#1.mp3\n");
    EXPECT_EQ(DayPlaylist({}), "#EXTM3U\n");
}

TEST(DayExports, JsonHasEverySlotAndEscapesItsTexts)
{
    EXPECT_EQ(
        DayJson({rows[0], rows[1]}),
        "[\n{\"start\": \"2026-11-22T06:00:00\", \"category\": \"rock\", \"level\": 1, \"opener\": true, "
        "\"kind\": 0, \"artist\": \"Bj\xC3\xB6rk\", \"title\": \"Say \\\"hi\\\"\\u000a\\\\\", \"album\": "
        "\"Post\", \"path\": \"D:\\\\a.mp3\", \"duration_ms\": 204500},\n"
        "{\"start\": \"2026-11-22T06:03:25\", \"category\": \"rock\", \"level\": 2, \"opener\": false, "
        "\"kind\": 101}\n]\n");
    EXPECT_EQ(DayJson({}), "[\n]\n");
}

} // namespace
} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "plan/DayLog.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

const DateTime dtTen = DateTimeOf({2024, 3, 1, 10, 0, 0});

LogRow Filled(std::wstring sArtist, std::wstring sTitle)
{
    return {dtTen, {L"rock", 2, true, 0}, 0, PlayedCut{sArtist, sTitle, L"Album", L"D:\\a.mp3", 200000}, {},
            {}};
}

const std::string sHeading =
    "start,category,level,opener,kind,artist,title,album,path,duration_ms,artist_gap_min,title_gap_min\n";

} // namespace

TEST(LogCsv, WritesOneLineASlotBelowTheHeading)
{
    auto row = Filled(L"Artist", L"Title");
    row.dArtistGapMins = 75.258;
    EXPECT_EQ(LogCsv({row}),
              sHeading + "2024-03-01T10:00:00,rock,2,Y,0,Artist,Title,Album,D:\\a.mp3,200000,75.26,\n");
    EXPECT_EQ(LogCsv({}), sHeading);
}

TEST(LogCsv, QuotesTextsWithCommaQuotationMarkOrLineEnd)
{
    auto row = Filled(L"A, B", L"Say \"hi\"");
    row.cut->sAlbum = L"two\nlines";
    EXPECT_EQ(
        LogCsv({row}),
        sHeading +
            "2024-03-01T10:00:00,rock,2,Y,0,\"A, B\",\"Say \"\"hi\"\"\",\"two\nlines\",D:\\a.mp3,200000,,\n");
}

TEST(LogCsv, WritesUtf8)
{
    EXPECT_EQ(LogCsv({Filled(L"Bj\u00F6rk", L"\u6771\u4EAC")}),
              sHeading + "2024-03-01T10:00:00,rock,2,Y,0,Bj\xC3\xB6rk,\xE6\x9D\xB1\xE4\xBA\xAC,Album,D:\\a."
                         "mp3,200000,,\n");
}

TEST(LogCsv, ShowsAPlaceholderAsItsKindWithoutACut)
{
    EXPECT_EQ(LogCsv({{dtTen, {L"pop", 1, false, 0}, 11, {}, {}, {}}}),
              sHeading + "2024-03-01T10:00:00,pop,1,N,11,,,,,,,\n");
}

TEST(ParseLogCsv, ReadsWhatWasWritten)
{
    auto row = Filled(L"A, \"B\"", L"Bj\u00F6rk\nlive");
    row.dArtistGapMins = 75.25;
    const std::vector<LogRow> rows = {
        row, {dtTen, {L"pop", 1, false, 0}, 11, {}, {}, {}}, Filled(L"", L"Title")};
    const std::string log = LogCsv(rows);
    const std::vector<LogRow> read = ParseLogCsv(log);
    EXPECT_EQ(LogCsv(read), log);
    EXPECT_EQ(Summary(read, dtTen), Summary(rows, dtTen));
    EXPECT_TRUE(ParseLogCsv("").empty());
    EXPECT_TRUE(ParseLogCsv("no,row\n2024-03-01T10:00:00,rock,x,Y,0,,,,,,,\n").empty());
}

TEST(LogLine, ShowsTheSlotAndItsCut)
{
    EXPECT_EQ(LogLine(Filled(L"Artist", L"Title")), L"2024-03-01T10:00:00  rock:2 opener  Artist - Title");
    auto late = Filled(L"Artist", L"Title");
    late.slot.bOpener = false;
    late.lKind = 14;
    EXPECT_EQ(LogLine(late), L"2024-03-01T10:00:00  rock:2  Artist - Title  [kind 14]");
    EXPECT_EQ(LogLine({dtTen, {L"pop", 1, false, 0}, 11, {}, {}, {}}),
              L"2024-03-01T10:00:00  pop:1  (nothing)  [kind 11]");
}

TEST(MinutesText, HasTwoDecimals)
{
    EXPECT_EQ(MinutesText(0), L"0.00");
    EXPECT_EQ(MinutesText(61.0 / 60.0), L"1.02");
    EXPECT_EQ(MinutesText(60.5), L"60.50");
    EXPECT_EQ(MinutesText(1234.999), L"1235.00");
}

TEST(Summary, CountsSlotsAndKindsAndNamesTheSmallestGaps)
{
    auto far = Filled(L"Far", L"Away");
    far.dArtistGapMins = 90;
    far.dTitleGapMins = 80;
    auto near = Filled(L"Near", L"By");
    near.dArtistGapMins = 61;
    near.dTitleGapMins = 500;
    const LogRow nothing{dtTen, {L"pop", 1, false, 0}, 11, {}, {}, {}};
    EXPECT_EQ(Summary({far, near, nothing}, DateTimeOf({2024, 3, 1, 10, 9, 59})),
              L"From 2024-03-01T10:00:00 to 2024-03-01T10:09:59\n"
              L"Slots: 3, filled: 2\n"
              L"Kinds: 0 x 2, 11 x 1\n"
              L"Smallest artist gap: 61.00 min (Near)\n"
              L"Smallest title gap: 80.00 min (Away)\n");
}

TEST(Summary, ShowsADashWhereThereIsNothingToTell)
{
    EXPECT_EQ(Summary({}, dtTen), L"From 2024-03-01T10:00:00 to 2024-03-01T10:00:00\n"
                                  L"Slots: 0, filled: 0\n"
                                  L"Kinds: -\n"
                                  L"Smallest artist gap: -\n"
                                  L"Smallest title gap: -\n");
}

} // namespace ravlo

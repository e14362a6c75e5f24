// SPDX-License-Identifier: MIT
#include "forecast/Report.h"

#include "forecast/ReportPictures.h"
#include "forecast/ReportText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace ravlo::test
{
namespace
{

TEST(ReportText, EscapesWhatHtmlAndJsonGiveAMeaning)
{
    const struct
    {
        std::wstring sText;
        std::string sHtml;
        std::string sJson;
    } colCases[] = {
        {L"", "", "\"\""},
        {L"Simon & Garfunkel", "Simon &amp; Garfunkel", "\"Simon & Garfunkel\""},
        {L"<b>\"'", "&lt;b&gt;&quot;&#39;", "\"<b>\\\"'\""},
        {L"a\tb\r\nc\x01", "a b  c\xEF\xBF\xBD", "\"a\\u0009b\\u000d\\u000ac\\u0001\""},
        {L"back\\slash", "back\\slash", "\"back\\\\slash\""},
        {L"\x5E9\x5DC", "\xD7\xA9\xD7\x9C", "\"\xD7\xA9\xD7\x9C\""},
        {std::wstring(1, wchar_t(0xD83D)) + L"x", "\xEF\xBF\xBDx", "\"\xEF\xBF\xBDx\""},
        {L"x" + std::wstring(1, wchar_t(0xDE00)), "x\xEF\xBF\xBD", "\"x\xEF\xBF\xBD\""},
    };
    for (const auto& one : colCases)
    {
        EXPECT_EQ(HtmlText(one.sText), one.sHtml);
        EXPECT_EQ(JsonText(one.sText), one.sJson);
    }
}

TEST(ReportText, NumbersHaveAPointAndNoTrailingZeros)
{
    const std::pair<double, std::string> colCases[] = {
        {0, "0"},      {-0.001, "0"}, {2.5, "2.5"}, {10, "10"}, {1.005, "1"}, {1234567.891, "1234567.89"},
        {-3.1, "-3.1"}};
    for (const auto& [dValue, sText] : colCases)
        EXPECT_EQ(NumberText(dValue), sText);
    EXPECT_EQ(PercentText(0.1234), "12.3 %");
    EXPECT_EQ(LoadText(1.1), "1.1 of 1");
    EXPECT_EQ(LoadText(1.001), "1.01 of 1");
}

// A level whose first cut plays once an hour and whose last never plays.
LevelHealth RedLevel(std::size_t cuts)
{
    LevelHealth level;
    level.sKey = L"R&B\t2";
    level.eLight = Light::Red;
    level.lArtists = 2;
    level.sTopArtist = L"<Ash> \"Quoted\"";
    level.lTopArtistCuts = 2;
    level.sngSlotMins = 7.5F;
    level.lArtistSepMins = 60;
    level.lAttainableArtistMins = 45;
    level.lPicks = static_cast<std::int32_t>(24 * (cuts - 1));
    level.lMostPlays = 24;
    level.dMeanPlays = 24.0 * static_cast<double>(cuts - 1) / static_cast<double>(cuts);
    for (std::size_t cut = 0; cut < cuts; ++cut)
    {
        CutUse use;
        use.sKey = L"D:\\" + std::to_wstring(cut);
        use.sArtist = L"Artist " + std::to_wstring(cut / 2);
        use.sTitle = cut % 7 == 0 ? L"\x5E9\x5DC\x5D5\x5DD" : L"Title " + std::to_wstring(cut);
        if (cut + 1 < cuts)
        {
            for (std::size_t hour = 0; hour < 24; ++hour)
                use.lPlays += use.colByHour[hour] = static_cast<std::int32_t>((hour + cut) % 3);
            use.titleDistances = PlayDistances{60, 60, 120};
        }
        level.cuts.push_back(use);
    }
    level.artists = {{L"<Ash> \"Quoted\"", 2, 30, 0.5, 0.75, PlayDistances{21, 44.4, 4000}},
                     {L"Elm", 1, 0, 0.5, 0.25, std::nullopt}};
    level.neverPlayed = {{cuts - 1, 0, 12, eGlobalArtist, 0}};
    level.advice = {L"fair rotation: never played 1 -> 0, under half 0 -> 0, no rule broken"};
    return level;
}

StationHealth StationOf(std::vector<LevelHealth> levels)
{
    StationHealth health;
    health.dtStart = DateTimeOf({2026, 11, 22, 6, 0, 0});
    health.dDays = 28;
    health.lPicks = 1234;
    health.levels = std::move(levels);
    health.blockers = {{L"k", L"Ash & Elm", L"Sun"}};
    health.overAsked = {{L"Ash", 1.25}};
    health.remedies = {L"R&B 2: fair rotation"};
    return health;
}

std::size_t CountOf(const std::string& sText, const std::string& sPart)
{
    std::size_t count = 0;
    for (std::size_t at = sText.find(sPart); at != std::string::npos; at = sText.find(sPart, at + 1))
        ++count;
    return count;
}

TEST(HtmlReport, NeedsNothingFromElsewhereAndRunsNoScript)
{
    const std::string sPage = HtmlReport(StationOf({RedLevel(8)}));
    for (const char* sForeign : {"<script", "<link", "src=", "http:", "https:", "url(", "@import"})
        EXPECT_EQ(CountOf(sPage, sForeign), 0u) << sForeign;
}

TEST(HtmlReport, EscapesEveryNameOfTheLibrary)
{
    const std::string sPage = HtmlReport(StationOf({RedLevel(8)}));
    EXPECT_EQ(sPage.find("<Ash>"), std::string::npos);
    EXPECT_NE(sPage.find("<bdi>&lt;Ash&gt; &quot;Quoted&quot;</bdi>"), std::string::npos);
    EXPECT_NE(sPage.find("<bdi>R&amp;B 2</bdi>"), std::string::npos);
    EXPECT_NE(sPage.find("<bdi>Ash &amp; Elm</bdi> - <bdi>Sun</bdi>"), std::string::npos);
}

TEST(HtmlReport, GreenLevelsHaveARowAndNoSection)
{
    LevelHealth green;
    green.sKey = L"Pop\t1";
    const std::string sPage = HtmlReport(StationOf({green, RedLevel(3)}));
    EXPECT_EQ(CountOf(sPage, "<section"), 1u);
    EXPECT_NE(sPage.find("<bdi>Pop 1</bdi>"), std::string::npos);
    EXPECT_EQ(CountOf(sPage, "<svg"), 3u);
    EXPECT_EQ(CountOf(sPage, "aria-labelledby=\"level2"), 4u); // the section and its pictures
}

TEST(HtmlReport, AHundredLevelsOfAHundredCutsStayBelowFiveMegabytes)
{
    const std::string sPage = HtmlReport(StationOf(std::vector<LevelHealth>(100, RedLevel(100))));
    EXPECT_LT(sPage.size(), 5'000'000u);
    const std::string sOneLevel = HtmlReport(StationOf({RedLevel(10'000)}));
    EXPECT_LT(sOneLevel.size(), 5'000'000u);
}

TEST(HtmlReport, LevelsWithoutCutsOrPlaysAreShown)
{
    LevelHealth empty;
    empty.sKey = L"Pop\t1";
    empty.eLight = Light::Yellow;
    EXPECT_NE(HtmlReport(StationOf({empty})).find("The plan never asks for it."), std::string::npos);
    EXPECT_FALSE(PlaysPicture(empty, "p").empty());
    EXPECT_FALSE(DistancesPicture(empty, "p").empty());
    EXPECT_FALSE(HoursPicture(empty, "p").empty());
}

TEST(JsonReport, HasEveryFigureOfALevel)
{
    const std::string sJson = JsonReport(StationOf({RedLevel(3)}));
    for (const char* sPart :
         {"{\"start\":\"2026-11-22 06:00\",\"days\":28,\"picks\":1234,\"remedies\":[\"R&B 2: fair "
          "rotation\"]",
          "\"artistsOverAsked\":[{\"name\":\"Ash\",\"load\":1.25}]",
          "{\"key\":\"R&B\\u00092\",\"light\":\"red\",\"topArtist\":\"<Ash> "
          "\\\"Quoted\\\"\",\"topArtistCuts\":2,\"slotMins\":7.5",
          "\"neverPlayed\":[{\"key\":\"D:\\\\2\",\"artist\":\"Artist 1\",\"title\":\"Title "
          "2\",\"plays\":0,\"passedOver\":12,"
          "\"rule\":\"artist\",\"blockedBy\":{\"key\":\"k\",\"artist\":\"Ash & Elm\",\"title\":\"Sun\"}}]",
          "\"underHalf\":[]", "\"gaps\":{\"smallest\":21,\"median\":44.4,\"largest\":4000}", "\"gaps\":null",
          "\"titleGaps\":{\"smallest\":60,\"median\":60,\"largest\":120},\"lockStep\":false"})
        EXPECT_NE(sJson.find(sPart), std::string::npos) << sPart;
}

} // namespace
} // namespace ravlo::test

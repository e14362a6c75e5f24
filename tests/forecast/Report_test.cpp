// SPDX-License-Identifier: MIT
#include "forecast/Report.h"

#include "forecast/ReportPictures.h"
#include "forecast/ReportText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

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

TEST(ReportText, LongNamesAreShortenedBetweenCharacters)
{
    const std::wstring sPair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    const struct
    {
        std::wstring sText, sShort;
    } colCases[] = {
        {L"", L""},
        {L"1234", L"1234"},
        {L"12345", L"123\x2026"},
        {L"12" + sPair, L"12" + sPair},
        {L"12" + sPair + L"5", L"12\x2026"},
        {L"1" + sPair + L"45", L"1" + sPair + L"\x2026"},
    };
    for (const auto& one : colCases)
        EXPECT_EQ(Shortened(one.sText, 4), one.sShort);
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
        use.cKey = TextKey(L"D:\\" + std::to_wstring(cut));
        use.cArtist = TextKey(L"Artist " + std::to_wstring(cut / 2));
        use.cTitle = TextKey(cut % 7 == 0 ? L"\x5E9\x5DC\x5D5\x5DD" : L"Title " + std::to_wstring(cut));
        if (cut + 1 < cuts)
        {
            for (std::size_t hour = 0; hour < 24; ++hour)
                use.lPlays += use.colByHour[hour] = static_cast<std::int32_t>((hour + cut) % 3);
            use.titleDistances = PlayDistances{60, 60, 120};
        }
        level.cuts.push_back(use);
    }
    level.artists = {{TextKey(L"<Ash> \"Quoted\""), 2, 30, 0.5, 0.75, PlayDistances{21, 44.4, 4000}},
                     {TextKey(L"Elm"), 1, 0, 0.5, 0.25, std::nullopt}};
    level.neverPlayed = {{cuts - 1, 0, 12, eGlobalArtist, 0}};
    level.advice = {L"fair rotation: never played 1 -> 0, under half 0 -> 0, no rule broken"};
    return level;
}

StationHealth StationOf(std::vector<LevelHealth> levels)
{
    StationHealth health;
    health.dtStart = DateTimeOf({2026, 11, 22, 6, 0, 0});
    health.dDays = 28;
    health.sPlan = L"clock file <hot>.txt";
    health.sPlanFile = L"<hot>.txt";
    health.lPicks = 1234;
    health.levels = std::move(levels);
    health.blockers = {{TextKey(L"k"), TextKey(L"Ash & Elm"), TextKey(L"Sun")}};
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

TEST(HtmlReport, TenThousandCutsStayBelowFiveMegabytes)
{
    constexpr std::size_t megabytes = 1'000'000;
    LevelHealth longNames = RedLevel(10'000);
    for (CutUse& cut : longNames.cuts)
    {
        cut.cArtist = TextKey(L"Artist " + std::wstring(200, L'x'));
        cut.cTitle = TextKey(L"Title " + std::wstring(200, L'y'));
        cut.colByHour.fill(2);
    }
    EXPECT_LT(HtmlReport(StationOf(std::vector<LevelHealth>(100, RedLevel(100)))).size(), 5 * megabytes);
    EXPECT_LT(HtmlReport(StationOf({RedLevel(10'000)})).size(), 5 * megabytes);
    EXPECT_LT(HtmlReport(StationOf({longNames})).size(), 5 * megabytes);
}

TEST(HtmlReport, EachLevelSaysWhyItIsNotGreen)
{
    LevelHealth red = RedLevel(3);
    red.why = {L"1 cut never plays", L"the artist separation of 60 minutes cannot be kept: 45 at most"};
    LevelHealth yellow;
    yellow.sKey = L"A&B\t1";
    yellow.eLight = Light::Yellow;
    yellow.lPicks = 9;
    yellow.lAttainableArtistMins = lAnyMins;
    yellow.why = {L"1 of 200 picks breaks a rule"};
    StationHealth health = StationOf({red, yellow});
    health.warnings = {L"The rules of <Rock> 2 cannot be read now."};
    health.options = {false, true};
    const std::string sPage = HtmlReport(health);
    for (const char* sPart :
         {"<p>Red: 1 cut never plays; the artist separation of 60 minutes cannot be kept: 45 at most.</p>",
          "<p>Yellow: 1 of 200 picks breaks a rule.</p>", "<p>Nothing that was tried helps.</p>",
          "<p>0 cuts by 0 artists. Asked every", "<td>any<td>", "aria-label=\"Artists of R&amp;B 2\"",
          "<p>The rules of &lt;Rock&gt; 2 cannot be read now.</p>",
          "Fair rotation off, featured artists on.</p>"})
        EXPECT_NE(sPage.find(sPart), std::string::npos) << sPart;
    EXPECT_EQ(CountOf(sPage, "most by"), 1u) << "nobody, where no cut has an artist";
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

// Every value of a JSON text under its path: "/levels/0/key" -> "R&B\u00092", numbers and words as they are.
// Fails the test for a text that is no JSON, and for a member that an object has twice.
class JsonValues
{
public:
    explicit JsonValues(const std::string& sJson) : m_sJson(sJson)
    {
        Value("");
        Skip();
        EXPECT_EQ(m_at, m_sJson.size());
    }
    std::map<std::string, std::string> values;

private:
    void Skip() { m_at = std::min(m_sJson.find_first_not_of(" \n", m_at), m_sJson.size()); }
    bool Take(char c)
    {
        Skip();
        const bool bThere = m_at < m_sJson.size() && m_sJson[m_at] == c;
        m_at += bThere ? 1 : 0;
        return bThere;
    }
    std::string Text()
    {
        const std::size_t begin = m_at;
        while (m_at < m_sJson.size() && m_sJson[m_at] != '"')
            m_at += m_sJson[m_at] == '\\' ? 2 : 1;
        return m_sJson.substr(begin, m_at++ - begin);
    }
    void Value(const std::string& sPath)
    {
        if (Take('{'))
            Members(sPath);
        else if (Take('['))
            Items(sPath);
        else if (Take('"'))
            Add(sPath, '"' + Text());
        else
        {
            const std::size_t end = m_sJson.find_first_of(",]}\n", m_at);
            Add(sPath, m_sJson.substr(m_at, end - m_at));
            m_at = end;
        }
    }
    void Members(const std::string& sPath)
    {
        do
        {
            ASSERT_TRUE(Take('"')) << m_at;
            const std::string sName = Text();
            ASSERT_TRUE(Take(':')) << m_at;
            Value(sPath + "/" + sName);
        } while (Take(','));
        ASSERT_TRUE(Take('}')) << m_at;
    }
    void Items(const std::string& sPath)
    {
        std::size_t count = 0;
        if (Take(']'))
            return Add(sPath, "[]");
        do
            Value(sPath + "/" + std::to_string(count++));
        while (Take(','));
        ASSERT_TRUE(Take(']')) << m_at;
    }
    void Add(const std::string& sPath, const std::string& sValue)
    {
        EXPECT_TRUE(values.emplace(sPath, sValue).second) << sPath;
    }

    const std::string& m_sJson;
    std::size_t m_at = 0;
};

// What the report says of the level below.
const std::pair<const char*, const char*> ofLevel[] = {
    {"key", "\"R&B\\u00092"},
    {"light", "\"red"},
    {"why/0", "\"1 cut never plays"},
    {"cutCount", "1"},
    {"openers", "1"},
    {"artistCount", "2"},
    {"topArtist", "\"<Ash> \\\"Quoted\\\""},
    {"topArtistCuts", "2"},
    {"slotMins", "7.5"},
    {"attainableArtistMins", "45"},
    {"attainableTitleMins", "62"},
    {"artistSepMins", "60"},
    {"titleSepMins", "61"},
    {"picks", "48"},
    {"unfilled", "5"},
    {"fewestPlays", "2"},
    {"meanPlays", "16"},
    {"mostPlays", "24"},
    {"rulesBroken", "6"},
    {"neverPlayed/0/key", "\"D:\\\\0"},
    {"neverPlayed/0/artist", "\"Artist 0"},
    {"neverPlayed/0/title", "\"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"},
    {"neverPlayed/0/plays", "0"},
    {"neverPlayed/0/passedOver", "12"},
    {"neverPlayed/0/rule", "\"artist"},
    {"neverPlayed/0/blockedBy/key", "\"k"},
    {"neverPlayed/0/blockedBy/artist", "\"Ash & Elm"},
    {"neverPlayed/0/blockedBy/title", "\"Sun"},
    {"underHalf/0/key", "\"D:\\\\0"},
    {"underHalf/0/artist", "\"Artist 0"},
    {"underHalf/0/title", "\"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"},
    {"underHalf/0/plays", "1"},
    {"underHalf/0/passedOver", "2"},
    {"underHalf/0/rule", "\""},
    {"underHalf/0/blockedBy", "null"},
    {"advice/0", "\"fair rotation: never played 1 -> 0, under half 0 -> 0, no rule broken"},
    {"artists/0/name", "\"<Ash> \\\"Quoted\\\""},
    {"artists/0/cuts", "2"},
    {"artists/0/plays", "30"},
    {"artists/0/shareOfCuts", "0.5"},
    {"artists/0/shareOfPicks", "0.75"},
    {"artists/0/gaps/smallest", "21"},
    {"artists/0/gaps/median", "44.4"},
    {"artists/0/gaps/largest", "4000"},
    {"artists/1/name", "\"Elm"},
    {"artists/1/cuts", "1"},
    {"artists/1/plays", "0"},
    {"artists/1/shareOfCuts", "0.5"},
    {"artists/1/shareOfPicks", "0.25"},
    {"artists/1/gaps", "null"},
    {"cuts/0/key", "\"D:\\\\0"},
    {"cuts/0/artist", "\"Artist 0"},
    {"cuts/0/title", "\"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"},
    {"cuts/0/plays", "9"},
    {"cuts/0/titleGaps/smallest", "60"},
    {"cuts/0/titleGaps/median", "60"},
    {"cuts/0/titleGaps/largest", "120"},
    {"cuts/0/lockStep", "true"}};

TEST(JsonReport, HasEveryFigure)
{
    LevelHealth level = RedLevel(3);
    level.why = {L"1 cut never plays"};
    level.lTitleSepMins = 61;
    level.lAttainableTitleMins = 62;
    level.lUnfilled = 5;
    level.lOpeners = 1;
    level.lFewestPlays = 2;
    level.lRulesBroken = 6;
    level.cuts.resize(1);
    level.cuts[0].colByHour = {};
    level.cuts[0].colByHour[23] = 9;
    level.cuts[0].bLockStep = true;
    level.cuts[0].lPlays = 9;
    level.underHalf = {{0, 1, 2, eNone, std::nullopt}};
    level.neverPlayed[0].cut = 0;
    StationHealth health = StationOf({level});
    health.warnings = {L"Careful"};
    health.options = {true, false};
    std::map<std::string, std::string> expected{{"/start", "\"2026-11-22T06:00:00"},
                                                {"/days", "28"},
                                                {"/plan", "\"clock file <hot>.txt"},
                                                {"/planFile", "\"<hot>.txt"},
                                                {"/fairRotation", "true"},
                                                {"/featuredArtists", "false"},
                                                {"/picks", "1234"},
                                                {"/warnings/0", "\"Careful"},
                                                {"/remedies/0", "\"R&B 2: fair rotation"},
                                                {"/artistsOverAsked/0/name", "\"Ash"},
                                                {"/artistsOverAsked/0/load", "1.25"}};
    for (const auto& [sName, sValue] : ofLevel)
        expected.emplace(std::string("/levels/0/") + sName, sValue);
    for (int hour = 0; hour < 24; ++hour)
        expected.emplace("/levels/0/cuts/0/byHour/" + std::to_string(hour), hour == 23 ? "9" : "0");
    EXPECT_EQ(JsonValues(JsonReport(health)).values, expected);
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "host/day/CommandLine.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

template <class Options> Options Parsed(const std::vector<std::string>& arguments)
{
    const auto line = ParseCommandLine(arguments);
    EXPECT_TRUE(std::holds_alternative<Options>(line)) << testing::PrintToString(arguments);
    return std::get<Options>(line);
}

// A command on the station "d" and "a".
template <class Options> Options OnStation(const std::string& sCommand, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {sCommand, "--db", "d", "--app", "a"});
    const auto options = Parsed<Options>(arguments);
    EXPECT_EQ(options.sDataBase + options.sAppFolder, L"da");
    return options;
}
DayOptions Day(std::vector<std::string> arguments)
{
    return OnStation<DayOptions>("day", std::move(arguments));
}
CatsOptions Cats(std::vector<std::string> arguments)
{
    return OnStation<CatsOptions>("cats", std::move(arguments));
}

} // namespace

TEST(ParseCommandLine, ReadsAnImport)
{
    const auto options = Parsed<ImportOptions>({"import", "--db", "d.db", "--csv", "Bj\xC3\xB6rk.csv"});
    EXPECT_EQ(options.sDataBase, L"d.db");
    EXPECT_EQ(options.sCsv, L"Bj\u00F6rk.csv");
    EXPECT_FALSE(options.bProgress);
}

TEST(ParseCommandLine, ReadsAnImportFromOneSource)
{
    const auto folder =
        Parsed<ImportOptions>({"import", "--db", "d", "--folder", "m", "--category", "Rock", "--dry-run"});
    EXPECT_EQ(folder.sFolder + folder.sCategory + folder.sCsv, L"mRock");
    EXPECT_TRUE(folder.bTrial);
    EXPECT_EQ(Parsed<ImportOptions>({"import", "--db", "d", "--m3u", "l.m3u"}).sPlaylist, L"l.m3u");
    EXPECT_EQ(Parsed<ImportOptions>({"import", "--db", "d", "--csv", "c", "--map", "a=b"}).sMap, L"a=b");
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{},
                                               {"--folder", "m", "--m3u", "l"},
                                               {"--folder", "m", "--map", "a=b"},
                                               {"--csv", "c", "--category", "Rock"},
                                               {"--folder", ""}})
    {
        std::vector<std::string> arguments{"import", "--db", "d"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(Parsed<Reply>(arguments).lStatus, lExitUsage) << testing::PrintToString(wrong);
    }
}

TEST(ParseCommandLine, ReadsTheReportOfPlays)
{
    const auto bare = Parsed<PlaysOptions>({"plays", "--db", "d.db"});
    EXPECT_EQ(bare.sDataBase, L"d.db");
    EXPECT_EQ(bare.dtFrom, 0);
    EXPECT_EQ(IsoText(bare.dtTo - 1), L"9999-12-31T00:00:00");
    EXPECT_EQ(bare.sBy + bare.sCsv, L"");

    const auto all = Parsed<PlaysOptions>({"plays", "--db", "d.db", "--from", "2026-01-01T06:00", "--to",
                                           "2026-01-31", "--by", "cut", "--csv", "p.csv"});
    EXPECT_EQ(IsoText(all.dtFrom), L"2026-01-01T06:00:00");
    EXPECT_EQ(IsoText(all.dtTo), L"2026-02-01T00:00:00") << "the last day belongs to the period";
    EXPECT_EQ(all.sBy + all.sCsv, L"cutp.csv");
    const auto moment = Parsed<PlaysOptions>({"plays", "--db", "d.db", "--to", "2026-01-31T10:00"});
    EXPECT_EQ(IsoText(moment.dtTo), L"2026-01-31T10:00:00");
    EXPECT_EQ(Parsed<Reply>({"plays", "--db", "d.db", "--by", "album"}).lStatus, lExitUsage);
}

TEST(ParseCommandLine, ReadsTheWindows)
{
    const auto library = OnStation<LibraryOptions>("library", {"--picture", "p.png"});
    EXPECT_EQ(library.sPicture, L"p.png");
    EXPECT_FALSE(library.bProgress);

    const auto bare = OnStation<CategoryOptions>("category", {});
    EXPECT_EQ(bare.sPicture + bare.sCaption + bare.sCut, L"");
    EXPECT_EQ(bare.category, std::nullopt);
    EXPECT_FALSE(bare.bAllowNew || bare.bMultiSelect || bare.bProgress);

    const auto all = OnStation<CategoryOptions>("category", {"--picture", "p.png", "--category", "r&b:2",
                                                             "--caption", "Choose", "--new", "--multi",
                                                             "--cut", "x.mp3", "--progress"});
    EXPECT_EQ(all.sPicture, L"p.png");
    EXPECT_EQ(all.sCaption, L"Choose");
    EXPECT_EQ(all.category, (CategoryName{L"r&b", 2}));
    EXPECT_EQ(all.sCut, L"x.mp3");
    EXPECT_TRUE(all.bAllowNew && all.bMultiSelect && all.bProgress);
}

TEST(ParseCommandLine, ReadsWhatIsForecast)
{
    const auto simulate = OnStation<ForecastOptions>("simulate", {"--clock", "c.txt"});
    EXPECT_FALSE(simulate.bHealth);
    EXPECT_EQ(simulate.lDays, 1);
    EXPECT_EQ(simulate.dtStart, std::nullopt);
    EXPECT_EQ(simulate.sClock + simulate.sSlots + simulate.sLog, L"c.txt");
    EXPECT_EQ(simulate.rotation.bFair, std::nullopt);
    EXPECT_EQ(simulate.rotation.bFeatured, std::nullopt);
    const auto all = OnStation<ForecastOptions>(
        "simulate", {"--slots", "s.csv", "--start", "2024-03-01T10:00:00", "--days", "7", "--fair", "on",
                     "--featured", "off", "--log", "l.csv", "--progress"});
    EXPECT_EQ(all.sSlots, L"s.csv");
    EXPECT_EQ(all.dtStart, DateTimeOf({2024, 3, 1, 10, 0, 0}));
    EXPECT_EQ(all.lDays, 7);
    EXPECT_EQ(all.rotation.bFair, true);
    EXPECT_EQ(all.rotation.bFeatured, false);
    EXPECT_EQ(all.sLog, L"l.csv");
    EXPECT_TRUE(all.bProgress);
    const auto health =
        OnStation<ForecastOptions>("health", {"--clock", "c", "--html", "h.html", "--json", "j.json"});
    EXPECT_TRUE(health.bHealth);
    EXPECT_EQ(health.lDays, 28);
    EXPECT_EQ(health.sHtml + health.sJson, L"h.htmlj.json");
    EXPECT_FALSE(health.bWindow);
    const auto window =
        OnStation<ForecastOptions>("health", {"--clock", "c", "--window", "--picture", "p.png"});
    EXPECT_TRUE(window.bWindow);
    EXPECT_EQ(window.sPicture, L"p.png");
}

TEST(ParseCommandLine, ReadsWhatRotationIsToldAndAsked)
{
    const auto options = OnStation<RotationCommand>("options", {"--fair", "off"});
    EXPECT_EQ(options.eAction, RotationAction::Options);
    EXPECT_EQ(options.rotation.bFair, false);
    EXPECT_EQ(options.rotation.bFeatured, std::nullopt);
    const auto spread = OnStation<RotationCommand>("spread", {"rock:1", "pop"});
    EXPECT_EQ(spread.eAction, RotationAction::Spread);
    EXPECT_EQ(spread.levels, (std::vector<CategoryName>{{L"rock", 1}, {L"pop", 0}}));
    const auto explain = OnStation<RotationCommand>("explain", {"rock:1", "--opener"});
    EXPECT_EQ(explain.eAction, RotationAction::Explain);
    EXPECT_EQ(explain.levels, (std::vector<CategoryName>{{L"rock", 1}}));
    EXPECT_TRUE(explain.bOpener);
    EXPECT_EQ(Day({"--fair", "on"}).rotation.bFair, true);
    EXPECT_EQ(Day({"--featured", "on"}).rotation.bFeatured, true);
}

TEST(ParseCommandLine, RefusesAForecastWithoutOnePlan)
{
    const std::vector<std::vector<std::string>> wrong = {
        {"simulate", "--db", "d", "--app", "a"},
        {"simulate", "--db", "d", "--app", "a", "--clock", "c", "--slots", "s"},
        {"simulate", "--db", "d", "--app", "a", "--clock", "c", "--days", "0"},
        {"simulate", "--db", "d", "--app", "a", "--clock", "c", "--fair", "maybe"},
        {"simulate", "--db", "d", "--app", "a", "--clock", "c", "--html", "h"},
        {"health", "--db", "d", "--app", "a", "--clock", "c", "--log", "l"},
        {"health", "--db", "d", "--app", "a", "--clock", "c", "--picture", "p.png"}, // without --window
        {"spread", "--db", "d", "--app", "a"},
        {"explain", "--db", "d", "--app", "a"},
        {"explain", "--db", "d", "--app", "a", "rock:1", "rock:2"},
    };
    for (const auto& arguments : wrong)
    {
        const auto line = ParseCommandLine(arguments);
        ASSERT_TRUE(std::holds_alternative<Reply>(line)) << testing::PrintToString(arguments);
        EXPECT_EQ(std::get<Reply>(line).lStatus, lExitUsage) << testing::PrintToString(arguments);
    }
}

TEST(ParseCommandLine, ReadsEveryOptionOfADay)
{
    const auto bare = Day({});
    EXPECT_EQ(bare.dtStart, std::nullopt);
    EXPECT_EQ(bare.lHours, std::nullopt);
    EXPECT_EQ(bare.sClock + bare.sSlots + bare.sLog, L"");
    EXPECT_FALSE(bare.bSaveEach || bare.bQuiet || bare.bProgress);
    const auto options = Day({"--start", "2024-03-01T10:00:00", "--hours", "3", "--clock", "c.txt", "--log",
                              "l.csv", "--save-each", "--quiet", "--progress"});
    EXPECT_EQ(options.dtStart, DateTimeOf({2024, 3, 1, 10, 0, 0}));
    EXPECT_EQ(options.lHours, 3);
    EXPECT_EQ(options.sClock, L"c.txt");
    EXPECT_EQ(options.sLog, L"l.csv");
    EXPECT_TRUE(options.bSaveEach && options.bQuiet && options.bProgress);
    EXPECT_EQ(Day({"--slots", "s.csv"}).sSlots, L"s.csv");
}

TEST(ParseCommandLine, ReadsAWatch)
{
    const auto options = OnStation<WatchOptions>("watch", {"--csv", "c"});
    EXPECT_EQ(options.sCsv, L"c");
    EXPECT_EQ(options.lPicks, 8);
    EXPECT_FALSE(options.bProgress);
    const auto more = OnStation<WatchOptions>("watch", {"--csv", "c", "--picks", "0", "--progress"});
    EXPECT_EQ(more.lPicks, 0);
    EXPECT_TRUE(more.bProgress);
}

TEST(ParseCommandLine, ReadsEveryActionOfCats)
{
    const std::vector<CategoryName> two = {{L"hard rock", 0}, {L"pop", 2}};
    EXPECT_EQ(Cats({"list"}).eAction, CatsAction::List);
    EXPECT_TRUE(Cats({"list"}).categories.empty());
    EXPECT_EQ(Cats({"list", "hard rock", "pop:2", "--first", "5"}).categories, two);
    EXPECT_EQ(Cats({"list", "pop:2", "--first", "5"}).lFirst, 5);
    EXPECT_EQ(Cats({"new", "Bj\xC3\xB6rk: live"}).eAction, CatsAction::New);
    EXPECT_EQ(Cats({"new", "Bj\xC3\xB6rk: live"}).sNewName, L"Bj\u00F6rk: live");
    const auto level = Cats({"level", "hard rock", "7"});
    EXPECT_EQ(level.eAction, CatsAction::Level);
    EXPECT_EQ(level.categories, (std::vector<CategoryName>{{L"hard rock", 0}}));
    EXPECT_EQ(level.lLevel, 7);
    const auto shuffle = Cats({"shuffle", "hard rock", "pop:2"});
    EXPECT_EQ(shuffle.eAction, CatsAction::Shuffle);
    EXPECT_EQ(shuffle.categories, two);
    EXPECT_FALSE(shuffle.bYes);
    EXPECT_TRUE(Cats({"shuffle", "-y", "pop"}).bYes);
    const auto deletion = Cats({"delete", "hard rock", "pop:2", "--yes"});
    EXPECT_EQ(deletion.eAction, CatsAction::Delete);
    EXPECT_EQ(deletion.categories, two);
    EXPECT_TRUE(deletion.bYes);
    const auto move = Cats({"move", "hard rock", "pop:2", "--to", "new releases:1", "--exclusive", "--yes",
                            "--cut", "D:\\a.mp3", "--cut", "D:\\b, c.mp3"});
    EXPECT_EQ(move.eAction, CatsAction::Move);
    EXPECT_EQ(move.categories, two);
    EXPECT_EQ(move.to, (CategoryName{L"new releases", 1}));
    EXPECT_EQ(move.cuts, (std::vector<std::wstring>{L"D:\\a.mp3", L"D:\\b, c.mp3"}));
    EXPECT_TRUE(move.bExclusive && move.bYes);
    const auto copy = Cats({"copy", "pop", "--to", "rock"});
    EXPECT_EQ(copy.eAction, CatsAction::Copy);
    EXPECT_EQ(copy.to, (CategoryName{L"rock", 0}));
    EXPECT_TRUE(copy.cuts.empty());
    EXPECT_FALSE(copy.bExclusive || copy.bYes);
}

TEST(ParseCommandLine, TheStationMayFollowTheActionOfCats)
{
    const auto options =
        Parsed<CatsOptions>({"cats", "shuffle", "pop", "--db", "d", "--app", "a", "--progress"});
    EXPECT_EQ(options.sDataBase + options.sAppFolder, L"da");
    EXPECT_EQ(options.categories, (std::vector<CategoryName>{{L"pop", 0}}));
    EXPECT_TRUE(options.bProgress);
}

TEST(ParseCommandLine, AnswersAUsageMistakeWithOneLineAndStatusTwo)
{
    const std::vector<std::string> table[] = {
        {},
        {"dance"},
        {"import", "--db", "d"},
        {"import", "--csv", "c"},
        {"import", "--db", "", "--csv", "c"},
        {"day", "--db", "d"},
        {"day", "--db", "d", "--app", "a", "--hours", "0"},
        {"day", "--db", "d", "--app", "a", "--hours", "x"},
        {"day", "--db", "d", "--app", "a", "--hours", "99999"},
        {"day", "--db", "d", "--app", "a", "--start", "yesterday"},
        {"day", "--db", "d", "--app", "a", "--start", "2024-02-30"},
        {"day", "--db", "d", "--app", "a", "--start", ""},
        {"day", "--db", "d", "--app", "a", "--clock", "c", "--slots", "s"},
        {"day", "--db", "d", "--app", "a", "--dance"},
        {"day", "--db", "d", "--app", "a", "extra"},
        {"watch", "--db", "d", "--app", "a"},
        {"watch", "--db", "d", "--app", "a", "--csv", "c", "--picks", "-1"},
        {"watch", "--db", "d", "--app", "a", "--csv", "c", "--picks", "1001"},
        {"category", "--db", "d", "--app", "a", "--cut", "x.mp3"}, // only together with --multi
        {"cats", "--db", "d", "--app", "a"},
        {"cats", "--db", "d", "list"},
        {"cats", "--db", "d", "--app", "a", "dance"},
        {"cats", "--db", "d", "--app", "a", "list", "pop:0"},
        {"cats", "--db", "d", "--app", "a", "list", "--first", "0"},
        {"cats", "--db", "d", "--app", "a", "new"},
        {"cats", "--db", "d", "--app", "a", "new", ""},
        {"cats", "--db", "d", "--app", "a", "level", "pop"},
        {"cats", "--db", "d", "--app", "a", "level", "pop:1", "2"},
        {"cats", "--db", "d", "--app", "a", "level", "pop", "0"},
        {"cats", "--db", "d", "--app", "a", "level", "pop", "32765"},
        {"cats", "--db", "d", "--app", "a", "shuffle"},
        {"cats", "--db", "d", "--app", "a", "delete", "--yes"},
        {"cats", "--db", "d", "--app", "a", "move", "pop"},
        {"cats", "--db", "d", "--app", "a", "move", "pop", "--to", ":1"},
        {"cats", "--db", "d", "--app", "a", "copy", "pop", "--to", "rock", "--exclusive"},
        {"cats", "--db", "d", "--app", "a", "copy", "pop", "--to", "rock", "--cut", ""},
    };
    for (const auto& arguments : table)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const auto reply = Parsed<Reply>(arguments);
        EXPECT_EQ(reply.lStatus, lExitUsage);
        EXPECT_TRUE(reply.sText.starts_with(L"RavloHost: "));
        EXPECT_EQ(reply.sText.find(L'\n'), reply.sText.size() - 1);
    }
    EXPECT_EQ(Parsed<Reply>({"day", "--db", "d", "--app", "a", "--start", "noon"}).sText,
              L"RavloHost: --start: 'noon' is no time (expected yyyy-mm-ddThh:nn:ss)\n");
}

TEST(ParseCommandLine, AnswersHelpAndVersionWithStatusZero)
{
    const struct
    {
        std::vector<std::string> arguments;
        std::vector<const wchar_t*> contained;
    } colCases[] = {{{"--version"}, {L"RavloHost "}},
                    {{"--help"}, {L"import", L"watch", L"cats"}},
                    {{"cats", "--help"}, {L"NAME:LEVEL"}},
                    {{"cats", "move", "--help"}, {L"--exclusive"}},
                    {{"day", "--help"}, {L"--save-each"}}};
    for (const auto& [arguments, contained] : colCases)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const auto reply = Parsed<Reply>(arguments);
        EXPECT_EQ(reply.lStatus, lExitOk);
        for (const wchar_t* sText : contained)
            EXPECT_NE(reply.sText.find(sText), std::wstring::npos);
    }
}

TEST(ParseCommandLine, HelpIsSetInColumns)
{
    EXPECT_EQ(Parsed<Reply>({"cats", "list", "--help"}).sText,
              L"show the levels, or the cuts of a level in rotation order\n"
              L"Usage: RavloHost cats list [OPTIONS] [CATEGORY...]\n\n"
              L"Positionals:\n"
              L"  CATEGORY ...                what to show (default: every category)\n\n"
              L"Options:\n"
              L"  -h,--help                   Print this help message and exit\n"
              L"  --first N:INT in [1 - 2147483647]\n"
              L"                              show at most so many cuts of each level\n\n");
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "host/day/CommandLine.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

DayOptions Day(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"day", "--db", "d", "--app", "a"});
    const auto line = ParseCommandLine(arguments);
    EXPECT_TRUE(std::holds_alternative<DayOptions>(line));
    return std::get<DayOptions>(line);
}

CatsOptions Cats(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"cats", "--db", "d", "--app", "a"});
    const auto line = ParseCommandLine(arguments);
    EXPECT_TRUE(std::holds_alternative<CatsOptions>(line));
    return std::get<CatsOptions>(line);
}

} // namespace

TEST(ParseCommandLine, ReadsAnImport)
{
    const auto line = ParseCommandLine({"import", "--db", "d.db", "--csv", "Bj\xC3\xB6rk.csv"});
    ASSERT_TRUE(std::holds_alternative<ImportOptions>(line));
    EXPECT_EQ(std::get<ImportOptions>(line).sDataBase, L"d.db");
    EXPECT_EQ(std::get<ImportOptions>(line).sCsv, L"Bj\u00F6rk.csv");
    EXPECT_FALSE(std::get<ImportOptions>(line).bProgress);
}

TEST(ParseCommandLine, ReadsTheCategoryWindow)
{
    const auto plain = ParseCommandLine({"category", "--db", "d", "--app", "a"});
    ASSERT_TRUE(std::holds_alternative<CategoryOptions>(plain));
    const auto& bare = std::get<CategoryOptions>(plain);
    EXPECT_EQ(bare.sDataBase + bare.sAppFolder, L"da");
    EXPECT_EQ(bare.sPicture + bare.sCaption + bare.sCut, L"");
    EXPECT_EQ(bare.category, std::nullopt);
    EXPECT_FALSE(bare.bAllowNew || bare.bMultiSelect || bare.bProgress);

    const auto full =
        ParseCommandLine({"category", "--db", "d", "--app", "a", "--picture", "p.png", "--category", "r&b:2",
                          "--caption", "Choose", "--new", "--multi", "--cut", "x.mp3", "--progress"});
    ASSERT_TRUE(std::holds_alternative<CategoryOptions>(full));
    const auto& all = std::get<CategoryOptions>(full);
    EXPECT_EQ(all.sPicture, L"p.png");
    EXPECT_EQ(all.sCaption, L"Choose");
    EXPECT_EQ(all.category, (CategoryName{L"r&b", 2}));
    EXPECT_EQ(all.sCut, L"x.mp3");
    EXPECT_TRUE(all.bAllowNew && all.bMultiSelect && all.bProgress);
}

TEST(ParseCommandLine, ACutIsPlacedOnlyWhereSeveralCategoriesCanBeChosen)
{
    const auto line = ParseCommandLine({"category", "--db", "d", "--app", "a", "--cut", "x.mp3"});
    ASSERT_TRUE(std::holds_alternative<Reply>(line));
    EXPECT_EQ(std::get<Reply>(line).lStatus, lExitUsage);
}

TEST(ParseCommandLine, ReadsTheLibraryWindow)
{
    const auto line = ParseCommandLine({"library", "--db", "d", "--app", "a", "--picture", "p.png"});
    ASSERT_TRUE(std::holds_alternative<LibraryOptions>(line));
    const auto& options = std::get<LibraryOptions>(line);
    EXPECT_EQ(options.sDataBase + options.sAppFolder + options.sPicture, L"dap.png");
    EXPECT_FALSE(options.bProgress);
}

TEST(ParseCommandLine, ReadsADayWithItsDefaults)
{
    const auto options = Day({});
    EXPECT_EQ(options.sDataBase, L"d");
    EXPECT_EQ(options.sAppFolder, L"a");
    EXPECT_EQ(options.dtStart, std::nullopt);
    EXPECT_EQ(options.lHours, std::nullopt);
    EXPECT_EQ(options.sClock + options.sSlots + options.sLog, L"");
    EXPECT_FALSE(options.bSaveEach || options.bQuiet || options.bProgress);
}

TEST(ParseCommandLine, ReadsEveryOptionOfADay)
{
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
    const auto plain = ParseCommandLine({"watch", "--db", "d", "--app", "a", "--csv", "c"});
    ASSERT_TRUE(std::holds_alternative<WatchOptions>(plain));
    const auto& options = std::get<WatchOptions>(plain);
    EXPECT_EQ(options.sDataBase + options.sAppFolder + options.sCsv, L"dac");
    EXPECT_EQ(options.lPicks, 8);
    EXPECT_FALSE(options.bProgress);
    const auto more =
        ParseCommandLine({"watch", "--db", "d", "--app", "a", "--csv", "c", "--picks", "0", "--progress"});
    EXPECT_EQ(std::get<WatchOptions>(more).lPicks, 0);
    EXPECT_TRUE(std::get<WatchOptions>(more).bProgress);
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
    EXPECT_EQ(Cats({"delete", "hard rock", "pop:2", "--yes"}).eAction, CatsAction::Delete);
    EXPECT_EQ(Cats({"delete", "hard rock", "pop:2", "--yes"}).categories, two);
    EXPECT_TRUE(Cats({"delete", "hard rock", "pop:2", "--yes"}).bYes);
}

TEST(ParseCommandLine, ReadsAMoveAndACopy)
{
    const auto move = Cats({"move", "hard rock", "pop:2", "--to", "new releases:1", "--exclusive", "--yes",
                            "--cut", "D:\\a.mp3", "--cut", "D:\\b, c.mp3"});
    EXPECT_EQ(move.eAction, CatsAction::Move);
    EXPECT_EQ(move.categories, (std::vector<CategoryName>{{L"hard rock", 0}, {L"pop", 2}}));
    EXPECT_EQ(move.to, (CategoryName{L"new releases", 1}));
    EXPECT_EQ(move.cuts, (std::vector<std::wstring>{L"D:\\a.mp3", L"D:\\b, c.mp3"}));
    EXPECT_TRUE(move.bExclusive && move.bYes);
    const auto copy = Cats({"copy", "pop", "--to", "rock"});
    EXPECT_EQ(copy.eAction, CatsAction::Copy);
    EXPECT_EQ(copy.to, (CategoryName{L"rock", 0}));
    EXPECT_TRUE(copy.cuts.empty());
    EXPECT_FALSE(copy.bExclusive || copy.bYes);
}

TEST(ParseCommandLine, TakesTheStationAfterTheActionOfCatsAsWell)
{
    const auto line = ParseCommandLine({"cats", "shuffle", "pop", "--db", "d", "--app", "a", "--progress"});
    ASSERT_TRUE(std::holds_alternative<CatsOptions>(line));
    const auto& options = std::get<CatsOptions>(line);
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
        const auto line = ParseCommandLine(arguments);
        const auto sTold = testing::PrintToString(arguments);
        ASSERT_TRUE(std::holds_alternative<Reply>(line)) << sTold;
        const auto& reply = std::get<Reply>(line);
        EXPECT_EQ(reply.lStatus, lExitUsage) << sTold;
        EXPECT_TRUE(reply.sText.starts_with(L"RavloHost: ")) << sTold;
        EXPECT_EQ(reply.sText.find(L'\n'), reply.sText.size() - 1) << sTold;
    }
}

TEST(ParseCommandLine, NamesTheTimeThatIsNone)
{
    const auto line = ParseCommandLine({"day", "--db", "d", "--app", "a", "--start", "noon"});
    EXPECT_EQ(std::get<Reply>(line).sText,
              L"RavloHost: --start: 'noon' is no time (expected yyyy-mm-ddThh:nn:ss)\n");
}

TEST(ParseCommandLine, AnswersHelpAndVersionWithStatusZero)
{
    const auto version = std::get<Reply>(ParseCommandLine({"--version"}));
    EXPECT_EQ(version.lStatus, lExitOk);
    EXPECT_TRUE(version.sText.starts_with(L"RavloHost ")) << version.sText.size();
    const auto help = std::get<Reply>(ParseCommandLine({"--help"}));
    EXPECT_EQ(help.lStatus, lExitOk);
    EXPECT_NE(help.sText.find(L"import"), std::wstring::npos);
    for (const auto* sCommand : {L"watch", L"cats"})
    {
        EXPECT_NE(help.sText.find(sCommand), std::wstring::npos);
    }
    const auto catsHelp = std::get<Reply>(ParseCommandLine({"cats", "--help"}));
    EXPECT_EQ(catsHelp.lStatus, lExitOk);
    EXPECT_NE(catsHelp.sText.find(L"NAME:LEVEL"), std::wstring::npos);
    EXPECT_NE(std::get<Reply>(ParseCommandLine({"cats", "move", "--help"})).sText.find(L"--exclusive"),
              std::wstring::npos);
    const auto dayHelp = std::get<Reply>(ParseCommandLine({"day", "--help"}));
    EXPECT_EQ(dayHelp.lStatus, lExitOk);
    EXPECT_NE(dayHelp.sText.find(L"--save-each"), std::wstring::npos);
}

} // namespace ravlo

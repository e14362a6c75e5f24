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

} // namespace

TEST(ParseCommandLine, ReadsAnImport)
{
    const auto line = ParseCommandLine({"import", "--db", "d.db", "--csv", "Bj\xC3\xB6rk.csv"});
    ASSERT_TRUE(std::holds_alternative<ImportOptions>(line));
    EXPECT_EQ(std::get<ImportOptions>(line).sDataBase, L"d.db");
    EXPECT_EQ(std::get<ImportOptions>(line).sCsv, L"Bj\u00F6rk.csv");
    EXPECT_FALSE(std::get<ImportOptions>(line).bProgress);
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
    const auto dayHelp = std::get<Reply>(ParseCommandLine({"day", "--help"}));
    EXPECT_EQ(dayHelp.lStatus, lExitOk);
    EXPECT_NE(dayHelp.sText.find(L"--save-each"), std::wstring::npos);
}

} // namespace ravlo

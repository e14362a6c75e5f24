// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

class DebugLogTest : public testing::Test
{
protected:
    DebugLogTest() { cMod.StoreAppPath(L"C:\\Radio"); }

    static std::wstring LogOfDay(const std::wstring& sDay)
    {
        return std::wstring(sRadio) + L"Debugging Logs\\Scheduler\\Scheduler " + sDay + L".deb";
    }
    std::string Log(const std::wstring& sDay) const { return cPorts.cFiles.Get(LogOfDay(sDay)); }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
};

TEST_F(DebugLogTest, ADaysFirstLineCreatesItsFileAndOthersAreAppended)
{
    cPorts.cClock.SetNow(DateTimeOf({2109, 3, 5, 7, 8, 9}));
    cMod.WriteDebugLog(L"Caf\u00E9");
    cPorts.cClock.SetNow(DateTimeOf({2109, 3, 5, 7, 8, 10}));
    cMod.WriteDebugLog(L"");
    cMod.WriteDebugLog(L"\u65E5\u672C");
    EXPECT_EQ(Log(L"05"), "05/03/09 07:08:09 RavloScheduler debugging log created.\r\n"
                          "05/03/09 07:08:09 Caf\xE9\r\n"
                          "05/03/09 07:08:10 \r\n"
                          "05/03/09 07:08:10 ??\r\n");
}

TEST_F(DebugLogTest, AStampNamesTheSecondThatHasBegun)
{
    const DateTime dtMidnight = DateTimeOf({2024, 3, 5, 0, 0, 0});
    const struct
    {
        double dMilliseconds; // after midnight
        const char* sStamp;
    } rows[] = {{0, "05/03/24 00:00:00 "},          {1, "05/03/24 00:00:00 "},
                {500, "05/03/24 00:00:00 "},        {999, "05/03/24 00:00:00 "},
                {1000, "05/03/24 00:00:01 "},       {86'399'000, "05/03/24 23:59:59 "},
                {86'399'600, "05/03/24 23:59:59 "}, {86'399'999, "05/03/24 23:59:59 "}};
    for (const auto& row : rows)
    {
        cPorts.cFiles.Put(LogOfDay(L"05"), "");
        cPorts.cClock.SetNow(dtMidnight + row.dMilliseconds / 86'400'000);
        cMod.WriteDebugLog(L"x");
        EXPECT_EQ(Log(L"05"), row.sStamp + std::string("x\r\n")) << row.dMilliseconds;
    }
    EXPECT_EQ(cPorts.cFiles.Paths().size(), 1u) << "nothing goes into tomorrow's file";
}

TEST_F(DebugLogTest, EverySecondOfADayIsStampedAsItself)
{
    {
        const ModScheduler::LogScope cScope(cMod);
        for (int lSecond = 0; lSecond < 86'400; ++lSecond)
        {
            cPorts.cClock.SetNow(DateTimeOf({2024, 3, 5, lSecond / 3600, lSecond / 60 % 60, lSecond % 60}));
            cMod.WriteDebugLog(L"");
        }
    }
    const std::string sLog = Log(L"05");
    constexpr std::size_t line = 20;
    const std::size_t first = sLog.find('\n') + 1; // after the line of the creation
    ASSERT_EQ(sLog.size(), first + 86'400 * line);
    for (std::size_t second = 0; second < 86'400; ++second)
    {
        char aTime[9];
        std::snprintf(aTime, sizeof aTime, "%02d:%02d:%02d", static_cast<int>(second / 3600 % 24),
                      static_cast<int>(second / 60 % 60), static_cast<int>(second % 60));
        ASSERT_EQ(sLog.substr(first + second * line + 9, 8), aTime);
    }
}

TEST_F(DebugLogTest, AMessageIsCutAfterAThousandCharacters)
{
    for (const std::size_t length : {999u, 1000u, 1001u, 10'000'000u})
        cMod.WriteDebugLog(std::wstring(length, L'x'));
    const std::wstring sCut = std::wstring(1000, L'x') + L"...";
    EXPECT_EQ(cPorts.LogMessages(), (Lines{std::wstring(999, L'x'), std::wstring(1000, L'x'), sCut, sCut}));
}

TEST_F(DebugLogTest, ALineOrAnErrorNeverThrowsAtItsCaller)
{
    const RuntimeError cError(5);
    const std::wstring_view sText = L"x"; // no memory is needed before the guard inside
    static_assert(noexcept(cMod.WriteDebugLog(sText)));
    static_assert(noexcept(cMod.DISPLAYERROR(sText, true, cError)));
    static_assert(noexcept(cMod.ShowCriticalError(sText, cError)));
    static_assert(noexcept(cMod.LogError(sText, cError)));
}

TEST_F(DebugLogTest, LastMonthsLogOfTomorrowIsDeleted)
{
    const struct
    {
        DateFields when;
        const wchar_t* sToday;
        const wchar_t* sTomorrow;
    } days[] = {{{2024, 3, 5, 12, 0, 0}, L"05", L"06"},    {{2024, 3, 9, 0, 0, 0}, L"09", L"10"},
                {{2024, 1, 31, 23, 59, 59}, L"31", L"01"}, {{2024, 2, 28, 12, 0, 0}, L"28", L"29"},
                {{2023, 2, 28, 12, 0, 0}, L"28", L"01"},   {{2024, 12, 31, 12, 0, 0}, L"31", L"01"}};
    for (const auto& row : days)
    {
        cPorts.cClock.SetNow(DateTimeOf(row.when));
        for (int lDay = 1; lDay <= 31; ++lDay)
            cPorts.cFiles.Put(
                LogOfDay({static_cast<wchar_t>(L'0' + lDay / 10), static_cast<wchar_t>(L'0' + lDay % 10)}),
                "old");
        cMod.WriteDebugLog(L"x");
        EXPECT_EQ(cPorts.cFiles.Paths().size(), 30u) << "one deleted, all others kept";
        EXPECT_FALSE(cPorts.cFiles.FileExists(LogOfDay(row.sTomorrow)));
        EXPECT_TRUE(Log(row.sToday).starts_with("old")) << "an existing file of the day is appended to";
        EXPECT_EQ(Log(row.sToday).find("created"), std::string::npos);
    }
}

TEST_F(DebugLogTest, TodaysLinesAreWrittenEvenWhenTomorrowsFileCannotBeDeleted)
{
    cPorts.cFiles.Put(LogOfDay(L"02"), "old");
    cPorts.cFiles.SetReadOnly(LogOfDay(L"02"));
    cMod.WriteDebugLog(L"x");
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"x"});
    EXPECT_EQ(Log(L"02"), "old");
}

TEST_F(DebugLogTest, LinesOfACallAreAppendedTogetherAtItsEnd)
{
    {
        const ModScheduler::LogScope cScope(cMod);
    }
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines()) << "without lines it touches no file";
    {
        const ModScheduler::LogScope cOuter(cMod);
        cMod.WriteDebugLog(L"one");
        cPorts.cClock.Advance(2000);
        {
            const ModScheduler::LogScope cInner(cMod);
            cMod.WriteDebugLog(L"two");
        }
        EXPECT_FALSE(cPorts.cFiles.FileExists(LogOfDay(L"01")));
    }
    EXPECT_EQ(Log(L"01"), "01/03/24 12:00:00 RavloScheduler debugging log created.\r\n"
                          "01/03/24 12:00:00 one\r\n"
                          "01/03/24 12:00:02 two\r\n")
        << "each with its own time";
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines{L"Append " + LogOfDay(L"01")});
}

TEST_F(DebugLogTest, GatheredLinesGoToTheFilesOfTheirOwnDays)
{
    cPorts.cClock.SetNow(DateTimeOf({2024, 2, 29, 23, 59, 59}));
    {
        const ModScheduler::LogScope cScope(cMod);
        cMod.WriteDebugLog(L"late");
        cPorts.cClock.Advance(1000);
        cMod.WriteDebugLog(L"early");
        cMod.WriteDebugLog(L"early too");
    }
    EXPECT_EQ(Log(L"29"), "29/02/24 23:59:59 RavloScheduler debugging log created.\r\n"
                          "29/02/24 23:59:59 late\r\n");
    EXPECT_EQ(Log(L"01"), "01/03/24 00:00:00 RavloScheduler debugging log created.\r\n"
                          "01/03/24 00:00:00 early\r\n"
                          "01/03/24 00:00:00 early too\r\n");
}

TEST_F(DebugLogTest, GatheredLinesAreAppendedBeforeAnythingThatLetsOthersRun)
{
    const Lines colBefore{L"before"};
    int lSeen = 0;
    const auto look = [&] {
        EXPECT_EQ(cPorts.LogMessages(), colBefore);
        ++lSeen;
    };
    cPorts.cMessages.OnShown = look;
    cPorts.cHostLoop.OnPump = look;
    const auto Inside = [&](const std::function<void()>& letOthersRun) {
        if (cPorts.cFiles.FileExists(LogOfDay(L"01")))
            cPorts.cFiles.Delete(LogOfDay(L"01"));
        const ModScheduler::LogScope cScope(cMod);
        cMod.WriteDebugLog(L"before");
        letOthersRun();
    };
    Inside([&] { cMod.Pump(); });
    Inside([&] { cMod.Box(BoxIcon::None, BoxButtons::Ok, L"t", L"x"); });
    Inside([&] { cMod.Input(L"t", L"p"); });
    EXPECT_EQ(lSeen, 3);
    Inside([&] { cMod.FlushDebugLog(); });
    EXPECT_EQ(cPorts.LogMessages(), colBefore) << "nothing is appended twice";
}

TEST_F(DebugLogTest, LinesOfAnotherCallInsideAPumpComeAfterThoseGatheredBefore)
{
    cPorts.cHostLoop.OnPump = [&] {
        const ModScheduler::LogScope cScope(cMod);
        cMod.WriteDebugLog(L"inside");
    };
    {
        const ModScheduler::LogScope cScope(cMod);
        cMod.WriteDebugLog(L"before");
        cMod.Pump();
        cMod.WriteDebugLog(L"after");
    }
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"before", L"inside", L"after"}));
}

TEST_F(DebugLogTest, CallsMadeWhileABoxIsOpenAreWrittenAsTheyEnd)
{
    Lines colSeen; // in the log before the box is closed
    const auto call = [&] {
        {
            const ModScheduler::LogScope cScope(cMod);
            cMod.WriteDebugLog(L"one");
            cMod.WriteDebugLog(L"two");
        }
        colSeen = cPorts.LogMessages();
    };
    cPorts.cMessages.OnShown = call;
    cPorts.cHostLoop.OnPump = call;
    const std::function<void()> aOthers[] = {
        [&] { cMod.Box(BoxIcon::None, BoxButtons::Ok, L"t", L"x"); },
        [&] { cMod.Input(L"t", L"p"); },
        [&] { cMod.Pump(); },
        [&] { cMod.DISPLAYERROR(L"t", true, RuntimeError(5)); },
    };
    for (const auto& othersRun : aOthers)
    {
        colSeen.clear();
        const ModScheduler::LogScope cOuter(cMod);
        const ModScheduler::LogScope cInner(cMod);
        othersRun();
        ASSERT_GE(colSeen.size(), 2u);
        EXPECT_EQ(colSeen.back(), L"two");
        cPorts.cFiles.ClearOperations();
        cMod.WriteDebugLog(L"after");
        EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "gathered again";
    }
}

TEST_F(DebugLogTest, LinesNotedBeforeTheFolderChangesStayInTheOldFolder)
{
    {
        const ModScheduler::LogScope cScope(cMod);
        cMod.WriteDebugLog(L"old folder");
        cMod.StoreAppPath(L"C:\\Elsewhere");
        cMod.WriteDebugLog(L"no log folder there");
    }
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"old folder"});
    EXPECT_EQ(cPorts.cFiles.Paths().size(), 1u);
}

TEST_F(DebugLogTest, WithoutAFolderForLogsWritingFailsSilently)
{
    MemoryPorts cBare; // no Debugging Logs\Scheduler
    cBare.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Debugging Logs");
    ModScheduler cOther(cBare.Ports());
    cOther.WriteDebugLog(L"before any path");
    cOther.StoreAppPath(sRadio);
    EXPECT_NO_THROW(cOther.WriteDebugLog(L"x"));
    EXPECT_TRUE(cBare.cFiles.Paths().empty());
    EXPECT_TRUE(cBare.cMessages.Boxes.empty());
    cBare.cFiles.MakeFolders(L"C:\\Radio\\Debugging Logs\\Scheduler");
    cOther.WriteDebugLog(L"y");
    EXPECT_EQ(cBare.cFiles.Get(LogOfDay(L"01")).find(" x\r\n"), std::string::npos)
        << "what failed is not kept";
}

TEST_F(DebugLogTest, AFailureAtAnyStepNeverReachesTheCaller)
{
    for (int lGood = 0;; ++lGood)
    {
        RadioPorts cDisk;
        cDisk.cFiles.Put(LogOfDay(L"02"), "old");
        FailingFiles cFiles(cDisk.cFiles, lGood);
        ModScheduler cOther(cDisk.PortsWith(cFiles));
        cOther.StoreAppPath(sRadio);
        EXPECT_NO_THROW(cOther.WriteDebugLog(L"x"));
        EXPECT_NO_THROW(cOther.WriteDebugLog(L"y"));
        EXPECT_TRUE(cDisk.cMessages.Boxes.empty());
        if (!cFiles.bFailed)
        {
            EXPECT_EQ(lGood, 3) << "a delete and two appends";
            break;
        }
    }
}

} // namespace
} // namespace ravlo::test

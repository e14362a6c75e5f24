// SPDX-License-Identifier: MIT
// A station folder in use is marked, so that a second program notices.
#include "platform/StationMarker.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <chrono>

namespace ravlo::test
{
namespace
{

class StationMarkTest : public testing::Test
{
protected:
    StationMarkTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio");
        cPorts.cFiles.MakeFolders(L"C:\\Other");
        cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    }
    bool InUse(const std::wstring& sFolder = L"C:\\Radio") { return IsStationInUse(cPorts.cFiles, sFolder); }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    const Lines colWarning{
        L"The station is in use by another program or manager, which may overwrite its orders: "
        L"C:\\Radio\\"};
};

TEST_F(StationMarkTest, AStationIsMarkedFromItsPopulationToTheEnd)
{
    EXPECT_FALSE(InUse());
    cLibrary.Populate();
    EXPECT_TRUE(InUse());
    cLibrary.cHost.OnEvent = [&](const std::wstring&) { EXPECT_TRUE(InUse()); };
    cLibrary.Populate(L"c:\\RADIO"); // the same folder
    EXPECT_TRUE(InUse());
    cLibrary.End();
    EXPECT_FALSE(InUse());
    EXPECT_TRUE(cPorts.LogMessages().empty());
}

TEST_F(StationMarkTest, ASecondManagerIsLoggedAndWorks)
{
    cLibrary.Populate();
    Library cSecond(cPorts);
    cSecond.cDataBase->Add(L"b.mp3", L"Pop", 1);
    cSecond.Populate();
    EXPECT_EQ(cPorts.LogMessages(), colWarning);
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_EQ(cSecond.Order(L"Pop", 1), Keys{L"b.mp3"});
    cSecond.cSchedMan = nullptr;
    EXPECT_TRUE(InUse()) << "the first one's mark";
}

TEST_F(StationMarkTest, TheMarkIsTakenAtTheNextPopulationOnceItIsFree)
{
    cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler");
    std::unique_ptr<HeldFile> cOther = MarkStation(cPorts.cFiles, L"C:\\Radio");
    cLibrary.Populate();
    cLibrary.Populate();
    EXPECT_EQ(cPorts.LogMessages(), (Lines{colWarning[0], colWarning[0]}));
    cOther = nullptr;
    cLibrary.Populate();
    EXPECT_TRUE(InUse());
    EXPECT_EQ(cPorts.LogMessages().size(), 2u);
}

TEST_F(StationMarkTest, TheMarkIsWhereTheTreeIs)
{
    cLibrary.Populate();
    for (const bool bFails : {true, false})
    {
        cLibrary.cDataBase->bAllCutsFails = bFails;
        cLibrary.Populate(L"C:\\Other");
        EXPECT_EQ(InUse(), bFails);
        EXPECT_EQ(InUse(L"C:\\Other"), !bFails);
    }
    EXPECT_EQ(cPorts.cMessages.Boxes.size(), 1u);
}

TEST_F(StationMarkTest, AStationThatCannotBeMarkedIsPopulatedAllTheSame)
{
    cPorts.cFiles.Put(StationMarkerPath(L"C:\\Radio"), "");
    cPorts.cFiles.SetReadOnly(StationMarkerPath(L"C:\\Radio"));
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), Keys{L"a.mp3"});
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"DISPLAYERROR, PopulateFromDataBase, marking the station 75 "
                                          L"Path/File access error"});
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

// ---- leftovers of a killed program

TEST_F(StationMarkTest, TemporaryFilesOlderThanADayAreDeleted)
{
    using std::chrono::hours;
    using std::chrono::seconds;
    const std::wstring sScheduler = L"C:\\Radio\\Scheduler\\";
    const std::wstring sReadOnly = sScheduler + L"~00000000.tmp";
    const struct
    {
        std::wstring sPath;
        seconds lAge;
        bool bStays;
    } rows[] = {
        {sReadOnly, hours(48), true}, // and stops nothing
        {sScheduler + L"~0123abcd.tmp", hours(25), false},
        {sScheduler + L"History_and_Ordering\\~ffffffff.tmp", hours(24) + seconds(1), false},
        {sScheduler + L"Rules\\~00000000.tmp", hours(24 * 365), false},
        {sScheduler + L"~0123abce.tmp", hours(24), true},
        {sScheduler + L"~0123abcf.tmp", seconds(-5), true},
        {sScheduler + L"~work.tmp", hours(240), true},
        {sScheduler + L"MainCats.txt.bak", hours(240), true},
        {sScheduler + L"Rules\\Mine\\~0123abcd.tmp", hours(240), true},
        {L"C:\\Radio\\~0123abcd.tmp", hours(240), true},
    };
    for (const auto& row : rows)
    {
        cPorts.cFiles.Put(row.sPath, "left");
        cPorts.cFiles.SetAge(row.sPath, row.lAge);
    }
    cPorts.cFiles.SetReadOnly(sReadOnly);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.Tree(), L"Rock 1: a.mp3");
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    for (const auto& row : rows)
        EXPECT_EQ(cPorts.cFiles.FileExists(row.sPath), row.bStays) << testing::PrintToString(row.sPath);
}

} // namespace
} // namespace ravlo::test

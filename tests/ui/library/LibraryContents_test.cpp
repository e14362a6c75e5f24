// SPDX-License-Identifier: MIT
#include "ui/library/LibraryContents.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

class LibraryContentsTest : public testing::Test
{
protected:
    LibraryContentsTest()
    {
        cLibrary.cDataBase->Add(L"r2", L"Rock", 2);
        cLibrary.cDataBase->Add(L"r1a", L"Rock/Jazz", 1);
        cLibrary.cDataBase->Add(L"r1b", L"Rock", 1);
        cLibrary.cDataBase->Add(L"none", L"", 1);
    }
    ~LibraryContentsTest() override { cLibrary.cSchedMan->SetProgressFollower(nullptr); }

    // Lists a node's cuts and reports them as shown.
    ListedCuts List(const std::wstring& sKey)
    {
        cLibrary.cSchedMan->SetProgressFollower(&cProgress);
        cProgress.colSaid.clear();
        ListedCuts listed = ListCuts(*cLibrary.cSchedMan, sKey).value();
        FillingReport(*cLibrary.cSchedMan, listed).Done();
        return listed;
    }
    static Keys KeysOf(const ListedCuts& listed)
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : listed.colCuts)
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    HostEvents cProgress;
};

TEST_F(LibraryContentsTest, WithoutMainCategoriesNothingIsListedOrReported)
{
    EXPECT_TRUE(NodesOf(nullptr).empty());
    cLibrary.cSchedMan->SetProgressFollower(&cProgress);
    EXPECT_FALSE(ListCuts(*cLibrary.cSchedMan, L"ALL AUDIO\t0"));
    EXPECT_TRUE(cProgress.colSaid.empty());
    cLibrary.cDataBase->colCuts.clear();
    cLibrary.Populate();
    cProgress.colSaid.clear();
    EXPECT_FALSE(ListCuts(*cLibrary.cSchedMan, L"ALL AUDIO\t0"));
    EXPECT_TRUE(cProgress.colSaid.empty());
}

TEST_F(LibraryContentsTest, AKeyNamesAllAudioAMainCategoryOrALevelInAnyCase)
{
    cLibrary.Populate();
    cLibrary.MainCat(L"Rock")->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, L"Rock", 7));
    const struct
    {
        const wchar_t* sKey;
        Keys colCuts;
        bool bAllAudio;
        bool bSeveral;
        std::shared_ptr<clsCat> cShown;
        const wchar_t* sNormalised;
        const wchar_t* sWhat;
    } cases[] = {
        {L"all Audio\t0",
         {L"r2", L"r1a", L"r1b", L"none"},
         true,
         false,
         nullptr,
         L"all Audio\t0",
         L"All Audio"},
        {L"rock\t0", {L"r1a", L"r1b", L"r2"}, false, true, cLibrary.MainCat(L"Rock"), L"rock\t0", L"Rock"},
        {L"Rock\t 1.0", {L"r1a", L"r1b"}, false, false, cLibrary.Level(L"Rock", 1), L"Rock\t1", L"Rock 1"},
        {L"Rock\t7", {}, false, false, cLibrary.Level(L"Rock", 7), L"Rock\t7", L"Rock 7"},
    };
    for (const auto& test : cases)
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(test.sKey)));
        const ListedCuts listed = List(test.sKey);
        EXPECT_EQ(KeysOf(listed), test.colCuts);
        EXPECT_EQ(listed.bShowingAllAudio, test.bAllAudio);
        EXPECT_EQ(listed.bShowingMoreThanOneLevel, test.bSeveral);
        EXPECT_EQ(listed.cCatShown, test.cShown);
        EXPECT_EQ(listed.strCatKey, test.sNormalised);
        const std::wstring sCount = std::to_wstring(test.colCuts.size());
        EXPECT_EQ(cProgress.colSaid,
                  (Lines{L"Start " + sCount + L": Collecting Database info...",
                         L"Done: Finished Collecting Info.|Got " + sCount + L" total.",
                         L"Start " + sCount + L": Populating Grid...",
                         std::wstring(L"Done: Showing ") + test.sWhat + L"|Showing " + sCount + L" total."}));
    }
}

// A level is one piece behind the name, and that a number of 32 bits.
TEST_F(LibraryContentsTest, WhatDoesNotExistListsNothingAndIsLogged)
{
    cLibrary.Populate();
    EXPECT_EQ(List(L"Gone\t1").cCatShown, nullptr);
    EXPECT_EQ(cPorts.LogMessages().back(), L"Unexpected - why does the main cat NOT exist?");
    for (const wchar_t* sLevel : {L"\t9", L"\tabc", L"\t99999999999", L"", L"\t", L"\t1\t2", L"\t-1"})
    {
        const std::wstring sKey = std::wstring(L"Rock") + sLevel;
        const std::wstring sLevelText = std::wstring(sLevel).substr(*sLevel ? 1 : 0);
        const ListedCuts listed = List(sKey);
        EXPECT_EQ(listed.cCatShown, nullptr);
        EXPECT_FALSE(listed.bShowingMoreThanOneLevel);
        EXPECT_EQ(listed.strCatKey, sKey);
        EXPECT_TRUE(listed.colCuts.empty());
        EXPECT_EQ(cPorts.LogMessages().back(),
                  L"Unexpected - subcat " + sLevelText + L" does not exist in: Rock");
        EXPECT_EQ(cProgress.colSaid.back(), L"Done: Showing Rock " + sLevelText + L"|Showing 0 total.");
    }
}

TEST_F(LibraryContentsTest, WithoutAFollowerNothingIsReported)
{
    cLibrary.Populate();
    const ListedCuts listed = ListCuts(*cLibrary.cSchedMan, L"Rock\t1").value();
    EXPECT_NO_THROW(FillingReport(*cLibrary.cSchedMan, listed).Done());
}

// Every 50 rows: a pause of 1 ms while less than 201 ms have passed since the last report, else a report.
TEST_F(LibraryContentsTest, FillingPausesAndReportsAreThrottled)
{
    for (int lCut = 0; lCut < 250; ++lCut)
        cLibrary.cDataBase->Add(L"many" + std::to_wstring(lCut), L"Many", 1);
    cLibrary.Populate();
    const ListedCuts listed = List(L"Many\t1");
    cProgress.colSaid.clear();
    std::vector<std::uint32_t> colPauses;
    cPorts.cHostLoop.OnSleep = [&](std::uint32_t lMs) {
        colPauses.push_back(lMs);
        cPorts.cClock.Advance(100); // and the pause of 1 ms itself
    };
    FillingReport report(*cLibrary.cSchedMan, listed);
    for (std::size_t row = 1; row <= 250; ++row)
        report.RowFilled(row);
    EXPECT_EQ(colPauses, (std::vector<std::uint32_t>{1, 1, 1, 1}));
    EXPECT_EQ(cProgress.colSaid,
              (Lines{L"Start 250: Populating Grid...", L"Progress 150/250: Populating Grid - 150 of 250"}));
}

TEST_F(LibraryContentsTest, CollectingReportsEvery20ItemsAfter101Ms)
{
    for (int lCut = 0; lCut < 16; ++lCut)
        cLibrary.cDataBase->Add(L"c" + std::to_wstring(lCut), L"Rock", 1);
    for (const auto& [lMsALook, bReports] : {std::pair{100u, false}, std::pair{101u, true}})
    {
        TickingClock cClock(cPorts.cClock, lMsALook);
        Ports ports{cClock,           cPorts.cHostLoop, cPorts.cFiles, cPorts.cMessages, cPorts.cUserSettings,
                    cPorts.cCodePage, cPorts.cRandom};
        ModScheduler cMod(ports);
        clsSchedMan cSchedMan(cMod);
        cSchedMan.PopulateFromDataBase(cLibrary.cDataBase, sRadio);
        cSchedMan.SetProgressFollower(&cProgress);
        cProgress.colSaid.clear();
        ListCuts(cSchedMan, L"ALL AUDIO\t0");
        EXPECT_EQ(cProgress.colSaid.at(1) == L"Progress 20/20: 20", bReports) << lMsALook;
    }
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "ui/library/LibraryFilling.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

// A host's grid, cell by cell.
class RecordingGrid final : public CellGrid
{
public:
    Lines colHeaders;
    std::vector<Lines> colRows; // the cells in the order they were set, "Key=value"
    std::vector<bool> bRedraws;
    std::size_t failsAtRow = 0;
    std::function<void()> OnCall; // a host's grid may do anything in its members

    void SetRedraw(bool bRedraw) override { bRedraws.push_back(bRedraw); }
    std::size_t ColCount() const override { return colHeaders.size(); }
    void AddCol(const std::wstring& sKey, const std::wstring& sHeader) override
    {
        colHeaders.push_back(sKey + L"=" + sHeader);
    }
    void Clear() override { colRows.clear(); }
    void SetRowCount(std::size_t rows) override
    {
        if (const auto hook = OnCall)
            hook();
        colRows.resize(rows);
    }
    void SetRowKey(std::size_t lRow, const std::wstring& sKey) override
    {
        if (const auto hook = OnCall)
            hook();
        if (lRow == failsAtRow)
            throw RuntimeError(error::SubscriptOutOfRange);
        colRows.at(lRow - 1).push_back(L"key=" + sKey);
    }
    void SetCell(std::size_t lRow, const wchar_t* sColKey, const std::wstring& sValue) override
    {
        colRows.at(lRow - 1).push_back(std::wstring(sColKey) + L"=" + sValue);
    }
    void SetCell(std::size_t lRow, const wchar_t* sColKey, std::int32_t lValue) override
    {
        SetCell(lRow, sColKey, std::to_wstring(lValue));
    }
    Keys RowKeys() const
    {
        Keys colKeys;
        for (const Lines& row : colRows)
            colKeys.push_back(row.at(0).substr(4));
        return colKeys;
    }
};

class RecordingProgress final : public ProgressTarget
{
public:
    Lines colSaid;
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override
    {
        colSaid.push_back(L"Start " + std::to_wstring(lMax) + L": " + sReason);
    }
    void Progress(const std::wstring& sText, std::int32_t lValue) override
    {
        colSaid.push_back(L"At " + std::to_wstring(lValue) + L": " + sText);
    }
    void ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond) override
    {
        colSaid.push_back(L"End: " + sFirst + L"|" + sSecond);
    }
};

class RecordingTree final : public TreeImages
{
public:
    Keys colOpen;
    void ShowAsOpen(const std::wstring& sKey) override { colOpen.push_back(sKey); }
};

class LibraryFillingTest : public testing::Test
{
protected:
    LibraryFillingTest()
    {
        cLibrary.cDataBase->Add(L"r2", L"Rock", 2);
        cLibrary.cDataBase->Add(L"r1a", L"Rock/Jazz", 1);
        cLibrary.cDataBase->Add(L"r1b", L"Rock", 1);
        cLibrary.cDataBase->Add(L"none", L"", 1);
    }
    std::optional<ShownCuts> Show(const std::wstring& sKey)
    {
        return ShowGridCuts(*cLibrary.cSchedMan, cGrid, sKey, &cTree, &cProgress);
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    RecordingGrid cGrid;
    RecordingProgress cProgress;
    RecordingTree cTree;
};

TEST_F(LibraryFillingTest, WithoutMainCategoriesNothingIsTouched)
{
    EXPECT_FALSE(Show(L"ALL AUDIO\t0"));
    cLibrary.cDataBase->colCuts.clear();
    cLibrary.Populate();
    EXPECT_FALSE(Show(L"ALL AUDIO\t0"));
    EXPECT_TRUE(cGrid.colHeaders.empty());
    EXPECT_TRUE(cGrid.bRedraws.empty());
    EXPECT_TRUE(cProgress.colSaid.empty());
    EXPECT_TRUE(cTree.colOpen.empty());
}

TEST_F(LibraryFillingTest, AllAudioInAnyCaseListsTheDatabaseInItsOrder)
{
    cLibrary.Populate();
    const std::optional<ShownCuts> shown = Show(L"all Audio\t0");
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->bShowingAllAudio);
    EXPECT_FALSE(shown->bShowingMoreThanOneLevel);
    EXPECT_EQ(shown->cCatShown, nullptr);
    EXPECT_EQ(cGrid.RowKeys(), (Keys{L"r2", L"r1a", L"r1b", L"none"}));
    EXPECT_EQ(cProgress.colSaid,
              (Lines{L"Start 4: Collecting Database info...", L"End: Finished Collecting Info.|Got 4 total.",
                     L"Start 4: Populating Grid...", L"End: Showing All Audio|Showing 4 total."}));
}

TEST_F(LibraryFillingTest, AMainCategoryListsItsLevelsOneAfterAnother)
{
    cLibrary.Populate();
    const std::optional<ShownCuts> shown = Show(L"rock\t0");
    ASSERT_TRUE(shown);
    EXPECT_FALSE(shown->bShowingAllAudio);
    EXPECT_TRUE(shown->bShowingMoreThanOneLevel);
    EXPECT_EQ(shown->cCatShown, cLibrary.MainCat(L"Rock"));
    EXPECT_EQ(cGrid.RowKeys(), (Keys{L"r1a", L"r1b", L"r2"}));
    EXPECT_EQ(cProgress.colSaid.back(), L"End: Showing Rock|Showing 3 total.");
    EXPECT_EQ(cTree.colOpen, (Keys{L"rock\t0"}));
}

TEST_F(LibraryFillingTest, ALevelListsItsScheduleOrderAndItsKeyIsNormalised)
{
    cLibrary.Populate();
    const std::optional<ShownCuts> shown = Show(L"Rock\t 1.0");
    ASSERT_TRUE(shown);
    EXPECT_FALSE(shown->bShowingMoreThanOneLevel);
    EXPECT_EQ(shown->cCatShown, cLibrary.Level(L"Rock", 1));
    EXPECT_EQ(shown->strCatKey, L"Rock\t1");
    EXPECT_EQ(cTree.colOpen, (Keys{L"Rock\t1"}));
    EXPECT_EQ(cGrid.RowKeys(), (Keys{L"r1a", L"r1b"}));
    EXPECT_EQ(cProgress.colSaid.back(), L"End: Showing Rock 1|Showing 2 total.");
}

TEST_F(LibraryFillingTest, EachRowHasItsKeyAndItsTenCells)
{
    const std::shared_ptr<FakeCut> cCut = cLibrary.cDataBase->Add(L"C:\\x.mp3", L"Rock/Pop", 3);
    cCut->lID = 42;
    cCut->SetArtist(L"A");
    cCut->SetTitle(L"T");
    cCut->SetDurationmS(61'000);
    cCut->SetYear(1999);
    cCut->SetOpener(true);
    cLibrary.Populate();
    Show(L"Rock\t3");
    ASSERT_EQ(cGrid.colRows.size(), 1u);
    EXPECT_EQ(cGrid.colRows[0],
              (Lines{L"key=C:\\x.mp3", L"Pos=1", L"ID=42", L"Artist=A", L"Title=T", L"Dur=1:01",
                     L"Cat=Rock/Pop", L"Lvl=3", L"Year=1999", L"Opener=Y", L"Path=C:\\x.mp3"}));
    Show(L"Rock\t2");
    EXPECT_EQ(cGrid.colRows[0][9], L"Opener=N");
}

TEST_F(LibraryFillingTest, ColumnsAreAddedOnlyToAGridWithoutAny)
{
    cLibrary.Populate();
    Show(L"Rock\t1");
    EXPECT_EQ(cGrid.colHeaders,
              (Lines{L"Pos=Pos", L"ID=ID", L"Artist=Artist", L"Title=Title", L"Dur=Dur", L"Cat=Categories",
                     L"Lvl=Lvl", L"Year=Year", L"Opener=Opener", L"Path=Path"}));
    cGrid.colHeaders = {L"one"};
    Show(L"Rock\t1");
    EXPECT_EQ(cGrid.colHeaders, (Lines{L"one"}));
}

TEST_F(LibraryFillingTest, RedrawIsOffWhileRowsAreWrittenAndOnAgainWhateverHappens)
{
    cLibrary.Populate();
    Show(L"Rock\t1");
    EXPECT_EQ(cGrid.bRedraws, (std::vector<bool>{false, true}));
    cGrid.failsAtRow = 2;
    EXPECT_THROW(Show(L"Rock\t1"), RuntimeError);
    EXPECT_EQ(cGrid.bRedraws, (std::vector<bool>{false, true, false, true}));
}

TEST_F(LibraryFillingTest, WhatDoesNotExistListsNothingAndIsLogged)
{
    cLibrary.Populate();
    std::optional<ShownCuts> shown = Show(L"Gone\t1");
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->cCatShown, nullptr);
    EXPECT_TRUE(cGrid.colRows.empty());
    EXPECT_EQ(cPorts.LogMessages().back(), L"Unexpected - why does the main cat NOT exist?");
    shown = Show(L"Rock\t9");
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->cCatShown, nullptr);
    EXPECT_EQ(cPorts.LogMessages().back(), L"Unexpected - subcat 9 does not exist in: Rock");
    EXPECT_EQ(cProgress.colSaid.back(), L"End: Showing Rock 9|Showing 0 total.");
}

// One piece behind the name, and that a number of 32 bits: anything else is no level.
TEST_F(LibraryFillingTest, ALevelTextThatIsNoLevelListsNothingAndIsLogged)
{
    cLibrary.Populate();
    for (const wchar_t* sLevel : {L"\tabc", L"\t99999999999", L"", L"\t", L"\t1\t2", L"\t-1"})
    {
        const std::wstring sKey = std::wstring(L"Rock") + sLevel;
        const std::optional<ShownCuts> shown = Show(sKey);
        ASSERT_TRUE(shown);
        EXPECT_EQ(shown->cCatShown, nullptr);
        EXPECT_FALSE(shown->bShowingMoreThanOneLevel);
        EXPECT_EQ(shown->strCatKey, sKey);
        EXPECT_TRUE(cGrid.colRows.empty());
        EXPECT_EQ(cPorts.LogMessages().back(), L"Unexpected - subcat " +
                                                   std::wstring(sLevel).substr(*sLevel ? 1 : 0) +
                                                   L" does not exist in: Rock");
    }
}

TEST_F(LibraryFillingTest, AHostsGridMayEditCategoriesWhileItIsFilled)
{
    cLibrary.Populate();
    for (const wchar_t* sKey : {L"ALL AUDIO\t0", L"Rock\t0", L"Rock\t1"})
    {
        cLibrary.Restart();
        cGrid.OnCall = nullptr;
        Show(sKey);
        const Keys colExpected = cGrid.RowKeys();
        cGrid.OnCall = [&] {
            const std::shared_ptr<CatCollection> colMainCats = cLibrary.cSchedMan->colMainCats();
            if (!colMainCats->Empty())
                cLibrary.cSchedMan->DeleteCats({colMainCats->At(0)});
        };
        Show(sKey);
        EXPECT_EQ(cGrid.RowKeys(), colExpected) << "as it was at the call";
        EXPECT_EQ(cLibrary.MainCat(L"Rock"), nullptr);
        for (const std::shared_ptr<Cut>& cCut : cLibrary.cDataBase->colCuts)
            cCut->SetCategoryText(cCut->Key().Text() == L"none" ? L"" : L"Rock");
    }
}

TEST_F(LibraryFillingTest, AnEmptyLevelIsAnEmptyGrid)
{
    cLibrary.Populate();
    cLibrary.MainCat(L"Rock")->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, L"Rock", 7));
    Show(L"Rock\t7");
    EXPECT_TRUE(cGrid.colRows.empty());
    EXPECT_EQ(cProgress.colSaid.back(), L"End: Showing Rock 7|Showing 0 total.");
}

TEST_F(LibraryFillingTest, TreeAndProgressMayBeMissing)
{
    cLibrary.Populate();
    EXPECT_TRUE(ShowGridCuts(*cLibrary.cSchedMan, cGrid, L"Rock\t1", nullptr, nullptr));
    EXPECT_EQ(cGrid.colRows.size(), 2u);
}

// Every 50 rows: a pause of 1 ms while less than 201 ms have passed since the last report, else a report.
TEST_F(LibraryFillingTest, CellByCellPausesAndReportsAreThrottled)
{
    for (int lCut = 0; lCut < 250; ++lCut)
        cLibrary.cDataBase->Add(L"many" + std::to_wstring(lCut), L"Many", 1);
    cLibrary.Populate();
    cPorts.cHostLoop.lSleeps = 0;
    std::vector<std::uint32_t> colPauses;
    cPorts.cHostLoop.OnSleep = [&](std::uint32_t lMs) {
        colPauses.push_back(lMs);
        cPorts.cClock.Advance(100); // and the pause of 1 ms itself
    };
    Show(L"Many\t1");
    EXPECT_EQ(colPauses, (std::vector<std::uint32_t>{1, 1, 1, 1}));
    EXPECT_EQ(cProgress.colSaid[3], L"At 150: Populating Grid - 150 of 250");
    EXPECT_EQ(cProgress.colSaid.size(), 5u);
}

TEST(LibraryCollectingTest, CollectingReportsEvery20ItemsAfter101Ms)
{
    for (const auto& [lMsALook, bReports] : {std::pair{100u, false}, std::pair{101u, true}})
    {
        RadioPorts cPorts;
        Library cLibrary(cPorts);
        for (int lCut = 0; lCut < 20; ++lCut)
            cLibrary.cDataBase->Add(L"c" + std::to_wstring(lCut), L"Rock", 1);
        cLibrary.Populate();
        TickingClock cClock(cPorts.cClock, lMsALook);
        Ports ports{cClock,           cPorts.cHostLoop, cPorts.cFiles, cPorts.cMessages, cPorts.cUserSettings,
                    cPorts.cCodePage, cPorts.cRandom};
        ModScheduler cMod(ports);
        clsSchedMan cSchedMan(cMod);
        cSchedMan.PopulateFromDataBase(cLibrary.cDataBase, sRadio);
        RecordingGrid cGrid;
        RecordingProgress cProgress;
        ShowGridCuts(cSchedMan, cGrid, L"ALL AUDIO\t0", nullptr, &cProgress);
        EXPECT_EQ(cProgress.colSaid[1] == L"At 20: 20", bReports) << lMsALook;
    }
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "ui/library/GridHeadings.h"

#include "frmUILibTest.h"

namespace ravlo::test
{
namespace
{

constexpr std::size_t album = 10, lastPlayed = 11, nextToPlay = nextToPlayColumn, plays = 13;

class GridHeadingsTest : public frmUILibTest
{
protected:
    // The cells of a column, as shown.
    Lines Column(std::size_t column)
    {
        Lines colCells;
        for (std::size_t row = 0; row < Grid().RowCount(); ++row)
            colCells.push_back(Grid().CellText(row, column));
        return colCells;
    }
};

TEST_P(GridHeadingsTest, TheMenuShowsAndHidesColumns)
{
    ChooseFromHeadings(L"");
    EXPECT_EQ(cGridView.colMenu,
              (Lines{L"*&Schedule order", L"Co&lumns...", L" *Pos", L" Next to play", L" *ID", L" *Artist",
                     L" *Title", L" Album", L" *Dur", L" *Categories", L" *Lvl", L" *Year", L" Opener",
                     L" Last played", L" Plays (28 days)", L" *Path", L" ", L" &Reset columns"}));
    for (const wchar_t* sColumn : {L"Album", L"Opener", L"Artist"})
        ChooseFromHeadings(std::wstring(L"Co&lumns...>") + sColumn);
    EXPECT_TRUE(cGridView.layout.IsShown(album));
    EXPECT_TRUE(cGridView.layout.IsShown(8));
    EXPECT_FALSE(cGridView.layout.IsShown(2));
    cForm.Closing();
    cGridView.layout = ColumnLayout();
    cForm.Opened();
    EXPECT_TRUE(cGridView.layout.IsShown(album)) << "stored";
    ChooseFromHeadings(L"Co&lumns...>&Reset columns");
    EXPECT_EQ(cGridView.layout.Text(), ColumnLayout().Text());
    EXPECT_EQ(cGridView.layout.FurtherText(), ColumnLayout().FurtherText());
}

TEST_P(GridHeadingsTest, TheLastColumnCannotBeHidden)
{
    for (std::size_t column = 1; column < listColumnCount; ++column)
        cGridView.layout.Show(column, false);
    ChooseFromHeadings(L"Co&lumns...>Pos");
    EXPECT_EQ(cGridView.colMenu[2], L" -*Pos");
    EXPECT_TRUE(cGridView.layout.IsShown(0));
}

TEST_P(GridHeadingsTest, FurtherColumnsShowWhatIsKnownOfACut)
{
    const DateTime dtNow = cPorts.cClock.Now();
    DataBase().colCuts[0]->SetAlbum(L"Arrival");
    DataBase().colCuts[0]->SetLastPlayed(DateTimeOf({2024, 3, 9, 18, 5, 59}));
    DataBase().colCuts[1]->SetLastPlayed(dtNow - 27.9);
    DataBase().colCuts[2]->SetLastPlayed(dtNow - 28.1);
    ShowNode(L"Rock", 1);
    EXPECT_EQ(Column(album), (Lines{L"Arrival", L"", L""}));
    EXPECT_EQ(Column(lastPlayed)[0], L"2024-03-09 18:05");
    EXPECT_EQ(Column(plays)[1], L"1+") << "without a record a cut knows its last play only";
    EXPECT_EQ(Column(plays)[2], L"0");
    ShowNode(sAllAudio, 0);
    EXPECT_EQ(Column(lastPlayed)[5], L"never");
    EXPECT_EQ(Column(plays)[5], L"0");
}

// The plays column over a record of plays.
class RecordedPlaysTest : public GridHeadingsTest
{
protected:
    struct Play
    {
        DateTime dtPlayed;
        const wchar_t* sKey;
    };

    RecordedPlaysTest()
    {
        for (std::size_t cut = 0; cut < 3; ++cut)
            DataBase().colCuts[cut]->SetLastPlayed(cut == 2 ? 0 : dtStart - 1);
        Grid().Plays().Source = [this] { return cSource; };
        Grid().Plays().Recorded = [this](DateTime dtFrom, DateTime dtTo) -> std::optional<std::wstring> {
            dDaysRead += dtTo - dtFrom;
            if (sHeading == L"fails")
                throw RuntimeError(error::PermissionDenied);
            if (sHeading.empty())
                return std::nullopt;
            std::wstring sCsv = sHeading;
            for (const Play& play : record)
                if (play.dtPlayed >= dtFrom && play.dtPlayed < dtTo)
                    sCsv += IsoText(play.dtPlayed) + L",\"A, B\",\"T\"\"t\"," + play.sKey + L"\n";
            return sCsv;
        };
    }
    Lines ShownPlays()
    {
        ShowNode(L"Rock", 1);
        return Column(plays);
    }
    // How many days of the record that reads.
    double DaysRead(std::uint32_t lAfterMs)
    {
        cPorts.cClock.Advance(lAfterMs);
        dDaysRead = 0;
        ShownPlays();
        ShownPlays(); // within the minute
        return dDaysRead;
    }

    const DateTime dtStart = cPorts.cClock.Now();
    std::vector<Play> record;
    std::wstring sHeading = L"start,artist,\"title\",key\n";
    std::shared_ptr<int> cSource = std::make_shared<int>();
    double dDaysRead = 0;
};

TEST_P(RecordedPlaysTest, PlaysAreThoseThatTheDatabaseRecorded)
{
    const std::vector<Play> recent{{dtStart - 27.9, L"A"}, {dtStart - 1, L"a"}, {dtStart - 2, L"gone"}};
    std::vector<Play> old{{dtStart - 28.1, L"a"}};
    old.insert(old.end(), recent.begin(), recent.end());
    const struct
    {
        std::wstring sHeading;
        std::vector<Play> record;
        Lines colCells;
    } cases[] = {
        {sHeading, old, {L"2", L"1+", L"0"}},     // b's play is not recorded
        {sHeading, recent, {L"2+", L"1+", L"0"}}, // the record is young
        {sHeading, {}, {L"1+", L"1+", L"0"}},     {L"other,columns\n", old, {L"1+", L"1+", L"0"}},
        {L"fails", old, {L"1+", L"1+", L"0"}},    {L"", old, {L"1+", L"1+", L"0"}},
    };
    for (const auto& each : cases)
    {
        sHeading = each.sHeading;
        record = each.record;
        EXPECT_EQ(ShownPlays(), each.colCells) << testing::PrintToString(sHeading);
        cSource = std::make_shared<int>(); // another database
        cPorts.cClock.Advance(60'000);
    }
}

TEST_P(RecordedPlaysTest, AMinuteLaterOnlyTheLastHoursAreRead)
{
    record = {{dtStart - 28.5, L"a"}, {dtStart - 20, L"a"}, {dtStart - 0.01, L"a"}};
    EXPECT_NEAR(DaysRead(0), 29, 1e-6);
    EXPECT_EQ(ShownPlays()[0], L"2");
    record.push_back({dtStart - 0.02, L"a"}); // recorded late
    record.push_back({dtStart, L"a"});
    EXPECT_NEAR(DaysRead(60'000), 1.0 / 24, 0.001);
    EXPECT_EQ(ShownPlays()[0], L"4");
    record.push_back({dtStart - 3, L"a"}); // by another program
    EXPECT_NEAR(DaysRead(3'600'000), 28, 1e-6);
    EXPECT_EQ(ShownPlays()[0], L"5");
}

TEST_P(RecordedPlaysTest, APauseOfTheStationLeavesTheRecordWhole)
{
    record = {{dtStart - 40, L"a"}, {dtStart - 1, L"a"}};
    EXPECT_NEAR(DaysRead(0), 56, 1e-6);
    EXPECT_EQ(ShownPlays()[0], L"1");
}

TEST_P(GridHeadingsTest, NextToPlayCountsTheCutsBeforeItInItsLevel)
{
    EXPECT_EQ(Column(nextToPlay), (Lines{L"next", L"in 1", L"next", L"next", L"in 1", L""}))
        << "c is second in Rock 1 and next in Jazz 1, f is nowhere";
    ShowNode(L"Rock", 0);
    EXPECT_EQ(Column(nextToPlay), (Lines{L"next", L"in 1", L"in 2", L"next"}));
    Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a"));
    ShowNode(sAllAudio, 0);
    EXPECT_EQ(Column(nextToPlay)[0], L"in 2") << "counted again when the node is shown again";
}

// ---- sorting

TEST_P(GridHeadingsTest, AHeadingSortsThenReversesThenReturnsToTheSchedule)
{
    const auto expectClick =
        [&](std::size_t column, const Keys& colRows, const wchar_t* sMark, const wchar_t* sStatus) {
        cForm.Headings().Click(column);
        EXPECT_EQ(RowKeys(), colRows);
        EXPECT_EQ(cGridView.sSortMark, sMark);
        EXPECT_EQ(cView.colStatus.back(), sStatus);
    };
    ShowNode(L"Rock", 1);
    CutInRow(0).SetTitle(L"\u00e9tude");
    CutInRow(1).SetTitle(L"elan");
    CutInRow(2).SetTitle(L"EVE");
    cGridView.Select({0});
    cGridView.current = 0;
    expectClick(3, {L"b", L"a", L"c"}, L"Title up", L"Sorted by Title|");
    EXPECT_EQ(SelectedKeys(), (Keys{L"a"}));
    EXPECT_EQ(cGridView.current, 1u);
    expectClick(3, {L"c", L"a", L"b"}, L"Title down", L"Sorted by Title, descending|");
    expectClick(3, {L"a", L"b", L"c"}, L"", L"In schedule order|");
    expectClick(3, {L"b", L"a", L"c"}, L"Title up", L"Sorted by Title|");
    expectClick(0, {L"a", L"b", L"c"}, L"", L"In schedule order|");
    expectClick(0, {L"c", L"b", L"a"}, L"Pos down", L"Sorted by Pos, descending|");
    expectClick(0, {L"a", L"b", L"c"}, L"", L"In schedule order|");
    cForm.Headings().Click(3);
    ChooseFromHeadings(L"&Schedule order");
    EXPECT_EQ(cGridView.sSortMark, L"");
}

TEST_P(GridHeadingsTest, NumbersAndTimesSortByValue)
{
    const struct
    {
        std::size_t column;
        Keys colUp;
    } cases[] = {
        {4, {L"b", L"c", L"a"}},          // 0:59, 1:10, 10:00
        {lastPlayed, {L"a", L"c", L"b"}}, // never first
        {nextToPlay, {L"a", L"b", L"c"}},
        {6, {L"a", L"b", L"c"}}, // equal levels stay in schedule order
    };
    ShowNode(L"Rock", 1);
    const std::pair<std::int32_t, DateTime> values[] = {{600'000, 0}, {59'000, 45'000}, {70'000, 44'000}};
    for (std::size_t row = 0; row < 3; ++row)
    {
        CutInRow(row).SetDurationmS(values[row].first);
        CutInRow(row).SetLastPlayed(values[row].second);
    }
    for (const auto& test : cases)
    {
        cForm.Headings().Click(test.column);
        EXPECT_EQ(RowKeys(), test.colUp) << test.column;
        ChooseFromHeadings(L"&Schedule order");
    }
}

TEST_P(GridHeadingsTest, ARefreshKeepsTheSortAndAnotherNodeStartsInItsSchedule)
{
    ShowNode(L"Rock", 1);
    CutInRow(2).SetTitle(L"A");
    CutInRow(0).SetTitle(L"B");
    CutInRow(1).SetTitle(L"C");
    cForm.Headings().Click(3);
    Level(L"Rock", 1)->SchedCuts()->SendToBack(TextKey(L"a"));
    cForm.RequestRefresh();
    EXPECT_EQ(RowKeys(), (Keys{L"c", L"a", L"b"}));
    EXPECT_EQ(cGridView.sSortMark, L"Title up");
    EXPECT_EQ(Grid().CellText(1, 0), L"3") << "its place in the schedule";
    ShowNode(L"Jazz", 1);
    EXPECT_EQ(cGridView.sSortMark, L"");
    ShowNode(L"Rock", 1);
    EXPECT_EQ(RowKeys(), Order(L"Rock", 1));
}

// Reading 100 000 values takes a second with some databases.
TEST_P(GridHeadingsTest, ARefreshSortsByWhatIsKnownAndReadsAgainInSteps)
{
    ShowNode(L"Rock", 1);
    for (std::size_t row = 0; row < 3; ++row)
        CutInRow(row).SetTitle(std::wstring(1, static_cast<wchar_t>(L'C' - row)));
    cForm.Headings().Click(3);
    EXPECT_EQ(RowKeys(), (Keys{L"c", L"b", L"a"}));
    EXPECT_FALSE(cView.bSortingAsked);
    FakeCut& cFirst = CutInRow(0);
    cFirst.SetTitle(L"D");
    cFirst.calls.clear();
    cForm.RequestRefresh();
    EXPECT_TRUE(cFirst.calls.empty());
    EXPECT_EQ(RowKeys(), (Keys{L"c", L"b", L"a"}));
    for (int lStep = 0; lStep < 3 && std::exchange(cView.bSortingAsked, false); ++lStep)
    {
        cPorts.cClock.SetTickCount(cPorts.cClock.TickCount() + 16);
        cForm.Headings().Step();
    }
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"a", L"c"}));
    const int lFilled = cGridView.lFilled;
    cForm.Headings().Step();
    EXPECT_EQ(cGridView.lFilled, lFilled) << "nothing more to do";
}

TEST_P(GridHeadingsTest, HidingTheSortedColumnReturnsToTheSchedule)
{
    for (const wchar_t* sHide : {L"Co&lumns...>Album", L"Co&lumns...>&Reset columns"})
    {
        ShowNode(L"Rock", 1);
        ChooseFromHeadings(L"Co&lumns...>Album");
        CutInRow(0).SetAlbum(L"Z");
        cForm.Headings().Click(album);
        ASSERT_EQ(RowKeys(), (Keys{L"b", L"c", L"a"}));
        ChooseFromHeadings(sHide);
        EXPECT_EQ(RowKeys(), (Keys{L"a", L"b", L"c"}));
        EXPECT_EQ(cGridView.sSortMark, L"");
    }
}

TEST_P(GridHeadingsTest, ACutThatFailsSortsAsAnEmptyText)
{
    ShowNode(L"Rock", 1);
    for (std::size_t row = 0; row < 3; ++row)
        CutInRow(row).SetTitle(std::wstring(1, static_cast<wchar_t>(L'C' - row)));
    CutInRow(1).failing = {"Title"};
    cForm.Headings().Click(3);
    EXPECT_TRUE(Shown().empty());
    EXPECT_EQ(RowKeys(), (Keys{L"b", L"c", L"a"}));
}

INSTANTIATE_TEST_SUITE_P(Objects, GridHeadingsTest, testing::Bool(), ObjectsOf);
INSTANTIATE_TEST_SUITE_P(Objects, RecordedPlaysTest, testing::Bool(), ObjectsOf);

} // namespace
} // namespace ravlo::test

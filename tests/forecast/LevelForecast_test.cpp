// SPDX-License-Identifier: MIT
#include "forecast/LevelForecast.h"

#include "forecast/AiringStation.h"

namespace ravlo::test
{

namespace
{

struct LevelForecastTest : AiringStation
{
    std::vector<ForecastCut> Forecast(std::size_t slots, double dSlotMins)
    {
        const auto cSnapshot =
            TakeSnapshotOfLevel(cLib.cMod, cLib.Level(L"pop", 1), cLib.cSchedMan->History(),
                                cLib.cSchedMan->Options(), cLib.cSchedMan->Names());
        return ForecastLevel(cLib.cMod, *cSnapshot, slots, dtStart, dSlotMins);
    }
    static std::vector<std::wstring> Titles(const std::vector<ForecastCut>& forecast)
    {
        std::vector<std::wstring> colTitles;
        for (const ForecastCut& cut : forecast)
            colTitles.push_back(cut.bChosen ? cut.sTitle : L"-");
        return colTitles;
    }
    double MinsFromStart(const ForecastCut& cut) const { return (cut.dtStart - dtStart) * 1440; }
};

using Lines = std::vector<std::wstring>;

} // namespace

TEST_F(LevelForecastTest, IsWhatTheLevelThenPlays)
{
    AddCuts(L"p", L"pop", 1, 40, 12, 40);
    AddCuts(L"o", L"other", 1, 10, 5, 10);
    Start();
    Lines colForecast = Titles(Forecast(20, 7));
    Lines colPlayed;
    for (int i = 0; i < 20; ++i)
        colPlayed.push_back(Play({L"pop", 1}, Later(dtStart, i * 7 * 60'000)).cut->sTitle);
    EXPECT_EQ(colForecast, colPlayed);
}

TEST_F(LevelForecastTest, TouchesNothingOfTheStation)
{
    AddCuts(L"p", L"pop", 1, 10, 3, 10);
    Start();
    const Cuts colBefore = cLib.CutsOf(L"pop");
    std::vector<DateTime> played;
    for (const auto& cCut : colBefore)
        played.push_back(cCut->LastPlayed());
    const std::vector<std::wstring> colFiles = cPorts.cFiles.Paths();
    Forecast(20, 0);
    EXPECT_EQ(cLib.CutsOf(L"pop"), colBefore);
    for (std::size_t i = 0; i < colBefore.size(); ++i)
        EXPECT_EQ(colBefore[i]->LastPlayed(), played[i]);
    EXPECT_EQ(cPorts.cFiles.Paths(), colFiles);
}

TEST_F(LevelForecastTest, WithoutARateEachCutLastsItsDuration)
{
    AddCut(L"a", L"pop", 1, L"A", L"T1", {.lDurationmS = 120'000});
    AddCut(L"b", L"pop", 1, L"B", L"T2", {.lDurationmS = 0});
    AddCut(L"c", L"pop", 1, L"C", L"T3", {.lDurationmS = 60'000});
    Start();
    std::vector<ForecastCut> forecast = Forecast(3, 0);
    EXPECT_EQ(Titles(forecast), (Lines{L"T1", L"T2", L"T3"}));
    EXPECT_NEAR(MinsFromStart(forecast[1]), 2, 1e-3);
    EXPECT_NEAR(MinsFromStart(forecast[2]), 5, 1e-3) << "without a duration: three minutes";
    forecast = Forecast(3, 4.5);
    EXPECT_NEAR(MinsFromStart(forecast[2]), 9, 1e-3);
}

TEST_F(LevelForecastTest, SaysWhatIsBrokenAndPassedOver)
{
    AddCut(L"a", L"pop", 1, L"A", L"T1");
    AddCut(L"b", L"pop", 1, L"A", L"T2");
    AddCut(L"c", L"pop", 1, L"B", L"T3");
    Start();
    const std::vector<ForecastCut> forecast = Forecast(3, 10);
    EXPECT_EQ(Titles(forecast), (Lines{L"T1", L"T3", L"T1"}));
    EXPECT_EQ(forecast[0].sReason, L"");
    EXPECT_EQ(forecast[1].passedOver, 1u);
    EXPECT_EQ(forecast[1].sReason, L"");
    EXPECT_EQ(forecast[2].sReason, L"the title played 20 minutes ago (A, 06:10), 60 are required.");
    EXPECT_EQ(forecast[2].passedOver, 2u);
}

TEST_F(LevelForecastTest, PlaysBeforeTheStartCount)
{
    AddCut(L"a", L"pop", 1, L"A", L"T1");
    AddCut(L"b", L"pop", 1, L"B", L"T2");
    AddCut(L"x", L"other", 1, L"A", L"X", {.dtLastPlayed = dtStart - 5 / 1440.0});
    Start();
    EXPECT_EQ(Titles(Forecast(1, 10)), (Lines{L"T2"}));
}

TEST_F(LevelForecastTest, AnEmptyLevelHasNoForecast)
{
    AddCut(L"a", L"pop", 2, L"A", L"T1");
    Start();
    AddEmptyLevel(L"pop", 1);
    EXPECT_TRUE(Forecast(20, 0).empty());
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "forecast/LevelOutlook.h"

#include "forecast/AiringStation.h"

namespace ravlo::test
{

namespace
{

constexpr double dMin = 1 / 1440.0;

struct LevelOutlookTest : AiringStation
{
    void TestBody() override {} // a test may make further stations

    // Cuts of pop 1 by artists A, B, C ... in turn, of which those with a time have played that many minutes
    // ago.
    void AddPlayed(const std::vector<double>& minsAgo, std::size_t artists = 3)
    {
        for (const double dMinsAgo : minsAgo)
        {
            const std::wstring sNumber = std::to_wstring(m_cuts);
            const std::wstring sArtist(1, static_cast<wchar_t>(L'A' + m_cuts % artists));
            AddCut(L"p" + sNumber, L"pop", 1, sArtist, L"T" + sNumber,
                   {.dtLastPlayed = dMinsAgo < 0 ? 0 : Now() - dMinsAgo * dMin});
            ++m_cuts;
        }
    }
    DateTime Now() { return cPorts.cClock.Now(); }
    // Plays in the rate of a station with such a level alone.
    static std::uint32_t Look(const std::vector<double>& minsAgo)
    {
        LevelOutlookTest station;
        station.AddPlayed(minsAgo);
        return station.Look().rate.asked;
    }
    LevelOutlook Look()
    {
        cLib.Populate();
        return OutlookOf(*cLib.Level(L"pop", 1), cLib.cSchedMan->History(), cLib.cSchedMan->Names(), Now());
    }

private:
    std::size_t m_cuts = 0;
};

} // namespace

TEST_F(LevelOutlookTest, TheCommonestArtistAndTitleLimitTheDistance)
{
    AddPlayed(std::vector<double>(8, -1));
    AddCut(L"x", L"pop", 1, L"B", L"t0");
    const LevelOutlook level = Look();
    EXPECT_EQ(level.makeUp.commonest.cName.Text(), L"B"); // 4 of 9; t0 is T0
    EXPECT_EQ(level.ArtistPlaces(), 2u);
    EXPECT_EQ(level.TitlePlaces(), 4u);
    EXPECT_EQ(level.AttainableArtistMins(), 0) << "how often it is asked is not known";
}

TEST_F(LevelOutlookTest, TheQuarterThatPlayedLastTellsTheRate)
{
    std::vector<double> minsAgo(15, 9000);
    for (const double dMins : {40.4, 10.1, 20.2, 50.5, 30.3, -1.0})
        minsAgo.push_back(dMins);
    AddPlayed(minsAgo);
    const LevelOutlook level = Look();
    EXPECT_NEAR(level.rate.SlotMins(), 10.1, 1e-6);
    EXPECT_EQ(level.rate.asked, 4u);             // between 5 plays of the 20 played cuts
    EXPECT_EQ(level.AttainableArtistMins(), 30); // 21 cuts, 7 of each artist
    EXPECT_EQ(level.AttainableTitleMins(), 212);
}

TEST_F(LevelOutlookTest, TooFewOrTooOldPlaysTellNoRate)
{
    const double dWeek = 7 * 1440;
    EXPECT_EQ(Look({5, 15, 25, -1, -1}), 0u);
    EXPECT_EQ(Look({5, 15, 25, 35}), 3u);
    EXPECT_EQ(Look({dWeek + 1, dWeek + 15, dWeek + 25, dWeek + 35}), 0u);
    EXPECT_EQ(Look({dWeek - 1, dWeek + 15, dWeek + 25, dWeek + 35}), 3u);
    EXPECT_EQ(Look({-1, -1, -1, -1}), 0u);
    EXPECT_EQ(Look({5, 5, 5, 5}), 0u) << "at one time, as an import may set";
}

TEST_F(LevelOutlookTest, AnySpanOfPlaysTellsItsRate)
{
    constexpr double dDay = 1440;
    constexpr double dSecond = 1 / 60.0;
    const struct
    {
        double dSpanMins; // between four plays, two of them at one time
        double dSlotMins;
        const wchar_t* sText;
        std::int32_t lAttainable;
    } colCases[] = {
        {3 * dSecond, dSecond, L"0.1 min", 0},
        {dDay, dDay / 3, L"480 min", 480},
        {6.5 * dDay, 6.5 * dDay / 3, L"3120 min", 3120},
        {700 * dDay, 700 * dDay / 3, L"336000 min", 336'000},
    };
    for (const auto& one : colCases)
    {
        LevelOutlookTest station;
        station.AddPlayed({one.dSpanMins, 0, one.dSpanMins / 2, one.dSpanMins / 2}, 2);
        const LevelOutlook level = station.Look();
        EXPECT_NEAR(level.rate.SlotMins(), one.dSlotMins, 1e-3);
        EXPECT_EQ(SlotText(level.rate), one.sText);
        EXPECT_NEAR(level.AttainableArtistMins(), 2 * one.lAttainable, 1);
        EXPECT_EQ(SlotText(OutlookOf(*station.cLib.Level(L"pop", 1), station.cLib.cSchedMan->History(), {},
                                     station.Now() - 1)
                               .rate),
                  one.sText)
            << "after the clock was set back";
    }
}

TEST_F(LevelOutlookTest, ACutThatCannotBeReadHasNoArtistAndNoPlay)
{
    AddPlayed({10, 20, 30, 40}, 1);
    cLib.Populate();
    std::static_pointer_cast<FakeCut>(cLib.cDataBase->colCuts[1])->failing = {"LastPlayed"};
    const LevelOutlook level = OutlookOf(*cLib.Level(L"pop", 1), cLib.cSchedMan->History(), {}, Now());
    EXPECT_EQ(level.makeUp.cuts, 4u);
    EXPECT_EQ(level.makeUp.commonest.cuts, 3u);
    EXPECT_EQ(level.rate.asked, 0u);
}

TEST_F(LevelOutlookTest, TheRateIsAboutThatOfTheDaysThatWereAired)
{
    AddCuts(L"p", L"pop", 1, 60, 12, 60);
    AddCuts(L"r", L"rock", 1, 60, 60, 60);
    Start();
    Air(ClockPlan("pop,1\nrock,1\nrock,1\n"), 2);
    const auto minsOf = [&](const wchar_t* sName) {
        return OutlookOf(*cLib.Level(sName, 1), cLib.cSchedMan->History(), {}, dtStart + 2).rate.SlotMins();
    };
    const double dPop = minsOf(L"pop");
    EXPECT_NEAR(dPop, 11, 1.5);
    EXPECT_NEAR(minsOf(L"rock"), dPop / 2, 1);
}

} // namespace ravlo::test

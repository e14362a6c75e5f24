// SPDX-License-Identifier: MIT
#include "forecast/Advice.h"

#include "forecast/AiringStation.h"
#include "forecast/HealthCase.h"

#include <map>

namespace ravlo::test
{
namespace
{

const Plan hotHour = ClockPlan("Hot,1\n");
constexpr double dDays = 2;

// A station of one level, whose cuts are named by their artists: 3 1/3 minutes each, a slot after the other.
class HotStation : public AiringStation
{
public:
    explicit HotStation(const std::vector<std::wstring>& colArtists, std::int32_t lArtistSep,
                        std::int32_t lTitleSep = 0)
    {
        for (std::size_t cut = 0; cut < colArtists.size(); ++cut)
            AddCut(L"cut " + std::to_wstring(cut), L"Hot", 1, colArtists[cut],
                   L"Title " + std::to_wstring(cut));
        Start();
        SetRules(L"Hot", 1, lArtistSep, lTitleSep, 0);
    }
    // One whose orders and rules are those of a snapshot.
    static std::unique_ptr<HotStation> Like(const StationSnapshot& snapshot)
    {
        std::vector<std::wstring> colArtists;
        for (const CutNumber number : snapshot.levels[0].order)
            colArtists.push_back(snapshot.cuts[number].values.cArtist.Text());
        const SeparationRules& rules = snapshot.levels[0].rules;
        return std::make_unique<HotStation>(colArtists, rules.lArtist, rules.lTitle);
    }
    struct Forecast
    {
        StationHealth health;
        std::vector<SpreadTrial> spreads; // that are advised for the level
    };
    Forecast Predict(const SimulationOptions& options = {}, const SimulationProgress& progress = {})
    {
        const SimulationResult result = Simulate(Snapshot(), hotHour, dtStart, dDays, options);
        Forecast forecast{HealthOf(result), {}};
        LevelAdviser adviser(cLib.cMod, result);
        Advise(adviser, result, forecast.health, progress);
        if (const std::vector<LevelRemedy>* pRemedies = adviser.Of(0))
            for (const LevelRemedy& remedy : *pRemedies)
                if (remedy.spread)
                    forecast.spreads.push_back(*remedy.spread);
        return forecast;
    }
    // What goes wrong in the days that are aired.
    Troubles AirTroubles()
    {
        const Day day = Air(hotHour, static_cast<int>(dDays));
        std::map<std::wstring, std::size_t> colPlays;
        for (const std::shared_ptr<Cut>& cCut : cLib.CutsOf(L"Hot"))
            colPlays[cCut->Title()];
        Troubles troubles;
        for (const LogRow& row : day.rows)
        {
            ++colPlays[row.cut->sTitle];
            troubles.rulesBroken += row.lKind == eKindChosen ? 0u : 1u;
        }
        const double dDue = static_cast<double>(day.rows.size()) / static_cast<double>(colPlays.size());
        for (const auto& [sTitle, plays] : colPlays)
        {
            troubles.neverPlayed += plays == 0 && dDue >= 1.5 ? 1u : 0u;
            troubles.underHalf += static_cast<double>(plays) < dDue / 2 && dDue >= 3 ? 1u : 0u;
        }
        return troubles;
    }

private:
    void TestBody() override {}
};

// So many artists with a cut each, in which Ash has cuts at some places.
std::vector<std::wstring> ArtistsWithAshAt(std::size_t cuts, const std::vector<std::size_t>& places)
{
    std::vector<std::wstring> colArtists;
    for (std::size_t cut = 0; cut < cuts; ++cut)
        colArtists.push_back(L"Artist " + std::to_wstring(cut));
    for (const std::size_t place : places)
        colArtists[place] = L"Ash";
    return colArtists;
}

// 4 of 40 cuts are Ash's: 33 minutes can be kept.
std::vector<std::wstring> EvenlySpread() { return ArtistsWithAshAt(40, {0, 10, 20, 30}); }
std::vector<std::wstring> InNeighbours() { return ArtistsWithAshAt(40, {0, 1, 20, 30}); }

TEST(Advice, NamesEachRemedyThatHelpsInOrder)
{
    HotStation station(EvenlySpread(), 60);
    const HotStation::Forecast forecast = station.Predict();
    const LevelHealth& level = forecast.health.levels[0];
    EXPECT_EQ(level.eLight, Light::Red);
    EXPECT_EQ(level.lAttainableArtistMins, 33);
    EXPECT_EQ(level.advice,
              (Lines{L"fair rotation: never played 2 -> 0, under half 2 -> 0, no rule broken",
                     L"artist separation 28: never played 2 -> 0, under half 2 -> 0, no rule broken",
                     L"48 cuts of other artists more: never played 2 -> 0, under half 2 -> 0, no rule broken",
                     L"3 cuts of Ash fewer: never played 2 -> 0, under half 2 -> 0, no rule broken"}));
    EXPECT_EQ(forecast.health.remedies,
              (Lines{level.advice[0], L"Hot 1: " + level.advice[1], L"Hot 1: " + level.advice[2]}));
}

TEST(Advice, ALevelThatOnlyLacksRoomIsAdvisedToo)
{
    const struct
    {
        Light eLight;
        std::size_t cuts;
        std::int32_t lArtistSep;
        bool bFair;
        Lines colNames;
    } colCases[] = {
        {Light::Yellow,
         40,
         30,
         false,
         {L"artist separation 28", L"4 cuts of other artists more", L"1 cut of Ash fewer"}},
        {Light::Red,
         39,
         31,
         true,
         {L"artist separation 25", L"9 cuts of other artists more", L"1 cut of Ash fewer"}},
    };
    for (const auto& one : colCases)
    {
        HotStation station(ArtistsWithAshAt(one.cuts, {0, 10, 20, 30}), one.lArtistSep);
        const StationHealth health = station.Predict({one.bFair, std::nullopt}).health;
        EXPECT_EQ(health.levels[0].eLight, one.eLight);
        Lines colAdvice;
        for (const std::wstring& sName : one.colNames)
            colAdvice.push_back(sName + L": never played 0 -> 0, under half 0 -> 0, no rule broken, the "
                                        L"artist separation leaves enough room");
        EXPECT_EQ(health.levels[0].advice, colAdvice);
        EXPECT_EQ(health.remedies.size(), 3u);
    }
}

// Each of 40 titles can return after 133 minutes.
TEST(Advice, ATitleSeparationThatAsksTooMuchIsShortened)
{
    for (const auto& [lTitleSep, eLight] : {std::pair{120, Light::Yellow}, std::pair{140, Light::Red}})
    {
        HotStation station(ArtistsWithAshAt(40, {}), 0, lTitleSep);
        const SimulationResult present =
            station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
        const LevelHealth level = station.Predict().health.levels[0];
        EXPECT_EQ(level.eLight, eLight);
        const std::optional<Remedy> remedy = Remedies(present, 0).ShorterTitleSeparation();
        ASSERT_TRUE(remedy);
        EXPECT_EQ(remedy->cStation->levels[0].rules.lTitle, 113);
        const Troubles before = station.AirTroubles();
        const std::wstring sEffect = EffectText(before, HotStation::Like(*remedy->cStation)->AirTroubles());
        EXPECT_EQ(level.advice,
                  Lines{L"title separation 113: " + sEffect +
                        (before.rulesBroken == 0 ? L", the title separation leaves enough room" : L"")});
    }
}

TEST(Advice, EachSeparationIsGivenRoomByItself)
{
    const std::wstring sNone = L": never played 0 -> 0, under half 0 -> 0, no rule broken, ";
    const struct
    {
        std::int32_t lTitleSep;
        Lines colAdvice;
    } colCases[] = {
        {120,
         {L"artist separation 28" + sNone + L"the artist separation leaves enough room",
          L"title separation 113" + sNone + L"the title separation leaves enough room",
          L"4 cuts of other artists more" + sNone + L"both separations leave enough room",
          L"1 cut of Ash fewer" + sNone + L"the artist separation leaves enough room"}},
        // A cut fewer would take the titles' room.
        {113,
         {L"artist separation 28" + sNone + L"the artist separation leaves enough room",
          L"4 cuts of other artists more" + sNone + L"the artist separation leaves enough room"}},
    };
    for (const auto& one : colCases)
    {
        HotStation station(EvenlySpread(), 30, one.lTitleSep);
        EXPECT_EQ(station.Predict().health.levels[0].advice, one.colAdvice);
    }
}

TEST(Advice, StarvedCutsThatAreTakenAwayAreNotHelped)
{
    HotStation station(EvenlySpread(), 60);
    const SimulationResult result = station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
    LevelAdviser adviser(station.cLib.cMod, result);
    adviser.Find(0);
    const LevelRemedy& fewer = adviser.Of(0)->back();
    ASSERT_EQ(fewer.eKind, RemedyKind::FewerCuts);
    EXPECT_EQ(fewer.before.starved, 2u);
    EXPECT_EQ(fewer.allBefore.starved, 0u) << "both are among the cuts that are taken";
}

// Hot and Pop share an artist: whose separation is shortened in Hot plays there when Pop wants to.
TEST(Advice, WhatGetsWorseInAnotherLevelIsTold)
{
    class TwoLevels : public AiringStation
    {
        void TestBody() override {}
    } station;
    const std::vector<std::wstring> colHot = EvenlySpread();
    for (std::size_t cut = 0; cut < colHot.size(); ++cut)
        station.AddCut(L"hot " + std::to_wstring(cut), L"Hot", 1, colHot[cut], std::to_wstring(cut));
    for (std::size_t cut = 0; cut < 6; ++cut)
        station.AddCut(L"pop " + std::to_wstring(cut), L"Pop", 1, cut ? L"P" + std::to_wstring(cut) : L"Ash",
                       L"Pop " + std::to_wstring(cut));
    station.Start();
    station.SetRules(L"Hot", 1, 60, 0, 0);
    station.SetRules(L"Pop", 1, 20, 0, 0);
    const SimulationResult result =
        station.Simulate(station.Snapshot(), ClockPlan("Hot,1\nHot,1\nPop,1\n"), station.dtStart, dDays);
    StationHealth health = HealthOf(result);
    LevelAdviser adviser(station.cLib.cMod, result);
    AdviseLevel(adviser, 0, health);
    EXPECT_EQ(health.levels[0].advice,
              (Lines{L"artist separation 42: never played 3 -> 0, under half 4 -> 0, no rule broken; "
                     L"Pop 1 gets worse: never played 0 -> 1, under half 0 -> 1, no rule broken"}))
        << "fewer cuts of Ash would only take starved ones away";
}

TEST(RemedyJudge, ARemedyMayNotStarveMoreElsewhereThanItHelps)
{
    HealthCase health;
    for (const wchar_t* sName : {L"Hot", L"Pop", L"Rock", L"Soul"})
        health.AddLevel(sName, {}, 300, {{L"a", L"", false, {300, 0, 0, eNone, std::nullopt}}});
    health.result.levels[0].cuts[0].plays = 0;
    const RemedyJudge judge(health.result, 0);
    const Troubles starved{1, 1, 1, 0, 0, 300};
    const Troubles good{0, 0, 0, 0, 0, 300};
    const struct
    {
        std::vector<Troubles> trial;
        bool bHelps;
        const wchar_t* sRemark;
    } colCases[] = {
        {{good, good, good, good}, true, L""},
        {{starved, good, good, good}, false, L""},
        {{good, good, starved, good},
         true,
         L"; Rock 1 gets worse: never played 0 -> 1, under half 0 -> 1, no rule broken"},
        {{good, good, starved, starved},
         false,
         L"; Rock 1 gets worse: never played 0 -> 1, under half 0 -> 1, no rule broken; another level gets "
         L"worse"},
        {{good, {0, 0, 0, 1, 0, 300}, {0, 0, 0, 4, 0, 300}, starved},
         true,
         L"; Soul 1 gets worse: never played 0 -> 1, under half 0 -> 1, no rule broken; 2 other levels get "
         L"worse"},
    };
    for (const auto& one : colCases)
    {
        LevelRemedy remedy;
        EXPECT_EQ(judge.Helps(remedy, one.trial, starved), one.bHelps);
        EXPECT_EQ(remedy.Remark(), one.sRemark);
    }
}

TEST(RemedyJudge, ABrokenRuleMoreElsewhereIsChance)
{
    HealthCase health;
    health.AddLevel(L"Hot", {}, 300, {{L"a"}});
    health.AddLevel(L"Pop", {}, 300, {{L"a", L"", false, {300, 0, 0, eNone, std::nullopt}}});
    health.result.levels[1].rulesBroken = 2;
    for (const auto& [broken, levels] : {std::pair{3u, 0u}, std::pair{4u, 1u}}) // 1 % makes the light red
    {
        LevelRemedy remedy;
        RemedyJudge(health.result, 0).Helps(remedy, {{}, {0, 0, 0, broken, 0, 300}}, {});
        EXPECT_EQ(remedy.worse.size(), levels);
    }
}

TEST(Advice, TheAdvisedSpreadIsCarriedOutAsPredicted)
{
    HotStation station(InNeighbours(), 25);
    const HotStation::Forecast forecast = station.Predict();
    EXPECT_EQ(forecast.health.levels[0].advice,
              (Lines{L"fair rotation: never played 1 -> 0, under half 1 -> 0, no rule broken",
                     L"spread: never played 1 -> 0, under half 1 -> 0, no rule broken"}));
    ASSERT_EQ(forecast.spreads.size(), 1u);
    const SpreadTrial& spread = forecast.spreads[0];
    station.cLib.cSchedMan->RememberSpread(spread);
    station.cLib.cSchedMan->SpreadCategories({station.cLib.Level(L"Hot", 1)});
    Keys colSpread;
    for (const TextKey& cKey : spread.colSpread)
        colSpread.push_back(cKey.Text());
    EXPECT_EQ(station.cLib.Order(L"Hot", 1), colSpread);
    EXPECT_EQ(EffectText({1, 1, 1, 0}, station.AirTroubles()),
              L"never played 1 -> 0, under half 1 -> 0, no rule broken");
}

TEST(Advice, EveryRemedyDoesOnAirWhatWasPredicted)
{
    using Make = std::optional<Remedy> (*)(const Remedies&, Random&);
    const struct
    {
        const char* sWhat;
        std::vector<std::wstring> colArtists;
        std::int32_t lArtistSep;
        Make make;
    } colCases[] = {
        {"spread", InNeighbours(), 25,
         [](const Remedies& of, Random& cRandom) { return of.Spread(cRandom); }},
        {"shorter", EvenlySpread(), 60,
         [](const Remedies& of, Random&) { return of.ShorterArtistSeparation(); }},
        {"more", EvenlySpread(), 60, [](const Remedies& of, Random&) { return of.MoreCuts(); }},
        {"fewer", EvenlySpread(), 60, [](const Remedies& of, Random&) { return of.FewerCuts(); }},
        {"not enough", ArtistsWithAshAt(12, {0, 1, 2, 3, 4, 5}), 200,
         [](const Remedies& of, Random&) { return of.ShorterArtistSeparation(); }},
    };
    for (const auto& one : colCases)
    {
        SCOPED_TRACE(one.sWhat);
        HotStation station(one.colArtists, one.lArtistSep);
        const SimulationResult present =
            station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
        const Troubles before = TroublesOf(present, 0);
        const std::optional<Remedy> remedy = one.make(Remedies(present, 0), station.cPorts.cRandom);
        ASSERT_TRUE(remedy);
        const SimulationResult predicted =
            station.Simulate(remedy->cStation, hotHour, station.dtStart, dDays);
        const Troubles after = TroublesOf(predicted, 0);
        EXPECT_EQ(EffectText(before, after),
                  EffectText(station.AirTroubles(), HotStation::Like(*remedy->cStation)->AirTroubles()));
    }
}

TEST(Advice, FairRotationDoesOnAirWhatWasPredicted)
{
    HotStation station(EvenlySpread(), 60);
    const std::wstring sAdvice = station.Predict().health.levels[0].advice.at(0);
    const Troubles before = station.AirTroubles();
    HotStation fair(EvenlySpread(), 60);
    fair.cLib.cSchedMan->SetFairRotation(true);
    EXPECT_EQ(L"fair rotation: " + EffectText(before, fair.AirTroubles()), sAdvice);
}

TEST(Advice, RemediesThatDoNotApplyAreNotTried)
{
    HotStation even(EvenlySpread(), 0);
    const SimulationResult unset = even.Simulate(even.Snapshot(), hotHour, even.dtStart, dDays);
    EXPECT_FALSE(Remedies(unset, 0).ShorterArtistSeparation()); // none is set
    HotStation alone(std::vector<std::wstring>(6, L"Ash"), 60);
    const SimulationResult same = alone.Simulate(alone.Snapshot(), hotHour, alone.dtStart, dDays);
    EXPECT_FALSE(Remedies(same, 0).FewerCuts()); // nothing would be left
    EXPECT_FALSE(Remedies(same, 0).MoreCuts());  // more than tenfold
    HotStation nameless(std::vector<std::wstring>(6), 60);
    const SimulationResult noArtist =
        nameless.Simulate(nameless.Snapshot(), hotHour, nameless.dtStart, dDays);
    EXPECT_FALSE(Remedies(noArtist, 0).FewerCuts());
}

TEST(Advice, CutsAreNotAddedUntilTooLittleIsDue)
{
    // 864 slots: 284 cuts are due 3.04 plays each, 300 cuts 2.88.
    for (const auto& [lArtistSep, bApplies] : {std::pair{200, true}, std::pair{210, false}})
    {
        HotStation station(EvenlySpread(), lArtistSep);
        const SimulationResult present =
            station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
        const std::optional<Remedy> remedy = Remedies(present, 0).MoreCuts();
        EXPECT_EQ(remedy ? remedy->sName : L"", bApplies ? L"244 cuts of other artists more" : L"");
    }
}

TEST(Advice, WhatIsComfortableAlreadyIsNotChanged)
{
    HotStation station(InNeighbours(), 25); // 28 minutes are comfortable
    const SimulationResult present = station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
    EXPECT_FALSE(Remedies(present, 0).ShorterArtistSeparation());
    EXPECT_FALSE(Remedies(present, 0).MoreCuts());
    EXPECT_FALSE(Remedies(present, 0).FewerCuts());
    HotStation alone({L"Ash"}, 60);
    const SimulationResult single = alone.Simulate(alone.Snapshot(), hotHour, alone.dtStart, dDays);
    EXPECT_FALSE(Remedies(single, 0).Spread(alone.cPorts.cRandom)) << "the order is the same";
}

TEST(Advice, AddedCutsAreDealtEvenlyAndFitTheLevel)
{
    HotStation station(EvenlySpread(), 60);
    const SimulationResult present = station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays);
    const std::optional<Remedy> remedy = Remedies(present, 0).MoreCuts();
    ASSERT_TRUE(remedy);
    const StationSnapshot& grown = *remedy->cStation;
    const std::vector<CutNumber>& before = present.cStation->levels[0].order;
    const std::vector<CutNumber>& order = grown.levels[0].order;
    ASSERT_EQ(order.size(), before.size() + 48);
    std::vector<CutNumber> own;
    std::size_t inARow = 0;
    for (const CutNumber number : order)
    {
        const bool bMadeUp = number >= present.cStation->cuts.size();
        inARow = bMadeUp ? inARow + 1 : 0;
        EXPECT_LE(inARow, 2u) << "48 among 40";
        if (!bMadeUp)
            own.push_back(number);
        else
            EXPECT_EQ(grown.cuts[number].values.lDurationmS, 200'000);
    }
    EXPECT_EQ(own, before) << "the others keep their order";
}

TEST(Advice, TakenCutsAreTheLastOfTheCommonestName)
{
    // Ash has four cuts, two of them with Elm, who has three.
    const std::vector<std::wstring> colArtists{
        L"Ash", L"Ash feat. Elm", L"1",  L"2", L"3", L"4", L"5", L"6", L"Elm", L"7", L"8",
        L"9",   L"Ash feat. Elm", L"Ash"};
    HotStation station(colArtists, 17); // comfortable with 12 / 2 places of 3 1/3 minutes
    const SimulationResult present = station.Simulate(station.Snapshot(), hotHour, station.dtStart, dDays,
                                                      SimulationOptions{std::nullopt, true});
    const std::optional<Remedy> remedy = Remedies(present, 0).FewerCuts();
    ASSERT_TRUE(remedy);
    EXPECT_EQ(remedy->sName, L"2 cuts of Ash fewer");
    const std::vector<CutNumber>& order = remedy->cStation->levels[0].order;
    const std::vector<CutNumber>& before = present.cStation->levels[0].order;
    EXPECT_EQ(order, std::vector<CutNumber>(before.begin(), before.end() - 2));
}

TEST(Advice, FairRotationIsNotAdvisedWhereItIsOn)
{
    HotStation station(EvenlySpread(), 60);
    const StationHealth health = station.Predict({true, std::nullopt}).health;
    for (const std::wstring& sAdvice : health.levels[0].advice)
        EXPECT_FALSE(sAdvice.starts_with(L"fair rotation"));
}

TEST(Advice, GreenLevelsGetNone)
{
    HotStation station(EvenlySpread(), 20);
    const StationHealth health = station.Predict().health;
    EXPECT_EQ(health.levels[0].eLight, Light::Green);
    EXPECT_TRUE(health.levels[0].advice.empty());
    EXPECT_TRUE(health.remedies.empty());
}

TEST(Advice, ProgressRisesFromNothingToAll)
{
    HotStation station(EvenlySpread(), 60);
    std::vector<double> colDone;
    station.Predict({}, [&](double dDone, bool&) { colDone.push_back(dDone); });
    EXPECT_TRUE(std::is_sorted(colDone.begin(), colDone.end()));
    EXPECT_EQ(colDone.front(), 0);
    EXPECT_EQ(colDone.back(), 1);
    EXPECT_GE(colDone.size(), 12u); // begin and end of the whole and of six remedies
}

TEST(Advice, CancelAtAnyStepEndsTheWork)
{
    HotStation station(EvenlySpread(), 60);
    for (int lCall = 0;; ++lCall)
    {
        int lCalls = 0;
        bool bCancelled = false;
        const auto cancel = [&](double, bool& bCancel) { bCancelled |= bCancel = lCalls++ == lCall; };
        try
        {
            station.Predict({}, cancel);
            EXPECT_FALSE(bCancelled);
            break;
        }
        catch (const RuntimeError& cError)
        {
            EXPECT_EQ(cError.Number(), error::UserInterrupt);
            EXPECT_TRUE(bCancelled);
        }
    }
}

TEST(Advice, EffectNamesBrokenRulesWhenThereAreAny)
{
    EXPECT_EQ(EffectText({3, 4, 4, 0}, {0, 1, 1, 0}),
              L"never played 3 -> 0, under half 4 -> 1, no rule broken");
    EXPECT_EQ(EffectText({3, 4, 4, 7}, {3, 4, 4, 0}),
              L"never played 3 -> 3, under half 4 -> 4, rules broken 7 -> 0");
}

} // namespace
} // namespace ravlo::test

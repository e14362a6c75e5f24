// SPDX-License-Identifier: MIT
// What a host is offered besides picks: options, a plan, forecasts, explanations, reports.
#include "forecast/clsRotation.h"

#include "forecast/AiringStation.h"
#include "forecast/Report.h"
#include "platform/memory/FailingFiles.h"

#include <map>
#include <unordered_map>

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sClock = L"C:\\Radio\\hour.txt";

// The number of the error that a call ends with; 0 when it succeeds.
std::int32_t ErrorOf(const std::function<void()>& call)
{
    try
    {
        call();
        return 0;
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
}
std::wstring DescriptionOf(const std::function<void()>& call)
{
    try
    {
        call();
        return L"";
    }
    catch (const RuntimeError& cError)
    {
        return cError.Description();
    }
}

// A station with the levels Pop 1 (30 cuts), Rock 2 (9 cuts) and the empty level Pop 3.
class RotationTest : public AiringStation
{
protected:
    RotationTest()
    {
        AddCuts(L"p", L"Pop", 1, 30, 12, 25);
        AddCuts(L"r", L"Rock", 2, 9, 3, 9);
        Start();
        AddEmptyLevel(L"Pop", 3);
        cRotation.SetScheduler(cLib.cSchedMan);
    }
    void PutClock(const std::string& bytes) { cPorts.cFiles.Put(sClock, bytes); }
    std::shared_ptr<const clsSimulation> Simulated(double dDays = 1)
    {
        cRotation.ClearPlan();
        cRotation.AddSlot(L"Pop\t1", false);
        cRotation.AddSlot(L"Rock\t2", true);
        cRotation.AddSlot(L"Pop\t3", false);
        return cRotation.Simulate(dtStart, dDays, {}, {});
    }

    clsRotation cRotation;
};

TEST_F(RotationTest, MembersNeedAPopulatedManager)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    const std::function<void()> calls[] = {
        [&] { cRotation.FairRotation(); },
        [&] { cRotation.SetFairRotation(true); },
        [&] { cRotation.FeaturedArtists(); },
        [&] { cRotation.SetFeaturedArtists(true); },
        [&] { cRotation.ArtistsOf(L"Cher", L""); },
        [&] { cRotation.LoadClock(sClock); },
        [&] { cRotation.LoadSlots(sClock); },
        [&] { cRotation.AddSlot(L"Pop\t1", false); },
        [&] { cRotation.Simulate(dtStart, 1, {}, {}); },
        [&] { cRotation.Explain(L"Pop\t1", false, nullptr); },
        [&] { cRotation.LastExplanation(L"Pop\t1"); },
        [&] { cRotation.SpreadCategories({}, false); },
        [&] { cRotation.WriteReport(*cSimulation, L"C:\\Radio\\r.html"); },
        [&] { cRotation.MustBePopulated(); },
    };
    for (const auto& cManager : {std::shared_ptr<clsSchedMan>(), std::make_shared<clsSchedMan>(cLib.cMod)})
    {
        cRotation.SetScheduler(cManager);
        for (const std::function<void()>& call : calls)
            EXPECT_EQ(ErrorOf(call), error::ObjectNotSet) << &call - calls;
    }
    EXPECT_EQ(cRotation.SlotCount(), 3u);
    cRotation.ClearPlan();
    EXPECT_EQ(cRotation.SlotCount(), 0u);
}

TEST_F(RotationTest, HealthWindowOpensWithThePlan)
{
    struct : HealthWindows
    {
        void ShowHealth(const Plan& plan) override { colSlots.push_back(plan.Slots().size()); }
        std::vector<std::size_t> colSlots;
    } windows;
    cRotation.ShowHealthUI(windows);
    cRotation.AddSlot(L"Pop\t1", false);
    cRotation.ShowHealthUI(windows);
    EXPECT_EQ(windows.colSlots, (std::vector<std::size_t>{0, 1}));
    cRotation.SetScheduler(nullptr);
    EXPECT_EQ(ErrorOf([&] { cRotation.ShowHealthUI(windows); }), error::ObjectNotSet);
}

TEST_F(RotationTest, OptionsAreTheStations)
{
    EXPECT_EQ(cRotation.ArtistsOf(L"Abba feat. Cher", L""), std::vector<std::wstring>{L"Abba feat. Cher"});
    cRotation.SetFairRotation(true);
    cRotation.SetFeaturedArtists(true);
    EXPECT_TRUE(cRotation.FairRotation());
    EXPECT_TRUE(cRotation.FeaturedArtists());
    EXPECT_EQ(cLib.cSchedMan->Options(), (RotationOptions{true, true}));
    EXPECT_EQ(cRotation.ArtistsOf(L"Abba feat. Cher", L""),
              (std::vector<std::wstring>{L"Abba feat. Cher", L"Abba", L"Cher"}));
}

TEST_F(RotationTest, AFileReplacesThePlanOrLeavesItAlone)
{
    cRotation.AddSlot(L"pop\t1", true);
    const struct
    {
        const char* bytes;
        std::wstring sError;
    } cases[] = {
        {"Pop,1\nSoul,1\n", L"C:\\Radio\\hour.txt, line 2: no cut is in Soul:1"},
        {"Pop,1\n\nPop,2\n", L"C:\\Radio\\hour.txt, line 3: no cut is in Pop:2"},
        {"Pop,1\nRock,2,Y\nPop,3\n", L""},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.bytes);
        EXPECT_EQ(cRotation.SlotCount(), 1u);
        PutClock(one.bytes);
        EXPECT_EQ(DescriptionOf([&] { cRotation.LoadClock(sClock); }), one.sError);
    }
    EXPECT_EQ(cRotation.SlotCount(), 3u) << "an empty level may be asked for";
    cRotation.AddSlot(L"Rock\t2", false);
    EXPECT_EQ(cRotation.SlotCount(), 4u);
    EXPECT_EQ(ErrorOf([&] { cRotation.LoadClock(L"C:\\Radio\\none.txt"); }), error::FileNotFound);
    EXPECT_EQ(ErrorOf([&] { cRotation.LoadSlots(L"C:\\None\\none.txt"); }), error::FileNotFound);
    PutClock("");
    EXPECT_EQ(ErrorOf([&] { cRotation.LoadClock(sClock); }), error::InvalidProcedureCall);
    for (const wchar_t* sKey : {L"Soul\t1", L"Pop\t2", L"Pop", L"", L"Pop\t1\t1"})
        EXPECT_EQ(ErrorOf([&] { cRotation.AddSlot(sKey, false); }), error::InvalidProcedureCall) << sKey;
    EXPECT_EQ(cRotation.SlotCount(), 4u);
}

TEST_F(RotationTest, TimedSlotsTakeNoSlotOfAnHour)
{
    PutClock("slot_at,category,level,opener\n2024-03-01T07:00:00,Pop,1,N\n2024-03-01T09:00:00,Rock,2,Y\n");
    cRotation.LoadSlots(sClock);
    EXPECT_EQ(cRotation.SlotCount(), 2u);
    EXPECT_EQ(ErrorOf([&] { cRotation.AddSlot(L"Pop\t1", false); }), error::InvalidProcedureCall);
    EXPECT_EQ(cRotation.Simulate(dtStart, 1, {}, {})->Picks(), 2);
    EXPECT_EQ(ErrorOf([&] { cRotation.Simulate(dtStart + 1, 1, {}, {}); }), error::InvalidProcedureCall);
    cRotation.ClearPlan();
    cRotation.AddSlot(L"Pop\t1", false);
    EXPECT_EQ(cRotation.SlotCount(), 1u);
}

TEST_F(RotationTest, ASimulationGivesTheDayThatFollows)
{
    const std::wstring sOrder = TreeText(*cLib.cSchedMan->colMainCats());
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    EXPECT_EQ(TreeText(*cLib.cSchedMan->colMainCats()), sOrder) << "it has moved nothing";
    cSimulation->SaveLog(L"C:\\Radio\\log.csv");
    const Day day = Air(ClockPlan("Pop,1,N\nRock,2,Y\nPop,3,N\n"), 1);
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\log.csv"), LogCsv(day.rows));

    EXPECT_EQ(cSimulation->Start(), dtStart);
    EXPECT_EQ(cSimulation->Days(), 1);
    EXPECT_EQ(cSimulation->Picks(), static_cast<std::int32_t>(day.rows.size()));
    std::map<std::int32_t, std::int32_t> kinds;
    std::map<std::wstring, std::int32_t> plays;
    for (const LogRow& row : day.rows)
    {
        ++kinds[row.lKind];
        plays[row.cut ? row.cut->sPath : L""] += 1;
    }
    EXPECT_GT(kinds[eKindLevelEmpty], 0) << "the empty level";
    for (const auto& [lKind, lCount] : kinds)
        EXPECT_EQ(cSimulation->KindCount(lKind), lCount) << lKind;
    EXPECT_EQ(cSimulation->KindCount(-1), 0);
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
    {
        const std::wstring sKey = cCut->Key().Text();
        EXPECT_EQ(cSimulation->Plays(sKey, L""), plays[cCut->Path()]) << sKey;
        EXPECT_EQ(cSimulation->Plays(sKey, L"POP\t1") + cSimulation->Plays(sKey, L"Rock\t2"),
                  plays[cCut->Path()]);
        EXPECT_EQ(cSimulation->CutOf(sKey), cCut) << "the database's own";
    }
    EXPECT_EQ(cSimulation->Plays(L"nobody", L"Pop\t1"), 0);
    EXPECT_EQ(ErrorOf([&] { cSimulation->Plays(L"p1", L"Soul\t1"); }), error::InvalidProcedureCall);
}

TEST_F(RotationTest, ACutThatLeftTheDataBaseIsACopy)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    const std::wstring sTitle = cLib.cDataBase->Own(L"p1")->Title();
    cLib.cDataBase->Remove(*cLib.cDataBase->Own(L"p1"));
    EXPECT_EQ(cSimulation->CutOf(L"p1")->Title(), sTitle);
    EXPECT_EQ(cSimulation->CutOf(L"nobody"), nullptr);
}

TEST_F(RotationTest, CutsAreThoseOfTheDataBaseThatIsSimulated)
{
    cRotation.AddSlot(L"Pop\t1", false);
    const auto cOther = std::make_shared<FakeDataBase>();
    cOther->Add(L"p1", L"Pop", 1);
    const auto cSimulation = cRotation.Simulate(dtStart, 1, {}, [&](double dDone, bool&) {
        if (dDone == 0)
            cLib.cSchedMan->PopulateFromDataBase(cOther, L"C:\\Radio\\");
    });
    EXPECT_EQ(cSimulation->CutOf(L"p1"), cOther->Own(L"p1"));
}

TEST_F(RotationTest, ASimulationTakesItsOptionsAndChecksItsTime)
{
    EXPECT_EQ(ErrorOf([&] { cRotation.Simulate(dtStart, 1, {}, {}); }), error::InvalidProcedureCall)
        << "no plan";
    Simulated();
    for (const double dDays : {0.99, 0.0, -1.0, 3661.0, std::nan("")})
        EXPECT_EQ(ErrorOf([&] { cRotation.Simulate(dtStart, dDays, {}, {}); }), error::InvalidProcedureCall)
            << dDays;
    for (int lStep = 0; lStep < 3; ++lStep)
    {
        int lSteps = 0;
        const auto cancel = [&](double, bool& bCancel) { bCancel = lSteps++ == lStep; };
        EXPECT_EQ(ErrorOf([&] { cRotation.Simulate(dtStart, 1, {}, cancel); }), error::UserInterrupt)
            << lStep;
    }
    cRotation.SetFairRotation(true);
    const auto logOf = [&](const clsSimulation& cSimulation) {
        cSimulation.SaveLog(L"C:\\Radio\\log.csv");
        return cPorts.cFiles.Get(L"C:\\Radio\\log.csv");
    };
    const std::string fair = logOf(*Simulated(2));
    EXPECT_EQ(logOf(*cRotation.Simulate(dtStart, 2, {true, std::nullopt}, {})), fair);
    const auto cOther = cRotation.Simulate(dtStart, 2, {false, true}, {});
    EXPECT_NE(logOf(*cOther), fair);
    EXPECT_EQ(cOther->Health().options, (RotationOptions{false, true}));
}

TEST_F(RotationTest, InsideAStepTheHostMayEndEverything)
{
    auto cOwn = std::make_unique<clsRotation>();
    cOwn->SetScheduler(cLib.cSchedMan);
    cOwn->AddSlot(L"Pop\t1", false);
    std::vector<double> steps;
    const std::shared_ptr<const clsSimulation> cSimulation =
        cOwn->Simulate(dtStart, 2, {}, [&](double dDone, bool&) {
            steps.push_back(dDone);
            cOwn.reset();
            cRotation.SetScheduler(nullptr);
            cLib.End();
        });
    ASSERT_GE(steps.size(), 2u);
    EXPECT_EQ(steps.front(), 0);
    EXPECT_EQ(steps.back(), 1);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_GT(cSimulation->Plays(L"p1", L""), 0);
}

TEST_F(RotationTest, AdviceIsLookedForWhenItIsAskedFor)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated(2);
    const std::vector<LevelHealth>& levels = cSimulation->Health().levels;
    ASSERT_EQ(levels.at(2).eLight, Light::Red);
    const auto advised = [&] {
        std::vector<bool> colAdvised;
        colAdvised.reserve(levels.size() + 1);
        for (const LevelHealth& level : levels)
            colAdvised.push_back(!level.advice.empty());
        colAdvised.push_back(!cSimulation->Health().remedies.empty());
        return colAdvised;
    };
    const std::vector<bool> none(levels.size() + 1, false);
    EXPECT_EQ(advised(), none);
    EXPECT_EQ(cSimulation->Advice(1).size(), levels[1].advice.size() + 1);
    EXPECT_EQ(cSimulation->Advice(1)[0], levels[1].why[0]) << "an empty level";
    EXPECT_EQ(ErrorOf([&] { cSimulation->Advice(2, [](double, bool& bCancel) { bCancel = true; }); }),
              error::UserInterrupt);
    EXPECT_EQ(advised(), none);
    const std::vector<std::wstring> advice = cSimulation->Advice(2);
    EXPECT_FALSE(advice.empty());
    EXPECT_EQ(levels[2].advice, advice);
    int lSteps = 0;
    EXPECT_EQ(cSimulation->Advice(2, [&](double, bool&) { ++lSteps; }), advice);
    EXPECT_EQ(lSteps, 0) << "it is kept";
    cSimulation->FindAllAdvice();
    EXPECT_EQ(levels[2].advice, advice);
    EXPECT_FALSE(cSimulation->Health().remedies.empty());
}

TEST_F(RotationTest, ASearchThatIsCancelledIsMadeAgain)
{
    // The first of each level, which does not depend on chance as a spread does.
    const auto adviceOf = [](const clsSimulation& cSimulation) {
        Lines advice;
        for (std::size_t level = 0; level < cSimulation.Health().levels.size(); ++level)
        {
            const Lines ofLevel = cSimulation.Advice(level);
            advice.push_back(ofLevel.empty() ? L"none" : ofLevel[0]);
        }
        return advice;
    };
    const Lines all = adviceOf(*Simulated());
    bool bCancelled = true;
    for (int lStep = 0; bCancelled; ++lStep)
    {
        const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
        int lSteps = 0;
        bCancelled =
            ErrorOf([&] {
                cSimulation->FindAllAdvice([&](double, bool& bCancel) { bCancel = lSteps++ == lStep; });
            }) == error::UserInterrupt;
        EXPECT_EQ(adviceOf(*cSimulation), all) << lStep;
    }
}

TEST_F(RotationTest, AdviceIsRefusedInsideTheSearchForIt)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    std::vector<std::int32_t> errors;
    cSimulation->FindAllAdvice(
        [&](double, bool&) { errors.push_back(ErrorOf([&] { cSimulation->FindAllAdvice(); })); });
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(std::count(errors.begin(), errors.end(), error::PermissionDenied),
              static_cast<std::ptrdiff_t>(errors.size()));
    EXPECT_EQ(ErrorOf([&] { cSimulation->FindAllAdvice(); }), 0);
}

TEST_F(RotationTest, AReportsStepMayReadAdviceThatIsKnown)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated(2);
    const Lines known = cSimulation->Advice(1);
    std::map<std::int32_t, int> colErrors;
    cRotation.WriteReport(*cSimulation, L"C:\\Radio\\r.json", [&](double, bool&) {
        EXPECT_EQ(cSimulation->Advice(1), known);
        ++colErrors[ErrorOf([&] { cSimulation->Advice(2); })];
        ++colErrors[ErrorOf([&] { cRotation.WriteReport(*cSimulation, L"C:\\Radio\\inner.json"); })];
    });
    EXPECT_GT(colErrors[error::PermissionDenied], 2) << "advice of another level that is being looked for";
    EXPECT_EQ(colErrors.count(0), 1u) << "known before the report is complete";
    EXPECT_EQ(colErrors.size(), 2u);
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\r.json"), JsonReport(cSimulation->Health()));
    EXPECT_EQ(cPorts.cFiles.PresenceOf(L"C:\\Radio\\inner.json"), Presence::Absent);
    EXPECT_FALSE(cSimulation->Advice(2).empty());
}

TEST_F(RotationTest, AdviceThatIsKnownIsNotLookedForAgain)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated(2);
    cSimulation->FindAllAdvice();
    const std::string sKnown = JsonReport(cSimulation->Health());
    int lSteps = 0;
    const SimulationProgress count = [&](double, bool&) { ++lSteps; };
    for (std::size_t level = 0; level < cSimulation->Health().levels.size(); ++level)
        cSimulation->FindAdvice(level, count);
    cSimulation->FindAllAdvice(count);
    EXPECT_EQ(lSteps, 0);
    EXPECT_EQ(JsonReport(cSimulation->Health()), sKnown);
}

TEST_F(RotationTest, TheHostRunsWhileTheStationIsReadAndJudged)
{
    // Only the clock's looks and the cuts' reading take time.
    TickingClock cSlow(cPorts.cClock, 1);
    ModScheduler cMod(Ports{cSlow, cPorts.cHostLoop, cPorts.cFiles, cPorts.cMessages, cPorts.cUserSettings,
                            cPorts.cCodePage, cPorts.cRandom});
    AddCuts(L"s", L"Slow", 1, 400, 40, 300);
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        static_cast<FakeCut&>(*cCut).OnCall = [this](std::string_view sMember) {
            if (sMember == "Album")
                cPorts.cClock.Advance(1);
        };
    const auto cScheduler = std::make_shared<clsSchedMan>(cMod);
    cScheduler->PopulateFromDataBase(cLib.cDataBase, L"C:\\Other\\");
    cRotation.SetScheduler(cScheduler);
    cRotation.AddSlot(L"Slow\t1", false);
    std::vector<double> done;
    std::uint32_t lLast = cPorts.cClock.TickCount();
    std::uint32_t lLongest = 0;
    cRotation.Simulate(dtStart, 1, {}, [&](double dDone, bool&) {
        lLongest = std::max(lLongest, cPorts.cClock.TickCount() - lLast);
        lLast = cPorts.cClock.TickCount();
        done.push_back(dDone);
    });
    cRotation.SetScheduler(nullptr); // the module ends with this test
    EXPECT_LE(lLongest, 50u);
    EXPECT_EQ(done.front(), 0);
    EXPECT_EQ(done.back(), 1);
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_GT(std::count(done.begin(), done.end(), 0), 3) << "while cuts are read";
    EXPECT_GT(std::count(done.begin(), done.end(), 0.9), 3) << "while the result is judged";
}

TEST_F(RotationTest, AReportIsJsonByNameAndHtmlElse)
{
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    cRotation.WriteReport(*cSimulation, L"C:\\Radio\\r.JSON");
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\r.JSON"), JsonReport(cSimulation->Health()));
    cRotation.WriteReport(*cSimulation, L"C:\\Radio\\json");
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\json"), HtmlReport(cSimulation->Health()));
}

TEST_F(RotationTest, AReportThatCannotBeWrittenChangesNothing)
{
    FailingFiles cFull(cPorts.cFiles, 1'000'000);
    Library cOther(cPorts, cFull);
    cOther.cDataBase = cLib.cDataBase;
    cOther.Populate();
    clsRotation cOwn;
    cOwn.SetScheduler(cOther.cSchedMan);
    const std::shared_ptr<const clsSimulation> cSimulation = Simulated();
    cPorts.cFiles.Put(L"C:\\Radio\\r.html", "old");
    const std::vector<std::wstring> colBefore = cPorts.cFiles.Paths();
    for (int lGood = 0;; ++lGood)
    {
        cFull.Arm(lGood);
        const std::int32_t lError = ErrorOf([&] { cOwn.WriteReport(*cSimulation, L"C:\\Radio\\r.html"); });
        if (!cFull.bFailed)
            break;
        EXPECT_EQ(lError, error::DiskFull) << lGood;
        EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\r.html"), "old") << lGood;
        EXPECT_EQ(cPorts.cFiles.Paths(), colBefore) << lGood;
    }
    EXPECT_NE(cPorts.cFiles.Get(L"C:\\Radio\\r.html"), "old");
}

TEST_F(RotationTest, ExplanationsAreTheManagers)
{
    EXPECT_EQ(cRotation.LastExplanation(L"Pop\t1"), nullptr);
    const std::wstring sText = cRotation.Explain(L"Pop\t1", true, nullptr).Text();
    const std::shared_ptr<Cut> cPicked = cLib.NextCut(L"Pop\t1", true);
    EXPECT_EQ(cRotation.LastExplanation(L"pop\t1")->Text(), sText);
    EXPECT_EQ(cRotation.LastExplanation(L"Pop\t1")->cCut->Key(), cPicked->Key());
    EXPECT_EQ(ErrorOf([&] { cRotation.Explain(L"Pop\t2", false, nullptr); }), error::InvalidProcedureCall);
    EXPECT_EQ(ErrorOf([&] { cRotation.LastExplanation(L"Soul\t1"); }), error::InvalidProcedureCall);
}

TEST_F(RotationTest, ASpreadIsTheManagers)
{
    cRotation.SpreadCategories({cLib.Level(L"Rock", 2)}, false);
    const CutCollection& colCuts = *cLib.Level(L"Rock", 2)->SchedCuts();
    std::unordered_map<TextKey, std::size_t> artists;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        ++artists[cCut->ArtistKey()];
    std::size_t most = 0;
    for (const auto& [cArtist, count] : artists)
        most = std::max(most, count);
    const std::size_t distance = colCuts.Count() / most;
    for (std::size_t at = 0; at < colCuts.Count(); ++at)
        for (std::size_t ahead = 1; ahead < distance; ++ahead)
            EXPECT_FALSE(colCuts.At(at)->ArtistKey() ==
                         colCuts.At((at + ahead) % colCuts.Count())->ArtistKey())
                << at << " and " << ahead << " on";
}

TEST_F(RotationTest, ASpreadDealsACutUnderEveryNameItCountsFor)
{
    cRotation.SetFeaturedArtists(true);
    const std::shared_ptr<CutCollection> colCuts = cLib.Level(L"Rock", 2)->SchedCuts();
    const wchar_t* const sCredits[] = {
        L"Abba feat. A", L"Abba feat. B", L"Abba feat. C", L"D", L"E", L"F", L"G", L"H", L"I"};
    for (std::size_t at = 0; at < colCuts->Count(); ++at)
        colCuts->At(at)->SetArtist(sCredits[at]);
    cRotation.SpreadCategories({cLib.Level(L"Rock", 2)}, false);
    std::vector<std::size_t> places;
    for (std::size_t at = 0; at < colCuts->Count(); ++at)
        if (colCuts->At(at)->Artist().starts_with(L"Abba"))
            places.push_back(at);
    ASSERT_EQ(places.size(), 3u);
    EXPECT_EQ(places[1] - places[0], 3u);
    EXPECT_EQ(places[2] - places[1], 3u);
}

} // namespace
} // namespace ravlo::test

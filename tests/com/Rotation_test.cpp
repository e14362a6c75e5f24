// SPDX-License-Identifier: MIT
// Options, forecasts and explanations, as hosts use them.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

#include <fstream>
#include <sstream>

namespace ravlo
{
namespace
{

constexpr double dStart = 45000.25;
constexpr int lUserInterrupt = 18;

Variant Bool(bool bValue) { return Variant(bValue); }

// A station with eight cuts in Rock 1, the artists of two of them the same.
class RotationTest : public ComStationTest
{
protected:
    RotationTest()
    {
        for (int i = 1; i <= 8; ++i)
            AddCut(L"Song" + std::to_wstring(i));
        Do(Cut(L"Song1"), &_clsCut::put_Artist, L"Abba feat. Cher");
        Do(Cut(L"Song2"), &_clsCut::put_Artist, L"Abba feat. Cher");
        Populate();
        AllowRotation();
        DoPutRef(m_cMan);
    }
    void DoPutRef(const ComPtr<_clsSchedMan>& cManager)
    {
        Do(m_cRotation, &_clsRotation::putref_Scheduler, cManager);
    }
    std::wstring File(const wchar_t* sName) const { return (Folder() / sName).wstring(); }
    std::string Content(const wchar_t* sName) const
    {
        std::ifstream file(Folder() / sName, std::ios::binary);
        std::stringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }
    void PutFile(const wchar_t* sName, const std::string& bytes) const
    {
        std::ofstream(Folder() / sName, std::ios::binary) << bytes;
    }
    ComPtr<_clsSimulation> Simulated(double dDays = 1)
    {
        return Get(m_cRotation, &_clsRotation::Simulate, dStart, dDays, Variant::Omitted(),
                   Variant::Omitted());
    }
    void AddSlot() { Do(m_cRotation, &_clsRotation::AddSlot, L"Rock\t1", false); }
    // Calls fStep in each step of a simulation with its part and its answer.
    void InEachStep(std::function<void(double dDone, VARIANT_BOOL& bCancel)> fStep)
    {
        m_cSink->m_onEvent = [fStep = std::move(fStep)](DISPID, DISPPARAMS& arguments) {
            ASSERT_EQ(arguments.rgvarg[0].vt, VT_BYREF | VT_BOOL);
            fStep(arguments.rgvarg[1].dblVal, *arguments.rgvarg[0].pboolVal);
        };
        m_lCookie = Advise(PointOf(m_cRotation, DIID___clsRotation), m_cSink);
    }

    ComPtr<_clsRotation> m_cRotation = Create<_clsRotation>(CLSID_clsRotation);
    ComPtr<Sink> m_cSink = NewObject<Sink>(DIID___clsRotation);
    DWORD m_lCookie = 0;
};

TEST_F(RotationTest, TheManagerIsTheHostsOwn)
{
    EXPECT_TRUE(IsSame(Get(m_cRotation, &_clsRotation::get_Scheduler), m_cMan));
    DoPutRef(nullptr);
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_Scheduler));
    EXPECT_EQ(Call(m_cRotation.Get(), L"Scheduler", DISPATCH_PROPERTYPUTREF, {Object(m_cMan)}).hResult, S_OK);
    EXPECT_TRUE(IsSame(Get(m_cRotation, &_clsRotation::get_Scheduler), m_cMan));
    m_cMan = nullptr;
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_FairRotation)) << "it keeps the manager";
}

TEST_F(RotationTest, MembersAreRefusedWithoutAPopulatedManager)
{
    struct Refused
    {
        const wchar_t* sMember;
        WORD wKind;
        std::vector<VARIANT> colArguments;
    };
    AddSlot();
    const ComPtr<_clsSimulation> cSimulation = Simulated();
    const Variant cKey = Text(L"Rock\t1");
    const Variant cFile = Text(File(L"r.html"));
    const Variant cYes = Bool(true);
    const Variant cDay = Double(1);
    const Variant cNothing(static_cast<IDispatch*>(nullptr));
    const Variant cItems = Object(CollectionOf(std::vector<Variant>()));
    const Variant cResult = Object(cSimulation);
    const Refused refused[] = {
        {L"FairRotation", DISPATCH_PROPERTYGET, {}},
        {L"FairRotation", DISPATCH_PROPERTYPUT, {cYes}},
        {L"FeaturedArtists", DISPATCH_PROPERTYGET, {}},
        {L"FeaturedArtists", DISPATCH_PROPERTYPUT, {cYes}},
        {L"ArtistsOf", DISPATCH_METHOD, {cKey}},
        {L"LoadClock", DISPATCH_METHOD, {cFile}},
        {L"LoadSlots", DISPATCH_METHOD, {cFile}},
        {L"AddSlot", DISPATCH_METHOD, {cKey}},
        {L"Simulate", DISPATCH_METHOD, {cDay, cDay}},
        {L"Explain", DISPATCH_METHOD, {cKey, cYes, cNothing}},
        {L"LastExplanation", DISPATCH_METHOD, {cKey}},
        {L"SpreadCategories", DISPATCH_METHOD, {cItems}},
        {L"WriteReport", DISPATCH_METHOD, {cResult, cFile}},
        {L"Undo", DISPATCH_METHOD, {}},
        {L"Redo", DISPATCH_METHOD, {}},
        {L"OverrideOptions", DISPATCH_METHOD, {cYes}},
    };
    for (const ComPtr<_clsSchedMan>& cManager :
         {ComPtr<_clsSchedMan>(), Create<_clsSchedMan>(CLSID_clsSchedMan)})
    {
        DoPutRef(cManager);
        for (const Refused& one : refused)
        {
            const Called called = Call(m_cRotation.Get(), one.sMember, one.wKind, one.colArguments);
            EXPECT_EQ(called.hError, ErrorResult(91)) << testing::PrintToString(std::wstring(one.sMember));
            EXPECT_EQ(called.sSource, L"RavloScheduler.clsRotation");
            EXPECT_NE(called.sError, L"");
        }
    }
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_SlotCount), 1);
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_CanUndo));
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_UndoText), L"");
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_CanRedo));
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_RedoText), L"");
    Do(m_cRotation, &_clsRotation::ClearPlan);
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_SlotCount), 0);
    DoPutRef(m_cMan);
    EXPECT_EQ(m_cRotation->Undo(), ErrorResult(5));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"There is nothing to undo");
    EXPECT_EQ(m_cRotation->Redo(), ErrorResult(5));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"There is nothing to redo");
}

TEST_F(RotationTest, OptionsAreSavedAndDecideWhatACreditCounts)
{
    const auto names = [&] {
        return ItemsOf(Get(m_cRotation, &_clsRotation::ArtistsOf, L"Abba feat. Cher", nullptr));
    };
    EXPECT_EQ(names(), (Texts{L"Abba feat. Cher"}));
    Do(m_cRotation, &_clsRotation::put_FairRotation, true);
    Do(m_cRotation, &_clsRotation::put_FeaturedArtists, true);
    EXPECT_EQ(names(), (Texts{L"Abba feat. Cher", L"Abba", L"Cher"}));
    EXPECT_EQ(ItemsOf(Get(m_cRotation, &_clsRotation::ArtistsOf, L"", nullptr)), Texts());
    EXPECT_EQ(ItemsOf(Get(m_cRotation, &_clsRotation::ArtistsOf, L"Kiss", L"Song (feat. Cher)")),
              (Texts{L"Kiss", L"Cher"}));
    EXPECT_EQ(Content(L"Scheduler\\Rotation.cfg"), "FairRotation=1\r\nFeaturedArtists=1\r\n");
    Do(m_cRotation, &_clsRotation::OverrideOptions, Bool(false), Variant::Omitted());
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_FairRotation));
    EXPECT_TRUE(Get(m_cRotation, &_clsRotation::get_FeaturedArtists));
    EXPECT_EQ(Content(L"Scheduler\\Rotation.cfg"), "FairRotation=1\r\nFeaturedArtists=1\r\n");
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::OverrideOptions, Text(L"maybe"), Bool(true)), ErrorResult(13));
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_FairRotation));
    Do(m_cRotation, &_clsRotation::OverrideOptions, Variant::Omitted(), Variant::Omitted());
    const auto cOther = Create<_clsRotation>(CLSID_clsRotation);
    Do(cOther, &_clsRotation::putref_Scheduler, m_cMan);
    EXPECT_TRUE(Get(cOther, &_clsRotation::get_FairRotation));
    EXPECT_TRUE(Get(cOther, &_clsRotation::get_FeaturedArtists));
}

TEST_F(RotationTest, APlanIsLoadedWholeOrNotAtAll)
{
    AddSlot();
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::AddSlot, L"Rock\t2", false), ErrorResult(5));
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::LoadClock, File(L"none.txt")), ErrorResult(53));
    PutFile(L"hour.txt", "Rock,1\nSoul,1\n");
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::LoadClock, File(L"hour.txt")), ErrorResult(5));
    EXPECT_EQ(TakeErrorInfo().sDescription, File(L"hour.txt") + L", line 2: no cut is in Soul:1");
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_SlotCount), 1);
    PutFile(L"hour.txt", "Rock,1\nRock,1,Y\n");
    Do(m_cRotation, &_clsRotation::LoadClock, File(L"hour.txt"));
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_SlotCount), 2);
    PutFile(L"day.csv", "slot_at,category,level,opener\n2030-03-01T07:00:00,Rock,1,N\n");
    Do(m_cRotation, &_clsRotation::LoadSlots, File(L"day.csv"));
    EXPECT_EQ(Get(m_cRotation, &_clsRotation::get_SlotCount), 1);
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::AddSlot, L"Rock\t1", false), ErrorResult(5));
}

TEST_F(RotationTest, ASimulationTellsWhatWouldPlay)
{
    AddSlot();
    const auto cSimulation = Simulated();
    const LONG lPicks = Get(cSimulation, &_clsSimulation::get_Picks);
    EXPECT_GT(lPicks, 0);
    EXPECT_EQ(Get(cSimulation, &_clsSimulation::get_Start), dStart);
    EXPECT_EQ(Get(cSimulation, &_clsSimulation::get_Days), 1);
    LONG lPlays = 0;
    for (int i = 1; i <= 8; ++i)
    {
        const std::wstring sKey = L"C:\\Song" + std::to_wstring(i) + L".mp3";
        const LONG lOfCut = Get(cSimulation, &_clsSimulation::Plays, sKey, nullptr);
        EXPECT_EQ(Get(cSimulation, &_clsSimulation::Plays, sKey, L"Rock\t1"), lOfCut);
        lPlays += lOfCut;
    }
    EXPECT_EQ(lPlays, lPicks);
    LONG lKinds = 0;
    for (LONG lKind = 0; lKind < 20; ++lKind)
        lKinds += Get(cSimulation, &_clsSimulation::KindCount, lKind);
    EXPECT_EQ(lKinds, lPicks);
    EXPECT_EQ(Get(cSimulation, &_clsSimulation::Plays, L"nobody", nullptr), 0);
    LONG lNone = 0;
    EXPECT_EQ(Try(cSimulation, &_clsSimulation::Plays, L"C:\\Song1.mp3", L"Rock\t9", &lNone), ErrorResult(5));
    Do(cSimulation, &_clsSimulation::SaveLog, File(L"log.csv"));
    const std::string log = Content(L"log.csv");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), lPicks + 1);
    EXPECT_EQ(ItemsOf(Get(cSimulation, &_clsSimulation::get_ArtistsOverAsked)).size(),
              static_cast<std::size_t>(
                  Get(Get(cSimulation, &_clsSimulation::get_ArtistsOverAsked), &_clsCollection::get_Count)));
}

TEST_F(RotationTest, AskingForNoSimulationThatThereIs)
{
    _clsSimulation* pNone = nullptr;
    const auto ask = [&](double dDays, const Variant& cFair) {
        return Try(m_cRotation, &_clsRotation::Simulate, dStart, dDays, cFair, Variant::Omitted(), &pNone);
    };
    EXPECT_EQ(ask(1, Variant::Omitted()), ErrorResult(5)) << "no plan";
    AddSlot();
    EXPECT_EQ(ask(0.5, Variant::Omitted()), ErrorResult(5));
    EXPECT_EQ(ask(3661, Variant::Omitted()), ErrorResult(5));
    EXPECT_EQ(ask(1, Text(L"maybe")), ErrorResult(13));
    EXPECT_EQ(m_cRotation->Simulate(dStart, 1, Variant::Omitted(), Variant::Omitted(), nullptr), E_POINTER);
    EXPECT_EQ(pNone, nullptr);
}

TEST_F(RotationTest, TheHealthOfALevelHasEveryFigure)
{
    AddSlot();
    const auto colLevels = Get(Simulated(7), &_clsSimulation::get_Levels);
    ASSERT_EQ(Get(colLevels, &_clsCollection::get_Count), 1);
    const auto cLevel = ItemAt<_clsLevelHealth>(colLevels, Text(L"rock\t1"));
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_Key), L"Rock\t1");
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_Cuts), 8);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_Artists), 7);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_TopArtist), L"Abba feat. Cher");
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_TopArtistCuts), 2);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_SlotMins), 3) << "cuts without a duration";
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_AttainableArtistMins), 12);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_AttainableTitleMins), 24);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_ArtistSepMins), 60);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_TitleSepMins), 60);
    const LONG lPicks = Get(cLevel, &_clsLevelHealth::get_Picks);
    EXPECT_EQ(lPicks, 7 * 24 * 20);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_MeanPlays), lPicks / 8.0);
    EXPECT_LE(Get(cLevel, &_clsLevelHealth::get_FewestPlays), Get(cLevel, &_clsLevelHealth::get_MostPlays));
    EXPECT_GT(Get(cLevel, &_clsLevelHealth::get_RulesBroken), 0);
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_Light), 2);
    EXPECT_GT(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)).size(), 0u);
}

// Rock has eight cuts, two of one artist next to each other, who may return after four slots only: the second
// one of the two is passed over in every round.
TEST_F(RotationTest, AStarvedCutNamesWhatBlocksIt)
{
    const auto cRules = Get(Level(L"Rock", L"1"), &_clsCat::get_Rules);
    Do(cRules, &_clsCatRules::put_ArtistSepMins, 10);
    Do(cRules, &_clsCatRules::put_TitleSepMins, 1);
    Do(cRules, &_clsCatRules::put_AlbumSepMins, 0);
    AddSlot();
    const auto cLevel = ItemAt<_clsLevelHealth>(Get(Simulated(7), &_clsSimulation::get_Levels), Long(1));
    const auto colNever = Get(cLevel, &_clsLevelHealth::get_NeverPlayed);
    ASSERT_EQ(Get(colNever, &_clsCollection::get_Count), 1);
    const auto cStarved = ItemAt<_clsStarved>(colNever, Long(1));
    EXPECT_TRUE(IsSame(Get(cStarved, &_clsStarved::get_Cut), Cut(L"Song2")));
    EXPECT_TRUE(IsSame(Get(cStarved, &_clsStarved::get_BlockedBy), Cut(L"Song1")));
    EXPECT_EQ(Get(cStarved, &_clsStarved::get_Plays), 0);
    EXPECT_EQ(Get(cStarved, &_clsStarved::get_Rule), ::eGlobalArtist);
    EXPECT_GT(Get(cStarved, &_clsStarved::get_TimesPassedOver), 100);
    const auto cFair = Get(m_cRotation, &_clsRotation::Simulate, dStart, 7.0, Bool(true), Bool(false));
    EXPECT_GT(Get(cFair, &_clsSimulation::Plays, L"C:\\Song2.mp3", nullptr), 100);
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::get_FairRotation)) << "for the simulation only";
}

TEST_F(RotationTest, AReportIsWrittenForTheSimulationsOfThisLibrary)
{
    AddSlot();
    const auto cSimulation = Simulated();
    Do(m_cRotation, &_clsRotation::WriteReport, cSimulation, File(L"r.json"));
    EXPECT_TRUE(Content(L"r.json").starts_with("{"));
    Do(m_cRotation, &_clsRotation::WriteReport, cSimulation, File(L"r.html"));
    EXPECT_TRUE(Content(L"r.html").starts_with("<!"));
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::WriteReport, nullptr, File(L"r.html")), ErrorResult(91));
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::WriteReport, cSimulation, File(L"none\\r.html")),
              ErrorResult(76));
}

TEST_F(RotationTest, APickIsExplainedBeforeAndAfterIt)
{
    EXPECT_FALSE(Get(m_cRotation, &_clsRotation::LastExplanation, L"Rock\t1"));
    const auto cNext = Get(m_cRotation, &_clsRotation::Explain, L"Rock\t1", false, nullptr);
    EXPECT_TRUE(IsSame(Get(cNext, &_clsExplanation::get_Cut), Cut(L"Song1")));
    EXPECT_EQ(Get(cNext, &_clsExplanation::get_KindCode), 0);
    const auto cPlayed = Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, L"Rock\t1", false, nullptr,
                             nullptr, nullptr, nullptr, false, false);
    Do(cPlayed, &_clsCut::put_LastPlayed, dStart);
    Do(m_cMan, &_clsSchedMan::UpdateArtistTitleHistory, cPlayed);
    const auto cLast = Get(m_cRotation, &_clsRotation::LastExplanation, L"Rock\t1");
    EXPECT_EQ(Get(cLast, &_clsExplanation::get_Text), Get(cNext, &_clsExplanation::get_Text));

    // Two minutes later the same artist's other cut is passed over.
    const auto cPrevious = Get(cPlayed, &_clsCut::CloneCut);
    Do(cPrevious, &_clsCut::put_LastPlayed, dStart + 2.0 / 1440);
    const auto cSecond = Get(m_cRotation, &_clsRotation::Explain, L"Rock\t1", false, cPrevious);
    const auto colSteps = Get(cSecond, &_clsExplanation::get_Steps);
    ASSERT_EQ(Get(colSteps, &_clsCollection::get_Count), 2);
    const auto cStep = ItemAt<_clsExplanationStep>(colSteps, Long(1));
    EXPECT_TRUE(IsSame(Get(cStep, &_clsExplanationStep::get_Cut), Cut(L"Song2")));
    EXPECT_EQ(Get(cStep, &_clsExplanationStep::get_Verdict), 1);
    EXPECT_NEAR(Get(cStep, &_clsExplanationStep::get_MinsAgo), 2, 0.1);
    EXPECT_EQ(Get(cStep, &_clsExplanationStep::get_RequiredMins), 60);
    EXPECT_TRUE(IsSame(Get(cStep, &_clsExplanationStep::get_BlockedBy), Cut(L"Song1")));
    EXPECT_TRUE(Get(cStep, &_clsExplanationStep::get_Text).starts_with(L"Passed over: Abba feat. Cher"));
    const auto cChosen = ItemAt<_clsExplanationStep>(colSteps, Long(2));
    EXPECT_EQ(Get(cChosen, &_clsExplanationStep::get_Verdict), 0);
    EXPECT_EQ(Get(cChosen, &_clsExplanationStep::get_MinsAgo), 0);
    EXPECT_EQ(Get(cChosen, &_clsExplanationStep::get_RequiredMins), 0);
    EXPECT_FALSE(Get(cChosen, &_clsExplanationStep::get_BlockedBy));
    _clsExplanation* pNone = nullptr;
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::LastExplanation, L"Soul\t1", &pNone), ErrorResult(5));
}

TEST_F(RotationTest, ASpreadMovesTheArtistsApart)
{
    Do(m_cRotation, &_clsRotation::SpreadCategories, CollectionOf(Level(L"Rock", L"1")), false);
    const Texts colTitles = TitlesIn(Level(L"Rock", L"1"));
    const auto at = [&](const wchar_t* sTitle) {
        return std::find(colTitles.begin(), colTitles.end(), sTitle) - colTitles.begin();
    };
    EXPECT_EQ(std::abs(at(L"Song1") - at(L"Song2")), 4);
    BoxAnswerer cAnswerer; // what is no category is shown
    Do(m_cRotation, &_clsRotation::SpreadCategories, CollectionOf({Text(L"no category")}), false);
}

TEST_F(RotationTest, StepsGoFromZeroToOneUntilTheHostCancels)
{
    AddSlot();
    std::vector<double> steps;
    InEachStep([&](double dDone, VARIANT_BOOL&) { steps.push_back(dDone); });
    Simulated();
    ASSERT_GE(steps.size(), 2u);
    EXPECT_EQ(steps.front(), 0);
    EXPECT_EQ(steps.back(), 1);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    InEachStep([](double, VARIANT_BOOL& bCancel) { bCancel = VARIANT_TRUE; });
    _clsSimulation* pNone = nullptr;
    EXPECT_EQ(Try(m_cRotation, &_clsRotation::Simulate, dStart, 1.0, Variant::Omitted(), Variant::Omitted(),
                  &pNone),
              ErrorResult(lUserInterrupt));
    EXPECT_EQ(pNone, nullptr);
}

TEST_F(RotationTest, InsideAStepTheHostMayDoAnything)
{
    AddSlot();
    bool bInside = false;
    InEachStep([&](double, VARIANT_BOOL&) {
        if (std::exchange(bInside, true))
            return;
        EXPECT_GT(Get(Simulated(), &_clsSimulation::get_Picks), 0);
        Populate();
        Do(m_cRotation, &_clsRotation::ClearPlan);
        DoPutRef(nullptr);
        m_cMan = nullptr;
        m_cRotation = nullptr;
    });
    _clsRotation* pRotation = m_cRotation.Get();
    ComPtr<_clsSimulation> cSimulation;
    EXPECT_EQ(pRotation->Simulate(dStart, 1, Variant::Omitted(), Variant::Omitted(), cSimulation.Receive()),
              S_OK);
    EXPECT_TRUE(bInside);
    EXPECT_FALSE(m_cRotation);
    EXPECT_GT(Get(cSimulation, &_clsSimulation::get_Picks), 0);
}

TEST_F(RotationTest, ARotationThatIsReleasedInAStepTellsAdviceToItsEnd)
{
    AddSlot();
    const auto colLevels = Get(Simulated(7), &_clsSimulation::get_Levels);
    std::vector<double> steps;
    InEachStep([&](double dDone, VARIANT_BOOL&) {
        steps.push_back(dDone);
        m_cRotation = nullptr;
    });
    m_cMan = nullptr;
    const auto cLevel = ItemAt<_clsLevelHealth>(colLevels, Long(1));
    EXPECT_FALSE(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)).empty());
    ASSERT_GE(steps.size(), 2u);
    EXPECT_EQ(steps.back(), 1);
}

TEST_F(RotationTest, AdviceIsCancelledByAStepAndRefusedInsideOne)
{
    AddSlot();
    const auto cLevel = ItemAt<_clsLevelHealth>(Get(Simulated(7), &_clsSimulation::get_Levels), Long(1));
    bool bCancelNow = true;
    int lRefused = 0;
    InEachStep([&](double, VARIANT_BOOL& bCancel) {
        _clsCollection* pNone = nullptr;
        lRefused += cLevel->get_Advice(&pNone) == ErrorResult(70) ? 1 : 0;
        EXPECT_EQ(pNone, nullptr);
        bCancel = bCancelNow ? VARIANT_TRUE : VARIANT_FALSE;
    });
    _clsCollection* pNone = nullptr;
    EXPECT_EQ(cLevel->get_Advice(&pNone), ErrorResult(lUserInterrupt));
    EXPECT_EQ(pNone, nullptr);
    EXPECT_EQ(lRefused, 1);
    bCancelNow = false;
    EXPECT_FALSE(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)).empty());
}

TEST_F(RotationTest, OptionsOfASimulationAreBooleansOrLeftOut)
{
    AddSlot();
    const Variant cNull = [] {
        Variant value;
        value.vt = VT_NULL;
        return value;
    }();
    const struct
    {
        Variant cOption;
        HRESULT hExpected;
    } cases[] = {{Variant(), S_OK},
                 {Variant::Omitted(), S_OK},
                 {Bool(true), S_OK},
                 {Long(1), S_OK},
                 {Text(L"True"), S_OK},
                 {cNull, ErrorResult(13)},
                 {Text(L"yes"), ErrorResult(13)},
                 {Object(m_cMan), ErrorResult(13)}};
    for (const auto& [cOption, hExpected] : cases)
    {
        ComPtr<_clsSimulation> cResult;
        EXPECT_EQ(m_cRotation->Simulate(dStart, 1, cOption, cOption, cResult.Receive()), hExpected)
            << cOption.vt;
        EXPECT_EQ(static_cast<bool>(cResult), hExpected == S_OK);
    }
}

TEST_F(RotationTest, AdviceNeedsNoRotation)
{
    AddSlot();
    const auto cLevel = ItemAt<_clsLevelHealth>(Get(Simulated(7), &_clsSimulation::get_Levels), Long(1));
    bool bTold = false;
    InEachStep([&](double, VARIANT_BOOL&) { bTold = true; });
    m_cRotation = nullptr;
    EXPECT_FALSE(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)).empty());
    EXPECT_FALSE(bTold);
}

TEST_F(RotationTest, ResultsOutliveTheManagerAndItsRotation)
{
    AddSlot();
    Do(m_cRotation, &_clsRotation::SpreadCategories, CollectionOf(Level(L"Rock", L"1")), false);
    const auto cSimulation = Simulated(7);
    const auto colLevels = Get(cSimulation, &_clsSimulation::get_Levels);
    const auto cLevel = ItemAt<_clsLevelHealth>(colLevels, Long(1));
    const auto cExplanation = Get(m_cRotation, &_clsRotation::Explain, L"Rock\t1", false, nullptr);
    const auto cStep = ItemAt<_clsExplanationStep>(Get(cExplanation, &_clsExplanation::get_Steps), Long(1));
    const auto sText = Get(cExplanation, &_clsExplanation::get_Text);
    const LONG lPicks = Get(cSimulation, &_clsSimulation::get_Picks);
    const LONG lPlays = Get(cSimulation, &_clsSimulation::Plays, L"C:\\Song1.mp3", L"Rock\t1");
    const auto advice = ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice));
    m_cRotation = nullptr;
    m_cMan = nullptr;
    Do(m_cDataBase, &_clsDataBase::Close);
    m_cDataBase = nullptr;
    CoFreeUnusedLibrariesEx(0, 0); // the library must stay while its objects live

    EXPECT_EQ(Get(cSimulation, &_clsSimulation::get_Picks), lPicks);
    EXPECT_EQ(Get(cSimulation, &_clsSimulation::Plays, L"C:\\Song1.mp3", L"Rock\t1"), lPlays);
    EXPECT_EQ(Get(Get(cSimulation, &_clsSimulation::get_Levels), &_clsCollection::get_Count), 1);
    Do(cSimulation, &_clsSimulation::SaveLog, File(L"late.csv"));
    EXPECT_TRUE(Content(L"late.csv").starts_with("start,"));
    EXPECT_EQ(Get(cLevel, &_clsLevelHealth::get_Picks), lPicks);
    EXPECT_EQ(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)), advice);
    EXPECT_EQ(Get(cExplanation, &_clsExplanation::get_Text), sText);
    EXPECT_TRUE(Get(cExplanation, &_clsExplanation::get_Cut));
    EXPECT_EQ(Get(cStep, &_clsExplanationStep::get_Verdict), 0);
    EXPECT_TRUE(Get(cStep, &_clsExplanationStep::get_Cut));
    const auto cOther = Create<_clsRotation>(CLSID_clsRotation);
    EXPECT_EQ(Try(cOther, &_clsRotation::WriteReport, cSimulation, File(L"late.html")), ErrorResult(91));
}

TEST_F(RotationTest, TheLibraryIsUnloadedOnlyWithoutItsObjects)
{
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    const HMODULE hLibrary = GetModuleHandleW(L"RavloSched.dll");
    ASSERT_TRUE(hLibrary);
    const auto canUnload =
        reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(hLibrary, "DllCanUnloadNow")));
    AddSlot();
    m_cSink = nullptr;
    auto cLevel = ItemAt<_clsLevelHealth>(Get(Simulated(), &_clsSimulation::get_Levels), Long(1));
    auto cExplanation = Get(m_cRotation, &_clsRotation::Explain, L"Rock\t1", false, nullptr);
    auto cStep = ItemAt<_clsExplanationStep>(Get(cExplanation, &_clsExplanation::get_Steps), Long(1));
    m_cRotation = nullptr;
    m_cMan = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE) << "a level's health, an explanation, a step";
    cLevel = nullptr;
    cExplanation = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE) << "a step";
    cStep = nullptr;
    EXPECT_EQ(canUnload(), S_OK);
}

// What a host does in a step of a simulation.
class StepTest : public RotationTest, public testing::WithParamInterface<int>
{
protected:
    void Act()
    {
        switch (GetParam())
        {
        case 0:
            EXPECT_GT(Get(Simulated(), &_clsSimulation::get_Picks), 0);
            break;
        case 1:
            Do(m_cRotation, &_clsRotation::ClearPlan);
            EXPECT_EQ(Try(m_cRotation, &_clsRotation::Simulate, dStart, 1.0, Variant::Omitted(),
                          Variant::Omitted(), &m_pNone),
                      ErrorResult(5));
            break;
        case 2:
            PopulateFrom(m_cDataBase);
            break;
        case 3:
            Do(m_cRotation, &_clsRotation::put_FairRotation, true);
            Do(m_cRotation, &_clsRotation::OverrideOptions, Bool(false), Bool(true));
            break;
        case 4:
            RemoveCut(Cut(L"Song1"));
            break;
        case 5:
            Do(m_cRotation, &_clsRotation::SpreadCategories, CollectionOf(Level(L"Rock", L"1")), false);
            break;
        case 6:
            Get(m_cRotation, &_clsRotation::Explain, L"Rock\t1", false, nullptr);
            Get(m_cMan, &_clsSchedMan::get_NextCutFromRotation, L"Rock\t1", false, nullptr, nullptr, nullptr,
                nullptr, false, true);
            break;
        case 7:
            Do(m_cDataBase, &_clsDataBase::Close);
            break;
        default:
            FAIL();
        }
    }
    _clsSimulation* m_pNone = nullptr;
};

// The station is read in the first steps: what is done there may count, or end the simulation with an error.
TEST_P(StepTest, InTheFirstStepAHostMayDoAnything)
{
    AddSlot();
    bool bActed = false;
    InEachStep([&](double, VARIANT_BOOL&) {
        if (!std::exchange(bActed, true))
            Act();
    });
    ComPtr<_clsSimulation> cSimulation;
    const HRESULT hResult =
        m_cRotation->Simulate(dStart, 3, Variant::Omitted(), Variant::Omitted(), cSimulation.Receive());
    EXPECT_TRUE(bActed);
    EXPECT_EQ(SUCCEEDED(hResult), static_cast<bool>(cSimulation));
}

TEST_P(StepTest, WhatAHostDoesInTheLastStepChangesNothing)
{
    AddSlot();
    const auto cBefore = Simulated(3);
    bool bActed = false;
    InEachStep([&](double dDone, VARIANT_BOOL&) {
        if (dDone == 1 && !std::exchange(bActed, true))
            Act();
    });
    const auto cAfter = Simulated(3);
    EXPECT_TRUE(bActed);
    ASSERT_TRUE(cAfter);
    Do(cBefore, &_clsSimulation::SaveLog, File(L"before.csv"));
    Do(cAfter, &_clsSimulation::SaveLog, File(L"after.csv"));
    EXPECT_EQ(Content(L"after.csv"), Content(L"before.csv"));
}

TEST_P(StepTest, WhatAHostDoesWhileAdviceIsSoughtChangesNone)
{
    AddSlot();
    const auto advice =
        ItemsOf(Get(ItemAt<_clsLevelHealth>(Get(Simulated(3), &_clsSimulation::get_Levels), Long(1)),
                    &_clsLevelHealth::get_Advice));
    const auto cLevel = ItemAt<_clsLevelHealth>(Get(Simulated(3), &_clsSimulation::get_Levels), Long(1));
    bool bActed = false;
    InEachStep([&](double, VARIANT_BOOL&) {
        if (!std::exchange(bActed, true))
            Act();
    });
    EXPECT_EQ(ItemsOf(Get(cLevel, &_clsLevelHealth::get_Advice)), advice);
    EXPECT_TRUE(bActed);
}

INSTANTIATE_TEST_SUITE_P(Actions, StepTest, testing::Range(0, 8));

} // namespace
} // namespace ravlo

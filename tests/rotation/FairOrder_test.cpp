// SPDX-License-Identifier: MIT
#include "rotation/FairOrder.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <set>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

bool IsSent(const std::wstring& sLine) { return sLine.starts_with(L"Sent: "); }

class FairRotationTest : public testing::Test
{
protected:
    FairRotationTest() { station.bFairRotation = true; }

    // Cuts "1" to "n" whose titles are their keys. All but the last break the artist rule.
    void AddViolatorsAndOneThatFits(int lCount)
    {
        station.AddViolators(lCount - 1);
        station.AddCut(std::to_wstring(lCount), L"Elm");
    }
    // The titles that a pick examined, in order.
    static Lines Examined(Station& cState)
    {
        Lines colTitles;
        SelectionContext context = cState.Context();
        context.note = [&](const TraceStep& step) {
            if (step.eKind == StepKind::Considered)
                colTitles.emplace_back(step.sTitle);
        };
        NextCutFromCategory(cState.cLevel, false, nullptr, context);
        return colTitles;
    }

    Station station;
};

TEST_F(FairRotationTest, OnlyTheChosenCutGoesToTheBack)
{
    station.AddCuts(3);
    station.Played(20, L"Oak", L"Sun");
    const Pick pick = station.NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"b");
    EXPECT_EQ(pick.eKind, eKindChosen);
    EXPECT_TRUE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"c", L"b"})) << "a is tried first at the next pick";
    EXPECT_EQ(station.Log(), (Lines{L"Getting Next Cut From Category: ",
                                    L"We dont care if its an opener or not...considering: Ash - Sun",
                                    L"Sun was played 20 mins ago : title rule violation.",
                                    L"We dont care if its an opener or not...considering: Elm - Rain",
                                    L"Sent: b to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                                    L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
}

TEST_F(FairRotationTest, ViolatorWithTheMostSeparationIsTheOnlyOneThatMoves)
{
    station.AddCuts(3);
    station.Played(20, L"Ash", L"x");
    station.Played(40, L"Elm", L"y");
    station.Played(30, L"Fir", L"z");
    EXPECT_EQ(station.NextCut().eKind, eKindArtistViolation);
    EXPECT_EQ(station.Order(), (Lines{L"a", L"c", L"b"}));
    const Lines colLog = station.Log();
    EXPECT_EQ(Lines(colLog.end() - 5, colLog.end()),
              (Lines{L"Cut with least ARTIST violation: Elm - Rain [40 mins]",
                     L"Sent: b to back of category: Pop 2", L"Next Cut in Category: Pop 2",
                     L"Average runtime 180000", L"NextCutFromCategory returns: Elm - Rain"}));
    EXPECT_EQ(std::count_if(colLog.begin(), colLog.end(), IsSent), 1);
}

TEST_F(FairRotationTest, OpenersAreFoundWithoutMovingTheOthers)
{
    station.AddCuts(1);
    EXPECT_EQ(station.NextCut(true).eKind, eKindNothingSchedulable);
    EXPECT_FALSE(station.NextCut(true).bMovedCuts) << "nothing moved";
    station.AddCut(L"b", L"Elm", L"Rain", {.bOpener = true});
    station.AddCut(L"c", L"Fir", L"Snow");
    EXPECT_EQ(station.NextCut(true).cCut->Key().Text(), L"b");
    EXPECT_EQ(station.Order(), (Lines{L"a", L"c", L"b"}));
}

// A cut that follows one of the same artist within the separation.
TEST(NeverPlayedTest, FairRotationPlaysTheCutThatTheWalkNeverDoes)
{
    for (const bool bFair : {false, true})
    {
        Station own;
        own.bFairRotation = bFair;
        own.SetRules({false, 60, 30, -1});
        own.AddCut(L"a", L"Ash");
        own.AddCut(L"b", L"Ash");
        own.AddCut(L"c", L"Elm");
        own.AddCut(L"d", L"Fir");
        std::map<std::wstring, int> colPlays;
        for (int lSlot = 0; lSlot < 100; ++lSlot)
        {
            own.SetNow(own.Now() + 20.0 / (24 * 60));
            const Pick pick = own.NextCut();
            ASSERT_EQ(pick.eKind, eKindChosen);
            pick.cCut->SetLastPlayed(own.Now());
            own.cHistory.Record(*pick.cCut, *own.cDataBase);
            ++colPlays[pick.cCut->Key().Text()];
        }
        EXPECT_EQ(colPlays[L"b"], bFair ? 25 : 0);
    }
}

// ---- properties

// Two stations with the same cuts, rules and plays: one walks, one is fair.
class PairOfStations
{
public:
    explicit PairOfStations(unsigned seed) : m_random(seed)
    {
        m_cFair.bFairRotation = true;
        const int lCuts = Number(1, 12);
        for (int i = 0; i < lCuts; ++i)
        {
            const std::wstring sArtist = L"Artist " + std::to_wstring(Number(0, 4));
            const std::wstring sTitle = L"Title " + std::to_wstring(Number(0, 8));
            const CutOptions options{.sAlbum = L"Album " + std::to_wstring(Number(0, 4)),
                                     .bOpener = Number(0, 1) == 1};
            for (Station* pStation : Both())
                pStation->AddCut(std::to_wstring(i), sArtist, sTitle, options);
        }
        const SeparationRules rules{Number(0, 9) == 0, Number(0, 90), Number(0, 90), Number(-1, 90)};
        for (Station* pStation : Both())
            pStation->SetRules(rules);
    }

    void CheckPicks()
    {
        for (int lPick = 0; lPick < 12; ++lPick)
        {
            const Lines colBefore = m_cFair.Order();
            m_cWalk.SendAllToFront(colBefore);
            const bool bMustBeOpener = Number(0, 3) == 0;
            const Pick walked = m_cWalk.NextCut(bMustBeOpener);
            const Pick fair = m_cFair.NextCut(bMustBeOpener);
            ASSERT_EQ(fair.eKind, walked.eKind);
            ASSERT_EQ(fair.cCut->Key(), walked.cCut->Key()) << "both choose the same";
            CheckOrder(colBefore, fair);
            CheckLogs(fair);
            Play(fair);
        }
    }

private:
    static void CheckOrder(Lines colOrder, const Station& cFair, const Pick& pick)
    {
        const auto it = std::find(colOrder.begin(), colOrder.end(), pick.cCut->Key().Text());
        EXPECT_EQ(pick.bMovedCuts, it != colOrder.end());
        if (it != colOrder.end())
            std::rotate(it, it + 1, colOrder.end());
        EXPECT_EQ(cFair.Order(), colOrder) << "the chosen cut went to the back, the others kept their order";
    }
    void CheckOrder(const Lines& colBefore, const Pick& pick) const { CheckOrder(colBefore, m_cFair, pick); }
    // The walk's log, with one line "Sent" that comes directly before the choice.
    void CheckLogs(const Pick& pick)
    {
        Lines colFair = m_cFair.Log();
        Lines colWalk = m_cWalk.Log();
        colFair.erase(colFair.begin(), colFair.begin() + static_cast<std::ptrdiff_t>(m_fairLines));
        colWalk.erase(colWalk.begin(), colWalk.begin() + static_cast<std::ptrdiff_t>(m_walkLines));
        m_fairLines += colFair.size();
        m_walkLines += colWalk.size();
        std::erase_if(colWalk, IsSent);
        if (pick.eKind != eKindNothingSchedulable)
            colWalk.insert(colWalk.end() - 3,
                           L"Sent: " + pick.cCut->Key().Text() + L" to back of category: Pop 2");
        EXPECT_EQ(colFair, colWalk);
    }
    void Play(const Pick& pick)
    {
        const DateTime dtNow = m_cFair.Now() + Number(1, 30) / (24.0 * 60);
        for (Station* pStation : Both())
        {
            if (pick.eKind != eKindNothingSchedulable)
            {
                pick.cCut->SetLastPlayed(pStation->Now());
                pStation->cHistory.Record(*pick.cCut, *pStation->cDataBase);
            }
            pStation->SetNow(dtNow);
        }
    }

    std::vector<Station*> Both() { return {&m_cWalk, &m_cFair}; }
    int Number(int lFrom, int lTo) { return std::uniform_int_distribution<int>(lFrom, lTo)(m_random); }

    std::mt19937 m_random;
    Station m_cWalk;
    Station m_cFair;
    std::size_t m_walkLines = 0;
    std::size_t m_fairLines = 0;
};

TEST(FairRotationPropertyTest, ChoosesWhatTheWalkWouldAndMovesNothingElse)
{
    for (unsigned seed = 1; seed <= 25; ++seed)
    {
        SCOPED_TRACE(seed);
        PairOfStations(seed).CheckPicks();
        if (testing::Test::HasFailure())
            return;
    }
}

// ---- pumps

void ThreeLeave(Station& s)
{
    for (const wchar_t* sKey : {L"2", L"5", L"6"})
        s.cLevel->SchedCuts()->Remove(sKey);
}
void TurnRound(Station& s) { s.cLevel->SchedCuts()->Reorder({6, 5, 4, 3, 2, 1, 0}); }
void MoveTheFirst(Station& s) { s.cLevel->SchedCuts()->SendToBack(TextKey(L"1")); }
void AddTheEighth(Station& s) { s.AddCut(L"8", L"Fir"); }
void Empty(Station& s) { s.cLevel->SchedCuts()->Clear(); }
void KeepTheFifthOnly(Station& s)
{
    s.cLevel->SetSchedCuts({s.NewCut(L"n", L"Fir"), s.cDataBase->colCuts[4]});
}

TEST_F(FairRotationTest, KeysAreTakenAtTheStart)
{
    const Lines colAll{L"1", L"2", L"3", L"4", L"5", L"6", L"7"};
    const struct
    {
        const char* sWhat;
        void (*atFirstPump)(Station&);
        Lines colExamined;
        Lines colOrder;
    } colCases[] = {
        {"nothing happens", [](Station&) {}, colAll, colAll},
        {"cuts leave", ThreeLeave, {L"1", L"2", L"3", L"4", L"7"}, {L"1", L"3", L"4", L"7"}},
        {"another moves", MoveTheFirst, colAll, {L"2", L"3", L"4", L"5", L"6", L"1", L"7"}},
        {"re-ordered", TurnRound, colAll, {L"6", L"5", L"4", L"3", L"2", L"1", L"7"}},
        {"newcomers wait", AddTheEighth, colAll, {L"1", L"2", L"3", L"4", L"5", L"6", L"8", L"7"}},
        {"emptied", Empty, {L"1", L"2", L"3", L"4"}, {}},
        {"replaced", KeepTheFifthOnly, {L"1", L"2", L"3", L"4", L"5"}, {L"n", L"5"}},
        {"deleted", [](Station& s) { s.DeleteMainCat(); }, colAll, colAll},
    };
    for (const auto& test : colCases)
    {
        SCOPED_TRACE(test.sWhat);
        Station own;
        own.bFairRotation = true;
        own.AddViolators(6);
        own.AddCut(L"7", L"Elm");
        own.OnPump([&] {
            own.OnPump(nullptr);
            test.atFirstPump(own);
        });
        EXPECT_EQ(Examined(own), test.colExamined);
        EXPECT_EQ(own.Order(), test.colOrder);
    }
}

TEST_F(FairRotationTest, ChosenViolatorThatHasLeftIsReturnedAndNothingMoves)
{
    station.AddViolators(6);
    station.OnPump([&] { station.cLevel->RemoveCut(station.cDataBase->colCuts.at(0)); });
    const Pick pick = station.NextCut();
    EXPECT_EQ(pick.cCut->Key().Text(), L"1");
    EXPECT_EQ(pick.eKind, eKindArtistViolation);
    EXPECT_FALSE(pick.bMovedCuts);
    EXPECT_EQ(station.Order(), (Lines{L"2", L"3", L"4", L"5", L"6"}));
    const Lines colLog = station.Log();
    EXPECT_EQ(Lines(colLog.end() - 4, colLog.end()),
              (Lines{L"Cut with least ARTIST violation: Ash - 1 [30 mins]", L"Next Cut in Category: Pop 2",
                     L"Average runtime 180000", L"NextCutFromCategory returns: Ash - 1"}))
        << "nothing is said of it";
}

TEST_F(FairRotationTest, PickInsideAPumpDisturbsNeither)
{
    AddViolatorsAndOneThatFits(8);
    Lines colInner;
    station.OnPump([&] {
        station.OnPump(nullptr);
        colInner = Examined(station);
    });
    const Lines colAll{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"};
    EXPECT_EQ(Examined(station), colAll);
    EXPECT_EQ(colInner, colAll);
    EXPECT_EQ(station.Order(), colAll);
}

TEST_F(FairRotationTest, PickInsideAPumpGetsAnotherCut)
{
    AddViolatorsAndOneThatFits(7);
    station.AddCut(L"8", L"Fir");
    std::vector<TextKey> colChosen;
    SelectionContext context = station.Context();
    context.colChosen = &colChosen;
    const auto Pick = [&] {
        return NextCutFromCategory(station.cLevel, false, nullptr, context).cCut->Title();
    };
    Lines colInner;
    station.OnPump([&] {
        station.OnPump(nullptr);
        colInner.push_back(Pick());
    });
    EXPECT_EQ(Pick(), L"8");
    EXPECT_EQ(colInner, (Lines{L"7"}));
    EXPECT_EQ(station.Order(), (Lines{L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"}));

    station.OnPump([&] {
        station.OnPump(nullptr);
        colInner = {Pick(), Pick()};
    });
    EXPECT_EQ(Pick(), L"7") << "the same cut again when no other fits";
    EXPECT_EQ(colInner, (Lines{L"7", L"8"}));
}

TEST_F(FairRotationTest, PumpsWhenTheWalkDoes)
{
    for (const int lCuts : {1, 4, 5, 9, 10, 23})
    {
        Station own;
        own.bFairRotation = true;
        own.AddViolators(lCuts);
        own.NextCut();
        EXPECT_EQ(own.PumpCount(), lCuts / 5) << lCuts;
    }
}

// A pick of 23 violators, "1" to "23", in whose pumps anything happens to their level.
class DisturbedPick
{
public:
    explicit DisturbedPick(unsigned seed) : m_random(seed)
    {
        m_own.bFairRotation = true;
        m_own.AddViolators(cuts);
        m_cLevel = m_own.cLevel;
        m_own.OnPump([this] {
            for (unsigned i = m_random() % 4; i > 0; --i)
                ChangeSomething();
        });
    }

    void Check()
    {
        SelectionContext context = m_own.Context();
        context.note = [this](const TraceStep& step) { Note(step); };
        const Pick pick = NextCutFromCategory(m_cLevel, false, nullptr, context);
        EXPECT_EQ(pick.cCut->Key().Text(), L"1") << "the first of equal violators";
        EXPECT_LE(m_last, cuts) << "newcomers wait";
        const Lines colOrder = m_own.Order();
        const auto it = std::find(colOrder.begin(), colOrder.end(), L"1");
        EXPECT_TRUE(it == colOrder.end() || it + 1 == colOrder.end());
        EXPECT_EQ(pick.bMovedCuts, it != colOrder.end());
    }

private:
    static constexpr int cuts = 23;

    void Note(const TraceStep& step)
    {
        if (step.eKind != StepKind::Considered)
            return;
        EXPECT_TRUE(m_cLevel->SchedCuts()->Exists(step.sTitle)) << "it had left";
        const int examined = std::stoi(std::wstring(step.sTitle));
        EXPECT_GT(examined, m_last) << "in the order at the start, and none twice";
        m_last = examined;
    }
    void ChangeSomething()
    {
        CutCollection& colOrder = *m_cLevel->SchedCuts();
        Cuts& colOwn = m_own.cDataBase->colCuts;
        const std::size_t at = colOrder.Empty() ? 0 : m_random() % colOrder.Count();
        const unsigned what = colOrder.Empty() ? 3 : m_random() % 16;
        if (what == 0)
            colOrder.Clear();
        else if (what == 1)
            m_cLevel->SetSchedCuts(Cuts(colOrder.begin(), colOrder.end()));
        else if (what == 2)
            colOwn.erase(colOwn.begin());
        else if (what <= 4)
            m_own.AddCut(std::to_wstring(++m_newest), L"Fir");
        else if (what <= 8)
            colOrder.RemoveAt(at);
        else
            colOrder.MoveToEnd(at);
    }

    std::mt19937 m_random;
    Station m_own;
    std::shared_ptr<clsCat> m_cLevel;
    int m_newest = 100;
    int m_last = 0; // examined
};

TEST(FairRotationPropertyTest, AnythingMayHappenAtAPump)
{
    for (unsigned seed = 1; seed <= 100; ++seed)
    {
        SCOPED_TRACE(seed);
        DisturbedPick(seed).Check();
    }
}

// ---- cuts that fail, and cuts that cannot be sent to the back

TEST_F(FairRotationTest, CutThatFailsGivesKind11AndGoesToTheBack)
{
    for (const char* sMember : {"Artist", "Title", "Opener", "CloneCut"})
        for (const bool bBreaksARule : {false, true})
        {
            SCOPED_TRACE(sMember);
            Station own;
            own.bFairRotation = true;
            own.AddCut(L"a", L"Ash", L"Sun", {.bOpener = true})->failing.insert(sMember);
            own.AddCut(L"b", L"Elm", L"Rain", {.bOpener = true});
            own.AddCut(L"c", L"Fir", L"Snow", {.bOpener = true});
            if (bBreaksARule)
                own.Played(20, L"Ash", L"x");
            const Pick pick = own.NextCut(true);
            EXPECT_EQ(pick.eKind, eKindNothingSchedulable);
            EXPECT_TRUE(pick.bMovedCuts);
            EXPECT_EQ(own.Boxes().size(), 1u);
            EXPECT_EQ(own.Order(), (Lines{L"b", L"c", L"a"}));
            EXPECT_EQ(own.NextCut(true).cCut->Key().Text(), L"b") << "later picks are served";
        }
}

TEST_F(FairRotationTest, OnlyTheCutThatFailsMoves)
{
    station.AddViolators(2);
    station.AddCut(L"bad", L"Elm")->failing.insert("Artist");
    station.AddCut(L"4", L"Fir");
    EXPECT_EQ(station.NextCut().eKind, eKindNothingSchedulable);
    EXPECT_EQ(station.Order(), (Lines{L"1", L"2", L"4", L"bad"}));
}

TEST_F(FairRotationTest, ChosenCutGoesToTheBackThoughTheDatabaseFails)
{
    const std::function<void(Station&)> colTroubles[] = {
        [](Station& s) { s.cDataBase->Remove(*s.cLevel->SchedCuts()->At(1)); },
        [](Station& s) { s.cLevel->SchedCuts()->At(1)->SetKey(L"z"); },
        [](Station& s) { s.cDataBase->bFails = true; },
        [](Station& s) { s.cDataBase = nullptr; },
        [](Station& s) {
        s.cDataBase->Remove(*s.cLevel->SchedCuts()->At(1)); // found by artist and title: c
        s.cDataBase->colCuts[1]->SetArtist(L"Elm");
        s.cDataBase->colCuts[1]->SetTitle(L"Rain");
        },
    };
    for (const auto& trouble : colTroubles)
    {
        Station own;
        own.bFairRotation = true;
        own.AddCuts(3);
        own.Played(20, L"Ash", L"x");
        trouble(own);
        const Pick pick = own.NextCut();
        EXPECT_EQ(pick.cCut->Title(), L"Rain");
        EXPECT_TRUE(pick.bMovedCuts);
        EXPECT_EQ(own.Order(), (Lines{L"a", L"c", L"b"}));
        EXPECT_TRUE(own.Boxes().empty());
    }
}

TEST_F(FairRotationTest, DatabasesOwnCutTakesThePlaceOfAnOldObject)
{
    const auto cCut = station.AddCut(L"a", L"Ash", L"Sun");
    station.cLevel->SchedCuts()->At(0) = test::PlainCopyOf(*cCut);
    station.NextCut();
    EXPECT_EQ(station.cLevel->SchedCuts()->At(0), cCut);
}

TEST_F(FairRotationTest, EntriesWithoutACutOrAKeyDoNotStopThePick)
{
    const std::shared_ptr<CutCollection> colOrder = station.cLevel->SchedCuts();
    colOrder->Add(nullptr);
    const auto cUnkeyed = station.NewCut(L"a", L"Ash", L"Sun");
    colOrder->Add(cUnkeyed);
    colOrder->Add(TextKey(), station.NewCut(L"", L"Elm", L"Rain"));
    EXPECT_EQ(station.NextCut().cCut->Title(), L"Sun");
    EXPECT_EQ(colOrder->At(0), nullptr);
    EXPECT_EQ(colOrder->At(2), cUnkeyed);
    EXPECT_EQ(station.NextCut().cCut->Title(), L"Rain");
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "rotation/Explanation.h"
#include "rotation/NextCut.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

#include <random>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;
using Step = Explanation::Step;
using Verdict = Explanation::Verdict;

// ---- sentences

// "Waterloo" by Abba against a play of "Dancing Queen" by ABBA; the pick is for 14:30 on 6 January.
class StepTextTest : public testing::Test
{
protected:
    StepTextTest()
    {
        cBlocker->SetArtist(L"ABBA");
        cBlocker->SetTitle(L"Dancing Queen");
        step.candidate = {nullptr, TextKey(L"Abba"), TextKey(L"Waterloo")};
        step.eVerdict = Verdict::Artist;
        step.breach = {eGlobalArtist, 23.99F,          60, cBlocker, dtStart - 23.99 / (24 * 60),
                       dtStart,       TextKey(L"Abba")};
    }

    const DateTime dtStart = DateTimeOf({2027, 1, 6, 14, 30, 59});
    std::shared_ptr<FakeCut> cBlocker = std::make_shared<FakeCut>();
    Step step;
};

TEST_F(StepTextTest, SaysWhatIsInTheWay)
{
    const std::wstring sCut = L"Passed over: Abba - Waterloo; ";
    EXPECT_EQ(step.Text(), sCut + L"Abba played 23 minutes ago (Dancing Queen, 14:07), 60 are required.");
    step.breach.cName = TextKey(L"Agnetha");
    EXPECT_EQ(step.Text(), sCut + L"Agnetha played 23 minutes ago (Dancing Queen, 14:07), 60 are required.");
    step.eVerdict = Verdict::Title;
    step.breach.eRule = eGlobalTitle;
    EXPECT_EQ(step.Text(), sCut + L"the title played 23 minutes ago (ABBA, 14:07), 60 are required.");
    step.eVerdict = Verdict::Album;
    step.breach.eRule = eGlobalAlbum;
    EXPECT_EQ(step.Text(), sCut + L"the album played 23 minutes ago (ABBA, 14:07), 60 are required.");
    step.eVerdict = Verdict::NoOpener;
    EXPECT_EQ(step.Text(), sCut + L"no opener.");
    step.eVerdict = Verdict::Chosen;
    EXPECT_EQ(step.Text(), L"Chosen: Abba - Waterloo; it breaks no rule.");
}

TEST_F(StepTextTest, MinutesAndTimesReadAsPeopleSayThem)
{
    struct Case
    {
        DateTime dtPlayed;
        float sngMinsAgo;
        std::int32_t lRequired;
        const wchar_t* sText;
    };
    const Case colCases[] = {
        {dtStart - 59.0 / 86400, 59 / 60.0F, 60,
         L"played 0 minutes ago (Dancing Queen, 14:30), 60 are required."},
        {dtStart - 60.0 / 86400, 1, 60, L"played 1 minute ago (Dancing Queen, 14:29), 60 are required."},
        {dtStart - 60.0 / 86400, 1.99F, 2, L"played 1 minute ago (Dancing Queen, 14:29), 2 are required."},
        {dtStart, 0, 1, L"played 0 minutes ago (Dancing Queen, 14:30), 1 is required."},
        {DateTimeOf({2027, 1, 6, 0, 9, 0}), 861, 9999,
         L"played 861 minutes ago (Dancing Queen, 00:09), 9999 are required."},
        {DateTimeOf({2027, 1, 5, 14, 7, 0}), 1463, 9999,
         L"played 1463 minutes ago (Dancing Queen, 5 January 14:07), 9999 are required."},
        {DateTimeOf({2026, 1, 6, 14, 30, 0}), 525600, 999999,
         L"played 525600 minutes ago (Dancing Queen, 6 January 14:30), 999999 are required."},
        {DateTimeOf({2026, 12, 31, 23, 59, 0}), 7591, 9999,
         L"played 7591 minutes ago (Dancing Queen, 31 December 23:59), 9999 are required."},
        {DateTimeOf({2027, 1, 6, 14, 42, 0}), 11.02F, 60,
         L"plays 11 minutes later (Dancing Queen, 14:42), 60 are required."},
    };
    for (const Case& test : colCases)
    {
        step.breach.dtPlayed = test.dtPlayed;
        step.breach.MinsAgo = test.sngMinsAgo;
        step.breach.lRequiredMins = test.lRequired;
        EXPECT_EQ(step.Text(), std::wstring(L"Passed over: Abba - Waterloo; Abba ") + test.sText);
    }
}

TEST_F(StepTextTest, TextsThatAreMissingAreLeftOut)
{
    cBlocker->failing.insert("Title");
    step.candidate.cTitle = TextKey();
    EXPECT_EQ(step.Text(), L"Passed over: Abba; Abba played 23 minutes ago (14:07), 60 are required.");
    step.candidate = {nullptr, TextKey(), TextKey(L"Waterloo")};
    step.eVerdict = Verdict::NoOpener;
    EXPECT_EQ(step.Text(), L"Passed over: Waterloo; no opener.");
}

TEST_F(StepTextTest, ReasonAndPlayInTheWayCanBeHadByThemselves)
{
    EXPECT_EQ(step.Reason(), L"Abba played 23 minutes ago (Dancing Queen, 14:07), 60 are required.");
    EXPECT_EQ(step.Blocker(), L"ABBA - Dancing Queen, 14:07");
    cBlocker->failing.insert("Artist");
    EXPECT_EQ(step.Blocker(), L"Dancing Queen, 14:07");
    step.breach = {};
    EXPECT_EQ(step.Reason() + step.Blocker(), L"");
}

// ---- the pick that comes next

class ExplanationTest : public testing::Test
{
protected:
    Explanation Next(bool bMustBeOpener = false)
    {
        return ExplainNext(station.cLevel, bMustBeOpener, nullptr, station.Context());
    }
    static Lines LinesOf(const Explanation& explanation) { return Split(explanation.Text(), sCrLf); }

    Station station;
};

TEST_F(ExplanationTest, TellsWhoWasPassedOverAndWhoIsChosen)
{
    station.AddCuts(3);
    const auto cSun = station.Played(20, L"Oak", L"Sun");
    const auto cElm = station.Played(30, L"Elm", L"x");
    const Explanation explanation = Next();
    const CutCollection& colOrder = *station.cLevel->SchedCuts();
    EXPECT_EQ(explanation.eKind, eKindChosen);
    EXPECT_EQ(explanation.cCut, colOrder.At(2)) << "the level's own, no copy";
    ASSERT_EQ(explanation.steps.size(), 3u);
    const auto& [first, second, last] =
        std::tie(explanation.steps[0], explanation.steps[1], explanation.steps[2]);
    EXPECT_EQ(first.eVerdict, Verdict::Title);
    EXPECT_EQ(first.candidate.cCut, colOrder.At(0));
    EXPECT_EQ(first.breach.MinsAgo, 20.0F);
    EXPECT_EQ(first.breach.lRequiredMins, 60);
    EXPECT_EQ(first.breach.cBlockedBy, cSun);
    EXPECT_EQ(second.eVerdict, Verdict::Artist);
    EXPECT_EQ(second.breach.cBlockedBy, cElm);
    EXPECT_EQ(last.eVerdict, Verdict::Chosen);
    EXPECT_TRUE(last.bChosen);
    EXPECT_EQ(last.breach.cBlockedBy, nullptr);
    EXPECT_EQ(
        LinesOf(explanation),
        (Lines{L"Passed over: Ash - Sun; the title played 20 minutes ago (Oak, 11:40), 60 are required.",
               L"Passed over: Elm - Rain; Elm played 30 minutes ago (x, 11:30), 60 are required.",
               L"Chosen: Fir - Snow; it breaks no rule."}));
}

TEST_F(ExplanationTest, OfViolatorsTheLeastIsToldLastAndKeepsItsRule)
{
    station.AddCuts(3);
    station.Played(20, L"Ash", L"x");
    station.Played(40, L"y", L"Rain");
    station.Played(30, L"Fir", L"z");
    const Explanation explanation = Next();
    EXPECT_EQ(explanation.eKind, eKindTitleViolation);
    ASSERT_EQ(explanation.steps.size(), 3u) << "in the order they were examined";
    EXPECT_EQ(explanation.steps[1].eVerdict, Verdict::Title);
    EXPECT_TRUE(explanation.steps[1].bChosen);
    EXPECT_EQ(explanation.cCut, explanation.steps[1].candidate.cCut);
    EXPECT_EQ(LinesOf(explanation),
              (Lines{L"Passed over: Ash - Sun; Ash played 20 minutes ago (x, 11:40), 60 are required.",
                     L"Passed over: Fir - Snow; Fir played 30 minutes ago (z, 11:30), 60 are required.",
                     L"Chosen: Elm - Rain; every candidate broke a rule, this one least (its play is the "
                     L"furthest away): the title played 40 minutes ago (y, 11:20), 60 are required."}));
}

TEST_F(ExplanationTest, SaysWhyNothingIsChosen)
{
    EXPECT_EQ(Next().eKind, eKindLevelEmpty);
    EXPECT_EQ(Next().Text(), L"Nothing chosen: Pop 2 has no cuts.");
    station.AddCuts(1);
    EXPECT_EQ(LinesOf(Next(true)),
              (Lines{L"Passed over: Ash - Sun; no opener.", L"Nothing chosen: Pop 2 has no opener."}));
    const auto cCut = station.AddCut(L"o", L"Oak", L"Hail", {.bOpener = true});
    for (const char* sMember : {"Artist", "CloneCut"})
    {
        cCut->failing = {sMember};
        const Explanation explanation = Next(true);
        EXPECT_EQ(explanation.eKind, eKindNothingSchedulable);
        EXPECT_EQ(explanation.cCut, nullptr);
        EXPECT_EQ(LinesOf(explanation), (Lines{L"Passed over: Ash - Sun; no opener.",
                                               L"Nothing chosen: an error ended the pick from Pop 2."}));
    }
    station.cLevel->SchedCuts()->Clear();
    station.cLevel->SchedCuts()->Add(nullptr);
    EXPECT_EQ(Next().Text(), L"Nothing chosen: nothing in Pop 2 can be scheduled.");
}

TEST_F(ExplanationTest, OfTheNextPickChangesNothing)
{
    station.AddViolators(12);
    station.AddCut(L"f", L"Elm")->failing = {"CloneCut"};
    const auto cNew = std::make_shared<FakeCut>();
    station.cDataBase->cNewCut = cNew;
    station.Played(1, L"Elm", L"y")->failing = {"LastPlayed"};
    const std::uint64_t changes = station.cLevel->SchedCuts()->Changes();
    for (const bool bFair : {false, true})
    {
        station.bFairRotation = bFair;
        EXPECT_EQ(Next().eKind, eKindNothingSchedulable);
    }
    EXPECT_EQ(station.cLevel->SchedCuts()->Changes(), changes);
    EXPECT_TRUE(station.Log().empty());
    EXPECT_TRUE(station.Boxes().empty());
    EXPECT_EQ(station.PumpCount(), 0);
    EXPECT_TRUE(cNew->calls.empty()) << "the database makes no placeholder";
}

// ---- the last pick

class LastExplanationTest : public ExplanationTest
{
protected:
    CutKind Pick(const wchar_t* sKey, bool bMustBeOpener = false, bool bRotatesAllowed = true)
    {
        RotationRequest request;
        request.strSubCatKey = sKey;
        request.bMustBeOpener = bMustBeOpener;
        request.bRotatesAllowed = bRotatesAllowed;
        return picks.NextCut(station.colMainCats.get(), request, station.Context()).eKind;
    }
    std::shared_ptr<const Explanation> Last(const wchar_t* sKey = L"Pop\t2") const
    {
        return picks.LastExplanation(LevelByKey(station.colMainCats.get(), sKey));
    }

    PicksOnAir picks;
};

TEST_F(LastExplanationTest, IsKeptForEachLevelUntilTheNextPick)
{
    const auto cOther = std::make_shared<clsCat>(station.cMod, L"Pop", 3);
    station.cMainCat->AddSubCat(cOther);
    EXPECT_EQ(Last(), nullptr);
    EXPECT_EQ(Pick(L"Pop\t2"), eKindLevelEmpty);
    EXPECT_EQ(Last()->eKind, eKindLevelEmpty) << "that is a pick too";
    station.AddCuts(2);
    EXPECT_EQ(Pick(L"pOP\t2"), eKindChosen);
    EXPECT_EQ(Last()->Text(), L"Chosen: Ash - Sun; it breaks no rule.");
    EXPECT_EQ(Pick(L"Pop\t2", true), eKindNothingSchedulable);
    EXPECT_EQ(Last()->steps.size(), 2u);
    EXPECT_EQ(Last(L"Pop\t3"), nullptr);
}

TEST_F(LastExplanationTest, DeferredAndMisdirectedRequestsAreNoPicks)
{
    station.AddCuts(1);
    EXPECT_EQ(Pick(L"Pop\t2", false, false), eKindRotationDeferred);
    EXPECT_EQ(Pick(L"Pop\t4"), eKindLevelNotFound);
    EXPECT_EQ(Pick(L"Rock\t2"), eKindMainCatNotFound);
    EXPECT_EQ(Last(), nullptr);
    EXPECT_EQ(Last(L"Pop\t4"), nullptr);
    EXPECT_EQ(Last(L"Rock\t2"), nullptr);
}

TEST_F(LastExplanationTest, KeepsTheTimesOfThePick)
{
    station.AddCuts(2);
    const auto cPlayed = station.Played(20, L"Ash", L"x");
    Pick(L"Pop\t2");
    const std::wstring sText = Last()->Text();
    EXPECT_EQ(sText, L"Passed over: Ash - Sun; Ash played 20 minutes ago (x, 11:40), 60 are required.\r\n"
                     L"Chosen: Elm - Rain; it breaks no rule.");
    cPlayed->SetLastPlayed(station.Now() + 1);
    station.cLevel->SchedCuts()->At(0)->SetArtist(L"Another");
    station.SetNow(station.Now() + 2);
    EXPECT_EQ(Last()->Text(), sText);
}

TEST_F(LastExplanationTest, ErrorAfterTheChoiceLeavesNothingChosen)
{
    const auto cNew = std::make_shared<FakeCut>();
    station.cDataBase->cNewCut = cNew;
    cNew->failing = {"SetCategoryKey"};
    EXPECT_EQ(Pick(L"Pop\t2"), eKindNothingSchedulable);
    EXPECT_EQ(Last()->Text(), L"Nothing chosen: an error ended the pick from Pop 2.");
    Candidate candidate; // whose copy then refuses the slot's key
    candidate.cCut = std::make_shared<FakeCut>();
    TraceStep chosen;
    chosen.eKind = StepKind::Chosen;
    chosen.pCandidate = &candidate;
    ExplanationSink sink;
    sink.Note(chosen);
    const Explanation explanation = sink.Take(eKindNothingSchedulable, *station.cLevel);
    EXPECT_EQ(explanation.Text(), L"Nothing chosen: an error ended the pick from Pop 2.");
    EXPECT_EQ(explanation.cCut, nullptr);
}

// The explanation of the next pick is that of the pick itself, step by step.
TEST_F(LastExplanationTest, NextPickDoesWhatWasExplained)
{
    for (unsigned seed = 1; seed <= 20; ++seed)
    {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Station own;
        PicksOnAir ownPicks;
        own.bFairRotation = seed % 2 == 0;
        own.SetRules({false, 60, 45, 30});
        for (int i = 0; i < 8; ++i)
            own.AddCut(std::to_wstring(i), L"Artist " + std::to_wstring(random() % 4),
                       L"Title " + std::to_wstring(random() % 6),
                       {.sAlbum = L"Album " + std::to_wstring(random() % 4), .bOpener = random() % 2 == 0});
        for (int lPick = 0; lPick < 10; ++lPick)
        {
            RotationRequest request;
            request.strSubCatKey = L"Pop\t2";
            request.bMustBeOpener = random() % 3 == 0;
            request.bRotatesAllowed = true;
            const Explanation next = ExplainNext(own.cLevel, request.bMustBeOpener, nullptr, own.Context());
            const RotationAnswer answer = ownPicks.NextCut(own.colMainCats.get(), request, own.Context());
            const std::shared_ptr<const Explanation> cLast = ownPicks.LastExplanation(own.cLevel);
            EXPECT_EQ(next.eKind, answer.eKind);
            EXPECT_EQ(next.Text(), cLast->Text());
            EXPECT_EQ(next.steps.size(), cLast->steps.size());
            ASSERT_EQ(next.cCut ? next.cCut->Key() : TextKey(), answer.cCut->Key());
            if (next.cCut)
            {
                answer.cCut->SetLastPlayed(own.Now());
                own.cHistory.Record(*answer.cCut, *own.cDataBase);
            }
            own.SetNow(own.Now() + static_cast<double>(1 + random() % 20) / (24 * 60));
        }
    }
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "ui/rotation/ExplanationPage.h"
#include "ui/rotation/NextCutsPage.h"

#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

namespace ravlo::test
{

namespace
{

using Lines = std::vector<std::wstring>;
using Step = Explanation::Step;
using Verdict = Explanation::Verdict;

const DateTime dtNow = DateTimeOf({2027, 1, 6, 14, 30, 0});

// Rock 2: Oak - One, passed over for its artist; Elm - Two, passed over for its title; Ash - Three, chosen.
struct ExplanationPageTest : testing::Test
{
    ExplanationPageTest()
    {
        cBlocker->SetArtist(L"Oak");
        cBlocker->SetTitle(L"Acorn");
        explanation.sCatName = L"Rock";
        explanation.lCatLevel = 2;
        explanation.cCut = cBlocker;
        Add(L"one", L"Oak", L"One", Verdict::Artist, eGlobalArtist, 23.9F);
        Add(L"two", L"Elm", L"Two", Verdict::Title, eGlobalTitle, 5);
        Add(L"three", L"Ash", L"Three", Verdict::Chosen, eNone, 0);
        explanation.steps.back().bChosen = true;
    }
    void Add(const wchar_t* sKey, const wchar_t* sArtist, const wchar_t* sTitle, Verdict eVerdict,
             eRuleViolation eRule, float sngMinsAgo)
    {
        Step step;
        step.candidate = {nullptr, TextKey(sArtist), TextKey(sTitle), TextKey(sKey)};
        step.eVerdict = eVerdict;
        if (eRule != eNone)
            step.breach = {
                eRule, sngMinsAgo,      60, cBlocker, dtNow - static_cast<double>(sngMinsAgo) / 1440,
                dtNow, TextKey(sArtist)};
        explanation.steps.push_back(step);
    }
    std::wstring Heading(const std::optional<AskedCut>& asked = {})
    {
        return ExplanationPage(explanation, dtNow, asked).sHeading;
    }

    std::shared_ptr<FakeCut> cBlocker = std::make_shared<FakeCut>();
    Explanation explanation;
};

} // namespace

TEST_F(ExplanationPageTest, NamesTheChoiceItsReasonAndThePassedOver)
{
    EXPECT_EQ(Heading(), L"Asked now (14:30), Rock 2 gives: Ash - Three\r\nIt breaks no rule.\r\n"
                         L"Passed over: 2 cuts (artist 1, title 1).");
    explanation.steps.erase(explanation.steps.begin());
    EXPECT_EQ(Heading().substr(Heading().rfind(L'\n') + 1), L"Passed over: 1 cut (title 1).");
    explanation.steps.erase(explanation.steps.begin());
    EXPECT_EQ(Heading().substr(Heading().rfind(L'\n') + 1), L"No cut is passed over.");
}

TEST_F(ExplanationPageTest, ListsTheCandidatesAsTheyAreExamined)
{
    const ListPage page = ExplanationPage(explanation, dtNow);
    ASSERT_EQ(page.rows.size(), 3u);
    EXPECT_EQ(page.rows[0].cells,
              (Lines{L"1", L"Passed over: artist", L"Oak", L"One", L"23", L"60", L"Oak - Acorn, 14:06"}));
    EXPECT_EQ(page.rows[0].sSentence, L"Passed over: Oak - One; Oak played 23 minutes ago (Acorn, 14:06), 60 "
                                      L"are required.");
    EXPECT_EQ(page.rows[1].cells[1], L"Passed over: title");
    EXPECT_EQ(page.rows[2].cells, (Lines{L"3", L"Chosen", L"Ash", L"Three", L"", L"", L""}));
    EXPECT_EQ(page.columns.size(), page.rows[0].cells.size());
    EXPECT_FALSE(page.rows[0].bMarked);
    EXPECT_TRUE(page.rows[2].bMarked);
    EXPECT_EQ(page.first, 2u);
}

TEST_F(ExplanationPageTest, AViolatorIsChosenForWhatItBreaksLeast)
{
    explanation.steps.pop_back();
    explanation.steps[0].bChosen = true;
    EXPECT_EQ(Heading(),
              L"Asked now (14:30), Rock 2 gives: Oak - One\r\nEvery candidate breaks a rule, this one "
              L"least (its play is the furthest away): Oak played 23 minutes ago (Acorn, 14:06), 60 "
              L"are required.\r\nPassed over: 1 cut (title 1).");
    const ListPage page = ExplanationPage(explanation, dtNow);
    EXPECT_EQ(page.rows[0].cells[1], L"Chosen, breaks artist");
    EXPECT_EQ(page.first, 0u);
}

TEST_F(ExplanationPageTest, SaysWhyNothingIsChosen)
{
    explanation.cCut = nullptr;
    explanation.steps.clear();
    explanation.eKind = eKindLevelEmpty;
    EXPECT_EQ(Heading(), L"Asked now (14:30), Rock 2 gives no cut.\r\nNothing chosen: Rock 2 has no cuts.\r\n"
                         L"No cut is passed over.");
}

TEST_F(ExplanationPageTest, ShowsTheCutThatWasAskedAbout)
{
    EXPECT_EQ(ExplanationPage(explanation, dtNow, AskedCut{TextKey(L"TWO"), L"Elm - Two", 2}).first, 1u);
    const auto last = [&](const AskedCut& asked) {
        const std::wstring sHeading = Heading(asked);
        return sHeading.substr(sHeading.rfind(L'\n') + 1);
    };
    EXPECT_EQ(last({TextKey(L"two"), L"Elm - Two", 2}), L"Passed over: 2 cuts (artist 1, title 1).");
    EXPECT_EQ(last({TextKey(L"far"), L"Fir - Far", 7}),
              L"Fir - Far is not examined: it is number 7 in the order, and the pick examines 3 cuts.");
    EXPECT_EQ(last({TextKey(L"far"), L"Fir - Far", {}}), L"Fir - Far is not in this level.");
}

// ---- the next cuts

namespace
{

ForecastCut Expected(const wchar_t* sArtist, const wchar_t* sReason, std::size_t passedOver)
{
    return {dtNow + 0.5 / 24, true, sArtist, L"Song", sReason, passedOver};
}

} // namespace

TEST(NextCutsPage, SaysHowItWasWorkedOut)
{
    const std::vector<ForecastCut> forecast{Expected(L"A", L"", 0), Expected(L"B", L"", 0)};
    EXPECT_EQ(
        NextCutsPage(forecast, L"Rock 2", dtNow, {1, 144}).sHeading,
        L"Rock 2 from now (14:30), asked every 10 min as its last plays suggest.\r\nPlays of other levels "
        L"are not foreseen here; Rotation Health forecasts whole days.\r\nNo rule is broken.");
    EXPECT_EQ(NextCutsPage(forecast, L"Rock 2", dtNow, {}).sHeading,
              L"Rock 2 from now (14:30), one cut after the other: too few of its cuts have played of late to "
              L"tell how often it is asked.\r\nPlays of other levels are not foreseen here; Rotation Health "
              L"forecasts whole days.\r\nNo rule is broken.");
    EXPECT_EQ(NextCutsPage({}, L"Rock 2", dtNow, {}).sHeading, L"Rock 2 has no cuts.");
}

TEST(NextCutsPage, ARowSaysWhenWhatAndWhichRuleBreaks)
{
    ForecastCut none{dtNow + 1, false, L"", L"", L"Nothing chosen: Rock 2 has no opener.", 3};
    const ListPage page = NextCutsPage({Expected(L"A", L"", 0), Expected(L"B", L"", 2),
                                        Expected(L"C", L"the title played 5 minutes ago.", 4), none},
                                       L"Rock 2", dtNow, {});
    const auto note = [&](std::size_t row) { return page.rows[row].cells[4]; };
    EXPECT_EQ(page.rows[0].cells, (Lines{L"1", L"15:00", L"A", L"Song", L""}));
    EXPECT_EQ(page.rows[0].sSentence, L"A - Song breaks no rule.");
    EXPECT_EQ(note(1), L"2 cuts are passed over before it.");
    EXPECT_EQ(page.rows[1].sSentence, L"B - Song breaks no rule. 2 cuts are passed over before it.");
    EXPECT_EQ(note(2), L"Breaks a rule: the title played 5 minutes ago.");
    EXPECT_EQ(
        page.rows[2].sSentence,
        L"C - Song breaks a rule, but less than every other candidate: the title played 5 minutes ago.");
    EXPECT_EQ(page.rows[3].cells,
              (Lines{L"4", L"7 January 14:30", L"", L"", L"Nothing chosen: Rock 2 has no opener."}));
    EXPECT_EQ(page.sHeading.substr(page.sHeading.rfind(L'\n') + 1), L"2 of 4 break a rule.");
    EXPECT_FALSE(page.rows[1].bMarked);
    EXPECT_TRUE(page.rows[2].bMarked);
}

TEST(ListPage, TheTextIsATableForOtherPrograms)
{
    ListPage page;
    page.sHeading = L"One.\r\nTwo.";
    page.columns = {{L"#"}, {L"Artist"}};
    EXPECT_EQ(page.Text(), L"One.\r\nTwo.\r\n");
    page.rows = {{{L"1", L"A\tB\r\nC"}, L"", false}, {{L"2", L""}, L"", false}};
    EXPECT_EQ(page.Text(), L"One.\r\nTwo.\r\n\r\n#\tArtist\r\n1\tA B  C\r\n2\t\r\n");
}

} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "rotation/SelectionTrace.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

struct Line
{
    StepKind eKind;
    std::int32_t lViolation;
    const wchar_t* sText;
};

class LogTextTest : public testing::TestWithParam<Line>
{
};

TEST_P(LogTextTest, EachStepHasItsLine)
{
    clsRuleViolation violation;
    violation.Violation = GetParam().lViolation;
    violation.MinsAgo = 12.5F;
    TraceStep step;
    step.eKind = GetParam().eKind;
    step.sCatName = L"Pop";
    step.lCatLevel = 2;
    step.sKey = L"C:\\a.mp3";
    step.sArtist = L"Ash";
    step.sTitle = L"Sun";
    step.pViolation = &violation;
    step.lAverageRunTimemS = 210500;
    EXPECT_EQ(LogText(step), GetParam().sText);
}

INSTANTIATE_TEST_SUITE_P(
    DebugLog, LogTextTest,
    testing::Values(
        Line{StepKind::Asked, eNone, L"Getting Next Cut From Category: "},
        Line{StepKind::NoCategory, eNone, L"Whoops! Category not set..."},
        Line{StepKind::LevelZero, eNone, L"Whoops! Cant schedule level zero"},
        Line{StepKind::LevelEmpty, eNone, L"Whoops! - no cuts in category: Pop 2"},
        Line{StepKind::Considered, eNone, L"We dont care if its an opener or not...considering: Ash - Sun"},
        Line{StepKind::OpenerConsidered, eNone,
             L"It's required that we find an opener. Ash - Sun IS an opener, kicking.."},
        Line{StepKind::NotAnOpener, eNone,
             L"It's required that we find an opener. Ash - Sun is NOT an opener, kicking.."},
        Line{StepKind::SentToBack, eNone, L"Sent: C:\\a.mp3 to back of category: Pop 2"},
        Line{StepKind::NotSentToBack, eNone, L"Whoops! - Didnt send: C:\\a.mp3 to back of category: Pop 2"},
        Line{StepKind::PassedOver, eNone, L""}, Line{StepKind::Measured, eNone, L""},
        Line{StepKind::Measured, eGlobalArtist, L"Ash was played 12.5 mins ago : artist rule violation."},
        Line{StepKind::Measured, eGlobalTitle, L"Sun was played 12.5 mins ago : title rule violation."},
        Line{StepKind::Measured, eGlobalAlbum, L"Ash - Sun...violates on album sep."},
        Line{StepKind::AllBreakRules, eNone, L"Couldn't find anything without a rule violation in: Pop 2"},
        Line{StepKind::NothingLeft, eNone,
             L"No way can an item be scheduled in this position. Sorry, I tried *really* hard!"},
        Line{StepKind::OnlyViolators, eNone,
             L"There are ONLY violations that can be scheduled, choosing the item with the MOST separation "
             L"out of the "
             L"violators..."},
        Line{StepKind::ViolatorChosen, eGlobalAlbum,
             L"Cut with least ALBUM violation: Ash - Sun [12.5 mins]"},
        Line{StepKind::ViolatorChosen, eGlobalArtist,
             L"Cut with least ARTIST violation: Ash - Sun [12.5 mins]"},
        Line{StepKind::ViolatorChosen, eGlobalTitle,
             L"Cut with least TITLE violation: Ash - Sun [12.5 mins]"},
        Line{StepKind::ViolatorChosen, eNone, L"Cut with least artist violation: Ash - Sun [12.5 mins]"},
        Line{StepKind::LevelOfChoice, eNone, L"Next Cut in Category: Pop 2"},
        Line{StepKind::AverageRunTime, eNone, L"Average runtime 210500"},
        Line{StepKind::Chosen, eNone, L"NextCutFromCategory returns: Ash - Sun"}));

TEST(LogTextMinutesTest, MinutesReadWithAtMostSevenDigits)
{
    const std::pair<float, std::wstring> colMinutes[] = {
        {0.0F, L"0"}, {20.0F / 60.0F, L"0.3333333"}, {59.0F, L"59"}, {1001.0F / 60.0F, L"16.68333"}};
    for (const auto& [sngMins, sText] : colMinutes)
    {
        clsRuleViolation violation;
        violation.Violation = eGlobalTitle;
        violation.MinsAgo = sngMins;
        TraceStep step;
        step.eKind = StepKind::Measured;
        step.sTitle = L"Sun";
        step.pViolation = &violation;
        EXPECT_EQ(LogText(step), L"Sun was played " + sText + L" mins ago : title rule violation.");
    }
}

} // namespace
} // namespace ravlo::test

// SPDX-License-Identifier: MIT
#include "model/clsRuleViolation.h"

#include "media/PlainCut.h"

#include <gtest/gtest.h>

#include <memory>

namespace ravlo::test
{
namespace
{

TEST(RuleViolation, ANewRecordHoldsZeroInEveryNumberNoRuleAndNoCut)
{
    const clsRuleViolation cViolation;
    EXPECT_EQ(cViolation.TitleMinsAgo, 0.0f);
    EXPECT_EQ(cViolation.ArtistMinsAgo, 0.0f);
    EXPECT_EQ(cViolation.AlbumMinsAgo, 0.0f);
    EXPECT_EQ(cViolation.MinsAgo, 0.0f);
    EXPECT_EQ(cViolation.ViolationIndex, 0);
    EXPECT_EQ(cViolation.Violation, eNone);
    EXPECT_EQ(cViolation.Cut, nullptr);
}

TEST(RuleViolation, TheRulesHaveTheNumbersHostsKnow)
{
    EXPECT_EQ(eNone, 0);
    EXPECT_EQ(eGlobalArtist, 1);
    EXPECT_EQ(eGlobalTitle, 2);
    EXPECT_EQ(eGlobalAlbum, 3);
}

TEST(RuleViolation, AViolationOutsideTheEnumerationIsStoredAsGiven)
{
    clsRuleViolation cViolation;
    cViolation.Violation = -77;
    EXPECT_EQ(cViolation.Violation, -77);
}

TEST(RuleViolation, TheCutIsSharedAndClearedByNoCut)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    clsRuleViolation cViolation;
    cViolation.Cut = cCut;
    EXPECT_EQ(cViolation.Cut, cCut);
    EXPECT_EQ(cCut.use_count(), 2);
    cViolation.Cut = nullptr;
    EXPECT_EQ(cViolation.Cut, nullptr);
    EXPECT_EQ(cCut.use_count(), 1) << "the record never frees the cut, and keeps none it was told to drop";
}

} // namespace
} // namespace ravlo::test

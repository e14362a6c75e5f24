// SPDX-License-Identifier: MIT
#include "model/clsRuleViolation.h"

#include "media/PlainCut.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace ravlo::test
{
namespace
{

TEST(RuleViolation, NewRecordHasZeroNoRuleAndNoCut)
{
    const clsRuleViolation cViolation;
    for (const float sngMins :
         {cViolation.TitleMinsAgo, cViolation.ArtistMinsAgo, cViolation.AlbumMinsAgo, cViolation.MinsAgo})
        EXPECT_EQ(sngMins, 0.0F);
    EXPECT_EQ(cViolation.ViolationIndex, 0);
    EXPECT_EQ(cViolation.Violation, eNone);
    EXPECT_EQ(cViolation.Cut, nullptr);
}

TEST(RuleViolation, RulesHaveTheNumbersHostsKnow)
{
    EXPECT_EQ(eNone, 0);
    EXPECT_EQ(eGlobalArtist, 1);
    EXPECT_EQ(eGlobalTitle, 2);
    EXPECT_EQ(eGlobalAlbum, 3);
    static_assert(std::is_same_v<decltype(clsRuleViolation::Violation), std::int32_t>, "any other is kept");
}

TEST(RuleViolation, CutIsSharedAndClearedByNoCut)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    clsRuleViolation cViolation;
    cViolation.Cut = cCut;
    EXPECT_EQ(cCut.use_count(), 2);
    cViolation.Cut = nullptr;
    EXPECT_EQ(cCut.use_count(), 1) << "the record never frees the cut, and keeps none that it dropped";
}

} // namespace
} // namespace ravlo::test

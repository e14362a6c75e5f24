// SPDX-License-Identifier: MIT
#include "ui/health/HealthTexts.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

using Texts = std::vector<std::wstring>;

// A level of two cuts that is asked 100 times and well.
LevelHealth WellLevel()
{
    LevelHealth level;
    level.sKey = L"Pop\t1";
    level.cuts.resize(2);
    level.lPicks = 100;
    level.lAttainableArtistMins = level.lAttainableTitleMins = 100;
    return level;
}

TEST(HealthTextsTest, ReasonsNameWhatIsWrong)
{
    LevelHealth level = WellLevel();
    EXPECT_EQ(ReasonsOf(level),
              (Texts{L"Pop 1 is green.", L"Every cut plays its share and no rule is broken."}));
    level.eLight = Light::Red;
    level.why = {L"1 cut never plays", L"the artist separation of 60 minutes cannot be kept: 40 at most"};
    EXPECT_EQ(ReasonsOf(level), (Texts{L"Pop 1 is red.", L"1 cut never plays.",
                                       L"The artist separation of 60 minutes cannot be kept: 40 at most."}));
}

TEST(HealthTextsTest, SeverityFollowsLightThenCutsThenRules)
{
    std::vector<LevelHealth> colLevels(7, WellLevel()); // each worse than the one before
    colLevels[0].cuts.clear();
    colLevels[0].lPicks = 0;
    colLevels[1].lPicks = 0;
    colLevels[3].lRulesBroken = 100;
    colLevels[4].eLight = Light::Yellow;
    colLevels[5].eLight = Light::Red;
    colLevels[5].lRulesBroken = 90;
    colLevels[6].eLight = Light::Red;
    colLevels[6].neverPlayed.resize(1);
    for (std::size_t level = 1; level < colLevels.size(); ++level)
        EXPECT_LT(SeverityOf(colLevels[level - 1]), SeverityOf(colLevels[level])) << level;
    EXPECT_EQ(LightText(colLevels[0]), L"empty");
    EXPECT_EQ(LightText(colLevels[1]), L"not asked");
    EXPECT_EQ(LightText(colLevels[4]), L"yellow");
}

TEST(HealthTextsTest, OverAskedArtistsAreNamedUpToThree)
{
    StationHealth health;
    EXPECT_EQ(OverAskedText(health), L"");
    health.overAsked = {{L"Abba", 1.25}, {L"Blur", 1.1}, {L"Cream", 1.05}, {L"Dido", 1.01}};
    EXPECT_EQ(OverAskedText(health),
              L"Asked for more often than the separations allow: Abba (1.25 of 1), Blur "
              L"(1.1 of 1), Cream (1.05 of 1) and 1 more.");
}

} // namespace
} // namespace ravlo::test

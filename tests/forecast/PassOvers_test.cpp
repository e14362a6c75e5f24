// SPDX-License-Identifier: MIT
#include "forecast/PassOvers.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

TEST(PassOvers, MostFrequentReasonComesWithItsMostFrequentBlocker)
{
    const struct
    {
        std::vector<std::pair<eRuleViolation, CutNumber>> cases;
        eRuleViolation eReason;
        std::optional<CutNumber> blocker;
    } table[] = {
        {{}, eNone, {}},
        {{{eGlobalArtist, 3}}, eGlobalArtist, 3},
        {{{eGlobalArtist, 3}, {eGlobalTitle, 4}, {eGlobalArtist, 5}, {eGlobalArtist, 3}}, eGlobalArtist, 3},
        {{{eGlobalArtist, 3}, {eGlobalArtist, 5}}, eGlobalArtist, 5}, // the latest
        {{{eGlobalArtist, 3}, {eGlobalArtist, 5}, {eGlobalArtist, 5}, {eGlobalArtist, 3}}, eGlobalArtist, 3},
        {{{eGlobalAlbum, 3}, {eGlobalArtist, 4}, {eGlobalTitle, 5}}, eGlobalTitle, 5}, // the first rule
        {{{eGlobalAlbum, 3}, {eGlobalTitle, 3}, {eGlobalAlbum, 4}, {eGlobalTitle, 3}, {eGlobalAlbum, 4}},
         eGlobalAlbum,
         4},
    };
    for (const auto& row : table)
    {
        PassOvers passOvers;
        for (const auto& [eRule, blocker] : row.cases)
            passOvers.Count(eRule, blocker);
        EXPECT_EQ(passOvers.Times(), row.cases.size());
        EXPECT_EQ(passOvers.Reason(), row.eReason);
        EXPECT_EQ(passOvers.Blocker(), row.blocker);
    }
}

TEST(PassOvers, FrequentBlockerIsFoundAmongTooManyToRemember)
{
    PassOvers passOvers;
    for (CutNumber rare = 1; rare <= 40 * PassOvers::mostBlockers; ++rare)
    {
        passOvers.Count(eGlobalArtist, rare);
        if (rare % 20 == 0)
            passOvers.Count(eGlobalArtist, 0);
    }
    passOvers.Count(eGlobalArtist, 1'000'000);
    EXPECT_EQ(passOvers.Times(), 42 * PassOvers::mostBlockers + 1);
    EXPECT_EQ(passOvers.Blocker(), 0u);
}

} // namespace
} // namespace ravlo

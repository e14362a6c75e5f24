// SPDX-License-Identifier: MIT
#include "rotation/OptionsText.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

namespace ravlo::test
{
namespace
{

using Options = std::optional<RotationOptions>;

constexpr RotationOptions noneOn{};
constexpr RotationOptions fairOn{true, false};
constexpr RotationOptions featuredOn{false, true};
constexpr RotationOptions both{true, true};

TEST(OptionsInTest, LastLineOfANameCountsAndAnythingButOneIsOff)
{
    const struct
    {
        std::string bytes;
        Options expected;
    } files[] = {
        {"", noneOn},
        {"FairRotation=1\r\nFeaturedArtists=1\r\n", both},
        {"\xEF\xBB\xBF"
         "FairRotation=1\r\nFeaturedArtists=0\r\n",
         fairOn},
        {" fairROTATION  =  1 \n", fairOn},
        {"FEATUREDARTISTS=1\rFairRotation=0\r", featuredOn},
        {"FairRotation=1\r\nFairRotation=0\r\nFeaturedArtists=0\nfeaturedartists=1", featuredOn},
        {"FairRotation=1\r\nFairRotation=2\r\n", noneOn},
        {"FairRotation=01\nFeaturedArtists=true\n", noneOn},
        {"FairRotation=\nFairRotation\nFair Rotation=1\n=1\n", noneOn},
        {"FairRotation==1\n#FeaturedArtists=1\n", noneOn},
        {"FairRotation 1\nOther=1\nFairRotation=1", fairOn},
        {"FairRotation=1\r\n\xFF", std::nullopt},
        {std::string("FairRotation=1\r\n\0", 17), std::nullopt},
        {std::string("\xFF\xFE"
                     "F\0",
                     4),
         std::nullopt},
    };
    for (const auto& file : files)
        EXPECT_EQ(OptionsIn(file.bytes), file.expected) << testing::PrintToString(file.bytes);
}

TEST(WithOptionsTest, OnlyTheValuesThatDifferAreChanged)
{
    const struct
    {
        std::string before;
        RotationOptions options;
        std::string after;
    } changes[] = {
        {"", noneOn, "FairRotation=0\r\nFeaturedArtists=0\r\n"},
        {"", both, "FairRotation=1\r\nFeaturedArtists=1\r\n"},
        {"FairRotation=0\r\nFeaturedArtists=0\r\n", fairOn, "FairRotation=1\r\nFeaturedArtists=0\r\n"},
        {"\xEF\xBB\xBF# a\r\n", fairOn, "# a\r\nFairRotation=1\r\nFeaturedArtists=0\r\n"},
        {"Other = \xC3\xA9 \n\n featuredartists = 1 \nX", noneOn,
         "Other = \xC3\xA9 \n\n featuredartists = 0 \nX\r\nFairRotation=0\r\n"},
        {"FairRotation=yes\r\nFeaturedArtists=\r\n", featuredOn, "FairRotation=yes\r\nFeaturedArtists=1\r\n"},
        {"FairRotation=1\nFeaturedArtists=0\nFairRotation=0", fairOn,
         "FairRotation=1\nFeaturedArtists=0\nFairRotation=1"},
        {"FairRotation\r\nFeaturedArtists=11\r", featuredOn,
         "FairRotation\r\nFeaturedArtists=1\rFairRotation=0\r\n"},
    };
    for (const auto& change : changes)
        EXPECT_EQ(WithOptions(change.before, change.options), change.after)
            << testing::PrintToString(change.before);
}

TEST(WithOptionsTest, AnyTextTakesAnyOptionsAndThenStays)
{
    constexpr unsigned lSeed = 23;
    SCOPED_TRACE(lSeed);
    std::mt19937 random(lSeed);
    const std::string pieces[] = {
        "FairRotation", "featuredartists", "=", "=", " ", "0", "1", "\r\n", "\n", "\r", "x"};
    for (int i = 0; i < 20'000; ++i)
    {
        std::string bytes;
        for (auto count = random() % 14; count > 0; --count)
            bytes += pieces[random() % std::size(pieces)];
        SCOPED_TRACE(testing::PrintToString(bytes));
        for (const RotationOptions& options : {noneOn, fairOn, featuredOn, both})
        {
            const std::string after = WithOptions(bytes, options);
            ASSERT_EQ(OptionsIn(after), options);
            ASSERT_EQ(WithOptions(after, options), after);
        }
    }
}

} // namespace
} // namespace ravlo::test

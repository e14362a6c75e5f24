// SPDX-License-Identifier: MIT
#include "base/TextKey.h"

#include <gtest/gtest.h>

namespace ravlo
{
namespace
{

TEST(TextKey, KeepsItsSpellingAndComparesIgnoringCase)
{
    EXPECT_EQ(TextKey(L"C:\\Jazz.mp3").Text(), L"C:\\Jazz.mp3");
    EXPECT_EQ(TextKey(L"C:\\Jazz.mp3"), TextKey(L"c:\\JAZZ.MP3"));
    EXPECT_FALSE(TextKey(L"C:\\Jazz.mp3") == TextKey(L"C:\\Jazz.mp4"));
    EXPECT_FALSE(TextKey(L"a") == TextKey());
}

TEST(TextKey, HashIsThatOfTheTextIgnoringCase)
{
    EXPECT_EQ(TextKey(L"\u00DCber").Hash(), HashIgnoringCase(L"\u00FCBER"));
    EXPECT_EQ(TextKey().Hash(), HashIgnoringCase(L""));
    EXPECT_EQ(std::hash<TextKey>()(TextKey(L"Pop")), TextKey(L"POP").Hash());
}

TEST(TextKey, DefaultMadeKeyIsTheEmptyText)
{
    EXPECT_TRUE(TextKey().Empty());
    EXPECT_EQ(TextKey(), TextKey(L""));
    EXPECT_EQ(TextKey(L"").Text(), L"");
    EXPECT_FALSE(TextKey(L"a").Empty());
}

TEST(TextKey, CopiesShareOneTextWhichOutlivesTheOriginal)
{
    TextKey cKey(L"C:\\Music\\A rather long path.mp3");
    const TextKey cCopy = cKey;
    EXPECT_EQ(&cCopy.Text(), &cKey.Text());
    cKey = TextKey(L"two");
    EXPECT_EQ(cCopy.Text(), L"C:\\Music\\A rather long path.mp3");
}

} // namespace
} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"
#include "rotation/ArtistNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using Texts = std::vector<std::wstring>;

const std::string heading = "credited,counts_as\r\n";

std::shared_ptr<const ArtistsTable> TableOf(const std::string& rows)
{
    ArtistsTable::Problems problems;
    auto cTable = std::make_shared<ArtistsTable>(ArtistsTable::Parse(heading + rows, problems));
    EXPECT_TRUE(problems.empty());
    return cTable;
}

// ---- the table

struct Reading
{
    std::string bytes;
    Texts colProblems;
    Texts colPrince; // what the credit "Prince" counts for besides itself
};

TEST(ArtistsTableTest, RowsThatCannotBeUsedAreSkippedAndNamed)
{
    const Texts none;
    const Reading readings[] = {
        {heading + "Prince,TAFKAP\r\nPrince,The Artist\r\n", none, {L"TAFKAP", L"The Artist"}},
        {"\xEF\xBB\xBF" + heading + "prince,A\nPRINCE,B", none, {L"A", L"B"}},
        {" Credited,COUNTS_AS \r\nPrince,\"A, \"\"B\"\"\"\r\n", none, {L"A, \"B\""}},
        {heading + "Prince\r\nPrince,A,B\r\nPrince,C\r\n",
         {L"line 2: 1 field instead of 2", L"line 3: 3 fields instead of 2"},
         {L"C"}},
        {heading + ",A\r\nPrince,\r\nPrince, \r\nPrince,B\r\n",
         {L"line 2: an empty field", L"line 3: an empty field", L"line 4: an empty field"},
         {L"B"}},
        {heading + "Prince,\xFF\r\n\xC0\x80,A\r\nPrince,B\r\n",
         {L"line 2: not UTF-8", L"line 3: not UTF-8"},
         {L"B"}},
        {heading + "Prince, The Artist\r\n Prince ,\" B \"\r\n", none, {L"The Artist", L"B"}},
        {heading + "Prince,A" + std::string(1, '\0') + "\r\nPrince,B\r\n",
         {L"line 2: a NUL character"},
         {L"B"}},
        {heading + "Prince,\"A\nB\"\nPr\"ince,A\nPrince,C\nPrince,\"D",
         {L"line 4: a quotation mark is where none may be", L"line 6: a quotation mark is never closed"},
         {L"A\nB", L"C"}},
        {heading, none, none},
        {"", {L"line 1: the heading is not credited,counts_as: the file is not used"}, none},
        {"\r\nPrince,A\r\n", {L"line 2: the heading is not credited,counts_as: the file is not used"}, none},
        {"counts_as,credited\r\nPrince,A\r\nPrince,\"B\r\n",
         {L"line 1: the heading is not credited,counts_as: the file is not used"},
         none},
        {"cre\"dited,counts_as\r\nPrince,A\r\n",
         {L"line 1: the heading is not credited,counts_as: the file is not used"},
         none},
    };
    for (const Reading& reading : readings)
    {
        SCOPED_TRACE(testing::PrintToString(reading.bytes));
        ArtistsTable::Problems problems;
        const ArtistsTable cTable = ArtistsTable::Parse(reading.bytes, problems);
        EXPECT_EQ(problems, reading.colProblems);
        Texts colPrince;
        if (const std::vector<TextKey>* colRows = cTable.Find(TextKey(L"PrincE")))
            for (const TextKey& cName : *colRows)
                colPrince.push_back(cName.Text());
        EXPECT_EQ(colPrince, reading.colPrince);
        EXPECT_EQ(cTable.Empty(), reading.colPrince.empty());
    }
}

// ---- the names of a credit

struct Names
{
    std::wstring sArtist;
    std::wstring sTitle;
    Texts colOff; // besides the credit, without featured artists
    Texts colOn;  // and with them
};

TEST(ArtistNamesTest, CreditCountsForItsRowsAndForThoseItNames)
{
    const std::string rows = "Prince,TAFKAP\r\nTAFKAP,Love Symbol\r\n"
                             "Wings,Paul\r\nWings,Linda\r\n"
                             "Cat feat. Dog,Cat feat. Dog\r\n"
                             "Earth & Fire,Earth & Fire\r\nBono,BONO\r\n";
    const Names credits[] = {
        {L"Abba", L"Waterloo", {}, {}},
        {L"", L"Waterloo feat. Cher", {}, {}},
        {L"Abba feat. Cher", L"", {}, {L"Abba", L"Cher"}},
        {L"Abba", L"Waterloo (feat. Cher & Kiss)", {}, {L"Cher", L"Kiss"}},
        {L"Abba feat. Cher", L"Waterloo (ft. CHER, abba, Kiss)", {}, {L"Abba", L"Cher", L"Kiss"}},
        // rows, without chains
        {L"prince", L"", {L"TAFKAP"}, {L"TAFKAP"}},
        {L"TAFKAP", L"", {L"Love Symbol"}, {L"Love Symbol"}},
        {L"Wings", L"Live feat. Prince", {L"Paul", L"Linda"}, {L"Paul", L"Linda", L"Prince", L"TAFKAP"}},
        {L"Wings feat. Prince", L"", {}, {L"Wings", L"Paul", L"Linda", L"Prince", L"TAFKAP"}},
        // exceptions
        {L"CAT FEAT. DOG", L"Walk feat. Abba", {}, {L"Abba"}},
        {L"Abba feat. Earth & Fire", L"", {}, {L"Abba", L"Earth & Fire"}},
        {L"Abba feat. Bono, Earth & Fire", L"", {}, {L"Abba", L"Bono", L"Earth", L"Fire"}},
    };
    const ArtistNames cOff(false, TableOf(rows));
    const ArtistNames cOn = cOff.With(true);
    for (const Names& credit : credits)
    {
        SCOPED_TRACE(testing::PrintToString(credit.sArtist));
        Texts colOff = credit.colOff;
        Texts colOn = credit.colOn;
        if (!credit.sArtist.empty())
        {
            colOff.insert(colOff.begin(), credit.sArtist);
            colOn.insert(colOn.begin(), credit.sArtist);
        }
        EXPECT_EQ(cOff.Of(credit.sArtist, credit.sTitle), colOff);
        EXPECT_EQ(cOn.Of(credit.sArtist, credit.sTitle), colOn);
        EXPECT_EQ(cOn.With(false).Of(credit.sArtist, credit.sTitle), colOff);
    }
}

TEST(ArtistNamesTest, WithoutOptionAndRowsCreditsCountForThemselves)
{
    for (const ArtistNames& cNames : {ArtistNames(), ArtistNames(false, nullptr),
                                      ArtistNames(false, TableOf("")), ArtistNames().With(true).With(false)})
    {
        EXPECT_TRUE(cNames.CreditsOnly());
        EXPECT_EQ(cNames.Of(L"Abba feat. Cher", L"Live feat. Kiss"), Texts{L"Abba feat. Cher"});
        EXPECT_EQ(cNames.Of(L"", L"Live"), Texts());
        EXPECT_EQ(cNames.NamesOf(TextKey(L"Abba"), TextKey()), std::vector<TextKey>{TextKey(L"Abba")});
        EXPECT_TRUE(cNames.NamesOf(TextKey(), TextKey(L"Live")).empty());
    }
    EXPECT_FALSE(ArtistNames().With(true).CreditsOnly());
    EXPECT_FALSE(ArtistNames(false, TableOf("a,b\n")).CreditsOnly());
}

TEST(ArtistNamesTest, KeysAreTheNamesAndAreRemembered)
{
    const ArtistNames cNames(true, TableOf("Cher,Sonny\n"));
    const ArtistNames cCopy = cNames;
    const TextKey cArtist(L"Abba feat. Cher");
    const std::vector<TextKey>& colFirst = cNames.KeysOf(cArtist, TextKey(L"Live"));
    for (int i = 0; i < 1000; ++i) // references stay valid while others are added
        cNames.KeysOf(cArtist, TextKey(L"Live feat. " + std::to_wstring(i)));
    EXPECT_EQ(&cCopy.KeysOf(TextKey(L"ABBA FEAT. CHER"), TextKey(L"live")), &colFirst);
    const Texts colNames = cNames.Of(L"Abba feat. Cher", L"Live");
    EXPECT_EQ(colFirst, std::vector<TextKey>(colNames.begin(), colNames.end()));
    EXPECT_EQ(cNames.KeysOf(cArtist, TextKey(L"Live feat. 7")).back(), TextKey(L"7"));
    EXPECT_TRUE(cNames.KeysOf(TextKey(), TextKey(L"Live feat. Cher")).empty());
    EXPECT_EQ(cNames.NamesOf(TextKey(L"ABBA FEAT. CHER"), TextKey())[0].Text(), L"ABBA FEAT. CHER");
    EXPECT_EQ(&cNames.With(true).KeysOf(cArtist, TextKey(L"Live")), &colFirst) << "nothing differs";
    EXPECT_FALSE(cNames.With(false) == cNames);
}

TEST(ArtistNamesTest, AnyCreditComesFirstAndNoNameTwiceInAnyCase)
{
    constexpr unsigned lSeed = 22;
    SCOPED_TRACE(lSeed);
    std::mt19937 random(lSeed);
    const Texts pieces = {L" feat. ", L" ft ", L" (", L")", L",", L" & ", L" x ", L"a", L"A", L"Cher", L"b"};
    const auto text = [&] {
        std::wstring sText;
        for (auto count = random() % 9; count > 0; --count)
            sText += pieces[random() % pieces.size()];
        return sText;
    };
    const ArtistNames cNames(true, TableOf("a,b\ncher,a\ncher,Sonny\nb,b\n"));
    for (int i = 0; i < 20'000; ++i)
    {
        const std::wstring sArtist = text();
        const std::wstring sTitle = text();
        SCOPED_TRACE(testing::PrintToString(sArtist) + testing::PrintToString(sTitle));
        const Texts colNames = cNames.Of(sArtist, sTitle);
        ASSERT_EQ(colNames.empty(), sArtist.empty());
        if (!sArtist.empty())
        {
            ASSERT_EQ(colNames[0], sArtist);
        }
        Texts colFolded;
        for (const std::wstring& sName : colNames)
            colFolded.push_back(FoldCase(sName));
        Texts colOfFolded;
        for (const std::wstring& sName : cNames.Of(FoldCase(sArtist), FoldCase(sTitle)))
            colOfFolded.push_back(FoldCase(sName));
        ASSERT_EQ(colOfFolded, colFolded);
        std::sort(colFolded.begin(), colFolded.end());
        ASSERT_EQ(std::adjacent_find(colFolded.begin(), colFolded.end()), colFolded.end());
        ASSERT_FALSE(!colFolded.empty() && colFolded.front().empty()) << "no empty name";
    }
}

} // namespace
} // namespace ravlo::test

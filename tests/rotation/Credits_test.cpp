// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"
#include "rotation/Credits.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using Texts = std::vector<std::wstring>;

struct Artist
{
    std::wstring sText;
    std::wstring sMain;
    Texts colGuests = {};
};

const Artist artists[] = {
    // the words, whole and in any case
    {L"Abba feat. Cher", L"Abba", {L"Cher"}},
    {L"Abba feat Cher", L"Abba", {L"Cher"}},
    {L"Abba ft. Cher", L"Abba", {L"Cher"}},
    {L"Abba FT Cher", L"Abba", {L"Cher"}},
    {L"Abba Featuring Cher", L"Abba", {L"Cher"}},
    {L"Abba feat.Cher", L"Abba", {L"Cher"}},
    {L"  Abba   feat.   Cher  ", L"Abba", {L"Cher"}},
    {L"Abba with Cher", L""},
    {L"Abba featured Cher", L""},
    {L"Defeat Cher", L""},
    {L"Abba 5ft Cher", L""},
    {L"Abba feat\u00e9 Cher", L""},
    {L"Abba \u00e9feat Cher", L""},
    {L"Abba \u2013feat\u2013 Cher", L"Abba \u2013", {L"\u2013 Cher"}},
    // a name on both sides
    {L"", L""},
    {L"Little Feat", L""},
    {L"Feat. Cher", L""},
    {L"feat.", L""},
    {L"Abba feat. ,  ,", L""},
    {L"Little Feat feat. Cher", L"Little Feat", {L"Cher"}},
    {L"Cher feat. Little Feat", L"Cher", {L"Little Feat"}},
    {L"Cher feat. Little Feat feat. Abba", L"Cher", {L"Little Feat", L"Abba"}},
    // brackets, and what follows them
    {L"Abba (feat. Cher)", L"Abba", {L"Cher"}},
    {L"Abba [Feat. Cher] & Band", L"Abba", {L"Cher"}},
    {L"Abba {ft Cher} ft. Prince", L"Abba", {L"Cher", L"Prince"}},
    {L"Abba (feat. Cher (of Sonny)) Live", L"Abba", {L"Cher (of Sonny)"}},
    {L"Abba (Live) feat. Cher (UK)", L"Abba (Live)", {L"Cher (UK)"}},
    {L"Abba (live, feat. Cher)", L"Abba", {L"Cher"}},
    {L"(Abba feat. Cher) Live", L"Abba", {L"Cher"}},
    {L"([Abba feat. Cher])", L"Abba", {L"Cher"}},
    {L"(feat. Cher)", L""},
    {L"Abba (feat. Cher", L"Abba", {L"Cher"}},
    {L"Abba feat. Cher (ft. Kiss)", L"Abba", {L"Cher", L"Kiss"}},
    {L"Abba (feat. Cher) feat. Kiss (feat. Q)", L"Abba", {L"Cher", L"Kiss", L"Q"}},
    {L"Abba feat. Cher [UK] (live (ft. Kiss", L"Abba", {L"Cher [UK]", L"Kiss"}},
    {L"Abba feat. (Cher feat. Kiss)", L"Abba", {L"(Cher", L"Kiss"}},
    {L"Abba (feat. Cher (UK)) (feat. Kiss)", L"Abba", {L"Cher (UK)", L"Kiss"}},
    {L"Abba (feat. Cher] x", L"Abba", {L"Cher] x"}},
    {L"Abba) feat. Cher)", L"Abba)", {L"Cher)"}},
    // any white space
    {L"Abba\u00a0feat.\u00a0Cher", L"Abba", {L"Cher"}},
    {L"Abba\tft\u3000Cher\u2003\r\n", L"Abba", {L"Cher"}},
    {L"Abba\u1680feat Cher", L"Abba", {L"Cher"}},
    // several
    {L"Abba feat. Cher ft. Prince featuring Queen", L"Abba", {L"Cher", L"Prince", L"Queen"}},
    {L"Simon & Garfunkel feat. A, B & C", L"Simon & Garfunkel", {L"A, B & C"}},
};

TEST(SplitArtistTest, FeatureWordsDivideAnArtistText)
{
    for (const Artist& artist : artists)
    {
        SCOPED_TRACE(testing::PrintToString(artist.sText));
        const ArtistParts parts = SplitArtist(artist.sText);
        EXPECT_EQ(parts.sMain, artist.sMain);
        EXPECT_EQ(parts.colGuests, artist.colGuests);
    }
}

TEST(SplitArtistTest, CharacterIsPartOfAWordASpaceOrASign)
{
    const std::wstring letters = L"09azAZ\xAA\xB5\xBA\xC0\xD6\xD8\xF6\xF8\u0100\u1FFF\u2070\u2FFF\u3040";
    const std::wstring spaces = L"\t\r \x85\xA0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000";
    const std::wstring signs = L"/:@`\b\xE\xA9\xAB\xB4\xB6\xB9\xBB\xBF\xD7\xF7\u200B\u206F\u3001\u303F";
    for (const wchar_t c : letters + spaces + signs)
    {
        const std::wstring sBefore = std::wstring(L"Abba") + c;
        const std::wstring sMain = letters.find(c) != std::wstring::npos  ? L""
                                   : spaces.find(c) != std::wstring::npos ? L"Abba"
                                                                          : sBefore;
        EXPECT_EQ(SplitArtist(sBefore + L"feat Cher").sMain, sMain) << std::hex << static_cast<int>(c);
    }
}

struct Pieces
{
    std::wstring sText;
    Texts colPieces;
};

TEST(GuestsInTitleTest, FeatureWordCountsWithANameAfterIt)
{
    const Pieces titles[] = {
        {L"", {}},
        {L"Waterloo", {}},
        {L"Waterloo feat.", {}},
        {L"Waterloo (feat. )", {}},
        {L"Waterloo (feat. Cher) [Radio Edit]", {L"Cher"}},
        {L"Waterloo (Remix feat. Cher & Prince) ft. Queen", {L"Cher & Prince", L"Queen"}},
        {L"Feat. Cher", {L"Cher"}},
        {L"Waterloo feat. Cher (Kiss Remix feat. Queen)", {L"Cher", L"Queen"}},
        {L"feat. feat. Cher", {L"Cher"}},
    };
    for (const Pieces& title : titles)
        EXPECT_EQ(GuestsInTitle(title.sText), title.colPieces) << testing::PrintToString(title.sText);
}

TEST(SplitGuestsTest, GuestsAreDividedAtTheirSeparators)
{
    const Pieces guests[] = {
        {L"", {}},
        {L" , ,", {}},
        {L"Cher", {L"Cher"}},
        {L"Cher, Prince & Queen and Abba x Kiss", {L"Cher", L"Prince", L"Queen", L"Abba", L"Kiss"}},
        {L"Cher AND Prince X Queen", {L"Cher", L"Prince", L"Queen"}},
        {L"Cher,Prince", {L"Cher", L"Prince"}},
        {L"Cher, and  Prince", {L"Cher", L"Prince"}},
        {L"Cher and & x Prince", {L"Cher", L"Prince"}},
        {L"Cher\u00a0&\u00a0Prince\tand Queen", {L"Cher", L"Prince", L"Queen"}},
        {L"Cher&Prince", {L"Cher&Prince"}},
        {L"Brandy Maxx", {L"Brandy Maxx"}},
        {L"x Cher and", {L"x Cher and"}},
    };
    for (const Pieces& guest : guests)
        EXPECT_EQ(SplitGuests(guest.sText), guest.colPieces) << testing::PrintToString(guest.sText);
}

std::wstring Folded(const ArtistParts& parts)
{
    std::wstring sText = FoldCase(parts.sMain);
    for (const std::wstring& sGuest : parts.colGuests)
        sText += L"|" + FoldCase(sGuest);
    return sText;
}

TEST(SplitArtistTest, AnyTextDividesAlikeInAnyCaseIntoPiecesOfItself)
{
    constexpr unsigned lSeed = 21;
    SCOPED_TRACE(lSeed);
    std::mt19937 random(lSeed);
    const Texts pieces = {L"feat.", L"Ft", L"featuring", L"Feat", L" ", L" ", L"(", L")",      L"[",     L"]",
                          L",",     L"&",  L" and ",     L" x ",  L"a", L"B", L".", L"\u00b5", L"\u00df"};
    for (int i = 0; i < 20'000; ++i)
    {
        std::wstring sText;
        for (auto count = random() % 12; count > 0; --count)
            sText += pieces[random() % pieces.size()];
        const ArtistParts parts = SplitArtist(sText);
        ASSERT_EQ(Folded(parts), Folded(SplitArtist(FoldCase(sText)))) << testing::PrintToString(sText);
        ASSERT_EQ(parts.sMain.empty(), parts.colGuests.empty());
        std::size_t at = sText.find(parts.sMain);
        for (const std::wstring& sGuest : parts.colGuests)
        {
            ASSERT_FALSE(SplitGuests(sGuest).empty());
            at = at == std::wstring::npos ? at : sText.find(sGuest, at);
        }
        ASSERT_NE(at, std::wstring::npos) << testing::PrintToString(sText);
    }
}

} // namespace
} // namespace ravlo::test

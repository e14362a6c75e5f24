// SPDX-License-Identifier: MIT
#include "media/PlainCut.h"

#include "support/FakeDataBase.h"

#include <gtest/gtest.h>
#include <limits>

namespace ravlo
{
namespace
{

using Names = std::vector<std::wstring>;

// A cut with a different value in every property.
std::shared_ptr<Cut> FilledCut()
{
    const auto cCut = NewPlainCut();
    cCut->SetKey(L"C:\\Music\\a.mp3");
    cCut->SetPath(L"D:\\Elsewhere\\a.mp3");
    cCut->SetSecondaryKey(L"second");
    cCut->SetArtist(L"Artist");
    cCut->SetTitle(L"Title");
    cCut->SetAlbum(L"Album");
    cCut->SetYear(1987);
    cCut->SetRunTimemS(201000);
    cCut->SetDurationmS(203999);
    cCut->SetLastPlayed(45000.25);
    cCut->SetOpener(true);
    cCut->SetCatLevel(3);
    cCut->SetCategoryText(L"Jazz/Funk");
    cCut->SetCategoryKey(L"Jazz\t3");
    cCut->SetMustBeOpener(true);
    cCut->SetKindCode(eKindTitleViolation);
    return cCut;
}

// The values of every property, in the order of FilledCut; the number and the duration as text at the end.
std::vector<std::wstring> TextsOf(const Cut& cCut)
{
    return {cCut.Key().Text(),
            cCut.Path(),
            cCut.SecondaryKey(),
            cCut.Artist(),
            cCut.Title(),
            cCut.Album(),
            std::to_wstring(cCut.Year()),
            std::to_wstring(cCut.RunTimemS()),
            std::to_wstring(cCut.DurationmS()),
            std::to_wstring(cCut.LastPlayed()),
            cCut.Opener() ? L"opener" : L"",
            std::to_wstring(cCut.CatLevel()),
            cCut.CategoryText(),
            cCut.CategoryKey(),
            cCut.MustBeOpener() ? L"must be opener" : L"",
            std::to_wstring(cCut.KindCode()),
            std::to_wstring(cCut.ID()),
            cCut.DurationText()};
}

TEST(PlainCut, IsMadeFromWhatASelectionReads)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut(
        {TextKey(L"key"), TextKey(L"Ash"), TextKey(L"Sun"), TextKey(L"Best"), 7, 180'000, 45000.5, true});
    EXPECT_EQ(cCut->Key(), TextKey(L"key"));
    EXPECT_EQ(cCut->Artist() + cCut->Title() + cCut->Album(), L"AshSunBest");
    EXPECT_EQ(cCut->ID(), 7);
    EXPECT_EQ(cCut->DurationmS(), 180'000);
    EXPECT_EQ(cCut->LastPlayed(), 45000.5);
    EXPECT_TRUE(cCut->Opener());
    EXPECT_EQ(cCut->CloneCut()->ID(), 7);
    EXPECT_TRUE(cCut->Path().empty());
}

TEST(PlainCut, IsEmptyWhenMadeAndKeepsEveryValue)
{
    EXPECT_EQ(TextsOf(*NewPlainCut()), (Names{L"", L"", L"", L"", L"", L"", L"0", L"0", L"0", L"0.000000",
                                              L"", L"0", L"", L"", L"", L"0", L"0", L"0:00"}));
    static_assert(eKindChosen == 0 && eKindTitleViolation == 15);
    EXPECT_EQ(TextsOf(*FilledCut()),
              (Names{L"C:\\Music\\a.mp3", L"D:\\Elsewhere\\a.mp3", L"second", L"Artist", L"Title", L"Album",
                     L"1987", L"201000", L"203999", L"45000.250000", L"opener", L"3", L"Jazz/Funk",
                     L"Jazz\t3", L"must be opener", L"15", L"0", L"3:23"}));
}

TEST(PlainCut, SettingTheKeySetsThePathWithIt)
{
    const auto cCut = NewPlainCut();
    cCut->SetKey(L"C:\\b.mp3");
    EXPECT_EQ(cCut->Path(), L"C:\\b.mp3");
}

TEST(PlainCut, CloneAndCopyHaveAllValuesAndAreIndependent)
{
    const auto cCut = FilledCut();
    for (const auto& cOther : {cCut->CloneCut(), test::PlainCopyOf(*cCut)})
    {
        EXPECT_EQ(TextsOf(*cOther), TextsOf(*FilledCut()));
        cOther->SetTitle(L"Other");
        cOther->AddCategoryName(L"Soul");
        EXPECT_EQ(TextsOf(*cCut), TextsOf(*FilledCut()));
    }
}

TEST(PlainCut, CopyOfADatabasesCutKeepsTheNumberAndMayHaveAnotherKey)
{
    test::FakeCut cHeld;
    cHeld.lID = 4711;
    const auto cCopy = test::PlainCopyOf(cHeld);
    EXPECT_EQ(cCopy->ID(), 4711);
    EXPECT_EQ(cCopy->CloneCut()->ID(), 4711);
    cCopy->SetKey(L"C:\\free.mp3");
    EXPECT_EQ(cCopy->Key().Text(), L"C:\\free.mp3");
}

TEST(PlainCut, CategoryNamesAreKeptOnceIgnoringCase)
{
    const auto cCut = NewPlainCut();
    cCut->AddCategoryName(L"Jazz");
    cCut->AddCategoryName(L"Funk");
    cCut->AddCategoryName(L"JAZZ");
    EXPECT_EQ(cCut->CategoryNames(), (Names{L"Jazz", L"Funk"}));
    EXPECT_TRUE(cCut->HasCategoryName(L"funk"));
    EXPECT_FALSE(cCut->HasCategoryName(L"fun"));
    cCut->RemoveCategoryName(L"jazz");
    cCut->RemoveCategoryName(L"Soul");
    EXPECT_EQ(cCut->CategoryText(), L"Funk");
}

TEST(PlainCut, CategoryTextIsSplitAtSlashesWithoutEmptyPieces)
{
    const auto cCut = FilledCut();
    cCut->SetCategoryText(L"/Soul//jazz/SOUL/ Top 40 /");
    EXPECT_EQ(cCut->CategoryNames(), (Names{L"Soul", L"jazz", L" Top 40 "}));
    EXPECT_EQ(cCut->CategoryText(), L"Soul/jazz/ Top 40 ");
    cCut->SetCategoryText(L"");
    EXPECT_TRUE(cCut->CategoryNames().empty());
}

TEST(DurationText, IsMinutesAndTwoDigitSecondsCutOff)
{
    const struct
    {
        std::int32_t lDurationmS;
        const wchar_t* sText;
    } aCases[] = {
        {0, L"0:00"},
        {999, L"0:00"},
        {1000, L"0:01"},
        {9999, L"0:09"},
        {59999, L"0:59"},
        {60000, L"1:00"},
        {600000, L"10:00"},
        {3599999, L"59:59"},
        {3600000, L"60:00"},
        {-1, L"0:00"},
        {-100000, L"0:00"},
        {std::numeric_limits<std::int32_t>::max(), L"35791:23"},
        {std::numeric_limits<std::int32_t>::min(), L"0:00"},
    };
    for (const auto& testCase : aCases)
        EXPECT_EQ(DurationTextOf(testCase.lDurationmS), testCase.sText) << testCase.lDurationmS;
}

} // namespace
} // namespace ravlo

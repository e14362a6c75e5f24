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

// A cut with a value of its own in every field.
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

void ExpectSameValues(const Cut& cCut, const Cut& cOther)
{
    EXPECT_EQ(cCut.Key(), cOther.Key());
    EXPECT_EQ(cCut.SecondaryKey(), cOther.SecondaryKey());
    EXPECT_EQ(cCut.ID(), cOther.ID());
    EXPECT_EQ(cCut.Path(), cOther.Path());
    EXPECT_EQ(cCut.Artist(), cOther.Artist());
    EXPECT_EQ(cCut.Title(), cOther.Title());
    EXPECT_EQ(cCut.Album(), cOther.Album());
    EXPECT_EQ(cCut.Year(), cOther.Year());
    EXPECT_EQ(cCut.RunTimemS(), cOther.RunTimemS());
    EXPECT_EQ(cCut.DurationmS(), cOther.DurationmS());
    EXPECT_EQ(cCut.LastPlayed(), cOther.LastPlayed());
    EXPECT_EQ(cCut.Opener(), cOther.Opener());
    EXPECT_EQ(cCut.CatLevel(), cOther.CatLevel());
    EXPECT_EQ(cCut.CategoryNames(), cOther.CategoryNames());
    EXPECT_EQ(cCut.CategoryKey(), cOther.CategoryKey());
    EXPECT_EQ(cCut.MustBeOpener(), cOther.MustBeOpener());
    EXPECT_EQ(cCut.KindCode(), cOther.KindCode());
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

TEST(PlainCut, IsEmptyWhenMade)
{
    const auto cCut = NewPlainCut();
    EXPECT_TRUE(cCut->Key().Empty());
    EXPECT_EQ(cCut->ID(), 0);
    EXPECT_EQ(cCut->LastPlayed(), 0);
    EXPECT_EQ(cCut->CatLevel(), 0);
    EXPECT_EQ(cCut->CategoryText(), L"");
    EXPECT_EQ(cCut->KindCode(), eKindChosen);
    EXPECT_FALSE(cCut->Opener());
    EXPECT_FALSE(cCut->MustBeOpener());
}

TEST(PlainCut, KeepsEveryValue)
{
    const auto cCut = FilledCut();
    EXPECT_EQ(cCut->Key().Text(), L"C:\\Music\\a.mp3");
    EXPECT_EQ(cCut->Path(), L"D:\\Elsewhere\\a.mp3");
    EXPECT_EQ(cCut->SecondaryKey(), L"second");
    EXPECT_EQ(cCut->Artist(), L"Artist");
    EXPECT_EQ(cCut->Title(), L"Title");
    EXPECT_EQ(cCut->Album(), L"Album");
    EXPECT_EQ(cCut->Year(), 1987);
    EXPECT_EQ(cCut->RunTimemS(), 201000);
    EXPECT_EQ(cCut->DurationmS(), 203999);
    EXPECT_EQ(cCut->DurationText(), L"3:23");
    EXPECT_EQ(cCut->LastPlayed(), 45000.25);
    EXPECT_TRUE(cCut->Opener());
    EXPECT_EQ(cCut->CatLevel(), 3);
    EXPECT_EQ(cCut->CategoryNames(), (Names{L"Jazz", L"Funk"}));
    EXPECT_EQ(cCut->CategoryKey(), L"Jazz\t3");
    EXPECT_TRUE(cCut->MustBeOpener());
    EXPECT_EQ(cCut->KindCode(), eKindTitleViolation);
}

TEST(PlainCut, SettingTheKeySetsThePathWithIt)
{
    const auto cCut = NewPlainCut();
    cCut->SetKey(L"C:\\b.mp3");
    EXPECT_EQ(cCut->Path(), L"C:\\b.mp3");
}

TEST(PlainCut, CloneHasAllValuesAndIsIndependent)
{
    const auto cCut = FilledCut();
    const auto cClone = cCut->CloneCut();
    ExpectSameValues(*cClone, *cCut);
    cClone->SetTitle(L"Other");
    cClone->AddCategoryName(L"Soul");
    ExpectSameValues(*cCut, *FilledCut());
}

TEST(PlainCut, CopyOfAnyCutHasAllItsValuesAndIsIndependent)
{
    const auto cCut = FilledCut();
    const auto cCopy = PlainCopyOf(*cCut);
    ExpectSameValues(*cCopy, *cCut);
    cCopy->SetArtist(L"Other");
    ExpectSameValues(*cCut, *FilledCut());
}

TEST(PlainCut, CopyOfADatabasesCutKeepsTheNumberAndMayHaveAnotherKey)
{
    test::FakeCut cHeld;
    cHeld.lID = 4711;
    const auto cCopy = PlainCopyOf(cHeld);
    EXPECT_EQ(cCopy->ID(), 4711);
    EXPECT_EQ(cCopy->CloneCut()->ID(), 4711);
    cCopy->SetKey(L"C:\\free.mp3");
    EXPECT_EQ(cCopy->Key().Text(), L"C:\\free.mp3");
}

TEST(PlainCut, CategoryNamesAreKeptOnceWithoutRegardToCase)
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

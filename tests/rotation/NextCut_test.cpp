// SPDX-License-Identifier: MIT
#include "rotation/NextCut.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

#include <tuple>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

class NextCutTest : public testing::Test
{
protected:
    NextCutTest() { request.bRotatesAllowed = true; }

    RotationAnswer Ask(const std::wstring& sKey)
    {
        request.strSubCatKey = sKey;
        return NextCutFromRotation(station.colMainCats.get(), request, station.Context());
    }

    Station station;
    RotationRequest request;
};

TEST_F(NextCutTest, KeyLeadsToTheNextCutWhichCarriesKeyAndWish)
{
    const auto cOwn = station.AddCut(L"a", L"Ash", L"Sun", {.bOpener = true});
    for (const bool bMustBeOpener : {false, true})
    {
        request.bMustBeOpener = bMustBeOpener;
        const RotationAnswer answer = Ask(L"Pop\t2");
        EXPECT_EQ(answer.cCut->Key().Text(), L"a");
        EXPECT_EQ(answer.cCut->KindCode(), eKindChosen);
        EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
        EXPECT_EQ(answer.cCut->MustBeOpener(), bMustBeOpener);
        EXPECT_TRUE(answer.cCut->Opener()) << "the cut's own flag is another thing";
        EXPECT_EQ(answer.cMainCat, station.cMainCat);
        EXPECT_EQ(answer.cSubCat, station.cLevel);
        EXPECT_EQ(answer.sMainCatKey, L"Pop\t0");
        EXPECT_TRUE(answer.bMovedCuts);
    }
    EXPECT_EQ(cOwn->calls["SetCategoryKey"], 0);
}

TEST_F(NextCutTest, NamesAreFoundInAnyCaseAndTheSpellingIsKept)
{
    station.AddCut(L"a");
    const RotationAnswer answer = Ask(L"pOP\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindChosen);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"pOP\t2");
    EXPECT_EQ(answer.sMainCatKey, L"pOP\t0");
}

TEST_F(NextCutTest, KeyThatLeadsNowhereGivesAPlaceholderWithIt)
{
    // With the key of the main category that was looked for.
    const std::tuple<std::wstring, CutKind, std::wstring> colKeys[] = {
        {L"", eKindMainCatNotFound, L""},
        {L"Pop", eKindMainCatNotFound, L""},
        {L"Pop 2", eKindMainCatNotFound, L""},
        {L"\t", eKindMainCatNotFound, L"\t0"},
        {L"Jazz\t2", eKindMainCatNotFound, L"Jazz\t0"},
        {L"Jazz\t2\t3", eKindMainCatNotFound, L"Jazz\t0"},
        {L"Pop\t", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t0", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t3", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t02", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t 2", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t2\t", eKindLevelNotFound, L"Pop\t0"},
        {L"Pop\t2\t2", eKindLevelNotFound, L"Pop\t0"},
    };
    station.AddCut(L"a");
    request.bMustBeOpener = true;
    for (const auto& [sKey, eKind, sMainCatKey] : colKeys)
        for (const bool bAllowed : {true, false}) // a rotation is deferred only for a level that exists
        {
            request.bRotatesAllowed = bAllowed;
            const RotationAnswer answer = Ask(sKey);
            EXPECT_EQ(answer.cCut->KindCode(), eKind) << testing::PrintToString(sKey);
            EXPECT_EQ(answer.cCut->CategoryKey(), sKey);
            EXPECT_TRUE(answer.cCut->MustBeOpener());
            EXPECT_EQ(answer.cCut->CategoryText(), L"");
            EXPECT_EQ(answer.sMainCatKey, sMainCatKey);
            EXPECT_EQ(answer.cMainCat, eKind == eKindLevelNotFound ? station.cMainCat : nullptr);
            EXPECT_EQ(answer.cSubCat, nullptr);
            EXPECT_FALSE(answer.bMovedCuts);
        }
    EXPECT_TRUE(station.Log().empty());
    EXPECT_TRUE(station.Boxes().empty());
}

TEST_F(NextCutTest, BeforeAPopulationThereIsNoMainCategory)
{
    station.colMainCats = nullptr;
    station.cDataBase = nullptr;
    EXPECT_EQ(Ask(L"Pop\t2").cCut->KindCode(), eKindMainCatNotFound);
}

TEST_F(NextCutTest, RotationIsDeferredUnlessAllowedOrEditable)
{
    station.AddCut(L"a");
    station.AddCut(L"b");
    for (const bool bEditable : {false, true})
        for (const bool bAllowed : {false, true})
        {
            request.bForEditablePlaylist = bEditable;
            request.bRotatesAllowed = bAllowed;
            station.SendAllToFront({L"a", L"b"});
            const RotationAnswer answer = Ask(L"Pop\t2");
            const bool bDeferred = !bEditable && !bAllowed;
            EXPECT_EQ(answer.cCut->KindCode(), bDeferred ? eKindRotationDeferred : eKindChosen);
            EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
            EXPECT_EQ(answer.bMovedCuts, !bDeferred);
            EXPECT_EQ(answer.cMainCat, station.cMainCat);
            EXPECT_EQ(answer.cSubCat, station.cLevel);
            EXPECT_EQ(station.Order(), bDeferred ? (Lines{L"a", L"b"}) : (Lines{L"b", L"a"}));
        }
}

TEST_F(NextCutTest, PlaceholdersOfThePickCarryTheKeyToo)
{
    const RotationAnswer answer = Ask(L"Pop\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindLevelEmpty);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
    EXPECT_FALSE(answer.bMovedCuts);
}

TEST_F(NextCutTest, ErrorInThePickIsShownOnceAndKind11CarriesTheKey)
{
    station.AddCut(L"a")->failing.insert("Artist");
    const RotationAnswer answer = Ask(L"Pop\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
    EXPECT_TRUE(answer.bMovedCuts);
    EXPECT_EQ(station.Boxes().size(), 1u);
}

TEST_F(NextCutTest, ErrorOutsideThePickHasATitleOfItsOwn)
{
    auto cNew = std::make_shared<FakeCut>();
    cNew->failing.insert("SetCategoryKey");
    station.cDataBase->cNewCut = cNew;
    for (const wchar_t* sKey : {L"Pop\t2", L"Pop\t3"}) // with a level, and without
    {
        station.Boxes().clear();
        const RotationAnswer answer = Ask(sKey);
        EXPECT_EQ(answer.cCut->KindCode(), eKindNothingSchedulable);
        EXPECT_EQ(answer.cCut->CategoryKey(), sKey);
        EXPECT_EQ(answer.cCut->CatLevel(), answer.cSubCat ? 2 : 0);
        EXPECT_EQ(answer.cCut->CategoryText(), answer.cSubCat ? L"Pop" : L"");
        ASSERT_EQ(station.Boxes().size(), 1u);
        EXPECT_EQ(station.Boxes()[0],
                  (ShownBox{BoxIcon::Critical, BoxButtons::Ok, L"Error in NextCutFromRotation [cSchedMan]",
                            L"91 " + StandardDescription(91)}));
    }
}

} // namespace
} // namespace ravlo::test

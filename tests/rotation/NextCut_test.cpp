// SPDX-License-Identifier: MIT
#include "rotation/NextCut.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

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
        return NextCutFromRotation(station.colMainCats.get(), request, station.World());
    }

    Station station;
    RotationRequest request;
};

TEST_F(NextCutTest, AKeyLeadsToTheLevelsNextCutWhichCarriesKeyAndWish)
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

TEST_F(NextCutTest, NamesAreFoundWhateverTheirCaseAndTheAnswerKeepsTheSpellingAskedFor)
{
    station.AddCut(L"a");
    const RotationAnswer answer = Ask(L"pOP\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindChosen);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"pOP\t2");
    EXPECT_EQ(answer.sMainCatKey, L"pOP\t0");
}

struct BadKey
{
    const wchar_t* sKey;
    CutKind eKind;
    const wchar_t* sMainCatKey;
    bool bMainCat;
};

TEST_F(NextCutTest, AKeyThatLeadsNowhereGivesAPlaceholderThatCarriesIt)
{
    const BadKey colKeys[] = {
        {L"", eKindMainCatNotFound, L"", false},
        {L"Pop", eKindMainCatNotFound, L"", false},
        {L"Pop 2", eKindMainCatNotFound, L"", false},
        {L"\t", eKindMainCatNotFound, L"\t0", false},
        {L"Jazz\t2", eKindMainCatNotFound, L"Jazz\t0", false},
        {L"Jazz\t2\t3", eKindMainCatNotFound, L"Jazz\t0", false},
        {L"Pop\t", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t0", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t3", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t02", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t 2", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t2\t", eKindLevelNotFound, L"Pop\t0", true},
        {L"Pop\t2\t2", eKindLevelNotFound, L"Pop\t0", true},
    };
    station.AddCut(L"a");
    request.bMustBeOpener = true;
    for (const BadKey& key : colKeys)
    {
        const RotationAnswer answer = Ask(key.sKey);
        EXPECT_EQ(answer.cCut->KindCode(), key.eKind) << testing::PrintToString(std::wstring(key.sKey));
        EXPECT_EQ(answer.cCut->CategoryKey(), key.sKey);
        EXPECT_TRUE(answer.cCut->MustBeOpener());
        EXPECT_EQ(answer.cCut->CategoryText(), L"");
        EXPECT_EQ(answer.sMainCatKey, key.sMainCatKey);
        EXPECT_EQ(answer.cMainCat, key.bMainCat ? station.cMainCat : nullptr);
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

TEST_F(NextCutTest, RotationIsDeferredUnlessAllowedOrForAnEditablePlaylist)
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

TEST_F(NextCutTest, ADeferredRotationIsToldOnlyForALevelThatExists)
{
    request.bRotatesAllowed = false;
    EXPECT_EQ(Ask(L"Pop").cCut->KindCode(), eKindMainCatNotFound);
    EXPECT_EQ(Ask(L"Pop\t3").cCut->KindCode(), eKindLevelNotFound);
}

TEST_F(NextCutTest, PlaceholdersOfThePickCarryTheKeyToo)
{
    const RotationAnswer answer = Ask(L"Pop\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindLevelEmpty);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
    EXPECT_FALSE(answer.bMovedCuts);
}

TEST_F(NextCutTest, AnErrorInThePickIsShownOnceAndKind11CarriesTheKey)
{
    station.AddCut(L"a")->failing.insert("Artist");
    const RotationAnswer answer = Ask(L"Pop\t2");
    EXPECT_EQ(answer.cCut->KindCode(), eKindNothingSchedulable);
    EXPECT_EQ(answer.cCut->CategoryKey(), L"Pop\t2");
    EXPECT_TRUE(answer.bMovedCuts);
    EXPECT_EQ(station.Boxes().size(), 1u);
}

TEST_F(NextCutTest, AnErrorOutsideThePickIsShownUnderItsOwnTitleAndGivesKind11)
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
        ASSERT_EQ(station.Boxes().size(), 1u);
        EXPECT_EQ(station.Boxes()[0],
                  (ShownBox{BoxIcon::Critical, BoxButtons::Ok, L"Error in NextCutFromRotation [cSchedMan]",
                            L"91 " + StandardDescription(91)}));
    }
}

} // namespace
} // namespace ravlo::test

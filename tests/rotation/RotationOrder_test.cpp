// SPDX-License-Identifier: MIT
#include "rotation/RotationOrder.h"
#include "rotation/Station.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

class RotationOrderTest : public testing::Test
{
protected:
    bool Send(const std::shared_ptr<Cut>& cCut)
    {
        return SendToBackOfCategory(station.cLevel.get(), cCut.get(), station.World());
    }

    Station station;
};

TEST_F(RotationOrderTest, TheCutGoesFromItsPlaceToTheEndAndTheLogTellsIt)
{
    station.AddCut(L"a");
    const auto cCut = station.AddCut(L"b");
    station.AddCut(L"c");
    EXPECT_TRUE(Send(cCut));
    EXPECT_EQ(station.Order(), (Lines{L"a", L"c", L"b"}));
    EXPECT_EQ(station.Log(), (Lines{L"Sent: b to back of category: Pop 2"}));
}

TEST_F(RotationOrderTest, TheOnlyCutOfALevelStays)
{
    const auto cCut = station.AddCut(L"a");
    EXPECT_TRUE(Send(cCut));
    EXPECT_EQ(station.Order(), (Lines{L"a"}));
    EXPECT_EQ(station.Log(), (Lines{L"Sent: a to back of category: Pop 2"}));
}

TEST_F(RotationOrderTest, ACutThatIsNotInTheLevelIsNotSent)
{
    station.AddCut(L"a");
    station.AddCut(L"b");
    const auto cElsewhere = station.NewCut(L"c");
    EXPECT_FALSE(Send(cElsewhere));
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    EXPECT_EQ(station.Log(), (Lines{L"Whoops! - Didnt send: c to back of category: Pop 2"}));
}

TEST_F(RotationOrderTest, ForACopyTheDatabasesOwnCutStandsInTheOrderAfterwards)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    station.cLevel->SchedCuts()->At(0) = PlainCopyOf(*cCut);
    EXPECT_TRUE(Send(PlainCopyOf(*cCut)));
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.cLevel->SchedCuts()->At(1), cCut);
}

TEST_F(RotationOrderTest, ACutUnknownByKeyIsFoundByArtistAndTitleAndNamedByItsOwnKey)
{
    const auto cCut = station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b");
    const std::shared_ptr<Cut> cCopy = PlainCopyOf(*cCut);
    cCopy->SetKey(L"moved");
    EXPECT_TRUE(Send(cCopy));
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log(), (Lines{L"Sent: moved to back of category: Pop 2"}));
}

TEST_F(RotationOrderTest, ACutTheDatabaseDoesNotKnowIsPassedOverInSilence)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    station.cDataBase->Remove(*cCut);
    EXPECT_FALSE(Send(cCut));
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    EXPECT_TRUE(station.Log().empty());
}

TEST_F(RotationOrderTest, NoCutNoLevelOrNoDatabaseGivesFalseInSilence)
{
    const auto cCut = station.AddCut(L"a");
    EXPECT_FALSE(Send(nullptr));
    EXPECT_FALSE(SendToBackOfCategory(nullptr, cCut.get(), station.World()));
    SelectionWorld world = station.World();
    world.cDataBase = nullptr;
    EXPECT_FALSE(SendToBackOfCategory(station.cLevel.get(), cCut.get(), world));
    EXPECT_TRUE(station.Log().empty());
}

TEST_F(RotationOrderTest, RunTimesAndCategoryNamesAreNotTouched)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    const std::int32_t lAverage = station.cLevel->AverageRunTimemS();
    cCut->SetRunTimemS(7);
    cCut->SetCategoryText(L"");
    EXPECT_TRUE(Send(cCut));
    EXPECT_EQ(station.cLevel->AverageRunTimemS(), lAverage);
    EXPECT_EQ(cCut->CategoryText(), L"");
}

TEST_F(RotationOrderTest, AWalkNotesItsStepThroughTheSameOperation)
{
    station.AddCut(L"a");
    const auto cUnknown = station.AddCut(L"b");
    station.cDataBase->Remove(*cUnknown);
    const auto cElsewhere = station.AddCut(L"c", L"Ash", L"Sun");
    station.SetRules({true, 0, 0, 0});
    std::vector<StepKind> colOfWalk;
    std::vector<StepKind> colAlone;
    const auto isSent = [](StepKind eKind)
    { return eKind == StepKind::SentToBack || eKind == StepKind::NotSentToBack; };
    SelectionWorld world = station.World();
    for (int lCut = 0; lCut < 3; ++lCut)
    {
        world.note = [&](const TraceStep& step)
        {
            if (isSent(step.eKind))
                colOfWalk.push_back(step.eKind);
        };
        NextCutFromCategory(station.cLevel, false, nullptr, world);
        world.note = [&](const TraceStep& step) { colAlone.push_back(step.eKind); };
        SendToBackOfCategory(station.cLevel.get(), station.cLevel->SchedCuts()->At(2).get(), world);
    }
    EXPECT_EQ(colOfWalk, colAlone);
    EXPECT_EQ(colOfWalk.size(), 2u) << "of a cut the database does not know nothing is said";
}

TEST_F(RotationOrderTest, AnErrorOfTheDatabaseIsLoggedWithoutABoxAndGivesFalse)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    station.cDataBase->bFails = true;
    EXPECT_FALSE(Send(cCut));
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
    EXPECT_EQ(station.Log(),
              (Lines{L"DISPLAYERROR, SendToBackOfCategory [schedman] 57 " + StandardDescription(57)}));
    EXPECT_TRUE(station.Boxes().empty());
}

} // namespace
} // namespace ravlo::test

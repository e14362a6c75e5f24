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
        return SendToBackOfCategory(station.cLevel.get(), cCut.get(), station.Context());
    }

    Station station;
};

TEST_F(RotationOrderTest, CutMovesToTheEndWhichIsLogged)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        station.AddCut(sKey);
    const Lines colLines[] = {
        {L"b", L"a c b", L"Sent: b to back of category: Pop 2"},
        {L"b", L"a c b", L"Sent: b to back of category: Pop 2"}, // from the end
        {L"a", L"c b a", L"Sent: a to back of category: Pop 2"}, // from the head
    };
    for (const Lines& lines : colLines)
    {
        EXPECT_TRUE(Send(station.cDataBase->CutByKey(TextKey(lines[0]))));
        EXPECT_EQ(station.Order(), Split(lines[1], L" "));
        EXPECT_EQ(station.Log().back(), lines[2]);
    }
    EXPECT_FALSE(Send(station.NewCut(L"elsewhere")));
    EXPECT_EQ(station.Order(), (Lines{L"c", L"b", L"a"}));
    EXPECT_EQ(station.Log().back(), L"Whoops! - Didnt send: elsewhere to back of category: Pop 2");
    EXPECT_EQ(station.Log().size(), 4u);
}

TEST_F(RotationOrderTest, ForACopyTheDatabasesOwnCutIsInTheOrderAfterwards)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    station.cLevel->SchedCuts()->At(0) = test::PlainCopyOf(*cCut);
    EXPECT_TRUE(Send(test::PlainCopyOf(*cCut)));
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.cLevel->SchedCuts()->At(1), cCut);
}

TEST_F(RotationOrderTest, CutUnknownByKeyIsFoundByArtistAndTitle)
{
    const auto cCut = station.AddCut(L"a", L"Ash", L"Sun");
    station.AddCut(L"b");
    const std::shared_ptr<Cut> cCopy = test::PlainCopyOf(*cCut);
    cCopy->SetKey(L"moved");
    EXPECT_TRUE(Send(cCopy));
    EXPECT_EQ(station.Order(), (Lines{L"b", L"a"}));
    EXPECT_EQ(station.Log(), (Lines{L"Sent: moved to back of category: Pop 2"}));
}

TEST_F(RotationOrderTest, WhatIsMissingOrUnknownGivesFalseWithoutALine)
{
    const auto cCut = station.AddCut(L"a");
    station.AddCut(L"b");
    EXPECT_FALSE(Send(nullptr));
    EXPECT_FALSE(SendToBackOfCategory(nullptr, cCut.get(), station.Context()));
    SelectionContext context = station.Context();
    context.cDataBase = nullptr;
    EXPECT_FALSE(SendToBackOfCategory(station.cLevel.get(), cCut.get(), context));
    station.cDataBase->Remove(*cCut);
    EXPECT_FALSE(Send(cCut));
    EXPECT_EQ(station.Order(), (Lines{L"a", L"b"}));
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

TEST_F(RotationOrderTest, WalkNotesItsStepThroughTheSameOperation)
{
    station.AddCut(L"a");
    const auto cUnknown = station.AddCut(L"b");
    station.cDataBase->Remove(*cUnknown);
    const auto cElsewhere = station.AddCut(L"c", L"Ash", L"Sun");
    station.SetRules({true, 0, 0, 0});
    std::vector<StepKind> colOfWalk;
    std::vector<StepKind> colAlone;
    const auto isSent = [](StepKind eKind) {
        return eKind == StepKind::SentToBack || eKind == StepKind::NotSentToBack;
    };
    SelectionContext context = station.Context();
    for (int lCut = 0; lCut < 3; ++lCut)
    {
        context.note = [&](const TraceStep& step) {
            if (isSent(step.eKind))
                colOfWalk.push_back(step.eKind);
        };
        NextCutFromCategory(station.cLevel, false, nullptr, context);
        context.note = [&](const TraceStep& step) { colAlone.push_back(step.eKind); };
        SendToBackOfCategory(station.cLevel.get(), station.cLevel->SchedCuts()->At(2).get(), context);
    }
    EXPECT_EQ(colOfWalk, colAlone);
    EXPECT_EQ(colOfWalk.size(), 2u) << "no line for a cut the database does not know";
}

TEST_F(RotationOrderTest, ErrorOfTheDatabaseIsLoggedWithoutABox)
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

TEST_F(RotationOrderTest, AnOrderIsPutBackByKey)
{
    for (const wchar_t* sKey : {L"a", L"b", L"c", L"d"})
        station.AddCut(sKey);
    CutCollection& colOrder = *station.cLevel->SchedCuts();
    const auto cuts = [&] {
        std::wstring sCuts;
        for (const std::shared_ptr<Cut>& cCut : colOrder)
            sCuts += cCut->Key().Text() + L" ";
        return sCuts;
    };
    const std::vector<TextKey> colKeys = OrderOf(colOrder);
    colOrder.MoveToEnd(0);
    colOrder.Remove(L"c");
    colOrder.Add(station.NewCut(L"keyless"));
    station.AddCut(L"e");
    PutInOrder(colOrder, colKeys);
    EXPECT_EQ(cuts(), L"a b d keyless e ");
    EXPECT_EQ(OrderOf(colOrder).size(), 4u);
    PutInOrder(colOrder, {TextKey(L"E"), TextKey(L"b"), TextKey(L"e")});
    EXPECT_EQ(cuts(), L"e b a d keyless ");
}

} // namespace
} // namespace ravlo::test

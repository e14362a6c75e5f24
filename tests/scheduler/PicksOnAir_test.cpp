// SPDX-License-Identifier: MIT
#include "rotation/NextCut.h"

#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

class PicksOnAirTest : public StationTest
{
protected:
    PicksOnAirTest()
    {
        cRock = Add(L"r", L"Rock");
        cPop = Add(L"p", L"Pop");
        Start();
        cLib.cSchedMan->SetRotatesAllowed(true);
    }
    // How many boxes so many picks give.
    std::size_t Boxes(const std::wstring& sName, int lPicks = 1)
    {
        boxes.clear();
        for (int lPick = 0; lPick < lPicks; ++lPick)
            cLib.NextCut(sName + L"\t1");
        return boxes.size();
    }

    std::shared_ptr<FakeCut> cRock;
    std::shared_ptr<FakeCut> cPop;
    const std::wstring sTitle = L"Error in NextCutFromCategory [cSchedMan]";
};

TEST_F(PicksOnAirTest, ErrorIsShownOnceAnIncidentAndLoggedEachTime)
{
    cRock->failing = {"CloneCut"};
    EXPECT_EQ(Boxes(L"Rock", 5), 1u);
    EXPECT_EQ(boxes, (test::Boxes{CriticalBox(sTitle, CriticalText(91))}));
    const Lines colLog = Log();
    const auto isError = [](const std::wstring& sLine) { return sLine.ends_with(CriticalText(91)); };
    EXPECT_EQ(std::count_if(colLog.begin(), colLog.end(), isError), 5);
    EXPECT_EQ(Boxes(L"Pop"), 0u);
    EXPECT_EQ(Boxes(L"Rock"), 0u) << "a good pick of another level ends nothing";
    cPop->failing = {"CloneCut"};
    EXPECT_EQ(Boxes(L"Pop"), 0u) << "the same incident";
    cRock->failing.clear();
    cLib.cSchedMan->SetRotatesAllowed(false);
    EXPECT_EQ(Boxes(L"Rock"), 0u);
    EXPECT_EQ(Boxes(L"Pop"), 0u) << "nothing was picked";
    cLib.cSchedMan->SetRotatesAllowed(true);
    EXPECT_EQ(Boxes(L"ROCK"), 0u);
    EXPECT_EQ(Boxes(L"Pop", 3), 1u) << "the next incident";
    cLib.Populate();
    EXPECT_EQ(Boxes(L"Pop", 3), 1u) << "after a reload the categories are other ones";
}

TEST_F(PicksOnAirTest, HandledErrorsBelongToTheIncident)
{
    cRock->SetLastPlayed(cPorts.cClock.Now());
    cLib.cSchedMan->UpdateArtistTitleHistory(cRock->CloneCut());
    cRock->failing = {"LastPlayed"};
    EXPECT_EQ(Boxes(L"Rock", 5), 1u);
    EXPECT_EQ(boxes, (test::Boxes{HandledError(L"ViolatesRules [schedman]", StandardText(91), L"91")}));
}

TEST_F(PicksOnAirTest, PickOutOfTheBoxShowsNoSecondOne)
{
    cRock->failing = {"CloneCut"};
    Once(cPorts.cMessages.OnShown, [&] { cLib.NextCut(L"Rock\t1"); });
    EXPECT_EQ(Boxes(L"Rock"), 1u);
}

} // namespace
} // namespace ravlo::test

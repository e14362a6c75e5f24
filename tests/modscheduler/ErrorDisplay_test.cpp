// SPDX-License-Identifier: MIT
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace ravlo::test
{
namespace
{

using Boxes = std::vector<ShownBox>;
using Lines = std::vector<std::wstring>;

class ErrorDisplayTest : public testing::Test
{
protected:
    ErrorDisplayTest() { cMod.StoreAppPath(sRadio); }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
};

TEST_F(ErrorDisplayTest, AnErrorIsLoggedAndShownWithItsDescriptionAndNumber)
{
    cMod.DISPLAYERROR(L"AddSubCat [clsCat]", true, RuntimeError(53));
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes{HandledError(L"AddSubCat [clsCat]", L"File not found", L"53")});
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"DISPLAYERROR, AddSubCat [clsCat] 53 File not found"});
}

TEST_F(ErrorDisplayTest, WithoutTheFlagAnErrorIsOnlyLogged)
{
    cMod.DISPLAYERROR(L"Here", false, RuntimeError(6));
    cMod.LogError(L"There", RuntimeError(-2147467259, L"Something else"));
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_EQ(cPorts.LogMessages(),
              (Lines{L"DISPLAYERROR, Here 6 Overflow", L"DISPLAYERROR, There -2147467259 Something else"}));
}

TEST_F(ErrorDisplayTest, CriticalFormShowsAndLogsNumberAndDescription)
{
    cMod.ShowCriticalError(L"Error in SaveCatNames [cSchedMan]", RuntimeError(61));
    EXPECT_EQ(cPorts.cMessages.Boxes,
              Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"61 Disk full")});
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"61 Disk full"});
}

TEST_F(ErrorDisplayTest, ReportingAnErrorRaisesNone)
{
    cPorts.cMessages.OnShown = [] { throw std::runtime_error("no desktop"); };
    EXPECT_NO_THROW(cMod.DISPLAYERROR(L"Here", true, RuntimeError(6)));
    EXPECT_NO_THROW(cMod.ShowCriticalError(L"Here", RuntimeError(6)));
    EXPECT_EQ(cPorts.cMessages.Boxes.size(), 2u);
}

TEST_F(ErrorDisplayTest, ErrorsOnAirWaitForAnEditButNotInsideOthersCalls)
{
    cPorts.cHostLoop.OnPump = [&] { cMod.ShowLater(L"Edit", RuntimeError(6)); };
    {
        const ModScheduler::OnAir cOnAir(cMod);
        cMod.ShowLater(L"Pick", RuntimeError(5, L"First"));
        cMod.Pump();
        EXPECT_EQ(cPorts.cMessages.Boxes, Boxes{HandledError(L"Edit", L"Overflow", L"6")});
        cMod.ShowLater(L"Pick", RuntimeError(7));
        EXPECT_EQ(cPorts.cMessages.Boxes.size(), 1u) << "on air again";
    }
    for (int lEdit = 1; lEdit <= 2; ++lEdit)
    {
        cPorts.cMessages.Boxes.erase(cPorts.cMessages.Boxes.begin());
        cMod.ShowWaiting();
        EXPECT_EQ(cPorts.cMessages.Boxes,
                  lEdit == 1 ? Boxes{HandledError(L"Pick", L"First (and 1 more, see the debug log)", L"5")}
                             : Boxes());
    }
}

TEST_F(ErrorDisplayTest, ATrapGivesTheResultOfWhatItRuns)
{
    EXPECT_EQ(Trap(cMod, L"Here", -1, [] { return 7; }), 7);
    EXPECT_EQ(TrapCritical(cMod, L"Here", -1, [] { return 8; }), 8);
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_TRUE(cPorts.LogMessages().empty());
}

TEST_F(ErrorDisplayTest, ATrappedErrorIsReportedOnceAndGivesTheFailureResult)
{
    const auto fail = []() -> int { throw RuntimeError(70); };
    EXPECT_EQ(Trap(cMod, L"Here", -1, fail), -1);
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes{HandledError(L"Here", L"Permission denied", L"70")});
    cPorts.cMessages.Boxes.clear();
    EXPECT_EQ(TrapCritical(cMod, L"There", -2, fail), -2);
    EXPECT_EQ(cPorts.cMessages.Boxes, Boxes{CriticalBox(L"There", L"70 Permission denied")});
    EXPECT_EQ(cPorts.LogMessages(),
              (Lines{L"DISPLAYERROR, Here 70 Permission denied", L"70 Permission denied"}));
}

TEST_F(ErrorDisplayTest, AnythingThrownBecomesAnErrorHostsKnow)
{
    const auto numberOf = [](auto&& thrown) {
        try
        {
            throw thrown;
        }
        catch (...)
        {
            return CurrentError();
        }
    };
    EXPECT_EQ(numberOf(RuntimeError(91)).Number(), 91);
    EXPECT_EQ(numberOf(RuntimeError(91, L"gone")).Description(), L"gone");
    EXPECT_EQ(numberOf(std::bad_alloc()).Number(), 7);
    EXPECT_EQ(numberOf(std::bad_alloc()).Description(), L"Out of memory");
    EXPECT_EQ(numberOf(std::logic_error("odd")).Number(), 51);
    EXPECT_EQ(numberOf(std::logic_error("odd")).Description(), L"Internal error: odd");
    EXPECT_EQ(numberOf(42).Number(), 51);
    EXPECT_EQ(numberOf(42).Description(), L"Internal error");
}

TEST_F(ErrorDisplayTest, BoxesAndInputsPassThroughAsTheyAre)
{
    cPorts.cMessages.Answers = {BoxAnswer::Yes};
    cPorts.cMessages.Typed = {L"Jazz"};
    EXPECT_EQ(cMod.Box(BoxIcon::Question, BoxButtons::YesNo, L"T", L"Q?"), BoxAnswer::Yes);
    EXPECT_EQ(cMod.Input(L"I", L"P"), L"Jazz");
    EXPECT_EQ(cMod.Input(L"I", L"P"), std::nullopt);
    EXPECT_EQ(cPorts.cMessages.Boxes, (Boxes{{BoxIcon::Question, BoxButtons::YesNo, L"T", L"Q?"}}));
    EXPECT_EQ(cPorts.cMessages.Inputs, (std::vector<ShownInput>{{L"I", L"P"}, {L"I", L"P"}}));
}

TEST_F(ErrorDisplayTest, PumpAndSleepReachTheHostsLoop)
{
    cMod.Pump();
    cMod.Sleep(50);
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 1);
    EXPECT_EQ(cPorts.cHostLoop.sleptmS, 50u);
}

} // namespace
} // namespace ravlo::test

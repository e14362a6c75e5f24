// SPDX-License-Identifier: MIT
// The small ports in memory: clock, host loop, boxes, random numbers.
#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>
#include <sstream>

namespace ravlo
{
namespace
{

TEST(MemoryClock, MovesOnlyOnRequest)
{
    MemoryClock cClock;
    EXPECT_EQ(IsoText(cClock.Now()), L"2024-03-01T12:00:00");
    EXPECT_EQ(cClock.TickCount(), 0u);
    cClock.Advance(90'000);
    EXPECT_EQ(IsoText(cClock.Now()), L"2024-03-01T12:01:30");
    EXPECT_EQ(cClock.TickCount(), 90'000u);
    cClock.SetNow(DateTimeOf({2030, 1, 2, 3, 4, 5}));
    EXPECT_EQ(cClock.TickCount(), 90'000u);
    cClock.SetTickCount(0xFFFFFFFF);
    cClock.Advance(3);
    EXPECT_EQ(cClock.TickCount(), 2u); // wraps as the real one
    EXPECT_EQ(IsoText(cClock.Now()), L"2030-01-02T03:04:05");
}

TEST(MemoryClock, ManySmallStepsDoNotDrift)
{
    MemoryClock cClock;
    const std::int64_t start = WholeSeconds(cClock.Now());
    for (int i = 0; i < 1'000'000; ++i)
        cClock.Advance(1);
    EXPECT_EQ(WholeSeconds(cClock.Now()) - start, 1000);
}

TEST(MemoryHostLoop, CountsPumpsAndSleepsAndCallsTheHooks)
{
    MemoryHostLoop cLoop;
    cLoop.PumpMessages(); // without a hook
    int lHooked = 0;
    cLoop.OnPump = [&] { ++lHooked; };
    cLoop.OnSleep = [&](std::uint32_t lMilliseconds) { lHooked += static_cast<int>(lMilliseconds); };
    cLoop.PumpMessages();
    cLoop.Sleep(20);
    cLoop.Sleep(30);
    EXPECT_EQ(cLoop.lPumps, 2);
    EXPECT_EQ(cLoop.lSleeps, 2);
    EXPECT_EQ(cLoop.sleptmS, 50u);
    EXPECT_EQ(lHooked, 51);
    cLoop.OnPump = [&] {
        cLoop.OnPump = nullptr; // a hook may replace itself
        ++lHooked;
    };
    cLoop.PumpMessages();
    cLoop.PumpMessages();
    EXPECT_EQ(lHooked, 52);
    MemoryPorts cPorts;
    cPorts.Ports().cHostLoop.Sleep(1500);
    EXPECT_EQ(cPorts.cClock.TickCount(), 1500u) << "a sleep advances the clock";
}

TEST(ScriptedMessages, RecordsBoxesWholeAndAnswersAsWritten)
{
    ScriptedMessages cMessages;
    cMessages.Answers = {BoxAnswer::Yes};
    const auto ask = [&](BoxButtons eButtons) {
        return cMessages.Box(BoxIcon::Question, eButtons, L"Title", L"Text");
    };
    EXPECT_EQ(ask(BoxButtons::Ok), BoxAnswer::Ok); // takes no answer from the queue
    EXPECT_EQ(ask(BoxButtons::YesNo), BoxAnswer::Yes);
    EXPECT_EQ(ask(BoxButtons::YesNo), BoxAnswer::No);
    cMessages.eDefaultAnswer = BoxAnswer::None;
    EXPECT_EQ(ask(BoxButtons::YesNo), BoxAnswer::None);
    cMessages.eOkAnswer = BoxAnswer::None;
    EXPECT_EQ(ask(BoxButtons::Ok), BoxAnswer::None);
    ASSERT_EQ(cMessages.Boxes.size(), 5u);
    EXPECT_EQ(cMessages.Boxes[0], (ShownBox{BoxIcon::Question, BoxButtons::Ok, L"Title", L"Text"}));
    EXPECT_EQ(cMessages.Boxes[1], (ShownBox{BoxIcon::Question, BoxButtons::YesNo, L"Title", L"Text"}));
    EXPECT_FALSE(cMessages.Boxes[0] == cMessages.Boxes[1]);
}

TEST(ScriptedMessages, AnswersInputsFromTheirOwnQueue)
{
    ScriptedMessages cMessages;
    std::size_t shown = 0;
    cMessages.OnShown = [&] { shown += cMessages.Boxes.size() + cMessages.Inputs.size(); };
    cMessages.Typed = {L"Jazz", std::nullopt};
    EXPECT_EQ(cMessages.Input(L"Title", L"Prompt"), std::optional<std::wstring>(L"Jazz"));
    EXPECT_EQ(cMessages.Input(L"Title", L"Prompt 2"), std::nullopt);
    EXPECT_EQ(cMessages.Input(L"Title", L"Prompt 3"), std::nullopt);
    cMessages.sDefaultTyped = L"";
    EXPECT_EQ(cMessages.Input(L"Title", L"Prompt 4"), std::optional<std::wstring>(L""));
    ASSERT_EQ(cMessages.Inputs.size(), 4u);
    EXPECT_EQ(cMessages.Inputs[1], (ShownInput{L"Title", L"Prompt 2"}));
    EXPECT_TRUE(cMessages.Boxes.empty());
    EXPECT_EQ(shown, 1u + 2 + 3 + 4) << "the hook runs while a box is open";
    cMessages.Box(BoxIcon::None, BoxButtons::Ok, L"", L"");
    EXPECT_EQ(shown, 10u + 5);
}

TEST(ScriptedMessages, BoxesReadWellInTestOutput)
{
    std::ostringstream stream;
    PrintTo(ShownBox{BoxIcon::Critical, BoxButtons::YesNo, L"T\u00FC", L"a\r\nb\t"}, &stream);
    PrintTo(ShownInput{L"T", L"P"}, &stream);
    EXPECT_EQ(stream.str(), "critical, Yes/No, \"T?\", \"a\\r\\nb\\t\"\"T\", \"P\"");
}

TEST(SeededRandom, GivesTheSameNumbersForTheSameSeedOnEverySystem)
{
    SeededRandom cRandom(1);
    SeededRandom cSame(1);
    SeededRandom cOther(2);
    // The first number of the generator the standard prescribes, for this seed, to 53 bits.
    const double dFirst = static_cast<double>(2469588189546311528u >> 11) * 0x1p-53;
    EXPECT_EQ(cRandom.Next(), dFirst);
    EXPECT_EQ(cSame.Next(), dFirst);
    EXPECT_NE(cRandom.Next(), cOther.Next());
    cSame.Randomize();
    EXPECT_EQ(cSame.lRandomized, 1);
    SeededRandom cThird(1);
    cThird.Next();
    EXPECT_EQ(cSame.Next(), cThird.Next());
}

} // namespace
} // namespace ravlo

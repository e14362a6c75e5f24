// SPDX-License-Identifier: MIT
#include "scheduler/EventRelay.h"

#include "support/SyncTest.h"

#include <limits>
#include <stdexcept>

namespace ravlo::test
{
namespace
{

class EventRelayTest : public testing::Test
{
protected:
    EventRelayTest()
    {
        cMod.StoreAppPath(sRadio);
        cRelay.Listen(&cHost);
    }

    void RaiseAll()
    {
        cRelay.ShowHelpEvent();
        cRelay.ProgressStart(L"reason", 7);
        cRelay.Progress(L"text", 3, 7);
        cRelay.ProgressDone(L"status");
        const std::shared_ptr<Cut> cCut = NewPlainCut();
        cCut->SetKey(L"a");
        lAnswer = cRelay.RequestEditCut(cCut);
    }

    std::optional<std::int32_t> lAnswer;
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    HostEvents cHost;
    EventRelay cRelay{cMod};
};

TEST_F(EventRelayTest, EventsReachTheHostAndProgressItsFollowerUnlessClosed)
{
    HostEvents cWindow;
    cRelay.Follow(&cWindow);
    cHost.lEditAnswer = 5;
    RaiseAll();
    const Lines colProgress{L"Start 7: reason", L"Progress 3/7: text", L"Done: status"};
    EXPECT_EQ(cHost.colSaid, Joined({{L"Help"}, colProgress, {L"Edit a"}}));
    EXPECT_EQ(lAnswer, 5);
    EXPECT_EQ(cWindow.colSaid, colProgress);
    cHost.OnEvent = [&](const std::wstring&) { cRelay.Follow(nullptr); };
    cRelay.ProgressDone(L"closed");
    EXPECT_EQ(cWindow.colSaid.size(), 3u);
    EXPECT_EQ(cHost.colSaid.back(), L"Done: closed");
}

TEST_F(EventRelayTest, FollowerHearsWithoutAHostAndAfterOneThatThrew)
{
    HostEvents cWindow;
    cRelay.Follow(&cWindow);
    cRelay.Listen(nullptr);
    cRelay.ProgressDone(L"one");
    cRelay.Listen(&cHost);
    cHost.OnEvent = [](const std::wstring&) { throw std::runtime_error("host"); };
    cRelay.ProgressDone(L"two");
    EXPECT_EQ(cWindow.colSaid, (Lines{L"Done: one", L"Done: two"}));
}

TEST_F(EventRelayTest, CallsInsideAnEventAreLoggedAsTheyEnd)
{
    Lines colSeen;
    cHost.OnEvent = [&](const std::wstring&) {
        {
            const ModScheduler::LogScope cScope(cMod);
            cMod.WriteDebugLog(L"inside");
        }
        colSeen = cPorts.LogMessages();
    };
    const ModScheduler::LogScope cScope(cMod);
    cMod.WriteDebugLog(L"before");
    cRelay.RequestEditCut(NewPlainCut());
    EXPECT_EQ(colSeen, (Lines{L"before", L"inside"}));
}

TEST_F(EventRelayTest, WithoutAListenerNothingHappens)
{
    cRelay.Listen(nullptr);
    RaiseAll();
    EXPECT_EQ(lAnswer, std::nullopt);
    EXPECT_TRUE(cHost.colSaid.empty());
}

TEST_F(EventRelayTest, ExceptionOfAHandlerIsLoggedAndStopsNothing)
{
    cHost.OnEvent = [](const std::wstring&) { throw std::runtime_error("host"); };
    EXPECT_NO_THROW(RaiseAll());
    EXPECT_EQ(cHost.colSaid.size(), 5u);
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_EQ(cPorts.LogMessages(), Lines(5, L"DISPLAYERROR, Event handler 51 Internal error: host"));
}

TEST_F(EventRelayTest, DebugLogIsFlushedBeforeEveryEvent)
{
    const ModScheduler::LogScope cScope(cMod);
    std::size_t events = 0;
    cHost.OnEvent = [&](const std::wstring&) {
        EXPECT_EQ(cPorts.LogMessages().size(), ++events);
        cMod.WriteDebugLog(L"before the next");
    };
    cMod.WriteDebugLog(L"before the first");
    RaiseAll();
    EXPECT_EQ(events, 5u);
}

TEST_F(EventRelayTest, CountsThatHostsCannotHoldAreCapped)
{
    cRelay.ProgressStart(L"reason", std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(cHost.colSaid, Lines{L"Start 2147483647: reason"});
}

TEST(ProgressThrottle, EveryTwentiethItemIsASample)
{
    for (std::size_t item = 1; item <= 100; ++item)
        EXPECT_EQ(ProgressThrottle::IsSample(item), item % 20 == 0);
}

TEST(ProgressThrottle, ReportIsDueMoreThan100MillisecondsAfterTheLast)
{
    MemoryClock cClock;
    cClock.SetTickCount(0xFFFFFFF0u); // about to wrap
    ProgressThrottle cThrottle(cClock);
    EXPECT_FALSE(cThrottle.IsDue(20));
    cClock.Advance(100);
    EXPECT_FALSE(cThrottle.IsDue(20));
    cClock.Advance(1);
    EXPECT_FALSE(cThrottle.IsDue(19));
    EXPECT_TRUE(cThrottle.IsDue(20));
    EXPECT_TRUE(cThrottle.IsDue(20)) << "as long as nothing was reported";
    cClock.Advance(50); // the host took its time
    cThrottle.Reported();
    cClock.Advance(100);
    EXPECT_FALSE(cThrottle.IsDue(40));
    cClock.Advance(1);
    EXPECT_TRUE(cThrottle.IsDue(40));
}

} // namespace
} // namespace ravlo::test

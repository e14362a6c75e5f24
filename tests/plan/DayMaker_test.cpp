// SPDX-License-Identifier: MIT
#include "plan/DayMaker.h"

#include "plan/PlanError.h"

#include <gtest/gtest.h>

namespace ravlo
{

namespace
{

DateTime At(int lHour, int lMinute, int lSecond = 0)
{
    return DateTimeOf({2024, 3, 1, lHour, lMinute, lSecond});
}

// Answers from a prepared list and records the questions.
class PreparedPlayout : public Playout
{
public:
    explicit PreparedPlayout(std::vector<Answer> answers) : m_answers(std::move(answers)) {}

    Answer Play(const Slot& slot, DateTime dtStart) override
    {
        asked.push_back(IsoText(dtStart).substr(11) + L" " + slot.sCategory);
        return m_answers.at(m_next++ % m_answers.size());
    }

    std::vector<std::wstring> asked;

private:
    std::vector<Answer> m_answers;
    std::size_t m_next = 0;
};

Playout::Answer Cut(const std::wstring& sArtist, const std::wstring& sTitle, std::int32_t lDurationmS)
{
    return {0, PlayedCut{sArtist, sTitle, L"", L"D:\\" + sTitle, lDurationmS}};
}

const std::vector<Slot> clockOfTwo{{L"rock", 1}, {L"pop", 1}};

// A day filled with prepared answers, repeated as often as needed.
class DayMakerTest : public testing::Test
{
protected:
    Day FromClock(std::vector<Playout::Answer> answers, DateTime dtStart, DateTime dtEnd)
    {
        return Made(std::move(answers),
                    [&](DayMaker& maker, Day& day) { maker.FromClock(day, clockOfTwo, dtStart, dtEnd); });
    }
    Day FromSlots(std::vector<Playout::Answer> answers, const std::vector<TimedSlot>& slots)
    {
        return Made(std::move(answers), [&](DayMaker& maker, Day& day) { maker.FromSlots(day, slots); });
    }
    Day Repeated(std::vector<Playout::Answer> answers, const Slot& slot, DateTime dtStart, int lCount)
    {
        return Made(std::move(answers),
                    [&](DayMaker& maker, Day& day) { maker.Repeated(day, slot, dtStart, lCount); });
    }

    Gaps m_gaps;
    std::vector<std::wstring> m_asked;
    std::vector<double> m_progress;

private:
    template <class Fill> Day Made(std::vector<Playout::Answer> answers, Fill fill)
    {
        PreparedPlayout playout(std::move(answers));
        DayMaker maker(playout, m_gaps, [&](double dDone) { m_progress.push_back(dDone); });
        Day day;
        fill(maker, day);
        m_asked = playout.asked;
        return day;
    }
};

} // namespace

TEST_F(DayMakerTest, StartsEachCutWhenTheOneBeforeEnds)
{
    const auto day = FromClock({Cut(L"a", L"1", 200000), Cut(L"b", L"2", 100400)}, At(10, 0), At(10, 8));
    EXPECT_EQ(m_asked, (std::vector<std::wstring>{L"10:00:00 rock", L"10:03:20 pop", L"10:05:00 rock"}));
    ASSERT_EQ(day.rows.size(), 3u);
    EXPECT_EQ(IsoText(day.dtEnd), L"2024-03-01T10:08:20"); // 10:05:00.4 and 200 seconds
}

TEST_F(DayMakerTest, StopsBeforeASlotThatWouldStartAtTheEnd)
{
    const auto day = FromClock({Cut(L"a", L"1", 240000)}, At(10, 0), At(10, 8));
    EXPECT_EQ(day.rows.size(), 2u);
    EXPECT_EQ(IsoText(day.dtEnd), L"2024-03-01T10:08:00");
    EXPECT_EQ(m_progress, (std::vector<double>{0.5, 1.0}));
}

TEST_F(DayMakerTest, TakesAnEmptySlotAndACutWithoutDurationAsThreeMinutes)
{
    const auto day = FromClock({{11, {}}, Cut(L"a", L"1", 0), Cut(L"a", L"2", -5)}, At(10, 0), At(10, 9));
    EXPECT_EQ(m_asked, (std::vector<std::wstring>{L"10:00:00 rock", L"10:03:00 pop", L"10:06:00 rock"}));
    EXPECT_EQ(day.rows.at(0).lKind, 11);
    EXPECT_FALSE(day.rows.at(0).cut);
    EXPECT_TRUE(day.rows.at(1).cut);
}

TEST_F(DayMakerTest, RepeatsOneSlotAsOftenAsAsked)
{
    const auto day = Repeated({Cut(L"a", L"1", 200000), Cut(L"b", L"2", 100000)}, {L"rock", 1}, At(10, 0), 4);
    EXPECT_EQ(m_asked, (std::vector<std::wstring>{L"10:00:00 rock", L"10:03:20 rock", L"10:05:00 rock",
                                                  L"10:08:20 rock"}));
    EXPECT_EQ(IsoText(day.dtEnd), L"2024-03-01T10:10:00");
    EXPECT_EQ(m_progress, (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
    EXPECT_TRUE(Repeated({Cut(L"a", L"1", 200000), Cut(L"b", L"2", 100000)}, {L"rock", 1}, At(10, 0), 0)
                    .rows.empty());
}

TEST_F(DayMakerTest, StartsTimedSlotsAtTheirOwnTimes)
{
    const auto day =
        FromSlots({Cut(L"a", L"1", 600000)},
                  {{At(9, 0), {L"rock", 1}}, {At(9, 3), {L"pop", 2}}, {At(12, 0), {L"rock", 1}}});
    EXPECT_EQ(m_asked, (std::vector<std::wstring>{L"09:00:00 rock", L"09:03:00 pop", L"12:00:00 rock"}));
    EXPECT_EQ(IsoText(day.dtEnd), L"2024-03-01T12:10:00");
}

TEST_F(DayMakerTest, MeasuresGapsFromStartToStartIgnoringCase)
{
    m_gaps.Record(TextKey(L"abba"), TextKey(L"other"), At(8, 59, 30));
    const auto day =
        FromSlots({Cut(L"Abba", L"One", 200000), Cut(L"ABBA", L"Two", 200000), Cut(L"x", L"ONE", 200000)},
                  {{At(10, 0), {L"r", 1}}, {At(11, 1), {L"r", 1}}, {At(11, 30), {L"r", 1}}});
    EXPECT_EQ(day.rows.at(0).dArtistGapMins, 60.5);
    EXPECT_EQ(day.rows.at(0).dTitleGapMins, std::nullopt);
    EXPECT_EQ(day.rows.at(1).dArtistGapMins, 61.0);
    EXPECT_EQ(day.rows.at(2).dArtistGapMins, std::nullopt);
    EXPECT_EQ(day.rows.at(2).dTitleGapMins, 90.0);
    const auto nameless =
        FromSlots({Cut(L"", L"", 200000)}, {{At(12, 0), {L"r", 1}}, {At(12, 5), {L"r", 1}}});
    EXPECT_EQ(nameless.rows.at(1).dArtistGapMins, std::nullopt);
    EXPECT_EQ(nameless.rows.at(1).dTitleGapMins, std::nullopt);
}

TEST_F(DayMakerTest, KeepsTheRowsFromBeforeAFailure)
{
    class FailingPlayout : public PreparedPlayout
    {
    public:
        using PreparedPlayout::PreparedPlayout;
        Answer Play(const Slot& slot, DateTime dtStart) override
        {
            if (asked.size() == 2)
                throw PlanError(L"gone");
            return PreparedPlayout::Play(slot, dtStart);
        }
    };
    FailingPlayout playout({Cut(L"a", L"1", 200000)});
    Gaps gaps;
    Day day;
    EXPECT_THROW(DayMaker(playout, gaps, [](double) {}).FromClock(day, clockOfTwo, At(10, 0), At(11, 0)),
                 PlanError);
    EXPECT_EQ(day.rows.size(), 2u);
    EXPECT_EQ(IsoText(day.dtEnd), L"2024-03-01T10:06:40");
}

TEST(Gaps, CountToLaterPlays)
{
    Gaps gaps;
    gaps.Record(TextKey(L"a"), TextKey(L"1"), At(12, 0));
    EXPECT_EQ(gaps.ArtistMins(TextKey(L"a"), At(11, 0)), 60.0);
    EXPECT_EQ(gaps.TitleMins(TextKey(L"1"), At(13, 30)), 90.0);
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "plan/DayMaker.h"

#include <algorithm>
#include <cstdlib>

namespace ravlo
{

void Gaps::Record(const std::wstring& sArtist, const std::wstring& sTitle, DateTime dtStart)
{
    m_artists[TextKey(sArtist)] = dtStart;
    m_titles[TextKey(sTitle)] = dtStart;
}

std::optional<double> Gaps::ArtistMins(const std::wstring& sArtist, DateTime dtStart) const
{
    return MinsSince(m_artists, sArtist, dtStart);
}

std::optional<double> Gaps::TitleMins(const std::wstring& sTitle, DateTime dtStart) const
{
    return MinsSince(m_titles, sTitle, dtStart);
}

std::optional<double> Gaps::MinsSince(const LastPlays& plays, const std::wstring& sName, DateTime dtStart)
{
    const auto found = sName.empty() ? plays.end() : plays.find(TextKey(sName));
    if (found == plays.end())
        return std::nullopt;
    // A log for a time before the recorded plays also keeps the distance from them.
    return static_cast<double>(std::llabs(WholeSeconds(dtStart) - WholeSeconds(found->second))) / 60.0;
}

void DayMaker::FromClock(Day& day, const std::vector<Slot>& clock, DateTime dtStart, DateTime dtEnd)
{
    day.dtEnd = dtStart;
    ClockHand hand(clock);
    while (WholeMilliseconds(day.dtEnd) < WholeMilliseconds(dtEnd))
    {
        day.dtEnd = Fill(day, hand.Next(day.dtEnd), day.dtEnd);
        m_progress(std::min(1.0, (day.dtEnd - dtStart) / (dtEnd - dtStart)));
    }
}

void DayMaker::Repeated(Day& day, const Slot& slot, DateTime dtStart, int lCount)
{
    day.dtEnd = dtStart;
    for (int l = 1; l <= lCount; ++l)
    {
        day.dtEnd = Fill(day, slot, day.dtEnd);
        m_progress(static_cast<double>(l) / lCount);
    }
}

void DayMaker::FromSlots(Day& day, const std::vector<TimedSlot>& slots)
{
    for (const auto& timed : slots)
    {
        day.dtEnd = Fill(day, timed.slot, timed.dtAt);
        m_progress(static_cast<double>(day.rows.size()) / static_cast<double>(slots.size()));
    }
}

DateTime DayMaker::Fill(Day& day, const Slot& slot, DateTime dtStart)
{
    const auto answer = m_cPlayout.Play(slot, dtStart);
    LogRow row{dtStart, slot, answer.lKind, answer.cut, {}, {}};
    std::int32_t lLengthmS = lEmptySlotmS;
    if (answer.cut)
    {
        row.dArtistGapMins = m_cGaps.ArtistMins(answer.cut->sArtist, dtStart);
        row.dTitleGapMins = m_cGaps.TitleMins(answer.cut->sTitle, dtStart);
        m_cGaps.Record(answer.cut->sArtist, answer.cut->sTitle, dtStart);
        lLengthmS = answer.cut->lDurationmS > 0 ? answer.cut->lDurationmS : lEmptySlotmS;
    }
    day.rows.push_back(std::move(row));
    return Later(dtStart, lLengthmS);
}

} // namespace ravlo

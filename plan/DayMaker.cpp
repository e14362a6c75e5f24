// SPDX-License-Identifier: MIT
#include "plan/DayMaker.h"

#include <algorithm>
#include <cstdlib>

namespace ravlo
{

std::optional<double> Gaps::MinsSince(const LastPlays& plays, const TextKey& cName, DateTime dtStart)
{
    const auto found = cName.Empty() ? plays.end() : plays.find(cName);
    if (found == plays.end())
        return std::nullopt;
    // A log for a time before the recorded plays also keeps the distance from them.
    return static_cast<double>(std::llabs(WholeSeconds(dtStart) - WholeSeconds(found->second))) / 60.0;
}

void DayMaker::FromClock(Day& day, const std::vector<Slot>& clock, DateTime dtStart, DateTime dtEnd)
{
    day.dtEnd = dtStart;
    FillClock(clock, dtStart, dtEnd, [&](const Slot& slot, DateTime dtAt) {
        day.dtEnd = Fill(day, slot, dtAt);
        m_progress(std::min(1.0, (day.dtEnd - dtStart) / (dtEnd - dtStart)));
        return day.dtEnd;
    });
}

void DayMaker::Repeated(Day& day, const Slot& slot, DateTime dtStart, int lCount)
{
    day.dtEnd = dtStart;
    for (int filled = 1; filled <= lCount; ++filled)
    {
        day.dtEnd = Fill(day, slot, day.dtEnd);
        m_progress(static_cast<double>(filled) / lCount);
    }
}

void DayMaker::FromSlots(Day& day, const std::vector<TimedSlot>& slots)
{
    for (const TimedSlot& timed : slots)
    {
        day.dtEnd = Fill(day, timed.slot, timed.dtAt);
        m_progress(static_cast<double>(day.rows.size()) / static_cast<double>(slots.size()));
    }
}

DateTime DayMaker::Fill(Day& day, const Slot& slot, DateTime dtStart)
{
    const Playout::Answer answer = m_cPlayout.Play(slot, dtStart);
    LogRow row{dtStart, slot, answer.lKind, answer.cut, {}, {}};
    if (answer.cut)
    {
        const TextKey cArtist(answer.cut->sArtist);
        const TextKey cTitle(answer.cut->sTitle);
        row.dArtistGapMins = m_cGaps.ArtistMins(cArtist, dtStart);
        row.dTitleGapMins = m_cGaps.TitleMins(cTitle, dtStart);
        m_cGaps.Record(cArtist, cTitle, dtStart);
    }
    day.rows.push_back(std::move(row));
    return EndOfSlot(dtStart, answer.cut ? answer.cut->lDurationmS : 0);
}

} // namespace ravlo

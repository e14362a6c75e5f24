// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "plan/DayLog.h"
#include "plan/SlotTimes.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// The scheduler as the day's work needs it.
class Playout
{
public:
    struct Answer
    {
        std::int32_t lKind = 0;
        std::optional<PlayedCut> cut; // nothing: a placeholder
    };

    virtual ~Playout() = default;
    // Asks for the cut of a slot that starts at dtStart, and reports a real cut as played at that time.
    virtual Answer Play(const Slot& slot, DateTime dtStart) = 0;
};

// The last play of each artist and title, for the gaps in the log. Names ignore case.
class Gaps
{
public:
    // For so many artists and titles.
    void Reserve(std::size_t texts)
    {
        m_artists.reserve(texts);
        m_titles.reserve(texts);
    }
    // Plays are recorded in the order of their times.
    void RecordArtist(const TextKey& cArtist, DateTime dtStart) { m_artists[cArtist] = dtStart; }
    void RecordTitle(const TextKey& cTitle, DateTime dtStart) { m_titles[cTitle] = dtStart; }
    void Record(const TextKey& cArtist, const TextKey& cTitle, DateTime dtStart)
    {
        RecordArtist(cArtist, dtStart);
        RecordTitle(cTitle, dtStart);
    }
    // Minutes from the last play, start to start in whole seconds; nothing without one or without a name.
    std::optional<double> ArtistMins(const TextKey& cArtist, DateTime dtStart) const
    {
        return MinsSince(m_artists, cArtist, dtStart);
    }
    std::optional<double> TitleMins(const TextKey& cTitle, DateTime dtStart) const
    {
        return MinsSince(m_titles, cTitle, dtStart);
    }

private:
    using LastPlays = std::unordered_map<TextKey, DateTime>;
    static std::optional<double> MinsSince(const LastPlays& plays, const TextKey& cName, DateTime dtStart);

    LastPlays m_artists;
    LastPlays m_titles;
};

struct Day
{
    std::vector<LogRow> rows;
    DateTime dtEnd = 0; // when the last slot's cut ends
};

// Fills slots through a playout; each cut starts when the previous one ends, or at its slot's own time. Adds
// each slot to the caller's day as it is filled, so that after a failure the caller knows what was aired.
class DayMaker
{
public:
    // Called after each slot with the part of the day that is done, 0 to 1.
    using Progress = std::function<void(double dDone)>;

    DayMaker(Playout& cPlayout, Gaps& cGaps, Progress progress)
        : m_cPlayout(cPlayout), m_cGaps(cGaps), m_progress(std::move(progress))
    {
    }

    // Fills the slots of a clock from dtStart on, until one would start at dtEnd or later.
    void FromClock(Day& day, const std::vector<Slot>& clock, DateTime dtStart, DateTime dtEnd);
    // Fills lCount equal slots, one after the other.
    void Repeated(Day& day, const Slot& slot, DateTime dtStart, int lCount);
    void FromSlots(Day& day, const std::vector<TimedSlot>& slots);

private:
    // Appends the slot's row and returns when its cut ends.
    DateTime Fill(Day& day, const Slot& slot, DateTime dtStart);

    Playout& m_cPlayout;
    Gaps& m_cGaps;
    Progress m_progress;
};

} // namespace ravlo

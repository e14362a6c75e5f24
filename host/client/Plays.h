// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/MediaLibrary.h"
#include "host/client/Scheduler.h"
#include "host/day/DayPlan.h"
#include "plan/DayMaker.h"

#include <vector>

namespace ravlo
{

// A library's record of earlier days: its cuts that were played, oldest first. Refers to the caller's
// entries, which must outlive it.
class Plays
{
public:
    explicit Plays(const std::vector<MediaLibrary::Entry>& entries);

    // Returns when the next cut starts: at the end of the last play, so that one day follows the other; now
    // when nothing was played yet.
    DateTime End() const;
    // Reports every play to the scheduler and the gaps.
    void Report(Scheduler& cScheduler, Gaps& cGaps) const;

private:
    std::vector<const MediaLibrary::Entry*> m_plays;
};

// The levels that the cuts are in.
LevelsInUse LevelsOf(const std::vector<MediaLibrary::Entry>& entries);

} // namespace ravlo

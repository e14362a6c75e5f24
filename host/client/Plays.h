// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/MediaLibrary.h"
#include "host/client/Scheduler.h"
#include "host/day/DayMaker.h"

#include <vector>

namespace ravlo
{

// What a library remembers of earlier days: its cuts that were played, oldest first. The entries are the
// caller's and outlive this.
class Plays
{
public:
    explicit Plays(const std::vector<MediaLibrary::Entry>& entries);

    // Where the next cut starts: the end of the last play, so that one day continues the other; now when
    // nothing was played yet.
    DateTime End() const;
    // Tells the scheduler and the gaps of every play.
    void Report(Scheduler& cScheduler, Gaps& cGaps) const;

private:
    std::vector<const MediaLibrary::Entry*> m_plays;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/PlayRecord.h"
#include "ravlobase/StoreCut.h"

#include <unordered_set>
#include <vector>

namespace ravlo
{

class CutFile;

// While a database gathers plays: the cuts whose last-played time is newer in memory than in the file, and
// every play that the file does not have.
// Precondition: a cut that leaves the database is forgotten first.
class GatheredPlays
{
public:
    void Begin() noexcept { m_bOn = true; }
    void End() noexcept { m_bOn = false; }
    bool On() const noexcept { return m_bOn; }

    // Call before the cut takes the time.
    void Add(const StoreCut& cCut, DateTime dtWhen);
    // Its plays stay.
    void Forget(const StoreCut& cCut) noexcept { m_cuts.erase(&cCut); }
    bool Contains(const StoreCut& cCut) const noexcept { return m_cuts.contains(&cCut); }
    void Clear() noexcept;

    // Writes them as one change, in the order of the cuts: the same plays give the same file. When it throws,
    // nothing was written and they stay. Skips a cut that another program has removed from the file.
    void Write(CutFile& cFile);

private:
    std::unordered_set<const StoreCut*> m_cuts;
    std::vector<PlayRecord> m_plays;
    bool m_bOn = false;
};

} // namespace ravlo

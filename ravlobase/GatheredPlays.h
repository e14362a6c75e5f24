// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/StoreCut.h"

#include <unordered_set>

namespace ravlo
{

class CutFile;

// The cuts whose last-played time is newer in memory than in the file, while a database gathers plays.
// Precondition: a cut that leaves the database is forgotten first.
class GatheredPlays
{
public:
    void Begin() noexcept { m_bOn = true; }
    void End() noexcept { m_bOn = false; }
    bool On() const noexcept { return m_bOn; }

    void Add(const StoreCut& cCut) { m_cuts.insert(&cCut); }
    void Forget(const StoreCut& cCut) noexcept { m_cuts.erase(&cCut); }
    bool Contains(const StoreCut& cCut) const noexcept { return m_cuts.contains(&cCut); }
    void Clear() noexcept { m_cuts.clear(); }

    // Writes them as one change. When it throws, nothing was written and they stay. Skips a cut that another
    // program has removed from the file.
    void Write(CutFile& cFile);

private:
    std::unordered_set<const StoreCut*> m_cuts;
    bool m_bOn = false;
};

} // namespace ravlo

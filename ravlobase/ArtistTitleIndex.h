// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/StoreCut.h"

#include <string>
#include <unordered_map>

namespace ravlo
{

// Finds cuts by artist and title together, without regard to case. A cut with neither is in no pair. The cuts
// are not owned; a cut must be taken out before its artist or title changes.
class ArtistTitleIndex
{
public:
    // May throw bad_alloc, then nothing has changed.
    void Add(StoreCut& cCut);
    void Remove(const StoreCut& cCut) noexcept;
    void Clear() noexcept { m_cuts.clear(); }
    void Reserve(std::size_t count) { m_cuts.reserve(count); }

    // The cut with the lowest ID of that pair, null when there is none.
    StoreCut* Find(const std::wstring& sArtist, const std::wstring& sTitle) const noexcept;

private:
    // By hash alone: the texts stand in the cuts already.
    std::unordered_multimap<std::size_t, StoreCut*> m_cuts;
};

} // namespace ravlo

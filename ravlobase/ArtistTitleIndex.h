// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/StoreCut.h"

#include <string>
#include <unordered_map>

namespace ravlo
{

// Finds cuts by artist and title together, without regard to case. A cut with neither is not found. Does
// not own the cuts. Precondition: a cut is removed before its artist or title changes.
class ArtistTitleIndex
{
public:
    // Changes nothing when it throws bad_alloc.
    void Add(StoreCut& cCut);
    void Remove(const StoreCut& cCut) noexcept;
    void Clear() noexcept { m_cuts.clear(); }
    void Reserve(std::size_t count) { m_cuts.reserve(count); }

    // The cut with the lowest ID of that pair, null when there is none.
    StoreCut* Find(const std::wstring& sArtist, const std::wstring& sTitle) const noexcept;

private:
    // By hash alone: the cuts have the texts.
    std::unordered_multimap<std::size_t, StoreCut*> m_cuts;
};

} // namespace ravlo

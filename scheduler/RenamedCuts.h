// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace ravlo
{

struct SchedulerState;

// Updates the tree for cuts whose keys have changed since they were placed: under the old key such a cut
// would play twice in a round, and still play after its removal. Use one object per operation: it indexes the
// whole tree once.
class RenamedCuts
{
public:
    explicit RenamedCuts(SchedulerState& cState) noexcept : m_cState(cState) {}

    // When the tree has the cut under another key, replaces that entry, at its position, by one with cKey.
    // Precondition: cKey is the cut's present key. Returns the main categories concerned; the caller must
    // save them, since their files contain the old key. Usually there is none, which is cheap. Throws errors
    // of the cut and the database before anything has changed.
    Cats Follow(const std::shared_ptr<Cut>& cCut, const TextKey& cKey);

private:
    std::optional<TextKey> FormerKeyOf(const std::shared_ptr<Cut>& cCut);
    std::optional<TextKey> KeyOfObject(const std::shared_ptr<Cut>& cCut);

    SchedulerState& m_cState;
    // The keys of the tree's objects when first asked; for the tree of m_population.
    std::unordered_map<const Cut*, TextKey> m_colKeys;
    std::optional<std::uint64_t> m_population;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace ravlo
{

struct SchedulerState;

// Follows cuts whose keys have changed since they were placed. Under its old key a cut would play twice in a
// round, and go on playing after it is removed. Serves one operation: what it looks up in the whole tree it
// looks up once.
class RenamedCuts
{
public:
    explicit RenamedCuts(SchedulerState& cState) noexcept : m_cState(cState) {}

    // Places a cut that the tree holds under another key under cKey, its present one, where it is. Returns
    // the main categories concerned, whose files name it by its old key: save them. Mostly none, and cheap
    // then. Errors of the cut and of the database are thrown, before anything has changed.
    Cats Follow(const std::shared_ptr<Cut>& cCut, const TextKey& cKey);

private:
    std::optional<TextKey> FormerKeyOf(const std::shared_ptr<Cut>& cCut);
    std::optional<TextKey> KeyOfObject(const std::shared_ptr<Cut>& cCut);

    SchedulerState& m_cState;
    // Under which key the tree held an object when it was first asked; of the tree of that population.
    std::unordered_map<const Cut*, TextKey> m_colKeys;
    std::optional<std::uint64_t> m_population;
};

} // namespace ravlo

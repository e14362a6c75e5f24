// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/LibraryContents.h"

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace ravlo
{

// Where the cuts of a listing were in the listing before it. Finds them by the cut's object and, where both
// listings have keys, by key: a host's database may return another object for the same cut. Reads no cut.
class EarlierRows
{
public:
    // Owns neither; both must outlive it.
    EarlierRows(const ListedCuts& before, const ListedCuts& now) : m_before(before), m_now(now) {}

    // The earlier listed row of a cut that is listed now; nothing for a cut that was not listed. Of a cut
    // that was in several rows it may be any of them.
    std::optional<std::size_t> Of(std::size_t listed) const;

private:
    bool SameRow(std::size_t listed) const;

    const ListedCuts& m_before;
    const ListedCuts& m_now;
    // Made when a cut is in another row than before.
    mutable std::unordered_map<const Cut*, std::size_t> m_colByCut;
    mutable std::unordered_map<TextKey, std::size_t> m_colByKey;
};

} // namespace ravlo

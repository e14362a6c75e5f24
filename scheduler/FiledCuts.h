// SPDX-License-Identifier: MIT
#pragma once

#include "collections/TextKey.h"
#include "media/Cut.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// What the scheduler remembers of every cut it has met: the category names and the level under which it filed
// the cut. A database announces that a cut was modified, not what it was before; this tells. The few
// different lists of names are kept once each, so a cut costs one map entry.
class FiledCuts
{
public:
    // The names and level the cut has now are those it is filed under.
    void Remember(const Cut& cCut);
    void Forget(const TextKey& cKey) noexcept { m_colCuts.erase(cKey); }

    // Whether the cut is known; a cut that was forgotten or never met is not.
    bool Knows(const TextKey& cKey) const noexcept { return m_colCuts.count(cKey) != 0; }
    // Whether names (in their order, without regard to case) and level are what was remembered.
    bool IsUnchanged(const Cut& cCut) const;
    // The names it was filed under, and the level; none and 0 for an unknown cut.
    std::vector<std::wstring> NamesOf(const TextKey& cKey) const;
    std::int32_t LevelOf(const TextKey& cKey) const noexcept;

private:
    struct Entry
    {
        std::uint32_t lNames; // index into m_colNames
        std::int32_t lLevel;
    };
    struct Hash
    {
        std::size_t operator()(const TextKey& cKey) const noexcept { return cKey.Hash(); }
    };

    std::unordered_map<TextKey, Entry, Hash> m_colCuts;
    std::vector<std::wstring> m_colNames; // joined with a line feed, as spelled at the first meeting
    std::unordered_map<std::wstring, std::uint32_t> m_colNamesIndex; // by the same, folded
};

// The names a cut is assigned to, each once without regard to case, without a level a host may have written
// behind a TAB; an empty name stays, for whoever has to refuse it.
std::vector<std::wstring> AssignedNames(const Cut& cCut);

} // namespace ravlo

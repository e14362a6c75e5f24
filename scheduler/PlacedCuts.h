// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/Cut.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// Remembers of every known cut the category names and level it was placed with, and its database number. A
// database announces that a cut was modified, but not what it was before; this class knows. Each different
// list of names is stored once.
class PlacedCuts
{
public:
    // Records that the cut is placed according to its present names and level.
    void Remember(const Cut& cCut);
    // As Remember, for many cuts: lNames is NumberOf the cut's names, lID its DataBaseNumber.
    void Remember(const TextKey& cKey, std::uint32_t lNames, std::int32_t lLevel, std::int32_t lID);
    // The number of a list of names, counted from 0. Lists that are equal without regard to case have the
    // same number.
    std::uint32_t NumberOf(const std::vector<std::wstring>& colNames);
    void Reserve(std::size_t cuts);
    // Forgets the cut's names and level; KeyOf still finds it by number.
    void Forget(const TextKey& cKey) noexcept { m_colCuts.erase(cKey); }
    // Call when the database has removed the cut: forgets its number too.
    void Removed(const TextKey& cKey) noexcept;

    // Whether the cut's names and level are remembered.
    bool Contains(const TextKey& cKey) const noexcept { return m_colCuts.contains(cKey); }
    // Whether the cut's names (in order, without regard to case) and level are the remembered ones.
    bool IsUnchanged(const Cut& cCut) const;
    // The last known key of the cut with that number; nothing for 0 and for an unknown number.
    std::optional<TextKey> KeyOf(std::int32_t lID) const;

    // What is remembered of a cut; to restore it later.
    struct Entry
    {
        std::uint32_t lNames; // number of the list of names
        std::int32_t lLevel;
        std::int32_t lID;
    };
    std::optional<Entry> Recall(const TextKey& cKey) const;
    // Without an entry, forgets the cut.
    void Restore(const TextKey& cKey, const std::optional<Entry>& entry);

    // Scope of a change of a cut's names or level by the scheduler itself. At its end the cut's new names and
    // level are remembered, but only if the old ones were: a database's change that is not announced yet must
    // still be noticed when it is announced. After an exception the cut is forgotten.
    class OwnChange
    {
    public:
        OwnChange(PlacedCuts& cPlacedCuts, const Cut& cCut)
            : m_cPlacedCuts(cPlacedCuts), m_cCut(cCut), m_cKey(cCut.Key()),
              m_bInStep(cPlacedCuts.IsUnchanged(cCut))
        {
        }
        ~OwnChange();
        OwnChange(const OwnChange&) = delete;
        OwnChange& operator=(const OwnChange&) = delete;

    private:
        PlacedCuts& m_cPlacedCuts;
        const Cut& m_cCut;
        const TextKey m_cKey;
        const bool m_bInStep;
        const int m_lExceptions = std::uncaught_exceptions();
    };

private:
    std::unordered_map<TextKey, Entry> m_colCuts;
    std::unordered_map<std::int32_t, TextKey> m_colKeys;        // by the database's number
    std::unordered_map<std::wstring, std::uint32_t> m_colNames; // numbers of lists, by the folded names
};

// The category names of a cut, each once without regard to case, without the level that a host may have
// written after a TAB. Includes an empty name, which the caller has to refuse.
std::vector<std::wstring> AssignedNames(const Cut& cCut);

// The database's number of a cut; 0 when it has none or reading it fails.
std::int32_t DataBaseNumber(const Cut& cCut) noexcept;

} // namespace ravlo

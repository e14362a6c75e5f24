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

// What the scheduler remembers of every cut it has met: the category names and the level under which it
// placed the cut, and the database's number of it. A database announces that a cut was modified, not what it
// was before; this tells. The few different lists of names are kept once each.
class PlacedCuts
{
public:
    // The names and level the cut has now are those it is placed under.
    void Remember(const Cut& cCut);
    // The same for many cuts at once: lNames is NumberOf the cut's names, lID its DataBaseNumber.
    void Remember(const TextKey& cKey, std::uint32_t lNames, std::int32_t lLevel, std::int32_t lID);
    // The number under which a list of names is kept, counted from 0; one for lists that are equal without
    // regard to case.
    std::uint32_t NumberOf(const std::vector<std::wstring>& colNames);
    void Reserve(std::size_t cuts);
    // Its number still leads to its key.
    void Forget(const TextKey& cKey) noexcept { m_colCuts.erase(cKey); }
    // The database no longer has the cut: forgets its number too.
    void Removed(const TextKey& cKey) noexcept;

    // Whether the cut is known; a cut that was forgotten or never met is not.
    bool Contains(const TextKey& cKey) const noexcept { return m_colCuts.count(cKey) != 0; }
    // Whether names (in their order, without regard to case) and level are what was remembered.
    bool IsUnchanged(const Cut& cCut) const;
    // The key under which the cut of that number was met last; nothing for 0 and for an unknown number.
    std::optional<TextKey> KeyOf(std::int32_t lID) const;

    // What is remembered of a cut, for whoever puts the cut back as it was.
    struct Entry
    {
        std::uint32_t lNames; // number of the list of names
        std::int32_t lLevel;
        std::int32_t lID;
    };
    std::optional<Entry> Recall(const TextKey& cKey) const;
    // Nothing forgets the cut.
    void Restore(const TextKey& cKey, const std::optional<Entry>& entry);

    // Stands for a change of a cut's names or level by the scheduler itself. At its end what the cut has
    // become is remembered, but only when it was placed as it said before: a change of the database's that
    // nobody has announced yet must still be seen when it is announced. A cut whose change is left by an
    // exception is forgotten.
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

// The names a cut is assigned to, each once without regard to case, without a level a host may have written
// behind a TAB; an empty name stays, for whoever has to refuse it.
std::vector<std::wstring> AssignedNames(const Cut& cCut);

// The database's number of a cut; 0 when it has none or cannot tell it.
std::int32_t DataBaseNumber(const Cut& cCut) noexcept;

} // namespace ravlo

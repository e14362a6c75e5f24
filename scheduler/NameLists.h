// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/Cut.h"
#include "scheduler/PlacedCuts.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// The lists of category names of an operation's cuts. Many cuts share few different lists, so each spelling
// is parsed once.
class NameLists
{
public:
    struct Name
    {
        std::wstring sName;
        TextKey cKey; // of the main category
    };
    struct Names
    {
        std::uint32_t lNumber = 0;  // PlacedCuts::NumberOf
        std::vector<Name> colNames; // AssignedNames without the empty one
        bool bEmptyName = false;
    };

    // Uses the numbers of cPlacedCuts, which must outlive this object.
    explicit NameLists(PlacedCuts& cPlacedCuts) noexcept : m_cPlacedCuts(cPlacedCuts) {}

    // The cut's present names. The reference is valid as long as this object.
    const Names& Of(const Cut& cCut);

private:
    PlacedCuts& m_cPlacedCuts;
    std::unordered_map<std::wstring, Names> m_colLists; // by the names as spelled, each followed by a TAB
    std::wstring m_sSpelled;
};

} // namespace ravlo

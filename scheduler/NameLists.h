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

// The lists of category names that the cuts of one operation carry. Few different lists serve many cuts, so
// each spelling is taken apart once.
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
        std::uint32_t lNumber = 0;  // FiledCuts::NumberOf
        std::vector<Name> colNames; // AssignedNames without the empty one
        bool bEmptyName = false;
    };

    // Numbers lists as cFiledCuts does, which must outlive this object.
    explicit NameLists(FiledCuts& cFiledCuts) noexcept : m_cFiledCuts(cFiledCuts) {}

    // The names a cut carries now. The reference holds as long as this object.
    const Names& Of(const Cut& cCut);

private:
    FiledCuts& m_cFiledCuts;
    std::unordered_map<std::wstring, Names> m_colLists; // by the names as spelled, each ended by a TAB
    std::wstring m_sSpelled;
};

} // namespace ravlo

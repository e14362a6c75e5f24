// SPDX-License-Identifier: MIT
#pragma once

#include "base/CaseFolding.h"
#include "base/DateTime.h"
#include "base/Text.h"
#include "fuzz/Fuzz.h"
#include "ravlobase/Store.h"

#include <set>
#include <string>
#include <vector>

namespace ravlo::fuzz
{

// Everything that an open database stores, one text per cut, in its order. Ends the program when a cut is not
// valid.
inline std::vector<std::wstring> ContentOf(const Store& cStore)
{
    std::vector<std::wstring> colContent;
    std::set<std::wstring> colKeys;
    for (const std::shared_ptr<Cut>& cCut : cStore.AllCuts())
    {
        const std::wstring sKey = cCut->Key().Text();
        RAVLO_REQUIRE(!sKey.empty() && colKeys.insert(FoldCase(sKey)).second);
        RAVLO_REQUIRE(cCut->CatLevel() >= 1);
        RAVLO_REQUIRE(cStore.CutByKey(cCut->Key()) == cCut);
        std::wstring sText = DecimalText(cCut->ID()) + L"|" + sKey + L"|" + cCut->Path() + L"|" +
                             cCut->SecondaryKey() + L"|" + cCut->Artist() + L"|" + cCut->Title() + L"|" +
                             cCut->Album() + L"|" + DecimalText(cCut->Year()) + L"|" +
                             DecimalText(cCut->RunTimemS()) + L"|" + DecimalText(cCut->DurationmS()) + L"|" +
                             std::to_wstring(cCut->LastPlayed()) + (cCut->Opener() ? L"|Y|" : L"|N|") +
                             DecimalText(cCut->CatLevel());
        std::set<std::wstring> colNames;
        for (const std::wstring& sName : cCut->CategoryNames())
        {
            RAVLO_REQUIRE(!sName.empty() && colNames.insert(FoldCase(sName)).second);
            sText += L"|" + sName;
        }
        colContent.push_back(sText);
    }
    return colContent;
}

} // namespace ravlo::fuzz

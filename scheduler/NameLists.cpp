// SPDX-License-Identifier: MIT
#include "scheduler/NameLists.h"

#include "base/Text.h"
#include "model/clsCat.h"

namespace ravlo
{

const NameLists::Names& NameLists::Of(const Cut& cCut)
{
    const std::vector<std::wstring> colNames = AssignedNames(cCut);
    m_sSpelled.clear();
    for (const std::wstring& sName : colNames)
        (m_sSpelled += sName) += cTab;
    if (const auto found = m_colLists.find(m_sSpelled); found != m_colLists.end())
        return found->second;
    Names names;
    names.lNumber = m_cPlacedCuts.NumberOf(colNames);
    for (const std::wstring& sName : colNames)
        if (sName.empty())
            names.bEmptyName = true;
        else
            names.colNames.push_back({sName, TextKey(CategoryKey(sName, 0))});
    return m_colLists.emplace(m_sSpelled, std::move(names)).first->second;
}

} // namespace ravlo

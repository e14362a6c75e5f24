// SPDX-License-Identifier: MIT
#include "ui/library/NodeKey.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

namespace ravlo
{

NodeKey ParseNodeKey(const std::wstring& sKey)
{
    const CategoryKeyParts parts = SplitCategoryKey(sKey);
    NodeKey node;
    node.sName = parts.sName;
    node.sLevel = parts.sLevel.value_or(L"");
    if (const std::optional<double> dLevel = NumericValue(node.sLevel))
        node.lLevel = ToLong(*dLevel);
    node.bAllAudio = EqualIgnoringCase(node.sName, sAllAudio);
    return node;
}

std::wstring RootKey() { return CategoryKey(sAllAudio, 0); }

std::wstring MainKeyOf(const std::wstring& sKey) { return CategoryKey(ParseNodeKey(sKey).sName, 0); }

std::shared_ptr<clsCat> CatOf(const clsSchedMan& cSchedMan, const std::wstring& sKey)
{
    const NodeKey node = ParseNodeKey(sKey);
    if (node.bAllAudio || !node.lLevel)
        return nullptr;
    std::shared_ptr<clsCat> cMainCat = MainCatByName(cSchedMan.colMainCats().get(), node.sName);
    return cMainCat && *node.lLevel != 0 ? cMainCat->SubCat(*node.lLevel) : cMainCat;
}

} // namespace ravlo

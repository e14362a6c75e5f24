// SPDX-License-Identifier: MIT
#include "rotation/Placeholder.h"

#include "media/PlainCut.h"

#include <utility>

namespace ravlo
{

namespace
{

std::shared_ptr<Cut> Described(std::shared_ptr<Cut> cCut, const PlaceholderTexts& texts)
{
    cCut->SetKindCode(texts.eKind);
    if (!texts.sCatName.empty())
        cCut->SetCategoryText(texts.sCatName);
    if (texts.lCatLevel != 0)
        cCut->SetCatLevel(texts.lCatLevel);
    return cCut;
}

} // namespace

std::shared_ptr<Cut> MakePlaceholder(const PlaceholderTexts& texts, const DataBase* cDataBase)
{
    try
    {
        if (std::shared_ptr<Cut> cCut = cDataBase ? cDataBase->NewCut() : nullptr)
            return Described(std::move(cCut), texts);
    }
    catch (...)
    {
        // Not reported: the host learns what it needs from the kind, and the library's own cut serves as
        // well.
    }
    return Described(NewPlainCut(), texts);
}

} // namespace ravlo

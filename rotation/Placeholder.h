// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

// What a placeholder tells the host besides its kind.
struct PlaceholderTexts
{
    CutKind eKind = eKindNothingSchedulable;
    std::wstring sCatName; // kinds 7 and 11 name the level; empty and 0 elsewhere
    std::int32_t lCatLevel = 0;
};

// A cut that is taken from no category and says by its kind why no real one was chosen: the database's own
// new cut, or a free-standing one of this library while no database is known or the database fails to make
// one. Never null.
std::shared_ptr<Cut> MakePlaceholder(const PlaceholderTexts& texts, const DataBase* cDataBase);

} // namespace ravlo

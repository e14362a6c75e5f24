// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

// A placeholder's kind and, for some kinds, a level.
struct PlaceholderTexts
{
    CutKind eKind = eKindNothingSchedulable;
    std::wstring sCatName; // kinds 7 and 11 name the level; empty and 0 elsewhere
    std::int32_t lCatLevel = 0;
};

// Returns a cut in no category; its kind says why there is no real one. The database creates it; without a
// database, or when it fails, the library does. Never null.
std::shared_ptr<Cut> MakePlaceholder(const PlaceholderTexts& texts, const DataBase* cDataBase);

} // namespace ravlo

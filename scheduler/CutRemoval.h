// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace ravlo
{

struct SchedulerState;
class CutChanges;
class Synchronisation;

// A cut and what it is to be taken out of.
struct CutRemoval
{
    std::shared_ptr<Cut> cCut;
    std::shared_ptr<clsCat> cMainCat; // null: every main category it is assigned to
    std::int32_t lLevel = 0;          // 0: the level of the cut's own number
};

// Takes the cut out of what removal names and returns the main categories it was really taken out of. They
// are looked up by name, since a host may hold one from before a reload; what is missing is passed over.
Cats TakeOutOfCategories(const SchedulerState& cState, CutChanges& cChanges, const std::shared_ptr<Cut>& cCut,
                         const CutRemoval& removal);

// Takes one cut out of categories, or out of none when that fails. Adds those it was taken out of to
// colMainCatsIN, keyed by name. Saves nothing: the caller does. Only a category of which a level may become
// empty is written ahead of the removal, without a word, so that a kill before that save loses no level.
void RemoveCut(SchedulerState& cState, Synchronisation& cSync, const CutRemoval& removal,
               CatCollection& colMainCatsIN);

// Takes many cuts out of categories, each whole or not at all, saves every main category concerned once and
// reports at the end what could not be removed. A main category that goes meanwhile is passed over. progress
// is told of the number of cuts done, before messages are pumped.
void RemoveCuts(SchedulerState& cState, Synchronisation& cSync, const std::vector<CutRemoval>& colRemovals,
                const std::function<void(std::size_t done)>& progress);

} // namespace ravlo

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

// A cut and what to remove it from.
struct CutRemoval
{
    std::shared_ptr<Cut> cCut;
    std::shared_ptr<clsCat> cMainCat; // null: every main category it is assigned to
    std::int32_t lLevel = 0;          // 0: the level of the cut's own number
};

// Removes the cut from what removal names and returns the main categories that contained it. Looks them up by
// name, since a host may hold one from before a reload; skips missing ones.
Cats TakeOutOfCategories(const SchedulerState& cState, CutChanges& cChanges, const std::shared_ptr<Cut>& cCut,
                         const CutRemoval& removal);

// Removes one cut from categories; on an error from none. Adds those that contained it to colMainCatsIN,
// keyed by name. Saves nothing: the caller does. Only when a level may become empty, writes that category's
// order before the removal, without event or box, so that a kill before the caller's save loses no level.
void RemoveCut(SchedulerState& cState, Synchronisation& cSync, const CutRemoval& removal,
               CatCollection& colMainCatsIN);

// Removes many cuts from categories, each completely or not at all, saves each main category concerned once
// and reports at the end which cuts could not be removed. Skips a main category that is deleted during the
// work. Calls progress with the number of cuts done, before pumping messages.
void RemoveCuts(SchedulerState& cState, Synchronisation& cSync, const std::vector<CutRemoval>& colRemovals,
                const std::function<void(std::size_t done)>& progress);

} // namespace ravlo

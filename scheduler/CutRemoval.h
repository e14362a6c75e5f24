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

struct Station;
class Synchronisation;

// A cut and what it is to be taken out of.
struct CutRemoval
{
    std::shared_ptr<Cut> cCut;
    std::shared_ptr<clsCat> cMainCat; // null: every main category it is assigned to
    std::int32_t lLevel = 0;          // 0: the level of the cut's own number
};

// Takes many cuts out of categories, with as few changes on the database's disk as it allows, saves every
// main category concerned once and reports at the end what could not be removed. A main category that goes
// meanwhile is passed over. progress is told of the number of cuts done, before messages are pumped.
void RemoveCuts(Station& cStation, Synchronisation& cSync, const std::vector<CutRemoval>& colRemovals,
                const std::function<void(std::size_t lDone)>& progress);

} // namespace ravlo

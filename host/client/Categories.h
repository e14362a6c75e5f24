// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Scheduler.h"
#include "host/day/CategoryName.h"
#include "host/day/Rotation.h"

#include <vector>

namespace ravlo
{

// The categories of a populated scheduler. Throws HostError, or RuntimeError with the scheduler's
// description.
class Categories
{
public:
    explicit Categories(_clsSchedMan& cManager) : m_cManager(cManager) {}

    // Every level with its cuts, in rotation order.
    Rotation Orders() const;
    // Throws when there is no such category.
    ComPtr<_clsCat> Find(const CategoryName& name) const;
    // The named level, or all levels of a named main category.
    std::vector<ComPtr<_clsCat>> LevelsOf(const CategoryName& name) const;
    // Uses the scheduler's spelling of the name.
    Target TargetOf(const CategoryName& name) const;

private:
    ComPtr<_clsCollection> MainCats() const;

    _clsSchedMan& m_cManager;
};

std::wstring NameOf(_clsCat& cCat);
std::int32_t LevelOf(_clsCat& cCat); // 0: a main category

// An empty collection of the scheduler's library, to pass to its members.
ComPtr<_clsCollection> NewCollection();
void Append(_clsCollection& colItems, IDispatch& cItem);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// Where everything was before a change of cuts: enough to undo the change. Contains only names, numbers and
// keys, so a record keeps nothing alive and remains valid after a reload.
struct ChangeRecord
{
    struct Cut
    {
        TextKey cKey;
        std::int32_t lCatLevel;
        std::wstring sCategoryText;
    };
    struct Category // a level; a main category when lLevel is 0
    {
        std::wstring sCatName;
        std::int32_t lLevel;

        friend bool operator==(const Category&, const Category&) = default;
    };
    struct Order
    {
        Category category;
        std::vector<TextKey> colKeys; // in rotation order
    };

    std::vector<Cut> colCuts; // each changed cut, once
    // Each level that a cut joined, left or moved in, once. Costs a copy of the level's keys, which share
    // their texts: two pointers per cut.
    std::vector<Order> colOrders;
    std::vector<Category> colMade;    // created by the change, in this order
    std::vector<Category> colDeleted; // deleted by the change, in this order
};

} // namespace ravlo

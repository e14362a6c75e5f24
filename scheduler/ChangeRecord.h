// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// What was where before a change of cuts: enough to take the change back. Only names, numbers and keys, so a
// record keeps nothing alive and outlives a reload.
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

    std::vector<Cut> colCuts; // each that was changed, once
    // Each level that a cut has joined, left or changed place in, once. It costs a copy of the level's keys,
    // which share their texts: two pointers a cut.
    std::vector<Order> colOrders;
    std::vector<Category> colMade;    // by the change, in this order
    std::vector<Category> colDeleted; // likewise
};

} // namespace ravlo

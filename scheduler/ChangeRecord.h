// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

class clsCat;

// Where everything was before a change of cuts: enough to undo the change. Contains only names, numbers and
// keys, so a record keeps nothing alive and remains valid after a reload.
struct ChangeRecord
{
    struct State
    {
        std::int32_t lCatLevel;
        std::wstring sCategoryText; // of NamesTextOf

        friend bool operator==(const State&, const State&) = default;
    };
    struct Cut
    {
        TextKey cKey;
        State before;
        std::optional<State> after; // what the change made of it; empty when it could not be read
    };
    struct Category // a level; a main category when lLevel is 0
    {
        std::wstring sCatName;
        std::int32_t lLevel;
        std::size_t position = 0; // of a deleted main category, in the tree before the change

        friend bool operator==(const Category&, const Category&) = default;
    };
    struct Order
    {
        Category category;
        std::vector<TextKey> colKeys; // in rotation order

        friend bool operator==(const Order&, const Order&) = default;
    };

    struct Renamed
    {
        std::wstring sFrom;
        std::wstring sTo;

        friend bool operator==(const Renamed&, const Renamed&) = default;
    };

    // Separations of a category, or options of the station. They are in one file, which is saved whole.
    enum class Value : std::uint8_t
    {
        ArtistSeparation, // in minutes; clsCatRules::lNotSet for none
        TitleSeparation,
        AlbumSeparation,
        IgnoreRules, // this and the following: 0 is off
        FairRotation,
        FeaturedArtists,
    };
    struct Setting
    {
        Value eValue;
        std::int32_t lBefore;
        std::int32_t lAfter;

        friend bool operator==(const Setting&, const Setting&) = default;
    };
    struct Settings
    {
        Category category{};           // whose rules; without a name: the station
        std::vector<Setting> colItems; // each value once

        friend bool operator==(const Settings&, const Settings&) = default;
    };

    std::vector<Cut> colCuts; // each changed cut, once
    // Each level that a cut joined, left or moved in, once. Costs a copy of the level's keys, which share
    // their texts: two pointers per cut.
    std::vector<Order> colOrders;
    std::vector<Category> colMade;    // created by the change, in this order
    std::vector<Category> colDeleted; // deleted by the change, in this order
    std::vector<Renamed> colRenamed;  // main categories, in this order
    Settings settings;                // a record of settings is one of nothing else

    bool IsEmpty() const noexcept
    {
        return colCuts.empty() && colOrders.empty() && colMade.empty() && colDeleted.empty() &&
               colRenamed.empty() && settings.colItems.empty();
    }
};

// The order of a level as it is now.
ChangeRecord::Order PresentOrder(const clsCat& cSubCat);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "base/Text.h"
#include "media/DataBase.h"
#include "model/clsCatRules.h"
#include "modscheduler/ModScheduler.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

class clsCat;
using CutCollection = OrderedKeyedCollection<std::shared_ptr<Cut>>;
using CatCollection = OrderedKeyedCollection<std::shared_ptr<clsCat>>;
using Cats = std::vector<std::shared_ptr<clsCat>>;
bool Contains(const Cats& colCats, const std::shared_ptr<clsCat>& cCat);

// Null when there is no such category, or no collection.
std::shared_ptr<clsCat> CatByKey(const CatCollection* colCats, std::wstring_view sKey);
std::shared_ptr<clsCat> MainCatByName(const CatCollection* colMainCats, const std::wstring& sName);

// The pseudo-category at the root of the tree, and the name of cuts without category.
inline constexpr const wchar_t* sAllAudio = L"ALL AUDIO";
inline constexpr const wchar_t* sNoCat = L"NOCAT";

// A main category (level 0), which owns its levels, or a level (1 or more), which contains its cuts in
// rotation order. Always held by shared_ptr. Cuts are shared, not owned.
class clsCat : public std::enable_shared_from_this<clsCat>
{
public:
    explicit clsCat(ModScheduler& cMod);
    clsCat(ModScheduler& cMod, std::wstring sCatName, std::int32_t lCatLevel);
    clsCat(const clsCat&) = delete;
    clsCat& operator=(const clsCat&) = delete;

    // A level's main category; null for a main category and when it no longer exists. Does not keep it alive.
    std::shared_ptr<clsCat> MainCat() const noexcept { return m_cMainCat.lock(); }
    void SetMainCat(const std::shared_ptr<clsCat>& cMainCat) noexcept { m_cMainCat = cMainCat; }

    const std::wstring& CatName() const noexcept { return m_sCatName; }
    void SetCatName(std::wstring sCatName) { m_sCatName = std::move(sCatName); }

    // Gives a main category and its levels another name. Rules that are loaded belong to the rules file of
    // the new name from now on; no file is read or written. The cuts keep their names.
    void Rename(const std::wstring& sCatName);

    std::int32_t CatLevel() const noexcept { return m_lCatLevel; }
    void SetCatLevel(std::int32_t lCatLevel) noexcept;

    // The name of the rules file of a category of that name and level.
    static std::wstring RulesID(const std::wstring& sCatName, std::int32_t lCatLevel);
    // Created and loaded on first use.
    std::shared_ptr<clsCatRules> Rules();
    // The rules in force, without creating any here: until Rules has been called, the present values of the
    // file, which this never writes.
    std::shared_ptr<const clsCatRules> PresentRules() const;
    void SetRules(std::shared_ptr<clsCatRules> cRules) noexcept { m_cRules = std::move(cRules); }

    // Milliseconds, rounded to nearest, ties to even; 0 without cuts. For a main category the sum of the
    // levels' averages (not of their totals) divided by the number of cuts. Throws error 6 when out of range.
    std::int32_t AverageRunTimemS();

    // Never null. For a level its own collection. For a main category a new collection with the cuts of all
    // levels in order, each once; changing it changes nothing in the category.
    std::shared_ptr<CutCollection> SchedCuts() const;
    // Replaces the collection by a new one and places every given cut in it as AddCut does; all cuts of level
    // 0 share one box. Throws error 6 only after everything is placed. When a cut throws, a level stays as it
    // was, and the cuts that did not have its name before lose it again; a main category keeps the cuts
    // placed before the error.
    void SetSchedCuts(const Cuts& colCuts);

    // Places a cut. A level appends it to its order; a main category adds it to the level of the cut's own
    // number, and creates that level when it is missing (bCreatedNewSubCat is set then, and never reset). The
    // cut receives the category's name. Returns false for no cut, a cut that is already there, a negative
    // level, and level 0, which is shown in a box. Throws error 6, after everything else is done, when the
    // level's total run time exceeds 32 bits. Any other error places nothing and leaves no newly created
    // level behind.
    bool AddCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);

    // Removes a cut from this object's own SchedCuts (not from its levels), found by key, else by secondary
    // key, and removes the category's name from the cut. Returns false when it was not there.
    bool RemoveCut(const std::shared_ptr<Cut>& cCut);

    std::int32_t TotalCuts() const noexcept;

    // Keyed by the level number as text, always in ascending order of level. Shared.
    const std::shared_ptr<CatCollection>& SubCats() const noexcept { return m_colSubCats; }
    // Returns false for no level, for level 0, which is shown in a box, and for a level that already exists.
    // An error of RequireLevel is shown and returns false too.
    bool AddSubCat(const std::shared_ptr<clsCat>& cSubCat);
    // Throws error 5 when cSubCat cannot become a level of this category: it is a main category (level 0, or
    // has levels itself), it is this object, or this is itself a level of a main category. So the tree has
    // two levels at most and no cycles.
    void RequireLevel(const clsCat& cSubCat) const;
    bool RemoveSubCat(const std::shared_ptr<clsCat>& cSubCat);
    // The level of that number, or null.
    std::shared_ptr<clsCat> SubCat(std::int32_t lCatLevel) const;

    // The level number as text for a level, CategoryKey(name, 0) for a main category.
    std::wstring CatID() const;

    // Call after changing the order without AddCut and RemoveCut: recomputes the total run time. Throws error
    // 6, after the work is done, when it is out of range.
    void RecalcTotalRunTime();

    ModScheduler& Mod() const noexcept { return m_cMod; }

private:
    enum class Placed
    {
        No,
        Yes,
        YesOverflow, // placed, but the level's total run time now exceeds 32 bits
    };
    Placed Place(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);
    Placed PlaceInLevel(const std::shared_ptr<Cut>& cCut);
    Placed PlaceInMainCat(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);
    Cuts CutsOfLevels() const; // a copy, in order: the levels may change while it is used
    void PlaceNew(const std::shared_ptr<Cut>& cCut, CutCollection& colNew, Cuts& colNamed);
    void TakeNameOff(const Cuts& colCuts) noexcept;
    void RemoveMadeLevel(const std::shared_ptr<clsCat>& cSubCat) noexcept;
    void ShowLevelZero() const;
    bool LevelsInOrder() const noexcept;
    void NoteLevelsInOrder() noexcept;
    bool InsertLevel(const TextKey& cKey, const std::shared_ptr<clsCat>& cSubCat);
    void SortSubCats();

    ModScheduler& m_cMod;
    std::weak_ptr<clsCat> m_cMainCat;
    std::wstring m_sCatName;
    std::int32_t m_lCatLevel = 0;
    std::shared_ptr<CutCollection> m_colSchedCuts;
    std::shared_ptr<CatCollection> m_colSubCats;
    std::uint64_t m_orderedAt = 0;   // SubCats' Changes() when its levels were last in order
    bool m_bLevelRenumbered = false; // since then
    std::int64_t m_totalRunTime = 0; // ms; 64 bits, so that averages stay right beyond 32 bits
    std::uint32_t m_lRecalculations = 0;
    std::shared_ptr<clsCatRules> m_cRules;
};

} // namespace ravlo

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

// A main category (level 0), which owns its levels, or a category level (1 or more), which holds its cuts in
// rotation order. Always held by shared_ptr. Not a cut's owner: levels hold shared references.
class clsCat : public std::enable_shared_from_this<clsCat>
{
public:
    explicit clsCat(ModScheduler& cMod);
    clsCat(ModScheduler& cMod, std::wstring sCatName, std::int32_t lCatLevel);
    clsCat(const clsCat&) = delete;
    clsCat& operator=(const clsCat&) = delete;

    // A level's main category; null for a main category, or when it is gone. A back reference: it keeps
    // nothing alive.
    std::shared_ptr<clsCat> MainCat() const noexcept { return m_cMainCat.lock(); }
    void SetMainCat(const std::shared_ptr<clsCat>& cMainCat) noexcept { m_cMainCat = cMainCat; }

    const std::wstring& CatName() const noexcept { return m_sCatName; }
    void SetCatName(std::wstring sCatName) { m_sCatName = std::move(sCatName); }

    std::int32_t CatLevel() const noexcept { return m_lCatLevel; }
    void SetCatLevel(std::int32_t lCatLevel) noexcept;

    // Created and loaded on first use.
    std::shared_ptr<clsCatRules> Rules();
    void SetRules(std::shared_ptr<clsCatRules> cRules) noexcept { m_cRules = std::move(cRules); }

    // Milliseconds, rounded to nearest with ties to even; 0 without cuts. For a main category the sum of the
    // levels' averages, not of their totals, divided by the number of cuts. Error 6 when
    // out of range.
    std::int32_t AverageRunTimemS();

    // A level's own collection, shared; for a main category a new collection with the cuts of all levels in
    // order, each once, whose changes change nothing. Never null.
    std::shared_ptr<CutCollection> SchedCuts() const;
    // Replaces the cuts: the collection becomes a new one in which every given cut is placed in order as
    // AddCut does; level 0 cuts give one box in all. Everything is placed before error 6 is raised. An error
    // of a cut leaves a level as it was, its name taken off those cuts again that did not carry it before; a
    // main category keeps the cuts placed until then.
    void SetSchedCuts(const Cuts& colCuts);

    // Places a cut: a level appends it to its order, a main category hands it to the level of the cut's own
    // number, which it makes when missing (bCreatedNewSubCat is then set, never reset). The category's name
    // is registered with the cut. False: no cut, level 0 (which is shown in a box), a negative level, or
    // already there. Error 6, after everything else is done, when the level's total run time passes the
    // 32-bit range. Another error files nothing, and no level that was made for the cut is left behind.
    bool AddCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);

    // Takes a cut out of this object's own SchedCuts (not out of its levels'), by its key, else by its
    // secondary key, and takes the category's name off the cut. False when it was not there.
    bool RemoveCut(const std::shared_ptr<Cut>& cCut);

    std::int32_t TotalCuts() const noexcept;

    // Keyed by the level number's text, always in ascending order of level. Shared.
    const std::shared_ptr<CatCollection>& SubCats() const noexcept { return m_colSubCats; }
    // False for none, level 0 (which is shown in a box) and a level that is there already. What RequireLevel
    // refuses is reported and gives false too.
    bool AddSubCat(const std::shared_ptr<clsCat>& cSubCat);
    // Error 5 when cSubCat cannot become a level of this category: a main category (level 0, or with levels
    // of its own), this object itself, or anything when this is a level of a main category. So the tree is
    // never deeper than two and has no cycles.
    void RequireLevel(const clsCat& cSubCat) const;
    bool RemoveSubCat(const std::shared_ptr<clsCat>& cSubCat);
    // The level of that number, or null.
    std::shared_ptr<clsCat> SubCat(std::int32_t lCatLevel) const;

    // The level number's text for a level, CategoryKey(name, 0) for a main category.
    std::wstring CatID() const;

    // For re-orderings and re-filings that go around AddCut and RemoveCut: brings the total up to date.
    // Error 6 after the work is done when it is out of range.
    void RecalcTotalRunTime();

    ModScheduler& Mod() const noexcept { return m_cMod; }

private:
    enum class Placed
    {
        No,
        Yes,
        YesOverflow, // placed, and the level's total run time has passed the 32-bit range
    };
    Placed Place(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);
    Placed PlaceInLevel(const std::shared_ptr<Cut>& cCut);
    Placed PlaceInMainCat(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat);
    Cuts CutsOfLevels() const; // shared references, in order; safe while the levels change
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
    std::uint64_t m_orderedAt = 0;   // the Changes of SubCats at which its levels were in order
    bool m_bLevelRenumbered = false; // since then
    std::int64_t m_totalRunTime =
        0; // ms; 64 bits, so that averages stay true past the range hosts are told about
    std::uint32_t m_lRecalculations = 0;
    std::shared_ptr<clsCatRules> m_cRules;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/NameLists.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>

namespace ravlo
{

// Finds a main category by name, or creates it at the end of colMainCats.
std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const std::wstring& sName);
// Same, for a name whose key was already computed.
std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const NameLists::Name& name);

// Places the cuts of one operation and collects the errors, so that an operation over thousands of cuts
// finishes and then reports each kind once: one box per kind and category; the rest is counted in the debug
// log.
class Placement
{
public:
    explicit Placement(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // As clsCat::AddCut; but collects a total run time out of range, in which case the cut is placed.
    bool Place(const std::shared_ptr<Cut>& cCut, clsCat& cInto, bool& bCreatedNewSubCat);
    // Call when a level's order was changed without AddCut and RemoveCut: RecalcTouched recalculates its run
    // time once.
    void Touch(const std::shared_ptr<clsCat>& cSubCat)
    {
        if (m_colIsTouched.insert(cSubCat.get()).second)
            m_colTouched.push_back(cSubCat);
    }
    void RecalcTouched();
    // Collects the current error as this cut's. Call inside a catch block.
    void Failed(const Cut& cCut) noexcept;
    // Collects the current error, which concerns more than one cut. Call inside a catch block.
    void Failed() noexcept;
    // Reports an empty category name: the first one with a box.
    void EmptyName(BoxIcon eIcon, const std::wstring& sText);

    // Recalculates the touched levels' run times, then reports what was collected, each error once through
    // show, and clears it.
    void Report(const std::function<void(const RuntimeError&)>& show);

private:
    struct Problem
    {
        std::wstring sCatName;
        bool bLevelZeroShown = false; // each kind has its own box
        bool bNegativeLevelShown = false;
        std::size_t refused = 0; // further cuts without a level, after the shown ones
        bool bOverflow = false;
    };
    Problem& ProblemOf(const std::wstring& sCatName);

    ModScheduler& m_cMod;
    OrderedKeyedCollection<Problem> m_colProblems;
    Cats m_colTouched; // in the order of touching, each once
    std::unordered_set<const clsCat*> m_colIsTouched;
    std::size_t m_emptyNames = 0;
    std::unordered_set<const Cut*> m_colFailed;
    std::optional<RuntimeError> m_cFirstFailure;
};

} // namespace ravlo

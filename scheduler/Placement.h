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

// Finds a main category by name, or makes it and adds it at the end of colMainCats.
std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const std::wstring& sName);
// The same when its key is at hand.
std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const NameLists::Name& name);

// Places the cuts of one operation and gathers what goes wrong with them, so that an operation over thousands
// of cuts finishes its work and then says each thing once: one box per kind and category, the rest counted in
// the debug log.
class Placement
{
public:
    explicit Placement(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // clsCat::AddCut. A run-time total out of range is gathered; the cut is placed all the same.
    bool Place(const std::shared_ptr<Cut>& cCut, clsCat& cInto, bool& bCreatedNewSubCat);
    // The level's order was changed around AddCut and RemoveCut: its run time is taken anew, once, by
    // RecalcTouched.
    void Touch(const std::shared_ptr<clsCat>& cSubCat)
    {
        if (m_colIsTouched.insert(cSubCat.get()).second)
            m_colTouched.push_back(cSubCat);
    }
    void RecalcTouched();
    // Call inside a catch block: this cut could not be handled.
    void Failed(const Cut& cCut) noexcept;
    // Call inside a catch block: something failed that concerns more than one cut.
    void Failed() noexcept;
    // A category name of no characters: a box for the first.
    void EmptyName(BoxIcon eIcon, const std::wstring& sText);

    // Takes the touched levels' run times anew, then reports what was gathered, each error once through show,
    // and forgets it.
    void Report(const std::function<void(const RuntimeError&)>& show);

private:
    struct Problem
    {
        std::wstring sCatName;
        bool bLevelZeroShown = false; // each has a box of its own
        bool bNegativeLevelShown = false;
        std::size_t lRefused = 0; // cuts without a level after those that were shown
        bool bOverflow = false;
    };
    Problem& ProblemOf(const std::wstring& sCatName);

    ModScheduler& m_cMod;
    OrderedKeyedCollection<Problem> m_colProblems;
    Cats m_colTouched; // in the order they were, each once
    std::unordered_set<const clsCat*> m_colIsTouched;
    std::size_t m_emptyNames = 0;
    std::unordered_set<const Cut*> m_colFailed;
    std::optional<RuntimeError> m_cFirstFailure;
};

} // namespace ravlo

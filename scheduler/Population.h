// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "scheduler/CategoryList.h"
#include "scheduler/EventRelay.h"
#include "scheduler/HistoryFiles.h"
#include "scheduler/modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>

namespace ravlo
{

// Creates the scheduler's folders under the application path where they are missing. A failure is shown and
// ends it.
void CreateFolders(ModScheduler& cMod);

// A category assignment of a cut as the scheduler names it: the category's name alone. A host may write name
// TAB level; the level is always the cut's own.
std::wstring AssignedName(const std::wstring& sAssignment);

// Builds a category tree from a database's cuts and the saved files. The tree is built aside: nobody sees it,
// so nothing can save its order, before the saved orders stand in it.
class Population
{
public:
    Population(ModScheduler& cMod, EventRelay& cEvents, CategoryList& cCategoryList,
               HistoryFiles& cHistoryFiles);

    // In order: a main category for every name a cut is assigned to; every cut filed into its levels, in the
    // database's order; the saved main categories; the saved orders. One bad cut stops nothing.
    std::shared_ptr<CatCollection> Build(const DataBase& cDataBase);
    // Shows what went wrong with cuts, once per category: to be called when the tree is in use.
    void ReportProblems();

private:
    class Pauses;
    struct Problem // of one category, gathered over the whole population
    {
        std::wstring sCatName;
        std::size_t lRefused = 0; // level-0 and negative cuts after the first, which was shown
        bool bRefusalShown = false;
        bool bOverflow = false;
        std::size_t lFailed = 0; // cuts that could not be filed for an error of their own
        RuntimeError cFirstError{error::Internal};
    };

    // One pass over the cuts: work for each, and text for the report when one is due. A cut that cannot be
    // read is passed over and counted, once for both passes.
    void RunPhase(const std::wstring& sReason, const Cuts& colCuts,
                  const std::function<void(const std::shared_ptr<Cut>&)>& work,
                  const std::function<std::wstring(const std::shared_ptr<Cut>&, std::size_t)>& text);
    void CreateCategories(const Cuts& colCuts);
    void PlaceCuts(const Cuts& colCuts);
    void Place(const std::shared_ptr<Cut>& cCut, const std::wstring& sName);
    void AddSavedCategories(const NameCollection& colNames);
    std::shared_ptr<clsCat> EnsureMainCat(const std::wstring& sName);
    void RefuseEmptyName(const wchar_t* sText, std::size_t& lSeen);
    Problem& ProblemOf(const std::wstring& sName);

    ModScheduler& m_cMod;
    EventRelay& m_cEvents;
    CategoryList& m_cCategoryList;
    HistoryFiles& m_cHistoryFiles;
    std::shared_ptr<CatCollection> m_colMainCats;
    OrderedKeyedCollection<Problem> m_colProblems;
    std::unordered_set<const Cut*> m_colFailed;
};

} // namespace ravlo

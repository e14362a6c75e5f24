// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/CategoryList.h"
#include "scheduler/EventRelay.h"
#include "scheduler/HistoryFiles.h"
#include "scheduler/NameLists.h"
#include "scheduler/PlacedCuts.h"
#include "scheduler/Placement.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Builds a category tree from a database's cuts and the saved files. The tree is built aside: nobody sees it,
// so nothing can save its order, before the saved orders stand in it.
class Population
{
public:
    // cPlacedCuts, empty, receives under what the cuts were placed.
    Population(ModScheduler& cMod, EventRelay& cEvents, CategoryList& cCategoryList,
               HistoryFiles& cHistoryFiles, PlacedCuts& cPlacedCuts);

    // In order: a main category for every name a cut is assigned to; every cut placed into its levels, in the
    // database's order; the main categories and the orders saved under sAppPath. One bad cut stops nothing.
    std::shared_ptr<CatCollection> Build(const DataBase& cDataBase, const std::wstring& sAppPath);
    // Shows what went wrong with cuts, once per category: to be called when the tree is in use.
    void ReportProblems();

private:
    class Pauses;
    using Work = std::function<void(const std::shared_ptr<Cut>&)>;
    using Text = std::function<std::wstring(const Cut&, std::size_t count)>;

    // One pass over the cuts: work for each, and text for the report when one is due. A cut that cannot be
    // read is passed over and counted.
    void RunPhase(const std::wstring& sReason, const Cuts& colCuts, const Work& work, const Text& text);
    std::wstring TextOrNothing(const Text& text, const Cut& cCut, std::size_t count);
    const NameLists::Names& NamesOf(const Cut& cCut);
    void CreateCategories(const Cuts& colCuts);
    void PlaceCuts(const Cuts& colCuts);
    void AddSavedCategories(const NameCollection& colNames);

    ModScheduler& m_cMod;
    EventRelay& m_cEvents;
    CategoryList& m_cCategoryList;
    HistoryFiles& m_cHistoryFiles;
    PlacedCuts& m_cPlacedCuts;
    Placement m_cPlacement;
    std::shared_ptr<CatCollection> m_colMainCats;
    NameLists m_cNameLists;
    std::vector<Cats> m_colMainCatsOf; // by NameLists::Names::lNumber
};

} // namespace ravlo

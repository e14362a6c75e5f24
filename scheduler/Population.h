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

// Builds a category tree from a database's cuts and the saved files. Nobody sees the tree until it is
// complete, so nothing can save an order before the saved orders are restored.
class Population
{
public:
    // cPlacedCuts receives how each cut was placed. Precondition: it is empty.
    Population(ModScheduler& cMod, EventRelay& cEvents, CategoryList& cCategoryList,
               HistoryFiles& cHistoryFiles, PlacedCuts& cPlacedCuts);

    // Creates a main category for every name that a cut has; places every cut in its levels, in the
    // database's order; adds the main categories of the list and restores the orders saved under sAppPath. A
    // bad cut does not stop the work.
    std::shared_ptr<CatCollection> Build(const DataBase& cDataBase, const std::wstring& sAppPath);
    // Shows the errors of cuts, once per category. Call when the tree is in use.
    void ReportProblems();

private:
    class Pauses;
    using Work = std::function<void(const std::shared_ptr<Cut>&)>;
    using Text = std::function<std::wstring(const Cut&, std::size_t count)>;

    // One pass over the cuts: calls work for each, and text when a report is due. Skips and counts cuts that
    // cannot be read.
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

// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/CategoryList.h"
#include "scheduler/EventRelay.h"
#include "scheduler/HistoryFiles.h"
#include "scheduler/PlacedCuts.h"
#include "scheduler/SchedulerWindows.h"
#include "scheduler/UndoSteps.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// What the parts of one manager share: the tree, its database, and access to files, host and windows. Any of
// it may be replaced while messages are pumped or an event is raised: afterwards look it up again, by name.
struct SchedulerState
{
    explicit SchedulerState(ModScheduler& cModule)
        : cMod(cModule), cEvents(cModule), cCategoryList(cModule), cHistoryFiles(cModule, cEvents),
          cUndo(cModule, &cPlacedCuts)
    {
    }

    // The main category of that name, or null.
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        return MainCatByName(colMainCats.get(), sName);
    }
    // A level that contains a cut. PlacesOf returns all levels that contain its key, in the tree's order.
    struct Place
    {
        std::shared_ptr<clsCat> cMainCat;
        std::shared_ptr<clsCat> cSubCat;
    };
    std::vector<Place> PlacesOf(const TextKey& cKey) const
    {
        std::vector<Place> colPlaces;
        if (!colMainCats)
            return colPlaces;
        for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                if (cSubCat->SchedCuts()->Exists(cKey))
                    colPlaces.push_back({cMainCat, cSubCat});
        return colPlaces;
    }
    // The tree's category of the same name and number, since a host may hold one from before a reload; null
    // when there is none.
    std::shared_ptr<clsCat> Present(const std::shared_ptr<clsCat>& cCat) const
    {
        if (cCat->CatLevel() == 0)
            return MainCat(cCat->CatName());
        const std::shared_ptr<clsCat> cOwner = cCat->MainCat();
        if (Contains(cOwner) && cOwner->SubCat(cCat->CatLevel()) == cCat)
            return cCat;
        const std::shared_ptr<clsCat> cMainCat = MainCat(cCat->CatName());
        const std::shared_ptr<clsCat> cFound = cMainCat ? cMainCat->SubCat(cCat->CatLevel()) : nullptr;
        return cFound && cFound->MainCat() == cMainCat ? cFound : nullptr;
    }
    // The database's own cut of the same key, since a host may pass a copy, such as one from a pick; the cut
    // itself when the database has none.
    std::shared_ptr<Cut> OwnOf(const std::shared_ptr<Cut>& cCut) const
    {
        const std::shared_ptr<ravlo::DataBase> cAsked = cDataBase; // a look-up may let the host populate
        std::shared_ptr<Cut> cOwn = cAsked ? cAsked->CutByKey(cCut->Key()) : nullptr;
        return cOwn ? cOwn : cCut;
    }
    // Retries failed saves, and saves the steps to undo. Every operation that saves orders ends with this.
    void RetrySaves()
    {
        if (const std::shared_ptr<CatCollection> colCats = colMainCats)
            cHistoryFiles.RetryDue(*colCats);
        cUndo.Save();
    }
    // The application path for the tree's files, even when another population has moved the library since.
    // Empty before the first population.
    const std::wstring& AppPath() const noexcept { return cHistoryFiles.AppPath(); }
    // Call when a tree that was read from this application path comes into use: its files are saved there.
    void Serve(const std::wstring& sPath)
    {
        cHistoryFiles.Serve(sPath);
        cCategoryList.Serve();
        cUndo.Serve(sPath);
    }
    // Whether the tree contains this main category object.
    bool Contains(const std::shared_ptr<clsCat>& cMainCat) const
    {
        return cMainCat && MainCat(cMainCat->CatName()) == cMainCat;
    }

    ModScheduler& cMod;
    EventRelay cEvents;
    CategoryList cCategoryList;
    HistoryFiles cHistoryFiles;
    SchedulerWindows* cWindows = nullptr;
    std::shared_ptr<ravlo::DataBase> cDataBase;
    std::shared_ptr<CatCollection> colMainCats; // null before the first population
    PlacedCuts cPlacedCuts;
    UndoSteps cUndo;
    std::size_t openChanges = 0; // CutChanges that exist
    std::uint64_t populations =
        0; // completed ones: a loop that pumps sees by it that the tree is another one
};

} // namespace ravlo

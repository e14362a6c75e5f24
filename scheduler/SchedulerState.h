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

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// What the parts of one manager share: the tree, the database it came from, and the ways out to files, host
// and windows. Anything here may be replaced while messages are pumped or an event is raised: look again
// afterwards, by name.
struct SchedulerState
{
    explicit SchedulerState(ModScheduler& cModule)
        : cMod(cModule), cEvents(cModule), cCategoryList(cModule), cHistoryFiles(cModule, cEvents)
    {
    }

    // The main category of that name, or null.
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        return MainCatByName(colMainCats.get(), sName);
    }
    // Where a cut stands: every level that holds its key, in the tree's order.
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
    // The tree's own category of the same name and number, since a host may hold one from before a reload;
    // null when there is none.
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
    // The database's own cut of the same key, since a host may hand in a copy, such as a pick gives it; the
    // cut itself when the database has none.
    std::shared_ptr<Cut> OwnOf(const std::shared_ptr<Cut>& cCut) const
    {
        const std::shared_ptr<ravlo::DataBase> cAsked = cDataBase; // a look-up may let the host populate
        std::shared_ptr<Cut> cOwn = cAsked ? cAsked->CutByKey(cCut->Key()) : nullptr;
        return cOwn ? cOwn : cCut;
    }
    // Retries what could not be saved. Every operation that saves orders ends with it.
    void RetrySaves()
    {
        if (const std::shared_ptr<CatCollection> colCats = colMainCats)
            cHistoryFiles.RetryDue(*colCats);
    }
    // The application path under which the tree's files are saved, wherever another population may have moved
    // the library since. Empty before the first population.
    const std::wstring& AppPath() const noexcept { return cHistoryFiles.AppPath(); }
    // The tree in use was read from this application path: its files are saved there.
    void Serve(const std::wstring& sPath)
    {
        cHistoryFiles.Serve(sPath);
        cCategoryList.Serve();
    }
    // Whether a main category is one of the tree's at present.
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
    std::uint64_t populations =
        0; // completed ones: a loop that pumps sees by it that the tree is another one
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "media/DataBase.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "rotation/PlayHistory.h"
#include "scheduler/CatDragOptions.h"
#include "scheduler/CutRemoval.h"
#include "scheduler/SchedulerEvents.h"
#include "scheduler/SchedulerWindows.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

class PlacedCuts;
class Population;
using NameCollection = OrderedKeyedCollection<std::wstring>;

// The public entry object of the library: one per host, made before its database is known, populated by
// PopulateFromDataBase and asked for cuts from then on. A facade: each member routes to the part that does
// the work.
class clsSchedMan : public std::enable_shared_from_this<clsSchedMan>
{
public:
    explicit clsSchedMan(ModScheduler& cMod);
    // Writes pending times of plays. When this manager completed a population: saves the category list if it
    // has changed it, the orders that picks could not save and, while the library is still in this manager's
    // folder, the settings. Nothing is thrown; a list that cannot be saved is shown, the rest is logged or
    // ignored.
    ~clsSchedMan();
    clsSchedMan(const clsSchedMan&) = delete;
    clsSchedMan& operator=(const clsSchedMan&) = delete;

    // Who is told of events and who shows windows; null for nobody. Not owned; must be set back before they
    // end.
    void SetEvents(SchedulerEvents* cEvents) noexcept;
    void SetWindows(SchedulerWindows* cWindows) noexcept;
    // A window that shows the progress too; null for none. Not owned.
    void SetProgressFollower(ProgressEvents* cWindow) noexcept;
    ProgressEvents* ProgressFollower() const noexcept;

    // The nine characters that may not stand in a category name.
    const std::shared_ptr<NameCollection>& colIllegalChars() const noexcept;

    std::shared_ptr<Cut> ArtistHistoryCut(const std::wstring& sArtist) const;
    std::shared_ptr<Cut> AlbumHistoryCut(const std::wstring& sAlbum) const;
    std::shared_ptr<Cut> TitleHistoryCut(const std::wstring& sTitle) const;

    std::shared_ptr<ravlo::DataBase> DataBase() const noexcept; // null before population
    std::wstring AppPath() const;

    // Builds the category tree from the database's cuts and the saved files; see Population.h. Until that is
    // done, picks, plays, saves, rules and settings are those of the present tree, its folder and database;
    // when it fails, they stay. AppPath and DataBase tell of the new ones from the start.
    void PopulateFromDataBase(std::shared_ptr<ravlo::DataBase> cDataBase, const std::wstring& strAppPath);

    // The main categories, keyed by name TAB "0"; the collection itself. Null before population.
    std::shared_ptr<CatCollection> colMainCats() const noexcept;
    // The cuts of a level, or of a whole main category for level 0; null when there is no such category.
    std::shared_ptr<CutCollection> colCuts(const std::wstring& sCatName,
                                           std::int32_t lCatLevel = 0) const noexcept;

    std::shared_ptr<NameCollection> colSavedCatNames();
    bool SaveCatNames();
    // Null saves every main category.
    bool SaveHistoryAndOrdering(const std::shared_ptr<clsCat>& cMainCat);

    // Editing categories; what each does is said in CategoryCreation.h, CategoryEditing.h and MassChange.h.
    // Called from a handler while a population runs, each is refused with error 70 under its own title.
    bool CreateMainCat(std::wstring& sName);
    bool CreateCatLevel(const std::shared_ptr<clsCat>& cMainCatIn);
    // A new random order of a collection of that many items, for RandomizeCollection: element i is the
    // position, from 0, of the item that comes to stand at i.
    std::vector<std::size_t> RandomOrderOf(std::size_t count);
    void ShuffleCategories(const Cats& colCats, bool bConfirmFirst = false);
    bool DeleteCats(const Cats& colCats);
    void MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                            std::int32_t PosInto);
    std::wstring ListCats(const Cats& colCats) const;
    void DoMassCatChange(eCatDragOptions eCatDragOption, const Cats& colSubCatsFrom,
                         const std::shared_ptr<clsCat>& cSubCatTo, const Cuts& colCutsToChange,
                         bool& bCreatedNewSubCats);

    // Takes a cut out of a level (its own number's, or LevelToRemoveFrom) of one main category, or with null
    // of every one it is assigned to; out of none when that fails. Adds those it was removed from to
    // colMainCatsIN, keyed by name. Saves nothing: the caller saves those. When a level may become empty, its
    // category's present order is written ahead of the removal, without event or box and without a word of a
    // failure but in the log, so that the level and the orders above it survive a kill before that save.
    void RemoveCutFromCategory(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<Cut>& cCut,
                               CatCollection& colMainCatsIN, std::int32_t LevelToRemoveFrom = 0);

    // Takes many cuts out of categories and saves every main category concerned once. What could not be
    // removed is reported at the end. Messages are pumped meanwhile; progress is told of the number of cuts
    // done so far.
    void RemoveCutsFromCategories(const std::vector<CutRemoval>& colRemovals,
                                  const std::function<void(std::size_t done)>& progress);

    // Gives a cut its level and the names of its categories; see CutAssignment.h. Throws when the cut is left
    // as it was, also with error 70 when called from a handler while a population runs.
    void AssignCut(const std::shared_ptr<Cut>& cCut, std::int32_t lCatLevel,
                   const std::vector<std::wstring>& colCatNames);

    // Records a play; see PlayHistory.h. A database that refuses the time of the play does not hinder the
    // entry: the error is shown once, and the time is pending until the next play, saving of all orders or
    // population, or the manager's end, can write it. Until then the database's cut says when it played
    // before.
    void UpdateArtistTitleHistory(const std::shared_ptr<Cut>& cCut);
    // How many times of plays the database has not taken yet.
    std::size_t PendingPlayTimes() const noexcept;

    // The cut that plays next from the level that strSubCatKey names; never null. cMainCat, cSubCat and
    // sMainCatKey receive what the key led to. bSave writes the main category's order when the call has moved
    // cuts.
    std::shared_ptr<Cut> NextCutFromRotation(const std::wstring& strSubCatKey, bool bMustBeOpener,
                                             const std::shared_ptr<Cut>& cPrevSchedCut,
                                             std::shared_ptr<clsCat>& cMainCat,
                                             std::shared_ptr<clsCat>& cSubCat, std::wstring& sMainCatKey,
                                             bool bForEditablePlaylist = false, bool bSave = true);
    bool RotatesAllowed() const noexcept;
    void SetRotatesAllowed(bool bAllowed) noexcept;

    void ShowHelp();
    // Asks the host to open its cut editor; nothing when it did not answer with a number.
    std::optional<std::int32_t> RaiseEditRequestCutEvent(const std::shared_ptr<Cut>& cCut);
    // Show the windows until they are closed; nothing happens, and lNotChosen comes back, when there are
    // none.
    void ShowLibraryUI();
    std::int32_t ShowCatUI(CategoryRequest& request);
    bool UIShowing() const noexcept;
    // Reloads the library window from the present objects; reads neither database nor files.
    void ReloadAll();

    ModScheduler& Mod() const noexcept;

private:
    class Call;
    struct Parts;
    template <class Result, class Body> Result Edit(const wchar_t* sTitle, Result failure, Body&& body);
    template <class Body> void Edit(const wchar_t* sTitle, Body&& body);
    void RefuseWhilePopulating() const;
    // Puts the tree that cPopulation builds from cDataBase into the place of the present one, cPlacedCuts
    // with it. False without a database, which is shown.
    bool ReplaceTree(const std::shared_ptr<ravlo::DataBase>& cDataBase, const std::wstring& strAppPath,
                     Population& cPopulation, PlacedCuts& cPlacedCuts);
    std::shared_ptr<CatCollection> BuildTree(const std::shared_ptr<ravlo::DataBase>& cDataBase,
                                             Population& cPopulation, const std::wstring& sAppPath,
                                             bool bSameFolder);
    void RecordNotedPlays();

    std::unique_ptr<Parts> m_cParts;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "media/DataBase.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "rotation/NextCut.h"
#include "rotation/RotationOptions.h"
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

struct Explanation;
enum class StationOption;
enum class UndoWay : int;
class PlacedCuts;
class Population;
class RotationFiles;
struct SpreadTrial;
using NameCollection = OrderedKeyedCollection<std::wstring>;

// The public entry object of the library: one per host. Created before its database is known;
// PopulateFromDataBase fills it; from then on it is asked for cuts. A facade: each member calls the part that
// does the work.
class clsSchedMan : public std::enable_shared_from_this<clsSchedMan>
{
public:
    explicit clsSchedMan(ModScheduler& cMod);
    // Writes pending play times. After a completed population also saves the category list if this manager
    // changed it, the orders and the steps to undo that could not be saved and, while the library is still in
    // this manager's folder, the settings. Throws nothing; a list that cannot be saved is shown, the rest is
    // logged or ignored.
    ~clsSchedMan();
    clsSchedMan(const clsSchedMan&) = delete;
    clsSchedMan& operator=(const clsSchedMan&) = delete;

    // The listener to events and the windows; null for none. Not owned: set back to null before they end.
    void SetEvents(SchedulerEvents* cEvents) noexcept;
    void SetWindows(SchedulerWindows* cWindows) noexcept;
    // A window that also shows progress; null for none. Not owned.
    void SetProgressFollower(ProgressEvents* cWindow) noexcept;
    ProgressEvents* ProgressFollower() const noexcept;

    // The nine characters that a category name must not contain.
    const std::shared_ptr<NameCollection>& colIllegalChars() const noexcept;

    std::shared_ptr<Cut> ArtistHistoryCut(const std::wstring& sArtist) const;
    std::shared_ptr<Cut> AlbumHistoryCut(const std::wstring& sAlbum) const;
    std::shared_ptr<Cut> TitleHistoryCut(const std::wstring& sTitle) const;

    std::shared_ptr<ravlo::DataBase> DataBase() const noexcept; // null before population
    std::wstring AppPath() const;

    // Builds the category tree from the database's cuts and the saved files; see Population.h. Until that
    // succeeds, picks, plays, saves, rules and settings use the present tree, its folder and its database;
    // when it fails, they continue to. AppPath and DataBase return the new ones from the start.
    void PopulateFromDataBase(std::shared_ptr<ravlo::DataBase> cDataBase, const std::wstring& strAppPath);

    // The main categories, keyed by name TAB "0"; not a copy. Null before population.
    std::shared_ptr<CatCollection> colMainCats() const noexcept;
    // The cuts of a level, or of a whole main category for level 0; null when it does not exist.
    std::shared_ptr<CutCollection> colCuts(const std::wstring& sCatName,
                                           std::int32_t lCatLevel = 0) const noexcept;

    std::shared_ptr<NameCollection> colSavedCatNames();
    bool SaveCatNames();
    // Null saves every main category.
    bool SaveHistoryAndOrdering(const std::shared_ptr<clsCat>& cMainCat);

    // Editing categories; see CategoryCreation.h, CategoryEditing.h and MassChange.h. Each fails with error
    // 70 under its own title when called from a handler during a population.
    bool CreateMainCat(std::wstring& sName);
    bool CreateCatLevel(const std::shared_ptr<clsCat>& cMainCatIn);
    // Gives a main category another name, with its levels, its cuts' category names and its files; see
    // CategoryRename.h. Returns false, with nothing changed, when it was refused or failed, which is shown.
    bool RenameMainCat(const std::wstring& sCatName, const std::wstring& sNewName);
    // A new random order for RandomizeCollection: element i is the present position, from 0, of the item to
    // put at i.
    std::vector<std::size_t> RandomOrderOf(std::size_t count);
    void ShuffleCategories(const Cats& colCats, bool bConfirmFirst = false);
    // As ShuffleCategories, with the artists of each level as far apart as they can be.
    void SpreadCategories(const Cats& colCats, bool bConfirmFirst = false);
    // The next spread of a level gives the order that a trial has found; see SpreadOrders.
    void RememberSpread(SpreadTrial trial);
    bool DeleteCats(const Cats& colCats);
    void MoveCutsInCategory(const std::shared_ptr<clsCat>& cCat, const Cuts& colCutsInsert,
                            std::int32_t PosInto);
    std::wstring ListCats(const Cats& colCats) const;
    void DoMassCatChange(eCatDragOptions eCatDragOption, const Cats& colSubCatsFrom,
                         const std::shared_ptr<clsCat>& cSubCatTo, const Cuts& colCutsToChange,
                         bool& bCreatedNewSubCats);

    // Removes a cut from a level (of its own number, or LevelToRemoveFrom) of one main category, or with null
    // from every main category it is assigned to; on an error from none. Adds those it was removed from to
    // colMainCatsIN, keyed by name. Saves nothing: the caller does. When a level may become empty, writes
    // that category's order before the removal, without event or box (a failure is only logged), so that the
    // level and its order survive a kill before the caller's save.
    void RemoveCutFromCategory(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<Cut>& cCut,
                               CatCollection& colMainCatsIN, std::int32_t LevelToRemoveFrom = 0);

    // Removes many cuts from categories and saves each main category concerned once. Reports at the end which
    // cuts could not be removed. Pumps messages during the work; calls progress with the number of cuts done.
    void RemoveCutsFromCategories(const std::vector<CutRemoval>& colRemovals,
                                  const std::function<void(std::size_t done)>& progress);

    // Gives a cut its level and category names; see CutAssignment.h. Throws when the cut was left as it was;
    // error 70 when called from a handler during a population.
    void AssignCut(const std::shared_ptr<Cut>& cCut, std::int32_t lCatLevel,
                   const std::vector<std::wstring>& colCatNames);

    // Sets separations of a category: whole or not at all, saved at once. Throws what prevented it.
    void ChangeRules(const std::shared_ptr<clsCat>& cCat, const clsCatRules::Edit& edit);
    // As clsCatRules::Apply: when it cannot be saved, that is shown, and the values count until the next
    // start.
    bool ApplyRules(const std::shared_ptr<clsCat>& cCat, const clsCatRules::Edit& edit);

    // Undo and redo of the operations above, one each: shuffle, spread, re-order, move and copy, removal,
    // deletion, new category or level, assignment, renaming, separations; and of the options below, except
    // overrides. UndoText is such as "Undo shuffle of pop 1", empty when
    // there is nothing to undo. Undo is one unit of work, saved at once; see ChangeReversal.h. It returns a
    // text for a status bar, such as "Undone: shuffle of pop 1 (2 cuts are gone)". When it throws, nothing
    // has changed and the step can be tried again: error 5 when there is nothing to undo, 70 during a
    // population, a change of cuts or another undo, 91 before the first population, else what prevented it. A
    // second attempt in a row leaves out the cuts that prevented the first. Refreshes the library window.
    bool CanUndo() const noexcept;
    std::wstring UndoText() const;
    std::wstring Undo();
    bool CanRedo() const noexcept;
    std::wstring RedoText() const;
    std::wstring Redo();
    // Saves the steps whose file took too long to be written with each of them, when it is time for that. For
    // an idle moment; cheap when nothing is owed.
    void SavePostponedSteps() noexcept;

    // Records a play; see PlayHistory.h. When the database refuses the play time, the play is still recorded,
    // the error is shown once, and the time is pending until the next play, saving of all orders or
    // population, or the manager's end, can write it. Until then the database's cut has its previous time.
    void UpdateArtistTitleHistory(const std::shared_ptr<Cut>& cCut);
    // Number of play times that the database has not accepted yet.
    std::size_t PendingPlayTimes() const noexcept;
    // The plays that the next pick is measured against.
    const PlayHistory& History() const noexcept;

    // Picks the cut that plays next from the requested level. bSave saves the main category's order when the
    // pick has moved cuts.
    RotationAnswer NextCutFromRotation(RotationRequest request, bool bSave = true);
    bool RotatesAllowed() const noexcept;
    void SetRotatesAllowed(bool bAllowed) noexcept;

    // Explains the pick that comes next from a level, and changes nothing. Throws error 91 before the first
    // population and error 5 when the key names no level.
    Explanation Explain(const std::wstring& strSubCatKey, bool bMustBeOpener,
                        const std::shared_ptr<Cut>& cPrevSchedCut);
    // Explains the last pick from a level that this manager made; null when there was none. A request whose
    // rotation was deferred was no pick. Throws as Explain does.
    std::shared_ptr<const Explanation> LastExplanation(const std::wstring& strSubCatKey) const;

    // The station's own rotation options, and the names that credits count for; see RotationFiles.h. A pick
    // uses the options in force when it begins; names that are set inside its pump count from the next
    // candidate on. A setter saves at once. Each throws error 91 before the first population.
    RotationOptions Options();
    ArtistNames Names();
    void SetFairRotation(bool bOn);
    void SetFeaturedArtists(bool bOn);
    void OverrideOptions(const OptionOverrides& overrides);

    void ShowHelp();
    // Asks the host to open its cut editor; nothing when it did not answer with a number.
    std::optional<std::int32_t> RaiseEditRequestCutEvent(const std::shared_ptr<Cut>& cCut);
    // Show the windows until they are closed. Without windows do nothing and return lNotChosen.
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
    // Replaces the present tree by the one that cPopulation builds from cDataBase, together with cPlacedCuts.
    // Returns false without a database, which is shown.
    bool ReplaceTree(const std::shared_ptr<ravlo::DataBase>& cDataBase, const std::wstring& strAppPath,
                     Population& cPopulation, PlacedCuts& cPlacedCuts);
    std::shared_ptr<CatCollection> BuildTree(const std::shared_ptr<ravlo::DataBase>& cDataBase,
                                             Population& cPopulation, const std::wstring& sAppPath,
                                             bool bSameFolder);
    std::wstring Reverse(UndoWay eWay, const std::wstring& sVerb, const wchar_t* sTitle);
    void SetOption(StationOption eOption, bool bOn);
    void RefreshLibrary() noexcept;
    void RecordNotedPlays();
    std::shared_ptr<clsCat> RequireLevel(const std::wstring& strSubCatKey) const;
    // With files that have changed read again. Throws error 91 before the first population.
    RotationFiles& PresentRotation();

    std::unique_ptr<Parts> m_cParts;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/Filing.h"
#include "scheduler/NameLists.h"
#include "scheduler/Station.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

namespace ravlo
{

// The main categories an operation has touched, by name, each once: they are looked up again when they are
// saved.
class AffectedCats
{
public:
    void Touch(const std::wstring& sCatName)
    {
        if (!m_colNames.Exists(std::wstring_view(sCatName))) // mostly it is there
            m_colNames.Add(TextKey(sCatName), sCatName);
    }
    std::size_t Count() const noexcept { return m_colNames.Count(); }
    auto begin() const { return m_colNames.begin(); }
    auto end() const { return m_colNames.end(); }

private:
    OrderedKeyedCollection<std::wstring> m_colNames;
};

// Follows the database: files the cuts it adds, re-files those it modifies, takes out those it removes, saves
// the main categories concerned and refreshes the library window. A notification is handled when nothing else
// is under way; one that arrives inside a population, an edit or another notification waits until that is
// done.
class Synchronisation : private DataBaseEvents
{
public:
    explicit Synchronisation(Station& cStation) noexcept : m_cStation(cStation) {}
    ~Synchronisation() override { Stop(); }

    // Listens to cDataBase from now on, and no longer to the one before. cOwner is kept alive while a
    // notification is handled, and only then.
    void Follow(const std::shared_ptr<DataBase>& cDataBase, std::weak_ptr<void> cOwner);
    void Stop() noexcept;

    // While one exists notifications wait: for work that changes cuts itself, or that others must not
    // interrupt.
    class Hold
    {
    public:
        explicit Hold(Synchronisation& cSync) noexcept : m_cSync(cSync) { ++m_cSync.m_lHolds; }
        ~Hold()
        {
            if (--m_cSync.m_lHolds == 0)
                m_cSync.HandleWaiting();
        }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        Synchronisation& m_cSync;
    };

    // Files a cut into the main category of that name, which is touched when the cut stands there afterwards.
    // A name that is not in the tree is refused with a box.
    void AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName,
                          AffectedCats& cAffected, Filing& cFiling);
    // The same for each of the cut's names, making the main categories that are missing. Nothing happens
    // before the first population.
    void AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names,
                            AffectedCats& cAffected, Filing& cFiling);

    // Takes a cut out of a level (its own number's, or LevelToRemoveFrom when that is not 0) of one main
    // category, or with null of every category it is assigned to. cMainCat is looked up by its name: it may
    // be from before a reload. Adds to colMainCatsIN, keyed by name, those it was really removed from. What
    // is missing is passed over; nothing is saved.
    void RemoveCutFromCategory(const std::shared_ptr<clsCat>& cMainCat, const std::shared_ptr<Cut>& cCut,
                               CatCollection& colMainCatsIN, std::int32_t LevelToRemoveFrom, Filing& cFiling);

    // Brings the tree in line with a cut whose categories or level have changed since it was filed. Nothing
    // happens before the first population.
    void ModifyCut(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected, Filing& cFiling);

    // Takes a cut out of one level that may hold it, category name included; the name stays while another
    // level of the same main category holds the cut. False when the level did not hold it; else the level is
    // recalculated.
    static bool TakeOut(const std::shared_ptr<Cut>& cCut, const Station::Place& place, Filing& cFiling);

    // Saves each that still exists, by default with the boxes and reports of an explicit save, then what
    // picks still owe.
    void SaveAffected(const AffectedCats& cAffected,
                      HistoryFiles::Manner eManner = HistoryFiles::Manner::Explicit);

    // The same whatever is remembered of the cut: after its database has undone changes to it.
    void Refile(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected, Filing& cFiling);

    // Removes a cut's entry from a level without touching its category names. The level is recalculated and
    // its main category touched.
    static void Leave(const Station::Place& place, const TextKey& cKey, AffectedCats& cAffected,
                      Filing& cFiling);

private:
    enum class Kind
    {
        Added,
        Modified,
        Removed,
    };
    struct Notification
    {
        Kind eKind;
        Cuts colCuts;
    };

    void CutsAdded(const Cuts& colCuts) override { Notify(Kind::Added, colCuts); }
    void CutsModified(const Cuts& colCuts) override { Notify(Kind::Modified, colCuts); }
    void CutsRemoved(const Cuts& colCuts) override { Notify(Kind::Removed, colCuts); }
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus) override;

    void Notify(Kind eKind, const Cuts& colCuts);
    void HandleWaiting() noexcept;
    void HandleAdded(const Cuts& colCuts);
    void HandleModified(const Cuts& colCuts);
    void HandleRemoved(const Cuts& colCuts);
    static void FileInto(const std::shared_ptr<Cut>& cCut, clsCat& cMainCat, AffectedCats& cAffected,
                         Filing& cFiling);
    void AddCuts(const Cuts& colCuts, AffectedCats& cAffected, Filing& cFiling);
    void RemoveCuts(const Cuts& colCuts, AffectedCats& cAffected, Filing& cFiling);
    bool StandsWhereAssigned(const Cut& cCut) const;
    void RemoveEverywhere(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected, Filing& cFiling);
    void RefreshLibrary(const wchar_t* sLogLine);

    Station& m_cStation;
    std::shared_ptr<DataBase> m_cFollowed;
    std::weak_ptr<void> m_cOwner;
    std::deque<Notification> m_colWaiting;
    int m_lHolds = 0;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace ravlo
{

using NameCollection = OrderedKeyedCollection<std::wstring>;

// The list of main categories in MainCats.txt, by which categories without cuts survive a restart. Another
// program may change the list too: a save merges both. File format: docs/formats/main-cats.md.
class CategoryList
{
public:
    explicit CategoryList(ModScheduler& cMod) noexcept : m_cMod(cMod) {}
    ~CategoryList() { m_cMod.Saved().Forget(this); }
    CategoryList(const CategoryList&) = delete;
    CategoryList& operator=(const CategoryList&) = delete;

    // The names in the library's list, each keyed by itself. An error, such as a name that is there twice, is
    // shown and ends the reading; the names read so far come back. Never null. Has no effect on later saves.
    std::shared_ptr<NameCollection> GetSavedCatNames();

    // As GetSavedCatNames, of the list under sAppPath, for the tree that a population builds. Serve puts that
    // tree to use: later saves are compared with this reading.
    std::shared_ptr<NameCollection> ReadForTree(const std::wstring& sAppPath);
    void Serve() { m_cLast = m_cRead; }

    // Writes the names of colMainCats to the list under sAppPath. A name that cannot be told from an earlier
    // one in the code page, or that holds a line break, is left out and logged. Names that another program
    // has added since the list was last read or written here are kept; names that it has removed stay
    // removed, except those of categories that hold cuts. False without colMainCats or sAppPath (nothing is
    // written), or on an error, which is shown.
    bool SaveCatNames(const CatCollection* colMainCats, const std::wstring& sAppPath);
    // As SaveCatNames, only when this manager's names are others than those it has read or written last.
    void SaveChangedCatNames(const CatCollection& colMainCats, const std::wstring& sAppPath);
    // Whether a reading would lose a category without cuts, or bring back one that was deleted here.
    bool IsUnsaved(const CatCollection& colMainCats) const;
    // Saves the names when they are unsaved. An error is only logged.
    void SaveBeforeReading(const CatCollection& colMainCats, const std::wstring& sAppPath);
    // Whether this manager has read the name in the list, or written it, and not changed that since.
    bool IsInList(const std::wstring& sCatName) const
    {
        return m_cLast.own.colNames.count(Folded(sCatName)) != 0;
    }
    // Whether another program has removed the name.
    bool IsRemoved(const std::wstring& sCatName) const
    {
        return m_cLast.colRemoved.count(Folded(sCatName)) != 0;
    }

    // Call when a main category is created or deleted here: what another program did to the name before no
    // longer counts. A name deleted here is not merged again until the next population.
    void Created(const std::wstring& sCatName);
    void Deleted(const std::wstring& sCatName);

    // What a name becomes by being written and read: blanks at its ends and what the code page lacks are
    // lost.
    std::wstring AsSaved(const std::wstring& sCatName) const;

private:
    using Names = std::unordered_set<std::wstring>; // folded, as saved
    // What a list holds.
    struct List
    {
        std::shared_ptr<NameCollection> colNames = std::make_shared<NameCollection>();
        std::optional<RuntimeError> cError; // ended the reading
        bool bWhole = true;                 // everything in it was used
    };
    // This manager's names, as lines of the list.
    struct OwnNames
    {
        std::string bytes;
        Names colNames;
        std::vector<std::wstring> colLeftOut; // the list cannot hold them
    };
    // The list when this manager has last read or written it.
    struct Version
    {
        std::wstring sPath;
        OwnNames own;
        Names colRemoved; // by another program: left out until they hold cuts
        Names colDeleted; // here, since the population
    };

    List Parse(const std::string& bytes) const;
    void Write(const CatCollection& colMainCats, const std::wstring& sAppPath);
    OwnNames OwnNamesOf(const CatCollection& colMainCats, const Names& colRemoved) const;
    std::string MergeOthers(const CatCollection& colMainCats, Version& cLast);
    void ForgetRemovedWithoutCategory(const CatCollection& colMainCats, Version& cLast) const;
    std::wstring Folded(const std::wstring& sCatName) const;
    Version LastOf(const std::wstring& sPath) const;

    ModScheduler& m_cMod;
    Version m_cRead; // of the tree that is being built
    Version m_cLast; // of the tree in use
};

} // namespace ravlo

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

// The list of main categories in MainCats.txt. It keeps categories without cuts over a restart. Another
// program may change the list too: a save merges both. File format: docs/formats/main-cats.md.
class CategoryList
{
public:
    explicit CategoryList(ModScheduler& cMod) noexcept : m_cMod(cMod) {}
    ~CategoryList() { m_cMod.Saved().Forget(this); }
    CategoryList(const CategoryList&) = delete;
    CategoryList& operator=(const CategoryList&) = delete;

    // The names in the library's list, each keyed by itself. An error, such as a duplicate name, is shown and
    // ends the reading; the names read so far are returned. Never null. Has no effect on later saves.
    std::shared_ptr<NameCollection> GetSavedCatNames();

    // As GetSavedCatNames, of the list under sAppPath, for the tree that a population builds. Call Serve when
    // that tree comes into use: later saves compare with this reading.
    std::shared_ptr<NameCollection> ReadForTree(const std::wstring& sAppPath);
    void Serve() { m_cLast = m_cRead; }

    // Writes the names of colMainCats to the list under sAppPath. Leaves out, and logs, a name that contains
    // a line break or that the code page turns into an earlier one. Keeps names that another program has
    // added since this manager last read or wrote the list; names that another program has removed stay
    // removed, except those of categories with cuts. Returns false without colMainCats or sAppPath (writes
    // nothing) and on an error, which is shown.
    bool SaveCatNames(const CatCollection* colMainCats, const std::wstring& sAppPath);
    // As SaveCatNames, but only when this manager's names differ from those it last read or wrote.
    void SaveChangedCatNames(const CatCollection& colMainCats, const std::wstring& sAppPath);
    // Whether reading the list now would lose a category without cuts, or restore one that was deleted here.
    bool IsUnsaved(const CatCollection& colMainCats) const;
    // Saves the names when they are unsaved. Errors are only logged.
    void SaveBeforeReading(const CatCollection& colMainCats, const std::wstring& sAppPath);
    // Whether this manager's last reading or save of the list contained the name.
    bool IsInList(const std::wstring& sCatName) const
    {
        return m_cLast.own.colNames.contains(Folded(sCatName));
    }
    // Whether another program has removed the name.
    bool IsRemoved(const std::wstring& sCatName) const
    {
        return m_cLast.colRemoved.contains(Folded(sCatName));
    }

    // Call when a main category is created or deleted here: what another program did to the name before no
    // longer counts. A name deleted here is not merged into the list again until the next population.
    void Created(const std::wstring& sCatName);
    void Deleted(const std::wstring& sCatName);

    // The name as it is after saving and reading: blanks at its ends and characters outside the code page are
    // lost.
    std::wstring AsSaved(const std::wstring& sCatName) const;

private:
    using Names = std::unordered_set<std::wstring>; // folded, as saved
    // The content of a list.
    struct List
    {
        std::shared_ptr<NameCollection> colNames = std::make_shared<NameCollection>();
        std::optional<RuntimeError> cError; // the error that ended the reading
        bool bWhole = true;                 // everything in it was used
    };
    // This manager's names, as lines of the list.
    struct OwnNames
    {
        std::string bytes;
        Names colNames;
        std::vector<std::wstring> colLeftOut; // names that the list cannot contain
    };
    // The list as this manager last read or wrote it.
    struct Version
    {
        std::wstring sPath;
        OwnNames own;
        Names colRemoved; // by another program: left out until the category has cuts
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

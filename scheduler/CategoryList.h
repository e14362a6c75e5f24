// SPDX-License-Identifier: MIT
#pragma once

#include "collections/OrderedKeyedCollection.h"
#include "model/clsCat.h"
#include "scheduler/modscheduler/ModScheduler.h"

#include <memory>
#include <string>
#include <unordered_set>

namespace ravlo
{

using NameCollection = OrderedKeyedCollection<std::wstring>;

// The list of main categories in MainCats.txt, by which categories without cuts survive a restart.
// File format: docs/formats/main-cats.md.
class CategoryList
{
public:
    explicit CategoryList(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // The names in the file, each keyed by itself. An error, such as a name that stands there twice, is shown
    // and ends the reading; the names read so far come back. Never null.
    std::shared_ptr<NameCollection> GetSavedCatNames();

    // Writes the names of colMainCats to the list under sAppPath. A name that cannot be told from an earlier
    // one in the code page, or that holds a line break, is left out and logged. False without colMainCats or
    // sAppPath (nothing is written), or on an error, which is shown.
    bool SaveCatNames(const CatCollection* colMainCats, const std::wstring& sAppPath);

    // What a name becomes by being written and read: blanks at its ends and what the code page lacks are
    // lost.
    std::wstring AsSaved(const std::wstring& sCatName) const;

private:
    void ReadInto(NameCollection& colNames, const std::wstring& sPath);
    std::string Content(const CatCollection& colMainCats);

    ModScheduler& m_cMod;
    // Folded paths of the lists that hold more than could be read: each is kept aside before it is
    // overwritten. The library may have moved to another folder between a reading and a save.
    std::unordered_set<std::wstring> m_colNotRead;
};

// Keeps sPath's content as sPath + ".bak" before it is overwritten by something that knows less. Throws when
// it cannot.
void KeepAside(Files& cFiles, const std::wstring& sPath);

} // namespace ravlo

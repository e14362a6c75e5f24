// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "media/DataBase.h"
#include "ravlobase/ArtistTitleIndex.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ravlo
{

// The cuts of an open database in memory, in its order, found by key and by artist and title. All of them are
// StoreCuts.
class StoreContent
{
public:
    using Collection = OrderedKeyedCollection<std::shared_ptr<Cut>>;

    const Collection& All() const noexcept { return m_colCuts; }
    static StoreCut& Own(const std::shared_ptr<Cut>& cCut) noexcept { return static_cast<StoreCut&>(*cCut); }

    // Null when there is none.
    std::shared_ptr<Cut> ByKey(const TextKey& cKey) const;
    std::shared_ptr<Cut> ByArtistTitle(const std::wstring& sArtist, const std::wstring& sTitle) const;

    void Reserve(std::size_t count);
    // Adds an attached cut at the end. Returns false when its key already exists.
    bool Add(const std::shared_ptr<StoreCut>& cCut);
    // Adds attached cuts in the order of their numbers.
    void Insert(const Cuts& colAdded);
    // Detaches the cuts and removes them.
    void Remove(const Cuts& colRemoved);
    void Clear() noexcept;

    void SetValues(StoreCut& cCut, CutValues values);

private:
    Collection m_colCuts;
    ArtistTitleIndex m_cIndex;
};

} // namespace ravlo

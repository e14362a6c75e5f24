// SPDX-License-Identifier: MIT
#include "scheduler/RenamedCuts.h"

#include "scheduler/SchedulerState.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// Gives an entry another key and object, at the same position.
void Rename(CutCollection& colOrder, const TextKey& cFormerKey, const TextKey& cKey,
            const std::shared_ptr<Cut>& cCut)
{
    // The old entry is removed last, so that lack of memory loses nothing. An existing entry of the new key
    // stays.
    if (const std::optional<std::size_t> position = colOrder.PositionOf(cFormerKey))
        colOrder.Insert(*position, &cKey, cCut);
    colOrder.Remove(cFormerKey);
}

} // namespace

Cats RenamedCuts::Follow(const std::shared_ptr<Cut>& cCut, const TextKey& cKey)
{
    Cats colMainCats;
    if (!m_cState.colMainCats || m_cState.cPlacedCuts.Contains(cKey))
        return colMainCats;
    const std::optional<TextKey> cFormerKey = FormerKeyOf(cCut);
    if (!cFormerKey || *cFormerKey == cKey)
        return colMainCats;
    for (const SchedulerState::Place& place : m_cState.PlacesOf(*cFormerKey))
    {
        Rename(*place.cSubCat->SchedCuts(), *cFormerKey, cKey, cCut);
        if (!Contains(colMainCats, place.cMainCat))
            colMainCats.push_back(place.cMainCat);
    }
    m_cState.cPlacedCuts.Restore(cKey, m_cState.cPlacedCuts.Recall(*cFormerKey));
    m_cState.cPlacedCuts.Forget(*cFormerKey);
    m_cState.cUndo.Renamed(*cFormerKey, cKey);
    return colMainCats;
}

// Finds the former key by the database's number, which stays with the cut even in another object; a key that
// the database still has belongs to another cut. Where the database gives no numbers, finds it by the object.
std::optional<TextKey> RenamedCuts::FormerKeyOf(const std::shared_ptr<Cut>& cCut)
{
    const std::int32_t lID = DataBaseNumber(*cCut);
    if (lID == 0)
        return KeyOfObject(cCut);
    const std::shared_ptr<DataBase> cDataBase = m_cState.cDataBase;
    std::optional<TextKey> cFormerKey = m_cState.cPlacedCuts.KeyOf(lID);
    if (cFormerKey && cDataBase && cDataBase->CutByKey(*cFormerKey))
        cFormerKey.reset();
    return cFormerKey;
}

// The tree may have changed since the keys were collected: a key counts only while it still leads to the
// object.
std::optional<TextKey> RenamedCuts::KeyOfObject(const std::shared_ptr<Cut>& cCut)
{
    if (m_population != m_cState.populations)
    {
        m_colKeys.clear();
        for (const std::shared_ptr<clsCat>& cMainCat : *m_cState.colMainCats)
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                for (std::size_t at = 0; at < cSubCat->SchedCuts()->Count(); ++at)
                    if (const TextKey* pKey = cSubCat->SchedCuts()->KeyAt(at))
                        m_colKeys.try_emplace(cSubCat->SchedCuts()->At(at).get(), *pKey);
        m_population = m_cState.populations;
    }
    const auto found = m_colKeys.find(cCut.get());
    if (found == m_colKeys.end())
        return std::nullopt;
    const std::vector<SchedulerState::Place> colPlaces = m_cState.PlacesOf(found->second);
    const bool bHeld =
        std::any_of(colPlaces.begin(), colPlaces.end(), [&](const SchedulerState::Place& place) {
            return *place.cSubCat->SchedCuts()->Find(found->second) == cCut;
        });
    return bHeld ? std::optional(found->second) : std::nullopt;
}

} // namespace ravlo

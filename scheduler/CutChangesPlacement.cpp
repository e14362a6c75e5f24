// SPDX-License-Identifier: MIT
// The steps a change of cuts consists of.

#include "base/Text.h"
#include "rotation/RotationOrder.h"
#include "scheduler/CutChanges.h"

#include <algorithm>
#include <numeric>

namespace ravlo
{

namespace
{

bool Contains(const std::vector<std::wstring>& colNames, const std::wstring& sName)
{
    return std::any_of(colNames.begin(), colNames.end(),
                       [&](const std::wstring& sOther) { return EqualIgnoringCase(sOther, sName); });
}

// Whether the main category's level of that number contains the cut.
bool Contains(const clsCat& cMainCat, std::int32_t lLevel, const TextKey& cKey)
{
    const std::shared_ptr<clsCat> cSubCat = cMainCat.SubCat(lLevel);
    return cSubCat && cSubCat->SchedCuts()->Exists(cKey);
}

// Whether another level of the main category also contains the cut.
bool IsPlacedElsewhere(const SchedulerState::Place& place, const TextKey& cKey)
{
    const CatCollection& colSubCats = *place.cMainCat->SubCats();
    return std::any_of(colSubCats.begin(), colSubCats.end(), [&](const std::shared_ptr<clsCat>& cOther) {
        return cOther != place.cSubCat && cOther->SchedCuts()->Exists(cKey);
    });
}

// Text for a box. A cut whose texts cannot be read may still be placed.
std::wstring ArtistAndTitle(const Cut& cCut)
{
    try
    {
        return cCut.Artist() + L" - " + cCut.Title();
    }
    catch (const RuntimeError&)
    {
        return {};
    }
}

void RemoveIfEmpty(const clsCat& cMainCat, const std::shared_ptr<clsCat>& cSubCat)
{
    if (cSubCat->SchedCuts()->Empty() && cMainCat.SubCat(cSubCat->CatLevel()) == cSubCat)
        cMainCat.SubCats()->Remove(DecimalText(cSubCat->CatLevel()));
}

void RemoveIfEmpty(CatCollection& colMainCats, const TextKey& cKey)
{
    const std::shared_ptr<clsCat>* cMainCat = colMainCats.Find(cKey);
    if (cMainCat && (*cMainCat)->SubCats()->Empty())
        colMainCats.Remove(cKey);
}

// Moves an item to another position; the items between move by one.
void Move(CutCollection& colCuts, std::size_t from, std::size_t to)
{
    std::vector<std::size_t> colOrder(colCuts.Count());
    std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
    const auto At = [&](std::size_t position) {
        return colOrder.begin() + static_cast<std::ptrdiff_t>(position);
    };
    if (to < from)
        std::rotate(At(to), At(from), At(from + 1));
    else
        std::rotate(At(from), At(from + 1), At(to + 1));
    colCuts.Reorder(colOrder);
}

} // namespace

// ---- placement ----

bool CutChanges::Place(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cInto)
{
    const std::int32_t lLevel = cCut->CatLevel();
    const bool bMain = cInto->CatLevel() == 0;
    const bool bMakes = bMain && lLevel > 0 && !cInto->SubCat(lLevel);
    const std::shared_ptr<clsCat> cSubCat = !bMain       ? cInto
                                            : lLevel > 0 ? EnsureLevel(cInto, lLevel)
                                                         : nullptr;
    try
    {
        const TextKey cKey = cCut->Key();
        if (cSubCat && !cSubCat->SchedCuts()->Exists(cKey))
        {
            RecordOrder(cSubCat);
            WillUndo([this, cSubCat, cKey] {
                if (cSubCat->SchedCuts()->Remove(cKey))
                    m_cPlacement.Touch(cSubCat);
            });
        }
        bool bCreated = false;
        return m_cPlacement.Place(cCut, *cInto, bCreated);
    }
    catch (...)
    {
        if (bMakes && cSubCat)
            RemoveIfEmpty(*cInto, cSubCat);
        throw;
    }
}

std::shared_ptr<clsCat> CutChanges::EnsureLevel(const std::shared_ptr<clsCat>& cMainCat, std::int32_t lLevel)
{
    if (const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(lLevel))
        return cSubCat;
    const auto cMade = std::make_shared<clsCat>(m_cState.cMod, cMainCat->CatName(), lLevel);
    WillUndo([cMainCat, cMade] { RemoveIfEmpty(*cMainCat, cMade); });
    if (!cMainCat->AddSubCat(cMade))
        return nullptr;
    if (IsOwn())
    {
        m_colMade.push_back({cMainCat->CatName(), lLevel});
        m_unit->HasNoOrder(cMade);
    }
    return cMade;
}

void CutChanges::Join(const SchedulerState::Place& place, const std::shared_ptr<Cut>& cCut,
                      const TextKey& cKey)
{
    const std::shared_ptr<clsCat> cSubCat = place.cSubCat;
    RecordOrder(cSubCat);
    WillUndo([this, cSubCat, cKey] {
        if (cSubCat->SchedCuts()->Remove(cKey))
            m_cPlacement.Touch(cSubCat);
    });
    cSubCat->SchedCuts()->Add(cKey, cCut);
    m_cPlacement.Touch(cSubCat);
    Touch(place.cMainCat->CatName());
}

void CutChanges::PutInOrder(const SchedulerState::Place& place, const std::vector<TextKey>& colKeys)
{
    const std::shared_ptr<CutCollection> colCuts = place.cSubCat->SchedCuts();
    const std::vector<std::size_t> colPositions = PositionsInOrder(*colCuts, colKeys);
    if (std::is_sorted(colPositions.begin(), colPositions.end()))
        return;
    if (m_unit)
        m_unit->Reorders(place.cSubCat);
    WillUndo([colCuts, colBefore = OrderOf(*colCuts)] { ravlo::PutInOrder(*colCuts, colBefore); });
    colCuts->Reorder(colPositions);
    Touch(place.cMainCat->CatName());
}

void CutChanges::PlaceLast(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cMainCat)
{
    const TextKey cKey = cCut->Key();
    const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(cCut->CatLevel());
    const std::shared_ptr<CutCollection> colCuts = cSubCat ? cSubCat->SchedCuts() : nullptr;
    const std::optional<std::size_t> before = colCuts ? colCuts->PositionOf(cKey) : std::nullopt;
    if (!before)
    {
        Place(cCut, cMainCat);
        return;
    }
    RecordOrder(cSubCat);
    WillUndo([colCuts, cKey, to = *before] {
        if (const std::optional<std::size_t> now = colCuts->PositionOf(cKey))
            Move(*colCuts, *now, std::min(to, colCuts->Count() - 1));
    });
    colCuts->MoveToEnd(*before);
}

// Removes a main category that was created for a cut which could not be placed.
void CutChanges::PlaceAsNamed(const std::shared_ptr<Cut>& cCut, const NameLists::Name& name)
{
    const std::shared_ptr<CatCollection> colMainCats = m_cState.colMainCats;
    const bool bMakes = !colMainCats->Exists(name.cKey);
    Ensure(name);
    try
    {
        AddCutToCategory(cCut, name.sName);
    }
    catch (...)
    {
        if (bMakes)
            RemoveIfEmpty(*colMainCats, name.cKey);
        throw;
    }
}

std::shared_ptr<clsCat> CutChanges::Ensure(const NameLists::Name& name, std::size_t position)
{
    const std::shared_ptr<CatCollection> colMainCats = m_cState.colMainCats;
    if (const std::shared_ptr<clsCat>* cFound = colMainCats->Find(name.cKey))
        return *cFound;
    WillUndo([colMainCats, cKey = name.cKey] { RemoveIfEmpty(*colMainCats, cKey); });
    if (IsOwn())
        m_colMade.push_back({name.sName, 0});
    auto cMainCat = std::make_shared<clsCat>(m_cState.cMod, name.sName, 0);
    colMainCats->Insert(std::min(position, colMainCats->Count()), &name.cKey, cMainCat);
    return cMainCat;
}

void CutChanges::AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName)
{
    if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sCatName))
    {
        if (Place(cCut, cMainCat) || Contains(*cMainCat, cCut->CatLevel(), cCut->Key()))
            Touch(cMainCat->CatName());
    }
    else
        m_cState.cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle,
                          L"In addcuttocategory, main cat was specified, but doesnt exist!");
}

void CutChanges::AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names)
{
    if (!m_cState.colMainCats)
        return;
    if (names.bEmptyName)
        RefuseEmptyName(*cCut);
    for (const NameLists::Name& name : names.colNames)
        PlaceAsNamed(cCut, name);
}

void CutChanges::RefuseEmptyName(const Cut& cCut)
{
    m_cPlacement.EmptyName(BoxIcon::None, std::wstring(L"Zero-length cat names are illegal!") + sCrLf +
                                              ArtistAndTitle(cCut));
}

// ---- leaving ----

void CutChanges::Leave(const SchedulerState::Place& place, const TextKey& cKey)
{
    const std::shared_ptr<CutCollection> colCuts = place.cSubCat->SchedCuts();
    if (const std::optional<std::size_t> position = colCuts->PositionOf(cKey))
    {
        WillReturn(place.cSubCat, cKey, *position);
        colCuts->Remove(cKey);
    }
    m_cPlacement.Touch(place.cSubCat);
    Touch(place.cMainCat->CatName());
}

bool CutChanges::TakeOut(const std::shared_ptr<Cut>& cCut, const SchedulerState::Place& place)
{
    const std::shared_ptr<CutCollection> colCuts = place.cSubCat->SchedCuts();
    const TextKey cKey = cCut->Key();
    if (colCuts->Exists(cKey) && IsPlacedElsewhere(place, cKey))
    {
        Leave(place, cKey);
        return true;
    }
    const TextKey cPlacedKey = colCuts->Exists(cKey) ? cKey : TextKey(cCut->SecondaryKey());
    if (const std::optional<std::size_t> position = colCuts->PositionOf(cPlacedKey))
        WillReturn(place.cSubCat, cPlacedKey, *position);
    if (!place.cSubCat->RemoveCut(cCut))
        return false;
    if (m_unit && cPlacedKey != cKey)
        m_unit->EntryIsOf(*place.cSubCat, cPlacedKey, cKey);
    // Recalculate: when the cut no longer had the name, RemoveCut did not subtract its run time.
    m_cPlacement.Touch(place.cSubCat);
    Touch(place.cMainCat->CatName());
    if (IsPlacedElsewhere(place, cKey)) // the removed entry had the cut's secondary key
        cCut->AddCategoryName(place.cMainCat->CatName());
    return true;
}

void CutChanges::WillReturn(const std::shared_ptr<clsCat>& cSubCat, const TextKey& cKey, std::size_t position)
{
    RecordOrder(cSubCat);
    WillUndo([this, cSubCat, cKey, position, cPlaced = cSubCat->SchedCuts()->At(position)] {
        CutCollection& colCuts = *cSubCat->SchedCuts();
        if (colCuts.Insert(std::min(position, colCuts.Count()), &cKey, cPlaced))
            m_cPlacement.Touch(cSubCat);
    });
}

// ---- following ----

void CutChanges::ModifyCut(const std::shared_ptr<Cut>& cCut)
{
    if (!m_cState.colMainCats || (m_cState.cPlacedCuts.IsUnchanged(*cCut) && IsPlacedAsAssigned(*cCut)))
        return;
    const TextKey cKey = cCut->Key();
    const std::int32_t lLevel = cCut->CatLevel();
    std::vector<std::wstring> colNames = AssignedNames(*cCut);
    std::erase(colNames, std::wstring());
    // The tree shows where the cut was. Its category names are already the new ones, so it leaves the orders
    // directly: removing it through the category would take names off it.
    for (const SchedulerState::Place& place : m_cState.PlacesOf(cKey))
        if (place.cSubCat->CatLevel() != lLevel || !Contains(colNames, place.cSubCat->CatName()))
            Leave(place, cKey);
    for (const std::wstring& sName : colNames)
    {
        const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName);
        if (!cMainCat || !Contains(*cMainCat, lLevel, cKey))
            PlaceAsNamed(cCut, {sName, TextKey(CategoryKey(sName, 0))});
    }
    m_cState.cPlacedCuts.Remember(*cCut);
}

// Whether the cut is in its level of every category it names. It is not when a host has removed it from one
// directly.
bool CutChanges::IsPlacedAsAssigned(const Cut& cCut) const
{
    const std::int32_t lLevel = cCut.CatLevel();
    if (lLevel <= 0)
        return true; // belongs in no level
    const std::vector<std::wstring> colNames = AssignedNames(cCut);
    const TextKey cKey = cCut.Key();
    return std::all_of(colNames.begin(), colNames.end(), [&](const std::wstring& sName) {
        const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName);
        return sName.empty() || (cMainCat && Contains(*cMainCat, lLevel, cKey));
    });
}

void CutChanges::FollowNewKey(const std::shared_ptr<Cut>& cCut, const TextKey& cKey)
{
    for (const std::shared_ptr<clsCat>& cMainCat : m_cRenamed.Follow(cCut, cKey))
    {
        m_cAffected.Touch(cMainCat->CatName());
        std::erase(m_colTouched, cMainCat->CatName()); // survives an undo
    }
}

// ---- recording ----

void CutChanges::RecordOrder(const std::shared_ptr<clsCat>& cSubCat)
{
    if (m_unit)
        m_unit->RecordOrder(cSubCat);
}

void CutChanges::Deleting(const clsCat& cCat) { m_unit->RecordDeleted(cCat); }

// Whether the tree has the main category, or the level.
bool CutChanges::Exists(const ChangeRecord::Category& category) const
{
    const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(category.sCatName);
    return cMainCat && (category.lLevel == 0 || cMainCat->SubCat(category.lLevel));
}

} // namespace ravlo

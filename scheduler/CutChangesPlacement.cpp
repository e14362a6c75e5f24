// SPDX-License-Identifier: MIT
// What a change of cuts is made of.

#include "base/Text.h"
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

// Whether a main category's level of that number holds the cut.
bool StandsIn(const clsCat& cMainCat, std::int32_t lLevel, const TextKey& cKey)
{
    const std::shared_ptr<clsCat> cSubCat = cMainCat.SubCat(lLevel);
    return cSubCat && cSubCat->SchedCuts()->Exists(cKey);
}

// Whether another level of the main category holds the cut as well.
bool StandsElsewhere(const Station::Place& place, const TextKey& cKey)
{
    const CatCollection& colSubCats = *place.cMainCat->SubCats();
    return std::any_of(colSubCats.begin(), colSubCats.end(),
                       [&](const std::shared_ptr<clsCat>& cOther)
                       { return cOther != place.cSubCat && cOther->SchedCuts()->Exists(cKey); });
}

// For a box. What a box says decides nothing: a cut whose texts cannot be read may be filed all the same.
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

// Brings what stands at lFrom to lTo; what lies between moves up or down by one.
void Move(CutCollection& colCuts, std::size_t lFrom, std::size_t lTo)
{
    std::vector<std::size_t> colOrder(colCuts.Count());
    std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
    const auto At = [&](std::size_t lPosition)
    { return colOrder.begin() + static_cast<std::ptrdiff_t>(lPosition); };
    if (lTo < lFrom)
        std::rotate(At(lTo), At(lFrom), At(lFrom + 1));
    else
        std::rotate(At(lFrom), At(lFrom + 1), At(lTo + 1));
    colCuts.Reorder(colOrder);
}

} // namespace

// ---- filing ----

bool CutChanges::File(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cInto)
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
            WillUndo(
                [this, cSubCat, cKey]
                {
                    if (cSubCat->SchedCuts()->Remove(cKey))
                        m_cFiling.Touch(cSubCat);
                });
        }
        bool bCreated = false;
        return m_cFiling.File(cCut, *cInto, bCreated);
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
    const auto cMade = std::make_shared<clsCat>(m_cStation.cMod, cMainCat->CatName(), lLevel);
    WillUndo([cMainCat, cMade] { RemoveIfEmpty(*cMainCat, cMade); });
    if (!cMainCat->AddSubCat(cMade))
        return nullptr;
    if (IsOwn())
        m_colMade.push_back({cMainCat->CatName(), lLevel});
    m_colRecordedOrders.insert(cMade); // it had none
    return cMade;
}

void CutChanges::FileLast(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cMainCat)
{
    const TextKey cKey = cCut->Key();
    const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(cCut->CatLevel());
    const std::shared_ptr<CutCollection> colCuts = cSubCat ? cSubCat->SchedCuts() : nullptr;
    const std::optional<std::size_t> lBefore = colCuts ? colCuts->PositionOf(cKey) : std::nullopt;
    if (!lBefore)
    {
        File(cCut, cMainCat);
        return;
    }
    RecordOrder(cSubCat);
    WillUndo(
        [colCuts, cKey, lTo = *lBefore]
        {
            if (const auto lNow = colCuts->PositionOf(cKey))
                Move(*colCuts, *lNow, std::min(lTo, colCuts->Count() - 1));
        });
    colCuts->MoveToEnd(*lBefore);
}

void CutChanges::FileAsNamed(const std::shared_ptr<Cut>& cCut, const std::shared_ptr<clsCat>& cMainCat)
{
    if (File(cCut, cMainCat) || StandsIn(*cMainCat, cCut->CatLevel(), cCut->Key()))
        Touch(cMainCat->CatName());
}

std::shared_ptr<clsCat> CutChanges::Ensure(const NameLists::Name& name)
{
    const std::shared_ptr<CatCollection> colMainCats = m_cStation.colMainCats;
    if (const std::shared_ptr<clsCat>* cFound = colMainCats->Find(name.cKey))
        return *cFound;
    WillUndo(
        [colMainCats, cKey = name.cKey]
        {
            const std::shared_ptr<clsCat>* cMade = colMainCats->Find(cKey);
            if (cMade && (*cMade)->SubCats()->Empty())
                colMainCats->Remove(cKey);
        });
    if (IsOwn())
        m_colMade.push_back({name.sName, 0});
    return EnsureMainCat(m_cStation.cMod, *colMainCats, name);
}

void CutChanges::AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName)
{
    if (const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sCatName))
        FileAsNamed(cCut, cMainCat);
    else
        m_cStation.cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle,
                            L"In addcuttocategory, main cat was specified, but doesnt exist!");
}

void CutChanges::AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names)
{
    if (!m_cStation.colMainCats)
        return;
    if (names.bEmptyName)
        RefuseEmptyName(*cCut);
    for (const NameLists::Name& name : names.colNames)
        FileAsNamed(cCut, Ensure(name));
}

void CutChanges::RefuseEmptyName(const Cut& cCut)
{
    m_cFiling.EmptyName(BoxIcon::None,
                        std::wstring(L"Zero-length cat names are illegal!") + sCrLf + ArtistAndTitle(cCut));
}

// ---- leaving ----

void CutChanges::Leave(const Station::Place& place, const TextKey& cKey)
{
    const std::shared_ptr<CutCollection> colCuts = place.cSubCat->SchedCuts();
    if (const std::optional<std::size_t> lPosition = colCuts->PositionOf(cKey))
    {
        WillReturn(place.cSubCat, cKey, *lPosition);
        colCuts->Remove(cKey);
    }
    m_cFiling.Touch(place.cSubCat);
    Touch(place.cMainCat->CatName());
}

bool CutChanges::TakeOut(const std::shared_ptr<Cut>& cCut, const Station::Place& place)
{
    const std::shared_ptr<CutCollection> colCuts = place.cSubCat->SchedCuts();
    const TextKey cKey = cCut->Key();
    if (colCuts->Exists(cKey) && StandsElsewhere(place, cKey))
    {
        Leave(place, cKey);
        return true;
    }
    const TextKey cFiledKey = colCuts->Exists(cKey) ? cKey : TextKey(cCut->SecondaryKey());
    if (const std::optional<std::size_t> lPosition = colCuts->PositionOf(cFiledKey))
        WillReturn(place.cSubCat, cFiledKey, *lPosition);
    if (!place.cSubCat->RemoveCut(cCut))
        return false;
    // A cut that no longer carried the name took no run time with it.
    m_cFiling.Touch(place.cSubCat);
    Touch(place.cMainCat->CatName());
    if (StandsElsewhere(place, cKey)) // it was found under its secondary key
        cCut->AddCategoryName(place.cMainCat->CatName());
    return true;
}

void CutChanges::WillReturn(const std::shared_ptr<clsCat>& cSubCat, const TextKey& cKey,
                            std::size_t lPosition)
{
    RecordOrder(cSubCat);
    WillUndo(
        [this, cSubCat, cKey, lPosition, cFiled = cSubCat->SchedCuts()->At(lPosition)]
        {
            CutCollection& colCuts = *cSubCat->SchedCuts();
            if (colCuts.Insert(std::min(lPosition, colCuts.Count()), &cKey, cFiled))
                m_cFiling.Touch(cSubCat);
        });
}

// ---- following ----

void CutChanges::ModifyCut(const std::shared_ptr<Cut>& cCut)
{
    if (!m_cStation.colMainCats || (m_cStation.cFiledCuts.IsUnchanged(*cCut) && StandsWhereAssigned(*cCut)))
        return;
    const TextKey cKey = cCut->Key();
    const std::int32_t lLevel = cCut->CatLevel();
    std::vector<std::wstring> colNames = AssignedNames(*cCut);
    std::erase(colNames, std::wstring());
    // Where the cut stood is read from the tree. Its category names are the new ones already, so it leaves
    // the orders directly: taking it out through the category would take names off it.
    for (const Station::Place& place : m_cStation.PlacesOf(cKey))
        if (place.cSubCat->CatLevel() != lLevel || !Contains(colNames, place.cSubCat->CatName()))
            Leave(place, cKey);
    for (const std::wstring& sName : colNames)
    {
        const std::shared_ptr<clsCat> cMainCat = Ensure({sName, TextKey(CategoryKey(sName, 0))});
        if (!StandsIn(*cMainCat, lLevel, cKey))
            AddCutToCategory(cCut, sName);
    }
    m_cStation.cFiledCuts.Remember(*cCut);
}

// A host may have taken it out of a category itself.
bool CutChanges::StandsWhereAssigned(const Cut& cCut) const
{
    const std::int32_t lLevel = cCut.CatLevel();
    if (lLevel <= 0)
        return true; // nowhere
    const std::vector<std::wstring> colNames = AssignedNames(cCut);
    const TextKey cKey = cCut.Key();
    return std::all_of(colNames.begin(), colNames.end(),
                       [&](const std::wstring& sName)
                       {
                           const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sName);
                           return sName.empty() || (cMainCat && StandsIn(*cMainCat, lLevel, cKey));
                       });
}

// ---- recording ----

void CutChanges::RecordOrder(const std::shared_ptr<clsCat>& cSubCat)
{
    if (!IsOwn() || m_colRecordedOrders.count(cSubCat) != 0)
        return;
    const CutCollection& colCuts = *cSubCat->SchedCuts();
    ChangeRecord::Order order{{cSubCat->CatName(), cSubCat->CatLevel()}, {}};
    order.colKeys.reserve(colCuts.Count());
    for (std::size_t lPosition = 0; lPosition < colCuts.Count(); ++lPosition)
        if (const TextKey* cKey = colCuts.KeyAt(lPosition))
            order.colKeys.push_back(*cKey);
    m_record.colOrders.push_back(std::move(order));
    m_colRecordedOrders.insert(cSubCat);
}

void CutChanges::Deleting(const clsCat& cCat)
{
    m_record.colDeleted.push_back({cCat.CatName(), cCat.CatLevel()});
}

} // namespace ravlo

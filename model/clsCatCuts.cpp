// SPDX-License-Identifier: MIT
// How cuts are placed in a category and removed from it.

#include "model/clsCat.h"

#include "base/Text.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

// Whether cFound, found under cCut's secondary key, may be the same cut. Two cuts that both have a database
// number are the same only when the numbers are equal.
bool MayBeSame(const Cut& cFound, const Cut& cCut)
{
    if (&cFound == &cCut || cFound.ID() == 0 || cCut.ID() == 0)
        return true;
    return cFound.ID() == cCut.ID();
}

// A cut that a main category has placed, with what is needed to undo that.
struct PlacedCut
{
    std::shared_ptr<clsCat> cLevel;
    std::shared_ptr<Cut> cCut;
    bool bAdded; // to the level's order
    bool bNamed; // before
};

void TakeBack(ModScheduler& cMod, const PlacedCut& placed) noexcept
{
    try
    {
        if (placed.bAdded)
            placed.cLevel->RemoveCut(placed.cCut); // takes the name off as well
        else if (!placed.bNamed)
            placed.cCut->RemoveCategoryName(placed.cLevel->CatName());
        if (placed.bAdded && placed.bNamed)
            placed.cCut->AddCategoryName(placed.cLevel->CatName());
    }
    catch (...)
    {
        cMod.LogError(L"SchedCuts [clsCat]", CurrentError()); // the others are still undone
    }
}

} // namespace

void clsCat::SetSchedCuts(const Cuts& colCuts)
{
    // Built separately: an error leaves the old order, and nobody sees a half-built one.
    auto colNew = std::make_shared<CutCollection>();
    Cuts colNamed;
    std::vector<PlacedCut> colPlaced;
    Cats colMade;
    std::int64_t refused = 0;
    bool bCreatedNewSubCat = false;
    try
    {
        for (const std::shared_ptr<Cut>& cCut : colCuts)
        {
            if (!cCut)
                continue;
            if (cCut->CatLevel() == 0)
                ++refused;
            else if (m_lCatLevel == 0)
            {
                const std::int32_t lLevel = cCut->CatLevel();
                const bool bMade = !SubCat(lLevel);
                const bool bNamed = cCut->HasCategoryName(m_sCatName);
                const Placed ePlaced = PlaceInMainCat(cCut, bCreatedNewSubCat);
                const std::shared_ptr<clsCat> cLevel = SubCat(lLevel);
                if (!cLevel)
                    continue;
                colPlaced.push_back({cLevel, cCut, ePlaced != Placed::No, bNamed});
                if (bMade)
                    colMade.push_back(cLevel);
            }
            else
                PlaceNew(cCut, *colNew, colNamed);
        }
    }
    catch (...)
    {
        TakeNameOff(colNamed);
        for (auto it = colPlaced.rbegin(); it != colPlaced.rend(); ++it)
            TakeBack(m_cMod, *it);
        for (const std::shared_ptr<clsCat>& cLevel : colMade)
            RemoveMadeLevel(cLevel);
        throw;
    }
    m_colSchedCuts = std::move(colNew);
    if (refused > 0)
        ShowLevelZero();
    if (refused > 1)
        m_cMod.WriteDebugLog(L"Level 0 cuts refused by category " + m_sCatName + L": " +
                             DecimalText(refused) + L" in all.");
    RecalcTotalRunTime();
}

// Adds a cut to colNew, which will become this level's order, and gives the cut this level's name. colNamed
// receives the cuts that did not have the name before.
void clsCat::PlaceNew(const std::shared_ptr<Cut>& cCut, CutCollection& colNew, Cuts& colNamed)
{
    colNew.Add(cCut->Key(), cCut);
    if (!cCut->HasCategoryName(m_sCatName))
        colNamed.push_back(cCut); // before the name is set: removing a name that is not there does no harm
    cCut->AddCategoryName(m_sCatName);
}

void clsCat::TakeNameOff(const Cuts& colCuts) noexcept
{
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        try
        {
            cCut->RemoveCategoryName(m_sCatName);
        }
        catch (...)
        {
            m_cMod.LogError(L"SchedCuts [clsCat]", CurrentError()); // the others still lose the name
        }
    }
}

bool clsCat::AddCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    const Placed ePlaced = Place(cCut, bCreatedNewSubCat);
    if (ePlaced == Placed::YesOverflow)
        throw RuntimeError(error::Overflow);
    return ePlaced == Placed::Yes;
}

clsCat::Placed clsCat::Place(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    if (!cCut)
        return Placed::No;
    if (cCut->CatLevel() == 0)
    {
        ShowLevelZero();
        return Placed::No;
    }
    return m_lCatLevel != 0 ? PlaceInLevel(cCut) : PlaceInMainCat(cCut, bCreatedNewSubCat);
}

clsCat::Placed clsCat::PlaceInLevel(const std::shared_ptr<Cut>& cCut)
{
    const TextKey cKey = cCut->Key();
    const std::int32_t lRunTime = cCut->RunTimemS();
    // The order first: a database may announce the new name at once, and the handler must find the cut in its
    // level.
    const std::shared_ptr<CutCollection> colCuts = m_colSchedCuts;
    const bool bAdded = colCuts->Add(cKey, cCut);
    if (bAdded)
        m_totalRunTime += lRunTime;
    try
    {
        cCut->AddCategoryName(m_sCatName);
    }
    catch (...)
    {
        if (bAdded && colCuts->Remove(cKey)) // all or nothing
            m_totalRunTime -= lRunTime;
        throw;
    }
    if (!bAdded)
        return Placed::No;
    return std::in_range<std::int32_t>(m_totalRunTime) ? Placed::Yes : Placed::YesOverflow;
}

void clsCat::ShowLevelZero() const
{
    m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Contact Techincal.",
               L"Illegal attempt to add level 0 cut to category " + m_sCatName);
}

clsCat::Placed clsCat::PlaceInMainCat(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    std::shared_ptr<clsCat> cSubCat = SubCat(cCut->CatLevel());
    const bool bMade = !cSubCat;
    if (bMade)
    {
        cSubCat = std::make_shared<clsCat>(m_cMod, m_sCatName, cCut->CatLevel());
        // A negative number is no level: the new category's is 0 then, and AddSubCat refuses it.
        if (!AddSubCat(cSubCat))
            return Placed::No;
    }
    try
    {
        const bool bOtherName = cSubCat->CatName() != m_sCatName; // a level registers its own name
        const bool bNamed = bOtherName && cCut->HasCategoryName(cSubCat->CatName());
        const Placed ePlaced = cSubCat->Place(cCut, bCreatedNewSubCat);
        try
        {
            if (bOtherName)
                cCut->AddCategoryName(m_sCatName);
        }
        catch (...)
        {
            TakeBack(m_cMod, {cSubCat, cCut, ePlaced != Placed::No, bNamed});
            throw;
        }
        bCreatedNewSubCat = bCreatedNewSubCat || bMade;
        return ePlaced;
    }
    catch (...)
    {
        if (bMade)
            RemoveMadeLevel(cSubCat);
        throw;
    }
}

bool clsCat::RemoveCut(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
        return false;
    TextKey cKey = cCut->Key();
    if (!m_colSchedCuts->Exists(cKey))
    {
        cKey = TextKey(cCut->SecondaryKey());
        const std::shared_ptr<Cut>* cFound = cKey.Empty() ? nullptr : m_colSchedCuts->Find(cKey);
        if (!cFound || !MayBeSame(*std::shared_ptr(*cFound), *cCut))
            return false;
    }
    const bool bNamed = cCut->HasCategoryName(m_sCatName);
    const std::int32_t lRunTime = bNamed ? cCut->RunTimemS() : 0;
    const std::shared_ptr<CutCollection> colCuts = m_colSchedCuts;
    const std::optional<std::size_t> position = colCuts->PositionOf(cKey);
    if (!position)
        return false;
    // The order first, as in PlaceInLevel.
    const std::shared_ptr<Cut> cPlaced = colCuts->At(*position);
    colCuts->RemoveAt(*position);
    m_totalRunTime -= lRunTime;
    if (!bNamed)
        return true;
    try
    {
        cCut->RemoveCategoryName(m_sCatName);
    }
    catch (...)
    {
        // All or nothing.
        if (colCuts->Insert(std::min(*position, colCuts->Count()), &cKey, cPlaced))
            m_totalRunTime += lRunTime;
        throw;
    }
    return true;
}

} // namespace ravlo

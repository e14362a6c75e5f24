// SPDX-License-Identifier: MIT
#include "model/clsCat.h"

#include "collections/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <numeric>
#include <vector>

namespace ravlo
{

namespace
{

bool FitsLong(std::int64_t lValue)
{
    return lValue >= std::numeric_limits<std::int32_t>::min() &&
           lValue <= std::numeric_limits<std::int32_t>::max();
}

// A level's key, without memory of its own: levels are looked up for every cut that is filed.
class LevelKey
{
public:
    explicit LevelKey(std::int32_t lLevel) noexcept
    {
        std::array<char, lMost> digits;
        const char* pEnd = std::to_chars(digits.data(), digits.data() + digits.size(), lLevel).ptr;
        m_lLength = static_cast<std::size_t>(pEnd - digits.data());
        std::copy_n(digits.begin(), m_lLength, m_text.begin());
    }
    std::wstring_view Text() const noexcept { return {m_text.data(), m_lLength}; }

private:
    static constexpr std::size_t lMost = 11; // of a number of 32 bits, with its sign
    std::array<wchar_t, lMost> m_text;
    std::size_t m_lLength;
};

// lTotal / lCount as automation divides and converts: in double precision, to nearest, ties to even.
std::int32_t AverageOf(std::int64_t lTotal, std::int64_t lCount)
{
    if (lCount == 0)
        return 0;
    const std::optional<std::int32_t> lAverage =
        ToLong(static_cast<double>(lTotal) / static_cast<double>(lCount));
    if (!lAverage)
        throw RuntimeError(error::Overflow);
    return *lAverage;
}

// Whether a cut found under cCut's secondary key may stand for cCut. Two database cuts with numbers of their
// own are two cuts, whatever their secondary keys say.
bool MayBeSame(const Cut& cFound, const Cut& cCut)
{
    if (&cFound == &cCut || cFound.ID() == 0 || cCut.ID() == 0)
        return true;
    return cFound.ID() == cCut.ID();
}

} // namespace

std::wstring CategoryKey(const std::wstring& sCatName, std::int32_t lCatLevel)
{
    return sCatName + cTab + DecimalText(lCatLevel);
}

bool Lists(const Cats& colCats, const std::shared_ptr<clsCat>& cCat)
{
    return std::find(colCats.begin(), colCats.end(), cCat) != colCats.end();
}

clsCat::clsCat(ModScheduler& cMod)
    : m_cMod(cMod), m_colSchedCuts(std::make_shared<CutCollection>()),
      m_colSubCats(std::make_shared<CatCollection>())
{
    SetCatLevel(-1);
}

clsCat::clsCat(ModScheduler& cMod, std::wstring sCatName, std::int32_t lCatLevel) : clsCat(cMod)
{
    SetCatName(std::move(sCatName));
    SetCatLevel(lCatLevel);
}

std::shared_ptr<clsCatRules> clsCat::Rules()
{
    if (!m_cRules)
    {
        m_cRules = std::make_shared<clsCatRules>(m_cMod);
        m_cRules->SetCatID(m_sCatName + L"\u00AC\u00AC\u00AC" + DecimalText(m_lCatLevel));
    }
    return m_cRules;
}

std::int32_t clsCat::AverageRunTimemS()
{
    if (m_lCatLevel != 0)
        return AverageOf(m_lTotalRunTime, static_cast<std::int64_t>(m_colSchedCuts->Count()));
    // On purpose: the sum of the levels' averages, not of their totals, divided by the number of cuts, and
    // left behind as this category's total; hosts show this figure.
    m_lTotalRunTime = 0;
    std::int64_t lCount = 0;
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
    {
        m_lTotalRunTime += cSubCat->AverageRunTimemS();
        if (!FitsLong(m_lTotalRunTime))
            throw RuntimeError(error::Overflow);
        lCount += static_cast<std::int64_t>(cSubCat->m_colSchedCuts->Count());
    }
    return AverageOf(m_lTotalRunTime, lCount);
}

std::shared_ptr<CutCollection> clsCat::SchedCuts() const
{
    if (m_lCatLevel != 0)
        return m_colSchedCuts;
    auto colMerged = std::make_shared<CutCollection>();
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
        for (const std::shared_ptr<Cut>& cCut : *cSubCat->m_colSchedCuts)
            colMerged->Add(cCut->Key(), cCut); // a cut of two levels stays at its first place
    return colMerged;
}

void clsCat::SetSchedCuts(const Cuts& colCuts)
{
    // Built aside, so that an error leaves the old order, and nobody ever sees a part of the new one.
    auto colNew = std::make_shared<CutCollection>();
    std::int64_t lRefused = 0;
    bool bCreatedNewSubCat = false;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (!cCut)
            continue;
        if (cCut->CatLevel() == 0)
            ++lRefused;
        else if (m_lCatLevel == 0)
            FileInMainCat(cCut, bCreatedNewSubCat);
        else
        {
            colNew->Add(cCut->Key(), cCut);
            cCut->AddCategoryName(m_sCatName);
        }
    }
    m_colSchedCuts = std::move(colNew);
    if (lRefused > 0)
        ShowLevelZero();
    if (lRefused > 1)
        m_cMod.WriteDebugLog(L"Level 0 cuts refused by category " + m_sCatName + L": " +
                             DecimalText(lRefused) + L" in all.");
    RecalcTotalRunTime();
}

bool clsCat::AddCut(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    const Filed eFiled = File(cCut, bCreatedNewSubCat);
    if (eFiled == Filed::YesOverflow)
        throw RuntimeError(error::Overflow);
    return eFiled == Filed::Yes;
}

clsCat::Filed clsCat::File(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    if (!cCut)
        return Filed::No;
    if (cCut->CatLevel() == 0)
    {
        ShowLevelZero();
        return Filed::No;
    }
    return m_lCatLevel != 0 ? FileInLevel(cCut) : FileInMainCat(cCut, bCreatedNewSubCat);
}

clsCat::Filed clsCat::FileInLevel(const std::shared_ptr<Cut>& cCut)
{
    const TextKey cKey = cCut->Key();
    const std::int32_t lRunTime = cCut->RunTimemS();
    // The order first, since a database may announce the name at once: whoever follows the announcement then
    // finds the cut in its place already.
    const std::shared_ptr<CutCollection> colCuts = m_colSchedCuts;
    const bool bAdded = colCuts->Add(cKey, cCut);
    if (bAdded)
        m_lTotalRunTime += lRunTime;
    try
    {
        cCut->AddCategoryName(m_sCatName);
    }
    catch (...)
    {
        if (bAdded && colCuts->Remove(cKey)) // a cut is filed whole or not at all
            m_lTotalRunTime -= lRunTime;
        throw;
    }
    if (!bAdded)
        return Filed::No;
    return FitsLong(m_lTotalRunTime) ? Filed::Yes : Filed::YesOverflow;
}

void clsCat::ShowLevelZero() const
{
    m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Contact Techincal.",
               L"Illegal attempt to add level 0 cut to category " + m_sCatName);
}

clsCat::Filed clsCat::FileInMainCat(const std::shared_ptr<Cut>& cCut, bool& bCreatedNewSubCat)
{
    std::shared_ptr<clsCat> cSubCat = SubCat(cCut->CatLevel());
    if (!cSubCat)
    {
        cSubCat = std::make_shared<clsCat>(m_cMod, m_sCatName, cCut->CatLevel());
        // A negative number is no level: the new category's is 0 then, and AddSubCat refuses it.
        if (!AddSubCat(cSubCat))
            return Filed::No;
        bCreatedNewSubCat = true;
    }
    const Filed eFiled = cSubCat->File(cCut, bCreatedNewSubCat);
    if (cSubCat->CatName() != m_sCatName) // a level registers its own name, which mostly is this one
        cCut->AddCategoryName(m_sCatName);
    return eFiled;
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
    const std::optional<std::size_t> lPosition = colCuts->PositionOf(cKey);
    if (!lPosition)
        return false;
    // The order first, as in FileInLevel.
    const std::shared_ptr<Cut> cFiled = colCuts->At(*lPosition);
    colCuts->RemoveAt(*lPosition);
    m_lTotalRunTime -= lRunTime;
    if (!bNamed)
        return true;
    try
    {
        cCut->RemoveCategoryName(m_sCatName);
    }
    catch (...)
    {
        // A cut is taken out whole or not at all.
        if (colCuts->Insert(std::min(*lPosition, colCuts->Count()), &cKey, cFiled))
            m_lTotalRunTime += lRunTime;
        throw;
    }
    return true;
}

std::int32_t clsCat::TotalCuts() const noexcept
{
    if (m_lCatLevel != 0)
        return static_cast<std::int32_t>(m_colSchedCuts->Count());
    std::size_t lTotal = 0;
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
        lTotal += cSubCat->m_colSchedCuts->Count();
    return static_cast<std::int32_t>(lTotal);
}

bool clsCat::AddSubCat(const std::shared_ptr<clsCat>& cSubCat)
{
    return Trap(m_cMod, L"AddSubCat [clsCat]", false,
                [&]
                {
                    if (!cSubCat)
                        return false;
                    if (cSubCat->CatLevel() == 0)
                    {
                        m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Please contact support.",
                                   L"Illegal - a subcat MUST have a level");
                        return false;
                    }
                    const TextKey cKey(DecimalText(cSubCat->CatLevel()));
                    if (!m_colSubCats->Add(cKey, cSubCat))
                        return false;
                    try
                    {
                        SortSubCats();
                    }
                    catch (...)
                    {
                        m_colSubCats->Remove(cKey); // added whole or not at all
                        throw;
                    }
                    cSubCat->SetMainCat(shared_from_this());
                    return true;
                });
}

void clsCat::SortSubCats()
{
    // In place, so that a host that holds the collection keeps seeing this category's levels. Whatever a host
    // put out of order is put right on the way.
    const auto LevelAt = [this](std::size_t lPosition) { return m_colSubCats->At(lPosition)->CatLevel(); };
    const auto IsBefore = [&](std::size_t lLeft, std::size_t lRight)
    { return LevelAt(lLeft) < LevelAt(lRight); };
    std::vector<std::size_t> colOrder(m_colSubCats->Count());
    std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
    if (std::is_sorted(colOrder.begin(), colOrder.end(), IsBefore))
        return;
    std::stable_sort(colOrder.begin(), colOrder.end(), IsBefore);
    m_colSubCats->Reorder(colOrder);
}

bool clsCat::RemoveSubCat(const std::shared_ptr<clsCat>& cSubCat)
{
    if (!cSubCat)
        return false;
    const std::wstring sKey = DecimalText(cSubCat->CatLevel());
    if (!m_colSubCats->Exists(sKey))
        return false;
    // Finds nothing in a main category, which holds no cuts of its own: the cuts stay in the level that is
    // taken away.
    if (!m_colSchedCuts->Empty())
        for (const std::shared_ptr<Cut>& cCut :
             Cuts(cSubCat->m_colSchedCuts->begin(), cSubCat->m_colSchedCuts->end()))
            RemoveCut(cCut);
    const bool bRemoved = m_colSubCats->Remove(sKey);
    RecalcTotalRunTime();
    return bRemoved;
}

std::shared_ptr<clsCat> clsCat::SubCat(std::int32_t lCatLevel) const
{
    const std::shared_ptr<clsCat>* cFound = m_colSubCats->Find(LevelKey(lCatLevel).Text());
    return cFound ? *cFound : nullptr;
}

std::wstring clsCat::CatID() const
{
    return m_lCatLevel > 0 ? DecimalText(m_lCatLevel) : CategoryKey(m_sCatName, 0);
}

void clsCat::RecalcTotalRunTime()
{
    std::int64_t lTotal = 0;
    const auto AddAll = [&lTotal](const CutCollection& colCuts)
    {
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            lTotal += cCut->RunTimemS();
    };
    if (m_lCatLevel != 0)
        AddAll(*m_colSchedCuts);
    else
        for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
            AddAll(*cSubCat->m_colSchedCuts);
    m_lTotalRunTime = lTotal;
    if (!FitsLong(lTotal))
        throw RuntimeError(error::Overflow);
}

} // namespace ravlo

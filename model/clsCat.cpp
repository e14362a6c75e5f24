// SPDX-License-Identifier: MIT
#include "model/clsCat.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

// A level's key, without an allocation: every cut that is placed looks one up.
class LevelKey
{
public:
    explicit LevelKey(std::int32_t lLevel) noexcept
    {
        std::array<char, most> digits;
        const char* pEnd = std::to_chars(digits.data(), digits.data() + digits.size(), lLevel).ptr;
        m_length = static_cast<std::size_t>(pEnd - digits.data());
        std::copy_n(digits.begin(), m_length, m_text.begin());
    }
    std::wstring_view Text() const noexcept { return {m_text.data(), m_length}; }

private:
    static constexpr std::size_t most = 11; // digits of a 32-bit number, and its sign
    std::array<wchar_t, most> m_text;
    std::size_t m_length;
};

// total / count, converted as automation does: in double precision, to nearest, ties to even.
std::int32_t AverageOf(std::int64_t total, std::int64_t count)
{
    if (count == 0)
        return 0;
    const std::optional<std::int32_t> lAverage =
        ToLong(static_cast<double>(total) / static_cast<double>(count));
    if (!lAverage)
        throw RuntimeError(error::Overflow);
    return *lAverage;
}

// A copy to iterate over: reading a host's cut may run anything, also changes of this collection.
Cuts CopyOf(const CutCollection& colCuts)
{
    Cuts colCopy;
    colCopy.reserve(colCuts.Count());
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        if (cCut)
            colCopy.push_back(cCut);
    return colCopy;
}

} // namespace

std::shared_ptr<clsCat> CatByKey(const CatCollection* colCats, std::wstring_view sKey)
{
    const std::shared_ptr<clsCat>* cFound = colCats ? colCats->Find(sKey) : nullptr;
    return cFound ? *cFound : nullptr;
}

std::shared_ptr<clsCat> MainCatByName(const CatCollection* colMainCats, const std::wstring& sName)
{
    return CatByKey(colMainCats, CategoryKey(sName, 0));
}

bool Contains(const Cats& colCats, const std::shared_ptr<clsCat>& cCat)
{
    return std::find(colCats.begin(), colCats.end(), cCat) != colCats.end();
}

clsCat::clsCat(ModScheduler& cMod)
    : m_cMod(cMod), m_colSchedCuts(std::make_shared<CutCollection>()),
      m_colSubCats(std::make_shared<CatCollection>())
{
}

clsCat::clsCat(ModScheduler& cMod, std::wstring sCatName, std::int32_t lCatLevel) : clsCat(cMod)
{
    SetCatName(std::move(sCatName));
    SetCatLevel(lCatLevel);
}

void clsCat::SetCatLevel(std::int32_t lCatLevel) noexcept
{
    m_lCatLevel = std::max(lCatLevel, 0);
    if (const std::shared_ptr<clsCat> cMainCat = MainCat())
        cMainCat->m_bLevelRenumbered = true;
}

std::shared_ptr<clsCatRules> clsCat::Rules()
{
    if (!m_cRules)
    {
        m_cRules = std::make_shared<clsCatRules>(m_cMod);
        m_cRules->SetCatID(RulesID(m_sCatName, m_lCatLevel));
    }
    m_cRules->RetryReading();
    return m_cRules;
}

std::shared_ptr<const clsCatRules> clsCat::PresentRules() const
{
    return m_cRules ? m_cRules : clsCatRules::Read(m_cMod, RulesID(m_sCatName, m_lCatLevel));
}

std::wstring clsCat::RulesID(const std::wstring& sCatName, std::int32_t lCatLevel)
{
    return sCatName + L"\u00AC\u00AC\u00AC" + DecimalText(lCatLevel);
}

void clsCat::Rename(const std::wstring& sCatName)
{
    m_sCatName = sCatName;
    if (m_cRules)
        m_cRules->Rebind(RulesID(sCatName, m_lCatLevel));
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
        cSubCat->Rename(sCatName);
}

std::int32_t clsCat::AverageRunTimemS()
{
    if (m_lCatLevel != 0)
        return AverageOf(m_totalRunTime, static_cast<std::int64_t>(m_colSchedCuts->Count()));
    // On purpose: the sum of the levels' averages, not of their totals, divided by the number of cuts, and
    // stored as this category's total; hosts show this figure.
    m_totalRunTime = 0;
    std::int64_t count = 0;
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
    {
        m_totalRunTime += cSubCat->AverageRunTimemS();
        if (!std::in_range<std::int32_t>(m_totalRunTime))
            throw RuntimeError(error::Overflow);
        count += static_cast<std::int64_t>(cSubCat->m_colSchedCuts->Count());
    }
    return AverageOf(m_totalRunTime, count);
}

std::shared_ptr<CutCollection> clsCat::SchedCuts() const
{
    if (m_lCatLevel != 0)
        return m_colSchedCuts;
    auto colMerged = std::make_shared<CutCollection>();
    for (const std::shared_ptr<Cut>& cCut : CutsOfLevels())
        colMerged->Add(cCut->Key(), cCut); // a cut in two levels keeps its first position
    return colMerged;
}

Cuts clsCat::CutsOfLevels() const
{
    Cuts colCuts;
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
    {
        const Cuts colOfLevel = CopyOf(*cSubCat->m_colSchedCuts);
        colCuts.insert(colCuts.end(), colOfLevel.begin(), colOfLevel.end());
    }
    return colCuts;
}

// Removes a level that was created for a cut which could not be placed, unless others have used it since.
void clsCat::RemoveMadeLevel(const std::shared_ptr<clsCat>& cSubCat) noexcept
{
    const LevelKey cKey(cSubCat->CatLevel());
    const std::shared_ptr<clsCat>* pFound = m_colSubCats->Find(cKey.Text());
    if (!pFound || *pFound != cSubCat || !cSubCat->m_colSchedCuts->Empty())
        return;
    const bool bInOrder = LevelsInOrder();
    m_colSubCats->Remove(cKey.Text());
    if (bInOrder)
        NoteLevelsInOrder();
}

std::int32_t clsCat::TotalCuts() const noexcept
{
    if (m_lCatLevel != 0)
        return static_cast<std::int32_t>(m_colSchedCuts->Count());
    std::size_t total = 0;
    for (const std::shared_ptr<clsCat>& cSubCat : *m_colSubCats)
        total += cSubCat->m_colSchedCuts->Count();
    return static_cast<std::int32_t>(total);
}

bool clsCat::AddSubCat(const std::shared_ptr<clsCat>& cSubCat)
{
    return Trap(m_cMod, L"AddSubCat [clsCat]", false, [&] {
        if (!cSubCat)
            return false;
        if (cSubCat->CatLevel() == 0)
        {
            m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Please contact support.",
                       L"Illegal - a subcat MUST have a level");
            return false;
        }
        RequireLevel(*cSubCat);
        if (!InsertLevel(TextKey(DecimalText(cSubCat->CatLevel())), cSubCat))
            return false;
        cSubCat->SetMainCat(shared_from_this());
        return true;
    });
}

void clsCat::RequireLevel(const clsCat& cSubCat) const
{
    if (cSubCat.CatLevel() == 0 || !cSubCat.m_colSubCats->Empty() || &cSubCat == this || MainCat())
        throw RuntimeError(error::InvalidProcedureCall);
}

bool clsCat::LevelsInOrder() const noexcept
{
    return m_colSubCats->Changes() == m_orderedAt && !m_bLevelRenumbered;
}

void clsCat::NoteLevelsInOrder() noexcept
{
    m_orderedAt = m_colSubCats->Changes();
    m_bLevelRenumbered = false;
}

// Returns false when the key already exists. Adds the level completely or not at all.
bool clsCat::InsertLevel(const TextKey& cKey, const std::shared_ptr<clsCat>& cSubCat)
{
    if (LevelsInOrder())
    {
        const auto it = std::upper_bound(m_colSubCats->begin(), m_colSubCats->end(), cSubCat->CatLevel(),
                                         [](std::int32_t lLevel, const std::shared_ptr<clsCat>& cOther) {
            return lLevel < cOther->CatLevel();
        });
        const auto position = static_cast<std::size_t>(it - m_colSubCats->begin());
        if (!m_colSubCats->Insert(position, &cKey, cSubCat))
            return false;
        NoteLevelsInOrder();
        return true;
    }
    if (!m_colSubCats->Add(cKey, cSubCat))
        return false;
    try
    {
        SortSubCats();
    }
    catch (...)
    {
        m_colSubCats->Remove(cKey);
        throw;
    }
    return true;
}

void clsCat::SortSubCats()
{
    // In place, so that a host holding the collection keeps seeing this category's levels. Also repairs an
    // order that a host has changed.
    const auto LevelAt = [this](std::size_t position) { return m_colSubCats->At(position)->CatLevel(); };
    const auto IsBefore = [&](std::size_t left, std::size_t right) { return LevelAt(left) < LevelAt(right); };
    std::vector<std::size_t> colOrder(m_colSubCats->Count());
    std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
    if (!std::is_sorted(colOrder.begin(), colOrder.end(), IsBefore))
    {
        std::stable_sort(colOrder.begin(), colOrder.end(), IsBefore);
        m_colSubCats->Reorder(colOrder);
    }
    NoteLevelsInOrder();
}

bool clsCat::RemoveSubCat(const std::shared_ptr<clsCat>& cSubCat)
{
    if (!cSubCat)
        return false;
    const std::wstring sKey = DecimalText(cSubCat->CatLevel());
    if (!m_colSubCats->Exists(sKey))
        return false;
    // A main category has no cuts of its own, so this removes nothing there: the cuts stay in the removed
    // level.
    if (!m_colSchedCuts->Empty())
        for (const std::shared_ptr<Cut>& cCut : CopyOf(*cSubCat->m_colSchedCuts))
            RemoveCut(cCut);
    const bool bInOrder = LevelsInOrder();
    const bool bRemoved = m_colSubCats->Remove(sKey);
    if (bInOrder)
        NoteLevelsInOrder();
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
    const std::uint32_t lOwn = ++m_lRecalculations;
    const std::int64_t before = m_totalRunTime;
    std::int64_t total = 0;
    for (const std::shared_ptr<Cut>& cCut : m_lCatLevel != 0 ? CopyOf(*m_colSchedCuts) : CutsOfLevels())
        total += cCut->RunTimemS();
    // Reading a cut may run other calls. What they placed or removed has already changed the total; a newer
    // recalculation has set it.
    if (lOwn == m_lRecalculations)
        m_totalRunTime = total + (m_totalRunTime - before);
    if (!std::in_range<std::int32_t>(m_totalRunTime))
        throw RuntimeError(error::Overflow);
}

} // namespace ravlo

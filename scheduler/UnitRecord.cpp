// SPDX-License-Identifier: MIT
#include "scheduler/UnitRecord.h"

#include "base/Text.h"
#include "rotation/RotationOrder.h"
#include "scheduler/SchedulerState.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

bool HasOrder(const CutCollection& colCuts, const std::vector<TextKey>& colKeys)
{
    if (colCuts.Count() != colKeys.size())
        return false;
    for (std::size_t position = 0; position < colKeys.size(); ++position)
        if (const TextKey* cKey = colCuts.KeyAt(position); !cKey || *cKey != colKeys[position])
            return false;
    return true;
}

} // namespace

ChangeRecord::Order PresentOrder(const clsCat& cSubCat)
{
    return {{cSubCat.CatName(), cSubCat.CatLevel()}, OrderOf(*cSubCat.SchedCuts())};
}

UnitRecord::UnitRecord(SchedulerState& cState) : m_cState(cState) { m_cState.cUndo.Open(*this); }

void UnitRecord::Close() noexcept
{
    if (std::exchange(m_bOpen, false))
        m_cState.cUndo.Close(*this);
}

// ---- recording

// After a reload another object is the level of that name; what the first one had counts.
void UnitRecord::RecordOrder(const std::shared_ptr<clsCat>& cSubCat)
{
    if (m_colSeen.contains(cSubCat))
        return;
    if (!m_record.KnowsOrderOf({cSubCat->CatName(), cSubCat->CatLevel()}))
    {
        ChangeRecord::Order order = PresentOrder(*cSubCat);
        if (m_bInParts)
            m_part.colOrders.push_back(order);
        m_record.AddOrder(std::move(order));
    }
    m_colSeen.insert(cSubCat);
}

void UnitRecord::RecordCut(const ChangeRecord::Cut& cut, std::size_t inside)
{
    m_record.AddCut(cut);
    m_colOwn.insert(cut.cKey);
    // A unit inside may have recorded it first, but between the beginning of this change and its end.
    if (const auto found = m_colFirstInside.find(cut.cKey);
        found != m_colFirstInside.end() && found->second > inside)
    {
        m_record.SetBefore(cut.cKey, cut.before);
        m_colFirstInside.erase(found);
    }
}

void UnitRecord::RecordMade(const ChangeRecord::Category& made)
{
    m_record.AddMade(made);
    m_bOwn = true;
}

void UnitRecord::RecordDeleted(const clsCat& cCat)
{
    const std::size_t position = cCat.CatLevel() == 0 ? PositionBefore(cCat) : 0;
    if (cCat.CatLevel() == 0)
        m_colDeletedAt.insert(position);
    m_record.AddDeleted({cCat.CatName(), cCat.CatLevel(), position});
    m_bOwn = true;
    if (!m_bInParts)
        return;
    m_part.colDeleted = {{cCat.CatName(), cCat.CatLevel(), position}};
    WriteAhead({}, {});
}

// The main category's position in the tree as if those that were recorded as deleted were still there.
std::size_t UnitRecord::PositionBefore(const clsCat& cMainCat) const
{
    std::size_t position = m_cState.colMainCats->PositionOf(CategoryKey(cMainCat.CatName(), 0)).value_or(0);
    for (const std::size_t gone : m_colDeletedAt)
        if (gone <= position)
            ++position;
    return position;
}

void UnitRecord::EntryIsOf(const clsCat& cSubCat, const TextKey& cEntryKey, const TextKey& cKey)
{
    m_record.EntryIsOf({cSubCat.CatName(), cSubCat.CatLevel()}, cEntryKey, cKey);
}

// ---- work in parts

void UnitRecord::WorkInParts(const std::wstring& sWhat)
{
    m_bInParts = true;
    m_cState.cUndo.BeginParts(sWhat);
}

void UnitRecord::WriteAhead(std::vector<ChangeRecord::Cut> colCuts,
                            std::vector<ChangeRecord::Category> colMade)
{
    m_part.colCuts = std::move(colCuts);
    m_part.colMade = std::move(colMade);
    m_cState.cUndo.AddPart(m_part);
    m_part = {};
}

// ---- units inside

void UnitRecord::TakeIn(const std::wstring& sWhat, const ChangeRecord& record)
{
    ++m_inside;
    for (const ChangeRecord::Cut& cut : record.colCuts)
        if (!m_record.KnowsCut(cut.cKey))
            m_colFirstInside.emplace(cut.cKey, m_inside);
    m_record.Add(record);
    if (m_sInside.empty())
        m_sInside = sWhat;
    else if (!m_sInside.ends_with(L"..."))
        m_sInside += L"...";
}

void UnitRecord::Renamed(const TextKey& cFrom, const TextKey& cTo)
{
    m_record.Renamed(cFrom, cTo);
    const bool bFrom = m_colOwn.erase(cFrom) != 0;
    const bool bTo = m_colOwn.erase(cTo) != 0;
    if (bFrom)
        m_colOwn.insert(cTo);
    if (bTo)
        m_colOwn.insert(cFrom);
}

// ---- the end

ChangeRecord UnitRecord::End(const Changed& changed)
{
    Close();
    ChangeRecord record = m_record.Take();
    ForgetUnchangedOrders(record);
    ForgetUnchangedCuts(record);
    if (record.IsEmpty())
        return record;
    const auto cuts = static_cast<std::size_t>(
        std::count_if(record.colCuts.begin(), record.colCuts.end(),
                      [this](const ChangeRecord::Cut& cut) { return m_colOwn.contains(cut.cKey); }));
    if (!m_bOwn && cuts == 0)
    {
        if (!m_sInside.empty())
            m_cState.cUndo.Add(m_sInside, record);
    }
    else if (changed)
        changed(record, cuts);
    return record;
}

// A level of which the changes were put back, or that has its order again.
void UnitRecord::ForgetUnchangedOrders(ChangeRecord& record) const
{
    std::erase_if(record.colOrders, [&](const ChangeRecord::Order& order) {
        const std::shared_ptr<clsCat> cSubCat = LevelOf(order.category);
        return cSubCat && HasOrder(*cSubCat->SchedCuts(), order.colKeys);
    });
}

// A cut that is in its levels as before, with the same number and names.
void UnitRecord::ForgetUnchangedCuts(ChangeRecord& record) const
{
    const auto IsAsBefore = [](const ChangeRecord::Cut& cut) { return cut.after == cut.before; };
    if (std::none_of(record.colCuts.begin(), record.colCuts.end(), IsAsBefore))
        return;
    const std::unordered_set<TextKey> colMoved = KeysThatJoinedOrLeft(record);
    std::erase_if(record.colCuts, [&](const ChangeRecord::Cut& cut) {
        return IsAsBefore(cut) && !colMoved.contains(cut.cKey);
    });
}

std::unordered_set<TextKey> UnitRecord::KeysThatJoinedOrLeft(const ChangeRecord& record) const
{
    std::unordered_set<TextKey> colMoved;
    const auto Compare = [&](const std::vector<TextKey>& colBefore, const std::vector<TextKey>& colNow) {
        std::unordered_set<TextKey> colOnlyNow(colNow.begin(), colNow.end());
        for (const TextKey& cKey : colBefore)
            if (colOnlyNow.erase(cKey) == 0)
                colMoved.insert(cKey);
        colMoved.merge(colOnlyNow);
    };
    for (const ChangeRecord::Order& order : record.colOrders)
        if (const std::shared_ptr<clsCat> cSubCat = LevelOf(order.category))
            Compare(order.colKeys, OrderOf(*cSubCat->SchedCuts()));
        else
            Compare(order.colKeys, {});
    for (const ChangeRecord::Category& made : record.colMade)
        if (const std::shared_ptr<clsCat> cSubCat = LevelOf(made))
            Compare({}, OrderOf(*cSubCat->SchedCuts()));
    return colMoved;
}

// The tree's level of that name and number; null when there is none, and for a main category.
std::shared_ptr<clsCat> UnitRecord::LevelOf(const ChangeRecord::Category& category) const
{
    const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(category.sCatName);
    return cMainCat && category.lLevel != 0 ? cMainCat->SubCat(category.lLevel) : nullptr;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "scheduler/GrowingRecord.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <span>
#include <utility>

namespace ravlo
{

namespace
{

bool IsSame(const ChangeRecord::Category& left, const ChangeRecord::Category& right)
{
    return left.lLevel == right.lLevel && EqualIgnoringCase(left.sCatName, right.sCatName);
}

bool EraseFrom(std::vector<ChangeRecord::Category>& colCats, const ChangeRecord::Category& category)
{
    return std::erase_if(colCats, [&](const auto& other) { return IsSame(other, category); }) != 0;
}

// What keys are called after a number of exchanges.
class KeysNow
{
public:
    void Exchange(const TextKey& cLeft, const TextKey& cRight)
    {
        const TextKey cWasLeft = Of(m_colFormer, cLeft);
        const TextKey cWasRight = Of(m_colFormer, cRight);
        Set(cWasLeft, cRight);
        Set(cWasRight, cLeft);
    }
    TextKey Of(const TextKey& cKey) const { return Of(m_colNow, cKey); }

private:
    using Keys = std::unordered_map<TextKey, TextKey>;
    static TextKey Of(const Keys& colKeys, const TextKey& cKey)
    {
        const auto found = colKeys.find(cKey);
        return found == colKeys.end() ? cKey : found->second;
    }
    void Set(const TextKey& cFormer, const TextKey& cNow)
    {
        m_colNow[cFormer] = cNow;
        m_colFormer[cNow] = cFormer;
    }

    Keys m_colNow;
    Keys m_colFormer;
};

} // namespace

bool GrowingRecord::KnowsOrderOf(const ChangeRecord::Category& level) const
{
    return m_colKnownLevels.Exists(CategoryKey(level.sCatName, level.lLevel));
}

void GrowingRecord::AddOrder(ChangeRecord::Order order)
{
    const TextKey cLevel(CategoryKey(order.category.sCatName, order.category.lLevel));
    if (m_colKnownLevels.Exists(cLevel))
        return;
    m_record.colOrders.push_back(std::move(order));
    m_colKnownLevels.Add(cLevel, {});
}

void GrowingRecord::AddCut(const ChangeRecord::Cut& cut)
{
    const auto [found, bNew] = m_colPositions.try_emplace(cut.cKey, m_record.colCuts.size());
    if (!bNew)
    {
        m_record.colCuts[found->second].after = cut.after;
        return;
    }
    try
    {
        m_record.colCuts.push_back(cut);
    }
    catch (...)
    {
        m_colPositions.erase(found);
        throw;
    }
}

void GrowingRecord::SetBefore(const TextKey& cKey, const ChangeRecord::State& before)
{
    m_record.colCuts[m_colPositions.at(cKey)].before = before;
}

void GrowingRecord::AddMade(const ChangeRecord::Category& made)
{
    const bool bWasThere = EraseFrom(m_record.colDeleted, made);
    if (bWasThere && made.lLevel != 0)
        AddOrder({made, {}}); // it was empty, or its order is known
    if (bWasThere)
        return;
    m_record.colMade.push_back(made);
    if (made.lLevel != 0)
        m_colKnownLevels.Add(TextKey(CategoryKey(made.sCatName, made.lLevel)), {}); // it had no order
}

void GrowingRecord::AddDeleted(const ChangeRecord::Category& deleted)
{
    if (!EraseFrom(m_record.colMade, deleted))
        m_record.colDeleted.push_back(deleted);
}

void GrowingRecord::Add(const ChangeRecord& later)
{
    for (const ChangeRecord::Order& order : later.colOrders)
        AddOrder(order);
    for (const ChangeRecord::Cut& cut : later.colCuts)
        AddCut(cut);
    // The reverse of the order in which a reversal works.
    for (const ChangeRecord::Category& made : later.colMade)
        AddMade(made);
    for (const ChangeRecord::Category& deleted : later.colDeleted)
        AddDeleted(deleted);
}

// ---- other keys

void GrowingRecord::Renamed(const TextKey& cFrom, const TextKey& cTo)
{
    m_colExchanges.push_back({cFrom, cTo, m_record.colOrders.size()});
    auto from = m_colPositions.extract(cFrom);
    auto to = m_colPositions.extract(cTo);
    for (auto [pNode, pKey] : {std::pair(&from, &cTo), std::pair(&to, &cFrom)})
        if (!pNode->empty())
        {
            m_record.colCuts[pNode->mapped()].cKey = *pKey;
            pNode->key() = *pKey;
            m_colPositions.insert(std::move(*pNode));
        }
}

void GrowingRecord::EntryIsOf(const ChangeRecord::Category& level, const TextKey& cEntryKey,
                              const TextKey& cKey)
{
    ExchangeKeys();
    for (ChangeRecord::Order& order : m_record.colOrders)
        if (IsSame(order.category, level) &&
            std::find(order.colKeys.begin(), order.colKeys.end(), cKey) == order.colKeys.end())
            std::replace(order.colKeys.begin(), order.colKeys.end(), cEntryKey, cKey);
}

void GrowingRecord::ExchangeKeys()
{
    if (m_colExchanges.empty())
        return;
    for (std::size_t order = 0; order < m_record.colOrders.size(); ++order)
    {
        KeysNow keys;
        for (const Exchange& exchange : m_colExchanges)
            if (exchange.orders > order)
                keys.Exchange(exchange.cFrom, exchange.cTo);
        for (TextKey& cKey : m_record.colOrders[order].colKeys)
            cKey = keys.Of(cKey);
    }
    m_colExchanges.clear();
}

const ChangeRecord& GrowingRecord::Record()
{
    ExchangeKeys();
    return m_record;
}

// The order of a level that the change has made was recorded by others, who found it made.
ChangeRecord GrowingRecord::Take()
{
    ExchangeKeys();
    const auto IsMade = [this](const ChangeRecord::Order& order) {
        return std::any_of(m_record.colMade.begin(), m_record.colMade.end(),
                           [&](const auto& made) { return IsSame(made, order.category); });
    };
    std::erase_if(m_record.colOrders, IsMade);
    std::stable_partition(m_record.colMade.begin(), m_record.colMade.end(),
                          [](const auto& made) { return made.lLevel == 0; });
    ChangeRecord record = std::move(m_record);
    *this = {};
    return record;
}

} // namespace ravlo

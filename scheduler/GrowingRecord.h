// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "scheduler/ChangeRecord.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A record to which later changes are added: it takes back all of them. The first order of a level and the
// first state of a cut count.
class GrowingRecord
{
public:
    bool KnowsCut(const TextKey& cKey) const { return m_colPositions.contains(cKey); }
    bool KnowsOrderOf(const ChangeRecord::Category& level) const;

    // Ignored when the level's order is known.
    void AddOrder(ChangeRecord::Order order);
    void AddCut(const ChangeRecord::Cut& cut);
    // Precondition: the cut is known.
    void SetBefore(const TextKey& cKey, const ChangeRecord::State& before);
    // What was deleted and is made again, or the other way round, is in neither list.
    void AddMade(const ChangeRecord::Category& made);
    void AddDeleted(const ChangeRecord::Category& deleted);
    void Add(const ChangeRecord& later);

    // A cut has another key from now on; what the record says of the two keys is exchanged.
    void Renamed(const TextKey& cFrom, const TextKey& cTo);
    // In this level's order, an entry was under another key than its cut.
    void EntryIsOf(const ChangeRecord::Category& level, const TextKey& cEntryKey, const TextKey& cKey);

    // With present keys.
    const ChangeRecord& Record();
    ChangeRecord Take();

private:
    struct Exchange
    {
        TextKey cFrom;
        TextKey cTo;
        std::size_t orders; // recorded before
    };
    void ExchangeKeys();

    ChangeRecord m_record;
    std::unordered_map<TextKey, std::size_t> m_colPositions; // in m_record.colCuts
    OrderedKeyedCollection<char> m_colKnownLevels;           // by CategoryKey
    std::vector<Exchange> m_colExchanges;                    // not made in the orders yet
};

} // namespace ravlo

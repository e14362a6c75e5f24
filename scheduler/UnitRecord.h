// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/GrowingRecord.h"
#include "scheduler/UndoSteps.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ravlo
{

struct SchedulerState;

// The record of a unit of work while it runs. A host that is called in that time may run others: they become
// part of the unit, so that one undo brings back everything from before it. A step of their own would restore
// an order from its middle. The unit itself cannot be undone before it ends.
class UnitRecord final : private UndoSteps::OpenUnit
{
public:
    explicit UnitRecord(SchedulerState& cState);
    ~UnitRecord() { Close(); }
    UnitRecord(const UnitRecord&) = delete;
    UnitRecord& operator=(const UnitRecord&) = delete;

    // Call before a level changes. Cheap when its order is known.
    void RecordOrder(const std::shared_ptr<clsCat>& cSubCat);
    // As RecordOrder, for a unit whose work is the order.
    void Reorders(const std::shared_ptr<clsCat>& cSubCat)
    {
        RecordOrder(cSubCat);
        m_bOwn = true;
    }
    // Call for a level that the unit makes: it has no earlier order.
    void HasNoOrder(const std::shared_ptr<clsCat>& cMade) { m_colSeen.insert(cMade); }
    // A cut that is changed several times is recorded with its first state and its last. inside: Inside()
    // when the unit began to change it.
    void RecordCut(const ChangeRecord::Cut& cut, std::size_t inside);
    void RecordMade(const ChangeRecord::Category& made);
    // Call before removing this category from the tree.
    void RecordDeleted(const clsCat& cCat);
    // A level had the cut's entry under another key: the cut returns under its own.
    void EntryIsOf(const clsCat& cSubCat, const TextKey& cEntryKey, const TextKey& cKey);

    // The unit commits its work in several parts: a killed one can be undone at the next start. Call before
    // the first change.
    void WorkInParts(const std::wstring& sWhat);
    // Call before the changes of these cuts are committed, with the categories made for them.
    void WriteAhead(std::vector<ChangeRecord::Cut> colCuts, std::vector<ChangeRecord::Category> colMade);

    // Number of units so far that ran inside this one.
    std::size_t Inside() const noexcept { return m_inside; }
    // Number of cuts this unit has recorded itself, each once.
    std::size_t OwnCuts() const noexcept { return m_colOwn.size(); }

    // Calls changed with the record of what differs now, unless nothing does, and with the number of the cuts
    // in it that the unit itself changed. When only units inside it have changed something, they are the
    // step. Returns the record. Nothing is recorded afterwards.
    using Changed = std::function<void(const ChangeRecord& record, std::size_t cuts)>;
    ChangeRecord End(const Changed& changed);

private:
    void TakeIn(const std::wstring& sWhat, const ChangeRecord& record) override;
    void Renamed(const TextKey& cFrom, const TextKey& cTo) override;
    void Close() noexcept;
    std::size_t PositionBefore(const clsCat& cMainCat) const;
    void ForgetUnchangedOrders(ChangeRecord& record) const;
    void ForgetUnchangedCuts(ChangeRecord& record) const;
    std::unordered_set<TextKey> KeysThatJoinedOrLeft(const ChangeRecord& record) const;
    std::shared_ptr<clsCat> LevelOf(const ChangeRecord::Category& category) const;

    SchedulerState& m_cState;
    GrowingRecord m_record;
    std::unordered_set<std::shared_ptr<clsCat>> m_colSeen; // levels whose orders are known
    std::unordered_set<TextKey> m_colOwn;                  // cuts
    std::set<std::size_t> m_colDeletedAt;                  // positions of deleted main categories
    bool m_bOwn = false;                                   // the unit itself has changed more than cuts
    bool m_bOpen = true;
    bool m_bInParts = false;
    ChangeRecord m_part; // what is not written ahead yet, but for cuts
    std::size_t m_inside = 0;
    std::unordered_map<TextKey, std::size_t> m_colFirstInside; // cuts: which unit inside recorded them first
    std::wstring m_sInside;                                    // what the units inside did
};

} // namespace ravlo

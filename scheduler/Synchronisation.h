// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/NameLists.h"
#include "scheduler/SchedulerState.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace ravlo
{

class CutChanges;

// Follows the database: places the cuts it adds, moves those it modifies, removes those it removes, saves the
// main categories concerned and refreshes the library window. A notification is handled when nothing else
// runs; one that arrives during a population, an edit or another notification is queued until that ends.
class Synchronisation : private DataBaseEvents
{
    enum class Kind
    {
        Added,
        Modified,
        Removed,
    };

public:
    explicit Synchronisation(SchedulerState& cState) noexcept : m_cState(cState) {}
    ~Synchronisation() override { Stop(); }

    struct Notification
    {
        Kind eKind;
        Cuts colCuts;
    };
    using Waiting = std::deque<Notification>;
    // Empties the queue and returns it: a tree that is about to be read already includes these changes.
    Waiting TakeWaiting() noexcept { return std::exchange(m_colWaiting, {}); }
    // Listens to cDataBase instead of the previous database. cOwner is kept alive while a notification is
    // handled, and only then.
    void Follow(const std::shared_ptr<DataBase>& cDataBase, std::weak_ptr<void> cOwner);
    // Listens to cDataBase again, whose tree stays in use. Queues colWaiting, and what it has announced since
    // if it was followed all the time.
    void FollowAgain(const std::shared_ptr<DataBase>& cDataBase, std::weak_ptr<void> cOwner,
                     Waiting colWaiting);
    void Stop() noexcept;

    // While one exists, notifications are queued: for work that changes cuts itself, or that must not be
    // interrupted. Handles the queue when the last one ends.
    class Hold
    {
    public:
        explicit Hold(Synchronisation& cSync) noexcept : m_cSync(cSync) { ++m_cSync.m_lHoldCount; }
        ~Hold()
        {
            if (--m_cSync.m_lHoldCount == 0)
                m_cSync.HandleWaiting();
        }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        Synchronisation& m_cSync;
    };

private:
    void CutsAdded(const Cuts& colCuts) override { Notify(Kind::Added, colCuts); }
    void CutsModified(const Cuts& colCuts) override { Notify(Kind::Modified, colCuts); }
    void CutsRemoved(const Cuts& colCuts) override { Notify(Kind::Removed, colCuts); }
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus) override;

    void Notify(Kind eKind, const Cuts& colCuts);
    void HandleWaiting() noexcept;
    void HandleAdded(const Cuts& colCuts);
    void HandleModified(const Cuts& colCuts);
    void HandleRemoved(const Cuts& colCuts);
    void AddCuts(const Cuts& colCuts, CutChanges& cChanges);
    std::shared_ptr<Cut> OwnOf(const std::shared_ptr<Cut>& cAnnounced, const TextKey& cKey) const;
    void TakeObject(const std::shared_ptr<Cut>& cCut, const TextKey& cKey) const;
    void AddCut(const std::shared_ptr<Cut>& cAnnounced, NameLists& cNameLists, CutChanges& cChanges);
    void ModifyCut(const std::shared_ptr<Cut>& cAnnounced, CutChanges& cChanges);
    void RemoveEverywhere(const std::shared_ptr<Cut>& cCut, CutChanges& cChanges);
    std::function<bool()> WhileNobodyReloads() const;
    void RefreshLibrary(const wchar_t* sLogLine);

    SchedulerState& m_cState;
    std::shared_ptr<DataBase> m_cFollowed;
    std::weak_ptr<void> m_cOwner;
    Waiting m_colWaiting;
    int m_lHoldCount = 0;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/SavedFiles.h"
#include "platform/Clock.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// What a manager knows of the orders of its main categories and of their files: which orders are newer than
// their files, which files are to be deleted, and when saving or deleting one last failed. Names are compared
// without regard to case, as files are. A stamp says when; what happened later has a greater one.
class UnsavedOrders
{
public:
    using Stamp = SavedFiles::Stamp;

    // What failed is retried at most once in this time, except at the end and before the files are read.
    static constexpr std::uint32_t lRetryMs = 1000;

    explicit UnsavedOrders(const Clock& cClock) noexcept : m_cClock(cClock) {}

    // The file was read, by a reading that began at lAt; 0: it was not applied in full.
    void Read(const std::wstring& sCatName, Stamp lAt) { Of(sCatName).lRead = lAt; }
    // The order changed. Whoever changed it saves it, or leaves that to the host.
    void Changed(const std::wstring& sCatName, Stamp lAt) { Of(sCatName).lNewest = lAt; }
    // A save, or a deletion of the file, failed: it is to be retried.
    void SaveFailed(const std::wstring& sCatName, Stamp lAt);
    void DeletionFailed(const std::wstring& sCatName, Stamp lAt);
    // What was known at lAt is on the disk: saved, or deleted. A pick during a save may have changed the
    // order since.
    void Settled(const std::wstring& sCatName, Stamp lAt);
    // There is no such category any more.
    void Forget(const std::wstring& sCatName);
    void ForgetAll() noexcept { m_colOrders.clear(); }

    // Whether the file is to be deleted, and no order has been saved since.
    bool IsToDelete(const std::wstring& sCatName) const;
    // Whether the order is newer than what was last read from its file: it changed since, a change from
    // before is not saved, or the file was not applied in full.
    bool IsNewerThanItsReading(const std::wstring& sCatName) const;
    // Whether the category may be saved now: it did not fail a moment ago.
    bool IsDue(const std::wstring& sCatName) const;

    enum class Which
    {
        Due,    // failed, and not a moment ago
        Failed, // to be retried
        All,    // these, and changes that the host saves later
    };
    std::vector<std::wstring> Names(Which eWhich) const;
    // Of the others that are due, the one that has waited longest.
    std::optional<std::wstring> LongestDueExcept(const std::wstring& sCatName) const;

private:
    struct Order
    {
        std::wstring sCatName;
        Stamp lRead = 0;    // when the last reading began; 0: it was not applied in full
        Stamp lNewest = 0;  // when it last changed
        Stamp lSettled = 0; // what was known then is on the disk
        Stamp lFailed = 0;  // when saving or deleting last failed
        Stamp lDeletion = 0;
        std::uint32_t lFailedAt = 0; // tick count

        bool IsUnsaved() const noexcept { return lNewest > lSettled; }
        bool HasFailed() const noexcept { return lFailed > lSettled; }
    };
    Order& Of(const std::wstring& sCatName);
    const Order* Find(const std::wstring& sCatName) const;
    std::uint32_t WaitOf(const Order& order) const { return m_cClock.TickCount() - order.lFailedAt; }

    const Clock& m_cClock;
    std::unordered_map<std::wstring, Order> m_colOrders; // by folded name
};

} // namespace ravlo

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

// Records, for each main category of a manager: whether its order is newer than its file, whether the file is
// to be deleted, and when saving or deleting last failed. Names ignore case, as files do. A later event has a
// greater stamp.
class UnsavedOrders
{
public:
    using Stamp = SavedFiles::Stamp;

    // A failure is retried at most once in this time, except at the end and before the files are read.
    static constexpr std::uint32_t lRetryMs = 1000;

    explicit UnsavedOrders(const Clock& cClock) noexcept : m_cClock(cClock) {}

    // The file was read; the reading began at the stamp; 0: it was not applied in full.
    void Read(const std::wstring& sCatName, Stamp stamp) { Of(sCatName).read = stamp; }
    // The order changed. The caller saves it, or leaves that to the host.
    void Changed(const std::wstring& sCatName, Stamp stamp) { Of(sCatName).newest = stamp; }
    // A save, or the deletion of the file, failed and must be retried.
    void SaveFailed(const std::wstring& sCatName, Stamp stamp);
    void DeletionFailed(const std::wstring& sCatName, Stamp stamp);
    // The state of the stamp is on the disk: saved, or deleted. Picks during a save may have changed the
    // order since.
    void Settled(const std::wstring& sCatName, Stamp stamp);
    // The category no longer exists.
    void Forget(const std::wstring& sCatName);
    void ForgetAll() noexcept { m_colOrders.clear(); }

    // Whether the file must still be deleted; false when an order was saved since.
    bool IsToDelete(const std::wstring& sCatName) const;
    // Whether the order is newer than the last reading of its file: it has changed since, an earlier change
    // is not saved, or the file was not applied in full.
    bool IsNewerThanItsReading(const std::wstring& sCatName) const;
    // Whether the category may be saved now: no save failed a moment ago.
    bool IsDue(const std::wstring& sCatName) const;

    enum class Which
    {
        Due,    // failed, but not a moment ago
        Failed, // failed
        All,    // all unsaved: those that failed, and those that the host saves later
    };
    std::vector<std::wstring> Names(Which eWhich) const;
    // The other category that is due and has waited longest.
    std::optional<std::wstring> LongestDueExcept(const std::wstring& sCatName) const;

private:
    struct Order
    {
        std::wstring sCatName;
        Stamp read = 0;    // when the last reading began; 0: it was not applied in full
        Stamp newest = 0;  // when it last changed
        Stamp settled = 0; // the state of that time is on the disk
        Stamp failed = 0;  // when saving or deleting last failed
        Stamp deletion = 0;
        std::uint32_t lFailedAt = 0; // tick count

        bool IsUnsaved() const noexcept { return newest > settled; }
        bool HasFailed() const noexcept { return failed > settled; }
    };
    Order& Of(const std::wstring& sCatName);
    const Order* Find(const std::wstring& sCatName) const;
    std::uint32_t WaitOf(const Order& order) const { return m_cClock.TickCount() - order.lFailedAt; }

    const Clock& m_cClock;
    std::unordered_map<std::wstring, Order> m_colOrders; // by folded name
};

} // namespace ravlo

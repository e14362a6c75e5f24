// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "base/RuntimeError.h"
#include "media/DataBase.h"
#include "platform/Clock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ravlo
{

// The last-played times that a database has refused to take so far. They are written later, so that a
// database that is locked for a while neither loses a play nor delays the next ones: while times are pending,
// a play tries to write at most once a second, and stops at the first refusal.
class PendingPlayTimes
{
public:
    explicit PendingPlayTimes(const Clock& cClock) noexcept : m_cClock(cClock) {}

    std::size_t Count() const noexcept { return m_colPending.Count() + m_colLeft.size(); }

    // When the cut last played: the pending time of its key, else the cut's own. Errors of the cut are
    // thrown.
    DateTime TimeOf(const Cut& cCut) const;

    // Gives the database's cut the time of its play, now or later, and then writes what else is pending.
    // Returns the refusal, if there was one; the cut's time is pending then. Throws only when the cut has no
    // readable key.
    [[nodiscard]] std::optional<RuntimeError> Write(const std::shared_ptr<Cut>& cCut, DateTime dtPlayed,
                                                    const DataBase& cDataBase);

    // Tries to write every pending time at once; gives up after mostRefusals. A time is dropped when the cut
    // has a later one by now. Returns the last refusal.
    [[nodiscard]] std::optional<RuntimeError> WriteAll(const DataBase& cDataBase, std::size_t mostRefusals);

    // Another database is in use from now on. What is pending is for cLeft, whatever keys the other one has.
    void Leave(const std::shared_ptr<const DataBase>& cLeft);

private:
    struct Pending
    {
        std::shared_ptr<Cut> cCut;
        DateTime dtPlayed = 0;
    };
    struct Left
    {
        TextKey cKey;
        Pending pending;
        std::shared_ptr<const DataBase> cDataBase;
    };

    bool IsDue() const noexcept;
    void Keep(const TextKey& cKey, const std::shared_ptr<Cut>& cCut, DateTime dtPlayed);
    // Writes one time, or drops it. Errors of the database are thrown; the time is pending still.
    void WriteOne(const TextKey& cKey, const DataBase& cDataBase);

    static std::shared_ptr<Cut> OwnOf(const Left& left, const DataBase& cPresent);

    const Clock& m_cClock;
    OrderedKeyedCollection<Pending>
        m_colPending; // of the database in use; refused ones go to the back, so that none hinders the others
    std::vector<Left> m_colLeft;    // of others
    std::uint32_t m_lRefusedAt = 0; // tick of the last refusal
    bool m_bWriting = false; // a database may call back while it writes: that call leaves the others alone
};

} // namespace ravlo

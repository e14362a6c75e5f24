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

// Last-played times that a database has refused so far. They are written later, so that a temporarily locked
// database neither loses a play nor delays the next ones: while times are pending, a play tries to write at
// most once a second and stops at the first refusal.
class PendingPlayTimes
{
public:
    explicit PendingPlayTimes(const Clock& cClock) noexcept : m_cClock(cClock) {}

    std::size_t Count() const noexcept { return m_colPending.Count() + m_colLeft.size(); }

    // When the cut last played: the pending time of its key, else the cut's own. Throws the cut's errors.
    DateTime TimeOf(const Cut& cCut) const;

    // Gives the database's cut the time of its play, now or later, and then writes other pending times.
    // Returns the database's refusal, if any; the time is then pending. Throws only when the cut has no
    // readable key.
    [[nodiscard]] std::optional<RuntimeError> Write(const std::shared_ptr<Cut>& cCut, DateTime dtPlayed,
                                                    const DataBase& cDataBase);

    // Tries to write every pending time now; gives up after mostRefusals. Drops a time when the cut already
    // has a later one. Returns the last refusal.
    [[nodiscard]] std::optional<RuntimeError> WriteAll(const DataBase& cDataBase, std::size_t mostRefusals);

    // Call when the manager changes from cLeft to another database. The times that are pending now remain
    // those of cLeft's cuts, even when the new database has cuts with the same keys.
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
    // Writes one time, or drops it. Throws the database's errors; the time then stays pending.
    void WriteOne(const TextKey& cKey, const DataBase& cDataBase);

    static std::shared_ptr<Cut> OwnOf(const Left& left, const DataBase& cPresent);

    const Clock& m_cClock;
    // Times for the database in use. A refused one moves to the back, so that it does not block the others.
    OrderedKeyedCollection<Pending> m_colPending;
    std::vector<Left> m_colLeft;    // for databases used before
    std::uint32_t m_lRefusedAt = 0; // tick of the last refusal
    bool m_bWriting = false; // a database may call back while it writes: that call writes no other times
};

} // namespace ravlo

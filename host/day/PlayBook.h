// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

namespace ravlo
{

// The media database as the book of plays needs it. Throws RuntimeError; 70 means that another program is
// writing at the moment.
class PlayStore
{
public:
    virtual ~PlayStore() = default;
    // Writes the plays that the database has only gathered so far to the disk, all or none.
    virtual void Write() = 0;
    // Whether dtWhen is the cut's last-played time; also true when there is no such cut.
    virtual bool Has(const std::wstring& sKey, DateTime dtWhen) = 0;
    virtual void Put(const std::wstring& sKey, DateTime dtWhen) = 0;
};

// The plays of one run, and whether the database has them. The scheduler reports each play to the database.
// While the database refuses a write, the run continues, and the book adds the missing plays afterwards.
class PlayBook
{
public:
    // A clock in milliseconds, and a way to wait.
    struct Timing
    {
        std::function<std::int64_t()> ticks;
        std::function<void(std::int64_t lmS)> sleep;
    };
    PlayBook(PlayStore& cStore, Timing timing) : m_cStore(cStore), m_timing(std::move(timing)), m_tried(Now())
    {
    }

    // A play that was reported to the scheduler.
    void Add(const std::wstring& sKey, DateTime dtWhen);

    // Call between plays. Writes when a second has passed since the last attempt, so that a power cut loses
    // the plays of one second at most. A failure is kept for later.
    void Tick();

    // Adds the missing plays. While another program is writing, retries for up to half a minute and calls
    // waiting, which may tell the user; any other failure ends the attempts at once. Returns an empty text
    // when the database has every play, else how many are missing and why.
    std::wstring Settle(const std::function<void()>& waiting);

private:
    struct Attempt
    {
        std::size_t missing = 0;
        bool bBusy = false; // the last failure was 70: another program is writing
        std::wstring sReason;
    };
    using Plays = std::unordered_map<TextKey, DateTime>; // the last play of each cut
    std::int64_t Now() const { return m_timing.ticks(); }
    Attempt BringIn();
    void Write();

    PlayStore& m_cStore;
    Timing m_timing;
    std::int64_t m_tried; // when a write was last tried
    Plays m_plays;
    Plays m_unwritten; // the plays since the last write
};

} // namespace ravlo

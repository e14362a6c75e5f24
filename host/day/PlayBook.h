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

// The media database as the book of plays needs it. What it cannot do throws RuntimeError; 70 means that
// another program is writing just now.
class PlayStore
{
public:
    virtual ~PlayStore() = default;
    // Brings the plays that the database has only gathered so far onto the disk, all or none.
    virtual void Write() = 0;
    // Whether the cut with this key has the time as that of its last play; true as well when there is no such
    // cut.
    virtual bool Has(const std::wstring& sKey, DateTime dtWhen) = 0;
    virtual void Put(const std::wstring& sKey, DateTime dtWhen) = 0;
};

// The plays of one run, and whether the database has them. The scheduler reports each play to the database;
// while that refuses a write, the run goes on, and this brings in afterwards what is missing.
class PlayBook
{
public:
    // Time that passes, in milliseconds, and a way to let some pass.
    struct World
    {
        std::function<std::int64_t()> ticks;
        std::function<void(std::int64_t lmS)> sleep;
    };
    PlayBook(PlayStore& cStore, World world) : m_cStore(cStore), m_world(std::move(world)), m_tried(Now()) {}

    // A play that was reported to the scheduler.
    void Add(const std::wstring& sKey, DateTime dtWhen);

    // To be called between plays: writes when a second has passed since the last attempt, so that a power cut
    // loses a second's plays at most. A failure is kept for later.
    void Tick();

    // Brings in what is missing. While another program is writing, waits for up to half a minute and calls
    // waiting, which may tell the user; any other failure ends the attempts at once. Empty when the database
    // has every play, else how many are missing and why.
    std::wstring Settle(const std::function<void()>& waiting);

private:
    struct Attempt
    {
        std::size_t missing = 0;
        bool bBusy = false; // and nothing worse
        std::wstring sReason;
    };
    using Plays = std::unordered_map<TextKey, DateTime>; // the last one of each cut
    std::int64_t Now() const { return m_world.ticks(); }
    Attempt BringIn();
    void Write();

    PlayStore& m_cStore;
    World m_world;
    std::int64_t m_tried; // when a write was last tried
    Plays m_plays;
    Plays m_unwritten; // those since the last write
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"
#include "modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace ravlo
{

// How often each cut played within the last 28 days, by the record of the database. The record is read whole
// once an hour, which takes a few hundredths of a second, and its end once a minute: so the plays of the last
// hours are known to the minute, and a play counts for up to an hour more than 28 days.
class RecentPlays
{
public:
    static constexpr double dDays = 28;

    explicit RecentPlays(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // As DataBase::RecordedPlays, of the database in use.
    std::function<std::optional<std::wstring>(DateTime dtFrom, DateTime dtTo)> Recorded;
    // The database in use. The record of another one is read whole, within a minute.
    std::function<std::shared_ptr<void>()> Source;

    // Nothing when the database keeps no record; more may have played when the record is younger than the
    // days.
    struct Number
    {
        std::size_t plays = 0;
        bool bAtLeast = false;
    };
    std::optional<Number> Of(const TextKey& cKey);

private:
    using Plays = std::unordered_map<TextKey, std::size_t>;
    void Read();
    void ReadWhole(DateTime dtNow);
    bool GoesBackBeyond(DateTime dtBegin) const;
    std::optional<Plays> PlaysIn(DateTime dtFrom, DateTime dtTo) const;

    ModScheduler& m_cMod;
    std::optional<std::uint32_t> m_lReadAt; // by the tick count
    std::weak_ptr<void> m_cSource;          // what m_colPlays is of
    DateTime m_dtWhole = 0;                 // when the record was read whole
    std::optional<Plays> m_colPlays;        // those until an hour before that
    Plays m_colLatest;                      // those after
    bool m_bWhole = false;                  // the record goes back beyond the days
};

} // namespace ravlo

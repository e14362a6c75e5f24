// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"
#include "modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

namespace ravlo
{

// How often each cut played within the last 28 days, by the record of the database.
class RecentPlays
{
public:
    static constexpr double dDays = 28;

    explicit RecentPlays(ModScheduler& cMod) noexcept : m_cMod(cMod) {}

    // As DataBase::RecordedPlays, of the database in use.
    std::function<std::optional<std::wstring>(DateTime dtFrom, DateTime dtTo)> Recorded;

    // Nothing when the database keeps no record; more may have played when the record is younger than the
    // days. Reads the record at most once a minute, in one call.
    struct Number
    {
        std::size_t plays = 0;
        bool bAtLeast = false;
    };
    std::optional<Number> Of(const TextKey& cKey);

private:
    using Plays = std::unordered_map<TextKey, std::size_t>;
    void Read();
    void Count(const std::wstring& sCsv, const std::wstring& sFrom);

    ModScheduler& m_cMod;
    std::optional<std::uint32_t> m_lReadAt; // by the tick count
    std::optional<Plays> m_colPlays;
    bool m_bWhole = false; // the record goes back beyond the days
};

} // namespace ravlo

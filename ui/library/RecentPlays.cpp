// SPDX-License-Identifier: MIT
#include "ui/library/RecentPlays.h"

#include "base/Utf8.h"
#include "base/csv/CsvReader.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::uint32_t lMsBetweenReadings = 60'000;
constexpr DateTime dtHour = 1.0 / 24;

template <class Plays> std::size_t NumberIn(const Plays& colPlays, const TextKey& cKey)
{
    const auto found = colPlays.find(cKey);
    return found == colPlays.end() ? 0 : found->second;
}

// Calls play with the key of each line, if the heading names such a column.
class PlaysSink final : public CsvSink
{
public:
    explicit PlaysSink(std::function<void(const std::string& key)> play) : m_play(std::move(play)) {}

    bool HasColumn() const noexcept { return m_key.has_value(); }
    void OnRow(std::size_t, std::span<const std::string> fields) override
    {
        if (!std::exchange(m_bHeading, true))
        {
            const auto found = std::find(fields.begin(), fields.end(), "key");
            if (found != fields.end())
                m_key = static_cast<std::size_t>(found - fields.begin());
        }
        else if (m_key && *m_key < fields.size())
            m_play(fields[*m_key]);
    }
    void OnBadRow(std::size_t, CsvFault) override {}

private:
    std::function<void(const std::string& key)> m_play;
    bool m_bHeading = false;
    std::optional<std::size_t> m_key;
};

} // namespace

std::optional<RecentPlays::Number> RecentPlays::Of(const TextKey& cKey)
{
    const std::uint32_t lNow = m_cMod.Ports().cClock.TickCount();
    if (!m_lReadAt || lNow - *m_lReadAt >= lMsBetweenReadings)
    {
        m_lReadAt = lNow; // first: the database may let others run, which paint the list
        Read();
    }
    if (!m_colPlays)
        return std::nullopt;
    return Number{NumberIn(*m_colPlays, cKey) + NumberIn(m_colLatest, cKey), !m_bWhole};
}

void RecentPlays::Read()
{
    const DateTime dtNow = m_cMod.Ports().cClock.Now();
    try
    {
        const std::shared_ptr<void> cSource = Source ? Source() : nullptr;
        const bool bOther = cSource != m_cSource.lock();
        if (bOther || !m_colPlays || dtNow < m_dtWhole || dtNow >= m_dtWhole + dtHour)
        {
            m_bWhole = m_bWhole && !bOther;
            ReadWhole(dtNow);
            m_cSource = cSource;
        }
        else
            m_colLatest = PlaysIn(m_dtWhole - dtHour, dtNow).value_or(Plays());
    }
    catch (...)
    {
        m_colPlays.reset();
        m_cMod.LogError(L"RecordedPlays", CurrentError());
    }
}

// The last hour is read again each minute: hosts may record a play some time after it began.
void RecentPlays::ReadWhole(DateTime dtNow)
{
    std::optional<Plays> colPlays = PlaysIn(dtNow - dDays, dtNow - dtHour);
    m_colLatest = colPlays ? PlaysIn(dtNow - dtHour, dtNow).value_or(Plays()) : Plays();
    m_bWhole = colPlays && (m_bWhole || GoesBackBeyond(dtNow - dDays));
    m_colPlays = std::move(colPlays);
    m_dtWhole = dtNow;
}

// Looks at the day before first: a station that plays each day has plays there, and few are read.
bool RecentPlays::GoesBackBeyond(DateTime dtBegin) const
{
    const auto bAny = [this](DateTime dtFrom, DateTime dtTo) {
        const std::optional<Plays> colPlays = PlaysIn(dtFrom, dtTo);
        return colPlays && !colPlays->empty();
    };
    return bAny(dtBegin - 1, dtBegin) || bAny(dtBegin - dDays, dtBegin - 1);
}

std::optional<RecentPlays::Plays> RecentPlays::PlaysIn(DateTime dtFrom, DateTime dtTo) const
{
    const std::optional<std::wstring> sCsv = Recorded ? Recorded(dtFrom, dtTo) : std::nullopt;
    if (!sCsv)
        return std::nullopt;
    Plays colPlays;
    PlaysSink cSink([&](const std::string& key) { ++colPlays[TextKey(TextFromStore(key))]; });
    ReadCsv(Utf8Of(*sCsv), cSink);
    return cSink.HasColumn() ? std::optional(std::move(colPlays)) : std::nullopt;
}

} // namespace ravlo

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

// Calls play with the time and the key of each line, if the heading names such columns.
class PlaysSink final : public CsvSink
{
public:
    using Play = std::function<void(const std::string& start, const std::string& key)>;
    explicit PlaysSink(Play play) : m_play(std::move(play)) {}

    bool HasColumns() const noexcept { return m_start && m_key; }
    void OnRow(std::size_t, std::span<const std::string> fields) override
    {
        if (!std::exchange(m_bHeading, true))
        {
            m_start = ColumnOf(fields, "start");
            m_key = ColumnOf(fields, "key");
        }
        else if (HasColumns() && std::max(*m_start, *m_key) < fields.size())
            m_play(fields[*m_start], fields[*m_key]);
    }
    void OnBadRow(std::size_t, CsvFault) override {}

private:
    static std::optional<std::size_t> ColumnOf(std::span<const std::string> fields, const char* sName)
    {
        const auto found = std::find(fields.begin(), fields.end(), sName);
        return found == fields.end() ? std::nullopt
                                     : std::optional(static_cast<std::size_t>(found - fields.begin()));
    }

    Play m_play;
    bool m_bHeading = false;
    std::optional<std::size_t> m_start;
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
    const auto found = m_colPlays->find(cKey);
    return Number{found == m_colPlays->end() ? 0 : found->second, !m_bWhole};
}

// Asks for as many days more, whose plays show that the record is older than the days.
void RecentPlays::Read()
{
    const DateTime dtNow = m_cMod.Ports().cClock.Now();
    try
    {
        const std::optional<std::wstring> sCsv = Recorded ? Recorded(dtNow - 2 * dDays, dtNow) : std::nullopt;
        m_colPlays.reset();
        if (sCsv)
            Count(*sCsv, IsoText(dtNow - dDays));
    }
    catch (...)
    {
        m_colPlays.reset();
        m_cMod.LogError(L"RecordedPlays", CurrentError());
    }
}

void RecentPlays::Count(const std::wstring& sCsv, const std::wstring& sFrom)
{
    const std::string from = Utf8Of(sFrom);
    Plays colPlays;
    m_bWhole = false;
    PlaysSink cSink([&](const std::string& start, const std::string& key) {
        if (start < from) // such texts sort as their times do
            m_bWhole = true;
        else
            ++colPlays[TextKey(TextFromStore(key))];
    });
    ReadCsv(Utf8Of(sCsv), cSink);
    if (cSink.HasColumns())
        m_colPlays = std::move(colPlays);
}

} // namespace ravlo

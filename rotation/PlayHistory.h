// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/DataBase.h"
#include "rotation/ArtistNames.h"
#include "rotation/PendingPlayTimes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ravlo
{

// The plays of a history as lists, to make another one of: of cuts, or of what a copy has in their place.
// Maps would cost a block of memory an entry.
template <class Played> struct PlayLists
{
    struct ByText
    {
        TextKey cText;
        Played played;
    };
    struct Report
    {
        Credit credit;
        Played played;
        std::uint64_t number; // rises with every report
    };

    std::vector<ByText> artists; // by the names below
    std::vector<ByText> titles;
    std::vector<ByText> albums;
    std::vector<Report> reports; // the last one of each credit and title
    ArtistNames names;

    // The same plays of others: otherOf returns what takes a play's place, or nothing to leave it out.
    template <class Other, class OtherOf> PlayLists<Other> Of(const OtherOf& otherOf) const
    {
        PlayLists<Other> lists;
        const auto translate = [&](const std::vector<ByText>& from, auto& to) {
            to.reserve(from.size());
            for (const auto& [cText, played] : from)
                if (const std::optional<Other> other = otherOf(played))
                    to.push_back({cText, *other});
        };
        translate(artists, lists.artists);
        translate(titles, lists.titles);
        translate(albums, lists.albums);
        lists.reports.reserve(reports.size());
        for (const auto& [credit, played, number] : reports)
            if (const std::optional<Other> other = otherOf(played))
                lists.reports.push_back({credit, *other, number});
        lists.names = names;
        return lists;
    }
};

// The most recent play of each artist, title and album of the whole library. Keys ignore case and otherwise
// compare exactly. A play counts for every name of its credit; see ArtistNames. A play's time is the cut's
// own last-played time, or the pending one while the database refuses it. In memory only: after a restart the
// host, which knows what aired, reports the last hours again.
class PlayHistory
{
public:
    // Called after entering a play whose time the database refused. bFirst: no time was pending before.
    using Refused = std::function<void(const RuntimeError& cError, bool bFirst)>;

    PlayHistory(const Clock& cClock, Refused refused) : m_cTimes(cClock), m_refused(std::move(refused)) {}

    // Null when there is no entry, and always for an empty text.
    std::shared_ptr<Cut> ArtistHistoryCut(const TextKey& cArtist) const
    {
        return Last(m_colArtists, cArtist);
    }
    std::shared_ptr<Cut> TitleHistoryCut(const TextKey& cTitle) const { return Last(m_colTitles, cTitle); }
    std::shared_ptr<Cut> AlbumHistoryCut(const TextKey& cAlbum) const { return Last(m_colAlbums, cAlbum); }

    // Which names a credit counts for: only itself at first. Rebuilds the artists' entries, unless the names
    // are the ones in use. Changes nothing when memory runs out.
    void SetNames(const ArtistNames& cNames);
    const ArtistNames& Names() const noexcept { return m_cNames; }

    // A play as it was entered, with the texts that its cut had then.
    struct Play
    {
        Credit credit;
        std::shared_ptr<Cut> cCut;
    };
    // The last play of each credit and title, in the order of the reports.
    std::vector<Play> LastPlays() const;

    // When a cut of the history played. Throws the cut's errors.
    DateTime TimeOf(const Cut& cCut) const { return m_cTimes.TimeOf(cCut); }

    // Records a play of cCut at its last-played time: finds the database's cut by key, else by artist and
    // title, gives it that time and makes it the last play of its artist, title and album. Does nothing when
    // cCut has no play time or the database has no such cut. The play reported last counts, even when its
    // time is earlier. When the database refuses the time, the play is still entered; its time becomes
    // pending and the refusal is reported. Throws error 5 for a time beyond the calendar, and the database's
    // other errors; what was done before the error stays.
    void Record(const Cut& cCut, const DataBase& cDataBase);

    PlayLists<std::shared_ptr<Cut>> Lists() const;
    // Takes over the plays of another history, under these names. cutOf returns the cut of each, which
    // carries the time of the play. Nothing is written. Precondition: nothing is entered here yet.
    template <class Played, class CutOf>
    void TakeOver(const PlayLists<Played>& lists, const ArtistNames& cNames, const CutOf& cutOf)
    {
        const auto take = [&](const auto& from, Plays& to) {
            to.reserve(from.size());
            for (const auto& [cText, played] : from)
                to.emplace(cText, cutOf(played));
        };
        take(lists.titles, m_colTitles);
        take(lists.albums, m_colAlbums);
        m_colTakenOver.reserve(lists.reports.size());
        for (const auto& [credit, played, number] : lists.reports)
        {
            m_colTakenOver.push_back({credit, cutOf(played), number});
            m_reports = std::max(m_reports, number);
        }
        if (cNames == lists.names)
            take(lists.artists, m_colArtists);
        else
            m_colArtists = ArtistsUnder(cNames);
        m_cNames = cNames;
    }

    // Number of play times that the database has not accepted yet.
    std::size_t PendingTimes() const noexcept { return m_cTimes.Count(); }
    // Tries to write them now and reports refusals.
    void WritePendingTimes(const DataBase& cDataBase);
    // Call when the manager changes from cLeft to another database; see PendingPlayTimes::Leave.
    void Leave(const std::shared_ptr<const DataBase>& cLeft) { m_cTimes.Leave(cLeft); }

private:
    using Plays = std::unordered_map<TextKey, std::shared_ptr<Cut>>;
    struct Report
    {
        std::uint64_t number; // rises with every report
        std::shared_ptr<Cut> cCut;
    };

    void Enter(const std::shared_ptr<Cut>& cCut);
    Plays ArtistsUnder(const ArtistNames& cNames) const;
    // Calls visit with each credit and its last report.
    template <class Visit> void ForEachReport(const Visit& visit) const
    {
        for (const auto& [credit, report] : m_colReports)
            visit(credit, report.number, report.cCut);
        for (const auto& [credit, cCut, number] : m_colTakenOver)
            if (!m_colReports.contains(credit))
                visit(credit, number, cCut);
    }
    static void EnterArtists(const Play& play, const ArtistNames& cNames, Plays& colArtists);
    void Tell(const std::optional<RuntimeError>& cRefusal);
    static std::shared_ptr<Cut> Last(const Plays& colPlays, const TextKey& cText);

    PendingPlayTimes m_cTimes;
    Refused m_refused;
    bool m_bRefusing = false; // from the first refusal until nothing is pending
    ArtistNames m_cNames;
    std::uint64_t m_reports = 0;
    std::unordered_map<Credit, Report, CreditHash> m_colReports; // the last one of each credit and title
    // Those of another history. A list, since they are asked for only when the names change.
    std::vector<PlayLists<std::shared_ptr<Cut>>::Report> m_colTakenOver;
    Plays m_colArtists; // by name
    Plays m_colTitles;
    Plays m_colAlbums;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"
#include "media/DataBase.h"
#include "rotation/ArtistNames.h"
#include "rotation/PendingPlayTimes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ravlo
{

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

    // Takes over the plays and names of another history: for each of its cuts cutFor returns the one that
    // takes its place, and carries the time of the play, or null to leave the play out. Nothing is written.
    // Precondition: nothing is entered here yet.
    using CutFor = std::function<std::shared_ptr<Cut>(const std::shared_ptr<Cut>& cCut)>;
    void CopyPlays(const PlayHistory& cFrom, const CutFor& cutFor);

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
    static void EnterArtists(const Play& play, const ArtistNames& cNames, Plays& colArtists);
    void Tell(const std::optional<RuntimeError>& cRefusal);
    static std::shared_ptr<Cut> Last(const Plays& colPlays, const TextKey& cText);

    PendingPlayTimes m_cTimes;
    Refused m_refused;
    bool m_bRefusing = false; // from the first refusal until nothing is pending
    ArtistNames m_cNames;
    std::uint64_t m_reports = 0;
    std::unordered_map<Credit, Report, CreditHash> m_colReports; // the last one of each credit and title
    Plays m_colArtists;                                          // by name
    Plays m_colTitles;
    Plays m_colAlbums;
};

} // namespace ravlo

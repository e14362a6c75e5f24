// SPDX-License-Identifier: MIT
#pragma once

#include "collections/CaseFolding.h"
#include "media/DataBase.h"
#include "rotation/PendingPlayTimes.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ravlo
{

// The most recent play of each artist, title and album of the whole library. Keys compare without regard to
// case and otherwise exactly. The time of a play is the cut's own last-played time, or the pending one while
// the database refuses to take it. In memory only: after a restart the host, which knows what aired, reports
// its last hours again.
class PlayHistory
{
public:
    // Told of a refusal of the database after the play was entered. bFirst: nothing was pending before.
    using Refused = std::function<void(const RuntimeError& cError, bool bFirst)>;

    PlayHistory(const Clock& cClock, Refused refused) : m_cTimes(cClock), m_refused(std::move(refused)) {}

    // Null when there is no entry, and always for an empty text.
    std::shared_ptr<Cut> ArtistHistoryCut(std::wstring_view sArtist) const;
    std::shared_ptr<Cut> TitleHistoryCut(std::wstring_view sTitle) const;
    std::shared_ptr<Cut> AlbumHistoryCut(std::wstring_view sAlbum) const;

    // When a cut of the history played. Errors of the cut are thrown.
    DateTime TimeOf(const Cut& cCut) const { return m_cTimes.TimeOf(cCut); }

    // Records a play of cCut, whose last-played time says when: finds the database's own cut by key, else by
    // artist and title, gives it that time and enters it. Changes nothing for a cut without a play time or
    // without a database cut. A play reported later replaces an earlier entry, whatever its time. A database
    // that does not take the time does not hinder the entry: the time is pending, the refusal is told. Other
    // errors of the database are thrown, and error 5 for a time beyond the calendar; what was updated before
    // stays.
    void Record(const Cut& cCut, const DataBase& cDataBase);

    // How many times of plays the database still has to take.
    std::size_t PendingTimes() const noexcept { return m_cTimes.Count(); }
    // Tries to write them at once. The refusals are told.
    void WritePendingTimes(const DataBase& cDataBase);

private:
    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view sText) const noexcept { return HashIgnoringCase(sText); }
    };
    struct Equal
    {
        using is_transparent = void;
        bool operator()(std::wstring_view sLeft, std::wstring_view sRight) const noexcept
        {
            return EqualIgnoringCase(sLeft, sRight);
        }
    };
    using Plays = std::unordered_map<std::wstring, std::shared_ptr<Cut>, Hash, Equal>;

    void Enter(const std::shared_ptr<Cut>& cCut);
    void Tell(const std::optional<RuntimeError>& cRefusal);
    static std::shared_ptr<Cut> Last(const Plays& colPlays, std::wstring_view sText);
    static void Enter(Plays& colPlays, std::wstring&& sText, const std::shared_ptr<Cut>& cCut);

    PendingPlayTimes m_cTimes;
    Refused m_refused;
    bool m_bRefusing = false; // from the first refusal until nothing is pending
    Plays m_colArtists;
    Plays m_colTitles;
    Plays m_colAlbums;
};

} // namespace ravlo

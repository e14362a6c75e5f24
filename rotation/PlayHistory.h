// SPDX-License-Identifier: MIT
#pragma once

#include "collections/CaseFolding.h"
#include "media/DataBase.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ravlo
{

// The most recent play of each artist, title and album of the whole library. Keys compare without regard to
// case and otherwise exactly. The time of a play is the cut's own last-played time. In memory only: after a
// restart the host, which knows what aired, reports its last hours again.
class PlayHistory
{
public:
    // Null when there is no entry, and always for an empty text.
    std::shared_ptr<Cut> ArtistHistoryCut(std::wstring_view sArtist) const;
    std::shared_ptr<Cut> TitleHistoryCut(std::wstring_view sTitle) const;
    std::shared_ptr<Cut> AlbumHistoryCut(std::wstring_view sAlbum) const;

    // Records a play of cCut, whose last-played time says when: finds the database's own cut by key, else by
    // artist and title, gives it that time and enters it. Changes nothing for a cut without a play time or
    // without a database cut. A play reported later replaces an earlier entry, whatever its time. Errors of
    // the database are thrown; what was updated before stays.
    void Record(const Cut& cCut, const DataBase& cDataBase);

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

    static std::shared_ptr<Cut> Last(const Plays& colPlays, std::wstring_view sText);
    static void Enter(Plays& colPlays, std::wstring&& sText, const std::shared_ptr<Cut>& cCut);

    Plays m_colArtists;
    Plays m_colTitles;
    Plays m_colAlbums;
};

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "rotation/PlayHistory.h"

#include "rotation/RotationOrder.h"

#include <utility>

namespace ravlo
{

std::shared_ptr<Cut> PlayHistory::ArtistHistoryCut(std::wstring_view sArtist) const
{
    return Last(m_colArtists, sArtist);
}

std::shared_ptr<Cut> PlayHistory::TitleHistoryCut(std::wstring_view sTitle) const
{
    return Last(m_colTitles, sTitle);
}

std::shared_ptr<Cut> PlayHistory::AlbumHistoryCut(std::wstring_view sAlbum) const
{
    return Last(m_colAlbums, sAlbum);
}

void PlayHistory::Record(const Cut& cCut, const DataBase& cDataBase)
{
    const std::shared_ptr<Cut> cOwn = DataBaseCutOf(cCut, cDataBase);
    if (!cOwn)
        return;
    const DateTime dtPlayed = cCut.LastPlayed();
    if (!(dtPlayed > 0))
        return;
    cOwn->SetLastPlayed(dtPlayed);

    std::wstring sArtist = cOwn->Artist();
    std::wstring sTitle = cOwn->Title();
    std::wstring sAlbum = cOwn->Album();
    Enter(m_colArtists, std::move(sArtist), cOwn);
    Enter(m_colTitles, std::move(sTitle), cOwn);
    if (!sAlbum.empty())
        Enter(m_colAlbums, std::move(sAlbum), cOwn);
}

std::shared_ptr<Cut> PlayHistory::Last(const Plays& colPlays, std::wstring_view sText)
{
    // The empty key may have an entry, but unnamed artists are not one artist: nothing is measured against
    // it.
    if (sText.empty())
        return nullptr;
    const auto it = colPlays.find(sText);
    return it == colPlays.end() ? nullptr : it->second;
}

void PlayHistory::Enter(Plays& colPlays, std::wstring&& sText, const std::shared_ptr<Cut>& cCut)
{
    colPlays.insert_or_assign(std::move(sText), cCut);
}

} // namespace ravlo

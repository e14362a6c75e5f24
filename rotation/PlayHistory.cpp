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
    WholeSeconds(dtPlayed); // throws for what no separation could be measured from

    const std::optional<RuntimeError> cRefusal = m_cTimes.Write(cOwn, dtPlayed, cDataBase);
    try
    {
        Enter(cOwn);
    }
    catch (...)
    {
        Tell(cRefusal);
        throw;
    }
    Tell(cRefusal);
}

void PlayHistory::WritePendingTimes(const DataBase& cDataBase)
{
    // A single cut that refuses for a reason of its own does not cost the others.
    constexpr std::size_t lMostRefusals = 2;
    Tell(m_cTimes.WriteAll(cDataBase, lMostRefusals));
}

// Last in any operation: who is told may let anything run.
void PlayHistory::Tell(const std::optional<RuntimeError>& cRefusal)
{
    if (m_cTimes.Count() == 0)
        m_bRefusing = false;
    if (!cRefusal)
        return;
    const bool bFirst = !std::exchange(m_bRefusing, m_cTimes.Count() > 0);
    m_refused(*cRefusal, bFirst);
}

void PlayHistory::Enter(const std::shared_ptr<Cut>& cCut)
{
    std::wstring sArtist = cCut->Artist();
    std::wstring sTitle = cCut->Title();
    std::wstring sAlbum = cCut->Album();
    Enter(m_colArtists, std::move(sArtist), cCut);
    Enter(m_colTitles, std::move(sTitle), cCut);
    if (!sAlbum.empty())
        Enter(m_colAlbums, std::move(sAlbum), cCut);
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

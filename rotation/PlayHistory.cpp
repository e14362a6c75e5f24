// SPDX-License-Identifier: MIT
#include "rotation/PlayHistory.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

void PlayHistory::Record(const Cut& cCut, const DataBase& cDataBase)
{
    const std::shared_ptr<Cut> cOwn = DataBaseCutOf(cCut, cCut.Key(), cDataBase);
    if (!cOwn)
        return;
    const DateTime dtPlayed = cCut.LastPlayed();
    if (!(dtPlayed > 0))
        return;
    WholeSeconds(dtPlayed); // throws when no separation can be measured from it

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

PlayLists<std::shared_ptr<Cut>> PlayHistory::Lists() const
{
    PlayLists<std::shared_ptr<Cut>> lists;
    const auto list = [](const Plays& from, auto& to) {
        to.reserve(from.size());
        for (const auto& [cText, cCut] : from)
            to.push_back({cText, cCut});
    };
    list(m_colArtists, lists.artists);
    list(m_colTitles, lists.titles);
    list(m_colAlbums, lists.albums);
    lists.reports.reserve(m_colReports.size() + m_colTakenOver.size());
    ForEachReport([&](const Credit& credit, std::uint64_t number, const std::shared_ptr<Cut>& cCut) {
        lists.reports.push_back({credit, cCut, number});
    });
    lists.names = m_cNames;
    return lists;
}

void PlayHistory::WritePendingTimes(const DataBase& cDataBase)
{
    // One cut that always refuses must not block the others.
    constexpr std::size_t mostRefusals = 2;
    Tell(m_cTimes.WriteAll(cDataBase, mostRefusals));
}

// Call it last in an operation: the handler may run anything.
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
    const Credit credit{cCut->ArtistKey(), cCut->TitleKey()};
    const TextKey cAlbum = cCut->AlbumKey();
    m_colReports.insert_or_assign(credit, Report{++m_reports, cCut});
    EnterArtists({credit, cCut}, m_cNames, m_colArtists);
    m_colTitles.insert_or_assign(credit.cTitle, cCut);
    if (!cAlbum.Empty())
        m_colAlbums.insert_or_assign(cAlbum, cCut);
}

void PlayHistory::EnterArtists(const Play& play, const ArtistNames& cNames, Plays& colArtists)
{
    if (cNames.CreditsOnly())
        colArtists.insert_or_assign(play.credit.cArtist, play.cCut);
    else
        for (const TextKey& cName : cNames.KeysOf(play.credit.cArtist, play.credit.cTitle))
            colArtists.insert_or_assign(cName, play.cCut);
}

PlayHistory::Plays PlayHistory::ArtistsUnder(const ArtistNames& cNames) const
{
    Plays colArtists;
    for (const Play& play : LastPlays())
        EnterArtists(play, cNames, colArtists);
    return colArtists;
}

void PlayHistory::SetNames(const ArtistNames& cNames)
{
    if (cNames == m_cNames)
        return;
    m_colArtists = ArtistsUnder(cNames);
    m_cNames = cNames;
}

std::vector<PlayHistory::Play> PlayHistory::LastPlays() const
{
    std::vector<std::pair<std::uint64_t, Play>> colByNumber;
    colByNumber.reserve(m_colReports.size() + m_colTakenOver.size());
    ForEachReport([&](const Credit& credit, std::uint64_t number, const std::shared_ptr<Cut>& cCut) {
        colByNumber.emplace_back(number, Play{credit, cCut});
    });
    std::sort(colByNumber.begin(), colByNumber.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Play> colPlays;
    colPlays.reserve(colByNumber.size());
    for (auto& [number, play] : colByNumber)
        colPlays.push_back(std::move(play));
    return colPlays;
}

std::shared_ptr<Cut> PlayHistory::Last(const Plays& colPlays, const TextKey& cText)
{
    // The empty key may have an entry, but cuts without an artist do not share one: nothing is measured
    // against it.
    if (cText.Empty())
        return nullptr;
    const auto it = colPlays.find(cText);
    return it == colPlays.end() ? nullptr : it->second;
}

} // namespace ravlo

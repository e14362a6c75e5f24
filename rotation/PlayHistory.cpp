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

void PlayHistory::CopyPlays(const PlayHistory& cFrom, const CutFor& cutFor)
{
    for (const auto pPlays :
         {&PlayHistory::m_colArtists, &PlayHistory::m_colTitles, &PlayHistory::m_colAlbums})
    {
        (this->*pPlays).reserve((cFrom.*pPlays).size());
        for (const auto& [cText, cCut] : cFrom.*pPlays)
            if (std::shared_ptr<Cut> cOther = cutFor(cCut))
                (this->*pPlays).emplace(cText, std::move(cOther));
    }
    m_cNames = cFrom.m_cNames;
    m_reports = cFrom.m_reports;
    m_colReports.reserve(cFrom.m_colReports.size());
    for (const auto& [credit, report] : cFrom.m_colReports)
        if (std::shared_ptr<Cut> cOther = cutFor(report.cCut))
            m_colReports.emplace(credit, Report{report.number, std::move(cOther)});
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

void PlayHistory::SetNames(const ArtistNames& cNames)
{
    if (cNames == m_cNames)
        return;
    Plays colArtists;
    for (const Play& play : LastPlays())
        EnterArtists(play, cNames, colArtists);
    m_cNames = cNames;
    m_colArtists.swap(colArtists);
}

std::vector<PlayHistory::Play> PlayHistory::LastPlays() const
{
    std::vector<std::pair<std::uint64_t, const Credit*>> colByNumber;
    colByNumber.reserve(m_colReports.size());
    for (const auto& [credit, report] : m_colReports)
        colByNumber.emplace_back(report.number, &credit);
    std::sort(colByNumber.begin(), colByNumber.end());
    std::vector<Play> colPlays;
    colPlays.reserve(colByNumber.size());
    for (const auto& [number, pCredit] : colByNumber)
        colPlays.push_back({*pCredit, m_colReports.at(*pCredit).cCut});
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

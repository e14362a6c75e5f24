// SPDX-License-Identifier: MIT
#include "forecast/Remedies.h"

#include "base/Text.h"
#include "forecast/Troubles.h"
#include "plan/SlotTimes.h"
#include "rotation/Spread.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

// A cut that counts for an artist of its own.
SnapshotCut MadeUpCut(std::size_t number, std::int32_t lDurationmS, bool bOpener)
{
    const TextKey cText(L"\tmade up " + DecimalText(static_cast<std::int64_t>(number)));
    SnapshotCut cut;
    cut.values.cKey = cut.values.cArtist = cut.values.cTitle = cText;
    cut.values.lDurationmS = lDurationmS;
    cut.values.bOpener = bOpener;
    return cut;
}

// "1 cut", "3 cuts"
std::wstring CutsText(std::size_t cuts)
{
    return DecimalText(static_cast<std::int64_t>(cuts)) + (cuts == 1 ? L" cut" : L" cuts");
}

// The cuts of each artist while some are taken away.
class ArtistCounts
{
public:
    explicit ArtistCounts(const MakeUp& makeUp)
        : m_artistsWith(makeUp.mostOfArtist + 1), m_most(makeUp.mostOfArtist)
    {
        for (const MakeUp::Artist& artist : makeUp.artists)
        {
            m_colCuts.emplace(artist.cName, artist.cuts);
            ++m_artistsWith[artist.cuts];
        }
    }
    // Precondition: the artist has a cut.
    void TakeOne(const TextKey& cName)
    {
        std::size_t& cuts = m_colCuts.at(cName);
        --m_artistsWith[cuts--];
        ++m_artistsWith[cuts];
        while (m_most > 0 && m_artistsWith[m_most] == 0)
            --m_most;
    }
    std::size_t Most() const noexcept { return m_most; } // cuts of one artist

private:
    std::unordered_map<TextKey, std::size_t> m_colCuts;
    std::vector<std::size_t> m_artistsWith; // so many cuts
    std::size_t m_most;
};

} // namespace

Remedies::Remedies(const SimulationResult& result, std::size_t level)
    : m_result(result), m_level(level), m_names(Station().names.With(result.options.bFeaturedArtists)),
      m_makeUp(MakeUpOf(Station(), Level().order, m_names)), m_rate{result.PlayedDays(),
                                                                    result.levels[level].asked}
{
}

std::optional<Remedy> Remedies::Spread(Random& cRandom) const
{
    const std::vector<CutNumber>& order = Level().order;
    if (order.empty())
        return std::nullopt;
    SpreadTrial trial{TextKey(CategoryKey(Level().sCategory, Level().lLevel)), {}, {}, {}, m_result.options};
    trial.colItems.reserve(order.size());
    for (const CutNumber number : order)
    {
        const PlainCutValues& cut = Station().cuts[number].values;
        trial.colItems.push_back(
            {m_names.NamesOf(cut.cArtist, cut.cTitle), cut.cTitle, cut.cAlbum, cut.dtLastPlayed});
    }
    const std::shared_ptr<StationSnapshot> cStation = Copy();
    std::vector<CutNumber>& spread = cStation->levels[m_level].order;
    const std::vector<std::size_t> colPositions = SpreadOrder(trial.colItems, cRandom);
    for (std::size_t place = 0; place < order.size(); ++place)
    {
        spread[place] = order[colPositions[place]];
        trial.colPresent.push_back(Station().cuts[order[place]].values.cKey);
        trial.colSpread.push_back(Station().cuts[spread[place]].values.cKey);
    }
    if (trial.colSpread == trial.colPresent)
        return std::nullopt;
    return Remedy{L"spread", cStation, std::move(trial)};
}

std::optional<Remedy> Remedies::ShorterArtistSeparation() const
{
    return Shorter(L"artist separation ", &SeparationRules::lArtist, ArtistSeparation(Level().rules),
                   m_makeUp.mostOfArtist);
}

std::optional<Remedy> Remedies::ShorterTitleSeparation() const
{
    return Shorter(L"title separation ", &SeparationRules::lTitle, TitleSeparation(Level().rules),
                   m_makeUp.mostOfTitle);
}

// most: cuts of the commonest artist or title.
std::optional<Remedy> Remedies::Shorter(const wchar_t* sName, std::int32_t SeparationRules::*pSeparation,
                                        std::int32_t lSetMins, std::size_t most) const
{
    const std::int32_t lMins = Comfortable(m_rate.AttainableMins(m_makeUp.cuts, most));
    if (lMins < 1 || lMins >= lSetMins)
        return std::nullopt;
    const std::shared_ptr<StationSnapshot> cStation = Copy();
    cStation->levels[m_level].rules.*pSeparation = lMins;
    return Remedy{sName + DecimalText(lMins), cStation};
}

bool Remedies::IsComfortable(std::size_t cuts, std::size_t most) const
{
    return ArtistSeparation(Level().rules) <= Comfortable(m_rate.AttainableMins(cuts, most));
}

bool Remedies::IsJudgedAlike(std::size_t cuts) const
{
    const LevelOutcome& outcome = m_result.levels[m_level];
    const auto judgedAlike = [&](std::uint32_t slots) {
        const Due before{slots, m_makeUp.cuts};
        const Due after{slots, cuts};
        return before.IsEnoughForNeverPlayed() == after.IsEnoughForNeverPlayed() &&
               before.IsEnoughForUnderHalf() == after.IsEnoughForUnderHalf();
    };
    return judgedAlike(outcome.asked) && judgedAlike(outcome.asked - outcome.askedOpener);
}

std::optional<std::size_t> Remedies::CutsToAdd() const
{
    constexpr std::size_t mostTimes = 10;
    const std::size_t most = m_makeUp.mostOfArtist;
    std::size_t cuts = m_makeUp.cuts + 1;
    while (cuts <= m_makeUp.cuts * mostTimes && !IsComfortable(cuts, most))
        cuts = (cuts / most + 1) * most; // one place more from one of the artist's cuts to the next
    const bool bReached = cuts <= m_makeUp.cuts * mostTimes && IsJudgedAlike(cuts);
    return bReached ? std::optional(cuts - m_makeUp.cuts) : std::nullopt;
}

std::int32_t Remedies::MeanDuration() const
{
    std::int64_t milliseconds = 0;
    for (const CutNumber number : Level().order)
        milliseconds += LengthOf(Station().cuts[number].values.lDurationmS);
    return static_cast<std::int32_t>(milliseconds / static_cast<std::int64_t>(m_makeUp.cuts));
}

std::optional<Remedy> Remedies::MoreCuts() const
{
    const std::vector<CutNumber>& order = Level().order;
    const std::optional<std::size_t> added = IsComfortable() ? std::nullopt : CutsToAdd();
    if (!added)
        return std::nullopt;
    const std::int32_t lDurationmS = MeanDuration();
    const std::shared_ptr<StationSnapshot> cStation = Copy();
    std::vector<CutNumber>& dealt = cStation->levels[m_level].order;
    dealt.clear();
    const std::size_t places = order.size() + *added;
    std::size_t madeUp = 0;
    for (std::size_t place = 0; place < places; ++place)
    {
        const CutNumber next = order[std::min(place - madeUp, order.size() - 1)];
        const bool bOpener = Station().cuts[next].values.bOpener; // so that their share stays about the same
        const std::uint64_t due = std::uint64_t{place + 1} * *added / places; // made-up cuts up to here
        dealt.push_back(due > madeUp ? cStation->Add(MadeUpCut(madeUp, lDurationmS, bOpener)) : next);
        madeUp = static_cast<std::size_t>(due);
    }
    return Remedy{CutsText(*added) + L" of other artists more", cStation};
}

std::vector<CutNumber> Remedies::OrderWithoutCommonest() const
{
    ArtistCounts counts(m_makeUp);
    const std::vector<CutNumber>& order = Level().order;
    std::vector<bool> colLeft(order.size(), false);
    std::size_t cuts = order.size();
    bool bReached = false;
    for (std::size_t position = order.size(); !bReached && position-- > 0;)
    {
        const PlainCutValues& cut = Station().cuts[order[position]].values;
        const std::vector<TextKey> colNames = m_names.NamesOf(cut.cArtist, cut.cTitle);
        if (std::find(colNames.begin(), colNames.end(), m_makeUp.commonest.cName) == colNames.end())
            continue;
        for (const TextKey& cName : colNames)
            counts.TakeOne(cName);
        colLeft[position] = true;
        --cuts;
        bReached = cuts > 0 && IsComfortable(cuts, counts.Most());
    }
    std::vector<CutNumber> rest;
    for (std::size_t position = 0; bReached && position < order.size(); ++position)
        if (!colLeft[position])
            rest.push_back(order[position]);
    return rest;
}

std::optional<Remedy> Remedies::FewerCuts() const
{
    std::vector<CutNumber> order = IsComfortable() ? std::vector<CutNumber>() : OrderWithoutCommonest();
    if (order.empty())
        return std::nullopt;
    const std::size_t fewer = m_makeUp.cuts - order.size();
    const std::shared_ptr<StationSnapshot> cStation = Copy();
    cStation->levels[m_level].order = std::move(order);
    return Remedy{CutsText(fewer) + L" of " + m_makeUp.commonest.cName.Text() + L" fewer", cStation};
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#include "forecast/MakeUp.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace ravlo
{

MakeUp MakeUpOf(const StationSnapshot& station, const std::vector<CutNumber>& order, const ArtistNames& names,
                const LetHostRun& letHostRun)
{
    CutByCut cutByCut(letHostRun);
    MakeUp makeUp;
    makeUp.cuts = order.size();
    std::unordered_map<TextKey, std::size_t> colPositions; // in makeUp.artists
    std::unordered_map<TextKey, std::size_t> colTitles;    // cuts of each
    colTitles.reserve(order.size());
    for (const CutNumber number : order)
    {
        cutByCut.Next();
        const PlainCutValues& cut = station.cuts[number].values;
        names.ForEachName(cut.cArtist, cut.cTitle, [&](const TextKey& cName) {
            const auto [it, bNew] = colPositions.try_emplace(cName, makeUp.artists.size());
            if (bNew)
                makeUp.artists.push_back({cName, 0});
            ++makeUp.artists[it->second].cuts;
        });
        if (!cut.cTitle.Empty())
            makeUp.mostOfTitle = std::max(makeUp.mostOfTitle, ++colTitles[cut.cTitle]);
    }
    for (const MakeUp::Artist& artist : makeUp.artists)
        if (artist.cuts > makeUp.commonest.cuts)
            makeUp.commonest = artist;
    makeUp.mostOfArtist = makeUp.commonest.cuts;
    return makeUp;
}

namespace
{

constexpr double dDaymS = 86'400'000;
double WholemS(double dDays) noexcept { return std::round(dDays * dDaymS); }

std::int32_t InForce(const SeparationRules& rules, std::int32_t lMins) noexcept
{
    return rules.bIgnore ? 0 : std::max(lMins, 0);
}

} // namespace

double AskingRate::SlotMins() const noexcept { return asked == 0 ? 0 : WholemS(dDays) / dMinutemS / asked; }

std::int32_t AskingRate::AttainableMins(std::size_t cuts, std::size_t most) const noexcept
{
    if (asked == 0 || cuts == 0)
        return 0;
    if (most == 0)
        return lAnyMins;
    const std::size_t places = cuts / most; // from one of them to the next, at best
    // Divided last, so that a quotient without remainder is exact.
    const double dMins = static_cast<double>(places) * WholemS(dDays) / (dMinutemS * asked);
    return static_cast<std::int32_t>(std::min<double>(dMins, lAnyMins));
}

std::int32_t ArtistSeparation(const SeparationRules& rules) noexcept { return InForce(rules, rules.lArtist); }
std::int32_t TitleSeparation(const SeparationRules& rules) noexcept { return InForce(rules, rules.lTitle); }

} // namespace ravlo

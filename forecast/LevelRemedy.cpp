// SPDX-License-Identifier: MIT
#include "forecast/LevelRemedy.h"

#include "base/Text.h"
#include "forecast/Light.h"
#include "forecast/MakeUp.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

std::wstring Change(std::size_t before, std::size_t after)
{
    return DecimalText(static_cast<std::int64_t>(before)) + L" -> " +
           DecimalText(static_cast<std::int64_t>(after));
}

Light RulesLight(const Troubles& troubles) { return BrokenRulesLight(troubles.rulesBroken, troubles.picks); }

// By the counts alone.
Light LightOf(const Troubles& troubles)
{
    return troubles.starved + troubles.unfilled > 0 ? Light::Red : RulesLight(troubles);
}

// Whether a remedy for another level does harm. A broken rule more or less is chance: picks fall on other
// times.
bool GetsWorse(const Troubles& before, const Troubles& after)
{
    return after.neverPlayed > before.neverPlayed || after.underHalf > before.underHalf ||
           RulesLight(after) > RulesLight(before);
}

} // namespace

std::wstring EffectText(const Troubles& before, const Troubles& after)
{
    const bool bBroken = before.rulesBroken + after.rulesBroken > 0;
    return L"never played " + Change(before.neverPlayed, after.neverPlayed) + L", under half " +
           Change(before.underHalf, after.underHalf) +
           (bBroken ? L", rules broken " + Change(before.rulesBroken, after.rulesBroken)
                    : std::wstring(L", no rule broken"));
}

std::wstring LevelRemedy::Text() const { return sName + L": " + EffectText(before, after) + Remark(); }

std::wstring LevelRemedy::Remark() const
{
    std::wstring sRemark;
    if ((bMakesArtistRoom || bMakesTitleRoom) && !Improves(before, after))
        sRemark = bMakesArtistRoom && bMakesTitleRoom ? L", both separations leave enough room"
                  : bMakesArtistRoom                  ? L", the artist separation leaves enough room"
                                                      : L", the title separation leaves enough room";
    if (!worse.empty())
        sRemark += L"; " + worse[0].sLevel + L" gets worse: " + EffectText(worse[0].before, worse[0].after);
    if (worse.size() == 2)
        sRemark += L"; another level gets worse";
    else if (worse.size() > 2)
        sRemark +=
            L"; " + DecimalText(static_cast<std::int64_t>(worse.size() - 1)) + L" other levels get worse";
    return sRemark;
}

RemedyJudge::RemedyJudge(const SimulationResult& result, std::size_t level)
    : m_result(result), m_level(level), m_present(TroublesOf(result)), m_rooms(RoomsOf(result, level))
{
}

RemedyJudge::Rooms RemedyJudge::RoomsOf(const SimulationResult& result, std::size_t level)
{
    const SnapshotLevel& snapshot = result.cStation->levels[level];
    const ArtistNames names = result.cStation->names.With(result.options.bFeaturedArtists);
    const MakeUp makeUp = MakeUpOf(*result.cStation, snapshot.order, names);
    const AskingRate rate{result.PlayedDays(), result.levels[level].asked};
    return {
        RoomLight(ArtistSeparation(snapshot.rules), rate.AttainableMins(makeUp.cuts, makeUp.mostOfArtist)),
        RoomLight(TitleSeparation(snapshot.rules), rate.AttainableMins(makeUp.cuts, makeUp.mostOfTitle))};
}

bool RemedyJudge::Helps(LevelRemedy& remedy, const std::vector<Troubles>& trial,
                        const Troubles& staying) const
{
    remedy.before = m_present[m_level];
    remedy.after = trial[m_level];
    remedy.allBefore = staying;
    remedy.allAfter = remedy.after;
    AddElsewhere(remedy, trial);
    const bool bMakesRoom = remedy.bMakesArtistRoom || remedy.bMakesTitleRoom;
    return (Improves(staying, remedy.after) || (bMakesRoom && !IsWorse(staying, remedy.after))) &&
           remedy.allAfter.starved <= remedy.allBefore.starved;
}

bool RemedyJudge::Helps(LevelRemedy& remedy, const SimulationResult& trial) const
{
    const std::vector<CutNumber>& colOrder = trial.cStation->levels[m_level].order;
    const std::vector<Troubles> troubles = TroublesOf(trial);
    const Rooms rooms = RoomsOf(trial, m_level);
    const Light eCounts = LightOf(troubles[m_level]);
    remedy.bMakesArtistRoom = rooms.eArtist == Light::Green && eCounts < m_rooms.eArtist;
    remedy.bMakesTitleRoom = rooms.eTitle == Light::Green && eCounts < m_rooms.eTitle;
    if (rooms.eArtist > m_rooms.eArtist || rooms.eTitle > m_rooms.eTitle)
        return false;
    return Helps(remedy, troubles,
                 TroublesAmong(m_result, m_level, std::unordered_set(colOrder.begin(), colOrder.end())));
}

void RemedyJudge::AddElsewhere(LevelRemedy& remedy, const std::vector<Troubles>& trial) const
{
    for (std::size_t level = 0; level < m_present.size(); ++level)
    {
        if (level == m_level)
            continue;
        remedy.allBefore += m_present[level];
        remedy.allAfter += trial[level];
        const SnapshotLevel& snapshot = m_result.cStation->levels[level];
        if (GetsWorse(m_present[level], trial[level]))
            remedy.worse.push_back({LevelText(CategoryKey(snapshot.sCategory, snapshot.lLevel)),
                                    m_present[level], trial[level]});
    }
    const auto moreStarved = [](const LevelRemedy::Elsewhere& level) {
        return static_cast<std::int64_t>(level.after.starved) -
               static_cast<std::int64_t>(level.before.starved);
    };
    std::stable_sort(remedy.worse.begin(), remedy.worse.end(),
                     [&](const auto& a, const auto& b) { return moreStarved(a) > moreStarved(b); });
}

} // namespace ravlo

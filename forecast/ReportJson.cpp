// SPDX-License-Identifier: MIT
#include "forecast/Report.h"

#include "base/Utf8.h"
#include "forecast/ReportText.h"

#include <utility>

namespace ravlo
{

namespace
{

// A JSON object that is built up member by member.
class Object
{
public:
    Object& Add(const char* sName, const std::string& sJson)
    {
        m_sJson += (m_sJson.empty() ? "{\"" : ",\"");
        m_sJson.append(sName).append("\":").append(sJson);
        return *this;
    }
    Object& Add(const char* sName, const std::wstring& sText) { return Add(sName, JsonText(sText)); }
    Object& Add(const char* sName, std::int32_t lValue) { return Add(sName, NumberText(lValue)); }
    Object& Add(const char* sName, double dValue) { return Add(sName, NumberText(dValue, 4)); }
    Object& Add(const char* sName, bool bValue) { return Add(sName, std::string(bValue ? "true" : "false")); }
    std::string Text() const { return m_sJson.empty() ? "{}" : m_sJson + '}'; }

private:
    std::string m_sJson;
};

template <class Items, class JsonOf> std::string Array(const Items& colItems, JsonOf jsonOf)
{
    std::string sJson;
    for (const auto& item : colItems)
        sJson += (sJson.empty() ? "[" : ",\n") + jsonOf(item);
    return sJson.empty() ? "[]" : sJson + ']';
}

std::string Texts(const std::vector<std::wstring>& colTexts)
{
    return Array(colTexts, [](const std::wstring& sText) { return JsonText(sText); });
}

std::string Distances(const std::optional<PlayDistances>& distances)
{
    if (!distances)
        return "null";
    return Object()
        .Add("smallest", distances->dSmallest)
        .Add("median", distances->dMedian)
        .Add("largest", distances->dLargest)
        .Text();
}

// A cut's identity, which its figures follow.
template <class Identified> Object Identity(const Identified& cut)
{
    return Object()
        .Add("key", cut.cKey.Text())
        .Add("artist", cut.cArtist.Text())
        .Add("title", cut.cTitle.Text());
}

std::string Starved(const StationHealth& health, const LevelHealth& level, const StarvedCut& starved)
{
    const std::string sBlocker =
        starved.blockedBy ? Identity(health.blockers[*starved.blockedBy]).Text() : "null";
    return Identity(level.cuts[starved.cut])
        .Add("plays", starved.lPlays)
        .Add("passedOver", starved.lTimesPassedOver)
        .Add("rule", '"' + std::string(NameOf(starved.eRule)) + '"')
        .Add("blockedBy", sBlocker)
        .Text();
}

std::string Artist(const ArtistUse& artist)
{
    return Object()
        .Add("name", artist.cName.Text())
        .Add("cuts", artist.lCuts)
        .Add("plays", artist.lPlays)
        .Add("shareOfCuts", artist.dShareOfCuts)
        .Add("shareOfPicks", artist.dShareOfPicks)
        .Add("gaps", Distances(artist.distances))
        .Text();
}

std::string CutJson(const CutUse& cut)
{
    return Identity(cut)
        .Add("plays", cut.lPlays)
        .Add("byHour", Array(cut.colByHour, [](std::int32_t lPlays) { return NumberText(lPlays); }))
        .Add("titleGaps", Distances(cut.titleDistances))
        .Add("lockStep", cut.bLockStep)
        .Text();
}

std::string Level(const StationHealth& health, const LevelHealth& level)
{
    const auto starved = [&](const StarvedCut& cut) { return Starved(health, level, cut); };
    return Object()
        .Add("key", level.sKey)
        .Add("light", '"' + std::string(NameOf(level.eLight)) + '"')
        .Add("why", Texts(level.why))
        .Add("cutCount", static_cast<std::int32_t>(level.cuts.size()))
        .Add("openers", level.lOpeners)
        .Add("artistCount", level.lArtists)
        .Add("topArtist", level.sTopArtist)
        .Add("topArtistCuts", level.lTopArtistCuts)
        .Add("slotMins", static_cast<double>(level.sngSlotMins))
        .Add("attainableArtistMins", level.lAttainableArtistMins)
        .Add("attainableTitleMins", level.lAttainableTitleMins)
        .Add("artistSepMins", level.lArtistSepMins)
        .Add("titleSepMins", level.lTitleSepMins)
        .Add("picks", level.lPicks)
        .Add("unfilled", level.lUnfilled)
        .Add("fewestPlays", level.lFewestPlays)
        .Add("meanPlays", level.dMeanPlays)
        .Add("mostPlays", level.lMostPlays)
        .Add("rulesBroken", level.lRulesBroken)
        .Add("neverPlayed", Array(level.neverPlayed, starved))
        .Add("underHalf", Array(level.underHalf, starved))
        .Add("advice", Texts(level.advice))
        .Add("artists", Array(level.artists, Artist))
        .Add("cuts", Array(level.cuts, CutJson))
        .Text();
}

} // namespace

std::string JsonReport(const StationHealth& health)
{
    const auto overAsked = [](const OverAskedArtist& artist) {
        return Object().Add("name", artist.sName).Add("load", artist.dLoad).Text();
    };
    return Object()
               .Add("start", IsoText(health.dtStart))
               .Add("days", health.dDays)
               .Add("plan", health.sPlan)
               .Add("planFile", health.sPlanFile.empty() ? "null" : JsonText(health.sPlanFile))
               .Add("fairRotation", health.options.bFairRotation)
               .Add("featuredArtists", health.options.bFeaturedArtists)
               .Add("picks", health.lPicks)
               .Add("warnings", Texts(health.warnings))
               .Add("remedies", Texts(health.remedies))
               .Add("artistsOverAsked", Array(health.overAsked, overAsked))
               .Add("levels",
                    Array(health.levels, [&](const LevelHealth& level) { return Level(health, level); }))
               .Text() +
           '\n';
}

} // namespace ravlo

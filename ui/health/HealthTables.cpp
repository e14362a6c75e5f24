// SPDX-License-Identifier: MIT
#include "ui/health/HealthTables.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "forecast/ReportText.h"
#include "ui/health/HealthTexts.h"

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace ravlo
{

namespace
{

using Sorting = SortedTable::Sorting;

TableCell Number(std::int64_t value) { return {DecimalText(value), static_cast<double>(value)}; }
TableCell Count(std::size_t count) { return Number(static_cast<std::int64_t>(count)); }
// Minutes; empty for a level that is not asked.
TableCell Attainable(const LevelHealth& level, std::int32_t lMins)
{
    if (StateOf(level) != LevelState::Asked)
        return {L"", -1};
    return {TextFromStore(AttainableText(lMins)), static_cast<double>(lMins)};
}
TableCell Percent(double dShare) { return {TextFromStore(PercentText(dShare)), dShare}; }

// Whole minutes of a distance; without one at the end of an ascending order.
TableCell Distance(const std::optional<PlayDistances>& distances, double PlayDistances::*pMins)
{
    if (!distances)
        return {L"", std::numeric_limits<double>::infinity()};
    const double dMins = (*distances).*pMins;
    return {DecimalText(std::llround(dMins)), dMins};
}

TableCell Change(std::size_t before, std::size_t after)
{
    return {CountText(before) + (before == after ? L"" : L" -> " + CountText(after)),
            static_cast<double>(after)};
}

std::wstring RuleText(const StarvedCut& starved)
{
    if (starved.eRule == eNone)
        return starved.lTimesPassedOver > 0 ? L"no opener" : L"never reached";
    return TextFromStore(NameOf(starved.eRule)) + L" separation";
}

} // namespace

HealthTables::HealthTables()
{
    m_tables.emplace_back(LevelColumns(), Sorting{0, true});
    m_tables.emplace_back(AdviceColumns());
    m_tables.emplace_back(SeldomColumns());
    m_tables.emplace_back(PlaysColumns(), Sorting{3, false});
    m_tables.emplace_back(GapsColumns(), Sorting{1, false});
    m_tables.emplace_back(HoursColumns());
}

void HealthTables::ShowStation(const StationHealth* pStation)
{
    m_pStation = pStation;
    Of(HealthTable::Levels).SetItems(pStation ? pStation->levels.size() : 0);
    ShowLevel(nullptr);
}

void HealthTables::ShowLevel(const LevelHealth* pLevel)
{
    m_pLevel = pLevel;
    m_colSeldom = pLevel ? SeldomPlayed(*pLevel) : std::vector<StarvedCut>();
    const std::size_t cuts = pLevel ? pLevel->cuts.size() : 0;
    Of(HealthTable::Seldom).SetItems(m_colSeldom.size());
    Of(HealthTable::Plays).SetItems(cuts);
    Of(HealthTable::Gaps).SetItems(pLevel ? pLevel->artists.size() : 0);
    Of(HealthTable::Hours).SetItems(cuts);
    ShowAdvice(nullptr);
}

void HealthTables::ShowAdvice(const std::vector<LevelRemedy>* pRemedies)
{
    m_pRemedies = pRemedies;
    Of(HealthTable::Advice).SetItems(pRemedies ? pRemedies->size() : 0);
}

std::vector<TableColumn> HealthTables::LevelColumns() const
{
    const auto level = [this](std::size_t item) -> const LevelHealth& { return m_pStation->levels[item]; };
    const auto number = [&](const wchar_t* sHeader, int lWidth, auto value, bool bMostFirst = false) {
        return TableColumn{sHeader, lWidth, true,
                           [=](std::size_t item) { return Number(value(level(item))); }, bMostFirst};
    };
    // Attainable minutes; empty for a level that is not asked.
    const auto attainable = [&](const wchar_t* sHeader, std::int32_t LevelHealth::*pMins) {
        return TableColumn{sHeader, 110, true,
                           [=](std::size_t item) { return Attainable(level(item), level(item).*pMins); }};
    };
    const auto set = [&](const wchar_t* sHeader, std::int32_t LevelHealth::*pMins) {
        return TableColumn{sHeader, 80, true, [=](std::size_t item) {
                               const std::int32_t lMins = level(item).*pMins;
                               return lMins > 0 ? Number(lMins) : TableCell{L"none", 0};
                           }};
    };
    return {
        {L"Light", 96, true,
         [=](std::size_t item) {
        return TableCell{LightText(level(item)), SeverityOf(level(item))};
         },
         true},
        {L"Level", 170, false, [=](std::size_t item) { return TableCell{LevelText(level(item).sKey)}; }},
        number(
            L"Cuts", 60, [](const LevelHealth& each) { return std::ssize(each.cuts); }, true),
        number(
            L"Artists", 72, [](const LevelHealth& each) { return each.lArtists; }, true),
        set(L"Artist set", &LevelHealth::lArtistSepMins),
        attainable(L"Artist attainable", &LevelHealth::lAttainableArtistMins),
        set(L"Title set", &LevelHealth::lTitleSepMins),
        attainable(L"Title attainable", &LevelHealth::lAttainableTitleMins),
        number(
            L"Never played", 90, [](const LevelHealth& each) { return std::ssize(each.neverPlayed); }, true),
        number(
            L"Rules broken", 90, [](const LevelHealth& each) { return each.lRulesBroken; }, true),
        number(
            L"Picks", 70, [](const LevelHealth& each) { return each.lPicks; }, true)};
}

std::vector<TableColumn> HealthTables::AdviceColumns() const
{
    const auto remedy = [this](std::size_t item) -> const LevelRemedy& { return m_pRemedies->at(item); };
    const auto change = [&](const wchar_t* sHeader, std::size_t Troubles::*pCount) {
        return TableColumn{sHeader, 110, true, [=](std::size_t item) {
                               return Change(remedy(item).before.*pCount, remedy(item).after.*pCount);
                           }};
    };
    return {{L"What helps", 330, false,
             [=](std::size_t item) {
        return TableCell{Capitalised(remedy(item).sName + remedy(item).Remark())};
             }},
            change(L"Never played", &Troubles::neverPlayed),
            change(L"Under half", &Troubles::underHalf),
            change(L"Rules broken", &Troubles::rulesBroken)};
}

std::vector<TableColumn> HealthTables::SeldomColumns() const
{
    const auto cut = [this](std::size_t item) -> const CutUse& { return m_pLevel->cuts[Seldom(item).cut]; };
    return {
        {L"Artist", 170, false, [=](std::size_t item) { return TableCell{cut(item).cArtist.Text()}; }},
        {L"Title", 200, false, [=](std::size_t item) { return TableCell{cut(item).cTitle.Text()}; }},
        {L"Plays", 72, true, [this](std::size_t item) { return Number(Seldom(item).lPlays); }},
        {L"Passed over", 100, true,
         [this](std::size_t item) { return Number(Seldom(item).lTimesPassedOver); }, true},
        {L"Because of", 120, false, [this](std::size_t item) { return TableCell{RuleText(Seldom(item))}; }},
        {L"Blocked by", 260, false, [this](std::size_t item) {
             const std::optional<std::size_t>& blocker = Seldom(item).blockedBy;
             if (!blocker)
                 return TableCell{};
             const BlockingCut& blocking = m_pStation->blockers[*blocker];
             return TableCell{blocking.cArtist.Text() + L" - " + blocking.cTitle.Text()};
         }}};
}

std::vector<TableColumn> HealthTables::PlaysColumns() const
{
    const auto cut = [this](std::size_t item) -> const CutUse& { return m_pLevel->cuts[item]; };
    return {{L"Artist", 120, false, [=](std::size_t item) { return TableCell{cut(item).cArtist.Text()}; }},
            {L"Title", 140, false, [=](std::size_t item) { return TableCell{cut(item).cTitle.Text()}; }},
            {L"Position", 76, true, [](std::size_t item) { return Count(item + 1); }},
            {L"Plays", 72, true, [=](std::size_t item) { return Number(cut(item).lPlays); }},
            {L"Same hour", 86, false,
             [=](std::size_t item) { return TableCell{cut(item).bLockStep ? L"yes" : L""}; }}};
}

std::vector<TableColumn> HealthTables::GapsColumns() const
{
    const auto artist = [this](std::size_t item) -> const ArtistUse& { return m_pLevel->artists[item]; };
    const auto gap = [&](const wchar_t* sHeader, double PlayDistances::*pMins) {
        return TableColumn{sHeader, 82, true,
                           [=](std::size_t item) { return Distance(artist(item).distances, pMins); }};
    };
    return {
        {L"Artist", 150, false, [=](std::size_t item) { return TableCell{artist(item).cName.Text()}; }},
        gap(L"Smallest", &PlayDistances::dSmallest),
        gap(L"Median", &PlayDistances::dMedian),
        gap(L"Largest", &PlayDistances::dLargest),
        {L"Cuts", 60, true, [=](std::size_t item) { return Number(artist(item).lCuts); }, true},
        {L"Plays", 72, true, [=](std::size_t item) { return Number(artist(item).lPlays); }, true},
        {L"Of cuts", 74, true, [=](std::size_t item) { return Percent(artist(item).dShareOfCuts); }, true},
        {L"Of picks", 74, true, [=](std::size_t item) { return Percent(artist(item).dShareOfPicks); }, true}};
}

std::vector<TableColumn> HealthTables::HoursColumns() const
{
    const auto cut = [this](std::size_t item) -> const CutUse& { return m_pLevel->cuts[item]; };
    std::vector<TableColumn> columns{
        {L"Artist", 110, false, [=](std::size_t item) { return TableCell{cut(item).cArtist.Text()}; }},
        {L"Title", 120, false, [=](std::size_t item) { return TableCell{cut(item).cTitle.Text()}; }}};
    for (std::size_t hour = 0; hour < 24; ++hour)
        columns.push_back({CountText(hour), 32, true,
                           [=](std::size_t item) {
            const std::int32_t lPlays = cut(item).colByHour[hour];
            return TableCell{lPlays > 0 ? DecimalText(lPlays) : L"", static_cast<double>(lPlays)};
                           },
                           true});
    return columns;
}

} // namespace ravlo

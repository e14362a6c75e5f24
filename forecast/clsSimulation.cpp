// SPDX-License-Identifier: MIT
#include "forecast/clsSimulation.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "forecast/Light.h"
#include "forecast/ReportText.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

clsSimulation::clsSimulation(SimulationResult result, StationHealth health, Station station)
    : m_result(std::move(result)), m_station(std::move(station)), m_health(std::move(health)),
      m_adviser(m_station.cMod, m_result), m_places(*m_result.cStation)
{
    const std::vector<SnapshotCut>& cuts = m_result.cStation->cuts;
    m_colNumbers.reserve(cuts.size());
    for (std::size_t number = 0; number < cuts.size(); ++number)
        m_colNumbers.emplace_back(cuts[number].values.cKey.Hash(), static_cast<CutNumber>(number));
    std::sort(m_colNumbers.begin(), m_colNumbers.end());
}

std::int32_t clsSimulation::KindCount(std::int32_t lKind) const noexcept
{
    return static_cast<std::int32_t>(
        std::count_if(m_result.rows.begin(), m_result.rows.end(),
                      [&](const SimulatedRow& row) { return row.lKind == lKind; }));
}

std::int32_t clsSimulation::Plays(const std::wstring& sCutKey, const std::wstring& strSubCatKey) const
{
    const std::optional<std::size_t> level = LevelOf(strSubCatKey);
    const std::optional<CutNumber> number = NumberOf(TextKey(sCutKey));
    std::uint32_t plays = 0;
    if (number)
        for (const CutPlaces::Place& place : m_places.Of(*number))
            if (!level || place.level == *level)
                plays += m_result.levels[place.level].cuts[place.position].plays;
    return static_cast<std::int32_t>(plays);
}

// Nothing for an empty key: all levels. Throws error 5 for one that names no level.
std::optional<std::size_t> clsSimulation::LevelOf(const std::wstring& strSubCatKey) const
{
    if (strSubCatKey.empty())
        return std::nullopt;
    const TextKey cWanted(strSubCatKey);
    const std::vector<SnapshotLevel>& levels = m_result.cStation->levels;
    const auto found = std::find_if(levels.begin(), levels.end(), [&](const SnapshotLevel& level) {
        return TextKey(CategoryKey(level.sCategory, level.lLevel)) == cWanted;
    });
    if (found == levels.end())
        throw RuntimeError(error::InvalidProcedureCall);
    return static_cast<std::size_t>(found - levels.begin());
}

void clsSimulation::SaveLog(const std::wstring& sFile) const
{
    LogBytes log;
    for (std::size_t row = 0; row < m_result.rows.size(); ++row)
        log.Add(m_result.RowAt(row));
    ReplaceFile(m_station.cMod.Ports().cFiles, sFile, log.Take());
}

template <class Work>
void clsSimulation::LookForAdvice(const SimulationProgress& progress, const Work& work) const
{
    if (m_bAdvising)
        throw RuntimeError(error::PermissionDenied);
    const ScopedFlag advising(m_bAdvising);
    const SimulationProgress letHostRun = [&](double dDone, bool& bCancel) {
        const ModScheduler::OthersRun cOthers(m_station.cMod);
        m_station.cMod.Pump();
        if (progress)
            progress(dDone, bCancel);
    };
    work(letHostRun);
}

// Precondition: the level is advised.
void clsSimulation::RememberSpread(std::size_t level) const
{
    if (const std::shared_ptr<clsSchedMan> cScheduler = m_station.cScheduler.lock())
        for (const LevelRemedy& remedy : *m_adviser.Of(level))
            if (remedy.spread)
                cScheduler->RememberSpread(*remedy.spread);
}

void clsSimulation::FindAdvice(std::size_t level, const SimulationProgress& progress) const
{
    if (m_health.levels.at(level).eLight != Light::Green && !m_adviser.Of(level))
        LookForAdvice(progress, [&](const SimulationProgress& letHostRun) {
            AdviseLevel(m_adviser, level, m_health, letHostRun);
            RememberSpread(level);
        });
}

void clsSimulation::FindAllAdvice(const SimulationProgress& progress) const
{
    if (!m_bAllAdvised)
        LookForAdvice(progress, [&](const SimulationProgress& letHostRun) {
            Advise(m_adviser, m_result, m_health, letHostRun,
                   [&](std::size_t level) { RememberSpread(level); });
        });
    m_bAllAdvised = true;
}

std::vector<std::wstring> clsSimulation::Advice(std::size_t level, const SimulationProgress& progress) const
{
    FindAdvice(level, progress);
    std::vector<std::wstring> texts = m_health.levels[level].advice;
    if (std::wstring sUnfilled = UnfilledText(m_health.levels[level]); !sUnfilled.empty())
        texts.insert(texts.begin(), std::move(sUnfilled));
    return texts;
}

std::vector<std::wstring> clsSimulation::ArtistsOverAsked() const
{
    std::vector<std::wstring> texts;
    for (const OverAskedArtist& artist : m_health.overAsked)
        texts.push_back(artist.sName + L": " + TextFromStore(LoadText(artist.dLoad)));
    return texts;
}

std::shared_ptr<Cut> clsSimulation::CutOf(const std::wstring& sKey) const
{
    const TextKey cKey(sKey);
    if (std::shared_ptr<Cut> cCut = m_station.cDataBase ? m_station.cDataBase->CutByKey(cKey) : nullptr)
        return cCut;
    const std::optional<CutNumber> number = NumberOf(cKey);
    if (!number)
        return nullptr;
    const SnapshotCut& cut = m_result.cStation->cuts[*number];
    std::shared_ptr<Cut> cCopy = NewPlainCut(cut.values);
    cCopy->SetPath(cut.sPath);
    return cCopy;
}

std::optional<CutNumber> clsSimulation::NumberOf(const TextKey& cKey) const
{
    for (auto it =
             std::lower_bound(m_colNumbers.begin(), m_colNumbers.end(), std::pair(cKey.Hash(), CutNumber{0}));
         it != m_colNumbers.end() && it->first == cKey.Hash(); ++it)
        if (m_result.cStation->cuts[it->second].values.cKey == cKey)
            return it->second;
    return std::nullopt;
}

} // namespace ravlo

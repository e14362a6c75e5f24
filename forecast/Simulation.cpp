// SPDX-License-Identifier: MIT
#include "forecast/Simulation.h"

#include "forecast/CutPlaces.h"
#include "forecast/PassOvers.h"
#include "forecast/StationCopy.h"
#include "plan/DayMaker.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ravlo
{

namespace
{

constexpr double dDaymS = 86'400'000.0;

// Counts what becomes of the cuts of each level.
class Tally
{
public:
    Tally(const StationSnapshot& snapshot, const LetHostRun& letHostRun) : m_places(snapshot, letHostRun)
    {
        m_colEntries.reserve(snapshot.levels.size());
        for (const SnapshotLevel& level : snapshot.levels)
            m_colEntries.emplace_back(level.order.size());
    }

    void Note(const TraceStep& step)
    {
        if (step.eKind == StepKind::NotAnOpener)
            m_passed.push_back({NumberOf(*step.pCandidate->cCut), eNone, 0});
        else if (step.eKind == StepKind::Measured && step.pBreach->eRule != eNone)
            m_passed.push_back(
                {NumberOf(*step.pCandidate->cCut), step.pBreach->eRule, NumberOf(*step.pBreach->cBlockedBy)});
    }

    // The steps since the last call led to this choice.
    void Settle(std::optional<std::size_t> level, std::optional<CutNumber> chosen)
    {
        if (level)
            for (const Passed& passed : m_passed)
                CountPassed(EntryOf(*level, passed.number), passed, chosen);
        if (level && chosen)
            ++EntryOf(*level, *chosen).plays;
        m_passed.clear();
    }

    CutOutcome OutcomeOf(std::size_t level, std::size_t position) const
    {
        const Entry& entry = m_colEntries[level][position];
        return {entry.plays, entry.passOvers.Times(), entry.noOpener, entry.passOvers.Reason(),
                entry.passOvers.Blocker()};
    }

private:
    struct Passed
    {
        CutNumber number;
        eRuleViolation eRule; // eNone: no opener
        CutNumber blocker;
    };
    struct Entry
    {
        std::uint32_t plays = 0;
        std::uint32_t noOpener = 0;
        PassOvers passOvers;
    };
    static void CountPassed(Entry& entry, const Passed& passed, std::optional<CutNumber> chosen)
    {
        if (passed.eRule == eNone)
            ++entry.noOpener;
        else if (passed.number != chosen)
            entry.passOvers.Count(passed.eRule, passed.blocker);
    }

    Entry& EntryOf(std::size_t level, CutNumber number)
    {
        return m_colEntries[level][m_places.PositionIn(level, number)];
    }

    const CutPlaces m_places;
    std::vector<std::vector<Entry>> m_colEntries; // by level and position in its order
    std::vector<Passed> m_passed;                 // in the present pick
};

class Simulation
{
public:
    // Reports the beginning.
    Simulation(ModScheduler& cMod, SimulationResult& result, const SimulationProgress& progress)
        : m_result(result), m_station(*result.cStation), m_pace(cMod.Ports().cClock, progress),
          m_tally(m_station, Begun()),
          m_copy(
              cMod, m_station, result.options, [this](const TraceStep& step) { m_tally.Note(step); },
              [this] { m_pace.PumpIfDue(); })
    {
        m_gaps.Reserve(m_station.played.size());
        for (const CutNumber number : m_station.played)
        {
            const PlainCutValues& values = m_station.cuts[number].values;
            m_gaps.Record(values.cArtist, values.cTitle, values.dtLastPlayed);
        }
        m_result.levels.resize(m_station.levels.size());
        for (const Slot& slot : m_result.plan.Slots())
            m_result.levelOfSlot.push_back(m_copy.LevelOf(slot));
    }

    void Run(DateTime dtEnd)
    {
        if (m_result.plan.IsTimed())
            PlayTimed(dtEnd);
        else
            PlayClock(dtEnd);
        for (std::size_t level = 0; level < m_result.levels.size(); ++level)
        {
            const std::size_t cuts = m_station.levels[level].order.size();
            m_result.levels[level].cuts.reserve(cuts);
            for (std::size_t position = 0; position < cuts; ++position)
                m_result.levels[level].cuts.push_back(m_tally.OutcomeOf(level, position));
            m_pace.PumpIfDue();
        }
        m_pace.Report(1);
    }

private:
    // What lets the host run, once it has heard of the beginning.
    LetHostRun Begun()
    {
        m_pace.Report(0);
        return [this] { m_pace.PumpIfDue(); };
    }

    void PlayClock(DateTime dtEnd)
    {
        const std::vector<Slot>& slots = m_result.plan.Slots();
        FillClock(slots, m_result.dtStart, dtEnd, [&](const Slot& slot, DateTime dtAt) {
            m_pace.Reached((dtAt - m_result.dtStart) / (dtEnd - m_result.dtStart));
            return Fill(static_cast<std::size_t>(&slot - slots.data()), dtAt);
        });
    }

    void PlayTimed(DateTime dtEnd)
    {
        const std::vector<DateTime>& times = m_result.plan.Times();
        const auto [first, last] = PositionsWithin(times, m_result.dtStart, dtEnd);
        for (std::size_t position = first; position < last; ++position)
        {
            m_pace.Reached(static_cast<double>(position - first) / static_cast<double>(last - first));
            Fill(position, times[position]);
        }
    }

    // Returns when the slot's cut ends.
    DateTime Fill(std::size_t position, DateTime dtStart)
    {
        const Slot& slot = m_result.plan.Slots()[position];
        const std::shared_ptr<Cut> cCut = m_copy.Play(slot, dtStart);
        SimulatedRow row{dtStart, static_cast<std::uint32_t>(position), cCut->KindCode(), {}, {}, {}};
        if (IsRealCut(row.lKind))
        {
            row.cut = NumberOf(*cCut);
            const PlainCutValues& values = m_station.cuts[*row.cut].values;
            row.dArtistGapMins = m_gaps.ArtistMins(values.cArtist, dtStart);
            row.dTitleGapMins = m_gaps.TitleMins(values.cTitle, dtStart);
            m_gaps.Record(values.cArtist, values.cTitle, dtStart);
        }
        Count(m_result.levelOfSlot[position], slot, row);
        m_result.rows.push_back(row);
        return m_result.dtEnd = EndOfSlot(dtStart, row.cut ? m_station.cuts[*row.cut].values.lDurationmS : 0);
    }

    void Count(std::optional<std::size_t> level, const Slot& slot, const SimulatedRow& row)
    {
        m_tally.Settle(level, row.cut);
        if (!level)
            return;
        LevelOutcome& outcome = m_result.levels[*level];
        ++outcome.asked;
        outcome.askedOpener += slot.bOpener ? 1 : 0;
        outcome.unfilled += row.cut ? 0 : 1;
        outcome.rulesBroken += row.cut && row.lKind != eKindChosen ? 1 : 0;
    }

    SimulationResult& m_result;
    const StationSnapshot& m_station;
    Pace m_pace;
    Tally m_tally;
    StationCopy m_copy;
    Gaps m_gaps;
};

} // namespace

LogRow SimulationResult::RowAt(std::size_t row) const
{
    const SimulatedRow& simulated = rows.at(row);
    LogRow log{simulated.dtStart,        plan.Slots()[simulated.slot], simulated.lKind, {},
               simulated.dArtistGapMins, simulated.dTitleGapMins};
    if (simulated.cut)
    {
        const SnapshotCut& cut = cStation->cuts[*simulated.cut];
        log.cut = PlayedCut{cut.values.cArtist.Text(), cut.values.cTitle.Text(), cut.values.cAlbum.Text(),
                            cut.sPath, cut.values.lDurationmS};
    }
    return log;
}

double SimulationResult::PlayedDays() const noexcept
{
    return plan.IsTimed() && !rows.empty() ? std::min(dDays, dtEnd - rows.front().dtStart) : dDays;
}

std::vector<LogRow> SimulationResult::Rows() const
{
    std::vector<LogRow> all;
    all.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        all.push_back(RowAt(row));
    return all;
}

namespace
{

// The end of the days. Throws error 5 when they cannot be simulated.
DateTime EndOf(DateTime dtStart, double dDays)
{
    if (!(dtStart > 0) || !(dDays >= dFewestDays && dDays <= dMostDays))
        throw RuntimeError(error::InvalidProcedureCall);
    const DateTime dtEnd = Later(dtStart, std::llround(dDays * dDaymS));
    WholeSeconds(dtEnd); // throws beyond the calendar
    return dtEnd;
}

} // namespace

void MustBePlayable(const Plan& plan, DateTime dtStart, double dDays)
{
    if (plan.Slots().empty())
        throw RuntimeError(error::InvalidProcedureCall, L"The plan has no slot");
    const auto [first, last] = PositionsWithin(plan.Times(), dtStart, EndOf(dtStart, dDays));
    if (plan.IsTimed() && first == last)
        throw RuntimeError(error::InvalidProcedureCall, L"The plan has no slot in the time asked for");
}

SimulationResult Simulate(ModScheduler& cMod, std::shared_ptr<const StationSnapshot> cStation,
                          const Plan& plan, DateTime dtStart, double dDays, const SimulationOptions& options,
                          const SimulationProgress& progress)
{
    MustBePlayable(plan, dtStart, dDays);
    SimulationResult result;
    result.options = cStation->options;
    result.options.bFairRotation = options.bFairRotation.value_or(result.options.bFairRotation);
    result.options.bFeaturedArtists = options.bFeaturedArtists.value_or(result.options.bFeaturedArtists);
    result.cStation = std::move(cStation);
    result.plan = plan;
    result.dtStart = dtStart;
    result.dDays = dDays;
    Simulation(cMod, result, progress).Run(EndOf(dtStart, dDays));
    return result;
}

} // namespace ravlo

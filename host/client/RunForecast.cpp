// SPDX-License-Identifier: MIT
// The commands simulate and health.
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/LevelFigures.h"
#include "host/client/Plays.h"
#include "host/client/ProgressLine.h"
#include "host/client/RotationObject.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/DayPlan.h"
#include "host/day/HostError.h"

#include <algorithm>

namespace ravlo
{

namespace
{

// The plan's slots, for what the host checks itself; exactly one of the two lists is used.
struct PlanFile
{
    std::vector<Slot> clock;
    std::vector<TimedSlot> timed;
};

PlanFile ReadPlan(const ForecastOptions& options)
{
    PlanFile plan;
    if (!options.sClock.empty())
        plan.clock = ParseClock(ReadWhole(FullPath(options.sClock)), options.sClock);
    else
        plan.timed = ParseSlots(ReadWhole(FullPath(options.sSlots)), options.sSlots);
    return plan;
}

void CheckPlan(const PlanFile& plan, const ForecastOptions& options,
               const std::vector<MediaLibrary::Entry>& entries)
{
    const LevelsInUse levels = LevelsOf(entries);
    CheckLevels(plan.clock, levels, options.sClock);
    for (const TimedSlot& timed : plan.timed)
        CheckLevels({timed.slot}, levels, options.sSlots);
}

// Shows how much of a part of the work is done, as the rotation object reports it. Clears the line at the
// end.
class StepsShown
{
public:
    StepsShown(_clsRotation& cObject, std::wstring sWork, ProgressLine& cLine)
        : m_sWork(std::move(sWork)), m_cLine(cLine),
          m_cListener(cObject, DIID___clsRotation,
                      [this](DISPID, const EventArguments& arguments) { Show(arguments.At(0).dblVal); })
    {
    }
    StepsShown(const StepsShown&) = delete;
    StepsShown& operator=(const StepsShown&) = delete;
    ~StepsShown() { m_cLine.Clear(); }

    // The steps that follow are that part of the work.
    void Begin(double dFrom, double dTo)
    {
        m_dFrom = dFrom;
        m_dTo = dTo;
    }

private:
    void Show(double dDone)
    {
        const double dOfWork = m_dFrom + dDone * (m_dTo - m_dFrom);
        m_cLine.Show(m_sWork + L": " + DecimalText(static_cast<std::int64_t>(dOfWork * 100)) + L" %");
    }

    const std::wstring m_sWork;
    ProgressLine& m_cLine;
    double m_dFrom = 0;
    double m_dTo = 1;
    const EventListener m_cListener;
};

ComPtr<_clsSimulation> Simulated(RotationObject& cRotation, const ForecastOptions& options, DateTime dtStart,
                                 ProgressLine& cLine)
{
    _clsRotation& cObject = cRotation.Object();
    cRotation.Check(options.sClock.empty() ? cObject.LoadSlots(Bstr(FullPath(options.sSlots)).Get())
                                           : cObject.LoadClock(Bstr(FullPath(options.sClock)).Get()));
    const StepsShown steps(cObject, L"Simulating", cLine);
    ComPtr<_clsSimulation> cSimulation;
    cRotation.Check(cObject.Simulate(dtStart, options.lDays, OptionVariant(options.rotation.bFair),
                                     OptionVariant(options.rotation.bFeatured), cSimulation.Receive()));
    return cSimulation;
}

// Adds the file's name to an error.
template <class Work> void Writing(const std::wstring& sFile, Work work)
{
    try
    {
        work();
    }
    catch (...)
    {
        throw HostError(sFile + L" cannot be written: " + CurrentErrorText());
    }
}

// Reads the log through a file, which is the only form in which a simulation gives it.
std::vector<LogRow> RowsOf(_clsSimulation& cSimulation, const std::wstring& sFile)
{
    Writing(sFile, [&] {
        ThrowIfFailed(cSimulation.SaveLog(Bstr(sFile).Get()), cSimulation, __uuidof(_clsSimulation));
    });
    return ParseLogCsv(ReadWhole(sFile));
}

// A file that is deleted at the end.
class TemporaryFile
{
public:
    TemporaryFile()
    {
        wchar_t sFolder[MAX_PATH + 1] = {};
        wchar_t sPath[MAX_PATH + 1] = {};
        if (GetTempPathW(MAX_PATH, sFolder) == 0 || GetTempFileNameW(sFolder, L"rvl", 0, sPath) == 0)
            throw HostError(L"no temporary file can be made");
        m_sPath = sPath;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { DeleteIfThere(m_sPath); }
    const std::wstring& Path() const noexcept { return m_sPath; }

private:
    std::wstring m_sPath;
};

std::vector<LogRow> SavedRows(_clsSimulation& cSimulation, const ForecastOptions& options)
{
    if (!options.sLog.empty())
        return RowsOf(cSimulation, FullPath(options.sLog));
    const TemporaryFile file;
    return RowsOf(cSimulation, file.Path());
}

// The rows of a clock follow each other; the log has their times in whole seconds only. Returns when the last
// one ends.
DateTime Chain(std::vector<LogRow>& rows, DateTime dtStart, bool bClock)
{
    DateTime dtNext = dtStart;
    for (LogRow& row : rows)
    {
        row.dtStart = bClock ? dtNext : row.dtStart;
        dtNext = EndOfSlot(row.dtStart, row.cut ? row.cut->lDurationmS : 0);
    }
    return dtNext;
}

void Advise(RotationObject& cRotation, _clsSimulation& cSimulation, std::vector<LevelFigures>& levels,
            ProgressLine& cLine)
{
    StepsShown steps(cRotation.Object(), L"Looking for what helps", cLine);
    AddAdvice(cSimulation, levels, [&](double dFrom, double dTo) { steps.Begin(dFrom, dTo); });
}

void PrintSimulation(_clsSimulation& cSimulation, const std::vector<LevelFigures>& levels,
                     const ForecastOptions& options, DateTime dtStart, const Console& cOut)
{
    std::vector<LogRow> rows = SavedRows(cSimulation, options);
    const DateTime dtEnd = Chain(rows, dtStart, !options.sClock.empty());
    std::vector<LevelFigures> notGreen;
    std::copy_if(levels.begin(), levels.end(), std::back_inserter(notGreen),
                 [](const LevelFigures& level) { return level.lLight != lGreen; });
    cOut.Write(Summary(rows, dtEnd) + (options.sLog.empty() ? L"" : L"Log: " + options.sLog + L"\n") +
               (notGreen.empty() ? L"Every level is green.\n" : HealthTable(notGreen)));
}

// "Clock file hot.txt, 28 days from 2026-11-22T06:00:00"
std::wstring PlanLine(const ForecastOptions& options, DateTime dtStart)
{
    return (options.sClock.empty() ? L"Slot file " + options.sSlots : L"Clock file " + options.sClock) +
           L", " + DecimalText(options.lDays) + (options.lDays == 1 ? L" day" : L" days") + L" from " +
           IsoText(dtStart) + L"\n";
}

int PrintHealth(const std::wstring& sPlanLine, const std::vector<LevelFigures>& levels,
                const std::vector<std::wstring>& overAsked, const Console& cOut)
{
    std::wstring sText = sPlanLine + HealthTable(levels) + AdviceLines(levels);
    for (const std::wstring& sArtist : overAsked)
        sText += L"Asked for more often than its separations allow: " + sArtist + L"\n";
    cOut.Write(sText);
    const bool bRed = std::any_of(levels.begin(), levels.end(),
                                  [](const LevelFigures& level) { return level.lLight == lRed; });
    return bRed ? lExitRed : lExitOk;
}

void WriteReports(RotationObject& cRotation, _clsSimulation& cSimulation, const ForecastOptions& options,
                  const Console& cOut)
{
    for (const std::wstring& sFile : {options.sHtml, options.sJson})
    {
        if (sFile.empty())
            continue;
        Writing(sFile, [&, sPath = FullPath(sFile)] {
            cRotation.Check(cRotation.Object().WriteReport(&cSimulation, Bstr(sPath).Get()));
        });
        cOut.Write(L"Report: " + sFile + L"\n");
    }
}

} // namespace

int RunForecast(const ForecastOptions& options, const Console& cOut, const Console& cError)
{
    MustBeStation(options.sDataBase, options.sAppFolder);
    for (const std::wstring& sFile : {options.sLog, options.sHtml, options.sJson})
        if (!sFile.empty())
            MustBeWritable(FullPath(sFile));
    const PlanFile plan = ReadPlan(options);
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::vector<MediaLibrary::Entry> entries = library.Entries();
    CheckPlan(plan, options, entries);

    ProgressLine line(cError, options.bProgress);
    const std::wstring sAppFolder = FullPath(options.sAppFolder);
    Scheduler scheduler(library, false);
    scheduler.Populate(sAppFolder, [&](const std::wstring& sText, long, long) { line.Show(sText); });
    const Plays plays(entries);
    Gaps gaps;
    plays.Report(scheduler, gaps);

    RotationObject rotation(scheduler);
    const DateTime dtStart = options.dtStart      ? *options.dtStart
                             : plan.timed.empty() ? plays.End()
                                                  : plan.timed.front().dtAt;
    const ComPtr<_clsSimulation> cSimulation = Simulated(rotation, options, dtStart, line);
    std::vector<LevelFigures> levels = FiguresOf(*cSimulation);
    if (!options.bHealth)
    {
        PrintSimulation(*cSimulation, levels, options, dtStart, cOut);
        return lExitOk;
    }
    Advise(rotation, *cSimulation, levels, line);
    const int lStatus = PrintHealth(PlanLine(options, dtStart), levels, OverAsked(*cSimulation), cOut);
    WriteReports(rotation, *cSimulation, options, cOut);
    return lStatus;
}

} // namespace ravlo

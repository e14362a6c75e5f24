// SPDX-License-Identifier: MIT
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/LibraryPlays.h"
#include "host/client/MediaLibrary.h"
#include "host/client/Plays.h"
#include "host/client/ProgressLine.h"
#include "host/client/RotationObject.h"
#include "host/client/Scheduler.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/DayPlan.h"
#include "host/day/HostError.h"
#include "host/day/PlayBook.h"
#include "plan/DayExports.h"
#include "plan/DayMaker.h"

namespace ravlo
{

namespace
{

constexpr int lHoursOfADay = 24;

// A file that a run may write its day to.
struct DayFile
{
    const wchar_t* sWhat;
    std::wstring DayOptions::*sName; // empty: not wanted
    std::string (*contentOf)(const std::vector<LogRow>& rows);
};

constexpr DayFile dayFiles[] = {
    {L"Log", &DayOptions::sLog, LogCsv},
    {L"Playlist", &DayOptions::sM3u8, DayPlaylist},
    {L"JSON", &DayOptions::sJson, DayJson},
};

// The slots to fill; exactly one of the two lists is used.
struct DayRequest
{
    std::vector<Slot> clock;
    std::vector<TimedSlot> timed;
    DateTime dtStart = 0; // of a clock
};

// Reads the slot or clock file, completely before the database is opened.
DayRequest ReadRequest(const DayOptions& options)
{
    DayRequest request;
    if (!options.sClock.empty())
        request.clock = ParseClock(ReadWhole(FullPath(options.sClock)), options.sClock);
    if (!options.sSlots.empty())
    {
        const std::vector<TimedSlot> slots = ParseSlots(ReadWhole(FullPath(options.sSlots)), options.sSlots);
        request.timed = SlotsWithin(slots, options.dtStart, options.lHours);
        if (request.timed.empty())
            throw HostError(options.sSlots + L" holds no slot in the time asked for");
    }
    return request;
}

// Completes the request from the library and checks its levels.
void Complete(DayRequest& request, const DayOptions& options, const std::vector<MediaLibrary::Entry>& entries)
{
    const LevelsInUse levels = LevelsOf(entries);
    CheckLevels(request.clock, levels, options.sClock);
    for (const TimedSlot& timed : request.timed)
        CheckLevels({timed.slot}, levels, options.sSlots);
    if (request.clock.empty() && request.timed.empty())
    {
        request.clock = levels.RoundOfAll();
        if (request.clock.empty())
            throw HostError(options.sDataBase + L" holds no cut in any category");
    }
    request.dtStart = options.dtStart ? *options.dtStart : Plays(entries).End();
}

void Fill(Day& day, const DayRequest& request, const DayOptions& options, DayMaker& maker)
{
    if (request.timed.empty())
    {
        maker.FromClock(day, request.clock, request.dtStart,
                        LaterByHours(request.dtStart, options.lHours.value_or(lHoursOfADay)));
    }
    else
    {
        maker.FromSlots(day, request.timed);
    }
}

// Collects the errors of a run's final steps, each of which runs even when another fails.
class Failures
{
public:
    template <class Step> void Try(Step step)
    {
        try
        {
            step();
        }
        catch (...)
        {
            Add(CurrentErrorText());
        }
    }
    void Add(const std::wstring& sWhat)
    {
        m_sWhat += (m_sWhat.empty() || sWhat.empty() ? L"" : L"; ") + sWhat;
    }
    void ThrowIfAny() const
    {
        if (!m_sWhat.empty())
            throw HostError(m_sWhat);
    }

private:
    std::wstring m_sWhat;
};

void Print(const Day& day, const DayOptions& options, const Console& cOut)
{
    std::wstring sText;
    for (const LogRow& row : day.rows)
        sText += options.bQuiet ? L"" : LogLine(row) + L"\n";
    sText += Summary(day.rows, day.dtEnd);
    for (const DayFile& file : dayFiles)
        sText += (options.*file.sName).empty() ? L"" : file.sWhat + (L": " + options.*file.sName) + L"\n";
    cOut.Write(sText);
}

} // namespace

void RunDay(const DayOptions& options, const Console& cOut, const Console& cError)
{
    MayBeStation(options.sDataBase, options.sAppFolder);
    for (const DayFile& file : dayFiles)
        if (!(options.*file.sName).empty())
            MustBeWritable(FullPath(options.*file.sName));
    DayRequest request = ReadRequest(options);
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::vector<MediaLibrary::Entry> entries = library.Entries();
    Complete(request, options, entries);

    ProgressLine line(cError, options.bProgress);
    const std::wstring sAppFolder = FullPath(options.sAppFolder);
    cOut.Write(MakeStation(options.sAppFolder));
    Scheduler scheduler(library, options.bSaveEach);
    MustBeFree(options.sAppFolder); // right before the scheduler marks it
    scheduler.Populate(sAppFolder, [&](const std::wstring& sText, long, long) { line.Show(sText); });
    Gaps gaps;
    Plays(entries).Report(scheduler, gaps);

    LibraryPlays plays(library, !options.bSaveEach);
    PlayBook book(plays, {[] { return static_cast<std::int64_t>(::GetTickCount64()); },
                          [](std::int64_t lmS) { ::Sleep(static_cast<DWORD>(lmS)); }});
    scheduler.KeepBook(book);
    RotationObject(scheduler).UseForThisRun(options.rotation);
    DayMaker maker(scheduler, gaps, [&](double dDone) {
        book.Tick();
        line.Show(L"Filling the day: " + DecimalText(static_cast<std::int64_t>(dDone * 100)) + L" %");
    });
    // The files come first: they show what was aired, whether that could be saved or not.
    Day day;
    Failures failures;
    failures.Try([&] { Fill(day, request, options, maker); });
    line.Clear();
    for (const DayFile& file : dayFiles)
        if (!(options.*file.sName).empty())
            failures.Try([&] { WriteWhole(FullPath(options.*file.sName), file.contentOf(day.rows)); });
    Print(day, options, cOut);
    failures.Try([&] {
        failures.Add(book.Settle(
            [&] { line.Show(L"Waiting for another program that is writing to " + options.sDataBase); }));
        line.Clear();
    });
    failures.Try([&] { scheduler.SaveOrders(); });
    failures.ThrowIfAny();
}

} // namespace ravlo

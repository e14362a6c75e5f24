// SPDX-License-Identifier: MIT
#include "host/client/Categories.h"
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/MediaLibrary.h"
#include "host/client/Plays.h"
#include "host/client/ProgressLine.h"
#include "host/client/Scheduler.h"

#include "base/Text.h"
#include "host/day/HostError.h"
#include "host/day/Rotation.h"
#include "plan/DayMaker.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t linesOfOrder = 12;

// Imports while the scheduler listens, and writes its progress.
void Import(MediaLibrary& cLibrary, Scheduler& cScheduler, const std::wstring& sCsv, ProgressLine& cLine,
            const Console& cOut)
{
    const auto tell = [&](const std::wstring& sText) {
        cLine.Clear();
        cOut.Write(L"  " + sText + L"\n");
    };
    const ProgressListener follow =
        cScheduler.Follow({[&](const std::wstring& sText, long, long) { tell(sText); },
                           [&](const std::wstring& sText, long, long) { cLine.Show(sText); }, tell});
    std::wstring sReport;
    cLibrary.ImportCsv(
        sCsv, [](const std::wstring&, long, long) {}, sReport);
    cLine.Clear();
}

// Plays from the level in which a new cut comes up first, to show new cuts in rotation.
void PlayNew(const Rotation& rotation, const LevelChange& level, const WatchOptions& options,
             Scheduler& cScheduler, Gaps& cGaps, DateTime dtStart, const Console& cOut)
{
    const auto order = std::find_if(rotation.begin(), rotation.end(), [&](const LevelOrder& other) {
        return other.sCategory == level.sCategory && other.lLevel == level.lLevel;
    });
    const std::wstring sLevel = TextOf(CategoryName{level.sCategory, level.lLevel});
    cOut.Write(L"\nThe rotation of " + sLevel + L", where new cuts come up soonest:\n" +
               OrderLines(*order, level.newAt, linesOfOrder));
    if (options.lPicks == 0)
        return;
    cOut.Write(L"\nThe next " + CountOf(static_cast<std::size_t>(options.lPicks), L"pick", L"picks") +
               L":\n");
    DayMaker maker(cScheduler, cGaps, [](double) {});
    Day day;
    maker.Repeated(day, {level.sCategory, level.lLevel, false, 0}, dtStart, options.lPicks);
    for (const LogRow& row : day.rows)
        cOut.Write(LogLine(row) + L"\n");
    cScheduler.SaveOrders();
}

// Returns the number of boxes before the import began.
std::size_t Watch(const WatchOptions& options, const Boxes& cBoxes, const Console& cOut,
                  const Console& cError)
{
    MayBeStation(options.sDataBase, options.sAppFolder);
    const std::wstring sCsv = FullPath(options.sCsv);
    MustExist(sCsv);
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::vector<MediaLibrary::Entry> entries = library.Entries();
    const Plays plays(entries);

    ProgressLine line(cError, options.bProgress);
    const std::wstring sAppFolder = FullPath(options.sAppFolder);
    cOut.Write(MakeStation(options.sAppFolder));
    Scheduler scheduler(library, false);
    MustBeFree(options.sAppFolder); // right before the scheduler marks it
    scheduler.Populate(sAppFolder, [&](const std::wstring& sText, long, long) { line.Show(sText); });
    Gaps gaps;
    plays.Report(scheduler, gaps);
    const Categories categories(scheduler.Object());
    const Rotation before = categories.Orders();
    line.Clear();

    const std::size_t boxesBefore = cBoxes.Count();
    cOut.Write(L"The scheduler is open on " + options.sDataBase + L" and follows its changes.\nImporting " +
               options.sCsv + L"\n");
    Import(library, scheduler, sCsv, line, cOut);

    const Rotation after = categories.Orders();
    const RotationChange change = ChangeBetween(before, after);
    cOut.Write(L"\nIn the rotation: " + DecimalText(static_cast<std::int64_t>(change.added)) + L" new, " +
               DecimalText(static_cast<std::int64_t>(change.moved)) + L" moved, " +
               DecimalText(static_cast<std::int64_t>(change.gone)) + L" gone\n" + ChangeTable(change));
    if (const LevelChange* soonest = SoonestNew(change))
        PlayNew(after, *soonest, options, scheduler, gaps, plays.End(), cOut);
    else
        cOut.Write(L"\nNo cut came into a level: the rotation goes on as it was.\n");
    return boxesBefore;
}

} // namespace

void RunWatch(const WatchOptions& options, const Boxes& cBoxes, const Console& cOut, const Console& cError)
{
    const std::size_t boxesBefore = Watch(options, cBoxes, cOut, cError);
    // The scheduler is closed now, so boxes from its final save count too.
    if (cBoxes.Count() > boxesBefore)
        throw HostError(L"the cuts were imported, but the scheduler could not save everything");
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Boxes.h"
#include "host/client/Console.h"
#include "host/day/CommandLine.h"

namespace ravlo
{

// Each throws when it fails: HostError, or the errors of the scheduler and the database. Wrong file and
// category names on the command line are reported before anything is changed. After a later failure, what was
// done before stays, such as a moved cut or a new level.

// Reads a library into the database and prints the number of cuts.
void RunImport(const ImportOptions& options, const Console& cOut, const Console& cError);

// Reports the plays of a period, in a file or on the console.
void RunPlays(const PlaysOptions& options, const Console& cOut);

// Prints what a plan would play, or how the station fares with it. Changes nothing but the files it is told
// to write. Returns lExitRed when health finds a red level.
int RunForecast(const ForecastOptions& options, const Console& cOut, const Console& cError);

// Shows or sets the options of rotation, spreads levels, or explains a pick.
void RunRotation(const RotationCommand& options, const Boxes& cBoxes, const Console& cOut,
                 const Console& cError);

// Fills a day and prints its log and summary.
void RunDay(const DayOptions& options, const Console& cOut, const Console& cError);

// Imports cuts while a scheduler is open and shows how its rotation changes. Throws at the end when the
// scheduler showed a box since the import began: the cuts are in the database, but something was not saved.
void RunWatch(const WatchOptions& options, const Boxes& cBoxes, const Console& cOut, const Console& cError);

// Lists or changes categories. Returns lExitDeclined when the question before a change was not answered with
// yes. Also throws when a change was made but the scheduler showed a box: not all of it was saved.
int RunCats(const CatsOptions& options, const Boxes& cBoxes, const Console& cOut, const Console& cError);

// Open one of the scheduler's windows and return when it is closed. RunCategory prints what was chosen.
void RunCategory(const CategoryOptions& options, const Console& cOut, const Console& cError);
void RunLibrary(const LibraryOptions& options, const Console& cError);
void RunHealthWindow(const ForecastOptions& options, const Console& cError);

} // namespace ravlo

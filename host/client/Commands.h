// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Boxes.h"
#include "host/client/Console.h"
#include "host/day/CommandLine.h"

namespace ravlo
{

// Each does its whole work or throws before anything was touched: HostError, or what the scheduler and the
// database say.

// Reads a library into the database and tells how many cuts came.
void RunImport(const ImportOptions& options, const Console& cOut, const Console& cError);

// Fills a day and prints its log and summary.
void RunDay(const DayOptions& options, const Console& cOut, const Console& cError);

// Imports cuts while a scheduler is open and shows what its rotation makes of them.
void RunWatch(const WatchOptions& options, const Console& cOut, const Console& cError);

// Lists or changes categories. lExitDeclined when the question before a change was not answered with yes.
int RunCats(const CatsOptions& options, const Boxes& cBoxes, const Console& cOut, const Console& cError);

// Open one of the scheduler's windows and return when it is closed. What is chosen in the category window is
// printed.
void RunCategory(const CategoryOptions& options, const Console& cOut, const Console& cError);
void RunLibrary(const LibraryOptions& options, const Console& cError);

} // namespace ravlo

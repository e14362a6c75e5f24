// SPDX-License-Identifier: MIT
#include "host/day/CommandLine.h"

#include "text/Utf8.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace ravlo
{

namespace
{

constexpr int lMostHours = 366 * 24;

// The options as the command line holds them, before they are looked at.
struct Raw
{
    std::string sDataBase;
    std::string sCsv;
    std::string sAppFolder;
    std::string sStart;
    std::string sClock;
    std::string sSlots;
    std::string sLog;
    int lHours = 0;
    bool bSaveEach = false;
    bool bQuiet = false;
    bool bProgress = false;
};

std::wstring Wide(const std::string& bytes) { return TextFromStore(bytes); }

// An option may be given empty by a script's unset variable; that is a mistake, not a wish.
CLI::Validator NotEmpty()
{
    return CLI::Validator(
        [](const std::string& sText) { return std::string(sText.empty() ? "must not be empty" : ""); }, "");
}

CLI::Validator IsTime()
{
    return CLI::Validator(
        [](const std::string& sText)
        {
            const auto dtWhen = ParseIso(Wide(sText));
            return dtWhen && *dtWhen > 0 ? std::string()
                                         : "'" + sText + "' is no time (expected yyyy-mm-ddThh:nn:ss)";
        },
        "");
}

void DescribeImport(CLI::App& cImport, Raw& raw)
{
    cImport.add_option("--db", raw.sDataBase, "the media database; made when it is missing")
        ->required()
        ->type_name("FILE")
        ->check(NotEmpty());
    cImport.add_option("--csv", raw.sCsv, "the library in CSV form")
        ->required()
        ->type_name("FILE")
        ->check(NotEmpty());
    cImport.add_flag("--progress", raw.bProgress, "show progress even where standard error is no console");
}

void DescribeDay(CLI::App& cDay, Raw& raw)
{
    cDay.add_option("--db", raw.sDataBase, "the media database")
        ->required()
        ->type_name("FILE")
        ->check(NotEmpty());
    cDay.add_option("--app", raw.sAppFolder,
                    "the folder that holds the scheduler's files; made when it is missing")
        ->required()
        ->type_name("FOLDER")
        ->check(NotEmpty());
    cDay.add_option("--start", raw.sStart,
                    "when the first slot starts (default: the end of the last recorded play, or now)")
        ->type_name("TIME")
        ->check(IsTime());
    cDay.add_option("--hours", raw.lHours,
                    "how long the day is (default: 24 with a clock, all slots of a slot file)")
        ->type_name("N")
        ->check(CLI::Range(1, lMostHours));
    auto* clock =
        cDay.add_option("--clock", raw.sClock, "the slots of an hour, repeated: category,level,opener a line")
            ->type_name("FILE")
            ->check(NotEmpty());
    cDay.add_option("--slots", raw.sSlots, "the slots of the day, CSV: slot_at,category,level,opener")
        ->type_name("FILE")
        ->check(NotEmpty())
        ->excludes(clock);
    cDay.add_option("--log", raw.sLog, "write the log to this file, CSV")
        ->type_name("FILE")
        ->check(NotEmpty());
    cDay.add_flag("--save-each", raw.bSaveEach, "save the rotation orders with every pick, as on air");
    cDay.add_flag("-q,--quiet", raw.bQuiet, "print the summary only");
    cDay.add_flag("--progress", raw.bProgress, "show progress even where standard error is no console");
}

DayOptions DayOf(const Raw& raw, bool bHours)
{
    DayOptions options;
    options.sDataBase = Wide(raw.sDataBase);
    options.sAppFolder = Wide(raw.sAppFolder);
    if (!raw.sStart.empty())
    {
        options.dtStart = ParseIso(Wide(raw.sStart));
    }
    if (bHours)
    {
        options.lHours = raw.lHours;
    }
    options.sClock = Wide(raw.sClock);
    options.sSlots = Wide(raw.sSlots);
    options.sLog = Wide(raw.sLog);
    options.bSaveEach = raw.bSaveEach;
    options.bQuiet = raw.bQuiet;
    options.bProgress = raw.bProgress;
    return options;
}

std::wstring OneLine(std::string sText)
{
    std::replace(sText.begin(), sText.end(), '\n', ' ');
    std::replace(sText.begin(), sText.end(), '\r', ' ');
    return L"RavloHost: " + Wide(sText) + L"\n";
}

} // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments)
{
    Raw raw;
    CLI::App cApp("Fills a radio station's day from its media library.", "RavloHost");
    cApp.set_version_flag("--version", "RavloHost " RAVLO_VERSION);
    cApp.require_subcommand(1);
    auto& cImport = *cApp.add_subcommand("import", "read a library into the media database");
    auto& cDay = *cApp.add_subcommand("day", "fill the slots of a day and print its log");
    DescribeImport(cImport, raw);
    DescribeDay(cDay, raw);
    try
    {
        cApp.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    }
    catch (const CLI::Success& answer)
    {
        std::ostringstream text;
        cApp.exit(answer, text, text);
        return Reply{lExitOk, Wide(text.str())};
    }
    catch (const CLI::Error& mistake)
    {
        return Reply{lExitUsage, OneLine(mistake.what())};
    }
    if (cImport.parsed())
    {
        return ImportOptions{Wide(raw.sDataBase), Wide(raw.sCsv), raw.bProgress};
    }
    return DayOf(raw, cDay.count("--hours") > 0);
}

} // namespace ravlo

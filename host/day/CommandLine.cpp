// SPDX-License-Identifier: MIT
#include "host/day/CommandLine.h"

#include "base/Utf8.h"
#include "host/day/HostError.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <sstream>
#include <utility>

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
    std::string sNewName;
    std::string sMainCat;
    std::vector<std::string> categories;
    std::string sTo;
    std::vector<std::string> cuts;
    std::string sPicture;
    std::string sCaption;
    std::string sCut;
    int lHours = 0;
    int lPicks = WatchOptions().lPicks;
    int lLevel = 0;
    int lFirst = 0;
    bool bExclusive = false;
    bool bAllowNew = false;
    bool bMultiSelect = false;
    bool bYes = false;
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
        [](const std::string& sText) {
        const auto dtWhen = ParseIso(Wide(sText));
        return dtWhen && *dtWhen > 0 ? std::string()
                                     : "'" + sText + "' is no time (expected yyyy-mm-ddThh:nn:ss)";
        },
        "");
}

constexpr int lMostPicks = 1000;

// "NAME" or, with bMayHaveLevel, "NAME:LEVEL".
CLI::Validator IsCategory(bool bMayHaveLevel = true)
{
    return CLI::Validator(
        [bMayHaveLevel](const std::string& sText) {
        try
        {
            const auto name = ParseCategoryName(Wide(sText));
            return name.lLevel == 0 || bMayHaveLevel
                       ? std::string()
                       : "'" + sText + "' is a level; a main category is expected";
        }
        catch (const HostError& error)
        {
            return Utf8Of(error.Description());
        }
        },
        "");
}

void DescribeStation(CLI::App& cCommand, Raw& raw)
{
    cCommand.add_option("--db", raw.sDataBase, "the media database")
        ->required()
        ->type_name("FILE")
        ->check(NotEmpty());
    cCommand
        .add_option("--app", raw.sAppFolder,
                    "the folder that holds the scheduler's files; made when it is missing")
        ->required()
        ->type_name("FOLDER")
        ->check(NotEmpty());
}

void DescribeProgress(CLI::App& cCommand, Raw& raw)
{
    cCommand.add_flag("--progress", raw.bProgress, "show progress even where standard error is no console");
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
    DescribeProgress(cImport, raw);
}

void DescribeDay(CLI::App& cDay, Raw& raw)
{
    DescribeStation(cDay, raw);
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
    cDay.add_flag(
        "--save-each", raw.bSaveEach,
        "save the play and the rotation order with every pick, as on air (default: the plays once a "
        "second, which is what a power cut may cost, and the orders at the end)");
    cDay.add_flag("-q,--quiet", raw.bQuiet, "print the summary only");
    DescribeProgress(cDay, raw);
}

void DescribeWatch(CLI::App& cWatch, Raw& raw)
{
    DescribeStation(cWatch, raw);
    cWatch
        .add_option("--csv", raw.sCsv, "the cuts to import while the scheduler is open, as import reads them")
        ->required()
        ->type_name("FILE")
        ->check(NotEmpty());
    cWatch.add_option("--picks", raw.lPicks, "how many cuts to play from the level that received new ones")
        ->type_name("N")
        ->check(CLI::Range(0, lMostPicks))
        ->capture_default_str();
    DescribeProgress(cWatch, raw);
}

CLI::App& AddCategories(CLI::App& cCommand, Raw& raw, const char* sWhat)
{
    cCommand.add_option("CATEGORY", raw.categories, sWhat)->required()->type_name("")->check(IsCategory());
    return cCommand;
}

void AddYes(CLI::App& cCommand, Raw& raw) { cCommand.add_flag("-y,--yes", raw.bYes, "do it without asking"); }

void DescribeTransfer(CLI::App& cCommand, Raw& raw)
{
    AddCategories(cCommand, raw, "the categories or levels whose cuts are meant");
    cCommand.add_option("--to", raw.sTo, "where to: a level, or a main category to keep each cut's level")
        ->required()
        ->type_name("CATEGORY")
        ->check(IsCategory());
    cCommand.add_option("--cut", raw.cuts, "only the cut with this path; may be given again for another")
        ->type_name("PATH")
        ->check(NotEmpty())
        ->expected(1)
        ->take_all();
}

// The actions of cats by their names.
constexpr std::pair<const char*, CatsAction> colCatsActions[] = {
    {"list", CatsAction::List},       {"new", CatsAction::New},   {"level", CatsAction::Level},
    {"shuffle", CatsAction::Shuffle}, {"move", CatsAction::Move}, {"copy", CatsAction::Copy},
    {"delete", CatsAction::Delete},
};

void DescribeCatsChanges(CLI::App& cCats, Raw& raw)
{
    auto& cNew = *cCats.add_subcommand("new", "make a category with level 1");
    cNew.add_option("NAME", raw.sNewName, "its name")->required()->type_name("")->check(NotEmpty());
    auto& cLevel = *cCats.add_subcommand("level", "make a further level of a category");
    cLevel.add_option("CATEGORY", raw.sMainCat, "the main category")
        ->required()
        ->type_name("")
        ->check(IsCategory(false));
    cLevel.add_option("LEVEL", raw.lLevel, "the level's number")
        ->required()
        ->type_name("")
        ->check(CLI::Range(1, static_cast<int>(lMostLevel)));
    auto& cShuffle = *cCats.add_subcommand("shuffle", "put the cuts of levels into a new random order");
    AddYes(AddCategories(cShuffle, raw, "what to shuffle; a main category means each of its levels"), raw);
    auto& cMove = *cCats.add_subcommand("move", "move cuts to another category or level");
    DescribeTransfer(cMove, raw);
    cMove.add_flag("--exclusive", raw.bExclusive, "take the cuts out of every other category as well");
    AddYes(cMove, raw);
    DescribeTransfer(*cCats.add_subcommand("copy", "file cuts in a further category"), raw);
    auto& cDelete = *cCats.add_subcommand("delete", "delete levels, or categories with all their levels; the "
                                                    "cuts stay in the database");
    AddYes(AddCategories(cDelete, raw, "what to delete"), raw);
}

void DescribeCats(CLI::App& cCats, Raw& raw)
{
    DescribeStation(cCats, raw);
    DescribeProgress(cCats, raw);
    cCats.require_subcommand(1);
    auto& cList = *cCats.add_subcommand("list", "show the levels, or the cuts of a level in rotation order");
    cList.add_option("CATEGORY", raw.categories, "what to show (default: every category)")
        ->type_name("")
        ->check(IsCategory());
    cList.add_option("--first", raw.lFirst, "show at most so many cuts of each level")
        ->type_name("N")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()));
    DescribeCatsChanges(cCats, raw);
    for (const auto& [sName, eAction] : colCatsActions)
    {
        cCats.get_subcommand(sName)->fallthrough(); // --db and --app may stand after the action as well
    }
    cCats.footer(
        "A category is written NAME, one of its levels NAME:LEVEL (rock:2); a name with blanks goes in "
        "quotation marks.\nshuffle, move and delete ask first and end with status 3 when the answer "
        "is not yes.");
}

void DescribeWindow(CLI::App& cCommand, Raw& raw)
{
    DescribeStation(cCommand, raw);
    cCommand
        .add_option("--picture", raw.sPicture,
                    "take a picture of the window, PNG, and close it, instead of leaving it to you")
        ->type_name("FILE")
        ->check(NotEmpty());
    DescribeProgress(cCommand, raw);
}

void DescribeCategory(CLI::App& cCategory, Raw& raw)
{
    DescribeWindow(cCategory, raw);
    cCategory.add_option("--category", raw.sMainCat, "what is chosen at first: NAME, or NAME:LEVEL")
        ->type_name("CATEGORY")
        ->check(IsCategory());
    cCategory.add_option("--caption", raw.sCaption, "the window's caption")->type_name("TEXT");
    cCategory.add_flag("--new", raw.bAllowNew, "categories and levels can be made in it");
    cCategory.add_flag("--multi", raw.bMultiSelect, "several categories can be chosen");
    cCategory
        .add_option("--cut", raw.sCut, "with --multi: the cut with this path is filed under what is chosen")
        ->type_name("PATH")
        ->check(NotEmpty())
        ->needs(cCategory.get_option("--multi"));
}

CategoryOptions CategoryOf(const Raw& raw)
{
    CategoryOptions options;
    options.sDataBase = Wide(raw.sDataBase);
    options.sAppFolder = Wide(raw.sAppFolder);
    options.sPicture = Wide(raw.sPicture);
    options.sCaption = Wide(raw.sCaption);
    if (!raw.sMainCat.empty())
    {
        options.category = ParseCategoryName(Wide(raw.sMainCat));
    }
    options.sCut = Wide(raw.sCut);
    options.bAllowNew = raw.bAllowNew;
    options.bMultiSelect = raw.bMultiSelect;
    options.bProgress = raw.bProgress;
    return options;
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

WatchOptions WatchOf(const Raw& raw)
{
    return {Wide(raw.sDataBase), Wide(raw.sAppFolder), Wide(raw.sCsv), raw.lPicks, raw.bProgress};
}

CatsOptions CatsOf(const CLI::App& cCats, const Raw& raw)
{
    CatsOptions options;
    for (const auto& [sName, eAction] : colCatsActions)
    {
        options.eAction = cCats.got_subcommand(sName) ? eAction : options.eAction;
    }
    options.sDataBase = Wide(raw.sDataBase);
    options.sAppFolder = Wide(raw.sAppFolder);
    options.sNewName = Wide(raw.sNewName);
    for (const auto& sCategory : raw.categories)
    {
        options.categories.push_back(ParseCategoryName(Wide(sCategory)));
    }
    if (!raw.sMainCat.empty())
    {
        options.categories.push_back(ParseCategoryName(Wide(raw.sMainCat)));
    }
    options.lLevel = raw.lLevel;
    if (!raw.sTo.empty())
    {
        options.to = ParseCategoryName(Wide(raw.sTo));
    }
    for (const auto& sCut : raw.cuts)
    {
        options.cuts.push_back(Wide(sCut));
    }
    options.bExclusive = raw.bExclusive;
    options.bYes = raw.bYes;
    options.lFirst = raw.lFirst;
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
    CLI::App cApp("A small playout host: fills a radio station's day from its media library.", "RavloHost");
    cApp.set_version_flag("--version", "RavloHost " RAVLO_VERSION);
    cApp.require_subcommand(1);
    auto& cImport = *cApp.add_subcommand("import", "read a library into the media database");
    auto& cDay = *cApp.add_subcommand("day", "fill the slots of a day and print its log");
    auto& cWatch =
        *cApp.add_subcommand("watch", "import cuts into an open station and show the rotation taking "
                                      "them in");
    auto& cCats = *cApp.add_subcommand("cats", "list and change the categories");
    auto& cCategory = *cApp.add_subcommand("category", "open the category window and print what was chosen");
    auto& cLibrary = *cApp.add_subcommand("library", "open the library window");
    DescribeImport(cImport, raw);
    DescribeCategory(cCategory, raw);
    DescribeWindow(cLibrary, raw);
    DescribeWatch(cWatch, raw);
    DescribeCats(cCats, raw);
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
    if (cWatch.parsed())
    {
        return WatchOf(raw);
    }
    if (cCats.parsed())
    {
        return CatsOf(cCats, raw);
    }
    if (cCategory.parsed())
    {
        return CategoryOf(raw);
    }
    if (cLibrary.parsed())
    {
        return LibraryOptions{Wide(raw.sDataBase), Wide(raw.sAppFolder), Wide(raw.sPicture), raw.bProgress};
    }
    return DayOf(raw, cDay.count("--hours") > 0);
}

} // namespace ravlo

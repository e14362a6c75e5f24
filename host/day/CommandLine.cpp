// SPDX-License-Identifier: MIT
#include "host/day/CommandLine.h"

#include "base/Utf8.h"
#include "host/day/CommandParts.h"
#include "host/day/HostError.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

namespace ravlo
{

namespace
{

constexpr int lMostHours = 366 * 24;
constexpr int lMostPicks = 1000;
constexpr int lMostDays = 3660;
constexpr int lDaysOfHealth = 28;

// "NAME" or, with bMayHaveLevel, "NAME:LEVEL".
CLI::Validator IsCategory(bool bMayHaveLevel = true)
{
    return CLI::Validator(
        [bMayHaveLevel](const std::string& sText) {
        try
        {
            const CategoryName name = ParseCategoryName(Wide(sText));
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

// Adds an option for one category; store takes it.
template <class Store>
CLI::Option& AddCategory(CLI::App& cCommand, const char* sName, const char* sType, const char* sHelp,
                         Store store, bool bMayHaveLevel = true)
{
    const auto parse = [store](const std::string& bytes) { store(ParseCategoryName(Wide(bytes))); };
    return *cCommand.add_option_function<std::string>(sName, parse, sHelp)
                ->type_name(sType)
                ->check(IsCategory(bMayHaveLevel));
}

CLI::Option& AddCategories(CLI::App& cCommand, CatsOptions& options, const char* sHelp)
{
    const auto store = [&options](const std::vector<std::string>& names) {
        for (const std::string& sName : names)
            options.categories.push_back(ParseCategoryName(Wide(sName)));
    };
    return *cCommand.add_option_function<std::vector<std::string>>("CATEGORY", store, sHelp)
                ->type_name("")
                ->check(IsCategory());
}

// The commands that are the first ones of a station make it.
enum class Station
{
    MustBeThere,
    IsMade,
};

template <class Options> void DescribeStation(CLI::App& cCommand, Options& options, Station eStation)
{
    AddText(cCommand, "--db", options.sDataBase, "FILE", "the media database").required();
    AddText(cCommand, "--app", options.sAppFolder, "FOLDER",
            eStation == Station::IsMade
                ? "the station: the folder that holds the scheduler's files; made when it is missing"
                : "the station: the folder that holds the scheduler's files")
        .required();
}

void DescribeStart(CLI::App& cCommand, std::optional<DateTime>& dtStart, const char* sHelp)
{
    cCommand
        .add_option_function<std::string>(
            "--start", [&](const std::string& sTime) { dtStart = ParseIso(Wide(sTime)); }, sHelp)
        ->type_name("TIME")
        ->check(IsTime());
}

void DescribePlan(CLI::App& cCommand, std::wstring& sClock, std::wstring& sSlots)
{
    CLI::Option& clock = AddText(cCommand, "--clock", sClock, "FILE",
                                 "the slots of an hour, repeated: category,level,opener a line");
    AddText(cCommand, "--slots", sSlots, "FILE", "the slots of the day, CSV: slot_at,category,level,opener")
        .excludes(&clock);
}

void DescribeSwitch(CLI::App& cCommand, const char* sName, std::optional<bool>& bOn, const char* sHelp)
{
    cCommand
        .add_option_function<std::string>(
            sName, [&](const std::string& sWord) { bOn = sWord == "on"; }, sHelp)
        ->type_name("on|off")
        ->check(CLI::IsMember({"on", "off"}));
}

void DescribeSwitches(CLI::App& cCommand, RotationSwitches& rotation)
{
    DescribeSwitch(cCommand, "--fair", rotation.bFair,
                   "fair rotation: a cut that is passed over keeps its place");
    DescribeSwitch(cCommand, "--featured", rotation.bFeatured,
                   "a credit counts for every artist that it names");
}

void DescribeDay(CLI::App& cDay, DayOptions& options)
{
    DescribeStation(cDay, options, Station::IsMade);
    DescribeStart(cDay, options.dtStart,
                  "when the first slot starts (default: the end of the last recorded play, or now)");
    cDay.add_option("--hours", options.lHours,
                    "how long the day is (default: 24 with a clock, all slots of a slot file)")
        ->type_name("N")
        ->check(CLI::Range(1, lMostHours));
    DescribePlan(cDay, options.sClock, options.sSlots);
    AddText(cDay, "--log", options.sLog, "FILE", "write the log to this file, CSV");
    AddText(cDay, "--m3u8", options.sM3u8, "FILE",
            "write the day as a playlist, extended M3U8 with start times");
    AddText(cDay, "--json", options.sJson, "FILE", "write the day as JSON");
    cDay.add_flag(
        "--save-each", options.bSaveEach,
        "save the play and the rotation order with every pick, as on air (default: the plays once a "
        "second, which is what a power cut may cost, and the orders at the end)");
    cDay.add_flag("-q,--quiet", options.bQuiet, "print the summary only");
    DescribeSwitches(cDay, options.rotation);
    DescribeProgress(cDay, options);
}

void DescribeWatch(CLI::App& cWatch, WatchOptions& options)
{
    DescribeStation(cWatch, options, Station::IsMade);
    AddText(cWatch, "--csv", options.sCsv, "FILE",
            "the cuts to import while the scheduler is open, as import reads them")
        .required();
    cWatch
        .add_option("--picks", options.lPicks, "how many cuts to play from the level that received new ones")
        ->type_name("N")
        ->check(CLI::Range(0, lMostPicks))
        ->capture_default_str();
    DescribeProgress(cWatch, options);
}

CLI::App& AddAction(CLI::App& cCats, CatsOptions& options, CatsAction eAction, const char* sName,
                    const char* sHelp)
{
    CLI::App& cAction = *cCats.add_subcommand(sName, sHelp);
    cAction.callback([&options, eAction] { options.eAction = eAction; });
    cAction.fallthrough(); // --db and --app may follow the action as well
    return cAction;
}

void AddYes(CLI::App& cCommand, CatsOptions& options)
{
    cCommand.add_flag("-y,--yes", options.bYes, "do it without asking");
}

void DescribeTransfer(CLI::App& cCommand, CatsOptions& options)
{
    AddCategories(cCommand, options, "the categories or levels whose cuts are meant").required();
    AddCategory(cCommand, "--to", "CATEGORY",
                "where to: a level, or a main category to keep each cut's level",
                [&](const CategoryName& name) {
        options.to = name;
    }).required();
    cCommand
        .add_option_function<std::vector<std::string>>(
            "--cut",
            [&](const std::vector<std::string>& paths) {
        std::transform(paths.begin(), paths.end(), std::back_inserter(options.cuts), Wide);
            },
            "only the cut with this path; may be given again for another")
        ->type_name("PATH")
        ->check(NotEmpty())
        ->expected(1)
        ->take_all();
}

void DescribeCatsChanges(CLI::App& cCats, CatsOptions& options)
{
    const auto add = [&](CatsAction eAction, const char* sName, const char* sHelp) -> CLI::App& {
        return AddAction(cCats, options, eAction, sName, sHelp);
    };
    AddText(add(CatsAction::New, "new", "make a category with level 1"), "NAME", options.sNewName, "",
            "its name")
        .required();
    CLI::App& cLevel = add(CatsAction::Level, "level", "make a further level of a category");
    AddCategory(
        cLevel, "CATEGORY", "", "the main category",
        [&](const CategoryName& name) { options.categories.push_back(name); }, false)
        .required();
    cLevel.add_option("LEVEL", options.lLevel, "the level's number")
        ->required()
        ->type_name("")
        ->check(CLI::Range(1, static_cast<int>(lMostLevel)));
    CLI::App& cShuffle =
        add(CatsAction::Shuffle, "shuffle", "put the cuts of levels into a new random order");
    AddCategories(cShuffle, options, "what to shuffle; a main category means each of its levels").required();
    AddYes(cShuffle, options);
    CLI::App& cMove = add(CatsAction::Move, "move", "move cuts to another category or level");
    DescribeTransfer(cMove, options);
    cMove.add_flag("--exclusive", options.bExclusive, "take the cuts out of every other category as well");
    AddYes(cMove, options);
    DescribeTransfer(add(CatsAction::Copy, "copy", "file cuts in a further category"), options);
    CLI::App& cDelete =
        add(CatsAction::Delete, "delete",
            "delete levels, or categories with all their levels; the cuts stay in the database");
    AddCategories(cDelete, options, "what to delete").required();
    AddYes(cDelete, options);
}

void DescribeCats(CLI::App& cCats, CatsOptions& options)
{
    DescribeStation(cCats, options, Station::MustBeThere);
    DescribeProgress(cCats, options);
    cCats.require_subcommand(1);
    CLI::App& cList = AddAction(cCats, options, CatsAction::List, "list",
                                "show the levels, or the cuts of a level in rotation order");
    AddCategories(cList, options, "what to show (default: every category)");
    cList.add_option("--first", options.lFirst, "show at most so many cuts of each level")
        ->type_name("N")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()));
    DescribeCatsChanges(cCats, options);
    cCats.footer(
        "A category is written NAME, one of its levels NAME:LEVEL (rock:2); a name with blanks goes in "
        "quotation marks.\nshuffle, move and delete ask first and end with status 3 when the answer "
        "is not yes.");
}

template <class Options> void DescribeWindow(CLI::App& cCommand, Options& options)
{
    DescribeStation(cCommand, options, Station::IsMade);
    AddText(cCommand, "--picture", options.sPicture, "FILE",
            "take a picture of the window, PNG, and close it, instead of leaving it to you");
    DescribeProgress(cCommand, options);
}

void DescribeCategory(CLI::App& cCategory, CategoryOptions& options)
{
    DescribeWindow(cCategory, options);
    AddCategory(cCategory, "--category", "CATEGORY", "what is chosen at first: NAME, or NAME:LEVEL",
                [&](const CategoryName& name) { options.category = name; });
    cCategory
        .add_option_function<std::string>(
            "--caption", [&](const std::string& bytes) { options.sCaption = Wide(bytes); },
            "the window's caption")
        ->type_name("TEXT");
    cCategory.add_flag("--new", options.bAllowNew, "categories and levels can be made in it");
    CLI::Option* multi =
        cCategory.add_flag("--multi", options.bMultiSelect, "several categories can be chosen");
    AddText(cCategory, "--cut", options.sCut, "PATH",
            "with --multi: the cut with this path is placed in what is chosen")
        .needs(multi);
}

// What simulate and health have in common.
void DescribeForecast(CLI::App& cCommand, ForecastOptions& options)
{
    DescribeStation(cCommand, options, Station::MustBeThere);
    CLI::Option_group& cPlan = *cCommand.add_option_group("plan");
    DescribePlan(cPlan, options.sClock, options.sSlots);
    cPlan.require_option(1);
    DescribeStart(cCommand, options.dtStart,
                  "when it starts (default: the first slot of a slot file; with a clock the end of the last "
                  "recorded play, or now)");
    cCommand.add_option("--days", options.lDays, "how many days")
        ->type_name("N")
        ->check(CLI::Range(1, lMostDays))
        ->capture_default_str();
    DescribeSwitches(cCommand, options.rotation);
    DescribeProgress(cCommand, options);
}

void DescribeSimulate(CLI::App& cSimulate, ForecastOptions& options)
{
    DescribeForecast(cSimulate, options);
    AddText(cSimulate, "--log", options.sLog, "FILE", "write the log of the simulated days, CSV");
}

void DescribeHealth(CLI::App& cHealth, ForecastOptions& options)
{
    options.bHealth = true;
    options.lDays = lDaysOfHealth;
    DescribeForecast(cHealth, options);
    AddText(cHealth, "--html", options.sHtml, "FILE", "write a report for people");
    AddText(cHealth, "--json", options.sJson, "FILE", "write the figures for programs");
    CLI::Option* window =
        cHealth.add_flag("--window", options.bWindow, "show the rotation health window instead");
    AddText(cHealth, "--picture", options.sPicture, "FILE",
            "with --window: take a picture of it, PNG, and close it, instead of leaving it to you")
        .needs(window);
    cHealth.footer("Ends with status 4 when a level is red; with --window with 0.");
}

void AddLevels(CLI::App& cCommand, RotationCommand& options, const char* sHelp, bool bMany)
{
    const auto store = [&options](const std::vector<std::string>& names) {
        for (const std::string& sName : names)
            options.levels.push_back(ParseCategoryName(Wide(sName)));
    };
    CLI::Option& levels = *cCommand.add_option_function<std::vector<std::string>>("LEVEL", store, sHelp)
                               ->type_name("")
                               ->check(IsCategory())
                               ->required();
    if (!bMany)
        levels.expected(1);
}

void DescribeSpread(CLI::App& cSpread, RotationCommand& options)
{
    options.eAction = RotationAction::Spread;
    DescribeStation(cSpread, options, Station::MustBeThere);
    AddLevels(cSpread, options, "what to spread, NAME:LEVEL; a main category means each of its levels", true);
    DescribeProgress(cSpread, options);
}

void DescribeExplain(CLI::App& cExplain, RotationCommand& options)
{
    options.eAction = RotationAction::Explain;
    DescribeStation(cExplain, options, Station::MustBeThere);
    AddLevels(cExplain, options, "the level, NAME:LEVEL", false);
    cExplain.add_flag("--opener", options.bOpener, "only a cut that may open an hour");
    DescribeProgress(cExplain, options);
}

void DescribeOptions(CLI::App& cOptions, RotationCommand& options)
{
    DescribeStation(cOptions, options, Station::MustBeThere);
    DescribeSwitches(cOptions, options.rotation);
    DescribeProgress(cOptions, options);
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
    CommandLine chosen;
    CLI::App cApp("A small playout host: fills a radio station's day from its media library.", "RavloHost");
    cApp.set_version_flag("--version", "RavloHost " RAVLO_VERSION);
    cApp.require_subcommand(1);
    const auto offer =
        [&]<class Options>(const char* sName, void (*describe)(CLI::App&, Options&), const char* sHelp) {
        CLI::App& cCommand = *cApp.add_subcommand(sName, sHelp);
        const auto options = std::make_shared<Options>();
        describe(cCommand, *options);
        cCommand.final_callback([&chosen, options] { chosen = *options; });
    };
    offer("import", DescribeImport, "read a library into the media database");
    offer("plays", DescribePlays, "report what was played in a period, as CSV");
    offer("day", DescribeDay, "fill the slots of a day and print its log");
    offer("watch", DescribeWatch, "import cuts into an open station and show the rotation taking them in");
    offer("cats", DescribeCats, "list and change the categories");
    offer("category", DescribeCategory, "open the category window and print what was chosen");
    offer("library", DescribeWindow<LibraryOptions>, "open the library window");
    offer("simulate", DescribeSimulate, "forecast what a plan will play; nothing is changed");
    offer("health", DescribeHealth, "show how each level fares with a plan, and what helps");
    offer("spread", DescribeSpread, "move the artists of levels as far apart as they can be");
    offer("explain", DescribeExplain, "show why the next cut of a level will be that one");
    offer("options", DescribeOptions, "show and set the station's options of rotation");
    try
    {
        cApp.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    }
    catch (const CLI::Success& answer)
    {
        cli11::Text cText;
        cApp.exit(answer, cText, cText);
        return Reply{lExitOk, Wide(cText.str())};
    }
    catch (const CLI::Error& mistake)
    {
        return Reply{lExitUsage, OneLine(mistake.what())};
    }
    return chosen;
}

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "host/day/CategoryName.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ravlo
{

inline constexpr int lExitOk = 0;
inline constexpr int lExitFailed = 1;
inline constexpr int lExitUsage = 2;
inline constexpr int lExitDeclined = 3; // the question was not answered with yes; nothing was changed
inline constexpr int lExitRed = 4;      // a level of the station does not fare well

struct ImportOptions
{
    std::wstring sDataBase;
    std::wstring sCsv; // exactly one of these three
    std::wstring sFolder;
    std::wstring sPlaylist;
    std::wstring sMap;      // with a CSV: its column names
    std::wstring sCategory; // with audio files: of new cuts; empty: their genre
    bool bTrial = false;    // only say what would change
    bool bProgress = false; // also where standard error is no console
};

// What was played in a period.
struct PlaysOptions
{
    std::wstring sDataBase;
    DateTime dtFrom = 0;
    DateTime dtTo = dtEndOfTime;                     // the first moment after the period
    std::wstring sBy;                                // "cut", "artist", or empty: each play
    std::wstring sCsv;                               // empty: print it
    static constexpr DateTime dtEndOfTime = 2958466; // 1 January 10000
};

// Options of rotation; nothing: as the station has them.
struct RotationSwitches
{
    std::optional<bool> bFair;
    std::optional<bool> bFeatured;
};

struct DayOptions
{
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::optional<DateTime> dtStart; // nothing: where the last recorded play ends, or now
    std::optional<int> lHours;
    std::wstring sClock; // at most one of these two
    std::wstring sSlots;
    std::wstring sLog; // each a file; empty: none
    std::wstring sM3u8;
    std::wstring sJson;
    bool bSaveEach = false;    // save with every pick, as on air
    bool bQuiet = false;       // the summary only
    RotationSwitches rotation; // for this run
    bool bProgress = false;
};

struct WatchOptions
{
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::wstring sCsv;
    int lPicks = 8; // 0: play nothing
    bool bProgress = false;
};

enum class CatsAction
{
    List,
    New,
    Level,
    Shuffle,
    Delete,
    Move,
    Copy,
};

struct CatsOptions
{
    CatsAction eAction = CatsAction::List;
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::wstring sNewName;                // New
    std::vector<CategoryName> categories; // to list, change or move out of; Level: the category
    std::int32_t lLevel = 0;              // Level: the number of the new one
    CategoryName to;                      // Move and Copy
    std::vector<std::wstring> cuts;       // the paths of the cuts; empty: all of them
    bool bExclusive = false;              // Move: also remove from every other category
    bool bYes = false;                    // without a question
    int lFirst = 0;                       // List: how many cuts of a level at most; 0: all
    bool bProgress = false;
};

// The category window.
struct CategoryOptions
{
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::wstring sPicture; // a PNG file: take a picture of the window and close it; empty: a person closes it
    std::wstring sCaption;
    std::optional<CategoryName> category; // the initial choice
    std::wstring sCut; // with bMultiSelect: the path of the cut whose categories are chosen
    bool bAllowNew = false;
    bool bMultiSelect = false;
    bool bProgress = false;
};

// The library window.
struct LibraryOptions
{
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::wstring sPicture; // as above
    bool bProgress = false;
};

// What a plan would play (simulate), and how the station fares with it (health).
struct ForecastOptions
{
    bool bHealth = false;
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::optional<DateTime> dtStart; // nothing: the first slot's time, or as for a day
    int lDays = 1;
    std::wstring sClock; // exactly one of these two
    std::wstring sSlots;
    RotationSwitches rotation; // for the simulation
    std::wstring sLog;         // each a file; empty: none
    std::wstring sHtml;
    std::wstring sJson;
    bool bWindow = false;  // show the scheduler's window instead
    std::wstring sPicture; // a file to save a picture of the window in; empty: none
    bool bProgress = false;
};

enum class RotationAction
{
    Spread,
    Explain,
    Options,
};

struct RotationCommand
{
    RotationAction eAction = RotationAction::Options;
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::vector<CategoryName> levels; // Explain: one
    bool bOpener = false;             // Explain
    RotationSwitches rotation;        // Options: to save
    bool bProgress = false;
};

// An answer of the command line itself: help, version, or an error, ready to print.
struct Reply
{
    int lStatus = lExitOk;
    std::wstring sText; // one line with its line end when lStatus is not 0
};

using CommandLine = std::variant<ImportOptions, PlaysOptions, DayOptions, WatchOptions, CatsOptions,
                                 CategoryOptions, LibraryOptions, ForecastOptions, RotationCommand, Reply>;

// The arguments are the command line without the program's name, in UTF-8.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

} // namespace ravlo

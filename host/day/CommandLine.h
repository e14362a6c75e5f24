// SPDX-License-Identifier: MIT
#pragma once

#include "ports/DateTime.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ravlo
{

inline constexpr int lExitOk = 0;
inline constexpr int lExitFailed = 1;
inline constexpr int lExitUsage = 2;

struct ImportOptions
{
    std::wstring sDataBase;
    std::wstring sCsv;
    bool bProgress = false; // also where standard error is no console
};

struct DayOptions
{
    std::wstring sDataBase;
    std::wstring sAppFolder;
    std::optional<DateTime> dtStart; // nothing: where the last recorded play ends, or now
    std::optional<int> lHours;
    std::wstring sClock; // at most one of these two
    std::wstring sSlots;
    std::wstring sLog;      // empty: no file
    bool bSaveEach = false; // save with every pick, as on air
    bool bQuiet = false;    // the summary only
    bool bProgress = false;
};

// Answered by the command line itself: help, version, or what is wrong with it, ready to print.
struct Reply
{
    int lStatus = lExitOk;
    std::wstring sText; // one line with its line end when lStatus is not 0
};

using CommandLine = std::variant<ImportOptions, DayOptions, Reply>;

// The arguments are the command line without the program's name, in UTF-8.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

} // namespace ravlo

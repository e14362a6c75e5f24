// SPDX-License-Identifier: MIT
#pragma once

#include "host/day/CommandLine.h"

#include <cli11.h>

#include <string>

namespace ravlo
{

// What the commands' descriptions are made of.

std::wstring Wide(const std::string& bytes);

// An empty argument comes from a script's unset variable, by mistake.
CLI::Validator NotEmpty();
CLI::Validator IsTime();

// Adds an option for a text that is not empty.
CLI::Option& AddText(CLI::App& cCommand, const char* sName, std::wstring& sTarget, const char* sType,
                     const char* sHelp);

template <class Options> void DescribeProgress(CLI::App& cCommand, Options& options)
{
    cCommand.add_flag("--progress", options.bProgress,
                      "show progress even where standard error is no console");
}

// The commands of the media database.
void DescribeImport(CLI::App& cImport, ImportOptions& options);
void DescribePlays(CLI::App& cPlays, PlaysOptions& options);

} // namespace ravlo

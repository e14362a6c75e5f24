// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/LibraryCommand.h"

#include <optional>

namespace ravlo
{

// The library window's class, its controls and its menus' commands. Tests find them by these.
inline constexpr const wchar_t* sfrmUILibClass = L"RavloSchedulerLibrary";
inline constexpr const wchar_t* sfrmUILibCaption = L"Ravlo-Scheduler Library";

enum LibraryControlId : int
{
    eIdTvCats = 1001,
    eIdiGridLib,
    eIdsp1,
    eIdStatus,
    eIdProgressBar1,
    eIdlblTopLeft,
    eIdFindCategories,
    eIdFindCuts,
};

// A LibraryCommand is this number and its own.
inline constexpr int lFirstCommandId = 2000;
constexpr int IdOf(LibraryCommand eCommand) { return lFirstCommandId + static_cast<int>(eCommand); }
// Nothing for a number that is none of theirs.
constexpr std::optional<LibraryCommand> CommandOf(int lId)
{
    return lId >= lFirstCommandId && lId <= IdOf(LibraryCommand::mnuHelp)
               ? std::optional(static_cast<LibraryCommand>(lId - lFirstCommandId))
               : std::nullopt;
}

} // namespace ravlo

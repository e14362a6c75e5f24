// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/frmUILibPresenter.h"

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
};

// A LibraryCommand is this number and its own.
inline constexpr int lFirstCommandId = 2000;
constexpr int IdOf(LibraryCommand eCommand) { return lFirstCommandId + static_cast<int>(eCommand); }

} // namespace ravlo

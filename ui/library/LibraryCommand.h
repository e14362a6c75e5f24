// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// The commands of the library window's menus.
enum class LibraryCommand
{
    mnuSelectAllTree,
    mnuSelectNoneTree,
    mnuSelectInvertTree,
    mnuSelectAllGrid,
    mnuSelectNoneGrid,
    mnuInvertSelectionGrid,
    mnuReloadAll,
    mnuSave,
    mnuExit,
    mnuCatUI,
    mnuCatNew,
    mnuCatLevelNew,
    mnuShuffle,
    mnuCatDelete,
    mnuUndo,
    mnuRedo,
    mnuSpread,
    mnuFairRotation,
    mnuExplainNext,
    mnuNextCuts,
    mnuHealth,
    mnuRename,
    mnuHelp,
};

// How a command appears in its menu at the moment.
struct MenuItem
{
    bool bEnabled = true;
    bool bTicked = false;
    std::wstring sText = {}; // "&" is shown as it is; empty: the menu's own caption
};

} // namespace ravlo

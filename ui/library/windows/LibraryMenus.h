// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>

namespace ravlo
{

// The library window's menu bar; the categories' menu in it is the tree's pop-up too.
UniqueMenu LibraryMenuBar();
HMENU CategoriesMenu(HMENU hBar) noexcept;
void EnableMenuBar(HWND hWindow, bool bEnable) noexcept;

// F1, Alt+F4, Ctrl+A and Ctrl+S: keys of commands for every focus.
UniqueAccelerators LibraryAccelerators();

// Lets the user choose one of some texts at a point of the screen. Nothing when the menu is dismissed.
std::optional<std::size_t> ChooseFromPopUp(HWND hWindow, POINT onScreen,
                                           const std::vector<std::wstring>& colItems);

} // namespace ravlo

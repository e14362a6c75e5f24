// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"
#include "ui/library/LibraryCommand.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>

namespace ravlo
{

// The library window's menu bar; the categories' menu in it is the tree's pop-up too.
UniqueMenu LibraryMenuBar();
HMENU CategoriesMenu(HMENU hBar) noexcept;
// While one exists, the categories' menu ends with what only the tree's pop-up has.
class TreePopUp
{
public:
    explicit TreePopUp(HMENU hCategories);
    ~TreePopUp();
    TreePopUp(const TreePopUp&) = delete;
    TreePopUp& operator=(const TreePopUp&) = delete;

    HMENU Menu() const noexcept { return m_hMenu; }

private:
    HMENU m_hMenu;
    int m_lBefore;
};

// Shows the commands of a menu as itemOf says; keeps the keys behind their captions.
void UpdateMenu(HMENU hMenu, const std::function<MenuItem(LibraryCommand)>& itemOf);
void EnableMenuBar(HWND hWindow, bool bEnable) noexcept;

// F1, Alt+F4, Ctrl+A, Ctrl+S, Ctrl+Y and Ctrl+Z: keys of commands for every focus.
UniqueAccelerators LibraryAccelerators();

// Lets the user choose one of some texts at a point of the screen. Nothing when the menu is dismissed.
std::optional<std::size_t> ChooseFromPopUp(HWND hWindow, POINT onScreen,
                                           const std::vector<std::wstring>& colItems);

} // namespace ravlo

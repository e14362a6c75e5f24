// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

// What the category window is opened with, and its results.
struct CategoryRequest
{
    // In: the initial choice. Out, only with lChosen: what the user chose.
    std::shared_ptr<clsCat> cMainCatChosen; // null for none
    std::shared_ptr<clsCat> cSubCatChosen;  // null for all levels
    bool bOpenerChosen = false;
    Cuts colSelCuts; // out: the cuts selected at OK

    std::wstring sCaption; // empty: the window's default
    bool bAllowNew = false;
    bool bAllowMultiSelect = false;
    // With bAllowMultiSelect: its categories are selected at first; receives the chosen level and categories.
    std::shared_ptr<Cut> cCut;
};

// The answers of the category window.
inline constexpr std::int32_t lChosen = 1;
inline constexpr std::int32_t lNotChosen = 2;

// What the manager needs from its windows, which implement it.
class SchedulerWindows
{
public:
    virtual ~SchedulerWindows() = default;
    // Whether the library window exists, shown or not.
    virtual bool LibraryExists() const = 0;
    // Whether the library window is showing.
    virtual bool LibraryShowing() const = 0;
    // Fills tree and grid from the manager's present objects; creates the window when there is none.
    virtual void ReloadLibrary() = 0;
    // Refreshes tree and grid of an existing window.
    virtual void RefreshLibrary() = 0;
    // Shows the library window until it is closed; brings one that is showing to the front.
    virtual void ShowLibrary() = 0;
    // Shows the category window until it is closed. Returns lChosen after OK, else lNotChosen; also
    // lNotChosen when it is already showing.
    virtual std::int32_t ShowCategory(CategoryRequest& request) = 0;
};

} // namespace ravlo

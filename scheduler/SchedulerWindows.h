// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "model/clsCat.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

// What the category window is opened with, and what it leaves behind.
struct CategoryRequest
{
    // In: what is chosen at first. Out, with the answer 1 only: what the user chose.
    std::shared_ptr<clsCat> cMainCatChosen; // null for none
    std::shared_ptr<clsCat> cSubCatChosen;  // null for all levels
    bool bOpenerChosen = false;
    Cuts colSelCuts; // out: the cuts selected when OK was chosen

    std::wstring sCaption; // empty: the window's own
    bool bAllowNew = false;
    bool bAllowMultiSelect = false;
    // With bAllowMultiSelect: shown by its categories at first; receives the level and the categories chosen.
    std::shared_ptr<Cut> cCut;
};

// The answers of the category window.
inline constexpr std::int32_t lChosen = 1;
inline constexpr std::int32_t lNotChosen = 2;

// What the manager asks of its windows, which implement it.
class SchedulerWindows
{
public:
    virtual ~SchedulerWindows() = default;
    // Whether the library window exists, shown or not.
    virtual bool LibraryExists() const = 0;
    // Whether it is showing.
    virtual bool LibraryShowing() const = 0;
    // Fills tree and grid from the manager's present objects; makes the window first when there is none.
    virtual void ReloadLibrary() = 0;
    // Refreshes tree and grid of an existing window.
    virtual void RefreshLibrary() = 0;
    // Shows the library window until it is closed; brings one that is showing to the front.
    virtual void ShowLibrary() = 0;
    // Shows the category window until it is closed: lChosen after OK, else lNotChosen, which it also returns
    // when it is showing already.
    virtual std::int32_t ShowCategory(CategoryRequest& request) = 0;
};

} // namespace ravlo

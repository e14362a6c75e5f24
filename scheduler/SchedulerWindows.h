// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

// What the manager asks of its library window. The window side implements it; without windows there is none.
class SchedulerWindows
{
public:
    virtual ~SchedulerWindows() = default;
    // Whether the library window exists, shown or not.
    virtual bool LibraryExists() const = 0;
    // Whether it is showing.
    virtual bool LibraryShowing() const = 0;
    // Fills tree and grid anew from the manager's present objects; makes the window first when there is none.
    virtual void ReloadLibrary() = 0;
    // Refreshes tree and grid of an existing window.
    virtual void RefreshLibrary() = 0;
};

} // namespace ravlo

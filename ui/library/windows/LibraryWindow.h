// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"

#include <memory>

namespace ravlo
{

// The library window of one manager, which is held weakly: made when it is needed, hidden or shown, and gone
// after it was closed.
class LibraryWindow
{
public:
    explicit LibraryWindow(std::weak_ptr<clsSchedMan> cSchedMan);
    ~LibraryWindow();
    LibraryWindow(const LibraryWindow&) = delete;
    LibraryWindow& operator=(const LibraryWindow&) = delete;

    bool Exists() const noexcept { return m_cMade != nullptr; }
    bool Showing() const noexcept;
    // Fills it anew from the manager's present objects; makes a hidden one when there is none.
    void Reload();
    // The same for one that exists, as soon as nothing runs in it.
    void Refresh();
    // Shows it until it is closed; brings one that is showing to the front.
    void Show();

private:
    class Surroundings;
    struct Made;

    void Make();

    std::weak_ptr<clsSchedMan> m_cSchedMan;
    // Held as well by whoever works in it: the host, called meanwhile, may show another one or let go of all.
    std::shared_ptr<Made> m_cMade;
};

} // namespace ravlo

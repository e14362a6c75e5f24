// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/LibraryDialogs.h"

#include <functional>
#include <memory>
#include <string>

namespace ravlo
{

class frmUILibPresenter;

// Makes, hides, shows and destroys the one library window of a manager, which it holds weakly.
class LibraryWindowLifetime
{
public:
    // CategoryShowing returns whether the category window is open.
    LibraryWindowLifetime(std::weak_ptr<clsSchedMan> cSchedMan, std::function<bool()> CategoryShowing,
                          LibraryDialogs dialogs);
    ~LibraryWindowLifetime();
    LibraryWindowLifetime(const LibraryWindowLifetime&) = delete;
    LibraryWindowLifetime& operator=(const LibraryWindowLifetime&) = delete;

    bool Exists() const noexcept { return m_cMade != nullptr; }
    bool Showing() const noexcept;
    // Fills the window from the manager's present objects; makes a hidden one when there is none.
    void Reload();
    // Fills an existing window, as soon as nothing runs in it.
    void Refresh();
    // Shows the window until it is closed; brings one that is showing to the front.
    void Show() { Show(nullptr); }
    // Shows a level with one of its cuts in sight, in the window that is showing or in a new one.
    void GoTo(const std::wstring& sLevelKey, const TextKey& cCutKey);

private:
    class Surroundings;
    struct Made;

    void Make();
    // Prepare is called before the window is shown, and for one that is showing.
    void Show(const std::function<void(frmUILibPresenter& cForm)>& prepare);

    std::weak_ptr<clsSchedMan> m_cSchedMan;
    std::function<bool()> m_CategoryShowing;
    LibraryDialogs m_dialogs;
    // A running member holds a reference too: the host, called in between, may show another window or release
    // everything.
    std::shared_ptr<Made> m_cMade;
};

} // namespace ravlo

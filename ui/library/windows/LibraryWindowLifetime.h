// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/LibraryTargets.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ravlo
{

// The library window of one manager, which is held weakly: made when it is needed, hidden or shown, and gone
// after it was closed.
class LibraryWindowLifetime : public ProgressTarget
{
public:
    // CategoryShowing tells whether the category window is open.
    LibraryWindowLifetime(std::weak_ptr<clsSchedMan> cSchedMan, std::function<bool()> CategoryShowing);
    ~LibraryWindowLifetime() override;
    LibraryWindowLifetime(const LibraryWindowLifetime&) = delete;
    LibraryWindowLifetime& operator=(const LibraryWindowLifetime&) = delete;

    bool Exists() const noexcept { return m_cMade != nullptr; }
    bool Showing() const noexcept;
    // Fills it anew from the manager's present objects; makes a hidden one when there is none.
    void Reload();
    // The same for one that exists, as soon as nothing runs in it.
    void Refresh();
    // Shows it until it is closed; brings one that is showing to the front.
    void Show();

    // Shown by the window while one is open.
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& sText, std::int32_t lValue) override;
    void ProgressEnd(const std::wstring& sFirst, const std::wstring& sSecond) override;

private:
    class Surroundings;
    struct Made;

    void Make();

    std::weak_ptr<clsSchedMan> m_cSchedMan;
    std::function<bool()> m_CategoryShowing;
    // Held as well by whoever works in it: the host, called meanwhile, may show another one or let go of all.
    std::shared_ptr<Made> m_cMade;
};

} // namespace ravlo

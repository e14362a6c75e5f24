// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"

#include <functional>
#include <vector>
#include <windows.h>

namespace ravlo
{

// Runs a top-level window modally: disables every other window of the thread that is visible and enabled, and
// enables just those at the end. A hidden window cannot be used anyway; one that is shown in between is meant
// to be used on top of this one. Accelerators, Tab, Enter, Esc and mnemonics work in this loop and in every
// other one that passes its messages to the thread's message filter, as the library's own pumping does. Modal
// windows may be stacked.
class ModalLoop
{
public:
    explicit ModalLoop(HWND hWindow) noexcept : m_hWindow(hWindow) {}
    ~ModalLoop() { EnableOthers(); }
    ModalLoop(const ModalLoop&) = delete;
    ModalLoop& operator=(const ModalLoop&) = delete;

    // Not owned; null for none. Ctrl+A, C, V, X, Y and Z in an edit control stay its own.
    void SetAccelerators(HACCEL hAccelerators) noexcept { m_hAccelerators = hAccelerators; }
    // Sees each message for the window before the dialog keys do; true when it has handled it.
    std::function<bool(MSG& message)> OnMessage;

    // Returns after End, or when the window is gone, or when the program quits (which it passes on to the
    // host's loop).
    void Run();
    // Enables the other windows. Call before the modal window is hidden or destroyed: otherwise another
    // program's window would come to the front.
    void End() noexcept;

private:
    static LRESULT CALLBACK Filter(int lCode, WPARAM wParam, LPARAM lParam);
    bool Translate(MSG& message);
    void DisableOthers() noexcept;
    void EnableOthers() noexcept;

    HWND m_hWindow;
    HACCEL m_hAccelerators = nullptr;
    std::vector<HWND> m_hDisabled;
    bool m_bDone = false;
};

} // namespace ravlo

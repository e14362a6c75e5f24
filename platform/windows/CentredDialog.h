// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// Moves a dialog to the middle of its owner, or of the screen without one, and completely onto the owner's
// monitor.
void CentreDialog(HWND hDialog, HWND hOwner) noexcept;

// Makes a message box as wide as its title needs, up to the screen's width; its buttons stay in the middle or
// at the right. The system considers only its text.
void FitToTitle(HWND hBox) noexcept;

// While it lives, the next dialog of this thread with that owner, or without one, is made wide enough for its
// title and centred on the owner. Use it for the system's own boxes, which appear in the middle of the
// screen.
class CentredOnOwner
{
public:
    explicit CentredOnOwner(HWND hOwner) noexcept;
    ~CentredOnOwner();
    CentredOnOwner(const CentredOnOwner&) = delete;
    CentredOnOwner& operator=(const CentredOnOwner&) = delete;

private:
    static LRESULT CALLBACK OnHook(int lCode, WPARAM wParam, LPARAM lParam) noexcept;

    HWND m_hOwner;
    bool m_bPending = true; // the dialog has not appeared yet
    HHOOK m_hHook = nullptr;
    CentredOnOwner* m_pBefore; // boxes may be nested: a timer of the host opens another one
};

} // namespace ravlo

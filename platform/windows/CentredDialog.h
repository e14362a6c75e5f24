// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// Moves a dialog to the middle of its owner, or of the screen without one, and whole onto the owner's
// monitor.
void CentreDialog(HWND hDialog, HWND hOwner) noexcept;

// While it lives, the next dialog of this thread that comes up before that owner stands in the middle of it.
// For the system's own boxes, which would stand in the middle of the screen. Without an owner nothing is
// changed.
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
    HHOOK m_hHook = nullptr;
    CentredOnOwner* m_pBefore; // boxes may be stacked: a timer of the host opens another one
};

} // namespace ravlo

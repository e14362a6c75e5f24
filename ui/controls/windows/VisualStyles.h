// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// While it lives, what this thread creates are the current common controls, whatever the host's program asked
// for. Where the context cannot be had the windows are made of the host's controls.
class VisualStyles
{
public:
    VisualStyles() noexcept;
    ~VisualStyles();
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;

private:
    HANDLE m_hContext;
    ULONG_PTR m_lCookie = 0;
    bool m_bActive = false;
};

} // namespace ravlo

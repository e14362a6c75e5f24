// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// While one exists, this thread creates the current common controls, even in a host that uses older ones.
// Where the context cannot be created, it creates the host's.
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

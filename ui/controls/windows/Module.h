// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

namespace ravlo
{

// The DLL or program this code was linked into: window classes and resources are its own, not the host's.
HINSTANCE ThisModule() noexcept;

} // namespace ravlo

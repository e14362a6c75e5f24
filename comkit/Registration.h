// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Module.h"

namespace ravlo
{

enum class RegistrationScope
{
    Machine, // HKEY_LOCAL_MACHINE\Software\Classes
    User,    // HKEY_CURRENT_USER\Software\Classes
};

// Writes the module's classes (CLSID, ProgID, ProgID.1) and registers its type libraries. On failure removes
// what it wrote and returns the error.
HRESULT RegisterModule(RegistrationScope eScope) noexcept;

// Removes all of it, and skips what is missing. The names (ProgID) stay while the other width, 32 or 64 bit,
// is registered. A type library stays when another module's file is registered for it; when a registered
// neighbour includes it, that neighbour's file is registered for it instead.
HRESULT UnregisterModule(RegistrationScope eScope) noexcept;

// What DllInstall does: sCommand "user" (in any case) chooses RegistrationScope::User.
HRESULT InstallModule(bool bInstall, const wchar_t* sCommand) noexcept;

} // namespace ravlo

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

// Removes all of it, and skips what is missing. What both widths, 32 and 64 bit, share stays while the other
// one is registered: the names (ProgID) and the interfaces of a type library. A type library stays when
// another module's file is registered for it; when a registered neighbour includes it, that neighbour's file
// is registered for it instead.
HRESULT UnregisterModule(RegistrationScope eScope) noexcept;

// What DllInstall does: sCommand "user" (in any case) chooses RegistrationScope::User.
HRESULT InstallModule(bool bInstall, const wchar_t* sCommand) noexcept;

} // namespace ravlo

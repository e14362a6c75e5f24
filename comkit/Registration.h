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

// Writes the module's classes (CLSID, ProgID, ProgID.1) and registers its type libraries. A failure takes
// back what was written and tells why.
HRESULT RegisterModule(RegistrationScope eScope) noexcept;

// Takes all of it out again; what is not there is passed over. The names (ProgID) stay while the other width,
// 32 bit or 64, is registered. A type library stays when another module's file is registered for it, or when
// a neighbour that is registered carries it too: then that one's file is registered for it.
HRESULT UnregisterModule(RegistrationScope eScope) noexcept;

// What DllInstall does: sCommand "user" (in any case) chooses RegistrationScope::User.
HRESULT InstallModule(bool bInstall, const wchar_t* sCommand) noexcept;

} // namespace ravlo

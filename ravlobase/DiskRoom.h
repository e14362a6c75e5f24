// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo::sqlite
{

// Throws error 61 when the disk has no room for the files that SQLite needs next to an open database. SQLite
// maps its shared memory from a file, and some systems grant such a mapping without room on the disk: its
// first use then ends the program instead of failing. sPath is UTF-8; sShown is the name for the error text.
void NeedRoomBeside(const std::string& sPath, const std::wstring& sShown);

} // namespace ravlo::sqlite

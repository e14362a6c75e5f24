// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo::sqlite
{

// Throws error 61 when the disk under the file has no room for what SQLite puts beside an open database.
// SQLite maps its shared memory from a file, and some systems hand out such a mapping without room behind it:
// the first touch then ends the program instead of failing. Takes the path as UTF-8; sShown is the name for
// the error text.
void NeedRoomBeside(const std::string& sPath, const std::wstring& sShown);

} // namespace ravlo::sqlite

// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/Sqlite.h"

#include <string>

namespace ravlo
{

// Creates a database file, and checks one before it is used. A file that fails a check is refused with error
// 321 and keeps every byte.

// The path for SQLite. Creates the file when it is missing.
std::string ReadyPath(const std::wstring& sFile);

// Checks the file before SQLite reads it, and the room on the disk. Until KeepLogOnClose(false), closing
// leaves a log that was there before as it is.
void CheckUnread(sqlite::Connection& cConnection, const std::wstring& sFile);

// Begins a transaction that sees one sound state of the file and its log.
void BeginSound(sqlite::Connection& cConnection, const std::wstring& sFile);

} // namespace ravlo

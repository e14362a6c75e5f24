// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/Sqlite.h"

#include <cstdint>

// The tables of a database file and their versions (docs/formats/database.md). Every failure is a
// RuntimeError.
namespace ravlo::layout
{

inline constexpr std::int64_t oldest = 1;
inline constexpr std::int64_t current = 2; // adds the plays and the imported files

std::int64_t Version(sqlite::Connection& cConnection);

// Makes the tables of the current version. Precondition: a transaction on an empty file.
void Make(sqlite::Connection& cConnection);

// Throws error 321 when the file does not have the tables of its version.
void Check(sqlite::Connection& cConnection);

// Brings a file of an older version up to date, in one transaction. A file that can only be read stays as it
// is.
void BringUpToDate(sqlite::Connection& cConnection);

} // namespace ravlo::layout

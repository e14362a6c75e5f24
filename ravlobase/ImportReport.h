// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// A row of an imported file that could not be used. Lines count from 1.
struct ImportReject
{
    std::size_t line;
    std::wstring sReason;
};

// What an import did.
struct ImportReport
{
    std::int32_t lAdded = 0;
    std::int32_t lChanged = 0;
    std::int32_t lUnchanged = 0; // rows that say only what the database already has
    std::vector<ImportReject> colRejects;
    std::wstring sFailure; // why nothing was imported; empty after a success

    // "3 cuts added, 1 changed, 0 unchanged, 2 rows rejected.", or the failure.
    std::wstring Summary() const;
    // The summary, then one line for each reject: "Line 7: no path".
    std::wstring Text() const;
};

// "1 cut", "2 cuts"
std::wstring CutsText(std::size_t count);

} // namespace ravlo

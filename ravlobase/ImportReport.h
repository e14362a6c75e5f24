// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravlo
{

// A row or a file that could not be used. Lines count from 1; 0 when a file is meant.
struct ImportReject
{
    std::size_t line;
    std::wstring sReason;
    std::wstring sFile;
};

// What an import did.
struct ImportReport
{
    std::int32_t lAdded = 0;
    std::int32_t lChanged = 0;
    std::int32_t lUnchanged = 0; // rows that say only what the database already has
    std::vector<ImportReject> colRejects;
    std::wstring sFailure;                // why nothing was imported; empty after a success
    bool bFiles = false;                  // files were rejected, not rows
    bool bTrial = false;                  // nothing was imported, since only the report was wanted
    std::vector<std::wstring> colChanges; // what a trial would do, a line for each cut

    // "3 cuts added, 1 changed, 0 unchanged, 2 rows rejected.", or the failure. Of a trial: "3 cuts would be
    // added, 1 changed ...".
    std::wstring Summary() const;
    // The summary, the changes of a trial, then one line for each reject: "Line 7: no path".
    std::wstring Text() const;
};

// "1 cut", "2 cuts"
std::wstring CutsText(std::size_t count);

} // namespace ravlo

// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// What one row of a library CSV says about a cut. A blank cell and a missing column say nothing.
struct LibraryRow
{
    std::size_t line = 0;
    TextKey cPath;
    std::optional<std::wstring> sArtist;
    std::optional<std::wstring> sTitle;
    std::optional<std::wstring> sAlbum;
    std::optional<std::int32_t> lYear;
    std::optional<std::int32_t> lDurationmS;
    std::optional<std::int32_t> lRunTimemS;
    std::optional<std::vector<std::wstring>> colCategories; // trimmed, none empty
    std::optional<std::int32_t> lLevel;                     // 1 or more; 0 in the file says nothing
    std::optional<bool> bOpener;
    std::optional<std::wstring> sSecondaryKey;
    std::optional<DateTime> dtLastPlayed;
};

// What ReadLibraryCsv hands out, in file order; the line of a row is the first one it stands on.
class LibraryCsvSink
{
public:
    virtual ~LibraryCsvSink() = default;
    virtual void OnCut(LibraryRow row) = 0;
    // A row that cannot be used, and why, as a person can be told.
    virtual void OnReject(std::size_t line, const std::wstring& sReason) = 0;
};

// Reads a library CSV (docs/formats/library-csv.md) from its bytes. No two cuts handed out have the same
// path: the first row of a path counts. Throws RuntimeError 321 when the header line is unusable; no row has
// been handed out then.
void ReadLibraryCsv(std::string_view bytes, LibraryCsvSink& cSink);

} // namespace ravlo

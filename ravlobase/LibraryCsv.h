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

// The values of a cut in one row of a library CSV. A blank cell and a missing column give no value.
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
    std::optional<std::int32_t> lLevel;                     // 1 or more; 0 in the file means no value
    std::optional<bool> bOpener;
    std::optional<std::wstring> sSecondaryKey;
    std::optional<DateTime> dtLastPlayed;
};

// Receives the rows of ReadLibraryCsv, in file order. The line of a row is its first one.
class LibraryCsvSink
{
public:
    virtual ~LibraryCsvSink() = default;
    virtual void OnCut(LibraryRow row) = 0;
    // A row that cannot be used, and the reason for people.
    virtual void OnReject(std::size_t line, const std::wstring& sReason) = 0;
};

// Reads a library CSV (docs/formats/library-csv.md) from its bytes. Each path comes only once: its first row
// counts. Throws RuntimeError 321 when the header line is unusable, before any row.
void ReadLibraryCsv(std::string_view bytes, LibraryCsvSink& cSink);

} // namespace ravlo

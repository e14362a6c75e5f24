// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "base/TextKey.h"
#include "ravlobase/ImportStamp.h"

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
    bool bOnlyFirstCategories = false; // colCategories are for a cut that has none
    std::optional<ImportStamp> stamp;  // of the audio file that the values come from
};

// A column of another program's file: our name for it, and the name in that file.
struct MappedColumn
{
    std::wstring sOurs;
    std::wstring sTheirs;
};
using ColumnMap = std::vector<MappedColumn>;

// "artist=Artist,path=File name". Throws error 5 for a text of another form, or a name that is no column
// here.
ColumnMap ParseColumnMap(const std::wstring& sMap);

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
// counts. Throws RuntimeError 321, before any row, when the header line is unusable or lacks a column of the
// map. Columns that the map does not name count under their own names.
void ReadLibraryCsv(std::string_view bytes, LibraryCsvSink& cSink, const ColumnMap& map = {},
                    char cDelimiter = ',');

} // namespace ravlo

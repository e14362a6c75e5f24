// SPDX-License-Identifier: MIT
// A table of another program: the first line of an input is the map of its columns, the rest its bytes. What
// is read obeys the same rules as a library's own rows, and a map or a file that cannot be used is refused
// before any row.
#include "fuzz/LibraryRows.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::string_view input = fuzz::BytesOf(pBytes, size);
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view bytes = input.substr(std::min(end + 1, input.size()));
    ColumnMap map;
    try
    {
        map = ParseColumnMap(fuzz::TextOf(input.substr(0, end)));
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::InvalidProcedureCall);
        return 0;
    }
    for (const MappedColumn& column : map)
        RAVLO_REQUIRE(!column.sOurs.empty() && !column.sTheirs.empty());
    fuzz::Library cRead;
    try
    {
        ReadLibraryCsv(bytes, cRead, map, DelimiterOf(bytes));
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::InvalidFileFormat && cRead.colRows.empty() && cRead.rejects == 0);
        return 0;
    }
    RAVLO_REQUIRE(cRead.colRows.size() + cRead.rejects < CountLines(bytes));
    fuzz::RequireSameAgain(cRead);
    return 0;
}

// SPDX-License-Identifier: MIT
// The library CSV: every row is a cut with values in their ranges or a reject with a reason, no path occurs
// twice, and the cuts stay the same when written as a library CSV and read again.
#include "fuzz/LibraryRows.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    const std::string_view bytes = fuzz::BytesOf(pBytes, size);
    fuzz::Library cRead;
    try
    {
        ReadLibraryCsv(bytes, cRead);
    }
    catch (const RuntimeError&)
    {
        RAVLO_REQUIRE(cRead.colRows.empty() && cRead.rejects == 0);
        return 0;
    }
    RAVLO_REQUIRE(cRead.colRows.size() + cRead.rejects < CountLines(bytes));
    fuzz::RequireSameAgain(cRead);
    return 0;
}

// SPDX-License-Identifier: MIT
// The import into a database file: every usable row is a cut afterwards, also after closing and opening, and
// importing the same file again changes nothing.
#include "fuzz/Stored.h"
#include "fuzz/TempFolder.h"

#include "base/RuntimeError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    static const fuzz::TempFolder cFolder;
    const std::wstring sFile = cFolder.File("station.db");
    for (const char* sName : {"station.db", "station.db-wal", "station.db-shm"})
        cFolder.Write(sName, {});
    cFolder.Write("library.csv", fuzz::BytesOf(pBytes, size));

    Store cStore;
    cStore.Open(sFile);
    try
    {
        const std::int32_t lCuts = cStore.ImportCsv(cFolder.File("library.csv"));
        RAVLO_REQUIRE(lCuts == cStore.LastImport().lAdded);
    }
    catch (const RuntimeError& e)
    {
        RAVLO_REQUIRE(e.Number() == error::InvalidFileFormat ||
                      (size == 0 && e.Number() == error::FileNotFound));
        RAVLO_REQUIRE(cStore.AllCuts().empty() && !cStore.LastImport().sFailure.empty());
        return 0;
    }
    const std::vector<std::wstring> colContent = fuzz::ContentOf(cStore);
    const ImportReport first = cStore.LastImport();
    RAVLO_REQUIRE(colContent.size() == static_cast<std::size_t>(first.lAdded));
    RAVLO_REQUIRE(first.lChanged == 0 && first.lUnchanged == 0);

    RAVLO_REQUIRE(cStore.ImportCsv(cFolder.File("library.csv")) == 0);
    const ImportReport& second = cStore.LastImport();
    RAVLO_REQUIRE(second.lAdded == 0 && second.lChanged == 0 && second.lUnchanged == first.lAdded);
    RAVLO_REQUIRE(second.colRejects.size() == first.colRejects.size());
    cStore.Close();
    cStore.Open(sFile);
    RAVLO_REQUIRE(fuzz::ContentOf(cStore) == colContent);
    return 0;
}
